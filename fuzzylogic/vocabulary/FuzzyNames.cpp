#include "fuzzylogic/vocabulary/FuzzyNames.h"

#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"

namespace fzy {
namespace {

TString Enclose(const TString& text) {
  TString result = LeftFuzzyParentheses;
  result += text;
  result += RightFuzzyParentheses;
  return result;
}

TString Bracketed(const TString& name) { return name.Contains(u' ') ? Enclose(name) : name; }

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
  TString result = HedgeNames[Ordinal(hedge)];
  result += u' ';
  result += Bracketed(name);
  return result;
}

TString CreateFuzzyName(TBaseFuzzyHedge modifyType, bool modifyY, const TString& name) {
  TString result = BaseHedgeNames[Ordinal(modifyType)];
  result += modifyY ? u" " : u"X ";
  result += Bracketed(name);
  return result;
}

TString CreateFuzzyName(const TString& left, const TString& right, const TString& keyword) {
  TString result = Bracketed(left);
  result += u' ';
  result += keyword;
  result += u' ';
  result += Bracketed(right);
  return result;
}

TString CreateFuzzyName(const TString& prefix, const TString& name, TFzyFloat value) {
  TString result = Bracketed(prefix);
  result += u' ';
  result += name;
  result += u' ';
  result += FormatFixed(value, 4);
  return result;
}

TString FormatFuzzyExpression(const TString& s) {
  TString trimmed = s.Trim();
  return !trimmed.Contains(u' ') || EnclosedAsAWhole(trimmed) ? trimmed : Enclose(s);
}

}  // namespace fzy
