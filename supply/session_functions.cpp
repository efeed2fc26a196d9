// Sessions, raw text, and the instrument as a whole.

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

#include "include/TARNEX_supply.h"
#include "supply/error_message.h"
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

/// Records a malformed reply while a session is opened, where only one command has a reply whose format matters.
ViStatus MalformedEventStatus() {
    return nrt2::SetErrorInfoElab(VI_NULL, IVI_ERROR_UNEXPECTED_RESPONSE, "Command '*ESR?'.");
}

} // namespace

ViStatus _VI_FUNC TARNEXSupply_Open(ViConstString name, ViConstString options, ViInt32 timeoutMs, ViSession* vi) {
    if (vi == nullptr) {
        return IVI_ERROR_NULL_POINTER;
    }
    *vi = VI_NULL;
    IviSession_ClearError(VI_NULL);
    auto status = supply::RecordExceptions(VI_NULL, [&]() -> ViStatus {
        if (timeoutMs < 0) {
            return nrt2::SetErrorInfo(VI_NULL, DRIVER_ERROR_INVALID_PARAMETER);
        }
        std::string resource(text::ViewOf(name));
        try {
            return TARNEX_InitWithOptions(resource.data(), VI_FALSE, VI_FALSE, options, vi);
        } catch (const std::invalid_argument&) {
            return MalformedEventStatus();
        } catch (const std::out_of_range&) {
            return MalformedEventStatus();
        }
    });
    if (status >= 0) {
        // Refuses a driver of another version now, and makes the library's object, so that later calls allocate
        // nothing.
        status = OnSession(*vi, [](SupplySession& /*session*/) -> ViStatus { return VI_SUCCESS; });
    }
    if (status >= 0 && timeoutMs > 0) {
        status = TARNEXSupply_SetTimeout(*vi, timeoutMs);
    }
    if (status < 0 && *vi != VI_NULL) {
        supply::RecordExceptions(VI_NULL, [&] { return TARNEX_close(*vi); });
        *vi = VI_NULL;
    }
    return std::min<ViStatus>(status, VI_SUCCESS);
}

ViStatus _VI_FUNC TARNEXSupply_Close(ViSession vi) {
    return supply::RecordExceptions(VI_NULL, [&]() -> ViStatus {
        nrt2::SessionLock lock(vi); // waits for the calls of other threads
        if (lock.Status() < 0) {
            return lock.Status();
        }
        ViStatus status = VI_SUCCESS;
        if (supply::FindExtension(vi, status) == nullptr) {
            return status;
        }
        status = TARNEX_close(vi);
        if (status >= 0) {
            lock.Release();
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
        std::string_view text;
        const auto status = ExchangeOn(session, [&](SupplySession& target) { return target.QueryText(command, text); });
        return status < 0 ? status : CopyText(text, static_cast<std::size_t>(bufferSize), reply);
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
    const auto text = supply::MessageOf(status);
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
        ViInt32 number = 0;
        std::string_view text;
        const auto status = ExchangeOn(session, [&](SupplySession& target) {
            std::string_view reply;
            const auto queried = target.QueryText(":SYSTem:ERRor?", reply);
            if (queried >= 0) {
                const auto comma = reply.find(',');
                if (comma == std::string_view::npos || !Visa::IsWholeInt(reply.substr(0, comma))) {
                    throw std::invalid_argument("malformed reply");
                }
                number = Visa::parseInt(reply.substr(0, comma));
                text = text::Trim(reply.substr(comma + 1));
                if (text.size() >= 2 && text.front() == '"' && text.back() == '"') {
                    text = text.substr(1, text.size() - 2);
                }
            }
            return queried;
        });
        if (status >= 0) {
            *code = number;
            CopyText(text, static_cast<std::size_t>(bufferSize), message);
        }
        return status;
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
