// The operations of the supply, and the helpers from which the real instrument builds them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>

#include "instrument/channel_limits.h"
#include "instrument/identity.h"
#include "instrument/keywords.h"
#include "instrument/reply_parsers.h"
#include "instrument/scpi_text.h"
#include "status/status.h"
#include "visa_io/visa_io.h"

namespace ORVA {

/// The arguments of InstBase::Open.
struct ConnectionRecord {
    std::string resource{}; ///< VISA resource string
    bool idQuery = false;
    bool reset = false;    ///< stored only: opening sends no reset
    std::string options{}; ///< option string, see text/option_string.h
};

/// An instrument: real (ORVA::TARNEX) or simulated (ORVA::TARNEXSimulator).
///
/// - Channels are numbered from 1. An unknown channel throws std::out_of_range("invalid map<K, T> key") before anything
///   is sent, if the channel is an argument of the command or a range is checked. A channel number in a header is sent
///   as it is; the instrument refuses it.
/// - Returns 0 or a positive VISA status on success, DRIVER_ERROR_IO when an exchange fails, and
///   DRIVER_ERROR_INVALID_PARAMETER when a range check refuses a value.
/// - Outputs are written only after a successful exchange (GetSelectedChannel always writes its output). The outputs of
///   a reply with several fields are written up to the first missing field.
/// - Malformed replies throw the exceptions of reply_parsers.h.
/// - Not thread-safe: the caller must serialize the calls on one object.
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
    virtual ViStatus WriteRaw(std::string_view command) = 0;                     ///< Required: always 0
    virtual ViStatus QueryRaw(std::string_view command, std::string& reply) = 0; ///< Required: always 0
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
    /// Reads the next entry of the instrument's error queue. Returns 0 over every interface. A reply that does not have
    /// exactly two fields is IVI_ERROR_CANNOT_RECOVER and leaves both outputs unchanged.
    virtual ViStatus QueryError(std::int32_t& code, std::string& message) = 0;

    // clang-format off
    // One line per command of the instrument; tarnex_supply.h shows what each one sends.
    // --- Channel selection and bleeder
    virtual ViStatus SelectChannel(ChannelNumber ch) = 0;
    virtual ViStatus GetSelectedChannel(ChannelNumber& ch) = 0;
    virtual ViStatus SetBleeder(bool on) = 0;
    virtual ViStatus GetBleeder(bool& on) = 0;

    // --- Source: volts, amperes, seconds
    virtual ViStatus SetVoltage(ChannelNumber ch, double volts) = 0;
    virtual ViStatus GetVoltage(ChannelNumber ch, double& volts) = 0;
    virtual ViStatus SetOverVoltageLevel(ChannelNumber ch, double volts) = 0;
    virtual ViStatus GetOverVoltageLevel(ChannelNumber ch, double& volts) = 0;
    virtual ViStatus SetOverVoltageEnabled(ChannelNumber ch, bool on) = 0;
    virtual ViStatus GetOverVoltageEnabled(ChannelNumber ch, bool& on) = 0;
    virtual ViStatus SetRemoteSense(ChannelNumber ch, bool on) = 0;
    virtual ViStatus GetRemoteSense(ChannelNumber ch, bool& on) = 0;
    virtual ViStatus SetCurrent(ChannelNumber ch, double amperes) = 0;
    virtual ViStatus GetCurrent(ChannelNumber ch, double& amperes) = 0;
    virtual ViStatus SetOverCurrentLevel(ChannelNumber ch, double amperes) = 0;
    virtual ViStatus GetOverCurrentLevel(ChannelNumber ch, double& amperes) = 0;
    virtual ViStatus SetOverCurrentEnabled(ChannelNumber ch, bool on) = 0;
    virtual ViStatus GetOverCurrentEnabled(ChannelNumber ch, bool& on) = 0;
    virtual ViStatus SetOverCurrentDelay(ChannelNumber ch, double seconds) = 0;
    virtual ViStatus GetOverCurrentDelay(ChannelNumber ch, double& seconds) = 0;
    virtual ViStatus SetOverCurrentDelayMode(ChannelNumber ch, ProtectionDelayMode mode) = 0;
    virtual ViStatus GetOverCurrentDelayMode(ChannelNumber ch, ProtectionDelayMode& mode) = 0;

