// Allocation functions that count and that fail on request. They replace those of the whole process; allocations of
// other threads and of the doubles are neither counted nor failed.
#pragma once

#include <cstddef>

namespace hostile {

/// Stands around a call of the driver: only what is allocated meanwhile, and not by the doubles, is the driver's.
class DriverCall {
  public:
    DriverCall();
    DriverCall(const DriverCall&) = delete;
    DriverCall& operator=(const DriverCall&) = delete;
    ~DriverCall();
};

/// Allocations made by the driver on this thread since the last call of this function.
std::size_t TakeAllocationCount();

/// The `nth` allocation of the driver on this thread from now on fails; 0: none does.
void FailAllocation(std::size_t nth);

/// Whether an ordered failure is still to come.
bool AllocationFailurePending();

/// Blocks that are allocated now, by all threads and the doubles too.
std::size_t LiveBlocks();

} // namespace hostile
