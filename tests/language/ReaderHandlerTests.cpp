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

constexpr const char* Text =
    "(deffuzzy a (range 0 9) (values (term x (tri 1 2 3)) (term y ((4 1)))))(deffuzzy b (values "
    "(term z (s 0 1))))";

/// What a handler sees of the moment; the deeds below work on it.
struct TMoment {
  TFuzzyLogic*& Fuzzy;
  TKelFuzzyLogicParser*& Parser;
  TFuzzyVariable* Variable;
  TFuzzySet* Set;
  std::vector<TOwned<TFuzzyVariable>>& Taken;  // out of the component: nobody else frees them
};
using THandler = std::function<void(const TMoment&)>;

struct TEvent {
  const char* Name;
  void (*Attach)(TFuzzyLogic& fuzzy, TKelFuzzyLogicParser& parser,
                 std::function<void(TFuzzyVariable*, TFuzzySet*)> tell);
};

const TEvent Events[] = {
    {"Parsing",
     [](TFuzzyLogic&, TKelFuzzyLogicParser& parser, auto tell) {
       parser.SetOnParsing([tell](TObject*) { tell(nullptr, nullptr); });
     }},
    {"CalcFunction",
     [](TFuzzyLogic&, TKelFuzzyLogicParser& parser, auto tell) {
       parser.SetOnCalcFuzzyFunction([tell](TObject*, const TString&, const auto&,
                                            TFuzzySet*& result,
                                            bool&) { tell(result->GetVariable(), result); });
     }},
    {"ParseSet",
     [](TFuzzyLogic&, TKelFuzzyLogicParser& parser, auto tell) {
       parser.SetOnParseFuzzySet(
           [tell](TObject*, TFuzzySet* set) { tell(set->GetVariable(), set); });
     }},
    {"ParseVariable",
     [](TFuzzyLogic&, TKelFuzzyLogicParser& parser, auto tell) {
       parser.SetOnParseFuzzyVariable(
           [tell](TObject*, TFuzzyVariable* variable) { tell(variable, nullptr); });
     }},
    {"Parsed", [](TFuzzyLogic&, TKelFuzzyLogicParser& parser,
                  auto tell) { parser.SetOnParsed([tell](TObject*) { tell(nullptr, nullptr); }); }},
    // The component's own events while the reader builds.
    {"Change", [](TFuzzyLogic& fuzzy, TKelFuzzyLogicParser&,
                  auto tell) { fuzzy.SetOnChange([tell](TObject*) { tell(nullptr, nullptr); }); }},
    {"VariableAdded",
     [](TFuzzyLogic& fuzzy, TKelFuzzyLogicParser&, auto tell) {
       fuzzy.SetOnVariableAdded(
           [tell](TObject*, TFuzzyVariable* variable) { tell(variable, nullptr); });
     }},
    {"VariableDeleted",
     [](TFuzzyLogic& fuzzy, TKelFuzzyLogicParser&, auto tell) {
       fuzzy.SetOnVariableDeleted(
           [tell](TObject*, TFuzzyVariable* variable) { tell(variable, nullptr); });
     }},
    {"VariableChange",
     [](TFuzzyLogic& fuzzy, TKelFuzzyLogicParser&, auto tell) {
       fuzzy.SetOnVariableChange(
           [tell](TObject*, TFuzzyVariable* variable) { tell(variable, nullptr); });
     }},
    {"SetAdded",
     [](TFuzzyLogic& fuzzy, TKelFuzzyLogicParser&, auto tell) {
       fuzzy.SetOnFuzzySetAdded(
           [tell](TObject*, TFuzzySet* set) { tell(set->GetVariable(), set); });
     }},
    {"SetDeleted",
     [](TFuzzyLogic& fuzzy, TKelFuzzyLogicParser&, auto tell) {
       fuzzy.SetOnFuzzySetDeleted(
           [tell](TObject*, TFuzzySet* set) { tell(set->GetVariable(), set); });
     }},
    {"SetChange", [](TFuzzyLogic& fuzzy, TKelFuzzyLogicParser&, auto tell) {
       fuzzy.SetOnFuzzySetChange(
           [tell](TObject*, TFuzzySet* set) { tell(set->GetVariable(), set); });
     }}};

