#include <functional>

#include <gtest/gtest.h>

#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "tests/language/Definitions.h"

namespace fzy {
namespace {

using test::CheckCases;
using test::Dump;
using test::Failure;
using test::ParseFailure;
using test::TCountedScene;
using test::TScene;
using test::Variables;

template <class Scene>
class Reader : public testing::Test {};
TYPED_TEST_SUITE(Reader, test::TBothModels);
template <class Scene>
class EntryPoints : public testing::Test {};
TYPED_TEST_SUITE(EntryPoints, test::TBothModels);

TYPED_TEST(Reader, ReadsDefinitions) {
  CheckCases<TypeParam>("definitions", [](const std::string& text) {
    TypeParam scene;
    scene.Fuzzy.SetNumFunctionValues(5);
    scene.Parser.Parse(text, nullptr);
    return Dump(scene.Fuzzy);
  });
}

/// Bodies that mean another curve in the counted model: the degree at an X in either.
TYPED_TEST(Reader, AddsPointsAsItsModelDoes) {
  const std::tuple<const char*, double, double, double> rows[] = {
      {"((10 1) (15 0) (15 0.5))", 14, 0.6, 0.2},
      {"((15 0.3) (15 1) (15 0.5) (15 0.2) (16 1))", 15.5, 0.75, 0.6},
      {"((19 1) (20 0.5) (21 0))", 20.5, 0.25, 0},
      {"[17.5 and-boundedsum positively somewhat hot] or-boundedsum hot", 18, 0.5, 0.991},
      {"[17.5 and positively somewhat hot] or hot", 18, 0.5, 0.5}};
  for (const auto& [body, x, owned, counted] : rows) {
    TypeParam scene;
    scene.Parser.Parse(
        TString("(deffuzzy v (range 10 20) (values (term hot (s 16 20)) (term t ") + body + ")))",
        nullptr);
    int found = 0;
    for (const auto& set : test::Sets(Variables(scene.Fuzzy)[0])) {
      if (set->GetName() != "t") continue;
      ++found;
      EXPECT_NEAR(set->DegreeOfMembership(x), scene.Counted ? counted : owned, 0.0005) << body;
    }
    EXPECT_EQ(found, 1);
  }
}

TYPED_TEST(Reader, ReportsWhatItCannotRead) {
  CheckCases<TypeParam>("faults", [](const std::string& text) {
    TypeParam scene;
    const std::string failure = Failure([&] { scene.Parser.Parse(text, nullptr); });
    EXPECT_EQ(scene.Parser.GetStream(), nullptr);
    EXPECT_FALSE(scene.IsUpdating(scene.Fuzzy));
    scene.Fuzzy.GetItems()->Clear();
    scene.Parser.Parse("(deffuzzy a (values (term b ((0 1)))))", nullptr);
    EXPECT_EQ(Dump(scene.Fuzzy), "a 0..1 {b * (0 1)}") << "after " << text;
    return failure;
  });
}

TEST(Reader, ShowsLongTextsByTheirEnds) {
  TScene scene;
  const auto expect = [&](std::size_t letters, const std::string& echo) {
    const std::string text = "(deffuzzy " + std::string(letters, 'x') + " 5)";
    EXPECT_EQ(
        Failure([&] { scene.Parser.Parse(text, nullptr); }),
        ParseFailure("Expected \"(\"", "ParseFuzzyVariable", 1, " ( deffuzzy " + echo + " 5 ) "));
  };
  expect(238, std::string(238, 'x'));  // 255 characters in all
  expect(239, std::string(116, 'x') + "... \r\n" + std::string(123, 'x'));
}

TEST(Reader, KeepsWhatWasBuiltBeforeAnError) {
  const std::tuple<bool, std::string, std::string> rows[] = {
      {false, "(deffuzzy b \"c\" (values (term x ((0 1))) (term y ((1 1) (2 y)))) (units z))",
       "b 'c' 0..1 {x * (0 1);   (1 1)}"},
      // With automatic terms the half-read variable is put back and completed.
      {true, "(deffuzzy a (range 0 4) (values (term medium ((0 1))) (term y (tri))))",
       "a 0..4 {medium * (0 1);   ; low * (0 1)(4 0); high * (0 0)(4 1)}"},
      {true, "(deffuzzy a (range 2 6) (values (term high ((3 1)))))(deffuzzy",
       "a 2..6 {high * (3 1); low * (2 1)(6 0); medium tri * (2 0)(4 1)(6 0)}"},
      // A term under a reserved word keeps its points, but not the name.
      {false, "(deffuzzy a (values (term very \"c\" ((0 1)))))", "a 0..1 {  (0 1)}"}};
  TScene scene;
  for (const auto& [autoTerms, text, expected] : rows) {
    scene.Fuzzy.SetAutoTerms(autoTerms);
    const std::string failure = Failure([&, &t = text] { scene.Fuzzy.SetStrings(t); });
    EXPECT_NE(failure, "nothing");
    EXPECT_EQ(Dump(scene.Fuzzy), expected) << failure;
  }
}

/// A parser that runs one reading step on a text.
class TStepParser final : public TKelFuzzyLogicParser {
 public:
  std::function<void()> Step;
  using TKelFuzzyLogicParser::ParseFuzzyLogic;
  void ParseFuzzyLogic() override { Step(); }
};

TYPED_TEST(Reader, RunsSingleStepsForDescendants) {
  TypeParam scene;
  TStepParser parser;
  parser.SetFuzzyLogic(&scene.Fuzzy);
  const typename TypeParam::TVariable variable = scene.Add(scene.Fuzzy, "a");
  variable->SetMaximum(9);
  const typename TypeParam::TSet set = scene.AddSet(variable, "s");
  const auto run = [&](const TString& text, std::function<void()> step) {
    parser.Step = std::move(step);
    return Failure([&] { parser.ParseFuzzyLogic(text, nullptr); });
  };
  EXPECT_EQ(run("x", [&] { parser.ParseFuzzyValuePairs(variable); }),
            ParseFailure("Expected \"(\"", "ParseFuzzyValuePairs", 1, "x "));
  // An error before any token was read: the text is taken first, then the line, which reads one.
  EXPECT_EQ(run("\nx", [&] { parser.ParseError("Step", "Nothing"); }),
            ParseFailure("Nothing", "Step", 2, ""));

  const auto convert = [&](const TString& text) {
    return run(text, [&] { parser.ConvertListToValues(set, parser.ParseTokenList()); });
  };
  EXPECT_EQ(convert("(1 0.5) (2 1)"), "nothing");
  const char* step = "ConvertListToValues";
  for (const auto& [pair, shown] : {std::pair{"5", "5"}, {"()", ""}, {"(1 (2) 3)", "1 2 3"}})
    EXPECT_EQ(convert(std::string("(3 1)") + pair),
              ParseFailure(std::string("Invalid X/Y value pair: ") + shown, step, 1, " "));
  EXPECT_EQ(convert("(1 x)"), ParseFailure("Expected number", step, 1, " "));
  EXPECT_EQ(Dump(set), "s * (1 0.5)(2 1)(3 1)");
  TString name, comment = "old";
  const auto header = [&] { parser.ParseHeader(name, comment, true, "key", "M", SFzyMissingName); };
  EXPECT_EQ(run("(key word \"c\" 5)", header), "nothing");
  EXPECT_EQ(name + comment, "wordc");
  const int first = std::stoi(parser.GetUniqueName().Utf8().substr(8));
  EXPECT_EQ(parser.GetUniqueName().Utf8(), "FuzzySet" + std::to_string(first + 1));

  const std::string noText = "line 0: No definition text is being read";
  EXPECT_EQ(Failure([&] { scene.Parser.ParseFuzzyVariable(); }), noText);
  EXPECT_EQ(Failure([&] { scene.Parser.ParseTokenList(); }), noText);
}

TYPED_TEST(EntryPoints, ReadOneVariableOrOneTerm) {
  using TSet = typename TypeParam::TSet;
  TypeParam scene;
  const typename TypeParam::TVariable a =
      scene.Read(scene.Parser, " (deffuzzy a (range 0 9)) rest");
  ASSERT_EQ(Variables(scene.Fuzzy), std::vector{a});
  TSet x = scene.Parser.ParseFuzzySet(a, "(term x \"c\" ((4 1) (12 0)))(", nullptr);
  EXPECT_EQ(x->GetVariable(), a);
  // In the owned model only the terms of a whole variable are defined.
  EXPECT_EQ(Dump(x), std::string("x 'c' ") + (scene.Counted ? "*" : "") + " (4 1)(9 0)");
  EXPECT_EQ(x->GetExpression(), scene.Counted ? "" : "x");
  // Without a component a term is read with the parser's default count.
  scene.Parser.SetFuzzyLogic(nullptr);
  x = scene.Parser.ParseFuzzySet(a, "(term s (s 0 1))", nullptr);
  EXPECT_EQ(test::Engine(x).GetValues()->GetCount(), 7);
}

TEST(Component, MustBeOfTheRightClass) {
  class TOther final : public TCustomFuzzyLogic {
   public:
    TString ClassName() const override { return "TOther"; }
  };
  TKelFuzzyLogicParser parser;
  const std::string unset = "line 0: Fuzzy Logic component must be specified to parse";
  parser.SetOnParsing([](TObject*) { ADD_FAILURE() << "fired"; });
  EXPECT_EQ(Failure([&] { parser.Parse("(", nullptr); }), unset);
  parser.SetOnParsing(nullptr);
  EXPECT_EQ(Failure([&] { parser.ParseFuzzyVariable("(", nullptr); }), unset);
  EXPECT_EQ(Failure([&] { parser.ParseFuzzySet(nullptr, "(", nullptr); }),
            "line 0: fuzzy variable is not defined");
  EXPECT_EQ(Failure([&] { parser.ParseFuzzyVariableIntf("(", nullptr); }), unset);
  EXPECT_EQ(Failure([&] { parser.ParseFuzzySet(Ref<IFuzzyVariable>(), "(", nullptr); }),
            "line 0: fuzzy variable is not defined");
  {
    TOther other;
    TScene owned;
    TCountedScene counted;
    const std::string wrong = "line 0: FuzzyLogic property must be of type ";
    EXPECT_EQ(Failure([&] { owned.Parser.ParseFuzzyVariableIntf("(deffuzzy a)", nullptr); }),
              wrong + "TIFuzzyLogic or descendant");
    EXPECT_EQ(Failure([&] { counted.Parser.ParseFuzzyVariable("(deffuzzy a)", nullptr); }),
              wrong + "TFuzzyLogic or descendant");
    parser.SetFuzzyLogic(&other);
    EXPECT_EQ(Failure([&] { parser.Parse("(deffuzzy a", nullptr); }),
              wrong + "TFuzzyLogic or descendant");
    EXPECT_EQ(Failure([&] { parser.Parse(";", nullptr); }), "nothing");
  }
  EXPECT_EQ(parser.GetFuzzyLogic(), nullptr) << "cleared when the component goes";
}

TYPED_TEST(EntryPoints, ReadEveryEncoding) {
  const TString text = u"(deffuzzy \u00E9t\u00E9 \"\u20AC\U0001F600\")";
  const std::string whole = "\u00E9t\u00E9 '\u20AC\U0001F600' 0..1 {}";
  TypeParam scene;
  for (const auto& [encoding, expected] : {std::pair<const TEncoding*, std::string>(nullptr, whole),
                                           {TEncoding::UTF16BigEndian(), whole},
                                           {TEncoding::Latin1(), "\u00E9t\u00E9 '?\?' 0..1 {}"}}) {
    EXPECT_EQ(Dump(scene.Read(scene.Parser, text, encoding)), expected);
    scene.Fuzzy.GetItems()->Clear();
    scene.Parser.ParseFuzzyLogic(text, encoding);
    EXPECT_EQ(Dump(scene.Fuzzy), expected);
    scene.Fuzzy.GetItems()->Clear();
  }
  scene.Parser.Parse(text, TEncoding::ASCII());
  EXPECT_EQ(Dump(scene.Fuzzy), whole) << "a whole text loses nothing";
}

TYPED_TEST(EntryPoints, RebuildTheModelFromItsText) {
  TypeParam scene;
  auto& fuzzy = scene.Fuzzy;
  scene.Add(scene.Fuzzy, "old");
  const std::string text = "(deffuzzy a)\r\n\r\n(deffuzzy b)";
  // Handlers of the old variables' removal that read or change the text.
  const std::function<void()> deeds[] = {
      [&] { fuzzy.GetStrings(); }, [&] { fuzzy.GetStrings()->SetText("(deffuzzy z)"); },
      [&] { fuzzy.UpdateStrings(); }, [&] { scene.Parser.Parse("(deffuzzy y)", nullptr); },
      [&] { fuzzy.SetStrings("(deffuzzy x)"); }};
  for (const auto& deed : deeds) {
    fuzzy.SetOnVariableDeleted([&](auto&&...) {  // the counted model does not tell
      fuzzy.SetOnVariableDeleted(nullptr);
      deed();
    });
    fuzzy.SetStrings(text);
    EXPECT_EQ(fuzzy.GetStrings()->GetCount(), 3) << "as it was assigned, not written anew";
    const std::string model = Dump(fuzzy), expected = "a 0..1 {} b 0..1 {}";
    EXPECT_TRUE(model.ends_with(expected)) << model;
    fuzzy.SetOnVariableDeleted(nullptr);
    fuzzy.SetStrings(text);
    EXPECT_EQ(Dump(fuzzy), expected);
  }
  // A text that cannot be read is assigned all the same.
  EXPECT_EQ(Failure([&] { fuzzy.SetStrings("(deffuzzy c)\n(term d)"); }),
            ParseFailure("Expected \"( deffuzzy\"", "ParseFuzzyVariable", 2, " ( term "));
  EXPECT_EQ(Dump(fuzzy), "c 0..1 {}");
  // A changed model is written anew, one entry a variable; one that cannot be written keeps the old
  // text, and is tried again.
  const auto variable = Variables(fuzzy)[0];
  scene.Parser.ParseFuzzySet(variable, "(term x ((0 1)))", nullptr);
  const TString written = fuzzy.GetStrings()->GetString(0);
  EXPECT_EQ(written, variable->ToString());
  const auto other = scene.Add(scene.Fuzzy, "[");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Failure([&] { i == 0 ? fuzzy.UpdateStrings() : void(fuzzy.GetStrings()); }),
              "The name \"[\" cannot be written in a definition text");
  }
  other->SetName("d e");
  const TStrings& lines = *fuzzy.GetStrings();
  const int first = lines.GetString(0) == written ? 0 : 1;  // a table has an order of its own
  EXPECT_EQ(lines.GetString(first), written);
  EXPECT_TRUE(lines.GetString(1 - first).Utf8().starts_with("(deffuzzy d\\ e \r\n"));
}

}  // namespace
}  // namespace fzy
