#include <functional>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "fuzzylogic/interfaces/IFuzzyLogic.h"
#include "tests/interfaces/Tallied.h"

// Sets that are held beyond their variable's last holder.

namespace fzy::test {
namespace {

/// A component with a variable that nobody else holds, a term of it that somebody holds, and one
/// that nobody does.
struct TOrphanage {
  std::optional<TIFuzzyLogic> Logic{std::in_place, nullptr};
  Ref<IFuzzyVariable> Other = TIFuzzyVariable::Create("v", TTalliedVariable::Class());
  Ref<IFuzzySet> Set, Result;
  bool Ended = false;

  TOrphanage() {
    Logic->SetAutoTerms(false);
    const Ref<IFuzzyVariable> v = TIFuzzyVariable::Create("v", TTalliedVariable::Class());
    Logic->GetItems()->Add(v);
    v->SetMaximum(10);
    Set = v->Add("a");
    Set->CreateTriangleFunctionValues(1, 2, 6);
    v->Add("b")->Add(1, 1);
  }
};

/// Of the set that is held; a reference to it would be one from outside.
IFuzzyVariable* Variable(const TOrphanage& o) {
  return dynamic_cast<TIFuzzySet&>(*o.Set).PeekVariable();
}

// Nobody could end what a set and its variable keep of each other.
TEST(Orphan, TakesNoSetInWhateverIsDoneToThoseThatAreHeld) {
  using TEnd = void (*)(TOrphanage & o);
  const TEnd ends[] = {
      [](TOrphanage& o) { o.Logic->GetItems()->Clear(); },
      [](TOrphanage& o) { o.Logic->GetItems()->Add(o.Other); },  // in its place
      [](TOrphanage& o) { o.Logic->GetItems()->Remove(TString("v")); },
      [](TOrphanage& o) { o.Logic.reset(); },
  };
  using TDeed = std::function<void(TOrphanage & o)>;
  std::vector<TDeed> deeds{
      // clang-format off
      [](TOrphanage& o) { o.Set->SetName("c"); },
      [](TOrphanage& o) { o.Set->Correlate(0.5, fcmMinimum); },
      [](TOrphanage& o) { o.Set->Normalize(); },
      [](TOrphanage& o) { o.Set->SetVariable(nullptr); },
      [](TOrphanage& o) { o.Set->SetVariable(o.Other); },
      [](TOrphanage& o) { o.Other->Add(o.Set); },
      [](TOrphanage& o) { (o.Result = o.Other->Add("o"))->Assign(Query<IInterface>(o.Set.Get())); },
      [](TOrphanage& o) { Query<ICloneable>((o.Result = o.Other->Add("o")).Get())->Assign(dynamic_cast<TFuzzySet*>(o.Set.Get())); },
      [](TOrphanage& o) { (o.Result = Query<IFuzzySet>(o.Set->Clone().Get()))->SetDefined(true), o.Result->SetName("c"); },
      [](TOrphanage& o) { (o.Result = o.Set->Union(o.Set))->SetDefined(true), o.Result->Hedge(fhVery); },
      [](TOrphanage& o) { o.Result = o.Set->GetVariable()->Add("late"); },
      [](TOrphanage& o) { Variable(o)->Add(o.Set); },
      [](TOrphanage& o) { o.Result = Variable(o)->Add("late"); },
      [](TOrphanage& o) { Variable(o)->AssignFuzzySets(o.Other); },
      // clang-format on
  };
  for (int i = 0; i < 20; ++i)
    deeds.emplace_back([i](TOrphanage& o) { o.Set->Hedge(static_cast<TFuzzyHedge>(i)); });
  using TStart = void (*)(IFuzzyVariable & v, const std::function<void()>& end);
  const TStart starts[] = {
      // clang-format off
      [](IFuzzyVariable&, auto& end) { end(); },
      [](IFuzzyVariable& v, auto& end) { v.SetOnFuzzySetDeleted([end](const auto&, const auto&) { end(); }); },
      [](IFuzzyVariable& v, auto& end) { v.SetOnFuzzySetAdded([end](const auto&, const auto&) { end(); }); },
      [](IFuzzyVariable& v, auto& end) { v.SetOnFuzzySetChange([end](const auto&, const auto&) { end(); }); },
      [](IFuzzyVariable& v, auto& end) { v.SetOnChange([end](TObject*) { end(); }); },
      // clang-format on
  };
  for (std::size_t deed = 0; deed < deeds.size(); ++deed) {
    for (const TEnd end : ends) {
      for (const TStart start : starts) {
        for (int order = 0; order < 3; ++order) {
          TOrphanage o;
          start(*Variable(o), [&o, end] {
            if (!std::exchange(o.Ended, true)) end(o);
          });
          deeds[deed](o);
          if (!std::exchange(o.Ended, true)) end(o);
          // A result that is not in the table keeps the table as it is.
          EXPECT_TRUE(o.Result || !Variable(o) || o.Other == Variable(o) ||
                      !(Variable(o)->ContainsFuzzySet(o.Set->GetName()) == o.Set))
              << "deed " << deed;
          Ref<IFuzzySet>* const held[] = {&o.Set, &o.Result};
          if (order == 0) o.Other = nullptr;
          *held[order % 2] = nullptr;
          if (order == 1) o.Other = nullptr;
          *held[1 - order % 2] = nullptr;
          o.Logic.reset();
          o.Other = nullptr;
          ASSERT_EQ(Living(), 0) << "deed " << deed << ", order " << order;
        }
      }
    }
  }
}

}  // namespace
}  // namespace fzy::test
