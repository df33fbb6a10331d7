#pragma once

#include "fuzzylogic/interfaces/IFuzzyVariable.h"
#include "tests/engine/Sets.h"

// Both object models in one form, for tests of what they promise alike.

namespace fzy::test {

inline TPoints PointsOf(IFuzzySet& set) {
  TPoints points;
  for (int i = 0; i < set.GetCount(); ++i) points.push_back({set.GetXValues(i), set.GetYValues(i)});
  return points;
}
inline std::string Text(const Ref<IFuzzySet>& set) { return Text(PointsOf(*set)); }

/// A set is held by a `THandle`, one of a variable by what `AddSet` gives; either is an operand, as
/// it is or by its `Get()`. `ClassOf` is the object itself.
struct TOwnedModel {
  static constexpr bool Counted = false;
  using TClass = TFuzzySet;
  using THandle = TOwned<TFuzzySet>;
  static auto MakeVariable(double min, double max) { return test::MakeVariable(min, max); }
  static auto MakeSet(const auto&... traits) { return test::MakeSet(traits...); }
  static auto AddSet(const auto&... traits) { return test::AddSet(traits...); }
  static int CountOf(const auto& variable) { return variable->GetItems()->GetCount(); }
  static TFuzzySet& ClassOf(const auto& set) { return *set; }
};

struct TCountedModel {
  static constexpr bool Counted = true;
  using TClass = TIFuzzySet;
  using THandle = Ref<IFuzzySet>;
  static Ref<IFuzzyVariable> MakeVariable(double minimum, double maximum) {
    const Ref<IFuzzyVariable> variable = TIFuzzyVariable::Create();
    variable->SetMaximum(maximum);
    variable->SetMinimum(minimum);
    return variable;
  }
  static THandle AddSet(const Ref<IFuzzyVariable>& variable, const std::string& points,
                        const TString& name = "", TIFuzzySetClass c = TIFuzzySet::Class()) {
    const Ref<TIFuzzySet> set = TIFuzzySet::Create(variable, name, c);
    Fill(*set->GetValues(), Parse(points));
    return set;
  }
  static auto MakeSet(const auto&... traits) { return AddSet(nullptr, traits...); }
  static int CountOf(const auto& variable) { return variable->GetCount(); }
  static TIFuzzySet& ClassOf(const THandle& set) { return dynamic_cast<TIFuzzySet&>(*set); }
};

/// Declares a suite of tests that run for both models.
using TModels = testing::Types<TOwnedModel, TCountedModel>;
#define MODEL_TEST_SUITE(Name)          \
  template <class Model>                \
  class Name : public testing::Test {}; \
  TYPED_TEST_SUITE(Name, TModels)

}  // namespace fzy::test
