#include "tools/tarnexctl/channels.h"
#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/driver_session.h"
#include "tools/tarnexctl/failure.h"
#include "tools/tarnexctl/report.h"

#include <array>

namespace tarnexctl {

namespace {

void SwitchOutputs(const Arguments& arguments, bool on) {
    const DriverSession session(arguments.resource, arguments.options);
    for (const auto& given : arguments.channels) {
        const auto channel = ChannelName(given);
        session.Check(TARNEX_ConfigureOutputEnabled(session.Handle(), channel.c_str(), on ? VI_TRUE : VI_FALSE),
                      "switching " + channel + (on ? " on" : " off"));
    }
}

} // namespace

int Identify(const Arguments& arguments, Console& console) {
    const DriverSession session(arguments.resource, arguments.options);
    Report report({{"manufacturer", "Manufacturer"},
                   {"model", "Model"},
                   {"firmware_revision", "Firmware"},
                   {"driver_revision", "Driver"},
                   {"resource", "Resource"}});
    report.Add({session.Text(TARNEX_ATTR_INSTRUMENT_MANUFACTURER), session.Text(TARNEX_ATTR_INSTRUMENT_MODEL),
                session.Text(TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION),
                session.Text(TARNEX_ATTR_SPECIFIC_DRIVER_REVISION), session.Text(TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR)});
    console.Print(arguments.json ? report.JsonLines() : report.List());
    return kDone;
}

// Protections first, then the limit, then the voltage: at no time is the load less protected than it will be.
int Set(const Arguments& arguments, Console& /*console*/) {
    if (!arguments.voltage && !arguments.current && arguments.at_limit.empty() && !arguments.ovp && !arguments.no_ovp) {
        throw Failure(kUsage, "set: give at least one of --voltage, --current, --at-limit, --ovp and --no-ovp");
    }
    const DriverSession session(arguments.resource, arguments.options);
    const ViSession vi = session.Handle();
    const auto name = ChannelName(arguments.channel);
    const char* const channel = name.c_str();
    if (arguments.ovp) {
        session.Check(TARNEX_ConfigureOVP(vi, channel, VI_TRUE, *arguments.ovp),
                      "setting the over-voltage protection of " + name);
    }
    if (arguments.no_ovp) {
        session.Check(TARNEX_SetAttributeViBoolean(vi, channel, TARNEX_ATTR_OVP_ENABLED, VI_FALSE),
                      "switching the over-voltage protection of " + name + " off");
    }
    if (arguments.current) {
        session.Check(TARNEX_SetAttributeViReal64(vi, channel, TARNEX_ATTR_CURRENT_LIMIT, *arguments.current),
                      "setting the current limit of " + name);
    }
    if (!arguments.at_limit.empty()) {
        const ViInt32 behavior = arguments.at_limit == "trip" ? TARNEX_VAL_CURRENT_TRIP : TARNEX_VAL_CURRENT_REGULATE;
        session.Check(TARNEX_SetAttributeViInt32(vi, channel, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, behavior),
                      "setting what " + name + " does at its current limit");
    }
    if (arguments.voltage) {
        session.Check(TARNEX_ConfigureVoltageLevel(vi, channel, *arguments.voltage), "setting the voltage of " + name);
    }
    return kDone;
}

int Get(const Arguments& arguments, Console& console) {
    const DriverSession session(arguments.resource, arguments.options);
    Report report({{"channel", "Channel"},
                   {"voltage_level", "Voltage/V", 4},
                   {"current_limit", "Limit/A", 4},
                   {"current_limit_behavior", "At limit"},
                   {"ovp_enabled", "OVP"},
                   {"ovp_limit", "OVP/V", 4},
                   {"output_enabled", "Output"},
                   {"regulation", "Mode"}});
    for (const auto& given : ChannelsOr(arguments.channels)) {
        const auto channel = ChannelName(given);
        const bool on = session.Boolean(channel, TARNEX_ATTR_OUTPUT_ENABLED);
        const auto behavior = session.Integer(channel, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR);
        Cell mode; // nothing is regulated while the output is off
        if (on) {
            mode = session.InState(channel, TARNEX_VAL_OUTPUT_CONSTANT_CURRENT) ? "CC" : "CV";
        }
        report.Add({channel, session.Real(channel, TARNEX_ATTR_VOLTAGE_LEVEL),
                    session.Real(channel, TARNEX_ATTR_CURRENT_LIMIT),
                    behavior == TARNEX_VAL_CURRENT_TRIP ? "trip" : "regulate",
                    session.Boolean(channel, TARNEX_ATTR_OVP_ENABLED), session.Real(channel, TARNEX_ATTR_OVP_LIMIT), on,
                    mode});
    }
    console.Print(arguments.json ? report.JsonArray() : report.Table());
    return kDone;
}

int On(const Arguments& arguments, Console& /*console*/) {
    SwitchOutputs(arguments, true);
    return kDone;
}

int Off(const Arguments& arguments, Console& /*console*/) {
    if (!arguments.channels.empty()) {
        SwitchOutputs(arguments, false);
        return kDone;
    }
    const DriverSession session(arguments.resource, arguments.options);
    session.Check(TARNEX_Disable(session.Handle()), "switching all outputs off");
    return kDone;
}

int ResetSupply(const Arguments& arguments, Console& /*console*/) {
    const DriverSession session(arguments.resource, arguments.options);
    session.Check(TARNEX_reset(session.Handle()), "resetting");
    return kDone;
}

int Errors(const Arguments& arguments, Console& console) {
    constexpr int kMost = 1000; // an instrument that never says 0 must not keep us
    const DriverSession session(arguments.resource, arguments.options);
    Report report({{"code", "Code"}, {"message", "Message"}});
    bool any = false;
    for (int i = 0; i < kMost; ++i) {
        ViInt32 code = 0;
        std::array<ViChar, 4096> text{};
        session.Check(TARNEX_error_query(session.Handle(), &code, text.data()), "reading the error queue");
        if (code == 0) {
            break;
        }
        std::string message = text.data();
        if (message.size() >= 2 && message.front() == '"' && message.back() == '"') {
            message = message.substr(1, message.size() - 2);
        }
        report.Add({std::int64_t{code}, message});
        any = true;
    }
    console.Print(arguments.json ? report.JsonArray() : any ? report.Table() : "No errors.\n");
    return kDone;
}

} // namespace tarnexctl
