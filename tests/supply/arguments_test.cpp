// Arguments that a function refuses, and replies that it does not accept.
#include <array>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "tests/supply/command_table.h"
#include "tests/supply/supply_fixture.h"

namespace supply_tests {
namespace {

class SupplyArguments : public SupplyOverDoubles {
  protected:
    void ExpectRefused(ViSession vi, ViStatus status, std::uint32_t code, const std::string& description) {
        EXPECT_EQ(Status(status), code);
        EXPECT_EQ(LastError(vi), (DriverError{code, description}));
        EXPECT_THAT(TakeWritten(), IsEmpty());
        EXPECT_EQ(LocksHeld(), 0);
    }
};

TEST_F(SupplyArguments, ThatAreNullResultsAreRefusedByName) {
    const auto vi = Open();
    for (const auto& row : kQueries) {
        for (std::size_t null = 0; null < row.results.size(); ++null) {
            SCOPED_TRACE(row.name);
            ExpectRefused(vi, row.withoutResult(vi, kFirst, null), kNullPointer,
                          "Null pointer passed for function 'TARNEXSupply_" + row.name + "', parameter '" +
                              row.results[null] + "'.");
        }
    }
}

TEST_F(SupplyArguments, ThatAreNullAreRefusedByTheOtherFunctions) {
    const auto vi = Open();
    std::array<ViChar, 256> text{};
    ViInt32 number = 77;
    ViReal64 real = 77.0;
    const auto refused = [&](ViStatus status, const std::string& function, const std::string& parameter) {
        SCOPED_TRACE(function);
        ExpectRefused(vi, status, kNullPointer,
                      "Null pointer passed for function 'TARNEXSupply_" + function + "', parameter '" + parameter +
                          "'.");
    };
    refused(TARNEXSupply_GetTimeout(vi, nullptr), "GetTimeout", "timeoutMs");
    refused(TARNEXSupply_Write(vi, nullptr), "Write", "command");
    refused(TARNEXSupply_Query(vi, nullptr, 256, text.data()), "Query", "command");
    refused(TARNEXSupply_Query(vi, "*IDN?", 256, nullptr), "Query", "reply");
    refused(TARNEXSupply_QueryError(vi, nullptr, 256, text.data()), "QueryError", "code");
    refused(TARNEXSupply_QueryError(vi, &number, 256, nullptr), "QueryError", "message");
    refused(TARNEXSupply_ResolveChannels(vi, kFirst, 2, nullptr, &number), "ResolveChannels", "channels");
    refused(TARNEXSupply_ResolveChannels(vi, kFirst, 2, &number, nullptr), "ResolveChannels", "count");
    refused(TARNEXSupply_GetLimits(vi, kFirst, nullptr, &real, &real, &real), "GetLimits", "minVolts");
    refused(TARNEXSupply_GetLimits(vi, kFirst, &real, nullptr, &real, &real), "GetLimits", "maxVolts");
    refused(TARNEXSupply_GetLimits(vi, kFirst, &real, &real, nullptr, &real), "GetLimits", "minAmperes");
    refused(TARNEXSupply_GetLimits(vi, kFirst, &real, &real, &real, nullptr), "GetLimits", "maxAmperes");
    EXPECT_EQ(Status(TARNEXSupply_ErrorMessage(VI_SUCCESS, nullptr)), kNullPointer);
    EXPECT_EQ(Status(TARNEXSupply_Open(kUsbResource, "", 0, nullptr)), kNullPointer);
    EXPECT_EQ(number, 77);
    EXPECT_EQ(real, 77.0);
}

using SetReal = ViStatus (*)(ViSession vi, ViReal64 value);

struct RealSetter {
    const char* name;
    SetReal set;
};

// clang-format off
const std::vector<RealSetter> kRealSetters{
    {"SetVoltage", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetVoltage(vi, kFirst, value); }},
    {"SetOverVoltageLevel", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetOverVoltageLevel(vi, kFirst, value); }},
    {"SetCurrent", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetCurrent(vi, kFirst, value); }},
    {"SetOverCurrentLevel", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetOverCurrentLevel(vi, kFirst, value); }},
    {"SetOverCurrentDelay", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetOverCurrentDelay(vi, kFirst, value); }},
    {"SetOvpLevel", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetOvpLevel(vi, kFirst, value); }},
    {"SetOcpLevel", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetOcpLevel(vi, kFirst, value); }},
    {"SetOcpDelay", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetOcpDelay(vi, kFirst, value); }},
    {"SetListGroup, first", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetListGroup(vi, 0, value, 1.0, 1.0); }},
    {"SetListGroup, second", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetListGroup(vi, 0, 1.0, value, 1.0); }},
    {"SetListGroup, third", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetListGroup(vi, 0, 1.0, 1.0, value); }},
    {"SetListTemplateObject", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetListTemplateObject(vi, TARNEXSUPPLY_VAL_LIST_OBJECT_VOLTAGE, value); }},
    {"SetListTemplateMax", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetListTemplateMax(vi, value); }},
    {"SetListTemplateMin", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetListTemplateMin(vi, value); }},
    {"SetListTemplatePeriod", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetListTemplatePeriod(vi, value); }},
    {"SetListTemplateInterval", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetListTemplateInterval(vi, value); }},
    {"SetListTemplateWidth", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetListTemplateWidth(vi, value); }},
    {"SetDelayGroup", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetDelayGroup(vi, 0, VI_TRUE, value); }},
    {"SetDelayOnTime", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetDelayOnTime(vi, value); }},
    {"SetDelayOffTime", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetDelayOffTime(vi, value); }},
    {"SetDelayBaseTime", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetDelayBaseTime(vi, value); }},
    {"SetDelayStepTime", [](ViSession vi, ViReal64 value) { return TARNEXSupply_SetDelayStepTime(vi, value); }},
};
// clang-format on

