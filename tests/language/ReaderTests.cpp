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
      {"", ""},
      {" ; nothing\n\n;(deffuzzy a)", ""},
      {"(deffuzzy a)", "a 0..1 {}"},
      {"(deffuzzy a \"c\")(deffuzzy\nb;c\n)", "a 'c' 0..1 {} b 0..1 {}"},
      {"(deffuzzy a)(deffuzzy a)", "a 0..1 {} a 0..1 {}"},
      // Clauses come in any order and repeat; terms add up.
      {"(deffuzzy a (units m) (values (term x ((0 0)))) (range -2.5 1e1) (units \"km h\") (values) "
       "(values (term y ((2 1)) ) (term x ((0 1)))) (range -3 9))",
       "a -3..9 km h {x *=x (0 0); y *=y (2 1); x *=x (0 1)}"},
      // The lower bound is set first, and pushes the upper one along.
      {"(deffuzzy a (range 5 3))", "a 3..3 {}"},
      // Units are any one token.
      {"(deffuzzy a (units 0.50))", "a 0..1 0.5 {}"},
      {"(deffuzzy a (units ?x))", "a 0..1 x {}"},
      {"(deffuzzy a (units =))", "a 0..1 = {}"},
      // A name may be a keyword of the grammar, or carry escaped characters.
      {"(deffuzzy deffuzzy (values (term term \"t\" ((0 1)))))",
       "deffuzzy 0..1 {term 't' *=term (0 1)}"},
      {R"((deffuzzy wind\ speed (values (term v\.\"1\" ((0 1))))))",
       "wind speed 0..1 {v.\"1\" *=v.\"1\" (0 1)}"},
      // Points stand in the order of X, equal neighbours once.
      {"(deffuzzy a (range 0 9) (values (term x ((3 1) (1 0) (2 0.5) (2 0.5)))))",
       "a 0..9 {x *=x (1 0)(2 0.5)(3 1)}"},
      // Points are held within the range of that moment.
      {"(deffuzzy a (values (term x ((-5 -1) (7 2)))) (range 0 9))", "a 0..9 {x *=x (0 0)(1 2)}"},
      // Shape functions; the number of points is the component's.
      {"(deffuzzy a (range 0 8) (values (term p (pi 4 4)) (term q (pi 0 8 4)) (term s (s 0 4)) "
       "(term z (z 4 8)) (term b (beta 4 4 2)) (term c (beta 4 4 2 4)) (term t (tri 8 4 0))))",
       "a 0..8 {p pi *=p (0 0)(2 0.5)(4 1)(6 0.5)(8 0); q pi *=q (0 0)(2 0.5)(4 1)(6 0.5)(8 0); "
       "s s *=s (0 0)(1 0.125)(2 0.5)(3 0.875)(4 1); z z *=z (4 1)(5 0.875)(6 0.5)(7 0.125)(8 0); "
       "b beta *=b (0 0.2)(2 0.5)(4 1)(6 0.5)(8 0.2); "
       "c beta *=c (0 0.058823529411764705)(2 0.2)(4 1)(6 0.2)(8 0.058823529411764705); "
       "t tri *=t (8 0)(8 1)(8 0)}"},
      // What stands where the ")" of a point or of a call belongs is taken for it.
      {"(deffuzzy a (values (term x ((0 1 7 (1 0)))))", "a 0..1 {x *=x (0 1)(1 0)}"},
  };
  for (const auto& [text, expected] : rows) {
    TScene scene;
    scene.Fuzzy.SetNumFunctionValues(5);
    scene.Parser.Parse(text, nullptr);
    EXPECT_EQ(Dump(scene.Fuzzy), expected) << text;
    EXPECT_EQ(scene.Parser.GetStream(), nullptr);
  }
}

struct TBadRow {
  const char* Text;
  const char* Message;
  const char* Step;
  int Line;
  const char* Echo;
};

constexpr const char* ExpectedPi =
    "Number of arguments for function, pi, incorrect.  Expected "
    "\"\"Left Right Center\" or \"Range Center\"\"";

