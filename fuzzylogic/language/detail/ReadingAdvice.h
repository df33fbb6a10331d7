#pragma once

#include "fuzzylogic/language/detail/ReadingNotes.h"

// What may help who wrote a text that cannot be read.

namespace fzy::detail {

/// How many terms are searched for a name that was meant.
inline constexpr std::size_t MostNotedTerms = 1000;

/// Advice about the error under way, from its cause and from where the reading stands; nothing
/// where the error's own message says it all.
TString AdviceFor(const TReadingTrack& track);

/// Adds to the error under way what it can be about: a call of a shape function, and the names that
/// an expression there could have used.
template <class Model, class Variable>
void NoteTerms(const TCustomFuzzyLogicParser& parser, const Variable& variable) {
  TReadingNotes& notes = TReadingNotes::Of(parser);
  if (!notes.Enabled || !variable) return;
  try {
    TFaultCause& cause = notes.Cause();
    cause.HasAutoTerms = parser.GetFuzzyLogic() && parser.GetFuzzyLogic()->GetAutoTerms();
    cause.Terms = Model::NamesOfTerms(variable, MostNotedTerms);
  } catch (...) {  // NOLINT(bugprone-empty-catch): the error itself counts
  }
}
template <class Model, class Variable>
void NoteCall(const TCustomFuzzyLogicParser& parser, const Variable& variable,
              const Ref<IFuzzyStreamToken>& function, const Ref<IFuzzyStreamTokenList>& arguments) {
  TFaultCause& cause = TReadingNotes::Of(parser).Cause();
  if (!cause.Word) cause.Word = function;
  cause.Call = arguments;
  NoteTerms<Model>(parser, variable);
}

/// The numbers of a shape function in the order in which it takes them; nothing when they stand in
/// it.
TString AdviceOnOrder(const TString& function, IFuzzyStreamTokenList& arguments);

/// Two words that were meant as one name.
TString AdviceOneWord(const IFuzzyStreamToken& first, const IFuzzyStreamToken& second);

}  // namespace fzy::detail
