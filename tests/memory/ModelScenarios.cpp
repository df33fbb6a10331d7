#include <new>

#include "fuzzylogic/interfaces/FuzzyVariableStrings.h"
#include "tests/memory/Model.h"

namespace fzy::test {
namespace {

constexpr TPromise Nothing = TPromise::Nothing;
constexpr TPromise Usable = TPromise::Usable;

const TString Definition =
    "(deffuzzy temperature \"outside the house\" (range -20 40) (units \"degrees Celsius\")\n"
    "  (values (term cold (z -10 10)) (term mild (tri 0 15 25))\n"
    "          (term fine mild or very cold)))\n"
    "(deffuzzy tip (range 0 1) (values (term generous ((0.5 0) (1 1)))))\n";

/// Of an operation of several steps: the counted model does not take back those that were told of.
template <class F>
constexpr TPromise Several = F::Counted ? TPromise::Usable : TPromise::Nothing;

/// What is told of is what both models tell alike; each runs silent and with handlers.
template <class F>
void AddChanges(TScenarios& all, const std::string& group) {
  // clang-format off
  AddCases<F>(all, group, {
      {"add", [](auto& f) { F::Add(f.Fuzzy, Long); }, Several<F>},
      {"add_set", [](auto& f) { F::AddSet(f.Variable, Long); }},
      {"name", [](auto& f) { f.Variable->SetName(Long); }},
      {"comment", [](auto& f) { f.Variable->SetComment(Long); }},
      {"units", [](auto& f) { f.Variable->SetUnits(Long); }},
      {"minimum", [](auto& f) { f.Variable->SetMinimum(50); }},
      {"maximum", [](auto& f) { f.Variable->SetMaximum(-50); }},
      {"threshold", [](auto& f) { f.Fuzzy.SetThreshold(0.5); }},
      {"own_threshold", [](auto& f) { f.Variable->SetThreshold(0.5); }},
      {"drop", [](auto& f) { F::Drop(f.Fuzzy, f.Variable); }},
      {"drop_set", [](auto& f) { F::Drop(f.Cold); }},
      {"rename_set", [](auto& f) { f.Cold->SetName(Long); }},
      {"point", [](auto& f) { Engine(f.Cold).GetValues()->Add(5, 0.5); }},
      {"coordinate", [](auto& f) { Engine(f.Cold).GetValues()->GetItem(1)->SetY(0.5); }},
      {"shape", [](auto& f) { f.Cold->SetSetType(fstTriangle); }},
      {"hedge", [](auto& f) { f.Cold->Hedge(fhVery); }},
      {"unite", [](auto& f) { f.Result = f.Cold->Union(f.Mild); }},
      {"clear", [](auto& f) { f.Fuzzy.GetItems()->Clear(); }},
      {"free_items", [](auto& f) { f.Fuzzy.GetItems()->Clear(); F::Add(f.Fuzzy, Long); }, Usable},
      {"copy_variable", [](auto& f) { f.Other->Assign(&*f.Variable); }, Several<F>},
      {"copy_items", [](auto& f) {
         typename F::TLogic other;
         F::Add(other, "yet another quantity");
         f.Fuzzy.SetItems(other.GetItems());
       }, Usable},
      {"copy_component", [](auto& f) { TSceneOf<typename F::TLogic> other; other.Fuzzy.Assign(&f.Fuzzy); f.Text = Number(other.Fuzzy.GetThreshold()); }},
      {"read", [](auto& f) { f.Fuzzy.SetStrings(Definition); }, TPromise::Rebuilt},
      {"read_again", [](auto& f) { f.Fuzzy.Parse(); }, TPromise::Rebuilt, [](auto& f) { f.Fuzzy.SetStrings(Definition); }},
      {"infer", [](auto& f) { f.Result = f.Other->AssertRule(0.5, f.Hot, nullptr); }},
      {"infer_more", [](auto& f) { f.Result = f.Other->AssertRule(0.5, f.Hot, f.Hot); }},
      {"infer_one", [](auto& f) { f.Result = f.Other->AssertRule(f.Cold, f.Hot, f.Mild, nullptr); }},
      {"infer_all", [](auto& f) { f.Result = f.Other->AssertRule({f.Cold, f.Mild}, {f.Mild, f.Cold}, f.Hot, f.Hot); }},
  });
  // clang-format on
}

template <class Scene>
void AddModelCases(TScenarios& all, const std::string& model) {
  using F = TModel<Scene>;
  using TTold = TToldModel<Scene>;
  AddChanges<F>(all, model + "_model");
  AddChanges<TTold>(all, "told_" + model + "_model");
  const auto withText = [](auto& f) { f.Fuzzy.GetStrings(), f.ShowsText = true; };
  const auto withTerms = [](auto& f) { f.Fuzzy.SetAutoTerms(true); };
  // clang-format off
  AddCases<F>(all, model + "_text", {
      {"make", [](auto& f) { f.Text = f.Fuzzy.GetStrings()->GetText().Utf8(); }},
      {"update", [](auto& f) { f.Fuzzy.UpdateStrings(); }, Nothing, withText},
      {"after_change", [](auto& f) { f.Text = f.Fuzzy.GetStrings()->GetText().Utf8(); }, Nothing,
       [](auto& f) { f.Fuzzy.GetStrings(); f.Variable->SetMaximum(50); }},
      {"set", [](auto& f) { f.Fuzzy.SetStrings(Definition); }, TPromise::Rebuilt, withText},
      {"set_lines", [](auto& f) { TStrings lines; lines.SetText(Definition); f.Fuzzy.SetStrings(&lines); }, TPromise::Rebuilt, withText},
      {"set_faulty", [](auto& f) { f.Text = MessageOf([&] { f.Fuzzy.SetStrings(Definition + ") (deffuzzy"); }); }, TPromise::Rebuilt},
      {"without_parser", [](auto& f) { f.Text = MessageOf([&] { f.Fuzzy.SetStrings(Definition); }); }, Usable, [](auto& f) { f.Fuzzy.SetParser(nullptr); }},
      {"variables", [](auto& f) { TStrings lines; lines.SetText("one=1\ntwo=cold and mild"); f.Fuzzy.SetVariables(&lines); }},
      {"parser", [](auto& f) { f.Fuzzy.SetParser(nullptr); f.Fuzzy.SetParser(&f.Parser); }, Usable},
      {"show", [](auto& f) { f.Text = f.Variable->ToString().Utf8(); }},
      {"auto_terms", [](auto& f) { Scene::Add(f.Fuzzy, Long); }, Several<F>, withTerms},
      {"add_auto_terms", [](auto& f) { f.Fuzzy.AddAutoTerms(f.Other); }, Several<F>},
      {"handlers", [](auto& f) { f.Fuzzy.SetOnChange([load = TLoad()](TObject*) {}); }},
      {"new_model", [](auto&) { TModel<Scene> other; other.Fuzzy.GetStrings(); }},
      {"component", [](auto& f) { typename Scene::TLogic other(&f.Parser); other.SetName(Long); other.GetItems(); }},
  });
  AddCases<TTold>(all, "telling_" + model, {
      {"handler_allocates", [](auto& f) { f.Cold->SetComment(Long); F::Add(f.Fuzzy, Long); }, Usable,
       [](auto& f) { f.Act = [] { const std::string text(100, 'a'); }; }},
      {"handler_adds", [](auto& f) { F::Add(f.Fuzzy, Long); }, Usable,
       [](auto& f) { f.Act = [&f, adds = false]() mutable { if (!std::exchange(adds, true)) F::AddSet(f.Other, Long); }; }},
      {"handler_allocates_at_read", [](auto& f) { f.Fuzzy.SetStrings(Definition); }, Usable,
       [](auto& f) { f.Act = [] { const std::string text(100, 'a'); }; }},
      {"handler_allocates_at_drop", [](auto& f) { f.Fuzzy.GetItems()->Clear(); }, Usable,
       [](auto& f) { f.Act = [] { const std::string text(100, 'a'); }; }},
      {"parse", [](auto& f) { f.Parser.Parse(Definition, nullptr); }, Usable},
      {"read", [](auto& f) { f.Result = f.Parser.EvalFuzzyExpression(f.Variable, "very 3"); }, Usable},
      {"replace_handler", [](auto& f) { f.Cold->SetComment(Long); }, Nothing,
       [](auto& f) { f.Act = [&f] { f.Fuzzy.SetOnChange(nullptr); }; }},
  });
  AddCases<F>(all, model + "_rules", {
      {"tip", [](auto& f) {  // two inputs, three rules, one tip
         typename Scene::TLogic& fuzzy = f.Fuzzy;
         const auto food = F::Add(fuzzy, "the food"), service = F::Add(fuzzy, "the service"), tip = F::Add(fuzzy, "the tip");
         const auto term = [](const auto& variable, const char* name, double left, double middle, double right) {
           const auto set = F::AddSet(variable, name);
           set->CreateTriangleFunctionValues(left, middle, right);
           return set;
         };
         const auto fact = [](const auto& variable, double value) {
           const auto set = F::AddSet(variable, "a fact");
           set->CreateCrispValue(value);
           return set;
         };
         const auto rancid = term(food, "rancid", 0, 0, 0.5), delicious = term(food, "delicious", 0.5, 1, 1);
         const auto poor = term(service, "poor", 0, 0, 0.5), good = term(service, "good", 0, 0.5, 1);
         const auto cheap = term(tip, "cheap", 0, 0.2, 0.4), generous = term(tip, "generous", 0.6, 0.8, 1);
         const auto tasted = fact(food, 0.7), served = fact(service, 0.4);
         typename F::TSet evidence = tip->AssertRule({rancid, poor}, {tasted, served}, cheap, nullptr);
         if (auto more = tip->AssertRule({delicious, good}, {tasted, served}, generous, evidence)) evidence = more;
         if (auto more = tip->AssertRule(good, cheap, served, evidence)) evidence = more;
         f.Text = Number(evidence->Defuzzify());
       }, Usable},
  });
  // clang-format on
}

void AddOwnedOnly(TScenarios& all) {
  using F = TModel<TScene>;
  // clang-format off
  AddCases<F>(all, "owned_variable", {
      {"insert", [](auto& f) { f.Fuzzy.GetItems()->Insert(0); }},
      {"insert_set", [](auto& f) { f.Variable->GetItems()->Insert(0); }},
      {"move", [](auto& f) { f.Other->SetIndex(0); }},
      {"item_index", [](auto& f) { f.Variable->SetItemIndex(1); f.Variable->GetItems()->Delete(1); }, Usable},
      {"to_lines", [](auto& f) { TStrings lines; lines.Assign(f.Variable); f.Text = lines.GetText().Utf8(); }},
      {"set_items", [](auto& f) { f.Other->SetItems(f.Variable->GetItems()); }},
      {"free_variable", [](auto&) { TOwned<TFuzzyVariable> variable(TFuzzyVariable::Create()); variable->SetName(Long); variable->GetItems()->Add(Long); }},
      {"by_name", [](auto& f) { f.Fuzzy.GetItems()->SetItemByName("temperature", f.Other); }},
      {"delete", [](auto& f) { f.Fuzzy.GetItems()->Delete(0); }},
      {"error", [](auto& f) { f.Text = MessageOf([&] { f.Fuzzy.GetItems()->GetItemByName(Long); }); }},
  });
  // clang-format on
}

void AddCountedOnly(TScenarios& all) {
  using F = TModel<TCountedScene>;
  // clang-format off
  AddCases<F>(all, "counted_variable", {
      {"clone", [](auto& f) { f.Text = Query<IFuzzyVariable>(f.Variable->Clone().Get())->GetName().Utf8(); }},
      {"equals", [](auto& f) { f.Text = f.Variable->Equals(f.Other) ? "yes" : "no"; }},
      {"assign", [](auto& f) { f.Other->Assign(Ref<IInterface>(f.Variable)); }, Usable},
      {"assign_sets", [](auto& f) { f.Other->AssignFuzzySets(f.Variable); }, Usable},
      {"clear", [](auto& f) { f.Variable->Clear(); }},
      {"block", [](auto& f) { f.Variable->BeginUpdate(); f.Variable->Add(Long); f.Variable->EndUpdate(); }, Usable},
      {"create", [](auto& f) { const Ref<IFuzzyVariable> variable = TIFuzzyVariable::Create(Long); variable->Add(Long); f.Text = variable->GetName().Utf8(); }},
      {"set_parser", [](auto& f) { f.Variable->SetParser(f.Parser.GetInterface()); }},
      {"replace", [](auto& f) { f.Fuzzy.GetItems()->Add(f.Fuzzy.NewVariable("temperature")); }, Usable},
      {"enter_again", [](auto& f) { f.Fuzzy.GetItems()->Remove(f.Variable); f.Fuzzy.GetItems()->Add(f.Variable); }, Usable},
      {"events", [](auto& f) { f.Variable->SetOnFuzzySetChange([load = TLoad()](auto&&...) {}); f.Variable->SetOnChange([load = TLoad()](TObject*) {}); }},
      {"strings", [](auto& f) {
         TFuzzyVariableStrings lines(&f.Fuzzy);
         lines.AddObject(Long, nullptr, Ref<IInterface>(f.Variable));
         lines.PutData(0, f.Other);
         f.Text = lines.GetData(0)->GetName().Utf8();
       }},
      {"keep_beyond", [](auto& f) { f.Result = f.Mild; f.Fuzzy.GetItems()->Remove(f.Variable); f.Variable = nullptr; f.Cold = nullptr; }, Usable},
  });
  // clang-format on
}

}  // namespace

void AddModelScenarios(TScenarios& all) {
  AddModelCases<TScene>(all, "owned");
  AddModelCases<TCountedScene>(all, "counted");
  AddOwnedOnly(all);
  AddCountedOnly(all);
}

}  // namespace fzy::test
