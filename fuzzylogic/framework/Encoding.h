#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "fuzzylogic/framework/Text.h"

namespace fzy {

/// How text is stored as bytes. The five encodings are constants of the process and are passed by
/// pointer; no encoding (`nullptr`) means UTF-8. Nothing here raises: malformed bytes become
/// U+FFFD, characters that an encoding cannot hold become "?".
class TEncoding {
 public:
  static const TEncoding* UTF8();
  static const TEncoding* UTF16LittleEndian();
  static const TEncoding* UTF16BigEndian();
  static const TEncoding* ASCII();
  static const TEncoding* Latin1();

  TEncoding(const TEncoding&) = delete;
  TEncoding& operator=(const TEncoding&) = delete;

  /// Appends the bytes of `text` to `bytes`.
  virtual void Encode(std::u16string_view text, std::string& bytes) const = 0;

  /// Appends the text of `bytes` to `text` and returns how many bytes were used. A character that
  /// is cut off at the end of `bytes` is left for the next call, unless `last` says that no more
  /// bytes will come; then it becomes U+FFFD.
  virtual std::size_t Decode(std::string_view bytes, bool last, std::u16string& text) const = 0;

 protected:
  TEncoding() = default;
  ~TEncoding() = default;
};

}  // namespace fzy
