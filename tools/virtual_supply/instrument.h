// The supply behind its commands: two channels, the settings they share, status, identity, and the operations that
// the command table names.
#pragma once

#include "tools/virtual_supply/channel.h"
#include "tools/virtual_supply/kinds.h"
#include "tools/virtual_supply/status.h"

#include <array>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace virtual_supply {

/// Settings that belong to no channel, at their values after power-on and "*RST".
struct CommonSettings {
    int selected_channel = 1;
    bool bleeder = false;
};

/// What an operation is called with: the channel it is for (0 when the command has none) and its arguments, parsed
/// and checked as its row in the command table says.
struct Arguments {
    int channel = 0;
    std::vector<double> values;
};

/// The fields of a reply, as many as the row in the command table says; none from an operation that is no query.
using Reply = std::vector<Value>;

using Clock = std::function<std::chrono::steady_clock::time_point()>;

class Instrument {
  public:
    /// `identity` is the whole answer to "*IDN?".
    Instrument(std::string identity, Clock clock);

    Channel& channel(int number) { return channels_.at(static_cast<std::size_t>(number - 1)); }
    CommonSettings common;
    Status status;

    /// Lets time pass: protections trip, event registers latch. To be called before and after every change.
    void Update();

    Reply Identify(const Arguments& arguments);
    Reply Clear(const Arguments& arguments);
    Reply Reset(const Arguments& arguments);
    Reply EventStatus(const Arguments& arguments);
    Reply OperationComplete(const Arguments& arguments);
    Reply NextError(const Arguments& arguments);
    Reply QuestionableCondition(const Arguments& arguments);
    Reply QuestionableEvent(const Arguments& arguments);
    Reply SwitchAllOutputs(const Arguments& arguments);
    Reply RegulationMode(const Arguments& arguments);
    Reply MeasureVoltage(const Arguments& arguments);
    Reply MeasureCurrent(const Arguments& arguments);
    Reply MeasurePower(const Arguments& arguments);
    Reply MeasureAll(const Arguments& arguments);

  private:
    std::string identity_;
    Clock clock_;
    std::array<Channel, kChannelCount> channels_{Channel(1), Channel(2)};
};

} // namespace virtual_supply
