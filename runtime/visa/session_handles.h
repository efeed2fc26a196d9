// The VISA sessions of this process, by handle.
#pragma once

#include <memory>

#include "platform/visa.h"
#include "runtime/visa/session.h"

namespace runtime {

/// Zero when no handle is left.
ViSession AddSession(std::shared_ptr<Session> session);

/// Null when the handle is unknown. The session stays alive while the caller holds it, also when it is closed.
std::shared_ptr<Session> FindSession(ViSession handle);

/// The same, and the handle is unknown from now on.
std::shared_ptr<Session> RemoveSession(ViSession handle);

} // namespace runtime
