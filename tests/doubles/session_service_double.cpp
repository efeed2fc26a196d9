#include "tests/doubles/session_service_double.h"

#include <functional>
#include <thread>

namespace doubles {

void SessionService::Reset() {
    const std::lock_guard lock(mutex_);
    sessions_.clear();
    threads_.clear();
    recorded_.clear();
}

std::size_t SessionService::OpenHandles() const {
    const std::lock_guard lock(mutex_);
    return sessions_.size();
}

int SessionService::LocksHeld() const {
    const std::lock_guard lock(mutex_);
    int held = 0;
    for (const auto& [handle, session] : sessions_) {
        held += session.locks;
    }
    return held;
}

std::vector<RecordedError> SessionService::Recorded() const {
    const std::lock_guard lock(mutex_);
    return recorded_;
}

void SessionService::ForgetRecorded() {
    const std::lock_guard lock(mutex_);
    recorded_.clear();
}

ViStatus SessionService::New(ViSession* handle) {
    const std::lock_guard lock(mutex_);
    *handle = next_++;
    sessions_[*handle] = {};
    return VI_SUCCESS;
}

ViStatus SessionService::Dispose(ViSession handle) {
    const std::lock_guard lock(mutex_);
    return sessions_.erase(handle) == 1 ? VI_SUCCESS : IVI_ERROR_INVALID_SESSION_HANDLE;
}

ViStatus SessionService::SetDataPtr(ViSession handle, ViAddr data) {
    const std::lock_guard lock(mutex_);
    const auto session = sessions_.find(handle);
    if (session == sessions_.end()) {
        return IVI_ERROR_INVALID_SESSION_HANDLE;
    }
    session->second.data = data;
    return VI_SUCCESS;
}

ViStatus SessionService::GetDataPtr(ViSession handle, ViAddr* data) {
    const std::lock_guard lock(mutex_);
    const auto session = sessions_.find(handle);
    if (session == sessions_.end()) {
        return IVI_ERROR_INVALID_SESSION_HANDLE;
    }
    *data = session->second.data;
    return VI_SUCCESS;
}

ViStatus SessionService::Lock(ViSession handle, ViBoolean* hasLock) {
    const std::lock_guard lock(mutex_);
    const auto session = sessions_.find(handle);
    if (session == sessions_.end()) {
        return IVI_ERROR_INVALID_SESSION_HANDLE;
    }
    if (hasLock == nullptr || *hasLock == VI_FALSE) {
        ++session->second.locks;
    }
    if (hasLock != nullptr) {
        *hasLock = VI_TRUE;
    }
    return VI_SUCCESS;
}

ViStatus SessionService::Unlock(ViSession handle, ViBoolean* hasLock) {
    const std::lock_guard lock(mutex_);
    const auto session = sessions_.find(handle);
    if (session == sessions_.end()) {
        return IVI_ERROR_INVALID_SESSION_HANDLE;
    }
    if (hasLock == nullptr || *hasLock != VI_FALSE) {
        --session->second.locks;
    }
    if (hasLock != nullptr) {
        *hasLock = VI_FALSE;
    }
    return VI_SUCCESS;
}

void SessionService::Keep(ErrorRecord& record, ViStatus code, const std::string& description) {
    const auto severity = [](ViStatus status) { return status < 0 ? 2 : (status > 0 ? 1 : 0); };
    if (severity(code) > severity(record.code)) {
        record = {code, description};
    } else if (code == record.code && record.description.empty()) {
        record.description = description;
    }
}

SessionService::ErrorRecord& SessionService::ThreadRecord() {
    return threads_[std::hash<std::thread::id>{}(std::this_thread::get_id())];
}

ViStatus SessionService::SetError(ViSession handle, ViStatus code, const std::string& description) {
    const std::lock_guard lock(mutex_);
    recorded_.push_back({handle, code, description});
    Keep(ThreadRecord(), code, description);
    if (handle == VI_NULL) {
        return VI_SUCCESS;
    }
    const auto session = sessions_.find(handle);
    if (session == sessions_.end()) {
        return IVI_ERROR_INVALID_SESSION_HANDLE;
    }
    Keep(session->second.error, code, description);
    return VI_SUCCESS;
}

ViStatus SessionService::GetError(ViSession handle, ViInt32 size, ViStatus* code, ViChar description[]) {
    const std::lock_guard lock(mutex_);
    const auto session = sessions_.find(handle);
    if (handle != VI_NULL && session == sessions_.end()) {
        return IVI_ERROR_INVALID_SESSION_HANDLE;
    }
    auto& record = handle == VI_NULL ? ThreadRecord() : session->second.error;
    if (code != nullptr) {
        *code = record.code;
    }
    const auto status = CopyOut(record.description, size, description);
    if (size != 0) {
        record = ErrorRecord();
    }
    return status;
}

ViStatus SessionService::ClearError(ViSession handle) {
    const std::lock_guard lock(mutex_);
    const auto session = sessions_.find(handle);
    if (handle != VI_NULL && session == sessions_.end()) {
        return IVI_ERROR_INVALID_SESSION_HANDLE;
    }
    auto& record = handle == VI_NULL ? ThreadRecord() : session->second.error;
    record = ErrorRecord();
    return VI_SUCCESS;
}

SessionService& TheSessionService() {
    static SessionService service;
    return service;
}

namespace {

/// What a function answers when no failure was ordered.
template <typename Body>
ViStatus Answer(const char* function, const Body& body) {
    const InsideDouble here;
    const auto ordered = TheScript().Enter(function);
    return ordered != VI_SUCCESS ? ordered : body(TheSessionService());
}

/// A releasing function also releases when a test lets it fail.
template <typename Body>
ViStatus Release(const char* function, const Body& body) {
    const InsideDouble here;
    const auto ordered = TheScript().Enter(function);
    const auto status = body(TheSessionService());
    return ordered != VI_SUCCESS ? ordered : status;
}

} // namespace
} // namespace doubles

