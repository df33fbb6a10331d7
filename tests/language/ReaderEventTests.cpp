#include <gtest/gtest.h>

#include "tests/language/Definitions.h"

namespace fzy {
namespace {

using test::Dump;
using test::Failure;
using test::TScene;

/// Writes down the events of a parser, and those of the component that tell what stands where.
struct TRecorder {
  explicit TRecorder(TScene& scene) {
    const auto from = [](const TObject& expected, TObject* sender, std::string line) {
      return sender == &expected ? line : line + '!';
    };
    const TObject& p = scene.Parser;
    const TObject& f = scene.Fuzzy;
    scene.Parser.SetOnParsing([=, this, &p](TObject* s) { Write(from(p, s, "parsing")); });
    scene.Parser.SetOnParsed([=, this, &p](TObject* s) { Write(from(p, s, "parsed")); });
    scene.Parser.SetOnCalcFuzzyFunction(
        [=, this, &p](TObject* s, const TString& name, const auto& list, TFuzzySet*& set, bool&) {
          Write(from(p, s, name.Utf8() + '(' + list->ToString().Utf8() + ")>" + Dump(set)));
        });
    scene.Parser.SetOnParseFuzzySet(
        [=, this, &p](TObject* s, TFuzzySet* set) { Write(from(p, s, "read " + Dump(set))); });
    scene.Parser.SetOnParseFuzzyVariable([=, this, &p](TObject* s, TFuzzyVariable* variable) {
      const bool updating = variable->GetCollection()->IsUpdating();
      Write(from(p, s, "read " + Dump(variable) + (updating ? " updating" : "")));
    });
    scene.Fuzzy.SetOnVariableAdded([=, this, &f](TObject* s, TFuzzyVariable* variable) {
      Write(from(f, s, "join " + Dump(variable)));
    });
    scene.Fuzzy.SetOnVariableDeleted([=, this, &f](TObject* s, TFuzzyVariable* variable) {
      Write(from(f, s, "leave " + Dump(variable)));
    });
    scene.Fuzzy.SetOnVariableChange([=, this, &f](TObject* s, TFuzzyVariable* variable) {
      Write(from(f, s, "change " + Dump(variable)));
    });
    scene.Fuzzy.SetOnChange([=, this, &f](TObject* s) { Write(from(f, s, "changed")); });
  }

  void Write(const std::string& line) { Log += line + '\n'; }

