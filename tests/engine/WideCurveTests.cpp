#include <cmath>
#include <functional>

#include <gtest/gtest.h>

#include "fuzzylogic/engine/FuzzyOperators.h"
#include "tests/engine/Models.h"

// Curves whose coordinates, differences or products lie at or beyond the ends of the doubles.

namespace fzy::test {
namespace {

constexpr int Widest = 1016;  // what the X here may be scaled by, as a power of two
constexpr double Largest = std::numeric_limits<double>::max();

/// X that are multiples of 4 up to 252 and degrees that are multiples of 1/64 up to 1, so that
/// every decision within the tolerance is one of exact numbers, at any scale.
double DyadicX(TRandom& random) { return 4 * (random.Below(127) - 63); }
double DyadicY(TRandom& random) {
  return random.OneIn(3) ? random.Below(2) : random.Below(65) / 64.0;
}

TPoints DyadicCurve(TRandom& random) {
  TPoints points(static_cast<std::size_t>(1 + random.Below(8)));
  for (TFuzzyPoint& point : points) point = {DyadicX(random), DyadicY(random)};
  std::ranges::sort(points, {}, &TFuzzyPoint::X);
  if (random.OneIn(4)) points.push_back({points.back().X, DyadicY(random)});
  return points;
}

TPoints Scaled(TPoints points, int x, int y = 0) {
  for (TFuzzyPoint& point : points) point = {std::ldexp(point.X, x), std::ldexp(point.Y, y)};
  return points;
}

/// A power of two to scale by, often one with which doubles just overflow.
int RandomScale(TRandom& random, int most) {
  return random.OneIn(3) ? most - random.Below(3) : random.Below(most + 1);
}

// At scale 1 the same functions are held against plain computations elsewhere.
TEST(WideCurve, HasTheResultsOfAnOrdinaryOneScaled) {
  TRandom random;
  SCOPED_TRACE(random.Trace());
  for (int round = 0; round < 6000 && !testing::Test::HasFailure(); ++round) {
    TPoints a = DyadicCurve(random), b = DyadicCurve(random);
    const double x = DyadicX(random) + random.Below(4);
    if (random.OneIn(4)) b = {{x, 0}, {x, 1}, {x, 0}};
    const int k = RandomScale(random, Widest), m = RandomScale(random, 1023);
    const TPoints wideA = Scaled(a, k), wideB = Scaled(b, k), highA = Scaled(a, k, m);
    SCOPED_TRACE("2^" + std::to_string(k) + ", 2^" + std::to_string(m) + " times " + Text(a) +
                 " and " + Text(b));
    const auto same = [](double actual, double expected, int scale) {
      EXPECT_TRUE(SameBits(actual, std::ldexp(expected, scale)))
          << actual << " instead of " << std::ldexp(expected, scale);
    };

    same(Membership(highA, true, std::ldexp(x, k)), Membership(a, true, x), m);
    same(MeanOfMaxima(wideA), MeanOfMaxima(a), k);
    same(MeanY(highA), MeanY(a), m);
    const double low = -252, high = random.OneIn(2) ? 252 : a.back().X;
    same(CenterOfGravity(highA, std::ldexp(low, k), std::ldexp(high, k)),
         CenterOfGravity(a, low, high), k);
    if (m >= k && a.front().X < a.back().X)
      same(Slope(highA.front(), highA.back()), Slope(a.front(), a.back()), m - k);

    same(HeightOfIntersection(wideA, true, wideB, true), HeightOfIntersection(a, true, b, true), 0);
    std::vector<TFuzzyPoint> walk, wideWalk;
    const TFuzzyFormula formula =
        random.OneIn(2) ? FuzzyFormulas::Max : FuzzyFormulas::UnionProduct;
    CombineCurves(a, b, formula, walk);
    CombineCurves(wideA, wideB, formula, wideWalk);
    EXPECT_TRUE(SameBits(wideWalk, Scaled(walk, k)));

    const TPoints p = {a.front(), {a.back().X + 4, a.back().Y}, b.front(), {x + 256, b.back().Y}};
    const TPoints q = Scaled(p, k - 1, m);
    TFuzzyPoint at, wideAt;
    const bool meet = SegmentsIntersect(p[0], p[1], p[2], p[3], at);
    EXPECT_EQ(SegmentsIntersect(q[0], q[1], q[2], q[3], wideAt), meet);
    EXPECT_TRUE(!meet || SameBits(TPoints{wideAt}, Scaled({at}, k - 1, m)));
  }
}

MODEL_TEST_SUITE(WideSet);

TYPED_TEST(WideSet, DoesWhatAnOrdinaryOneDoes) {
  using C = typename TypeParam::TClass;
  using TWideAction = std::function<void(C & set, double scale)>;
  const auto cut = [](C& set, auto made) {
    const typename TypeParam::THandle result(made);
    set.GetValues()->Assign(TypeParam::ClassOf(result).GetValues());
  };
  std::vector<TWideAction> actions = {
      [&](C& s, double) { cut(s, s.AlphaCutoff(0.3, false)); },
      [&](C& s, double) { cut(s, s.Cutoff(0.3, true)); },
      [&](C& s, double) { cut(s, s.Cutoff(0.7, false)); },
      [](C& s, double) { s.GetValues()->Expand(23); },
      [](C& s, double) { s.GetValues()->ExpandSimple(5); },
      [](C& s, double) { s.Hedge(fhExtremely); },
      [](C& s, double by) { s.CreateCurveValues(11, -250 * by, 252 * by, 252 * by, true); },
      [](C& s, double by) { s.CreateCurveValues(6, 130 * by, 251 * by, 0, false); },
      [](C& s, double by) { s.CreatePIFunctionValues(9, -252 * by, 252 * by, 200 * by); },
      [](C& s, double by) { s.CreateBetaCurveFunctionValues(8, 250 * by, 2 * by, 7 * by, 3); },
  };
  for (const TFuzzySetType type :
       {fstTriangle, fstPICurve, fstBetaCurve, fstGrowthCurve, fstDeclineCurve})
    actions.push_back([type](C& s, double) { s.SetSetType(type); });

  TRandom random;
  SCOPED_TRACE(random.Trace());
  for (int round = 0; round < 1500 && !testing::Test::HasFailure(); ++round) {
    const TPoints points = DyadicCurve(random);
    const int k = RandomScale(random, Widest);
    const auto variable = TypeParam::MakeVariable(-252, 252);
    const auto wide = TypeParam::MakeVariable(std::ldexp(-252, k), std::ldexp(252, k));
    const auto set = TypeParam::AddSet(variable, ""), wideSet = TypeParam::AddSet(wide, "");
    Fill(*TypeParam::ClassOf(set).GetValues(), points);
    Fill(*TypeParam::ClassOf(wideSet).GetValues(), Scaled(points, k));
    const int i = random.Below(static_cast<int>(actions.size()));
    SCOPED_TRACE("2^" + std::to_string(k) + " times " + Text(points) + ", " + std::to_string(i));
    actions[static_cast<std::size_t>(i)](TypeParam::ClassOf(set), 1);
    actions[static_cast<std::size_t>(i)](TypeParam::ClassOf(wideSet), std::ldexp(1, k));
    EXPECT_TRUE(SameBits(PointsOf(*wideSet), Scaled(PointsOf(*set), k)));
    EXPECT_TRUE(SameBits(TypeParam::ClassOf(wideSet).GetInflectionPoint(),
                         std::ldexp(TypeParam::ClassOf(set).GetInflectionPoint(), k)));
    EXPECT_TRUE(SameBits(wideSet->Defuzzify(), std::ldexp(set->Defuzzify(), k)));
  }
}

/// The degree of the bells at X, by their definition, in numbers with room for it.
long double PlainBell(const TPoints& points, long double width, long double x,
                      long double exponent) {
  const long double first = points.front().X, span = points.back().X - first;
  long double highest = 0;
  for (const TFuzzyPoint& point : points) {
    const long double d = std::fabs(x - point.X) * (span > 0 ? span / width : 0.2L);
    highest = std::max(highest, point.Y / (std::pow(d, exponent) + 1));
  }
  return highest;
}

// What a distance is depends on the scale, so approximations are held against their definition.
TYPED_TEST(WideSet, IsApproximatedOverItsWholeRange) {
  if (std::numeric_limits<long double>::max_exponent < 16000) GTEST_SKIP() << "no wider type";
  for (const char* text :
       {"5,1", "-20,0 5,1 31,0", "-40,0.2 -40,0.9 40,0.5", "5,1e-90", "0,1 3,0"}) {
    for (const int k : {0, 100, 200, 500, 515, 900, 1018}) {
      const auto variable = TypeParam::MakeVariable(std::ldexp(-50, k), std::ldexp(52, k));
      for (const auto& [hedge, exponent] :
           {std::pair(fhAbout, 2.0), {fhVicinity, 4}, {fhNear, 1.2}}) {
        const auto set = TypeParam::AddSet(variable, "");
        Fill(*TypeParam::ClassOf(set).GetValues(), Scaled(Parse(text), k));
        TypeParam::ClassOf(set).GetValues()->Expand(7);
        const TPoints points = PointsOf(*set);
        set->Hedge(hedge);
        const TPoints bells = PointsOf(*set);
        ASSERT_EQ(bells.size(), 50U);
        const long double width = std::ldexp(102.0L, k);
        long double highest = 0;
        for (const TFuzzyPoint& bell : bells)
          highest = std::max(highest, PlainBell(points, width, bell.X, exponent));
        for (const TFuzzyPoint& bell : bells)
          ASSERT_NEAR(bell.Y,
                      static_cast<double>(PlainBell(points, width, bell.X, exponent) / highest),
                      1e-9)
              << text << " times 2^" << k << ", hedge " << static_cast<int>(hedge) << " at "
              << bell.X;
      }
    }
  }
}

TYPED_TEST(WideSet, KeepsToTheNumbersAtTheirEnds) {
  using C = typename TypeParam::TClass;
  const auto variable = TypeParam::MakeVariable(-Largest, Largest);
  const auto make = [&](const std::string& points) { return TypeParam::AddSet(variable, points); };
  const auto wide = make("-1e308,0 1e308,1");
  EXPECT_EQ(wide->DegreeOfMembership(0), 0.5);
  EXPECT_EQ(make("-1.7e308,1 1.7e308,1")->MeanOfMaxima(), 0);
  EXPECT_EQ(make("1e308,1 1.5e308,1")->MeanOfMaxima(), 1.25e308);
  EXPECT_EQ(make("1e308,0 1e308,1 1e308,0")->CenterOfGravity(), 0);
  EXPECT_NEAR(wide->CenterOfGravity() / 1e308, (1 / 3.0 + 0.7976931 * 1.3988465) / 1.7976931, 1e-6);

  // Degrees, and areas, at either end.
  const auto high = make("0,1.7e308 1,0 2,1.6e308");
  const typename TypeParam::THandle mean(high->Union(high, foMean));
  EXPECT_EQ(Text(mean), "0,1.7e+308 1,0 2,1.6e+308");
  const auto narrow = TypeParam::MakeVariable(1, 10);
  const auto tiny = [&](const TPoints& points) {
    const auto set = TypeParam::AddSet(narrow, "");
    Fill(*TypeParam::ClassOf(set).GetValues(), points);
    return set;
  };
  EXPECT_NEAR(tiny({{1.3, 5e-323}, {2, 0}})->CenterOfGravity(), 1.15, 1e-12);
  const auto low = tiny({{1, 1e-310}, {2, 5e-311}});
  low->Hedge(fhNormalize);
  EXPECT_EQ(Text(low), "1,1 2,0.5");
  const auto around = TypeParam::MakeVariable(-1, 0.9);
  const auto crest = TypeParam::AddSet(around, "-1,1.7e308 0,1.7e308 0.9,1.7e308");
  EXPECT_NEAR(crest->CenterOfGravity(), -0.05, 1e-12) << "the area is infinite, the moment is not";
  double average = 0, most = 0, least = 0;
  TypeParam::ClassOf(high).GetValues()->GetStatValues(average, most, least);
  EXPECT_DOUBLE_EQ(average, 1.1e308);

  const auto bell = make("");
  C& set = TypeParam::ClassOf(bell);
  set.CreateBetaCurveFunctionValues(3, 1e160, 0, 1,
                                    1e-320);  // the square of the distance is infinite
  EXPECT_NEAR(bell->DegreeOfMembership(1e160), 0.5, 1e-3);
  set.GetValues()->Clear();
  set.CreateCurveValues(5, 1e308, 1.7e308, 0, true);
  EXPECT_EQ(Text(bell), "1e+308,0 1.175e+308,0.125 1.35e+308,0.5 1.525e+308,0.875 1.7e+308,1");
}

TEST(WideCurve, IsCombinedWithinTheNumbers) {
  EXPECT_EQ(FuzzyFormulas::Mean(1.7e308, 1.5e308), 1.6e308);
  EXPECT_DOUBLE_EQ(FuzzyFormulas::UnionMean(1.7e308, 1.1e308), 1.5e308);
  EXPECT_DOUBLE_EQ(FuzzyFormulas::MeanSqrt(1.7e308, 1.5e308), std::sqrt(1.6e308));
  EXPECT_LT(FuzzyFormulas::UnionProduct(1.7e308, 1.5e308), 0) << "a set keeps 0";
  // A crossing of degrees whose products overflow; a piece that has a denormal width.
  std::vector<TFuzzyPoint> points;
  CombineCurves(Parse("0,0 10,1e300"), Parse("0,1e300 10,0"), FuzzyFormulas::Min, points);
  EXPECT_EQ(Text(points), "0,0 5,5e+299 10,0");
  CombineCurves(Parse("0,0 1e10,1e300"), Parse("0,1e300 1e10,0"), FuzzyFormulas::Max, points);
  EXPECT_EQ(Text(points), "0,1e+300 5e+09,5e+299 1e+10,1e+300");
  EXPECT_EQ(InterpolateY(0, 0.5, 5e-324, 0.5, 1), 0.5);
}

}  // namespace
}  // namespace fzy::test
