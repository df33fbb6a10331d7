#pragma once

#include <functional>

#include "fuzzylogic/common/SparseText.h"
#include "fuzzylogic/engine/FuzzySetValues.h"
#include "fuzzylogic/engine/FuzzySurroundings.h"

namespace fzy {

class TFuzzySet;
namespace detail {
struct TCombination;
}

/// A class of fuzzy sets, as a variable is given it for the sets that it creates.
struct TFuzzySetDescriptor {
  const char* Name;
  /// Makes a bare object of the class; `TFuzzySet::Create` builds it.
  TFuzzySet* (*New)();
};
using TFuzzySetClass = const TFuzzySetDescriptor*;

/// Told of every position of a walk of two sets, (x1, y1) on the set that walks and (x2, y2) on the
/// other; true stops the walk.
using TFuzzyComparison =
    std::function<bool(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2)>;
/// The same with the points of the result, to which it appends.
using TFuzzyOperator = std::function<bool(TFuzzySetValues& result, TFzyFloat x1, TFzyFloat y1,
                                          TFzyFloat x2, TFzyFloat y2)>;

/// A fuzzy set: a name and a membership function, held as a list of points (X in the units of the
/// variable, Y a degree of at least 0, not clamped to 1).
///
/// Ownership: a set owns its points. It belongs to its collection when it has one (normally that of
/// a linguistic variable), else to the caller, who ends it with `Free()`. Operations that return a
/// new set make it in this set's collection; they return nothing when a handler freed it meanwhile.
/// Operations that change the set return it (or nothing, likewise). For intermediate sets use
/// `TOwned<TFuzzySet>`.
///
/// Invariants: any change of the points makes the set user-defined and clears its expression and
/// definition; a producer that records a type or a text does so after its update block closed. All
/// points are finite: a number argument that is not a number, and any result that would leave the
/// finite numbers, is refused with an EFzyException (`SFzyNotANumber`, `SFzyNotFinite`) before the
/// set changes. An infinite X is clamped into the range like any other that lies outside; degrees
/// below 0 become 0. Likewise an operation for which there is no memory raises std::bad_alloc
/// before the set changes.
///
/// A set without a variable ranges from -2147483647 to 2147483647, with threshold 0, 7 points for
/// generated shapes and the first value of each method. One thread at a time; even a set that is
/// only asked (`GetCorrelationStrength`) uses a field of its own.
class TFuzzySet : public TGCollectionItem {
 public:
  static TFuzzySetClass Class();
  /// A set of the given class, with its point list, in `collection` (or in none). Its collection
  /// and variable are told of the addition. It is defined from the start in a form designer only.
  static TFuzzySet* Create(TFuzzySetCollection* collection = nullptr,
                           TFuzzySetClass setClass = Class());

  /// The class of this very object; its results are of the same class.
  virtual TFuzzySetClass GetClass() const { return Class(); }
  TString ClassName() const override { return GetClass()->Name; }

  // Properties. Setters ignore the value a property has, and tell the collection of any other.

  const TString& GetName() const noexcept { return FName; }
  /// @throws EFzyException (`SInvalidFuzzySetName`) for a hedge, hedge operator or keyword of the
  ///   definition language; the old name stays
  virtual void SetName(const TString& value);
  const TString& GetComment() const noexcept { return FComment; }
  void SetComment(const TString& value);
  TFuzzySetType GetSetType() const noexcept { return FSetType; }
  /// Sets the type and, for any but user-defined, makes the points anew: the shape over the middle
  /// third of the range to either side (triangle, PI, beta) or over its middle third (curves).
  /// @throws EFzyException (`SFzyInvalidArgument`) when the surroundings ask for more than
  ///   16,777,216 points
  virtual void SetSetType(TFuzzySetType value);
  TFuzzySetValues* GetValues() const noexcept { return FValues; }
  /// Copies the points of another list.
  void SetValues(TFuzzySetValues* value);
  /// Whether the set is a term of its variable, not a set made on the way. Nobody is told.
  bool GetDefined() const noexcept { return FDefined; }
  void SetDefined(bool value) {
    if (value != FDefined) StoreKey(FDefined, value);
  }
  /// The expression or number that produced the set; nobody is told of a change.
  const TString& GetExpression() const noexcept { return FExpression; }
  void SetExpression(TString value) { FExpression = std::move(value); }
  /// The expression that the set's term had in the definition text it was read from; nobody is told
  /// of a change. Like the expression it goes when the points change.
  const TString& GetDefinition() const noexcept { return FDefinition.Get(); }
  void SetDefinition(const TString& value) { FDefinition.Set(value); }
  /// The inflection point last given to a curve or beta shape; stored only.
  TFzyFloat GetInflectionPoint() const noexcept { return FInflectionPoint; }
  std::intptr_t GetTag() const noexcept { return FTag; }
  void SetTag(std::intptr_t value) noexcept { FTag = value; }

