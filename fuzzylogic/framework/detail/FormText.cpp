#include "fuzzylogic/framework/detail/FormText.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "fuzzylogic/framework/Encoding.h"
#include "fuzzylogic/framework/Messages.h"

namespace fzy::detail {
namespace {

constexpr std::size_t ChunkSize = 65536;
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view Replacement = "\xEF\xBF\xBD";  // U+FFFD, written as such
constexpr std::string_view Blanks = " \t\r";

struct TEscape {
  char Letter;
  char16_t Unit;
};
constexpr std::array<TEscape, 5> Escapes{
    {{'"', u'"'}, {'\\', u'\\'}, {'n', u'\n'}, {'r', u'\r'}, {'t', u'\t'}}};

constexpr bool IsPlain(char16_t unit) {
  return unit >= u' ' && unit < 0x7F && unit != u'"' && unit != u'\\';
}
constexpr bool IsHigh(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
constexpr bool IsLow(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

constexpr bool IsNameLetter(char ch) {
  return (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') || (ch >= '0' && ch <= '9') ||
         ch == '_';
}

void AppendEscape(std::string& out, char16_t unit) {
  out += '\\';
  for (const TEscape& escape : Escapes) {
    if (escape.Unit == unit) {
      out += escape.Letter;
      return;
    }
  }
  constexpr std::string_view digits = "0123456789ABCDEF";
  out += 'u';
  for (int shift = 12; shift >= 0; shift -= 4)
    out += digits[static_cast<std::size_t>(unit >> shift) & 0xF];
}

/// The length of the well-formed run of characters beyond ASCII at the start.
std::size_t ForeignRun(std::u16string_view text) {
  std::size_t i = 0;
  while (i < text.size() && text[i] > 0x7F) {
    const bool pair = IsHigh(text[i]) && i + 1 < text.size() && IsLow(text[i + 1]);
    if (!pair && (IsHigh(text[i]) || IsLow(text[i]))) break;
    i += pair ? 2 : 1;
  }
  return i;
}

std::size_t CountOf(std::string_view part, std::string_view bytes) {
  std::size_t count = 0;
  for (std::size_t at = bytes.find(part); at != std::string_view::npos;
       at = bytes.find(part, at + part.size()))
    ++count;
  return count;
}

/// False for bytes that are not UTF-8: the decoder would put a replacement character there.
bool Decode(std::string_view bytes, std::u16string& text) {
  const std::size_t start = text.size();
  TEncoding::UTF8()->Decode(bytes, true, text);
  const auto replaced =
      std::count(text.begin() + static_cast<std::ptrdiff_t>(start), text.end(), u'\uFFFD');
  return replaced == 0 || static_cast<std::size_t>(replaced) == CountOf(Replacement, bytes);
}

/// Reads the escape behind a backslash; the result is its length, 0 for none.
std::size_t ReadEscape(std::string_view rest, char16_t& unit) {
  if (rest.empty()) return 0;
  for (const TEscape& escape : Escapes) {
    if (escape.Letter == rest.front()) {
      unit = escape.Unit;
      return 1;
    }
  }
  constexpr std::size_t length = 5;  // u and four digits
  if (rest.front() != 'u' || rest.size() < length) return 0;
  std::uint16_t code = 0;
  const auto read = std::from_chars(rest.data() + 1, rest.data() + length, code, 16);
  if (read.ptr != rest.data() + length) return 0;
  unit = code;
  return length;
}

template <class Number>
void AppendDecimal(std::string& out, Number value) {
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  out.append(digits.data(), end);
}

template <class Number>
std::optional<Number> ReadDecimal(std::string_view word) {
  Number value{};
  const char* end = word.data() + word.size();
  const auto read = std::from_chars(word.data(), end, value);
  return read.ec == std::errc() && read.ptr == end ? std::optional(value) : std::nullopt;
}

}  // namespace

void AppendNumber(std::string& out, double value) { AppendDecimal(out, value); }
void AppendNumber(std::string& out, std::int64_t value) { AppendDecimal(out, value); }

void AppendText(std::string& out, std::u16string_view text, std::size_t indent) {
  out += '"';
  for (std::size_t i = 0; i < text.size();) {
    if (IsPlain(text[i])) {
      out += static_cast<char>(text[i++]);
    } else if (const std::size_t run = ForeignRun(text.substr(i)); run > 0) {
      TEncoding::UTF8()->Encode(text.substr(i, run), out);
      i += run;
    } else {
      AppendEscape(out, text[i]);
      if (text[i++] != u'\n' || i == text.size()) continue;
      out += "\" +\n";
      out.append(indent, ' ');
      out += '"';
    }
  }
  out += '"';
}

std::optional<double> ReadNumber(std::string_view word) { return ReadDecimal<double>(word); }

std::optional<std::int64_t> ReadWhole(std::string_view word) {
  return ReadDecimal<std::int64_t>(word);
}

const TMessage* ReadPiece(std::string_view& rest, std::u16string& text) {
  rest.remove_prefix(1);
  for (;;) {
    const auto special = [](char ch) {
      return ch == '"' || ch == '\\' || static_cast<unsigned char>(ch) < ' ';
    };
    const auto run =
        static_cast<std::size_t>(std::find_if(rest.begin(), rest.end(), special) - rest.begin());
    if (run == rest.size()) return &SFormTextOpen;
    if (!Decode(rest.substr(0, run), text)) return &SFormTextNotUtf8;
    const char found = rest[run];
    rest.remove_prefix(run + 1);
    if (found == '"') break;
    if (found != '\\') return &SFormTextControl;
    char16_t unit = 0;
    const std::size_t length = ReadEscape(rest, unit);
    if (length == 0) return &SFormTextEscape;
    text += unit;
    rest.remove_prefix(length);
  }
  Take(rest, "");
  return nullptr;
}

bool Take(std::string_view& rest, std::string_view word) noexcept {
  if (!rest.starts_with(word)) return false;
  rest.remove_prefix(word.size());
  rest.remove_prefix(std::min(rest.find_first_not_of(Blanks), rest.size()));
  return true;
}

std::string_view TakeName(std::string_view& rest) noexcept {
  const auto end = std::find_if_not(rest.begin(), rest.end(), IsNameLetter);
  const std::string_view name = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
  Take(rest, name);
  return name;
}

// TFormLines

/// Reads on behind what the buffer holds, and drops what was read before.
bool TFormLines::Fill() {
  if (FIsEnded) return false;
  FBuffer.erase(0, FPosition);
  FPosition = 0;
  const std::size_t length = FBuffer.size();
  FBuffer.resize(length + ChunkSize);
  const std::size_t count = FStream.Read(FBuffer.data() + length, ChunkSize);
  FBuffer.resize(length + count);
  FIsEnded = count < ChunkSize;
  if (FNumber == 0 && length == 0 && FBuffer.starts_with(ByteOrderMark))
    FPosition = ByteOrderMark.size();
  return true;
}

bool TFormLines::Next() {
  do {
    std::size_t searched = 0;
    std::size_t end = FBuffer.find('\n', FPosition);
    while (end == std::string::npos) {
      searched = FBuffer.size() - FPosition;
      if (!Fill()) break;
      end = FBuffer.find('\n', FPosition + searched);
    }
    if (end == std::string::npos && FPosition == FBuffer.size()) return false;
    ++FNumber;
    FLine = std::string_view(FBuffer).substr(FPosition, end - FPosition);
    FPosition = std::min(end, FBuffer.size() - 1) + 1;
    const std::size_t first = std::min(FLine.find_first_not_of(Blanks), FLine.size());
    FLine = FLine.substr(first, FLine.find_last_not_of(Blanks) + 1 - first);
  } while (FLine.empty());
  return true;
}

}  // namespace fzy::detail
