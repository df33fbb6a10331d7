#pragma once

#include <functional>
#include <initializer_list>
#include <span>

#include "fuzzylogic/common/Cloneable.h"
#include "fuzzylogic/framework/Component.h"
#include "fuzzylogic/framework/Encoding.h"
#include "fuzzylogic/vocabulary/FuzzyTypes.h"

namespace fzy {

// The contracts of the counted model: sets, variables and parsers held by reference and never freed
// by hand. An object that answers the query for an interface counts as one, whatever its class. The
// operations do what those of the same names do in the owned model (`TFuzzySet`, `TFuzzyVariable`),
// with the other operand read through its interface; what differs is said here.

class IFuzzySet;
class IFuzzyVariable;
class IFuzzyParser;

/// Told of every position of a walk of two sets; appends to the set being built; true stops the
/// walk.
using TIFuzzyOperator = std::function<bool(const Ref<IFuzzySet>& result, TFzyFloat x1, TFzyFloat y1,
                                           TFzyFloat x2, TFzyFloat y2)>;
/// The same without a result.
using TIFuzzyComparison =
    std::function<bool(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2)>;
using TIFuzzySetEvent =
    std::function<void(const Ref<IFuzzyVariable>& sender, const Ref<IFuzzySet>& fuzzySet)>;
using TIFuzzyVariableEvent = std::function<void(const Ref<IFuzzyVariable>& fuzzyVariable)>;
/// The handler may replace the result.
using TIFuzzyExpressionEvent = std::function<void(
    const Ref<IFuzzyVariable>& sender, const TString& expression, Ref<IFuzzySet>& result)>;

/// A counted fuzzy set. It holds a counted reference to its variable and to its parser.
class IFuzzySet : public ICloneable {
 public:
  using Base = ICloneable;
  static constexpr TGuid Id{
      0xb5c057e4, 0xfd60, 0x4818, {0x96, 0x41, 0xb6, 0x1a, 0x71, 0xb4, 0x92, 0xcf}};
  using ICloneable::Clone;

