#include <functional>
#include <limits>
#include <stdexcept>

#include <gtest/gtest.h>

#include "fuzzylogic/engine/FuzzyPointWalk.h"
#include "tests/engine/Sets.h"

// What is no number, or not finite, and what callbacks throw: nothing of it breaks a set.

namespace fzy::test {
namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

using TAction = std::function<void(TFuzzySet&)>;

TFuzzySetValue& Point(TFuzzySet& set, int index) { return *set.GetValues()->GetItem(index); }

class Refusal : public testing::Test {
 protected:
  Refusal() : Variable(MakeVariable(0, 10)) {
    Set = static_cast<TTellingSet*>(TFuzzySet::Create(Variable->GetItems(), TTellingSet::Class()));
    Set->SetName("s");
    Set->CreateTriangleFunctionValues(0, 5, 10);
    Set->SetExpression("e");
    Set->Told.clear();
  }

  /// The action must be refused with this reason and leave everything as it was.
  void ExpectRefused(const std::string& message, const TAction& action) {
    EXPECT_EQ(MessageOf([&] { action(*Set); }), "Invalid operation: " + message);
    EXPECT_EQ(Text(Set), "0,0 5,1 10,0") << message;
    EXPECT_EQ(Set->GetName(), "s") << message;
    EXPECT_EQ(Set->GetExpression(), "e") << message;
    EXPECT_EQ(Set->GetSetType(), fstTriangle) << message;
    EXPECT_EQ(Set->Told, "") << message;
    EXPECT_FALSE(Set->GetValues()->IsUpdating()) << message;
    EXPECT_EQ(Variable->GetItems()->GetCount(), 1) << message;
  }