  /// The variable whose collection the set is in, or nothing.
  TFuzzyVariable* GetVariable() const;
  TFuzzySets* GetCollection() const;
  void SetCollection(TFuzzySetCollection* value) { TCollectionItem::SetCollection(value); }
  const TString& GetItemName() const override { return FName; }
  /// Terms come before sets of their name that were made on the way.
  bool IsPreferred() const override { return FDefined; }
  /// The name, or the class name when that is empty.
  TString GetDisplayName() const override;

  /// End of the range: 0 gives the maximum, 1 the minimum.
  /// @throws EFzyException (`SInvalidXRangeIndex`) for any other index
  virtual TFzyFloat GetXRange(int index) const;

  /// From another set: name (unchecked), points, type, inflection point, expression and definition;
  /// not comment, defined flag and tag. Other sources are refused.
  void Assign(TPersistent* source) final;
  /// With the texts and the inflection point by which the set is printed as it was.
  void DefineProperties(TFiler& filer) override;
  /// A copy of the set's own class in the same collection; a set in none gives a free one.
  TFuzzySet* Clone() { return DoClone(); }

  /// Called by the point list when a point, or the list, changed: tells the collection, then makes
  /// the set user-defined and clears the expression.
  virtual void UpdateFuzzySetValue(TFuzzySetValue* value);
  virtual void UpdateFuzzySetValues();
  /// Called by the point list when the set, or its points, have been loaded: tells the collection.
  virtual void PointsLoaded() { Changed(false); }

  /// What the component's parser shows of the set; without one "(name (x y) (x y) )", four
  /// decimals.
  TString ToString() const override;
  /// "((x y) (x y) )", four decimals.
  virtual TString GetValuesToString() const;

  // Membership.

  /// The degree at an X: interpolated between points, the greater value at a vertical edge, flat
  /// beyond the ends, 0 without points. Logarithmic in the points; allocates nothing.
  TFzyFloat DegreeOfMembership(TFzyFloat value) const;
  /// The X at a Y, or the Y at an X, of the line through two points; the second point's when they
  /// agree in the given coordinate.
  /// @throws EFzyException (`SFzyNotFinite`) when that lies beyond the numbers, as it never does
  ///   between the points
  TFzyFloat InterpolateX(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2,
                         TFzyFloat yValue) const;
  TFzyFloat InterpolateY(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2,
                         TFzyFloat xValue) const;
  /// Slope from one point to another; 1, -1 or 0 where their X agree within 0.0001.
  /// @throws EFzyException (`SFzyNotFinite`) when it is too large for a number
  TFzyFloat GetSlope(const TFuzzySetValue* value1, const TFuzzySetValue* value2) const;
  /// Of the points from `index` on, by steps of `dir`, that share its X within 0.0001, the index of
  /// the greatest (least) Y; the first found wins ties.
  /// @throws EFzyException for an index outside the points or a direction of 0
  int GetMaxYValueOfX(int index, int dir) const;
  int GetMinYValueOfX(int index, int dir) const;

