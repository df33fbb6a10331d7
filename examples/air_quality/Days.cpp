#include "Days.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "InputFile.h"

namespace air_quality {
namespace {

constexpr std::string_view Header = "ozone,solar.r,wind,temp,month,day";
constexpr std::size_t ColumnCount = 6;
/// The file does not name its year.
constexpr std::chrono::year Season{1973};

using Columns = std::array<std::string_view, ColumnCount>;

/// One line of the file, which knows where it stands for the sake of its error messages.
struct Line {
  const std::string& File;
  int Number;
  std::string_view Text;

  [[noreturn]] void Fail(const std::string& message) const {
    throw InputError(File, Number, message);
  }
};

Columns Split(const Line& line) {
  const auto count = 1 + std::count(line.Text.begin(), line.Text.end(), ',');
  if (count != ColumnCount)
    line.Fail("expected " + std::to_string(ColumnCount) + " columns, found " +
              std::to_string(count));
  Columns columns;
  std::string_view rest = line.Text;
  for (std::string_view& column : columns) {
    column = rest.substr(0, rest.find(','));
    rest.remove_prefix(std::min(column.size() + 1, rest.size()));
  }
  return columns;
}

template <class Number>
Number ReadNumber(const Line& line, std::string_view text, const std::string& column) {
  Number value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  // "nan" and "inf" are numbers to from_chars, but no readings.
  if (error != std::errc() || end != text.data() + text.size() ||
      !std::isfinite(static_cast<double>(value)))
    line.Fail(column + " is not a number: \"" + std::string(text) + "\"");
  return value;
}

std::optional<double> ReadReading(const Line& line, std::string_view text,
                                  const std::string& column) {
  if (text == "NA") return std::nullopt;
  return ReadNumber<double>(line, text, column);
}

Day ReadDay(const Line& line) {
  const auto [ozone, solar, wind, temperature, month, day] = Split(line);
  const int m = ReadNumber<int>(line, month, "month");
  const int d = ReadNumber<int>(line, day, "day");
  if (m < 1 || m > 12) line.Fail("there is no month " + std::to_string(m));
  const auto inMonth = Season / m;
  const auto last = static_cast<unsigned>((inMonth / std::chrono::last).day());
  if (d < 1 || d > static_cast<int>(last))
    line.Fail("there is no day " + std::to_string(d) + " in month " + std::to_string(m));
  return {inMonth / d,
          {ReadReading(line, temperature, "temp"), ReadReading(line, wind, "wind"),
           ReadReading(line, solar, "solar.r")},
          ReadReading(line, ozone, "ozone"),
          line.Number};
}

}  // namespace

bool Day::IsComplete() const {
  return Ozone && std::all_of(Inputs.begin(), Inputs.end(), [](const auto& x) { return !!x; });
}

std::vector<Day> ReadDays(const std::string& file) {
  const std::string content = ReadFile(file);
  std::vector<Day> days;
  std::string_view rest = content;
  int number = 0;
  while (!rest.empty() || number == 0) {
    Line line{file, ++number, rest.substr(0, rest.find('\n'))};
    rest.remove_prefix(std::min(line.Text.size() + 1, rest.size()));
    if (line.Text.ends_with('\r')) line.Text.remove_suffix(1);
    if (number == 1) {
      if (line.Text != Header) line.Fail("expected the header \"" + std::string(Header) + "\"");
      continue;
    }
    days.push_back(ReadDay(line));
    if (days.size() > 1 && days.back().Date <= days[days.size() - 2].Date)
      line.Fail("the day does not come after that of the line before");
  }
  if (days.empty()) throw InputError(file, number, "there are no days below the header");
  return days;
}

}  // namespace air_quality
