#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string_view>

#include "fuzzylogic/framework/Text.h"

namespace fzy {

/// What a hash depends on besides the key. All zero for a table that nobody attacks, so that hashes
/// are the same in every run.
using THashSeed = std::array<std::uint64_t, 2>;

/// SipHash-1-3 of the UTF-16 units, after J.-P. Aumasson and D. J. Bernstein, "SipHash: a fast
/// short-input PRF" (INDOCRYPT 2012), with one round a word and three at the end: without the seed
/// nobody can find keys that collide.
std::uint64_t HashText(std::u16string_view text, const THashSeed& seed) noexcept;

/// A seed that cannot be foreseen.
THashSeed RandomHashSeed();

/// How a keyed table compares keys: equal keys have equal hash codes. A table may share it with
/// others.
template <class TKey>
class TKeyComparer {
 public:
  virtual ~TKeyComparer() = default;
  virtual bool Equals(const TKey& left, const TKey& right) const { return left == right; }
  /// A comparer that passes over the seed leaves its tables open to keys that were made to collide.
  virtual std::int32_t GetHashCode(const TKey& key, const THashSeed& seed) const {
    // The standard hash of a number is often the number; each of its bits must reach the lowest.
    std::uint64_t hash = (std::hash<TKey>()(key) ^ seed[0]) * 0x9E3779B97F4A7C15U;
    hash = (hash ^ hash >> 32 ^ seed[1]) * 0x9E3779B97F4A7C15U;
    return static_cast<std::int32_t>(hash >> 32);
  }
};

/// Texts are compared by code unit, case-sensitively.
template <>
class TKeyComparer<TString> {
 public:
  virtual ~TKeyComparer() = default;
  virtual bool Equals(const TString& left, const TString& right) const { return left == right; }
  virtual std::int32_t GetHashCode(const TString& key, const THashSeed& seed) const {
    return static_cast<std::int32_t>(HashText(key, seed));
  }
};

}  // namespace fzy
