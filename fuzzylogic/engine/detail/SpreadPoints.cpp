#include "fuzzylogic/engine/detail/SpreadPoints.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace fzy::detail {
namespace {

constexpr std::size_t MostOfABlock = 512;
constexpr int WidestWindow = 128;  // beyond it sorting all points costs less
constexpr TFzyFloat Infinity = std::numeric_limits<TFzyFloat>::infinity();

}  // namespace

TSpreadPoints::TSpreadPoints(TFuzzyCurve points, const std::vector<TCollectionItem*>& items)
    : FCount(static_cast<int>(points.size())), FHasItems(!items.empty()) {
  constexpr std::size_t share = MostOfABlock / 2;
  FBlocks.resize((points.size() + share - 1) / share);
  for (std::size_t i = 0; i < points.size(); ++i) {
    TBlock& block = FBlocks[i / share];
    if (block.Entries.empty()) block.Entries.reserve(MostOfABlock);
    block.Entries.push_back({points[i], items.empty() ? nullptr : items[i]});
  }
  FCounts.resize(FBlocks.size());
  std::ranges::transform(FBlocks, FCounts.begin(), &TBlock::GetCount);
}

// Entries by index

/// Goes on from where it was asked last: one change concerns a few places close to each other.
TSpreadPoints::TSpot TSpreadPoints::Find(int index) const noexcept {
  const int last = FCount - FCounts.back();
  if (index >= last) return {FBlocks.size() - 1, index - last};
  auto& [block, base] = FNear;
  while (index < base) base -= FCounts[--block];
  while (index >= base + FCounts[block]) base += FCounts[block++];
  return {block, index - base};
}

int TSpreadPoints::BaseOf(std::size_t block) const noexcept {
  return std::reduce(FCounts.begin(), FCounts.begin() + static_cast<std::ptrdiff_t>(block));
}

/// A block before which every X lies below `x` by more than the tolerance.
std::size_t TSpreadPoints::FirstBlockNear(TFzyFloat x) const noexcept {
  if (!FIsOrdered) return 0;
  // Before a point that lies below by three times as much none can lie less below.
  const auto found = std::partition_point(
      FBlocks.begin(), FBlocks.end() - 1,
      [x](const TBlock& block) { return block.Refreshed().Greatest < x - 3 * FuzzyTolerance; });
  return static_cast<std::size_t>(found - FBlocks.begin());
}

const TSpreadPoints::TEntry& TSpreadPoints::At(int index) const noexcept {
  const TSpot spot = Find(index);
  return FBlocks[spot.Block].Entries[static_cast<std::size_t>(spot.Offset)];
}

void TSpreadPoints::SetPoint(int index, const TFuzzyPoint& point) noexcept {
  const TSpot spot = Find(index);
  TBlock& block = FBlocks[spot.Block];
  TFuzzyPoint& stored = block.Entries[static_cast<std::size_t>(spot.Offset)].Point;
  const bool sameX = stored.X == point.X;
  stored = point;
  if (block.IsBeforeKnown && spot.Offset == block.GetCount() - 1) {
    block.Summary = block.BeforeLast;
    block.NoteAdded(spot.Offset);
  } else {
    block.IsBeforeKnown = false;
    block.IsStale = block.IsStale || !sameX || !block.Summary.IsQuiet;
    if (!block.IsStale) block.NoteRuns(spot.Offset);
  }
  FIsOrdered = FIsOrdered && (sameX || index == FCount - 1);
  FIsQuiet = FIsQuiet && IsQuietAround(index);
}

