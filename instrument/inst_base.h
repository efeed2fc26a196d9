// The supply's operations, and what the real instrument builds them from.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "instrument/channel_limits.h"
#include "instrument/identity.h"
#include "instrument/keywords.h"
#include "instrument/reply_parsers.h"
#include "instrument/scpi_text.h"
#include "platform/ivi_status.h"
#include "visa_io/visa_io.h"

namespace ORVA {

/// What an instrument object is opened with.
struct ConnectionRecord {
    std::string resource; ///< VISA resource string
    bool idQuery = false;
    bool reset = false;  ///< kept only: opening sends no reset
    std::string options; ///< an option string; see text/option_string.h
};

/// An instrument: real (ORVA::TARNEX) or simulated (ORVA::TARNEXSimulator).
///
/// Channels are numbered from 1; another number throws std::out_of_range("invalid map<K, T> key") before anything is
/// sent. Statuses: 0 or a positive VISA status on success, DRIVER_ERROR_IO when an exchange fails,
/// DRIVER_ERROR_INVALID_VALUE when a range check refuses a value. Outputs are written only on success. Malformed
/// replies end in the exceptions of reply_parsers.h. Calls on one object are serialized by the caller.
class InstBase {
  public:
    InstBase(const InstBase&) = delete;
    InstBase& operator=(const InstBase&) = delete;
    virtual ~InstBase() = default;

    // --- Life cycle and raw access
    virtual ViUInt32 GetTimeout() const = 0;                ///< I/O time-out in ms
    virtual ViStatus SetTimeout(ViUInt32 milliseconds) = 0; ///< VISA's status
    virtual ViStatus Open(const ConnectionRecord& record) = 0;
    virtual ViStatus Close() = 0; ///< VISA's status; 0 when closed already
    [[nodiscard]] virtual bool IsOpen() const = 0;
    virtual ViStatus WriteRaw(std::string_view command) = 0;                     ///< always 0, deliberately
    virtual ViStatus QueryRaw(std::string_view command, std::string& reply) = 0; ///< always 0, deliberately
    [[nodiscard]] virtual std::shared_ptr<Identity> GetIdentity() const { return identity_; }

    // --- IEEE 488.2 common commands, limits, status registers, error queue
    virtual ViStatus SendClear() = 0;
    virtual ViStatus SendReset() = 0;
    virtual ViStatus QueryEventStatus(std::uint32_t& value) = 0;
    [[nodiscard]] virtual const ChannelLimits& GetChannelLimits(ChannelNumber channel) const {
        return LimitsOf(channel);
    }
    virtual ViStatus QueryQuestionableCondition(ChannelNumber channel, std::int32_t& value) = 0;
    virtual ViStatus QueryQuestionableEvent(ChannelNumber channel, std::int32_t& value) = 0;
    /// Next entry of the instrument's error queue. Returns 0 over every interface, or IVI_ERROR_CANNOT_RECOVER with
    /// both outputs untouched when the reply has not exactly two fields.
    virtual ViStatus QueryError(std::int32_t& code, std::string& message) = 0;

    // --- Source: volts, amperes
    virtual ViStatus SetVoltage(ChannelNumber channel, double volts) = 0;
    virtual ViStatus GetVoltage(ChannelNumber channel, double& volts) = 0;
    virtual ViStatus SetOverVoltageLevel(ChannelNumber channel, double volts) = 0;
    virtual ViStatus GetOverVoltageLevel(ChannelNumber channel, double& volts) = 0;
    virtual ViStatus SetOverVoltageEnabled(ChannelNumber channel, bool enabled) = 0;
    virtual ViStatus GetOverVoltageEnabled(ChannelNumber channel, bool& enabled) = 0;
    virtual ViStatus SetCurrent(ChannelNumber channel, double amperes) = 0;
    virtual ViStatus GetCurrent(ChannelNumber channel, double& amperes) = 0;
    virtual ViStatus SetOverCurrentLevel(ChannelNumber channel, double amperes) = 0;
    virtual ViStatus GetOverCurrentLevel(ChannelNumber channel, double& amperes) = 0;
    virtual ViStatus SetOverCurrentEnabled(ChannelNumber channel, bool enabled) = 0;
    virtual ViStatus GetOverCurrentEnabled(ChannelNumber channel, bool& enabled) = 0;