  // Shapes. Points are added to those there (clear the list first for a shape alone), inside one
  // update block; then the type is recorded. Counts below 3 become 3; those above 16,777,216 points
  // are refused with an EFzyException (`SFzyInvalidArgument`), before memory is asked for.

  /// (left, 0), (middle, 1), (right, 0). A right below left becomes left; the middle is clamped.
  void CreateTriangleFunctionValues(TFzyFloat left, TFzyFloat middle, TFzyFloat right);
  /// An S curve (growth) or Z curve of `num` points from left to right, with t = (x - left) /
  /// (right - left): Y = 2 t^2 up to the middle, 1 - 2 (1 - t)^2 beyond (L. A. Zadeh, "Calculus of
  /// fuzzy restrictions", 1975); the Z curve is 1 - Y. The inflection point is stored only; that of
  /// the curve is always the middle.
  /// @throws EFzyException (`SInvalidRangeArguments`) when left is above right; also for arguments
  /// that
  ///   are not finite
  void CreateCurveValues(int num, TFzyFloat left, TFzyFloat right, TFzyFloat inflectionPoint,
                         bool growth);
  /// An S curve from left to center and a Z curve from there to right. From 5 points up, an odd
  /// count has its peak at the center, an even one leaves the center out.
  /// @throws EFzyException as `CreateCurveValues`; also (`SFzyInvalidArgument`) for a negative
  /// count
  void CreatePIFunctionValues(int num, TFzyFloat left, TFzyFloat right, TFzyFloat center);
  /// The same from center - range to center + range.
  void CreatePIFunctionValues(int num, TFzyFloat range, TFzyFloat center);
  /// A bell of `num` points from center - range to center + range: Y = 1 / (1 + weight t^2) with t
  /// = (x
  /// - center) / inflectionPoint, half as high at center +- inflectionPoint for weight 1. At the
  /// center itself Y is 1 for any inflection point; with an inflection point of 0 it is 0
  /// everywhere else.
  /// @throws EFzyException when an argument, an end or a degree is not finite (weight and
  /// inflection
  ///   point both 0, or a negative weight that meets the pole)
  void CreateBetaCurveFunctionValues(int num, TFzyFloat range, TFzyFloat center,
                                     TFzyFloat inflectionPoint, TFzyFloat weight);
  void CreateBetaCurveFunctionValues(int num, TFzyFloat range, TFzyFloat center,
                                     TFzyFloat inflectionPoint);
  /// The set becomes one number: (value, 0), (value, 1), (value, 0), user-defined, with the number
  /// in four decimals as its expression.
  void CreateCrispValue(TFzyFloat value);

  // Combination of two sets.

  /// Walks this set and another along X: every breakpoint of either, with the degrees of both
  /// there, and every crossing between breakpoints. True as soon as the callback returns true, and
  /// when both sets are empty. When one set is empty the other's points are visited paired with
  /// themselves. The walk works on copies of the curves, so a callback may change the sets. Linear
  /// in the points of both.
  bool Iterate(TFuzzySet* fuzzySet, const TFuzzyComparison& fuzzyOperator);
  /// A new set from the same walk: named by both names and the keyword, with the points that the
  /// callback appends, thinned of redundant flat ones (not when the callback stopped the walk, or
  /// one set was empty), user-defined, with the expression "F(A) keyword F(B)" where F is the
  /// expression, or else the name, bracketed when compound.
  TFuzzySet* Operator(TFuzzySet* fuzzySet, const TString& operatorKeyword,
                      const TFuzzyOperator& fuzzyOperator);

  /// Minimum; keyword "and".
  TFuzzySet* Intersection(TFuzzySet* fuzzySet) { return Intersection(fuzzySet, foZadeh); }
  /// Maximum; keyword "or".
  TFuzzySet* Union(TFuzzySet* fuzzySet) { return Union(fuzzySet, foZadeh); }
  /// By an operator family (`FuzzyFormulas`). An empty set counts as absent: the other set is
  /// combined with itself. Beyond the end of one curve the walk takes a piece of the other whose
  /// line leads back to that end for one that crosses it: where the feet of two curves coincide,
  /// the result may hold the foot once more behind them.
  /// @throws EFzyException (`SInvalidFuzzyOperation`) for the intersection of `foSum`, and any
  /// value
  ///   outside the enumeration; nothing is created
  virtual TFuzzySet* Intersection(TFuzzySet* fuzzySet, TFuzzyOperation intersectionType);
  virtual TFuzzySet* Union(TFuzzySet* fuzzySet, TFuzzyOperation unionType);

