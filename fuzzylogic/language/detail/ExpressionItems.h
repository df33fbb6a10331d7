#pragma once

#include "fuzzylogic/language/FuzzyStreamToken.h"

namespace fzy::detail {

/// What a token is in a fuzzy expression.
enum class TExpressionItem : std::uint8_t {
  Operand,
  OpenParen,
  CloseParen,
  Keyword,        ///< combines two operands: "and", "or" and their variants
  HedgeOperator,  ///< acts on its left operand by the number of its right one
  Hedge           ///< stands before its operand
};

/// A token with what it is, looked up once.
struct TExpressionToken {
  explicit TExpressionToken(Ref<IFuzzyStreamToken> token);

  Ref<IFuzzyStreamToken> Token;
  TExpressionItem Item;
};

TExpressionItem ClassifyExpressionItem(const IFuzzyStreamToken& token);
/// The same by a text alone, as of a word.
TExpressionItem ClassifyExpressionText(std::u16string_view text);

/// How tightly an item binds while it is stacked, and when it arrives; a lower number binds
/// tighter. So hedges bind tighter than everything between two operands and apply from the inside
/// out; keywords and hedge operators share one level and group from the left.
int InStackPriority(TExpressionItem item) noexcept;
int IncomingPriority(TExpressionItem item) noexcept;

/// The rules by which `PostFix` puts tokens in postfix order.
struct TExpressionRules {
  bool IsOpenParen(const TExpressionToken& token) const noexcept {
    return token.Item == TExpressionItem::OpenParen;
  }
  bool IsCloseParen(const TExpressionToken& token) const noexcept {
    return token.Item == TExpressionItem::CloseParen;
  }
  bool IsOperand(const TExpressionToken& token) const noexcept {
    return token.Item == TExpressionItem::Operand;
  }
  int InStackPriority(const TExpressionToken& token) const noexcept {
    return detail::InStackPriority(token.Item);
  }
  int IncomingPriority(const TExpressionToken& token) const noexcept {
    return detail::IncomingPriority(token.Item);
  }
};

}  // namespace fzy::detail
