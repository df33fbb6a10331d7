#include "fuzzylogic/interfaces/KeyComparer.h"

#include <bit>
#include <cstring>
#include <random>

namespace fzy {
namespace {

/// The state of the hash and its one round.
struct TSipState {
  std::uint64_t V0, V1, V2, V3;

  void Round() noexcept {
    V0 += V1;
    V1 = std::rotl(V1, 13) ^ V0;
    V0 = std::rotl(V0, 32);
    V2 += V3;
    V3 = std::rotl(V3, 16) ^ V2;
    V0 += V3;
    V3 = std::rotl(V3, 21) ^ V0;
    V2 += V1;
    V1 = std::rotl(V1, 17) ^ V2;
    V2 = std::rotl(V2, 32);
  }
  void Take(std::uint64_t word) noexcept {
    V3 ^= word;
    Round();
    V0 ^= word;
  }
};

}  // namespace

std::uint64_t HashText(std::u16string_view text, const THashSeed& seed) noexcept {
  TSipState state{seed[0] ^ 0x736F6D6570736575U, seed[1] ^ 0x646F72616E646F6DU,
                  seed[0] ^ 0x6C7967656E657261U, seed[1] ^ 0x7465646279746573U};
  constexpr std::size_t unitsOfWord = 4;
  std::size_t at = 0;
  for (; at + unitsOfWord <= text.size(); at += unitsOfWord) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + at, sizeof word);
    state.Take(word);
  }
  std::uint64_t last = (2 * text.size()) << 56;  // the number of bytes, and what is left of them
  for (int shift = 0; at < text.size(); shift += 16, ++at)
    last |= static_cast<std::uint64_t>(text[at]) << shift;
  state.Take(last);
  state.V2 ^= 0xFF;
  for (int i = 0; i < 3; ++i) state.Round();
  return state.V0 ^ state.V1 ^ state.V2 ^ state.V3;
}

THashSeed RandomHashSeed() {
  std::random_device source;
  const auto word = [&] { return (std::uint64_t{source()} << 32) | source(); };
  return {word(), word()};
}

}  // namespace fzy
