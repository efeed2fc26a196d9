// The supply behind its commands: two channels, the settings they share, status, identity, and the operations that
// the command table names.
#pragma once

#include "tools/virtual_supply/channel.h"
#include "tools/virtual_supply/kinds.h"
#include "tools/virtual_supply/sequencer.h"
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

    bool list_enabled = false;
    int list_cycles = 1; // 0: for ever
    int list_end_state = 0;
    bool delay_enabled = false;
    int delay_cycles = 1; // 0: for ever
    int delay_end_state = 0;
    std::array<bool, 4> trigger_inputs{};
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
    ListTemplate list_template;
    DelayTemplate delay_template;

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

    Reply ListStatus(const Arguments& arguments);
    Reply ListGroupCount(const Arguments& arguments);
    Reply InsertListGroup(const Arguments& arguments);
    Reply DeleteListGroup(const Arguments& arguments);
    Reply ClearListGroups(const Arguments& arguments);
    Reply SetListGroup(const Arguments& arguments);
    Reply GetListGroup(const Arguments& arguments);
    Reply SetListObject(const Arguments& arguments);
    Reply GetListObject(const Arguments& arguments);
    Reply ListTemplatePoints(const Arguments& arguments);
    Reply ConstructList(const Arguments& arguments);

    Reply DelayStatus(const Arguments& arguments);
    Reply DelayGroupCount(const Arguments& arguments);
    Reply InsertDelayGroup(const Arguments& arguments);
    Reply DeleteDelayGroup(const Arguments& arguments);
    Reply ClearDelayGroups(const Arguments& arguments);
    Reply SetDelayGroup(const Arguments& arguments);
    Reply GetDelayGroup(const Arguments& arguments);
    Reply ConstructDelay(const Arguments& arguments);

    Reply EnableTriggerInput(const Arguments& arguments);
    Reply TriggerInputEnabled(const Arguments& arguments);

  private:
    void RunList(std::chrono::steady_clock::time_point now);
    void RunDelay(std::chrono::steady_clock::time_point now);

    std::string identity_;
    Clock clock_;
    std::array<Channel, kChannelCount> channels_{Channel(1), Channel(2)};
    GroupTable<ListGroup> list_;
    Stopwatch list_watch_;
    Progress list_progress_;
    GroupTable<DelayGroup> delay_;
    Stopwatch delay_watch_;
    Progress delay_progress_;
};

} // namespace virtual_supply
