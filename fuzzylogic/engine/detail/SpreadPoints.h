#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "fuzzylogic/engine/detail/PointOrder.h"
#include "fuzzylogic/framework/Collection.h"
#include "fuzzylogic/vocabulary/FuzzyTypes.h"

namespace fzy::detail {

/// The points of a long list while they change one by one: in blocks of some hundred points with a
/// summary each, so that putting one point in its place costs a look at every summary and at a few
/// blocks, where a single array would be moved and searched from end to end. What the operations
/// make of the points is to the last bit what they make of an array.
///
/// Operations that may need memory say so; when there is none, nothing has changed.
class TSpreadPoints {
 public:
  /// Entries that somebody works on: one that changed, and one that is being deleted.
  enum class TFollowed : std::uint8_t { Changed, Deleted };
  /// A point and the object for it, if there is one.
  struct TEntry {
    TFuzzyPoint Point;
    TCollectionItem* Item = nullptr;
  };

  /// Takes copies; `items` is empty or has one entry for each point. Needs memory.
  TSpreadPoints(TFuzzyCurve points, const std::vector<TCollectionItem*>& items);
  TSpreadPoints(const TSpreadPoints&) = delete;
  TSpreadPoints& operator=(const TSpreadPoints&) = delete;
  ~TSpreadPoints() = default;

  int GetCount() const noexcept { return FCount; }
  /// Whether there are objects.
  bool HasItems() const noexcept { return FHasItems; }
  /// The places of these two are followed through all changes; -1 when the entry has gone.
  void Follow(TFollowed which, int index) noexcept { FFollowed[Ordinal(which)] = index; }
  int PlaceOf(TFollowed which) const noexcept { return FFollowed[Ordinal(which)]; }

  const TEntry& At(int index) const noexcept;
  void SetPoint(int index, const TFuzzyPoint& point) noexcept;
  /// Needs memory.
  void Append(const TEntry& entry);
  void Erase(int index) noexcept;
  /// Moves an entry; those between shift by one. Needs memory.
  void Move(int from, int to);
  /// Appends all points to `points` and, when `items` is given, all objects to `items`; both have
  /// the room.
  void CopyTo(std::vector<TFuzzyPoint>& points,
              std::vector<TCollectionItem*>* items) const noexcept;

  /// `detail::FindPlace`.
  TPlace FindPlace(int changed) const noexcept;
  /// Puts the points in the order of `SortOrder`, where few of them besides the last one are out of
  /// it; false, and nothing done, where many are. Needs memory: when there is none, some points
  /// have taken their places already, and the order of the others is what it was.
  bool Sort();
  /// Takes out what one pass finds redundant, after `drop(entry)` where there is an object.
  template <class Drop>
  void RemoveDuplicates(Drop drop) noexcept;

 private:
  /// What is known of the points of a block.
  struct TSummary {
    TFzyFloat Least = 0;
    TFzyFloat Greatest = 0;
    bool IsOrdered = true;  // no X exceeds a later one by more than the tolerance
    bool IsQuiet = true;    // nothing is redundant, were this the first block
    int Lead = 0;           // how many points in a row share X from the first one on
    int RunAtEnd = 0;       // how many before the last point share its X
  };
  struct TBlock {
    std::vector<TEntry> Entries;
    mutable TSummary Summary;
    mutable bool IsStale = true;
    TSummary BeforeLast;  // without the last point, if it is known
    bool IsBeforeKnown = false;

    int GetCount() const noexcept { return static_cast<int>(Entries.size()); }
    TFzyFloat X(int offset) const noexcept {
      return Entries[static_cast<std::size_t>(offset)].Point.X;
    }
    const TSummary& Refreshed() const noexcept {
      if (IsStale) Refresh();
      return Summary;
    }
    void Refresh() const noexcept;
    int FirstNear(TFzyFloat x) const noexcept;
    bool SharesX(int offset) const noexcept;
    void NoteAdded(int offset) noexcept;
    void NoteTaken(int offset, TFzyFloat x) noexcept;
    void NoteRuns(int offset) noexcept;
  };
  /// A place in a block.
  struct TSpot {
    std::size_t Block;
    int Offset;
  };
  /// From the first to the last point that is out of order with another one.
  struct TWindow {
    int First;
    int Last;
  };

  TSpot Find(int index) const noexcept;
  TFzyFloat XAt(int index) const noexcept { return At(index).Point.X; }
  std::size_t FirstBlockNear(TFzyFloat x) const noexcept;
  int BaseOf(std::size_t block) const noexcept;

  TSpot MakeRoom(int index);
  void Put(TSpot spot, const TEntry& entry) noexcept;
  std::size_t TakeOut(TSpot spot) noexcept;
  void DropIfEmpty(std::size_t block) noexcept;

  int FirstAbove(TFzyFloat x) const noexcept;
  TSummary SummaryForWindow(const TBlock& block) const noexcept;
  TWindow FindWindow() const noexcept;
  void PutInOrder(int index);
  bool IsInOrder(int index) const noexcept;
  bool IsQuietAround(int index) const noexcept;
  static bool IsQuietAfter(const TBlock& block, TRedundancy& pass) noexcept;

  std::vector<TBlock> FBlocks;  // none of them empty
  std::vector<int> FCounts;     // of points in each block
  int FCount = 0;
  bool FHasItems;
  bool FIsOrdered = false;  // known: all but the last point
  bool FIsQuiet = false;    // known: a pass would take nothing out
  std::array<int, 2> FFollowed{-1, -1};
  mutable TSpot FNear{
      0, 0};  // where an entry was asked for: a block, and the index of its first point
};

template <class Drop>
void TSpreadPoints::RemoveDuplicates(Drop drop) noexcept {
  if (FIsQuiet) return;
  TRedundancy pass;
  const std::array<int, 2> before = FFollowed;
  const int count = FCount;
  int index = 0;
  FCount = 0;
  for (TBlock& block : FBlocks) {
    if (IsQuietAfter(block, pass)) {
      index += block.GetCount();
    } else {
      block.IsStale = true;
      block.IsBeforeKnown = false;
      std::erase_if(block.Entries, [&](const TEntry& entry) {
        const int at = index++;
        if (!pass.IsRedundant(entry.Point)) return false;
        for (std::size_t i = 0; i < before.size(); ++i)
          FFollowed[i] = before[i] == at ? -1 : FFollowed[i] - (before[i] > at ? 1 : 0);
        if (entry.Item) drop(entry);
        return true;
      });
    }
    FCount += block.GetCount();
  }
  FIsQuiet = FCount == count;
  std::erase_if(FBlocks, [](const TBlock& block) { return block.Entries.empty(); });
  FCounts.resize(FBlocks.size());
  std::ranges::transform(FBlocks, FCounts.begin(), &TBlock::GetCount);
  FNear = {0, 0};
}

}  // namespace fzy::detail
