#include "fuzzylogic/language/detail/SetBody.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <limits>

#include "fuzzylogic/common/HelperFunctions.h"
#include "fuzzylogic/engine/FuzzyCurve.h"
#include "fuzzylogic/framework/Format.h"
#include "fuzzylogic/language/FuzzyNumbers.h"

namespace fzy::detail {
namespace {

// What a reader keeps of the points of one X; those that agree within the tolerance are one to it.
constexpr std::size_t MostOfOneX = 3;
constexpr TFzyFloat ReadTolerance = 0.0001;

using TCalls = std::vector<TString>;

/// Adds a call, unless an argument is no number that can be written: points that were loaded need
/// not be those of the shape that the set says they are.
void AddCall(TCalls& calls, std::u16string_view function,
             std::initializer_list<TFzyFloat> arguments, TNumberStyle number) {
  if (!std::ranges::all_of(arguments, [](TFzyFloat a) { return std::isfinite(a); })) return;
  TString text(u"(");
  text += function;
  for (const TFzyFloat argument : arguments) {
    text += u' ';
    text += number(argument);
  }
  text += u')';
  calls.push_back(std::move(text));
}

bool IsOne(TFzyFloat weight) {
  return FloatEquals(weight, 1, ReadTolerance) || !std::isfinite(weight);
}

void AddPICalls(TCalls& calls, const TSetContent& set, TNumberStyle number) {
  const TFzyFloat first = set.Points.front().X;
  const TFzyFloat last = set.Points.back().X;
  const TFzyFloat center = MeanOfMaxima(set.Points);
  if (FloatEquals(center - first, last - center, ReadTolerance))
    AddCall(calls, u"pi", {center - first, center}, number);
  AddCall(calls, u"pi", {first, last, center}, number);
  // An even number of points leaves the center out. It lies as many steps behind the first point as
  // half of them.
  if (set.Points.size() > 1) {
    const std::size_t half = set.Points.size() / 2;
    const auto steps = static_cast<TFzyFloat>(half);
    AddCall(calls, u"pi", {first, last, first + (set.Points[1].X - first) * steps}, number);
  }
}

/// The weight that made the second point of a bell; anything when the bell is flat.
TFzyFloat WeightOf(const TSetContent& set, TFzyFloat center) {
  if (set.Points.size() < 2) return 1;
  const TFuzzyPoint& point = set.Points[1];
  const TFzyFloat t = (point.X - center) / set.InflectionPoint;
  return (1 / point.Y - 1) / (t * t);
}

void AddBetaCalls(TCalls& calls, const TSetContent& set, TNumberStyle number) {
  const TFzyFloat center = MeanOfMaxima(set.Points);
  const TFzyFloat range = center - set.Points.front().X;
  const TFzyFloat weight = WeightOf(set, center);
  if (IsOne(weight)) AddCall(calls, u"beta", {range, center, set.InflectionPoint}, number);
  AddCall(calls, u"beta", {range, center, set.InflectionPoint, weight}, number);
}

/// The number without the noise of the sums that made a shape's last points.
TFzyFloat TwelveDigits(TFzyFloat value) {
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                 std::chars_format::scientific, 11);
  std::from_chars(digits.data(), end.ptr, value);
  return value;
}

void AddCalls(TCalls& calls, const TSetContent& set, TNumberStyle number) {
  const std::vector<TFuzzyPoint>& points = set.Points;
  if (points.empty()) return;
  switch (set.Type) {
    case fstTriangle:
      if (points.size() < 3) return;
      return AddCall(calls, u"tri", {points[0].X, points[1].X, points[2].X}, number);
    case fstDeclineCurve:
      return AddCall(calls, u"z", {points.front().X, points.back().X}, number);
    case fstGrowthCurve:
      return AddCall(calls, u"s", {points.front().X, points.back().X}, number);
    case fstPICurve:
      return AddPICalls(calls, set, number);
    case fstBetaCurve:
      return AddBetaCalls(calls, set, number);
    default:
      return;
  }
}

/// Points of one X, neighbours that agree within the tolerance as the higher of them.
std::vector<TFuzzyPoint> Merged(const std::vector<TFuzzyPoint>& points) {
  std::vector<TFuzzyPoint> result;
  for (const TFuzzyPoint& point : points) {
    if (result.empty() || !FloatEquals(result.back().Y, point.Y, ReadTolerance))
      result.push_back(point);
    else if (result.back().Y < point.Y)
      result.back() = point;
  }
  return result;
}

/// How the degrees of a list are raised, and what takes that away again behind it.
struct TRaise {
  TFzyFloat By = 1;
  TFzyFloat Scale = 1;  // a power of two, which rounds nothing

