#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Messages.h"
#include "fuzzylogic/language/detail/ClassModel.h"
#include "fuzzylogic/language/detail/ExpressionEvaluator.h"
#include "fuzzylogic/language/detail/InterfaceModel.h"
#include "fuzzylogic/language/detail/TextReading.h"

// Fuzzy expressions.

namespace fzy {
namespace {

using TClassEvaluator = detail::TExpressionEvaluator<detail::TClassModel>;
using TInterfaceEvaluator = detail::TExpressionEvaluator<detail::TInterfaceModel>;

/// A set as the one number that the component's method makes of it.
template <class Set>
TFzyFloat CrispValue(Set& set, const TCustomFuzzyLogic* fuzzy) {
  return fuzzy && fuzzy->GetDefuzzificationMethod() == dmMeanOfMaxima ? set.MeanOfMaxima()
                                                                      : set.CenterOfGravity();
}

/// The text of an item that is a token, else nothing.
TString TextOf(const Ref<IInterface>& item) {
  const Ref<IFuzzyStreamToken> token = Query<IFuzzyStreamToken>(item.Get());
  return token ? token->GetText() : TString();
}

}  // namespace

TFuzzySet* TKelFuzzyLogicParser::EvalFuzzyExpression(TFuzzyVariable* variable,
                                                     const TString& expression) {
  detail::TTextReading reading(*this);
  reading.Open(expression, nullptr);
  return TClassEvaluator(*this, variable).EvalText();
}

TFzyFloat TKelFuzzyLogicParser::EvalFuzzyExpression(TFuzzyVariable* variable,
                                                    const TString& expression,
                                                    TFuzzySet*& fuzzySet) {
  const TPin self(this);
  fuzzySet = EvalFuzzyExpression(variable, expression);
  return fuzzySet ? CrispValue(*fuzzySet, GetFuzzyLogic()) : 0;
}

TFzyFloat TKelFuzzyLogicParser::EvalFuzzyExpression(const Ref<IFuzzyVariable>& variable,
                                                    const TString& expression,
                                                    Ref<IFuzzySet>& fuzzySet) {
  const TPin self(this);
  fuzzySet = EvalFuzzyExpression(variable, expression);
  return fuzzySet ? CrispValue(*fuzzySet, GetFuzzyLogic()) : 0;
}

Ref<IFuzzySet> TKelFuzzyLogicParser::EvalFuzzyExpression(const Ref<IFuzzyVariable>& variable,
                                                         const TString& expression) {
  detail::TTextReading reading(*this);
  reading.Open(expression, nullptr);
  return TInterfaceEvaluator(*this, variable).EvalText();
}

Ref<IFuzzySet> TKelFuzzyLogicParser::EvalFuzzyExpression(const Ref<IFuzzyVariable>& variable,
                                                         const Ref<IFuzzyStreamTokenList>& list) {
  const detail::TReading reading(*this, true);
  return TInterfaceEvaluator(*this, variable).EvalList(list);
}

Ref<IFuzzySet> TKelFuzzyLogicParser::EvalFuzzyExpression(const Ref<IFuzzyVariable>& variable,
                                                         const Ref<IFuzzyStreamToken>& token) {
  const detail::TReading reading(*this, true);
  return TInterfaceEvaluator(*this, variable).EvalToken(token);
}

TFuzzySet* TKelFuzzyLogicParser::EvalFuzzyExpression(TFuzzyVariable* variable,
                                                     const Ref<IFuzzyStreamTokenList>& list) {
  const detail::TReading reading(*this, true);
  return TClassEvaluator(*this, variable).EvalList(list);
}

TFuzzySet* TKelFuzzyLogicParser::EvalFuzzyExpression(TFuzzyVariable* variable,
                                                     const Ref<IFuzzyStreamToken>& token) {
  const detail::TReading reading(*this, true);
  return TClassEvaluator(*this, variable).EvalToken(token);
}

bool TKelFuzzyLogicParser::IsOpenParen(const Ref<IInterface>& item) const {
  return TextOf(item).View() == LeftFuzzyParentheses;
}

bool TKelFuzzyLogicParser::IsCloseParen(const Ref<IInterface>& item) const {
  return TextOf(item).View() == RightFuzzyParentheses;
}

bool TKelFuzzyLogicParser::IsOperand(const Ref<IInterface>& item) const {
  const Ref<IFuzzyStreamToken> token = Query<IFuzzyStreamToken>(item.Get());
  return token && detail::ClassifyExpressionItem(*token) == detail::TExpressionItem::Operand;
}

int TKelFuzzyLogicParser::InStackPriority(const Ref<IInterface>& item) const {
  return detail::InStackPriority(detail::ClassifyExpressionText(TextOf(item)));
}

int TKelFuzzyLogicParser::IncomingPriority(const Ref<IInterface>& item) const {
  return detail::IncomingPriority(detail::ClassifyExpressionText(TextOf(item)));
}

void TKelFuzzyLogicParser::FillExpression(const Ref<IInterfaceList>& list,
                                          const Ref<IFuzzyStreamTokenList>& tokenList) const {
  struct TLevel {
    Ref<IInterfaceList> List;
    int Next;
  };
  std::vector<TLevel> levels;
  if (list) levels.push_back({list, 0});
  while (!levels.empty()) {
    TLevel& level = levels.back();
    if (level.Next == level.List->GetCount()) {
      levels.pop_back();
      continue;
    }
    const Ref<IInterface> item = level.List->Get(level.Next++);
    if (const Ref<IFuzzyStreamToken> token = Query<IFuzzyStreamToken>(item.Get())) {
      tokenList->Add(token);
    } else if (const Ref<IInterfaceList> nested = Query<IInterfaceList>(item.Get())) {
      levels.push_back({nested, 0});
    } else {
      throw EConvertError(
          FormatText(SAssignError, {TString("item"), TString("IFuzzyStreamToken")}));
    }
  }
}

}  // namespace fzy
