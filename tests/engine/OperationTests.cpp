#include <gtest/gtest.h>

#include "fuzzylogic/framework/Exception.h"
#include "tests/engine/Sets.h"

namespace fzy::test {
namespace {

TEST(Operation, EveryFamilyCombinesTwoDegrees) {
  struct {
    TFuzzyOperation Operation;
    double Intersection, Union;
    const char *IntersectionName, *UnionName;
  } const cases[] = {
      {foZadeh, 0.4, 0.8, "and", "or"},
      {foMean, 0.6, 0.666667, "and-mean", "or-mean"},
      {foMeanSqr, 0.36, 0.36, "and-meansqr", "or-meansqr"},
      {foMeanSqrt, 0.774597, 0.774597, "and-meansqrt", "or-meansqrt"},
      {foProduct, 0.32, 0.88, "and-product", "or-product"},
      {foBoundedSum, 0.2, 1, "and-boundedsum", "or-boundedsum"},
      {foSum, -1, 1.2, "", "or-sum"},
  };
  const auto a = MakeSet("5,0.8", "a");
  const auto b = MakeSet("5,0.4", "b");
  for (const auto& c : cases) {
    const TOwned<TFuzzySet> all(a->Union(b.Get(), c.Operation));
    EXPECT_EQ(Text(all.Get()), "5," + Text(c.Union));
    EXPECT_EQ(all->GetName(), TString("a ") + c.UnionName + " b");
    if (c.Operation == foSum) continue;
    const TOwned<TFuzzySet> both(a->Intersection(b.Get(), c.Operation));
    EXPECT_EQ(Text(both.Get()), "5," + Text(c.Intersection));
    EXPECT_EQ(both->GetName(), TString("a ") + c.IntersectionName + " b");
  }
  const auto low = MakeSet("5,0.1");
  const TOwned<TFuzzySet> nothing(low->Intersection(b.Get(), foBoundedSum));
  EXPECT_EQ(Text(nothing.Get()), "5,0");
}

TEST(Operation, CombinesCurvesWithTheirCrossingsAndThinsFlatRuns) {
  struct {
    const char *A, *B, *Intersection, *Union;
  } const cases[] = {
      {"0,0 2,1 4,0", "2,0 4,1 6,0", "2,0 3,0.5 4,0", "0,0 2,1 3,0.5 4,1 6,0"},
      {"5,0.3", "0,0 2,1 4,0", "0,0 0.6,0.3 3.4,0.3 4,0", "0.6,0.3 2,1 3.4,0.3"},
      {"0,0 1,1 2,1 3,1 4,0", "2,1", "0,0 1,1 3,1 4,0", "4,1"},
      {"0,0 1,1", "", "0,0 1,1", "0,0 1,1"},
      {"", "0,0.5 1,0.5 2,0.5", "0,0.5 1,0.5 2,0.5", "0,0.5 1,0.5 2,0.5"},
      {"", "", "", ""},
  };
  for (const auto& c : cases) {
    const auto a = MakeSet(c.A);
    const auto b = MakeSet(c.B);
    const TOwned<TFuzzySet> both(a->Intersection(b.Get()));
    const TOwned<TFuzzySet> all(a->Union(b.Get()));
    EXPECT_EQ(Text(both.Get()), c.Intersection) << c.A << " and " << c.B;
    EXPECT_EQ(Text(all.Get()), c.Union) << c.A << " or " << c.B;
  }
}

TEST(Operation, PairsAnAbsentSetWithItself) {
  const auto set = MakeSet("0,0.5 1,0.8");
  const auto empty = MakeSet("");
  const TOwned<TFuzzySet> product(empty->Intersection(set.Get(), foProduct));
  EXPECT_EQ(Text(product.Get()), "0,0.25 1,0.64");
  const TOwned<TFuzzySet> sum(set->Union(empty.Get(), foSum));
  EXPECT_EQ(Text(sum.Get()), "0,1 1,1.6");
}

TEST(Operation, LeavesANameAndAnExpression) {
  struct {
    const char *NameA, *ExpressionA, *NameB, *ExpressionB, *Name, *Expression;
  } const cases[] = {
      {"a", "", "b", "", "a or b", "a or b"},
      {"very tall", "", "b", "", "[very tall] or b", "[very tall] or b"},
      {"a", "x and y", "b", "[u]", "a or b", "[x and y] or [u]"},
      {"", "", "", "", " or ", " or "},
  };
  const auto variable = MakeVariable(0, 1);
  for (const auto& c : cases) {
    TFuzzySet* a = MakeSet("0,1", c.NameA, variable->GetItems()).Release();
    const auto b = MakeSet("", c.NameB);
    a->SetExpression(c.ExpressionA);
    b->SetExpression(c.ExpressionB);
    const TFuzzySet* result = a->Union(b.Get());
    EXPECT_EQ(result->GetName(), c.Name);
    EXPECT_EQ(result->GetExpression(), c.Expression);
    EXPECT_EQ(result->GetSetType(), fstUserDefined);
    EXPECT_EQ(result->GetCollection(), variable->GetItems());
  }
}

TEST(Operation, GivesASetOfItsOwnClass) {
  const TOwned<TFuzzySet> a(TFuzzySet::Create(nullptr, TTellingSet::Class()));
  const auto b = MakeSet("0,0 1,1");
  const TOwned<TFuzzySet> result(a->Union(b.Get()));
  EXPECT_EQ(result->ClassName(), "TTellingSet");
  EXPECT_EQ(static_cast<TTellingSet&>(*result).Told, "l");  // one block
}

TEST(Operation, RefusesWhatHasNoFormulaAndCreatesNothing) {
  const auto variable = MakeVariable(0, 1);
  TFuzzySet* a = MakeSet("0,1", "a", variable->GetItems()).Release();
  const auto refusal = [](const std::string& name) {
    return "Invalid fuzzy operation: \"" + name + ":";
  };
  const auto unknown = static_cast<TFuzzyOperation>(99);
  EXPECT_EQ(MessageOf([&] { a->Intersection(a, foSum); }), refusal("foSum"));
  EXPECT_EQ(MessageOf([&] { a->Infer(a, fimAdditive, true); }), refusal("foSum"));
  EXPECT_THROW(a->Intersection(a, unknown), EFzyException);
  EXPECT_THROW(a->Union(a, unknown), EFzyException);
  EXPECT_EQ(MessageOf([&] { a->Union(nullptr); }),
            "Invalid operation: \"Union\".  No fuzzy set given");
  EXPECT_EQ(variable->GetItems()->GetCount(), 1);
}

TEST(Operation, ACallbackThatStopsLeavesThePartialResult) {
  const auto a = MakeSet("0,0 1,0 2,0", "a");
  const auto b = MakeSet("0,1 3,1", "b");
  int visits = 0;
  const TOwned<TFuzzySet> result(
      a->Operator(b.Get(), "stopped", [&](TFuzzySetValues& r, double x, double y, double, double) {
        r.Add(x, y);
        return ++visits == 3;
      }));
  EXPECT_EQ(visits, 3);
  EXPECT_EQ(Text(result.Get()), "0,0 1,0 2,0");  // not thinned
  EXPECT_EQ(result->GetName(), "a stopped b");
  EXPECT_EQ(result->GetExpression(), "a stopped b");
}

TEST(Operation, TheBoundCallbacksAppendOrCompare) {
  using TMember = bool (TFuzzySet::*)(TFuzzySetValues&, double, double, double, double);
  struct {
    TMember Callback;
    double Y;
  } const cases[] = {
      {&TFuzzySet::FuzzyOperatorMin, 0.4},
      {&TFuzzySet::FuzzyOperatorMax, 0.8},
      {&TFuzzySet::FuzzyOperatorMean, 0.6},
      {&TFuzzySet::FuzzyOperatorUnionMean, 0.666667},
      {&TFuzzySet::FuzzyOperatorMeanSqr, 0.36},
      {&TFuzzySet::FuzzyOperatorMeanSqrt, 0.774597},
      {&TFuzzySet::FuzzyOperatorIntersectionProduct, 0.32},
      {&TFuzzySet::FuzzyOperatorUnionProduct, 0.88},
      {&TFuzzySet::FuzzyOperatorIntersectionBoundedSum, 0.2},
      {&TFuzzySet::FuzzyOperatorUnionBoundedSum, 1},
      {&TFuzzySet::FuzzyOperatorUnionSum, 1.2},
  };
  const auto variable = MakeVariable(0, 1);
  TFuzzySet* set = variable->GetItems()->Add("s");
  for (const auto& c : cases) {
    TFuzzySetValues result;
    EXPECT_FALSE((set->*c.Callback)(result, 3, 0.8, 7, 0.4));
    EXPECT_EQ(Text(result.Points()), "3," + Text(c.Y));
  }
  variable->SetThreshold(0.4);
  EXPECT_TRUE(set->FuzzyOperatorMinThreshold(0, 0.4, 0, 1));
  EXPECT_FALSE(set->FuzzyOperatorMinThreshold(0, 1, 0, 0.39));
  EXPECT_FALSE(set->FuzzyOperatorMaxOfMin(0, 1, 0, 1));
}

TEST(Operation, IterateAnswersTheCallbackOrTwoEmptySets) {
  const auto empty = MakeSet("");
  const auto set = MakeSet("0,0 1,1");
  const auto never = [](double, double, double, double) { return false; };
  EXPECT_TRUE(empty->Iterate(empty.Get(), never));
  EXPECT_FALSE(empty->Iterate(set.Get(), never));
  EXPECT_TRUE(set->Iterate(empty.Get(), [](double x1, double y1, double x2, double y2) {
    return x1 == 1 && y1 == 1 && x2 == 1 && y2 == 1;
  }));
}

TEST(Operation, SegmentsMeet) {
  struct {
    const char* Points;
    const char* Meeting;  // empty: none
  } const cases[] = {
      {"0,0 2,2 0,2 2,0", "1,1"},       {"0,0 2,2 0,1 2,3", ""},  // parallel
      {"0,0 2,2 1,1 3,3", "2,2"},                                 // collinear: the lesser right end
      {"0,0 2,2 5,5 1,1", "1,1"},                                 // and so without overlap
      {"0,0 1,1 3,3 4,4", "1,1"},       {"1,0 1,2 0,1 2,1", "1,1"},  // vertical and level
      {"0,0 2,1 2,1 4,0", "2,1"},                                    // end to end
      {"0,0 2,1 2.1,0 2.1,2", ""},                                   // beyond the end
      {"1,0.5 1,0.5 0,0 2,1", "1,0.5"},                              // a point on the line
      {"1,0.6 1,0.6 0,0 2,1", ""},      {"0,0 2,1 1,0.6 1,0.6", ""},
  };
  const auto set = MakeSet("");
  for (const auto& c : cases) {
    const TPoints p = Parse(c.Points);
    double x = 0, y = 0;
    const bool meet = set->LineSegmentIntersects(p[0].X, p[0].Y, p[1].X, p[1].Y, p[2].X, p[2].Y,
                                                 p[3].X, p[3].Y, x, y);
    EXPECT_EQ(meet ? Text(x) + "," + Text(y) : "", c.Meeting) << c.Points;

    TFuzzySetValues list;
    TUpdateBlock block(list);
    for (const TFuzzyPoint& point : p) list.Add()->SetValue(point.X, point.Y);
    const TOwned<TFuzzySetValue> point(
        set->LineSegmentIntersects(list[0], list[1], list[2], list[3]));
    ASSERT_EQ(point.Get() != nullptr, meet);
    if (!meet) continue;
    EXPECT_EQ(point->GetPoint(), (TFuzzyPoint{x, y}));
    EXPECT_EQ(point->GetCollection(), nullptr);
  }
}

TEST(Operation, SetsOverlap) {
  struct {
    const char *A, *B;
    bool AB, BA;
  } const cases[] = {
      {"0,0 1,1 2,0", "5,0 6,1 7,0", false, false},
      {"0,0 1,1 2,0", "2,0.5 6,1 7,0", true, true},
      {"0,0 1,1 2,0", "2,0 6,1 7,0", false, false},
      {"0,0 1,1 2,0", "2,0 2,1 7,0", true, true},  // the run at the touching X counts
      {"0,0 1,1 2,0.5", "5,0 6,1", false, false},  // spans apart, tail or not
      {"0,0 1,1 2,0", "1,0 2,1 3,0", true, true},
      {"0,0 4,0", "1,0 2,1 3,0", false, true},  // zero against something
      {"0,0 4,0", "1,0 3,0", true, true},       // zero against zero
      {"", "0,1", false, false},
      {"3,1", "0,1 9,1", true, true},
      {"0,1 2,1", "2.0002,1 3,1", false, false},
  };
  for (const auto& c : cases) {
    const auto a = MakeSet(c.A);
    const auto b = MakeSet(c.B);
    EXPECT_EQ(a->Intersects(b.Get()), c.AB) << c.A << " with " << c.B;
    EXPECT_EQ(b->Intersects(a.Get()), c.BA) << c.B << " with " << c.A;
  }
}

}  // namespace
}  // namespace fzy::test
