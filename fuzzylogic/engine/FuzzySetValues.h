#pragma once

#include <memory>
#include <optional>

#include "fuzzylogic/common/NamedCollection.h"
#include "fuzzylogic/engine/FuzzyPoint.h"
#include "fuzzylogic/engine/FuzzySetValue.h"
#include "fuzzylogic/vocabulary/FuzzyExceptions.h"

namespace fzy {

class TFuzzySet;
namespace detail {
class TPointWriter;
class TResampler;
class TSpreadPoints;
struct TPlace;
}  // namespace detail

/// The point list of a fuzzy set: its membership function.
///
/// The points stand in one contiguous array (`Points()`), so that the mathematics reads them
/// without copying; `TFuzzySetValue` objects are made when somebody asks for one.
///
/// After every change outside an update block the list is normalized: points ascend in X (those
/// within 0.0001 count as equal and keep their order), no point equals its predecessor, and at most
/// about three points share one X. Inside a block changes are only recorded; the closing block
/// sorts and removes duplicates once, and only when a change fell out of order or beside a
/// duplicate. Removal by the closing block keeps up to four points of one X. The owning set is told
/// of every change.
///
/// A new point has X 1 above the last point's (0 in an empty list) and Y 0; setting exactly that X
/// or Y is no change, and so not clamped.
///
/// While points of a long list change one by one out of order, they stand in blocks, where each
/// finds its place quickly; the first look at the curve, or at the place of a point, puts them back
/// into the array, in linear time.
///
/// When there is no memory for a change, std::bad_alloc is raised before anything changed. One
/// thread at a time; several may ask a list that nobody changes.
class TFuzzySetValues : public TGCollection {
 public:
  /// A list owned by `fuzzySet`, or a free one. A set makes its own by `TFuzzySet::CreateValues`.
  explicit TFuzzySetValues(TFuzzySet* fuzzySet = nullptr) noexcept;
  ~TFuzzySetValues() override;
  TString ClassName() const override { return "TFuzzySetValues"; }

  TPersistent* GetOwner() const override;
  TFuzzySet* GetFuzzySet() const noexcept { return FFuzzySet; }
  int GetCount() const override {
    Settle();
    return static_cast<int>(FPoints.size());
  }

  /// The curve; valid until the list changes.
  TFuzzyCurve Points() const noexcept {
    Settle();
    return FPoints;
  }
  /// Whether X never descends, exactly. Constant time while it does not.
  bool IsAscending() const noexcept;

  /// The point at `index`, as an object that the list owns.
  /// @throws EFzyException for an index outside the list
  TFuzzySetValue* GetItem(int index) const;
  TFuzzySetValue* operator[](int index) const { return GetItem(index); }
  /// Assigns the given point into the one at `index`.
  void SetItem(int index, TFuzzySetValue* value);
  TListIterator<TFuzzySetValues> begin() const { return {*this, 0}; }
  TListIterator<TFuzzySetValues> end() const { return {*this, GetCount()}; }

  /// Appends a point (see the class comment); the list owns it. Nothing is returned when a handler
  /// freed it at once. Constant time on average with its normalization, in order of X; out of order
  /// the square root of the number of points, as long as nobody looks at them meanwhile.
  TFuzzySetValue* Add();
  /// Appends a point and then sets X and then Y, each told for itself.
  /// @throws EFzyException as the setters, before anything changes
  TFuzzySetValue* Add(TFzyFloat x, TFzyFloat y);
  /// Appends a point and moves it to `index`, where it stays until its X is set.
  /// @throws EFzyException for an index outside the list (the end included)
  TFuzzySetValue* Insert(int index);

  /// Normalizes after `value` changed in the given coordinates. Called by the point setters, not by
  /// users; producers of many points inside a block record their changes without it.
  virtual void UpdateValue(TFuzzySetValue* value, TXYUpdateTypes updateType);

