#pragma once

#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/interfaces/IFSValues.h"

namespace fzy {

class TIFuzzySet;
class TIFuzzyVariable;

/// A class of counted sets, as a variable is given it for the sets that it creates: what it makes
/// is a `TIFuzzySet`.
struct TIFuzzySetDescriptor : TFuzzySetDescriptor {};
using TIFuzzySetClass = const TIFuzzySetDescriptor*;

/// Assignment as `IFuzzySet` offers it: a persistent object is assigned to the points there, while
/// the same signature of the set itself copies a set. It stands in a class of its own because a
/// class that overrides one of the two would override both.
class TPointAssignment : public IFuzzySet {
 public:
  using IFuzzySet::Assign;
  void Assign(TPersistent* source) final { PointList()->Assign(source); }
  void AssignTo(TPersistent* dest) final { PointList()->AssignTo(dest); }

 protected:
  ~TPointAssignment() = default;
  virtual TPersistent* PointList() = 0;
};

/// The counted fuzzy set: the set of the engine as an `IFuzzySet`. What is not said here is as in
/// `TFuzzySet`; operands are read through `IFuzzySet`, whoever implements them.
///
/// Ownership: the references to it own the set, and it owns its points. It is in no collection; it
/// holds a counted reference to the variable that it belongs to, and to the parser that writes it.
/// A variable that nobody but its sets holds any more takes none of them in: neither a new name nor
/// a move then enters the set in the table.
/// Operations that return a new set return it counted; those that change the set return the set
/// itself. A set that belongs to a variable need not be in its table: results of operations, clones
/// and cuts are not. The set that `Cutoff` makes belongs to no variable.
///
/// Range: points are clamped into the range of the variable; without one X is free between
/// -2147483647 and 2147483647. Every change of the points is told to the variable
/// (`IFuzzyVariable::FuzzySetChanged`), whether or not the set is in its table.
///
/// Defined: the flag decides only whether the set is entered in its variable's table when it is
/// next added, renamed or moved; changing it moves nothing. A new set is not defined.
///
/// Faces: what a query for `ICloneable` gives assigns persistent objects to the set, `IFuzzySet`
/// assigns them to its points. Query for an `ICloneable` rather than convert a reference to that
/// base. The operations of `TFuzzySet` that have another form here remain reachable through that
/// base; a set that they return is counted once, for the caller.
class TIFuzzySet : public TFuzzySet, public TPointAssignment {
 public:
  static TIFuzzySetClass Class();
  /// A set of the given class that belongs to `variable` (or to none), without being in its table.
  /// @throws EFzyException (`SInvalidFuzzySetName`) for a reserved word
  static Ref<TIFuzzySet> Create(const Ref<IFuzzyVariable>& variable = nullptr,
                                const TString& name = TString(),
                                TIFuzzySetClass setClass = Class());
  TIFuzzySetClass GetClass() const override { return Class(); }

  HResult QueryInterface(const TGuid& id, void** result) override;
  std::int32_t AddRef() noexcept override { return ++FRefCount; }
  /// Ends the set with the last reference.
  std::int32_t Release() noexcept override;

  // Properties.