    // --- Output
    virtual ViStatus SetOutputEnabled(ChannelNumber channel, bool enabled) = 0;
    virtual ViStatus GetOutputEnabled(ChannelNumber channel, bool& enabled) = 0;
    virtual ViStatus SetAllOutputsOff() = 0;

  protected:
    /// `connection` is null for an instrument that performs no I/O.
    InstBase(std::shared_ptr<OpenVisa::VisaIO> connection, std::shared_ptr<Identity> identity);

    // --- Send and query primitives: VISA's statuses, VI_ERROR_INV_OBJECT without a connection
    ViStatus Write(std::string_view line);
    ViStatus Query(std::string_view line, std::string& reply);

    // --- Typed helpers, named by the way in which a command addresses its channel
    template <typename T>
    ViStatus Set(std::string_view header, const T& value) {
        return Command(header, value);
    }
    template <typename T>
    ViStatus Get(std::string_view header, T& value) {
        return Ask(StoreIn(value), header);
    }
    /// Channel in the header: ":SOUR2:VOLT 1.500000".
    template <typename T>
    ViStatus SetSource(std::string_view header, ChannelNumber channel, const T& value) {
        return Command(SourceHeader{header, channel}, value);
    }
    template <typename T>
    ViStatus GetSource(std::string_view header, ChannelNumber channel, T& value) {
        return Ask(StoreIn(value), SourceHeader{header, channel});
    }
    /// Channel as the first argument: ":OUTP:STAT CH1,ON".
    template <typename T>
    ViStatus SetForChannel(std::string_view header, ChannelNumber channel, const T& value) {
        return Command(header, static_cast<Channel>(channel), value);
    }
    template <typename T>
    ViStatus GetForChannel(std::string_view header, ChannelNumber channel, T& value) {
        return Ask(StoreIn(value), header, static_cast<Channel>(channel));
    }
    template <typename... Arguments>
    ViStatus SetArgs(std::string_view header, const Arguments&... arguments) {
        return Command(header, arguments...);
    }
    ViStatus Send(std::string_view header) { return Command(header); }

    /// Queries and hands the reply to `store`, which runs only when the exchange succeeded.
    template <typename Store, typename Header, typename... Arguments>
    ViStatus Ask(const Store& store, const Header& header, const Arguments&... arguments) {
        MakeQuery(line_, header, arguments...);
        reply_.clear();
        const auto status = IoStatus(Query(line_, reply_));
        if (status >= 0) {
            store(std::string_view(reply_));
        }
        return status;
    }

    std::shared_ptr<OpenVisa::VisaIO> connection_;
    std::shared_ptr<Identity> identity_;

  private:
    template <typename Header, typename... Arguments>
    ViStatus Command(const Header& header, const Arguments&... arguments) {
        FormatCommand(line_, header, arguments...);
        return IoStatus(Write(line_));
    }

    static ViStatus IoStatus(ViStatus visaStatus) { return visaStatus < 0 ? DRIVER_ERROR_IO : visaStatus; }

    static void Parse(std::string_view reply, bool& value) { value = Visa::parseBool(reply); }
    static void Parse(std::string_view reply, std::int32_t& value) { value = Visa::parseInt(reply); }
    static void Parse(std::string_view reply, double& value) { value = Visa::parseDouble(reply); }
    static void Parse(std::string_view reply, std::string& value) { value = reply; }
    template <KeywordEnumeration Enumeration>
    static void Parse(std::string_view reply, Enumeration& value) {
        value = ValueOf<Enumeration>(reply);
    }
    template <typename T>
    static auto StoreIn(T& value) {
        return [&value](std::string_view reply) { Parse(reply, value); };
    }

    // The texts of the exchange under way. They outlive it for their capacity only.
    std::string line_;
    std::string reply_;
};

} // namespace ORVA
