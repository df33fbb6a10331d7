#include <functional>

#include <gtest/gtest.h>

#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "tests/language/Definitions.h"

namespace fzy {
namespace {

using test::Dump;
using test::Failure;
using test::ParseFailure;
using test::TScene;

constexpr const char* Example =
    "(deffuzzy temperature (range 0 100) (values (term cold ((0 1) (20 1) (40 0)))\n"
    " (term warm (tri 20 50 80))))";
constexpr const char* ExampleDump =
    "temperature 0..100 {cold *=cold (0 1)(20 1)(40 0); warm tri *=warm (20 0)(50 1)(80 0)}";

TEST(Reader, ReadsDefinitions) {
  const std::pair<const char*, const char*> rows[] = {
      {Example, ExampleDump},
      {" ; nothing\n\n;(deffuzzy a)", ""},
      {"(deffuzzy a \"c\")(deffuzzy\nb;c\n)(deffuzzy a)", "a 'c' 0..1 {} b 0..1 {} a 0..1 {}"},
      // Clauses come in any order and repeat; terms add up.
      {"(deffuzzy a (units m) (values (term x ((0 0)))) (range -2.5 1e1) (units \"km h\") (values) "
       "(values (term y ((2 1)) ) (term x ((0 1)))) (range -3 9))",
       "a -3..9 km h {x *=x (0 0); y *=y (2 1); x *=x (0 1)}"},
      // The lower bound is set first, and pushes the upper one along. Units are any one token.
      {"(deffuzzy a (range 5 3) (units 0.50))", "a 3..3 0.5 {}"},
      {"(deffuzzy a (units ?x))(deffuzzy b (units =))", "a 0..1 x {} b 0..1 = {}"},
      // A name may be a keyword of the grammar, or carry escaped characters.
      {R"((deffuzzy deffuzzy (values (term term "t" ((0 1))) (term v\.\"\ 1 ((0 1))))))",
       "deffuzzy 0..1 {term 't' *=term (0 1); v.\" 1 *=v.\" 1 (0 1)}"},
      // Points stand in the order of X, equal neighbours once, within the range of that moment.
      {"(deffuzzy a (values (term x ((3 1) (-1 -1) (0.5 1) (0.5 1)))) (range 0 9))",
       "a 0..9 {x *=x (0 0)(0.5 1)(1 1)}"},
      // Shape functions; the number of points is the component's.
      {"(deffuzzy a (range 0 8) (values (term p (pi 4 4)) (term q (pi 0 8 4)) (term s (s 0 4)) "
       "(term z (z 4 8)) (term b (beta 4 4 2)) (term c (beta 4 4 2 4)) (term t (tri 8 4 0))))",
       "a 0..8 {p pi *=p (0 0)(2 0.5)(4 1)(6 0.5)(8 0); q pi *=q (0 0)(2 0.5)(4 1)(6 0.5)(8 0); "
       "s s *=s (0 0)(1 0.125)(2 0.5)(3 0.875)(4 1); z z *=z (4 1)(5 0.875)(6 0.5)(7 0.125)(8 0); "
       "b beta *=b (0 0.2)(2 0.5)(4 1)(6 0.5)(8 0.2); "
       "c beta *=c (0 0.058823529411764705)(2 0.2)(4 1)(6 0.2)(8 0.058823529411764705); "
       "t tri *=t (8 0)(8 1)(8 0)}"},
      // What stands where the ")" of a point or of a call belongs is taken for it.
      {"(deffuzzy a (values (term x ((0 1 7 (1 0)))))", "a 0..1 {x *=x (0 1)(1 0)}"}};
  for (const auto& [text, expected] : rows) {
    TScene scene;
    scene.Fuzzy.SetNumFunctionValues(5);
    scene.Parser.Parse(text, nullptr);
    EXPECT_EQ(Dump(scene.Fuzzy), expected) << text;
  }
}

/// A text, cut where reading stops. The echo is " " and the first part, unless told otherwise.
struct TBadText {
  std::string Read, Rest, Message, Step;
  int Line = 1;
  const char* Echo = nullptr;
};

TEST(Reader, ReportsWhatItCannotRead) {
  const std::string clause = "Missing keyword.  Expected \"range, units, or values\"";
  const std::string define = "Expected \"( deffuzzy\"", term = "Expected \"( term\"";
  const std::string number = "Expected number", open = "Expected \"(\"", close = "Expected \")\"";
  const std::string logic = "ParseFuzzyLogic", var = "ParseFuzzyVariable", set = "ParseFuzzySet";
  const std::string pairs = "ParseFuzzyValuePairs", calc = "CalcFuzzyFunction";
  const std::string a = "( deffuzzy a ", values = a + "( values ", b = values + "( term b ";
  const auto arguments = [](const std::string& name, const std::string& expected) {
    return " of arguments for function, " + name + ", incorrect.  Expected " + expected;
  };
  const auto unexpected = [](const std::string& t) { return "Unexpected token: \"" + t + '"'; };
  const TBadText rows[] = {
      {"\n\"a b\" ", "(", unexpected("a b"), logic, 2, "a b "},
      {")", "", unexpected(")"), logic, 1, ") "},
      {"(deffuzzy a))", "", unexpected(")"), logic, 1, ")  deffuzzy a ) "},
      {"(deffuzzy a)\nb", "", unexpected("b"), logic, 2, "\r\nb effuzzy a ) "},
      {b + "( ( 1 2 3 ) ) ) ) ) ", "", unexpected(")"), logic},
      {"(\"deffuzzy\"", "a)", define, var, 1, " ( deffuzzy "},
      {"(", "", define, var, 1, " ( EOF "},
      {"(deffuzzy\n\"a\"", ")", "Missing name", var, 2, " ( deffuzzy \r\na "},
      {"( deffuzzy 5 ", ")", "Missing name", var},
      {a + "b ) ", "", open, var},
      {a + "\"b\" \"c\")", "", open, var, 1, " ( deffuzzy a b c ) "},
      {a + "\n", "", open, var, 2, "EOF effuzzy a \r\nEOF "},
      {a + "( Range ", "0 1))", clause, var},
      {a + "( range 0 x ", "))", number, var},
      {a + "(range 0 1\n2", "))", close, var, 2, " ( deffuzzy a ( range 0 1 \r\n2 "},
      {values + "b ) ", ")", term, set},
      {values, "", term, set, 1, "EOF effuzzy a ( values EOF "},
      {values + "( term 5 ", "((0 1)))))", "Missing name", set},
      {b + "( ( 0 1 ) ) 5 ", ")))", close, set},
      {b + "( ( 1 2 3 ) ( ", "4 5)))))", close, set},
      {b + "( ( 0 1 ) x ", ")))", close, pairs},
      {b + "( ( 0 1 ) ( x 1 ", "))))", number, pairs},
      {b + "( ) ", ")))", "Missing name", "ParseFuzzyFunction"},
      {b + "very cold ", ")))", "Invalid item in fuzzy expression: cold", "EvalFuzzyExpression"},
      {b, "", close, set, 1, " ( deffuzzy a ( values ( term b EOF "},
      {b + "( gauss 1 x ", "))))", "Unknown function name: \"gauss\"", calc},
      {b + "( tri 0 x 2 ", "))))", "Data Types" + arguments("tri", "numeric"), calc},
      {b + "( pi 1 ", "))))",
       "Number" + arguments("pi", R"(""Left Right Center" or "Range Center"")"), calc},
      {b + "( tri 1 2 ", "))))", "Number" + arguments("tri", R"(""Left Middle Right"")"), calc},
      {b + "( s 1 2 3 ", "))))", "Number" + arguments("s", R"(""Left Right Inflection_Point"")"),
       calc},
      {b + "( beta 1 2 ", "))))",
       "Number" +
           arguments(
               "beta",
               R"(""Range Center Inflection_Point" or "Range Center Inflection_Point Weight"")"),
       calc}};
  for (const TBadText& row : rows) {
    TScene scene;
    const std::string text = row.Read + row.Rest;
    EXPECT_EQ(Failure([&] { scene.Parser.Parse(text, nullptr); }),
              ParseFailure(row.Message, row.Step, row.Line, row.Echo ? row.Echo : ' ' + row.Read))
        << text;
    EXPECT_EQ(scene.Parser.GetStream(), nullptr);
    EXPECT_FALSE(scene.Fuzzy.GetItems()->IsUpdating());
    scene.Fuzzy.GetItems()->Clear();
    scene.Parser.Parse(Example, nullptr);
    EXPECT_EQ(Dump(scene.Fuzzy), ExampleDump) << "after " << text;
  }
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
       "b 'c' 0..1 {x *=x (0 1);   (1 1)}"},
      // With automatic terms the half-read variable is put back and completed.
      {true, "(deffuzzy a (range 0 4) (values (term medium ((0 1))) (term y (tri))))",
       "a 0..4 {medium *=medium (0 1);   ; low *=low (0 1)(4 0); high *=high (0 0)(4 1)}"},
      {true, "(deffuzzy a (range 2 6) (values (term high ((3 1)))))(deffuzzy",
       "a 2..6 {high *=high (3 1); low *=low (2 1)(6 0); medium tri *=medium (2 0)(4 1)(6 0)}"},
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

TEST(Reader, RunsSingleStepsForDescendants) {
  TScene scene;
  TStepParser parser;
  parser.SetFuzzyLogic(&scene.Fuzzy);
  TFuzzyVariable* variable = scene.Fuzzy.GetItems()->Add("a");
  variable->SetMaximum(9);
  TFuzzySet* set = variable->GetItems()->Add("s");
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

TEST(EntryPoints, ReadOneVariableOrOneTerm) {
  TScene scene;
  TFuzzyVariable* a = scene.Parser.ParseFuzzyVariable(" (deffuzzy a (range 0 9)) rest", nullptr);
  ASSERT_TRUE(a && a->GetFuzzy() == &scene.Fuzzy);
  TFuzzySet* x = scene.Parser.ParseFuzzySet(a, "(term x \"c\" ((4 1) (12 0)))(", nullptr);
  EXPECT_EQ(x->GetVariable(), a);
  EXPECT_EQ(Dump(x), "x 'c' =x (4 1)(9 0)") << "only the terms of a whole variable are defined";
  // A variable that belongs to no component takes a term too, with the parser's default count.
  const TOwned<TFuzzyVariable> free(TFuzzyVariable::Create());
  scene.Parser.SetFuzzyLogic(nullptr);
  x = scene.Parser.ParseFuzzySet(free.Get(), "(term s (s 0 1))", nullptr);
  EXPECT_EQ(x->GetValues()->GetCount(), 7);
}

TEST(EntryPoints, NeedAComponentOfTheRightClass) {
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
  {
    TOther other;
    parser.SetFuzzyLogic(&other);
    EXPECT_EQ(Failure([&] { parser.Parse("(deffuzzy a", nullptr); }),
              "line 0: FuzzyLogic property must be of type TFuzzyLogic or descendant");
    EXPECT_EQ(Failure([&] { parser.Parse(";", nullptr); }), "nothing");
  }
  EXPECT_EQ(parser.GetFuzzyLogic(), nullptr) << "cleared when the component goes";
}

TEST(EntryPoints, ReadEveryEncoding) {
  const TString text = u"(deffuzzy \u00E9t\u00E9 \"\u20AC\U0001F600\")";
  const std::string whole = "\u00E9t\u00E9 '\u20AC\U0001F600' 0..1 {}";
  TScene scene;
  for (const auto& [encoding, expected] : {std::pair<const TEncoding*, std::string>(nullptr, whole),
                                           {TEncoding::UTF16BigEndian(), whole},
                                           {TEncoding::Latin1(), "\u00E9t\u00E9 '?\?' 0..1 {}"}}) {
    EXPECT_EQ(Dump(scene.Parser.ParseFuzzyVariable(text, encoding)), expected);
    scene.Parser.ParseFuzzyLogic(text, encoding);
    EXPECT_EQ(Dump(scene.Fuzzy), expected + ' ' + expected);
    scene.Fuzzy.GetItems()->Clear();
  }
  scene.Parser.Parse(text, TEncoding::ASCII());
  EXPECT_EQ(Dump(scene.Fuzzy), whole) << "a whole text loses nothing";
}

TEST(EntryPoints, RebuildTheModelFromItsText) {
  TScene scene;
  TFuzzyLogic& fuzzy = scene.Fuzzy;
  fuzzy.GetItems()->Add("old");
  const std::string text = "(deffuzzy a)\r\n\r\n(deffuzzy b)";
  // Handlers of the old variables' removal that read or change the text.
  const std::function<void()> deeds[] = {
      [&] { fuzzy.GetStrings(); }, [&] { fuzzy.GetStrings()->SetText("(deffuzzy z)"); },
      [&] { fuzzy.UpdateStrings(); }, [&] { scene.Parser.Parse("(deffuzzy y)", nullptr); },
      [&] { fuzzy.SetStrings("(deffuzzy x)"); }};
  for (const auto& deed : deeds) {
    fuzzy.SetOnVariableDeleted([&](TObject*, TFuzzyVariable*) {
      fuzzy.SetOnVariableDeleted(nullptr);
      deed();
    });
    fuzzy.SetStrings(text);
    EXPECT_EQ(fuzzy.GetStrings()->GetCount(), 3) << "as it was assigned, not written anew";
    const std::string model = Dump(fuzzy), expected = "a 0..1 {} b 0..1 {}";
    EXPECT_TRUE(model.ends_with(expected)) << model;
    fuzzy.SetStrings(text);
    EXPECT_EQ(Dump(fuzzy), expected);
  }
  // A text that cannot be read is assigned all the same.
  EXPECT_EQ(Failure([&] { fuzzy.SetStrings("(deffuzzy c)\n(term d)"); }),
            ParseFailure("Expected \"( deffuzzy\"", "ParseFuzzyVariable", 2, " ( term "));
  EXPECT_EQ(Dump(fuzzy), "c 0..1 {}");
  // A changed model is written anew, one entry a variable; one that cannot be written keeps the old
  // text, and is tried again.
  TFuzzyVariable* variable = fuzzy.GetItems()->GetItem(0);
  variable->SetUnits("m");
  const TString written = fuzzy.GetStrings()->GetString(0);
  EXPECT_EQ(written, variable->ToString());
  fuzzy.GetItems()->Add("[");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Failure([&] { fuzzy.GetStrings(); }),
              "The name \"[\" cannot be written in a definition text");
  }
  fuzzy.GetItems()->GetItem(1)->SetName("d e");
  EXPECT_EQ(fuzzy.GetStrings()->GetString(0), written);
  EXPECT_TRUE(fuzzy.GetStrings()->GetString(1).Utf8().starts_with("(deffuzzy d\\ e \r\n"));
}

}  // namespace
}  // namespace fzy
