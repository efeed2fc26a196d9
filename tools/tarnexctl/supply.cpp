#include "tools/tarnexctl/supply.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <iostream>
#include <span>

#include "tools/tarnexctl/number_text.h"
#include "tools/tarnexctl/resource.h"
#include "tools/tarnexctl/safe_text.h"

namespace tarnexctl {

namespace {

constexpr std::size_t kTextSize = 4096; // the longest text that the driver returns

ViInt32 ToMilliseconds(double seconds) { return static_cast<ViInt32>(std::lround(seconds * 1000.0)); }

/// Replaces channel numbers by physical names, also in a list: "1,2".
std::string Selector(const std::string& given) {
    std::string selector;
    std::size_t from = 0;
    for (;;) {
        const auto comma = std::min(given.find(',', from), given.size());
        const auto item = given.substr(from, comma - from);
        const bool isNumber = item.size() == 1 && item >= "1" && item <= std::to_string(TARNEXSUPPLY_CHANNEL_COUNT);
        selector += (from == 0 ? "" : ",") + (isNumber ? "OutputChannel" + item : item);
        if (comma == given.size()) {
            return selector;
        }
        from = comma + 1;
    }
}

void CheckRange(const std::string& channel, double value, double lowest, double highest, const std::string& unit) {
    if (!(value >= lowest && value <= highest)) {
        throw Failure(ExitCode::Usage, Plain(value) + unit + " is beyond the range of " + channel + ", " +
                                           Plain(lowest) + unit + " to " + Plain(highest) + unit);
    }
}

/// Returns a time in s as the first column of a trace.
std::string TraceTime(double seconds) {
    constexpr std::size_t kWidth = 12;
    const auto time = Fixed(seconds, 6);
    return std::string(kWidth - std::min(kWidth, time.size()), ' ') + time;
}

/// Prints a command or a reply on standard error: "    0.001234 > :OUTP:STAT? CH1".
void _VI_FUNC PrintTrace(void* /*context*/, ViReal64 seconds, ViBoolean sent, ViStatus status, const ViChar* text,
                         ViInt32 size) {
    std::string_view line(text, static_cast<std::size_t>(size));
    line = line.substr(0, line.find_last_not_of("\r\n") + 1);
    std::cerr << TraceTime(seconds) + (sent == VI_FALSE ? " < " : " > ") + Printable(line) +
                     (status < 0 ? " [" + StatusText(status) + ']' : "") + '\n';
}

Failure CannotOpen(const std::string& resource, ViStatus status, const std::string& description,
                   const std::string& why) {
    return StatusFailure("opening " + resource, status, description + (why.empty() ? "" : " (" + why + ')'));
}

/// Returns the resource that the configuration store has for that of the options; empty when it has none. Needs no
/// supply: a simulated session finds its settings in the same way.
std::string MappedResource(const CommonOptions& common) {
    ViSession session = VI_NULL;
    std::array<ViChar, kTextSize> text{};
    if (TARNEXSupply_Open(common.resource.c_str(), "Simulate=1", 0, &session) >= VI_SUCCESS) {
        TARNEX_GetAttributeViString(session, "", TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR, static_cast<ViInt32>(text.size()),
                                    text.data());
        TARNEXSupply_Close(session);
    }
    return text.data();
}

} // namespace

// Delegates, so that the destructor closes the session when a later step throws.
Supply::Supply(const CommonOptions& common) : Supply() {
    auto resource = common.resource;
    auto status = Open(common, resource);
    if (status == TARNEX_ERROR_IO) {
        auto description = Description(status); // before anything can replace the error record
        const auto mapped = MappedResource(common);
        if (!mapped.empty() && mapped != resource) {
            throw CannotOpen(resource + " as " + mapped, status, description, ExplainFailure(mapped, common.timeout));
        }
        if (const auto host = HostResource(resource); !host.empty()) {
            resource = host;
            status = Open(common, resource);
            description = Description(status);
        }
        if (status < VI_SUCCESS) {
            throw CannotOpen(resource, status, description, ExplainFailure(resource, common.timeout));
        }
    }
    Check(status, "opening " + resource);
    if (common.trace) {
        Call("starting the trace", &TARNEXSupply_Trace, &PrintTrace, nullptr);
    }
    const auto opened = Text(TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR);
    if (opened != resource) {
        std::cerr << "tarnexctl: the configuration store maps " + Printable(resource) + " to " + Printable(opened) +
                         '\n';
    }
}

ViStatus Supply::Open(const CommonOptions& common, const std::string& resource) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    const auto status =
        TARNEXSupply_Open(resource.c_str(), common.options.c_str(), ToMilliseconds(common.timeout), &session_);
    if (common.trace) { // the session reports its exchanges from now on, not those of its opening
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        std::cerr << TraceTime(seconds) + " opening " + Printable(resource) +
                         (status < 0 ? " [" + StatusText(status) + ']' : "") + '\n';
    }
    return status;
}

std::string Supply::Description(ViStatus status) const {
    std::array<ViChar, kTextSize> text{};
    TARNEX_GetError(session_, nullptr, static_cast<ViInt32>(text.size()), text.data());
    if (text.front() == '\0' && TARNEXSupply_ErrorMessage(status, text.data()) < 0) {
        return "unknown status";
    }
    return text.data();
}

void Supply::Check(ViStatus status, const std::string& doing) const {
    if (status < VI_SUCCESS) {
        throw StatusFailure(doing, status, Description(status));
    }
}

