// Sessions, raw text, and the instrument as a whole.

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "include/TARNEX_supply.h"
#include "status/run_until.h"
#include "supply/operation.h"
#include "text/characters.h"

using ORVA::InstBase;
using supply::ExchangeOn;
using supply::Export;
using supply::OnChannel;
using supply::OnSession;
using supply::OnSupply;
using supply::SupplySession;

namespace {

constexpr std::size_t kTextSize = 256; // of messages and identity texts

ViStatus NullPointer(const Export& call) {
    return nrt2::SetErrorInfo(call.vi, IVI_ERROR_NULL_POINTER, call.function, call.results);
}

/// Copies as much of `text` as fits and a NUL. Returns 0, or the required size when the text is truncated.
ViStatus CopyText(std::string_view text, std::size_t size, ViChar* buffer) {
    const auto count = std::min(text.size(), size - 1);
    std::copy_n(text.data(), count, buffer);
    buffer[count] = '\0';
    return count < text.size() ? static_cast<ViStatus>(text.size() + 1) : VI_SUCCESS;
}

struct OwnMessage {
    ViStatus status;
    std::string_view message;
};
constexpr std::array kOwnMessages{
    OwnMessage{TARNEXSUPPLY_ERROR_OTHER_DRIVER, "The session does not belong to this driver."},
    OwnMessage{TARNEXSUPPLY_ERROR_OTHER_VERSION, "The driver and the supply library are of different versions."},
    OwnMessage{TARNEXSUPPLY_ERROR_OUT_OF_STEP, "The connection could not be brought back into step."},
    OwnMessage{TARNEXSUPPLY_ERROR_STILL_ON, "The output is still on."},
};

} // namespace

ViStatus _VI_FUNC TARNEXSupply_Open(ViConstString name, ViConstString options, ViInt32 timeoutMs, ViSession* vi) {
    if (vi == nullptr) {
        return IVI_ERROR_NULL_POINTER;
    }
    *vi = VI_NULL;
    IviSession_ClearError(VI_NULL);
    auto status = supply::WithoutExceptions(VI_NULL, [&]() -> ViStatus {
        if (timeoutMs < 0) {
            return nrt2::SetErrorInfo(VI_NULL, DRIVER_ERROR_INVALID_PARAMETER);
        }
        std::string resource(text::ViewOf(name));
        return TARNEX_InitWithOptions(resource.data(), VI_FALSE, VI_FALSE, options, vi);
    });
    if (status >= 0 && timeoutMs > 0) {
        status = TARNEXSupply_SetTimeout(*vi, timeoutMs);
        if (status < 0) {
            TARNEXSupply_Close(*vi);
            *vi = VI_NULL;
        }
    }
    return std::min<ViStatus>(status, VI_SUCCESS);
}

ViStatus _VI_FUNC TARNEXSupply_Close(ViSession vi) {
    return supply::WithoutExceptions(VI_NULL, [&]() -> ViStatus {
        // Waits for the calls of other threads. The lock ends with the handle.
        const auto locked = IviSession_Lock(vi, nullptr);
        if (locked < 0) {
            return locked;
        }
        const auto status = TARNEX_close(vi);
        if (status < 0) {
            IviSession_Unlock(vi, nullptr);
        }
        return std::min<ViStatus>(status, VI_SUCCESS);
    });
}

