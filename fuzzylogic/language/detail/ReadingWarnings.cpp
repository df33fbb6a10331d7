#include "fuzzylogic/language/detail/ReadingWarnings.h"

#include <algorithm>

#include "fuzzylogic/language/detail/ReadingAdvice.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy::detail {

TGap FindGap(const std::vector<TExpressionToken>& infix) {
  using enum TExpressionItem;
  const Ref<IFuzzyStreamToken>* operand = nullptr;  // just behind it
  for (std::size_t i = 0; i < infix.size(); ++i) {
    const TExpressionItem item = infix[i].Item;
    const bool begins = item == Operand || item == OpenParen || item == Hedge;
    if (begins && operand) {
      std::size_t next = i;
      while (next < infix.size() && infix[next].Item == Hedge) ++next;
      const bool behind =
          next == infix.size() || (infix[next].Item != Operand && infix[next].Item != OpenParen);
      return {*operand, infix[i].Token, behind};
    }
    operand = item == Operand || item == CloseParen ? &infix[i].Token : nullptr;
  }
  return {};
}

void WarnOfGap(TReadingNotes& notes, const TGap& gap) {
  if (!notes.Hears()) return;
  const IFuzzyStreamToken& left = *gap.Left;
  const IFuzzyStreamToken& right = *gap.Right;
  const TReadingTrack& track = *notes.Track();
  if (right.GetDataType() == KindOf(fstList) && track.Term.IsFollowedBy(left)) {
    const Ref<IFuzzyStreamToken> name = track.Term.Name;
    return notes.Warn(rwLongName, gap.Left, {name->GetText(), WordOf(left)},
                      AdviceOneWord(*name, left));
  }
  const bool negative = IsOfKind(right, {fstInteger, fstFloat}) && right.GetNumber() < 0;
  const TString advice =
      negative ? FormatText(SFzyAdviseBlanks,
                            {WordOf(left) + u" - " + FormatShortest(-right.GetNumber())})
               : TString(gap.IsHedgeBehind ? SFzyAdviseHedge : SFzyAdviseMissingOperator);
  notes.Warn(rwMissingOperator, gap.Right, {WordOf(left), WordOf(right)}, advice);
}

bool HasPointAt(TFuzzyCurve curve, TFzyFloat x) {
  constexpr std::size_t most = 4;  // points of one X, and one more
  const auto isAt = [x](const TFuzzyPoint& point) { return point.X == x; };
  const TFuzzyCurve first = curve.first(std::min(most, curve.size()));
  const TFuzzyCurve last = curve.last(first.size());
  return std::any_of(first.begin(), first.end(), isAt) ||
         std::any_of(last.begin(), last.end(), isAt);
}

void WarnOfMoved(TReadingNotes& notes, const Ref<IFuzzyStreamToken>& token, TFzyFloat x,
                 TFzyFloat minimum, TFzyFloat maximum) {
  if (!notes.Hears()) return;
  const TReadingTrack& track = *notes.Track();
  const bool hasRange = track.HasRange || !track.Variable.IsOpen();
  notes.Warn(rwMovedPoint, token,
             {FormatShortest(x), FormatShortest(minimum), FormatShortest(maximum)},
             hasRange ? SFzyAdviseWiderRange : SFzyAdviseMissingRange);
}

void WarnOfShape(TReadingNotes& notes, const TString& function, TShapeForm form,
                 const Ref<IFuzzyStreamTokenList>& arguments, std::span<const TFzyFloat> numbers,
                 const TFuzzySet& set) {
  if (!notes.Hears()) return;
  const bool byReach = form == TShapeForm::Reach;
  const std::size_t last = form == TShapeForm::Middle ? 2 : 1;
  const TFzyFloat left = byReach ? numbers[1] - numbers[0] : numbers[0];
  const TFzyFloat right = byReach ? numbers[1] + numbers[0] : numbers[last];
  const TFzyFloat middle = form == TShapeForm::Middle   ? numbers[1]
                           : form == TShapeForm::Center ? numbers[2]
                                                        : left;
  const TFzyFloat minimum = set.GetXRange(1), maximum = set.GetXRange(0);
  const TFuzzyCurve curve = set.GetValues()->Points();
  const auto isMoved = [&](TFzyFloat x) {
    return IsOutside(x, minimum, maximum) && !HasPointAt(curve, x);
  };
  const bool isFlat = form == TShapeForm::Ends && left == right;
  const bool isDisordered = !byReach && !(left <= middle && middle <= right);
  const bool leftMoved = isMoved(left), rightMoved = isMoved(right);
  if (isFlat) notes.Warn(rwArgumentOrder, arguments->Get(0), {function}, SFzyAdviseWidth);
  if (isDisordered)
    return notes.Warn(rwArgumentOrder, arguments->Get(0), {function},
                      AdviceOnOrder(function, *arguments));
  if (leftMoved || rightMoved)
    WarnOfMoved(notes, arguments->Get(leftMoved || byReach ? 0 : static_cast<int>(last)),
                leftMoved ? left : right, minimum, maximum);
}

}  // namespace fzy::detail
