#pragma once

#include "fuzzylogic/common/KelException.h"
#include "fuzzylogic/vocabulary/FuzzyTypes.h"

namespace fzy {

/// Every error of sets, collections and components.
class EFzyException : public EKelException {
 public:
  using EKelException::EKelException;
};

/// An error of the definition language.
class EFzyParseException : public EFzyException {
 public:
  explicit EFzyParseException(TString message, int lineNumber = 0)
      : EFzyException(std::move(message)), FLineNumber(lineNumber) {}
  EFzyParseException(const TString& format, std::initializer_list<TFormatArg> args,
                     int lineNumber = 0)
      : EFzyException(format, args), FLineNumber(lineNumber) {}

  /// The line of the definition text at which the error was found; 0 when it has no position.
  int GetLineNumber() const noexcept { return FLineNumber; }

 private:
  std::int32_t FLineNumber;
};

/// @throws EFzyException (`SFzyNotANumber`) when `value` is not a number; `operation` names the
/// call
void RequireNumber(TFzyFloat value, const char* operation);
/// @throws EFzyException (`SFzyNotFinite`) when `value` is infinite or not a number
void RequireFinite(TFzyFloat value, const char* operation);
/// @throws EFzyException (`SFzyInvalidArgument`) when `count` is above `most`
void RequireAtMost(int most, int count, const char* operation);
/// @throws EFzyException with the list-index message
[[noreturn]] void RaiseFuzzyIndex(int index);

}  // namespace fzy
