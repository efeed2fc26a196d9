// The frame of every function: from a handle to this library's object of the session, under the session's lock, with
// every exception converted to a status.
#pragma once

#include <new>
#include <stdexcept>

#include "framework/error_info.h"
#include "framework/session_lock.h"
#include "supply/supply_session.h"

namespace supply {

/// Returns what the driver's session offers to this library. On failure returns null and the reason in `status`, which
/// has been recorded unless the handle is not a session with an object. The caller must hold the session's lock.
tarnex::SessionExtension* FindExtension(ViSession vi, ViStatus& status);

/// Returns the library's object of a session, made at the first call. On failure returns null and the reason in
/// `status`, as FindExtension does. The caller must hold the session's lock.
SupplySession* FindSession(ViSession vi, ViStatus& status);

/// Runs `body()` and converts exceptions to statuses, recorded on `vi`.
template <typename Body>
ViStatus RecordExceptions(ViSession vi, const Body& body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return nrt2::SetErrorInfo(vi, IVI_ERROR_OUT_OF_MEMORY);
    } catch (...) {
        return nrt2::SetErrorInfo(vi, IVI_ERROR_CANNOT_RECOVER);
    }
}

/// Runs `body(session)` under the session's lock.
template <typename Body>
ViStatus OnSession(ViSession vi, const Body& body) noexcept {
    return RecordExceptions(vi, [&]() -> ViStatus {
        const nrt2::SessionLock lock(vi);
        if (lock.Status() < 0) {
            return lock.Status();
        }
        ViStatus status = VI_SUCCESS;
        auto* const session = FindSession(vi, status);
        return session == nullptr ? status : body(*session);
    });
}

/// Runs `exchange(session)`, which talks to the instrument, over a connection in step, then checks the instrument's
/// status. Records a failure; a malformed reply, for which `exchange` throws, is IVI_ERROR_UNEXPECTED_RESPONSE.
template <typename Exchange>
ViStatus ExchangeOn(SupplySession& session, const Exchange& exchange) {
    auto status = session.EnsureInStep();
    if (status < 0) {
        return status;
    }
    try {
        status = exchange(session);
        if (status >= 0 && session.ChecksStatus()) {
            status = session.EnsureInStep();
            if (status < 0) {
                return status;
            }
            status = session.CheckStatus();
        }
    } catch (const std::invalid_argument&) {
        return session.RecordMalformedReply();
    } catch (const std::out_of_range&) {
        return session.RecordMalformedReply();
    }
    return status < 0 ? session.RecordFailure(status) : VI_SUCCESS;
}

} // namespace supply