    // --- Output and its protections. SetOvp... and SetOcp... send ":OUTP:OVP" and ":OUTP:OCP", SetOverVoltage... and
    // SetOverCurrent... ":SOUR:VOLT:PROT" and ":SOUR:CURR:PROT": two headers of the same settings.
    virtual ViStatus SetOutputEnabled(ChannelNumber ch, bool on) = 0;
    virtual ViStatus GetOutputEnabled(ChannelNumber ch, bool& on) = 0;
    virtual ViStatus GetRegulationMode(ChannelNumber ch, RegulationMode& mode) = 0;
    virtual ViStatus SetOvpLevel(ChannelNumber ch, double volts) = 0;
    virtual ViStatus GetOvpLevel(ChannelNumber ch, double& volts) = 0;
    virtual ViStatus SetOvpEnabled(ChannelNumber ch, bool on) = 0;
    virtual ViStatus GetOvpEnabled(ChannelNumber ch, bool& on) = 0;
    virtual ViStatus SetOcpLevel(ChannelNumber ch, double amperes) = 0;
    virtual ViStatus GetOcpLevel(ChannelNumber ch, double& amperes) = 0;
    virtual ViStatus SetOcpEnabled(ChannelNumber ch, bool on) = 0;
    virtual ViStatus GetOcpEnabled(ChannelNumber ch, bool& on) = 0;
    virtual ViStatus SetOcpDelay(ChannelNumber ch, double seconds) = 0;
    virtual ViStatus GetOcpDelay(ChannelNumber ch, double& seconds) = 0;
    virtual ViStatus SetOcpDelayMode(ChannelNumber ch, ProtectionDelayMode mode) = 0;
    virtual ViStatus GetOcpDelayMode(ChannelNumber ch, ProtectionDelayMode& mode) = 0;
    virtual ViStatus SetPowerOnState(ChannelNumber ch, PowerOnState state) = 0;
    virtual ViStatus GetPowerOnState(ChannelNumber ch, PowerOnState& state) = 0;
    virtual ViStatus SetPairMode(ChannelNumber ch, PairMode mode) = 0;
    virtual ViStatus GetPairMode(ChannelNumber ch, PairMode& mode) = 0;
    virtual ViStatus SetOutputSense(ChannelNumber ch, bool on) = 0;
    virtual ViStatus GetOutputSense(ChannelNumber ch, bool& on) = 0;
    virtual ViStatus SetTracking(ChannelNumber ch, bool on) = 0;
    virtual ViStatus GetTracking(ChannelNumber ch, bool& on) = 0;
    virtual ViStatus SetOffMode(ChannelNumber ch, OffMode mode) = 0;
    virtual ViStatus GetOffMode(ChannelNumber ch, OffMode& mode) = 0;

    // --- Measurement: volts, amperes, watts
    virtual ViStatus MeasureAll(ChannelNumber ch, double& volts, double& amperes, double& watts) = 0;
    virtual ViStatus MeasureVoltage(ChannelNumber ch, double& volts) = 0;
    virtual ViStatus MeasureCurrent(ChannelNumber ch, double& amperes) = 0;
    virtual ViStatus MeasurePower(ChannelNumber ch, double& watts) = 0;
    virtual ViStatus SetCurrentRange(ChannelNumber ch, CurrentRange range) = 0;
    virtual ViStatus GetCurrentRange(ChannelNumber ch, CurrentRange& range) = 0;
    virtual ViStatus SetCurrentRate(ChannelNumber ch, CurrentRate rate) = 0;
    virtual ViStatus GetCurrentRate(ChannelNumber ch, CurrentRate& rate) = 0;