  virtual TFzyFloat GetCompatibilityIndex() = 0;
  virtual TFzyFloat GetInflectionPoint() = 0;
  virtual TString GetExpression() = 0;
  virtual void SetExpression(const TString& value) = 0;
  virtual TString GetName() = 0;
  virtual void SetName(const TString& value) = 0;
  virtual TFuzzySetType GetSetType() = 0;
  virtual void SetSetType(TFuzzySetType value) = 0;
  virtual TFzyFloat GetXValues(int index) = 0;
  virtual void SetXValues(int index, TFzyFloat value) = 0;
  virtual TFzyFloat GetYValues(int index) = 0;
  virtual void SetYValues(int index, TFzyFloat value) = 0;
  /// The variable's range; without one the ends of the points.
  virtual TFzyFloat GetXMaximum() = 0;
  virtual TFzyFloat GetXMinimum() = 0;
  virtual TString ToString() = 0;
  virtual TString GetValuesToString() = 0;
  virtual Ref<IFuzzyVariable> GetVariable() = 0;
  virtual Ref<IFuzzyParser> GetParser() = 0;
  /// The number that gives the order of definition among the variable's sets.
  virtual int GetIndex() = 0;
  virtual void SetIndex(int value) = 0;
  virtual bool GetDefined() = 0;
  virtual void SetDefined(bool value) = 0;
  virtual void SetParser(const Ref<IFuzzyParser>& value) = 0;
  virtual void SetVariable(const Ref<IFuzzyVariable>& value) = 0;
  /// The number of points.
  virtual int GetCount() = 0;
  virtual void Append(const Ref<IFuzzySet>& source) = 0;
  virtual void Append(const Ref<IFuzzySet>& source, int index, int count) = 0;
  virtual void AssignValues(const Ref<IFuzzySet>& source) = 0;
  /// The index that the point had when it was appended.
  virtual int Add(TFzyFloat x, TFzyFloat y) = 0;
  virtual void BeginUpdate() = 0;
  virtual void Clear() = 0;
  virtual void Delete(int index) = 0;
  virtual void EndUpdate() = 0;
  /// The index that the point had when it was inserted.
  virtual int Insert(int index, TFzyFloat x, TFzyFloat y) = 0;
  virtual void Expand(int newCount) = 0;
  virtual TFzyFloat GetMaxValue() = 0;
  virtual TFzyFloat GetMinValue() = 0;
  virtual int SkipX(int index, TFzyFloat x, int dir) = 0;
  virtual int SkipY(int index, TFzyFloat y, int dir) = 0;
  virtual TFzyFloat GetCorrelationStrength(const Ref<IFuzzySet>& match) = 0;
  virtual Ref<IFuzzySet> Correlate(TFzyFloat correlationStrength,
                                   TFuzzyCorrelationMethod correlationMethod) = 0;
  virtual Ref<IFuzzySet> Infer(const Ref<IFuzzySet>& newEvidence,
                               TFuzzyInferenceMethod inferenceMethod, bool unconditional) = 0;
  virtual void CreateCrispValue(TFzyFloat value) = 0;
  virtual void CreateTriangleFunctionValues(TFzyFloat left, TFzyFloat middle, TFzyFloat right) = 0;
  virtual void CreateCurveValues(int num, TFzyFloat left, TFzyFloat right,
                                 TFzyFloat inflectionPoint, bool growth) = 0;
  virtual void CreatePIFunctionValues(int num, TFzyFloat left, TFzyFloat right,
                                      TFzyFloat center) = 0;
  virtual void CreatePIFunctionValues(int num, TFzyFloat range, TFzyFloat center) = 0;
  virtual void CreateBetaCurveFunctionValues(int num, TFzyFloat range, TFzyFloat center,
                                             TFzyFloat inflectionPoint) = 0;
  virtual void CreateBetaCurveFunctionValues(int num, TFzyFloat range, TFzyFloat center,
                                             TFzyFloat inflectionPoint, TFzyFloat weight) = 0;
  virtual TFzyFloat DegreeOfMembership(TFzyFloat value) = 0;
  /// In single precision; 0 for an object that is not a fuzzy set.
  virtual float FuzzyEquals(const Ref<IInterface>& value) = 0;
  virtual Ref<IFuzzySet> Hedge(TFuzzyHedge hedgeType) = 0;
  virtual Ref<IFuzzySet> Hedge(TBaseFuzzyHedge modifyType, TFzyFloat value, bool modifyY) = 0;
  virtual TFzyFloat Defuzzify() = 0;
  virtual TFzyFloat MeanOfMaxima() = 0;
  virtual TFzyFloat CenterOfGravity() = 0;
  virtual bool IsUndecidable() = 0;
  virtual bool Intersects(const Ref<IFuzzySet>& fuzzySet) = 0;
  virtual Ref<IFuzzySet> Intersection(const Ref<IFuzzySet>& fuzzySet) = 0;
  virtual Ref<IFuzzySet> Intersection(const Ref<IFuzzySet>& fuzzySet,
                                      TFuzzyOperation intersectionType) = 0;
  virtual bool LineSegmentIntersects(TFzyFloat x1, TFzyFloat y1, TFzyFloat x2, TFzyFloat y2,
                                     TFzyFloat x3, TFzyFloat y3, TFzyFloat x4, TFzyFloat y4,
                                     TFzyFloat& x, TFzyFloat& y) = 0;
  virtual Ref<IFuzzySet> Union(const Ref<IFuzzySet>& fuzzySet) = 0;
  virtual Ref<IFuzzySet> Union(const Ref<IFuzzySet>& fuzzySet, TFuzzyOperation unionType) = 0;
  virtual Ref<IFuzzySet> Normalize() = 0;
  virtual bool Iterate(const Ref<IFuzzySet>& fuzzySet, const TIFuzzyComparison& fuzzyOperator) = 0;
  virtual Ref<IFuzzySet> Operator(const Ref<IFuzzySet>& fuzzySet, const TString& operatorKeyword,
                                  const TIFuzzyOperator& fuzzyOperator) = 0;
  virtual Ref<IFuzzySet> AlphaCutoff(TFzyFloat cutOff, bool strongCutoff) = 0;
  virtual Ref<IFuzzySet> Cutoff(TFzyFloat cutOff, bool cutValuesBelow) = 0;
  /// A copy of the name and the points for another variable.
  virtual Ref<IFuzzySet> Clone(const Ref<IFuzzyVariable>& variable) = 0;
  virtual TString GetComment() = 0;
  virtual void SetComment(const TString& value) = 0;

 protected:
  ~IFuzzySet() = default;
};

/// A counted linguistic variable. It holds counted references to its member sets and to its parser.
class IFuzzyVariable : public ICloneable {
 public:
  using Base = ICloneable;
  static constexpr TGuid Id{
      0xf749ff55, 0xfff4, 0x4f92, {0x9b, 0x6f, 0x14, 0x56, 0x8d, 0x17, 0x46, 0x61}};

