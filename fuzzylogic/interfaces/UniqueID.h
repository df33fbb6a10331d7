#pragma once

namespace fzy {

/// The next number of one counter for the whole process; the first call gives 1. Any thread may
/// call.
int GetUniqueID() noexcept;

}  // namespace fzy
