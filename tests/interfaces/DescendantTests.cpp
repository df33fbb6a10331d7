#include <algorithm>
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "fuzzylogic/interfaces/IFuzzyLogic.h"
#include "fuzzylogic/model/FuzzyLogic.h"

// Classes of an application that are made where the library makes its own, and whose overrides the
// library calls.

namespace fzy::test {
namespace {

/// A point whose degree stays within [0, 1], whose X is whole, and which equals no other.
class TBoundedPoint final : public TFuzzySetValue {
 public:
  static TFuzzySetValue* Create(TCollection* list) { return Join(new TBoundedPoint, list); }
  void SetX(TFzyFloat value) override { TFuzzySetValue::SetX(std::round(value)); }
  void SetY(TFzyFloat value) override { TFuzzySetValue::SetY(std::min(value, 1.0)); }
  bool Equals(const TFuzzySetValue&) const override { return false; }
};

TEST(Descendant, OfPointsIsSetAndComparedByItsOwnRules) {
  const TOwned<TFuzzySet> set(TFuzzySet::Create());
  set->GetValues()->Add(1, 0.5);
  TFuzzySetValue* own = TBoundedPoint::Create(set->GetValues());
  EXPECT_EQ(own->GetX(), 2);
  own->SetY(7);
  set->GetValues()->Add(4, 0.5);
  set->Hedge(bfhMultiply, 3, true);
  EXPECT_EQ(set->GetValuesToString(), "((1.0000 1.5000) (2.0000 1.0000) (4.0000 1.5000) )");
  set->Hedge(bfhAdd, 0.75, false);
  EXPECT_EQ(set->GetValuesToString(), "((1.7500 1.5000) (3.0000 1.0000) (4.7500 1.5000) )");
  set->GetValues()->GetItem(2)->SetValue(6, 1);
  own->SetX(5.75);
  EXPECT_EQ(set->GetValuesToString(), "((1.7500 1.5000) (6.0000 1.0000) (6.0000 1.0000) )");
  TFuzzySets sets;
  EXPECT_THROW(TBoundedPoint::Create(&sets), EFzyException);
}

class TTellingSets final : public TFuzzySets {
 public:
  using TFuzzySets::TFuzzySets;
  static inline std::string Told;

 protected:
  void Notify(TCollectionItem* item, TCollectionNotification action) override {
    TFuzzySets::Notify(item, action);
    Told += "axd"[static_cast<int>(action)];
  }
  void Update(TCollectionItem* item) override {
    TFuzzySets::Update(item);
    Told += item ? 'i' : 'l';
  }
};

class TTellingVariable final : public TFuzzyVariable {
 public:
  static TFuzzyVariableClass Class() {
    static constexpr TFuzzyVariableDescriptor descriptor{
        "TTellingVariable", []() -> TFuzzyVariable* { return new TTellingVariable; }};
    return &descriptor;
  }

 protected:
  TFuzzySets* CreateItems() override { return new TTellingSets(this, FSetClass); }
};

class TTellingLogic final : public TFuzzyLogic {
 protected:
  TFuzzyVariables* CreateVariables() override {
    return new TFuzzyVariables(this, TTellingVariable::Class());
  }
};

TEST(Descendant, OfOwnedSetListsIsMadeByItsVariableAndTold) {
  TTellingSets::Told.clear();
  {
    TTellingLogic fuzzy;
    fuzzy.SetAutoTerms(false);
    TFuzzyVariable* variable = fuzzy.GetItems()->Add("v");
    variable->GetItems()->Add()->SetComment("c");
    variable->GetItems()->Add();
    variable->GetItems()->Delete(0);
    EXPECT_EQ(TTellingSets::Told, "alialdxl");
    fuzzy.GetItems()->Add()->Assign(variable);
    EXPECT_EQ(TTellingSets::Told.substr(8), "al");
  }
  EXPECT_EQ(TTellingSets::Told.substr(10), "xx");
}

/// A table that leaves one name out, and tells.
class TTellingTable final : public TIFuzzySets {
 public:
  using TIFuzzySets::Add;
  using TIFuzzySets::TIFuzzySets;
  static inline std::string Told;

  void Add(const Ref<IFuzzySet>& set) override {
    Told += "+" + set->GetName().Utf8();
    if (set->GetName() != "no") TIFuzzySets::Add(set);
  }
  void Clear() override {
    Told += "*";
    TIFuzzySets::Clear();
  }

 protected:
  Ref<IFuzzySet> DoRemove(const TString& key, std::int32_t hash,
                          TKeyedNotification notification) override {
    Told += "-" + key.Utf8();
    return TIFuzzySets::DoRemove(key, hash, notification);
  }
};

class TTableVariable final : public TIFuzzyVariable {
 public:
  static TIFuzzyVariableClass Class() {
    static constexpr TIFuzzyVariableDescriptor descriptor{
        "TTableVariable", []() -> TIFuzzyVariable* { return new TTableVariable; }};
    return &descriptor;
  }
  TIFuzzyVariableClass GetClass() const override { return Class(); }

 protected:
  TIFuzzySets* CreateItems() override { return new TTellingTable(this); }
};

class TVariableTable final : public TFuzzyVariableTable {
 public:
  using TFuzzyVariableTable::Add;
  using TFuzzyVariableTable::TFuzzyVariableTable;
  void Add(const Ref<IFuzzyVariable>& variable) override {
    variable->SetUnits("seen");
    TFuzzyVariableTable::Add(variable);
  }
};

class TTableLogic final : public TIFuzzyLogic {
 public:
  TTableLogic() { FItemClass = TTableVariable::Class(); }

 protected:
  TFuzzyVariableTable* CreateVariables() override { return new TVariableTable(this); }
};

TEST(Descendant, OfCountedSetTablesIsMadeByItsVariableAndTakesWhatItWill) {
  TTellingTable::Told.clear();
  TTableLogic fuzzy;
  fuzzy.SetAutoTerms(false);
  Ref<IFuzzyVariable> variable = fuzzy.NewVariable("v");
  fuzzy.GetItems()->Add(variable);
  EXPECT_EQ(variable->GetUnits(), "seen");
  const Ref<IFuzzySet> set = variable->Add("a");
  variable->Add("no");
  EXPECT_EQ(variable->GetCount(), 1);
  set->SetName("b");
  set->SetVariable(nullptr);
  set->SetVariable(variable);
  set->SetName("no");
  EXPECT_EQ(variable->GetCount(), 0);
  set->SetName("c");
  EXPECT_EQ(TTellingTable::Told, "+a+no-a+b-b+b-b+no+c");
  const Ref<IFuzzyVariable> copy = Query<IFuzzyVariable>(variable->Clone().Get());
  EXPECT_EQ(TTellingTable::Told.substr(20), "*+c");
  EXPECT_EQ(copy->GetCount(), 1);
  fuzzy.GetItems()->Clear();
  variable = nullptr;
  EXPECT_EQ(TTellingTable::Told.substr(23), "*") << "as the last release clears it";
}

}  // namespace
}  // namespace fzy::test
