#include "support/Svg.h"

#include "fuzzylogic/FuzzyLogic.h"

namespace support {
namespace {

std::string Coordinate(double value) { return fzy::FormatFixed(value, 2).Utf8(); }

std::string Escape(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&')
      escaped += "&amp;";
    else if (c == '<')
      escaped += "&lt;";
    else if (c == '"')
      escaped += "&quot;";
    else if (static_cast<unsigned char>(c) < ' ')
      escaped += ' ';  // control characters may not stand in a document at all
    else
      escaped += c;
  }
  return escaped;
}

std::string Attribute(std::string_view name, std::string_view value) {
  return ' ' + std::string(name) + "=\"" + std::string(value) + '"';
}

std::string Attribute(std::string_view name, double value) {
  return Attribute(name, Coordinate(value));
}

}  // namespace

Svg::Svg(double width, double height, std::string_view styleSheet) {
  const std::string size = Coordinate(width) + ' ' + Coordinate(height);
  FText = "<svg xmlns=\"http://www.w3.org/2000/svg\"" + Attribute("width", width) +
          Attribute("height", height) + Attribute("viewBox", "0 0 " + size) + ">\n<style>\n";
  FText.append(styleSheet).append("</style>\n");
}

void Svg::Attributes(std::string_view cssClass, std::string_view style) {
  FText += Attribute("class", cssClass);
  if (!style.empty()) FText += Attribute("style", style);
}

void Svg::Rectangle(Point corner, Point opposite, std::string_view cssClass) {
  FText += "<rect" + Attribute("x", corner.X) + Attribute("y", corner.Y) +
           Attribute("width", opposite.X - corner.X) + Attribute("height", opposite.Y - corner.Y);
  Attributes(cssClass, {});
  FText += "/>\n";
}

void Svg::Line(Point from, Point to, std::string_view cssClass) {
  FText += "<line" + Attribute("x1", from.X) + Attribute("y1", from.Y) + Attribute("x2", to.X) +
           Attribute("y2", to.Y);
  Attributes(cssClass, {});
  FText += "/>\n";
}

void Svg::Path(const std::vector<Point>& points, std::string_view cssClass,
               std::string_view style) {
  std::string steps;
  for (const Point& point : points)
    steps += (steps.empty() ? "M" : " L") + Coordinate(point.X) + ' ' + Coordinate(point.Y);
  FText += "<path" + Attribute("d", steps);
  Attributes(cssClass, style);
  FText += "/>\n";
}

void Svg::Dot(Point center, double radius, std::string_view cssClass) {
  FText +=
      "<circle" + Attribute("cx", center.X) + Attribute("cy", center.Y) + Attribute("r", radius);
  Attributes(cssClass, {});
  FText += "/>\n";
}

void Svg::Text(Point at, std::string_view text, std::string_view cssClass, std::string_view style) {
  FText += "<text" + Attribute("x", at.X) + Attribute("y", at.Y);
  Attributes(cssClass, style);
  FText += '>' + Escape(text) + "</text>\n";
}

std::string Svg::Finish() && { return std::move(FText) + "</svg>\n"; }

}  // namespace support
