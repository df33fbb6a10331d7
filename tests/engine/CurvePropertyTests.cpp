#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "fuzzylogic/engine/FuzzyOperators.h"
#include "tests/engine/PlainList.h"
#include "tests/engine/Sets.h"

// Membership, walks and combinations against plain scans, to the last bit; and what is
// asked of sets a thousand times a second must not allocate.

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

  void Refill() {
    FillRandomly(*A, Random);
    if (Random.OneIn(4)) {
      B->CreateCrispValue(CrispX(PointsOf(*A)));
    } else if (Random.OneIn(2) && A->GetValues()->GetCount() > 0) {  // pieces in common
      B->SetValues(A->GetValues());
      (*B->GetValues())[Random.Below(B->GetValues()->GetCount())]->SetY(RandomY(Random));
    } else {
      FillRandomly(*B, Random);
    }
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

/// The points of a combination, added and thinned one by one.
TPoints PlainCombination(const TPoints& a, const TPoints& b, TFuzzyFormula formula, TPoints& raw) {
  TPlainList result(Minimum, Maximum);
  result.BeginUpdate();
  PlainWalk(a, b, [&](double x1, double y1, double, double y2) {
    raw.push_back({x1, formula(y1, y2)});
    result.Add(x1, formula(y1, y2));
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
    Refill();
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
    const TOwned<TFuzzySet> own(
        A->Operator(B, "own", [&](TFuzzySetValues& r, double x1, double y1, double, double y2) {
          r.Add(x1, formula(y1, y2));
          return false;
        }));
    ASSERT_TRUE(SameBits(own->GetValues()->Points(), plain));
  }
}

}  // namespace
}  // namespace fzy::test
