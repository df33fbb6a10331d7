#pragma once

#include "fuzzylogic/engine/FuzzySetValues.h"
#include "fuzzylogic/interfaces/FuzzyInterfaces.h"

namespace fzy {

class TIFuzzySet;

/// The point list of a counted fuzzy set. It reads points from any `IFuzzySet`.
///
/// Unlike in the owned model, a point is added or inserted with both its coordinates at once: the
/// set is told once for it (once more when the list has to be put in order), the point never stands
/// at degree 0 on the way, and one that equals its neighbour is removed whatever its degree.
class TIFSValues : public TFuzzySetValues {
 public:
  /// A list owned by `fuzzySet`, or a free one.
  explicit TIFSValues(TIFuzzySet* fuzzySet = nullptr) noexcept;
  TString ClassName() const override { return "TIFSValues"; }
  /// The text of the owning set.
  TString ToString() const override;

  using TFuzzySetValues::Add;
  using TFuzzySetValues::Append;
  using TFuzzySetValues::Assign;
  using TFuzzySetValues::Insert;

  /// Appends a point; the result is the index that it had when it was appended, though the list may
  /// sort it elsewhere.
  /// @throws EFzyException when X or Y is not a number, or Y infinite; nothing changes then, here
  ///   and in the operations below
  int Add(TFzyFloat x, TFzyFloat y);
  /// Inserts a point before `index`; the result is the index that it had when it was inserted.
  /// @throws EFzyException for an index outside the list (the end included)
  int Insert(int index, TFzyFloat x, TFzyFloat y);
  /// Adds copies of `count` points of `source` from `index` on, each told for itself: a negative
  /// index counts as 0, one beyond the end as the last point, and the count ends with the source.
  virtual void Append(const Ref<IFuzzySet>& source, int index, int count);
  void Append(const Ref<IFuzzySet>& source);
  /// Replaces all points by copies of those of `source`, told once.
  void AssignValues(const Ref<IFuzzySet>& source);
  /// Whether both have as many points, and each agrees with its counterpart within 0.0001.
  virtual bool EqualsValues(const Ref<IFuzzySet>& fuzzySet);
  /// The owning set takes over the other set (`TIFuzzySet::Assign`).
  void Assign(const Ref<IInterface>& value);

 private:
  TIFuzzySet* FSet;
};

}  // namespace fzy