  std::string Log;
};

// The variable is in the collection from the start; its own changes wait for the end of the
// collection's update block, which is one change of the whole list.
TEST(ReaderEvents, TellInOrderOfWhatIsRead) {
  TScene scene;
  TRecorder recorder(scene);
  scene.Parser.Parse(
      "(deffuzzy a \"c\" (range 0 9) (values (term x \"d\" (tri 1 2 3)) (term y ((0 1)))))"
      "(deffuzzy b)",
      nullptr);
  EXPECT_EQ(recorder.Log,
            "parsing\n"
            "join  0..1 {}\n"
            "tri(1 2 3)>  \n"
            "read x 'd' tri =x (1 0)(2 1)(3 0)\n"
            "read y =y (0 1)\n"
            "changed\n"
            "read a 'c' 0..9 {x 'd' tri *=x (1 0)(2 1)(3 0); y *=y (0 1)}\n"
            "join  0..1 {}\n"
            "changed\n"
            "read b 0..1 {}\n"
            "parsed\n");
}

// With automatic terms it joins twice: bare, with terms that are dropped again, and then whole.
TEST(ReaderEvents, TellOfAutomaticTermsTwice) {
  TScene scene;
  scene.Fuzzy.SetAutoTerms(true);
  TRecorder recorder(scene);
  scene.Parser.ParseFuzzyVariable("(deffuzzy a (range 0 4) (values (term high ((0 1)))))", nullptr);
  EXPECT_EQ(recorder.Log,
            "join  0..1 {}\n"
            "leave  0..1 {low *=low (0 1)(1 0); medium tri *=medium (0 0)(0.5 1)(1 0); "
            "high *=high (0 0)(1 1)}\n"
            "read high =high (0 1)\n"
            "join a 0..4 {high *=high (0 1)}\n"
            "changed\n"
            "read a 0..4 {high *=high (0 1); low *=low (0 1)(4 0); "
            "medium tri *=medium (0 0)(2 1)(4 0)}\n");
}

TEST(ReaderEvents, StopAtAnError) {
  TScene scene;
  TRecorder recorder(scene);
  EXPECT_NE(Failure([&] {
              scene.Parser.Parse("(deffuzzy a (values (term x ((0 1))) (term y ((0 1)) z)))",
                                 nullptr);
            }),
            "nothing");
  EXPECT_EQ(recorder.Log, "parsing\njoin  0..1 {}\nread x =x (0 1)\nchanged\n");
}

TEST(ReaderEvents, LetAHandlerAddFunctions) {
  TScene scene;
  scene.Fuzzy.SetNumFunctionValues(3);
  TFuzzySet* other = nullptr;
  scene.Parser.SetOnCalcFuzzyFunction(
      [&](TObject*, const TString& name, const auto& list, TFuzzySet*& result, bool& handled) {
        EXPECT_FALSE(handled);
        if (name == "peak") {
          result->GetValues()->Add(list->First()->GetNumber(), 1);
          handled = true;
        } else if (name == "shared") {
          result->Free();
          result = other;
          handled = true;
        } else if (name == "none") {
          result->Free();
          result = nullptr;
          handled = true;
        } else if (name == "tri") {
          // Touched, but left to the parser.
          result->GetValues()->Add(0, 0.5);
        } else if (name == "s") {
          result = result->GetVariable()->GetItems()->Add("s");
        }
        other = result;
      });
  scene.Parser.Parse(
      "(deffuzzy a (range 0 9) (values (term x (peak 3 (a b) \"c\")) (term x2 (shared)) (term y "
      "(tri 1 2 3)) (term n (none)) (term z (s 1 3))))",
      nullptr);
  EXPECT_EQ(Dump(scene.Fuzzy),
            "a 0..9 {x2 *=x2 (3 1); y tri *=y (0 0.5)(1 0)(2 1)(3 0);   ; "
            "z s *=z (1 0)(2 0.5)(3 1)}");
  scene.Parser.SetOnCalcFuzzyFunction(nullptr);
  EXPECT_NE(Failure([&] {
              scene.Parser.Parse("(deffuzzy a (values (term x (peak 3))))", nullptr);
            }).find("Unknown function name: \"peak\""),
            std::string::npos);
}

// Each event in turn parses another text; the outer parse goes on where it was.
TEST(ReaderEvents, LetEntryPointsNest) {
  const char* text = "(deffuzzy a (values (term x (tri 0 0.5 1)) (term y ((0 1)))) (range 0 9))";
  const char* expected = "a 0..9 {x tri *=x (0 0)(0.5 1)(1 0); y *=y (0 1)}";
  for (int event = 0; event < 3; ++event) {
    TScene scene;
    const auto nest = [&] {
      const TFuzzyLogicTokenStream* outer = scene.Parser.GetStream();
      const TString echo = scene.Parser.GetParsedText();
      scene.Parser.SetOnCalcFuzzyFunction(nullptr);
      scene.Parser.SetOnParseFuzzySet(nullptr);
      scene.Parser.SetOnParseFuzzyVariable(nullptr);
      scene.Parser.ParseFuzzyVariable("(deffuzzy b (values (term z (s 0 1))))", nullptr);
      EXPECT_NE(Failure([&] { scene.Parser.ParseFuzzyLogic("(deffuzzy c))", nullptr); }),
                "nothing");
      EXPECT_EQ(scene.Parser.GetStream(), outer);
      EXPECT_EQ(scene.Parser.GetParsedText(), echo);
    };
    if (event == 0) scene.Parser.SetOnCalcFuzzyFunction([&](auto&&...) { nest(); });
    if (event == 1) scene.Parser.SetOnParseFuzzySet([&](auto&&...) { nest(); });
    if (event == 2) scene.Parser.SetOnParseFuzzyVariable([&](auto&&...) { nest(); });
    scene.Fuzzy.SetNumFunctionValues(3);
    scene.Parser.Parse(text, nullptr);
    EXPECT_EQ(Dump(scene.Fuzzy),
              std::string(expected) + " b 0..1 {z s *=z (0 0)(0.5 0.5)(1 1)} c 0..1 {}");
  }
}

}  // namespace
}  // namespace fzy
