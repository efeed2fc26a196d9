// Functions that run when a session is closed, before its object is destroyed. Process-wide.
#pragma once

#include <functional>

#include "platform/vi_types.h"

namespace nrt2 {

using CloseHook = std::function<void(ViSession)>;

/// Adds a hook. Throws std::length_error when there are 16 already. Thread-safe.
void AddCloseHook(CloseHook hook);

/// Calls every hook in the order of addition.
/// Required: an empty hook throws std::bad_function_call, which ends the close.
void RunCloseHooks(ViSession vi);

} // namespace nrt2
