#include <cmath>
#include <optional>

#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "tests/memory/Model.h"

namespace fzy::test {
namespace {

/// A free list of points; handles of some are held, and follow their points.
struct TPointList {
  TPointList() {
    for (const double x : {0.0, 1.0, 2.0, 2.0, 4.0, 6.0}) List.Add(x, x < 3 ? 0.25 * x : 0.5);
    First = List[1];
    Last = List[4];
    FirstHeld.emplace(First);
    LastHeld.emplace(Last);
    for (const double x : {3.0, 1.0}) Other.Add(x, 1);
  }
  static std::string Show(const TFuzzySetValues& list) {
    std::string text;
    for (const TFuzzyPoint& point : list.Points())
      text += '(' + Number(point.X) + ' ' + Number(point.Y) + ')';
    return text + (list.IsUpdating() ? "updating|" : "|");
  }
  std::string Show() {
    std::string text = Show(List) + Show(Other) + Result;
    for (const TFuzzySetValue* handle : {First, Last}) {
      if (handle->IsFreed() || handle->GetCollection() != &List) continue;
      text += std::to_string(handle->GetIndex()) + '@' + Number(handle->GetX()) + ' ' +
              (List[handle->GetIndex()] == handle ? ";" : "!;");
    }
    return text;
  }

