#include <map>

#include <gtest/gtest.h>

#include "tests/engine/PlainList.h"
#include "tests/engine/Sets.h"

// A point list against its plain twin: the same operations on both, and after each of them the same
// points, the same tellings, and every handle still on its point.

namespace fzy::test {
namespace {

/// Runs operations on a list and its twin side by side.
class TPair {
 public:
  TPair(TFuzzySetValues& list, TTellingSet* set, TPlainList plain)
      : FList(list), FSet(set), FPlain(std::move(plain)) {}

  int Count() const { return FPlain.Count(); }

  /// The handle of a point, followed from now on.
  TFuzzySetValue* Hold(int index) {
    TFuzzySetValue* value = FList[index];
    Follow(FPlain.IdAt(index), value);
    return value;
  }

  void Operate(TRandom& random) {
    const int index = Count() > 0 ? random.Below(Count()) : -1;
    const double x = RandomX(random);
    const double y = random.OneIn(10) ? -0.2 : RandomY(random);
    const int operation = random.Below(20);
    if (operation < 3) {
      AddPoint(x, y);
    } else if (operation == 3) {
      const int id = FPlain.Add();
      Follow(id, FList.Add());
    } else if (operation == 4 && index >= 0) {
      const int id = FPlain.Insert(index);
      Follow(id, FList.Insert(index));
    } else if (operation < 11 && index >= 0) {
      SetCoordinates(operation, index, x, y);
    } else if (operation < 13 && index >= 0) {
      FPlain.Delete(index);
      FList.Delete(index);
    } else if (operation == 13 && index >= 0) {
      const int to = random.Below(Count());
      TFuzzySetValue* value = Hold(index);
      FPlain.Move(index, to);
      value->SetIndex(to);
    } else if (operation < 16) {
      Toggle();
    } else {
      OperateOnAll(operation, random);
    }
  }

  void Toggle() {
    FBlock ? FPlain.End() : FPlain.Begin();
    FBlock ? FList.EndUpdate() : FList.BeginUpdate();
    FBlock = !FBlock;
  }
  bool IsBlocked() const { return FBlock; }

  void Check() {
    ASSERT_TRUE(SameBits(FList.Points(), FPlain.Points()));
    ASSERT_EQ(FSet ? FSet->Told : "", FPlain.Told);
    const TPoints points = FPlain.Points();
    ASSERT_EQ(FList.IsAscending(), std::is_sorted(points.begin(), points.end(),
                                                  [](auto& a, auto& b) { return a.X < b.X; }));
    for (auto it = FHeld.begin(); it != FHeld.end();) {
      const int index = FPlain.IndexOf(it->first);
      TFuzzySetValue* value = it->second.first;
      ASSERT_EQ(value->IsFreed(), index < 0);
      if (index < 0) {
        it = FHeld.erase(it);
        continue;
      }
      ASSERT_EQ(value->GetIndex(), index);
      ASSERT_EQ(value->GetPoint(), FPlain.At(index));
      ASSERT_EQ(FList[index], value);
      ++it;
    }
  }

 private:
  void Follow(int id, TFuzzySetValue* value) {
    ASSERT_EQ(value == nullptr, FPlain.IndexOf(id) < 0);
    if (value) FHeld.try_emplace(id, value, TPin(value));
  }

  void AddPoint(double x, double y) {
    const int id = FPlain.Add(x, y);
    Follow(id, FList.Add(x, y));
  }

  void SetCoordinates(int operation, int index, double x, double y) {
    TFuzzySetValue* value = Hold(index);
    const int id = FPlain.IdAt(index);
    if (operation < 7) {
      FPlain.SetX(id, x);
      value->SetX(x);
    } else if (operation < 9) {
      FPlain.SetY(id, y);
      value->SetY(y);
    } else {
      FPlain.SetValue(id, x, y);
      value->SetValue(x, y);
    }
  }