using doubles::Answer;
using doubles::Release;
using doubles::SessionService;

ViStatus _VI_FUNC IviSession_New(ViSession* handle) {
    return Answer("IviSession_New", [=](SessionService& service) { return service.New(handle); });
}

// A failing Dispose keeps the handle: the driver must then remove its data pointer.
ViStatus _VI_FUNC IviSession_Dispose(ViSession handle) {
    return Answer("IviSession_Dispose", [=](SessionService& service) { return service.Dispose(handle); });
}

ViStatus _VI_FUNC IviSession_SetDataPtr(ViSession handle, ViAddr data) {
    return Answer("IviSession_SetDataPtr", [=](SessionService& service) { return service.SetDataPtr(handle, data); });
}

ViStatus _VI_FUNC IviSession_GetDataPtr(ViSession handle, ViAddr* data) {
    return Answer("IviSession_GetDataPtr", [=](SessionService& service) { return service.GetDataPtr(handle, data); });
}

ViStatus _VI_FUNC IviSession_Lock(ViSession handle, ViBoolean* hasLock) {
    return Answer("IviSession_Lock", [=](SessionService& service) { return service.Lock(handle, hasLock); });
}

ViStatus _VI_FUNC IviSession_Unlock(ViSession handle, ViBoolean* hasLock) {
    return Release("IviSession_Unlock", [=](SessionService& service) { return service.Unlock(handle, hasLock); });
}

ViStatus _VI_FUNC IviSession_SetError(ViSession handle, ViStatus code, ViConstString description) {
    return Answer("IviSession_SetError",
                  [=](SessionService& service) { return service.SetError(handle, code, description); });
}

ViStatus _VI_FUNC IviSession_GetError(ViSession handle, ViInt32 size, ViStatus* code, ViChar description[]) {
    return Answer("IviSession_GetError",
                  [=](SessionService& service) { return service.GetError(handle, size, code, description); });
}

ViStatus _VI_FUNC IviSession_ClearError(ViSession handle) {
    return Answer("IviSession_ClearError", [=](SessionService& service) { return service.ClearError(handle); });
}
