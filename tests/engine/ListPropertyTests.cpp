#include <array>
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
    const int count = FPlain.Count(), more = count + random.Below(6) - 1;
    const double x = RandomX(random), y = random.OneIn(10) ? -0.2 : RandomY(random);
    const int operation = random.Below(20);
    if (operation < 3) return Follow(FPlain.Add(x, y), FList.Add(x, y));
    if (operation == 3) return Follow(FPlain.Add(), FList.Add());
    if (operation < 6) return Toggle();
    if (operation == 6) return Both([](auto& list) { list.Sort(); });
    if (operation == 7) return Both([](auto& list) { list.RemoveDuplicates(); });
    if (operation < 10) return Both([more](auto& list) { list.Expand(more); });
    if (operation == 10) return TakeOver(RandomCurve(random, true), random.OneIn(2));
    if (count > 0) OperateOnPoint(operation, random.Below(count), random.Below(count), x, y);
  }

  /// Appends a point, one coordinate after the other or both at once inside a block.
  void Add(double x, double y, bool atOnce) {
    if (!atOnce) return Follow(FPlain.Add(x, y), FList.Add(x, y));
    Both([](auto& list) { list.BeginUpdate(); });
    FPlain.SetValue(FPlain.Add(), x, y);
    FList.Add()->SetValue(x, y);
    Both([](auto& list) { list.EndUpdate(); });
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
    ASSERT_EQ(FList.IsAscending(), std::ranges::is_sorted(points, {}, &TFuzzyPoint::X));
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

  void TakeOver(const TPoints& points, bool assign) {
    TFuzzySetValues source;
    TUpdateBlock block(source);  // never normalized: any points can be handed over
    for (const TFuzzyPoint& point : points) source.Add(point.X, point.Y);
    assign ? FPlain.Assign(points) : FPlain.Append(points);
    assign ? FList.Assign(&source) : FList.Append(&source);
  }

  void OperateOnPoint(int operation, int index, int to, double x, double y) {
    if (operation == 11) return Follow(FPlain.Insert(index), FList.Insert(index));
    if (operation == 12) return Both([index](auto& list) { list.Delete(index); });
    const int id = FPlain.At(index).Id;
    TFuzzySetValue* value = FList[index];
    Follow(id, value);
    if (operation == 13) {
      FPlain.Move(index, to);
      value->SetIndex(to);
    } else if (operation < 16) {
      FPlain.SetX(id, x);
      value->SetX(x);
    } else if (operation < 18) {
      FPlain.SetY(id, y);
      value->SetY(y);
    } else {
      FPlain.SetValue(id, x, y);
      value->SetValue(x, y);
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
  const TPlainList plain[] = {TPlainList(0.5, 4), TPlainList(-2147483647.0, 2147483647.0),
                              TPlainList()};
  for (int round = 0; round < 4500; ++round) {
    TFuzzySetValues alone;
    const int kind = round % 3;  // in a set with a range, in one without, or free
    const TOwned<TFuzzySet> owner(
        TFuzzySet::Create(kind == 0 ? variable->GetItems() : nullptr, TTellingSet::Class()));
    auto* set = kind == 2 ? nullptr : static_cast<TTellingSet*>(owner.Get());
    TPair pair(set ? *owner->GetValues() : alone, set, plain[kind]);
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
    TPlainList plain;
    Fill(list, points);
    plain.BeginUpdate();
    for (const TFuzzyPoint& point : points) plain.Add(point.X, point.Y);
    plain.EndUpdate();
    ASSERT_TRUE(SameBits(list.Points(), plain.Points())) << "round " << round;
    const int count = random.Below(60);
    list.Expand(count);
    plain.Expand(count);
    ASSERT_TRUE(SameBits(list.Points(), plain.Points())) << "round " << round << ", " << count;
  }
}

/// X of the i-th of `count` points, in one of seven orders.
double OrderedX(TRandom& random, int order, int i, int count, double step) {
  switch (order) {
    case 0:
      return i * step;
    case 1:
      return (count - i) * step;
    case 2:
      return (i % 2 ? count - i / 2 : i / 2) * step;  // from both ends
    case 3:
      return (i / 2) * step + (i % 2 ? 1000 : 0);  // into two stretches
    case 4:
      return (i + (i % 2 ? -1 : 1)) * step;
    case 5:
      return (i % 7 ? 5 : i) * step;  // mostly one X
    default:
      return random.Below(count) * step;
  }
}

// Long lists stand in blocks while they change: the same points, tellings and handles whatever the
// order, also where X chain up within the tolerance, and whether or not somebody looks meanwhile.
TEST(ListProperty, LongListsChangeLikeTheirPlainTwin) {
  TRandom random;
  SCOPED_TRACE(random.Trace());
  for (int round = 0; round < 7 * 4 * 2; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    const double step =
        std::array{1.0, 0.00006, 0.00003, 0.000011}[static_cast<std::size_t>(round / 7 % 4)];
    const bool atOnce = round >= 28;
    const int count = random.OneIn(3) ? 1100 : 300;
    const TOwned<TFuzzyVariable> variable = MakeVariable(-10, 3000);
    TTellingSet& set =
        static_cast<TTellingSet&>(*TFuzzySet::Create(variable->GetItems(), TTellingSet::Class()));
    TPair pair(*set.GetValues(), &set, TPlainList(-10, 3000));
    for (int i = 0; i < count; ++i) {
      const double x = OrderedX(random, round % 7, i, count, step), y = random.Below(9) / 8.0;
      pair.Add(x, y, atOnce);
      if (random.OneIn(40)) pair.Operate(random);
      if (random.OneIn(i < 100 ? 20 : 200)) pair.Check();
      ASSERT_FALSE(testing::Test::HasFailure()) << "point " << i;
    }
    if (pair.IsBlocked()) pair.Toggle();
    pair.Check();
    ASSERT_FALSE(testing::Test::HasFailure());
  }
}

}  // namespace
}  // namespace fzy::test
