#include "fuzzylogic/interfaces/UniqueID.h"

#include <atomic>

namespace fzy {

int GetUniqueID() noexcept {
  static std::atomic<int> counter{0};
  return ++counter;
}

}  // namespace fzy