/// The place for an entry before the one at `index` (or at the end) in a block that has room.
TSpreadPoints::TSpot TSpreadPoints::MakeRoom(int index) {
  TSpot spot{0, 0};
  if (index > 0) {
    spot = Find(index - 1);
    ++spot.Offset;
  }
  if (!FBlocks.empty() && FBlocks[spot.Block].Entries.size() < MostOfABlock) return spot;

  TBlock next;
  next.Entries.reserve(MostOfABlock);
  FBlocks.reserve(FBlocks.size() + 1);
  FCounts.reserve(FCounts.size() + 1);
  FNear = {0, 0};
  // At the end a new block takes the entry alone, so that blocks filled in order stay full.
  const std::size_t at = FBlocks.empty() ? 0 : spot.Block + 1;
  const int moved = index == FCount ? 0 : FBlocks[spot.Block].GetCount() / 2;
  if (moved > 0) {
    TBlock& full = FBlocks[spot.Block];
    next.Entries.assign(full.Entries.end() - moved, full.Entries.end());
    full.Entries.resize(full.Entries.size() - next.Entries.size());
    full.IsStale = true;
    full.IsBeforeKnown = false;
    FCounts[spot.Block] -= moved;
  }
  FBlocks.insert(FBlocks.begin() + static_cast<std::ptrdiff_t>(at), std::move(next));
  FCounts.insert(FCounts.begin() + static_cast<std::ptrdiff_t>(at), moved);
  if (moved == 0) return {at, 0};
  const int kept = FCounts[spot.Block];
  return spot.Offset <= kept ? spot : TSpot{at, spot.Offset - kept};
}

void TSpreadPoints::Put(TSpot spot, const TEntry& entry) noexcept {
  TBlock& block = FBlocks[spot.Block];
  const bool isLast = spot.Offset == block.GetCount();
  block.IsBeforeKnown = isLast;
  if (isLast) block.BeforeLast = block.Refreshed();
  block.Entries.insert(block.Entries.begin() + spot.Offset, entry);
  block.NoteAdded(spot.Offset);
  ++FCount;
  ++FCounts[spot.Block];
  if (spot.Block < FNear.Block) ++FNear.Offset;
}

void TSpreadPoints::Append(const TEntry& entry) {
  const TSpot spot = MakeRoom(FCount);
  FIsOrdered = FIsOrdered && (FCount == 0 || IsInOrder(FCount - 1));
  Put(spot, entry);
  FHasItems = FHasItems || entry.Item;
  FIsQuiet = FIsQuiet && IsQuietAround(FCount - 1);
}

void TSpreadPoints::Erase(int index) noexcept {
  DropIfEmpty(TakeOut(Find(index)));
  for (int& followed : FFollowed)
    followed = followed == index ? -1 : followed - (followed > index ? 1 : 0);
  FIsQuiet = FIsQuiet && IsQuietAround(index);
}

/// The result is the block that it was in, which may be empty now.
std::size_t TSpreadPoints::TakeOut(TSpot spot) noexcept {
  TBlock& block = FBlocks[spot.Block];
  const bool isLast = spot.Offset == block.GetCount() - 1;
  const TFzyFloat x = block.X(spot.Offset);
  block.Entries.erase(block.Entries.begin() + spot.Offset);
  if (isLast && block.IsBeforeKnown)
    block.Summary = block.BeforeLast;
  else
    block.NoteTaken(spot.Offset, x);
  block.IsBeforeKnown = false;
  --FCount;
  --FCounts[spot.Block];
  if (spot.Block < FNear.Block) --FNear.Offset;
  return spot.Block;
}

void TSpreadPoints::DropIfEmpty(std::size_t block) noexcept {
  if (!FBlocks[block].Entries.empty()) return;
  FBlocks.erase(FBlocks.begin() + static_cast<std::ptrdiff_t>(block));
  FCounts.erase(FCounts.begin() + static_cast<std::ptrdiff_t>(block));
  FNear = {0, 0};
}

