#pragma once

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>

namespace fzy::test {

/// Random inputs of a property test. The same on every machine and in every run, unless the
/// environment variable FUZZYLOGIC_SEED names another seed; put `Trace()` into a SCOPED_TRACE so
/// that a failure tells which. (The standard distributions differ between libraries, so none of
/// them is used.)
class TRandom {
 public:
  TRandom() : FSeed(ReadSeed()), FEngine(FSeed) {}

  std::string Trace() const { return "FUZZYLOGIC_SEED=" + std::to_string(FSeed); }

  std::uint64_t Bits() { return FEngine(); }
  /// From 0 up to but not including `limit`.
  int Below(int limit) { return static_cast<int>(Bits() % static_cast<std::uint64_t>(limit)); }
  bool OneIn(int count) { return Below(count) == 0; }
  /// From 0 up to but not including 1.
  double Unit() { return static_cast<double>(Bits() >> 11) * 0x1p-53; }

 private:
  static std::uint64_t ReadSeed() {
    const char* seed = std::getenv("FUZZYLOGIC_SEED");
    return seed ? std::strtoull(seed, nullptr, 0) : 20'240'229;
  }

  std::uint64_t FSeed;
  std::mt19937_64 FEngine;
};

}  // namespace fzy::test
