#pragma once

#include <stdexcept>
#include <vector>

#include "fuzzylogic/engine/FuzzyPoint.h"
#include "fuzzylogic/interfaces/FuzzyInterfaces.h"

namespace fzy::test {

/// A set of somebody else: it tells its points, name and expression, belongs to no variable, and
/// refuses everything else.
class TForeignSet final : public TInterfaced<IFuzzySet> {
  using D = double;
  using TSet = Ref<IFuzzySet>;
  using TArg = const TSet&;
  using TAny = const Ref<IInterface>&;
  using TText = const TString&;

 public:
  explicit TForeignSet(std::vector<TFuzzyPoint> points, TString name = "", TString expression = "")
      : Points(std::move(points)), Name(std::move(name)), Expression(std::move(expression)) {}

  std::vector<TFuzzyPoint> Points;
  TString Name, Expression;

  int GetCount() override { return static_cast<int>(Points.size()); }
  D GetXValues(int index) override { return Points.at(static_cast<std::size_t>(index)).X; }
  D GetYValues(int index) override { return Points.at(static_cast<std::size_t>(index)).Y; }
  TString GetName() override { return Name; }
  TString GetExpression() override { return Expression; }
  TFuzzySetType GetSetType() override { return fstPICurve; }
  D GetInflectionPoint() override { return 7; }
  Ref<IFuzzyVariable> GetVariable() override { return nullptr; }
  Ref<IFuzzyParser> GetParser() override { return nullptr; }

  // clang-format off
#define NO override { throw std::logic_error("not to be asked of a foreign set"); }
  void Assign(TAny) NO void Assign(TPersistent*) NO void AssignTo(TPersistent*) NO Ref<IInterface> Clone() NO bool Equals(TAny) NO
  std::intptr_t GetTag() NO void SetTag(std::intptr_t) NO D GetCompatibilityIndex() NO void SetExpression(TText) NO void SetName(TText) NO
  void SetSetType(TFuzzySetType) NO void SetXValues(int, D) NO void SetYValues(int, D) NO D GetXMaximum() NO D GetXMinimum() NO TString ToString() NO
  TString GetValuesToString() NO int GetIndex() NO void SetIndex(int) NO bool GetDefined() NO void SetDefined(bool) NO
  void SetParser(const Ref<IFuzzyParser>&) NO void SetVariable(const Ref<IFuzzyVariable>&) NO void Append(TArg) NO void Append(TArg, int, int) NO
  void AssignValues(TArg) NO int Add(D, D) NO void BeginUpdate() NO void Clear() NO void Delete(int) NO void EndUpdate() NO int Insert(int, D, D) NO
  void Expand(int) NO D GetMaxValue() NO D GetMinValue() NO int SkipX(int, D, int) NO int SkipY(int, D, int) NO D GetCorrelationStrength(TArg) NO
  TSet Correlate(D, TFuzzyCorrelationMethod) NO TSet Infer(TArg, TFuzzyInferenceMethod, bool) NO void CreateCrispValue(D) NO
  void CreateTriangleFunctionValues(D, D, D) NO void CreateCurveValues(int, D, D, D, bool) NO void CreatePIFunctionValues(int, D, D, D) NO
  void CreatePIFunctionValues(int, D, D) NO void CreateBetaCurveFunctionValues(int, D, D, D) NO void CreateBetaCurveFunctionValues(int, D, D, D, D) NO
  D DegreeOfMembership(D) NO float FuzzyEquals(TAny) NO TSet Hedge(TFuzzyHedge) NO TSet Hedge(TBaseFuzzyHedge, D, bool) NO D Defuzzify() NO
  D MeanOfMaxima() NO D CenterOfGravity() NO bool IsUndecidable() NO bool Intersects(TArg) NO TSet Intersection(TArg) NO
  TSet Intersection(TArg, TFuzzyOperation) NO bool LineSegmentIntersects(D, D, D, D, D, D, D, D, D&, D&) NO TSet Union(TArg) NO
  TSet Union(TArg, TFuzzyOperation) NO TSet Normalize() NO bool Iterate(TArg, const TIFuzzyComparison&) NO
  TSet Operator(TArg, TText, const TIFuzzyOperator&) NO TSet AlphaCutoff(D, bool) NO TSet Cutoff(D, bool) NO TSet Clone(const Ref<IFuzzyVariable>&) NO
  TString GetComment() NO void SetComment(TText) NO
#undef NO
  // clang-format on
};

}  // namespace fzy::test
