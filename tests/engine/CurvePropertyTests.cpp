#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "fuzzylogic/engine/FuzzyOperators.h"
#include "fuzzylogic/framework/Format.h"
#include "tests/engine/Models.h"
#include "tests/engine/PlainList.h"
#include "tests/support/ForeignSet.h"

// Membership, walks and combinations against plain scans, to the last bit; counted sets against
// owned ones; and what is asked of sets a thousand times a second must not allocate.

namespace {
std::size_t Allocations = 0;
}

// Not inlined: the compiler would take the pairs of malloc and free apart and find them mismatched.
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  ++Allocations;
  return std::malloc(size ? size : 1);
}
[[gnu::noinline]] void* operator new(std::size_t size) {
  if (void* memory = operator new(size, std::nothrow)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

namespace fzy::test {
namespace {

constexpr double Minimum = -3;
constexpr double Maximum = 12;

class CurveProperty : public testing::Test {
 protected:
  CurveProperty()
      : Variable(MakeVariable(Minimum, Maximum)),
        A(Variable->GetItems()->Add("a")),
        B(Variable->GetItems()->Add("b")) {}

  void Refill() { Refill(*A, *B); }
  void Refill(TFuzzySet& a, TFuzzySet& b) {
    FillRandomly(a, Random);
    if (Random.OneIn(4)) {
      b.CreateCrispValue(CrispX(PointsOf(a)));
    } else if (Random.OneIn(2) && a.GetValues()->GetCount() > 0) {  // pieces in common
      b.SetValues(a.GetValues());
      (*b.GetValues())[Random.Below(b.GetValues()->GetCount())]->SetY(RandomY(Random));
    } else {
      FillRandomly(b, Random);
    }
  }

  /// Counted sets with the curves of A and B, one of them at times a set of somebody else.
  std::pair<Ref<IFuzzySet>, Ref<IFuzzySet>> RefillBoth() {
    const TRandom before = Random;
    Refill();
    Random = before;
    const auto a = TCountedModel::AddSet(Counted, "", "a");
    const auto b = TCountedModel::AddSet(Counted, "", "b");
    Refill(TCountedModel::ClassOf(a), TCountedModel::ClassOf(b));
    A->SetName("a");
    A->SetExpression(Random.OneIn(2) ? "x and y" : "");
    a->SetExpression(A->GetExpression());
    if (Random.OneIn(2)) return {a, b};
    return {a, new TForeignSet(PointsOf(*B), "b", B->GetExpression())};
  }

  /// A number at or near a point, where the line of a piece leads to degree 0, or anywhere.
  double CrispX(const TPoints& points) {
    if (points.empty() || Random.OneIn(3)) return RandomX(Random);
    const std::size_t i = Random.Bits() % points.size();
    if (i == 0 || Random.OneIn(2)) return points[i].X + RandomNudge(Random);
    const double x = PlainX(points[i - 1], points[i], RandomNudge(Random));
    return Random.OneIn(2) ? x : x + RandomNudge(Random);
  }

  TRandom Random;
  testing::ScopedTrace Trace{__FILE__, __LINE__, Random.Trace()};
  TOwned<TFuzzyVariable> Variable;
  Ref<IFuzzyVariable> Counted = TCountedModel::MakeVariable(Minimum, Maximum);
  TFuzzySet* A;
  TFuzzySet* B;
};

TEST_F(CurveProperty, MembershipFindsWhatAScanFinds) {
  for (int round = 0; round < 3000; ++round) {
    FillRandomly(*A, Random);
    const TPoints points = PointsOf(*A);
    std::vector<double> queries = {RandomX(Random), -1e300, 1e300};
    for (const TFuzzyPoint& point : points)
      queries.insert(queries.end(),
                     {point.X, point.X + 0.00009, point.X - 0.00011, std::nextafter(point.X, 100)});
    for (const double x : queries)
      ASSERT_TRUE(SameBits(A->DegreeOfMembership(x), PlainMembership(points, x)))
          << "round " << round << ", at " << x << " of " << Text(A);
  }
}

double PlainHeight(const TPoints& a, const TPoints& b) {
  double height = 0;
  PlainWalk(a, b, [&height](double, double y1, double, double y2) {
    height = std::max(height, std::min(y1, y2));
    return false;
  });
  return height;
}

TEST_F(CurveProperty, AWalkVisitsWhatThePlainWalkVisits) {
  for (int round = 0; round < 5000; ++round) {
    Refill();
    const TPoints a = PointsOf(*A), b = PointsOf(*B);
    SCOPED_TRACE("round " + std::to_string(round) + ": " + Text(a) + " with " + Text(b));
    std::vector<double> visits, expected;
    const int steps = Random.OneIn(5) ? Random.Below(6) : 1000;  // until the callback stops it
    const auto record = [steps](std::vector<double>& to) {
      return [&to, left = steps](double x1, double y1, double x2, double y2) mutable {
        to.insert(to.end(), {x1, y1, x2, y2});
        return left-- == 0;
      };
    };
    const bool stopped = A->Iterate(B, record(visits));
    ASSERT_EQ(stopped, PlainWalk(a, b, record(expected)) || (a.empty() && b.empty()));
    ASSERT_EQ(visits, expected);
    ASSERT_EQ(PointsOf(*A), a);
    ASSERT_TRUE(SameBits(A->GetCorrelationStrength(B), PlainHeight(a, b)));
    ASSERT_TRUE(SameBits(B->FuzzyEquals(A), PlainHeight(b, a)));
  }
}

TEST_F(CurveProperty, TheStrengthAtACrispNumberIsThatOfTheWalk) {
  for (int round = 0; round < 8000; ++round) {
    FillRandomly(*A, Random);
    const TPoints a = PointsOf(*A);
    for (int i = 0; i < 4; ++i) {
      B->CreateCrispValue(CrispX(a));
      ASSERT_TRUE(SameBits(A->GetCorrelationStrength(B), PlainHeight(a, PointsOf(*B))))
          << "round " << round << ": " << Text(a) << " at " << Text(B);
    }
  }
}

TEST_F(CurveProperty, AskingASetAllocatesNothing) {
  for (int round = 0; round < 200; ++round) {
    Refill();
    const double x = RandomX(Random);
    const std::size_t before = Allocations;
    double sum = A->GetCorrelationStrength(B) + A->DegreeOfMembership(x) + A->CenterOfGravity();
    sum += A->MeanOfMaxima() + A->GetCompatibilityIndex() + (A->Intersects(B) ? 1 : 0);
    EXPECT_EQ(Allocations, before) << sum;
  }
  EXPECT_GT(Allocations, 0U);
}

/// The points of a combination, added and thinned one by one; a counted set adds them whole.
TPoints PlainCombination(const TPoints& a, const TPoints& b, TFuzzyFormula formula, TPoints& raw,
                         bool counted = false) {
  TPlainList result(Minimum, Maximum);
  result.BeginUpdate();
  PlainWalk(a, b, [&](double x1, double y1, double, double y2) {
    raw.push_back({x1, formula(y1, y2)});
    counted ? result.SetValue(result.Add(), x1, formula(y1, y2))
            : static_cast<void>(result.Add(x1, formula(y1, y2)));
    return false;
  });
  if (!a.empty() && !b.empty()) result.RemoveFlatPoints();
  result.EndUpdate();
  return result.Points();
}

TEST_F(CurveProperty, CombinationsAreThePlainOnes) {
  constexpr TFuzzyOperation operations[] = {foZadeh,   foMean,       foMeanSqr, foMeanSqrt,
                                            foProduct, foBoundedSum, foSum};
  for (int round = 0; round < 6000; ++round) {
    const auto [countedA, countedB] = RefillBoth();
    const TPoints a = PointsOf(*A), b = PointsOf(*B);
    SCOPED_TRACE("round " + std::to_string(round) + ": " + Text(a) + " with " + Text(b));
    const TFuzzyOperation operation = operations[Random.Below(7)];
    const bool all = operation == foSum || Random.OneIn(2);
    const TFuzzyFormula formula = all ? UnionFormula(operation) : IntersectionFormula(operation);
    const TOwned<TFuzzySet> result(all ? A->Union(B, operation) : A->Intersection(B, operation));
    TPoints plainRaw;
    const TPoints plain = PlainCombination(a, b, formula, plainRaw);
    ASSERT_TRUE(SameBits(result->GetValues()->Points(), plain));
    std::vector<TFuzzyPoint> raw;
    CombineCurves(a, b, formula, raw);
    ASSERT_TRUE(SameBits(raw, plainRaw));

    // A callback from outside gets the same list, filled point by point.
    const auto append = [&](auto& r, double x1, double y1, double, double y2) {
      r.Add(x1, formula(y1, y2));
      return false;
    };
    const auto appendTo = [&](const auto& r, auto... at) { return append(*r, at...); };
    const TOwned<TFuzzySet> own(A->Operator(B, "own", append));
    ASSERT_TRUE(SameBits(own->GetValues()->Points(), plain));
    const TPoints whole = PlainCombination(a, b, formula, plainRaw, true);
    const auto counted =
        all ? countedA->Union(countedB, operation) : countedA->Intersection(countedB, operation);
    ASSERT_TRUE(SameBits(PointsOf(*counted), whole));
    ASSERT_TRUE(SameBits(PointsOf(*countedA->Operator(countedB, "own", appendTo)), whole));
  }
}

// clang-format off
enum { LinguisticHedge, NumericHedge, Correlation, AlphaCut, Cut, Normal, And, Or, Inference };
/// An operation by its number, the same for both models.
template <class Set, class Other>
auto Operate(Set& a, Other b, int operation, int kind, double v, bool flag) {
  switch (operation) {
    case LinguisticHedge: return a.Hedge(static_cast<TFuzzyHedge>(kind % 20));
    case NumericHedge: return a.Hedge(static_cast<TBaseFuzzyHedge>(kind % 9), v, flag);
    case Correlation: return a.Correlate(v, flag ? fcmMinimum : fcmProduct);
    case AlphaCut: return a.AlphaCutoff(v, flag);
    case Cut: return a.Cutoff(v, flag);
    case Normal: return a.Normalize();
    case And: return a.Intersection(b, static_cast<TFuzzyOperation>(kind % 7));
    case Or: return a.Union(b, static_cast<TFuzzyOperation>(kind % 7));
    default: return a.Infer(b, static_cast<TFuzzyInferenceMethod>(kind % 5), flag);
  }
}
template <class Set, class Other>
std::vector<double> Measures(Set& a, Other b, double x) {
  return {a.DegreeOfMembership(x), a.CenterOfGravity(), a.MeanOfMaxima(), a.Defuzzify(),
          a.GetCompatibilityIndex(), a.GetCorrelationStrength(b), static_cast<float>(a.FuzzyEquals(b)),
          double(a.Intersects(b)), double(a.Equals(b)), double(a.IsUndecidable())};
}
// clang-format on

// How combinations differ in their points is tested above.
TEST_F(CurveProperty, ACountedSetDoesWhatAnOwnedOneDoes) {
  for (int round = 0; round < 6000; ++round) {
    const auto [a, b] = RefillBoth();
    const int operation = Random.Below(9), kind = Random.Below(1260);
    const double v = Random.OneIn(3) ? Random.Below(4) / 2.0 - 0.5 : RandomY(Random);
    const double x = RandomX(Random);
    const bool flag = Random.OneIn(2);
    SCOPED_TRACE("round " + std::to_string(round) + ": operation " + std::to_string(operation) +
                 " with " + Text(v) + " on " + Text(A) + " and " + Text(B));
    Variable->SetThreshold(v);
    Counted->SetThreshold(v);
    ASSERT_EQ(Measures(*a, b, x), Measures(*A, B, x));
    TFuzzySet* expected = nullptr;
    Ref<IFuzzySet> actual;
    const auto operate = [&](auto& result, auto& set, auto other) {
      return MessageOf([&] { result = Operate(set, other, operation, kind, v, flag); });
    };
    ASSERT_EQ(operate(actual, *a, b), operate(expected, *A, B));
    if (!expected) continue;
    const TOwned<TFuzzySet> made(expected == A ? nullptr : expected);
    ASSERT_EQ(actual == a, !made);
    ASSERT_TRUE(operation >= And || SameBits(PointsOf(*actual), PointsOf(*expected)));
    const TString cut = operation == AlphaCut ? " (alpha=" + FormatFixed(v, 4) + ")" : "";
    ASSERT_EQ(actual->GetName(), expected->GetName() + cut);
    ASSERT_EQ(actual->GetExpression(), expected->GetExpression());
    ASSERT_EQ(actual->GetSetType(), expected->GetSetType());
    ASSERT_EQ(actual->GetVariable(), operation == Cut ? nullptr : Counted);
  }
}

}  // namespace
}  // namespace fzy::test
