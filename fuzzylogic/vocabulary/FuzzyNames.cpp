#include "fuzzylogic/vocabulary/FuzzyNames.h"

#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"

namespace fzy {
namespace {

/// The parts behind each other. Names of names grow long, so not a character more is kept.
TString Join(std::initializer_list<std::u16string_view> parts) {
  std::size_t length = 0;
  for (const std::u16string_view part : parts) length += part.size();
  TString result;
  result.Reserve(length);
  for (const std::u16string_view part : parts) result += part;
  return result;
}

/// A name as it stands in another one: the parts around it are empty or brackets.
struct TComponentName {
  explicit TComponentName(const TString& name) : Name(name), Compound(name.Contains(u' ')) {}
  std::u16string_view Left() const { return Compound ? LeftFuzzyParentheses : u""; }
  std::u16string_view Right() const { return Compound ? RightFuzzyParentheses : u""; }

  std::u16string_view Name;
  bool Compound;
};

/// Whether the bracket that opens `text` is closed by its last character only.
bool EnclosedAsAWhole(std::u16string_view text) {
  if (text.size() <= 2 || text.front() != u'[' || text.back() != u']') return false;
  int depth = 1;
  for (std::size_t i = 1; i < text.size(); ++i) {
    depth += text[i] == u'[' ? 1 : text[i] == u']' ? -1 : 0;
    if (depth == 0 && i + 1 < text.size()) return false;
  }
  return true;
}

}  // namespace

TString CreateFuzzyName(TFuzzyHedge hedge, const TString& name) {
  const TComponentName of(name);
  return Join({HedgeNames[Ordinal(hedge)], u" ", of.Left(), of.Name, of.Right()});
}

TString CreateFuzzyName(TBaseFuzzyHedge modifyType, bool modifyY, const TString& name) {
  const TComponentName of(name);
  return Join({BaseHedgeNames[Ordinal(modifyType)], modifyY ? u" " : u"X ", of.Left(), of.Name,
               of.Right()});
}

TString CreateFuzzyName(const TString& left, const TString& right, const TString& keyword) {
  const TComponentName a(left);
  const TComponentName b(right);
  return Join({a.Left(), a.Name, a.Right(), u" ", keyword, u" ", b.Left(), b.Name, b.Right()});
}

TString CreateFuzzyName(const TString& prefix, const TString& name, TFzyFloat value) {
  const TComponentName of(prefix);
  return Join({of.Left(), of.Name, of.Right(), u" ", name, u" ", FormatFixed(value, 4)});
}

TString FormatFuzzyExpression(const TString& s) {
  TString trimmed = s.Trim();
  if (!trimmed.Contains(u' ') || EnclosedAsAWhole(trimmed)) return trimmed;
  return Join({LeftFuzzyParentheses, s, RightFuzzyParentheses});
}

}  // namespace fzy
