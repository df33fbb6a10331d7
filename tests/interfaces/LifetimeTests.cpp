#include <deque>
#include <map>
#include <vector>

#include <gtest/gtest.h>

#include "tests/interfaces/Tallied.h"
#include "tests/support/Random.h"

// Who keeps whom, held against the rules in plain numbers; identity by interface; what a handler
// may do while a release lasts.

namespace fzy::test {
namespace {

/// A set or a variable by the rules, beside the real one.
struct TTwin {
  TTalliedSet* Set = nullptr;
  TTalliedVariable* Variable = nullptr;
  TString Name{};
  TTwin* Link = nullptr;
  bool Defined = false;
  int Count = 0, Links = 0;  // how many of the references are links of sets
  std::map<TString, TTwin*> Table{};
  bool Ignores = false, Lives = true;
};

/// The object by one of its three interfaces.
Ref<IInterface> Face(const TTwin& twin, int which) {
  IInterface* object = twin.Variable;
  if (twin.Set) object = twin.Set;
  if (which == 0) return Query<IInterface>(object);
  if (which == 1) return Query<ICloneable>(object);
  return twin.Set ? Ref<IInterface>(Query<IFuzzySet>(object)) : Query<IFuzzyVariable>(object);
}

Ref<IFuzzyVariable> Real(const TTwin* variable) { return variable ? variable->Variable : nullptr; }

struct TWorld {
  std::deque<TTwin> All;
  std::vector<std::pair<TTwin*, Ref<IInterface>>> Held;  // from outside

  TTwin& New(TTwin twin) {
    if (twin.Link) Take(*twin.Link);
    for (TTwin& gone : All) {
      if (!gone.Lives) return gone = std::move(twin);
    }
    return All.emplace_back(std::move(twin));
  }
  TTwin& Hold(TTwin& twin, Ref<IInterface> reference) {
    ++twin.Count;
    return *Held.emplace_back(&twin, std::move(reference)).first;
  }
  void MakeVariable() {
    const auto variable = TIFuzzyVariable::Create("v", TTalliedVariable::Class());
    Hold(New({nullptr, static_cast<TTalliedVariable*>(variable.Get())}), variable);
  }
  /// Holds a set that was just made.
  TTwin& Hold(const Ref<IFuzzySet>& set, TTwin* link, bool defined = false) {
    return Hold(
        New({dynamic_cast<TTalliedSet*>(set.Get()), nullptr, set->GetName(), link, defined}), set);
  }
  void Drop(std::size_t index) {
    const auto [twin, reference] = std::move(Held[index]);
    Held.erase(Held.begin() + static_cast<std::ptrdiff_t>(index));
    Release(*twin);
  }

  // The rules.

  static void Release(TTwin& twin) {
    const int count = --twin.Count;
    if (twin.Ignores || (count != 0 && count != static_cast<int>(twin.Table.size()))) return;
    twin.Ignores = true;
    Clear(twin);
    twin.Lives = twin.Count > 0;
    twin.Ignores = false;
    if (!twin.Lives && twin.Link) Leave(*twin.Link);
  }
  static void Take(TTwin& variable) { ++variable.Count, ++variable.Links; }
  static void Leave(TTwin& variable) {
    --variable.Links;
    Release(variable);
  }
  static void Clear(TTwin& variable) {
    for (const auto& [name, set] : std::exchange(variable.Table, {})) Release(*set);
  }
  static void Put(TTwin& variable, TTwin& set) {
    if (variable.Count == variable.Links) return;
    ++set.Count;
    if (TTwin* replaced = std::exchange(variable.Table[set.Name], &set)) Release(*replaced);
  }
  static void Add(TTwin& variable, TTwin& set) {
    const bool moves = set.Link != &variable;
    if (moves) Link(set, &variable);
    if (moves != set.Defined) Put(variable, set);  // a defined one that moved is there already
  }
  static void Remove(TTwin& variable, TTwin& set) {
    const auto found = variable.Table.find(set.Name);
    if (found == variable.Table.end() || found->second != &set) return;
    variable.Table.erase(found);
    Release(set);
  }
  template <class Change>
  static void Refile(TTwin& set, Change change) {
    ++set.Count;
    if (set.Link) Remove(*set.Link, set);
    change();
    if (set.Link && set.Defined) Add(*set.Link, set);
    Release(set);
  }
  static void Rename(TTwin& set, const TString& name) {
    if (set.Name != name) Refile(set, [&] { set.Name = name; });
  }
  static void Link(TTwin& set, TTwin* variable) {
    if (set.Link == variable) return;
    Refile(set, [&] {
      if (variable) Take(*variable);
      if (TTwin* old = std::exchange(set.Link, variable)) Leave(*old);
    });
  }
  void AssignSets(TTwin& variable, TTwin& source) {
    if (&variable == &source) return;
    Clear(variable);
    for (const auto& [name, set] : source.Table) {
      TTwin& copy = New({nullptr, nullptr, set->Name, &variable, set->Defined, 1});
      Add(variable, copy);
      Release(copy);
    }
  }

