// The VISA sessions of this process, by handle.
#pragma once

#include <memory>

#include "platform/visa.h"
#include "runtime/visa/session.h"

namespace runtime {

/// Returns zero when no handle is available.
ViSession AddSession(std::shared_ptr<Session> session);

/// Returns null when the handle is unknown. The session exists while the caller holds the pointer, even after a close.
std::shared_ptr<Session> FindSession(ViSession handle);

/// Returns the session as FindSession and invalidates the handle.
std::shared_ptr<Session> RemoveSession(ViSession handle);

} // namespace runtime