void TSpreadPoints::Move(int from, int to) {
  if (from == to) return;
  TSpot place = MakeRoom(from < to ? to + 1 : to);
  const TSpot source = Find(from);
  const TEntry entry = FBlocks[source.Block].Entries[static_cast<std::size_t>(source.Offset)];
  if (source.Block == place.Block && source.Offset < place.Offset) --place.Offset;
  TakeOut(source);
  Put(place, entry);
  DropIfEmpty(source.Block);
  for (int& followed : FFollowed) {
    if (followed == from)
      followed = to;
    else if (from < followed && followed <= to)
      --followed;
    else if (to <= followed && followed < from)
      ++followed;
  }
  const int last = FCount - 1;
  FIsOrdered = FIsOrdered && IsInOrder(to == last ? last - 1 : to);
  FIsQuiet = FIsQuiet && IsQuietAround(to) && IsQuietAround(from < to ? from : from + 1);
}

/// Whether a point has its place among the others but the last, which are in order: what lies
/// further off on one side is beyond the first one that is on that side by itself.
bool TSpreadPoints::IsInOrder(int index) const noexcept {
  const TFzyFloat x = XAt(index);
  for (int i = index - 1; i >= 0 && XAt(i) > x; --i) {
    if (XAt(i) > x + FuzzyTolerance) return false;
  }
  for (int i = index + 1; i < FCount - 1 && x > XAt(i); ++i) {
    if (x > XAt(i) + FuzzyTolerance) return false;
  }
  return true;
}

/// Whether a pass takes nothing out around a point that was added, or behind one that went.
bool TSpreadPoints::IsQuietAround(int index) const noexcept {
  if (index >= FCount) return true;
  const auto sharesX = [this](int i) {
    return i > 0 && i < FCount && FloatEquals(XAt(i), XAt(i - 1));
  };
  constexpr int tooLong = MostNeighboursOfX + 1;
  int first = index;
  while (index - first < tooLong && sharesX(first)) --first;
  int last = index;
  while (last - first < tooLong && sharesX(last + 1)) ++last;
  if (last - first >= tooLong) return false;
  for (int i = std::max(index, 1); i <= index + 1 && i < FCount; ++i) {
    if (SamePoint(At(i).Point, At(i - 1).Point)) return false;
  }
  return true;
}

void TSpreadPoints::CopyTo(std::vector<TFuzzyPoint>& points,
                           std::vector<TCollectionItem*>* items) const noexcept {
  for (const TBlock& block : FBlocks) {
    for (const TEntry& entry : block.Entries) {
      points.push_back(entry.Point);
      if (items) items->push_back(entry.Item);
    }
  }
}

// Order

void TSpreadPoints::TBlock::Refresh() const noexcept {
  IsStale = false;
  Summary = {Infinity, -Infinity};
  TRedundancy pass;
  for (int i = 0; i < GetCount(); ++i) {
    const TFuzzyPoint& point = Entries[static_cast<std::size_t>(i)].Point;
    Summary.IsOrdered = Summary.IsOrdered && !(Summary.Greatest > point.X + FuzzyTolerance);
    Summary.Least = std::min(Summary.Least, point.X);
    Summary.Greatest = std::max(Summary.Greatest, point.X);
    if (!Summary.IsQuiet) continue;
    Summary.IsQuiet = !pass.IsRedundant(point);
    if (Summary.Lead == i && pass.Run == i) ++Summary.Lead;
  }
  Summary.RunAtEnd = pass.Run;
}

// A change of one point in a block that is in order and quiet concerns its surroundings only: what
// lies further off on one side is beyond the first one that is on that side by itself. For any
// other block the summary is made anew when it is needed.

void TSpreadPoints::TBlock::NoteAdded(int offset) noexcept {
  IsStale = IsStale || !Summary.IsOrdered || !Summary.IsQuiet;
  if (IsStale) return;
  const TFzyFloat x = X(offset);
  for (int i = offset - 1; i >= 0 && X(i) > x && Summary.IsOrdered; --i)
    Summary.IsOrdered = !(X(i) > x + FuzzyTolerance);
  for (int i = offset + 1; i < GetCount() && x > X(i) && Summary.IsOrdered; ++i)
    Summary.IsOrdered = !(x > X(i) + FuzzyTolerance);
  Summary.Least = std::min(Summary.Least, x);
  Summary.Greatest = std::max(Summary.Greatest, x);
  NoteRuns(offset);
}

