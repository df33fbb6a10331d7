#include "fuzzylogic/framework/Encoding.h"

#include <algorithm>
#include <cstdint>

namespace fzy {
namespace {

constexpr char16_t Replacement = 0xFFFD;

bool IsHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void AppendCodePoint(std::uint32_t code, std::u16string& text) {
  if (code < 0x10000) {
    text += static_cast<char16_t>(code);
  } else {
    text += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
    text += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
  }
}

/// What the lead byte of a UTF-8 sequence says: how many bytes follow, the bits it carries, and the
/// range of the second byte (which excludes overlong forms, surrogates and codes above U+10FFFF).
struct TLead {
  int Following;
  std::uint32_t Bits;
  std::uint8_t SecondLow;
  std::uint8_t SecondHigh;
};

TLead ReadLead(std::uint8_t byte) {
  if (byte >= 0xC2 && byte <= 0xDF) return {1, byte & 0x1FU, 0x80, 0xBF};
  if (byte >= 0xE0 && byte <= 0xEF)
    return {2, byte & 0x0FU, std::uint8_t(byte == 0xE0 ? 0xA0 : 0x80),
            std::uint8_t(byte == 0xED ? 0x9F : 0xBF)};
  if (byte >= 0xF0 && byte <= 0xF4)
    return {3, byte & 0x07U, std::uint8_t(byte == 0xF0 ? 0x90 : 0x80),
            std::uint8_t(byte == 0xF4 ? 0x8F : 0xBF)};
  return {-1, 0, 0, 0};
}

/// Appends the run of ASCII characters that starts at `from` and returns where it ends: most texts
/// are little else, and a run is copied as a block.
template <class From, class To>
std::size_t AppendASCII(From source, std::size_t from, To& target) {
  const auto foreign = [](auto unit) { return unit < 0 || unit >= 0x80; };
  const auto first = source.begin() + static_cast<std::ptrdiff_t>(from);
  const auto last = std::find_if(first, source.end(), foreign);
  const auto length = static_cast<std::size_t>(last - first);
  const std::size_t old = target.size();
  target.resize(old + length);
  std::transform(first, last, target.begin() + static_cast<std::ptrdiff_t>(old),
                 [](auto unit) { return static_cast<typename To::value_type>(unit); });
  return from + length;
}

class TUTF8Encoding final : public TEncoding {
 public:
  void Encode(std::u16string_view text, std::string& bytes) const override {
    bytes.reserve(bytes.size() + text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] < 0x80) {
        i = AppendASCII(text, i, bytes) - 1;
        continue;
      }
      std::uint32_t code = text[i];
      if (IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
        code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00U);
      } else if (IsHighSurrogate(text[i]) || IsLowSurrogate(text[i])) {
        code = Replacement;
      }
      AppendSequence(code, bytes);
    }
  }

  std::size_t Decode(std::string_view bytes, bool last, std::u16string& text) const override {
    text.reserve(text.size() + bytes.size());
    std::size_t i = 0;
    while (i < bytes.size()) {
      if (static_cast<std::uint8_t>(bytes[i]) < 0x80) {
        i = AppendASCII(bytes, i, text);
        continue;
      }
      const std::size_t used = DecodeSequence(bytes.substr(i), last, text);
      if (used == 0) break;
      i += used;
    }
    return i;
  }

 private:
  static void AppendSequence(std::uint32_t code, std::string& bytes) {
    const int following = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    const std::uint32_t mark = following == 1 ? 0xC0 : following == 2 ? 0xE0 : 0xF0;
    bytes += static_cast<char>(mark | (code >> (6 * following)));
    for (int k = following - 1; k >= 0; --k)
      bytes += static_cast<char>(0x80 | ((code >> (6 * k)) & 0x3F));
  }

  /// Decodes one sequence of several bytes; 0 when it is cut off and more bytes may come.
  static std::size_t DecodeSequence(std::string_view bytes, bool last, std::u16string& text) {
    const TLead lead = ReadLead(static_cast<std::uint8_t>(bytes[0]));
    std::uint32_t code = lead.Bits;
    std::size_t used = 1;
    for (int k = 0; k < lead.Following; ++k, ++used) {
      if (used == bytes.size()) {
        if (!last) return 0;
        break;
      }
      const auto byte = static_cast<std::uint8_t>(bytes[used]);
      const std::uint8_t low = k == 0 ? lead.SecondLow : 0x80;
      const std::uint8_t high = k == 0 ? lead.SecondHigh : 0xBF;
      if (byte < low || byte > high) break;
      code = (code << 6) | (byte & 0x3FU);
    }
    const bool whole = lead.Following > 0 && used == static_cast<std::size_t>(lead.Following) + 1;
    AppendCodePoint(whole ? code : Replacement, text);
    return used;
  }
};

class TUTF16Encoding final : public TEncoding {
 public:
  explicit TUTF16Encoding(bool bigEndian) : FBigEndian(bigEndian) {}

  void Encode(std::u16string_view text, std::string& bytes) const override {
    bytes.reserve(bytes.size() + 2 * text.size());
    for (const char16_t unit : text) {
      const char low = static_cast<char>(unit & 0xFF);
      const char high = static_cast<char>(unit >> 8);
      bytes += FBigEndian ? high : low;
      bytes += FBigEndian ? low : high;
    }
  }

  std::size_t Decode(std::string_view bytes, bool last, std::u16string& text) const override {
    std::size_t i = 0;
    for (; i + 1 < bytes.size(); i += 2) {
      const unsigned first = static_cast<std::uint8_t>(bytes[i]);
      const unsigned second = static_cast<std::uint8_t>(bytes[i + 1]);
      text += static_cast<char16_t>(FBigEndian ? first << 8 | second : second << 8 | first);
    }
    if (last && i < bytes.size()) {
      text += Replacement;
      ++i;
    }
    return i;
  }

 private:
  bool FBigEndian;
};

/// ASCII and Latin-1: one byte a character, for codes up to `Highest`.
class TByteEncoding final : public TEncoding {
 public:
  explicit TByteEncoding(std::uint8_t highest) : FHighest(highest) {}

  void Encode(std::u16string_view text, std::string& bytes) const override {
    bytes.reserve(bytes.size() + text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
      const bool pair =
          IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1]);
      bytes += text[i] <= FHighest ? static_cast<char>(text[i]) : '?';
      if (pair) ++i;
    }
  }

  std::size_t Decode(std::string_view bytes, bool /*last*/, std::u16string& text) const override {
    for (const char ch : bytes) {
      const auto byte = static_cast<std::uint8_t>(ch);
      text += byte <= FHighest ? static_cast<char16_t>(byte) : Replacement;
    }
    return bytes.size();
  }

 private:
  std::uint8_t FHighest;
};

}  // namespace

const TEncoding* TEncoding::UTF8() {
  static const TUTF8Encoding encoding;
  return &encoding;
}

const TEncoding* TEncoding::UTF16LittleEndian() {
  static const TUTF16Encoding encoding(false);
  return &encoding;
}

const TEncoding* TEncoding::UTF16BigEndian() {
  static const TUTF16Encoding encoding(true);
  return &encoding;
}

const TEncoding* TEncoding::ASCII() {
  static const TByteEncoding encoding(0x7F);
  return &encoding;
}

const TEncoding* TEncoding::Latin1() {
  static const TByteEncoding encoding(0xFF);
  return &encoding;
}

}  // namespace fzy
