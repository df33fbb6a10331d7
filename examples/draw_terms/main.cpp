// Draws the terms of each variable of a definition text.

#include <iostream>

#include <CLI/CLI.hpp>

#include "Picture.h"
#include "support/InputFile.h"

namespace {

constexpr int Faulty = 2;  // the exit status for everything that the user can put right

/// Reads a definition text into the component and draws what it defines.
/// @throws InputError
std::string Draw(fzy::TFuzzyLogic& fuzzy, const std::string& file) {
  fzy::TKelFuzzyLogicParser parser;
  parser.SetFuzzyLogic(&fuzzy);
  fuzzy.SetParser(&parser);
  fuzzy.SetAutoTerms(false);  // only what the text defines
  std::vector<const fzy::TFuzzyVariable*> variables;
  parser.SetOnParseFuzzyVariable([&](auto*, const fzy::TFuzzyVariable* variable) {
    if (!(variable->GetMinimum() < variable->GetMaximum()))
      throw fzy::EFzyException("The variable " + variable->GetName() + " has an empty range");
    variables.push_back(variable);
  });
  parser.SetOnWarning([&file](auto*, const fzy::TReadingWarning& warning) {
    std::cerr << support::Located(file, warning.Place, "warning", warning.Message) << '\n'
              << support::Located(file, warning.Place, "advice", warning.Advice) << '\n';
  });
  const std::string text = support::ReadFile(file);
  try {
    fuzzy.SetStrings(fzy::TString(text));
  } catch (const fzy::EException& error) {
    if (!parser.GetFault()) throw;
    throw support::InputError(file, *parser.GetFault(), error.what());
  }
  if (variables.empty()) throw support::InputError(file, 1, "There is no variable");
  return DrawVariables(variables);
}

/// The exit status.
int Start(int argc, char** argv) {
  CLI::App app("Draws the terms of each variable of a definition text.");
  std::string definition;
  std::string picture;
  int points = 7;
  std::vector<std::string> texts;
  app.add_option("definition", definition, "the definition text")->required();
  app.add_option("picture", picture, "the picture to write, as SVG")->required();
  app.add_option("--points", points, "of a pi, s, z or beta")->check(CLI::Range(3, 1000));
  app.add_option("--set", texts, "name=text: what ?name stands for")->allow_extra_args(false);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : Faulty;
  }
  fzy::TFuzzyLogic fuzzy;
  fuzzy.SetNumFunctionValues(points);
  for (const std::string& text : texts) fuzzy.GetVariables()->Add(fzy::TString(text));
  support::WriteFile(picture, Draw(fuzzy, definition));
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Start(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return Faulty;
  }
}
