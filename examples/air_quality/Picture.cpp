#include "Picture.h"

#include <algorithm>
#include <array>

#include "Report.h"
#include "fuzzylogic/engine/FuzzyCurve.h"
#include "support/Chart.h"

namespace air_quality {
namespace {

using namespace fzy;
using support::DrawAxes;
using support::Frame;
using support::Point;
using support::Svg;

constexpr double Width = 1200;
constexpr double Height = 1040;
constexpr double Margin = 48;

constexpr std::string_view StyleSheet =
    "text { font-family: 'Source Sans 3', 'Segoe UI', 'Helvetica Neue', Arial, sans-serif;"
    " font-size: 13px; fill: #3d4752; }\n"
    ".page { fill: #fcfcfa; }\n"
    ".title { font-size: 26px; font-weight: 600; fill: #1d2630; }\n"
    ".summary { font-size: 15px; fill: #5b6672; }\n"
    ".caption { font-size: 15px; font-style: italic; fill: #5b6672; }\n"
    ".name { font-size: 16px; font-weight: 600; fill: #1d2630; }\n"
    ".left { text-anchor: start; }\n"
    ".middle { text-anchor: middle; }\n"
    ".right { text-anchor: end; }\n"
    ".grid { stroke: #e3e5e4; stroke-width: 1; }\n"
    ".axis { stroke: #8a939c; stroke-width: 1; }\n"
    ".area { fill-opacity: 0.10; }\n"
    ".term { fill: none; stroke-width: 2; stroke-linejoin: round; stroke-linecap: round; }\n"
    ".label { font-weight: 600; }\n"
    ".band { fill: #f1f3f2; }\n"
    ".inferred { fill: none; stroke: #d1602b; stroke-width: 2.2; stroke-linejoin: round; }\n"
    ".measured { fill: none; stroke: #8fa3b8; stroke-width: 1; }\n"
    ".reading { fill: #2b4a6b; }\n";

/// From the least to the greatest of a variable, as a scale of cold to hot: terms come in order.
constexpr std::array<std::string_view, 6> Colours{"#2f6db3", "#2a9d8f", "#b08a1e",
                                                  "#d1602b", "#a3284a", "#6b3fa0"};

/// The degree to which a term fits at its best.
double PeakOf(const Term& term) { return term.Points.empty() ? 0 : GreatestY(term.Points); }

void DrawTerm(Svg& svg, const Frame& frame, const Term& term, std::string_view colour) {
  // Membership is flat beyond the first and the last point.
  const bool ascending = IsAscending(term.Points);
  const double least = frame.Least.X;
  const double greatest = frame.Greatest.X;
  std::vector<TFuzzyPoint> curve{{least, Membership(term.Points, ascending, least)}};
  curve.insert(curve.end(), term.Points.begin(), term.Points.end());
  curve.push_back({greatest, Membership(term.Points, ascending, greatest)});

  const std::string ink(colour);
  std::vector<Point> area{frame.At(least, 0)};
  for (const TFuzzyPoint& point : curve) area.push_back(frame.At(point.X, point.Y));
  area.push_back(frame.At(greatest, 0));
  svg.Path(area, "area", "fill: " + ink);
  // Along the axis the lines of all terms would lie on each other, so they are left out there.
  std::vector<Point> line;
  for (std::size_t i = 0; i < curve.size(); ++i) {
    const bool follows = i > 0 && (curve[i - 1].Y > 0 || curve[i].Y > 0);
    if (!follows && line.size() > 1) svg.Path(line, "term", "stroke: " + ink);
    if (!follows) line.clear();
    line.push_back(frame.At(curve[i].X, curve[i].Y));
  }
  if (line.size() > 1) svg.Path(line, "term", "stroke: " + ink);
}

/// Writes names above the peaks of their terms, those that would touch the one before a line
/// higher.
class TermLabels {
 public:
  TermLabels(Svg& svg, const Frame& frame) : FSvg(svg), FFrame(frame) {}

  void Add(const Term& term, std::string_view colour) {
    const double half = LetterWidth * static_cast<double>(term.Name.size()) / 2;
    const Point peak = FFrame.At(MeanOfMaxima(term.Points), PeakOf(term));
    const double x = std::clamp(peak.X, FFrame.Corner.X + half, FFrame.Opposite.X - half);
    FRaised = !FRaised && x - half < FEnd;
    FEnd = x + half;
    FSvg.Text({x, peak.Y - (FRaised ? 22 : 7)}, term.Name, "label middle",
              "fill: " + std::string(colour));
  }

 private:
  static constexpr double LetterWidth = 8;  // about, for the labels' style

