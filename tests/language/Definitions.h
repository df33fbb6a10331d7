#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "fuzzylogic/language/KelFuzzyLogicParser.h"
#include "fuzzylogic/model/FuzzyLogic.h"

namespace fzy::test {

/// A component without automatic terms and a parser, each linked to the other.
struct TScene {
  TScene() {
    Fuzzy.SetAutoTerms(false);
    Parser.SetFuzzyLogic(&Fuzzy);
    Fuzzy.SetParser(&Parser);
  }

  TFuzzyLogic Fuzzy;
  TKelFuzzyLogicParser Parser;
};

inline std::string Number(double value) { return FormatShortest(value).Utf8(); }

/// A set as "name 'comment' tri *=expression (0 0)(1 1)"; the star is for a defined one, and what
/// is empty or user-defined is left out.
inline std::string Dump(const TFuzzySet* set) {
  static constexpr const char* types[] = {"", " tri", " z", " pi", " beta", " s"};
  std::string text = set->GetName().Utf8();
  if (!set->GetComment().empty()) text += " '" + set->GetComment().Utf8() + '\'';
  text +=
      std::string(types[static_cast<int>(set->GetSetType())]) + (set->GetDefined() ? " *" : " ");
  if (!set->GetExpression().empty()) text += '=' + set->GetExpression().Utf8();
  text += ' ';
  for (const TFuzzyPoint& point : set->GetValues()->Points())
    text += '(' + Number(point.X) + ' ' + Number(point.Y) + ')';
  return text;
}

/// A variable as "name 'comment' 0..1 units {set; set}".
inline std::string Dump(const TFuzzyVariable* variable) {
  std::string text = variable->GetName().Utf8();
  if (!variable->GetComment().empty()) text += " '" + variable->GetComment().Utf8() + '\'';
  text += ' ' + Number(variable->GetMinimum()) + ".." + Number(variable->GetMaximum());
  if (!variable->GetUnits().empty()) text += ' ' + variable->GetUnits().Utf8();
  std::string sets;
  for (const TFuzzySet* set : *variable->GetItems()) sets += (sets.empty() ? "" : "; ") + Dump(set);
  return text + " {" + sets + '}';
}

inline std::string Dump(TFuzzyLogic& fuzzy) {
  std::string text;
  for (const TFuzzyVariable* variable : *fuzzy.GetItems())
    text += (text.empty() ? "" : " ") + Dump(variable);
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
/// line with the result behind "=> ". In both "\\n" and "\\r" stand for line ends; blanks at the
/// end do not count. Lines that start with "# " are remarks.
template <class Action>
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
    if (!line.starts_with("=>")) {
      if (!line.starts_with("# ")) input = line;
      continue;
    }
    ++count;
    const std::string text = replace(replace(input, "\\n", "\n"), "\\r", "\r");
    std::string result = "=> " + replace(replace(action(text), "\n", "\\n"), "\r", "\\r");
    result.erase(result.find_last_not_of(' ') + 1);
    EXPECT_EQ(result, line) << input;
    input.clear();
  }
  EXPECT_GT(count, 0) << name;
}

}  // namespace fzy::test
