// The IVI inherent functions, except those that open, close and lock sessions.

#include "include/TARNEX.h"

#include <algorithm>
#include <string>

#include "driver/channel_calls.h"
#include "framework/error_info.h"
#include "framework/string_buffer.h"
#include "status/status.h"

namespace {

// The size of the message and revision buffers (IVI-3.2).
constexpr ViInt32 kMessageSize = 256;

} // namespace

// The linker exports it as TARNEX_ResetWithDefaults too.
ViStatus _VI_FUNC TARNEX_reset(ViSession vi) {
    return tarnex::LockedCall(
        vi, [](TARNEXDriverSession& session) { return session.RecordIfError(session.ResetInstrument()); });
}

ViStatus _VI_FUNC TARNEX_self_test(ViSession vi, ViInt16* testResult, ViChar testMessage[]) {
    return tarnex::LockedCall(vi, [&](TARNEXDriverSession& /*session*/) {
        const auto status =
            nrt2::CheckParameters(vi, "TARNEX_self_test", "TestResult, TestMessage", {testResult, testMessage});
        return status < 0 ? status : IVI_WARN_NSUP_SELF_TEST;
    });
}

ViStatus _VI_FUNC TARNEX_error_query(ViSession vi, ViInt32* errorCode, ViChar errorMessage[]) {
    return tarnex::LockedCall(vi, [&](TARNEXDriverSession& session) {
        auto status =
            nrt2::CheckParameters(vi, "TARNEX_error_query", "ErrorCode, ErrorMessage", {errorCode, errorMessage});
        if (status < 0) {
            return status;
        }
        std::string message;
        status = session.RecordIfError(session.Instrument().QueryError(*errorCode, message));
        if (status == VI_SUCCESS) {
            // No length check: a reply has at most the 1024 bytes of the connection's read buffer, and the caller's
            // buffer must have as many.
            std::copy_n(message.c_str(), message.size() + 1, errorMessage);
        }
        return status;
    });
}

ViStatus _VI_FUNC TARNEX_error_message(ViSession vi, ViStatus errorCode, ViChar errorMessage[]) {
    const auto status = nrt2::CheckParameters(vi, "TARNEX_error_message", "ErrorMessage", {errorMessage});
    if (status < 0) {
        return status;
    }
    const auto message = nrt2::MessageOf(errorCode);
    if (!message.empty()) {
        nrt2::CopyTruncated(message, kMessageSize, errorMessage);
        return VI_SUCCESS;
    }
    if (vi == VI_NULL) {
        return IVI_ERROR_INVALID_VALUE;
    }
    // Required: the description names the function without its prefix.
    return nrt2::SetErrorInfoElab(vi, IVI_ERROR_INVALID_VALUE, "The error code supplied is not defined by the driver.",
                                  text::IntegerText(errorCode).View(), "error_message", "ErrorCode");
}

ViStatus _VI_FUNC TARNEX_revision_query(ViSession vi, ViChar driverRev[], ViChar instrRev[]) {
    return tarnex::LockedCall(vi, [&](TARNEXDriverSession& session) {
        if (driverRev != nullptr) {
            nrt2::CopyTruncated(session.Driver().revision, kMessageSize, driverRev);
        }
        if (instrRev != nullptr) {
            nrt2::CopyTruncated(session.Flags().simulate ? "Sim" + std::string(session.Driver().revision)
                                                         : session.InstrumentFirmwareRevision(),
                                kMessageSize, instrRev);
        }
        return ViStatus{VI_SUCCESS};
    });
}

ViStatus _VI_FUNC TARNEX_Disable(ViSession vi) {
    return tarnex::LockedCall(vi, [](TARNEXDriverSession& session) {
        return session.RecordIfError(session.Instrument().SetAllOutputsOff());
    });
}

ViStatus _VI_FUNC TARNEX_InvalidateAllAttributes(ViSession vi) {
    return tarnex::LockedCall(vi, [](TARNEXDriverSession& session) {
        session.InvalidateAllAttributes();
        return ViStatus{VI_SUCCESS};
    });
}

// The session service takes the size before the code.
ViStatus _VI_FUNC TARNEX_GetError(ViSession vi, ViStatus* errorCode, ViInt32 bufferSize, ViChar description[]) {
    return IviSession_GetError(vi, bufferSize, errorCode, description);
}

ViStatus _VI_FUNC TARNEX_ClearError(ViSession vi) { return IviSession_ClearError(vi); }
