#pragma once

#include "fuzzylogic/framework/Persistent.h"

namespace fzy {

/// Holds an update block open on a list (anything with `BeginUpdate` and `EndUpdate`) and closes it
/// once. `Close()` delivers the change and may throw what a handler throws. A block that an
/// exception cuts short is closed by the destructor with the same telling; what handlers throw then
/// is dropped.
template <class List>
class TUpdateBlock {
 public:
  explicit TUpdateBlock(List& list) : FPin(&list), FList(&list) { FList->BeginUpdate(); }
  TUpdateBlock(const TUpdateBlock&) = delete;
  TUpdateBlock& operator=(const TUpdateBlock&) = delete;
  ~TUpdateBlock() {
    try {
      Close();
    } catch (...) {  // NOLINT(bugprone-empty-catch): the first exception is under way already
    }
  }

  void Close() {
    if (List* list = std::exchange(FList, nullptr)) list->EndUpdate();
  }

 private:
  TPin FPin;
  List* FList;
};

}  // namespace fzy
