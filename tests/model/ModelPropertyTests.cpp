#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fuzzylogic/model/FuzzyLogic.h"
#include "tests/support/Random.h"

// Random sequences of operations on a component, held against a plain model of names and indices.

namespace fzy::test {
namespace {

struct TPlainVariable {
  std::string Name;
  std::vector<std::string> Sets;
  int ItemIndex = -1;
  TFzyFloat Threshold = 0;

  void Add(const std::string& set) {
    Sets.push_back(set);
    ItemIndex = Size() - 1;
  }
  void PullBack() { ItemIndex = std::min(ItemIndex, Size() - 1); }
  int Size() const { return static_cast<int>(Sets.size()); }
};

struct TPlainModel {
  std::vector<TPlainVariable> Variables;
  TFzyFloat Threshold = 0.01;
  bool AutoTerms = true;

  void Join(TPlainVariable variable) {
    variable.Threshold = Threshold;
    for (const char* term : {"low", "medium", "high"}) {
      const auto& sets = variable.Sets;
      if (AutoTerms && std::find(sets.begin(), sets.end(), term) == sets.end()) variable.Add(term);
    }
    Variables.push_back(variable);
  }
};

template <class Item>
void Move(std::vector<Item>& list, int from, int to) {
  const Item item = list[static_cast<std::size_t>(from)];
  list.erase(list.begin() + from);
  list.insert(list.begin() + to, item);
}

class TRun {
 public:
  explicit TRun(TRandom& random) : FRandom(random) {}

  void Step() {
    const int count = static_cast<int>(FPlain.Variables.size());
    if (count == 0 || FRandom.OneIn(8)) return OnList(count);
    const int index = FRandom.Below(count);
    OnVariable(FPlain.Variables[static_cast<std::size_t>(index)],
               FFuzzy.GetItems()->GetItem(index));
  }

  void Compare() {
    TFuzzyVariables* list = FFuzzy.GetItems();
    ASSERT_EQ(list->GetCount(), static_cast<int>(FPlain.Variables.size()));
    for (TFuzzyVariable* variable : *list) {
      const TPlainVariable& plain =
          FPlain.Variables[static_cast<std::size_t>(variable->GetIndex())];
      EXPECT_EQ(variable->GetName(), plain.Name);
      EXPECT_EQ(variable->GetItemIndex(), plain.ItemIndex);
      EXPECT_EQ(variable->GetThreshold(), plain.Threshold);
      ASSERT_EQ(variable->GetItems()->GetCount(), plain.Size());
      for (TFuzzySet* set : *variable->GetItems())
        EXPECT_EQ(set->GetName(), plain.Sets[static_cast<std::size_t>(set->GetIndex())]);
    }
  }

 private:
  std::string Name() {
    static constexpr const char* names[] = {"a", "b", "c", "low", "medium", ""};
    return names[FRandom.Below(6)];
  }

  void OnList(int count) {
    TFuzzyVariables* list = FFuzzy.GetItems();
    auto& plain = FPlain.Variables;
    const int operation = FRandom.Below(6);
    if (operation == 0) {
      const int to = FRandom.Below(count + 1);
      list->Insert(to);
      FPlain.Join({});
      return Move(plain, count, to);
    }
    if (operation == 1) return FFuzzy.SetAutoTerms(FPlain.AutoTerms = !FPlain.AutoTerms);
    if (operation == 2) {
      FPlain.Threshold = FRandom.Unit();
      for (TPlainVariable& variable : plain) variable.Threshold = FPlain.Threshold;
      return FFuzzy.SetThreshold(FPlain.Threshold);
    }
    if (operation == 3 && count >= 6) {
      plain.clear();
      return list->Clear();
    }
    const std::string name = Name();
    list->Add(name);
    FPlain.Join({});
    plain.back().Name = name;
  }

  void OnVariable(TPlainVariable& plain, TFuzzyVariable* variable) {
    auto& variables = FPlain.Variables;
    const int at = variable->GetIndex();
    const int count = static_cast<int>(variables.size());
    const int other = FRandom.Below(count);
    switch (FRandom.Below(10)) {
      case 0:
        variable->Free();
        variables.erase(variables.begin() + at);
        break;
      case 1:
        variable->SetIndex(other);
        Move(variables, at, other);
        break;
      case 2: {  // out and in again
        variable->SetCollection(nullptr);
        variable->SetCollection(FFuzzy.GetItems());
        const TPlainVariable moved = plain;
        variables.erase(variables.begin() + at);
        FPlain.Join(moved);
        break;
      }
      case 3:
        variable->Assign(FFuzzy.GetItems()->GetItem(other));
        plain = variables[static_cast<std::size_t>(other)];
        break;
      case 4:
        plain.Threshold = FRandom.Unit();
        variable->SetThreshold(plain.Threshold);
        break;
      case 5: {
        const int index = FRandom.Below(8) - 2;
        if (index >= plain.Size() && index != plain.ItemIndex) {
          EXPECT_THROW(variable->SetItemIndex(index), EFzyException);
        } else {
          variable->SetItemIndex(index);
          plain.ItemIndex = index;
        }
        break;
      }
      default:
        OnSets(plain, variable->GetItems(), variables[static_cast<std::size_t>(other)],
               FFuzzy.GetItems()->GetItem(other)->GetItems());
    }
  }

  void OnSets(TPlainVariable& plain, TFuzzySets* sets, TPlainVariable& otherPlain,
              TFuzzySets* others) {
    const int count = plain.Size();
    const std::string name = Name();
    if (count == 0 || (count < 8 && FRandom.OneIn(2))) {
      sets->Add(name);
      return plain.Add(name);
    }
    const int from = FRandom.Below(count);
    const int to = FRandom.Below(count);
    std::string& moved = plain.Sets[static_cast<std::size_t>(from)];
    const int operation = FRandom.Below(6);
    if (operation == 0) {
      sets->Insert(to);
      plain.Sets.insert(plain.Sets.begin() + to, "");
    } else if (operation == 1) {
      sets->GetItem(from)->SetIndex(to);
      Move(plain.Sets, from, to);
    } else if (operation == 2) {
      sets->GetItem(from)->SetName(name);
      moved = name;
    } else if (operation == 3 && others != sets) {
      sets->GetItem(from)->SetCollection(others);
      otherPlain.Sets.push_back(moved);
      otherPlain.PullBack();
      plain.Sets.erase(plain.Sets.begin() + from);
    } else if (operation == 4 && FRandom.OneIn(4)) {
      sets->Clear();
      plain.Sets.clear();
    } else if (operation == 5) {
      sets->Delete(from);
      plain.Sets.erase(plain.Sets.begin() + from);
    }
    plain.PullBack();
  }

  TRandom& FRandom;
  TFuzzyLogic FFuzzy;
  TPlainModel FPlain;
};

TEST(Model, FollowsAPlainOneThroughRandomOperations) {
  TRandom random;
  SCOPED_TRACE(random.Trace());
  for (int run = 0; run < 40; ++run) {
    TRun steps(random);
    for (int step = 0; step < 200; ++step) {
      steps.Step();
      steps.Compare();
      ASSERT_FALSE(testing::Test::HasFailure()) << "run " << run << ", step " << step;
    }
  }
}

}  // namespace
}  // namespace fzy::test
