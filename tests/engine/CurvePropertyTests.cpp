#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "fuzzylogic/engine/FuzzyOperators.h"
#include "tests/engine/PlainList.h"
#include "tests/engine/Sets.h"

// Membership, walks, combinations and shapes against plain scans, to the last bit; and what is
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
    const TPoints a = PointsOf(*A);
    const TPoints b = PointsOf(*B);
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
    const TPoints a = PointsOf(*A);
    const TPoints b = PointsOf(*B);
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

// Shapes write many points at once, onto what is there.

void PlainCurveShape(TPlainList& list, int num, double left, double right, bool growth) {
  num = std::max(num, 3);
  const double w = right - left;
  const double step = w / (num - 1);
  double x = left;
  list.BeginUpdate();
  for (int i = 0; i < num; ++i, x += step) {
    double y = 1;
    if (x <= left)
      y = 0;
    else if (x <= (left + right) / 2)
      y = 2 * ((x - left) / w * ((x - left) / w));
    else if (x <= right)
      y = 1 - 2 * ((x - right) / w * ((x - right) / w));
    list.Add(x, growth ? y : 1 - y);
  }
  list.EndUpdate();
}

TEST_F(CurveProperty, ShapesJoinThePointsThere) {
  for (int round = 0; round < 3000; ++round) {
    FillRandomly(*B, Random);
    TPlainList plain(Minimum, Maximum);
    plain.Assign(PointsOf(*B));
    A->SetValues(B->GetValues());
    ASSERT_TRUE(SameBits(A->GetValues()->Points(), plain.Points()));
    const double left = RandomX(Random) - 5;
    const double right = left + (Random.OneIn(4) ? 0 : RandomX(Random) + 0.001);
    const double center = left + Random.Unit() * (right - left);
    const int num = Random.Below(12);
    const int shape = Random.Below(3);
    plain.BeginUpdate();
    if (shape == 0) {
      A->CreateTriangleFunctionValues(left, center, right);
      plain.Add(left, 0);
      plain.Add(center, 1);
      plain.Add(right, 0);
    } else if (shape == 1) {
      A->CreateCurveValues(num, left, right, center, num % 2 == 0);
      PlainCurveShape(plain, num, left, right, num % 2 == 0);
    } else {
      A->CreatePIFunctionValues(num, left, right, center);
      PlainCurveShape(plain, num / 2 + 1, left, center, true);
      if (num % 2 == 0) plain.Delete(plain.Count() - 1);
      PlainCurveShape(plain, num / 2 + 1, center, right, false);
      if (plain.Count() > num) plain.Delete(num / 2);
    }
    plain.EndUpdate();
    ASSERT_TRUE(SameBits(A->GetValues()->Points(), plain.Points())) << "round " << round;
  }
}

}  // namespace
}  // namespace fzy::test