  TString GetName() override { return TFuzzySet::GetName(); }
  /// A set with a variable is taken out of its table first and then, when it is defined, entered
  /// under the new name and with a new index; both are told.
  /// @throws EFzyException (`SInvalidFuzzySetName`) for a reserved word; nothing changes
  void SetName(const TString& value) override;
  TString GetComment() override { return TFuzzySet::GetComment(); }
  void SetComment(const TString& value) override { TFuzzySet::SetComment(value); }
  TFuzzySetType GetSetType() override { return TFuzzySet::GetSetType(); }
  void SetSetType(TFuzzySetType value) override { TFuzzySet::SetSetType(value); }
  TFzyFloat GetInflectionPoint() override { return TFuzzySet::GetInflectionPoint(); }
  TString GetExpression() override { return TFuzzySet::GetExpression(); }
  void SetExpression(const TString& value) override { TFuzzySet::SetExpression(value); }
  std::intptr_t GetTag() override { return TFuzzySet::GetTag(); }
  void SetTag(std::intptr_t value) override { TFuzzySet::SetTag(value); }
  bool GetDefined() override { return TFuzzySet::GetDefined(); }
  void SetDefined(bool value) override { TFuzzySet::SetDefined(value); }
  int GetIndex() override { return FIndex; }
  void SetIndex(int value) override { FIndex = value; }
  Ref<IFuzzyVariable> GetVariable() override { return FVariable.Get(); }
  /// The same uncounted, for a look: a counted reference that is dropped again makes the variable
  /// compare its counts.
  IFuzzyVariable* PeekVariable() const noexcept { return FVariable.Get().Get(); }
  /// Moves the set to another variable, or to none: it leaves the table of its old variable, and
  /// joins that of the new one when it is defined. Its parser becomes the new variable's.
  void SetVariable(const Ref<IFuzzyVariable>& value) override;
  /// The parser, or none when its component has gone.
  Ref<IFuzzyParser> GetParser() override;
  void SetParser(const Ref<IFuzzyParser>& value) override { FParser = value; }
  TIFSValues* GetValues() const noexcept {
    return static_cast<TIFSValues*>(TFuzzySet::GetValues());
  }
  void SetValues(TIFSValues* value) { TFuzzySet::SetValues(value); }

  /// The variable's range; without one the X of the last and the first point, and without points
  /// 2147483647 and -2147483647.
  TFzyFloat GetXMaximum() override;
  TFzyFloat GetXMinimum() override;
  TFzyFloat GetXRange(int index) const override;
  /// @throws EFzyException for an index outside the points, as do the setters
  TFzyFloat GetXValues(int index) override;
  TFzyFloat GetYValues(int index) override;
  void SetXValues(int index, TFzyFloat value) override;
  void SetYValues(int index, TFzyFloat value) override;

  // The set as a whole.

  using TFuzzySet::Assign;
  /// From another set: its variable (which moves this one), its points and their inflection point,
  /// its expression and parser; the set becomes user-defined. Other objects change nothing.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual"  // `IFuzzySet`'s other form means the points
  void Assign(const Ref<IInterface>& value) override;
#pragma GCC diagnostic pop
  /// A copy of the set's own class, of its name, points, type and texts, for the same variable.
  Ref<IInterface> Clone() override;
  /// A copy of name and points for another variable, which is told of them.
  Ref<IFuzzySet> Clone(const Ref<IFuzzyVariable>& variable) override;
  /// Whether the sets overlap somewhere at or above the threshold of this set's variable (0 without
  /// one); no for an object that is not a fuzzy set.
  bool Equals(const Ref<IInterface>& value) override;
  float FuzzyEquals(const Ref<IInterface>& value) override;
  TString ToString() const override;
  TString ToString() override { return std::as_const(*this).ToString(); }
  using TFuzzySet::GetValuesToString;
  TString GetValuesToString() override { return TFuzzySet::GetValuesToString(); }

  // Points: the operations of the point list.

  int GetCount() override { return GetValues()->GetCount(); }
  void Append(const Ref<IFuzzySet>& source) override { GetValues()->Append(source); }
  void Append(const Ref<IFuzzySet>& source, int index, int count) override {
    GetValues()->Append(source, index, count);
  }
  void AssignValues(const Ref<IFuzzySet>& source) override { GetValues()->AssignValues(source); }
  int Add(TFzyFloat x, TFzyFloat y) override { return GetValues()->Add(x, y); }
  int Insert(int index, TFzyFloat x, TFzyFloat y) override {
    return GetValues()->Insert(index, x, y);
  }
  void BeginUpdate() override { GetValues()->BeginUpdate(); }
  void EndUpdate() override { GetValues()->EndUpdate(); }
  void Clear() override { GetValues()->Clear(); }
  void Delete(int index) override { GetValues()->Delete(index); }
  void Expand(int newCount) override { GetValues()->Expand(newCount); }
  TFzyFloat GetMaxValue() override { return GetValues()->GetMaxValue(); }
  TFzyFloat GetMinValue() override { return GetValues()->GetMinValue(); }
  int SkipX(int index, TFzyFloat x, int dir) override { return GetValues()->SkipX(index, x, dir); }
  int SkipY(int index, TFzyFloat y, int dir) override { return GetValues()->SkipY(index, y, dir); }
  /// The search of `TFuzzySet` on another set.
  int GetMaxYValueOfX(const Ref<IFuzzySet>& fuzzySet, int index, int dir) const;
  using TFuzzySet::GetMaxYValueOfX;