TEST_F(SupplyArguments, ThatAreNotFiniteAreRefusedInSimulationToo) {
    constexpr auto kInfinity = std::numeric_limits<double>::infinity();
    constexpr auto kNan = std::numeric_limits<double>::quiet_NaN();
    for (const auto* const options : {"", "Simulate=1"}) {
        const auto vi = Open(options);
        for (const auto& row : kRealSetters) {
            for (const auto value : {kInfinity, -kInfinity, kNan, -kNan}) {
                SCOPED_TRACE(row.name);
                ExpectRefused(vi, row.set(vi, value), kInvalidParameter, kInvalidParameterText);
            }
        }
    }
}

TEST_F(SupplyArguments, OutsideTheLimitsOfTheChannelAreRefused) {
    const auto vi = Open();
    for (const auto& [channel, value] :
         {std::pair{kFirst, 22.000001}, {kFirst, -0.000001}, {kSecond, 5.500001}, {kSecond, 1e300}}) {
        ExpectRefused(vi, TARNEXSupply_SetVoltage(vi, channel, value), kInvalidParameter, kInvalidParameterText);
        ExpectRefused(vi, TARNEXSupply_SetOverVoltageLevel(vi, channel, value), kInvalidParameter,
                      kInvalidParameterText);
        ExpectRefused(vi, TARNEXSupply_SetOvpLevel(vi, channel, value), kInvalidParameter, kInvalidParameterText);
    }
    for (const auto& [channel, value] :
         {std::pair{kFirst, 5.500001}, {kFirst, -1.0}, {kSecond, 16.800001}, {kSecond, -1e-300}}) {
        ExpectRefused(vi, TARNEXSupply_SetCurrent(vi, channel, value), kInvalidParameter, kInvalidParameterText);
        ExpectRefused(vi, TARNEXSupply_SetOverCurrentLevel(vi, channel, value), kInvalidParameter,
                      kInvalidParameterText);
        ExpectRefused(vi, TARNEXSupply_SetOcpLevel(vi, channel, value), kInvalidParameter, kInvalidParameterText);
    }
    EXPECT_EQ(TARNEXSupply_SetVoltage(vi, kFirst, 22.0), 0);
    EXPECT_EQ(TARNEXSupply_SetCurrent(vi, kSecond, 16.8), 0);
}

