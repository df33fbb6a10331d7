#include "bench/Support.h"

// Two curves combined under max, beside a plain merge into an array; and points appended in order,
// beside a vector.

namespace fzy::bench {
namespace {

/// Far enough apart that no two segments count as parallel by chance: those are not crossed.
constexpr double Spacing = 1000;

/// Pairs of curves, enough of them that no branch is learnt by heart, with the array they are
/// merged into.
struct TPairs {
  explicit TPairs(int count) : Result(static_cast<std::size_t>(count) * 4) {
    TRandom random;
    for (int points = 0; points < 32'768 || A.size() < 2; points += count) {
      A.push_back(RandomCurve(random, count, Spacing));
      B.push_back(RandomCurve(random, count, Spacing));
      A.back().front().Y = 0.25;  // starts that nearly agree would count as a crossing
      B.back().front().Y = 0.75;
    }
  }

  TFuzzyCurve MergePlainly(std::size_t i) {
    return {Result.data(),
            PlainMax(A[i].data(), A[i].size(), B[i].data(), B[i].size(), Result.data())};
  }
  auto MergeAllPlainly() {
    return [this] {
      for (std::size_t i = 0; i < A.size(); ++i) benchmark::DoNotOptimize(MergePlainly(i).data());
    };
  }

  std::vector<TPoints> A;
  std::vector<TPoints> B;
  TPoints Result;
};

bool SamePoints(TFuzzyCurve a, TFuzzyCurve b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const auto& p, const auto& q) { return Near(p.X, q.X) && Near(p.Y, q.Y); });
}

/// The floor finds a crossing by the sign of the difference and ours by its segments, so crossings
/// agree to the last digits only.
void WalkUnderMax(benchmark::State& state) {
  TPairs pairs(static_cast<int>(state.range(0)));
  TPoints result;
  for (std::size_t i = 0; i < pairs.A.size(); ++i) {
    CombineCurves(pairs.A[i], pairs.B[i], FuzzyFormulas::Max, result);
    Require(SamePoints(result, pairs.MergePlainly(i)), "walk under max");
  }
  Compare(
      state, static_cast<double>(pairs.A.size()),
      [&] {
        for (std::size_t i = 0; i < pairs.A.size(); ++i) {
          CombineCurves(pairs.A[i], pairs.B[i], FuzzyFormulas::Max, result);
          benchmark::DoNotOptimize(result.data());
        }
      },
      pairs.MergeAllPlainly());
  const auto points = static_cast<double>(2 * state.range(0));
  state.counters["ours_ns_per_point"] = state.counters["ours_ns"].value / points;
}
BENCHMARK(WalkUnderMax)->Arg(7)->Arg(1000)->UseManualTime();
BENCHMARK(WalkUnderMax)
    ->Name("WalkUnderMax/linearity")
    ->RangeMultiplier(10)
    ->Range(10, 100'000)
    ->UseManualTime();

/// The same through sets of a variable: a new set each time, named, thinned of flat points within
/// the tolerance, normalized, told about, freed.
void UnionOfSets(benchmark::State& state) {
  TPairs pairs(static_cast<int>(state.range(0)));
  TModel model;
  TFuzzySets& sets = *model.AddVariable(0, 1e9).GetItems();
  std::vector<TFuzzySet*> a;
  std::vector<TFuzzySet*> b;
  for (std::size_t i = 0; i < pairs.A.size(); ++i) {
    Fill(*a.emplace_back(sets.Add("cold")), pairs.A[i]);
    Fill(*b.emplace_back(sets.Add("warm")), pairs.B[i]);
    const TOwned<TFuzzySet> both(a[i]->Union(b[i]));
    for (const TFuzzyPoint& point : pairs.MergePlainly(i))
      Require(Near(both->DegreeOfMembership(point.X), point.Y, 2 * FuzzyTolerance), "union");
  }
  Compare(
      state, static_cast<double>(a.size()),
      [&] {
        for (std::size_t i = 0; i < a.size(); ++i) a[i]->Union(b[i])->Free();
      },
      pairs.MergeAllPlainly());
}
BENCHMARK(UnionOfSets)->Arg(7)->Arg(1000)->UseManualTime();

/// Appends points in order, outside an update block, and reports what one costs when the list holds
/// as many as the argument says: the quickest of some stretches before that.
void AppendInOrder(benchmark::State& state) {
  const auto count = static_cast<int>(state.range(0));
  const int stretch = std::min(count / 10, 1000);
  TModel model;
  TFuzzySets& sets = *model.AddVariable(0, 1e9).GetItems();
  double best = std::numeric_limits<double>::infinity();
  double bestFloor = best;
  for (auto _ : state) {
    const TOwned<TFuzzySet> set(sets.Add("set"));
    TFuzzySetValues& values = *set->GetValues();
    TPoints plain;
    double total = 0;
    for (int from = 0; from < count; from += stretch) {
      const auto append = [&](auto add) {
        return Nanoseconds([&] {
          for (int i = from; i < from + stretch; ++i) add(1.5 * i, i % 2 * 0.5);
        });
      };
      const double time = append([&](double x, double y) { values.Add(x, y); });
      const double floor = append([&](double x, double y) { plain.push_back({x, y}); });
      total += time;
      if (from < count - count / 10) continue;
      best = std::min(best, time);
      bestFloor = std::min(bestFloor, floor);
    }
    Require(SamePoints(values.Points(), plain), "append");
    state.SetIterationTime(total * 1e-9);
  }
  state.counters["ours_ns"] = best / stretch;
  state.counters["floor_ns"] = bestFloor / stretch;
}
BENCHMARK(AppendInOrder)->RangeMultiplier(10)->Range(100, 1'000'000)->UseManualTime();

}  // namespace
}  // namespace fzy::bench
