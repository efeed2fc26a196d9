// A program that links this in counts what each of its threads takes from the heap.
#pragma once

#include <cstddef>

namespace system_tests {

std::size_t AllocationsOfThisThread();

} // namespace system_tests