  TOwned<TFuzzyVariable> Variable;
  TTellingSet* Set;
};

TEST_F(Refusal, WhatIsNotANumberIsRefusedBeforeAnythingChanges) {
  const std::pair<const char*, TAction> cases[] = {
      {"SetX", [](TFuzzySet& s) { Point(s, 1).SetX(NaN); }},
      {"SetY", [](TFuzzySet& s) { Point(s, 1).SetY(NaN); }},
      {"SetX", [](TFuzzySet& s) { Point(s, 1).SetValue(NaN, 1); }},
      {"SetValue", [](TFuzzySet& s) { Point(s, 1).SetValue(2, NaN); }},
      {"SetX", [](TFuzzySet& s) { s.GetValues()->Add(NaN, 0); }},
      {"Add", [](TFuzzySet& s) { s.GetValues()->Add(0, NaN); }},
      {"DegreeOfMembership", [](TFuzzySet& s) { s.DegreeOfMembership(NaN); }},
      {"CreateTriangleFunctionValues",
       [](TFuzzySet& s) { s.CreateTriangleFunctionValues(0, NaN, 1); }},
      {"CreateCurveValues", [](TFuzzySet& s) { s.CreateCurveValues(5, NaN, 1, 0, true); }},
      {"CreateCurveValues", [](TFuzzySet& s) { s.CreateCurveValues(5, 0, NaN, 0, true); }},
      {"CreateCurveValues", [](TFuzzySet& s) { s.CreateCurveValues(5, 0, 1, NaN, true); }},
      {"CreatePIFunctionValues", [](TFuzzySet& s) { s.CreatePIFunctionValues(5, 0, 1, NaN); }},
      {"CreateCurveValues", [](TFuzzySet& s) { s.CreatePIFunctionValues(5, NaN, 1); }},
      {"CreateBetaCurveFunctionValues",
       [](TFuzzySet& s) { s.CreateBetaCurveFunctionValues(5, 1, 0, 1, NaN); }},
      {"CreateBetaCurveFunctionValues",
       [](TFuzzySet& s) { s.CreateBetaCurveFunctionValues(5, 1, 0, 0, 0); }},  // 0 / 0
      {"CreateCrispValue", [](TFuzzySet& s) { s.CreateCrispValue(NaN); }},
      {"AlphaCutoff", [](TFuzzySet& s) { s.AlphaCutoff(NaN, true); }},
      {"Cutoff", [](TFuzzySet& s) { s.Cutoff(NaN, true); }},
      {"Hedge", [](TFuzzySet& s) { s.Hedge(bfhAdd, NaN, true); }},
      {"Hedge", [](TFuzzySet& s) { s.Hedge(bfhMultiply, Inf, false); }},  // infinity times 0
      {"Hedge", [](TFuzzySet& s) { s.Correlate(NaN, fcmMinimum); }},
  };
  for (const auto& [operation, action] : cases)
    ExpectRefused("\"" + std::string(operation) + "\".  Not a number", action);
}

TEST_F(Refusal, WhatWouldNotBeFiniteIsRefusedBeforeAnythingChanges) {
  const std::pair<const char*, TAction> cases[] = {
      {"SetY", [](TFuzzySet& s) { Point(s, 1).SetY(Inf); }},
      {"SetValue", [](TFuzzySet& s) { Point(s, 1).SetValue(2, Inf); }},
      {"Add", [](TFuzzySet& s) { s.GetValues()->Add(0, Inf); }},
      {"CreateCurveValues", [](TFuzzySet& s) { s.CreateCurveValues(5, 0, Inf, 0, true); }},
      {"CreateCurveValues", [](TFuzzySet& s) { s.CreateCurveValues(5, -1e308, 1e308, 0, true); }},
      {"CreateBetaCurveFunctionValues",
       [](TFuzzySet& s) { s.CreateBetaCurveFunctionValues(5, 1e308, 0, 1); }},
      {"CreateBetaCurveFunctionValues",
       [](TFuzzySet& s) { s.CreateBetaCurveFunctionValues(3, 1, 0, 1, -1); }},  // 1 / 0
      {"/", [](TFuzzySet& s) { s.Hedge(bfhDivide, 0, true); }},
      {"Hedge", [](TFuzzySet& s) { s.Hedge(bfhAdd, Inf, true); }},
      {"Hedge", [](TFuzzySet& s) { s.Hedge(bfhCutLess, Inf, true); }},
  };
  for (const auto& [operation, action] : cases)
    ExpectRefused("\"" + std::string(operation) + "\".  Not a finite number", action);

  Variable->SetMinimum(-1.5e308);
  Variable->SetMaximum(1.5e308);
  ExpectRefused("\"SetSetType\".  Not a finite number",
                [](TFuzzySet& s) { s.SetSetType(fstPICurve); });
  ExpectRefused("\"SetX\".  Not a finite number", [](TFuzzySet& s) { s.Hedge(fhAbout); });
  Variable->SetMinimum(3);
  Variable->SetMaximum(3);
  ExpectRefused("\"approximation\".  Not a finite number", [](TFuzzySet& s) { s.Hedge(fhNear); });
}

TEST(Refusals, SumsThatOverflowCreateNothing) {
  const auto variable = MakeVariable(0, 1);
  TFuzzySet* huge = MakeSet("0,1.5e308 1,1e308", "", variable->GetItems()).Release();
  EXPECT_EQ(MessageOf([&] { huge->Union(huge, foSum); }),
            "Invalid operation: \"Add\".  Not a finite number");
  EXPECT_EQ(variable->GetItems()->GetCount(), 1);

  TFuzzySetValues list;
  list.Add(-1.5e308, 0);
  list.Add(1.5e308, 1);
  EXPECT_THROW(list.Expand(5), EFzyException);
  EXPECT_THROW(list.ExpandSimple(5), EFzyException);
  EXPECT_EQ(list.GetCount(), 2);
  EXPECT_FALSE(list.IsUpdating());
}

TEST(Refusals, AnInfiniteXIsClampedWhereThereIsARange) {
  const auto variable = MakeVariable(0, 10);
  const std::pair<TAction, const char*> cases[] = {
      {[](TFuzzySet& s) { Point(s, 0).SetX(Inf); }, "2,1 3,0 10,0.5"},
      {[](TFuzzySet& s) { Point(s, 2).SetValue(-Inf, -Inf); }, "0,0 1,0.5 2,1"},
      {[](TFuzzySet& s) { Point(s, 1).SetY(-Inf); }, "1,0.5 2,0 3,0"},
      {[](TFuzzySet& s) { s.GetValues()->Add(-Inf, 1); }, "0,1 1,0.5 2,1 3,0"},
      {[](TFuzzySet& s) { s.CreateCrispValue(Inf); }, "10,0 10,1 10,0"},
      {[](TFuzzySet& s) { s.Hedge(bfhSubtract, Inf, false); }, "0,0.5 0,1 0,0"},
      {[](TFuzzySet& s) { s.Hedge(bfhCutGreater, Inf, true); }, "1,0.5 2,1 3,0"},
  };
  for (const auto& [action, points] : cases) {
    TFuzzySet* set = MakeSet("1,0.5 2,1 3,0", "", variable->GetItems()).Release();
    action(*set);
    EXPECT_EQ(Text(set), points);
  }
  const auto set = MakeSet("1,0.5 2,1 3,0");
  EXPECT_EQ(set->DegreeOfMembership(-Inf), 0.5);
  EXPECT_EQ(set->DegreeOfMembership(Inf), 0);
  const TOwned<TFuzzySet> cut(set->Cutoff(Inf, false));
  EXPECT_EQ(Text(cut.Get()), Text(set.Get()));

  TFuzzySetValues list;
  EXPECT_EQ(MessageOf([&] { list.Add(Inf, 0); }),
            "Invalid operation: \"SetX\".  Not a finite number");
  EXPECT_EQ(list.GetCount(), 0);
  list.Add(1, 1);
  EXPECT_THROW(list[0]->SetX(-Inf), EFzyException);
  EXPECT_THROW(list[0]->SetValue(Inf, 0), EFzyException);
  EXPECT_THROW(list[0]->SetValue(0, -Inf), EFzyException);
  EXPECT_EQ(Text(list.Points()), "1,1");
}

/// A set whose point callbacks throw while `Throwing` is set.
class TThrowingSet final : public TFuzzySet {
 public:
  static inline bool Throwing = false;

