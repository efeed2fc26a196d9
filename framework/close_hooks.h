// What is to run when a session is closed, before its object goes. Process-wide.
#pragma once

#include <functional>

#include "platform/vi_types.h"

namespace nrt2 {

using CloseHook = std::function<void(ViSession)>;

/// Each part of the driver that keeps something per session adds one; there is room for 16 (std::length_error beyond).
void AddCloseHook(CloseHook hook);

/// Calls every hook in the order of their addition. An empty one throws std::bad_function_call, which is fatal to the
/// close: deliberate.
void RunCloseHooks(ViSession vi);

} // namespace nrt2