ViStatus _VI_FUNC TARNEXSupply_GetTimeout(ViSession vi, ViInt32* timeoutMs) {
    return OnSession(vi, [&](SupplySession& session) -> ViStatus {
        if (timeoutMs == nullptr) {
            return NullPointer({vi, "TARNEXSupply_GetTimeout", "timeoutMs"});
        }
        constexpr ViUInt32 kMost = INT32_MAX;
        *timeoutMs = static_cast<ViInt32>(std::min(session.Driver().getTimeout(session.Object()), kMost));
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC TARNEXSupply_SetTimeout(ViSession vi, ViInt32 timeoutMs) {
    return OnSession(vi, [&](SupplySession& session) -> ViStatus {
        if (timeoutMs < 1) {
            return nrt2::SetErrorInfo(vi, DRIVER_ERROR_INVALID_PARAMETER);
        }
        const auto status = session.Driver().setTimeout(session.Object(), static_cast<ViUInt32>(timeoutMs));
        return status < 0 ? nrt2::SetErrorInfo(vi, DRIVER_ERROR_IO) : VI_SUCCESS;
    });
}

ViStatus _VI_FUNC TARNEXSupply_Write(ViSession vi, ViConstString command) {
    return OnSession(vi, [&](SupplySession& session) -> ViStatus {
        if (command == nullptr) {
            return NullPointer({vi, "TARNEXSupply_Write", "command"});
        }
        return ExchangeOn(session, [&](SupplySession& target) { return target.WriteText(command); });
    });
}

ViStatus _VI_FUNC TARNEXSupply_Query(ViSession vi, ViConstString command, ViInt32 bufferSize, ViChar reply[]) {
    return OnSession(vi, [&](SupplySession& session) -> ViStatus {
        if (command == nullptr || reply == nullptr) {
            return NullPointer({vi, "TARNEXSupply_Query", command == nullptr ? "command" : "reply"});
        }
        if (bufferSize < 1) {
            return nrt2::SetErrorInfo(vi, DRIVER_ERROR_INVALID_PARAMETER);
        }
        ViStatus truncated = VI_SUCCESS;
        const auto status = ExchangeOn(session, [&](SupplySession& target) {
            std::string_view text;
            const auto queried = target.QueryText(command, text);
            if (queried >= 0) {
                truncated = CopyText(text, static_cast<std::size_t>(bufferSize), reply);
            }
            return queried;
        });
        return status < 0 ? status : truncated;
    });
}

ViStatus _VI_FUNC TARNEXSupply_Trace(ViSession vi, TARNEXSupply_TraceCallback callback, void* context) {
    return OnSession(vi, [&](SupplySession& session) -> ViStatus {
        session.StartTrace(callback, context);
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC TARNEXSupply_ErrorMessage(ViStatus status, ViChar message[256]) {
    if (message == nullptr) {
        return IVI_ERROR_NULL_POINTER;
    }
    const auto* own = std::find_if(kOwnMessages.begin(), kOwnMessages.end(),
                                   [&](const OwnMessage& row) { return row.status == status; });
    const auto text = own != kOwnMessages.end() ? own->message : nrt2::MessageOf(status);
    if (text.empty()) {
        return IVI_ERROR_INVALID_VALUE;
    }
    CopyText(text, kTextSize, message);
    return VI_SUCCESS;
}

ViStatus _VI_FUNC TARNEXSupply_Reset(ViSession vi) { return OnSupply<&InstBase::SendReset>({vi, __func__}); }

ViStatus _VI_FUNC TARNEXSupply_ClearStatus(ViSession vi) { return OnSupply<&InstBase::SendClear>({vi, __func__}); }

ViStatus _VI_FUNC TARNEXSupply_QueryEventStatus(ViSession vi, ViInt32* value) {
    return OnSupply<&InstBase::QueryEventStatus>({vi, __func__, "value"}, value);
}

ViStatus _VI_FUNC TARNEXSupply_QueryError(ViSession vi, ViInt32* code, ViInt32 bufferSize, ViChar message[]) {
    return OnSession(vi, [&](SupplySession& session) -> ViStatus {
        if (code == nullptr || message == nullptr) {
            return NullPointer({vi, "TARNEXSupply_QueryError", code == nullptr ? "code" : "message"});
        }
        if (bufferSize < 1) {
            return nrt2::SetErrorInfo(vi, DRIVER_ERROR_INVALID_PARAMETER);
        }
        if (session.IsSimulated()) {
            *code = 0;
            CopyText("No error", static_cast<std::size_t>(bufferSize), message);
            return VI_SUCCESS;
        }
        // Not the operation of the command layer, which refuses texts that contain a comma.
        return ExchangeOn(session, [&](SupplySession& target) {
            std::string_view text;
            const auto status = target.QueryText(":SYSTem:ERRor?", text);
            if (status >= 0) {
                const auto comma = text.find(',');
                if (comma == std::string_view::npos || !Visa::isWholeInt(text.substr(0, comma))) {
                    throw std::invalid_argument("malformed reply");
                }
                auto quoted = text::Trim(text.substr(comma + 1));
                if (quoted.size() >= 2 && quoted.front() == '"' && quoted.back() == '"') {
                    quoted = quoted.substr(1, quoted.size() - 2);
                }
                *code = Visa::parseInt(text.substr(0, comma));
                CopyText(quoted, static_cast<std::size_t>(bufferSize), message);
            }
            return status;
        });
    });
}

ViStatus _VI_FUNC TARNEXSupply_QueryQuestionableCondition(ViSession vi, ViConstString channelName, ViInt32* value) {
    return OnChannel<&InstBase::QueryQuestionableCondition>({vi, __func__, "value"}, channelName, value);
}

ViStatus _VI_FUNC TARNEXSupply_QueryQuestionableEvent(ViSession vi, ViConstString channelName, ViInt32* value) {
    return OnChannel<&InstBase::QueryQuestionableEvent>({vi, __func__, "value"}, channelName, value);
}

ViStatus _VI_FUNC TARNEXSupply_GetLimits(ViSession vi, ViConstString channelName, ViReal64* minVolts,
                                         ViReal64* maxVolts, ViReal64* minAmperes, ViReal64* maxAmperes) {
    return OnSession(vi, [&](SupplySession& session) -> ViStatus {
        const Export call{vi, "TARNEXSupply_GetLimits", "minVolts, maxVolts, minAmperes, maxAmperes"};
        supply::ChannelList channels{};
        ViUInt32 count = 0;
        auto status = supply::CheckResults(call, minVolts, maxVolts, minAmperes, maxAmperes);
        if (status >= 0) {
            status = session.Driver().expand(session.Object(), channelName, VI_TRUE, channels.data(), 1, &count);
        }
        if (status >= 0) {
            const auto& limits = ORVA::LimitsOf(channels[0]);
            *minVolts = limits.minimumVoltage;
            *maxVolts = limits.maximumVoltage;
            *minAmperes = limits.minimumCurrent;
            *maxAmperes = limits.maximumCurrent;
        }
        return status;
    });
}

ViStatus _VI_FUNC TARNEXSupply_GetIdentity(ViSession vi, ViChar manufacturer[256], ViChar model[256],
                                           ViChar serialNumber[256], ViChar firmwareRevision[256]) {
    return OnSession(vi, [&](SupplySession& session) -> ViStatus {
        const std::array buffers{manufacturer, model, serialNumber, firmwareRevision};
        std::array<const char*, buffers.size()> fields{};
        session.Driver().identity(session.Object(), fields.data());
        for (std::size_t i = 0; i < buffers.size(); ++i) {
            if (buffers[i] != nullptr) {
                CopyText(fields[i], kTextSize, buffers[i]);
            }
        }
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC TARNEXSupply_ResolveChannels(ViSession vi, ViConstString channelName, ViInt32 capacity,
                                               ViInt32 channels[], ViInt32* count) {
    return OnSession(vi, [&](SupplySession& session) -> ViStatus {
        if (channels == nullptr || count == nullptr) {
            return NullPointer({vi, "TARNEXSupply_ResolveChannels", channels == nullptr ? "channels" : "count"});
        }
        supply::ChannelList numbers{};
        ViUInt32 found = 0;
        const auto status = session.Driver().expand(session.Object(), channelName, VI_FALSE, numbers.data(),
                                                    static_cast<ViUInt32>(numbers.size()), &found);
        if (status < 0) {
            return status;
        }
        if (capacity < static_cast<ViInt32>(found)) {
            return nrt2::SetErrorInfo(vi, DRIVER_ERROR_INVALID_PARAMETER);
        }
        std::copy_n(numbers.begin(), found, channels);
        *count = static_cast<ViInt32>(found);
        return VI_SUCCESS;
    });
}
