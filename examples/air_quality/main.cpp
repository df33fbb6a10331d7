// Infers each day's ozone from temperature, wind and sunlight by a few rules in words, and compares
// it with what was measured.

#include <filesystem>
#include <iostream>

#include <CLI/CLI.hpp>

#include "InputFile.h"
#include "Model.h"
#include "Picture.h"
#include "Report.h"

namespace {

using namespace air_quality;

constexpr int Faulty = 2;  // the exit status for everything that the user can put right

constexpr const char* ClassModel = "class";
constexpr const char* InterfaceModel = "interface";
constexpr const char* Additive = "additive";
constexpr const char* MinMax = "min-max";

struct Arguments {
  std::string Definition = "air_quality.fzy";
  std::string Data = "airquality.csv";
  std::string Picture = "air_quality.svg";
  std::string Rewritten;
  std::string Form;
  std::string Model = ClassModel;
  std::string Methods;  ///< empty: those that the model has first
};

void Describe(CLI::App& app, Arguments& arguments) {
  app.description("Infers daily ozone from temperature, wind and sunlight by fuzzy rules.");
  app.add_option("definition", arguments.Definition,
                 "variables and terms, as definition text or stored form")
      ->capture_default_str();
  app.add_option("data", arguments.Data, "daily readings, as comma-separated text")
      ->capture_default_str();
  app.add_option("picture", arguments.Picture, "the picture to write, as SVG")
      ->capture_default_str();
  app.add_option("--write", arguments.Rewritten,
                 "a file to write the definition text to, made anew from the model");
  app.add_option("--store", arguments.Form, "a file to store the model in, as a form");
  app.add_option("--model", arguments.Model, "the object model of the library to use")
      ->check(CLI::IsMember({ClassModel, InterfaceModel}))
      ->capture_default_str();
  app.add_option("--methods", arguments.Methods,
                 "how rules conclude: additive (of the class model alone, and its default) or "
                 "min-max (of both)")
      ->check(CLI::IsMember({Additive, MinMax}));
}

/// @throws CLI::ValidationError for methods that the object model does not have
void CheckMethods(const Arguments& arguments) {
  if (arguments.Model == InterfaceModel && arguments.Methods == Additive)
    throw CLI::ValidationError("--methods additive",
                               "the interface model always infers by min-max");
}

std::unique_ptr<Model> ReadModel(const Arguments& arguments) {
  if (arguments.Model == InterfaceModel) return ReadInterfaceModel(arguments.Definition);
  return ReadClassModel(arguments.Definition,
                        arguments.Methods == MinMax ? Methods::MinMax : Methods::Additive);
}

/// @throws InputError when an output would take the place of a file that is read
void ProtectInput(const Arguments& arguments) {
  for (const std::string& input : {arguments.Definition, arguments.Data}) {
    for (const std::string& output : {arguments.Picture, arguments.Rewritten, arguments.Form}) {
      std::error_code missing;
      if (std::filesystem::equivalent(input, output, missing))
        throw InputError(output, 0, "is read, so the output needs another name");
    }
  }
}

/// Nothing is written before everything is computed: the picture first, so that a fault of its file
/// leaves no output behind either.
void Run(const Arguments& arguments) {
  ProtectInput(arguments);
  const std::unique_ptr<Model> model = ReadModel(arguments);
  const std::vector<Variable> variables = model->Variables();
  const std::vector<Day> days = ReadDays(arguments.Data);
  CheckRanges(variables, days, arguments.Data);

  const std::vector<std::string> sets = model->Sets();
  std::vector<Inference> inferences;
  inferences.reserve(days.size());
  for (const Day& day : days) inferences.push_back(model->Infer(day));
  // Facts and evidence belonged to the variables too. Only what was there before is left, as it
  // was, or the program is wrong.
  if (model->Sets() != sets) throw std::logic_error("the variables do not hold their terms alone");

  const Agreement agreement = Compare(days, inferences);
  const std::string report = ReportText(variables, days, inferences, agreement);
  WriteFile(arguments.Picture,
            DrawPicture(variables, days, inferences, ShortReport(variables, agreement)));
  if (!arguments.Rewritten.empty()) WriteFile(arguments.Rewritten, model->Text());
  if (!arguments.Form.empty()) WriteFile(arguments.Form, model->Form());
  std::cout << report << std::flush;
  if (!std::cout) throw InputError("standard output", 0, "cannot be written");
}

/// The exit status.
int Start(int argc, char** argv) {
  CLI::App app;
  Arguments arguments;
  Describe(app, arguments);
  try {
    app.parse(argc, argv);
    CheckMethods(arguments);
  } catch (const CLI::CallForHelp& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    std::cerr << "air_quality: " << error.what() << " (see --help)\n";
    return Faulty;
  }
  Run(arguments);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Start(argc, argv);
  } catch (const InputError& error) {
    std::cerr << error.what() << '\n';
    return Faulty;
  } catch (const std::exception& error) {
    std::cerr << "air_quality: " << error.what() << '\n';
    return 1;
  }
}
