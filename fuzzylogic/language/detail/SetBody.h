#pragma once

#include <vector>

#include "fuzzylogic/engine/FuzzyPoint.h"
#include "fuzzylogic/framework/Text.h"
#include "fuzzylogic/vocabulary/FuzzyTypes.h"

namespace fzy::detail {

/// What a definition text may say of a set.
struct TSetContent {
  TString Name;
  TString Comment;
  TString Expression;
  TString Definition;
  TFuzzySetType Type = fstUserDefined;
  TFzyFloat InflectionPoint = 0;
  std::vector<TFuzzyPoint> Points;
};

/// How numbers are written, always with a point: in four decimals, or as many as give the same bits
/// back; zero without a sign, which a reader might drop. `Tolerance` is how far a number may be
/// from another that is written in its place.
struct TNumberStyle {
  bool Full;
  bool Rounded = false;  // the nearest number of twelve digits instead

  TString operator()(TFzyFloat value) const;
  /// The number that a reader makes of the text.
  TFzyFloat ReadBack(TFzyFloat value) const;
  TFzyFloat Tolerance() const noexcept { return Full ? 0 : 0.0001; }
};

/// The calls that may give the set's points back, likeliest first, for a set that was made by a
/// shape function and not changed since; none for any other.
std::vector<TString> ShapeCalls(const TSetContent& set, TNumberStyle number);

/// What a reader can keep of the points, as they are written: of neighbours that agree within the
/// tolerance the higher, and of more than three that share an X the first, the highest and the
/// last. The degrees at and between the X stay the same.
std::vector<TFuzzyPoint> WithoutCrowds(const std::vector<TFuzzyPoint>& points, TNumberStyle number);

/// The points as a list: "((0.0000 1.0000) (50.0000 0.0000) )".
TString PointList(const std::vector<TFuzzyPoint>& points, TNumberStyle number);

/// The points as an expression that keeps steps up from 0. A reader adds a list's points one by
/// one, each at degree 0 first, where it displaces a point of the same X and degree 0 that stands
/// there already; so the list is raised by 1, and the expression takes 1 away again. In full
/// precision it is raised so that the same bits come back, in one way or another; that fails only
/// with degrees of over 250 orders of magnitude. `points` become those that come back.
TString RaisedPointList(std::vector<TFuzzyPoint>& points, TNumberStyle number);

/// Whether one list of points may be written for the other.
bool SamePoints(const std::vector<TFuzzyPoint>& a, const std::vector<TFuzzyPoint>& b,
                TFzyFloat tolerance);

}  // namespace fzy::detail