TEST_F(SupplyArguments, OutsideTheLimitsOfTheSecondChannelLeaveTheFirstOneChanged) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEXSupply_SetVoltage(vi, "OutputChannel1,OutputChannel2", 10.0)), kInvalidParameter);
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR1:VOLT 10.000000\n"));
    EXPECT_EQ(Status(TARNEXSupply_SetVoltage(vi, "OutputChannel2,OutputChannel1", 10.0)), kInvalidParameter);
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

struct IntegerSetter {
    const char* name;
    ViStatus (*set)(ViSession vi, ViInt32 value);
    ViInt32 lowest;
    ViInt32 highest;
};

// clang-format off
const std::vector<IntegerSetter> kEnumerationSetters{
    {"SetOverCurrentDelayMode", [](ViSession vi, ViInt32 value) { return TARNEXSupply_SetOverCurrentDelayMode(vi, kFirst, value); }, 0, 1},
    {"SetOcpDelayMode", [](ViSession vi, ViInt32 value) { return TARNEXSupply_SetOcpDelayMode(vi, kFirst, value); }, 0, 1},
    {"SetPowerOnState", [](ViSession vi, ViInt32 value) { return TARNEXSupply_SetPowerOnState(vi, kFirst, value); }, 0, 2},
    {"SetPairMode", [](ViSession vi, ViInt32 value) { return TARNEXSupply_SetPairMode(vi, kFirst, value); }, 0, 2},
    {"SetOffMode", [](ViSession vi, ViInt32 value) { return TARNEXSupply_SetOffMode(vi, kFirst, value); }, 0, 1},
    {"SetCurrentRange", [](ViSession vi, ViInt32 value) { return TARNEXSupply_SetCurrentRange(vi, kFirst, value); }, 0, 2},
    {"SetCurrentRate", [](ViSession vi, ViInt32 value) { return TARNEXSupply_SetCurrentRate(vi, kFirst, value); }, 0, 2},
    {"SetListEndState", [](ViSession vi, ViInt32 value) { return TARNEXSupply_SetListEndState(vi, value); }, 0, 1},
    {"SetListTemplate", [](ViSession vi, ViInt32 value) { return TARNEXSupply_SetListTemplate(vi, value); }, 0, 7},
    {"SetListTemplateObject", [](ViSession vi, ViInt32 value) { return TARNEXSupply_SetListTemplateObject(vi, value, 1.0); }, 0, 1},
    {"SetDelayEndState", [](ViSession vi, ViInt32 value) { return TARNEXSupply_SetDelayEndState(vi, value); }, 0, 2},
    {"SetDelayGenerateMode", [](ViSession vi, ViInt32 value) { return TARNEXSupply_SetDelayGenerateMode(vi, value); }, 0, 2},
    {"SetDelayPattern", [](ViSession vi, ViInt32 value) { return TARNEXSupply_SetDelayPattern(vi, value); }, 0, 1},
    {"SetTriggerInputEnabled", [](ViSession vi, ViInt32 value) { return TARNEXSupply_SetTriggerInputEnabled(vi, value, VI_TRUE); }, 1, 4},
};