  Svg& FSvg;
  const Frame& FFrame;
  double FEnd = 0;
  bool FRaised = false;
};

/// The terms of a variable over its range.
void DrawVariable(Svg& svg, Point corner, Point opposite, const Variable& variable) {
  double highest = 1;
  for (const Term& term : variable.Terms) highest = std::max(highest, PeakOf(term));
  const Frame frame{{corner.X + 36, corner.Y + 50},
                    {opposite.X, opposite.Y - 26},
                    {variable.Minimum, 0},
                    {variable.Maximum, highest}};
  svg.Text({corner.X, corner.Y + 12}, variable.Name + ", " + variable.Units, "name");
  DrawAxes(svg, frame, 10, 2);
  std::size_t next = 0;
  for (const Term& term : variable.Terms)
    DrawTerm(svg, frame, term, Colours[next++ % Colours.size()]);
  next = 0;
  TermLabels labels(svg, frame);  // after all curves, to lie on top of them
  for (const Term& term : variable.Terms) labels.Add(term, Colours[next++ % Colours.size()]);
}

double DayNumber(std::chrono::year_month_day date, std::chrono::year_month_day first) {
  return static_cast<double>((std::chrono::sys_days(date) - std::chrono::sys_days(first)).count());
}

/// Every other month on a band, the names of all beneath.
void DrawMonths(Svg& svg, const Frame& frame, const std::vector<Day>& days) {
  const auto firstDay = days.front().Date;
  bool shaded = false;
  for (auto month = firstDay.year() / firstDay.month(); month / 1 <= days.back().Date;
       month += std::chrono::months(1)) {
    const auto next = month + std::chrono::months(1);
    const double from = std::max(frame.Least.X, DayNumber(month / 1, firstDay) - 0.5);
    const double to = std::min(frame.Greatest.X, DayNumber(next / 1, firstDay) - 0.5);
    if (shaded)
      svg.Rectangle(frame.At(from, frame.Greatest.Y), frame.At(to, frame.Least.Y), "band");
    shaded = !shaded;
    const Point middle = frame.At((from + to) / 2, frame.Least.Y);
    svg.Text({middle.X, middle.Y + 20}, MonthName(month.month()), "middle");
  }
}

/// A line through what there is; `value(i)` is nothing where the line has a gap.
template <class Value>
void DrawCourse(Svg& svg, const Frame& frame, const std::vector<Day>& days,
                std::string_view cssClass, Value value) {
  std::vector<Point> run;
  const auto finishRun = [&] {
    if (run.size() > 1) svg.Path(run, cssClass);
    run.clear();
  };
  for (std::size_t i = 0; i < days.size(); ++i) {
    const double x = DayNumber(days[i].Date, days.front().Date);
    if (i > 0 && x > DayNumber(days[i - 1].Date, days.front().Date) + 1) finishRun();
    if (const std::optional<double> y = value(i))
      run.push_back(frame.At(x, *y));
    else
      finishRun();
  }
  finishRun();
}

void DrawLegend(Svg& svg, Point right) {
  svg.Line({right.X - 290, right.Y - 4}, {right.X - 262, right.Y - 4}, "inferred");
  svg.Text({right.X - 254, right.Y}, "inferred by the rules", "left");
  svg.Line({right.X - 104, right.Y - 4}, {right.X - 76, right.Y - 4}, "measured");
  svg.Dot({right.X - 90, right.Y - 4}, 3, "reading");
  svg.Text({right.X - 68, right.Y}, "measured", "left");
}

void DrawSeason(Svg& svg, Point corner, Point opposite, const Variable& ozone,
                const std::vector<Day>& days, const std::vector<Inference>& inferences) {
  const double last = DayNumber(days.back().Date, days.front().Date);
  const Frame frame{{corner.X + 36, corner.Y + 32},
                    {opposite.X, opposite.Y - 26},
                    {-0.5, ozone.Minimum},
                    {last + 0.5, ozone.Maximum}};
  svg.Text({corner.X, corner.Y + 12}, ozone.Name + " over the season, " + ozone.Units, "name");
  DrawLegend(svg, {opposite.X, corner.Y + 12});
  DrawMonths(svg, frame, days);
  DrawAxes(svg, frame, 0, 10);
  DrawCourse(svg, frame, days, "measured", [&](std::size_t i) { return days[i].Ozone; });
  for (const Day& day : days)
    if (day.Ozone)
      svg.Dot(frame.At(DayNumber(day.Date, days.front().Date), *day.Ozone), 3, "reading");
  DrawCourse(svg, frame, days, "inferred", [&](std::size_t i) { return inferences[i].Ozone; });
}

}  // namespace

std::string DrawPicture(const std::vector<Variable>& variables, const std::vector<Day>& days,
                        const std::vector<Inference>& inferences, const std::string& summary) {
  constexpr double gap = 56;
  constexpr double chartWidth = (Width - 2 * Margin - gap) / 2;
  constexpr double chartHeight = 220;
  constexpr double top = 150;

  Svg svg(Width, Height, StyleSheet);
  svg.Rectangle({0, 0}, {Width, Height}, "page");
  svg.Text({Margin, 56}, "Ozone from temperature, wind and sunlight", "title");
  svg.Text({Margin, 82}, summary, "summary");
  svg.Text({Margin, 124}, "How well each word fits a reading, from 0 to 1", "caption");
  Point corner{Margin, top};
  for (const Variable& variable : variables) {
    DrawVariable(svg, corner, {corner.X + chartWidth, corner.Y + chartHeight}, variable);
    corner.X += chartWidth + gap;
    if (corner.X > Width - Margin) corner = {Margin, corner.Y + chartHeight + 28};
  }
  DrawSeason(svg, {Margin, top + 2 * (chartHeight + 28) + 8}, {Width - Margin, Height - 32},
             variables.back(), days, inferences);
  return std::move(svg).Finish();
}

}  // namespace air_quality
