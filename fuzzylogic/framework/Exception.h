#pragma once

#include <exception>
#include <string>

#include "fuzzylogic/framework/Text.h"

namespace fzy {

/// Root of every exception that the library raises: a message in Unicode; `what()` gives it as
/// UTF-8.
class EException : public std::exception {
 public:
  explicit EException(TString message) : FMessage(std::move(message)), FUtf8(FMessage.Utf8()) {}

  const TString& GetMessage() const noexcept { return FMessage; }
  const char* what() const noexcept override { return FUtf8.c_str(); }

 private:
  TString FMessage;
  std::string FUtf8;
};

/// An object was asked to take over the content of another of a kind that it does not know.
class EConvertError : public EException {
 public:
  using EException::EException;
};

/// An index outside a list.
class EListError : public EException {
 public:
  using EException::EException;
};

/// An argument outside the values that it may have.
class EArgumentOutOfRangeException : public EException {
 public:
  using EException::EException;
};

/// A stream or a file that cannot be read or written.
class EStreamError : public EException {
 public:
  using EException::EException;
};

/// An object does not offer the interface that it was asked for.
class EIntfCastError : public EException {
 public:
  using EException::EException;
};

}  // namespace fzy
