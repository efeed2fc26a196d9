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

  private:
    ViSession vi_;
    ViStatus status_;
};

} // namespace nrt2
