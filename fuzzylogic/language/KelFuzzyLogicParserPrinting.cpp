#include "fuzzylogic/common/CommonMessages.h"
#include "fuzzylogic/language/KelFuzzyLogicParser.h"
#include "fuzzylogic/language/detail/DefinitionText.h"
#include "fuzzylogic/language/detail/TermWriter.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

// The writer of the definition language.

namespace fzy {
namespace {

constexpr const char16_t* LineEnd = u"\r\n";

/// Everything of a variable but its terms, and what stands around them.
class TVariableText {
 public:
  TVariableText(const TFuzzyVariable& variable, detail::TNumberStyle number)
      : FVariable(variable), FNumber(number) {}

  TString Head() const {
    const std::optional<TString> name = detail::WordText(FVariable.GetName());
    if (!name) throw EFzyException(SFzyNameNotWritable, {FVariable.GetName()});
    TString text = u"(deffuzzy " + *name + u" ";
    if (!FVariable.GetComment().empty())
      text += LineEnd + Line(detail::StringText(FVariable.GetComment()));
    text += LineEnd;
    text += Line(u"(range " + FNumber(FVariable.GetMinimum()) + u" " +
                 FNumber(FVariable.GetMaximum()) + u")" + LineEnd);
    if (!FVariable.GetUnits().empty())
      text += Line(u"(units " + detail::TokenText(FVariable.GetUnits()) + u")" + LineEnd);
    return text + Line(TString(u"(values ") + LineEnd);
  }

  TString Term(const TString& term) const { return Line(Line(term + LineEnd)); }
  TString Tail() const { return Line(TString(u")") + LineEnd) + u")"; }

 private:
  static TString Line(const TString& text) { return IndentString + text; }

  const TFuzzyVariable& FVariable;
  detail::TNumberStyle FNumber;
};

}  // namespace

TString TKelFuzzyLogicParser::PrettyPrint(const TFuzzyVariable* fuzzyVariable) {
  if (!fuzzyVariable) throw EFzyParseException(SFzyUndefinedVariable);
  const detail::TNumberStyle number{FFullPrecision};
  const TVariableText text(*fuzzyVariable, number);
  TString result = text.Head();
  detail::TTermWriter terms(GetFuzzyLogic(), fuzzyVariable->GetMinimum(),
                            fuzzyVariable->GetMaximum(), fuzzyVariable->GetItems()->GetSetClass(),
                            number);
  for (const TFuzzySet* set : *fuzzyVariable->GetItems()) {
    if (set->GetDefined()) result += text.Term(terms.Write(detail::ContentOf(*set)));
  }
  return result + text.Tail();
}

TString TKelFuzzyLogicParser::PrettyPrint(const TFuzzySet* fuzzySet, bool asDefinition) {
  if (!fuzzySet) throw EFzyException(SFzySetMissing, {TString("PrettyPrint")});
  const detail::TSetContent set = detail::ContentOf(*fuzzySet);
  const bool nameless = IsEmptyFuzzyName(set.Name);
  if (!asDefinition) return nameless ? set.Expression : set.Name;
  const detail::TNumberStyle number{FFullPrecision};
  const TFuzzyVariable* variable = fuzzySet->GetVariable();
  if (!variable || !fuzzySet->GetDefined() || nameless) return detail::SetText(set, number);
  detail::TTermWriter terms(GetFuzzyLogic(), variable->GetMinimum(), variable->GetMaximum(),
                            variable->GetItems()->GetSetClass(), number);
  for (int i = 0; detail::HasExpression(set) && i < fuzzySet->GetIndex(); ++i) {
    const TFuzzySet* before = variable->GetItems()->GetItem(i);
    if (before->GetDefined() && detail::IsTermName(before->GetName()))
      terms.Write(detail::ContentOf(*before));
  }
  return terms.Write(set);
}

}  // namespace fzy
