// Runs a function on a thread with a stack that is too small for recursion over a long text.
#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

#include <cstddef>
#include <functional>

namespace unit {

inline constexpr std::size_t kSmallStack = 256UL * 1024;
inline constexpr std::size_t kMebibyte = 1024UL * 1024;

/// An overflow ends the whole process, which the test framework reports.
inline void RunOnSmallStack(std::function<void()> body) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, kSmallStack), 0);
    pthread_t thread{};
    const auto run = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &body), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    ASSERT_EQ(pthread_attr_destroy(&attributes), 0);
}

} // namespace unit
