#include <memory>

#include <gtest/gtest.h>

#include "tests/language/Definitions.h"

namespace fzy {
namespace {

using test::Dump;
using test::Failure;
using test::Sets;

// What reading into the counted model, evaluating and writing it has of its own.

class CountedModel : public testing::Test {
 protected:
  using TSet = Ref<IFuzzySet>;
  using TVariable = Ref<IFuzzyVariable>;

  /// Lets the variable be counted in `Living` as long as it lives; each of its sets keeps it alive.
  void Count(const TVariable& variable) {
    variable->SetOnVariableChange([living = Living](auto&&...) {});
  }

  std::shared_ptr<int> Living = std::make_shared<int>();
  test::TCountedScene Scene;
  TKelFuzzyLogicParser& Parser = Scene.Parser;
};

// A variable enters the component when it is complete; so the component hears nothing of its sets.
TEST_F(CountedModel, TellsInOrderOfWhatIsRead) {
  std::string log;
  const auto write = [&](const std::string& line) { log += line + '\n'; };
  const auto terms = [&](const TVariable& variable) {
    std::string names;
    for (const TSet& set : Sets(variable))
      if (set->GetDefined()) names += ' ' + set->GetName().Utf8();
    return variable->GetName().Utf8() + names;
  };
  Parser.SetOnParsing([&](TObject*) { write("parsing"); });
  Parser.SetOnParsed([&](TObject*) { write("parsed"); });
  Parser.SetOnCalcFuzzyIntfFunction(
      [&](TObject*, const TString& name, const auto& list, TSet& result, bool& handled) {
        write(name.Utf8() + '(' + list->ToString().Utf8() + ") " + terms(result->GetVariable()));
        handled = name != "tri";
        if (handled) result = name == "none" ? nullptr : TIFuzzySet::Create(result->GetVariable());
        if (name == "peak") result->Add(list->First()->GetNumber(), 1);
      });
  Parser.SetOnEvalExpressionIntf([&](const TVariable& sender, const TString& text, TSet& result) {
    write(sender->GetName().Utf8() + ": " + text.Utf8() + " -> " + Dump(result));
    if (text == "low not") result = sender->ContainsFuzzySet("low");
  });
  Parser.SetOnParseFuzzySetIntf([&](const TVariable& sender, const TSet& set) {
    write("read " + Dump(set) + " of " + terms(sender));
  });
  Parser.SetOnParseFuzzyVariableIntf([&](const TVariable& read) { write("read " + terms(read)); });
  Scene.Fuzzy.SetAutoTerms(true);
  Scene.Fuzzy.SetOnVariableAdded([&](const TVariable& added) { write("join " + terms(added)); });
  Scene.Fuzzy.SetOnFuzzySetAdded([&](auto&&...) { ADD_FAILURE(); });
  Parser.Parse(
      "(deffuzzy a (range 0 2) (values (term low \"c\" (tri 0 1 2)) (term high (peak 1)) (term "
      "lost "
      "(none)) (term medium not low)))",
      nullptr);
  EXPECT_EQ(
      log,
      "parsing\ntri(0 1 2) a\nread low 'c' tri * (0 0)(1 1)(2 0) of a low\npeak(1) a low\n"
      "read high  (1 1) of a low\nnone() a low high\na: low not -> not low =[not low] (0 1)(1 "
      "0)(2 1)\nread medium  (0 0)(1 1)(2 0) of a low high\njoin a low high medium\n"
      "read a low high medium\nparsed\n");
}

TEST_F(CountedModel, KeepsCompleteVariablesBeforeAnError) {
  Count(Scene.Add(Scene.Fuzzy, "old"));
  Parser.SetOnParseFuzzySetIntf([&](const TVariable& sender, auto&&...) { Count(sender); });
  const char* half = "(deffuzzy c (values (term x ((0 1))) (term y not x or 5) (term z (tri 1)))";
  const TString whole = "(deffuzzy b (values (term x ((0 1)))))(deffuzzy a)";
  EXPECT_NE(Failure([&] { Scene.Fuzzy.SetStrings(whole + "(deffuzzy b (units m))" + half); }),
            "nothing");
  EXPECT_EQ(Dump(Scene.Fuzzy), "a 0..1 {} b 0..1 m {}");
  EXPECT_EQ(Living.use_count(), 1) << "all that was dropped or replaced went";
  // A set that was not read to its end is no term.
  const TVariable a = Scene.Fuzzy.GetItems()->ContainsVariable("a");
  for (const char* text : {"(term z (tri 1))", "(term z ((0 1) x))"})
    EXPECT_NE(Failure([&] { Parser.ParseFuzzySet(a, text, nullptr); }), "nothing");
  EXPECT_EQ(a->ToString().Utf8().find("(term"), std::string::npos);
}

TEST_F(CountedModel, LimitsExpressionsThatHoldEachOther) {
  std::string text = "(deffuzzy a (values (term t ((0 1)))", name = "t";
  for (int i = 1; i <= 30; ++i) {
    text += "(term " + name + "t " + name + " and " + name + ')';
    name += 't';
  }
  std::size_t read = 0, characters = 0;
  Parser.SetOnParseFuzzySetIntf([&](const TVariable&, const TSet& set) {
    ++read;
    characters += set->GetExpression().size();
  });
  EXPECT_TRUE(Failure([&] { Parser.Parse(text, nullptr); })
                  .starts_with("line 1: Parsing Error, The fuzzy expression is too large: its sets "
                               "would take more than 1048576 characters of names"));
  EXPECT_TRUE(read > 15 && characters < (1U << 21)) << read << ' ' << characters;
}

TEST_F(CountedModel, EvaluatesBesideTermsOfAnyName) {
  const TVariable a = Scene.Add(Scene.Fuzzy, "a"), wide = Scene.Add(Scene.Fuzzy, "wide");
  const int number = std::stoi(Parser.GetUniqueName().Utf8().substr(8));
  for (const char* name : {"5", "tri 0 1 1", "0 1", "hot"}) Scene.AddSet(a, name)->Add(0, 0.25);
  for (int i = 0; i < 40; i += 2)
    Scene.AddSet(a, "FuzzySet" + TString(std::to_string(number + i)))->Add(0, 0.25);
  const std::string terms = Dump(a);
  Scene.Fuzzy.GetVariables()->SetText("hot=5\nfive=not hot");
  const auto check = [&](const TSet& result) {
    EXPECT_EQ(result->GetVariable(), a);
    for (const TSet& set : Sets(a))
      if (!set->GetDefined()) a->Remove(set);
    EXPECT_EQ(Dump(a), terms);
    return Dump(result);
  };
  for (const char* text : {"5", "very \"5\" + 5", "not \"tri 0 1 1\" or (tri 0 1 1)", "((0 1))",
                           "?hot or hot", "not ?five", "hot", ""})
    check(Parser.EvalFuzzyExpression(a, text));
  // A term of another variable is copied into this one, and its range.
  wide->SetMaximum(9);
  const Ref<TFuzzyStreamToken> token = TFuzzyStreamToken::Create();
  token->SetFuzzySetIntf(Scene.AddSet(wide, "hot"));
  token->GetFuzzySetIntf()->Add(9, 0.5);
  const Ref<TFuzzyStreamTokenList> list = TFuzzyStreamTokenList::Create();
  list->Add(token);
  EXPECT_EQ(check(Parser.EvalFuzzyExpression(a, list)), "hot  (1 0.5)");
  EXPECT_EQ(Dump(wide), "wide 0..9 {hot * (9 0.5)}");
}

// What the parser does as counted objects reach it, and what they do when it has gone.
TEST_F(CountedModel, LeavesTextsBehind) {
  Ref<IFuzzyParser> parser;
  TVariable variable;
  TSet cold, result;
  const TString text = u"(deffuzzy \u00E9 (range 0 9))";
  const std::pair<std::function<std::string()>, const char*> calls[] = {
      {[&] {
         return Dump(variable = parser->ParseFuzzyVariableIntf(text, TEncoding::UTF16BigEndian()));
       },
       "\u00E9 0..9 {}"},
      {[&] {
         return Dump(
             cold = parser->ParseFuzzySet(variable, "(term cold \"c\" ((0 1) (9 0)))", nullptr));
       },
       "cold 'c' * (0 1)(9 0)"},
      {[&] { return test::Number(parser->EvalFuzzyExpression(variable, "5", result)); }, "4.5"},
      {[&] { return Dump(parser->EvalFuzzyExpression(variable, "not cold")); },
       "not cold =[not cold] (0 0)(9 1)"},
      {[&] { return parser->PrettyPrint(cold, true).Utf8(); },
       "(term cold \"c\" ((0.0000 1.0000) (9.0000 0.0000) ))"},
      {[&] { return parser->PrettyPrint(variable).Slice(0, 11).Utf8(); }, "(deffuzzy \u00E9"}};
  {
    test::TCountedScene scene;
    parser = scene.Parser.GetInterface();
    for (const auto& [call, expected] : calls) EXPECT_EQ(call(), expected);
    EXPECT_TRUE(variable->GetParser() == parser && cold->GetParser() == parser);
  }
  EXPECT_TRUE(Query<IInterface>(parser.Get()) && !Query<IFuzzyParser>(parser.Get()));
  EXPECT_TRUE(!variable->GetParser() && !cold->GetParser());
  EXPECT_EQ(variable->ToString() + result->ToString().Slice(0, 4), TString(u"\u00E9(5 ("));
  for (const auto& [call, none] : calls)
    EXPECT_EQ(Failure(call), "Parser not assigned.  Cannot parse");
}

// Neither a parser that goes during its own work nor a variable that nobody else holds ends it.
TEST_F(CountedModel, OutlivesParserAndOwners) {
  auto* parser = new TKelFuzzyLogicParser;
  parser->SetFuzzyLogic(&Scene.Fuzzy);
  TVariable a = parser->ParseFuzzyVariableIntf("(deffuzzy a (range 0 9))", nullptr);
  parser->SetOnEvalExpressionIntf([&](auto&&...) { std::exchange(parser, nullptr)->Free(); });
  TSet set;
  EXPECT_EQ(parser->GetInterface()->EvalFuzzyExpression(a, "4", set), 4.5);
  EXPECT_TRUE(!parser && !a->GetParser());
  Parser.SetOnCalcFuzzyIntfFunction([&](auto&&...) {
    Scene.Fuzzy.GetItems()->Clear();
    a = nullptr;
  });
  Parser.SetOnParseFuzzySetIntf([&](const TVariable& sender, const TSet&) { EXPECT_TRUE(sender); });
  set = Parser.ParseFuzzySet(a, "(term x (tri 0 1 2))", nullptr);
  EXPECT_EQ(set->GetVariable()->GetName(), "a");
}

}  // namespace
}  // namespace fzy