  static TFuzzySetClass Class() {
    static constexpr TFuzzySetDescriptor descriptor{
        "TThrowingSet", []() -> TFuzzySet* { return new TThrowingSet; }};
    return &descriptor;
  }
  TFuzzySetClass GetClass() const override { return Class(); }
  void UpdateFuzzySetValue(TFuzzySetValue* value) override {
    TFuzzySet::UpdateFuzzySetValue(value);
    if (Throwing) throw std::runtime_error("told");
  }
  void UpdateFuzzySetValues() override {
    TFuzzySet::UpdateFuzzySetValues();
    if (Throwing) throw std::runtime_error("told");
  }
};

TEST(Throwing, ACallbackOfThePointsLeavesNoBlockOpenAndNoSetBehind) {
  const TAction cases[] = {
      [](TFuzzySet& s) { Point(s, 0).SetX(1.5); },
      [](TFuzzySet& s) { Point(s, 0).SetY(1); },
      [](TFuzzySet& s) { s.GetValues()->Add(0.5, 1); },
      [](TFuzzySet& s) { s.GetValues()->Insert(1); },
      [](TFuzzySet& s) { s.GetValues()->Delete(1); },
      [](TFuzzySet& s) { s.GetValues()->Clear(); },
      [](TFuzzySet& s) { s.GetValues()->Expand(9); },
      [](TFuzzySet& s) { s.GetValues()->ExpandSimple(9); },
      [](TFuzzySet& s) { s.GetValues()->Append(s.GetValues()); },
      [](TFuzzySet& s) { s.CreatePIFunctionValues(5, 0, 2, 1); },
      [](TFuzzySet& s) { s.CreateCrispValue(1); },
      [](TFuzzySet& s) { s.SetSetType(fstBetaCurve); },
      [](TFuzzySet& s) { s.Hedge(fhNot); },
      [](TFuzzySet& s) { s.Hedge(fhVery); },
      [](TFuzzySet& s) { s.Hedge(fhAbove); },
      [](TFuzzySet& s) { s.Hedge(fhAbout); },
      [](TFuzzySet& s) { s.Hedge(fhSlightly); },
      [](TFuzzySet& s) { s.Hedge(fhPositively); },
      [](TFuzzySet& s) { s.Hedge(bfhAdd, 0.1, false); },
      [](TFuzzySet& s) { s.Clone(); },
      [](TFuzzySet& s) { s.Union(&s); },
      [](TFuzzySet& s) { s.AlphaCutoff(0.5, false); },
      [](TFuzzySet& s) { s.Cutoff(0.5, true); },
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    SCOPED_TRACE("case " + std::to_string(i));
    const auto variable = MakeVariable(0, 2);
    TFuzzySet* set = TFuzzySet::Create(variable->GetItems(), TThrowingSet::Class());
    Fill(*set, Parse("0,0 1,0.9 2,0"));
    TThrowingSet::Throwing = true;
    EXPECT_THROW(cases[i](*set), std::runtime_error);
    TThrowingSet::Throwing = false;
    EXPECT_FALSE(set->GetValues()->IsUpdating());
    EXPECT_FALSE(variable->GetItems()->IsUpdating());
    EXPECT_EQ(variable->GetItems()->GetCount(), 1);
    EXPECT_EQ(set->GetIndex(), 0);
    set->CreateTriangleFunctionValues(0, 0.5, 1);
    EXPECT_EQ(set->GetSetType(), fstTriangle);
  }
}

TEST(Throwing, ACallbackOfAWalkLeavesNoResultBehind) {
  const auto variable = MakeVariable(0, 2);
  TFuzzySet* set = MakeSet("0,0 1,1", "", variable->GetItems()).Release();
  EXPECT_THROW(set->Operator(set, "x",
                             [](TFuzzySetValues& r, double, double, double, double) -> bool {
                               r.Add();
                               throw std::runtime_error("enough");
                             }),
               std::runtime_error);
  EXPECT_THROW(
      set->Iterate(
          set, [](double, double, double, double) -> bool { throw std::runtime_error("enough"); }),
      std::runtime_error);
  EXPECT_EQ(variable->GetItems()->GetCount(), 1);
  EXPECT_FALSE(variable->GetItems()->IsUpdating());
}

TEST(PointWalk, CursorsMoveOnAndTheWinnerIsCopied) {
  const auto a = MakeSet("0,0.1 1,0.2");
  const auto b = MakeSet("0,0.3 2,0.4");
  for (const auto& [y1, y2, flag, copied] :
       {std::tuple(0.5, 0.5, true, true), std::tuple(0.5, 0.5, false, false),
        std::tuple(0.4, 0.5, false, true), std::tuple(0.4, 0.5, true, false)}) {
    const auto result = MakeSet("");
    TFuzzySetValues cursors;
    TUpdateBlock block(cursors);
    for (const TFuzzyPoint& point : Parse("0,0.1 0,0.3 7,7 8,8")) cursors.Add(point.X, point.Y);
    int i = 0, j = 1;
    Add1AndIncrement2(result.Get(), cursors[0], cursors[1], cursors[2], cursors[3], i, j, y1, y2,
                      a->GetValues(), b->GetValues(), 5, flag);
    EXPECT_EQ(Text(result.Get()), copied ? "0,0.1" : "");
    EXPECT_EQ(i, 1);
    EXPECT_EQ(j, 2);
    EXPECT_EQ(Text(cursors.Points()), "1,0.2 5,0.3 0,0.1 0,0.3");

    TFuzzySetValue& other = *cursors[3];
    AddAndIncrement(result.Get(), cursors[0], cursors[2], &other, i, y1, y2, a->GetValues(), 9,
                    flag);
    EXPECT_EQ(other.GetPoint(), y1 == y2 ? (TFuzzyPoint{1, 0.2}) : (TFuzzyPoint{0, 0.3}));
    EXPECT_EQ(cursors[0]->GetPoint(), (TFuzzyPoint{9, 0.2}));
  }
}

}  // namespace
}  // namespace fzy::test
