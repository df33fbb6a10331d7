#include "tests/memory/Memory.h"

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

// One thread allocates. Nothing here is inlined, because compilers would hold a block's `new`
// against the `free` of its `delete`.

namespace fzy::test {
namespace {

constexpr long Never = std::numeric_limits<long>::max();

long Count = 0;
long UntilFailure = Never;
bool AllAfter = false;
bool HasFailed = false;

bool Fails() noexcept {
  if (UntilFailure == Never) return false;
  if (UntilFailure > 1) return --UntilFailure, false;
  if (!AllAfter) UntilFailure = Never;
  return HasFailed = true;
}

[[gnu::noinline]] void* Allocate(std::size_t size, std::size_t alignment) noexcept {
  if (Fails()) return nullptr;
  if (size == 0) size = 1;
  const std::size_t whole = (size + alignment - 1) / alignment * alignment;
  void* block = alignment <= alignof(std::max_align_t) ? std::malloc(size)
                                                       : std::aligned_alloc(alignment, whole);
  if (block) ++Count;
  return block;
}

[[gnu::noinline]] void* Require(std::size_t size, std::size_t alignment = 1) {
  void* block = Allocate(size, alignment);
  if (!block) throw std::bad_alloc();
  return block;
}

[[gnu::noinline]] void Release(void* block) noexcept {
  if (block) --Count;
  std::free(block);
}

}  // namespace

long TMemory::Blocks() noexcept { return Count; }

void TMemory::Fail(long number, bool andAllAfter) noexcept {
  UntilFailure = number;
  AllAfter = andAllAfter;
  HasFailed = false;
}

bool TMemory::Restore() noexcept {
  UntilFailure = Never;
  return HasFailed;
}

}  // namespace fzy::test

using namespace fzy::test;
using TSize = std::size_t;
using TAlign = std::align_val_t;
using TNoThrow = const std::nothrow_t&;

// clang-format off
void* operator new(TSize size) { return Require(size); }
void* operator new[](TSize size) { return Require(size); }
void* operator new(TSize size, TAlign align) { return Require(size, TSize(align)); }
void* operator new[](TSize size, TAlign align) { return Require(size, TSize(align)); }
void* operator new(TSize size, TNoThrow) noexcept { return Allocate(size, 1); }
void* operator new[](TSize size, TNoThrow) noexcept { return Allocate(size, 1); }
void* operator new(TSize size, TAlign align, TNoThrow) noexcept { return Allocate(size, TSize(align)); }
void* operator new[](TSize size, TAlign align, TNoThrow) noexcept { return Allocate(size, TSize(align)); }
void operator delete(void* block) noexcept { Release(block); }
void operator delete[](void* block) noexcept { Release(block); }
void operator delete(void* block, TSize) noexcept { Release(block); }
void operator delete[](void* block, TSize) noexcept { Release(block); }
void operator delete(void* block, TAlign) noexcept { Release(block); }
void operator delete[](void* block, TAlign) noexcept { Release(block); }
void operator delete(void* block, TSize, TAlign) noexcept { Release(block); }
void operator delete[](void* block, TSize, TAlign) noexcept { Release(block); }
void operator delete(void* block, TNoThrow) noexcept { Release(block); }
void operator delete[](void* block, TNoThrow) noexcept { Release(block); }
void operator delete(void* block, TAlign, TNoThrow) noexcept { Release(block); }
void operator delete[](void* block, TAlign, TNoThrow) noexcept { Release(block); }
// clang-format on
