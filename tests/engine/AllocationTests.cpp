#include <cstdlib>
#include <new>

#include <gtest/gtest.h>

#include "tests/engine/Sets.h"

// What is asked of sets a thousand times a second must not allocate.

namespace {
std::size_t Allocations = 0;
}

void* operator new(std::size_t size) {
  ++Allocations;
  if (void* memory = std::malloc(size ? size : 1)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

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
