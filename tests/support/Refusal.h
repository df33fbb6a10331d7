#pragma once

#include <string>

#include "fuzzylogic/framework/Exception.h"

namespace fzy::test {

/// The message with which the library refuses something; empty when it does not.
template <class Operation>
std::string MessageOf(Operation operation) {
  try {
    operation();
    return "";
  } catch (const EException& error) {
    return error.what();
  }
}

/// The message of an operation that is refused.
inline std::string Refusal(const std::string& operation, const std::string& reason) {
  return "Invalid operation: \"" + operation + "\".  " + reason;
}

}  // namespace fzy::test
