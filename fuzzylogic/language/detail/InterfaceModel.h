#pragma once

#include <algorithm>
#include <vector>

#include "fuzzylogic/interfaces/IFuzzyLogic.h"
#include "fuzzylogic/language/KelFuzzyLogicParser.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"

namespace fzy::detail {

/// How reader and evaluator work on the counted model. What they work on is held by reference, so
/// nothing goes meanwhile.
struct TInterfaceModel {
  using TVariable = Ref<IFuzzyVariable>;
  using TSet = Ref<IFuzzySet>;

  template <class I>
  class THeld {
   public:
    explicit THeld(const Ref<I>& object) noexcept : FObject(object) {}
    const Ref<I>& Get() const noexcept { return FObject; }

   private:
    Ref<I> FObject;
  };
  using THeldSet = THeld<IFuzzySet>;
  using THeldVariable = THeld<IFuzzyVariable>;

  /// A new set under a name of its own, that no set of the variable has, which is no term yet.
  static TSet AddSet(TKelFuzzyLogicParser& parser, const TVariable& variable) {
    TString name = parser.GetUniqueName();
    while (variable->ContainsFuzzySet(name)) name = parser.GetUniqueName();
    TSet set = variable->Add(name);
    set->SetDefined(false);
    return set;
  }
  /// Unlike in the owned model, a set whose body was read counts as a term before it is named, so
  /// that the table takes it under its name.
  static void Complete(const TSet& set) { set->SetDefined(true); }
  /// A new set that is no term. It never takes the place of a term that has its name.
  static TSet AddSetNamed(TKelFuzzyLogicParser& parser, const TVariable& variable,
                          const TString& name) {
    const TSet present = variable->ContainsFuzzySet(name);
    if (present && present->GetDefined()) {
      TSet set = AddSet(parser, variable);
      set->SetName(name);
      return set;
    }
    TSet set = variable->Add(name);
    set->SetDefined(false);
    return set;
  }
  static TSet FindSet(const TVariable& variable, const TString& name) {
    return variable->ContainsFuzzySet(name);
  }
  /// A new set with the content and the name of another, so that what is made of it is called after
  /// that one. It is no term.
  static TSet CopySet(TKelFuzzyLogicParser& parser, const TVariable& variable, const TSet& source) {
    // A handler may reset the reference that was given.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const TSet original = source;
    TSet copy = AddSet(parser, variable);
    copy->Assign(original);
    if (copy->GetVariable() != variable) {  // that of another variable brings it along
      copy->SetVariable(variable);
      copy->AssignValues(original);
      copy->SetExpression(original->GetExpression());
    }
    copy->SetName(original->GetName());
    return copy;
  }
  static void AddPoint(const TSet& set, TFzyFloat x, TFzyFloat y) { set->Add(x, y); }
  /// The set keeps its expression, unlike in the owned model.
  static void NameSet(const TSet& set, const TString& name, const TString& comment) {
    set->SetName(name);
    set->SetComment(comment);
  }
  /// A set that came of an expression is in no table until it is entered as a term.
  static void MakeTerm(const TSet& set, const TVariable& variable) {
    set->SetDefined(true);
    if (variable->ContainsFuzzySet(set->GetName()) != set) variable->Add(set);
  }
  static const TFuzzySet* EngineOf(const TSet& set) {
    return dynamic_cast<const TFuzzySet*>(set.Get());
  }
  static std::vector<TString> NamesOfTerms(const TVariable& variable, std::size_t most) {
    std::vector<std::pair<int, TString>> terms;
    for (int i = 0; i < variable->GetCount() && terms.size() < most; ++i) {
      const TSet set = variable->GetFuzzySet(i);
      if (set->GetDefined()) terms.emplace_back(set->GetIndex(), set->GetName());
    }
    std::sort(terms.begin(), terms.end());
    std::vector<TString> names;
    for (auto& [index, name] : terms) names.push_back(std::move(name));
    return names;
  }
  /// Sets that earlier expressions left may be taken over: that costs no more than a copy.
  static int CountSets(const TVariable& /*variable*/) { return 0; }
  static bool IsOlder(const TSet& /*set*/, const TVariable& /*variable*/, int /*count*/) {
    return false;
  }
  /// The order of terms is that in which they were entered.
  static void PlaceLast(const TSet& /*set*/, const TVariable& /*variable*/) {}
  static void NoteNumber(const TSet& /*set*/, const TString& /*text*/) {}
  static void NoteDefinition(const TSet& set, const TString& definition) {
    if (auto* own = dynamic_cast<TIFuzzySet*>(set.Get())) own->SetDefinition(definition);
  }
  static std::size_t CountCharacters(const TSet& set) {
    const TFuzzySet* own = EngineOf(set);
    return own ? own->GetName().size() + own->GetExpression().size()
               : set->GetName().size() + set->GetExpression().size();
  }
  static TSet PayloadOf(const IFuzzyStreamToken& token) {
    return token.GetDataType() == KindOf(fstIFuzzySet) ? token.GetFuzzySetIntf() : nullptr;
  }

  static void FireParseFuzzySet(TKelFuzzyLogicParser& parser, const TVariable& variable,
                                const TSet& set) {
    FireEvent(parser.FOnParseFuzzySetIntf, variable, set);
  }
  static void FireEvalExpression(TKelFuzzyLogicParser& parser, const TVariable& variable,
                                 const IFuzzyStreamTokenList& expression, TSet& result) {
    if (!parser.FOnEvalExpressionIntf) return;  // a long expression makes a long text
    FireEvent(parser.FOnEvalExpressionIntf, variable, expression.ToString(), result);
  }
};

}  // namespace fzy::detail