  // Shapes, membership and measures.

  void CreateCrispValue(TFzyFloat value) override { TFuzzySet::CreateCrispValue(value); }
  void CreateTriangleFunctionValues(TFzyFloat left, TFzyFloat middle, TFzyFloat right) override {
    TFuzzySet::CreateTriangleFunctionValues(left, middle, right);
  }
  void CreateCurveValues(int num, TFzyFloat left, TFzyFloat right, TFzyFloat inflectionPoint,
                         bool growth) override {
    TFuzzySet::CreateCurveValues(num, left, right, inflectionPoint, growth);
  }
  void CreatePIFunctionValues(int num, TFzyFloat left, TFzyFloat right, TFzyFloat center) override {
    TFuzzySet::CreatePIFunctionValues(num, left, right, center);
  }
  void CreatePIFunctionValues(int num, TFzyFloat range, TFzyFloat center) override {
    TFuzzySet::CreatePIFunctionValues(num, range, center);
  }
  void CreateBetaCurveFunctionValues(int num, TFzyFloat range, TFzyFloat center,
                                     TFzyFloat inflectionPoint) override {
    TFuzzySet::CreateBetaCurveFunctionValues(num, range, center, inflectionPoint);
  }
  void CreateBetaCurveFunctionValues(int num, TFzyFloat range, TFzyFloat center,
                                     TFzyFloat inflectionPoint, TFzyFloat weight) override {
    TFuzzySet::CreateBetaCurveFunctionValues(num, range, center, inflectionPoint, weight);
  }
  TFzyFloat DegreeOfMembership(TFzyFloat value) override {
    return TFuzzySet::DegreeOfMembership(value);
  }
  using TFuzzySet::GetCompatibilityIndex;
  TFzyFloat GetCompatibilityIndex() override { return TFuzzySet::GetCompatibilityIndex(); }
  /// The centre of gravity always: no component's method is asked, and not the variable's.
  TFzyFloat Defuzzify() override { return TFuzzySet::Defuzzify(); }
  TFzyFloat MeanOfMaxima() override { return TFuzzySet::MeanOfMaxima(); }
  TFzyFloat CenterOfGravity() override { return TFuzzySet::CenterOfGravity(); }
  bool IsUndecidable() override { return TFuzzySet::IsUndecidable(); }

  // Combination with another set. Results belong to this set's variable.

  bool Iterate(const Ref<IFuzzySet>& fuzzySet, const TIFuzzyComparison& fuzzyOperator) override;
  Ref<IFuzzySet> Operator(const Ref<IFuzzySet>& fuzzySet, const TString& operatorKeyword,
                          const TIFuzzyOperator& fuzzyOperator) override;
  Ref<IFuzzySet> Intersection(const Ref<IFuzzySet>& fuzzySet) override {
    return Intersection(fuzzySet, foZadeh);
  }
  Ref<IFuzzySet> Intersection(const Ref<IFuzzySet>& fuzzySet,
                              TFuzzyOperation intersectionType) override;
  Ref<IFuzzySet> Union(const Ref<IFuzzySet>& fuzzySet) override { return Union(fuzzySet, foZadeh); }
  Ref<IFuzzySet> Union(const Ref<IFuzzySet>& fuzzySet, TFuzzyOperation unionType) override;
  bool Intersects(const Ref<IFuzzySet>& fuzzySet) override;
  bool LineSegmentIntersects(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2, TFzyFloat x3,
                             TFzyFloat y3, TFzyFloat x4, TFzyFloat y4, TFzyFloat& x,
                             TFzyFloat& y) override {
    return TFuzzySet::LineSegmentIntersects(x1, y1, x2, y2, x3, y3, x4, y4, x, y);
  }

