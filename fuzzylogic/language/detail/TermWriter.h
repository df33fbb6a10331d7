#pragma once

#include <memory>

#include "fuzzylogic/interfaces/FuzzyInterfaces.h"
#include "fuzzylogic/language/detail/SetBody.h"
#include "fuzzylogic/model/FuzzyLogic.h"

namespace fzy::detail {

/// Whether a set of this name can be a term of a definition text.
bool IsTermName(const TString& name);

/// Whether the set has an expression that may be its body, which can speak of other terms.
bool HasExpression(const TSetContent& set);

/// The head of a term, up to the blank before its body: nothing for a set without a name.
/// @throws EFzyException (`SFzyNameNotWritable`)
TString TermHead(const TSetContent& set);

/// A set as it is, whether or not the text reads back: the term, or for a set without a name its
/// body alone.
/// @throws EFzyException (`SFzyNameNotWritable`)
TString SetText(const TSetContent& set, TNumberStyle number);

/// Where terms are read that are being written: a variable of the writer's own, which holds those
/// that were kept and nothing else.
class ITermShadow {
 public:
  virtual ~ITermShadow() = default;
  /// Reads one term, as it will be when it is a term.
  virtual TSetContent Read(const TString& term) = 0;
  /// Keeps the term read last, without the sets that were made on the way, or none of all these.
  virtual void Keep() = 0;
  virtual void Forget() = 0;
};

/// A shadow of one model, for a variable of that range; `fuzzy` is the component that the reader
/// will read into, or nothing.
std::unique_ptr<ITermShadow> ShadowOf(const TFuzzyVariable& variable, TCustomFuzzyLogic* fuzzy,
                                      TNumberStyle number);
std::unique_ptr<ITermShadow> ShadowOf(IFuzzyVariable& variable, TCustomFuzzyLogic* fuzzy,
                                      TNumberStyle number);

/// Writes the terms of a variable one after another, in the form that says most and still reads
/// back. What a text reads back as is found by reading it, into a shadow of the variable; so nobody
/// is told, functions that event handlers add are unknown here, and writing a term takes up to
/// three times as long as reading it.
class TTermWriter {
 public:
  TTermWriter(std::unique_ptr<ITermShadow> shadow, TNumberStyle number)
      : FShadow(std::move(shadow)), FNumber(number) {}

  /// The next term. Forms in order: the call of its shape function, the expression it was read
  /// from, its expression, its points, its points as an expression; each only if it gives the same
  /// points. Where none does, the points as they will be once they were read. In every case the
  /// text is the one that the set it reads back as is written as.
  /// @throws EFzyException (`SFzyNameNotWritable`)
  TString Write(const TSetContent& set);

 private:
  struct TAttempt {
    TString Body;
    TSetContent ReadBack;
  };

  TAttempt Best(const TString& head, const TSetContent& set);
  bool TryBody(const TString& head, const TString& body, const TSetContent& set, TAttempt& result);
  bool TryExpression(const TString& head, const TString& text, const TSetContent& set,
                     TAttempt& result);
  bool Settle(const TString& head, const TSetContent& set, TAttempt& attempt);
  TAttempt Read(const TString& head, const TString& body);

  std::unique_ptr<ITermShadow> FShadow;
  TNumberStyle FNumber;
};

/// What a text says of a set. One of another class than the library's has no definition.
TSetContent ContentOf(const TFuzzySet& set);
TSetContent ContentOf(IFuzzySet& set);

}  // namespace fzy::detail
