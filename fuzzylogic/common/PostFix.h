#pragma once

#include <concepts>
#include <cstddef>
#include <vector>

#include "fuzzylogic/common/CommonMessages.h"
#include "fuzzylogic/common/KelException.h"

namespace fzy {

/// A bracket without its partner in a list given to `PostFix`.
class EUnmatchedBracket : public EKelException {
 public:
  explicit EUnmatchedBracket(std::size_t index) : EKelException(SUnmatchedBracket), FIndex(index) {}
  /// The position of the bracket in the list.
  std::size_t GetIndex() const noexcept { return FIndex; }

 private:
  std::size_t FIndex;
};

/// What `PostFix` asks of its items: Boolean `IsOpenParen`, `IsCloseParen` and `IsOperand`, and the
/// whole numbers `InStackPriority` and `IncomingPriority` (a lower number binds tighter).
template <class Rules, class Item>
concept PostFixRules = requires(const Rules& rules, const Item& item) {
  { rules.IsOpenParen(item) } -> std::convertible_to<bool>;
  { rules.IsCloseParen(item) } -> std::convertible_to<bool>;
  { rules.IsOperand(item) } -> std::convertible_to<bool>;
  { rules.InStackPriority(item) } -> std::convertible_to<int>;
  { rules.IncomingPriority(item) } -> std::convertible_to<int>;
};

/// The items of an infix list in postfix order, by the shunting-yard method (E. W. Dijkstra, "Algol
/// 60 translation", Mathematisch Centrum, 1961). Operands keep their order; a closing bracket moves
/// stacked items to the output down to its opening bracket, and both are dropped; any other item
/// first moves stacked items to the output while the top's in-stack priority is not above the
/// item's incoming priority, and is then stacked. Linear time; no recursion.
/// @throws EUnmatchedBracket
template <class Item, PostFixRules<Item> Rules>
std::vector<Item> PostFix(const std::vector<Item>& list, const Rules& rules) {
  std::vector<Item> output;
  std::vector<std::size_t> stack;  // positions in `list`, so that an unmatched bracket can be named
  output.reserve(list.size());
  const auto unstack = [&] {
    output.push_back(list[stack.back()]);
    stack.pop_back();
  };
  for (std::size_t i = 0; i < list.size(); ++i) {
    const Item& item = list[i];
    if (rules.IsOperand(item)) {
      output.push_back(item);
    } else if (rules.IsCloseParen(item)) {
      while (!stack.empty() && !rules.IsOpenParen(list[stack.back()])) unstack();
      if (stack.empty()) throw EUnmatchedBracket(i);
      stack.pop_back();
    } else {
      while (!stack.empty() &&
             rules.InStackPriority(list[stack.back()]) <= rules.IncomingPriority(item))
        unstack();
      stack.push_back(i);
    }
  }
  while (!stack.empty()) {
    if (rules.IsOpenParen(list[stack.back()])) throw EUnmatchedBracket(stack.back());
    unstack();
  }
  return output;
}

}  // namespace fzy