  // Callbacks for `Operator`: each adds (x1, formula(y1, y2)) and returns false.
  using TFormulaOperator = bool(const Ref<IFuzzySet>& r, TFzyFloat x1, TFzyFloat y1, TFzyFloat x2,
                                TFzyFloat y2);
  TFormulaOperator FuzzyOperatorMin;
  TFormulaOperator FuzzyOperatorMax;
  TFormulaOperator FuzzyOperatorMean;
  TFormulaOperator FuzzyOperatorUnionMean;
  TFormulaOperator FuzzyOperatorMeanSqr;
  TFormulaOperator FuzzyOperatorMeanSqrt;
  TFormulaOperator FuzzyOperatorIntersectionProduct;
  TFormulaOperator FuzzyOperatorUnionProduct;
  TFormulaOperator FuzzyOperatorIntersectionBoundedSum;
  TFormulaOperator FuzzyOperatorUnionBoundedSum;
  TFormulaOperator FuzzyOperatorUnionSum;

  // Hedges, cuts, correlation and inference. Sets that `fhSlightly` and the cuts make know the
  // variable's range while they are made, and clamp into it the points that lie outside since it
  // changed; the variable is told nothing of them.

  /// `fhSlightly` makes its three temporary sets in no table: nobody sees them come and go.
  Ref<IFuzzySet> Hedge(TFuzzyHedge hedgeType) override;
  Ref<IFuzzySet> Hedge(TBaseFuzzyHedge modifyType, TFzyFloat value, bool modifyY) override;
  Ref<IFuzzySet> Normalize() override;
  /// Named "mid (alpha=0.2500)", by the cut given. The result belongs to this set's variable, in no
  /// table.
  Ref<IFuzzySet> AlphaCutoff(TFzyFloat cutOff, bool strongCutoff) override;
  /// The result belongs to no variable: from then on its X is free, and its range what its points
  /// span.
  Ref<IFuzzySet> Cutoff(TFzyFloat cutOff, bool cutValuesBelow) override;
  TFzyFloat GetCorrelationStrength(const Ref<IFuzzySet>& match) override;
  Ref<IFuzzySet> Correlate(TFzyFloat correlationStrength,
                           TFuzzyCorrelationMethod correlationMethod) override;
  Ref<IFuzzySet> Infer(const Ref<IFuzzySet>& newEvidence, TFuzzyInferenceMethod inferenceMethod,
                       bool unconditional) override;

  void UpdateFuzzySetValue(TFuzzySetValue* value) override;
  void UpdateFuzzySetValues() override;
  /// A set that stands in the table under another name is filed anew.
  void PointsLoaded() override;

 protected:
  TIFuzzySet() = default;
  ~TIFuzzySet() override = default;

  /// Builds a bare object, with one reference to it, its maker's.
  void Build(TFuzzySetCollection* collection) override;
  TFuzzySetValues* CreateValues() override { return new TIFSValues(this); }
  TPersistent* PointList() override { return GetValues(); }
  bool IsUnheld() const noexcept override { return FRefCount == 0; }
  TOwned<TFuzzySet> NewInstance() const override;
  TFuzzySet* DoHedge(TFuzzyHedge hedgeType) override;
  void PrepareForName(const TString& name) override;
  /// From another set, as `TFuzzySet`; from a counted one also its variable (which moves this one)
  /// and parser. The name is not checked; another one re-files the set as `SetName` does.
  void DoAssign(TFuzzySet* source) override;
  TFzyFloat EqualityThreshold() const override;

 private:
  friend class TIFuzzySets;