  /// Sorts when a change fell out of order, inside one block: each point in turn goes before the
  /// first one whose X exceeds its own by more than the tolerance. n log n.
  void Sort();
  /// Removes redundant points when a change put two side by side, inside one block: of equal
  /// neighbours the later, and of a run of one X the fifth (counting afresh after it; so a second
  /// pass may remove more). Linear.
  void RemoveDuplicates();
  /// Both of these inside one block.
  void CleanupValues();

  /// From `index` on (itself first) by steps of `dir` (0 counts as 1), the first point whose X (Y)
  /// lies outside the tolerance of `x` (`y`); -1 when there is none.
  int SkipX(int index, TFzyFloat x, int dir) const noexcept;
  int SkipY(int index, TFzyFloat y, int dir) const noexcept;
  /// The number of points whose X is exactly `x`. Linear.
  int GetXCount(TFzyFloat x) const noexcept;

  /// Adds points, evenly spaced in each gap between neighbours, until there are `newCount`; earlier
  /// gaps get one more where it does not come out even. The shape stays. Nothing happens below 2 or
  /// when there are as many already. Linear in the resulting count.
  /// @throws EFzyException (`SFzyInvalidArgument`) for more than 16,777,216 points, before memory
  /// is
  ///   asked for; also when a coordinate would not be finite. Nothing changes then.
  void Expand(int newCount);
  /// Adds points evenly spaced over the whole span of X. Nothing happens on fewer than two points,
  /// or when the last X is not above the first. Linear.
  /// @throws EFzyException as `Expand`
  void ExpandSimple(int newCount);

  /// Appends copies of `count` points of `source` from `index` on, each told for itself: a negative
  /// index counts as 0, one beyond the end as the last point, and the count ends with the source.
  virtual void Append(TFuzzySetValues* source, int index, int count);
  void Append(TFuzzySetValues* source);

  /// The least Y; the search ends at the first point of exactly 0.
  /// @throws EFzyException (`SFuzzySetEmpty`) without points, as the other statistics
  TFzyFloat GetMinValue() const;
  /// The greatest Y; the search ends at the first point of exactly 1.
  TFzyFloat GetMaxValue() const;
  TFzyFloat GetAvgValue() const;
  /// Average, greatest and least Y, where the greatest is at least 0 and the least at most 1.
  void GetStatValues(TFzyFloat& avgY, TFzyFloat& maxY, TFzyFloat& minY) const;

  void Assign(TPersistent* source) override;
  /// Its entries are the points, as they stand: loading neither clamps nor normalizes them.
  void DefineProperties(TFiler& filer) override;

 protected:
  /// Points have no names: the first one answers to the empty name.
  TFound Find(const TString& name) const override {
    return {-1, name.empty() && GetCount() > 0 ? 0 : -1};
  }
  TCollectionItem* AddItem() override { return Add(); }
  void Update(TCollectionItem* item) override;
  [[noreturn]] void FailIndex(int index) const override { RaiseFuzzyIndex(index); }

  TCollectionItem* ItemAt(int index) const override;
  void MakeRoom(int count) override { ReserveRoom(static_cast<std::size_t>(count), true); }
  void StoreItem(TCollectionItem* item) override;
  void DropItem(int index) override;
  void RelocateItem(int from, int to) override;
  void DeleteItem(int index) override;
  void ClearItems() override;
  int PositionOf(const TCollectionItem& item) const noexcept override;

 private:
  friend class TFuzzySet;
  friend class TFuzzySetValue;
  friend class TIFSValues;
  friend class detail::TPointWriter;
  friend class detail::TResampler;