void TSpreadPoints::TBlock::NoteTaken(int offset, TFzyFloat x) noexcept {
  IsStale = IsStale || !Summary.IsOrdered || !Summary.IsQuiet || Entries.empty();
  if (IsStale) return;
  constexpr TFzyFloat far = 3 * FuzzyTolerance;
  if (x == Summary.Least) {
    Summary.Least = X(0);
    for (int i = 1; i < GetCount() && !(X(i) > Summary.Least + far); ++i)
      Summary.Least = std::min(Summary.Least, X(i));
  }
  if (x == Summary.Greatest) {
    Summary.Greatest = X(GetCount() - 1);
    for (int i = GetCount() - 1; i-- > 0 && !(X(i) < Summary.Greatest - far);)
      Summary.Greatest = std::max(Summary.Greatest, X(i));
  }
  NoteRuns(std::min(offset, GetCount() - 1));
}

/// An index before which every X lies below `x` by more than the tolerance.
int TSpreadPoints::TBlock::FirstNear(TFzyFloat x) const noexcept {
  if (!Refreshed().IsOrdered) return 0;
  // Before a point that lies below by three times as much none can lie less below.
  const auto found = std::ranges::partition_point(
      Entries, [x](const TEntry& entry) { return entry.Point.X < x - 3 * FuzzyTolerance; });
  return static_cast<int>(found - Entries.begin());
}

/// Whether the point shares its X with the one before it.
bool TSpreadPoints::TBlock::SharesX(int offset) const noexcept {
  return offset > 0 && offset < GetCount() && FloatEquals(X(offset), X(offset - 1));
}

/// Looks at the run around a point that was added, or behind one that was taken away.
void TSpreadPoints::TBlock::NoteRuns(int offset) noexcept {
  constexpr int tooLong = MostNeighboursOfX + 1;
  int first = offset;
  while (offset - first <= tooLong && SharesX(first)) --first;
  int last = offset;
  while (last - first <= tooLong && SharesX(last + 1)) ++last;
  Summary.IsQuiet = last - first < tooLong;
  for (int i = offset; i <= offset + 1 && i < GetCount(); ++i) {
    const auto at = static_cast<std::size_t>(i);
    if (i > 0 && SamePoint(Entries[at].Point, Entries[at - 1].Point)) Summary.IsQuiet = false;
  }
  if (!Summary.IsQuiet) return;
  Summary.Lead = 1;
  while (SharesX(Summary.Lead)) ++Summary.Lead;
  Summary.RunAtEnd = 0;
  while (SharesX(GetCount() - 1 - Summary.RunAtEnd)) ++Summary.RunAtEnd;
}

TPlace TSpreadPoints::FindPlace(int changed) const noexcept {
  const TFzyFloat x = At(changed).Point.X;
  TPlaceSearch search(x, changed, 0);
  const std::size_t near = FirstBlockNear(x);
  int base = BaseOf(near);
  if (base > 0) search.PassOver(base - 1);
  for (std::size_t b = near; b < FBlocks.size(); ++b) {
    const TBlock& block = FBlocks[b];
    int i = search.MayPassOver(block.Refreshed().Greatest) ? block.GetCount() : block.FirstNear(x);
    if (i > 0) search.PassOver(base + i - 1);
    for (; i < block.GetCount(); ++i) {
      if (!search.Pass(base + i, block.X(i))) return search.Result();
    }
    base += block.GetCount();
  }
  return search.Result();
}

/// The first index whose X exceeds `x` by more than the tolerance; the count when there is none.
int TSpreadPoints::FirstAbove(TFzyFloat x) const noexcept {
  const std::size_t near = FirstBlockNear(x);
  int base = BaseOf(near);
  for (std::size_t b = near; b < FBlocks.size(); ++b) {
    const TBlock& block = FBlocks[b];
    if (block.Refreshed().Greatest > x + FuzzyTolerance) {
      const auto found = std::ranges::find_if(
          block.Entries, [x](const TEntry& entry) { return entry.Point.X > x + FuzzyTolerance; });
      return base + static_cast<int>(found - block.Entries.begin());
    }
    base += block.GetCount();
  }
  return base;
}