TEST(Reader, ReportsWhatItCannotRead) {
  const char* clause = "Missing keyword.  Expected \"range, units, or values\"";
  const char* refused = "Fuzzy expressions are not read by this parser";
  const TBadRow rows[] = {
      {"7", "Unexpected token: \"7\"", "ParseFuzzyLogic", 1, "7 "},
      {"\n\"a b\" (", "Unexpected token: \"a b\"", "ParseFuzzyLogic", 2, "a b "},
      {")", "Unexpected token: \")\"", "ParseFuzzyLogic", 1, ") "},
      {"(deffuzzy a))", "Unexpected token: \")\"", "ParseFuzzyLogic", 1, ")  deffuzzy a ) "},
      {"(deffuzzy a)\nb", "Unexpected token: \"b\"", "ParseFuzzyLogic", 2, "\r\nb effuzzy a ) "},
      {"(Deffuzzy a)", "Expected \"( deffuzzy\"", "ParseFuzzyVariable", 1, " ( Deffuzzy "},
      {"(\"deffuzzy\" a)", "Expected \"( deffuzzy\"", "ParseFuzzyVariable", 1, " ( deffuzzy "},
      {"()", "Expected \"( deffuzzy\"", "ParseFuzzyVariable", 1, " ( ) "},
      {"(", "Expected \"( deffuzzy\"", "ParseFuzzyVariable", 1, " ( EOF "},
      {"(deffuzzy\n\"a\")", "Missing name", "ParseFuzzyVariable", 2, " ( deffuzzy \r\na "},
      {"(deffuzzy 5)", "Missing name", "ParseFuzzyVariable", 1, " ( deffuzzy 5 "},
      {"(deffuzzy ?a)", "Missing name", "ParseFuzzyVariable", 1, " ( deffuzzy a "},
      {"(deffuzzy", "Missing name", "ParseFuzzyVariable", 1, " ( deffuzzy EOF "},
      {"(deffuzzy a b)", "Expected \"(\"", "ParseFuzzyVariable", 1, " ( deffuzzy a b ) "},
      {"(deffuzzy a \"b\" \"c\")", "Expected \"(\"", "ParseFuzzyVariable", 1,
       " ( deffuzzy a b c ) "},
      {"(deffuzzy a\n", "Expected \"(\"", "ParseFuzzyVariable", 2, "EOF effuzzy a \r\nEOF "},
      {"(deffuzzy a (Range 0 1))", clause, "ParseFuzzyVariable", 1, " ( deffuzzy a ( Range "},
      {"(deffuzzy a (\"range\" 0 1))", clause, "ParseFuzzyVariable", 1, " ( deffuzzy a ( range "},
      {"(deffuzzy a ())", clause, "ParseFuzzyVariable", 1, " ( deffuzzy a ( ) "},
      {"(deffuzzy a (range 0 x))", "Expected number", "ParseFuzzyVariable", 1,
       " ( deffuzzy a ( range 0 x "},
      {"(deffuzzy a (range 1e999 1))", "Expected number", "ParseFuzzyVariable", 1,
       " ( deffuzzy a ( range 1e999 1 "},
      {"(deffuzzy a (range 0 1\n2))", "Expected \")\"", "ParseFuzzyVariable", 2,
       " ( deffuzzy a ( range 0 1 \r\n2 "},
      {"(deffuzzy a (units m s))", "Expected \")\"", "ParseFuzzyVariable", 1,
       " ( deffuzzy a ( units m s "},
      {"(deffuzzy a (units m", "Expected \")\"", "ParseFuzzyVariable", 1,
       " ( deffuzzy a ( units m EOF "},
      {"(deffuzzy a (values b))", "Expected \"( term\"", "ParseFuzzySet", 1,
       " ( deffuzzy a ( values b ) "},
      {"(deffuzzy a (values (Term b ((0 1)))))", "Expected \"( term\"", "ParseFuzzySet", 1,
       " ( deffuzzy a ( values ( Term "},
      {"(deffuzzy a (values", "Expected \"( term\"", "ParseFuzzySet", 1,
       "EOF effuzzy a ( values EOF "},
      {"(deffuzzy a (values (term 5 ((0 1)))))", "Missing name", "ParseFuzzySet", 1,
       " ( deffuzzy a ( values ( term 5 "},
      {"(deffuzzy a (values (term b ((0 1)) 5)))", "Expected \")\"", "ParseFuzzySet", 1,
       " ( deffuzzy a ( values ( term b ( ( 0 1 ) ) 5 "},
      {"(deffuzzy a (values (term b ((1 2 3) (4 5)))))", "Expected \")\"", "ParseFuzzySet", 1,
       " ( deffuzzy a ( values ( term b ( ( 1 2 3 ) ( "},
      {"(deffuzzy a (values (term b ((1 2 3)))))", "Unexpected token: \")\"", "ParseFuzzyLogic", 1,
       " ( deffuzzy a ( values ( term b ( ( 1 2 3 ) ) ) ) ) "},
      {"(deffuzzy a (values (term b ((0 1) (x 1)))))", "Expected number", "ParseFuzzyValuePairs", 1,
       " ( deffuzzy a ( values ( term b ( ( 0 1 ) ( x 1 "},
      {"(deffuzzy a (values (term b ((0 1) x))))", "Expected \")\"", "ParseFuzzyValuePairs", 1,
       " ( deffuzzy a ( values ( term b ( ( 0 1 ) x "},
      {"(deffuzzy a (values (term b ((0 1)", "Expected \")\"", "ParseFuzzyValuePairs", 1,
       " ( deffuzzy a ( values ( term b ( ( 0 1 ) EOF "},
      {"(deffuzzy a (values (term b (5 1))))", "Missing name", "ParseFuzzyFunction", 1,
       " ( deffuzzy a ( values ( term b ( 5 "},
      {"(deffuzzy a (values (term b ())))", "Missing name", "ParseFuzzyFunction", 1,
       " ( deffuzzy a ( values ( term b ( ) "},
      {"(deffuzzy a (values (term b very cold)))", refused, "EvalFuzzyExpression", 1,
       " ( deffuzzy a ( values ( term b very cold "},
      {"(deffuzzy a (values (term b \"c\")))", refused, "EvalFuzzyExpression", 1,
       " ( deffuzzy a ( values ( term b c "},
      {"(deffuzzy a (values (term b", refused, "EvalFuzzyExpression", 1,
       " ( deffuzzy a ( values ( term b "},
  };
  for (const TBadRow& row : rows) {
    TScene scene;
    EXPECT_EQ(Failure([&] { scene.Parser.Parse(row.Text, nullptr); }),
              ParseFailure(row.Message, row.Step, row.Line, row.Echo))
        << row.Text;
    EXPECT_EQ(scene.Parser.GetStream(), nullptr);
    EXPECT_FALSE(scene.Fuzzy.GetItems()->IsUpdating());
    EXPECT_EQ(scene.Parser.GetLineNumber(), 0);
    scene.Fuzzy.GetItems()->Clear();
    scene.Parser.Parse(Example, nullptr);
    EXPECT_EQ(Dump(scene.Fuzzy), ExampleDump) << "after " << row.Text;
  }
}