  void OperateOnAll(int operation, TRandom& random) {
    if (operation == 16) {
      FPlain.Sort();
      FList.Sort();
    } else if (operation == 17) {
      FPlain.RemoveDuplicates();
      FList.RemoveDuplicates();
    } else if (operation == 18) {
      const int count = Count() + random.Below(6) - 1;
      const bool simple = random.OneIn(3);
      simple ? FPlain.ExpandSimple(count) : FPlain.Expand(count);
      simple ? FList.ExpandSimple(count) : FList.Expand(count);
    } else if (random.OneIn(3)) {
      const bool append = random.OneIn(2);
      const TPoints points = RandomCurve(random, true);
      TFuzzySetValues source;
      TUpdateBlock block(source);  // never normalized: any points can be handed over
      for (const TFuzzyPoint& point : points) source.Add(point.X, point.Y);
      append ? FPlain.Append(points) : FPlain.Assign(points);
      append ? FList.Append(&source) : FList.Assign(&source);
    }
  }

  TFuzzySetValues& FList;
  TTellingSet* FSet;
  TPlainList FPlain;
  std::map<int, std::pair<TFuzzySetValue*, TPin>> FHeld;
  bool FBlock = false;
};

class PointListProperty : public testing::Test {
 protected:
  void Run(TFuzzySetValues& list, TTellingSet* set, const TPlainList& plain) {
    TPair pair(list, set, plain);
    for (int step = 0; step < 60; ++step) {
      SCOPED_TRACE("step " + std::to_string(step));
      pair.Operate(Random);
      pair.Check();
      if (HasFatalFailure()) return;
    }
    if (pair.IsBlocked()) pair.Toggle();
    pair.Check();
  }

  TRandom Random;
};

TEST_F(PointListProperty, FollowsItsPlainTwinInASetWithARange) {
  SCOPED_TRACE(Random.Trace());
  for (int round = 0; round < 1500 && !HasFatalFailure(); ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    const auto variable = MakeVariable(0.5, 4);
    auto* set =
        static_cast<TTellingSet*>(TFuzzySet::Create(variable->GetItems(), TTellingSet::Class()));
    Run(*set->GetValues(), set, TPlainList(0.5, 4));
  }
}

TEST_F(PointListProperty, FollowsItsPlainTwinInASetWithoutAVariable) {
  SCOPED_TRACE(Random.Trace());
  for (int round = 0; round < 1500 && !HasFatalFailure(); ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    const TOwned<TFuzzySet> set(TFuzzySet::Create(nullptr, TTellingSet::Class()));
    Run(*set->GetValues(), static_cast<TTellingSet*>(set.Get()),
        TPlainList(-2147483647.0, 2147483647.0));
  }
}

TEST_F(PointListProperty, FollowsItsPlainTwinOnItsOwn) {
  SCOPED_TRACE(Random.Trace());
  for (int round = 0; round < 1500 && !HasFatalFailure(); ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    TFuzzySetValues list;
    Run(list, nullptr, TPlainList());
  }
}

// Longer lists than random operations reach: whole curves in any order, written and closed.

TEST_F(PointListProperty, ABlockSortsAndThinsLikeItsPlainTwin) {
  SCOPED_TRACE(Random.Trace());
  for (int round = 0; round < 3000; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    TPoints points = RandomCurve(Random, true);
    const TPoints more = RandomCurve(Random, true);
    points.insert(points.end(), more.begin(), more.end());
    for (std::size_t i = points.size(); i > 1 && round % 2 == 0; --i)
      std::swap(points[i - 1], points[static_cast<std::size_t>(Random.Below(static_cast<int>(i)))]);

    TFuzzySetValues list;
    TPlainList plain;
    list.BeginUpdate();
    plain.Begin();
    for (const TFuzzyPoint& point : points) {
      list.Add(point.X, point.Y);
      plain.Add(point.X, point.Y);
    }
    list.EndUpdate();
    plain.End();
    ASSERT_TRUE(SameBits(list.Points(), plain.Points()));
  }
}

TEST_F(PointListProperty, ResamplesLikeItsPlainTwin) {
  SCOPED_TRACE(Random.Trace());
  for (int round = 0; round < 3000; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    const TPoints points = RandomCurve(Random, true);
    TFuzzySetValues source;
    source.BeginUpdate();
    for (const TFuzzyPoint& point : points) source.Add(point.X, point.Y);
    TFuzzySetValues list;
    TPlainList plain;
    list.Assign(&source);
    plain.Assign(points);
    const int count = Random.Below(60);
    if (round % 2 == 0) {
      list.Expand(count);
      plain.Expand(count);
    } else {
      list.ExpandSimple(count);
      plain.ExpandSimple(count);
    }
    ASSERT_TRUE(SameBits(list.Points(), plain.Points()));
  }
}

}  // namespace
}  // namespace fzy::test
