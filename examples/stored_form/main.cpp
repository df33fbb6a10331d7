// Stores a model as a form, and loads it again in another run.

#include <iostream>

#include <CLI/CLI.hpp>

#include "Heating.h"
#include "support/InputFile.h"

namespace {

constexpr int Faulty = 2;  // the exit status for everything that the user can put right

/// What must be the same whether the model was built or loaded: all its settings and terms, and
/// what it answers, to the last digit.
std::string Describe(stored_form::Heating& heating) {
  std::ostringstream text;
  text.precision(17);
  fzy::TFuzzyLogic& fuzzy = heating.Fuzzy;
  text << "threshold " << fuzzy.GetThreshold() << ", " << fuzzy.GetItems()->GetCount()
       << " variables\n";
  for (const fzy::TFuzzyVariable* variable : *fuzzy.GetItems()) {
    text << variable->GetName() << " from " << variable->GetMinimum() << " to "
         << variable->GetMaximum() << " " << variable->GetUnits() << ", threshold "
         << variable->GetThreshold() << '\n';
    for (fzy::TFuzzySet* set : *variable->GetItems()) {
      text << "  " << set->GetName();
      for (const fzy::TFuzzyPoint& point : set->GetValues()->Points())
        text << " (" << point.X << ' ' << point.Y << ')';
      if (!set->GetComment().empty()) text << "  " << set->GetComment();
      text << '\n';
    }
  }
  for (const double outside : {-15.0, 0.0, 7.5, 12.0, 18.0, 25.0})
    text << "at " << outside << " degrees: " << heating.PowerAt(outside) << " percent\n";
  return text.str();
}

void Store(const std::string& file) {
  stored_form::Heating heating;
  heating.Build();
  fzy::StoreForm(std::filesystem::path(file), {&heating.Fuzzy, &heating.Parser});
  std::cout << Describe(heating);
  std::cerr << "stored in " << file << '\n';
}

void Load(const std::string& file) {
  stored_form::Heating heating;
  fzy::LoadForm(std::filesystem::path(file), {&heating.Fuzzy, &heating.Parser});
  fzy::TMemoryStream again;
  fzy::StoreForm(again, {&heating.Fuzzy, &heating.Parser});
  const bool isSame = again.GetBytes() == support::ReadFile(file);
  std::cout << Describe(heating);
  std::cerr << "loaded from " << file << "; stored again it is "
            << (isSame ? "the same to the last byte\n" : "another text for the same model\n");
}

/// The exit status.
int Start(int argc, char** argv) {
  CLI::App app("Stores a small heating controller as a form, and loads it again in another run.");
  std::string file;
  CLI::App* store = app.add_subcommand("store", "build the model and store it");
  CLI::App* load = app.add_subcommand("load", "load the model and show that nothing changed");
  for (CLI::App* command : {store, load}) command->add_option("form", file, "the file")->required();
  app.require_subcommand(1);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : Faulty;
  }
  try {
    store->parsed() ? Store(file) : Load(file);
  } catch (const fzy::EException& error) {
    throw support::InputError(file, 0, error.what());
  }
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
