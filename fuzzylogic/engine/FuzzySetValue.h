#pragma once

#include "fuzzylogic/engine/FuzzyPoint.h"
#include "fuzzylogic/framework/Collection.h"

namespace fzy {

class TFuzzySetValues;

/// One point of a point list, as an object: a handle that stays tied to its point while the list
/// moves and sorts. A handle is made when somebody asks for it; while its point stands in a list,
/// the coordinates live in the list. Outside a list it holds them itself; the caller then ends it
/// by `Free()`.
///
/// Not-a-number is refused by every setter before anything changes. An infinite X is clamped where
/// the point has a range and refused where it has none; an infinite Y above is refused.
///
/// Lists make points of this very class. One of a descendant, which joins a list by `Join`, keeps
/// its overrides whatever changes the point or compares it, until the list gives the point up.
class TFuzzySetValue : public TCollectionItem {
 public:
  /// A point with Y 0, and X 1 above the last point's X (0 in an empty list or without a list),
  /// appended to `collection`, which owns it; without a collection the caller does. The list is
  /// told as by `TFuzzySetValues::Add`; nothing is returned when a handler freed the point.
  /// @throws EFzyException when `collection` is not a point list
  static TFuzzySetValue* Create(TCollection* collection);

  TString ClassName() const override { return "TFuzzySetValue"; }

  TFzyFloat GetX() const noexcept;
  TFzyFloat GetY() const noexcept;
  TFuzzyPoint GetPoint() const noexcept { return {GetX(), GetY()}; }

  /// Sets X, clamped into the range of the owning set when there is one; exactly the current X
  /// changes nothing. The list is normalized (`TFuzzySetValues::UpdateValue`), then told.
  /// @throws EFzyException when the value is not a number, or infinite without a range
  virtual void SetX(TFzyFloat value);
  /// Sets Y, 0 for a negative value; exactly the current Y changes nothing. Then as `SetX`.
  /// @throws EFzyException when the value is not a number, or positive infinity
  virtual void SetY(TFzyFloat value);
  /// Sets both at once, always as a change. In a list with an owning set X is clamped and a
  /// negative Y becomes 0; elsewhere both are stored as given.
  /// @throws EFzyException as `SetX` and `SetY`
  void SetValue(TFzyFloat x, TFzyFloat y);

  /// From another point: `SetValue` with its coordinates; other sources are refused.
  void Assign(TPersistent* source) override;
  /// Loading stores the coordinates as they are: the range does not clamp them, and the list is
  /// brought into order with its next change.
  void DefineProperties(TFiler& filer) override;
  /// Whether both coordinates agree within 0.0001.
  virtual bool Equals(const TFuzzySetValue& source) const;

  TFuzzySetValues* GetCollection() const noexcept;
  void SetCollection(TFuzzySetValues* value);

 protected:
  explicit TFuzzySetValue(TFuzzyPoint point = {}) noexcept : FPoint(point) {}
  ~TFuzzySetValue() override = default;

  /// What `Create` does, with a point that was just made: for a `Create` of a descendant.
  static TFuzzySetValue* Join(TFuzzySetValue* value, TCollection* collection);

 private:
  friend class TFuzzySetValues;
  friend class TFuzzySet;

  void Tell(TXYUpdateTypes coordinates);
  void Load(TFuzzyPoint point, TXYUpdateTypes coordinates);

  TFuzzyPoint FPoint;  // the coordinates while the point stands in no list
};

}  // namespace fzy
