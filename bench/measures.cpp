#include <cmath>

#include "bench/Support.h"

// What rules and their outcome ask of a set, beside the plain arithmetic on arrays.

namespace fzy::bench {
namespace {

constexpr int Variety = 2048;  // different operands in turn

/// Sets of a variable that ranges from 0 to 100, and their points.
struct TSets {
  TSets() : List(*Model.AddVariable(0, 100).GetItems()) {}

  void Add(TFuzzyCurve points) {
    Fill(*Sets.emplace_back(List.Add("set")), points);
    Points.emplace_back(points.begin(), points.end());
  }

  TModel Model;
  TFuzzySets& List;
  std::vector<TFuzzySet*> Sets;
  std::vector<TPoints> Points;
};

/// Each set in turn by `ours(i)`, and by `floor(i)`; they may differ as far as degrees within the
/// engine's tolerance of each other count as equal.
template <class Ours, class Floor>
void CompareEach(benchmark::State& state, const char* what, Ours ours, Floor floor) {
  for (std::size_t i = 0; i < Variety; ++i) Require(Near(ours(i), floor(i), FuzzyTolerance), what);
  const auto all = [](auto one) {
    return [one] {
      for (std::size_t i = 0; i < Variety; ++i) benchmark::DoNotOptimize(one(i));
    };
  };
  Compare(state, Variety, all(ours), all(floor));
}

/// The height of a triangle's intersection with a number is its degree there.
void StrengthOfTriangleAndNumber(benchmark::State& state) {
  TRandom random;
  TSets triangles;
  TSets numbers;
  std::vector<double> x;
  for (int i = 0; i < Variety; ++i) {
    const double left = random.Between(0, 40);
    triangles.Add(TPoints{{left, 0}, {left + random.Between(1, 30), 1}, {left + 60, 0}});
    x.push_back(random.Between(0, 100));
    numbers.Sets.push_back(numbers.List.Add("number"));
    numbers.Sets.back()->CreateCrispValue(x.back());
  }
  CompareEach(
      state, "correlation strength",
      [&](std::size_t i) { return triangles.Sets[i]->GetCorrelationStrength(numbers.Sets[i]); },
      [&](std::size_t i) {
        const TPoints& p = triangles.Points[i];
        if (x[i] <= p[0].X || x[i] >= p[2].X) return 0.0;
        return x[i] < p[1].X ? (x[i] - p[0].X) / (p[1].X - p[0].X)
                             : (p[2].X - x[i]) / (p[2].X - p[1].X);
      });
}
BENCHMARK(StrengthOfTriangleAndNumber)->UseManualTime();

void CenterOfGravityOfTen(benchmark::State& state) {
  TSets sets;
  TRandom random;
  for (int i = 0; i < Variety; ++i) sets.Add(RandomCurve(random, 10));
  CompareEach(
      state, "centre of gravity", [&](std::size_t i) { return sets.Sets[i]->CenterOfGravity(); },
      [&](std::size_t i) {
        const TPoints& p = sets.Points[i];
        // Flat from the last point to the end of the range; the curves begin where it does.
        double area = p.back().Y * (100 - p.back().X);
        double moment = area * (100 + p.back().X) / 2;
        for (std::size_t k = 1; k < p.size(); ++k) {
          const double d = p[k].X - p[k - 1].X;
          area += d * (p[k - 1].Y + p[k].Y) / 2;
          moment +=
              d * (p[k - 1].X * (2 * p[k - 1].Y + p[k].Y) + p[k].X * (p[k - 1].Y + 2 * p[k].Y)) / 6;
        }
        return moment / area;
      });
}
BENCHMARK(CenterOfGravityOfTen)->UseManualTime();

void MeanOfMaximaOfTen(benchmark::State& state) {
  TSets sets;
  TRandom random;
  for (int i = 0; i < Variety; ++i) {
    TPoints points = RandomCurve(random, 10);
    points[4].Y = points[6].Y = 1;
    sets.Add(points);
  }
  CompareEach(
      state, "mean of maxima", [&](std::size_t i) { return sets.Sets[i]->MeanOfMaxima(); },
      [&](std::size_t i) {
        double highest = -1;
        double sum = 0;
        int count = 0;
        for (const TFuzzyPoint& point : sets.Points[i]) {
          if (point.Y > highest) {
            highest = point.Y;
            sum = 0;
            count = 0;
          }
          if (point.Y == highest) {
            sum += point.X;
            ++count;
          }
        }
        return sum / count;
      });
}
BENCHMARK(MeanOfMaximaOfTen)->UseManualTime();

}  // namespace
}  // namespace fzy::bench
