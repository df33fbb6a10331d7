#include <functional>

#include <gtest/gtest.h>

#include "fuzzylogic/framework/UpdateBlock.h"
#include "tests/model/Scene.h"

// Events in their order, the text in step with them, and the link to the parser.

namespace fzy::test {
namespace {

using S = TScene;

TEST(Event, IsToldInOrder) {
  const std::pair<void (*)(S & s), const char*> cases[] = {
      // clang-format off
      {[](S& s) { s.Fuzzy.GetItems()->Add("v"); }, "VariableAdded -; Changed; VariableChanged v"},
      // The terms are built before the list as a whole has changed, over the range of that moment,
      // each point told for itself; the last one is the current set.
      {[](S& s) { s.Fuzzy.SetAutoTerms(true); s.Fuzzy.GetItems()->Add("v"); },
       "VariableAdded -; SetAdded -.-; VariableChanged -; SetChanged -.low x4; SetAdded -.-; "
       "VariableChanged -; SetChanged -.medium x2; SetAdded -.-; VariableChanged -; SetChanged -.high x4; "
       "Changed; VariableChanged v"},
      {[](S& s) { s.Fuzzy.GetItems()->Insert(0); }, "VariableAdded -; Changed x2"},
      {[](S& s) { s.T->SetIndex(1); s.T->SetIndex(1); }, "Changed"},
      {[](S& s) { for (const char* text : {"v", "v"}) { s.T->SetName(text); s.T->SetUnits(text);
          s.T->SetComment(text); } },
       "VariableChanged v x3"},
      // A bound that pushes the other one along is still one change.
      {[](S& s) { s.T->SetMinimum(0); s.T->SetMinimum(20); s.T->SetMaximum(-5); s.T->SetMaximum(-5); },
       "VariableChanged t x2"},
      {[](S& s) { s.T->SetThreshold(0.5); s.Fuzzy.SetThreshold(0.7); s.Fuzzy.SetNumFunctionValues(9);
          s.Fuzzy.SetInferenceMethod(fimMean); },
       ""},
      {[](S& s) { s.T->SetItemIndex(0); s.T->SetItemIndex(0); s.T->SetItemIndex(-7);
          }, "VariableChanged t x2"},
      // A variable lets its sets go, last first, before it leaves.
      {[](S& s) { s.T->Free(); }, "SetDeleted t.hot; SetDeleted t.cold; VariableDeleted t; Changed"},
      {[](S& s) { s.Fuzzy.GetItems()->Clear(); },
       "SetDeleted u.x; VariableDeleted u; SetDeleted t.hot; SetDeleted t.cold; VariableDeleted t; Changed"},
      {[](S& s) { s.X->GetValues()->Clear(); TFuzzyVariable* free = TFuzzyVariable::Create();
          free->GetItems()->Clear(); free->Free(); },
       ""},
      // Taken out whole, with its sets, and put back with what it lacks by then.
      {[](S& s) { s.T->SetCollection(nullptr); s.T->GetItems()->Add("low"); s.T->SetComment("unseen");
          s.Fuzzy.SetAutoTerms(true); s.T->SetCollection(s.Fuzzy.GetItems()); },
       "VariableDeleted t; Changed; VariableAdded t; SetAdded t.-; VariableChanged t; "
       "SetChanged t.medium x2; SetAdded t.-; VariableChanged t; SetChanged t.high x5; Changed"},
      {[](S& s) { TUpdateBlock outer(*s.Fuzzy.GetItems()); TUpdateBlock inner(*s.Fuzzy.GetItems());
          s.Fuzzy.GetItems()->Add("v"); s.T->SetComment("held back");
          s.Cold->SetComment("told: only the list of variables is blocked"); s.U->Free(); inner.Close();
          outer.Close(); },
       "VariableAdded -; SetChanged t.cold; SetDeleted u.x; VariableDeleted u; Changed"},
      // The properties are there before the sets are exchanged.
      {[](S& s) { s.U->Assign(s.T); }, "SetDeleted t.x; SetAdded t.- x2; VariableChanged t"},
      {[](S& s) { TFuzzyVariables other; other.Add("v")->GetItems()->Add("y"); s.Fuzzy.SetItems(&other); },
       "SetDeleted u.x; VariableDeleted u; SetDeleted t.hot; SetDeleted t.cold; VariableDeleted t; "
       "VariableAdded -; SetAdded v.-; Changed"},
      // Sets and points.
      {[](S& s) { s.T->GetItems()->Add("mild"); }, "SetAdded t.-; VariableChanged t; SetChanged t.mild"},
      {[](S& s) { s.Cold->SetIndex(1); s.Cold->SetIndex(1); }, "VariableChanged t"},
      {[](S& s) { for (const char* text : {"cool", "cool"}) { s.Cold->SetName(text);
          s.Cold->SetComment(text); } s.Cold->SetDefined(false); s.Cold->SetExpression("unseen");
          s.Cold->SetTag(1); },
       "SetChanged t.cool x2"},
      {[](S& s) { s.Cold->Free(); }, "SetDeleted t.cold; VariableChanged t"},
      {[](S& s) { s.Cold->SetCollection(s.U->GetItems()); },
       "SetDeleted t.cold; VariableChanged t; SetAdded u.cold; VariableChanged u"},
      {[](S& s) { TUpdateBlock block(*s.T->GetItems()); s.Cold->SetName("held back");
          s.T->GetItems()->Add("held back too");
          s.T->SetComment("told: the variable itself is not blocked"); block.Close(); },
       "SetAdded t.-; VariableChanged t x2"},
      // Name first, then all points at once, then type and expression, closed by one change more.
      {[](S& s) { s.X->Assign(s.Cold); }, "SetChanged u.cold x2"},
      {[](S& s) { s.U->SetItems(s.T->GetItems()); }, "SetDeleted u.x; SetAdded u.- x2; VariableChanged u"},
      {[](S& s) { s.Cold->Clone(); }, "SetAdded t.-; VariableChanged t; SetChanged t.cold x2"},
      // A point's arrival is one change, each coordinate that differs from the point's default one
      // more.
      {[](S& s) { s.X->GetValues()->Add(0, 0);
          s.Recorder.Handler = [](std::size_t, TFuzzyVariable*, TFuzzySet* set) {
          if (set->GetValues()->GetCount() == 2) set->SetTag(set->GetTag() + 1); };
          s.X->GetValues()->Add(0.5, 1); EXPECT_EQ(s.X->GetTag(), 3); },
       "SetChanged u.x x4"},
      {[](S& s) { s.Hot->GetValues()->GetItem(0)->SetY(0); s.Hot->GetValues()->GetItem(0)->SetY(0.5);
          s.Hot->GetValues()->GetItem(0)->SetValue(5, 0.5); s.Hot->GetValues()->Delete(0); },
       "SetChanged t.hot x3"},
      {[](S& s) { TUpdateBlock block(*s.X->GetValues()); s.X->GetValues()->Append(s.Cold->GetValues());
          s.X->GetValues()->GetItem(0)->SetY(0.2); block.Close(); },
       "SetChanged u.x"},
      {[](S& s) { s.X->SetSetType(fstTriangle); s.X->SetSetType(fstTriangle);
          s.X->SetSetType(fstUserDefined); },
       "SetChanged u.x x3"},
      // The temporary sets come and go inside one block of the list; the new name is told last.
      {[](S& s) { s.Cold->Hedge(fhSlightly); },
       "SetAdded t.- x3; SetDeleted t.positively [normalize [[plus cold] and [not [very cold]]]]; "
       "SetDeleted t.not [very cold]; SetDeleted t.plus cold; VariableChanged t; SetChanged t.slightly cold"},
      {[](S& s) { s.T->AssertRule(0.5, s.Cold, s.Hot); },
       "SetAdded t.-; VariableChanged t; SetChanged t.cold x3; SetChanged t.cold > 0.5000; SetAdded t.-; "
       "VariableChanged t; SetChanged t.hot or [cold > 0.5000] x2; SetDeleted t.cold > 0.5000; "
       "VariableChanged t"},
      // clang-format on
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    TScene scene;
    cases[i].first(scene);
    EXPECT_EQ(scene.Recorder.Take(), cases[i].second) << "case " << i;
  }
}

TEST(Event, FindsTheObjectInItsPlaceAndTheComponentsThreshold) {
  TScene s;
  s.Fuzzy.SetThreshold(0.25);
  s.T->SetThreshold(0.75);
  s.Recorder.Handler = [&s](std::size_t event, TFuzzyVariable* variable, TFuzzySet* set) {
    EXPECT_TRUE(event != 1 || variable->GetThreshold() == 0.25) << "when it joins";
    EXPECT_TRUE(event != 2 || s.Fuzzy.GetItems()->GetItem(0) == variable) << "when it goes";
    EXPECT_TRUE(event != 5 || s.T->GetItems()->GetItem(0) == set) << "when it goes";
  };
  s.Cold->Free();
  s.T->SetCollection(nullptr);
  EXPECT_EQ(s.T->GetThreshold(), 0.75);
  s.T->SetCollection(s.Fuzzy.GetItems());
  EXPECT_EQ(
      s.Recorder.Take(),
      "SetDeleted t.cold; VariableChanged t; VariableDeleted t; Changed; VariableAdded t; Changed");
}

TEST(Event, IsNotFiredWhenTheComponentGoes) {
  int told = 0;
  {
    TFuzzyLogic fuzzy;
    fuzzy.GetItems()->Add("t");
    TEventRecorder recorder(fuzzy);
    recorder.Handler = [&told](std::size_t, TFuzzyVariable*, TFuzzySet*) { ++told; };
    fuzzy.GetItems()->BeginUpdate();
  }
  EXPECT_EQ(told, 0);
}

struct TTextScene : TScene {
  TTextScene() {
    Parser.SetFuzzyLogic(&Fuzzy);
    Fuzzy.SetParser(&Parser);
  }
  std::string Text() { return Fuzzy.GetStrings()->GetText().Utf8(); }
  TTestParser Parser;
};

TEST(Text, ParsedRebuildsTheModelAfterTheOldOneWent) {
  TTextScene s;
  TStrings lines;
  lines.Add("v y z");
  lines.Add("w");
  s.Fuzzy.SetStrings(&lines);
  EXPECT_EQ(s.Recorder.Take(),
            "SetDeleted u.x; VariableDeleted u; SetDeleted t.hot; SetDeleted t.cold; "
            "VariableDeleted t; Changed; "
            "VariableAdded -; Changed; VariableChanged v; "
            "SetAdded v.-; VariableChanged v; SetChanged v.y; "
            "SetAdded v.-; VariableChanged v; SetChanged v.z; "
            "VariableAdded -; Changed; VariableChanged w");
  EXPECT_EQ(s.Parser.Texts, "v y z\nw\n;");
  s.Parser.OnPrint = [] { FAIL() << "the text is in step with the model"; };
  EXPECT_EQ(s.Text(), "v y z\nw\n");
}

TEST(Text, IsRegeneratedOnceAfterAnyChange) {
  TTextScene s;
  int printed = 0;
  s.Parser.OnPrint = [&printed] { ++printed; };
  for (int twice = 0; twice < 2; ++twice) EXPECT_EQ(s.Text(), "t cold hot\nu x\n");
  EXPECT_EQ(printed, 2) << "once for each variable";
  const std::pair<const char*, void (*)(TScene&)> changes[] = {
      {"t cool hot\nu x\n", [](TScene& t) { t.Cold->SetName("cool"); }},
      {"t cool hot\nu x\n", [](TScene& t) { t.Cold->GetValues()->GetItem(0)->SetY(0.5); }},
      {"t cool hot\nu\n", [](TScene& t) { t.X->Free(); }},
      {"u\nt cool hot\n", [](TScene& t) { t.U->SetIndex(0); }},
      {"t cool hot\n", [](TScene& t) { t.U->Free(); }},
  };
  TEventRecorder::Detach(s.Fuzzy);  // that nobody listens does not matter
  for (const auto& [text, change] : changes) {
    printed = 0;
    change(s);
    EXPECT_EQ(s.Text(), text);
    EXPECT_GT(printed, 0) << text;
  }
  printed = 0;
  s.T->SetThreshold(0.5);
  s.Fuzzy.SetCorrelationMethod(fcmProduct);
  s.Text();
  EXPECT_EQ(printed, 0) << "neither belongs to the definition";
}

TEST(Text, ThatCannotBeRegeneratedStaysMarked) {
  TTextScene s;
  s.T->SetName("v");
  s.Parser.OnPrint = [] { throw EFzyParseException("out of paper"); };
  EXPECT_THROW(s.Text(), EFzyParseException);
  s.Fuzzy.SetParser(nullptr);
  EXPECT_EQ(MessageOf([&] { s.Text(); }), "Parser not assigned.  Cannot parse");
  s.Parser.OnPrint = nullptr;
  s.Fuzzy.SetParser(&s.Parser);
  EXPECT_EQ(s.Text(), "v cold hot\nu x\n");
}

TEST(Text, WithoutAParserIsRefusedBeforeTheModelGoes) {
  TScene s;
  EXPECT_THROW(s.Fuzzy.Parse(), EFzyException);
  EXPECT_THROW(s.Fuzzy.SetStrings(TString("v")), EFzyException);
  EXPECT_THROW(s.Fuzzy.UpdateStrings(), EFzyException);
  EXPECT_EQ(s.Recorder.Take(), "");
  EXPECT_EQ(s.Fuzzy.GetItems()->GetCount(), 2);
}

TEST(Text, StaysInStepThoughTermsAreAddedToWhatIsParsed) {
  TTextScene s;
  s.Fuzzy.SetAutoTerms(true);
  s.Fuzzy.SetStrings(TString("t"));
  EXPECT_EQ(s.Text(), "t\n");
  s.Fuzzy.GetItems()->GetItem(0)->SetComment("changed");
  EXPECT_EQ(s.Text(), "t low medium high\n");
}

TEST(ParserLink, AndTheParsersOwnGoEachForItself) {
  for (const bool parserFirst : {true, false}) {
    for (const std::string unlinked : {"none", "parser's", "component's"}) {
      auto* parser = new TTestParser;
      auto* fuzzy = new TFuzzyLogic;
      parser->SetFuzzyLogic(fuzzy);
      fuzzy->SetParser(parser);
      if (unlinked == "parser's") parser->SetFuzzyLogic(nullptr);
      if (unlinked == "component's") fuzzy->SetParser(nullptr);
      EXPECT_EQ(fuzzy->GetParser() != nullptr, unlinked != "component's");
      EXPECT_EQ(parser->GetFuzzyLogic() != nullptr, unlinked != "parser's");
      parserFirst ? delete parser : fuzzy->Free();
      if (parserFirst)
        EXPECT_EQ(fuzzy->GetParser(), nullptr);
      else
        EXPECT_EQ(parser->GetFuzzyLogic(), nullptr);
      parserFirst ? fuzzy->Free() : delete parser;
    }
  }
}

TEST(ParserLink, MayGoWhileTheParserWorks) {
  for (const bool unlinked : {false, true}) {
    for (const bool printing : {false, true}) {
      TTextScene s;
      auto* parser = new TTestParser;
      s.Fuzzy.SetParser(parser);
      s.T->SetName("v");
      (printing ? parser->OnPrint : parser->OnParse) = [&] {
        if (unlinked) s.Fuzzy.SetParser(nullptr);
        parser->Free();
      };
      EXPECT_EQ(MessageOf([&] { printing ? void(s.Text()) : s.Fuzzy.SetStrings(TString("v")); }),
                printing ? "Parser not assigned.  Cannot parse" : "");
      EXPECT_EQ(s.Fuzzy.GetParser(), nullptr);
    }
  }
}

class TLoadingLogic final : public TFuzzyLogic {
 public:
  using TFuzzyLogic::Loading;
};

TEST(Loading, ReadsTextAndModelWithoutParsing) {
  TLoadingLogic fuzzy;
  fuzzy.Loading();
  fuzzy.SetStrings(TString("stored text"));
  fuzzy.GetItems()->Add("t");
  fuzzy.Parse();
  EXPECT_EQ(fuzzy.GetStrings()->GetText(), "stored text\n");
  EXPECT_EQ(fuzzy.GetItems()->GetCount(), 1);
  fuzzy.Loaded();
  EXPECT_EQ(fuzzy.GetStrings()->GetText(), "stored text\n") << "nor is it parsed at the end";
  EXPECT_EQ(fuzzy.GetItems()->GetCount(), 1);
  fuzzy.GetItems()->Add("u");
  EXPECT_EQ(MessageOf([&] { fuzzy.GetStrings(); }), "Parser not assigned.  Cannot parse");
}

}  // namespace
}  // namespace fzy::test
