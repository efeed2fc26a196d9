#include "supply/supply_session.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "framework/error_info.h"
#include "platform/visa.h"
#include "status/run_until.h"
#include "text/characters.h"

namespace supply {
namespace {

/// "0xBFFF0015"
class HexText {
  public:
    explicit HexText(ViStatus status) {
        static_cast<void>(std::snprintf(text_.data(), text_.size(), "0x%08X", static_cast<unsigned>(status)));
    }
    [[nodiscard]] std::string_view View() const { return text_.data(); }

  private:
    std::array<char, sizeof "0xBFFF0015"> text_{};
};

/// Whether the interface of a resource has a device clear: all but raw sockets and serial lines.
bool HasDeviceClear(std::string_view resource) {
    constexpr std::string_view kSocket = "::SOCKET";
    constexpr std::string_view kSerial = "ASRL";
    const bool socket = resource.size() >= kSocket.size() &&
                        text::EqualIgnoringCase(resource.substr(resource.size() - kSocket.size()), kSocket);
    return !socket && !text::EqualIgnoringCase(resource.substr(0, kSerial.size()), kSerial);
}

} // namespace

ViStatus SessionConnection::write(std::string_view command) {
    lastCommand_.assign(command);
    lastReply_ = {};
    lastStatus_ = extension_.functions->write(extension_.session, command.data(), command.size());
    return lastStatus_;
}

ViStatus SessionConnection::read(std::string& reply) {
    const char* text = nullptr;
    std::size_t size = 0;
    lastStatus_ = extension_.functions->read(extension_.session, &text, &size);
    if (lastStatus_ >= 0) {
        lastReply_ = {text, size};
        reply.assign(lastReply_);
    }
    return lastStatus_;
}

ViStatus SupplySession::EnsureInStep() {
    if (Driver().isInStep(Object()) != VI_FALSE) {
        return VI_SUCCESS;
    }
    const auto status = Resynchronize();
    return status >= 0 ? VI_SUCCESS
                       : nrt2::SetErrorInfoElab(vi_, TARNEXSUPPLY_ERROR_OUT_OF_STEP,
                                                "The connection could not be brought back into step after an earlier "
                                                "failure: %s (%s).",
                                                status == IVI_ERROR_ID_QUERY_FAILED ? "another instrument answers"
                                                                                    : "it cannot be opened again",
                                                HexText(status).View());
}

ViStatus SupplySession::Resynchronize() {
    const auto visa = Driver().visaSession(Object());
    if (visa != VI_NULL && HasDeviceClear(Driver().resource(Object())) && viClear(visa) >= 0 &&
        Driver().verifyIdentity(Object()) >= 0) {
        return VI_SUCCESS;
    }
    return Driver().reopen(Object());
}

ViStatus SupplySession::WriteText(std::string_view command) {
    return IsSimulated() || connection_->write(command) >= 0 ? VI_SUCCESS : DRIVER_ERROR_IO;
}

ViStatus SupplySession::QueryText(std::string_view command, std::string_view& reply) {
    reply_.clear();
    const auto status = IsSimulated() ? VI_SUCCESS
                                      : status::RunUntilNegative([&] { return connection_->write(command); },
                                                                 [&] { return connection_->read(reply_); });
    reply = reply_;
    return status < 0 ? DRIVER_ERROR_IO : VI_SUCCESS;
}

ViStatus SupplySession::RecordFailure(ViStatus status) {
    if (status != DRIVER_ERROR_IO) {
        return nrt2::SetErrorInfo(vi_, status);
    }
    const auto visa = connection_->LastStatus();
    return nrt2::SetErrorInfoElab(vi_, visa == VI_ERROR_TMO ? DRIVER_ERROR_IO_TIMEOUT : DRIVER_ERROR_IO,
                                  "Command '%s', VISA status %s.", connection_->LastCommand(), HexText(visa).View());
}

ViStatus SupplySession::RecordMalformedReply() {
    constexpr std::size_t kShown = 40;
    Driver().setInStep(Object(), VI_FALSE);
    std::string reply(connection_->LastReply().substr(0, kShown));
    std::replace_if(
        reply.begin(), reply.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return nrt2::SetErrorInfoElab(vi_, IVI_ERROR_UNEXPECTED_RESPONSE, "Command '%s', reply '%s'%s.",
                                  connection_->LastCommand(), reply,
                                  connection_->LastReply().size() > kShown ? "..." : "");
}

void SupplySession::StartTrace(TARNEXSupply_TraceCallback callback, void* context) {
    traceCallback_ = callback;
    traceContext_ = context;
    traceStart_ = std::chrono::steady_clock::now();
    const auto report = [](void* session, ViBoolean sent, ViStatus status, const char* text, ViUInt32 size) {
        const auto& self = *static_cast<SupplySession*>(session);
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - self.traceStart_;
        self.traceCallback_(self.traceContext_, elapsed.count(), sent, status, text, static_cast<ViInt32>(size));
    };
    Driver().trace(Object(), callback == nullptr ? nullptr : +report, this);
}

} // namespace supply