  virtual TDefuzzificationMethod GetDefuzzificationMethod() = 0;
  virtual TFzyFloat GetMaximum() = 0;
  virtual TFzyFloat GetMinimum() = 0;
  virtual TString GetName() = 0;
  virtual TString ToString() = 0;
  virtual TString GetUnits() = 0;
  virtual int GetNumFunctionValues() = 0;
  virtual TNotifyEvent GetOnChange() = 0;
  virtual TIFuzzyVariableEvent GetOnVariableChange() = 0;
  virtual TIFuzzySetEvent GetOnFuzzySetChange() = 0;
  virtual Ref<IFuzzyParser> GetParser() = 0;
  virtual TFzyFloat GetThreshold() = 0;
  virtual TString GetComment() = 0;
  virtual TIFuzzySetEvent GetOnFuzzySetAdded() = 0;
  virtual TIFuzzySetEvent GetOnFuzzySetDeleted() = 0;
  virtual void SetOnFuzzySetAdded(const TIFuzzySetEvent& value) = 0;
  virtual void SetOnFuzzySetDeleted(const TIFuzzySetEvent& value) = 0;
  virtual void SetComment(const TString& value) = 0;
  virtual void SetParser(const Ref<IFuzzyParser>& value) = 0;
  virtual void SetDefuzzificationMethod(TDefuzzificationMethod value) = 0;
  virtual void SetMaximum(TFzyFloat value) = 0;
  virtual void SetMinimum(TFzyFloat value) = 0;
  virtual void SetName(const TString& value) = 0;
  virtual void SetUnits(const TString& value) = 0;
  virtual void SetNumFunctionValues(int value) = 0;
  virtual void SetOnChange(const TNotifyEvent& value) = 0;
  virtual void SetOnVariableChange(const TIFuzzyVariableEvent& value) = 0;
  virtual void SetOnFuzzySetChange(const TIFuzzySetEvent& value) = 0;
  virtual void SetThreshold(TFzyFloat value) = 0;
  virtual TFzyFloat GetCorrelationStrength(std::span<const Ref<IFuzzySet>> premises,
                                           std::span<const Ref<IFuzzySet>> matchings) = 0;
  virtual Ref<IFuzzySet> AssertRule(std::span<const Ref<IFuzzySet>> premises,
                                    std::span<const Ref<IFuzzySet>> matchings,
                                    const Ref<IFuzzySet>& newEvidence,
                                    const Ref<IFuzzySet>& oldEvidence) = 0;
  virtual Ref<IFuzzySet> AssertRule(TFzyFloat correlationStrength,
                                    const Ref<IFuzzySet>& newEvidence,
                                    const Ref<IFuzzySet>& oldEvidence) = 0;
  virtual Ref<IFuzzySet> AssertRule(const Ref<IFuzzySet>& premise,
                                    const Ref<IFuzzySet>& newEvidence,
                                    const Ref<IFuzzySet>& matching,
                                    const Ref<IFuzzySet>& oldEvidence) = 0;
  /// The number of member sets.
  virtual int GetCount() = 0;
  virtual Ref<IFuzzySet> GetFuzzySet(int index) = 0;
  virtual Ref<IFuzzySet> GetFuzzySetByName(const TString& index) = 0;
  virtual void Add(const Ref<IFuzzySet>& fuzzySet) = 0;
  virtual Ref<IFuzzySet> Add(const TString& name) = 0;
  virtual void AssignFuzzySets(const Ref<IFuzzyVariable>& source) = 0;
  virtual void BeginUpdate() = 0;
  virtual void Clear() = 0;
  /// The set of that name, or none.
  virtual Ref<IFuzzySet> ContainsFuzzySet(const TString& name) = 0;
  virtual void Remove(const Ref<IFuzzySet>& fuzzySet) = 0;
  virtual void EndUpdate() = 0;
  virtual void FuzzySetChanged(const Ref<IFuzzySet>& fuzzySet) = 0;

  // The same with premises and matchings in braces, which would otherwise be taken for one of each.
  using TSets = std::initializer_list<Ref<IFuzzySet>>;
  TFzyFloat GetCorrelationStrength(TSets premises, TSets matchings) {
    return GetCorrelationStrength(std::span(premises.begin(), premises.size()),
                                  std::span(matchings.begin(), matchings.size()));
  }
  Ref<IFuzzySet> AssertRule(TSets premises, TSets matchings, const Ref<IFuzzySet>& newEvidence,
                            const Ref<IFuzzySet>& oldEvidence) {
    return AssertRule(std::span(premises.begin(), premises.size()),
                      std::span(matchings.begin(), matchings.size()), newEvidence, oldEvidence);
  }

 protected:
  ~IFuzzyVariable() = default;
};

/// The parser as sets and variables of the counted model reach it. References do not own it.
class IFuzzyParser : public IInterface {
 public:
  using Base = IInterface;
  static constexpr TGuid Id{
      0x7f0ed40b, 0x4048, 0x46bb, {0x8e, 0xfb, 0xda, 0xb9, 0x53, 0x2f, 0x6a, 0x54}};

  /// Evaluates a text against the variable into `fuzzySet` and gives its crisp value.
  virtual TFzyFloat EvalFuzzyExpression(const Ref<IFuzzyVariable>& variable,
                                        const TString& expression, Ref<IFuzzySet>& fuzzySet) = 0;
  virtual Ref<IFuzzySet> EvalFuzzyExpression(const Ref<IFuzzyVariable>& variable,
                                             const TString& expression) = 0;
  /// Reads one term into the variable.
  virtual Ref<IFuzzySet> ParseFuzzySet(const Ref<IFuzzyVariable>& variable, const TString& text,
                                       const TEncoding* encoding) = 0;
  virtual Ref<IFuzzyVariable> ParseFuzzyVariableIntf(const TString& text,
                                                     const TEncoding* encoding) = 0;
  /// The set as definition text, or for display.
  virtual TString PrettyPrint(const Ref<IFuzzySet>& fuzzySet, bool asDefinition) = 0;
  virtual TString PrettyPrint(const Ref<IFuzzyVariable>& fuzzyVariable) = 0;

 protected:
  ~IFuzzyParser() = default;
};

}  // namespace fzy
