// The frames of the exported functions: how a handle becomes a session object, and who holds its lock.
//
// `Session` is the driver's class derived from nrt2::DriverSession. The session service keeps a DriverSession pointer
// per handle; the driver keeps no table of its own. Exceptions pass through every frame, locks released.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <utility>

#include "framework/close_hooks.h"
#include "framework/driver_session.h"
#include "platform/session_service.h"
#include "text/characters.h"

namespace nrt2 {

/// Holds the session's lock; where taking it failed, `Status()` is negative and nothing is given back.
class SessionLock {
  public:
    explicit SessionLock(ViSession vi) : vi_(vi), status_(IviSession_Lock(vi, nullptr)) {}
    SessionLock(const SessionLock&) = delete;
    SessionLock& operator=(const SessionLock&) = delete;
    ~SessionLock() {
        if (status_ >= 0) {
            IviSession_Unlock(vi_, nullptr);
        }
    }
    [[nodiscard]] ViStatus Status() const { return status_; }

  private:
    ViSession vi_;
    ViStatus status_;
};

template <typename Session>
ViStatus GetSession(ViSession vi, Session*& session) {
    ViAddr address = nullptr;
    const auto status = IviSession_GetDataPtr(vi, &address);
    session = static_cast<Session*>(static_cast<DriverSession*>(address));
    return status;
}

/// Runs `body(session)` under the session's lock and returns its status. An unknown handle, and one without an object,
/// end in IVI_ERROR_INVALID_SESSION_HANDLE, unrecorded: there is nothing to record it on.
template <typename Session, typename Body>
ViStatus LockedCall(ViSession vi, const Body& body) {
    Session* session = nullptr;
    if (GetSession(vi, session) < 0) {
        return IVI_ERROR_INVALID_SESSION_HANDLE;
    }
    const SessionLock lock(vi);
    if (lock.Status() < 0) {
        return lock.Status();
    }
    // Read again: a close on another thread may have come first.
    const auto status = GetSession(vi, session);
    if (status < 0) {
        return status;
    }
    return session == nullptr ? IVI_ERROR_INVALID_SESSION_HANDLE : body(*session);
}

/// What the latest call of an initialization function asked for. Process-wide on purpose: a second session's
/// initialization overwrites it.
struct InitializationRequests {
    std::atomic<bool> idQuery{false};
    std::atomic<bool> reset{false};
};
inline InitializationRequests initializationRequests;

/// Issues a handle, binds a new session to it and initializes it. No lock is taken: nobody else knows the handle yet.
/// When a step fails or throws, the object is destroyed and `*newVi` is 0; the service's handle deliberately stays
/// behind as it is, with whatever was recorded on it, its data pointer included: nobody was ever told that handle.
template <typename Session>
ViStatus CreateSession(ViConstString resourceName, ViBoolean idQuery, ViBoolean reset, ViConstString optionString,
                       ViSession* newVi) {
    const bool wantsIdQuery = idQuery == VI_TRUE;
    const bool wantsReset = reset == VI_TRUE;
    initializationRequests.idQuery = wantsIdQuery;
    initializationRequests.reset = wantsReset;
    if (newVi == nullptr) {
        return IVI_ERROR_NULL_POINTER;
    }
    *newVi = VI_NULL;
    ViSession vi = VI_NULL;
    auto status = IviSession_New(&vi);
    if (status < 0) {
        return status;
    }
    auto session = std::make_unique<Session>(vi);
    status = IviSession_SetDataPtr(vi, static_cast<DriverSession*>(session.get()));
    if (status >= 0) {
        status = session->Initialize(std::string(text::ViewOf(resourceName)), wantsIdQuery, wantsReset,
                                     std::string(text::ViewOf(optionString)));
    }
    if (status < 0) {
        return status;
    }
    Session* bound = nullptr;
    status = GetSession(vi, bound);
    if (status >= 0 && bound != nullptr && reset != VI_FALSE) {
        bound->ResetInstrument(); // a failure does not undo the initialization
    }
    static_cast<void>(session.release()); // the handle owns it now, until CloseSession
    *newVi = vi;
    return status;
}

/// Runs the close hooks, disconnects, destroys the object and gives the handle back. Takes no lock: a caller must not
/// close a session that another thread still uses.
template <typename Session>
ViStatus CloseSession(ViSession vi) {
    Session* session = nullptr;
    if (GetSession(vi, session) < 0) {
        return IVI_ERROR_INVALID_SESSION_HANDLE;
    }
    RunCloseHooks(vi);
    auto status = GetSession(vi, session);
    if (status < 0 || session == nullptr) {
        return status;
    }
    try {
        const std::unique_ptr<Session> owned(session);
        owned->Close(); // its status is of no use to a caller who cannot close again
    } catch (...) {
        IviSession_SetDataPtr(vi, nullptr); // the object is gone, the handle is not
        throw;
    }
    status = IviSession_Dispose(vi);
    if (status < 0) {
        IviSession_SetDataPtr(vi, nullptr); // the handle lives on: a second close must find no object
    }
    return status;
}

} // namespace nrt2
