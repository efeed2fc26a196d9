#include "platform/session_service.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <mutex>
#include <new>
#include <string>
#include <string_view>

#include "runtime/handle_table.h"
#include "runtime/ivi_buffer.h"
#include "runtime/per_thread.h"
#include "text/characters.h"

namespace {

struct ErrorRecord {
    ViStatus code = VI_SUCCESS;
    std::string description;

    void Raise(ViStatus newCode, std::string_view newDescription) {
        if (Severity(newCode) > Severity(code)) {
            code = newCode;
            description.clear();
        }
        if (newCode == code && description.empty()) {
            description = newDescription;
        }
    }

    ViStatus Read(ViInt32 size, ViStatus* codeOut, ViChar* text) {
        const ViStatus status = runtime::CopyToIviBuffer(description, size, text);
        if (status < 0) {
            return status;
        }
        if (codeOut != nullptr) {
            *codeOut = code;
        }
        if (size != 0) {
            *this = {};
        }
        return status;
    }

  private:
    static int Severity(ViStatus status) { return status < 0 ? 2 : (status > 0 ? 1 : 0); }
};

/// Returns a number that no other thread has or had. (The system reuses thread ids.)
std::uint64_t ThisThread() {
    static constinit std::atomic<std::uint64_t> last{0};
    static constinit thread_local std::uint64_t number = 0;
    if (number == 0) {
        number = last.fetch_add(1, std::memory_order_relaxed) + 1;
    }
    return number;
}

constexpr std::size_t kCacheLine = 64; // prevents false sharing between neighbouring slots

struct alignas(kCacheLine) Session : runtime::HandleSlot {
    std::atomic<ViAddr> data{nullptr};
    std::mutex mutex;        // guards the following members; never held while a thread waits for the session's lock
    std::uint64_t owner = 0; // thread that holds the session's lock; 0: none
    std::uint64_t depth = 0;
    unsigned waiting = 0;
    std::condition_variable released;
    ErrorRecord error;
};

runtime::HandleTable<Session> sessions;

/// Runs `body()`. Exceptions, for which memory or a lock is missing, become statuses.
template <typename Body>
ViStatus CatchLockErrors(Body body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return IVI_ERROR_OUT_OF_MEMORY;
    } catch (const std::exception&) {
        return IVI_ERROR_CANNOT_CREATE_LOCK;
    }
}

/// Runs `body(session, lock)` with the session's mutex locked.
template <typename Body>
ViStatus OnSession(ViSession handle, Body body) noexcept {
    return CatchLockErrors([&]() -> ViStatus {
        Session* session = sessions.Find(handle);
        if (session == nullptr) {
            return IVI_ERROR_INVALID_SESSION_HANDLE;
        }
        std::unique_lock lock(session->mutex);
        return session->Has(handle) ? body(*session, lock) : IVI_ERROR_INVALID_SESSION_HANDLE;
    });
}

/// Runs `body(record)` on the record of the session or, with a zero handle, of the thread.
template <typename Body>
ViStatus OnRecord(ViSession handle, Body body) noexcept {
    if (handle != VI_NULL) {
        return OnSession(handle, [&](Session& session, auto& /*lock*/) { return body(session.error); });
    }
    return CatchLockErrors([&]() -> ViStatus {
        auto* record = runtime::PerThread<ErrorRecord>::Get();
        return record == nullptr ? IVI_ERROR_CANNOT_CREATE_THREAD_LOCAL : body(*record);
    });
}

} // namespace

extern "C" {

ViStatus _VI_FUNC IviSession_New(ViSession* handle) {
    if (handle == nullptr) {
        return IVI_ERROR_NULL_POINTER;
    }
    *handle = VI_NULL;
    return CatchLockErrors([&] {
        // Release: a reader that sees the new pointer also sees that the slot's former handle is invalid.
        *handle = sessions.Issue([](Session& session) { session.data.store(nullptr, std::memory_order_release); });
        return *handle == VI_NULL ? IVI_ERROR_CANNOT_CREATE_LOCK : VI_SUCCESS;
    });
}

ViStatus _VI_FUNC IviSession_Dispose(ViSession handle) {
    return OnSession(handle, [](Session& session, std::unique_lock<std::mutex>& lock) {
        session.Forget();
        session.owner = 0;
        session.depth = 0;
        session.error = {};
        session.released.notify_all();
        lock.unlock();
        sessions.Release(session);
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC IviSession_SetDataPtr(ViSession handle, ViAddr data) {
    return OnSession(handle, [&](Session& session, auto& /*lock*/) {
        session.data.store(data, std::memory_order_release);
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC IviSession_GetDataPtr(ViSession handle, ViAddr* data) {
    Session* session = sessions.Find(handle);
    if (session == nullptr) {
        return IVI_ERROR_INVALID_SESSION_HANDLE;
    }
    if (data == nullptr) {
        return IVI_ERROR_NULL_POINTER;
    }
    ViAddr found = session->data.load(std::memory_order_acquire);
    if (!session->Has(handle)) { // disposed of meanwhile: the pointer may belong to a later session
        return IVI_ERROR_INVALID_SESSION_HANDLE;
    }
    *data = found;
    return VI_SUCCESS;
}

ViStatus _VI_FUNC IviSession_Lock(ViSession handle, ViBoolean* hasLock) {
    return OnSession(handle, [&](Session& session, std::unique_lock<std::mutex>& lock) {
        if (hasLock != nullptr && *hasLock != VI_FALSE) {
            return VI_SUCCESS;
        }
        const auto thread = ThisThread();
        while (session.owner != 0 && session.owner != thread) {
            ++session.waiting;
            session.released.wait(lock);
            --session.waiting;
            if (!session.Has(handle)) {
                return IVI_ERROR_INVALID_SESSION_HANDLE;
            }
        }
        session.owner = thread;
        ++session.depth;
        if (hasLock != nullptr) {
            *hasLock = VI_TRUE;
        }
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC IviSession_Unlock(ViSession handle, ViBoolean* hasLock) {
    return OnSession(handle, [&](Session& session, auto& /*lock*/) {
        if (hasLock != nullptr && *hasLock == VI_FALSE) {
            return VI_SUCCESS;
        }
        if (session.owner != ThisThread()) {
            return IVI_ERROR_SESSION_NOT_LOCKED;
        }
        if (--session.depth == 0) {
            session.owner = 0;
            if (session.waiting != 0) {
                session.released.notify_one();
            }
        }
        if (hasLock != nullptr) {
            *hasLock = VI_FALSE;
        }
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC IviSession_SetError(ViSession handle, ViStatus code, ViConstString description) {
    const auto raise = [&](ErrorRecord& record) {
        record.Raise(code, text::ViewOf(description));
        return VI_SUCCESS;
    };
    const ViStatus ofThread = OnRecord(VI_NULL, raise);
    return handle == VI_NULL ? ofThread : OnRecord(handle, raise);
}

ViStatus _VI_FUNC IviSession_GetError(ViSession handle, ViInt32 bufferSize, ViStatus* code, ViChar description[]) {
    return OnRecord(handle, [&](ErrorRecord& record) { return record.Read(bufferSize, code, description); });
}

ViStatus _VI_FUNC IviSession_ClearError(ViSession handle) {
    return OnRecord(handle, [](ErrorRecord& record) {
        record = {};
        return VI_SUCCESS;
    });
}

} // extern "C"
