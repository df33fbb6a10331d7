#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "tests/engine/Sets.h"

// What is asked of sets a thousand times a second must not allocate.

namespace {
std::size_t Allocations = 0;
}

// Not inlined: the compiler would take the pairs of malloc and free apart and find them mismatched.
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  ++Allocations;
  return std::malloc(size ? size : 1);
}
[[gnu::noinline]] void* operator new(std::size_t size) {
  if (void* memory = operator new(size, std::nothrow)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

namespace fzy::test {
namespace {

TEST(Allocation, AskingASetAllocatesNothing) {
  TRandom random;
  SCOPED_TRACE(random.Trace());
  for (int round = 0; round < 200; ++round) {
    const TOwned<TFuzzySet> a(TFuzzySet::Create());
    const TOwned<TFuzzySet> b(TFuzzySet::Create());
    FillRandomly(*a, random);
    FillRandomly(*b, random);
    const double x = RandomX(random);
    const std::size_t before = Allocations;
    double sum = a->GetCorrelationStrength(b.Get()) + a->DegreeOfMembership(x);
    sum += a->CenterOfGravity() + a->MeanOfMaxima() + a->GetCompatibilityIndex();
    sum += a->Intersects(b.Get()) ? 1 : 0;
    EXPECT_EQ(Allocations, before) << sum;
  }
  EXPECT_GT(Allocations, 0U);
}

}  // namespace
}  // namespace fzy::test
