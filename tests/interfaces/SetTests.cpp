#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "tests/engine/Models.h"
#include "tests/support/ForeignSet.h"

// What a counted set does in its own way; the rest is held against the owned one.

namespace fzy::test {
namespace {

using M = TCountedModel;
using TSet = Ref<IFuzzySet>;
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

TSet Foreign(const TPoints& points) { return new TForeignSet(points, "f", "e"); }

/// A set of a variable, with what it was told.
class CountedSet : public testing::Test {
 protected:
  CountedSet() { Refill(); }
  void Refill() {
    Fill(*M::ClassOf(Set).GetValues(), Parse("1,0 3,1"));
    Told.clear();
  }

  Ref<IFuzzyVariable> Variable = M::MakeVariable(0, 10);
  TSet Set = M::AddSet(Variable, "", "s", TTelling<TIFuzzySet>::Class());
  std::string& Told = dynamic_cast<TTelling<TIFuzzySet>&>(*Set).Told;
};

// A list that is put in order, or loses a duplicate, tells of that too.
TEST_F(CountedSet, AddsPointsWholeAndTellsOfEach) {
  const TSet f = Foreign(Parse("1,0.1 2,0.2 3,0.3")), none = Foreign({});
  const std::tuple<std::function<int(IFuzzySet & s)>, int, const char*, const char*> cases[] = {
      // clang-format off
      {[](auto& s) { return s.Add(7, 0); }, 2, "1,0 3,1 7,0", "l"},
      {[](auto& s) { return s.Add(2, 0.5); }, 2, "1,0 2,0.5 3,1", "ll"},  // where it was appended
      {[](auto& s) { return s.Add(-Inf, -1); }, 2, "0,0 1,0 3,1", "ll"},
      {[](auto& s) { return s.Insert(0, 5, 0.5); }, 0, "1,0 3,1 5,0.5", "ll"},
      {[&](auto& s) { return s.Append(f), 0; }, 0, "1,0 1,0.1 2,0.2 3,1 3,0.3", "lllll"},
      {[&](auto& s) { return s.Append(f, 5, 10), 0; }, 0, "1,0 3,1 3,0.3", "l"},
      {[&](auto& s) { return s.Append(f, -1, 2), 0; }, 0, "1,0 1,0.1 2,0.2 3,1", "llll"},
      {[&](auto& s) { return s.Append(f, 1, -1), s.Append(none, 0, 3), 0; }, 0, "1,0 3,1", ""},
      {[&](auto& s) { return s.Append(&s), 0; }, 0, "1,0 3,1", "llll"},
      {[&](auto& s) { return s.AssignValues(f), 0; }, 0, "1,0.1 2,0.2 3,0.3", "l"},
      {[&](auto& s) { return s.AssignValues(&s), 0; }, 0, "1,0 3,1", "l"},
      {[](auto& s) { return s.SetXValues(0, 99), s.SetYValues(0, 0.5), 0; }, 0, "3,0.5 10,0", "llpp"},
      // clang-format on
  };
  for (const auto& [act, index, points, told] : cases) {
    Refill();
    EXPECT_EQ(act(*Set), index);
    EXPECT_EQ(Text(Set), points);
    EXPECT_EQ(Told, told) << points;
  }
  Refill();
  for (const auto& [points, equal] :
       {std::pair("1.00009,0 3,1.00009", true), {"1,0", false}, {"1,0 3,0.9", false}})
    EXPECT_EQ(M::ClassOf(Set).GetValues()->EqualsValues(Foreign(Parse(points))), equal);
}

TEST_F(CountedSet, RefusesBeforeAnythingChanges) {
  Set->SetDefined(true);
  Variable->Add(Set);
  const TSet wrong = Foreign({{1, 0.5}, {2, NaN}}), endless = Foreign({{1, 0.5}, {2, Inf}});
  const std::string number = Refusal("Add", "Not a number"), none = "No fuzzy set given";
  const std::pair<std::string, std::function<void(IFuzzySet & s)>> faults[] = {
      // clang-format off
      {number, [&](auto& s) { s.Append(wrong); }}, {number, [&](auto& s) { s.AssignValues(wrong); }}, {number, [&](auto& s) { s.Assign(wrong); }},
      {Refusal("Add", "Not a finite number"), [&](auto& s) { s.Append(endless); }}, {Refusal("SetX", "Not a number"), [](auto& s) { s.Insert(0, NaN, 1); }},
      {"There is no item with index 3", [](auto& s) { s.Insert(3, 1, 1); }}, {"There is no item with index -1", [](auto& s) { s.GetYValues(-1); }},
      {Refusal("Append", none), [](auto& s) { s.Append(nullptr); }}, {Refusal("AssignValues", none), [](auto& s) { s.AssignValues(nullptr); }},
      {Refusal("Intersects", none), [](auto& s) { s.Intersects(nullptr); }}, {Refusal("Operator", none), [](auto& s) { s.Operator(nullptr, "x", nullptr); }},
      {"Invalid fuzzy set name, \"very\" is a reserved word", [](auto& s) { s.SetName("very"); }},
      // clang-format on
  };
  for (const auto& [message, fault] : faults) {
    EXPECT_EQ(MessageOf([&f = fault, this] { f(*Set); }), message);
    EXPECT_EQ(Text(Set) + Told, "1,0 3,1") << message;
    EXPECT_TRUE(Set->GetVariable() == Variable && Variable->GetFuzzySet(0) == Set);
    EXPECT_EQ(Set->GetIndex(), 0) << message;
  }
}

/// What assignment and copying may take over: text, type, inflection point and tag.
std::string Traits(const TSet& set) {
  return (set->ToString() + set->GetExpression() + set->GetComment()).Utf8() + ' ' +
         Text(TPoints{{double(Ordinal(set->GetSetType())), set->GetInflectionPoint()}}) + ' ' +
         std::to_string(set->GetTag());
}

TEST_F(CountedSet, TakesOverWhatAnotherIsAndNotWhatItIsFor) {
  const auto narrow = M::MakeVariable(1, 5), wide = M::MakeVariable(0, 20);
  const TSet source = wide->Add("source");
  source->CreateCurveValues(3, 0, 18, 5, true);
  source->SetExpression("e");
  source->SetComment("c");
  source->SetTag(7);
  // The set itself, and what is no set, change nothing.
  for (IInterface* other :
       {static_cast<IInterface*>(source.Get()), static_cast<IInterface*>(Set.Get()),
        static_cast<IInterface*>(wide.Get())}) {
    Set->Assign(Ref<IInterface>(other));
    EXPECT_EQ(Traits(Set), "(s (0.0000 0.0000) (9.0000 0.5000) (18.0000 1.0000) )e 0,5 0");
    EXPECT_EQ(Set->GetVariable(), wide);
  }
  Set->Assign(Foreign(Parse("-1,0 20,1")));
  EXPECT_EQ(Traits(Set), "(s (-1.0000 0.0000) (20.0000 1.0000) )e 0,7 0");
  EXPECT_EQ(Set->GetVariable(), nullptr);
  const TSet copy = Query<IFuzzySet>(source->Clone().Get()), other = source->Clone(narrow);
  EXPECT_EQ(source->Union(copy)->GetInflectionPoint(), 5);
  EXPECT_EQ(Traits(copy), source->ToString().Utf8() + "e 5,5 0");
  EXPECT_EQ(Traits(other), "(source (1.0000 0.0000) (5.0000 0.5000) (5.0000 1.0000) ) 0,0 0");
  EXPECT_TRUE(copy->GetVariable() == wide && other->GetVariable() == narrow && !copy->GetDefined());
}

TEST_F(CountedSet, AnswersInItsOwnWay) {
  Variable->SetDefuzzificationMethod(dmMeanOfMaxima);
  const TSet free = M::MakeSet("0,0.1 4,0.1"), empty = M::MakeSet("");
  EXPECT_TRUE(Set->GetXMinimum() == 0 && Set->GetXMaximum() == 10);
  EXPECT_TRUE(free->GetXMinimum() == 0 && free->GetXMaximum() == 4);
  EXPECT_TRUE(empty->GetXMinimum() == -2147483647.0 && empty->GetXMaximum() == 2147483647.0);
  EXPECT_EQ(Set->Defuzzify(), Set->CenterOfGravity()) << "whatever its variable says";
  EXPECT_EQ(Set->FuzzyEquals(free), 0.1F);
  EXPECT_TRUE(free->Equals(Set) && empty->Equals(empty)) << "of no variable";
  EXPECT_FALSE(Set->Equals(Variable) || Set->Equals(nullptr) || Set->FuzzyEquals(Variable) != 0);
  EXPECT_EQ(M::ClassOf(Set).GetMaxYValueOfX(Foreign(Parse("0,0 1,0.5 1,0.9 1.00009,0.2")), 1, 1),
            2);
}

// What is made on the way has the range of the variable, though the variable is told of nothing.
TEST(CountedRange, MayBeWiderThanThatOfASetWithoutAVariable) {
  const auto owned = MakeVariable(0, 1e12);
  const auto counted = M::MakeVariable(0, 1e12);
  int told = 0;
  counted->SetOnFuzzySetChange([&](auto&, auto&) { ++told; });
  const std::string points = "0,0.2 5e11,1 1e12,0";
  TFuzzySet* const a = AddSet(owned, points, "a");
  const TSet b = M::AddSet(counted, points, "a");
  told = 0;
  EXPECT_EQ(Text(b->Cutoff(0.5, true)), Text(a->Cutoff(0.5, true)));
  EXPECT_EQ(b->Cutoff(0.5, true)->GetVariable(), nullptr);
  const TSet cut = b->AlphaCutoff(0.5, false);
  EXPECT_EQ(Text(cut), Text(a->AlphaCutoff(0.5, false)));
  EXPECT_TRUE(cut->GetVariable() == counted && told == 0);
  EXPECT_EQ(Text(b->Hedge(fhSlightly)), Text(a->Hedge(fhSlightly)));
  EXPECT_EQ(told, 1);
}

}  // namespace
}  // namespace fzy::test
