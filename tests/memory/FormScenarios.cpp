#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "tests/memory/Model.h"
#include "tests/support/Forms.h"

namespace fzy::test {
namespace {

/// A model beside the stored forms of another one, whole and damaged.
template <class Scene>
struct TForms : TModel<Scene> {
  TForms() {
    this->ShowsText = true;
    TModel<Scene> other;
    other.Fuzzy.GetVariables()->SetText("a=text of some length\nb=c");
    other.Fuzzy.SetStrings(
        "(deffuzzy temperature (range 0 10) (values (term cold (z 0 10))))\n"
        "(deffuzzy humidity (range 0 1) (values (term wet (tri 0 0.5 1))))");
    other.Fuzzy.SetTag(99);
    other.Fuzzy.SetThreshold(0.75);
    Form = Stored({&other.Fuzzy, &other.Parser});
  }
  void Load(const std::string& form) { test::Load(form, {&this->Fuzzy, &this->Parser}); }
  std::string Refusal(const std::string& form) {
    return MessageOf([&] { Load(form); });
  }

  std::string Form;
};

TPersistent& Persistent(TFuzzyVariable* variable) { return *variable; }
TPersistent& Persistent(const Ref<IFuzzyVariable>& variable) {
  return dynamic_cast<TPersistent&>(*variable);
}

/// A form in a file of its own.
struct TFiles : TForms<TScene> {
  TFiles() {
    std::ofstream(Path, std::ios::binary) << Form;
    ShowsText = false;
  }
  ~TFiles() {
    std::error_code ignored;
    std::filesystem::remove(Path, ignored);
  }
  std::string Show() {
    std::ostringstream content;
    content << std::ifstream(Path, std::ios::binary).rdbuf();
    const auto folder = std::filesystem::directory_iterator(Path.parent_path());
    const std::string stem = Path.filename().string();
    int files = 0;
    for (const auto& entry : folder) files += entry.path().filename().string().starts_with(stem);
    return TForms::Show() + std::to_string(files) + content.str();
  }

  std::filesystem::path Path = std::filesystem::temp_directory_path() / NewName();

 private:
  static std::string NewName() {
    static std::random_device random;
    return "fuzzylogic_form_" + std::to_string(random()) + '_' + std::to_string(random());
  }
};

template <class Scene>
void AddForms(TScenarios& all, const std::string& model) {
  using F = TForms<Scene>;
  using TLogic = typename Scene::TLogic;
  // clang-format off
  AddCases<F>(all, model + "_form", {
      {"store", [](auto& f) { f.Text = Stored({&f.Fuzzy, &f.Parser}); }},
      {"load", [](auto& f) { f.Load(f.Form); }},
      {"load_into_empty", [](auto& f) { TSceneOf<TLogic> other; other.Fuzzy.SetName(f.Fuzzy.GetName()); other.Parser.SetName(f.Parser.GetName()); test::Load(f.Form, {&other.Fuzzy, &other.Parser}); f.Text = std::to_string(other.Fuzzy.GetTag()); }},
      {"truncated", [](auto& f) { f.Text = f.Refusal(f.Form.substr(0, f.Form.size() * 2 / 3)); }},
      {"unknown_property", [](auto& f) { f.Text = f.Refusal(f.Form.substr(0, f.Form.rfind('}')) + "Shape = 7\n}\n"); }},
      {"no_form", [](auto& f) { f.Text = f.Refusal("a text that is no form"); }},
      {"load_new", [](auto& f) {
         TComponent& owner = f.Parser;
         LoadForm(*std::make_unique<TMemoryStream>(f.Form), owner, {TLogic::Class(), TKelFuzzyLogicParser::Class()});
         f.Text = std::to_string(owner.GetComponentCount());
         while (owner.GetComponentCount() > 0) owner.GetComponent(0)->Free();
       }},
      {"copy", [](auto& f) { TLogic other; f.Fuzzy.Assign(&other); }},
      {"set", [](auto& f) { test::Load(f.Form, {&Engine(f.Mild)}); }, Scene::Counted ? TPromise::Usable : TPromise::Nothing,
       [](auto& f) { Engine(f.Cold).SetDefinition(Long); f.Form = Stored({&Engine(f.Cold)}); Engine(f.Mild).SetDefinition("short"); }},
      {"faulty_set", [](auto& f) { f.Text = MessageOf([&] { test::Load(f.Form, {&Engine(f.Mild)}); }); }, TPromise::Nothing,
       [](auto& f) { f.Form = Stored({&Engine(f.Cold)}); f.Form.insert(f.Form.rfind('}'), "Shape = 7\n"); Engine(f.Mild).SetDefinition(Long); }},
      {"variable", [](auto& f) { test::Load(f.Form, {&Persistent(f.Other)}); }, Scene::Counted ? TPromise::Usable : TPromise::Nothing,
       [](auto& f) { f.Variable->SetUnits(Long); f.Form = Stored({&Persistent(f.Variable)}); f.Other->SetComment(Long); }},
      {"points", [](auto& f) { test::Load(f.Form, {Engine(f.Hot).GetValues()}); }, TPromise::Nothing,
       [](auto& f) { f.Form = Stored({Engine(f.Mild).GetValues()}); }},
      {"lines", [](auto& f) { test::Load(f.Form, {f.Fuzzy.GetVariables()}); }, TPromise::Nothing,
       [](auto& f) { TStrings lines; lines.SetText(Long + u"\n" + Long); f.Form = Stored({&lines}); }},
  });
  // clang-format on
}

}  // namespace

void AddFormScenarios(TScenarios& all) {
  AddForms<TScene>(all, "owned");
  AddForms<TCountedScene>(all, "counted");
  // clang-format off
  AddCases<TFiles>(all, "file", {
      {"store", [](auto& f) { StoreForm(f.Path, {&f.Fuzzy, &f.Parser}); }},
      {"load", [](auto& f) { LoadForm(f.Path, {&f.Fuzzy, &f.Parser}); }},
      {"missing", [](auto& f) { f.Text = MessageOf([&] { LoadForm(std::filesystem::path("no such file anywhere"), {&f.Fuzzy}); }); }},
  });
  // clang-format on
}

}  // namespace fzy::test
