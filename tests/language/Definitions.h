#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fuzzylogic/interfaces/IFuzzyLogic.h"
#include "fuzzylogic/language/KelFuzzyLogicParser.h"
#include "fuzzylogic/model/FuzzyLogic.h"

namespace fzy::test {

/// A component without automatic terms and a parser, each linked to the other.
template <class FuzzyLogic>
struct TSceneOf {
  TSceneOf() {
    Fuzzy.SetAutoTerms(false);
    Parser.SetFuzzyLogic(&Fuzzy);
    Fuzzy.SetParser(&Parser);
  }

  FuzzyLogic Fuzzy;
  TKelFuzzyLogicParser Parser;
};

// The scenes of both object models, with what tests of both do under the same names.

struct TScene : TSceneOf<TFuzzyLogic> {
  static constexpr bool Counted = false;
  using TLogic = TFuzzyLogic;
  using TVariable = TFuzzyVariable*;
  using TSet = TFuzzySet*;
  using TKept = TOwned<TFuzzyVariable>;  // a variable outside the component

  static bool IsUpdating(TLogic& fuzzy) { return fuzzy.GetItems()->IsUpdating(); }
  static TVariable Add(TLogic& fuzzy, const TString& name) { return fuzzy.GetItems()->Add(name); }
  static TVariable Read(TKelFuzzyLogicParser& parser, const TString& text,
                        const TEncoding* encoding = nullptr) {
    return parser.ParseFuzzyVariable(text, encoding);
  }
  static TSet AddSet(TVariable variable, const TString& name) {
    return variable->GetItems()->Add(name);
  }
  static TOwned<TFuzzySet> NewSet() { return TOwned<TFuzzySet>(TFuzzySet::Create()); }
  static TSet Copy(TSet set) { return set->Clone(); }
  static void Drop(TLogic&, TVariable variable) { variable->Free(); }
  static void Drop(TSet set) { set->Free(); }
  static void TakeOut(TLogic&, TVariable variable) { variable->SetCollection(nullptr); }
  static void MakeTerm(TSet set, TVariable) { set->SetDefined(true); }
  // Events: a function is called, a term and a variable are read, an expression is evaluated.
  static void OnCall(TKelFuzzyLogicParser& p, auto tell) { p.SetOnCalcFuzzyFunction(tell); }
  static void OnSet(TKelFuzzyLogicParser& p, auto tell) { p.SetOnParseFuzzySet(tell); }
  static void OnVariable(TKelFuzzyLogicParser& p, auto tell) { p.SetOnParseFuzzyVariable(tell); }
  static void OnEval(TKelFuzzyLogicParser& p, auto tell) { p.SetOnEvalExpression(tell); }
};

struct TCountedScene : TSceneOf<TIFuzzyLogic> {
  static constexpr bool Counted = true;
  using TLogic = TIFuzzyLogic;
  using TVariable = Ref<IFuzzyVariable>;
  using TSet = Ref<IFuzzySet>;
  using TKept = TVariable;

