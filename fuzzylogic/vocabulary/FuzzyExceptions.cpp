#include "fuzzylogic/vocabulary/FuzzyExceptions.h"

#include <cmath>

#include "fuzzylogic/framework/Messages.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy {

void RequireNumber(TFzyFloat value, const char* operation) {
  if (std::isnan(value)) throw EFzyException(SFzyNotANumber, {TString(operation)});
}

void RequireFinite(TFzyFloat value, const char* operation) {
  RequireNumber(value, operation);
  if (std::isinf(value)) throw EFzyException(SFzyNotFinite, {TString(operation)});
}

void RequireAtMost(int most, int count, const char* operation) {
  if (count > most)
    throw EFzyException(SFzyInvalidArgument, {TString(operation), std::int64_t{count}});
}

void RaiseFuzzyIndex(int index) { throw EFzyException(SListIndexError, {std::int64_t{index}}); }

}  // namespace fzy