  // The array, and the objects of its points.
  /// Sees to it that the list can take these points instead of its own: it has the room.
  /// @throws EFzyException when it refuses one
  void PrepareFor(TFuzzyCurve points);
  /// Takes points back that stood here before, in order.
  void PutBack(std::vector<TFuzzyPoint>& points) noexcept;
  static TOwned<TFuzzySetValue> NewHandle();
  /// Appends a point that stands in no list; nothing is returned when a handler freed it.
  TFuzzySetValue* Join(TOwned<TFuzzySetValue> value);
  TFuzzySetValue* Insert(int index, TOwned<TFuzzySetValue> point);
  bool Holds(const TFuzzySetValue* value) const noexcept;
  TFuzzySetValue* Handle(int index) const noexcept;
  void Release(TFuzzySetValue* value, const TFuzzyPoint& point) noexcept;
  /// The object of a point if it is of a descendant class, whose overrides then count.
  TFuzzySetValue* Descendant(int index) const noexcept {
    return FHasDescendants ? FindDescendant(index) : nullptr;
  }
  TFuzzySetValue* FindDescendant(int index) const noexcept;
  bool AreEqual(int index, int other) const;
  void DropHandle(int index) noexcept;
  void NumberHandles(int first, int last) noexcept;
  void ErasePoint(int index) noexcept;
  void Retain(int from, int to) noexcept;
  void Truncate(int count) noexcept;
  void NoteOrder(int index) noexcept;
  /// Makes room for that many points in all, and for as many objects when there are some.
  void ReserveRoom(std::size_t count, bool handles = false);

  // What one change after another asks of the points, in the array or in blocks.
  void Settle() const noexcept {
    if (FIsUnsettled.load(std::memory_order_acquire)) PutBack();
  }
  void PutBack() const noexcept;
  void Spread(const TFuzzySetValue* changed) noexcept;
  template <class Change>
  bool ChangeSpread(Change change) noexcept;
  int Count() const noexcept;
  TFuzzyPoint PointAt(int index) const noexcept;
  void StorePoint(int index, const TFuzzyPoint& point) noexcept;
  void AppendPoint(const TFuzzyPoint& point, TFuzzySetValue* handle);
  /// A new point, as it stands before its coordinates are set.
  TFuzzyPoint NextPoint() const noexcept;

  /// Where X may lie: the owning set's range, or anywhere finite.
  struct TXRange {
    bool IsBound;
    TFzyFloat Minimum;
    TFzyFloat Maximum;
    TFzyFloat Admit(TFzyFloat x) const;
  };
  TXRange GetRange() const;
  TFzyFloat AdmitX(TFzyFloat x) const { return GetRange().Admit(x); }
  void Record(int index, TXYUpdateTypes updateType);
  bool EqualsNeighbour(int index) const;

  std::optional<detail::TResampler> Expansion(int newCount);

  detail::TPlace FindPlace(int changed) const noexcept;
  void PutInOrder() noexcept;
  void Reorder(const std::vector<int>& order);
  void SortInArray() noexcept;
  void MoveInArray(int from, int to) noexcept;
  void RemoveRedundant() noexcept;
  void SpreadForFew() noexcept;
  void TrimSameX(TFuzzySetValue* value);
  void CleanGroup(TFuzzySetValue* value);
  void RequirePoints(const char* operation) const;

  class TStagedPoints;
  void ReleaseHandles() noexcept;

  // The array and the handles (`FItems` of the base, either none at all, or one for each point,
  // some nothing) are empty while the points stand in blocks, but have the room for all of them, so
  // that coming back takes no memory.
  mutable std::vector<TFuzzyPoint> FPoints;
  mutable std::unique_ptr<detail::TSpreadPoints> FSpread;
  TFuzzySet* FFuzzySet;
  bool FSorted = true;
  bool FDuplicatesRemoved = true;
  bool FHasDescendants = false;                // points may have objects of descendant classes
  mutable std::atomic<bool> FAscending{true};  // false: X may descend, looked up when asked
  int FChanges = 0;                            // recorded since the list was last in order

  // Points on which somebody works: their places are known while the points stand in blocks.
  const TCollectionItem* FChanged = nullptr;
  const TCollectionItem* FDeleted = nullptr;
};

}  // namespace fzy
