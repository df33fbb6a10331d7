#pragma once

#include <cmath>
#include <functional>
#include <vector>

#include "fuzzylogic/engine/FuzzyPoint.h"

// What the engine computes with cursors and searches, here by plain scans in the order in which it
// is defined. The operations on numbers are the same, so results must agree to the last bit.

namespace fzy::test {

using TPoints = std::vector<TFuzzyPoint>;

inline constexpr double Tolerance = 0.0001;

inline bool Close(double a, double b) { return a >= b - Tolerance && b + Tolerance >= a; }
inline bool Same(const TFuzzyPoint& a, const TFuzzyPoint& b) {
  return Close(a.X, b.X) && Close(a.Y, b.Y);
}

inline double PlainY(const TFuzzyPoint& a, const TFuzzyPoint& b, double x) {
  if (b.X == a.X) return b.Y;
  return (x - a.X) / (b.X - a.X) * (b.Y - a.Y) + a.Y;
}

inline double PlainX(const TFuzzyPoint& a, const TFuzzyPoint& b, double y) {
  if (b.Y == a.Y) return b.X;
  return (y - a.Y) / (b.Y - a.Y) * (b.X - a.X) + a.X;
}

/// The greatest Y of the points from `index` on that share its X.
inline double PlainPeakOfX(const TPoints& points, int index, int dir) {
  const auto at = [&](int i) { return points[static_cast<std::size_t>(i)]; };
  double greatest = at(index).Y;
  for (int i = index; i >= 0 && i < std::ssize(points) && Close(at(i).X, at(index).X); i += dir)
    if (at(i).Y > greatest) greatest = at(i).Y;
  return greatest;
}

inline double PlainMembership(const TPoints& points, double x) {
  if (points.empty()) return 0;
  const int last = static_cast<int>(points.size()) - 1;
  if (x < points.front().X) return points.front().Y;
  if (x == points.front().X) return PlainPeakOfX(points, 0, 1);
  if (x > points.back().X) return points.back().Y;
  if (x == points.back().X) return PlainPeakOfX(points, last, -1);
  for (int i = 1;; ++i) {
    const TFuzzyPoint& right = points.at(static_cast<std::size_t>(i));
    if (x == right.X) return PlainPeakOfX(points, i, 1);
    if (right.X > x) return PlainY(points[static_cast<std::size_t>(i) - 1], right, x);
  }
}

inline bool PlainFlat(const TPoints& points) {
  for (const TFuzzyPoint& point : points)
    if (!Close(point.Y, points.front().Y)) return false;
  return true;
}

inline bool PlainCrossing(const TFuzzyPoint& p1, const TFuzzyPoint& p2, const TFuzzyPoint& p3,
                          const TFuzzyPoint& p4, TFuzzyPoint& crossing) {
  const double dx1 = p2.X - p1.X, dy1 = p2.Y - p1.Y;
  const double dx2 = p4.X - p3.X, dy2 = p4.Y - p3.Y;
  const auto isPoint = [](double dx, double dy) {
    return std::fabs(dy) < Tolerance && std::fabs(dx) < Tolerance;
  };
  if (isPoint(dx1, dy1) && !Close(PlainY(p3, p4, p2.X), p2.Y)) return false;
  if (isPoint(dx2, dy2) && !Close(PlainY(p1, p2, p4.X), p4.Y)) return false;
  const double d = dx1 * dy2 - dy1 * dx2;
  const double nt = (p1.Y - p3.Y) * dx2 - (p1.X - p3.X) * dy2;
  if (std::fabs(d) >= Tolerance) {
    const double t = nt / d;
    const double ns = (p1.Y - p3.Y) * dx1 - (p1.X - p3.X) * dy1;
    const bool second =
        ns == 0 || (std::signbit(ns) == std::signbit(d) && std::fabs(ns) <= std::fabs(d));
    if (!(0 <= t && t <= 1 && second)) return false;
    crossing.X = dx1 == 0 ? p1.X : dx2 == 0 ? p3.X : p1.X + t * dx1;
    crossing.Y = p3.Y == p4.Y ? p3.Y : p1.Y == p2.Y ? p1.Y : p1.Y + t * dy1;
    return true;
  }
  if (nt != 0) return false;
  crossing = p4.X <= p2.X ? p4 : p2;
  return true;
}

using TVisit = std::function<bool(double x1, double y1, double x2, double y2)>;

/// Walks two curves; whether a visit stopped it.
inline bool PlainWalk(const TPoints& a, const TPoints& b, const TVisit& visit) {
  if (a.empty() || b.empty()) {
    for (const TFuzzyPoint& p : a.empty() ? b : a)
      if (visit(p.X, p.Y, p.X, p.Y)) return true;
    return false;
  }
  const bool flatA = PlainFlat(a), flatB = PlainFlat(b);
  const auto between = [](double y, double y1, double y2) {
    return (y1 < y && y < y2) || (y2 < y && y < y1);
  };
  std::size_t i = 0, j = 0;
  TFuzzyPoint prevA = a.front(), prevB = b.front(), curA, curB;
  while (i < a.size() || j < b.size()) {
    if (i < a.size()) curA = a[i];
    if (j < b.size()) curB = b[j];
    TFuzzyPoint p;
    if (flatA && between(curA.Y, prevB.Y, curB.Y)) {
      const double x = PlainX(prevB, curB, curA.Y);
      if (visit(x, curA.Y, x, curA.Y)) return true;
    } else if (flatB && between(curB.Y, prevA.Y, curA.Y)) {
      const double x = PlainX(prevA, curA, curB.Y);
      if (visit(x, curB.Y, x, curB.Y)) return true;
    } else if (PlainCrossing(prevA, curA, prevB, curB, p)) {
      if (visit(p.X, p.Y, p.X, p.Y)) return true;
    }

    const bool both = i < a.size() && j < b.size();
    if (both && Close(a[i].X, b[j].X)) {
      if (visit(a[i].X, a[i].Y, b[j].X, b[j].Y)) return true;
      ++i;
      ++j;
      prevA = curA;
      prevB = curB;
    } else if (both ? b[j].X <= a[i].X : j < b.size()) {
      if (visit(b[j].X, PlainMembership(a, b[j].X), b[j].X, b[j].Y)) return true;
      ++j;
      prevB = curB;
    } else {
      if (visit(a[i].X, a[i].Y, a[i].X, PlainMembership(b, a[i].X))) return true;
      ++i;
      prevA = curA;
    }
  }
  return false;
}

}  // namespace fzy::test
