#include <functional>
#include <memory>
#include <set>

#include <gtest/gtest.h>

#include "fuzzylogic/engine/FuzzyCurve.h"
#include "tests/model/Scene.h"

// What handlers may do: one table of deeds, done at every event of a table of operations.

namespace fzy::test {
namespace {

struct EOops : std::exception {};

/// A component on the heap with a parser; both may go at any moment, which this object notices.
class TWorld final : public TComponent {
 public:
  TWorld() {
    Fuzzy->FreeNotification(this);
    Parser->FreeNotification(this);
    Parser->SetFuzzyLogic(Fuzzy);
    Fuzzy->SetParser(Parser);
    TFuzzyVariable* a = Fuzzy->GetItems()->Add("a");
    a->SetMaximum(10);
    Add(a, "low", {{0, 1}, {5, 0}});
    Add(a, "mid", {{2, 0}, {5, 1}, {8, 0}});
    Add(a, "old", {{5, 0}, {10, 1}});
    Add(Fuzzy->GetItems()->Add("b"), "x", {{0, 0}, {1, 1}});
    Add(Outside.Get(), "only", {{0, 1}});
    Recorder = std::make_unique<TEventRecorder>(*Fuzzy);
  }
  ~TWorld() override {
    if (Product && !Product->GetCollection()) Product->Free();
    TakenOut.clear();
    Outside.Reset();
    if (Fuzzy) Fuzzy->Free();
    if (Parser) Parser->Free();
  }
  TString ClassName() const override { return "TWorld"; }

  void Notification(TComponent* component, TOperation operation) override {
    if (operation != opRemove) return;
    if (component == Fuzzy) Fuzzy = nullptr;
    if (component == Parser) Parser = nullptr;
  }

  static TFuzzySet* Add(TFuzzyVariable* variable, const char* name,
                        std::initializer_list<TFuzzyPoint> points) {
    TFuzzySet* set = variable->GetItems()->Add(name);
    for (const TFuzzyPoint& point : points) set->GetValues()->Add(point.X, point.Y);
    return set;
  }
  TFuzzyVariable* Variable(int index) const { return Fuzzy->GetItems()->GetItem(index); }
  TFuzzySet* Set(int index) const { return Variable(0)->GetItems()->GetItem(index); }

