// A session service that counts handles, locks and recorded errors.
#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "platform/session_service.h"
#include "tests/doubles/script.h"

namespace doubles {

struct RecordedError {
    ViSession vi;
    ViStatus code;
    std::string description;
    bool operator==(const RecordedError&) const = default;
};

class SessionService {
  public:
    void Reset();

    [[nodiscard]] std::size_t OpenHandles() const;
    /// Locks that are held, over all handles.
    [[nodiscard]] int LocksHeld() const;
    /// Every error that was recorded, in order.
    [[nodiscard]] std::vector<RecordedError> Recorded() const;
    void ForgetRecorded();

    // --- The service's functions
    ViStatus New(ViSession* handle);
    ViStatus Dispose(ViSession handle);
    ViStatus SetDataPtr(ViSession handle, ViAddr data);
    ViStatus GetDataPtr(ViSession handle, ViAddr* data);
    ViStatus Lock(ViSession handle, ViBoolean* hasLock);
    ViStatus Unlock(ViSession handle, ViBoolean* hasLock);
    ViStatus SetError(ViSession handle, ViStatus code, const std::string& description);
    ViStatus GetError(ViSession handle, ViInt32 size, ViStatus* code, ViChar description[]);
    ViStatus ClearError(ViSession handle);

  private:
    struct ErrorRecord {
        ViStatus code = VI_SUCCESS;
        std::string description;
    };
    struct Session {
        ViAddr data = nullptr;
        int locks = 0;
        ErrorRecord error;
    };
    static void Keep(ErrorRecord& record, ViStatus code, const std::string& description);
    ErrorRecord& ThreadRecord();

    mutable std::mutex mutex_;
    std::map<ViSession, Session> sessions_;
    std::map<std::size_t, ErrorRecord> threads_;
    std::vector<RecordedError> recorded_;
    ViSession next_ = 1;
};

SessionService& TheSessionService();

} // namespace doubles