  /// Whether the sets overlap: false when either is empty, or this one is zero and the other is
  /// not, or they lie apart with zero tails; true when they touch at one X with a degree above
  /// 0.0001; else whether their spans of X overlap by more than 0.0001. Allocates nothing.
  bool Intersects(const TFuzzySet* fuzzySet) const;
  /// Whether segment 1-2 meets segment 3-4; then where.
  bool LineSegmentIntersects(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2, TFzyFloat x3,
                             TFzyFloat y3, TFzyFloat x4, TFzyFloat y4, TFzyFloat& x,
                             TFzyFloat& y) const;
  /// The same; the meeting point as a new point that the caller frees, or nothing.
  TFuzzySetValue* LineSegmentIntersects(const TFuzzySetValue* p1, const TFuzzySetValue* p2,
                                        const TFuzzySetValue* p3, const TFuzzySetValue* p4) const;

  // Callbacks for `Operator`: each appends (x1, formula(y1, y2)) and returns false.
  bool FuzzyOperatorMin(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2);
  bool FuzzyOperatorMax(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2);
  bool FuzzyOperatorMean(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1, TFzyFloat x2,
                         TFzyFloat y2);
  bool FuzzyOperatorUnionMean(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1, TFzyFloat x2,
                              TFzyFloat y2);
  bool FuzzyOperatorMeanSqr(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1, TFzyFloat x2,
                            TFzyFloat y2);
  bool FuzzyOperatorMeanSqrt(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1, TFzyFloat x2,
                             TFzyFloat y2);
  bool FuzzyOperatorIntersectionProduct(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1,
                                        TFzyFloat x2, TFzyFloat y2);
  bool FuzzyOperatorUnionProduct(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1, TFzyFloat x2,
                                 TFzyFloat y2);
  bool FuzzyOperatorIntersectionBoundedSum(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1,
                                           TFzyFloat x2, TFzyFloat y2);
  bool FuzzyOperatorUnionBoundedSum(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1, TFzyFloat x2,
                                    TFzyFloat y2);
  bool FuzzyOperatorUnionSum(TFuzzySetValues& r, TFzyFloat x1, TFzyFloat y1, TFzyFloat x2,
                             TFzyFloat y2);

  // Callbacks for `Iterate`.
  /// Raises this set's running maximum to min(y1, y2); returns false.
  bool FuzzyOperatorMaxOfMin(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2);
  /// Whether min(y1, y2) reaches the threshold of the set's variable (0 without one).
  bool FuzzyOperatorMinThreshold(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2);

  // Hedges. Each changes this set in place, renames it ("very tall") and returns it. The expression
  // becomes the hedged expression, or the new name when the change of the points has cleared it (as
  // it does, unless the caller holds an update block on the points). Clone first to keep the
  // original.

