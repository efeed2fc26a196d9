#include "tests/hostile/allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "tests/doubles/script.h"

namespace {

std::atomic<std::size_t> liveBlocks{0};
thread_local bool inDriver = false;
thread_local std::size_t counted = 0;
thread_local std::size_t callsToFailure = 0;

// NOLINTBEGIN(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory): these are the allocation functions
void* Allocate(std::size_t size) {
    if (inDriver && !doubles::InsideDouble::Now()) {
        ++counted;
        if (callsToFailure != 0 && --callsToFailure == 0) {
            throw std::bad_alloc();
        }
    }
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    liveBlocks.fetch_add(1, std::memory_order_relaxed);
    return memory;
}

void Free(void* memory) noexcept {
    if (memory != nullptr) {
        liveBlocks.fetch_sub(1, std::memory_order_relaxed);
        std::free(memory);
    }
}

// NOLINTEND(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)

} // namespace

// Array and nothrow forms end here by default; nothing in the driver is aligned beyond the default.
void* operator new(std::size_t size) { return Allocate(size); }
void operator delete(void* memory) noexcept { Free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { Free(memory); }

namespace hostile {

DriverCall::DriverCall() { inDriver = true; }
DriverCall::~DriverCall() { inDriver = false; }

std::size_t TakeAllocationCount() {
    const auto count = counted;
    counted = 0;
    return count;
}

void FailAllocation(std::size_t nth) { callsToFailure = nth; }

bool AllocationFailurePending() { return callsToFailure != 0; }

std::size_t LiveBlocks() { return liveBlocks.load(std::memory_order_relaxed); }

} // namespace hostile