    // --- List mode. The instrument's manual defines a group's three reals and the numbers of a status.
    virtual ViStatus SetListEnabled(bool on) = 0;
    virtual ViStatus GetListEnabled(bool& on) = 0;
    virtual ViStatus GetListStatus(ListState& state, double& seconds, std::int32_t& group, std::int32_t& cycle) = 0;
    virtual ViStatus SetListCycles(std::int32_t cycles) = 0;
    virtual ViStatus GetListCycles(std::int32_t& cycles) = 0;
    virtual ViStatus SetListEndState(ListEndState state) = 0;
    virtual ViStatus GetListEndState(ListEndState& state) = 0;
    virtual ViStatus GetListGroupCount(std::int32_t& count) = 0;
    virtual ViStatus InsertListGroup(std::int32_t index) = 0;
    virtual ViStatus DeleteListGroup(std::uint32_t index) = 0;
    virtual ViStatus ClearListGroups() = 0;
    virtual ViStatus SetListGroup(std::uint32_t index, double first, double second, double third) = 0;
    virtual ViStatus GetListGroup(std::uint32_t index, double& first, double& second, double& third) = 0;

    // --- List templates
    virtual ViStatus SetListTemplate(ListTemplate shape) = 0;
    virtual ViStatus GetListTemplate(ListTemplate& shape) = 0;
    virtual ViStatus SetListTemplateObject(ListTemplateObject object, double value) = 0;
    virtual ViStatus GetListTemplateObject(ListTemplateObject& object, double& value) = 0;
    virtual ViStatus SetListTemplateMax(double value) = 0;
    virtual ViStatus GetListTemplateMax(double& value) = 0;
    virtual ViStatus SetListTemplateMin(double value) = 0;
    virtual ViStatus GetListTemplateMin(double& value) = 0;
    virtual ViStatus SetListTemplatePeriod(double seconds) = 0;
    virtual ViStatus GetListTemplatePeriod(double& seconds) = 0;
    virtual ViStatus SetListTemplateInterval(double seconds) = 0;
    virtual ViStatus GetListTemplateInterval(double& seconds) = 0;
    virtual ViStatus SetListTemplateCycles(std::int32_t cycles) = 0;
    virtual ViStatus GetListTemplateCycles(std::int32_t& cycles) = 0;
    virtual ViStatus SetListTemplateInverted(bool on) = 0;
    virtual ViStatus GetListTemplateInverted(bool& on) = 0;
    virtual ViStatus SetListTemplateWidth(double seconds) = 0;
    virtual ViStatus GetListTemplateWidth(double& seconds) = 0;
    virtual ViStatus SetListTemplatePulseCount(std::int32_t pulses) = 0;
    virtual ViStatus GetListTemplatePulseCount(std::int32_t& pulses) = 0;
    virtual ViStatus SetListTemplateSymmetry(std::int32_t percent) = 0;
    virtual ViStatus GetListTemplateSymmetry(std::int32_t& percent) = 0;
    virtual ViStatus SetListTemplateStairs(std::int32_t stairs) = 0;
    virtual ViStatus GetListTemplateStairs(std::int32_t& stairs) = 0;
    virtual ViStatus SetListTemplateExpPower(std::int32_t value) = 0;
    virtual ViStatus GetListTemplateExpPower(std::int32_t& value) = 0;
    virtual ViStatus SetListTemplateExpRate(std::int32_t value) = 0;
    virtual ViStatus GetListTemplateExpRate(std::int32_t& value) = 0;
    virtual ViStatus GetListTemplatePoints(std::int32_t& points) = 0;
    virtual ViStatus ConstructListTemplate(std::uint32_t index) = 0;