  /// "not": 1 - Y. "somewhat" (power 1/3), "moreorless" (0.5), "greatly" (0.7), "plus" (1.25),
  /// "very" (2), "extremely" (3): the power of each Y strictly between 0 and 1. "positively",
  /// "absolutely", "definitely" (intensity n = 2) and "generally" (0.5): contrast, 1 - n (1 - Y)^n
  /// from 0.5 on, n Y^n below. "about" (2), "vicinity" (4), "close", "near", "neighboring" (1.2):
  /// bell-shaped flanks over the whole range, on 50 points, normalized. These three groups expand
  /// the points to 7 first. "above" ("below"): 0 up to (from) the peak, 1 - Y beyond. "slightly":
  /// plus A and not very A, normalized, then "positively"; the collection sees its three temporary
  /// sets come and go. "normalize": `Normalize`. (Powers and contrast: L. A. Zadeh, "A
  /// fuzzy-set-theoretic interpretation of linguistic hedges", 1972.)
  /// @throws EFzyException (`SFuzzySetEmpty`) for an empty set under "normalize", "slightly" and
  ///   the approximations; also when a degree leaves the finite numbers ("generally" with degrees
  ///   above 1, an approximation over a range without width). The set is unchanged then.
  TFuzzySet* Hedge(TFuzzyHedge hedgeType) { return DoHedge(hedgeType); }
  /// Acts on every Y (`modifyY`) or every X, with V the value, negated for subtraction and its
  /// reciprocal for division: c + V, c V, c to the power V (of X above 0; of Y strictly between 0
  /// and 1), or a cut: "<", "<=" raise what lies below V to V, ">", ">=" lower what lies above.
  /// Named "tall
  /// - -2.0000", by the V applied.
  /// @throws EFzyException for a division by 0; also when a degree leaves the finite numbers
  TFuzzySet* Hedge(TBaseFuzzyHedge modifyType, TFzyFloat value, bool modifyY);
  /// Multiplies every Y by 1 / the greatest; an all-zero set stays as it is.
  /// @throws EFzyException (`SFuzzySetEmpty`) without points
  TFuzzySet* Normalize();

  // Cuts, correlation and inference.

  /// A new set of the same name: the membership where it is at least (strong: above) the cut, which
  /// is clamped to [0, 1], and 0 elsewhere, with vertical edges at the cut. A strong cut at 0
  /// copies the set, one at 1 gives the single point (0, 0). Any other cut of a set without points
  /// has none.
  TFuzzySet* AlphaCutoff(TFzyFloat cutOff, bool strongCutoff);
  /// A new set: floored at the level (`cutValuesBelow`: what lies below is dropped, the curve is
  /// cut at the level) or capped at it (what lies above). The level is clamped to [0, 1]. A floor
  /// at 0 and a cap at 1 copy the set, a floor at 1 and a cap at 0 give the constant level;
  /// otherwise a set wholly on the dropped side, or without points, gives no points. Named "tall or
  /// 0.3000" ("and" for the cap), by the level given; an expression is continued likewise, by the
  /// level applied.
  TFuzzySet* Cutoff(TFzyFloat cutOff, bool cutValuesBelow);
  /// The height of the intersection with another set: the greatest min of both degrees over the
  /// walk of `Iterate`; that of the other set when one is empty, 0 when both are. Allocates
  /// nothing.
  TFzyFloat GetCorrelationStrength(TFuzzySet* match);
  /// Cuts this set at the strength (`fcmMinimum`, at its points only) or scales it by it
  /// (`fcmProduct`); the hedges "> strength" and "* strength".
  TFuzzySet* Correlate(TFzyFloat correlationStrength, TFuzzyCorrelationMethod correlationMethod);
  /// By the component's method.
  TFuzzySet* Correlate(TFzyFloat correlationStrength);
  /// A new set that merges new evidence into this one: the union (unconditional: the intersection)
  /// by the operation that belongs to the method.
  /// @throws EFzyException (`SInvalidFuzzyOperation`) for an unconditional `fimAdditive`
  TFuzzySet* Infer(TFuzzySet* newEvidence, TFuzzyInferenceMethod inferenceMethod,
                   bool unconditional);
  /// By the component's method.
  TFuzzySet* Infer(TFuzzySet* newEvidence, bool unconditional);

  // Defuzzification and measures. None raises; none allocates, but `Equals`.

