#include "Picture.h"

#include <algorithm>

#include "support/Chart.h"

namespace {

using namespace fzy;
using support::Point;
using support::Svg;

constexpr double Width = 680;
constexpr double PlotHeight = 130;
constexpr double Above = 44;  // of the plot: the variable's name, and the first row of labels
constexpr double Below = 40;
constexpr double Left = 44;
constexpr double Right = Width - 20;
constexpr double RowHeight = 16;
constexpr double LetterWidth = 8;  // about, for the labels' style

constexpr std::size_t Colours = 6;
constexpr std::string_view StyleSheet =
    "text { fill: #3d4752; font: 13px 'Segoe UI', 'Helvetica Neue', Arial, sans-serif; }\n"
    ".name { font-size: 15px; fill: #1d2630; } .name, .label { font-weight: 600; }\n"
    ".middle { text-anchor: middle; } .right { text-anchor: end; }\n"
    ".page { fill: #fcfcfa; } .grid { stroke: #e3e5e4; } .axis { stroke: #8a939c; }\n"
    ".term { fill: none; stroke: currentColor; stroke-width: 2; stroke-linejoin: round; }\n"
    ".label { fill: currentColor; stroke: #fcfcfa; stroke-width: 4; paint-order: stroke; }\n"
    ".c0 { color: #2f6db3; } .c1 { color: #c2531f; } .c2 { color: #1f7f73; }\n"
    ".c3 { color: #a3284a; } .c4 { color: #6b3fa0; } .c5 { color: #8a6a10; }\n"
    "@media (prefers-color-scheme: dark) {\n"
    "text { fill: #b4bec8; } .name { fill: #eef2f6; } .label { stroke: #14191f; }\n"
    ".page { fill: #14191f; } .grid { stroke: #2b333c; } .axis { stroke: #75808b; }\n"
    ".c0 { color: #76b1f2; } .c1 { color: #f49a6c; } .c2 { color: #5fcdbd; }\n"
    ".c3 { color: #f083a2; } .c4 { color: #bd9cf0; } .c5 { color: #ddbb55; } }\n";

/// A term's name, around the middle of its curve's top; `Height` is over the foot of the plot.
struct Label {
  std::string Text;
  double X;
  double Height;
  double HalfWidth;
};

/// The membership over the whole range: beyond its points it stays as it is.
std::vector<Point> CurveOf(const TFuzzySet& term, const TFuzzyVariable& variable) {
  const TFuzzyCurve points = term.GetValues()->Points();
  std::vector<Point> curve{{variable.GetMinimum(), points.front().Y}};
  for (const TFuzzyPoint& point : points) curve.push_back({point.X, point.Y});
  curve.push_back({variable.GetMaximum(), points.back().Y});
  return curve;
}

/// One variable's part of the picture.
class Chart {
 public:
  explicit Chart(const TFuzzyVariable& variable) : FName(variable.GetName().Utf8()) {
    if (!variable.GetUnits().empty()) FName += ", " + variable.GetUnits().Utf8();
    FFrame = {
        {Left, 0}, {Right, PlotHeight}, {variable.GetMinimum(), 0}, {variable.GetMaximum(), 1}};
    for (const TFuzzySet* term : *variable.GetItems()) {
      if (!term->GetDefined() || term->GetValues()->GetCount() == 0) continue;
      FCurves.push_back(CurveOf(*term, variable));
      FFrame.Greatest.Y = std::max(FFrame.Greatest.Y, term->GetCompatibilityIndex());
      const std::string name = term->GetName().Utf8();
      FLabels.push_back({name, 0, 0, LetterWidth * static_cast<double>(name.size()) / 2});
    }
    for (std::size_t i = 0; i < FLabels.size(); ++i) Place(i);
  }

  double Height() const { return FHead + PlotHeight + Below; }

  /// Draws it `top` below the upper edge.
  void Draw(Svg& svg, double top) {
    svg.Text({12, top + 22}, FName, "name");
    FFrame.Corner.Y = top + FHead;
    FFrame.Opposite.Y = FFrame.Corner.Y + PlotHeight;
    support::DrawAxes(svg, FFrame, 10, 2);
    const auto colour = [](std::size_t i) { return " c" + std::to_string(i % Colours); };
    for (std::size_t i = 0; i < FCurves.size(); ++i) {
      std::vector<Point> line;
      for (const Point& point : FCurves[i]) line.push_back(FFrame.At(point.X, point.Y));
      svg.Path(line, "term" + colour(i));
    }
    for (std::size_t i = 0; i < FLabels.size(); ++i)  // after all curves, to lie on top of them
      svg.Text({FLabels[i].X, FFrame.Opposite.Y - FLabels[i].Height}, FLabels[i].Text,
               "label middle" + colour(i));
  }

 private:
  /// As low as the labels before it let it.
  void Place(std::size_t index) {
    const auto lower = [](const Point& a, const Point& b) { return a.Y < b.Y - 1e-9; };
    const std::vector<Point>& curve = FCurves[index];
    const auto first = std::max_element(curve.begin(), curve.end(), lower);
    const auto last = std::max_element(curve.rbegin(), curve.rend(), lower);
    const Point at = FFrame.At((first->X + last->X) / 2, first->Y);
    Label& label = FLabels[index];
    label.X = std::max(Left + label.HalfWidth, std::min(at.X, Right - label.HalfWidth));
    label.Height = PlotHeight - at.Y + 6;
    const auto end = FLabels.begin() + static_cast<std::ptrdiff_t>(index);
    const auto touches = [&](const Label& other) {
      return std::abs(label.X - other.X) < label.HalfWidth + other.HalfWidth &&
             std::abs(label.Height - other.Height) < RowHeight;
    };
    for (auto hit = std::find_if(FLabels.begin(), end, touches); hit != end;
         hit = std::find_if(FLabels.begin(), end, touches))
      label.Height = hit->Height + RowHeight;
    FHead = std::max(FHead, Above + label.Height - PlotHeight);
  }

  std::string FName;
  support::Frame FFrame;
  std::vector<std::vector<Point>> FCurves;
  std::vector<Label> FLabels;
  double FHead = Above;
};

}  // namespace

std::string DrawVariables(const std::vector<const TFuzzyVariable*>& variables) {
  std::vector<Chart> charts;
  double height = 0;
  for (const auto* variable : variables) height += charts.emplace_back(*variable).Height();
  Svg svg(Width, height, StyleSheet);
  svg.Rectangle({0, 0}, {Width, height}, "page");
  double top = 0;
  for (Chart& chart : charts) {
    chart.Draw(svg, top);
    top += chart.Height();
  }
  return std::move(svg).Finish();
}