  /// The set as an `ICloneable`.
  class TCloneableFace final : public ICloneable {
   public:
    explicit TCloneableFace(TIFuzzySet& set) noexcept : FSet(set) {}
    HResult QueryInterface(const TGuid& id, void** result) override {
      return FSet.QueryInterface(id, result);
    }
    std::int32_t AddRef() noexcept override { return FSet.AddRef(); }
    std::int32_t Release() noexcept override { return FSet.Release(); }
    void Assign(const Ref<IInterface>& value) override { FSet.Assign(value); }
    void Assign(TPersistent* source) override { FSet.TFuzzySet::Assign(source); }
    void AssignTo(TPersistent* dest) override { FSet.TFuzzySet::AssignTo(dest); }
    Ref<IInterface> Clone() override { return FSet.Clone(); }
    bool Equals(const Ref<IInterface>& value) override { return FSet.Equals(value); }
    std::intptr_t GetTag() override { return FSet.GetTag(); }
    void SetTag(std::intptr_t value) override { FSet.SetTag(value); }

   private:
    TIFuzzySet& FSet;
  };

  /// The set's link to its variable. A variable of the library's own is told which of its
  /// references are such links, so that it knows whether anybody else holds it.
  class TVariableLink {
   public:
    TVariableLink() = default;
    TVariableLink(const TVariableLink&) = delete;
    TVariableLink& operator=(const TVariableLink&) = delete;
    ~TVariableLink() { Set(nullptr); }

    const Ref<IFuzzyVariable>& Get() const noexcept { return FVariable; }
    IFuzzyVariable* operator->() const noexcept { return FVariable.Get(); }
    explicit operator bool() const noexcept { return FVariable != nullptr; }
    /// Whether the variable is of somebody else's making.
    bool IsForeign() const noexcept { return FVariable && !FOwn; }
    bool IsBorrowed() const noexcept { return FBorrowed; }
    /// The variable, when it is of the library's own making and counted here.
    TIFuzzyVariable* Own() const noexcept { return FBorrowed ? nullptr : FOwn; }
    void Set(Ref<IFuzzyVariable> variable) noexcept;
    /// Knows the variable of another link from now on, without counting it: that link lasts longer.
    void Borrow(const TVariableLink& other) noexcept;

   private:
    Ref<IFuzzyVariable> FVariable;
    TIFuzzyVariable* FOwn = nullptr;  // the same, when it is of the library's own making
    bool FBorrowed = false;
  };

  using TFuzzySet::Free;  // references end it
  using TFuzzySet::Intersection;
  using TFuzzySet::Union;

  /// The set that an operation of the engine changed: this one, unless it has ended meanwhile.
  Ref<IFuzzySet> Returned(TFuzzySet* set) noexcept { return set ? this : nullptr; }
  /// A set that an operation of the engine made with a lent variable, now without it.
  static Ref<TIFuzzySet> Made(TFuzzySet* set) noexcept;
  template <class Rename>
  void Refile(Rename rename);
  template <class Change>
  void ChangePoints(Change change);
  template <class Operation>
  auto Lending(Operation operation);
  /// The variable counted, for a call to it, when it is not the library's own: that one compares no
  /// counts, and may be ended by what it calls.
  Ref<IFuzzyVariable> HoldForeignVariable() const;
  template <class Fill>
  Ref<IFuzzySet> Combine(const Ref<IFuzzySet>& set, const char* operation, const TString& keyword,
                         Fill fill);
  Ref<IFuzzySet> CombineBy(const Ref<IFuzzySet>& fuzzySet, const char* operation,
                           const detail::TCombination& combination);

  std::atomic<std::int32_t> FRefCount{0};
  TVariableLink FVariable;
  Ref<IFuzzyParser> FParser;
  std::int32_t FIndex = 0;
  std::int32_t FEntries = 0;  // how many tables' entries hold the set
  // Whether an operation of the engine runs whose sets on the way borrow the variable: they know it
  // for its range only, and tell it of nothing.
  bool FLends = false;
  TCloneableFace FCloneable{*this};
};

}  // namespace fzy
