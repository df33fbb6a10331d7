#include <functional>

#include <gtest/gtest.h>

#include "fuzzylogic/model/FuzzyLogic.h"
#include "tests/engine/Sets.h"

namespace fzy::test {
namespace {

struct TShape {
  const char* Name;
  void (*Make)(TFuzzySet&);
  const char* Points;
  TFuzzySetType Type;
};

void PrintTo(const TShape& shape, std::ostream* out) { *out << shape.Name; }

class Shape : public testing::TestWithParam<TShape> {};

TEST_P(Shape, HasItsPointsAndRecordsItsType) {
  const auto set = MakeSet("");
  GetParam().Make(*set);
  EXPECT_EQ(Text(set.Get()), GetParam().Points);
  EXPECT_EQ(set->GetSetType(), GetParam().Type);
  EXPECT_FALSE(set->GetValues()->IsUpdating());
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Shape,
    testing::Values(
        TShape{"Triangle", [](TFuzzySet& s) { s.CreateTriangleFunctionValues(0, 2, 3); },
               "0,0 2,1 3,0", fstTriangle},
        TShape{"TriangleRightBelowLeft",
               [](TFuzzySet& s) { s.CreateTriangleFunctionValues(3, 1, 2); }, "3,0 3,1 3,0",
               fstTriangle},
        TShape{"TriangleMiddleBeyondRight",
               [](TFuzzySet& s) { s.CreateTriangleFunctionValues(0, 9, 2); }, "0,0 2,1 2,0",
               fstTriangle},
        TShape{"Growth", [](TFuzzySet& s) { s.CreateCurveValues(5, 0, 1, 0.5, true); },
               "0,0 0.25,0.125 0.5,0.5 0.75,0.875 1,1", fstGrowthCurve},
        TShape{"Decline", [](TFuzzySet& s) { s.CreateCurveValues(5, 0, 1, 0.5, false); },
               "0,1 0.25,0.875 0.5,0.5 0.75,0.125 1,0", fstDeclineCurve},
        TShape{"GrowthOfTooFewPoints", [](TFuzzySet& s) { s.CreateCurveValues(-4, 0, 1, 9, true); },
               "0,0 0.5,0.5 1,1", fstGrowthCurve},
        TShape{"GrowthWithoutWidth", [](TFuzzySet& s) { s.CreateCurveValues(3, 2, 2, 2, true); },
               "2,0 2,0 2,0", fstGrowthCurve},
        TShape{"PIOdd", [](TFuzzySet& s) { s.CreatePIFunctionValues(7, 0, 60, 30); },
               "0,0 10,0.222222 20,0.777778 30,1 40,0.777778 50,0.222222 60,0", fstPICurve},
        TShape{"PIEven", [](TFuzzySet& s) { s.CreatePIFunctionValues(8, 0, 80, 40); },
               "0,0 10,0.125 20,0.5 30,0.875 50,0.875 60,0.5 70,0.125 80,0", fstPICurve},
        TShape{"PIOfThree", [](TFuzzySet& s) { s.CreatePIFunctionValues(3, 0, 100, 50); },
               "0,0 50,1 75,0.5 100,0", fstPICurve},
        TShape{"PICenterBeyondRight", [](TFuzzySet& s) { s.CreatePIFunctionValues(5, 0, 4, 9); },
               "0,0 2,0.5 4,1", fstPICurve},
        TShape{"PIByRange", [](TFuzzySet& s) { s.CreatePIFunctionValues(5, 2, 1); },
               "-1,0 0,0.5 1,1 2,0.5 3,0", fstPICurve},
        TShape{"Beta", [](TFuzzySet& s) { s.CreateBetaCurveFunctionValues(5, 2, 0, 1); },
               "-2,0.2 -1,0.5 0,1 1,0.5 2,0.2", fstBetaCurve},
        TShape{"BetaWeighted",
               [](TFuzzySet& s) { s.CreateBetaCurveFunctionValues(1, 2, 0, 1, 0.25); },
               "-2,0.5 0,1 2,0.5", fstBetaCurve},
        // At the center the bell is 1 however narrow it is.
        TShape{"BetaWithoutInflection",
               [](TFuzzySet& s) { s.CreateBetaCurveFunctionValues(3, 1, 5, 0); }, "4,0 5,1 6,0",
               fstBetaCurve},
        TShape{"Crisp", [](TFuzzySet& s) { s.CreateCrispValue(5); }, "5,0 5,1 5,0",
               fstUserDefined}),
    [](const auto& param) { return std::string(param.param.Name); });

TEST(Shapes, JoinThePointsThereButACrispValueStandsAlone) {
  const auto set = MakeSet("9,1");
  set->CreateTriangleFunctionValues(0, 1, 2);
  EXPECT_EQ(Text(set.Get()), "0,0 1,1 2,0 9,1");
  set->CreateCrispValue(-0.5);
  EXPECT_EQ(Text(set.Get()), "-0.5,0 -0.5,1 -0.5,0");
  EXPECT_EQ(set->GetExpression(), "-0.5000");
}

TEST(Shapes, RecordTheInflectionPointOnly) {
  const auto set = MakeSet("");
  set->CreateCurveValues(3, 0, 1, 77, true);
  EXPECT_EQ(set->GetInflectionPoint(), 77);
  set->CreatePIFunctionValues(5, 0, 4, 2);
  EXPECT_EQ(set->GetInflectionPoint(), 3);  // that of the right half
  set->CreateBetaCurveFunctionValues(3, 1, 0, 6);
  EXPECT_EQ(set->GetInflectionPoint(), 6);
}

TEST(Shapes, RefuseARangeOfWrongOrder) {
  const auto set = MakeSet("0,1");
  const std::string refusal =
      "Invalid range arguments.  Left (2.0000) is greater than right (1.5000)";
  EXPECT_EQ(MessageOf([&] { set->CreateCurveValues(3, 2, 1.5, 0, true); }), refusal);
  EXPECT_EQ(MessageOf([&] { set->CreatePIFunctionValues(3, 2, 1.5, 0); }), refusal);
  EXPECT_EQ(MessageOf([&] { set->CreatePIFunctionValues(3, -0.25, 1.75); }), refusal);
  EXPECT_EQ(MessageOf([&] { set->CreatePIFunctionValues(-1, 0, 1, 0.5); }),
            "Invalid operation: \"CreatePIFunctionValues\".  Invalid argument: -1");
  EXPECT_EQ(Text(set.Get()), "0,1");
}

TEST(Shapes, AreGeneratedOverTheRangeByType) {
  struct {
    TFuzzySetType Type;
    const char* Points;
  } const cases[] = {
      {fstTriangle, "0.166667,0 0.5,1 0.833333,0"},
      {fstGrowthCurve,
       "0.333333,0 0.388889,0.055556 0.444444,0.222222 0.5,0.5 0.555556,0.777778 "
       "0.611111,0.944444 0.666667,1"},
      {fstDeclineCurve,
       "0.333333,1 0.388889,0.944444 0.444444,0.777778 0.5,0.5 0.555556,0.222222 "
       "0.611111,0.055556 0.666667,0"},
      {fstPICurve,
       "0.166667,0 0.277778,0.222222 0.388889,0.777778 0.5,1 0.611111,0.777778 "
       "0.722222,0.222222 0.833333,0"},
      {fstBetaCurve,
       "0.166667,0.058824 0.277778,0.123288 0.388889,0.36 0.5,1 0.611111,0.36 "
       "0.722222,0.123288 0.833333,0.058824"},
  };
  const auto variable = MakeVariable(0, 1);
  TFuzzySet* set = variable->GetItems()->Add();
  for (const auto& c : cases) {
    set->SetSetType(c.Type);
    EXPECT_EQ(set->GetSetType(), c.Type);
    EXPECT_EQ(Text(set), c.Points);
  }
  set->SetSetType(fstUserDefined);  // leaves the points
  EXPECT_EQ(set->GetValues()->GetCount(), 7);

  // A range without width has shapes without width.
  variable->SetMaximum(0);
  for (const auto& c : cases) {
    set->SetSetType(c.Type);
    EXPECT_EQ(set->GetSetType(), c.Type);
    for (const TFuzzyPoint& point : PointsOf(*set)) EXPECT_EQ(point.X, 0);
  }
}

TEST(Shapes, TakeTheNumberOfPointsFromTheComponent) {
  TFuzzyLogic fuzzy;
  fuzzy.SetNumFunctionValues(11);
  TFuzzySet* set = fuzzy.GetItems()->Add("x")->GetItems()->Add("s");
  set->SetSetType(fstPICurve);
  EXPECT_EQ(set->GetValues()->GetCount(), 11);
}

}  // namespace
}  // namespace fzy::test