TEST(Reader, ReportsCallsOfShapeFunctions) {
  const auto types = [](const std::string& name) {
    return "Data Types of arguments for function, " + name + ", incorrect.  Expected numeric";
  };
  const auto count = [](const std::string& name, const std::string& expected) {
    return "Number of arguments for function, " + name + ", incorrect.  Expected \"" + expected +
           '"';
  };
  const std::string beta =
      R"("Range Center Inflection_Point" or "Range Center Inflection_Point Weight")";
  const std::pair<const char*, std::string> rows[] = {
      {"gauss 1 x", "Unknown function name: \"gauss\""},
      {"Tri 0 1 2", "Unknown function name: \"Tri\""},
      {"tri \"0\"", types("tri")},
      {"tri 0 x 2", types("tri")},
      {"pi 0 (1)", types("pi")},
      {"s = 1", types("s")},
      {"beta ?x", types("beta")},
      {"pi 1", ExpectedPi},
      {"pi 1 2 3 4", ExpectedPi},
      {"tri 1 2", count("tri", "\"Left Middle Right\"")},
      {"tri", count("tri", "\"Left Middle Right\"")},
      {"s 1 2 3", count("s", "\"Left Right Inflection_Point\"")},
      {"z 1", count("z", "\"Left Right Inflection_Point\"")},
      {"beta 1 2", count("beta", beta)},
      {"beta 1 2 3 4 5", count("beta", beta)}};
  for (const auto& [call, message] : rows) {
    TScene scene;
    const std::string text = std::string("(deffuzzy a (values (term b (") + call + "))))";
    const std::string failure = Failure([&] { scene.Parser.Parse(text, nullptr); });
    EXPECT_EQ(failure.find("line 1: Parsing Error, " + message +
                           " in CalcFuzzyFunction at line 1: \" ( deffuzzy a ( values ( term b ( "),
              0U)
        << failure;
    // The set of the call was made before the call; the error leaves it without name and points.
    EXPECT_EQ(Dump(scene.Fuzzy), "a 0..1 {  }");
  }
}

TEST(Reader, ShowsLongTextsByTheirEnds) {
  TScene scene;
  const auto failure = [&](std::size_t length) {
    const std::string name(length - std::string_view(" ( deffuzzy  5 ) ").size(), 'x');
    return Failure([&] { scene.Parser.Parse("(deffuzzy " + name + " 5)", nullptr); });
  };
  const auto expected = [](const std::string& echo) {
    return ParseFailure("Expected \"(\"", "ParseFuzzyVariable", 1, echo);
  };
  EXPECT_EQ(failure(255), expected(" ( deffuzzy " + std::string(238, 'x') + " 5 ) "));
  EXPECT_EQ(failure(256), expected(" ( deffuzzy " + std::string(116, 'x') + "... \r\n" +
                                   std::string(123, 'x') + " 5 ) "));
}

