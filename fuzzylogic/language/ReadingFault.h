#pragma once

#include <cstdint>
#include <functional>

#include "fuzzylogic/framework/Text.h"

namespace fzy {

class TObject;

/// A place in a definition text.
struct TTextPlace {
  int Line = 0;      ///< from 1; 0 where there was no text
  int Column = 0;    ///< from 1, in UTF-16 units; 0 likewise
  TString Variable;  ///< the name of the variable that is under way there, or nothing
  TString Term;      ///< the name of the term that is, or nothing
  TString Word;      ///< what stands there, without quotes and escapes; nothing at the text's end
};

/// Where a reading failed, and what may help.
struct TReadingFault {
  TTextPlace Place;
  TString Advice;  ///< a sentence without a full stop, or nothing
};

/// What is read silently though it was hardly meant.
enum class TReadingWarningKind : std::uint8_t {
  rwEmptyRange,       ///< (range 100 0): the least value is not below the greatest
  rwLateRange,        ///< a range behind terms, which were read within another one
  rwArgumentOrder,    ///< (tri 80 50 20): the numbers of a shape do not ascend
  rwMovedPoint,       ///< an x outside the range was moved into it
  rwMissingOperator,  ///< cold hot: nothing joins two operands, and the last one wins
  rwLongName,         ///< (term too hot (s 0 5)): the first of two words is the name
  rwAutoTerms         ///< automatic terms span 0 to 1, because the text sets no range
};
using enum TReadingWarningKind;

/// A warning: the text was read all the same, and nothing in it was read otherwise.
struct TReadingWarning {
  TReadingWarningKind Kind;
  TTextPlace Place;
  TString Message;
  TString Advice;  ///< a sentence without a full stop
};

/// Fired when a warning is found; `sender` is the parser.
using TReadingWarningEvent = std::function<void(TObject* sender, const TReadingWarning& warning)>;

}  // namespace fzy
