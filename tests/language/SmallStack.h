#pragma once

#include <functional>

#include <gtest/gtest.h>
#include <pthread.h>

namespace fzy::test {

/// Runs an action on a thread whose stack is too small for anything that recurses with its input.
inline void OnSmallStack(const std::function<void()>& action) {
  constexpr std::size_t stackSize = 256 * 1024;
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, stackSize), 0);
  const auto run = [](void* argument) -> void* {
    (*static_cast<const std::function<void()>*>(argument))();
    return nullptr;
  };
  pthread_t thread{};
  ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&action)),
            0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

}  // namespace fzy::test
