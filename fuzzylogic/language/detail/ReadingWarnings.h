#pragma once

#include <span>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/language/detail/ExpressionItems.h"
#include "fuzzylogic/language/detail/ReadingNotes.h"

// What is read silently though it was hardly meant.

namespace fzy::detail {

/// The first place of an expression at which two operands, or an operand and a hedge, stand side by
/// side without an operator between.
struct TGap {
  Ref<IFuzzyStreamToken> Left;  // none when there is no gap
  Ref<IFuzzyStreamToken> Right;
  bool IsHedgeBehind = false;  // the right one is a hedge with nothing to stand before
};
TGap FindGap(const std::vector<TExpressionToken>& infix);

/// Warns of a gap.
void WarnOfGap(TReadingNotes& notes, const TGap& gap);

/// Whether an x lies so far outside a range that it is worth a word.
inline bool IsOutside(TFzyFloat x, TFzyFloat minimum, TFzyFloat maximum) {
  return x < minimum - FuzzyTolerance || x > maximum + FuzzyTolerance;
}

/// Whether a curve has a point of exactly this x at one of its ends.
bool HasPointAt(TFuzzyCurve curve, TFzyFloat x);

/// Warns of an x that was moved into the range.
void WarnOfMoved(TReadingNotes& notes, const Ref<IFuzzyStreamToken>& token, TFzyFloat x,
                 TFzyFloat minimum, TFzyFloat maximum);

/// Watches the points of a list as they are added to a set of the library, and warns of the first
/// one that was moved into the range. One exactly 1 to the right of the point before it stays.
class TRangeWatch {
 public:
  /// Of no set it sees nothing.
  TRangeWatch(TReadingNotes& notes, const TFuzzySet* set)
      : FNotes(notes),
        FMinimum(set ? set->GetXRange(1) : 0),
        FMaximum(set ? set->GetXRange(0) : 0),
        FWatching(set) {}

  /// A point was added; `get` gives the set, or nothing.
  template <class Get>
  void See(const Ref<IFuzzyStreamToken>& x, Get get) {
    if (FWatching && IsOutside(x->GetNumber(), FMinimum, FMaximum)) Look(x, get());
  }

 private:
  void Look(const Ref<IFuzzyStreamToken>& x, const TFuzzySet* set) {
    if (!set || HasPointAt(set->GetValues()->Points(), x->GetNumber())) return;
    FWatching = false;
    WarnOfMoved(FNotes, x, x->GetNumber(), FMinimum, FMaximum);
  }

  TReadingNotes& FNotes;
  TFzyFloat FMinimum;
  TFzyFloat FMaximum;
  bool FWatching;
};

/// What the arguments of a shape function are: two ends; two ends with the middle between them, or
/// the center behind them; or a reach and the center.
enum class TShapeForm : std::uint8_t { Ends, Middle, Center, Reach };

/// Warns of the arguments of a shape function that made `set`: of those out of order, and of a
/// shape that reaches beyond the range.
void WarnOfShape(TReadingNotes& notes, const TString& function, TShapeForm form,
                 const Ref<IFuzzyStreamTokenList>& arguments, std::span<const TFzyFloat> numbers,
                 const TFuzzySet& set);

}  // namespace fzy::detail
