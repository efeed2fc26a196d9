// A supply, through the functions of the supply library.
#pragma once

#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "include/TARNEX_supply.h"
#include "tools/tarnexctl/command.h"

namespace tarnexctl {

/// An open session; the destructor closes it. Every function throws Failure for a negative status.
class Supply {
  public:
    /// Opens the resource of the options. When the configuration store maps it to another one, prints on standard error
    /// which one it opened.
    explicit Supply(const CommonOptions& common);
    Supply(const Supply&) = delete;
    Supply& operator=(const Supply&) = delete;
    ~Supply() { TARNEXSupply_Close(session_); }

    [[nodiscard]] ViSession Handle() const { return session_; }

    /// Returns the physical names of the channels that `given` selects, in its order, each once; those of all channels
    /// when it is empty. An element is a channel number, a list of numbers ("1,2"), or a selector of the driver.
    [[nodiscard]] std::vector<std::string> Channels(const std::vector<std::string>& given) const;
    /// Returns the physical name of exactly one channel.
    [[nodiscard]] std::string Channel(const std::string& given) const;

    /// Throws Failure with ExitCode::Usage when a voltage in V, or a current in A, is beyond the limits of the channel.
    void CheckVolts(const std::string& channel, double volts) const;
    void CheckAmperes(const std::string& channel, double amperes) const;

    /// Throws Failure for a negative status. `doing` is the start of its text: "setting the voltage of OutputChannel1".
    void Check(ViStatus status, const std::string& doing) const;

    /// Calls `function(session, arguments...)`.
    template <typename... Parameters, typename... Arguments>
    void Call(const std::string& doing, ViStatus (*function)(ViSession, Parameters...), Arguments... arguments) const {
        Check(function(session_, arguments...), doing);
    }
    /// Sends a command of the instrument. Returns the reply when the command has a question mark.
    [[nodiscard]] std::optional<std::string> Exchange(const std::string& command) const;
    /// Reads one value of a channel.
    template <typename Value>
    [[nodiscard]] Value Read(const std::string& channel, ViStatus (*function)(ViSession, ViConstString, Value*)) const {
        Value value{};
        Check(function(session_, channel.c_str(), &value), "reading " + channel);
        return value;
    }
    /// Reads whether the output of a channel is on.
    [[nodiscard]] bool IsOn(const std::string& channel) const {
        return Read(channel, &TARNEXSupply_GetOutputEnabled) != VI_FALSE;
    }
    /// Reads back whether the output is on and throws Failure when it is not as expected. A simulated supply keeps no
    /// settings, so it is not asked.
    void ExpectOutput(const std::string& channel, bool on) const;
    /// Reads back a level and throws Failure when it differs from `expected` by more than the resolution of the
    /// instrument. `what` names it: "the voltage of OutputChannel1".
    void ExpectLevel(const std::string& channel, const std::string& what,
                     ViStatus (*function)(ViSession, ViConstString, ViReal64*), double expected) const;
    /// As ExpectLevel, for a switch.
    void ExpectSwitch(const std::string& channel, const std::string& what,
                      ViStatus (*function)(ViSession, ViConstString, ViBoolean*), bool expected) const;
    [[nodiscard]] bool IsSimulated() const;

    /// Reads a text attribute of the driver.
    [[nodiscard]] std::string Text(ViAttr attribute) const;

    /// Returns who and where the supply is: "Keltor Technology TX4410 SN00000001, TCPIP0::192.168.1.20::5025::SOCKET".
    [[nodiscard]] std::string Title() const;

    /// Stops sequences, switches the output off and waits for the instrument's confirmation, with new connections when
    /// necessary, for at most `giveUp` seconds.
    /// On failure: throws Failure with ExitCode::MayStillBeOn and, as its last line, which output may be on and why.
    /// `earlier` is the text of the error before, if any.
    void EnsureOff(const std::string& channel, double giveUp, const std::string& earlier = {}) const;

  private:
    Supply() = default;

    struct Limits {
        ViReal64 minVolts;
        ViReal64 maxVolts;
        ViReal64 minAmperes;
        ViReal64 maxAmperes;
    };
    /// Opens the session, and prints how long it took if there is a trace.
    ViStatus Open(const CommonOptions& common, const std::string& resource);
    [[nodiscard]] Limits LimitsOf(const std::string& channel) const;
    /// Returns the description of the latest failure.
    [[nodiscard]] std::string Description(ViStatus status) const;

    ViSession session_ = VI_NULL;
};

/// Runs `body()`, which may switch the output on. However it ends, the output is off afterwards and the instrument has
/// confirmed it, or Failure has ExitCode::MayStillBeOn. The only exception: `body` returns and `keepsOutput()` is true.
template <typename Body, typename KeepsOutput>
void OffUnless(const Supply& supply, const std::string& channel, double giveUp, const Body& body,
               const KeepsOutput& keepsOutput) {
    try {
        body();
    } catch (const std::exception& failure) {
        supply.EnsureOff(channel, giveUp, failure.what());
        throw;
    }
    if (!keepsOutput()) {
        supply.EnsureOff(channel, giveUp);
    }
}

} // namespace tarnexctl