  /// What differs from the real objects, or nothing.
  std::string Difference() {
    int living = 0;
    for (const TTwin& twin : All) living += twin.Lives;
    if (living != Living()) return "who lives";
    if (TTalliedSet::Miscounted || TTalliedVariable::Miscounted) return "a count that was returned";
    for (TTwin& twin : All) {
      if (!twin.Lives || !twin.Variable) continue;
      if (twin.Variable->GetCount() != static_cast<int>(twin.Table.size())) return "a table";
      for (auto& [name, set] : twin.Table) {
        const Ref<IFuzzySet> real = twin.Variable->ContainsFuzzySet(name);
        if (!set->Set) set->Set = dynamic_cast<TTalliedSet*>(real.Get());  // a copy is new to us
        if (!real || real != set->Set) return "an entry";
      }
    }
    for (const TTwin& twin : All) {
      if (twin.Lives && (twin.Set ? twin.Set->Count : twin.Variable->Count) != twin.Count)
        return "a count";
    }
    return "";
  }
};

/// Drops references to a variable (target 0) and its sets in every order that begins with
/// `targets`; the first `members` sets are in its table, the others only belong to it.
void DropInOrder(int sets, int members, std::vector<std::size_t> targets) {
  TWorld w;
  w.MakeVariable();
  for (int i = 0; i < sets; ++i) {
    TTwin& set =
        w.Hold(TIFuzzySet::Create(Real(&w.All[0]), std::to_string(i), TTalliedSet::Class()),
               &w.All[0], i < members);
    set.Set->SetDefined(set.Defined);
    w.All[0].Variable->Add(set.Set);
    w.Add(w.All[0], set);
  }
  for (const std::size_t target : targets) w.Hold(w.All[target], Face(w.All[target], 0));
  for (int next = sets; !w.Held.empty(); next = std::max(0, next - 1)) {  // the makers' first
    w.Drop(static_cast<std::size_t>(next));
    ASSERT_EQ(w.Difference(), "") << testing::PrintToString(targets) << members << " of " << sets;
  }
  ASSERT_EQ(Living(), 0);
  if (targets.size() == 4) return;
  targets.push_back(0);
  for (; targets.back() <= static_cast<std::size_t>(sets); ++targets.back())
    DropInOrder(sets, members, targets);
}

TEST(Lifetime, FollowsTheCountsInEveryOrderOfDropping) {
  for (int sets = 0; sets <= 5; ++sets) {
    for (int members = 0; members <= sets; ++members) DropInOrder(sets, members, {});
  }
}

/// Does one thing to all that it takes: sets `s` and `o`, variables `v` and `u`, held from outside.
void Step(TWorld& w, TRandom& random) {
  const auto any = [&] {
    const int count = static_cast<int>(w.Held.size());
    return count == 0 ? nullptr : w.Held[static_cast<std::size_t>(random.Below(count))].first;
  };
  const auto held = [&](bool set) {
    TTwin* t = any();
    return t && !t->Set == !set ? t : nullptr;
  };
  TTwin *const s = held(true), *const o = held(true), *const v = held(false),
               *const u = held(false);
  const TString name(std::string(1, "abcde"[random.Below(5)]));
  const bool one = random.OneIn(2);
  // clang-format off
  switch (random.Below(22)) {
    case 0: if (w.Held.size() < 12) w.MakeVariable(); break;
    case 1: if (w.Held.size() < 12) w.Hold(TIFuzzySet::Create(Real(v), name, TTalliedSet::Class()), v); break;
    case 2: if (v) w.Add(*v, w.Hold(v->Variable->Add(one ? name : "__Empty"), v, one)); break;
    case 3: if (TTwin* t = any()) w.Hold(*t, Face(*t, random.Below(3))); break;
    case 4: if (v && v->Table.count(name)) w.Hold(*v->Table[name], v->Variable->GetFuzzySetByName(name)); break;
    case 5: if (s && s->Link) w.Hold(*s->Link, s->Set->GetVariable()); break;
    case 6: if (v && s) { v->Variable->Add(s->Set); w.Add(*v, *s); } break;
    case 7: if (v && s) { v->Variable->Remove(s->Set); w.Remove(*v, *s); } break;
    case 8: if (s) { s->Set->SetName(name); w.Rename(*s, name); } break;
    case 9: if (s) { s->Set->SetVariable(Real(v)); w.Link(*s, v); } break;
    case 10: if (s) s->Set->SetDefined(s->Defined = one); break;
    case 11: if (v && one) { v->Variable->Clear(); w.Clear(*v); } break;
    case 12: if (v && u) { v->Variable->AssignFuzzySets(Real(u)); w.AssignSets(*v, *u); } break;
    case 13: if (s) { s->Set->Hedge(bfhMultiply, 0.5, true); w.Rename(*s, s->Set->GetName()); } break;
    case 14: if (s && o) w.Hold(s->Set->Union(Ref<IFuzzySet>(o->Set)), s->Link); break;
    case 15: if (s) w.Hold(one ? Query<IFuzzySet>(s->Set->Clone().Get()) : s->Set->AlphaCutoff(0.5, true), s->Link); break;
    case 16: if (s) w.Hold(v ? s->Set->Clone(Real(v)) : s->Set->Cutoff(0.5, one), v); break;
    case 17: if (s && o) { s->Set->Assign(Face(*o, 0)); w.Link(*s, o->Link); } break;
    case 18: if (s && o) { Query<ICloneable>(s->Set)->Assign(static_cast<TFuzzySet*>(o->Set));
      w.Link(*s, o->Link); w.Rename(*s, o->Name); } break;
    default: if (!w.Held.empty()) w.Drop(random.Bits() % w.Held.size()); break;
  }
  // clang-format on
  if (w.Held.size() > 16) w.Drop(0);
}

TEST(Lifetime, FollowsTheCountsWhateverIsDone) {
  TRandom random;
  SCOPED_TRACE(random.Trace());
  for (int run = 0; run < 2000; ++run) {
    TWorld w;
    for (int step = 0; step < 500; ++step) {
      Step(w, random);
      ASSERT_EQ(w.Difference(), "") << "run " << run << ", step " << step;
    }
    while (!w.Held.empty()) w.Drop(0);
    ASSERT_EQ(w.Difference(), "") << "end of run " << run;
    ASSERT_EQ(Living(), 0) << "after run " << run;
  }
}

TEST(Identity, IsTheSameByEveryInterfaceAndDecidesWhatIsAssigned) {
  TWorld w;
  w.MakeVariable();
  w.Hold(TIFuzzySet::Create(nullptr, "source", TTalliedSet::Class()), nullptr).Set->Add(1, 0.5);
  for (const TTwin& twin : w.All) {
    const TGuid others[] = {twin.Set ? IFuzzyVariable::Id : IFuzzySet::Id, IFuzzyParser::Id, {}};
    for (const Ref<IInterface>& face : {Face(twin, 0), Face(twin, 1), Face(twin, 2)}) {
      EXPECT_TRUE(Query<IInterface>(face.Get()) == Face(twin, 0));
      EXPECT_TRUE(Query<ICloneable>(face.Get()) == Face(twin, 1));
      for (const TGuid& id : others) {
        void* result = &result;
        EXPECT_TRUE(face->QueryInterface(id, &result) == 0x80004002U && !result);
      }
    }
  }
  TPersistent *const points = w.All[1].Set->GetValues(), *const whole =
                                                             static_cast<TFuzzySet*>(w.All[1].Set);
  for (const bool toPoints : {true, false}) {
    const Ref<IFuzzySet> set = TIFuzzySet::Create(nullptr, "set");
    const Ref<ICloneable> face = toPoints ? Ref<ICloneable>(set) : Query<ICloneable>(set.Get());
    EXPECT_THROW(face->Assign(toPoints ? whole : points), EConvertError);
    EXPECT_EQ(set->GetCount(), 0);
    face->Assign(toPoints ? points : whole);
    EXPECT_EQ(set->GetValuesToString(), "((1.0000 0.5000) )");
    EXPECT_EQ(set->GetName(), toPoints ? "set" : "source");
  }
}

TEST(LastRelease, StandsWhateverItsHandlerDoes) {
  // What the handler does when it is told first, and how often it is told until all has gone.
  using TDeed = void (*)(const Ref<IFuzzyVariable>& v, Ref<IInterface>& kept);
  const std::pair<int, TDeed> deeds[] = {
      // clang-format off
      {1, [](const Ref<IFuzzyVariable>&, Ref<IInterface>&) { throw 1; }},
      {1, [](const Ref<IFuzzyVariable>& v, Ref<IInterface>& kept) { kept = v; kept = nullptr; }},
      {1, [](const Ref<IFuzzyVariable>& v, Ref<IInterface>& kept) { kept = v; }},
      {1, [](const Ref<IFuzzyVariable>& v, Ref<IInterface>& kept) { kept = v->Add("__Empty"); throw 1; }},
      {2, [](const Ref<IFuzzyVariable>& v, Ref<IInterface>&) { v->Clear(); }},
      {1, [](const Ref<IFuzzyVariable>& v, Ref<IInterface>&) { v->Add("late"); }},
      {1, [](const Ref<IFuzzyVariable>& v, Ref<IInterface>& kept) { kept = v->Add("late"); }},
      // clang-format on
  };
  for (const auto& [times, deed] : deeds) {
    int told = 0;
    Ref<IInterface> kept;
    Ref<IFuzzyVariable> variable = TIFuzzyVariable::Create("v", TTalliedVariable::Class());
    for (const char* name : {"a", "b", "c"}) variable->Add(name);
    variable->SetOnVariableChange([&, act = deed](const Ref<IFuzzyVariable>& v) {
      if (++told > 1) return;
      EXPECT_EQ(v->GetCount(), 0);
      act(v, kept);
    });
    variable = nullptr;
    kept = nullptr;
    EXPECT_TRUE(Living() == 0 && told == times);
  }
}

// The operation that tells still runs on it, and goes on.
TEST(LastRelease, MayBeFollowedByANewReferenceInAHandler) {
  using TAct = void (*)(IFuzzySet & set);
  const TAct acts[] = {[](IFuzzySet& set) { set.Add(0, 1); },
                       [](IFuzzySet& set) { set.Hedge(fhNot); },
                       [](IFuzzySet& set) { set.Hedge(fhVery); },
                       [](IFuzzySet& set) { set.SetSetType(fstPICurve); },
                       [](IFuzzySet& set) { set.Normalize(); },
                       [](IFuzzySet& set) { set.GetVariable()->SetName("w"); }};
  for (const TAct act : acts) {
    for (const bool keeps : {true, false}) {
      const Ref<IFuzzyVariable> variable = TIFuzzyVariable::Create("v", TTalliedVariable::Class());
      Ref<IFuzzySet> set = TIFuzzySet::Create(variable, "a", TTalliedSet::Class()), kept;
      set->Add(1, 0.5);
      set->SetDefined(true);
      variable->Add(set);
      const auto drop = [&](const Ref<IFuzzyVariable>& v, const Ref<IFuzzySet>& told) {
        v->Remove(told);
        set = nullptr;
        if (keeps) kept = told;
      };
      variable->SetOnFuzzySetChange(drop);
      variable->SetOnVariableChange([&](const Ref<IFuzzyVariable>& v) {
        const Ref<IFuzzySet> told = set;
        drop(v, told);
      });
      act(*set);
      EXPECT_TRUE(!kept || kept->GetVariable() == variable);
      variable->SetOnFuzzySetChange(nullptr);
      variable->SetOnVariableChange(nullptr);
      variable->Clear();
    }
    EXPECT_EQ(Living(), 0);
  }
}

// A table with more entries than sets would be cleared while the variable is held, or never.
TEST(Identity, HasOneEntryInATableWhateverIsRenamedMeanwhile) {
  using TDeed = void (*)(IFuzzyVariable & v, const Ref<IFuzzySet>& set);
  const TDeed deeds[] = {[](auto&, auto& set) { set->SetName("c"); },
                         [](auto& v, auto& set) { v.Add(set); },
                         [](auto&, auto& set) { set->SetVariable(nullptr); }};
  for (const TDeed deed : deeds) {
    Ref<IFuzzyVariable> variable = TIFuzzyVariable::Create("v", TTalliedVariable::Class());
    Ref<IFuzzySet> set = TIFuzzySet::Create(variable, "a", TTalliedSet::Class());
    set->SetDefined(true);
    variable->Add(set);
    variable->SetOnFuzzySetDeleted([&](const Ref<IFuzzyVariable>&, const Ref<IFuzzySet>& told) {
      variable->SetOnFuzzySetDeleted(nullptr);
      deed(*variable, told);
    });
    set->SetName("b");
    EXPECT_EQ(variable->GetCount(), set->GetVariable() ? 1 : 0);
    EXPECT_TRUE(!set->GetVariable() || variable->ContainsFuzzySet(set->GetName()) == set);
    set = nullptr;
    variable = nullptr;
    EXPECT_EQ(Living(), 0);
  }
}

}  // namespace
}  // namespace fzy::test
