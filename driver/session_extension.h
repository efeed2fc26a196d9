#pragma once

#include "driver/session_interface.h"

namespace tarnex {

/// The functions behind the SessionExtension of every session.
extern const SessionFunctions kSessionFunctions;

} // namespace tarnex