/// The summary of a block, without the last point of all.
TSpreadPoints::TSummary TSpreadPoints::SummaryForWindow(const TBlock& block) const noexcept {
  if (&block != &FBlocks.back()) return block.Refreshed();
  if (block.GetCount() == 1) return {Infinity, -Infinity};
  if (block.IsBeforeKnown) return block.BeforeLast;
  TSummary unknown = block.Refreshed();
  unknown.IsOrdered = false;  // as it may be only because of the last point, it is looked through
  return unknown;
}

/// The window of all points but the last; an empty one when they are in order.
TSpreadPoints::TWindow TSpreadPoints::FindWindow() const noexcept {
  TWindow window{0, -1};
  // From the end on: the first point that a later one lies below.
  TFzyFloat least = Infinity;
  int base = FCount;
  for (std::size_t b = FBlocks.size(); b-- > 0;) {
    const TBlock& block = FBlocks[b];
    base -= block.GetCount();
    const TSummary summary = SummaryForWindow(block);
    if (!summary.IsOrdered || summary.Greatest > least + FuzzyTolerance) {
      for (int i = block.GetCount(); i-- > 0;) {
        if (base + i == FCount - 1) continue;
        if (block.X(i) > least + FuzzyTolerance) window.First = base + i;
        least = std::min(least, block.X(i));
      }
    }
    least = std::min(least, summary.Least);
  }
  // And from the start on: the last one that an earlier one lies above.
  TFzyFloat greatest = -Infinity;
  for (const TBlock& block : FBlocks) {
    const TSummary summary = SummaryForWindow(block);
    if (!summary.IsOrdered || greatest > summary.Least + FuzzyTolerance) {
      for (int i = 0; i < block.GetCount() && base + i < FCount - 1; ++i) {
        if (greatest > block.X(i) + FuzzyTolerance) window.Last = base + i;
        greatest = std::max(greatest, block.X(i));
      }
    }
    greatest = std::max(greatest, summary.Greatest);
    base += block.GetCount();
  }
  return window;
}

/// Puts a point in its place among those before it, which are in order.
void TSpreadPoints::PutInOrder(int index) {
  const int place = FirstAbove(At(index).Point.X);
  if (place < index) Move(index, place);
}

/// The points in the order of `SortOrder` come about one after the other, so the last one takes its
/// place when all others have theirs; and those outside the window have theirs already.
bool TSpreadPoints::Sort() {
  if (!FIsOrdered) {
    const TWindow window = FindWindow();
    if (window.Last - window.First >= WidestWindow) return false;
    for (int i = window.First + 1; i <= window.Last; ++i) PutInOrder(i);
    FIsOrdered = true;
  }
  PutInOrder(FCount - 1);
  return true;
}

/// Whether a pass that comes to the block in this state takes nothing out of it; then it is in the
/// state behind the block.
bool TSpreadPoints::IsQuietAfter(const TBlock& block, TRedundancy& pass) noexcept {
  const TSummary& summary = block.Refreshed();
  if (!summary.IsQuiet) return false;
  const TFuzzyPoint& first = block.Entries.front().Point;
  int run = 0;
  if (pass.HasLast) {
    if (SamePoint(first, pass.Last)) return false;
    if (FloatEquals(first.X, pass.Last.X)) run = pass.Run + 1;
  }
  if (run > 0 && run + summary.Lead - 1 > MostNeighboursOfX) return false;
  pass.Run = summary.Lead == block.GetCount() ? run + summary.Lead - 1 : summary.RunAtEnd;
  pass.Last = block.Entries.back().Point;
  pass.HasLast = true;
  return true;
}

}  // namespace fzy::detail
