#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "fuzzylogic/framework/Message.h"
#include "fuzzylogic/framework/Stream.h"
#include "fuzzylogic/framework/Text.h"

// How values stand in the text of a form, and how that is cut into lines.

namespace fzy::detail {

/// How deep objects may stand in objects, so that a hostile form does not use up the stack where a
/// class has items of its own kind. The library's own go six deep.
inline constexpr int DeepestForm = 200;

/// What ends a line of a list of texts unless the form says otherwise.
inline constexpr const char16_t* UsualLineEnd = u"\n";

/// Appends the shortest decimal that reads back to the same bits.
void AppendNumber(std::string& out, double value);
void AppendNumber(std::string& out, std::int64_t value);

/// Appends a text in quotes: UTF-8, with \" \\ \n \r \t, and \uXXXX for other controls and for
/// surrogates without a partner. A text of several lines is broken behind each line feed into
/// pieces that a plus sign joins; those from the second on stand in lines of their own, `indent`
/// blanks in.
void AppendText(std::string& out, std::u16string_view text, std::size_t indent);

/// Reads a number that is the whole of `word`; nothing when it is none or does not fit.
std::optional<double> ReadNumber(std::string_view word);
std::optional<std::int64_t> ReadWhole(std::string_view word);

/// Reads one quoted piece at the start of `rest`, which is moved behind it, and appends its text.
/// The result is the fault, or nothing: an unknown escape, a control character, bytes that are not
/// UTF-8, a missing end.
const TMessage* ReadPiece(std::string_view& rest, std::u16string& text);

/// Takes `word` off the start of `rest`, with the blanks behind it, if it stands there.
bool Take(std::string_view& rest, std::string_view word) noexcept;
/// Takes a name (letters, digits, underscores) off the start, with the blanks behind it; empty when
/// there is none.
std::string_view TakeName(std::string_view& rest) noexcept;

/// Cuts a stream into lines, without the blanks at both ends; empty ones are passed over. Holds one
/// line, however long.
class TFormLines {
 public:
  explicit TFormLines(TStream& stream) noexcept : FStream(stream) {}

  /// Goes on to the next line; false at the end.
  bool Next();
  /// The line; valid until the next one.
  std::string_view GetLine() const noexcept { return FLine; }
  /// Its number, from 1; at the end that of the last one.
  int GetNumber() const noexcept { return FNumber; }

 private:
  bool Fill();

  TStream& FStream;
  std::string FBuffer;
  std::size_t FPosition = 0;
  std::string_view FLine;
  int FNumber = 0;
  bool FIsEnded = false;
};

}  // namespace fzy::detail