  /// The X of the centroid of the area under the curve, flat on to the ends of the range. 0 without
  /// points or area; the middle of the range for a set without width, a crisp one included.
  TFzyFloat CenterOfGravity() const;
  /// The mean X of the points of greatest Y (within 0.0001); 0 without points.
  TFzyFloat MeanOfMaxima() const;
  /// By the component's method.
  TFzyFloat Defuzzify() const;
  /// Whether the set decides nothing: no points, all exactly 0, or all exactly 1.
  bool IsUndecidable() const noexcept;
  /// The height of the set; 0 without points.
  virtual TFzyFloat GetCompatibilityIndex() const;
  /// Whether the sets overlap somewhere at or above the threshold of this set's variable (0 without
  /// one). Two empty sets are equal.
  bool Equals(TFuzzySet* fuzzySet) { return DoEquals(fuzzySet); }
  /// `GetCorrelationStrength`.
  TFzyFloat FuzzyEquals(TFuzzySet* fuzzySet) { return DoFuzzyEquals(fuzzySet); }

 protected:
  TFuzzySet() = default;
  ~TFuzzySet() override;

  /// Builds a bare object: makes the point list, joins the collection, looks at the surroundings.
  virtual void Build(TFuzzySetCollection* collection);
  /// The set's point list, owned by it.
  virtual TFuzzySetValues* CreateValues();
  void CollectionChanged() override;

  virtual void DoAssign(TFuzzySet* source);
  virtual TFuzzySet* DoClone();
  virtual TFuzzySet* DoHedge(TFuzzyHedge hedgeType);
  /// Called with the name that the set is about to get, before anything changes: takes the memory
  /// that `SetName` will need.
  virtual void PrepareForName(const TString& name) { FName.Reserve(name.size()); }
  virtual bool DoEquals(TFuzzySet* fuzzySet);
  virtual TFzyFloat DoFuzzyEquals(TFuzzySet* fuzzySet);

  /// The strength from which on `Equals` answers yes.
  virtual TFzyFloat EqualityThreshold() const;
  /// @throws EFzyException as `GetMaxYValueOfX`
  static void RequireRun(TFuzzyCurve points, int index, int dir, const char* operation);
  void StoreInflectionPoint(TFzyFloat value) noexcept { FInflectionPoint = value; }

  /// A new set of this one's class in this one's collection.
  virtual TOwned<TFuzzySet> NewInstance() const;

  /// Expands the points to `n`, then raises each Y strictly between 0 and 1 to the power `x`.
  void Intensify(int n, TFzyFloat x);
  /// Expands the points to `n`, then moves each Y away from 0.5 (`x` above 1) or towards it.
  void FuzzyContrast(int n, TFzyFloat x);
  /// Expands the points to `n`, then replaces them by bells over the whole range; see `Hedge`.
  void FuzzyApproximation(int n, TFzyFloat x);

  TFzyFloat FMax = 0;  ///< the running maximum of `FuzzyOperatorMaxOfMin`

 private:
  friend class TFuzzySets;
  static TFuzzySet* Create(TFuzzySetCollection* collection, TFuzzySetClass setClass,
                           std::size_t room);
  void PrepareFor(const TFuzzySet& source);
  void StoreName(TString value);
  TFuzzySetCollection* Siblings() const noexcept;
  TFuzzySet* Returned() noexcept { return IsFreed() ? nullptr : this; }
  void PointsChanged();
  template <class List>
  void CloseShape(List& block, TFuzzySetType type);
  void AppendPoints(TString& text) const;
  void CheckCurve(TFzyFloat left, TFzyFloat right) const;
  template <class Fill>
  TFuzzySet* Combine(TFuzzySet* other, const TString& keyword, Fill fill);
  TFuzzySet* CombineBy(TFuzzySet* other, const detail::TCombination& combination);
  class TModification;
  class TShapeUndo;
  template <class Make>
  class TNextExpression;
  template <class Expression>
  void GiveName(const TString& name, Expression& expression);
  void ComplementBeyond(bool above);
  bool ApplySlightly();

  TFuzzySurroundings* FSurroundings = nullptr;
  TFuzzySetValues* FValues = nullptr;
  TString FName;
  TString FComment;
  TString FExpression;
  TSparseText FDefinition;
  TFzyFloat FInflectionPoint = 0;
  std::intptr_t FTag = 0;
  TFuzzySetType FSetType = fstUserDefined;
  bool FDefined = false;
};

}  // namespace fzy
