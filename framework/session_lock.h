#pragma once

#include "platform/session_service.h"

namespace nrt2 {

/// Holds the session's lock while it exists. After a failed lock `Status()` is negative and nothing is unlocked.
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
    /// Gives up the ownership after the handle, and with it the lock, has been disposed of.
    void Release() { status_ = IVI_ERROR_INVALID_SESSION_HANDLE; }

  private:
    ViSession vi_;
    ViStatus status_;
};

} // namespace nrt2