  TFuzzyLogic* Fuzzy = new TFuzzyLogic;
  TTestParser* Parser = new TTestParser;
  std::unique_ptr<TEventRecorder> Recorder;
  std::unique_ptr<TEventRecorder> Replaced;
  TOwned<TFuzzyVariable> Outside{TFuzzyVariable::Create()};  // in no component
  std::vector<TOwned<TFuzzyVariable>> TakenOut;              // by handlers
  TFuzzySet* Product = nullptr;                              // what the operation returned
};

// Operations. Each is one call of the library, so that all the handler spoils is spoilt below it.
// Those with a star make sets on the way, which must be gone when they are cut short.

using TOperationCase = std::pair<const char*, void (*)(TWorld& w)>;

// clang-format off
const TOperationCase Operations[] = {
    {"add variable", [](TWorld& w) { w.Fuzzy->GetItems()->Add("new"); }},
    {"add variable and terms", [](TWorld& w) { w.Fuzzy->SetAutoTerms(true); w.Fuzzy->GetItems()->Insert(0); }},
    {"rename variable", [](TWorld& w) { w.Variable(0)->SetName("new"); }},
    {"free variable", [](TWorld& w) { w.Variable(0)->Free(); }},
    {"clear variables", [](TWorld& w) { w.Fuzzy->GetItems()->Clear(); }},
    {"assign variable", [](TWorld& w) { w.Variable(1)->Assign(w.Variable(0)); }},
    {"take variable out", [](TWorld& w) { TFuzzyVariable* variable = w.Variable(0);
        w.TakenOut.emplace_back(variable); variable->SetCollection(nullptr); }},
    {"put variable in", [](TWorld& w) { w.Fuzzy->SetAutoTerms(true);
        w.Outside->SetCollection(w.Fuzzy->GetItems()); }},
    {"assign variables", [](TWorld& w) { TFuzzyVariables source;
        TWorld::Add(source.Add("c"), "y", {{0, 0.5}}); TWorld::Add(source.Add("d"), "z", {{0, 0.5}});
        w.Fuzzy->SetItems(&source); }},
    {"add set", [](TWorld& w) { w.Product = w.Variable(0)->GetItems()->Add("new"); }},
    {"insert set", [](TWorld& w) { w.Product = w.Variable(0)->GetItems()->Insert(0); }},
    {"delete set", [](TWorld& w) { w.Variable(0)->GetItems()->Delete(2); }},
    {"assign sets", [](TWorld& w) { w.Variable(1)->SetItems(w.Variable(0)->GetItems()); }},
    {"move set", [](TWorld& w) { w.Set(0)->SetCollection(w.Variable(1)->GetItems()); }},
    {"shape set", [](TWorld& w) { w.Set(0)->SetSetType(fstPICurve); }},
    {"add point", [](TWorld& w) { w.Set(1)->GetValues()->Add(4, 0.5); }},
    {"move point", [](TWorld& w) { w.Set(1)->GetValues()->GetItem(0)->SetX(8); }},
    {"append points", [](TWorld& w) { w.Set(0)->GetValues()->Append(w.Set(2)->GetValues()); }},
    {"*slightly", [](TWorld& w) { w.Product = w.Set(1)->Hedge(fhSlightly); }},
    {"resample points", [](TWorld& w) { w.Set(1)->GetValues()->Expand(9); }},
    {"clear points", [](TWorld& w) { w.Set(1)->GetValues()->Clear(); }},
    {"very", [](TWorld& w) { w.Set(1)->Hedge(fhVery); }},
    {"about", [](TWorld& w) { w.Set(1)->Hedge(fhAbout); }},
    {"shift", [](TWorld& w) { w.Set(1)->Hedge(bfhAdd, 0.1, false); }},
    {"*cut", [](TWorld& w) { w.Product = w.Set(1)->AlphaCutoff(0.5, false); }},
    {"*clone", [](TWorld& w) { w.Product = w.Set(1)->Clone(); }},
    {"*assert rule", [](TWorld& w) { w.Product = w.Variable(0)->AssertRule(0.5, w.Set(1), w.Set(2)); }},
    {"assert rule on premises", [](TWorld& w) {
        w.Product = w.Variable(0)->AssertRule({w.Set(0)}, {w.Set(1)}, w.Set(1), nullptr); }},
    {"parse", [](TWorld& w) { w.Fuzzy->SetStrings(TString("p q r\ns")); }},
};
// clang-format on

// Deeds. `variable` and `set` are those that the event tells about, or the first ones there; either
// may be nothing, and the component is still there.

using TDeed = std::pair<const char*, void (*)(TWorld& w, TFuzzyVariable* variable, TFuzzySet* set)>;

void FreeComponent(TWorld& w, TFuzzyVariable*, TFuzzySet*) { w.Fuzzy->Free(); }
void FreeParser(TWorld& w, TFuzzyVariable*, TFuzzySet*) { w.Parser ? w.Parser->Free() : void(); }
void ClearAll(TWorld& w, TFuzzyVariable*, TFuzzySet*) { w.Fuzzy->GetItems()->Clear(); }
void FreeVariable(TWorld&, TFuzzyVariable* v, TFuzzySet*) { v ? v->Free() : void(); }
void ParseAgain(TWorld& w, TFuzzyVariable*, TFuzzySet*) {
  if (w.Parser) w.Fuzzy->SetStrings(TString("nested one two"));
}
[[noreturn]] void Throw(TWorld&, TFuzzyVariable*, TFuzzySet*) { throw EOops(); }

// clang-format off
const TDeed Deeds[] = {
    {"throw", Throw},
    {"free the set", [](TWorld&, TFuzzyVariable*, TFuzzySet* set) { set ? set->Free() : void(); }},
    {"free the variable", FreeVariable},
    {"free the component", FreeComponent},
    {"free the parser", FreeParser},
    {"clear all", ClearAll},
    {"free all sets but the one told about", [](TWorld& w, TFuzzyVariable*, TFuzzySet* told) {
        for (int v = 0; v < w.Fuzzy->GetItems()->GetCount(); ++v) {
        TFuzzySets* sets = w.Variable(v)->GetItems(); for (int i = sets->GetCount() - 1; i >= 0; --i) {
        if (i < sets->GetCount() && sets->GetItem(i) != told) sets->Delete(i);
        } } }},
    {"add things", [](TWorld& w, TFuzzyVariable* variable, TFuzzySet*) {
        w.Fuzzy->GetItems()->Insert(0)->GetItems()->Add("added");
        if (variable) variable->GetItems()->Insert(0); }},
    {"rename and refill", [](TWorld&, TFuzzyVariable* variable, TFuzzySet* set) {
        if (variable) variable->SetName("renamed");
        if (!set) return;
        set->SetName("renamed"); set->SetSetType(fstTriangle); set->GetValues()->Add(0.5, 0.25);
        set->GetValues()->GetItem(0)->SetX(0.75); }},
    {"delete the points", [](TWorld&, TFuzzyVariable*, TFuzzySet* set) {
        while (set && set->GetValues()->GetCount() > 0) set->GetValues()->Delete(0); }},
    {"move to the front", [](TWorld&, TFuzzyVariable* variable, TFuzzySet* set) { if (set) set->SetIndex(0);
        if (variable) variable->SetIndex(0); }},
    {"file the set elsewhere", [](TWorld& w, TFuzzyVariable*, TFuzzySet* set) {
        const int count = w.Fuzzy->GetItems()->GetCount();
        if (set && count > 0) set->SetCollection(w.Variable(count - 1)->GetItems()); }},
    {"take the variable out", [](TWorld& w, TFuzzyVariable* variable, TFuzzySet*) {
        if (variable) { w.TakenOut.emplace_back(variable); variable->SetCollection(nullptr); } }},
    {"take the variable out and put it back", [](TWorld& w, TFuzzyVariable* variable, TFuzzySet*) {
        if (variable) { variable->SetCollection(nullptr); variable->SetCollection(w.Fuzzy->GetItems()); } }},
    {"replace the handlers", [](TWorld& w, TFuzzyVariable*, TFuzzySet*) { w.Recorder.swap(w.Replaced);
        w.Recorder = std::make_unique<TEventRecorder>(*w.Fuzzy); }},
    {"clear the handlers", [](TWorld& w, TFuzzyVariable*, TFuzzySet*) { TEventRecorder::Detach(*w.Fuzzy); }},
    {"parse again", ParseAgain},
    {"read the text", [](TWorld& w, TFuzzyVariable*, TFuzzySet*) { if (w.Parser) w.Fuzzy->GetStrings(); }},
    {"assert a rule", [](TWorld&, TFuzzyVariable* variable, TFuzzySet* set) {
        if (variable && set) variable->AssertRule(1, set, set); }},
    {"clear, parse again and free the component", [](TWorld& w, TFuzzyVariable* variable, TFuzzySet* set) {
        ClearAll(w, variable, set); if (w.Fuzzy) ParseAgain(w, variable, set);
        if (w.Fuzzy) FreeComponent(w, variable, set); }},
};
// clang-format on

// What must hold afterwards.

void ExpectSound(const TFuzzySetValues& values) {
  EXPECT_FALSE(values.IsUpdating());
  for (int i = 0; i < values.GetCount(); ++i) EXPECT_EQ(values[i]->GetIndex(), i);
  for (int i = 1; i < values.GetCount(); ++i) {
    const TFuzzyPoint before = values[i - 1]->GetPoint(), point = values[i]->GetPoint();
    EXPECT_LE(before.X, point.X + FuzzyTolerance);
    EXPECT_FALSE(SamePoint(before, point));
  }
}

void ExpectSound(const TFuzzyVariable& variable) {
  EXPECT_LT(variable.GetItemIndex(), std::max(1, variable.GetItems()->GetCount()));
  EXPECT_FALSE(variable.GetItems()->IsUpdating());
  int index = 0;
  for (const TFuzzySet* set : *variable.GetItems()) {
    EXPECT_TRUE(set->GetIndex() == index++ && set->GetVariable() == &variable);
    ExpectSound(*set->GetValues());
  }
}

/// Every object still tells of its next change, and the list of the next addition.
void ExpectTelling(TFuzzyLogic& fuzzy) {
  fuzzy.SetAutoTerms(false);
  TEventRecorder recorder(fuzzy);
  const auto next = [&recorder](const std::string& log) { EXPECT_EQ(recorder.Take(), log); };
  for (TFuzzyVariable* variable : *fuzzy.GetItems()) {
    const std::string name = NameOf(variable);
    for (TFuzzySet* set : *variable->GetItems()) {
      set->GetValues()->Clear();
      recorder.Take();
      set->GetValues()->Add();
      next("SetChanged " + NameOf(set));
    }
    variable->SetComment("next");
    next("VariableChanged " + name);
    variable->GetItems()->Add();
    next("SetAdded " + name + ".-; VariableChanged " + name);
  }
  fuzzy.GetItems()->Add();
  next("VariableAdded -; Changed");
  TEventRecorder::Detach(fuzzy);
}

void ExpectSound(TWorld& world) {
  EXPECT_FALSE(world.Product && world.Product->IsFreed());
  if (!world.Fuzzy) return;
  TFuzzyVariables* list = world.Fuzzy->GetItems();
  EXPECT_FALSE(list->IsUpdating());
  int index = 0;
  for (const TFuzzyVariable* variable : *list) {
    EXPECT_TRUE(variable->GetIndex() == index++ && variable->GetCollection() == list);
    ExpectSound(*variable);
  }
  ExpectTelling(*world.Fuzzy);
}

/// Runs an operation and does the deed at the events from the `first` on, `times` times (nested or
/// not); returns whether there were so many events.
bool Spoil(const TOperationCase& operation, const TDeed& deed, int first, int times,
           std::set<std::size_t>& reached) {
  int events = 0, done = 0;
  TWorld w;
  w.Recorder->Handler = [&](std::size_t event, TFuzzyVariable* variable, TFuzzySet* set) {
    if (events++ < first || done == times || !w.Fuzzy) return;
    if (done++ == 0) reached.insert(event);
    if (!variable && w.Fuzzy->GetItems()->GetCount() > 0) variable = w.Variable(0);
    if (!set && variable && variable->GetItems()->GetCount() > 0)
      set = variable->GetItems()->GetItem(0);
    deed.second(w, variable, set);
  };
  const int sets = w.Variable(0)->GetItems()->GetCount();
  bool thrown = false;
  try {
    operation.second(w);
  } catch (const EOops&) {
    thrown = true;
  } catch (const EFzyException& e) {
    EXPECT_EQ(w.Parser, nullptr) << e.what();
    EXPECT_STREQ(e.what(), "Parser not assigned.  Cannot parse");
  }
  const bool throws = std::string_view(deed.first).find("throw") != std::string_view::npos;
  EXPECT_EQ(thrown, done > 0 && throws);
  if (w.Fuzzy && thrown && deed.second == Throw && operation.first[0] == '*') {
    EXPECT_EQ(w.Variable(0)->GetItems()->GetCount(), sets) << "a set made on the way is left";
  }
  ExpectSound(w);
  return done > 0;
}

TEST(Handlers, LeaveEverythingSound) {
  for (const TDeed& deed : Deeds) {
    std::set<std::size_t> reached;
    for (const TOperationCase& operation : Operations) {
      for (const int times : {1, 4}) {
        int first = 0;
        while (Spoil(operation, deed, first, times, reached) && !testing::Test::HasFailure())
          ++first;
        ASSERT_FALSE(testing::Test::HasFailure())
            << deed.first << " in " << operation.first << ", event " << first << ", " << times;
      }
    }
    EXPECT_EQ(reached.size(), EventNames.size()) << "an event was never spoilt";
  }
}

}  // namespace
}  // namespace fzy::test
