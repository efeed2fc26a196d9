// Chains of steps that return a status.
#pragma once

#include "platform/vi_types.h"

namespace status {

/// Runs the steps in order until one returns a status for which `stops` holds. Returns the status of the last step that
/// ran.
template <typename Stops, typename... Steps>
ViStatus RunUntil([[maybe_unused]] Stops stops, const Steps&... steps) {
    ViStatus status = VI_SUCCESS;
    static_cast<void>(((status = steps(), !stops(status)) && ...));
    return status;
}

/// Stops at the first error; the positive statuses of VISA go on.
template <typename... Steps>
ViStatus RunUntilNegative(const Steps&... steps) {
    return RunUntil([](ViStatus status) { return status < 0; }, steps...);
}

/// Stops at the first status that is not 0, as the class functions do.
template <typename... Steps>
ViStatus RunUntilNonZero(const Steps&... steps) {
    return RunUntil([](ViStatus status) { return status != VI_SUCCESS; }, steps...);
}

} // namespace status
