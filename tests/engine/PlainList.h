#pragma once

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "tests/engine/PlainCurve.h"

namespace fzy::test {

/// A point list as it is defined: one point after the other, moved and deleted one by one, sorted
/// by exchange. Each point has a number of its own by which it is followed. `Told` collects what
/// the owning set hears: 'p' for a point, 'l' for the list.
class TPlainList {
 public:
  struct TItem : TFuzzyPoint {
    int Id;
  };

  /// A list with an owning set that has this range; without a range, a free list.
  explicit TPlainList(double minimum = -std::numeric_limits<double>::infinity(),
                      double maximum = std::numeric_limits<double>::infinity())
      : FMinimum(minimum), FMaximum(maximum), FHasSet(std::isfinite(minimum)) {}

  std::vector<TItem> Items;
  std::string Told;

  int Count() const { return static_cast<int>(Items.size()); }
  TItem& At(int index) { return Items.at(static_cast<std::size_t>(index)); }
  int IndexOf(int id) const {
    const auto found = std::ranges::find(Items, id, &TItem::Id);
    return found == Items.end() ? -1 : static_cast<int>(found - Items.begin());
  }
  TPoints Points() const { return {Items.begin(), Items.end()}; }

  int Add() {
    const int id = ++FLastId;
    Items.push_back({{Items.empty() ? 0 : Items.back().X + 1.0, 0}, id});
    Changed();
    return id;
  }
  int Add(double x, double y) {
    const int id = Add();
    SetX(id, x);
    SetY(id, y);
    return id;
  }
  int Insert(int index) {
    const int id = Add();
    Move(IndexOf(id), index);
    return id;
  }
  void Delete(int index) {
    Items.erase(Items.begin() + index);
    Changed();
  }
  void Move(int from, int to) {
    if (from == to) return;
    const TItem item = At(from);
    Items.erase(Items.begin() + from);
    Items.insert(Items.begin() + to, item);
    Changed();
  }
  void Assign(const TPoints& points) {
    BeginUpdate();
    Items.clear();
    Append(points);
    EndUpdate();
  }
  void Append(const TPoints& points) {
    for (const TFuzzyPoint& point : points) SetValue(Add(), point.X, point.Y);
  }

  void BeginUpdate() { ++FBlocks; }
  void EndUpdate() {
    --FBlocks;
    Changed();
  }

  // Setters leave a point alone that its own change has taken away.

  void SetX(int id, double x) {
    const int i = IndexOf(id);
    if (i >= 0 && x != At(i).X) Change(id, {Clamped(x), At(i).Y}, true, false);
  }
  void SetY(int id, double y) {
    const int i = IndexOf(id);
    if (i >= 0 && y != At(i).Y) Change(id, {At(i).X, std::max(y, 0.0)}, false, true);
  }
  void SetValue(int id, double x, double y) {
    if (IndexOf(id) < 0) return;
    Change(id, {Clamped(x), FHasSet ? std::max(y, 0.0) : y}, true, true);
  }

  void Sort() {
    if (FSorted) return;
    BeginUpdate();
    for (int i = 0; i < Count(); ++i)
      for (int j = i + 1; j < Count(); ++j)
        if (At(i).X > At(j).X + Tolerance) Move(j, i);
    FSorted = true;
    EndUpdate();
  }

  void RemoveDuplicates() {
    if (FDuplicatesRemoved) return;
    BeginUpdate();
    for (int i = 1, run = 0; i < Count(); run %= 4) {
      const bool same = Same(At(i), At(i - 1));
      if (!same) run = Close(At(i).X, At(i - 1).X) ? run + 1 : 0;
      same || run == 4 ? Delete(i) : static_cast<void>(++i);
    }
    FDuplicatesRemoved = true;
    EndUpdate();
  }

  void Expand(int newCount) {
    if (newCount < 2 || Count() >= newCount) return;
    const auto isGap = [this](int i) { return At(i + 1).X - Tolerance > At(i).X; };
    int missing = newCount - Count(), gaps = 0;
    for (int i = 0; i + 1 < Count(); ++i) gaps += isGap(i) ? 1 : 0;
    BeginUpdate();
    for (int i = 0; i + 1 < Count(); ++i) {
      if (!isGap(i)) continue;
      const int n = static_cast<int>(std::ceil(double(missing) / double(gaps--)));
      const double step = (At(i + 1).X - At(i).X) / (n + 1);
      missing -= n;
      for (const int end = i + n; i < end; ++i) AddAt(At(i).X + step, i + 1);
    }
    EndUpdate();
  }

