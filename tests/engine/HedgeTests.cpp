#include <cmath>

#include <gtest/gtest.h>

#include "fuzzylogic/model/FuzzyLogic.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "tests/engine/PlainList.h"
#include "tests/engine/Sets.h"

namespace fzy::test {
namespace {

TEST(Hedge, EveryLinguisticHedgeOfATriangle) {
  const std::string thirds = "0,0 0.333333,%1 0.666667,%2 1,1 1.333333,%2 1.666667,%1 2,0";
  const auto curve = [&](const char* first, const char* second) {
    std::string text = thirds;
    for (const auto& [mark, y] : {std::pair("%1", first), std::pair("%2", second)})
      for (std::size_t at; (at = text.find(mark)) != std::string::npos;) text.replace(at, 2, y);
    return Text(Parse(text));
  };
  const struct {
    TFuzzyHedge Hedge;
    std::string Points;
  } cases[] = {
      {fhNot, "0,1 1,0 2,1"},
      {fhSomewhat, curve("0.693361", "0.87358")},
      {fhMoreOrLess, curve("0.57735", "0.816497")},
      {fhGreatly, curve("0.463463", "0.752898")},
      {fhPlus, curve("0.253279", "0.602401")},
      {fhVery, curve("0.111111", "0.444444")},
      {fhExtremely, curve("0.037037", "0.296296")},
      {fhAbove, "0,0 1,0 2,1"},
      {fhBelow, "0,1 1,0 2,0"},
      {fhNormalize, "0,0 1,1 2,0"},
      {fhPositively, curve("0.222222", "0.777778")},
      {fhAbsolutely, curve("0.222222", "0.777778")},
      {fhDefinitely, curve("0.222222", "0.777778")},
      {fhGenerally, curve("0.288675", "0.711325")},
  };
  for (const auto& c : cases) {
    const auto set = MakeSet("0,0 1,1 2,0", "tall");
    set->SetExpression("gone");  // with the points
    EXPECT_EQ(set->Hedge(c.Hedge), set.Get());
    const TString word = HedgeNames[Ordinal(c.Hedge)];
    EXPECT_EQ(Text(set.Get()), c.Points) << word;
    EXPECT_EQ(set->GetName(), word + " tall");
    EXPECT_EQ(set->GetExpression(), "[" + word + " tall]");
    EXPECT_EQ(set->GetSetType(), fstUserDefined);
  }
}

TEST(Hedge, ThePeakThatAboveAndBelowTurnAround) {
  struct {
    const char *Points, *Above, *Below;
  } const cases[] = {
      {"0,0.2 1,0.8 2,0.8 3,0.3", "0,0 1,0 2,0 3,0.7", "0,0.8 1,0 2,0 3,0"},
      {"0,0.2 1,1 2,1 3,1.4", "0,0 1,0 2,0 3,0", "0,0.8 1,0 2,0 3,0"},
      {"0,0.2 1,1 2,1 3,0.4", "0,0 1,0 2,0 3,0.6", "0,0.8 1,0 2,0 3,0"},
      {"0,0 1,0 2,0", "0,0 1,0 2,0", "0,0 1,0 2,0"},
  };
  for (const auto& c : cases) {
    const auto above = MakeSet(c.Points);
    EXPECT_EQ(Text(above->Hedge(fhAbove)), c.Above) << c.Points;
    const auto below = MakeSet(c.Points);
    EXPECT_EQ(Text(below->Hedge(fhBelow)), c.Below) << c.Points;
  }
}

TEST(Hedge, ContrastAtTheEdgesOfItsFormula) {
  const char* points = "0,0.25 1,0.5 2,0.9 3,1 4,0 5,1.5 6,1";  // seven: nothing is added
  EXPECT_EQ(Text(MakeSet(points)->Hedge(fhPositively)), "0,0.125 1,0.5 2,0.98 3,1 4,0 5,0.5 6,1");
  EXPECT_EQ(MessageOf([&] { MakeSet(points)->Hedge(fhGenerally); }),
            "Invalid operation: \"contrast\".  Not a number");
}

/// Bells around the points of a curve, on 50 points of the range, normalized.
TPoints PlainApproximation(const TPoints& points, double minimum, double maximum, double power) {
  TPlainList set(minimum, maximum);
  set.Assign(points);
  set.Expand(7);
  TPlainList grid;
  grid.Add(minimum, 0);
  grid.Add(maximum, 0);
  grid.Expand(50);
  const double width = set.At(set.Count() - 1).X - set.At(0).X;
  const double scale = width == 0 ? 0.2 : width / (maximum - minimum);
  for (int i = 0; i < set.Count(); ++i) {
    for (int j = 0; j < grid.Count() && set.At(i).Y > 0; ++j) {
      const double d = std::fabs(grid.At(j).X - set.At(i).X) * scale;
      const double y = set.At(i).Y * 1 / (std::pow(d, power) + 1);
      if (y > grid.At(j).Y) grid.At(j).Y = y;
    }
  }
  double greatest = 0;
  for (int j = 0; j < grid.Count() && greatest != 1; ++j)
    greatest = std::max(greatest, grid.At(j).Y);
  for (int j = 0; j < grid.Count() && greatest != 0; ++j) grid.At(j).Y *= 1 / greatest;
  return grid.Points();
}

TEST(Hedge, ApproximationsSpreadOverTheWholeRange) {
  const auto variable = MakeVariable(0, 10);
  for (const char* points : {"4,0 5,1 6,0", "5,0 5,1 5,0", "3,0.4", "0,0.2 2,0.9 2,0.3 9,0.5",
                             "0,0 1,0", "0,0.1 1,0.2 2,0.3 3,0.4 4,0.5 5,0.4 6,0.3 7,0.2"}) {
    for (const auto& [hedge, power] :
         {std::pair(fhAbout, 2.0), std::pair(fhVicinity, 4.0), std::pair(fhClose, 1.2),
          std::pair(fhNear, 1.2), std::pair(fhNeighboring, 1.2)}) {
      const auto set = MakeSet(points, "a", variable->GetItems());
      set->Hedge(hedge);
      EXPECT_EQ(set->GetValues()->GetCount(), 50);
      EXPECT_TRUE(
          SameBits(set->GetValues()->Points(), PlainApproximation(Parse(points), 0, 10, power)))
          << points << ' ' << set->GetName();
    }
  }
}

TEST(Hedge, SlightlyTakesThreeTemporarySets) {
  TFuzzyLogic fuzzy;
  fuzzy.SetAutoTerms(false);
  TFuzzyVariable* variable = fuzzy.GetItems()->Add("x");
  variable->SetMaximum(2);
  TFuzzySet* set = MakeSet("0,0 1,1 2,0", "a", variable->GetItems()).Release();
  std::string log;
  fuzzy.SetOnFuzzySetAdded(
      [&](TObject*, TFuzzySet* added) { log += "+" + std::to_string(added->GetIndex()); });
  fuzzy.SetOnFuzzySetDeleted(
      [&](TObject*, TFuzzySet* deleted) { log += "-" + std::to_string(deleted->GetIndex()); });
  fuzzy.SetOnVariableChange([&](TObject*, TFuzzyVariable*) { log += "!"; });
  set->GetValues()->BeginUpdate();
  set->Hedge(fhSlightly);
  set->GetValues()->EndUpdate();
  EXPECT_EQ(log, "+1+2+3-3-1-1!");
  EXPECT_EQ(set->GetName(), "slightly a");
  EXPECT_EQ(variable->GetItems()->GetCount(), 1);

  // The least of "plus" and "not very", on the points of both and their crossing between 2/3 and 1;
  // the height is that at the crossing.
  const double x = 2.0 / 3, plus = std::pow(x, 1.25), notVery = 1 - x * x;
  EXPECT_NEAR(set->DegreeOfMembership(0), 0, 1e-12);
  EXPECT_NEAR(set->DegreeOfMembership(2), 0, 1e-12);
  EXPECT_EQ(set->GetCompatibilityIndex(), 1);
  const double height = std::min(plus, notVery);  // at 2/3 "not very" is already the lesser
  ASSERT_LT(notVery, plus);
  const double cross = [&] {
    const double slopePlus = (plus - std::pow(1.0 / 3, 1.25)) * 3;
    const double slopeNot = (notVery - 8.0 / 9) * 3;
    const double t = (8.0 / 9 - std::pow(1.0 / 3, 1.25)) / (slopePlus - slopeNot);
    return std::pow(1.0 / 3, 1.25) + t * slopePlus;
  }();
  EXPECT_NEAR(set->DegreeOfMembership(x), 1 - 2 * std::pow(1 - height / cross, 2), 1e-9);
}

TEST(Hedge, SlightlyWorksOnASetOfItsOwn) {
  const auto set = MakeSet("0,0 1,1 2,0", "a");
  EXPECT_EQ(set->Hedge(fhSlightly), set.Get());
  EXPECT_EQ(set->GetCompatibilityIndex(), 1);
  EXPECT_EQ(set->GetCollection(), nullptr);
}

TEST(Hedge, EveryModifierOnDegreesAndOnX) {
  const struct {
    TBaseFuzzyHedge Hedge;
    double Value;
    bool ModifyY;
    const char *Points, *Name, *Expression;
  } cases[] = {
      {bfhAdd, 0.5, true, "-1,0.5 1,1.3 4,0.75", "tall + 0.5000", "+ "},
      {bfhSubtract, 0.5, true, "-1,0 1,0.3 4,0", "tall - -0.5000", "- "},
      {bfhMultiply, 2, true, "-1,0 1,1.6 4,0.5", "tall * 2.0000", "* "},
      {bfhDivide, 4, true, "-1,0 1,0.2 4,0.0625", "tall / 0.2500", "/ "},
      {bfhPower, 2, true, "-1,0 1,0.64 4,0.0625", "tall ^ 2.0000", "^ "},
      {bfhCutLess, 0.5, true, "-1,0.5 1,0.8 4,0.5", "tall < 0.5000", "< "},
      {bfgCutLessEq, 0.8, true, "-1,0.8 1,0.8 4,0.8", "tall <= 0.8000", "<= "},
      {bfhCutGreater, 0.5, true, "-1,0 1,0.5 4,0.25", "tall > 0.5000", "> "},
      {bfhCutGreaterEq, 0.25, true, "-1,0 1,0.25 4,0.25", "tall >= 0.2500", ">= "},
      {bfhAdd, 1.5, false, "0.5,0 2.5,0.8 5.5,0.25", "tall +X 1.5000", "+X "},
      {bfhSubtract, 1, false, "-2,0 0,0.8 3,0.25", "tall -X -1.0000", "-X "},
      {bfhMultiply, -1, false, "-4,0.25 -1,0.8 1,0", "tall *X -1.0000", "*X "},
      {bfhDivide, 2, false, "-0.5,0 0.5,0.8 2,0.25", "tall /X 0.5000", "/X "},
      {bfhPower, 2, false, "-1,0 1,0.8 16,0.25", "tall ^X 2.0000", "^X "},
      {bfhCutLess, 1, false, "1,0 1,0.8 4,0.25", "tall <X 1.0000", "<X "},
      {bfgCutLessEq, 4, false, "4,0 4,0.8 4,0.25", "tall <=X 4.0000", "<=X "},
      {bfhCutGreater, 0, false, "-1,0 0,0.8 0,0.25", "tall >X 0.0000", ">X "},
      {bfhCutGreaterEq, 4, false, "-1,0 1,0.8 4,0.25", "tall >=X 4.0000", ">=X "},
  };
  for (const auto& c : cases) {
    const auto set = MakeSet("-1,0 1,0.8 4,0.25", "tall");
    EXPECT_EQ(set->Hedge(c.Hedge, c.Value, c.ModifyY), set.Get());
    EXPECT_EQ(Text(set.Get()), c.Points) << c.Name;
    EXPECT_EQ(set->GetName(), c.Name);
    EXPECT_EQ(set->GetExpression(), c.Expression);
  }
}

TEST(Hedge, AnExpressionSurvivesInsideABlockOfTheCaller) {
  const auto set = MakeSet("0,0 1,1", "a");
  TUpdateBlock block(*set->GetValues());
  set->SetExpression("tall");
  set->Hedge(bfhMultiply, 2, false);
  EXPECT_EQ(set->GetExpression(), "*X tall");
  set->SetExpression("b or c");
  set->Hedge(fhNot);
  EXPECT_EQ(set->GetExpression(), "not [[b or c]]");

  const auto zero = MakeSet("0,0 1,0", "z");
  zero->SetExpression("x");
  zero->Hedge(fhNormalize);  // changes no point
  EXPECT_EQ(zero->GetExpression(), "normalize x");
}

TEST(Hedge, NamesNestAndNotTwiceRestores) {
  const auto set = MakeSet("0,0 1,0.25 2,1", "tall");
  set->Hedge(fhNot);
  set->Hedge(fhNot);
  EXPECT_EQ(set->GetName(), "not [not tall]");
  EXPECT_EQ(Text(set.Get()), "0,0 1,0.25 2,1");
}

TEST(Hedge, NormalizeScalesByTheReciprocal) {
  EXPECT_EQ(Text(MakeSet("0,0.1 1,0.5 2,0.25")->Normalize()), "0,0.2 1,1 2,0.5");
  EXPECT_EQ(Text(MakeSet("0,2 1,4")->Normalize()), "0,0.5 1,1");
  EXPECT_EQ(Text(MakeSet("0,0.5 1,1 2,4")->Normalize()), "0,0.5 1,1 2,4");  // 1 is the greatest
  EXPECT_EQ(Text(MakeSet("0,0 1,0")->Normalize()), "0,0 1,0");
}

TEST(Hedge, OnlyThreeKindsOfHedgesNeedPoints) {
  const auto variable = MakeVariable(0, 1);
  for (std::size_t i = 0; i < HedgeNames.size(); ++i) {
    const auto hedge = static_cast<TFuzzyHedge>(i);
    TFuzzySet* set = MakeSet("", "a", variable->GetItems()).Release();
    const bool needs =
        hedge == fhSlightly || hedge == fhNormalize || (hedge >= fhAbout && hedge <= fhNeighboring);
    EXPECT_EQ(MessageOf([&] { set->Hedge(hedge); }),
              needs ? "Invalid operation: \"Get Maximum Y Value\".  Fuzzy set is empty" : "");
    EXPECT_EQ(set->GetName(), needs ? TString("a") : HedgeNames[i] + TString(" a"));
    EXPECT_FALSE(set->GetValues()->IsUpdating());
    EXPECT_EQ(variable->GetItems()->GetCount(), static_cast<int>(i) + 1);
    EXPECT_FALSE(variable->GetItems()->IsUpdating());
  }
}

}  // namespace
}  // namespace fzy::test
