#pragma once

#include <atomic>

#include "fuzzylogic/interfaces/IFuzzyVariable.h"

// Sets and variables that know how many of their class live, and what their counts must be.

namespace fzy::test {

template <class Base>
class TTallied : public Base {
 public:
  std::int32_t AddRef() noexcept override {
    const int expected = Count.fetch_add(1, Relaxed) + 1;
    return Check(Base::AddRef(), expected);
  }
  std::int32_t Release() noexcept override {
    const int expected = Count.fetch_sub(1, Relaxed) - 1;
    return Check(Base::Release(), expected);
  }

  // Relaxed, so that they hide no race from the thread sanitizer.
  static constexpr auto Relaxed = std::memory_order_relaxed;
  std::atomic<int> Count{0};
  static inline std::atomic<int> Live{0};
  static inline std::atomic<bool> Miscounted{false};  ///< of no meaning when threads race

 protected:
  TTallied() { Live.fetch_add(1, Relaxed); }
  ~TTallied() override { Live.fetch_sub(1, Relaxed); }

 private:
  static std::int32_t Check(std::int32_t count, int expected) noexcept {
    if (count != expected) Miscounted.store(true, Relaxed);
    return count;
  }
};

class TTalliedSet final : public TTallied<TIFuzzySet> {
 public:
  static TIFuzzySetClass Class() {
    static constexpr TIFuzzySetDescriptor descriptor{
        {"TTalliedSet", []() -> TFuzzySet* { return new TTalliedSet; }}};
    return &descriptor;
  }
  TIFuzzySetClass GetClass() const override { return Class(); }
};

class TTalliedVariable final : public TTallied<TIFuzzyVariable> {
 public:
  TTalliedVariable() { FFuzzySetClass = TTalliedSet::Class(); }
  static TIFuzzyVariableClass Class() {
    static constexpr TIFuzzyVariableDescriptor descriptor{
        "TTalliedVariable", []() -> TIFuzzyVariable* { return new TTalliedVariable; }};
    return &descriptor;
  }
  TIFuzzyVariableClass GetClass() const override { return Class(); }
};

/// Sets and variables that live, together.
inline int Living() { return TTalliedSet::Live + TTalliedVariable::Live; }

}  // namespace fzy::test
