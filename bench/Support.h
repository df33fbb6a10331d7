#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "fuzzylogic/FuzzyLogic.h"

// What the benchmarks share: how ours is timed beside a floor, curves to time it on, and the plain
// merge of two curves.

namespace fzy::bench {

using TPoints = std::vector<TFuzzyPoint>;

/// Ends the program when ours and the floor disagree: a time for a wrong result tells nothing.
inline void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s: not the result that was expected\n", what);
  std::exit(EXIT_FAILURE);
}

inline bool Near(double a, double b, double tolerance = 1e-9) {
  return std::abs(a - b) <= tolerance * std::max(1.0, std::abs(a));
}

template <class Run>
double Nanoseconds(Run&& run) {
  const auto start = std::chrono::steady_clock::now();
  run();
  return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

/// Times ours and the floor in turn, in slices short enough that a busy machine leaves many of them
/// alone, and reports the quickest slice of each for one of the `operations` in it, and the ratio.
/// Behind each slice `tidy` is called, untimed. Register with `UseManualTime`: the time of the
/// benchmark itself is that of our slices.
template <class Ours, class Floor, class Tidy>
void Compare(benchmark::State& state, double operations, Ours ours, Floor floor, Tidy tidy) {
  double best = std::numeric_limits<double>::infinity();
  double bestFloor = best;
  for (auto _ : state) {
    const double time = Nanoseconds(ours);
    tidy();
    best = std::min(best, time);
    bestFloor = std::min(bestFloor, Nanoseconds(floor));
    tidy();
    state.SetIterationTime(time * 1e-9);
  }
  state.counters["ours_ns"] = best / operations;
  state.counters["floor_ns"] = bestFloor / operations;
  state.counters["ratio"] = best / bestFloor;
}

template <class Ours, class Floor>
void Compare(benchmark::State& state, double operations, Ours ours, Floor floor) {
  Compare(state, operations, ours, floor, [] {});
}

/// Numbers that are the same in every run.
class TRandom {
 public:
  double Between(double low, double high) {
    return low + (high - low) * std::uniform_real_distribution<double>()(FEngine);
  }

 private:
  std::mt19937_64 FEngine{20};
};

/// A curve of `count` points from X 0 to X `count` times `spacing`, its breakpoints and degrees
/// anywhere.
inline TPoints RandomCurve(TRandom& random, int count, double spacing = 1) {
  TPoints points;
  for (int i = 0; i < count; ++i) {
    const double x = i == 0 ? 0 : i == count - 1 ? count : i + random.Between(0, 0.9);
    points.push_back({x * spacing, random.Between(0, 0.99)});
  }
  return points;
}

/// Adds the points to a set, told once.
inline void Fill(TFuzzySet& set, TFuzzyCurve points) {
  TUpdateBlock block(*set.GetValues());
  for (const TFuzzyPoint& point : points) set.GetValues()->Add(point.X, point.Y);
  block.Close();
}

/// A variable with a range that holds every curve here, as an application would have it.
struct TModel {
  TFuzzyLogic Fuzzy;

  TFuzzyVariable& AddVariable(double minimum, double maximum) {
    Fuzzy.SetAutoTerms(false);
    TFuzzyVariable* variable = Fuzzy.GetItems()->Add("variable");
    variable->SetMinimum(minimum);
    variable->SetMaximum(maximum);
    return *variable;
  }
};

/// The degree at `x` in the piece that ends before point `next`, flat beyond the ends.
inline double PlainPiece(const TFuzzyPoint* points, std::size_t count, std::size_t next, double x) {
  if (next == 0) return points[0].Y;
  if (next == count) return points[count - 1].Y;
  const TFuzzyPoint& p = points[next - 1];
  const TFuzzyPoint& q = points[next];
  return (x - p.X) / (q.X - p.X) * (q.Y - p.Y) + p.Y;
}

/// The plain merge of two curves under max: every breakpoint and every crossing, into an array that
/// is large enough; returns how many. For curves without vertical edges.
inline std::size_t PlainMax(const TFuzzyPoint* a, std::size_t countA, const TFuzzyPoint* b,
                            std::size_t countB, TFuzzyPoint* result) {
  std::size_t i = 0;
  std::size_t j = 0;
  TFuzzyPoint* out = result;
  double lastX = 0;
  double lastY = 0;
  double lastGap = 0;
  while (i < countA || j < countB) {
    double x = 0;
    double y = 0;
    double other = 0;
    if (j == countB || (i < countA && a[i].X < b[j].X)) {
      x = a[i].X;
      y = a[i].Y;
      other = PlainPiece(b, countB, j, x);
      ++i;
    } else if (i == countA || b[j].X < a[i].X) {
      x = b[j].X;
      y = PlainPiece(a, countA, i, x);
      other = b[j].Y;
      ++j;
    } else {
      x = a[i].X;
      y = a[i++].Y;
      other = b[j++].Y;
    }
    const double gap = y - other;
    if (gap * lastGap < 0) {
      const double t = lastGap / (lastGap - gap);
      *out++ = {lastX + t * (x - lastX), lastY + t * (y - lastY)};
    }
    *out++ = {x, std::max(y, other)};
    lastX = x;
    lastY = y;
    lastGap = gap;
  }
  return static_cast<std::size_t>(out - result);
}

}  // namespace fzy::bench
