#pragma once

#include <cstdint>
#include <initializer_list>
#include <type_traits>

namespace fzy {

/// A set of the values of one enumeration, as bits. Holds values of ordinal 0 to 31.
template <class Enum>
class TEnumSet {
 public:
  constexpr TEnumSet() = default;
  constexpr TEnumSet(std::initializer_list<Enum> values) {
    for (const Enum value : values) FBits |= Bit(value);
  }

  constexpr bool Contains(Enum value) const { return (FBits & Bit(value)) != 0; }
  constexpr bool IsEmpty() const { return FBits == 0; }
  constexpr void Include(Enum value) { FBits |= Bit(value); }
  constexpr void Exclude(Enum value) { FBits &= ~Bit(value); }

  friend constexpr bool operator==(TEnumSet, TEnumSet) = default;

 private:
  static constexpr std::uint32_t Bit(Enum value) {
    return std::uint32_t{1} << static_cast<std::underlying_type_t<Enum>>(value);
  }

  std::uint32_t FBits = 0;
};

}  // namespace fzy
