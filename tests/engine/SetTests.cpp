#include <functional>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/engine/FuzzyPointWalk.h"
#include "tests/engine/Models.h"

// A set's points, shapes and properties; what it refuses; what its callbacks may throw.

namespace fzy::test {
namespace {

using S = TFuzzySet;
template <class Set = S>
using TAction = void (*)(Set& s);

MODEL_TEST_SUITE(Shapes);
MODEL_TEST_SUITE(FuzzySet);
MODEL_TEST_SUITE(Refusals);

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();
constexpr int TooMany = MostShapePoints + 1;

TFuzzySetValue& Point(TFuzzySet& set, int index) { return *set.GetValues()->GetItem(index); }

// Worked out by hand, so that the list and its plain twin are not wrong together.
TEST(Points, AreNormalizedAfterAChange) {
  const std::tuple<const char*, TAction<>, const char*> cases[] = {
      {"1,0.2 1,0.5 1,0.8 2,0", [](S& s) { Point(s, 3).SetX(1); }, "1,0.2 1,0 1,0.8"},
      {"0,0 1,0.2 1,0.5 1,0.8", [](S& s) { Point(s, 0).SetX(1); }, "1,0.2 1,0.8 1,0"},
      {"1,0.5 1,0.7", [](S& s) { Point(s, 0).SetY(0.7); }, "1,0.7"},
      {"0,0 1,1 2,0", [](S& s) { s.GetValues()->SetItem(0, &Point(s, 1)); }, "1,1 2,0"},
      // Up to five of one X may come out of a block, more if nothing was out of order.
      {"2,0.1 1,0.2 1,0.3 1,0.4 1,0.5 1,0.6", [](S&) {}, "1,0.2 1,0.3 1,0.4 1,0.5 2,0.1"},
      {"1,0.2 1,0.3 1,0.4 1,0.5 1,0.6", [](S&) {}, "1,0.2 1,0.3 1,0.4 1,0.5 1,0.6"},
      {"0,0 50,1 100,0", [](S& s) { s.GetValues()->Expand(8); },
       "0,0 12.5,0.25 25,0.5 37.5,0.75 50,1 66.6667,0.666667 83.3333,0.333333 100,0"},
      {"0,0 1,0 1,1 4,1", [](S& s) { s.GetValues()->ExpandSimple(7); }, "0,0 1,0 1,1 2,1 3,1 4,1"},
      {"0,0 2,1 4,0", [](S& s) { s.GetValues()->ExpandSimple(5); },
       "0,0 1.33333,0.666667 2,1 2.66667,0.666667 4,0"},
      {"3,0 3,1 3,0", [](S& s) { s.GetValues()->ExpandSimple(9); }, "3,0 3,1 3,0"},
  };
  for (const auto& [points, action, result] : cases) {
    const auto set = MakeSet(points);
    action(*set);
    EXPECT_EQ(Text(set), result) << "from " << points;
  }
}

TEST(Points, AreLimitedByAnOwningSetOnly) {
  const auto variable = MakeVariable(0, 1);
  TFuzzySetValues& list = *AddSet(variable, "0,0 0.5,1")->GetValues();
  TFuzzySetValue* value = list.Add();
  value->SetX(1.5);  // no change, so not clamped
  EXPECT_EQ(Text(list.Points()), "0,0 0.5,1 1.5,0");
  EXPECT_EQ(MessageOf([&] { list.Insert(9); }), "There is no item with index 9");

  TFuzzySetValues free;
  const TOwned<TFuzzySetValue> freePoint(TFuzzySetValue::Create(nullptr));
  free.Add(-3, 1)->SetValue(-4, -0.5);
  freePoint->SetX(-3);
  freePoint->SetY(-1);
  freePoint->SetCollection(&free);
  EXPECT_EQ(MessageOf([&] { free.Add(Inf, 0); }), Refusal("SetX", "Not a finite number"));
  EXPECT_THROW(free[0]->SetX(-Inf), EFzyException);
  EXPECT_THROW(free[0]->SetValue(Inf, 0), EFzyException);
  EXPECT_THROW(free[0]->Assign(variable.Get()), EConvertError);
  EXPECT_THROW(free.Assign(variable.Get()), EConvertError);
  EXPECT_EQ(Text(free.Points()), "-4,-0.5 -3,0");
  EXPECT_EQ(MessageOf([&] { TFuzzySetValue::Create(variable->GetItems()); }),
            "A membership point belongs to a point list only, not to a TFuzzySets");
}

TEST(Points, AreAppendedAsFarAsTheSourceHasThem) {
  const std::tuple<int, int, const char*> cases[] = {{-5, 100, "0,0.5 1,1 2,0"},
                                                     {1, 1, "1,1"},
                                                     {7, 2, "2,0"},
                                                     {0, 0, ""},
                                                     {1, -4, ""},
                                                     {2, std::numeric_limits<int>::max(), "2,0"}};
  const auto source = MakeSet("0,0.5 1,1 2,0");
  for (const auto& [index, count, result] : cases) {
    TFuzzySetValues list, empty;
    list.Append(source->GetValues(), index, count);
    list.Append(&empty, 0, 3);
    EXPECT_EQ(Text(list.Points()), result) << index << ", " << count;
  }
}

TEST(Points, HaveStatistics) {
  const char* const cases[][2] = {{"0,0.25 1,0.75", "0.25 0.75 0.5 0.5 0.75 0.25"},
                                  {"0,2 1,4", "2 4 3 3 4 1"},
                                  {"0,0.5 1,1 2,1.5", "0.5 1 1 1 1.5 0.5"}};  // a search ends at 1
  double average = 0, greatest = 0, least = 0;
  for (const auto& [points, expected] : cases) {
    const auto set = MakeSet(points);
    const TFuzzySetValues& list = *set->GetValues();
    list.GetStatValues(average, greatest, least);
    std::string text;
    for (const double value :
         {list.GetMinValue(), list.GetMaxValue(), list.GetAvgValue(), average, greatest, least})
      text += (text.empty() ? "" : " ") + Text(value);
    EXPECT_EQ(text, expected);
  }
  const TFuzzySetValues none;
  const std::pair<const char*, std::function<void()>> statistics[] = {
      {"Get Minimum Y Value", [&] { none.GetMinValue(); }},
      {"Get Maximum Y Value", [&] { none.GetMaxValue(); }},
      {"Get Average Y Value", [&] { none.GetAvgValue(); }},
      {"Get Statistics Values", [&] { none.GetStatValues(average, greatest, least); }}};
  for (const auto& [name, statistic] : statistics)
    EXPECT_EQ(MessageOf(statistic), Refusal(name, "Fuzzy set is empty"));
}

TEST(Points, AreComparedWithATolerance) {
  EXPECT_TRUE(FloatEquals(1.0, 1.0001) && FloatEquals(1.0001, 1.0));
  EXPECT_FALSE(FloatEquals(1.0, 1.00011) || FloatEquals(1.00011, 1.0));
  const auto skipped = MakeSet("0,0.5 0.5,0.50009 1,0.5 1.00005,0.9 1,1 3,0");
  const TFuzzySetValues& points = *skipped->GetValues();
  EXPECT_EQ(points.SkipX(2, 1, 1), 5);
  EXPECT_EQ(points.SkipX(4, 1, -1), 1);
  EXPECT_TRUE(points.SkipX(5, 3, 0) == -1 && points.SkipX(0, 7, 1) == 0);
  EXPECT_TRUE(points.SkipY(0, 0.5, 1) == 3 && points.SkipY(2, 0.5, -1) == -1);
  EXPECT_EQ(points.GetXCount(1), 2);  // exactly

  const auto set = MakeSet("0,0 1,0.5 1,0.9 1.00009,0.2 3,1");
  TFuzzySetValues& list = *set->GetValues();
  EXPECT_TRUE(set->GetMaxYValueOfX(1, 1) == 2 && set->GetMaxYValueOfX(3, -1) == 2);
  EXPECT_EQ(set->GetMinYValueOfX(1, 1), 3);
  EXPECT_TRUE(set->GetSlope(list[1], list[2]) == 1 && set->GetSlope(list[2], list[1]) == -1);
  EXPECT_TRUE(set->GetSlope(list[2], list[2]) == 0 && set->GetSlope(list[0], list[1]) == 0.5);
  EXPECT_TRUE(set->InterpolateY(0, 1, 4, 3, 1) == 1.5 && set->InterpolateY(2, 1, 2, 3, 2) == 3);
  EXPECT_TRUE(set->InterpolateX(0, 1, 4, 3, 1.5) == 1 && set->InterpolateX(0, 1, 4, 1, 1) == 4);
  EXPECT_EQ(MessageOf([&] { set->GetMaxYValueOfX(5, 1); }), "There is no item with index 5");
  EXPECT_EQ(MessageOf([&] { set->GetMinYValueOfX(0, 0); }),
            Refusal("GetMinYValueOfX", "Invalid argument: 0"));
}

TYPED_TEST(Shapes, HaveTheirPointsAndRecordTheirType) {
  using C = typename TypeParam::TClass;
  struct {
    TAction<C> Make;
    const char* Points;
    TFuzzySetType Type;
  } const cases[] = {
      // clang-format off
      {[](C& s) { s.CreateTriangleFunctionValues(0, 2, 3); }, "0,0 2,1 3,0", fstTriangle},
      {[](C& s) { s.CreateTriangleFunctionValues(0, 9, 2); }, "0,0 2,1 2,0", fstTriangle},
      {[](C& s) { s.CreateCurveValues(5, 0, 1, 0.5, true); }, "0,0 0.25,0.125 0.5,0.5 0.75,0.875 1,1", fstGrowthCurve},
      {[](C& s) { s.CreateCurveValues(-4, 0, 1, 9, true); }, "0,0 0.5,0.5 1,1", fstGrowthCurve},
      {[](C& s) { s.CreatePIFunctionValues(8, 0, 80, 40); }, "0,0 10,0.125 20,0.5 30,0.875 50,0.875 60,0.5 70,0.125 80,0", fstPICurve},
      {[](C& s) { s.CreatePIFunctionValues(3, 0, 100, 50); }, "0,0 50,1 75,0.5 100,0", fstPICurve},
      {[](C& s) { s.CreatePIFunctionValues(5, 0, 4, 9); }, "0,0 2,0.5 4,1", fstPICurve},
      {[](C& s) { s.CreatePIFunctionValues(5, 2, 1); }, "-1,0 0,0.5 1,1 2,0.5 3,0", fstPICurve},
      {[](C& s) { s.CreateBetaCurveFunctionValues(5, 2, 0, 1); }, "-2,0.2 -1,0.5 0,1 1,0.5 2,0.2", fstBetaCurve},
      {[](C& s) { s.CreateBetaCurveFunctionValues(1, 2, 0, 1, 0.25); }, "-2,0.5 0,1 2,0.5", fstBetaCurve},
      {[](C& s) { s.CreateBetaCurveFunctionValues(3, 1, 5, 0); }, "4,0 5,1 6,0", fstBetaCurve},  // 1 however narrow
      {[](C& s) { s.CreateTriangleFunctionValues(3, 1, 2); }, "3,0 3,1 3,0", fstTriangle},
      {[](C& s) { s.CreateCurveValues(5, 0, 1, 0.5, false); }, "0,1 0.25,0.875 0.5,0.5 0.75,0.125 1,0", fstDeclineCurve},
      {[](C& s) { s.CreateCurveValues(3, 2, 2, 2, true); }, "2,0 2,0 2,0", fstGrowthCurve},
      {[](C& s) { s.CreatePIFunctionValues(7, 0, 60, 30); }, "0,0 10,0.222222 20,0.777778 30,1 40,0.777778 50,0.222222 60,0", fstPICurve},
      {[](C& s) { s.CreateTriangleFunctionValues(0, 1, 2), s.CreateTriangleFunctionValues(1, 3, 4); }, "0,0 1,1 1,0 2,0 3,1 4,0", fstTriangle},
      {[](C& s) { s.CreateTriangleFunctionValues(0, 1, 2), s.CreateCrispValue(5); }, "5,0 5,1 5,0", fstUserDefined},
      // clang-format on
  };
  for (const auto& c : cases) {
    const auto set = TypeParam::MakeSet("");
    c.Make(TypeParam::ClassOf(set));
    EXPECT_EQ(Text(set), c.Points);
    EXPECT_EQ(set->GetSetType(), c.Type) << c.Points;
  }
  const auto set = TypeParam::MakeSet("0,1");
  const std::string refusal =
      "Invalid range arguments.  Left (2.0000) is greater than right (1.5000)";
  EXPECT_EQ(MessageOf([&] { set->CreateCurveValues(3, 2, 1.5, 0, true); }), refusal);
  EXPECT_EQ(MessageOf([&] { set->CreatePIFunctionValues(3, 2, 1.5, 0); }), refusal);
  EXPECT_EQ(MessageOf([&] { set->CreatePIFunctionValues(3, -0.25, 1.75); }), refusal);
  EXPECT_EQ(MessageOf([&] { set->CreatePIFunctionValues(-1, 0, 1, 0.5); }),
            Refusal("CreatePIFunctionValues", "Invalid argument: -1"));
  EXPECT_EQ(Text(set), "0,1");
  set->CreateCurveValues(3, 0, 1, 77, true);
  EXPECT_EQ(set->GetInflectionPoint(), 77);
  set->CreatePIFunctionValues(5, 0, 4, 2);
  EXPECT_EQ(set->GetInflectionPoint(), 3);  // that of the right half
  set->CreateBetaCurveFunctionValues(3, 1, 0, 6);
  EXPECT_EQ(set->GetInflectionPoint(), 6);
  set->CreateCrispValue(-0.5);
  EXPECT_EQ(set->GetExpression(), "-0.5000");
}

TYPED_TEST(Shapes, AreGeneratedOverTheRangeByType) {
  const std::pair<TFuzzySetType, const char*> cases[] = {
      {fstTriangle, "3,0 9,1 15,0"},
      {fstGrowthCurve, "6,0 7,0.055556 8,0.222222 9,0.5 10,0.777778 11,0.944444 12,1"},
      {fstDeclineCurve, "6,1 7,0.944444 8,0.777778 9,0.5 10,0.222222 11,0.055556 12,0"},
      {fstPICurve, "3,0 5,0.222222 7,0.777778 9,1 11,0.777778 13,0.222222 15,0"},
      {fstBetaCurve, "3,0.058824 5,0.123288 7,0.36 9,1 11,0.36 13,0.123288 15,0.058824"},
  };
  const auto variable = TypeParam::MakeVariable(0, 18);
  const auto set = TypeParam::AddSet(variable, "");
  for (const auto& [type, points] : cases) {
    set->SetSetType(type);
    EXPECT_EQ(set->GetSetType(), type);
    EXPECT_EQ(Text(set), points);
  }
  variable->SetMaximum(0);
  for (const auto& [type, points] : cases) {
    set->SetSetType(type);
    EXPECT_EQ(PointsOf(*set).back().X, 0) << "no width";
  }
}

TYPED_TEST(FuzzySet, StartsEmptyAndUndefinedAndRefusesReservedNames) {
  const auto set = TypeParam::MakeSet("");
  auto& object = TypeParam::ClassOf(set);
  EXPECT_TRUE(set->GetSetType() == fstUserDefined && !set->GetDefined() && !set->GetVariable());
  EXPECT_EQ(object.GetDisplayName(), object.GetClass()->Name);
  EXPECT_EQ(object.GetXRange(0), 2147483647.0);
  EXPECT_EQ(object.GetXRange(1), -2147483647.0);
  EXPECT_EQ(MessageOf([&] { object.GetXRange(2); }),
            "Invalid index argument to GetXRange.  Index = 2");
  set->SetName("Very");
  for (const std::string name : {"very", "and", "or-meansqr", "<=X", "*"})
    EXPECT_EQ(MessageOf([&] { set->SetName(name); }),
              "Invalid fuzzy set name, \"" + name + "\" is a reserved word");
  Fill(*object.GetValues(), Parse("0,1 0.5,0"));
  EXPECT_EQ(set->ToString(), "(Very (0.0000 1.0000) (0.5000 0.0000) )");
  EXPECT_EQ(set->GetValuesToString(), "((0.0000 1.0000) (0.5000 0.0000) )");
}

TYPED_TEST(FuzzySet, AnyChangeOfAPointMakesItUserDefined) {
  using C = typename TypeParam::TClass;
  const auto set = TypeParam::MakeSet("");
  for (const TAction<C> change : std::initializer_list<TAction<C>>{
           [](C& s) { Point(s, 1).SetX(1); }, [](C& s) { Point(s, 1).SetY(0.5); },
           [](C& s) { s.GetValues()->Add(); }, [](C& s) { s.GetValues()->Delete(0); },
           [](C& s) { Point(s, 0).SetIndex(1); }, [](C& s) { s.GetValues()->Clear(); }}) {
    set->SetSetType(fstUserDefined);
    set->SetSetType(fstTriangle);
    set->SetExpression("e");
    change(TypeParam::ClassOf(set));
    EXPECT_EQ(set->GetSetType(), fstUserDefined);
    EXPECT_EQ(set->GetExpression(), "");
  }
  set->SetSetType(fstTriangle);
  TypeParam::ClassOf(set).GetValues()->ExpandSimple(3);
  EXPECT_EQ(set->GetSetType(), fstTriangle) << "nothing was missing";
}

TEST(FuzzySet, AssignAndCloneCopyWhatTheSetIsNotWhatItIsFor) {
  const auto variable = MakeVariable(0, 10), narrow = MakeVariable(1, 5);
  TFuzzySet* set = AddSet(variable, "", "s");
  set->CreateCurveValues(3, 0, 8, 5, true);
  set->SetExpression("e");
  set->SetComment("c");
  set->SetTag(7);
  set->SetDefined(true);
  const TFuzzySet* copy = set->Clone();
  EXPECT_EQ(copy->GetCollection(), variable->GetItems());
  EXPECT_EQ(copy->ToString(), set->ToString());
  EXPECT_TRUE(copy->GetSetType() == fstGrowthCurve && copy->GetInflectionPoint() == 5);
  EXPECT_EQ(copy->GetExpression() + copy->GetComment(), "e");
  EXPECT_TRUE(copy->GetTag() == 0 && !copy->GetDefined());
  TFuzzySet* clamped = narrow->GetItems()->Add();
  clamped->Assign(set);
  EXPECT_EQ(Text(clamped), "1,0 4,0.5 5,1");
  EXPECT_EQ(TOwned<S>(MakeSet("0,1")->Clone())->GetCollection(), nullptr);
}

TYPED_TEST(Refusals, LeaveEverythingAsItWas) {
  using C = typename TypeParam::TClass;
  const auto variable = TypeParam::MakeVariable(0, 10);
  const auto set = TypeParam::AddSet(variable, "", "s", TTelling<C>::Class());
  const int sets = TypeParam::CountOf(variable);
  set->CreateTriangleFunctionValues(0, 5, 10);
  set->SetExpression("e");
  std::string& told = dynamic_cast<TTelling<C>&>(*set).Told;
  told.clear();
  const auto check = [&](const std::string& message, TAction<C> action) {
    EXPECT_EQ(MessageOf([&] { action(TypeParam::ClassOf(set)); }), message);
    EXPECT_EQ(Text(set) + set->GetName().Utf8() + set->GetExpression().Utf8() + told,
              "0,0 5,1 10,0se");
    EXPECT_EQ(set->GetSetType(), fstTriangle);
    EXPECT_FALSE(TypeParam::ClassOf(set).GetValues()->IsUpdating()) << message;
    EXPECT_EQ(TypeParam::CountOf(variable), sets) << message;
  };
  // clang-format off
  const std::pair<const char*, std::vector<TAction<C>>> noNumbers[] = {
      {"SetX", {[](C& s) { Point(s, 1).SetX(NaN); }, [](C& s) { Point(s, 1).SetValue(NaN, 1); },
          [](C& s) { s.GetValues()->Add(NaN, 0); }}},
      {"SetY", {[](C& s) { Point(s, 1).SetY(NaN); }}},
      {"SetValue", {[](C& s) { Point(s, 1).SetValue(2, NaN); }}},
      {"Add", {[](C& s) { s.GetValues()->Add(0, NaN); }}},
      {"DegreeOfMembership", {[](C& s) { s.DegreeOfMembership(NaN); }}},
      {"CreateTriangleFunctionValues", {[](C& s) { s.CreateTriangleFunctionValues(0, NaN, 1); }}},
      {"CreateCurveValues", {[](C& s) { s.CreateCurveValues(5, NaN, 1, 0, true); },
          [](C& s) { s.CreateCurveValues(5, 0, NaN, 0, true); },
          [](C& s) { s.CreateCurveValues(5, 0, 1, NaN, true); }}},
      {"CreatePIFunctionValues", {[](C& s) { s.CreatePIFunctionValues(5, 0, 1, NaN); }}},
      {"CreateCurveValues", {[](C& s) { s.CreatePIFunctionValues(5, NaN, 1); }}},
      {"CreateBetaCurveFunctionValues", {[](C& s) { s.CreateBetaCurveFunctionValues(5, 1, 0, 1, NaN); },
          [](C& s) { s.CreateBetaCurveFunctionValues(5, 1, 0, 0, 0); }}},
      {"CreateCrispValue", {[](C& s) { s.CreateCrispValue(NaN); }}},
      {"AlphaCutoff", {[](C& s) { s.AlphaCutoff(NaN, true); }}}, {"Cutoff", {[](C& s) { s.Cutoff(NaN, true); }}},
      {"Hedge", {[](C& s) { s.Hedge(bfhAdd, NaN, true); }, [](C& s) { s.Hedge(bfhMultiply, Inf, false); },
          [](C& s) { s.Correlate(NaN, fcmMinimum); }}},
  };
  const std::pair<const char*, std::vector<TAction<C>>> infinite[] = {
      {"SetY", {[](C& s) { Point(s, 1).SetY(Inf); }}},
      {"SetValue", {[](C& s) { Point(s, 1).SetValue(2, Inf); }}},
      {"Add", {[](C& s) { s.GetValues()->Add(0, Inf); }}},
      {"CreateCurveValues", {[](C& s) { s.CreateCurveValues(5, 0, Inf, 0, true); }}},
      {"CreateBetaCurveFunctionValues", {[](C& s) { s.CreateBetaCurveFunctionValues(5, 1e308, -1e308, 1); },
          [](C& s) { s.CreateBetaCurveFunctionValues(3, 1, 0, 1, -1); }}},
      {"/", {[](C& s) { s.Hedge(bfhDivide, 0, true); }}},
      {"Hedge", {[](C& s) { s.Hedge(bfhAdd, Inf, true); }, [](C& s) { s.Hedge(bfhCutLess, Inf, true); }}},
      {"InterpolateX", {[](C& s) { s.InterpolateX(0, 0, 1e300, 1e-300, 1); }}},
      {"InterpolateY", {[](C& s) { s.InterpolateY(0, 0, 1e-300, 1, 1e300); }}},
  };
  const std::pair<const char*, std::vector<TAction<C>>> tooMany[] = {
      {"CreateCurveValues", {[](C& s) { s.CreateCurveValues(TooMany, 0, 1, 0, true); }}},
      {"CreatePIFunctionValues", {[](C& s) { s.CreatePIFunctionValues(TooMany, 0, 1, 0); },
          [](C& s) { s.CreatePIFunctionValues(TooMany, 1, 0); }}},
      {"CreateBetaCurveFunctionValues", {[](C& s) { s.CreateBetaCurveFunctionValues(TooMany, 1, 0, 1); }}},
      {"Expand", {[](C& s) { s.GetValues()->Expand(TooMany); }}},
      {"ExpandSimple", {[](C& s) { s.GetValues()->ExpandSimple(TooMany); }}},
  };
  // clang-format on
  const char *notANumber = "Not a number", *notFinite = "Not a finite number";
  for (const auto& [name, actions] : noNumbers)
    for (const TAction<C> action : actions) check(Refusal(name, notANumber), action);
  for (const auto& [name, actions] : infinite)
    for (const TAction<C> action : actions) check(Refusal(name, notFinite), action);
  for (const auto& [name, actions] : tooMany)
    for (const TAction<C> action : actions)
      check(Refusal(name, "Invalid argument: " + std::to_string(TooMany)), action);
  variable->SetMinimum(3);
  variable->SetMaximum(3);
  check(Refusal("approximation", notFinite), [](C& s) { s.Hedge(fhNear); });

  const auto huge = TypeParam::MakeSet("0,1.5e308 1,1e308");
  EXPECT_EQ(MessageOf([&] { huge->Union(huge.Get(), foSum); }), Refusal("Add", notFinite));
}

TYPED_TEST(Refusals, DoNotMeetAnInfinityThatIsClamped) {
  using C = typename TypeParam::TClass;
  const auto variable = TypeParam::MakeVariable(0, 10);
  const char* points = "1,0.5 2,1 3,0";
  const std::pair<TAction<C>, const char*> cases[] = {
      {[](C& s) { Point(s, 0).SetX(Inf); }, "2,1 3,0 10,0.5"},
      {[](C& s) { Point(s, 2).SetValue(-Inf, -Inf); }, "0,0 1,0.5 2,1"},
      {[](C& s) { Point(s, 1).SetY(-Inf); }, "1,0.5 2,0 3,0"},
      {[](C& s) { s.GetValues()->Add(-Inf, 1); }, "0,1 1,0.5 2,1 3,0"},
      {[](C& s) { s.CreateCrispValue(Inf); }, "10,0 10,1 10,0"},
      {[](C& s) { s.Hedge(bfhSubtract, Inf, false); }, "0,0.5 0,1 0,0"},
      {[](C& s) { s.Hedge(bfhCutGreater, Inf, true); }, points},
  };
  for (const auto& [action, result] : cases) {
    const auto set = TypeParam::AddSet(variable, points);
    action(TypeParam::ClassOf(set));
    EXPECT_EQ(Text(set), result);
  }
  EXPECT_EQ(TypeParam::MakeSet(points)->DegreeOfMembership(-Inf), 0.5);
  EXPECT_EQ(Text(typename TypeParam::THandle(TypeParam::MakeSet(points)->Cutoff(Inf, false))),
            points);
}

TEST(PointWalk, CursorsMoveOnAndTheWinnerIsCopied) {
  const auto a = MakeSet("0,0.1 1,0.2"), b = MakeSet("0,0.3 2,0.4");
  for (const auto& [y1, flag, copied] :
       {std::tuple(0.5, true, true), {0.5, false, false}, {0.4, false, true}, {0.4, true, false}}) {
    const auto result = MakeSet("");
    TFuzzySetValues v;
    TUpdateBlock block(v);
    for (const TFuzzyPoint& point : Parse("0,0.1 0,0.3 7,7 8,8")) v.Add(point.X, point.Y);
    int i = 0, j = 1;
    Add1AndIncrement2(result.Get(), v[0], v[1], v[2], v[3], i, j, y1, 0.5, a->GetValues(),
                      b->GetValues(), 5, flag);
    EXPECT_EQ(Text(result), copied ? "0,0.1" : "");
    EXPECT_EQ(i * 10 + j, 12);
    EXPECT_EQ(Text(v.Points()), "1,0.2 5,0.3 0,0.1 0,0.3");
    AddAndIncrement(result.Get(), v[0], v[2], v[3], i, y1, 0.5, a->GetValues(), 9, flag);
    EXPECT_EQ(Text(v.Points()), "9,0.2 5,0.3 1,0.2 " + std::string(y1 == 0.5 ? "1,0.2" : "0,0.3"));
  }
}

}  // namespace
}  // namespace fzy::test
