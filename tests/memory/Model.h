#pragma once

#include <array>
#include <regex>

#include "tests/language/Definitions.h"
#include "tests/memory/Scenario.h"
#include "tests/support/Refusal.h"

// Models of both kinds with all that can be seen of them, for scenarios of both.

namespace fzy::test {

inline const TString Long = "a text that has memory of its own";

/// Makes a handler too large to be kept without memory.
struct TLoad {
  std::array<char, 64> Bytes{};
};

inline std::string Tell(const TFuzzySet& set) {
  std::string text = set.GetName().Utf8() + "'" + set.GetComment().Utf8() + "'" +
                     std::to_string(static_cast<int>(set.GetSetType())) +
                     (set.GetDefined() ? "*" : " ") + set.GetExpression().Utf8() + '/' +
                     set.GetDefinition().Utf8() + '/' + Number(set.GetInflectionPoint()) + ' ' +
                     std::to_string(set.GetTag());
  for (const TFuzzyPoint& point : set.GetValues()->Points())
    text += '(' + Number(point.X) + ' ' + Number(point.Y) + ')';
  return text + (set.GetValues()->IsUpdating() ? "updating" : "");
}

/// A name that is made for a set without one has another number each time.
inline std::string WithoutNumbers(const std::string& text) {
  static const std::regex made("FuzzySet[0-9]+");
  return std::regex_replace(text, made, "FuzzySet#");
}

/// A component with its parser and the variables "temperature" and "another quantity".
template <class Scene>
struct TModel : Scene {
  using TVariable = typename Scene::TVariable;
  using TSet = typename Scene::TSet;

  TModel() {
    Variable = Scene::Add(this->Fuzzy, "temperature");
    Variable->SetMaximum(40);
    Other = Scene::Add(this->Fuzzy, "another quantity");
    Cold = AddTerm(Variable, "cold and wet", {{0, 1}, {10, 1}, {20, 0}});
    Mild = AddTerm(Variable, "mild and dry", {{10, 0}, {20, 1}, {30, 0}});
    Hot = AddTerm(Other, "hot and humid", {{0.25, 0}, {0.75, 0.5}});
    Mild->SetComment("a comment with memory of its own");
    this->Fuzzy.SetName("a component with a name");
    this->Parser.SetName("a parser with a name");
  }
  static TSet AddTerm(const TVariable& variable, const TString& name,
                      std::initializer_list<TFuzzyPoint> points) {
    const TSet set = Scene::AddSet(variable, name);
    for (const auto& [x, y] : points) Engine(set).GetValues()->Add(x, y);
    return set;
  }

  std::string Show() {
    std::string text = this->Fuzzy.GetName().Utf8() + ' ' + Number(this->Fuzzy.GetThreshold()) +
                       ' ' + std::to_string(this->Fuzzy.GetTag()) +
                       (this->Fuzzy.GetParser() ? " parser" : "") +
                       (this->Parser.GetFuzzyLogic() ? " fuzzy\n" : "\n");
    for (const auto& variable : Variables(this->Fuzzy)) text += Tell(variable);
    if constexpr (Scene::Counted) {
      if (Result) text += "result " + test::Tell(Engine(Result));
    }
    if (ShowsText) text += this->Fuzzy.GetStrings()->GetText().Utf8();
    return WithoutNumbers(text + this->Fuzzy.GetVariables()->GetText().Utf8() + Text);
  }
  std::string Tell(const TVariable& variable) {
    std::string text = variable->GetName().Utf8() + "'" + variable->GetComment().Utf8() + "'" +
                       variable->GetUnits().Utf8() + ' ' + Number(variable->GetMinimum()) + ".." +
                       Number(variable->GetMaximum()) + ' ' + Number(variable->GetThreshold());
    if constexpr (!Scene::Counted) {
      if (!OnlyTerms) text += "@" + std::to_string(variable->GetItemIndex());
    }
    for (const auto& set : Sets(variable)) {
      if (OnlyTerms && !set->GetDefined()) continue;
      text += "\n  " + test::Tell(Engine(set));
      if constexpr (Scene::Counted) {
        if (variable->ContainsFuzzySet(set->GetName()) != set) text += "!";
      } else {
        const int found = variable->GetItems()->IndexOf(set->GetName());
        if (found < 0) text += "!";
      }
    }
    return text + '\n';
  }

  TVariable Variable{}, Other{};
  TSet Cold{}, Mild{}, Hot{}, Result{};
  std::string Text;
  bool ShowsText = false;
  bool OnlyTerms = false;  // a text shows none of the sets that were made on the way
};

/// The same, with handlers of everything that is told.
template <class Scene>
struct TToldModel : TModel<Scene> {
  TToldModel() {
    auto& fuzzy = this->Fuzzy;
    const auto handler = [this, load = TLoad()](auto&&...) {
      if (Act) Act();
    };
    fuzzy.SetOnChange(handler);
    fuzzy.SetOnFuzzySetAdded(handler);
    fuzzy.SetOnFuzzySetDeleted(handler);
    fuzzy.SetOnFuzzySetChange(handler);
    fuzzy.SetOnVariableAdded(handler);
    fuzzy.SetOnVariableDeleted(handler);
    fuzzy.SetOnVariableChange(handler);
    auto& parser = this->Parser;
    parser.SetOnParsing(handler);
    parser.SetOnParsed(handler);
    Scene::OnCall(parser, handler);
    Scene::OnSet(parser, handler);
    Scene::OnVariable(parser, handler);
    Scene::OnEval(parser, handler);
  }
  ~TToldModel() { Act = nullptr; }
  std::function<void()> Act;
};

}  // namespace fzy::test
