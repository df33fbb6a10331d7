#pragma once

#include <exception>
#include <utility>

namespace fzy {

/// Runs several steps that must all be taken although each may throw, and lets the first exception
/// go on afterwards. A handler that throws thereby never keeps a later step from being taken; what
/// later steps throw is dropped.
class TFirstException {
 public:
  template <class Step>
  void Run(Step&& step) {
    try {
      std::forward<Step>(step)();
    } catch (...) {
      if (!FFirst) FFirst = std::current_exception();
    }
  }

  void Rethrow() const {
    if (FFirst) std::rethrow_exception(FFirst);
  }

 private:
  std::exception_ptr FFirst;
};

}  // namespace fzy
