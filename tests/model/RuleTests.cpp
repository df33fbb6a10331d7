#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/model/Scene.h"

namespace fzy {
namespace {

using test::MessageOf;
using test::TScene;

/// A variable "t" of "cold" (0 1)(5 0), "hot" (5 0)(10 1), and evidence "so far" that both overlap.
struct TRuleScene : TScene {
  TRuleScene() {
    SoFar = T->GetItems()->Add("so far");
    SoFar->CreateTriangleFunctionValues(2, 4, 8);
    SoFar->GetValues()->GetItem(1)->SetY(0.7);
  }
  TFuzzySet* SoFar;
};

/// Straight between the points, flat beyond them.
TFzyFloat Degree(const std::vector<TFuzzyPoint>& points, TFzyFloat x) {
  for (std::size_t i = 0; i < points.size(); ++i) {
    const TFuzzyPoint& q = points[i];
    if (x > q.X) continue;
    if (i == 0 || x == q.X) return q.Y;
    const TFuzzyPoint& p = points[i - 1];
    return p.Y + (q.Y - p.Y) * (x - p.X) / (q.X - p.X);
  }
  return points.back().Y;
}

using TFormula = TFzyFloat (*)(TFzyFloat a, TFzyFloat b);
const std::pair<TFuzzyInferenceMethod, TFormula> Inferences[] = {
    {fimMinMax, [](TFzyFloat a, TFzyFloat b) { return std::max(a, b); }},
    {fimAdditive, [](TFzyFloat a, TFzyFloat b) { return a + b; }},
    {fimMean,
     [](TFzyFloat a, TFzyFloat b) { return (2 * std::min(a, b) + 4 * std::max(a, b)) / 6; }},
    {fimProduct, [](TFzyFloat a, TFzyFloat b) { return a + b - a * b; }},
    {fimBoundedSum, [](TFzyFloat a, TFzyFloat b) { return std::min(1.0, a + b); }},
};

TEST(Rule, CorrelatesAndInfersByTheComponentsMethods) {
  const std::vector<TFuzzyPoint> hot = {{5, 0}, {10, 1}};
  const std::vector<TFuzzyPoint> soFar = {{2, 0}, {4, 0.7}, {8, 0}};
  for (const TFuzzyCorrelationMethod correlation : {fcmMinimum, fcmProduct}) {
    for (const auto& [inference, formula] : Inferences) {
      for (const TFzyFloat strength : {0.0, 0.35, 1.0}) {
        TRuleScene s;
        s.T->SetThreshold(0);
        s.Fuzzy.SetCorrelationMethod(correlation);
        s.Fuzzy.SetInferenceMethod(inference);
        std::vector<TFuzzyPoint> conclusion = hot;
        for (TFuzzyPoint& point : conclusion) {
          point.Y = correlation == fcmMinimum ? std::min(point.Y, strength) : point.Y * strength;
        }
        const TFuzzySet* result = s.T->AssertRule(strength, s.Hot, s.SoFar);
        ASSERT_NE(result, nullptr);
        for (const TFzyFloat x : {0.0, 2.0, 4.0, 5.0, 8.0, 10.0}) {
          EXPECT_NEAR(result->DegreeOfMembership(x),
                      formula(Degree(soFar, x), Degree(conclusion, x)), 1e-12)
              << static_cast<int>(correlation) << static_cast<int>(inference) << " at " << x;
        }
      }
    }
  }
}

TEST(Rule, TakesMethodsFromTheEvidencesOwnComponents) {
  TRuleScene s;
  TFuzzyLogic other;
  other.SetAutoTerms(false);
  other.SetCorrelationMethod(fcmProduct);
  other.SetInferenceMethod(fimAdditive);
  TFuzzySet* foreign = other.GetItems()->Add("o")->GetItems()->Add("foreign");
  foreign->GetValues()->Add(0, 0.5);
  TFuzzySet* result = s.T->AssertRule(0.5, foreign, nullptr);
  EXPECT_EQ(result->GetName(), "foreign * 0.5000");
  EXPECT_EQ(result->GetVariable(), foreign->GetVariable());
  result = s.T->AssertRule(0.5, s.Hot, foreign);
  EXPECT_EQ(result->GetName(), "foreign or-sum [hot > 0.5000]");
  EXPECT_EQ(result->GetVariable(), foreign->GetVariable());
}

TEST(Rule, FiresFromTheThresholdOn) {
  TRuleScene s;
  s.T->SetThreshold(0.5);
  EXPECT_EQ(s.T->AssertRule(std::nextafter(0.5, 0), s.Hot, s.SoFar), nullptr);
  EXPECT_EQ(s.T->GetItems()->GetCount(), 3);
  EXPECT_NE(s.T->AssertRule(0.5, s.Hot, s.SoFar), nullptr);
  TFuzzyVariable* alone = TFuzzyVariable::Create();
  TFuzzySet* set = alone->GetItems()->Add("set");
  set->GetValues()->Add(0, 1);
  TFuzzySet* result = alone->AssertRule(0, set, nullptr);
  ASSERT_NE(result, nullptr) << "without a component every rule fires";
  EXPECT_EQ(result->GetCompatibilityIndex(), 0);
  alone->Free();
}

TEST(Rule, LeavesItsEvidenceAndOneNewSetAndNothingElse) {
  TRuleScene s;
  const std::string conclusion = s.Hot->ToString().Utf8();
  const std::string old = s.SoFar->ToString().Utf8();
  TFuzzySet* first = s.T->AssertRule(0.5, s.Hot, nullptr);
  EXPECT_EQ(s.T->GetItems()->GetCount(), 4);
  EXPECT_EQ(first->GetName(), "hot > 0.5000");
  TFuzzySet* second = s.T->AssertRule(0.5, s.Hot, s.SoFar);
  EXPECT_EQ(s.T->GetItems()->GetCount(), 5);
  EXPECT_EQ(second->GetVariable(), s.T);
  EXPECT_EQ(second->GetName(), "[so far] or [hot > 0.5000]");
  EXPECT_EQ(s.Hot->ToString().Utf8(), conclusion);
  EXPECT_EQ(s.SoFar->ToString().Utf8(), old);
  first->Free();
  second->Free();
  EXPECT_EQ(s.T->GetItems()->GetCount(), 3) << "the caller frees the result, which leaves the list";

  TFuzzySet* free = TFuzzySet::Create();
  free->GetValues()->Add(0, 1);
  TFuzzySet* result = s.T->AssertRule(0.5, free, nullptr);
  ASSERT_EQ(result->GetCollection(), nullptr) << "as the conclusion, the copy is in no list";
  result->Free();
  free->Free();
}

// "cold" meets "so far" at X = 34/11, where both are 21/55 high; a set meets itself at its height.
// A conjunction is as strong as its weakest part.
TEST(Rule, TakesTheStrengthOfItsPremises) {
  TRuleScene s;
  const TFzyFloat cold = s.Cold->GetCorrelationStrength(s.SoFar);
  EXPECT_NEAR(cold, 21.0 / 55, 1e-12);
  TFuzzySet* premises[] = {s.Hot, s.Cold, s.Hot};
  TFuzzySet* matchings[] = {s.Hot, s.SoFar, s.Hot, nullptr};
  EXPECT_EQ(s.T->GetCorrelationStrength(premises, matchings), cold);
  EXPECT_EQ(s.T->GetCorrelationStrength({}, {}), 1);
  EXPECT_EQ(s.T->GetCorrelationStrength({}, matchings), 1);

  const std::string byStrength = s.T->AssertRule(cold, s.Hot, s.SoFar)->ToString().Utf8();
  EXPECT_EQ(s.T->AssertRule(s.Cold, s.Hot, s.SoFar, s.SoFar)->ToString().Utf8(), byStrength);
  EXPECT_EQ(s.T->AssertRule(premises, matchings, s.Hot, s.SoFar)->ToString().Utf8(), byStrength);
  EXPECT_EQ(s.T->AssertRule({s.Hot, s.Cold}, {s.Hot, s.SoFar}, s.Hot, s.SoFar)->ToString().Utf8(),
            byStrength);
  const std::string full = s.T->AssertRule(1, s.Hot, nullptr)->ToString().Utf8();
  EXPECT_EQ(s.T->AssertRule({}, {}, s.Hot, nullptr)->ToString().Utf8(), full);
}

TEST(Rule, RefusesWhatIsMissingBeforeAnythingChanges) {
  TRuleScene s;
  s.Recorder.Take();
  const std::pair<const char*, std::function<void()>> faults[] = {
      {"Invalid operation: \"GetCorrelationStrength\".  2 premises but 1 matchings",
       [&] {
         s.T->AssertRule({s.Hot, s.Cold}, {s.Hot}, s.Hot, nullptr);
       }},
      {"Invalid operation: \"GetCorrelationStrength\".  No fuzzy set given",
       [&] {
         s.T->AssertRule({s.Hot, nullptr}, {s.Hot, s.Cold}, s.Hot, nullptr);
       }},
      {"Invalid operation: \"GetCorrelationStrength\".  No fuzzy set given",
       [&] { s.T->AssertRule({s.Hot}, {nullptr}, s.Hot, nullptr); }},
      {"Invalid operation: \"AssertRule\".  No fuzzy set given",
       [&] { s.T->AssertRule(static_cast<TFuzzySet*>(nullptr), s.Hot, s.Cold, nullptr); }},
      {"Invalid operation: \"GetCorrelationStrength\".  No fuzzy set given",
       [&] { s.T->AssertRule(s.Hot, s.Hot, nullptr, nullptr); }},
      {"Invalid operation: \"AssertRule\".  No fuzzy set given",
       [&] { s.T->AssertRule(1, nullptr, s.SoFar); }},
      {"Invalid operation: \"AssertRule\".  Not a number",
       [&] { s.T->AssertRule(std::numeric_limits<TFzyFloat>::quiet_NaN(), s.Hot, s.SoFar); }},
  };
  for (const auto& [message, fault] : faults) EXPECT_EQ(MessageOf(fault), message);
  EXPECT_EQ(s.Recorder.Take(), "");
}

/// A variable that only writes down which form of the rule it was asked for.
class TWitness final : public TFuzzyVariable {
 public:
  using TFuzzyVariable::AssertRule;
  TFuzzySet* AssertRule(TFzyFloat strength, TFuzzySet* newEvidence, TFuzzySet*) override {
    Strength = strength;
    return newEvidence;
  }
  TFzyFloat Strength = -1;
};

TEST(Rule, OfEveryFormGoesThroughTheOneOfStrength) {
  static constexpr TFuzzyVariableDescriptor descriptor{
      "TWitness", []() -> TFuzzyVariable* { return new TWitness; }};
  TRuleScene s;
  auto* witness =
      static_cast<TWitness*>(TFuzzyVariable::Create(nullptr, TFuzzySet::Class(), &descriptor));
  EXPECT_EQ(witness->AssertRule(s.Hot, s.Cold, s.Hot, nullptr), s.Cold);
  EXPECT_EQ(std::exchange(witness->Strength, -1), 1);
  EXPECT_EQ(witness->AssertRule({s.Hot}, {s.Hot}, s.Cold, nullptr), s.Cold);
  EXPECT_EQ(witness->Strength, 1);
  witness->Free();
}

struct EOops {};

// An operation that a handler ends by throwing leaves no set made on the way.
TEST(Rule, CutShortByAHandlerLeavesNoTemporarySets) {
  const std::function<void(TRuleScene&)> operations[] = {
      [](TRuleScene& s) { s.T->AssertRule(0.5, s.Hot, s.SoFar); },
      [](TRuleScene& s) { s.SoFar->Hedge(fhSlightly); },
      [](TRuleScene& s) { s.Hot->Clone(); },
  };
  for (const auto& operation : operations) {
    int thrown = 0;
    for (bool more = true; more; ++thrown) {
      TRuleScene s;
      int events = 0;
      s.Recorder.Handler = [&](std::size_t, TFuzzyVariable*, TFuzzySet*) {
        if (events++ == thrown) throw EOops();
      };
      try {
        operation(s);
        more = false;
      } catch (const EOops&) {
        EXPECT_EQ(s.T->GetItems()->GetCount(), 3) << "thrown at event " << thrown;
      }
    }
    EXPECT_GT(thrown, 4);
  }
}

}  // namespace
}  // namespace fzy