    // --- Delay mode
    virtual ViStatus SetDelayEnabled(bool on) = 0;
    virtual ViStatus GetDelayEnabled(bool& on) = 0;
    virtual ViStatus GetDelayStatus(DelayState& state, double& seconds, std::int32_t& group, std::int32_t& cycle) = 0;
    virtual ViStatus SetDelayCycles(std::int32_t cycles) = 0;
    virtual ViStatus GetDelayCycles(std::int32_t& cycles) = 0;
    virtual ViStatus SetDelayEndState(DelayEndState state) = 0;
    virtual ViStatus GetDelayEndState(DelayEndState& state) = 0;
    virtual ViStatus GetDelayGroupCount(std::int32_t& count) = 0;
    virtual ViStatus InsertDelayGroup(std::int32_t index) = 0;
    virtual ViStatus DeleteDelayGroup(std::int32_t index) = 0;
    virtual ViStatus ClearDelayGroups() = 0;
    virtual ViStatus SetDelayGroup(std::uint32_t index, bool on, double seconds) = 0;
    virtual ViStatus GetDelayGroup(std::uint32_t index, bool& on, double& seconds) = 0;

    // --- Delay patterns
    virtual ViStatus SetDelayGenerateMode(DelayGenerateMode mode) = 0;
    virtual ViStatus GetDelayGenerateMode(DelayGenerateMode& mode) = 0;
    virtual ViStatus SetDelayPattern(DelayPattern pattern) = 0;
    virtual ViStatus GetDelayPattern(DelayPattern& pattern) = 0;
    virtual ViStatus SetDelayGeneratePoints(std::int32_t points) = 0;
    virtual ViStatus GetDelayGeneratePoints(std::int32_t& points) = 0;
    virtual ViStatus SetDelayOnTime(double seconds) = 0;
    virtual ViStatus GetDelayOnTime(double& seconds) = 0;
    virtual ViStatus SetDelayOffTime(double seconds) = 0;
    virtual ViStatus GetDelayOffTime(double& seconds) = 0;
    virtual ViStatus SetDelayBaseTime(double seconds) = 0;
    virtual ViStatus GetDelayBaseTime(double& seconds) = 0;
    virtual ViStatus SetDelayStepTime(double seconds) = 0;
    virtual ViStatus GetDelayStepTime(double& seconds) = 0;
    virtual ViStatus ConstructDelayGroups(std::uint32_t index) = 0;

    // --- Trigger inputs
    virtual ViStatus SetTriggerInputEnabled(TriggerInput input, bool on) = 0;
    virtual ViStatus GetTriggerInputEnabled(TriggerInput input, bool& on) = 0;

    /// Switches off all outputs with one command. The supply has no query for it.
    virtual ViStatus SetAllOutputsOff() = 0;
    // clang-format on

    // --- Recovery. The defaults are those of an instrument without I/O.
    /// Returns the connection; null for an instrument without I/O. It may be replaced by Reopen.
    [[nodiscard]] OpenVisa::VisaIO* Connection() const { return connection_.get(); }
    /// Closes the connection, opens the resource of the last Open again and checks that the same instrument answers.
    /// Returns 0, VISA's status, or IVI_ERROR_ID_QUERY_FAILED for another instrument.
    virtual ViStatus Reopen() { return VI_SUCCESS; }
    /// Sets or removes (no callback) the trace of the traffic, for this and every later connection.
    virtual void SetTrace(const OpenVisa::Trace& /*trace*/) {}
    /// Reads the identity and compares it with that of the last Open, skipping late replies to earlier queries.
    virtual ViStatus VerifyIdentity() { return VI_SUCCESS; }

  protected:
    /// `connection` is null for an instrument without I/O.
    InstBase(std::shared_ptr<OpenVisa::VisaIO> connection, std::shared_ptr<Identity> identity);

    // --- Send and query primitives: return VISA's status, VI_ERROR_INV_OBJECT without a connection
    ViStatus Write(std::string_view line);
    ViStatus Query(std::string_view line, std::string& reply);

    // --- Typed helpers, named after the way in which a command addresses its channel
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
    /// Queries one value with an argument: ":TRIG:IN:ENAB? D4".
    template <typename Argument, typename T>
    ViStatus GetIndexed(std::string_view header, const Argument& argument, T& value) {
        return Ask(StoreIn(value), header, argument);
    }
    template <typename... Arguments>
    ViStatus SetArgs(std::string_view header, const Arguments&... arguments) {
        return Command(header, arguments...);
    }
    ViStatus Send(std::string_view header) { return Command(header); }

