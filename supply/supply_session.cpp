#include "supply/supply_session.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>

#include "framework/error_info.h"
#include "platform/visa.h"
#include "status/run_until.h"
#include "supply/error_message.h"
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
        if (lastStatus_ == VI_SUCCESS_MAX_CNT) {
            throw std::out_of_range("reply longer than the read buffer"); // its rest is still to come
        }
        if (lastReply_.ends_with('\r')) {
            lastReply_.remove_suffix(1);
        }
        reply.assign(lastReply_);
    }
    return lastStatus_;
}

ViStatus SupplySession::EnsureInStep() {
    if (Driver().isInStep(Object()) != VI_FALSE) {
        return VI_SUCCESS;
    }
    const auto status = Resynchronize();
    if (status >= 0) {
        return VI_SUCCESS;
    }
    return RecordOwnError(vi_, TARNEXSUPPLY_ERROR_OUT_OF_STEP,
                          status == IVI_ERROR_ID_QUERY_FAILED
                              ? std::string("Another instrument answers.")
                              : std::string("Status ").append(HexText(status).View()).append("."));
}

ViStatus SupplySession::CheckStatus() {
    // Query error 0x04, device-dependent error 0x08, execution error 0x10 and command error 0x20 of the standard event
    // status register (IEEE 488.2 11.5.1).
    constexpr std::uint32_t kErrorBits = 0x3C;
    std::uint32_t events = 0;
    const auto status = Instrument().QueryEventStatus(events);
    return status >= 0 && (events & kErrorBits) != 0 ? IVI_ERROR_INSTRUMENT_STATUS : status;
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
    if (IsSimulated()) {
        return VI_SUCCESS;
    }
    const auto status = connection_->write(command);
    if (command.find('?') != std::string_view::npos) {
        Driver().setInStep(Object(), VI_FALSE); // a reply may come, which nothing reads
    }
    return status < 0 ? DRIVER_ERROR_IO : VI_SUCCESS;
}

ViStatus SupplySession::QueryText(std::string_view command, std::string_view& reply) {
    reply_.clear();
    const auto status = IsSimulated() ? VI_SUCCESS
                                      : status::RunUntilNegative([&] { return connection_->write(command); },
                                                                 [&] { return connection_->read(reply_); });
    reply = reply_;
    if (const auto lineFeed = command.find('\n'); lineFeed < command.size() - 1) {
        Driver().setInStep(Object(), VI_FALSE); // one reply was read, and each line may have one
    }
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
