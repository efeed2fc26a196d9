// The model behind the commands: two channels, common settings, status, identity, and the operations of the command
// table.
#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/virtual_supply/channel.h"
#include "tools/virtual_supply/kinds.h"
#include "tools/virtual_supply/sequencer.h"
#include "tools/virtual_supply/status.h"

namespace virtual_supply {

/// The settings of the whole supply, with their values after power-on and "*RST".
struct CommonSettings {
    int selectedChannel = 1;
    bool bleeder = false;

    bool listEnabled = false;
    int listCycles = 1; // 0: without end
    int listEndState = 0;
    bool delayEnabled = false;
    int delayCycles = 1; // 0: without end
    int delayEndState = 0;
    std::array<bool, 4> triggerInputs{};
};

/// The arguments of an operation: its channel (0: none) and the values, parsed and checked according to its row in the
/// command table.
struct Arguments {
    int channel = 0;
    std::vector<double> values;
};

/// The fields of a reply, as many as the row in the command table has; empty for an operation that is not a query.
using Reply = std::vector<Value>;

using Clock = std::function<std::chrono::steady_clock::time_point()>;

class Instrument {
  public:
    /// `identity` is the reply to "*IDN?".
    Instrument(std::string identity, Clock clock);

    /// `number` is 1 or 2.
    Channel& ChannelAt(int number) { return channels_.at(static_cast<std::size_t>(number - 1)); }
    CommonSettings common;
    Status status;
    ListTemplate listTemplate;
    DelayTemplate delayTemplate;

    /// Advances the sequencers, the protections and the event registers to the present time.
    /// The caller must call it before and after every change.
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
    Stopwatch listWatch_;
    Progress listProgress_;
    GroupTable<DelayGroup> delay_;
    Stopwatch delayWatch_;
    Progress delayProgress_;
};

} // namespace virtual_supply
