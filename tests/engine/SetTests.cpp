#include <gtest/gtest.h>

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/model/FuzzyLogic.h"
#include "tests/engine/Sets.h"

// A set's life, properties and texts; membership at single places.

namespace fzy::test {
namespace {

TEST(FuzzySet, StartsEmptyAndUndefinedButInADesigner) {
  const TOwned<TFuzzySet> set(TFuzzySet::Create());
  EXPECT_EQ(set->GetValues()->GetFuzzySet(), set.Get());
  EXPECT_EQ(set->GetValues()->GetCount(), 0);
  EXPECT_EQ(set->GetSetType(), fstUserDefined);
  EXPECT_FALSE(set->GetDefined());
  EXPECT_EQ(set->GetVariable(), nullptr);
  EXPECT_EQ(set->GetDisplayName(), "TFuzzySet");

  TFuzzyLogic fuzzy;
  TFuzzyVariable* variable = fuzzy.GetItems()->Add("x");
  EXPECT_FALSE(TFuzzySet::Create(variable->GetItems())->GetDefined());
  fuzzy.SetDesigning(true);
  EXPECT_TRUE(TFuzzySet::Create(variable->GetItems())->GetDefined());
}

TEST(FuzzySet, RefusesReservedNamesAndKeepsTheOldOne) {
  const auto set = MakeSet("", "old");
  for (const std::string name : {"very", "and", "or-meansqr", "<=X", "*"}) {
    EXPECT_EQ(MessageOf([&] { set->SetName(name); }),
              "Invalid fuzzy set name, \"" + name + "\" is a reserved word");
    EXPECT_EQ(set->GetName(), "old");
  }
  set->SetName("Very");
  EXPECT_EQ(set->GetName(), "Very");
  set->SetName("");
  EXPECT_EQ(set->GetDisplayName(), "TFuzzySet");
}

TEST(FuzzySet, TellsItsVariableOfEveryNewValueOnce) {
  TFuzzyLogic fuzzy;
  TFuzzySet* set = fuzzy.GetItems()->Add("x")->GetItems()->Add("s");
  int changes = 0;
  fuzzy.SetOnFuzzySetChange([&](TObject*, TFuzzySet* changed) { changes += changed == set; });
  const auto told = [&](auto change) {
    changes = 0;
    change();
    return changes;
  };
  for (const int expected : {1, 0}) {  // the second time nothing is new
    EXPECT_EQ(told([&] { set->SetName("t"); }), expected);
    EXPECT_EQ(told([&] { set->SetComment("c"); }), expected);
  }
  EXPECT_EQ(told([&] { set->SetSetType(fstTriangle); }), 2);  // the points, then the type
  EXPECT_EQ(told([&] { set->SetSetType(fstTriangle); }), 0);
  EXPECT_EQ(told([&] { set->SetSetType(fstUserDefined); }), 1);
  EXPECT_EQ(told([&] { (*set->GetValues())[1]->SetY(0.5); }), 1);
  EXPECT_EQ(told([&] { set->SetExpression("e"), set->SetTag(1), set->SetDefined(false); }), 0);
}

TEST(FuzzySet, AnyChangeOfAPointMakesItUserDefined) {
  const auto set = MakeSet("");
  const auto prepare = [&] {
    set->SetSetType(fstUserDefined);
    set->SetSetType(fstTriangle);
    set->SetExpression("e");
  };
  TFuzzySetValues& list = *set->GetValues();
  for (const auto& change : std::initializer_list<std::function<void()>>{
           [&] { list[1]->SetX(1); }, [&] { list[1]->SetY(0.5); }, [&] { list.Add(); },
           [&] { list.Delete(0); }, [&] { list[0]->SetIndex(1); }, [&] { list.Clear(); }}) {
    prepare();
    change();
    EXPECT_EQ(set->GetSetType(), fstUserDefined);
    EXPECT_EQ(set->GetExpression(), "");
  }
}

TEST(FuzzySet, AssignAndCloneCopyWhatTheSetIsNotWhatItIsFor) {
  const auto variable = MakeVariable(0, 10);
  TFuzzySet* set = variable->GetItems()->Add("s");
  set->CreateCurveValues(3, 0, 8, 5, true);
  set->SetExpression("e");
  set->SetComment("c");
  set->SetTag(7);
  TFuzzySet* copy = set->Clone();
  ASSERT_EQ(copy->GetCollection(), variable->GetItems());
  EXPECT_EQ(copy->GetName(), "s");
  EXPECT_EQ(Text(copy), "0,0 4,0.5 8,1");
  EXPECT_EQ(copy->GetSetType(), fstGrowthCurve);
  EXPECT_EQ(copy->GetInflectionPoint(), 5);
  EXPECT_EQ(copy->GetExpression(), "e");
  EXPECT_EQ(copy->GetComment(), "");
  EXPECT_EQ(copy->GetTag(), 0);
  EXPECT_FALSE(copy->GetDefined());

  const auto narrow = MakeVariable(1, 5);
  TFuzzySet* clamped = narrow->GetItems()->Add();
  clamped->Assign(set);
  EXPECT_EQ(Text(clamped), "1,0 4,0.5 5,1");
  EXPECT_THROW(set->Assign(variable.Get()), EConvertError);
  const TOwned<TFuzzySet> alone(MakeSet("0,1", "alone")->Clone());
  EXPECT_EQ(alone->GetCollection(), nullptr);
}

TEST(FuzzySet, RangesOverItsVariableOrAlmostAnything) {
  const auto variable = MakeVariable(-1, 6);
  const TFuzzySet* set = variable->GetItems()->Add();
  EXPECT_EQ(set->GetXRange(0), 6);
  EXPECT_EQ(set->GetXRange(1), -1);
  const auto alone = MakeSet("");
  EXPECT_EQ(alone->GetXRange(0), 2147483647.0);
  EXPECT_EQ(alone->GetXRange(1), -2147483647.0);
  for (const int index : {2, -1})
    EXPECT_EQ(MessageOf([&] { alone->GetXRange(index); }),
              "Invalid index argument to GetXRange.  Index = " + std::to_string(index));
}

TEST(FuzzySet, WritesItsPoints) {
  EXPECT_EQ(MakeSet("", "a")->ToString(), "(a )");
  const auto set = MakeSet("0,1 0.5,0", "low");
  EXPECT_EQ(set->ToString(), "(low (0.0000 1.0000) (0.5000 0.0000) )");
  EXPECT_EQ(set->GetValuesToString(), "((0.0000 1.0000) (0.5000 0.0000) )");
}

TEST(FuzzySet, MembershipAtSinglePlaces) {
  struct {
    const char* Points;
    double X, Degree;
  } const cases[] = {
      {"", 3, 0},
      {"0,0.2 1,0.8", -5, 0.2},
      {"0,0.2 1,0.8", 9, 0.8},
      {"0,0 1,0 1,1 2,1", 1, 1},
      {"0,0 1,0 1,1 2,1", 0.5, 0},
      {"5,0 5,1 5,0", 5, 1},
      {"5,0 5,1 5,0", 4.99999, 0},
      {"5,0 5,1 5,0", 5.00001, 0},
      {"1,0.5 2,0.1 2.00009,0.7 2.00018,0.9", 2, 0.7},  // a run is measured from its first point
  };
  for (const auto& c : cases)
    EXPECT_EQ(MakeSet(c.Points)->DegreeOfMembership(c.X), c.Degree) << c.Points << " at " << c.X;
}

TEST(FuzzySet, LinesAndRuns) {
  const auto set = MakeSet("0,0 1,0.5 1,0.9 1,0.9 1.00009,0.2 3,1");
  TFuzzySetValues& list = *set->GetValues();
  ASSERT_EQ(Text(set.Get()), "0,0 1,0.5 1,0.9 1.00009,0.2 3,1");
  EXPECT_EQ(set->GetMaxYValueOfX(1, 1), 2);
  EXPECT_EQ(set->GetMinYValueOfX(1, 1), 3);
  EXPECT_EQ(set->GetMaxYValueOfX(3, -1), 2);
  EXPECT_EQ(set->GetMinYValueOfX(4, -1), 4);
  EXPECT_EQ(set->GetSlope(list[1], list[2]), 1);
  EXPECT_EQ(set->GetSlope(list[2], list[1]), -1);
  EXPECT_EQ(set->GetSlope(list[2], list[2]), 0);
  EXPECT_EQ(set->GetSlope(list[0], list[1]), 0.5);
  EXPECT_EQ(set->InterpolateY(0, 1, 4, 3, 1), 1.5);
  EXPECT_EQ(set->InterpolateY(2, 1, 2, 3, 2), 3);
  EXPECT_EQ(set->InterpolateX(0, 1, 4, 3, 1.5), 1);
  EXPECT_EQ(set->InterpolateX(0, 1, 4, 1, 1), 4);
  EXPECT_EQ(MessageOf([&] { set->GetMaxYValueOfX(5, 1); }), "List index out of bounds (5)");
  EXPECT_EQ(MessageOf([&] { set->GetMinYValueOfX(0, 0); }),
            "Invalid operation: \"GetMinYValueOfX\".  Invalid argument: 0");
}

}  // namespace
}  // namespace fzy::test
