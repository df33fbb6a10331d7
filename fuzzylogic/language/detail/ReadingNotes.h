#pragma once

#include <optional>
#include <vector>

#include "fuzzylogic/language/FuzzyLogicParserBase.h"
#include "fuzzylogic/language/FuzzyLogicTokenStream.h"

// Where a reading stands, and what there is to say about it.

namespace fzy::detail {

inline TTokenPlace TokenPlace(const IFuzzyStreamToken& token) {
  return {token.GetLineNumber(), token.GetColumn()};
}

/// The head of a variable or a term, as far as it was read. Where nothing is needed but the place
/// of a token it is that: references cost something, and there are many heads.
struct THead {
  bool IsOpen() const noexcept { return Open.Line > 0; }
  /// Whether the token is the first one behind name and comment.
  bool IsFollowedBy(const IFuzzyStreamToken& token) const {
    return Next.Line > 0 && Next.Line == token.GetLineNumber() && Next.Column == token.GetColumn();
  }
  void Clear() noexcept {
    Name = nullptr;
    Open = Next = {0, 0};
    HasComment = false;
  }

  TTokenPlace Open{0, 0};  // its "("
  TTokenPlace Next{0, 0};
  Ref<IFuzzyStreamToken> Name;
  bool HasComment = false;
};

/// What is known of an error that is under way; the steps that it passes add to it.
struct TFaultCause {
  const TMessage* Error = nullptr;  // none where the parser did not raise it
  Ref<IFuzzyStreamToken> Word;      // what it is about
  Ref<IFuzzyStreamToken> Follower;  // an operand behind the word, without an operator between
  Ref<IFuzzyStreamTokenList> Call;  // the arguments of the shape function that the word names
  std::vector<TString> Terms;       // what an expression could name
  bool HasAutoTerms = false;        // whether others join them later
  Ref<IFuzzyStreamToken> At;        // the current token then: later ones make the rest void
};

/// The way of one reading through its text, kept in references to tokens that are there anyway.
struct TReadingTrack {
  TReadingTrack* Outer = nullptr;            // the reading within which this one runs
  bool HasPlaces = false;                    // false for what only encloses a reading
  TFuzzyLogicTokenStream* Stream = nullptr;  // none when tokens are read that were there before
  THead Variable;
  THead Term;
  THead Other;                    // one that a descendant reads
  THead* Head = &Other;           // the one that is being read
  Ref<IFuzzyStreamToken> Clause;  // the keyword of the clause under way
  Ref<IFuzzyStreamToken> Name;    // the ?name whose text is being read
  bool HasRange = false;          // of the variable under way
  bool HasTerms = false;
  bool HasVariables = false;
  TFaultCause Cause;

  TReadingTrack() = default;
  TReadingTrack(const TReadingTrack&) = delete;
  TReadingTrack& operator=(const TReadingTrack&) = delete;

  void BeginVariable() {
    Variable.Clear();
    Term.Clear();
    Head = &Variable;
    Clause = nullptr;
    HasRange = HasTerms = false;
  }
  void EndVariable() {
    Variable.Clear();
    HasVariables = true;
  }
  void BeginTerm() {
    Term.Clear();
    Head = &Term;
  }
  Ref<IFuzzyStreamToken> CurrentToken() const {
    return Stream ? Stream->PeekCurrentToken() : nullptr;
  }
};

/// A token as messages show it: nothing for the end of the text, "(" for a group.
TString WordOf(const IFuzzyStreamToken& token);

/// What a parser keeps of its readings: the fault and the warnings of the outermost one.
class TReadingNotes {
 public:
  explicit TReadingNotes(TCustomFuzzyLogicParser& parser) noexcept : FParser(parser) {}
  static TReadingNotes& Of(const TCustomFuzzyLogicParser& parser) noexcept {
    return *parser.FNotes;
  }

  bool Enabled = true;
  const std::optional<TReadingFault>& Fault() const noexcept { return FFault; }
  const std::vector<TReadingWarning>& Warnings() const noexcept { return FWarnings; }

  /// The innermost reading; there is one wherever there is a tokenizer.
  TReadingTrack* Track() const noexcept { return FTrack; }

  // Of the error that is about to be raised, or under way.
  void NoteError(const TMessage& error, const Ref<IFuzzyStreamToken>& word);
  /// The cause, to add to; what an error left that did not end the reading is gone from it.
  TFaultCause& Cause();
  /// Runs a step; an error in it is about `word` unless it is known better.
  template <class Step>
  void About(const Ref<IFuzzyStreamToken>& word, Step step) {
    try {
      step();
    } catch (...) {
      if (TFaultCause& cause = Cause(); !cause.Word) cause.Word = word;
      throw;
    }
  }

  /// Whether a warning would be kept or told; to be asked before its texts are made.
  bool Hears() const noexcept {
    return Enabled && FTrack && (FWarnings.size() < MostWarnings || FParser.FOnWarning);
  }
  /// Keeps a warning about a token of the innermost reading and tells it. Who takes away what the
  /// reading works on may do so here.
  void Warn(TReadingWarningKind kind, const Ref<IFuzzyStreamToken>& token,
            std::initializer_list<TFormatArg> args, const TString& advice);

 private:
  friend class TReading;
  void Begin(TReadingTrack& track) noexcept;
  void End(bool failed) noexcept;
  TReadingTrack* Outermost() const noexcept;
  TReadingTrack* Innermost() const noexcept;
  static TTextPlace PlaceOf(const TReadingTrack& track, Ref<IFuzzyStreamToken> token);
  void NoteFault();

  static constexpr std::size_t MostWarnings = 1000;

  TCustomFuzzyLogicParser& FParser;
  TReadingTrack* FTrack = nullptr;
  std::optional<TReadingFault> FFault;
  std::vector<TReadingWarning> FWarnings;
};

/// One reading, from the call of an entry point to its end. Readings end in the reverse order of
/// their beginning.
class TReading {
 public:
  /// Without places: an entry point that only calls another one.
  TReading(TCustomFuzzyLogicParser& parser, bool hasPlaces);
  TReading(const TReading&) = delete;
  TReading& operator=(const TReading&) = delete;
  ~TReading() { Close(); }

 protected:
  TReadingTrack& Track() noexcept { return FTrack; }
  /// The end, by an exception if one is under way that was not there at the beginning.
  void Close() noexcept;

 private:
  TPin FPin;
  TReadingNotes& FNotes;
  TReadingTrack FTrack;
  int FExceptions;
  bool FOpen = true;
};

}  // namespace fzy::detail
