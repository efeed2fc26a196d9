// Counts the allocations of each thread in a program that links it.
#pragma once

#include <cstddef>

namespace system_tests {

std::size_t AllocationsOfThisThread();

} // namespace system_tests
