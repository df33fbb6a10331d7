#pragma once

#include <bit>
#include <cstdint>
#include <cstdio>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "fuzzylogic/framework/UpdateBlock.h"
#include "fuzzylogic/model/FuzzyLogic.h"
#include "tests/engine/PlainCurve.h"
#include "tests/support/Random.h"
#include "tests/support/Refusal.h"

// Sets and curves for the tests of this folder.

namespace fzy::test {

/// A set that writes down what its point list tells it: 'p' for a point, 'l' for the list.
template <class Set>
class TTelling final : public Set {
 public:
  using TClass = decltype(Set::Class());
  static TClass Class() {
    static constexpr std::remove_cvref_t<decltype(*TClass())> descriptor{
        "TTellingSet", []() -> TFuzzySet* { return new TTelling; }};
    return &descriptor;
  }
  TClass GetClass() const override { return Class(); }
  void UpdateFuzzySetValue(TFuzzySetValue* value) override {
    Set::UpdateFuzzySetValue(value);
    Told += 'p';
  }
  void UpdateFuzzySetValues() override {
    Set::UpdateFuzzySetValues();
    Told += 'l';
  }

  std::string Told;
};
using TTellingSet = TTelling<TFuzzySet>;

inline TOwned<TFuzzyVariable> MakeVariable(double minimum, double maximum) {
  TOwned<TFuzzyVariable> variable(TFuzzyVariable::Create());
  variable->SetMaximum(maximum);
  variable->SetMinimum(minimum);
  return variable;
}

/// "0,0 1,1 2,0" as points.
inline TPoints Parse(const std::string& text) {
  TPoints points;
  std::istringstream in(text);
  char comma = 0;
  for (TFuzzyPoint point; in >> point.X >> comma >> point.Y;) points.push_back(point);
  return points;
}

/// Six digits, and no more than six decimals.
inline std::string Text(double value) {
  char text[32];
  const double rounded = std::abs(value) < 1e6 ? std::round(value * 1e6) / 1e6 + 0.0 : value;
  std::snprintf(text, sizeof text, "%.6g", rounded);
  return text;
}

/// Points as "0,0 1,1 2,0".
inline std::string Text(TFuzzyCurve points) {
  std::string text;
  for (const TFuzzyPoint& point : points)
    text += (text.empty() ? "" : " ") + Text(point.X) + "," + Text(point.Y);
  return text;
}
inline std::string Text(const TFuzzySet* set) { return Text(set->GetValues()->Points()); }
inline std::string Text(const TOwned<TFuzzySet>& set) { return Text(set.Get()); }

inline TPoints PointsOf(const TFuzzySet& set) {
  const TFuzzyCurve curve = set.GetValues()->Points();
  return {curve.begin(), curve.end()};
}

/// Gives a list these points, added inside one block.
template <class List>
void Fill(List& list, const TPoints& points) {
  TUpdateBlock block(list);
  list.Clear();
  for (const TFuzzyPoint& point : points) list.Add(point.X, point.Y);
  block.Close();
}

inline TOwned<TFuzzySet> MakeSet(const std::string& points, const TString& name = "",
                                 TFuzzySets* sets = nullptr,
                                 TFuzzySetClass c = TFuzzySet::Class()) {
  TOwned<TFuzzySet> set(TFuzzySet::Create(sets, c));
  Fill(*set->GetValues(), Parse(points));
  set->SetName(name);
  return set;
}
/// The same; the variable owns it.
inline TFuzzySet* AddSet(const TOwned<TFuzzyVariable>& variable, const std::string& points,
                         const TString& name = "", TFuzzySetClass c = TFuzzySet::Class()) {
  return MakeSet(points, name, variable->GetItems(), c).Release();
}

inline bool SameBits(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

inline testing::AssertionResult SameBits(TFuzzyCurve actual, TFuzzyCurve expected) {
  bool same = actual.size() == expected.size();
  for (std::size_t i = 0; same && i < actual.size(); ++i)
    same = SameBits(actual[i].X, expected[i].X) && SameBits(actual[i].Y, expected[i].Y);
  if (same) return testing::AssertionSuccess();
  return testing::AssertionFailure() << Text(actual) << " instead of " << Text(expected);
}

/// A step between neighbours around the tolerance, where decisions change.
inline double RandomNudge(TRandom& random) {
  constexpr double nudges[] = {0,        0,        0.00009, 0.00011, 0.0001,
                               -0.00009, -0.00011, 0.00005, -0.0001};
  return nudges[random.Below(9)];
}

inline double RandomX(TRandom& random) {
  if (random.OneIn(4)) return random.Unit() * 10;
  return random.Below(6) + RandomNudge(random);
}

inline double RandomY(TRandom& random) {
  constexpr double levels[] = {0, 1, 0.5, 0.3, 1.5};
  if (random.OneIn(3)) return random.Unit();
  const double y = levels[random.Below(5)] + (random.OneIn(4) ? RandomNudge(random) : 0);
  return y > 0 ? y : 0;
}

/// A curve of the kinds that are hard to treat: plateaus, vertical runs, chains of points each
/// within the tolerance of the next, steep and wide pieces, one point, none. X ascends, but for
/// steps back within the tolerance when `wobbling`.
inline TPoints RandomCurve(TRandom& random, bool wobbling) {
  TPoints points;
  const int count = random.OneIn(20) ? 0 : 1 + random.Below(random.OneIn(4) ? 24 : 7);
  const double scale = random.OneIn(12) ? 1e6 : random.OneIn(12) ? 1e-4 : 1;
  TFuzzyPoint point{random.Below(3) * scale, RandomY(random)};
  for (int i = 0; i < count; ++i) {
    points.push_back(point);
    const int kind = random.Below(5);  // 0: a vertical run
    const double nudge = RandomNudge(random);
    if (kind == 1) point.X += wobbling ? nudge : std::abs(nudge);
    if (kind == 2) point.X = std::floor(point.X / scale + 1) * scale;  // where curves often break
    if (kind > 2) point.X += random.Unit() * scale;
    if (!random.OneIn(3)) point.Y = RandomY(random);
  }
  return points;
}

/// The same in a set; now and then one of its points is moved out of order.
inline void FillRandomly(TFuzzySet& set, TRandom& random) {
  TFuzzySetValues& list = *set.GetValues();
  Fill(list, RandomCurve(random, random.OneIn(2)));
  if (list.GetCount() > 1 && random.OneIn(8))
    list[random.Below(list.GetCount())]->SetIndex(random.Below(list.GetCount()));
}

}  // namespace fzy::test
