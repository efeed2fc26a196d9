// Chains of platform calls.
#pragma once

#include "platform/vi_types.h"

namespace vi {

/// Runs the steps in order until one returns a negative status; returns the status of the last step that ran.
template <typename... Steps>
ViStatus RunUntilError(const Steps&... steps) {
    ViStatus status = VI_SUCCESS;
    static_cast<void>(((status = steps(), status >= 0) && ...));
    return status;
}

} // namespace vi