const std::vector<IntegerSetter> kIndexed{
    {"InsertListGroup", [](ViSession vi, ViInt32 index) { return TARNEXSupply_InsertListGroup(vi, index); }, 0, 0},
    {"DeleteListGroup", [](ViSession vi, ViInt32 index) { return TARNEXSupply_DeleteListGroup(vi, index); }, 0, 0},
    {"SetListGroup", [](ViSession vi, ViInt32 index) { return TARNEXSupply_SetListGroup(vi, index, 1.0, 1.0, 1.0); }, 0, 0},
    {"GetListGroup", [](ViSession vi, ViInt32 index) { ViReal64 value = 0.0; return TARNEXSupply_GetListGroup(vi, index, &value, &value, &value); }, 0, 0},
    {"ConstructListTemplate", [](ViSession vi, ViInt32 index) { return TARNEXSupply_ConstructListTemplate(vi, index); }, 0, 0},
    {"InsertDelayGroup", [](ViSession vi, ViInt32 index) { return TARNEXSupply_InsertDelayGroup(vi, index); }, 0, 0},
    {"DeleteDelayGroup", [](ViSession vi, ViInt32 index) { return TARNEXSupply_DeleteDelayGroup(vi, index); }, 0, 0},
    {"SetDelayGroup", [](ViSession vi, ViInt32 index) { return TARNEXSupply_SetDelayGroup(vi, index, VI_TRUE, 1.0); }, 0, 0},
    {"GetDelayGroup", [](ViSession vi, ViInt32 index) { ViReal64 value = 0.0; ViBoolean on = 0; return TARNEXSupply_GetDelayGroup(vi, index, &on, &value); }, 0, 0},
    {"ConstructDelayGroups", [](ViSession vi, ViInt32 index) { return TARNEXSupply_ConstructDelayGroups(vi, index); }, 0, 0},
};
// clang-format on

TEST_F(SupplyArguments, ThatAreUnknownEnumerationValuesAreRefused) {
    const auto vi = Open();
    for (const auto& row : kEnumerationSetters) {
        SCOPED_TRACE(row.name);
        for (const auto value : {row.lowest - 1, row.highest + 1, -1, 77, std::numeric_limits<ViInt32>::min(),
                                 std::numeric_limits<ViInt32>::max()}) {
            ExpectRefused(vi, row.set(vi, value), kInvalidParameter, kInvalidParameterText);
        }
        for (auto value = row.lowest; value <= row.highest; ++value) {
            EXPECT_EQ(Status(row.set(vi, value)), kSuccess) << value;
            EXPECT_EQ(TakeWritten().size(), 1U);
        }
    }
    ViBoolean on = 77;
    ExpectRefused(vi, TARNEXSupply_GetTriggerInputEnabled(vi, 0, &on), kInvalidParameter, kInvalidParameterText);
    ExpectRefused(vi, TARNEXSupply_GetTriggerInputEnabled(vi, 5, &on), kInvalidParameter, kInvalidParameterText);
    EXPECT_EQ(on, 77);
}

TEST_F(SupplyArguments, ThatAreNegativeIndexesAreRefused) {
    const auto vi = Open();
    for (const auto& row : kIndexed) {
        SCOPED_TRACE(row.name);
        for (const auto index : {-1, std::numeric_limits<ViInt32>::min()}) {
            ExpectRefused(vi, row.set(vi, index), kInvalidParameter, kInvalidParameterText);
        }
    }
}

TEST_F(SupplyArguments, OfSwitchesAreOnForEveryValueButFalse) {
    const auto vi = Open();
    EXPECT_EQ(TARNEXSupply_SetOutputEnabled(vi, kFirst, 2), 0);
    EXPECT_EQ(TARNEXSupply_SetOutputEnabled(vi, kFirst, 0xFFFF), 0);
    EXPECT_EQ(TARNEXSupply_SetOutputEnabled(vi, kFirst, 0), 0);
    EXPECT_THAT(TakeWritten(), ElementsAre(":OUTP:STAT CH1,ON\n", ":OUTP:STAT CH1,ON\n", ":OUTP:STAT CH1,OFF\n"));
}

struct Selector {
    const char* text;
    std::uint32_t status;
};