    /// The arguments of a query with several outputs.
    template <typename... Arguments>
    static std::tuple<Arguments...> With(const Arguments&... arguments) {
        return {arguments...};
    }
    /// Parses a reply of several fields in order. Ignores further fields. A missing field throws
    /// std::out_of_range("invalid vector subscript") after the outputs before it have been written.
    /// Required: writes the number of expected fields to standard output first.
    template <typename... Arguments, typename... Outputs>
    ViStatus GetFields(std::string_view header, const std::tuple<Arguments...>& arguments, Outputs&... outputs) {
        const auto store = [&](std::string_view reply) {
            AnnounceFields(sizeof...(Outputs));
            Visa::FieldReader fields(reply, ',', true);
            (Parse(fields.Next(), outputs), ...);
        };
        return std::apply([&](const auto&... each) { return Ask(store, header, each...); }, arguments);
    }

    /// Queries and calls `store(reply)` after a successful exchange.
    template <typename Store, typename Header, typename... Arguments>
    ViStatus Ask(const Store& store, const Header& header, const Arguments&... arguments) {
        MakeQuery(line_, header, arguments...);
        reply_.clear();
        const auto status = IoStatus(Query(line_, reply_));
        if (status >= 0) {
            // A malformed reply, for which `store` throws, may be the late reply to an earlier query.
            auto* const connection = connection_.get();
            const bool inStep = connection == nullptr || connection->isInStep();
            if (inStep && connection != nullptr) {
                connection->setInStep(false);
            }
            store(std::string_view(reply_));
            if (inStep && connection != nullptr) {
                connection->setInStep(true);
            }
        }
        return status;
    }

    /// Whether a reply must be a value as a whole. The driver's instruments accept a value with text behind it and take
    /// an unknown keyword for the lowest value; strict ones throw std::invalid_argument.
    [[nodiscard]] virtual bool IsStrict() const { return false; }

    /// Returns `reply`. Throws std::invalid_argument when the instrument is strict and `isWhole` refuses the reply.
    std::string_view Checked(std::string_view reply, bool (*isWhole)(std::string_view)) const {
        if (IsStrict() && !isWhole(reply)) {
            throw std::invalid_argument("malformed reply");
        }
        return reply;
    }

    std::shared_ptr<OpenVisa::VisaIO> connection_;
    std::shared_ptr<Identity> identity_;

  private:
    template <typename Header, typename... Arguments>
    ViStatus Command(const Header& header, const Arguments&... arguments) {
        FormatCommand(line_, header, arguments...);
        return IoStatus(Write(line_));
    }

    virtual void AnnounceFields(std::size_t expected);

    static ViStatus IoStatus(ViStatus visaStatus) { return visaStatus < 0 ? DRIVER_ERROR_IO : visaStatus; }

    void Parse(std::string_view reply, bool& value) const {
        value = Visa::parseBool(Checked(reply, Visa::IsWholeBool));
    }
    void Parse(std::string_view reply, std::int32_t& value) const {
        value = Visa::parseInt(Checked(reply, Visa::IsWholeInt));
    }
    void Parse(std::string_view reply, double& value) const {
        value = Visa::parseDouble(Checked(reply, Visa::IsWholeDouble));
    }
    void Parse(std::string_view reply, std::string& value) const { value = reply; }
    template <KeywordEnumeration Enumeration>
    void Parse(std::string_view reply, Enumeration& value) const {
        value = ValueOf<Enumeration>(Checked(reply, IsKeyword<Enumeration>));
    }
    template <typename T>
    auto StoreIn(T& value) const {
        return [this, &value](std::string_view reply) { Parse(reply, value); };
    }
    // The texts of the current exchange. They are members so that their memory is reused.
    std::string line_;
    std::string reply_;
};

} // namespace ORVA
