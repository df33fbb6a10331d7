#include <stdexcept>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "fuzzylogic/framework/FirstException.h"
#include "tests/language/Definitions.h"

namespace fzy {
namespace {

using test::Dump;
using test::Failure;
using test::TScene;

template <class Scene>
class ReaderHandlers : public testing::Test {};
TYPED_TEST_SUITE(ReaderHandlers, test::TBothModels);

constexpr const char* Text =
    "(deffuzzy a (range 9 0) (range 0 9) (values (term x (tri 1 2 3)) (term y ((4 1)))))(deffuzzy "
    "b (values "
    "(term z (s 0 1))))";

template <class Scene>
using TTell = std::function<void(const typename Scene::TVariable&, const typename Scene::TSet&)>;

constexpr std::size_t Events = 13;

/// The parser's events, and the component's own while the reader builds.
template <class Scene>
void Attach(std::size_t event, typename Scene::TLogic& fuzzy, TKelFuzzyLogicParser& parser,
            TTell<Scene> tell) {
  const auto plain = [tell](TObject*) { tell(nullptr, nullptr); };
  const auto onVariable = [tell](const auto&... told) {
    tell(std::get<sizeof...(told) - 1>(std::tie(told...)), nullptr);
  };
  const auto onSet = [tell](const auto&, const auto& set) { tell(set->GetVariable(), set); };
  const auto onCall = [tell](TObject*, const TString&, const auto&, auto& set, bool&) {
    tell(set->GetVariable(), set);
  };
  if (event == 0) parser.SetOnParsing(plain);
  if (event == 1) Scene::OnCall(parser, onCall);
  if (event == 2) Scene::OnSet(parser, onSet);
  if (event == 3) Scene::OnVariable(parser, onVariable);
  if (event == 4) parser.SetOnParsed(plain);
  if (event == 5) fuzzy.SetOnChange(plain);
  if (event == 6) fuzzy.SetOnVariableAdded(onVariable);
  if (event == 7) fuzzy.SetOnVariableDeleted(onVariable);
  if (event == 8) fuzzy.SetOnVariableChange(onVariable);
  if (event == 9) fuzzy.SetOnFuzzySetAdded(onSet);
  if (event == 10) fuzzy.SetOnFuzzySetDeleted(onSet);
  if (event == 11) fuzzy.SetOnFuzzySetChange(onSet);
  if (event == 12)
    parser.SetOnWarning([tell](TObject*, const TReadingWarning&) { tell(nullptr, nullptr); });
}

/// What a handler sees of the moment; the deeds below work on it.
template <class Scene>
struct TMoment {
  typename Scene::TLogic*& Fuzzy;
  TKelFuzzyLogicParser*& Parser;
  typename Scene::TVariable Variable;
  typename Scene::TSet Set;
  std::vector<typename Scene::TKept>& Taken;  // out of the component: nobody else frees them
};

// clang-format off
template <class S, class M = const TMoment<S>&>
const std::pair<const char*, void (*)(M)> Deeds[] = {
    {"throws", [](M) { throw std::runtime_error("refused"); }},
    {"frees the set", [](M m) { m.Set && m.Variable ? S::Drop(m.Set) : void(); }},
    {"frees the variable", [](M m) { m.Variable ? S::Drop(*m.Fuzzy, m.Variable) : void(); }},
    {"frees the model", [](M m) { m.Fuzzy->GetItems()->Clear(); }},
    {"takes the variable out", [](M m) {
       if (m.Variable) { m.Taken.emplace_back(m.Variable); S::TakeOut(*m.Fuzzy, m.Variable); } }},
    {"frees the component", [](M m) { std::exchange(m.Fuzzy, nullptr)->Free(); }},
    {"frees the parser", [](M m) { std::exchange(m.Parser, nullptr)->Free(); }},
    {"unlinks the component", [](M m) { m.Parser->SetFuzzyLogic(nullptr); }},
    {"parses", [](M m) { m.Parser->Parse("(deffuzzy n (units u))", nullptr); }},
    {"parses in vain", [](M m) { m.Parser->Parse("(deffuzzy n \"", nullptr); }},
    {"assigns the text", [](M m) { m.Fuzzy->SetStrings("(deffuzzy n)"); }},
    {"reads a term", [](M m) {
       if (m.Variable) m.Parser->ParseFuzzySet(m.Variable, "(term n (z 0 1))", nullptr); }},
    {"switches automatic terms", [](M m) { m.Fuzzy->SetAutoTerms(!m.Fuzzy->GetAutoTerms()); }},
    {"replaces all handlers", [](M m) {
       for (std::size_t i = 0; i < Events; ++i) Attach<S>(i, *m.Fuzzy, *m.Parser, [](auto&&...) {}); }}};
// clang-format on

/// Runs one deed at the first, or at every, occurrence of one event.
template <class Scene, class Deed>
void Try(std::size_t event, Deed deed, bool autoTerms, bool once, bool single) {
  auto* fuzzy = new typename Scene::TLogic;
  auto* parser = new TKelFuzzyLogicParser;
  fuzzy->SetAutoTerms(autoTerms);
  fuzzy->SetNumFunctionValues(3);
  fuzzy->SetParser(parser);
  parser->SetFuzzyLogic(fuzzy);
  Scene::Add(*fuzzy, "old");
  std::vector<typename Scene::TKept> taken;
  bool running = false;
  int times = 0;
  Attach<Scene>(event, *fuzzy, *parser, [&, deed](const auto& variable, const auto& set) {
    if (running || !fuzzy || !parser || (once && times > 0)) return;
    if (variable && variable->GetName() == "old") return;
    running = true;
    ++times;
    TFirstException first;
    first.Run([&] { deed({fuzzy, parser, variable, set, taken}); });
    running = false;
    first.Rethrow();
  });
  const std::string failure = Failure([&] {
    if (!single) return parser->Parse(Text, nullptr);
    if (const auto read = Scene::Read(*parser, Text)) Dump(read);
  });
  EXPECT_EQ(failure.find("std::"), std::string::npos) << failure;
  EXPECT_TRUE(!parser || !parser->GetStream());
  EXPECT_TRUE(!fuzzy || !Scene::IsUpdating(*fuzzy));
  if (fuzzy && parser) {
    for (std::size_t i = 0; i < Events; ++i) Attach<Scene>(i, *fuzzy, *parser, [](auto&&...) {});
    int changes = 0;
    fuzzy->SetOnVariableAdded([&](auto&&...) { ++changes; });
    parser->SetFuzzyLogic(fuzzy);
    fuzzy->SetAutoTerms(false);
    fuzzy->SetStrings(Text);
    EXPECT_EQ(Dump(*fuzzy),
              "a 0..9 {x tri * (1 0)(2 1)(3 0); y * (4 1)} b 0..1 {z s * (0 0)(0.5 0.5)(1 1)}");
    EXPECT_GT(changes, 0);
  }
  taken.clear();
  if (parser) parser->Free();
  if (fuzzy) fuzzy->Free();
}

TYPED_TEST(ReaderHandlers, MayDoAnything) {
  for (std::size_t event = 0; event < Events; ++event) {
    for (const auto& [name, deed] : Deeds<TypeParam>) {
      for (int mode = 0; mode < 6 && !this->HasFailure(); ++mode) {
        SCOPED_TRACE(std::to_string(event) + ' ' + name + ", mode " + std::to_string(mode));
        Try<TypeParam>(event, deed, mode % 2, mode / 2 == 1, mode / 2 == 2);
      }
    }
  }
}

// The variable is in the collection from the start; its own changes wait for the end of the
// collection's update block. With automatic terms it joins twice: bare, and then whole.
TEST(ReaderHandlers, AreToldInOrderOfWhatIsRead) {
  for (const bool autoTerms : {false, true}) {
    TScene scene;
    scene.Fuzzy.SetAutoTerms(autoTerms);
    std::string log;
    const auto write = [&](const std::string& line) { log += line + '\n'; };
    scene.Parser.SetOnParsing([&](TObject*) { write("parsing"); });
    scene.Parser.SetOnParsed([&](TObject*) { write("parsed"); });
    scene.Parser.SetOnCalcFuzzyFunction([&](auto*, auto& name, auto& list, auto*& set, bool&) {
      write(name.Utf8() + '(' + list->ToString().Utf8() + ")>" + Dump(set));
    });
    scene.Parser.SetOnParseFuzzySet([&](TObject*, TFuzzySet* s) { write("read " + Dump(s)); });
    scene.Parser.SetOnParseFuzzyVariable([&](TObject*, auto* v) { write("read " + Dump(v)); });
    scene.Fuzzy.SetOnVariableAdded([&](TObject*, auto* v) { write("join " + Dump(v)); });
    scene.Fuzzy.SetOnChange([&](TObject*) { write("changed"); });
    const std::string text = "(deffuzzy a (range 0 2) (values (term low \"d\" (tri 0 1 2))))";
    EXPECT_NE(Failure([&] { scene.Parser.Parse(text + "(deffuzzy", nullptr); }), "nothing");
    const std::string low = "low 'd' tri  (0 0)(1 1)(2 0)";
    const std::string defined = "a 0..2 {low 'd' tri * (0 0)(1 1)(2 0)";
    const std::string others = "; medium tri * (0 0)(1 1)(2 0); high * (0 0)(2 1)";
    EXPECT_EQ(log, "parsing\njoin  0..1 {}\ntri(0 1 2)>  \nread " + low + '\n' +
                       (autoTerms ? "join " + defined + "}\n" : "") + "changed\nread " + defined +
                       (autoTerms ? others : "") + "}\n");
  }
}

TEST(ReaderHandlers, MayAddFunctions) {
  TScene scene;
  scene.Fuzzy.SetNumFunctionValues(3);
  TFuzzySet* other = nullptr;
  scene.Parser.SetOnCalcFuzzyFunction(
      [&](TObject*, const TString& name, const auto& list, TFuzzySet*& result, bool& handled) {
        handled = name != "tri" && name != "s";
        if (name == "peak") result->GetValues()->Add(list->First()->GetNumber(), 1);
        if (name == "shared" || name == "none") result->Free();
        if (name == "shared" || name == "none") result = name == "none" ? nullptr : other;
        // Touched or replaced, but left to the parser.
        if (name == "tri") result->GetValues()->Add(0, 0.5);
        if (name == "s") result = result->GetVariable()->GetItems()->Add("s");
        other = result;
      });
  scene.Parser.Parse(
      "(deffuzzy a (range 0 9) (values (term x (peak 3 (a b) \"c\")) (term x2 (shared)) (term y "
      "(tri 1 2 3)) (term n (none)) (term z (s 1 3))))",
      nullptr);
  EXPECT_EQ(Dump(scene.Fuzzy),
            "a 0..9 {x2 * (3 1); y tri * (0 0.5)(1 0)(2 1)(3 0);   ; "
            "z s * (1 0)(2 0.5)(3 1)}");
}

// Each event in turn parses another text; the outer parse goes on where it was.
TYPED_TEST(ReaderHandlers, MayReadOtherTexts) {
  for (std::size_t event = 1; event < 4; ++event) {
    TypeParam scene;
    TKelFuzzyLogicParser& parser = scene.Parser;
    bool nested = false;
    Attach<TypeParam>(event, scene.Fuzzy, parser, [&](auto&&...) {
      if (std::exchange(nested, true)) return;
      const TFuzzyLogicTokenStream* outer = parser.GetStream();
      const TString echo = parser.GetParsedText();
      EXPECT_NE(Failure([&] { parser.ParseFuzzyLogic("(deffuzzy c))", nullptr); }), "nothing");
      EXPECT_TRUE(parser.GetStream() == outer && parser.GetParsedText() == echo);
    });
    parser.Parse("(deffuzzy a (values (term x (tri 0 0.5 1)) (term y ((0 1)))))", nullptr);
    EXPECT_EQ(Dump(scene.Fuzzy), "a 0..1 {x tri * (0 0)(0.5 1)(1 0); y * (0 1)} c 0..1 {}");
  }
}

}  // namespace
}  // namespace fzy