TEST(Reader, KeepsWhatWasBuiltBeforeAnError) {
  TScene scene;
  const std::string text = std::string(Example) +
                           "(deffuzzy b \"c\" (range 0 9) (values (term x ((0 1)))\n"
                           "(term y ((1 1) (2 y)))) (units z))(deffuzzy d)";
  EXPECT_NE(Failure([&] { scene.Fuzzy.SetStrings(text); }), "nothing");
  EXPECT_EQ(Dump(scene.Fuzzy), std::string(ExampleDump) + " b 'c' 0..9 {x *=x (0 1);   (1 1)}");
  EXPECT_EQ(scene.Fuzzy.GetItems()->GetItem(1)->GetItems()->IsUpdating(), false);

  // With automatic terms the half-read variable is put back and completed.
  scene.Fuzzy.SetAutoTerms(true);
  EXPECT_NE(Failure([&] {
              scene.Fuzzy.SetStrings(
                  "(deffuzzy a (range 0 4) (values (term medium "
                  "((0 1))) (term y (tri))))");
            }),
            "nothing");
  EXPECT_EQ(Dump(scene.Fuzzy),
            "a 0..4 {medium *=medium (0 1);   ; low *=low (0 1)(4 0); high *=high (0 0)(4 1)}");

  // A term under a reserved word keeps its points, but not the name.
  scene.Fuzzy.SetAutoTerms(false);
  for (const char* word : {"very", "and", "above"}) {
    const std::string term = std::string("(deffuzzy a (values (term ") + word + " \"c\" ((0 1)))))";
    EXPECT_EQ(Failure([&] { scene.Fuzzy.SetStrings(term); }),
              std::string("Invalid fuzzy set name, \"") + word + "\" is a reserved word");
    EXPECT_EQ(Dump(scene.Fuzzy), "a 0..1 {  (0 1)}");
  }
  scene.Fuzzy.SetStrings(Example);
  EXPECT_EQ(Dump(scene.Fuzzy), ExampleDump);
}

TEST(Reader, AddsAutomaticTermsThatATextLacks) {
  TScene scene;
  scene.Fuzzy.SetAutoTerms(true);
  scene.Fuzzy.SetThreshold(0.25);
  scene.Fuzzy.SetStrings(
      "(deffuzzy a (range 2 6) (values (term high ((3 1)))))(deffuzzy b \"c\" (range 0 1))");
  EXPECT_EQ(Dump(scene.Fuzzy),
            "a 2..6 {high *=high (3 1); low *=low (2 1)(6 0); "
            "medium tri *=medium (2 0)(4 1)(6 0)} "
            "b 'c' 0..1 {low *=low (0 1)(1 0); medium tri *=medium (0 0)(0.5 1)(1 0); "
            "high *=high (0 0)(1 1)}");
  EXPECT_EQ(scene.Fuzzy.GetItems()->GetItem(0)->GetThreshold(), 0.25);
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
  EXPECT_EQ(run("\nx", [&] { parser.ParseFuzzyFunction(variable); }),
            ParseFailure("Expected \"(\"", "ParseFuzzyFunction", 2, "x "));
  // An error before any token was read: the text is taken first, then the line, which reads one.
  EXPECT_EQ(run("\nx", [&] { parser.ParseError("Step", "Nothing"); }),
            ParseFailure("Nothing", "Step", 2, ""));

  const auto convert = [&](const TString& text) {
    set->GetValues()->Clear();
    return run(text, [&] { parser.ConvertListToValues(set, parser.ParseTokenList()); });
  };
  EXPECT_EQ(convert("(1 0.5) (2 1)"), "nothing");
  EXPECT_EQ(Dump(set), "s * (1 0.5)(2 1)");
  const char* step = "ConvertListToValues";
  for (const auto& [pair, shown] :
       {std::pair{"5", "5"}, {"()", ""}, {"(1 (2) 3)", "1 2 3"}, {"(1)", "1"}})
    EXPECT_EQ(convert(std::string("(3 1)") + pair),
              ParseFailure(std::string("Invalid X/Y value pair: ") + shown, step, 1, " "))
        << pair;
  EXPECT_EQ(Dump(set), "s * (3 1)");
  EXPECT_EQ(convert("(1 x)"), ParseFailure("Expected number", step, 1, " "));

  TString name;
  TString comment = "old";
  EXPECT_EQ(
      run("(key word \"c\" 5)",
          [&] {
            EXPECT_EQ(
                parser.ParseHeader(name, comment, true, "key", "M", SFzyMissingName)->GetNumber(),
                5);
          }),
      "nothing");
  EXPECT_EQ(name + comment, "wordc");
  const std::string first = parser.GetUniqueName().Utf8();
  EXPECT_EQ(first.substr(0, 8), "FuzzySet");
  EXPECT_EQ(std::stoi(parser.GetUniqueName().Utf8().substr(8)), std::stoi(first.substr(8)) + 1);
}

}  // namespace
}  // namespace fzy
