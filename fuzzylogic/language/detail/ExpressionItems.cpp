#include "fuzzylogic/language/detail/ExpressionItems.h"

#include <array>

#include "fuzzylogic/vocabulary/FuzzyKeywords.h"

namespace fzy::detail {
namespace {

constexpr TFuzzyStreamTokenTypes OperandKinds{fstVariable, fstList, fstIFuzzySet, fstFuzzySet};

struct TPriorities {
  int InStack;
  int Incoming;
};

// In the order of `TExpressionItem`.
constexpr std::array<TPriorities, 6> Priorities = {
    {{1, 1}, {4, 0}, {1, 1}, {3, 3}, {3, 3}, {2, 1}}};

const TPriorities& PrioritiesOf(TExpressionItem item) {
  return Priorities[static_cast<std::size_t>(item)];
}

}  // namespace

TExpressionToken::TExpressionToken(Ref<IFuzzyStreamToken> token)
    : Token(std::move(token)), Item(ClassifyExpressionItem(*Token)) {}

TExpressionItem ClassifyExpressionItem(const IFuzzyStreamToken& token) {
  return IsOfKind(token, OperandKinds) ? TExpressionItem::Operand
                                       : ClassifyExpressionText(token.GetText());
}

TExpressionItem ClassifyExpressionText(std::u16string_view text) {
  using enum TExpressionItem;
  bool isUnion = false;
  TFuzzyOperation operation{};
  if (text == LeftFuzzyParentheses) return OpenParen;
  if (text == RightFuzzyParentheses) return CloseParen;
  if (IsFuzzyKeyword(text, isUnion, operation)) return Keyword;
  if (IsFuzzyHedgeOperator(text)) return HedgeOperator;
  return IsFuzzyHedge(text) ? Hedge : Operand;
}

int InStackPriority(TExpressionItem item) noexcept { return PrioritiesOf(item).InStack; }
int IncomingPriority(TExpressionItem item) noexcept { return PrioritiesOf(item).Incoming; }

}  // namespace fzy::detail
