// Work on a thread whose stack is too small for recursion.
#pragma once

#include <gtest/gtest.h>

#include <functional>

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
#else
#include <pthread.h>
#endif

namespace lomlisp::test {

inline constexpr size_t kSmallStack = size_t{256} * 1024;

#ifdef _WIN32

// Runs the work to its end on a thread with a stack of 256 KiB.
inline void OnSmallStack(const std::function<void()>& work) {
  const auto run = [](void* argument) -> DWORD {
    (*static_cast<const std::function<void()>*>(argument))();
    return 0;
  };
  HANDLE const thread = CreateThread(nullptr, kSmallStack, run, const_cast<std::function<void()>*>(&work),
                                     STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
  ASSERT_NE(thread, nullptr);
  EXPECT_EQ(WaitForSingleObject(thread, INFINITE), DWORD{WAIT_OBJECT_0});
  CloseHandle(thread);
}

#else

// Runs the work to its end on a thread with a stack of 256 KiB.
inline void OnSmallStack(const std::function<void()>& work) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, kSmallStack), 0);
  const auto run = [](void* argument) -> void* {
    (*static_cast<const std::function<void()>*>(argument))();
    return nullptr;
  };
  pthread_t thread{};
  ASSERT_EQ(pthread_create(&thread, &attributes, run, const_cast<std::function<void()>*>(&work)), 0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
  ASSERT_EQ(pthread_attr_destroy(&attributes), 0);
}

#endif

}  // namespace lomlisp::test
