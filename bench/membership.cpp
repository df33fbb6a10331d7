#include "bench/Support.h"

// The degree at random X, by the engine's function and through a set, beside a plain loop and a
// binary search over two arrays.

namespace fzy::bench {
namespace {

/// A curve with a vertical edge, as arrays, and where to ask it: anywhere, and now and then exactly
/// at a breakpoint.
struct TCase {
  explicit TCase(int count) {
    TRandom random;
    Points = RandomCurve(random, count);
    Points[Points.size() / 2 + 1].X = Points[Points.size() / 2].X;
    for (const TFuzzyPoint& point : Points) {
      X.push_back(point.X);
      Y.push_back(point.Y);
    }
    for (int i = 0; i < 32'768; ++i) {
      const double x = random.Between(-0.1 * count, 1.1 * count);
      Asked.push_back(i % 16 ? x : X[static_cast<std::size_t>(i / 16) % X.size()]);
    }
  }

  TPoints Points;
  std::vector<double> X;
  std::vector<double> Y;
  std::vector<double> Asked;
};

double Between(const TCase& c, std::size_t next, double x) {
  if (x == c.X[next]) {
    double y = c.Y[next];
    while (++next < c.X.size() && c.X[next] == x) y = std::max(y, c.Y[next]);
    return y;
  }
  return (x - c.X[next - 1]) / (c.X[next] - c.X[next - 1]) * (c.Y[next] - c.Y[next - 1]) +
         c.Y[next - 1];
}

double ByLoop(const TCase& c, double x) {
  if (x <= c.X.front()) return c.Y.front();
  if (x > c.X.back()) return c.Y.back();
  std::size_t next = 1;
  while (c.X[next] < x) ++next;
  return Between(c, next, x);
}

double BySearch(const TCase& c, double x) {
  if (x <= c.X.front()) return c.Y.front();
  if (x > c.X.back()) return c.Y.back();
  const auto next = std::lower_bound(c.X.begin() + 1, c.X.end(), x) - c.X.begin();
  return Between(c, static_cast<std::size_t>(next), x);
}

template <class Degree>
auto AskAll(const TCase& c, Degree degree) {
  return [&c, degree] {
    double sum = 0;
    for (const double x : c.Asked) sum += degree(x);
    benchmark::DoNotOptimize(sum);
  };
}

template <double (*Floor)(const TCase&, double), class Degree>
void CompareDegrees(benchmark::State& state, const TCase& c, Degree degree) {
  for (const double x : c.Asked) Require(degree(x) == Floor(c, x), "degree of membership");
  Compare(state, static_cast<double>(c.Asked.size()), AskAll(c, degree),
          AskAll(c, [&c](double x) { return Floor(c, x); }));
}

template <double (*Floor)(const TCase&, double)>
void PlainFunction(benchmark::State& state) {
  const TCase c(static_cast<int>(state.range(0)));
  CompareDegrees<Floor>(state, c, [&c](double x) { return Membership(c.Points, true, x); });
}

template <double (*Floor)(const TCase&, double)>
void ThroughSet(benchmark::State& state) {
  const TCase c(static_cast<int>(state.range(0)));
  TModel model;
  TFuzzySet* set = model.AddVariable(0, 1e6).GetItems()->Add("set");
  Fill(*set, c.Points);
  CompareDegrees<Floor>(state, c, [set](double x) { return set->DegreeOfMembership(x); });
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->UseManualTime();
  for (const int count : {3, 7, 50, 1000}) benchmark->Arg(count);
}
BENCHMARK(PlainFunction<ByLoop>)->Name("Membership/beside_loop")->Apply(Sizes);
BENCHMARK(PlainFunction<BySearch>)->Name("Membership/beside_search")->Apply(Sizes);
BENCHMARK(ThroughSet<ByLoop>)->Name("DegreeOfMembership/beside_loop")->Apply(Sizes);
BENCHMARK(ThroughSet<BySearch>)->Name("DegreeOfMembership/beside_search")->Apply(Sizes);

}  // namespace
}  // namespace fzy::bench
