#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "fuzzylogic/framework/Collection.h"
#include "fuzzylogic/model/FuzzyLogic.h"

namespace fzy::test {

constexpr std::array<std::string_view, 7> EventNames = {
    "Changed",  "VariableAdded", "VariableDeleted", "VariableChanged",
    "SetAdded", "SetDeleted",    "SetChanged"};

/// The name of a set with its variable's: "speed.fast"; "-" stands for no name, "?" for none at
/// all.
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
  using THandler = std::function<void(std::size_t event, TFuzzyVariable* variable, TFuzzySet* set)>;

  explicit TEventRecorder(TFuzzyLogic& fuzzy) : FFuzzy(&fuzzy) { Attach(fuzzy); }

  std::string Take() {
    Flush();
    return std::exchange(FLog, {});
  }

  void Attach(TFuzzyLogic& fuzzy) {
    const auto variables = [this](std::size_t event) {
      return [this, event](TObject* sender, TFuzzyVariable* variable) {
        const bool held = variable->GetFuzzy() == FFuzzy;
        Write(event, sender, NameOf(variable) + (held ? "" : "!"), variable, nullptr);
      };
    };
    const auto sets = [this](std::size_t event) {
      return [this, event](TObject* sender, TFuzzySet* set) {
        Write(event, sender, NameOf(set), set->GetVariable(), set);
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
  THandler Handler;

 private:
  void Write(std::size_t event, TObject* sender, const std::string& name, TFuzzyVariable* variable,
             TFuzzySet* set) {
    std::string line(EventNames[event]);
    if (!name.empty()) line += ' ' + name;
    if (sender != FFuzzy) line += '!';
    if (line != FLast) Flush();
    FLast = line;
    ++FTimes;
    if (Handler) Handler(event, variable, set);
  }

  void Flush() {
    if (FTimes == 0) return;
    if (!FLog.empty()) FLog += "; ";
    FLog += FLast;
    if (FTimes > 1) FLog += " x" + std::to_string(FTimes);
    FTimes = 0;
    FLast.clear();
  }

  TFuzzyLogic* FFuzzy;
  std::string FLog;
  std::string FLast;
  int FTimes = 0;
};

}  // namespace fzy::test
