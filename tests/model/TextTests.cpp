#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/model/Scene.h"
#include "tests/model/TestParser.h"

namespace fzy {
namespace {

using test::MessageOf;
using test::TEventRecorder;
using test::TScene;
using test::TTestParser;

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
  TStringList lines;
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
  EXPECT_THAT(s.Parser.Texts, testing::ElementsAre("v y z\nw\n"));
  s.Parser.OnPrint = [] { FAIL() << "the text is in step with the model"; };
  EXPECT_EQ(s.Text(), "v y z\nw\n");
}

TEST(Text, IsRegeneratedOnceAfterAnyChange) {
  TTextScene s;
  int printed = 0;
  s.Parser.OnPrint = [&printed] { ++printed; };
  EXPECT_EQ(s.Text(), "t cold hot\nu x\n");
  EXPECT_EQ(s.Text(), "t cold hot\nu x\n");
  EXPECT_EQ(printed, 2);
  const std::pair<const char*, void (*)(TScene&)> changes[] = {
      {"t cool hot\nu x\n", [](TScene& t) { t.Cold->SetName("cool"); }},
      {"t cool hot\nu x\n", [](TScene& t) { t.Cold->GetValues()->GetItem(0)->SetY(0.5); }},
      {"t cool hot\nu\n", [](TScene& t) { t.X->Free(); }},
      {"u\nt cool hot\n", [](TScene& t) { t.U->SetIndex(0); }},
      {"u\nt cool hot\n", [](TScene& t) { t.T->SetMaximum(20); }},
      {"t cool hot\n", [](TScene& t) { t.U->Free(); }},
  };
  for (const auto& [text, change] : changes) {
    TEventRecorder::Detach(s.Fuzzy);  // that nobody listens does not matter
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

TEST(Text, ThatCannotBeRegeneratedStaysOldAndMarked) {
  TTextScene s;
  const std::string old = s.Text();
  s.T->SetName("v");
  s.Parser.OnPrint = [] { throw EFzyParseException("out of paper"); };
  for (int twice = 0; twice < 2; ++twice) EXPECT_THROW(s.Fuzzy.GetStrings(), EFzyParseException);
  s.Fuzzy.SetParser(nullptr);
  for (int twice = 0; twice < 2; ++twice)
    EXPECT_EQ(MessageOf([&] { s.Fuzzy.GetStrings(); }), "Parser not assigned.  Cannot parse");
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

TEST(Text, WithAReadingErrorLeavesWhatWasBuiltBefore) {
  TTextScene s;
  s.Parser.OnParse = [&s] {
    s.Fuzzy.GetItems()->Add("before");
    throw EFzyParseException("line 3 is wrong", 3);
  };
  try {
    s.Fuzzy.SetStrings(TString("v"));
    ADD_FAILURE();
  } catch (const EFzyParseException& e) {
    EXPECT_STREQ(e.what(), "line 3 is wrong");
    EXPECT_EQ(e.GetLineNumber(), 3);
  }
  EXPECT_EQ(s.Fuzzy.GetItems()->GetCount(), 1);
  EXPECT_EQ(s.Fuzzy.GetItems()->GetItem(0)->GetName(), "before");
}

// The text that was assigned is the one that is parsed, whatever handlers do to it while the old
// variables go.
TEST(Text, IsParsedAsAssignedThoughHandlersReadOrChangeIt) {
  const std::function<void(TTextScene&)> handlers[] = {
      [](TTextScene& s) { s.Text(); },
      [](TTextScene& s) { s.Fuzzy.GetStrings()->Clear(); },
      [](TTextScene& s) { s.Fuzzy.UpdateStrings(); },
      [](TTextScene& s) { s.Cold->SetName("cool"); },
  };
  for (const auto& handler : handlers) {
    TTextScene s;
    bool done = false;
    s.Recorder.Handler = [&](std::size_t, TFuzzyVariable*, TFuzzySet*) {
      if (!std::exchange(done, true)) handler(s);
    };
    s.Fuzzy.SetStrings(TString("v y"));
    s.Recorder.Handler = nullptr;
    EXPECT_TRUE(done);
    EXPECT_THAT(s.Parser.Texts, testing::ElementsAre("v y\n"));
    EXPECT_EQ(s.Text(), "v y\n");
    EXPECT_EQ(s.Fuzzy.GetItems()->GetCount(), 1);
  }
}

}  // namespace
}  // namespace fzy