  static bool IsUpdating(TLogic&) { return false; }
  static TVariable Add(TLogic& fuzzy, const TString& name) {
    const TVariable variable = fuzzy.NewVariable(name);
    if (auto* parser = dynamic_cast<TKelFuzzyLogicParser*>(fuzzy.GetParser()))
      variable->SetParser(parser->GetInterface());
    fuzzy.GetItems()->Add(variable);
    return variable;
  }
  static TVariable Read(TKelFuzzyLogicParser& parser, const TString& text,
                        const TEncoding* encoding = nullptr) {
    return parser.ParseFuzzyVariableIntf(text, encoding);
  }
  static TSet AddSet(const TVariable& variable, const TString& name) { return variable->Add(name); }
  static Ref<TIFuzzySet> NewSet() { return TIFuzzySet::Create(); }
  static TSet Copy(const TSet& set) { return Query<IFuzzySet>(set->Clone().Get()); }
  static void Drop(TLogic& fuzzy, const TVariable& variable) { fuzzy.GetItems()->Remove(variable); }
  static void Drop(const TSet& set) { set->GetVariable()->Remove(set); }
  static void TakeOut(TLogic& fuzzy, const TVariable& variable) { Drop(fuzzy, variable); }
  static void MakeTerm(const TSet& set, const TVariable& variable) {
    set->SetDefined(true);
    variable->Add(set);
  }
  static void OnCall(TKelFuzzyLogicParser& p, auto tell) { p.SetOnCalcFuzzyIntfFunction(tell); }
  static void OnSet(TKelFuzzyLogicParser& p, auto tell) { p.SetOnParseFuzzySetIntf(tell); }
  static void OnVariable(TKelFuzzyLogicParser& p, auto tell) {
    p.SetOnParseFuzzyVariableIntf(tell);
  }
  static void OnEval(TKelFuzzyLogicParser& p, auto tell) { p.SetOnEvalExpressionIntf(tell); }
};

using TBothModels = testing::Types<TScene, TCountedScene>;

/// The variables of a component; those of a table, which has an order of its own, by name.
inline std::vector<TFuzzyVariable*> Variables(TFuzzyLogic& fuzzy) {
  std::vector<TFuzzyVariable*> variables;
  for (TFuzzyVariable* variable : *fuzzy.GetItems()) variables.push_back(variable);
  return variables;
}
inline std::vector<Ref<IFuzzyVariable>> Variables(TIFuzzyLogic& fuzzy) {
  std::vector<Ref<IFuzzyVariable>> variables;
  for (const auto& variable : fuzzy.GetItems()->GetValues()) variables.push_back(variable);
  std::ranges::sort(variables, {}, [](const auto& variable) { return variable->GetName().Utf8(); });
  return variables;
}

/// The sets of a variable, in the order in which they were entered.
inline std::vector<TFuzzySet*> Sets(const TFuzzyVariable* variable) {
  std::vector<TFuzzySet*> sets;
  for (TFuzzySet* set : *variable->GetItems()) sets.push_back(set);
  return sets;
}
inline std::vector<Ref<IFuzzySet>> Sets(const Ref<IFuzzyVariable>& variable) {
  std::vector<Ref<IFuzzySet>> sets;
  for (int i = 0; i < variable->GetCount(); ++i) sets.push_back(variable->GetFuzzySet(i));
  std::ranges::sort(sets, {}, [](const auto& set) { return set->GetIndex(); });
  return sets;
}

/// The set of the engine that a set of either model is.
inline TFuzzySet& Engine(const TFuzzySet* set) { return *const_cast<TFuzzySet*>(set); }
inline TFuzzySet& Engine(const Ref<IFuzzySet>& set) { return dynamic_cast<TFuzzySet&>(*set); }

inline std::string Number(double value) { return FormatShortest(value).Utf8(); }

/// A set as "name 'comment' tri *=expression (0 0)(1 1)"; the star is for a defined one, and what
/// is empty or user-defined is left out, and an expression that is the name.
template <class Set>
requires requires(Set set) { set->GetSetType(); }
std::string Dump(const Set& pointer) {
  static constexpr const char* types[] = {"", " tri", " z", " pi", " beta", " s"};
  const TFuzzySet& set = Engine(pointer);
  std::string text = set.GetName().Utf8();
  if (!set.GetComment().empty()) text += " '" + set.GetComment().Utf8() + '\'';
  text += std::string(types[static_cast<int>(set.GetSetType())]) + (set.GetDefined() ? " *" : " ");
  const TString& expression = set.GetExpression();
  if (!expression.empty() && expression != set.GetName()) text += '=' + expression.Utf8();
  text += ' ';
  for (const TFuzzyPoint& point : set.GetValues()->Points())
    text += '(' + Number(point.X) + ' ' + Number(point.Y) + ')';
  return text;
}

/// A variable as "name 'comment' 0..1 units {set; set}".
template <class Variable>
requires requires(Variable variable) { variable->GetUnits(); }
std::string Dump(const Variable& variable) {
  std::string text = variable->GetName().Utf8();
  if (!variable->GetComment().empty()) text += " '" + variable->GetComment().Utf8() + '\'';
  text += ' ' + Number(variable->GetMinimum()) + ".." + Number(variable->GetMaximum());
  if (!variable->GetUnits().empty()) text += ' ' + variable->GetUnits().Utf8();
  std::string sets;
  for (const auto& set : Sets(variable)) sets += (sets.empty() ? "" : "; ") + Dump(set);
  return text + " {" + sets + '}';
}

template <class FuzzyLogic>
requires std::is_base_of_v<TCustomFuzzyLogic, FuzzyLogic> std::string Dump(FuzzyLogic& fuzzy) {
  std::string text;
  for (const auto& variable : Variables(fuzzy)) text += (text.empty() ? "" : " ") + Dump(variable);
  return text;
}

/// What an action raises: an error of reading as "line n: message", another one as its message.
template <class Action>
std::string Failure(Action&& action) {
  try {
    action();
  } catch (const EFzyParseException& error) {
    return "line " + std::to_string(error.GetLineNumber()) + ": " + error.what();
  } catch (const std::exception& error) {
    return error.what();
  }
  return "nothing";
}

/// The failure of a reading step.
inline std::string ParseFailure(const std::string& message, const std::string& step, int line,
                                const std::string& echo) {
  const std::string number = std::to_string(line);
  return "line " + number + ": Parsing Error, " + message + " in " + step + " at line " + number +
         ": \"" + echo + '"';
}

/// Holds cases kept in cases/`name`.txt against what `action` makes of them: a line of input, and a
/// line with the result behind "=> ", after which "=i> " may give that of the counted model where
/// it is another. What stands in braces before "->" is of the owned model alone. In each "\\n" and
/// "\\r" stand for line ends; blanks at the end do not count. Lines that start with "# " are
/// remarks.
template <class Scene, class Action>
void CheckCases(const std::string& name, Action action) {
  const auto folder = std::filesystem::path(__FILE__).parent_path();
  std::ifstream file(folder / "cases" / (name + ".txt"));
  int count = 0;
  std::string input;
  const auto replace = [](std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
      text.replace(at, from.size(), to);
    return text;
  };
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with('=')) {
      if (!line.starts_with("# ")) input = line;
      continue;
    }
    const bool counted = line.starts_with("=i>");
    if (Scene::Counted ? !counted && file.peek() == '=' : counted) continue;
    if (const std::size_t end = line.find("} ->"); Scene::Counted && end != std::string::npos)
      line.erase(line.find(" {"), end + 1 - line.find(" {"));
    ++count;
    const std::string text = replace(replace(input, "\\n", "\n"), "\\r", "\r");
    std::string result =
        (counted ? "=i> " : "=> ") + replace(replace(action(text), "\n", "\\n"), "\r", "\\r");
    result.erase(result.find_last_not_of(' ') + 1);
    EXPECT_EQ(result, line) << input;
  }
  EXPECT_GT(count, 0) << name;
}

}  // namespace fzy::test
