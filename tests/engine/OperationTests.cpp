#include <gtest/gtest.h>

#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "tests/engine/Models.h"
#include "tests/engine/PlainList.h"

// Combinations, hedges, cuts, inference and measures, at places worked out by hand.

namespace fzy::test {
namespace {

using S = TFuzzySet;

MODEL_TEST_SUITE(Operation);
MODEL_TEST_SUITE(Hedge);
MODEL_TEST_SUITE(Cut);
MODEL_TEST_SUITE(Measure);

TYPED_TEST(Operation, EveryFamilyCombinesTwoDegrees) {
  using C = typename TypeParam::TClass;
  // clang-format off
  const struct {
    TFuzzyOperation Operation; const char* Name; double Intersection, Union; decltype(&C::FuzzyOperatorMin) And, Or;
  } cases[] = {
      {foZadeh, "", 0.4, 0.8, &C::FuzzyOperatorMin, &C::FuzzyOperatorMax},
      {foMean, "-mean", 0.6, 0.666667, &C::FuzzyOperatorMean, &C::FuzzyOperatorUnionMean},
      {foMeanSqr, "-meansqr", 0.36, 0.36, &C::FuzzyOperatorMeanSqr, &C::FuzzyOperatorMeanSqr},
      {foMeanSqrt, "-meansqrt", 0.774597, 0.774597, &C::FuzzyOperatorMeanSqrt, &C::FuzzyOperatorMeanSqrt},
      {foProduct, "-product", 0.32, 0.88, &C::FuzzyOperatorIntersectionProduct, &C::FuzzyOperatorUnionProduct},
      {foBoundedSum, "-boundedsum", 0.2, 1, &C::FuzzyOperatorIntersectionBoundedSum, &C::FuzzyOperatorUnionBoundedSum},
      {foSum, "-sum", 0, 1.2, nullptr, &C::FuzzyOperatorUnionSum},
  };
  // clang-format on
  const auto a = TypeParam::MakeSet("5,0.8", "a");
  const auto b = TypeParam::MakeSet("5,0.4", "b");
  for (const auto& c : cases) {
    for (const bool all : {true, false}) {
      if (!all && !c.And) continue;
      const typename TypeParam::THandle result(all ? a->Union(b.Get(), c.Operation)
                                                   : a->Intersection(b.Get(), c.Operation));
      const std::string points = "5," + Text(all ? c.Union : c.Intersection);
      EXPECT_EQ(Text(result), points);
      EXPECT_EQ(result->GetName(), (all ? "a or" : "a and") + std::string(c.Name) + " b");
      const auto callback = std::bind_front(all ? c.Or : c.And, &TypeParam::ClassOf(a));
      EXPECT_EQ(Text(typename TypeParam::THandle(a->Operator(b.Get(), "x", callback))), points);
    }
  }
  const typename TypeParam::THandle nothing(
      TypeParam::MakeSet("5,0.1")->Intersection(b.Get(), foBoundedSum));
  EXPECT_EQ(Text(nothing), "5,0");
}

TYPED_TEST(Operation, LeavesANameAnExpressionAndASetOfItsOwnClass) {
  using TTells = TTelling<typename TypeParam::TClass>;
  const char* const cases[][6] = {
      {"a", "", "b", "", "a or b", "a or b"},
      {"very tall", "", "b", "", "[very tall] or b", "[very tall] or b"},
      {"a", "x and y", "b", "[u]", "a or b", "[x and y] or [u]"},
      {"", "", "", "", " or ", " or "}};
  const auto variable = TypeParam::MakeVariable(0, 1);
  for (const auto& [nameA, expressionA, nameB, expressionB, name, expression] : cases) {
    const auto a = TypeParam::AddSet(variable, "0,1", nameA, TTells::Class());
    const auto b = TypeParam::MakeSet("", nameB);
    a->SetExpression(expressionA);
    b->SetExpression(expressionB);
    const auto result = a->Union(b.Get());
    EXPECT_EQ(result->GetName(), name);
    EXPECT_EQ(result->GetExpression(), expression);
    EXPECT_TRUE(result->GetSetType() == fstUserDefined && result->GetVariable() == variable.Get());
    EXPECT_EQ(dynamic_cast<const TTells&>(*result).Told, "l") << "one block";
  }
}

TYPED_TEST(Operation, RefusesWhatHasNoFormulaAndCreatesNothing) {
  const auto variable = TypeParam::MakeVariable(0, 1);
  const auto a = TypeParam::AddSet(variable, "0,1");
  const int sets = TypeParam::CountOf(variable);
  const auto unknown = static_cast<TFuzzyOperation>(99);
  const std::string sum = "Invalid fuzzy operation: \"foSum:";
  EXPECT_EQ(MessageOf([&] { a->Intersection(a, foSum); }), sum);
  EXPECT_EQ(MessageOf([&] { a->Infer(a, fimAdditive, true); }), sum);
  EXPECT_THROW(a->Intersection(a, unknown), EFzyException);
  EXPECT_THROW(a->Union(a, unknown), EFzyException);
  EXPECT_EQ(MessageOf([&] { a->Union(nullptr); }), Refusal("Union", "No fuzzy set given"));
  EXPECT_EQ(TypeParam::CountOf(variable), sets);
}

TYPED_TEST(Operation, ACallbackThatStopsLeavesThePartialResultOneThatThrowsNone) {
  const auto variable = TypeParam::MakeVariable(0, 3);
  const auto a = TypeParam::AddSet(variable, "0,0 1,0 2,0", "a");
  const auto b = TypeParam::AddSet(variable, "0,1 3,1", "b");
  bool throwing = false;
  int left = 3;
  const auto callback = [&](auto& r, double x, double y, double, double) {
    TypeParam::ClassOf(a).FuzzyOperatorMin(r, x, y, x, y);
    if (throwing) throw std::runtime_error("enough");
    return --left == 0;
  };
  const auto result = a->Operator(b, "stopped", callback);
  EXPECT_EQ(Text(result), "0,0 1,0 2,0");  // not thinned
  EXPECT_EQ(result->GetExpression(), "a stopped b");
  const int sets = TypeParam::CountOf(variable);
  throwing = true;
  EXPECT_THROW(a->Operator(b, "stopped", callback), std::runtime_error);
  EXPECT_EQ(TypeParam::CountOf(variable), sets);
}

// Where they meet, the property tests of the walk tell.
TEST(Operation, SegmentsMeet) {
  const auto set = MakeSet("");
  double x = 0, y = 0;
  EXPECT_TRUE(set->LineSegmentIntersects(0, 0, 2, 2, 0, 3, 3, 0, x, y));
  EXPECT_TRUE(x == 1.5 && y == 1.5);
  EXPECT_FALSE(set->LineSegmentIntersects(0, 0, 2, 2, 0, 1, 2, 3, x, y));
  const auto points = MakeSet("0,0 1,3 3,0 4,4");
  TFuzzySetValues& p = *points->GetValues();
  EXPECT_EQ(set->LineSegmentIntersects(p[0], p[2], p[1], p[3]), nullptr);
  const TOwned<TFuzzySetValue> at(set->LineSegmentIntersects(p[0], p[3], p[1], p[2]));
  ASSERT_TRUE(at);
  EXPECT_EQ(Text(at->GetX()) + Text(at->GetY()), "1.81.8");
}

TYPED_TEST(Operation, SetsOverlap) {
  // clang-format off
  const std::tuple<const char*, const char*, bool, bool> cases[] = {
      {"0,0 1,1 2,0", "2,0.5 6,1 7,0", true, true}, {"0,0 1,1 2,0", "2,0 6,1 7,0", false, false},
      {"0,0 1,1 2,0", "2,0 2,1 7,0", true, true},  // the run at the touching X counts
      {"0,0 1,1 2,0.5", "5,0 6,1", false, false},  // spans apart, tail or not
      {"0,0 4,0", "1,0 2,1 3,0", false, true}, {"0,0 4,0", "1,0 3,0", true, true},
      {"", "0,1", false, false}, {"0,1 2,1", "2.0002,1 3,1", false, false}};
  // clang-format on
  for (const auto& [first, second, forth, back] : cases) {
    const auto a = TypeParam::MakeSet(first), b = TypeParam::MakeSet(second);
    EXPECT_EQ(a->Intersects(b.Get()), forth) << first << " with " << second;
    EXPECT_EQ(b->Intersects(a.Get()), back) << second << " with " << first;
  }
}

TYPED_TEST(Hedge, EveryLinguisticHedgeOfATriangle) {
  const auto curve = [](const std::string& a, const std::string& b) {
    return "0,0 0.333333," + a + " 0.666667," + b + " 1,1 1.33333," + b + " 1.66667," + a + " 2,0";
  };
  // clang-format off
  const std::pair<TFuzzyHedge, std::string> cases[] = {
      {fhNot, "0,1 1,0 2,1"}, {fhAbove, "0,0 1,0 2,1"}, {fhBelow, "0,1 1,0 2,0"}, {fhNormalize, "0,0 1,1 2,0"},
      {fhSomewhat, curve("0.693361", "0.87358")}, {fhMoreOrLess, curve("0.57735", "0.816497")},
      {fhGreatly, curve("0.463463", "0.752898")}, {fhPlus, curve("0.253279", "0.602401")},
      {fhVery, curve("0.111111", "0.444444")}, {fhExtremely, curve("0.037037", "0.296296")},
      {fhPositively, curve("0.222222", "0.777778")}, {fhAbsolutely, curve("0.222222", "0.777778")},
      {fhDefinitely, curve("0.222222", "0.777778")}, {fhGenerally, curve("0.288675", "0.711325")}};
  // clang-format on
  for (const auto& [hedge, points] : cases) {
    const auto set = TypeParam::MakeSet("0,0 1,1 2,0", "tall");
    set->SetExpression("gone");  // with the points
    EXPECT_EQ(set->Hedge(hedge), set.Get());
    const TString word = HedgeNames[Ordinal(hedge)];
    EXPECT_EQ(Text(set), points) << word;
    EXPECT_EQ(set->GetName(), word + " tall");
    EXPECT_EQ(set->GetExpression(), "[" + word + " tall]");
    set->Hedge(fhNot);
    EXPECT_EQ(set->GetName(), "not [" + word + " tall]");
  }
}

TYPED_TEST(Hedge, AtTheEdgesOfTheirFormulas) {
  const char* seven = "0,0.25 1,0.5 2,0.9 3,1 4,0 5,1.5 6,1";  // nothing is added
  const std::tuple<TFuzzyHedge, const char*, const char*> cases[] = {
      {fhAbove, "0,0.2 1,0.8 2,0.8 3,0.3", "0,0 1,0 2,0 3,0.7"},
      {fhBelow, "0,0.2 1,0.8 2,0.8 3,0.3", "0,0.8 1,0 2,0 3,0"},
      {fhAbove, "0,0.2 1,1 2,1 3,0.4", "0,0 1,0 2,0 3,0.6"},
      {fhAbove, "0,0 1,0 2,0", "0,0 1,0 2,0"},
      {fhBelow, "0,0 1,0 2,0", "0,0 1,0 2,0"},
      {fhNormalize, "0,0.1 1,0.5 2,0.25", "0,0.2 1,1 2,0.5"},
      {fhNormalize, "0,0.5 1,1 2,4", "0,0.5 1,1 2,4"},  // 1 is the greatest
      {fhNormalize, "0,0 1,0", "0,0 1,0"},
      {fhPositively, seven, "0,0.125 1,0.5 2,0.98 3,1 4,0 5,0.5 6,1"},
  };
  for (const auto& [hedge, points, result] : cases)
    EXPECT_EQ(Text(TypeParam::MakeSet(points)->Hedge(hedge)), result);
  EXPECT_EQ(MessageOf([&] { TypeParam::MakeSet(seven)->Hedge(fhGenerally); }),
            Refusal("contrast", "Not a number"));
}

/// Bells around the points of a curve, on 50 points of the range, normalized.
TPoints PlainApproximation(const TPoints& points, double minimum, double maximum, double power) {
  TPlainList set(minimum, maximum), grid;
  set.Assign(points);
  set.Expand(7);
  grid.Assign({{minimum, 0}, {maximum, 0}});
  grid.Expand(50);
  const double width = set.Items.back().X - set.At(0).X;
  const double scale = width == 0 ? 0.2 : width / (maximum - minimum);
  double greatest = 0;
  for (TFuzzyPoint& at : grid.Items) {
    for (const TFuzzyPoint& p : set.Items)
      at.Y = std::max(at.Y, p.Y * 1 / (std::pow(std::fabs(at.X - p.X) * scale, power) + 1));
    if (greatest != 1) greatest = std::max(greatest, at.Y);
  }
  for (TFuzzyPoint& at : grid.Items) at.Y *= greatest != 0 ? 1 / greatest : 1;
  return grid.Points();
}

TYPED_TEST(Hedge, ApproximationsSpreadOverTheWholeRange) {
  const auto variable = TypeParam::MakeVariable(0, 10);
  const std::pair<TFuzzyHedge, double> powers[] = {
      {fhAbout, 2}, {fhVicinity, 4}, {fhClose, 1.2}, {fhNear, 1.2}, {fhNeighboring, 1.2}};
  for (const char* points : {"5,0 5,1 5,0", "3,0.4", "0,0.2 2,0.9 2,0.3 9,0.5", "0,0 1,0",
                             "0,0.1 1,0.2 2,0.3 3,0.4 4,0.5 5,0.4 6,0.3 7,0.2"})
    for (const auto& [hedge, power] : powers)
      EXPECT_TRUE(SameBits(PointsOf(*TypeParam::AddSet(variable, points)->Hedge(hedge)),
                           PlainApproximation(Parse(points), 0, 10, power)))
          << points << ' ' << power;
}

TYPED_TEST(Hedge, SlightlyIsPlusAndNotVery) {
  const char* points = "0,0.3 1,0.9 4,0.2";
  const auto set = TypeParam::MakeSet(points, "a"), plus = TypeParam::MakeSet(points),
             very = TypeParam::MakeSet(points);
  plus->Hedge(fhPlus);
  very->Hedge(fhVery)->Hedge(fhNot);
  const typename TypeParam::THandle both(plus->Intersection(very.Get()));
  both->Hedge(fhNormalize)->Hedge(fhPositively);
  EXPECT_EQ(set->Hedge(fhSlightly), set.Get());
  EXPECT_EQ(Text(set), Text(both));
  EXPECT_EQ(set->GetName(), "slightly a");
  EXPECT_EQ(set->GetVariable(), nullptr);
}

TYPED_TEST(Hedge, EveryModifierOnDegreesAndOnX) {
  // clang-format off
  const std::tuple<TBaseFuzzyHedge, const char*, double, const char*, const char*, double, const char*, const char*>
  cases[] = {
      {bfhAdd, "+", 0.5, "0.5000", "-1,0.5 1,1.3 4,0.75", 1.5, "1.5000", "0.5,0 2.5,0.8 5.5,0.25"},
      {bfhSubtract, "-", 0.5, "-0.5000", "-1,0 1,0.3 4,0", 1, "-1.0000", "-2,0 0,0.8 3,0.25"},
      {bfhMultiply, "*", 2, "2.0000", "-1,0 1,1.6 4,0.5", -1, "-1.0000", "-4,0.25 -1,0.8 1,0"},
      {bfhDivide, "/", 4, "0.2500", "-1,0 1,0.2 4,0.0625", 2, "0.5000", "-0.5,0 0.5,0.8 2,0.25"},
      {bfhPower, "^", 2, "2.0000", "-1,0 1,0.64 4,0.0625", 2, "2.0000", "-1,0 1,0.8 16,0.25"},
      {bfhCutLess, "<", 0.5, "0.5000", "-1,0.5 1,0.8 4,0.5", 1, "1.0000", "1,0 1,0.8 4,0.25"},
      {bfgCutLessEq, "<=", 0.8, "0.8000", "-1,0.8 1,0.8 4,0.8", 4, "4.0000", "4,0 4,0.8 4,0.25"},
      {bfhCutGreater, ">", 0.5, "0.5000", "-1,0 1,0.5 4,0.25", 0, "0.0000", "-1,0 0,0.8 0,0.25"},
      {bfhCutGreaterEq, ">=", 0.25, "0.2500", "-1,0 1,0.25 4,0.25", 4, "4.0000", "-1,0 1,0.8 4,0.25"}};
  // clang-format on
  for (const auto& [hedge, word, valueY, shownY, pointsY, valueX, shownX, pointsX] : cases) {
    for (const bool y : {true, false}) {
      const auto set = TypeParam::MakeSet("-1,0 1,0.8 4,0.25", "tall");
      EXPECT_EQ(set->Hedge(hedge, y ? valueY : valueX, y), set.Get());
      const std::string expression = word + std::string(y ? " " : "X ");
      EXPECT_EQ(Text(set), y ? pointsY : pointsX) << expression;
      EXPECT_EQ(set->GetName(), "tall " + expression + (y ? shownY : shownX));
      EXPECT_EQ(set->GetExpression(), expression);
    }
  }
}

TYPED_TEST(Hedge, AnExpressionSurvivesAnUnchangedListAndABlockOfTheCaller) {
  const auto set = TypeParam::MakeSet("0,0 1,0", "a");
  set->SetExpression("x");
  set->Hedge(fhNormalize);  // changes no point
  EXPECT_EQ(set->GetExpression(), "normalize x");
  TUpdateBlock block(*TypeParam::ClassOf(set).GetValues());
  set->Hedge(bfhMultiply, 2, false);
  EXPECT_EQ(set->GetExpression(), "*X [normalize x]");
}

TYPED_TEST(Hedge, OnlyThreeKindsOfHedgesNeedPoints) {
  const auto variable = TypeParam::MakeVariable(0, 1);
  for (std::size_t i = 0; i < HedgeNames.size(); ++i) {
    const auto hedge = static_cast<TFuzzyHedge>(i);
    const auto set = TypeParam::AddSet(variable, "", "a");
    const int sets = TypeParam::CountOf(variable);
    const bool needs =
        hedge == fhSlightly || hedge == fhNormalize || (hedge >= fhAbout && hedge <= fhNeighboring);
    EXPECT_EQ(MessageOf([&] { set->Hedge(hedge); }),
              needs ? Refusal("Get Maximum Y Value", "Fuzzy set is empty") : "");
    EXPECT_EQ(set->GetName(), needs ? TString("a") : HedgeNames[i] + TString(" a"));
    EXPECT_FALSE(TypeParam::ClassOf(set).GetValues()->IsUpdating());
    EXPECT_EQ(TypeParam::CountOf(variable), sets);
  }
}

TYPED_TEST(Cut, AlphaCutsHaveVerticalEdgesAndCutoffsAreFloorsAndCaps) {
  const struct {
    const char* Points;
    double Level;
    const char *Shown, *Limited, *Weak, *Strong, *Floor, *Cap;
  } cases[] = {
      // clang-format off
      {"0,0 1,1 2,0", 0.5, "0.5000", "0.5000", "0,0 0.5,0 0.5,0.5 1,1 1.5,0.5 1.5,0", "0,0 0.5,0 0.5,0.5 1,1 1.5,0.5 1.5,0", "0.5,0.5 1,1 1.5,0.5", "0,0 0.5,0.5 1.5,0.5 2,0"},
      {"3,0 4,1 5,0", 1.5, "1.5000", "1.0000", "3,0 4,0 4,1 4,0", "0,0", "0,1", "3,0 4,1 5,0"},
      {"3,0 4,1 5,0", -0.5, "-0.5000", "0.0000", "3,0 4,1 5,0", "3,0 4,1 5,0", "3,0 4,1 5,0", "0,0"},
      {"0,0 1,0.5 2,0.5 3,0", 0.5, "0.5000", "0.5000", "0,0 1,0 1,0.5 2,0.5 2,0", "0,0", "1,0.5 2,0.5", "0,0 1,0.5 2,0.5 3,0"},
      {"0,0.8 1,0.2", 0.5, "0.5000", "0.5000", "0,0.8 0.5,0.5 0.5,0", "0,0.8 0.5,0.5 0.5,0", "0,0.8 0.5,0.5", "0.5,0.5 1,0.2"},
      {"0,0.5 1,0.2 2,0.9", 0.5, "0.5000", "0.5000", "0,0.5 0,0 1.42857,0 1.42857,0.5 2,0.9", "0,0 1.42857,0 1.42857,0.5 2,0.9", "0,0.5 1.42857,0.5 2,0.9", "0,0.5 1,0.2 1.42857,0.5"},
      {"", 0.5, "0.5000", "0.5000", "", "", "", ""},
      // clang-format on
  };
  for (const auto& c : cases) {
    const auto set = TypeParam::MakeSet(c.Points, "low");
    set->SetExpression("a");
    EXPECT_EQ(Text(typename TypeParam::THandle(set->AlphaCutoff(c.Level, false))), c.Weak);
    const typename TypeParam::THandle cut(set->AlphaCutoff(c.Level, true));
    EXPECT_EQ(Text(cut), c.Strong) << c.Points << " at " << c.Level;
    EXPECT_EQ(cut->GetName() + cut->GetExpression(),
              TypeParam::Counted ? "low (alpha=" + TString(c.Shown) + ")" : "low");
    for (const bool below : {true, false}) {
      const typename TypeParam::THandle off(set->Cutoff(c.Level, below));
      const std::string word = below ? " or " : " and ";
      EXPECT_EQ(Text(off), below ? c.Floor : c.Cap) << c.Points << " at " << c.Level;
      EXPECT_EQ(off->GetName(), "low" + word + c.Shown);
      EXPECT_EQ(off->GetExpression(), "a" + word + c.Limited);
    }
    EXPECT_EQ(Text(set), c.Points);
  }
  EXPECT_EQ(
      typename TypeParam::THandle(TypeParam::MakeSet("0,1")->Cutoff(0.5, true))->GetExpression(),
      "");
}

TEST(Inference, CorrelatesAndMergesByItsMethods) {
  TFuzzyLogic fuzzy;
  fuzzy.SetAutoTerms(false);
  TFuzzySets* sets = fuzzy.GetItems()->Add("x")->GetItems();
  TFuzzySet* a = MakeSet("0,0.2 1,0.8", "a", sets).Release();
  const auto b = MakeSet("0,0.6 1,0.3", "b");
  const char* const words[] = {"", "-sum", "-mean", "-product", "-boundedsum"};
  for (const TFuzzyInferenceMethod method :
       {fimMinMax, fimAdditive, fimMean, fimProduct, fimBoundedSum}) {
    fuzzy.SetInferenceMethod(method);
    for (const bool unconditional : {false, true}) {
      if (unconditional && method == fimAdditive) continue;  // has no intersection
      const TString name =
          TString(unconditional ? "a and" : "a or") + words[static_cast<int>(method)] + " b";
      EXPECT_EQ(a->Infer(b.Get(), method, unconditional)->GetName(), name);
      EXPECT_EQ(a->Infer(b.Get(), unconditional)->GetName(), name);
    }
  }
  EXPECT_EQ(TOwned<S>(b->Infer(a, false))->GetName(), "b or a");  // no component: the first method

  fuzzy.SetDefuzzificationMethod(dmMeanOfMaxima);
  EXPECT_EQ(a->Defuzzify(), 1);
  EXPECT_EQ(b->Defuzzify(), b->CenterOfGravity());
  fuzzy.SetDefuzzificationMethod(dmCenterOfGravity);
  EXPECT_EQ(a->Defuzzify(), a->CenterOfGravity());
  fuzzy.SetCorrelationMethod(fcmProduct);
  EXPECT_EQ(a->Correlate(0.5)->ToString(), "(a * 0.5000 (0.0000 0.1000) (1.0000 0.4000) )");
  EXPECT_EQ(b->Correlate(0.5)->ToString(), "(b > 0.5000 (0.0000 0.5000) (1.0000 0.3000) )");
}

TYPED_TEST(Measure, TheCenterOfGravityIncludesTheFlanks) {
  const std::tuple<const char*, double, double> cases[] = {
      {"3,1 5,1", 6, 3},
      {"7,0 7,1 7,0", 10, 5},
      {"2,0 8,0", 10, 0},
      {"", 10, 0},
      {"0,1 4,1 4,0 10,0", 10, 2},                // a step
      {"0,0.00005 4,0.00005 10,0.00005", 10, 0},  // next to nothing is nothing
      {"2,0 4,1 6,1 8,0.5", 10, 5.939394}};
  for (const auto& [points, maximum, center] : cases) {
    const auto variable = TypeParam::MakeVariable(0, maximum);
    EXPECT_EQ(Text(TypeParam::AddSet(variable, points)->CenterOfGravity()), Text(center)) << points;
  }
  EXPECT_EQ(TypeParam::MakeSet("7,0 7,1 7,0")->CenterOfGravity(), 0);  // the middle of all numbers
}

TYPED_TEST(Measure, MeanOfMaximaDecisionAndHeight) {
  // clang-format off
  const std::tuple<const char*, double, bool, double> cases[] = {
      {"", 0, true, 0}, {"0,1 10,1", 5, true, 1}, {"0,0 5,0", 2.5, true, 0}, {"0,0 5,1", 5, false, 1},
      {"0,1 5,1 6,1.00001", 11.0 / 3, false, 1}, {"0,1.5 5,0", 0, false, 1.5},
      {"0,0.5 1,0.50005 2,0.4", 0.5, false, 0.50005},
      {"0,0.5 1,0.50009 2,0.50018", 2, false, 0.50018}};  // from the first of them, not the last
  // clang-format on
  for (const auto& [points, mean, undecidable, height] : cases) {
    const auto set = TypeParam::MakeSet(points);
    EXPECT_EQ(set->MeanOfMaxima(), mean) << points;
    EXPECT_EQ(set->IsUndecidable(), undecidable) << points;
    EXPECT_EQ(set->GetCompatibilityIndex(), height) << points;
  }
}

TYPED_TEST(Measure, EqualityIsOverlapFromTheThresholdOn) {
  const auto variable = TypeParam::MakeVariable(0, 10);
  variable->SetThreshold(0.5);
  const auto a = TypeParam::AddSet(variable, "0,0 2,1 4,0"),
             empty = TypeParam::AddSet(variable, "");
  const auto meeting = TypeParam::MakeSet("2,0 4,1 6,0"),
             lower = TypeParam::MakeSet("2,0 4,0.9 6,0");
  EXPECT_TRUE(a->Equals(meeting.Get()) && !a->Equals(lower.Get()));
  EXPECT_TRUE(lower->Equals(a));  // of no variable: any overlap will do
  EXPECT_TRUE(empty->Equals(empty) && empty->Equals(a));
  auto& callbacks = TypeParam::ClassOf(a);
  EXPECT_TRUE(callbacks.FuzzyOperatorMinThreshold(0, 0.5, 0, 1));
  EXPECT_FALSE(callbacks.FuzzyOperatorMinThreshold(0, 1, 0, 0.49) ||
               callbacks.FuzzyOperatorMaxOfMin(0, 1, 0, 1));
  variable->SetThreshold(1);
  EXPECT_FALSE(empty->Equals(lower.Get()));
}

}  // namespace
}  // namespace fzy::test