std::vector<std::string> Supply::Channels(const std::vector<std::string>& given) const {
    std::vector<ViInt32> numbers;
    for (const auto& element : given) {
        std::array<ViInt32, TARNEXSUPPLY_CHANNEL_COUNT> selected{};
        ViInt32 count = 0;
        Check(TARNEXSupply_ResolveChannels(session_, Selector(element).c_str(), TARNEXSUPPLY_CHANNEL_COUNT,
                                           selected.data(), &count),
              "channel '" + element + "'");
        for (const auto number : std::span(selected).first(static_cast<std::size_t>(count))) {
            if (std::find(numbers.begin(), numbers.end(), number) == numbers.end()) {
                numbers.push_back(number);
            }
        }
    }
    for (ViInt32 number = 1; given.empty() && number <= TARNEXSUPPLY_CHANNEL_COUNT; ++number) {
        numbers.push_back(number);
    }
    std::vector<std::string> names;
    for (const auto number : numbers) {
        std::array<ViChar, kTextSize> name{};
        Check(TARNEX_GetChannelName(session_, number, static_cast<ViInt32>(name.size()), name.data()),
              "reading the name of a channel");
        names.emplace_back(name.data());
    }
    return names;
}

std::string Supply::Channel(const std::string& given) const {
    const auto names = Channels({given});
    if (names.size() != 1) {
        throw Failure(ExitCode::Usage, "channel '" + given + "': this command takes exactly one channel");
    }
    return names.front();
}

void Supply::CheckVolts(const std::string& channel, double volts) const {
    const auto limits = LimitsOf(channel);
    CheckRange(channel, volts, limits.minVolts, limits.maxVolts, " V");
}

void Supply::CheckAmperes(const std::string& channel, double amperes) const {
    const auto limits = LimitsOf(channel);
    CheckRange(channel, amperes, limits.minAmperes, limits.maxAmperes, " A");
}

Supply::Limits Supply::LimitsOf(const std::string& channel) const {
    Limits limits{};
    Call("reading the limits of " + channel, &TARNEXSupply_GetLimits, channel.c_str(), &limits.minVolts,
         &limits.maxVolts, &limits.minAmperes, &limits.maxAmperes);
    return limits;
}

bool Supply::IsSimulated() const {
    ViBoolean simulated = VI_FALSE;
    Check(TARNEX_GetAttributeViBoolean(session_, "", TARNEX_ATTR_SIMULATE, &simulated), "reading the options");
    return simulated != VI_FALSE;
}

void Supply::ExpectOutput(const std::string& channel, bool on) const {
    ExpectSwitch(channel, "the output of " + channel, &TARNEXSupply_GetOutputEnabled, on);
}

void Supply::ExpectSwitch(const std::string& channel, const std::string& what,
                          ViStatus (*function)(ViSession, ViConstString, ViBoolean*), bool expected) const {
    if (!IsSimulated() && (Read(channel, function) != VI_FALSE) != expected) {
        throw Failure(ExitCode::SupplyFailed,
                      what + " is " + (expected ? "off" : "on") +
                          (expected ? ": a protection tripped, or the instrument did not execute the command"
                                    : ": the instrument did not execute the command"));
    }
}

void Supply::ExpectLevel(const std::string& channel, const std::string& what,
                         ViStatus (*function)(ViSession, ViConstString, ViReal64*), double expected) const {
    constexpr double kResolution = 0.005; // V or A
    if (IsSimulated()) {
        return;
    }
    const double level = Read(channel, function);
    if (!(std::abs(level - expected) <= kResolution)) {
        throw Failure(ExitCode::SupplyFailed, what + " is " + Fixed(level, 3) + ", not " + Fixed(expected, 3) +
                                                  ": the instrument did not execute the command");
    }
}

std::string Supply::Text(ViAttr attribute) const {
    std::array<ViChar, kTextSize> text{};
    Check(TARNEX_GetAttributeViString(session_, "", attribute, static_cast<ViInt32>(text.size()), text.data()),
          "reading a text");
    return text.data();
}

std::optional<std::string> Supply::Exchange(const std::string& command) const {
    const auto doing = "'" + command + "'";
    if (command.find('?') == std::string::npos) {
        Call(doing, &TARNEXSupply_Write, command.c_str());
        return std::nullopt;
    }
    std::array<ViChar, kTextSize> reply{};
    Call(doing, &TARNEXSupply_Query, command.c_str(), static_cast<ViInt32>(reply.size()), reply.data());
    return reply.data();
}

std::string Supply::Title() const {
    constexpr std::size_t kIdentityTextSize = 256;
    std::array<ViChar, kIdentityTextSize> manufacturer{};
    std::array<ViChar, kIdentityTextSize> model{};
    std::array<ViChar, kIdentityTextSize> serialNumber{};
    Call("reading the identity", &TARNEXSupply_GetIdentity, manufacturer.data(), model.data(), serialNumber.data(),
         nullptr);
    std::string title = std::string(manufacturer.data()) + ' ' + model.data();
    if (serialNumber.front() != '\0') {
        title += std::string(" ") + serialNumber.data();
    }
    const auto resource = Text(TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR); // empty in simulation
    return resource.empty() ? title : title + ", " + resource;
}

void Supply::EnsureOff(const std::string& channel, double giveUp, const std::string& earlier) const {
    const auto status = TARNEXSupply_EnsureOff(session_, channel.c_str(), ToMilliseconds(giveUp));
    if (status < VI_SUCCESS) {
        throw Failure(ExitCode::MayStillBeOn, earlier.empty() ? "switching " + channel + " off failed" : earlier,
                      "OUTPUT " + channel + " MAY STILL BE ON: " + Description(status));
    }
}

} // namespace tarnexctl
