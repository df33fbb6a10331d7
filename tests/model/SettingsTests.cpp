#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "tests/engine/Models.h"
#include "tests/model/Scene.h"

// Settings, lists, automatic terms and rules.

namespace fzy::test {
namespace {

constexpr TFzyFloat NaN = std::numeric_limits<TFzyFloat>::quiet_NaN();
constexpr TFzyFloat Infinity = std::numeric_limits<TFzyFloat>::infinity();

std::string TextOf(TFuzzyVariable* variable) {
  std::string text;
  for (const TFuzzySet* set : *variable->GetItems()) text += set->ToString().Utf8();
  return text;
}

TEST(Settings, OfANewComponentAndVariable) {
  TFuzzyLogic fuzzy;
  EXPECT_EQ(fuzzy.GetNumFunctionValues(), 7);
  EXPECT_EQ(fuzzy.GetThreshold(), 0.01);
  EXPECT_TRUE(fuzzy.GetAutoTerms() && !fuzzy.GetParser());
  EXPECT_EQ(fuzzy.GetCorrelationMethod(), fcmMinimum);
  EXPECT_EQ(fuzzy.GetInferenceMethod(), fimMinMax);
  EXPECT_EQ(fuzzy.GetDefuzzificationMethod(), dmCenterOfGravity);
  const TOwned<TFuzzyVariable> variable(TFuzzyVariable::Create());
  EXPECT_TRUE(variable->GetMinimum() == 0 && variable->GetMaximum() == 1);
  EXPECT_TRUE(variable->GetThreshold() == 0 && variable->GetItemIndex() == -1);
  EXPECT_EQ(variable->GetDisplayName(), "TFuzzyVariable");
  variable->SetName("and");
  EXPECT_EQ(variable->ToString(), "and") << "names of variables are not checked";
}

TEST(Settings, AreClampedAndARangePushesItsOtherEnd) {
  TScene s;
  for (const auto& [value, stored] :
       {std::pair(1.5, 1.0), {-0.2, 0.0}, {0.3, 0.3}, {Infinity, 1}}) {
    s.T->SetThreshold(value);
    EXPECT_EQ(s.T->GetThreshold(), stored);
    s.T->SetThreshold(0.9);
    s.Fuzzy.SetThreshold(value);
    EXPECT_EQ(s.Fuzzy.GetThreshold(), stored);
    EXPECT_EQ(s.T->GetThreshold(), stored) << "a variable's own is overwritten";
  }
  s.T->SetThreshold(0.9);
  s.Fuzzy.SetThreshold(1);
  EXPECT_EQ(s.T->GetThreshold(), 0.9) << "the value it has changes nothing";
  for (const auto& [value, stored] :
       {std::pair(1, 2), {0, 2}, {-5, 2}, {2'000'000'000, 1'000'000}, {3, 3}}) {
    s.Fuzzy.SetNumFunctionValues(value);
    EXPECT_EQ(s.Fuzzy.GetNumFunctionValues(), stored);
  }
  s.X->SetSetType(fstBetaCurve);
  EXPECT_EQ(s.X->GetValues()->GetCount(), 3);
  s.U->SetMinimum(5);
  EXPECT_EQ(s.U->GetMaximum(), 5);
  s.U->SetMaximum(-1);
  EXPECT_EQ(s.U->GetMinimum(), -1);
  s.T->SetMaximum(4);
  EXPECT_EQ(s.Cold->GetValues()->GetItem(1)->GetX(), 5) << "points stay where they are";
  s.Cold->GetValues()->GetItem(1)->SetX(7);
  EXPECT_EQ(s.Cold->GetValues()->GetItem(1)->GetX(), 4);

  TFuzzySets* sets = s.T->GetItems();
  EXPECT_TRUE(sets->Add("mild")->GetDefined());
  for (const char* name : {"", "__Empty"}) EXPECT_FALSE(sets->Add(name)->GetDefined());
  EXPECT_FALSE(sets->Add()->GetDefined() || sets->Insert(0)->GetDefined());
  s.Fuzzy.SetDesigning(true);
  EXPECT_TRUE(sets->Add()->GetDefined()) << "in a form designer";
}

TEST(Settings, RefuseWhatIsWrongBeforeAnythingChanges) {
  TScene s;
  s.T->SetItemIndex(0);
  s.Recorder.Take();
  const char *notANumber = "Not a number", *notFinite = "Not a finite number";
  const auto index = [](int i) { return "There is no item with index " + std::to_string(i); };
  TFuzzyVariable* t = s.T;
  TFuzzySets* sets = t->GetItems();
  TFuzzyVariables* variables = s.Fuzzy.GetItems();
  TStrings list;
  TFuzzySet* const hot = s.Hot;
  // clang-format off
  const std::pair<std::string, std::function<void()>> faults[] = {
      {Refusal("SetMinimum", notANumber), [&] { t->SetMinimum(NaN); }},
      {Refusal("SetMinimum", notFinite), [&] { t->SetMinimum(-Infinity); }},
      {Refusal("SetMaximum", notFinite), [&] { t->SetMaximum(Infinity); }},
      {Refusal("SetThreshold", notANumber), [&] { t->SetThreshold(NaN); }},
      {Refusal("SetThreshold", notANumber), [&] { s.Fuzzy.SetThreshold(NaN); }},
      {index(2), [&] { t->SetItemIndex(2); }},
      {index(3), [&] { sets->Insert(3); }},
      {index(2), [&] { variables->GetItem(2); }},
      {index(3), [&] { variables->Insert(3); }},
      {"Unknown Fuzzy Set name: \"nothing\"", [&] { sets->GetItemByName("nothing"); }},
      {"Unknown Fuzzy Set name: \"nothing\"", [&] { sets->SetItemByName("nothing", hot); }},
      {"Unknown Fuzzy Variable name: \"x\"", [&] { variables->GetItemByName("x"); }},
      {"Unknown Fuzzy Variable name: \"x\"", [&] { variables->SetItemByName("x", t); }},
      {"Invalid fuzzy set name, \"very\" is a reserved word", [&] { hot->SetName("very"); }},
      {"There is no assignment from TStrings to TFuzzyVariable", [&] { t->Assign(&list); }},
      {"There is no assignment from TFuzzyVariable to TFuzzySet", [&] { hot->Assign(t); }},
  };
  // clang-format on
  for (const auto& [message, fault] : faults) EXPECT_EQ(MessageOf(fault), message);
  EXPECT_EQ(s.Recorder.Take(), "");
  EXPECT_EQ(t->GetItemIndex(), 0);
  EXPECT_EQ(t->GetMaximum(), 10);
  EXPECT_EQ(hot->GetName(), "hot");
}

TEST(Lists, FindTheFirstOfANameAndCopyFieldByField) {
  TScene s;
  TFuzzySets* sets = s.T->GetItems();
  TFuzzySet* second = sets->Add("cold");
  EXPECT_EQ(sets->GetItemByName("cold"), s.Cold);
  EXPECT_EQ((*sets)[2], second);
  sets->SetItemByName("cold", s.Hot);
  EXPECT_EQ(s.Cold->ToString(), "(hot (5.0000 0.0000) (10.0000 1.0000) )");
  EXPECT_EQ(sets->GetItemByName("cold"), second);

  s.T->SetUnits("K");
  s.T->SetComment("outside");
  s.T->SetThreshold(0.5);
  s.T->SetItemIndex(0);
  TFuzzySets* list = s.U->GetItems();
  s.Fuzzy.GetItems()->SetItemByName("u", s.T);
  EXPECT_EQ(s.Fuzzy.GetItems()->GetItemByName("t"), s.T);
  EXPECT_EQ(s.U->GetItems(), list);
  EXPECT_EQ(TextOf(s.U), TextOf(s.T));
  EXPECT_EQ(list->GetItem(0)->GetVariable(), s.U);
  EXPECT_EQ(s.U->GetName() + s.U->GetUnits() + s.U->GetComment(), "tKoutside");
  EXPECT_TRUE(s.U->GetThreshold() == 0.5 && s.U->GetMaximum() == 10 && s.U->GetItemIndex() == 0);
  TStrings lines;
  lines.Add("before");
  lines.Assign(s.T);
  EXPECT_EQ(lines.GetText(), "hot\nhot\ncold\n");
  EXPECT_EQ(lines.GetObject(1), s.Hot);
}

TEST(AutomaticTerms, FillUpWhatIsMissingOverTheRangeOfTheMoment) {
  const std::string low = "(low (-1.0000 1.0000) (3.0000 0.0000) )";
  const std::string medium = "(medium (-1.0000 0.0000) (1.0000 1.0000) (3.0000 0.0000) )";
  const std::string high = "(high (-1.0000 0.0000) (3.0000 1.0000) )";
  for (const auto& [present, text] :
       {std::pair("x", low + medium + high), {"medium", low + high}, {"high", low + medium}}) {
    TScene s;
    s.U->SetMaximum(3);
    s.U->SetMinimum(-1);
    s.X->SetName(present);
    s.Fuzzy.AddAutoTerms(s.U);
    s.U->SetMaximum(100);
    EXPECT_EQ(TextOf(s.U), '(' + std::string(present) + " )" + text);
    EXPECT_EQ(s.U->GetItemIndex(), s.U->GetItems()->GetCount() - 1);
    EXPECT_EQ(s.U->GetItems()->GetItem(1)->GetExpression(), "low");
    EXPECT_TRUE(s.U->GetItems()->GetItem(1)->GetDefined());
  }
}

TEST(AutomaticTerms, AreNamedInTheUsersLanguageButNotAddedToWhatAHandlerTakesOut) {
  TScene s;
  s.Fuzzy.SetAutoTerms(true);
  SLowFuzzyTerm.Set("niedrig");
  EXPECT_EQ(s.Fuzzy.GetItems()->Add("t")->GetItems()->GetItem(0)->GetName(), "niedrig");
  SLowFuzzyTerm.Set("");
  s.Recorder.Take();
  s.Recorder.Handler = [](std::size_t event, TFuzzyVariable* variable, TFuzzySet*) {
    if (event == 1) variable->SetCollection(nullptr);
  };
  const TOwned<TFuzzyVariable> variable(s.Fuzzy.GetItems()->Add("v"));
  EXPECT_EQ(variable->GetItems()->GetCount(), 0);
  EXPECT_EQ(s.Recorder.Take(), "VariableAdded -; VariableDeleted -; Changed x2");
}

/// The scene with evidence "so far" that both terms of "t" overlap.
struct TRuleScene : TScene {
  TRuleScene() {
    SoFar = T->GetItems()->Add("so far");
    SoFar->CreateTriangleFunctionValues(2, 4, 8);
    SoFar->GetValues()->GetItem(1)->SetY(0.7);
  }
  TFuzzySet* SoFar;
};

TEST(Rule, CorrelatesAndInfersByTheComponentsMethods) {
  using TFormula = TFzyFloat (*)(TFzyFloat a, TFzyFloat b);
  const std::pair<TFuzzyInferenceMethod, TFormula> inferences[] = {
      {fimMinMax, [](TFzyFloat a, TFzyFloat b) { return std::max(a, b); }},
      {fimAdditive, [](TFzyFloat a, TFzyFloat b) { return a + b; }},
      {fimMean,
       [](TFzyFloat a, TFzyFloat b) { return (2 * std::min(a, b) + 4 * std::max(a, b)) / 6; }},
      {fimProduct, [](TFzyFloat a, TFzyFloat b) { return a + b - a * b; }},
      {fimBoundedSum, [](TFzyFloat a, TFzyFloat b) { return std::min(1.0, a + b); }},
  };
  for (const TFuzzyCorrelationMethod correlation : {fcmMinimum, fcmProduct}) {
    for (const auto& [inference, formula] : inferences) {
      TRuleScene s;
      s.Fuzzy.SetCorrelationMethod(correlation);
      s.Fuzzy.SetInferenceMethod(inference);
      s.Hot->GetValues()->GetItem(1)->SetY(0.8);
      const TFuzzySet* result = s.T->AssertRule(0.35, s.Hot, s.SoFar);
      const TFzyFloat top = correlation == fcmMinimum ? 0.35 : 0.8 * 0.35;
      for (const auto& [x, soFar, hot] :
           {std::tuple(0.0, 0.0, 0.0), {4, 0.7, 0}, {5, 0.525, 0}, {8, 0, 0.6}, {10, 0, 1}})
        EXPECT_NEAR(result->DegreeOfMembership(x), formula(soFar, hot * top), 1e-12)
            << static_cast<int>(correlation) << static_cast<int>(inference) << " at " << x;
    }
  }
}

TEST(Rule, TakesMethodsFromTheEvidencesOwnComponents) {
  TRuleScene s;
  TFuzzyLogic other;
  other.SetCorrelationMethod(fcmProduct);
  other.SetInferenceMethod(fimAdditive);
  TFuzzySet* foreign = other.GetItems()->Add("o")->GetItems()->GetItem(0);
  TFuzzySet* result = s.T->AssertRule(0.5, foreign, nullptr);
  EXPECT_EQ(result->GetName(), "low * 0.5000");
  EXPECT_EQ(result->GetVariable(), foreign->GetVariable());
  result = s.T->AssertRule(0.5, s.Hot, foreign);
  EXPECT_EQ(result->GetName(), "low or-sum [hot > 0.5000]");
  EXPECT_EQ(result->GetVariable(), foreign->GetVariable());
}

/// The same sets in a variable without a component, for both models.
template <class Model>
struct TRules {
  decltype(Model::MakeVariable(0, 10)) T = Model::MakeVariable(0, 10);
  using TSet = decltype(Model::AddSet(T, ""));
  TSet Cold = Model::AddSet(T, "0,1 5,0", "cold"), Hot = Model::AddSet(T, "5,0 10,1", "hot");
  TSet SoFar = Model::AddSet(T, "2,0 4,0.7 8,0", "so far");
};
MODEL_TEST_SUITE(Rule);

TYPED_TEST(Rule, FiresFromTheThresholdOnAndLeavesOneNewSet) {
  TRules<TypeParam> s;
  const auto evidence = [&s] { return s.Hot->ToString() + s.SoFar->ToString(); };
  const TString before = evidence();
  const int sets = TypeParam::CountOf(s.T);
  s.T->SetThreshold(0.5);
  EXPECT_FALSE(s.T->AssertRule(std::nextafter(0.5, 0), s.Hot, s.SoFar));
  {
    const typename TypeParam::THandle first(s.T->AssertRule(0.5, s.Hot, nullptr));
    const typename TypeParam::THandle second(s.T->AssertRule(0.5, s.Hot, s.SoFar));
    EXPECT_EQ(TypeParam::CountOf(s.T), TypeParam::Counted ? sets : sets + 2);
    EXPECT_EQ(first->GetName(), "hot > 0.5000");
    EXPECT_EQ(second->GetName(), "[so far] or [hot > 0.5000]");
    EXPECT_TRUE(first->GetVariable() == s.T.Get() && second->GetVariable() == s.T.Get());
    EXPECT_EQ(evidence(), before);
  }
  EXPECT_EQ(TypeParam::CountOf(s.T), sets) << "the caller frees the result";

  const auto free = TypeParam::MakeSet("0,1");
  const typename TypeParam::THandle copy(s.T->AssertRule(0.5, free.Get(), nullptr));
  EXPECT_EQ(copy->GetVariable(), nullptr) << "as the conclusion, the copy is of no variable";
  s.T->SetThreshold(0);
  EXPECT_TRUE(typename TypeParam::THandle(s.T->AssertRule(0, free.Get(), nullptr)));
}

// "cold" meets "so far" at X = 34/11, where both are 21/55 high; a set meets itself at its height.
// A conjunction is as strong as its weakest part.
TYPED_TEST(Rule, OfEveryFormIsTheOneOfItsStrength) {
  TRules<TypeParam> s;
  using TSet = typename TRules<TypeParam>::TSet;
  const TSet premises[] = {s.Hot, s.Cold, s.Hot}, matchings[] = {s.Hot, s.SoFar, s.Hot, nullptr};
  EXPECT_NEAR(s.T->GetCorrelationStrength(premises, matchings), 21.0 / 55, 1e-12);
  EXPECT_EQ(s.T->GetCorrelationStrength({}, matchings), 1);
  const auto expect = [&s](const TSet& actual, TFzyFloat strength) {
    EXPECT_EQ(actual->ToString(), s.T->AssertRule(strength, s.Hot, s.SoFar)->ToString());
  };
  expect(s.T->AssertRule(s.Cold, s.Hot, s.SoFar, s.SoFar), 21.0 / 55);
  expect(s.T->AssertRule(premises, matchings, s.Hot, s.SoFar), 21.0 / 55);
  expect(s.T->AssertRule({s.Hot, s.Cold}, {s.Hot, s.SoFar}, s.Hot, s.SoFar), 21.0 / 55);
  expect(s.T->AssertRule({}, {}, s.Hot, s.SoFar), 1);
  const int sets = TypeParam::CountOf(s.T);
  const TSet none = nullptr, hot = s.Hot;
  const std::string strength = "GetCorrelationStrength", missing = "No fuzzy set given";
  const std::pair<std::string, std::function<void()>> faults[] = {
      // clang-format off
      {Refusal(strength, "2 premises but 1 matchings"), [&] { s.T->AssertRule({hot, s.Cold}, {hot}, hot, nullptr); }},
      {Refusal(strength, missing), [&] { s.T->AssertRule({hot, none}, {hot, hot}, hot, nullptr); }},
      {Refusal(strength, missing), [&] { s.T->AssertRule({hot}, {none}, hot, nullptr); }},
      {Refusal(strength, missing), [&] { s.T->AssertRule(hot, hot, none, nullptr); }},
      {Refusal("AssertRule", missing), [&] { s.T->AssertRule(none, hot, hot, nullptr); }},
      {Refusal("AssertRule", missing), [&] { s.T->AssertRule(1, nullptr, hot); }},
      {Refusal("AssertRule", "Not a number"), [&] { s.T->AssertRule(NaN, hot, hot); }},
      // clang-format on
  };
  for (const auto& [message, fault] : faults) EXPECT_EQ(MessageOf(fault), message);
  EXPECT_EQ(TypeParam::CountOf(s.T), sets);
}

}  // namespace
}  // namespace fzy::test
