#pragma once

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "tests/engine/PlainCurve.h"

namespace fzy::test {

/// A point list as it is defined: one point after the other, moved and deleted one by one, sorted
/// by exchange. Each point has a number of its own by which it is followed. `Told` collects what
/// the owning set hears: 'p' for a point, 'l' for the list.
class TPlainList {
 public:
  /// A list with an owning set that has this range.
  TPlainList(double minimum, double maximum)
      : FMinimum(minimum), FMaximum(maximum), FHasSet(true) {}
  /// A free list.
  TPlainList() = default;

  std::vector<std::pair<int, TFuzzyPoint>> Items;  // each with its number
  std::string Told;

  int Count() const { return static_cast<int>(Items.size()); }
  TFuzzyPoint& At(int index) { return Items.at(static_cast<std::size_t>(index)).second; }
  int IdAt(int index) const { return Items.at(static_cast<std::size_t>(index)).first; }
  int IndexOf(int id) const {
    for (int i = 0; i < Count(); ++i)
      if (IdAt(i) == id) return i;
    return -1;
  }
  TPoints Points() const {
    TPoints points;
    for (const auto& item : Items) points.push_back(item.second);
    return points;
  }

  int Add() {
    Items.push_back({++FLastId, {Items.empty() ? 0 : Items.back().second.X + 1.0, 0}});
    const int id = FLastId;
    if (FBlocks == 0) Update(-1);
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
    if (FBlocks == 0) Update(-1);
  }
  void Move(int from, int to) {
    if (from == to) return;
    const auto item = Items.at(static_cast<std::size_t>(from));
    Items.erase(Items.begin() + from);
    Items.insert(Items.begin() + to, item);
    if (FBlocks == 0) Update(-1);
  }
  void Clear() {
    if (!std::exchange(Items, {}).empty() && FBlocks == 0) Update(-1);
  }
  void Assign(const TPoints& points) {
    BeginUpdate();
    Clear();
    Append(points);
    EndUpdate();
  }
  void Append(const TPoints& points) {
    for (const TFuzzyPoint& point : points) {
      const int id = Add();
      SetValue(id, point.X, point.Y);
    }
  }

  void BeginUpdate() { ++FBlocks; }
  void EndUpdate() {
    if (--FBlocks == 0) Update(-1);
  }

  // Setters leave a point alone that its own change has taken away.

  void SetX(int id, double x) {
    if (IndexOf(id) < 0 || x == At(IndexOf(id)).X) return;
    At(IndexOf(id)).X = Clamped(x);
    Tell(id, true, false);
  }
  void SetY(int id, double y) {
    if (IndexOf(id) < 0 || y == At(IndexOf(id)).Y) return;
    At(IndexOf(id)).Y = y < 0 ? 0 : y;
    Tell(id, false, true);
  }
  void SetValue(int id, double x, double y) {
    if (IndexOf(id) < 0) return;
    At(IndexOf(id)) = {Clamped(x), FHasSet && y < 0 ? 0 : y};
    Tell(id, true, true);
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
    int i = 1;
    int run = 0;
    while (i < Count()) {
      const bool same = Same(At(i), At(i - 1));
      if (!same) run = Close(At(i).X, At(i - 1).X) ? run + 1 : 0;
      if (same || run == 4)
        Delete(i);
      else
        ++i;
      if (run == 4) run = 0;
    }
    FDuplicatesRemoved = true;
    EndUpdate();
  }

  void Expand(int newCount) {
    if (newCount < 2 || Count() >= newCount) return;
    int missing = newCount - Count();
    int gaps = 0;
    for (int i = 0; i + 1 < Count(); ++i)
      if (IsGap(i)) ++gaps;
    BeginUpdate();
    for (int i = 0; i < Count() - 1; ++i) {
      if (!IsGap(i)) continue;
      const int n = static_cast<int>(std::ceil(double(missing) / double(gaps)));
      const double step = (At(i + 1).X - At(i).X) / (n + 1);
      --gaps;
      for (int k = 0; k < n; ++k) {
        --missing;
        AddAt(At(i).X + step, i + 1);
        ++i;
      }
    }
    EndUpdate();
  }

  void ExpandSimple(int newCount) {
    if (newCount < 2 || Count() >= newCount) return;
    if (Count() < 2 || At(Count() - 1).X <= At(0).X) return;  // no span to spread over
    const int missing = newCount - Count();
    const double step = (At(Count() - 1).X - At(0).X) / (missing + 1);
    double x = At(0).X;
    int i = 0;
    BeginUpdate();
    for (int k = 0; k < missing; ++k) {
      x += step;
      while (i < Count() - 1 && x > At(i).X) ++i;
      while (i < Count() - 1 && Close(At(i).X, x)) ++i;
      AddAt(x, i);
    }
    EndUpdate();
  }