  /// Thins flat runs, inside the caller's block.
  void RemoveFlatPoints() {
    for (int i = 1, run = 1; i < Count();) {
      run = Close(At(i - 1).Y, At(i).Y) ? run + 1 : 0;
      run < 2 ? static_cast<void>(++i) : Delete(i - 1);
    }
    if (Count() >= 2 && Close(At(Count() - 2).Y, At(Count() - 1).Y)) Delete(Count() - 1);
  }

 private:
  double Clamped(double x) const { return std::clamp(x, FMinimum, FMaximum); }

  void AddAt(double x, int index) {
    const int id = Add();
    SetX(id, x);
    Move(IndexOf(id), index);
    SetY(id, PlainY(At(index - 1), At(index + 1), At(index).X));
  }

  void Changed() {
    if (FBlocks == 0) Update('l');
  }

  void Update(char what) {
    if (Count() < 2) FSorted = FDuplicatesRemoved = true;
    if (what == 'l' && !(FSorted && FDuplicatesRemoved)) {
      BeginUpdate();
      Sort();
      RemoveDuplicates();
      EndUpdate();
    }
    if (FHasSet) Told += what;
  }

  void Change(int id, TFuzzyPoint point, bool xChanged, bool yChanged) {
    const int i = IndexOf(id);
    static_cast<TFuzzyPoint&>(At(i)) = point;
    const bool first = i == 0, last = i + 1 == Count();
    if (xChanged)
      FSorted = FSorted && (first || point.X >= At(i - 1).X - Tolerance) &&
                (last || At(i + 1).X + Tolerance >= point.X);
    FDuplicatesRemoved = FDuplicatesRemoved && FSorted;
    if (yChanged)
      FDuplicatesRemoved = FDuplicatesRemoved && (first || !Same(point, At(i - 1))) &&
                           (last || !Same(point, At(i + 1)));
    if (FBlocks > 0) return;
    Sort();
    if (xChanged) TrimSameX(id);
    CleanGroup(id);
    if (IndexOf(id) >= 0) Update('p');
  }

  void TrimSameX(int id) {
    if (Count() < 2 || IndexOf(id) < 0) return;
    const int own = IndexOf(id);
    const double x = At(own).X;
    int others = 0, place = 0, second = -1;
    for (int i = 0; i < Count(); place = i++) {
      if (i == own) continue;
      if (At(i).X > x + Tolerance || (Close(At(i).X, x) && ++others == 3)) break;
      if (others == 2 && second < 0) second = i;
    }
    // The changed point survives its own update: where it stands last before the third of the
    // others, the second of the others gives way in its stead.
    if (others == 3) Delete(place == own ? second : place);
    if (IndexOf(id) >= 0) Move(IndexOf(id), std::min(place, Count() - 1));
  }

  void CleanGroup(int id) {
    if (Count() < 2 || IndexOf(id) < 0) return;
    const double x = At(IndexOf(id)).X;
    const auto inGroup = [&](int i) { return i >= 0 && i < Count() && Close(At(i).X, x); };
    int start = IndexOf(id);
    while (inGroup(start - 1)) --start;
    for (int i = start + 1; inGroup(i);) {
      const bool same = Same(At(i), At(i - 1));
      same ? Delete(IndexOf(id) == i - 1 ? i : i - 1) : static_cast<void>(++i);
      if (IndexOf(id) < 0) return;  // the deletion's own update may have taken it as well
    }
    for (start = IndexOf(id); inGroup(start - 1);) --start;
    int end = start;
    while (inGroup(end)) ++end;
    const int own = IndexOf(id);
    if (end - start > 3) Delete(own > start ? own - 1 : own + 1);
  }

  double FMinimum, FMaximum;
  bool FHasSet, FSorted = true, FDuplicatesRemoved = true;
  int FBlocks = 0, FLastId = 0;
};

}  // namespace fzy::test
