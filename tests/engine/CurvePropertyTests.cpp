#include <gtest/gtest.h>

#include "fuzzylogic/engine/FuzzyOperators.h"
#include "tests/engine/PlainList.h"
#include "tests/engine/Sets.h"

// Membership, walks, combinations and shapes against plain scans, to the last bit.

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
    if (Random.OneIn(3)) {  // pieces in common
      B->SetValues(A->GetValues());
      if (B->GetValues()->GetCount() > 0)
        (*B->GetValues())[Random.Below(B->GetValues()->GetCount())]->SetY(RandomY(Random));
    } else {
      FillRandomly(*B, Random);
    }
  }

  TRandom Random;
  TOwned<TFuzzyVariable> Variable;
  TFuzzySet* A;
  TFuzzySet* B;
};

TEST_F(CurveProperty, MembershipFindsWhatAScanFinds) {
  SCOPED_TRACE(Random.Trace());
  for (int round = 0; round < 3000; ++round) {
    FillRandomly(*A, Random);
    const TPoints points = PointsOf(*A);
    std::vector<double> queries = {RandomX(Random), -1e300, 1e300};
    for (const TFuzzyPoint& point : points) {
      for (const double nudge : {0.0, 0.00009, -0.00011}) queries.push_back(point.X + nudge);
      queries.push_back(std::nextafter(point.X, 100));
    }
    for (const double x : queries) {
      ASSERT_TRUE(SameBits(A->DegreeOfMembership(x), PlainMembership(points, x)))
          << "round " << round << ", at " << x << " of " << Text(A);
    }
  }
}

using TVisits = std::vector<double>;

TEST_F(CurveProperty, AWalkVisitsWhatThePlainWalkVisits) {
  SCOPED_TRACE(Random.Trace());
  for (int round = 0; round < 5000; ++round) {
    Refill();
    TVisits visits;
    TVisits expected;
    int left = Random.OneIn(5) ? Random.Below(6) : 1000;  // until the callback stops the walk
    const auto record = [&left](TVisits& to) {
      return [&to, left](double x1, double y1, double x2, double y2) mutable {
        to.insert(to.end(), {x1, y1, x2, y2});
        return left-- == 0;
      };
    };
    const TPoints a = PointsOf(*A);
    const TPoints b = PointsOf(*B);
    const bool stopped = A->Iterate(B, record(visits));
    ASSERT_EQ(stopped, PlainWalk(a, b, record(expected)) || (a.empty() && b.empty()));
    ASSERT_EQ(visits, expected) << "round " << round << ": " << Text(a) << " with " << Text(b);
    ASSERT_EQ(PointsOf(*A), a);

    double strength = 0;
    PlainWalk(a, b, [&strength](double, double y1, double, double y2) {
      strength = std::max(strength, std::min(y1, y2));
      return false;
    });
    ASSERT_TRUE(SameBits(A->GetCorrelationStrength(B), strength));
    ASSERT_TRUE(SameBits(A->FuzzyEquals(B), strength));
  }
}

/// The points of a combination, added and thinned one by one.
TPoints PlainCombination(const TPoints& a, const TPoints& b, TFuzzyFormula formula) {
  TPlainList result(Minimum, Maximum);
  result.Begin();
  PlainWalk(a, b, [&](double x1, double y1, double, double y2) {
    result.Add(x1, formula(y1, y2));
    return false;
  });
  if (!a.empty() && !b.empty()) result.RemoveFlatPoints();
  result.End();
  return result.Points();
}

TEST_F(CurveProperty, CombinationsAreThePlainOnes) {
  SCOPED_TRACE(Random.Trace());
  constexpr TFuzzyOperation operations[] = {foZadeh,   foMean,       foMeanSqr, foMeanSqrt,
                                            foProduct, foBoundedSum, foSum};
  for (int round = 0; round < 3000; ++round) {
    Refill();
    const TPoints a = PointsOf(*A);
    const TPoints b = PointsOf(*B);
    const TFuzzyOperation operation = operations[Random.Below(7)];
    const TFuzzyFormula formula = UnionFormula(operation);
    const TOwned<TFuzzySet> all(A->Union(B, operation));
    ASSERT_TRUE(SameBits(all->GetValues()->Points(), PlainCombination(a, b, formula)))
        << "round " << round << ": " << Text(a) << " with " << Text(b);

    // A callback from outside gets the same list, filled point by point.
    const TOwned<TFuzzySet> own(
        A->Operator(B, "own", [&](TFuzzySetValues& r, double x1, double y1, double, double y2) {
          r.Add(x1, formula(y1, y2));
          return false;
        }));
    ASSERT_TRUE(SameBits(own->GetValues()->Points(), all->GetValues()->Points()));

    if (operation == foSum) continue;
    const TOwned<TFuzzySet> both(A->Intersection(B, operation));
    ASSERT_TRUE(SameBits(both->GetValues()->Points(),
                         PlainCombination(a, b, IntersectionFormula(operation))));

    std::vector<TFuzzyPoint> raw;
    CombineCurves(a, b, formula, raw);
    TPoints plain;
    PlainWalk(a, b, [&](double x1, double y1, double, double y2) {
      plain.push_back({x1, formula(y1, y2)});
      return false;
    });
    ASSERT_TRUE(SameBits(raw, plain));
  }
}

// Shapes write many points at once, onto what is there.

void PlainCurveShape(TPlainList& list, int num, double left, double right, bool growth) {
  num = std::max(num, 3);
  const double w = right - left;
  const double step = w / (num - 1);
  double x = left;
  list.Begin();
  for (int i = 0; i < num; ++i) {
    double y = 1;
    if (x <= left)
      y = 0;
    else if (x <= (left + right) / 2)
      y = 2 * ((x - left) / w * ((x - left) / w));
    else if (x <= right)
      y = 1 - 2 * ((x - right) / w * ((x - right) / w));
    list.Add(x, growth ? y : 1 - y);
    x += step;
  }
  list.End();
}

TEST_F(CurveProperty, ShapesJoinThePointsThere) {
  SCOPED_TRACE(Random.Trace());
  for (int round = 0; round < 3000; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    FillRandomly(*B, Random);
    TPlainList plain(Minimum, Maximum);
    plain.Assign(PointsOf(*B));
    A->SetValues(B->GetValues());
    TFuzzySetValues& list = *A->GetValues();
    ASSERT_TRUE(SameBits(list.Points(), plain.Points()));
    const double left = RandomX(Random) - 5;
    const double right = left + (Random.OneIn(4) ? 0 : RandomX(Random) + 0.001);
    const double center = left + Random.Unit() * (right - left);
    const int num = Random.Below(12);
    switch (Random.Below(3)) {
      case 0:
        A->CreateTriangleFunctionValues(left, center, right);
        plain.Begin();
        plain.Add(left, 0);
        plain.Add(center, 1);
        plain.Add(right, 0);
        plain.End();
        break;
      case 1:
        A->CreateCurveValues(num, left, right, center, num % 2 == 0);
        PlainCurveShape(plain, num, left, right, num % 2 == 0);
        break;
      default:
        A->CreatePIFunctionValues(num, left, right, center);
        plain.Begin();
        PlainCurveShape(plain, num / 2 + 1, left, center, true);
        if (num % 2 == 0) plain.Delete(plain.Count() - 1);
        PlainCurveShape(plain, num / 2 + 1, center, right, false);
        if (plain.Count() > num) plain.Delete(num / 2);
        plain.End();
    }
    ASSERT_TRUE(SameBits(list.Points(), plain.Points()));
  }
}

}  // namespace
}  // namespace fzy::test
