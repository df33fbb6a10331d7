#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "fuzzylogic/FuzzyLogic.h"

namespace support {

/// A fault in what the user gave, told as "file:line: message" on one line ("file: message" where
/// no line is to blame).
class InputError : public std::runtime_error {
 public:
  InputError(const std::string& file, int line, std::string_view message);
  /// A fault that a parser noted: "file:line:column: message", and where there is advice a second
  /// line "file:line:column: advice: ...".
  InputError(const std::string& file, const fzy::TReadingFault& fault, std::string_view message);
};

/// "file:line:column: kind: text" on one line.
std::string Located(const std::string& file, const fzy::TTextPlace& place, std::string_view kind,
                    const fzy::TString& text);

/// The whole file.
/// @throws InputError when it cannot be read
std::string ReadFile(const std::string& file);

/// Writes the whole file or nothing: under a temporary name first, which then takes the place of
/// what was there.
/// @throws InputError when it cannot be written
void WriteFile(const std::string& file, std::string_view content);

}  // namespace support
