// Allocation functions that count and that fail on request. They replace those of the whole process; allocations of
// other threads and of the doubles are neither counted nor failed.
#pragma once

#include <cstddef>

namespace hostile {

/// Marks this thread as inside a call of the driver while the object exists. Allocations made then, except those of
/// the doubles, are the driver's.
class DriverCall {
  public:
    DriverCall();
    DriverCall(const DriverCall&) = delete;
    DriverCall& operator=(const DriverCall&) = delete;
    ~DriverCall();
};

/// Allocations made by the driver on this thread since the last call of this function.
std::size_t TakeAllocationCount();

/// Makes the `nth` allocation of the driver on this thread from now on fail; 0: none.
void FailAllocation(std::size_t nth);

/// Returns whether a failure that was ordered has not happened yet.
bool AllocationFailurePending();

/// Blocks that are allocated now, by all threads and the doubles too.
std::size_t LiveBlocks();

} // namespace hostile
