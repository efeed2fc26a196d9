// The frames of the exported functions: from a handle to its session object, under the session's lock.
//
// The session service keeps a DriverSession pointer per handle; the driver keeps no table of its own. Exceptions pass
// through every frame after its lock has been released.
#pragma once

#include <atomic>
#include <memory>

#include "framework/driver_session.h"
#include "framework/session_lock.h"
#include "platform/session_service.h"

namespace nrt2 {

/// Reads the object of a handle. Returns the session service's status; `session` is null when nothing is bound.
inline ViStatus GetSession(ViSession vi, DriverSession*& session) {
    ViAddr address = nullptr;
    const auto status = IviSession_GetDataPtr(vi, &address);
    session = address == nullptr ? nullptr : static_cast<SessionAnchor*>(address)->session;
    return status;
}

/// Runs `body(session)` under the session's lock and returns its status.
/// An unknown handle, and one without an object, return IVI_ERROR_INVALID_SESSION_HANDLE. It is not recorded, because
/// there is no record to write to. `Session` is the driver's class derived from DriverSession.
template <typename Session, typename Body>
ViStatus LockedCall(ViSession vi, const Body& body) {
    ViAddr address = nullptr;
    if (IviSession_GetDataPtr(vi, &address) < 0) {
        return IVI_ERROR_INVALID_SESSION_HANDLE;
    }
    const SessionLock lock(vi);
    if (lock.Status() < 0) {
        return lock.Status();
    }
    // Read under the lock: another thread may have closed the session while this one waited for the lock.
    DriverSession* session = nullptr;
    const auto status = GetSession(vi, session);
    if (status < 0) {
        return status;
    }
    return session == nullptr ? IVI_ERROR_INVALID_SESSION_HANDLE : body(static_cast<Session&>(*session));
}

/// The arguments of the latest call of an initialization function.
/// Required: process-wide; the initialization of a second session overwrites them.
struct InitializationRequests {
    std::atomic<bool> idQuery{false};
    std::atomic<bool> reset{false};
};
inline InitializationRequests initializationRequests;

/// Makes the driver's session object for a new handle.
using SessionFactory = std::unique_ptr<DriverSession> (*)(ViSession vi);

/// Creates a handle, binds a new session to it and initializes the session. Takes no lock: no other thread has the
/// handle yet. Null texts count as empty. On failure the object is destroyed and `*newVi` is 0. Required: a failed
/// creation does not dispose of the service's handle, which keeps its record and its data pointer.
ViStatus CreateSession(SessionFactory make, ViConstString resourceName, ViBoolean idQuery, ViBoolean reset,
                       ViConstString optionString, ViSession* newVi);

/// Runs the close hooks, disconnects, destroys the object and disposes of the handle.
/// Takes no lock: the caller must ensure that no other thread uses the session.
ViStatus CloseSession(ViSession vi);

} // namespace nrt2
