#pragma once

#include <algorithm>
#include <vector>

#include "fuzzylogic/language/KelFuzzyLogicParser.h"
#include "fuzzylogic/language/detail/Characters.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy::detail {

/// How reader and evaluator work on the owned model.
struct TClassModel {
  using TVariable = TFuzzyVariable*;
  using TSet = TFuzzySet*;

  /// An object that a handler may free while the parser works on it.
  template <class Object>
  class THeld {
   public:
    explicit THeld(Object* object) noexcept : FObject(object), FPin(object) {}
    Object* Get() const noexcept { return FObject && !FObject->IsFreed() ? FObject : nullptr; }

   private:
    Object* FObject;
    TPin FPin;
  };
  using THeldSet = THeld<TFuzzySet>;
  using THeldVariable = THeld<TFuzzyVariable>;

  /// A new set without a name, which is no term yet, though a form designer defines every set.
  static TFuzzySet* AddSet(TKelFuzzyLogicParser& /*parser*/, TFuzzyVariable* variable) {
    TFuzzySet* set = variable->GetItems()->Add();
    if (set) set->SetDefined(false);
    return set;
  }
  static void Complete(TFuzzySet* /*set*/) {}
  /// A set like that of `AddSet`, under a name.
  static TFuzzySet* AddSetNamed(TKelFuzzyLogicParser& parser, TFuzzyVariable* variable,
                                const TString& name) {
    const THeldSet set(AddSet(parser, variable));
    if (set.Get()) set.Get()->SetName(name);
    return set.Get();
  }
  /// The first term of that name, else the first set that an evaluation left, or nothing.
  static TFuzzySet* FindSet(TFuzzyVariable* variable, const TString& name) {
    const int index = variable->GetItems()->IndexOfPreferred(name);
    return index < 0 ? nullptr : variable->GetItems()->GetItem(index);
  }
  /// A new unnamed set with the content of another.
  static TFuzzySet* CopySet(TKelFuzzyLogicParser& parser, TFuzzyVariable* variable,
                            TFuzzySet* source) {
    const THeldSet original(source);
    const THeldSet copy(AddSet(parser, variable));
    if (copy.Get()) copy.Get()->Assign(source);
    return copy.Get();
  }
  static void AddPoint(TFuzzySet* set, TFzyFloat x, TFzyFloat y) { set->GetValues()->Add(x, y); }
  static void NameSet(TFuzzySet* set, const TString& name, const TString& comment) {
    set->SetName(name);
    set->SetExpression(name);
    set->SetComment(comment);
  }
  static void MakeTerm(TFuzzySet* set, TFuzzyVariable* /*variable*/) { set->SetDefined(true); }
  /// The set of the engine that a set is, or nothing.
  static const TFuzzySet* EngineOf(const TFuzzySet* set) { return set; }
  /// The names that an expression could use, the last so many of them. Terms that were read alone
  /// are not defined, so sets that an expression left are told by their names: these are numbers or
  /// have blanks.
  static std::vector<TString> NamesOfTerms(const TFuzzyVariable* variable, std::size_t most) {
    std::vector<TString> names;
    const TFuzzySets& sets = *variable->GetItems();
    for (int i = std::max(0, sets.GetCount() - static_cast<int>(most)); i < sets.GetCount(); ++i) {
      const TString& name = sets.GetItem(i)->GetName();
      if (sets.GetItem(i)->GetDefined() ||
          !(IsEmptyFuzzyName(name) || name.Contains(u' ') || NumberOfWord(name)))
        names.push_back(name);
    }
    return names;
  }
  static int CountSets(const TFuzzyVariable* variable) {
    return variable ? variable->GetItems()->GetCount() : 0;
  }
  /// Whether the set was there when the variable had `count` sets. The placeholder does not count.
  static bool IsOlder(const TFuzzySet* set, const TFuzzyVariable* variable, int count) {
    return set && set->GetCollection() == variable->GetItems() && set->GetIndex() < count &&
           !IsEmptyFuzzyName(set->GetName());
  }
  /// Terms stand in the order of their text, also one that took a set over that was there before.
  static void PlaceLast(TFuzzySet* set, TFuzzyVariable* variable) {
    if (set->GetCollection() == variable->GetItems())
      set->SetIndex(variable->GetItems()->GetCount() - 1);
  }
  /// A set that stands for a number keeps its text.
  static void NoteNumber(TFuzzySet* set, const TString& text) { set->SetExpression(text); }
  static void NoteDefinition(TFuzzySet* set, const TString& definition) {
    set->SetDefinition(definition);
  }
  /// How many characters its texts take.
  static std::size_t CountCharacters(const TFuzzySet* set) {
    return set->GetName().size() + set->GetExpression().size();
  }
  /// The set that a token carries, or nothing.
  static TFuzzySet* PayloadOf(const IFuzzyStreamToken& token) {
    const auto* own = dynamic_cast<const TFuzzyStreamToken*>(&token);
    return own && token.GetDataType() == KindOf(fstFuzzySet) ? own->GetFuzzySet() : nullptr;
  }

  static void FireParseFuzzySet(TKelFuzzyLogicParser& parser, TFuzzyVariable* /*variable*/,
                                TFuzzySet* set) {
    FireEvent(parser.FOnParseFuzzySet, &parser, set);
  }
  static void FireEvalExpression(TKelFuzzyLogicParser& parser, TFuzzyVariable* variable,
                                 const IFuzzyStreamTokenList& expression, TFuzzySet*& result) {
    if (!parser.FOnEvalExpression) return;  // a long expression makes a long text
    FireEvent(parser.FOnEvalExpression, &parser, variable, expression.ToString(), result);
  }
};

}  // namespace fzy::detail
