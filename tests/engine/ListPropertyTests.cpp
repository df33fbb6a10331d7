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

  void Operate(TRandom& random) {
    const int count = FPlain.Count();
    const int index = count > 0 ? random.Below(count) : -1;
    const double x = RandomX(random);
    const double y = random.OneIn(10) ? -0.2 : RandomY(random);
    const int operation = random.Below(20);
    if (operation < 3) {
      const int id = FPlain.Add(x, y);
      Follow(id, FList.Add(x, y));
    } else if (operation == 3) {
      const int id = FPlain.Add();
      Follow(id, FList.Add());
    } else if (operation < 6) {
      Toggle();
    } else if (operation < 14) {
      if (index >= 0) OperateOnPoint(operation, index, random.Below(count), x, y);
    } else {
      OperateOnAll(operation, random);
    }
  }

  void Toggle() {
    Both([this](auto& list) { FBlock ? list.EndUpdate() : list.BeginUpdate(); });
    FBlock = !FBlock;
  }
  bool IsBlocked() const { return FBlock; }

  void Check() {
    const TPoints points = FPlain.Points();
    ASSERT_TRUE(SameBits(FList.Points(), points));
    ASSERT_EQ(FSet ? FSet->Told : "", FPlain.Told);
    ASSERT_EQ(FList.IsAscending(), std::is_sorted(points.begin(), points.end(),
                                                  [](auto& a, auto& b) { return a.X < b.X; }));
    std::erase_if(FHeld, [this](const auto& held) {
      const int index = FPlain.IndexOf(held.first);
      const TFuzzySetValue* value = held.second.first;
      EXPECT_EQ(value->IsFreed(), index < 0);
      if (index < 0) return true;
      EXPECT_EQ(value->GetIndex(), index);
      EXPECT_EQ(value->GetPoint(), FPlain.At(index));
      EXPECT_EQ(FList[index], value);
      return false;
    });
  }

 private:
  template <class Operation>
  void Both(Operation operation) {
    operation(FPlain);
    operation(FList);
  }

  void Follow(int id, TFuzzySetValue* value) {
    ASSERT_EQ(value == nullptr, FPlain.IndexOf(id) < 0);
    if (value) FHeld.try_emplace(id, value, TPin(value));
  }

  void OperateOnPoint(int operation, int index, int to, double x, double y) {
    if (operation == 6) {
      const int id = FPlain.Insert(index);
      return Follow(id, FList.Insert(index));
    }
    if (operation == 7) return Both([index](auto& list) { list.Delete(index); });
    const int id = FPlain.IdAt(index);
    TFuzzySetValue* value = FList[index];
    Follow(id, value);
    if (operation == 8) {
      FPlain.Move(index, to);
      value->SetIndex(to);
    } else if (operation < 11) {
      FPlain.SetX(id, x);
      value->SetX(x);
    } else if (operation < 13) {
      FPlain.SetY(id, y);
      value->SetY(y);
    } else {
      FPlain.SetValue(id, x, y);
      value->SetValue(x, y);
    }
  }

  void OperateOnAll(int operation, TRandom& random) {
    const int count = FPlain.Count() + random.Below(6) - 1;
    if (operation == 14) return Both([](auto& list) { list.Sort(); });
    if (operation == 15) return Both([](auto& list) { list.RemoveDuplicates(); });
    if (operation == 16) return Both([count](auto& list) { list.Expand(count); });
    if (operation == 17) return Both([count](auto& list) { list.ExpandSimple(count); });
    if (random.OneIn(3)) {
      const TPoints points = RandomCurve(random, true);
      TFuzzySetValues source;
      TUpdateBlock block(source);  // never normalized: any points can be handed over
      for (const TFuzzyPoint& point : points) source.Add(point.X, point.Y);
      operation == 18 ? FPlain.Append(points) : FPlain.Assign(points);
      operation == 18 ? FList.Append(&source) : FList.Assign(&source);
    }
  }

  TFuzzySetValues& FList;
  TTellingSet* FSet;
  TPlainList FPlain;
  std::map<int, std::pair<TFuzzySetValue*, TPin>> FHeld;
  bool FBlock = false;
};

TEST(ListProperty, FollowsItsPlainTwinThroughAnyOperations) {
  TRandom random;
  SCOPED_TRACE(random.Trace());
  const auto variable = MakeVariable(0.5, 4);
  for (int round = 0; round < 4500; ++round) {
    TFuzzySetValues alone;
    const bool free = round % 3 == 2;  // else in a set, with a range or without
    const TOwned<TFuzzySet> owner(
        TFuzzySet::Create(round % 3 == 0 ? variable->GetItems() : nullptr, TTellingSet::Class()));
    auto* set = free ? nullptr : static_cast<TTellingSet*>(owner.Get());
    TPair pair(free ? alone : *owner->GetValues(), set,
               free             ? TPlainList()
               : round % 3 == 0 ? TPlainList(0.5, 4)
                                : TPlainList(-2147483647.0, 2147483647.0));
    for (int step = 0; step < 61; ++step) {
      SCOPED_TRACE("round " + std::to_string(round) + ", step " + std::to_string(step));
      if (step < 60)
        pair.Operate(random);
      else if (pair.IsBlocked())
        pair.Toggle();
      pair.Check();
      ASSERT_FALSE(testing::Test::HasFailure());
    }
  }
}

// Longer lists than random operations reach: curves in any order, written in one block, resampled.
TEST(ListProperty, SortsThinsAndResamplesLikeItsPlainTwin) {
  TRandom random;
  SCOPED_TRACE(random.Trace());
  for (int round = 0; round < 4000; ++round) {
    TPoints points = RandomCurve(random, true);
    if (round % 4 > 1) {
      const TPoints more = RandomCurve(random, true);
      points.insert(points.end(), more.begin(), more.end());
    }
    for (std::size_t i = points.size(); i > 1 && round % 4 == 3; --i)
      std::swap(points[i - 1], points[random.Bits() % i]);
    TFuzzySetValues list;
    Fill(list, points);
    TPlainList plain;
    plain.BeginUpdate();
    for (const TFuzzyPoint& point : points) plain.Add(point.X, point.Y);
    plain.EndUpdate();
    ASSERT_TRUE(SameBits(list.Points(), plain.Points())) << "round " << round;
    const int count = random.Below(60);
    const bool simple = random.OneIn(2);
    simple ? list.ExpandSimple(count) : list.Expand(count);
    simple ? plain.ExpandSimple(count) : plain.Expand(count);
    ASSERT_TRUE(SameBits(list.Points(), plain.Points())) << "round " << round << ", " << count;
  }
}

}  // namespace
}  // namespace fzy::test