  /// Thins flat runs, inside the caller's block.
  void RemoveFlatPoints() {
    int i = 1;
    int run = 1;
    while (i < Count()) {
      run = Close(At(i - 1).Y, At(i).Y) ? run + 1 : 0;
      run < 2 ? static_cast<void>(++i) : Delete(i - 1);
    }
    if (Count() >= 2 && Close(At(Count() - 2).Y, At(Count() - 1).Y)) Delete(Count() - 1);
  }

 private:
  bool IsGap(int i) { return At(i + 1).X - Tolerance > At(i).X; }

  double Clamped(double x) const {
    if (!FHasSet) return x;
    return x < FMinimum ? FMinimum : x > FMaximum ? FMaximum : x;
  }

  void AddAt(double x, int index) {
    const int id = Add();
    SetX(id, x);
    Move(IndexOf(id), index);
    SetY(id, PlainY(At(index - 1), At(index + 1), At(index).X));
  }

  void Update(int id) {
    if (Count() < 2) FSorted = FDuplicatesRemoved = true;
    if (id < 0 && !(FSorted && FDuplicatesRemoved)) {
      BeginUpdate();
      Sort();
      RemoveDuplicates();
      EndUpdate();
    }
    if (FHasSet) Told += id < 0 ? 'l' : 'p';
  }

  void Tell(int id, bool xChanged, bool yChanged) {
    UpdateValue(id, xChanged, yChanged);
    if (FBlocks == 0 && IndexOf(id) >= 0) Update(id);
  }

  void UpdateValue(int id, bool xChanged, bool yChanged) {
    const int index = IndexOf(id);
    if (FSorted && xChanged && Count() > 1) {
      const double x = At(index).X;
      const double prev = index > 0 ? At(index - 1).X : x;
      const double next = index + 1 < Count() ? At(index + 1).X : x;
      FSorted = x >= prev - Tolerance && next + Tolerance >= x;
    }
    FDuplicatesRemoved = FDuplicatesRemoved && FSorted;
    if (FDuplicatesRemoved && yChanged && Count() > 1) {
      if (index > 0 && Same(At(index), At(index - 1))) FDuplicatesRemoved = false;
      if (index + 1 < Count() && Same(At(index), At(index + 1))) FDuplicatesRemoved = false;
    }
    if (FBlocks > 0) return;
    Sort();
    if (Count() < 2 || IndexOf(id) < 0) return;
    if (xChanged) TrimSameX(id);
    if (Count() < 2 || IndexOf(id) < 0) return;
    CleanGroup(id);
  }

  void TrimSameX(int id) {
    const int own = IndexOf(id);
    const double x = At(own).X;
    int count = 0;
    int place = 0;
    int second = -1;
    for (int i = 0; i < Count(); ++i) {
      if (i != own) {
        if (At(i).X > x + Tolerance) break;
        if (Close(At(i).X, x)) {
          if (++count == 3) break;
          if (count == 2) second = i;
        }
      }
      place = i;
    }
    // The changed point survives its own update: where it stands last before the third of the
    // others, the second of the others gives way in its stead.
    if (count == 3) Delete(place == own ? second : place);
    if (IndexOf(id) >= 0) Move(IndexOf(id), std::min(place, Count() - 1));
  }

  int GroupStart(int id) {
    int start = IndexOf(id);
    while (start > 0 && Close(At(start - 1).X, At(IndexOf(id)).X)) --start;
    return start;
  }

  void CleanGroup(int id) {
    const double x = At(IndexOf(id)).X;
    int i = GroupStart(id) + 1;
    while (i < Count() && Close(At(i).X, x)) {
      if (!Same(At(i), At(i - 1)))
        ++i;
      else
        Delete(IndexOf(id) == i - 1 ? i : i - 1);
      if (IndexOf(id) < 0) return;  // the deletion's own update may have taken it as well
    }
    const int start = GroupStart(id);
    int end = start;
    while (end < Count() && Close(At(end).X, x)) ++end;
    if (end - start <= 3) return;
    const int own = IndexOf(id);
    Delete(own > start ? own - 1 : own + 1);
  }

  double FMinimum = 0;
  double FMaximum = 0;
  bool FHasSet = false;
  bool FSorted = true;
  bool FDuplicatesRemoved = true;
  int FBlocks = 0;
  int FLastId = 0;
};

}  // namespace fzy::test
