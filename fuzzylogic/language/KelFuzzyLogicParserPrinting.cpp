#include <algorithm>

#include "fuzzylogic/common/CommonMessages.h"
#include "fuzzylogic/interfaces/IFuzzySet.h"
#include "fuzzylogic/language/KelFuzzyLogicParser.h"
#include "fuzzylogic/language/detail/DefinitionText.h"
#include "fuzzylogic/language/detail/TermWriter.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

// The writer of the definition language.

namespace fzy {
namespace {

constexpr const char16_t* LineEnd = u"\r\n";

/// Everything of a variable but its terms, and what stands around them; for both models.
template <class Variable>
class TVariableText {
 public:
  TVariableText(Variable& variable, detail::TNumberStyle number)
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

  Variable& FVariable;
  detail::TNumberStyle FNumber;
};

/// The terms of a variable, in the order of the text.
std::vector<const TFuzzySet*> TermsOf(const TFuzzyVariable& variable) {
  std::vector<const TFuzzySet*> terms;
  for (const TFuzzySet* set : *variable.GetItems()) {
    if (set->GetDefined()) terms.push_back(set);
  }
  return terms;
}

std::vector<Ref<IFuzzySet>> TermsOf(IFuzzyVariable& variable) {
  std::vector<std::pair<int, Ref<IFuzzySet>>> numbered;
  for (int i = 0; i < variable.GetCount(); ++i) {
    Ref<IFuzzySet> set = variable.GetFuzzySet(i);
    if (set->GetDefined()) numbered.emplace_back(set->GetIndex(), std::move(set));
  }
  std::ranges::stable_sort(numbered, {}, [](const auto& set) { return set.first; });
  std::vector<Ref<IFuzzySet>> terms;
  terms.reserve(numbered.size());
  for (auto& [index, set] : numbered) terms.push_back(std::move(set));
  return terms;
}

template <class Variable>
TString VariableText(Variable& variable, TCustomFuzzyLogic* fuzzy, detail::TNumberStyle number) {
  const TVariableText<Variable> text(variable, number);
  TString result = text.Head();
  detail::TTermWriter terms(detail::ShadowOf(variable, fuzzy, number), number);
  for (const auto& set : TermsOf(variable))
    result += text.Term(terms.Write(detail::ContentOf(*set)));
  return result + text.Tail();
}

/// A term of a variable as it is written there. Its expression may name terms before it.
template <class Variable, class Set>
TString TermText(Variable& variable, const Set& term, TCustomFuzzyLogic* fuzzy,
                 detail::TNumberStyle number) {
  const detail::TSetContent content = detail::ContentOf(*term);
  detail::TTermWriter terms(detail::ShadowOf(variable, fuzzy, number), number);
  if (!detail::HasExpression(content)) return terms.Write(content);
  for (const auto& set : TermsOf(variable)) {
    if (set == term) break;
    if (detail::IsTermName(set->GetName())) terms.Write(detail::ContentOf(*set));
  }
  return terms.Write(content);
}

}  // namespace

TString TKelFuzzyLogicParser::PrettyPrint(const TFuzzyVariable* fuzzyVariable) {
  if (!fuzzyVariable) throw EFzyParseException(SFzyUndefinedVariable);
  return VariableText(*fuzzyVariable, GetFuzzyLogic(), {FFullPrecision});
}

TString TKelFuzzyLogicParser::PrettyPrint(const Ref<IFuzzyVariable>& fuzzyVariable) {
  if (!fuzzyVariable) throw EFzyParseException(SFzyUndefinedVariable);
  return VariableText(*fuzzyVariable, GetFuzzyLogic(), {FFullPrecision});
}

TString TKelFuzzyLogicParser::PrettyPrint(const TFuzzySet* fuzzySet, bool asDefinition) {
  if (!fuzzySet) throw EFzyException(SFzySetMissing, {TString("PrettyPrint")});
  const bool nameless = IsEmptyFuzzyName(fuzzySet->GetName());
  if (!asDefinition) return nameless ? fuzzySet->GetExpression() : fuzzySet->GetName();
  const detail::TNumberStyle number{FFullPrecision};
  const TFuzzyVariable* variable = fuzzySet->GetVariable();
  return variable && fuzzySet->GetDefined() && !nameless
             ? TermText(*variable, fuzzySet, GetFuzzyLogic(), number)
             : detail::SetText(detail::ContentOf(*fuzzySet), number);
}

TString TKelFuzzyLogicParser::PrettyPrint(const Ref<IFuzzySet>& fuzzySet, bool asDefinition) {
  if (!fuzzySet) throw EFzyException(SFzySetMissing, {TString("PrettyPrint")});
  const TString name = fuzzySet->GetName();
  const bool nameless = IsEmptyFuzzyName(name);
  if (!asDefinition) return nameless ? TString() : name;
  const detail::TNumberStyle number{FFullPrecision};
  const auto* own = dynamic_cast<const TIFuzzySet*>(fuzzySet.Get());
  const Ref<IFuzzyVariable> counted = own ? nullptr : fuzzySet->GetVariable();
  IFuzzyVariable* variable = own ? own->PeekVariable() : counted.Get();
  return variable && fuzzySet->GetDefined() && variable->ContainsFuzzySet(name) == fuzzySet
             ? TermText(*variable, fuzzySet, GetFuzzyLogic(), number)
             : detail::SetText(detail::ContentOf(*fuzzySet), number);
}

}  // namespace fzy
