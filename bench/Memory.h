#pragma once

#include <cstddef>
#include <ctime>
#include <new>

#include "bench/Support.h"

// Counts all memory of a program, and measures passes over a text in time and memory. Included once
// in a program.

namespace fzy::bench {

inline std::size_t InUse = 0;
inline std::size_t Peak = 0;

inline constexpr std::size_t SizePrefix = alignof(std::max_align_t);  // holds the size of a block

}  // namespace fzy::bench

// Not inlined, because the compiler would hold a block's new against the `free` of its delete.
[[gnu::noinline]] void* operator new(std::size_t size) {
  using namespace fzy::bench;
  auto* block = static_cast<char*>(std::malloc(size + SizePrefix));
  if (!block) throw std::bad_alloc();
  *reinterpret_cast<std::size_t*>(block) = size;
  InUse += size;
  Peak = std::max(Peak, InUse);
  return block + SizePrefix;
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
  using namespace fzy::bench;
  if (!memory) return;
  char* block = static_cast<char*>(memory) - SizePrefix;
  InUse -= *reinterpret_cast<std::size_t*>(block);
  std::free(block);
}

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }

namespace fzy::bench {

/// Measures by processor time, because a large text takes long enough that a busy machine
/// interrupts.
class TTextTimer {
 public:
  template <class Run>
  void operator()(Run&& run) {
    Peak = InUse;
    const std::clock_t start = std::clock();
    run();
    Nanoseconds = static_cast<double>(std::clock() - start) * (1e9 / CLOCKS_PER_SEC);
    Best = std::min(Best, Nanoseconds);
    Beyond = static_cast<double>(Peak - InUse);
  }

  double Nanoseconds = 0;
  double Best = std::numeric_limits<double>::infinity();
  double Beyond = 0;  // the peak of memory beyond what stays
};

/// Times two passes over a text in turn. Each is called with a timer, to which it hands the part of
/// its work that counts.
template <class Ours, class Floor>
void CompareText(benchmark::State& state, double bytes, Ours ours, Floor floor) {
  TTextTimer timer;
  TTextTimer floorTimer;
  for (auto _ : state) {
    ours(timer);
    floor(floorTimer);
    state.SetIterationTime(timer.Nanoseconds * 1e-9);
  }
  state.counters["MB_per_s"] = bytes / timer.Best * 1e3;
  state.counters["floor_MB_per_s"] = bytes / floorTimer.Best * 1e3;
  state.counters["memory_per_byte"] = timer.Beyond / bytes;
}

}  // namespace fzy::bench
