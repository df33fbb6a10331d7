#include "fuzzylogic/language/detail/ReadingNotes.h"

#include <array>
#include <exception>
#include <new>

#include "fuzzylogic/language/detail/ReadingAdvice.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy::detail {
namespace {

// In the order of `TReadingWarningKind`.
constexpr std::array<const TMessage*, 7> WarningMessages{
    &SFzyWarnEmptyRange,      &SFzyWarnLateRange, &SFzyWarnArgumentOrder, &SFzyWarnMovedPoint,
    &SFzyWarnMissingOperator, &SFzyWarnLongName,  &SFzyWarnAutoTerms};

TString NameOf(const THead& head) { return head.Name ? head.Name->GetText() : TString(); }

/// Looks up in what stands before an unbalanced string which variable and term it belongs to: none
/// of it was handed out.
void FindHeads(TFuzzyLogicTokenStream& stream, TTextPlace& place) {
  int depth = 0;
  int termDepth = 0;
  TString* name = nullptr;
  bool first = false;  // behind a "("
  while (const Ref<IFuzzyStreamToken> token = stream.TakeUnfinished()) {
    const int kind = token->GetDataType();
    const bool atom = kind == KindOf(fstAtom);
    if (name && atom) *name = token->GetText();
    name = nullptr;
    if (kind == u')' && depth-- == termDepth) place.Term = TString();
    if (kind == u'(') ++depth;
    if (first && atom && token->GetText() == "deffuzzy") name = &place.Variable;
    if (first && atom && token->GetText() == "term") {
      name = &place.Term;
      termDepth = depth;
    }
    first = kind == u'(';
  }
}

}  // namespace

TString WordOf(const IFuzzyStreamToken& token) {
  switch (token.GetDataType()) {
    case KindOf(fstNone):
      return {};
    case KindOf(fstList):
      return u"(";
    case KindOf(fstVariable):
      return u"?" + token.GetText();
    default:
      return token.ToString();
  }
}

void TReadingNotes::Begin(TReadingTrack& track) noexcept {
  if (!FTrack) {
    FFault.reset();
    FWarnings.clear();
  }
  track.Outer = std::exchange(FTrack, &track);
}

/// What is noted of an error is only an addition to it: where there is no memory for that, the
/// error goes on all the same.
void TReadingNotes::End(bool failed) noexcept {
  if (failed && Enabled) {
    try {
      if (FTrack == Outermost()) NoteFault();
      if (!FTrack->Outer && !FFault) FFault.emplace();
    } catch (...) {  // NOLINT(bugprone-empty-catch)
    }
  }
  FTrack = FTrack->Outer;
  if (!failed && !FTrack) FFault.reset();  // of a reading within, which a handler survived
}

TReadingTrack* TReadingNotes::Outermost() const noexcept {
  TReadingTrack* found = nullptr;
  for (TReadingTrack* track = FTrack; track; track = track->Outer)
    if (track->HasPlaces) found = track;
  return found;
}

TReadingTrack* TReadingNotes::Innermost() const noexcept {
  TReadingTrack* track = FTrack;
  while (track && !track->HasPlaces) track = track->Outer;
  return track;
}

TTextPlace TReadingNotes::PlaceOf(const TReadingTrack& track, Ref<IFuzzyStreamToken> token) {
  if (track.Name) token = track.Name;
  if (!token) token = track.CurrentToken();
  TTextPlace place;
  if (token) {
    place.Line = token->GetLineNumber();
    place.Column = token->GetColumn();
    place.Word = WordOf(*token);
  }
  place.Variable = NameOf(track.Variable);
  place.Term = NameOf(track.Term);
  return place;
}

void TReadingNotes::NoteError(const TMessage& error, const Ref<IFuzzyStreamToken>& word) {
  if (!FTrack) return;
  FTrack->Cause = {};
  FTrack->Cause.Error = &error;
  FTrack->Cause.Word = word;
  FTrack->Cause.At = FTrack->CurrentToken();
}

TFaultCause& TReadingNotes::Cause() {
  const Ref<IFuzzyStreamToken> at = FTrack->CurrentToken();
  if (FTrack->Cause.At != at) {
    FTrack->Cause = {};
    FTrack->Cause.At = at;
  }
  return FTrack->Cause;
}

void TReadingNotes::NoteFault() {
  TReadingTrack& track = *FTrack;
  const TFaultCause& cause = Cause();
  TReadingFault& fault = FFault.emplace(TReadingFault{PlaceOf(track, cause.Word), {}});
  const TTokenPlace opening =
      track.Stream ? track.Stream->GetUnbalancedString() : TTokenPlace{0, 0};
  if (opening.Line > 0 && !track.Name) {
    fault.Place = {opening.Line, opening.Column, {}, {}, u"\""};
    FindHeads(*track.Stream, fault.Place);
    fault.Advice = SFzyAdviseQuote;
  } else {
    fault.Advice = AdviceFor(track);
  }
}

void TReadingNotes::Warn(TReadingWarningKind kind, const Ref<IFuzzyStreamToken>& token,
                         std::initializer_list<TFormatArg> args, const TString& advice) {
  const TReadingTrack* outermost = Outermost();
  if (!outermost || !Hears()) return;
  const bool kept = FWarnings.size() < MostWarnings;
  std::optional<TReadingWarning> warning;
  try {
    warning.emplace(TReadingWarning{
        kind, PlaceOf(*outermost, outermost == Innermost() ? token : nullptr),
        FormatText(*WarningMessages[static_cast<std::size_t>(kind)], args), advice});
    if (kept) FWarnings.push_back(*warning);
  } catch (const std::bad_alloc&) {
    return;
  }
  FireEvent(FParser.FOnWarning, &FParser, std::as_const(*warning));
}

TReading::TReading(TCustomFuzzyLogicParser& parser, bool hasPlaces)
    : FPin(&parser), FNotes(TReadingNotes::Of(parser)), FExceptions(std::uncaught_exceptions()) {
  FTrack.HasPlaces = hasPlaces;
  FNotes.Begin(FTrack);
}

void TReading::Close() noexcept {
  if (std::exchange(FOpen, false)) FNotes.End(std::uncaught_exceptions() > FExceptions);
}

}  // namespace fzy::detail
