// In a file of its own: when they are inlined, GCC reports the functions below as mismatched.
#include "tests/system/counted_allocations.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t allocations = 0;

} // namespace

// NOLINTBEGIN(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory): these are the allocation functions
void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
// NOLINTEND(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)

namespace system_tests {

std::size_t AllocationsOfThisThread() { return allocations; }

} // namespace system_tests
