#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace support {

struct Point {
  double X = 0;
  double Y = 0;
};

/// A drawing in scalable vector graphics, built up element by element; later ones lie on top.
/// `style` is what the element's style attribute holds, on top of that of its class.
class Svg {
 public:
  Svg(double width, double height, std::string_view styleSheet);

  void Rectangle(Point corner, Point opposite, std::string_view cssClass);
  void Line(Point from, Point to, std::string_view cssClass);
  void Path(const std::vector<Point>& points, std::string_view cssClass,
            std::string_view style = {});
  void Dot(Point center, double radius, std::string_view cssClass);
  /// Any text; what would be markup is escaped.
  void Text(Point at, std::string_view text, std::string_view cssClass,
            std::string_view style = {});

  /// The whole document.
  std::string Finish() &&;

 private:
  void Attributes(std::string_view cssClass, std::string_view style);

  std::string FText;
};

}  // namespace support
