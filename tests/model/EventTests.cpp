#include <gtest/gtest.h>

#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/model/FuzzyLogic.h"
#include "tests/model/Scene.h"

namespace fzy {
namespace {

using test::TEventRecorder;
using test::TScene;

struct TCase {
  const char* Name;
  void (*Operation)(TScene& scene);
  const char* Log;
};

class Events : public testing::TestWithParam<TCase> {};

TEST_P(Events, AreToldInOrder) {
  TScene scene;
  GetParam().Operation(scene);
  EXPECT_EQ(scene.Recorder.Take(), GetParam().Log);
}

std::string CaseName(const testing::TestParamInfo<TCase>& info) { return info.param.Name; }

const TCase VariableCases[] = {
    {"Add", [](TScene& s) { s.Fuzzy.GetItems()->Add("v"); },
     "VariableAdded -; Changed; VariableChanged v"},
    // The terms are built before the list as a whole has changed, over the range of that moment,
    // each point told for itself; the last one is the current set.
    {"AddWithAutomaticTerms",
     [](TScene& s) {
       s.Fuzzy.SetAutoTerms(true);
       s.Fuzzy.GetItems()->Add("v");
     },
     "VariableAdded -; "
     "SetAdded -.-; VariableChanged -; SetChanged -.low x4; "
     "SetAdded -.-; VariableChanged -; SetChanged -.medium x2; "
     "SetAdded -.-; VariableChanged -; SetChanged -.high x4; "
     "Changed; VariableChanged v"},
    {"Insert", [](TScene& s) { s.Fuzzy.GetItems()->Insert(0); }, "VariableAdded -; Changed x2"},
    {"Move", [](TScene& s) { s.T->SetIndex(1); }, "Changed"},
    {"MoveToWhereItIs", [](TScene& s) { s.T->SetIndex(0); }, ""},
    {"Texts",
     [](TScene& s) {
       for (const char* text : {"v", "v"}) {
         s.T->SetName(text);
         s.T->SetUnits(text);
         s.T->SetComment(text);
       }
     },
     "VariableChanged v x3"},
    // A bound that pushes the other one along is still one change.
    {"Range",
     [](TScene& s) {
       s.T->SetMinimum(0);
       s.T->SetMinimum(20);
       s.T->SetMaximum(-5);
       s.T->SetMaximum(-5);
     },
     "VariableChanged t x2"},
    {"ThresholdsAndMethods",
     [](TScene& s) {
       s.T->SetThreshold(0.5);
       s.Fuzzy.SetThreshold(0.7);
       s.Fuzzy.SetNumFunctionValues(9);
       s.Fuzzy.SetInferenceMethod(fimMean);
     },
     ""},
    {"ItemIndex",
     [](TScene& s) {
       s.T->SetItemIndex(0);
       s.T->SetItemIndex(0);
       s.T->SetItemIndex(-7);
     },
     "VariableChanged t x2"},
    // A variable lets its sets go, last first, before it leaves.
    {"Free", [](TScene& s) { s.T->Free(); },
     "SetDeleted t.hot; SetDeleted t.cold; VariableDeleted t; Changed"},
    {"Delete", [](TScene& s) { s.Fuzzy.GetItems()->Delete(1); },
     "SetDeleted u.x; VariableDeleted u; Changed"},
    {"Clear", [](TScene& s) { s.Fuzzy.GetItems()->Clear(); },
     "SetDeleted u.x; VariableDeleted u; SetDeleted t.hot; SetDeleted t.cold; VariableDeleted t; "
     "Changed"},
    {"ClearOfNothing",
     [](TScene& s) {
       s.X->GetValues()->Clear();
       TFuzzyVariable* free = TFuzzyVariable::Create();
       free->GetItems()->Clear();
       free->Free();
     },
     ""},
    // Taken out whole, with its sets, and put back with what it lacks by then.
    {"TakeOutAndPutBack",
     [](TScene& s) {
       s.T->SetCollection(nullptr);
       s.T->GetItems()->Add("low");
       s.T->SetComment("unseen");
       s.Fuzzy.SetAutoTerms(true);
       s.T->SetCollection(s.Fuzzy.GetItems());
     },
     "VariableDeleted t; Changed; VariableAdded t; "
     "SetAdded t.-; VariableChanged t; SetChanged t.medium x2; "
     "SetAdded t.-; VariableChanged t; SetChanged t.high x5; "
     "Changed"},
    {"Block",
     [](TScene& s) {
       TUpdateBlock outer(*s.Fuzzy.GetItems());
       TUpdateBlock inner(*s.Fuzzy.GetItems());
       s.Fuzzy.GetItems()->Add("v");
       s.T->SetComment("held back");
       s.Cold->SetComment("told: only the list of variables is blocked");
       s.U->Free();
       inner.Close();
       outer.Close();
     },
     "VariableAdded -; SetChanged t.cold; SetDeleted u.x; VariableDeleted u; Changed"},
    // The properties are there before the sets are exchanged.
    {"Assign", [](TScene& s) { s.U->Assign(s.T); },
     "SetDeleted t.x; SetAdded t.- x2; VariableChanged t"},
    {"AssignLists",
     [](TScene& s) {
       TFuzzyVariables other;
       other.Add("v")->GetItems()->Add("y");
       s.Fuzzy.SetItems(&other);
     },
     "SetDeleted u.x; VariableDeleted u; SetDeleted t.hot; SetDeleted t.cold; VariableDeleted t; "
     "VariableAdded -; SetAdded v.-; Changed"},
};
INSTANTIATE_TEST_SUITE_P(OfVariables, Events, testing::ValuesIn(VariableCases), CaseName);

const TCase SetCases[] = {
    {"Add", [](TScene& s) { s.T->GetItems()->Add(); }, "SetAdded t.-; VariableChanged t"},
    {"AddNamed", [](TScene& s) { s.T->GetItems()->Add("mild"); },
     "SetAdded t.-; VariableChanged t; SetChanged t.mild"},
    {"Insert", [](TScene& s) { s.T->GetItems()->Insert(0); }, "SetAdded t.-; VariableChanged t x2"},
    {"Move",
     [](TScene& s) {
       s.Cold->SetIndex(1);
       s.Cold->SetIndex(1);
     },
     "VariableChanged t"},
    {"Texts",
     [](TScene& s) {
       for (const char* text : {"cool", "cool"}) {
         s.Cold->SetName(text);
         s.Cold->SetComment(text);
       }
       s.Cold->SetDefined(false);
       s.Cold->SetExpression("unseen");
       s.Cold->SetTag(1);
     },
     "SetChanged t.cool x2"},
    {"Free", [](TScene& s) { s.Cold->Free(); }, "SetDeleted t.cold; VariableChanged t"},
    {"Delete", [](TScene& s) { s.T->GetItems()->Delete(1); },
     "SetDeleted t.hot; VariableChanged t"},
    {"Clear", [](TScene& s) { s.T->GetItems()->Clear(); },
     "SetDeleted t.hot; SetDeleted t.cold; VariableChanged t"},
    {"MoveToAnotherVariable", [](TScene& s) { s.Cold->SetCollection(s.U->GetItems()); },
     "SetDeleted t.cold; VariableChanged t; SetAdded u.cold; VariableChanged u"},
    {"Block",
     [](TScene& s) {
       TUpdateBlock block(*s.T->GetItems());
       s.Cold->SetName("held back");
       s.T->GetItems()->Add("held back too");
       s.T->SetComment("told: the variable itself is not blocked");
       block.Close();
     },
     "SetAdded t.-; VariableChanged t x2"},
    // Name first, then all points at once, then type and expression, closed by one change more.
    {"Assign", [](TScene& s) { s.X->Assign(s.Cold); }, "SetChanged u.cold x2"},
    {"AssignLists", [](TScene& s) { s.U->SetItems(s.T->GetItems()); },
     "SetDeleted u.x; SetAdded u.- x2; VariableChanged u"},
    {"Clone", [](TScene& s) { s.Cold->Clone(); },
     "SetAdded t.-; VariableChanged t; SetChanged t.cold x2"},
    // A point's arrival is one change, each coordinate that differs from the point's default one
    // more.
    {"Points",
     [](TScene& s) {
       s.X->GetValues()->Add(0, 0);
       s.Recorder.Handler = [](std::size_t, TFuzzyVariable*, TFuzzySet* set) {
         if (set->GetValues()->GetCount() == 2) set->SetTag(set->GetTag() + 1);
       };
       s.X->GetValues()->Add(0.5, 1);
       EXPECT_EQ(s.X->GetTag(), 3);
     },
     "SetChanged u.x x4"},
    {"PointSetters",
     [](TScene& s) {
       s.Hot->GetValues()->GetItem(0)->SetY(0);
       s.Hot->GetValues()->GetItem(0)->SetY(0.5);
       s.Hot->GetValues()->GetItem(0)->SetValue(5, 0.5);
       s.Hot->GetValues()->Delete(0);
     },
     "SetChanged t.hot x3"},
    {"AppendedPoints", [](TScene& s) { s.X->GetValues()->Append(s.Cold->GetValues()); },
     "SetChanged u.x x4"},
    {"BlockOfPoints",
     [](TScene& s) {
       TUpdateBlock block(*s.X->GetValues());
       s.X->GetValues()->Append(s.Cold->GetValues());
       s.X->GetValues()->GetItem(0)->SetY(0.2);
       block.Close();
     },
     "SetChanged u.x"},
    {"AssignedPoints", [](TScene& s) { s.X->SetValues(s.Cold->GetValues()); }, "SetChanged u.x"},
    {"SetType",
     [](TScene& s) {
       s.X->SetSetType(fstTriangle);
       s.X->SetSetType(fstTriangle);
       s.X->SetSetType(fstUserDefined);
     },
     "SetChanged u.x x3"},
    {"Crisp", [](TScene& s) { s.Cold->CreateCrispValue(3); }, "SetChanged t.cold"},
    // The temporary sets come and go inside one block of the list; the new name is told last.
    {"Slightly", [](TScene& s) { s.Cold->Hedge(fhSlightly); },
     "SetAdded t.- x3; "
     "SetDeleted t.positively [normalize [[plus cold] and [not [very cold]]]]; "
     "SetDeleted t.not [very cold]; SetDeleted t.plus cold; "
     "VariableChanged t; SetChanged t.slightly cold"},
    {"RuleWithoutOldEvidence", [](TScene& s) { s.T->AssertRule(0.5, s.Cold, nullptr); },
     "SetAdded t.-; VariableChanged t; SetChanged t.cold x3; SetChanged t.cold > 0.5000"},
    {"Rule", [](TScene& s) { s.T->AssertRule(0.5, s.Cold, s.Hot); },
     "SetAdded t.-; VariableChanged t; SetChanged t.cold x3; SetChanged t.cold > 0.5000; "
     "SetAdded t.-; VariableChanged t; SetChanged t.hot or [cold > 0.5000] x2; "
     "SetDeleted t.cold > 0.5000; VariableChanged t"},
    {"RuleThatDoesNotFire",
     [](TScene& s) {
       s.T->SetThreshold(0.6);
       s.T->AssertRule(0.5, s.Cold, s.Hot);
     },
     ""},
};
INSTANTIATE_TEST_SUITE_P(OfSets, Events, testing::ValuesIn(SetCases), CaseName);

TEST(Event, OfTheEndFindsTheObjectStillInItsPlace) {
  TScene s;
  s.Recorder.Handler = [&s](std::size_t event, TFuzzyVariable*, TFuzzySet* set) {
    if (event == 5) {
      EXPECT_EQ(s.T->GetItems()->GetItem(0), set);
    }
  };
  s.Cold->Free();
  s.Recorder.Handler = [&s](std::size_t event, TFuzzyVariable* variable, TFuzzySet*) {
    if (event == 2) {
      EXPECT_EQ(s.Fuzzy.GetItems()->GetItem(0), variable);
    }
  };
  s.T->Free();
  EXPECT_EQ(s.Recorder.Take(),
            "SetDeleted t.cold; VariableChanged t; SetDeleted t.hot; VariableDeleted t; Changed");
}

TEST(Event, OfAJoiningVariableFindsTheComponentsThreshold) {
  TScene s;
  s.Fuzzy.SetThreshold(0.25);
  s.T->SetThreshold(0.75);
  TFzyFloat seen = -1;
  s.Recorder.Handler = [&seen](std::size_t event, TFuzzyVariable* variable, TFuzzySet*) {
    if (event == 1) seen = variable->GetThreshold();
  };
  s.T->SetCollection(nullptr);
  EXPECT_EQ(s.T->GetThreshold(), 0.75);
  s.T->SetCollection(s.Fuzzy.GetItems());
  EXPECT_EQ(seen, 0.25);
}

TEST(Event, IsNotFiredWhenTheComponentGoes) {
  std::string log = "untouched";
  {
    TFuzzyLogic fuzzy;
    fuzzy.GetItems()->Add("t");
    TEventRecorder recorder(fuzzy);
    recorder.Handler = [&log](std::size_t, TFuzzyVariable*, TFuzzySet*) { log = "told"; };
    fuzzy.GetItems()->BeginUpdate();
  }
  EXPECT_EQ(log, "untouched");
}

}  // namespace
}  // namespace fzy
