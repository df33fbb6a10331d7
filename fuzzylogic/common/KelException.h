#pragma once

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/Format.h"

namespace fzy {

/// Base of the exceptions of the library's own subjects. Made with a message, or with a format and
/// its arguments as one list (see `FormatText`).
class EKelException : public EException {
 public:
  using EException::EException;
  EKelException(const TString& format, std::initializer_list<TFormatArg> args)
      : EException(FormatText(format, args)) {}
};

/// A removal from an empty table.
class EGHashtableError : public EKelException {
 public:
  using EKelException::EKelException;
};

}  // namespace fzy
