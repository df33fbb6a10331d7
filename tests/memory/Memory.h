#pragma once

namespace fzy::test {

/// The memory of this program: its allocations are counted, and can be made to fail.
class TMemory {
 public:
  /// How many blocks were allocated and not freed.
  static long Blocks() noexcept;
  /// Fails the allocation that comes `number` allocations from now (1 is the next one): that one
  /// alone, or with it all that follow.
  static void Fail(long number, bool andAllAfter) noexcept;
  /// Lets all allocations succeed again; whether one has failed meanwhile.
  static bool Restore() noexcept;
};

}  // namespace fzy::test
