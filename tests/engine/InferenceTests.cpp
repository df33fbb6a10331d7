#include <gtest/gtest.h>

#include "fuzzylogic/model/FuzzyLogic.h"
#include "tests/engine/Sets.h"

// Cuts, correlation, inference, defuzzification and measures.

namespace fzy::test {
namespace {

TEST(Cut, AlphaCutsHaveVerticalEdges) {
  constexpr bool strong = true, weak = false;
  struct {
    const char* Points;
    double Level;
    bool Strong;
    const char* Result;
  } const cases[] = {
      {"0,0 1,1 2,0", 0.5, weak, "0,0 0.5,0 0.5,0.5 1,1 1.5,0.5 1.5,0"},
      {"0,0 1,1 2,0", 0.5, strong, "0,0 0.5,0 0.5,0.5 1,1 1.5,0.5 1.5,0"},
      {"3,0 4,1 5,0", 1.5, strong, "0,0"},
      {"3,0 4,1 5,0", 1.5, weak, "3,0 4,0 4,1 4,0"},
      {"3,0 4,1 5,0", -1, strong, "3,0 4,1 5,0"},
      {"3,0 4,1 5,0", -1, weak, "3,0 4,1 5,0"},
      {"0,0 1,0.5 2,0.5 3,0", 0.5, weak, "0,0 1,0 1,0.5 2,0.5 2,0"},
      {"0,0 1,0.5 2,0.5 3,0", 0.5, strong, "0,0"},
      {"0,0.8 1,0.2", 0.5, weak, "0,0.8 0.5,0.5 0.5,0"},
      {"0,0.2 1,0.3", 0.5, weak, "0,0"},
      {"", 0.5, weak, ""},
      {"", 2, strong, "0,0"},
  };
  for (const auto& c : cases) {
    const auto set = MakeSet(c.Points, "low");
    const TOwned<TFuzzySet> cut(set->AlphaCutoff(c.Level, c.Strong));
    EXPECT_EQ(Text(cut.Get()), c.Result) << c.Points << " at " << c.Level;
    EXPECT_EQ(cut->GetName(), "low");
    EXPECT_EQ(cut->GetExpression(), "");
    EXPECT_EQ(Text(set.Get()), c.Points);
  }
}

TEST(Cut, CutoffsAreFloorsAndCaps) {
  constexpr bool floor = true, cap = false;
  struct {
    const char* Points;
    double Level;
    bool Below;
    const char *Result, *Name, *Expression;
  } const cases[] = {
      {"0,0 1,1 2,0", 0.3, floor, "0.3,0.3 1,1 1.7,0.3", "low or 0.3000", "a or 0.3000"},
      {"0,0 1,1 2,0", 0.3, cap, "0,0 0.3,0.3 1.7,0.3 2,0", "low and 0.3000", "a and 0.3000"},
      {"3,0 4,1 5,0", 1.5, floor, "0,1", "low or 1.5000", "a or 1.0000"},
      {"3,0 4,1 5,0", -0.5, cap, "0,0", "low and -0.5000", "a and 0.0000"},
      {"3,0 4,1 5,0", -0.5, floor, "3,0 4,1 5,0", "low or -0.5000", "a or 0.0000"},
      {"3,0 4,1 5,0", 1, cap, "3,0 4,1 5,0", "low and 1.0000", "a and 1.0000"},
      {"0,0.1 1,0.2", 0.5, floor, "", "low or 0.5000", "a or 0.5000"},
      {"0,0.5 1,0.2 2,0.9", 0.5, floor, "0,0.5 1.428571,0.5 2,0.9", "low or 0.5000", "a or 0.5000"},
      {"", 0.5, cap, "", "low and 0.5000", "a and 0.5000"},
      {"", 1, floor, "0,1", "low or 1.0000", "a or 1.0000"},
  };
  for (const auto& c : cases) {
    const auto set = MakeSet(c.Points, "low");
    for (const bool withExpression : {true, false}) {
      set->SetExpression(withExpression ? "a" : "");
      const TOwned<TFuzzySet> cut(set->Cutoff(c.Level, c.Below));
      EXPECT_EQ(Text(cut.Get()), Text(Parse(c.Result))) << c.Points << " at " << c.Level;
      EXPECT_EQ(cut->GetName(), c.Name);
      EXPECT_EQ(cut->GetExpression(), withExpression ? c.Expression : "");
      EXPECT_EQ(cut->GetSetType(), fstUserDefined);
    }
    EXPECT_EQ(Text(set.Get()), c.Points);
  }
}

TEST(Correlation, StrengthIsTheHeightOfTheIntersection) {
  struct {
    const char *A, *B;
    double Strength;
  } const cases[] = {
      {"0,0 2,1 4,0", "2,0 4,1 6,0", 0.5},
      {"0,0 2,0.8 4,0", "0,0 2,0.8 4,0", 0.8},
      {"0,0 1,1 2,0", "5,0 6,1 7,0", 0},
      {"0,0 2,0.7", "", 0.7},
      {"", "0,0 2,0.7", 0.7},
      {"", "", 0},
      {"0,0 2,1 4,0", "3,0 3,1 3,0", 0.5},
  };
  for (const auto& c : cases) {
    const auto a = MakeSet(c.A);
    const auto b = MakeSet(c.B);
    EXPECT_EQ(a->GetCorrelationStrength(b.Get()), c.Strength) << c.A << " with " << c.B;
    EXPECT_EQ(a->FuzzyEquals(b.Get()), c.Strength);
  }
}

TEST(Correlation, ChangesTheConclusionItself) {
  const auto cut = MakeSet("0,0 1,1 2,0", "out");
  EXPECT_EQ(cut->Correlate(0.5, fcmMinimum), cut.Get());
  EXPECT_EQ(Text(cut.Get()), "0,0 1,0.5 2,0");
  EXPECT_EQ(cut->GetName(), "out > 0.5000");
  const auto scaled = MakeSet("0,0.4 1,1", "out");
  EXPECT_EQ(scaled->Correlate(0.5, fcmProduct), scaled.Get());
  EXPECT_EQ(Text(scaled.Get()), "0,0.2 1,0.5");
  EXPECT_EQ(scaled->GetName(), "out * 0.5000");
}

TEST(Inference, MergesByTheOperationOfItsMethod) {
  struct {
    TFuzzyInferenceMethod Method;
    TFuzzyOperation Operation;
  } const cases[] = {{fimMinMax, foZadeh},
                     {fimAdditive, foSum},
                     {fimMean, foMean},
                     {fimProduct, foProduct},
                     {fimBoundedSum, foBoundedSum}};
  TFuzzyLogic fuzzy;
  fuzzy.SetAutoTerms(false);
  TFuzzySets* sets = fuzzy.GetItems()->Add("x")->GetItems();
  TFuzzySet* a = MakeSet("0,0.2 1,0.8", "a", sets).Release();
  const auto b = MakeSet("0,0.6 1,0.3", "b");
  for (const auto& c : cases) {
    fuzzy.SetInferenceMethod(c.Method);
    for (const bool unconditional : {false, true}) {
      if (unconditional && c.Method == fimAdditive) continue;  // has no intersection
      const TFuzzySet* expected =
          unconditional ? a->Intersection(b.Get(), c.Operation) : a->Union(b.Get(), c.Operation);
      for (const TFuzzySet* result :
           {a->Infer(b.Get(), c.Method, unconditional), a->Infer(b.Get(), unconditional)}) {
        EXPECT_EQ(Text(result), Text(expected));
        EXPECT_EQ(result->GetName(), expected->GetName());
        EXPECT_EQ(result->GetCollection(), sets);
      }
    }
  }
  const TOwned<TFuzzySet> alone(b->Infer(a, false));  // without a component the first method
  EXPECT_EQ(alone->GetName(), "b or a");
}

TEST(Inference, TheComponentSettlesCorrelationAndDefuzzification) {
  TFuzzyLogic fuzzy;
  TFuzzyVariable* variable = fuzzy.GetItems()->Add("x");
  variable->SetMaximum(10);
  TFuzzySet* set = MakeSet("0,0.5 1,1 9,0", "s", variable->GetItems()).Release();
  const auto alone = MakeSet("0,0.5 1,1", "s");
  fuzzy.SetDefuzzificationMethod(dmMeanOfMaxima);
  EXPECT_EQ(set->Defuzzify(), 1);
  fuzzy.SetDefuzzificationMethod(dmCenterOfGravity);
  EXPECT_EQ(set->Defuzzify(), set->CenterOfGravity());
  fuzzy.SetCorrelationMethod(fcmProduct);
  EXPECT_EQ(Text(set->Correlate(0.5)), "0,0.25 1,0.5 9,0");
  EXPECT_EQ(Text(alone->Correlate(0.5)), "0,0.5 1,0.5");
  EXPECT_EQ(alone->Defuzzify(), alone->CenterOfGravity());
}

TEST(Measure, TheCenterOfGravityIncludesTheFlanks) {
  struct {
    const char* Points;
    double Minimum, Maximum, Center;
  } const cases[] = {
      {"0,0 5,1 10,0", 0, 10, 5},
      {"0,0 2,1 10,0", 0, 10, 4},
      {"3,1 5,1", 0, 10, 5},
      {"3,1 5,1", 0, 6, 3},
      {"3,1", 0, 10, 5},
      {"7,0 7,1 7,0", 0, 10, 5},
      {"2,0 8,0", 0, 10, 0},
      {"", 0, 10, 0},
      {"0,0.5 6,1", 0, 6, 3.333333},                 // a trapezoid
      {"0,1 4,1 4,0 10,0", 0, 10, 2},                // a step
      {"0,0.00005 4,0.00005 10,0.00005", 0, 10, 0},  // next to nothing is nothing
      {"2,0 4,1 6,1 8,0.5", 0, 10, 5.939394},
  };
  for (const auto& c : cases) {
    const auto variable = MakeVariable(c.Minimum, c.Maximum);
    const TFuzzySet* set = MakeSet(c.Points, "", variable->GetItems()).Release();
    EXPECT_EQ(Text(set->CenterOfGravity()), Text(c.Center)) << c.Points;
  }
  EXPECT_EQ(MakeSet("7,0 7,1 7,0")->CenterOfGravity(), 0);  // the middle of all numbers
}

TEST(Measure, TheMeanOfMaximaAveragesPoints) {
  struct {
    const char* Points;
    double Mean;
  } const cases[] = {
      {"", 0},
      {"0,0 2,1 4,1 6,0", 3},
      {"2,1 3,1 10,1", 5},
      {"0,0.5 1,0.50005 2,0.4", 0.5},
      {"0,0.5 1,0.50009 2,0.50018", 2},  // measured from the first of them, not from the last
  };
  for (const auto& c : cases) EXPECT_EQ(MakeSet(c.Points)->MeanOfMaxima(), c.Mean) << c.Points;
}

TEST(Measure, DecisionHeightAndEquality) {
  struct {
    const char* Points;
    bool Undecidable;
    double Height;
  } const cases[] = {
      {"", true, 0},
      {"0,1 10,1", true, 1},
      {"0,0 5,0", true, 0},
      {"0,0 5,1", false, 1},
      {"0,0.5 10,0.5", false, 0.5},
      {"0,1 5,1 6,1.00001", false, 1},
      {"0,1.5 5,0", false, 1.5},
  };
  for (const auto& c : cases) {
    const auto set = MakeSet(c.Points);
    EXPECT_EQ(set->IsUndecidable(), c.Undecidable) << c.Points;
    EXPECT_EQ(set->GetCompatibilityIndex(), c.Height) << c.Points;
  }

  const auto variable = MakeVariable(0, 10);
  variable->SetThreshold(0.5);
  TFuzzySet* a = MakeSet("0,0 2,1 4,0", "a", variable->GetItems()).Release();
  TFuzzySet* empty = MakeSet("", "e", variable->GetItems()).Release();
  const auto meeting = MakeSet("2,0 4,1 6,0");
  const auto lower = MakeSet("2,0 4,0.9 6,0");
  EXPECT_TRUE(a->Equals(meeting.Get()));
  EXPECT_FALSE(a->Equals(lower.Get()));
  EXPECT_TRUE(lower->Equals(a));  // of no variable: any overlap will do
  EXPECT_TRUE(empty->Equals(empty));
  EXPECT_TRUE(empty->Equals(a));
  variable->SetThreshold(1);
  EXPECT_FALSE(empty->Equals(lower.Get()));
}

}  // namespace
}  // namespace fzy::test
