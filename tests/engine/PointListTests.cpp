#include <limits>

#include <gtest/gtest.h>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/framework/Exception.h"
#include "tests/engine/Sets.h"

namespace fzy::test {
namespace {

TEST(PointList, TheToleranceIncludesItsBounds) {
  EXPECT_TRUE(FloatEquals(1.0, 1.0001) && FloatEquals(1.0001, 1.0));
  EXPECT_FALSE(FloatEquals(1.0, 1.00011) || FloatEquals(1.00011, 1.0));
  EXPECT_EQ(Sign(-1e-300), -1);
  EXPECT_EQ(Sign(0.0), 0);
  EXPECT_EQ(Sign(7), 1);
}

struct TChange {
  const char* Name;
  const char* Before;
  int Index;
  enum : std::uint8_t { X, Y, Both } Coordinate;
  TFuzzyPoint Value;
  const char* After;
  int IndexAfter;  // where the changed point then stands
};

void PrintTo(const TChange& change, std::ostream* out) { *out << change.Name; }

class PointChange : public testing::TestWithParam<TChange> {};

TEST_P(PointChange, NormalizesTheList) {
  const TChange& change = GetParam();
  const auto set = MakeSet(change.Before);
  TFuzzySetValue* value = (*set->GetValues())[change.Index];
  if (change.Coordinate == TChange::X) value->SetX(change.Value.X);
  if (change.Coordinate == TChange::Y) value->SetY(change.Value.Y);
  if (change.Coordinate == TChange::Both) value->SetValue(change.Value.X, change.Value.Y);
  EXPECT_EQ(Text(set.Get()), change.After);
  EXPECT_EQ(value->GetIndex(), change.IndexAfter);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PointChange,
    testing::Values(
        TChange{"MovesIntoOrder", "0,0 1,1 2,0", 0, TChange::X, {1.5, 0}, "1,1 1.5,0 2,0", 1},
        TChange{"TheFourthOfOneX",
                "1,0.2 1,0.5 1,0.8 2,0",
                3,
                TChange::X,
                {1, 0},
                "1,0.2 1,0 1,0.8",
                1},
        TChange{"TheFourthOfOneXFromBelow",
                "0,0 1,0.2 1,0.5 1,0.8",
                0,
                TChange::X,
                {1, 0},
                "1,0.2 1,0.8 1,0",
                2},
        TChange{"TheUpdatedTwinIsKept", "1,0.5 1,0.7", 0, TChange::Y, {0, 0.7}, "1,0.7", 0},
        TChange{"LastOfItsX", "0,0 1,0.2 3,1", 0, TChange::X, {1, 0}, "1,0.2 1,0 3,1", 1},
        TChange{"NegativeDegree", "0,0.3 1,1", 0, TChange::Y, {0, -0.5}, "0,0 1,1", 0},
        TChange{"DegreeAboveOne", "0,0.3 1,1", 0, TChange::Y, {0, 1.5}, "0,1.5 1,1", 0},
        TChange{"BothAtOnce", "0,0 1,1 2,0", 0, TChange::Both, {3, -1}, "1,1 2,0 3,0", 2},
        // Five of one X may come out of a block; the first of them cannot take one before itself.
        TChange{"FirstOfFive",
                "1,0.1 1,0.2 1,0.3 1,0.4 1,0.5",
                0,
                TChange::Y,
                {0, 0.9},
                "1,0.9 1,0.3 1,0.4 1,0.5",
                0},
        // Twins that no change has shown go when another twin has the list cleaned up; the group of
        // the changed point then stands elsewhere.
        TChange{"CleanedUpElsewhere",
                "0,0 0,0 0,0 0,0 0,0 0,0 5,0.1 5,0.2 5,0.3 5,0.4 5,0.5",
                10,
                TChange::Y,
                {0, 0.4},
                "0,0 5,0.1 5,0.2 5,0.4",
                3}),
    [](const auto& param) { return std::string(param.param.Name); });

TEST(PointList, ABlockCleansUpOnlyWhatAChangeHasBrokenAndKeepsFourOfOneX) {
  EXPECT_EQ(Text(MakeSet("2,0.1 1,0.2 1,0.3 1,0.4 1,0.5 1,0.6").Get()),
            "1,0.2 1,0.3 1,0.4 1,0.5 2,0.1");
  const char* ascending = "1,0.2 1,0.3 1,0.4 1,0.5 1,0.6";
  EXPECT_EQ(Text(MakeSet(ascending).Get()), ascending);
}

TEST(PointList, ANewPointStandsOneBeyondTheLast) {
  const auto variable = MakeVariable(0, 1);
  TFuzzySetValues& list = *variable->GetItems()->Add()->GetValues();
  EXPECT_EQ(list.Add()->GetPoint(), (TFuzzyPoint{0, 0}));
  list.Add(0.5, 1);
  TFuzzySetValue* value = list.Add();
  EXPECT_EQ(value->GetX(), 1.5);
  value->SetX(1.5);  // no change, so not clamped
  EXPECT_EQ(value->GetX(), 1.5);
  value->SetX(1.25);
  EXPECT_EQ(value->GetX(), 1);
  EXPECT_EQ(list.Insert(1)->GetIndex(), 1);
  EXPECT_EQ(Text(list.Points()), "0,0 2,0 0.5,1 1,0");
  EXPECT_EQ(MessageOf([&] { list.Insert(9); }), "List index out of bounds (9)");
  EXPECT_EQ(list.GetCount(), 4);
}

TEST(PointList, OnlyAnOwningSetLimitsItsPoints) {
  const auto variable = MakeVariable(0, 1);
  TFuzzySetValues& list = *variable->GetItems()->Add()->GetValues();
  TFuzzySetValues freeList;
  const TOwned<TFuzzySetValue> freePoint(TFuzzySetValue::Create(nullptr));
  list.Add(-3, 1);
  freeList.Add(-3, 1)->SetValue(-4, -0.5);
  freePoint->SetX(-3);
  freePoint->SetY(-1);
  EXPECT_EQ(Text(list.Points()), "0,1");
  EXPECT_EQ(Text(freeList.Points()), "-4,-0.5");
  EXPECT_EQ(freePoint->GetPoint(), (TFuzzyPoint{-3, 0}));
  freePoint->SetCollection(&freeList);
  EXPECT_EQ(Text(freeList.Points()), "-4,-0.5 -3,0");
}

TEST(PointList, TakesPointsFromPointsOnly) {
  const auto set = MakeSet("0,0 1,1 2,0");
  TFuzzySetValues& list = *set->GetValues();
  list.SetItem(0, list[1]);
  EXPECT_EQ(Text(set.Get()), "1,1 2,0");
  EXPECT_THROW(list[0]->Assign(set.Get()), EConvertError);
  EXPECT_THROW(list.Assign(set.Get()), EConvertError);
  TFuzzySets sets;
  EXPECT_EQ(MessageOf([&] { TFuzzySetValue::Create(&sets); }),
            "A membership point belongs to a point list only, not to a TFuzzySets");
}

TEST(PointList, AppendsWhatTheSourceHas) {
  struct {
    int Index, Count;
    const char* Result;
  } const cases[] = {{-5, 100, "0,0.5 1,1 2,0"},
                     {1, 1, "1,1"},
                     {7, 2, "2,0"},
                     {2, std::numeric_limits<int>::max(), "2,0"},
                     {0, 0, ""},
                     {1, -4, ""}};
  const auto source = MakeSet("0,0.5 1,1 2,0");
  for (const auto& c : cases) {
    TFuzzySetValues list;
    list.Append(source->GetValues(), c.Index, c.Count);
    EXPECT_EQ(Text(list.Points()), c.Result) << c.Index << ", " << c.Count;
  }
  TFuzzySetValues list;
  TFuzzySetValues empty;
  list.Append(&empty, 0, 3);
  list.Append(&empty);
  EXPECT_EQ(list.GetCount(), 0);
}

TEST(PointList, ExpandsItsGapsOrItsSpan) {
  const auto gaps = MakeSet("0,0 50,1 100,0");
  gaps->GetValues()->Expand(8);
  EXPECT_EQ(Text(gaps.Get()),
            "0,0 12.5,0.25 25,0.5 37.5,0.75 50,1 66.6667,0.666667 "
            "83.3333,0.333333 100,0");
  const auto span = MakeSet("0,0 1,0 1,1 4,1");
  span->GetValues()->ExpandSimple(7);  // at 1 the new point equals the last one there
  EXPECT_EQ(Text(span.Get()), "0,0 1,0 1,1 2,1 3,1 4,1");

  const auto crisp = MakeSet("3,0 3,1 3,0");
  for (const int count : {1, 3, 9}) {
    crisp->GetValues()->Expand(count);
    crisp->GetValues()->ExpandSimple(count);
    EXPECT_EQ(Text(crisp.Get()), "3,0 3,1 3,0");
  }
}

TEST(PointList, StatisticsAreThoseOfTheDegrees) {
  struct {
    const char* Points;
    double Least, Greatest, Average, StatGreatest, StatLeast;
  } const cases[] = {{"0,0.25 1,0.75", 0.25, 0.75, 0.5, 0.75, 0.25},
                     {"0,2 1,4", 2, 4, 3, 4, 1},
                     {"0,0.5 1,1 2,1.5", 0.5, 1, 1, 1.5, 0.5}};  // a search ends at 1
  for (const auto& c : cases) {
    const auto set = MakeSet(c.Points);
    const TFuzzySetValues& list = *set->GetValues();
    EXPECT_EQ(list.GetMinValue(), c.Least);
    EXPECT_EQ(list.GetMaxValue(), c.Greatest);
    EXPECT_EQ(list.GetAvgValue(), c.Average);
    double average = 0, greatest = 0, least = 0;
    list.GetStatValues(average, greatest, least);
    EXPECT_EQ(average, c.Average);
    EXPECT_EQ(greatest, c.StatGreatest);
    EXPECT_EQ(least, c.StatLeast);
  }
  const TFuzzySetValues empty;
  const auto refusal = [](const std::string& name) {
    return "Invalid operation: \"" + name + "\".  Fuzzy set is empty";
  };
  double y = 0;
  EXPECT_EQ(MessageOf([&] { empty.GetMinValue(); }), refusal("Get Minimum Y Value"));
  EXPECT_EQ(MessageOf([&] { empty.GetMaxValue(); }), refusal("Get Maximum Y Value"));
  EXPECT_EQ(MessageOf([&] { empty.GetAvgValue(); }), refusal("Get Average Y Value"));
  EXPECT_EQ(MessageOf([&] { empty.GetStatValues(y, y, y); }), refusal("Get Statistics Values"));
}

TEST(PointList, SkipsToTheNextOfAnotherCoordinate) {
  const auto set = MakeSet("0,0.5 0.5,0.50009 1,0.5 1.00005,0.9 1,1 3,0");
  const TFuzzySetValues& list = *set->GetValues();
  EXPECT_EQ(list.SkipX(2, 1, 1), 5);
  EXPECT_EQ(list.SkipX(4, 1, -1), 1);
  EXPECT_EQ(list.SkipX(5, 3, 0), -1);
  EXPECT_EQ(list.SkipX(0, 7, 1), 0);
  EXPECT_EQ(list.SkipY(0, 0.5, 1), 3);
  EXPECT_EQ(list.SkipY(2, 0.5, -1), -1);
  EXPECT_EQ(list.GetXCount(1), 2);  // exactly
}

}  // namespace
}  // namespace fzy::test
