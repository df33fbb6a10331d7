#pragma once

#include <array>
#include <functional>
#include <sstream>
#include <string>
#include <string_view>

#include "fuzzylogic/framework/Collection.h"
#include "fuzzylogic/language/KelFuzzyLogicParser.h"
#include "fuzzylogic/model/FuzzyLogic.h"
#include "tests/support/Refusal.h"

// A small model, a recorder of its events, and a parser to go with it.

namespace fzy::test {

constexpr std::array<std::string_view, 7> EventNames = {
    "Changed",  "VariableAdded", "VariableDeleted", "VariableChanged",
    "SetAdded", "SetDeleted",    "SetChanged"};

/// A set's name with its variable's: "speed.fast"; "-" for no name, "?" for no variable.
inline std::string NameOf(const TFuzzyVariable* variable) {
  if (!variable) return "?";
  return variable->GetName().empty() ? "-" : variable->GetName().Utf8();
}
inline std::string NameOf(const TFuzzySet* set) {
  return NameOf(set->GetVariable()) + '.' + (set->GetName().empty() ? "-" : set->GetName().Utf8());
}

/// Writes down every event of a component, as "SetAdded speed.fast; VariableChanged speed"; the
/// same event several times in a row as "SetChanged speed.fast x3". A sender other than the
/// component and a variable that the component does not hold at that moment are marked with "!".
class TEventRecorder {
 public:
  explicit TEventRecorder(TFuzzyLogic& fuzzy) : FFuzzy(&fuzzy) {
    const auto variables = [this](std::size_t event) {
      return [this, event](TObject* sender, TFuzzyVariable* variable) {
        const bool held = variable->GetFuzzy() == FFuzzy;
        Write(event, sender, ' ' + NameOf(variable) + (held ? "" : "!"), variable, nullptr);
      };
    };
    const auto sets = [this](std::size_t event) {
      return [this, event](TObject* sender, TFuzzySet* set) {
        Write(event, sender, ' ' + NameOf(set), set->GetVariable(), set);
      };
    };
    fuzzy.SetOnChange([this](TObject* sender) { Write(0, sender, "", nullptr, nullptr); });
    fuzzy.SetOnVariableAdded(variables(1));
    fuzzy.SetOnVariableDeleted(variables(2));
    fuzzy.SetOnVariableChange(variables(3));
    fuzzy.SetOnFuzzySetAdded(sets(4));
    fuzzy.SetOnFuzzySetDeleted(sets(5));
    fuzzy.SetOnFuzzySetChange(sets(6));
  }

  std::string Take() {
    Flush();
    return std::exchange(FLog, {});
  }

  static void Detach(TFuzzyLogic& fuzzy) {
    fuzzy.SetOnChange(nullptr);
    fuzzy.SetOnVariableAdded(nullptr);
    fuzzy.SetOnVariableDeleted(nullptr);
    fuzzy.SetOnVariableChange(nullptr);
    fuzzy.SetOnFuzzySetAdded(nullptr);
    fuzzy.SetOnFuzzySetDeleted(nullptr);
    fuzzy.SetOnFuzzySetChange(nullptr);
  }

  /// Called after each line was written; may do anything.
  std::function<void(std::size_t event, TFuzzyVariable* variable, TFuzzySet* set)> Handler;

 private:
  void Write(std::size_t event, TObject* sender, const std::string& name, TFuzzyVariable* variable,
             TFuzzySet* set) {
    const std::string line = std::string(EventNames[event]) + name + (sender != FFuzzy ? "!" : "");
    if (line != FLast) Flush();
    FLast = line;
    ++FTimes;
    if (Handler) Handler(event, variable, set);
  }

  void Flush() {
    if (FTimes == 0) return;
    FLog += (FLog.empty() ? "" : "; ") + FLast;
    if (FTimes > 1) FLog += " x" + std::to_string(FTimes);
    FTimes = 0;
    FLast.clear();
  }

  TFuzzyLogic* FFuzzy;
  std::string FLog, FLast;
  int FTimes = 0;
};

/// A component with one variable "t" from 0 to 10 of the sets "cold", falling to 0 at 5, and "hot",
/// rising from there, and a second variable "u" of one set "x" without points. Only what happens
/// afterwards is recorded.
struct TScene {
  TScene() {
    Fuzzy.SetAutoTerms(false);
    T = Fuzzy.GetItems()->Add("t");
    T->SetMaximum(10);
    Cold = T->GetItems()->Add("cold");
    Cold->GetValues()->Add(0, 1);
    Cold->GetValues()->Add(5, 0);
    Hot = T->GetItems()->Add("hot");
    Hot->GetValues()->Add(5, 0);
    Hot->GetValues()->Add(10, 1);
    U = Fuzzy.GetItems()->Add("u");
    X = U->GetItems()->Add("x");
    Recorder.Take();
  }

  TFuzzyLogic Fuzzy;
  TEventRecorder Recorder{Fuzzy};
  TFuzzyVariable *T, *U;
  TFuzzySet *Cold, *Hot, *X;
};

/// A parser whose language is one line a variable, "speed slow fast", with the link of the real one
/// to the component that it parses into.
class TTestParser final : public TKelFuzzyLogicParser {
 public:
  using TKelFuzzyLogicParser::PrettyPrint;

  void Parse(const TString& text, const TEncoding* encoding) override {
    const TPin self(this);
    Texts += text.Utf8() + (encoding ? " encoded;" : ";");
    if (OnParse) OnParse();
    std::istringstream lines(text.Utf8());
    for (std::string line; GetFuzzyLogic() && std::getline(lines, line);) {
      std::istringstream words(line);
      std::string word;
      words >> word;
      auto* fuzzy = static_cast<TFuzzyLogic*>(GetFuzzyLogic());
      TFuzzyVariable* variable = fuzzy->GetItems()->Add(word);
      const TPin pinned(variable);
      while (variable && !variable->IsFreed() && words >> word) variable->GetItems()->Add(word);
    }
  }

  TString PrettyPrint(const TFuzzySet* set, bool asDefinition) override {
    return asDefinition ? set->GetName() : "<" + set->GetName() + ">";
  }

  TString PrettyPrint(const TFuzzyVariable* variable) override {
    if (OnPrint) OnPrint();
    TString text = variable->GetName();
    for (TFuzzySet* set : *variable->GetItems()) text = text + " " + set->GetName();
    return text;
  }

  std::string Texts;  ///< what was parsed, each closed by a semicolon
  std::function<void()> OnParse, OnPrint;
};

}  // namespace fzy::test