const std::pair<const char*, THandler> Deeds[] = {
    {"throws", [](const TMoment&) { throw std::runtime_error("refused"); }},
    {"frees the set",
     [](const TMoment& m) {
       if (m.Set) m.Set->Free();
     }},
    {"frees the sets",
     [](const TMoment& m) {
       if (m.Variable) m.Variable->GetItems()->Clear();
     }},
    {"frees the variable",
     [](const TMoment& m) {
       if (m.Variable) m.Variable->Free();
     }},
    {"frees the model", [](const TMoment& m) { m.Fuzzy->GetItems()->Clear(); }},
    {"takes the variable out",
     [](const TMoment& m) {
       if (!m.Variable) return;
       m.Taken.emplace_back(m.Variable);
       m.Variable->SetCollection(nullptr);
     }},
    {"frees the component", [](const TMoment& m) { std::exchange(m.Fuzzy, nullptr)->Free(); }},
    {"frees the parser", [](const TMoment& m) { std::exchange(m.Parser, nullptr)->Free(); }},
    {"frees both",
     [](const TMoment& m) {
       std::exchange(m.Parser, nullptr)->Free();
       std::exchange(m.Fuzzy, nullptr)->Free();
     }},
    {"unlinks the component", [](const TMoment& m) { m.Parser->SetFuzzyLogic(nullptr); }},
    {"parses", [](const TMoment& m) { m.Parser->Parse("(deffuzzy n (units u))", nullptr); }},
    {"parses in vain", [](const TMoment& m) { m.Parser->Parse("(deffuzzy n \"", nullptr); }},
    {"assigns the text", [](const TMoment& m) { m.Fuzzy->SetStrings("(deffuzzy n)"); }},
    {"reads a term",
     [](const TMoment& m) {
       if (m.Variable) m.Parser->ParseFuzzySet(m.Variable, "(term n (z 0 1))", nullptr);
     }},
    {"switches automatic terms",
     [](const TMoment& m) { m.Fuzzy->SetAutoTerms(!m.Fuzzy->GetAutoTerms()); }},
    {"replaces all handlers", [](const TMoment& m) {
       for (const TEvent& event : Events)
         event.Attach(*m.Fuzzy, *m.Parser, [](TFuzzyVariable*, TFuzzySet*) {});
     }}};

/// Runs one deed at the first, or at every, occurrence of one event.
void Try(const TEvent& event, const THandler& deed, bool autoTerms, bool once, bool oneVariable) {
  auto* fuzzy = new TFuzzyLogic;
  auto* parser = new TKelFuzzyLogicParser;
  fuzzy->SetAutoTerms(autoTerms);
  fuzzy->SetNumFunctionValues(3);
  fuzzy->SetParser(parser);
  parser->SetFuzzyLogic(fuzzy);
  TFuzzyVariable* const old = fuzzy->GetItems()->Add("old");
  std::vector<TOwned<TFuzzyVariable>> taken;
  bool running = false;
  int times = 0;
  event.Attach(*fuzzy, *parser, [&, deed](TFuzzyVariable* variable, TFuzzySet* set) {
    if (running || !fuzzy || !parser || (once && times > 0) || variable == old) return;
    running = true;
    ++times;
    TFirstException first;
    first.Run([&] { deed({fuzzy, parser, variable, set, taken}); });
    running = false;
    first.Rethrow();
  });
  const std::string failure = Failure([&] {
    if (oneVariable) {
      if (TFuzzyVariable* read = parser->ParseFuzzyVariable(Text, nullptr)) Dump(read);
    } else {
      parser->Parse(Text, nullptr);
    }
  });
  EXPECT_EQ(failure.find("std::"), std::string::npos) << failure;
  EXPECT_TRUE(!parser || !parser->GetStream());
  EXPECT_TRUE(!fuzzy || !fuzzy->GetItems()->IsUpdating());
  if (fuzzy && parser) {
    for (const TEvent& each : Events) each.Attach(*fuzzy, *parser, [](auto*, auto*) {});
    int changes = 0;
    fuzzy->SetOnChange([&](TObject*) { ++changes; });
    parser->SetFuzzyLogic(fuzzy);
    fuzzy->SetAutoTerms(false);
    fuzzy->SetStrings(Text);
    EXPECT_EQ(
        Dump(*fuzzy),
        "a 0..9 {x tri *=x (1 0)(2 1)(3 0); y *=y (4 1)} b 0..1 {z s *=z (0 0)(0.5 0.5)(1 1)}");
    EXPECT_GT(changes, 0);
  }
  taken.clear();
  if (parser) parser->Free();
  if (fuzzy) fuzzy->Free();
}

TEST(ReaderHandlers, MayDoAnything) {
  for (const TEvent& event : Events) {
    for (const auto& [name, deed] : Deeds) {
      for (int mode = 0; mode < 8; ++mode) {
        SCOPED_TRACE(std::string(event.Name) + " " + name + ", mode " + std::to_string(mode));
        Try(event, deed, mode & 1, mode & 2, mode & 4);
        if (testing::Test::HasFailure()) return;
      }
    }
  }
}

}  // namespace
}  // namespace fzy