  TFuzzySetValues List, Other;
  TFuzzySetValue *First, *Last;
  std::optional<TPin> FirstHeld, LastHeld;  // so that it can be asked whether they have ended
  std::string Result;
};

void AddPointScenarios(TScenarios& all) {
  // clang-format off
  AddCases<TPointList>(all, "points", {
      {"add", [](auto& f) { f.List.Add(7, 1); }},
      {"add_first", [](auto& f) { f.List.Add(-1, 1); }},
      {"add_equal", [](auto& f) { f.List.Add(2, 1); }},
      {"add_handle", [](auto& f) { f.List.Add(); }},
      {"add_to_new", [](auto& f) { TFuzzySetValues list; list.Add(1, 1); list.Add(2, 1); list[0]->SetX(3); f.Result = TPointList::Show(list); }},
      {"insert", [](auto& f) { f.List.Insert(2); }},
      {"insert_last", [](auto& f) { f.List.Insert(4); }},
      {"delete", [](auto& f) { f.List.Delete(2); }},
      {"delete_held", [](auto& f) { f.List.Delete(0); }},
      {"clear", [](auto& f) { f.List.Clear(); }},
      {"handle", [](auto& f) { f.Result = Number(f.List[3]->GetX()); }},
      {"first_handle", [](auto& f) { f.Result = Number(f.Other[1]->GetX()); }},
      {"take_out", [](auto& f) { TOwned<TFuzzySetValue> point(f.List[3]); point->SetCollection(nullptr); }, TPromise::Usable},
      {"take_over", [](auto& f) { f.Other[1]->SetCollection(&f.List); }},
      {"make", [](auto& f) { TFuzzySetValue::Create(&f.List)->SetValue(3, 1); }, TPromise::Usable},
      {"make_free", [](auto& f) { TOwned<TFuzzySetValue> point(TFuzzySetValue::Create(nullptr)); point->SetX(3); f.Result = Number(point->GetX()); }},
      {"set_x", [](auto& f) { f.First->SetX(5); }},
      {"set_y", [](auto& f) { f.First->SetY(0.75); }},
      {"set_both", [](auto& f) { f.First->SetValue(5, 0.75); }},
      {"move", [](auto& f) { f.First->SetIndex(4); }},
      {"assign_point", [](auto& f) { f.First->Assign(f.Last); }},
      {"append", [](auto& f) { f.List.Append(&f.Other); }, TPromise::Usable},
      {"append_itself", [](auto& f) { f.List.Append(&f.List); }},
      {"append_part", [](auto& f) { f.List.Append(&f.Other, 1, 1); }},
      {"assign", [](auto& f) { f.Other.Assign(&f.List); }},
      {"assign_less", [](auto& f) { f.List.Assign(&f.Other); }},
      {"expand", [](auto& f) { f.List.Expand(20); }},
      {"expand_simple", [](auto& f) { f.List.ExpandSimple(20); }},
      {"shrink", [](auto& f) { f.List.Expand(4); }},
      {"sort", [](auto& f) { f.List.Sort(); }, TPromise::Nothing, [](auto& f) { f.List[4]->SetIndex(0); }},
      {"duplicates", [](auto& f) { f.List.RemoveDuplicates(); }},
      {"cleanup", [](auto& f) { f.List.CleanupValues(); }},
      {"block", [](auto& f) { TUpdateBlock block(f.List); f.List.Add(3, 1); f.List.Delete(0); f.List.Add(0.5, 1); block.Close(); }, TPromise::Usable},
      {"figures", [](auto& f) { f.Result = Number(f.List.GetAvgValue() + f.List.GetMaxValue() + f.List.GetXCount(2)); }},
      {"error", [](auto& f) { f.Result = MessageOf([&] { f.List.Add(1, std::nan("")); }) + MessageOf([&] { f.List[77]; }); }},
  });
  // clang-format on
}

template <class Scene>
void AddSetCases(TScenarios& all, const std::string& model) {
  using F = TModel<Scene>;
  std::vector<TCase<F>> hedges;
  for (int hedge = 0; hedge < 20; ++hedge)
    hedges.push_back({TString(HedgeNames[static_cast<std::size_t>(hedge)]).Utf8(), [hedge](F& f) {
                        f.Result = f.Mild->Hedge(static_cast<TFuzzyHedge>(hedge));
                      }});
  for (int modifier = 0; modifier < 9; ++modifier) {
    for (const bool modifyY : {false, true})
      hedges.push_back({"modify_" + std::string(modifyY ? "y" : "x") + std::to_string(modifier),
                        [modifier, modifyY](F& f) {
                          f.Result =
                              f.Mild->Hedge(static_cast<TBaseFuzzyHedge>(modifier), 0.3, modifyY);
                        }});
  }
  AddCases<F>(all, model + "_hedge", std::move(hedges));
  std::vector<TCase<F>> operations;
  for (int operation = 0; operation < 7; ++operation) {
    const auto by = static_cast<TFuzzyOperation>(operation);
    operations.push_back({"union" + std::to_string(operation),
                          [by](F& f) { f.Result = f.Cold->Union(f.Mild, by); }});
    if (by == foSum) continue;
    operations.push_back({"intersection" + std::to_string(operation),
                          [by](F& f) { f.Result = f.Cold->Intersection(f.Mild, by); }});
  }
  for (int method = 0; method < 5; ++method)
    operations.push_back({"infer" + std::to_string(method), [method](F& f) {
                            f.Result = f.Cold->Infer(
                                f.Mild, static_cast<TFuzzyInferenceMethod>(method), false);
                          }});
  AddCases<F>(all, model, std::move(operations));

  // clang-format off
  AddCases<F>(all, model + "_set", {
      {"name", [](auto& f) { f.Mild->SetName(Long); }},
      {"name_refused", [](auto& f) { f.Text = MessageOf([&] { f.Mild->SetName("very"); }); }},
      {"comment", [](auto& f) { f.Mild->SetComment(Long); }},
      {"texts", [](auto& f) { f.Mild->SetExpression(Long); Engine(f.Mild).SetDefinition(Long); }, TPromise::Usable},
      {"type", [](auto& f) { f.Mild->SetSetType(fstPICurve); }},
      {"triangle", [](auto& f) { f.Mild->CreateTriangleFunctionValues(3, 12, 33); }},
      {"curve", [](auto& f) { f.Mild->CreateCurveValues(9, 3, 33, 12, true); }},
      {"pi", [](auto& f) { f.Mild->CreatePIFunctionValues(9, 5, 20); }},
      {"beta", [](auto& f) { f.Mild->CreateBetaCurveFunctionValues(9, 5, 20, 2); }},
      {"crisp", [](auto& f) { f.Mild->CreateCrispValue(12.25); }},
      {"range_error", [](auto& f) { f.Text = MessageOf([&] { f.Mild->CreateCurveValues(9, 33, 3, 12, true); }); }},
      {"normalize", [](auto& f) { f.Result = f.Hot->Normalize(); }},
      {"add_point", [](auto& f) { Engine(f.Mild).GetValues()->Add(5, 0.5); }},
      {"clear", [](auto& f) { Engine(f.Mild).GetValues()->Clear(); }},
      {"expand", [](auto& f) { Engine(f.Mild).GetValues()->Expand(20); }},
      {"assign_points", [](auto& f) { Engine(f.Mild).SetValues(Engine(f.Cold).GetValues()); }},
      {"alpha_cut", [](auto& f) { f.Result = f.Mild->AlphaCutoff(0.5, true); }},
      {"floor", [](auto& f) { f.Result = f.Mild->Cutoff(0.5, true); }},
      {"cap", [](auto& f) { f.Result = f.Mild->Cutoff(0.5, false); }},
      {"correlate", [](auto& f) { f.Result = f.Mild->Correlate(0.5, fcmMinimum); }},
      {"scale", [](auto& f) { f.Result = f.Mild->Correlate(0.5, fcmProduct); }},
      {"infer_all", [](auto& f) { f.Result = f.Mild->Infer(f.Cold, fimMinMax, true); }},
      {"clone", [](auto& f) { f.Result = Scene::Copy(f.Mild); }},
      {"copy_of_name", [](auto& f) { Engine(f.Cold).Assign(&Engine(f.Mild)); }},
      {"assign_foreign", [](auto& f) { Engine(f.Hot).Assign(&Engine(f.Mild)); }, Scene::Counted ? TPromise::Usable : TPromise::Nothing},
      {"measures", [](auto& f) { f.Text = Number(f.Mild->Defuzzify() + f.Mild->GetCorrelationStrength(f.Cold) + f.Mild->DegreeOfMembership(12)); }},
      {"intersects", [](auto& f) { f.Text = f.Mild->Intersects(f.Cold) ? "yes" : "no"; }},
      {"equals", [](auto& f) { f.Text = f.Mild->Equals(f.Cold) && f.Mild->FuzzyEquals(f.Cold) > 0 ? "yes" : "no"; }},
      {"text", [](auto& f) { f.Text = f.Mild->ToString().Utf8() + f.Mild->GetValuesToString().Utf8() + Engine(f.Mild).GetDisplayName().Utf8(); }},
      {"iterate", [](auto& f) { int steps = 0; f.Mild->Iterate(f.Cold, [&steps, load = TLoad()](auto...) { return ++steps, false; }); f.Text = std::to_string(steps); }},
      {"operator", [](auto& f) {
         f.Result = f.Mild->Operator(f.Cold, "with", [load = TLoad()](auto& result, double x, double y, double, double) {
           if constexpr (Scene::Counted) result->Add(x, y); else result.Add(x, y);
           return false; });
       }},
      {"refused", [](auto& f) { f.Text = MessageOf([&] { f.Mild->Intersection(f.Cold, foSum); }); }},
      {"free", [](auto& f) { Scene::Drop(f.Cold); }},
      {"many", [](auto& f) { for (int i = 0; i < 3; ++i) Scene::Drop(Scene::AddSet(f.Variable, Long)); }},
  });
  // clang-format on
  if constexpr (Scene::Counted) {
    // clang-format off
    AddCases<F>(all, model + "_only", {
        {"create", [](auto& f) { f.Result = TIFuzzySet::Create(f.Variable, Long); }},
        {"append", [](auto& f) { f.Mild->Append(f.Cold); }, TPromise::Usable},
        {"assign_values", [](auto& f) { f.Mild->AssignValues(f.Cold); }},
        {"insert_point", [](auto& f) { f.Mild->Insert(1, 12, 0.5); }},
        {"x", [](auto& f) { f.Mild->SetXValues(0, 35); }},
        {"y", [](auto& f) { f.Mild->SetYValues(0, 0.5); }},
        {"assign", [](auto& f) { f.Hot->Assign(Ref<IInterface>(f.Mild)); }, TPromise::Usable},
        {"assign_new", [](auto& f) { f.Result = TIFuzzySet::Create(); f.Result->Assign(Ref<IInterface>(f.Mild)); }, TPromise::Usable},
        {"clone_for", [](auto& f) { f.Result = f.Mild->Clone(f.Other); }},
        {"move", [](auto& f) { f.Mild->SetVariable(f.Other); }},
        {"move_nowhere", [](auto& f) { f.Mild->SetVariable(nullptr); }},
        {"enter", [](auto& f) { f.Other->Add(f.Mild); }},
        {"replace", [](auto& f) { f.Other->Add("mild and dry"); f.Other->Add(f.Mild); }, TPromise::Usable},
    });
    // clang-format on
  } else {
    // clang-format off
    AddCases<F>(all, model + "_only", {
        {"create", [](auto&) { TOwned<TFuzzySet> set(TFuzzySet::Create()); set->SetName(Long); set->CreatePIFunctionValues(7, 3, 5); set->Hedge(fhVery); }},
        {"insert", [](auto& f) { f.Variable->GetItems()->Insert(0); }},
        {"index", [](auto& f) { f.Cold->SetIndex(1); }},
        {"assign_item", [](auto& f) { f.Variable->GetItems()->SetItemByName("cold and wet", f.Mild); }},
        {"change_variable", [](auto& f) { f.Cold->SetCollection(f.Other->GetItems()); }},
        {"segments", [](auto& f) { auto& list = *Engine(f.Mild).GetValues(); auto& other = *f.Cold->GetValues();
           TOwned<TFuzzySetValue> point(f.Mild->LineSegmentIntersects(list[0], list[1], other[1], other[2])); f.Text = point ? Number(point->GetX()) : ""; }},
        {"delete", [](auto& f) { f.Variable->GetItems()->Delete(0); }},
        {"clear_sets", [](auto& f) { f.Variable->GetItems()->Clear(); }},
    });
    // clang-format on
  }
}

}  // namespace

void AddSetScenarios(TScenarios& all) {
  AddPointScenarios(all);
  AddSetCases<TScene>(all, "owned");
  AddSetCases<TCountedScene>(all, "counted");
}

}  // namespace fzy::test
