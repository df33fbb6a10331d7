#pragma once

#include <cstdint>
#include <initializer_list>
#include <variant>

#include "fuzzylogic/framework/Text.h"

namespace fzy {

/// One argument of `FormatText`: a text, a whole number or a floating number.
using TFormatArg = std::variant<TString, std::int64_t, double>;

/// Replaces the placeholders of `format` by the arguments, in order: "%s" takes a text, "%d" a
/// whole number, "%.Nf" a floating number with N decimals, "%%" gives a percent sign. The arguments
/// travel as one list. A placeholder without an argument of its kind is left standing as it is, so
/// that a badly translated message never hides the error it reports.
TString FormatText(const TString& format, std::initializer_list<TFormatArg> args);

/// The number with a fixed count of decimals (at least 0, at most 99), correctly rounded, with the
/// process's decimal separator; "inf", "-inf" and "nan" for what is not finite.
TString FormatFixed(double value, int decimals);
/// The same with a separator of its own.
TString FormatFixed(double value, int decimals, char16_t separator);

/// The shortest decimal text that reads back to the same bits; the separator is always a point.
/// What is not finite is written as by `FormatFixed`.
TString FormatShortest(double value);

/// The decimal separator of texts shown to people and of names with a number in them; a point until
/// it is set. Set it before other threads use the library.
char16_t GetDecimalSeparator() noexcept;
void SetDecimalSeparator(char16_t separator) noexcept;

}  // namespace fzy