  TFzyFloat Up(TFzyFloat y) const { return y * Scale + By; }
  TFzyFloat Down(TFzyFloat y) const { return (y - By) * (1 / Scale); }
  bool Returns(const std::vector<TFuzzyPoint>& points) const {
    return std::ranges::all_of(points, [this](const TFuzzyPoint& point) {
      return std::isfinite(Up(point.Y)) && Down(Up(point.Y)) == point.Y;
    });
  }
};

/// The raise that gives all degrees back to the bit: by 1 where that rounds none, else by less (the
/// less is added, the fewer digits of a degree are lost), or so little to degrees so much enlarged
/// that those above 0 stay what they are. Without any the one that rounds least.
TRaise ExactRaise(const std::vector<TFuzzyPoint>& points) {
  TRaise raise;
  while (!raise.Returns(points) && raise.By / 2 > ReadTolerance) raise.By /= 2;
  if (raise.Returns(points)) return raise;
  TFzyFloat least = 1;
  for (const TFuzzyPoint& point : points) {
    if (point.Y > 0) least = std::min(least, point.Y);
  }
  constexpr int beyond = std::numeric_limits<TFzyFloat>::digits + 2;
  const TRaise enlarged{raise.By, std::exp2(beyond + std::ilogb(raise.By) - std::ilogb(least))};
  return enlarged.Returns(points) ? enlarged : raise;
}

}  // namespace

TString TNumberStyle::operator()(TFzyFloat value) const {
  const TString text =
      !Full ? FormatFixed(value, 4, u'.') : FormatShortest(Rounded ? TwelveDigits(value) : value);
  const bool signedZero = text[0] == u'-' && ReadFuzzyNumber(text)->Value == 0;
  return signedZero ? text.Slice(1) : text;
}

TFzyFloat TNumberStyle::ReadBack(TFzyFloat value) const {
  return Full ? value : ReadFuzzyNumber((*this)(value))->Value;
}

std::vector<TString> ShapeCalls(const TSetContent& set, TNumberStyle number) {
  TCalls calls;
  if (number.Full) AddCalls(calls, set, {true, true});
  AddCalls(calls, set, number);
  return calls;
}

std::vector<TFuzzyPoint> WithoutCrowds(const std::vector<TFuzzyPoint>& points,
                                       TNumberStyle number) {
  std::vector<TFuzzyPoint> written = points;
  for (TFuzzyPoint& point : written) point = {number.ReadBack(point.X), number.ReadBack(point.Y)};
  std::vector<TFuzzyPoint> result;
  for (auto from = written.begin(); from != written.end();) {
    const auto to = std::find_if_not(from, written.end(), [&](const TFuzzyPoint& point) {
      return FloatEquals(from->X, point.X, ReadTolerance);
    });
    std::vector<TFuzzyPoint> crowd = Merged({from, to});
    if (crowd.size() > MostOfOneX) {
      const TFuzzyPoint highest = *std::ranges::max_element(crowd, {}, &TFuzzyPoint::Y);
      crowd = Merged({crowd.front(), highest, crowd.back()});
    }
    result.insert(result.end(), crowd.begin(), crowd.end());
    from = to;
  }
  return result;
}

TString PointList(const std::vector<TFuzzyPoint>& points, TNumberStyle number) {
  TString text(u"(");
  for (const TFuzzyPoint& point : points) {
    text += u'(';
    text += number(point.X);
    text += u' ';
    text += number(point.Y);
    text += u") ";
  }
  text += u')';
  return text;
}

TString RaisedPointList(std::vector<TFuzzyPoint>& points, TNumberStyle number) {
  const TRaise raise = number.Full ? ExactRaise(points) : TRaise{};
  for (TFuzzyPoint& point : points) point.Y = raise.Up(point.Y);
  TString text = u"[" + PointList(points, number) + u"] - " + FormatShortest(raise.By);
  if (raise.Scale != 1) text += u" / " + FormatShortest(raise.Scale);
  for (TFuzzyPoint& point : points) point.Y = raise.Down(point.Y);
  return text;
}

bool SamePoints(const std::vector<TFuzzyPoint>& a, const std::vector<TFuzzyPoint>& b,
                TFzyFloat tolerance) {
  const auto same = [tolerance](const TFuzzyPoint& p, const TFuzzyPoint& q) {
    return FloatEquals(p.X, q.X, tolerance) && FloatEquals(p.Y, q.Y, tolerance);
  };
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

}  // namespace fzy::detail
