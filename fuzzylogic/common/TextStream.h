#pragma once

#include <cstdint>
#include <memory>

#include "fuzzylogic/framework/Encoding.h"
#include "fuzzylogic/framework/Stream.h"

namespace fzy {

/// Reads characters (UTF-16 units) from a stream of bytes, a block at a time. Descendants may
/// override every reading operation; each of them rests on `GetChar(ch)`.
class TGTextStream {
 public:
  /// Owns `stream`. No encoding means UTF-8; a byte order mark at the start is not text.
  TGTextStream(std::unique_ptr<TStream> stream, const TEncoding* encoding);
  TGTextStream(const TGTextStream&) = delete;
  TGTextStream& operator=(const TGTextStream&) = delete;
  virtual ~TGTextStream() = default;

  /// The next character, or #0 at the end.
  virtual char16_t GetChar();
  /// The next character in `ch`; at the end `ch` is #0 and the result false.
  virtual bool GetChar(char16_t& ch);
  /// Makes `ch` the character that is read next. One step back suffices for a reader; more stack
  /// up.
  void PutBack(char16_t ch) { FPutBack += ch; }
  /// Consumes the rest of the line with its end (CR, LF or CR LF) and returns it without the end.
  virtual TString GetLine();
  /// Nothing left and nothing put back.
  bool IsEof() { return FPutBack.empty() && FPosition == FText.size() && !Fill(); }

 protected:
  /// Shows the next character without consuming it; false at the end.
  bool Peek(char16_t& ch) {
    if (IsEof()) return false;
    ch = FPutBack.empty() ? FText[FPosition] : FPutBack.back();
    return true;
  }
  /// How many characters were consumed; those put back are not. A byte order mark is none.
  std::int64_t GetPosition() const noexcept {
    return FBefore + static_cast<std::int64_t>(FPosition) -
           static_cast<std::int64_t>(FPutBack.size());
  }

 private:
  bool Fill();

  std::unique_ptr<TStream> FStream;
  const TEncoding* FEncoding;
  std::string FBytes;
  std::u16string FText;
  std::size_t FPosition = 0;
  std::int64_t FBefore = 0;  // characters of earlier blocks
  std::u16string FPutBack;
  bool FStarted = false;
  bool FStreamEnded = false;
};

}  // namespace fzy