TEST_F(SupplyArguments, ThatAreNoSelectorAreRefusedWithTheDriversStatuses) {
    const auto vi = Open();
    for (const auto& [text, expected] : {Selector{nullptr, 0xBFFA0044},
                                         {"", 0xBFFA0044},
                                         {"  ", 0xBFFA0044},
                                         {"OutputChannel3", 0xBFFA0067},
                                         {"OutputChannel1,OutputChannel1", 0xBFFA0066},
                                         {"OutputChannel1:OutputChannel2", 0xBFFA0063},
                                         {"OutputChannel1,", 0xBFFA0066},
                                         {"%s%n", 0xBFFA0066}}) {
        SCOPED_TRACE(text == nullptr ? "null" : text);
        // The driver's own function has the same status and the same description.
        EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, text, 1.0)), expected);
        const auto ofTheDriver = LastError(vi);
        for (const auto& row : kChannelSettings) {
            ExpectRefused(vi, row.call(vi, text), expected, ofTheDriver.description);
        }
        for (const auto& row : kQueries) {
            if (row.HasChannel()) {
                ExpectRefused(vi, row.leavesItsResults(vi, text), expected, ofTheDriver.description);
            }
        }
    }
}

TEST_F(SupplyArguments, ThatNameSeveralChannelsAreRefusedByFunctionsThatRead) {
    const auto vi = Open();
    for (const auto& row : kQueries) {
        for (const auto* const selector : {"OutputChannel1,OutputChannel2", "OutputChannel1-OutputChannel2"}) {
            if (row.HasChannel()) {
                SCOPED_TRACE(row.name);
                EXPECT_EQ(Status(row.leavesItsResults(vi, selector)), 0xBFFA0066);
            }
        }
    }
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(SupplyArguments, MayBeVirtualNames) {
    doubles::Store store;
    auto& session = store.driverSession.emplace();
    session.resource = kUsbResource;
    session.virtualNames = {{"Rails", "OutputChannel2,OutputChannel1", {}}, {"Core", "OutputChannel2", {}}};
    store.module.emplace().physicalNames = {{"OutputChannel1", "OutputChannel"}, {"OutputChannel2", "OutputChannel"}};
    doubles::TheConfigServer().Use(store);
    const auto vi = OpenOn("Bench");
    EXPECT_EQ(TARNEXSupply_SetOutputEnabled(vi, "Rails", VI_TRUE), 0);
    EXPECT_THAT(TakeWritten(), ElementsAre(":OUTP:STAT CH2,ON\n", ":OUTP:STAT CH1,ON\n"));
    Reply(":MEAS:VOLT? CH2", "1.2\n");
    ViReal64 volts = 0.0;
    EXPECT_EQ(TARNEXSupply_MeasureVoltage(vi, "Core", &volts), 0);
    EXPECT_EQ(volts, 1.2);
    std::array<ViInt32, 2> channels{};
    ViInt32 count = 0;
    EXPECT_EQ(TARNEXSupply_ResolveChannels(vi, "Rails", 2, channels.data(), &count), 0);
    EXPECT_EQ(count, 2);
    EXPECT_THAT(channels, ElementsAre(2, 1));
    // A recovery opens the resource of the store's hardware asset again.
    Fail("viWrite", 0xBFFF00A6);
    EXPECT_EQ(Status(TARNEXSupply_SetBleeder(vi, VI_TRUE)), kIo);
    Fail("viClear", 0xBFFF003E);
    EXPECT_EQ(TARNEXSupply_SetBleeder(vi, VI_TRUE), 0);
    EXPECT_EQ(doubles::TheVisa().Opened().back().name, kUsbResource);
}

class SupplyReplies : public SupplyOverDoubles {};

/// Malformed for a switch, a number, a keyword and several fields.
const std::vector<std::string> kMalformedReplies{
    "",    " ",  "garbage", "1-2", "1 2", "12x", "0x10",  "ONX", "on",   "+",   "-",   "CV1", "nan",     "inf",
    "--5", "1,", ",",       ".",   "e5",  "1e",  "1.5.2", "%s",  "\r\r", "\t5", "CH3", "?",   "RUNNINGX"};

TEST_F(SupplyReplies, ThatAreMalformedAreAStatusWithCommandAndReply) {
    for (const auto& row : kQueries) {
        SCOPED_TRACE(row.name);
        const auto vi = Open();
        for (const auto& reply : kMalformedReplies) {
            SCOPED_TRACE(reply);
            Reply(row.line, reply + "\n");
            EXPECT_EQ(Status(row.leavesItsResults(vi, kFirst)), kMalformed);
            auto shown = reply;
            if (shown.ends_with('\r')) {
                shown.pop_back();
            }
            // A description shows a control character as '?'.
            if (reply == "\r\r") {
                shown = "?";
            } else if (reply == "\t5") {
                shown = "?5";
            }
            EXPECT_EQ(LastError(vi), (DriverError{kMalformed, "Unexpected response from instrument.  Command '" +
                                                                  row.line + "', reply '" + shown + "'."}));
            EXPECT_EQ(LocksHeld(), 0);
        }
        TARNEX_close(vi);
    }
}

TEST_F(SupplyReplies, ThatMissAFieldAreMalformed) {
    const auto vi = Open();
    std::size_t rows = 0;
    for (const auto& row : kQueries) {
        for (auto comma = row.reply.rfind(','); comma != std::string::npos && comma != 0;
             comma = row.reply.rfind(',', comma - 1)) {
            SCOPED_TRACE(row.name);
            ++rows;
            for (const auto* const end : {"", ","}) {
                Reply(row.line, row.reply.substr(0, comma) + end + "\n");
                EXPECT_EQ(Status(row.leavesItsResults(vi, kFirst)), kMalformed);
            }
        }
    }
    EXPECT_EQ(rows, 12U); // commas in all replies
}

TEST_F(SupplyReplies, ThatAreLongAreShownByTheirFirstFortyCharacters) {
    const auto vi = Open();
    Reply(":MEAS:VOLT? CH1", std::string(41, 'x') + "\n");
    ViReal64 volts = 77.0;
    EXPECT_EQ(Status(TARNEXSupply_MeasureVoltage(vi, kFirst, &volts)), kMalformed);
    EXPECT_EQ(LastError(vi).description, "Unexpected response from instrument.  Command ':MEAS:VOLT? CH1', reply '" +
                                             std::string(40, 'x') + "'....");
    Reply(":MEAS:VOLT? CH1", std::string(1500, '1') + "\n");
    EXPECT_EQ(Status(TARNEXSupply_MeasureVoltage(vi, kFirst, &volts)), kMalformed);
    EXPECT_EQ(LastError(vi).description, "Unexpected response from instrument.  Command ':MEAS:VOLT? CH1', reply '" +
                                             std::string(40, '1') + "'....");
    EXPECT_EQ(volts, 77.0);
}

TEST_F(SupplyReplies, ThatAreLargerThanTheirTypeAreMalformed) {
    const auto vi = Open();
    ViReal64 volts = 77.0;
    ViInt32 count = 77;
    Reply(":MEAS:VOLT? CH1", "1e999\n");
    EXPECT_EQ(Status(TARNEXSupply_MeasureVoltage(vi, kFirst, &volts)), kMalformed);
    Reply(":LIST:GROUP:NUM?", "2147483648\n");
    EXPECT_EQ(Status(TARNEXSupply_GetListGroupCount(vi, &count)), kMalformed);
    EXPECT_EQ(volts, 77.0);
    EXPECT_EQ(count, 77);
}

TEST_F(SupplyReplies, ThatFailToArriveLeaveTheResults) {
    for (const auto& row : kQueries) {
        SCOPED_TRACE(row.name);
        const auto vi = Open();
        Reply(row.line, row.reply + "\n");
        Fail("viWrite", 0xBFFF00A6);
        EXPECT_EQ(Status(row.leavesItsResults(vi, kFirst)), kIo);
        EXPECT_EQ(LastError(vi), (DriverError{kIo, "I/O error.  Command '" + row.line + "', VISA status 0xBFFF00A6."}));
        Fail("viRead", kVisaTimeout, 2); // after the recovery's
        EXPECT_EQ(Status(row.leavesItsResults(vi, kFirst)), kTimeout);
        EXPECT_EQ(LastError(vi),
                  (DriverError{kTimeout, "I/O timeout error.  Command '" + row.line + "', VISA status 0xBFFF0015."}));
        EXPECT_EQ(LocksHeld(), 0);
        TARNEX_close(vi);
    }
}

TEST_F(SupplyReplies, AreNotAwaitedAfterAFailedWrite) {
    for (const auto& row : kSettings) {
        SCOPED_TRACE(row.name);
        const auto vi = Open();
        Fail("viWrite", kVisaTimeout);
        EXPECT_EQ(Status(row.call(vi)), kTimeout);
        EXPECT_EQ(LastError(vi),
                  (DriverError{kTimeout, "I/O timeout error.  Command '" + row.line + "', VISA status 0xBFFF0015."}));
        TARNEX_close(vi);
    }
    for (const auto& row : kChannelSettings) {
        SCOPED_TRACE(row.name);
        const auto vi = Open();
        Fail("viWrite", 0xBFFF003E, 2);
        EXPECT_EQ(Status(row.call(vi, "OutputChannel1,OutputChannel2")), kIo);
        EXPECT_EQ(LastError(vi),
                  (DriverError{kIo, "I/O error.  Command '" + row.lineForSecond + "', VISA status 0xBFFF003E."}));
        TARNEX_close(vi);
    }
}

TEST_F(SupplyReplies, OfTheErrorQueueMayContainCommas) {
    const auto vi = Open();
    std::array<ViChar, 64> message{};
    ViInt32 code = 77;
    const auto query = [&](const std::string& reply, ViInt32 size = 64) {
        Reply(":SYSTem:ERRor?", reply + "\n");
        return Status(TARNEXSupply_QueryError(vi, &code, size, message.data()));
    };
    EXPECT_EQ(query("0,\"No error\""), kSuccess);
    EXPECT_EQ(code, 0);
    EXPECT_STREQ(message.data(), "No error");
    EXPECT_EQ(query("-222,\"Data out of range, channel 1\""), kSuccess);
    EXPECT_EQ(code, -222);
    EXPECT_STREQ(message.data(), "Data out of range, channel 1");
    EXPECT_EQ(query("+5, plain \r"), kSuccess);
    EXPECT_EQ(code, 5);
    EXPECT_STREQ(message.data(), "plain");
    EXPECT_EQ(query("-113,\"Undefined header\"", 6), kSuccess);
    EXPECT_STREQ(message.data(), "Undef");
    EXPECT_THAT(TakeWritten(),
                ElementsAre(":SYSTem:ERRor?\n", ":SYSTem:ERRor?\n", ":SYSTem:ERRor?\n", ":SYSTem:ERRor?\n"));
    for (const auto* const malformed : {"", "garbage", "-113", ",\"x\"", "1-2,\"x\"", "99999999999,\"x\""}) {
        EXPECT_EQ(query(malformed), kMalformed) << malformed;
        EXPECT_EQ(code, -113);
        EXPECT_STREQ(message.data(), "Undef");
    }
    EXPECT_EQ(query("0,\"No error\"", 0), kInvalidParameter);
    EXPECT_EQ(query("0,\"No error\"", -1), kInvalidParameter);
}

} // namespace
} // namespace supply_tests
