#include <stdexcept>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "fuzzylogic/vocabulary/FuzzyMessages.h"
#include "tests/language/Definitions.h"

namespace fzy {
namespace {

using test::CheckCases;
using test::Dump;
using test::Failure;
using test::TScene;

template <class Scene>
class Diagnostics : public testing::Test {};
TYPED_TEST_SUITE(Diagnostics, test::TBothModels);

/// A place as "line:column variable/term <word>".
std::string Text(const TTextPlace& place) {
  return std::to_string(place.Line) + ':' + std::to_string(place.Column) + ' ' +
         place.Variable.Utf8() + '/' + place.Term.Utf8() + " <" + place.Word.Utf8() + '>';
}

std::string Text(const TReadingFault* fault) {
  if (!fault) return "nothing";
  return Text(fault->Place) + (fault->Advice.empty() ? "" : " " + fault->Advice.Utf8());
}

std::string Text(const TReadingWarning& warning) {
  return Text(warning.Place) + ' ' + warning.Message.Utf8() + ". " + warning.Advice.Utf8();
}

/// The warnings, each with its kind, joined by bars.
std::string Text(const std::vector<TReadingWarning>& warnings) {
  static constexpr const char* kinds[] = {"range",    "late", "order", "moved",
                                          "operator", "name", "auto"};
  std::string text;
  for (const TReadingWarning& warning : warnings)
    text += (text.empty() ? "" : " | ") + std::string(kinds[static_cast<int>(warning.Kind)]) + ' ' +
            Text(warning);
  return text;
}

/// A case's text, with what stands around it.
std::string Whole(const std::string& text) {
  if (text.starts_with("(def") || text.starts_with("def")) return text;
  return "(deffuzzy v (range 0 100)\n(values (term cold ((0 1) (40 0))) (term hot (s 60 90))\n"
         "(term x " +
         text + ")))";
}

template <class Scene>
void AddTexts(Scene& scene) {
  scene.Fuzzy.GetVariables()->SetText(
      "bad=cold adn hot\nchain=very ?bad\nloop=?loop\nopen=\"\nmost=150\nside=cold hot\nnot=hot");
}

TYPED_TEST(Diagnostics, TellWhereAReadingFailedAndWhatMayHelp) {
  CheckCases<TypeParam>("advice", [](const std::string& text) {
    TypeParam scene;
    AddTexts(scene);
    const std::string failure = Failure([&] { scene.Parser.Parse(Whole(text), nullptr); });
    EXPECT_NE(failure, "nothing");
    return Text(scene.Parser.GetFault());
  });
}

TYPED_TEST(Diagnostics, WarnOfWhatIsReadSilently) {
  CheckCases<TypeParam>("warnings", [](const std::string& text) {
    TypeParam scene;
    AddTexts(scene);
    std::vector<TReadingWarning> told;
    scene.Parser.SetOnWarning([&](TObject* sender, const TReadingWarning& warning) {
      EXPECT_EQ(sender, &scene.Parser);
      told.push_back(warning);
    });
    EXPECT_EQ(Failure([&] { scene.Parser.Parse(Whole(text), nullptr); }), "nothing") << text;
    EXPECT_EQ(Text(scene.Parser.GetFault()), "nothing");
    EXPECT_EQ(Text(told), Text(scene.Parser.GetWarnings()));
    // The same without them.
    TypeParam quiet;
    AddTexts(quiet);
    quiet.Parser.SetDiagnostics(false);
    quiet.Parser.Parse(Whole(text), nullptr);
    EXPECT_TRUE(quiet.Parser.GetWarnings().empty());
    EXPECT_EQ(Dump(quiet.Fuzzy), Dump(scene.Fuzzy)) << text;
    return Text(told);
  });
}

TYPED_TEST(Diagnostics, KnowOfAutomaticTerms) {
  TypeParam scene;
  scene.Fuzzy.SetAutoTerms(true);
  EXPECT_NE(
      Failure([&] { scene.Parser.Parse("(deffuzzy v (values (term x very low)))", nullptr); }),
      "nothing");
  EXPECT_EQ(Text(scene.Parser.GetFault()), "1:34 v/x <low> " + SFzyAdviseAutoTerm.Get().Utf8());
  const std::string own = "(values (term low (s 0 1)) (term medium (s 0 1)) (term high (s 0 1)))";
  scene.Parser.Parse(TString("(deffuzzy a (range 0 9))(deffuzzy b " + own + ")\n(deffuzzy c)"),
                     nullptr);
  EXPECT_EQ(
      Text(scene.Parser.GetWarnings()),
      "auto 2:11 c/ <c> The automatic terms of c span 0 to 1, because its text sets no range. "
      "Write (range least greatest), or turn the automatic terms off");
}

// Within another reading places are in the text of the outer one, and what survives there is none.
TYPED_TEST(Diagnostics, BelongToTheOutermostReading) {
  TypeParam scene;
  TKelFuzzyLogicParser& parser = scene.Parser;
  const char* text = "(deffuzzy a (values (term x (s 0 1))\n (term y ((0 1)))))";
  const std::string inner = "(deffuzzy b (range 9 0) (values (term z hot)))";
  const auto parse = [&] { return Failure([&] { parser.Parse(text, nullptr); }); };
  bool survives = true;
  int times = 0;
  TypeParam::OnSet(parser, [&](auto&&...) {
    if (++times != 2) return;
    const std::string failure = Failure([&] { parser.ParseFuzzyLogic(inner, nullptr); });
    EXPECT_NE(failure, "nothing");
    EXPECT_EQ(parser.GetFault(), nullptr);
    if (!survives) throw std::runtime_error(failure);
  });
  EXPECT_EQ(parse(), "nothing");
  EXPECT_EQ(parser.GetFault(), nullptr);
  const std::string place = "2:17 a/y <)>";
  EXPECT_EQ(
      Text(parser.GetWarnings()),
      "range " + place + " The range from 9 to 0 is empty. Put the numbers in order: (range 0 9)");
  survives = false;
  times = 0;
  EXPECT_NE(parse(), "nothing");
  EXPECT_EQ(Text(parser.GetFault()), place);

  // Before and behind the text there is no place; what comes next begins anew.
  TypeParam::OnSet(parser, nullptr);
  const auto refuse = [](TObject*) { throw std::runtime_error("refused"); };
  parser.SetOnParsing(refuse);
  EXPECT_EQ(parse(), "refused");
  EXPECT_EQ(Text(parser.GetFault()), "0:0 / <>");
  EXPECT_TRUE(parser.GetWarnings().empty());
  parser.SetOnParsing(nullptr);
  parser.SetOnParsed(refuse);
  EXPECT_EQ(parse(), "refused");
  EXPECT_EQ(Text(parser.GetFault()), "0:0 / <>");
  parser.SetOnParsed(nullptr);
  EXPECT_EQ(parse(), "nothing");
  EXPECT_EQ(parser.GetFault(), nullptr);
  scene.Parser.SetFuzzyLogic(nullptr);
  EXPECT_NE(parse(), "nothing");
  EXPECT_EQ(Text(parser.GetFault()), "0:0 / <>");
}

// One term, an expression, tokens that were read before: each is a reading.
TYPED_TEST(Diagnostics, CoverEveryEntryPoint) {
  TypeParam scene;
  AddTexts(scene);
  TKelFuzzyLogicParser& parser = scene.Parser;
  const auto v =
      TypeParam::Read(parser, "(deffuzzy v (values (term cold (z 0 1)) (term hot (s 0 1))))");
  Failure([&] { TypeParam::Read(parser, "\n(deffuzzy w (unit"); });
  EXPECT_EQ(Text(parser.GetFault()), "2:14 w/ <unit> Did you mean \"units\"?");
  Failure([&] { parser.ParseFuzzySet(v, "(term x clod)", nullptr); });
  EXPECT_EQ(Text(parser.GetFault()), "1:9 /x <clod> Did you mean \"cold\"?");
  Failure([&] { parser.EvalFuzzyExpression(v, "very\nhto"); });
  EXPECT_EQ(Text(parser.GetFault()), "2:1 / <hto> Did you mean \"hot\"?");
  parser.EvalFuzzyExpression(v, "cold ?side");
  EXPECT_EQ(parser.GetFault(), nullptr);
  EXPECT_EQ(parser.GetWarnings().size(), 2U) << Text(parser.GetWarnings());
  const Ref<IFuzzyStreamTokenList> tokens = TFuzzyStreamTokenList::Create();
  const Ref<TFuzzyStreamToken> token = TFuzzyStreamToken::Create();
  token->SetDataType(KindOf(fstAtom));
  token->SetText("colt");
  tokens->Add(token);
  Failure([&] { parser.EvalFuzzyExpression(v, tokens); });
  EXPECT_EQ(Text(parser.GetFault()), "0:0 / <colt> Did you mean \"cold\"?");
  Failure([&] { parser.EvalFuzzyExpression(v, Ref<IFuzzyStreamToken>(token)); });
  EXPECT_EQ(Text(parser.GetFault()), "0:0 / <colt> Did you mean \"cold\"?");
}

TYPED_TEST(Diagnostics, AreToldBeforeWhatTheyAreAbout) {
  TypeParam scene;
  std::string log;
  scene.Parser.SetOnWarning([&](TObject*, const TReadingWarning& warning) {
    log += "! " + warning.Place.Word.Utf8() + ' ';
  });
  TypeParam::OnEval(scene.Parser, [&](auto&&...) { log += "eval "; });
  TypeParam::OnSet(scene.Parser, [&](auto&&...) { log += "term "; });
  TypeParam::OnVariable(scene.Parser, [&](auto&&...) { log += "variable "; });
  scene.Fuzzy.SetAutoTerms(true);
  scene.Parser.Parse(
      "(deffuzzy v (values (term a ((2 1) (3 1) (1 0)))(term b (tri 9 5 1))(term c a b)))",
      nullptr);
  EXPECT_EQ(log, "! 2 term ! 9 term ! b eval term ! v variable ");
}

TYPED_TEST(Diagnostics, AreLimitedAndMayBeUnwanted) {
  TypeParam scene;
  TString text = "(deffuzzy v (range 0 9)";
  for (int i = 0; i < 1500; ++i) text += u"(range 9 9)";
  text += u")";
  std::size_t told = 0;
  scene.Parser.SetOnWarning([&](auto&&...) { ++told; });
  scene.Parser.Parse(text, nullptr);
  EXPECT_EQ(told, 1500U);
  EXPECT_EQ(scene.Parser.GetWarnings().size(), 1000U);
  // Who writes a model reads it, too, which is nobody's business.
  scene.Fuzzy.SetStrings("(deffuzzy v (range 0 9)(values (term x ((1 1)(12 0)))(term y x x)))");
  scene.Parser.ParseFuzzySet(test::Variables(scene.Fuzzy)[0], "(term z (s 1 1))", nullptr);
  told = 0;
  EXPECT_EQ(scene.Parser.GetWarnings().size(), 1U);
  scene.Fuzzy.UpdateStrings();
  EXPECT_EQ(told, 0U);
  EXPECT_EQ(scene.Parser.GetWarnings().size(), 1U);
  scene.Parser.SetDiagnostics(false);
  EXPECT_NE(Failure([&] { scene.Fuzzy.SetStrings("(deffuzzy v (range 5 5) (x))"); }), "nothing");
  EXPECT_EQ(told, 0U);
  EXPECT_EQ(scene.Parser.GetFault(), nullptr);
}

// However a text comes to the parser, its end stands in the same line.
TYPED_TEST(Diagnostics, CountTheSameLinesForTheParserAndTheComponent) {
  for (const char* end : {"", " ", "\n", "\r", "\r\n", "\n\n", " ; remark", " ; remark\n", "\\"}) {
    const std::string text = std::string("(deffuzzy a)\n(deffuzzy b") + end;
    TypeParam scene;
    TStrings lines;
    lines.SetText(text);
    const auto told = [&](auto read) {
      const std::string failure = Failure(read);
      return failure + Text(scene.Parser.GetFault());
    };
    const std::string expected = told([&] { scene.Parser.Parse(text, nullptr); });
    EXPECT_NE(expected.find("Expected"), std::string::npos);
    EXPECT_EQ(told([&] { scene.Fuzzy.SetStrings(text); }), expected) << text;
    EXPECT_EQ(told([&] { scene.Fuzzy.SetStrings(&lines); }), expected) << text;
    EXPECT_EQ(lines.GetGivenText(), TString(text));
    scene.Fuzzy.SetStrings("");
    scene.Fuzzy.GetStrings()->SetText(text);
    EXPECT_EQ(told([&] { scene.Fuzzy.Parse(); }), expected) << text;
    lines.Add("x");
    EXPECT_TRUE(lines.GetGivenText().Utf8().ends_with("x\n"));
  }
}

}  // namespace
}  // namespace fzy
