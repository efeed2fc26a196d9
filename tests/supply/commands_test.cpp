// What every function sends and reads, in instruments and in simulation.
#include <array>
#include <limits>
#include <set>
#include <string>

#include "tests/supply/command_table.h"
#include "tests/supply/declared_names.h"
#include "tests/supply/supply_fixture.h"

namespace supply_tests {
namespace {

class SupplyCommands : public SupplyOverDoubles {};

/// Functions that the tables do not hold. Each is tested by its name in this program.
const std::set<std::string> kTestedOneByOne{"Open",       "Close",       "GetTimeout",  "SetTimeout",
                                            "Write",      "Query",       "Trace",       "ErrorMessage",
                                            "QueryError", "GetLimits",   "GetIdentity", "ResolveChannels",
                                            "UploadList", "UploadDelay", "ReadStates",  "EnsureOff"};

TEST_F(SupplyCommands, AreAllListedInTheseTests) {
    std::set<std::string> tested = kTestedOneByOne;
    for (const auto& row : kSettings) {
        EXPECT_TRUE(tested.insert(row.name).second) << row.name;
    }
    for (const auto& row : kChannelSettings) {
        EXPECT_TRUE(tested.insert(row.name).second) << row.name;
    }
    for (const auto& row : kQueries) {
        EXPECT_TRUE(tested.insert(row.name).second) << row.name;
    }
    const std::set<std::string> declared(kDeclaredNames.begin(), kDeclaredNames.end());
    EXPECT_EQ(tested, declared);
}

TEST_F(SupplyCommands, SendExactlyTheirBytes) {
    const auto vi = Open();
    for (const auto& row : kSettings) {
        EXPECT_EQ(Status(row.call(vi)), kSuccess) << row.name;
        EXPECT_THAT(TakeWritten(), ElementsAre(row.line + "\n")) << row.name;
    }
    for (const auto& row : kChannelSettings) {
        EXPECT_EQ(Status(row.call(vi, kFirst)), kSuccess) << row.name;
        EXPECT_THAT(TakeWritten(), ElementsAre(row.lineForFirst + "\n")) << row.name;
    }
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(SupplyCommands, SendOneCommandPerSelectedChannelInTheOrderOfTheSelector) {
    const auto vi = Open();
    for (const auto& row : kChannelSettings) {
        EXPECT_EQ(Status(row.call(vi, "OutputChannel2,OutputChannel1")), kSuccess) << row.name;
        EXPECT_THAT(TakeWritten(), ElementsAre(row.lineForSecond + "\n", row.lineForFirst + "\n")) << row.name;
        EXPECT_EQ(Status(row.call(vi, "OutputChannel1-OutputChannel2")), kSuccess) << row.name;
        EXPECT_THAT(TakeWritten(), ElementsAre(row.lineForFirst + "\n", row.lineForSecond + "\n")) << row.name;
    }
}

TEST_F(SupplyCommands, ReadTheValuesOfTheReply) {
    const auto vi = Open();
    for (const auto& row : kQueries) {
        SCOPED_TRACE(row.name);
        Reply(row.line, row.reply + "\n");
        EXPECT_EQ(Status(row.readsTheReply(vi, kFirst)), kSuccess);
        EXPECT_THAT(TakeWritten(), ElementsAre(row.line + "\n"));
        if (row.HasChannel()) {
            Reply(row.lineForSecond, row.reply + "\n");
            EXPECT_EQ(Status(row.readsTheReply(vi, kSecond)), kSuccess);
            EXPECT_THAT(TakeWritten(), ElementsAre(row.lineForSecond + "\n"));
        }
    }
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(SupplyCommands, EndWithZeroOverASocketAndWithACarriageReturnBeforeTheLineFeed) {
    const auto vi = OpenOn(kSocketResource);
    for (const auto& row : kQueries) {
        SCOPED_TRACE(row.name);
        Reply(row.line, row.reply + "\r\n");
        EXPECT_EQ(Status(row.readsTheReply(vi, kFirst)), kSuccess);
    }
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(SupplyCommands, EndWithZeroWhenVisaWarnsAboutAWrite) {
    const auto vi = Open();
    for (const auto& row : kSettings) {
        Fail("viWrite", 0x3FFF0088);
        EXPECT_EQ(Status(row.call(vi)), kSuccess) << row.name;
    }
}

TEST_F(SupplyCommands, SucceedWithoutTrafficInSimulation) {
    for (const bool fromTheBeginning : {true, false}) {
        const auto vi = Open(fromTheBeginning ? "Simulate=1" : "");
        if (!fromTheBeginning) {
            EXPECT_EQ(GetVoltage(vi), kTimeout); // out of step, which no longer matters
            LastError(vi);
            EXPECT_EQ(TARNEX_SetAttributeViBoolean(vi, "", TARNEX_ATTR_SIMULATE, VI_TRUE), 0);
        }
        doubles::TheScript().ForgetCalls();
        TakeWritten();
        for (const auto& row : kSettings) {
            EXPECT_EQ(Status(row.call(vi)), kSuccess) << row.name;
        }
        for (const auto& row : kChannelSettings) {
            EXPECT_EQ(Status(row.call(vi, "OutputChannel1,OutputChannel2")), kSuccess) << row.name;
        }
        for (const auto& row : kQueries) {
            EXPECT_EQ(Status(row.call(vi, kSecond)), kSuccess) << row.name;
        }
        std::array<ViChar, 64> text{"x"};
        ViInt32 code = 77;
        EXPECT_EQ(TARNEXSupply_Write(vi, "*CLS"), 0);
        EXPECT_EQ(TARNEXSupply_Query(vi, "*IDN?", 64, text.data()), 0);
        EXPECT_STREQ(text.data(), "");
        EXPECT_EQ(TARNEXSupply_QueryError(vi, &code, 64, text.data()), 0);
        EXPECT_EQ(code, 0);
        EXPECT_STREQ(text.data(), "No error");
        EXPECT_THAT(TakeVisaCalls(), IsEmpty());
        EXPECT_EQ(LastError(vi), (DriverError{kSuccess, ""}));
    }
}

TEST_F(SupplyCommands, RemainOnTheSimulatorsValuesInSimulation) {
    const auto vi = Open("Simulate=1");
    ViReal64 volts = -1.0;
    EXPECT_EQ(TARNEXSupply_MeasureVoltage(vi, kFirst, &volts), 0);
    EXPECT_GE(volts, 0.0);
}

TEST_F(SupplyCommands, WriteNothingToStandardOutput) {
    const auto vi = Open();
    Reply(":MEAS:ALL? CH1", "1.000000,2.000000,2.000000\n");
    Reply(":LIST:STATUS?", "READY,0.000000,0,0\n");
    ViReal64 volts = 0.0;
    ViReal64 amperes = 0.0;
    ViReal64 watts = 0.0;
    ViInt32 number = 0;
    testing::internal::CaptureStdout();
    EXPECT_EQ(TARNEXSupply_MeasureAll(vi, kFirst, &volts, &amperes, &watts), 0);
    EXPECT_EQ(TARNEXSupply_GetListStatus(vi, &number, &volts, &number, &number), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(SupplyCommands, CheckTheInstrumentsStatusWhenTheSessionDoesAndLeaveTheResultsOnAnError) {
    Reply("*ESR?", "0\n");
    for (const auto* const resource : {kUsbResource, kSocketResource}) {
        const auto vi = OpenOn(resource, "QueryInstrStatus=1");
        EXPECT_EQ(TARNEXSupply_SetBleeder(vi, VI_TRUE), 0);
        EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR:BLE ON\n", "*ESR?\n"));
        for (const auto& row : kQueries) {
            if (row.name == "QueryEventStatus") {
                continue;
            }
            SCOPED_TRACE(row.name);
            Reply(row.line, row.reply + "\n");
            Reply("*ESR?", "0\n");
            EXPECT_EQ(Status(row.readsTheReply(vi, kFirst)), kSuccess);
            EXPECT_THAT(TakeWritten(), ElementsAre(row.line + "\n", "*ESR?\n"));
            Reply("*ESR?", "32\n");
            EXPECT_EQ(Status(row.leavesItsResults(vi, kFirst)), 0xBFFA0001);
            EXPECT_EQ(LastError(vi), (DriverError{0xBFFA0001, "Instrument error detected.  Use ErrorQuery() to "
                                                              "determine the error(s)."}));
            TakeWritten();
        }
        Reply("*ESR?", "0\n");
    }
}

TEST_F(SupplyCommands, IgnoreEventsThatAreNotErrors) {
    Reply("*ESR?", "0\n");
    const auto vi = Open("QueryInstrStatus=1");
    Reply("*ESR?", "195\n"); // power on, user request, request control, operation complete
    EXPECT_EQ(TARNEXSupply_Reset(vi), 0);
    for (const auto* const error : {"4\n", "8\n", "16\n", "32\n"}) {
        Reply("*ESR?", error);
        EXPECT_EQ(Status(TARNEXSupply_Reset(vi)), 0xBFFA0001) << error;
    }
}

TEST_F(SupplyCommands, ReportAMalformedEventStatusWithItsCommand) {
    Reply("*ESR?", "0\n");
    const auto vi = Open("QueryInstrStatus=1");
    Reply("*ESR?", "0 or so\n");
    EXPECT_EQ(Status(TARNEXSupply_Reset(vi)), kMalformed);
    EXPECT_EQ(LastError(vi), (DriverError{kMalformed, "Unexpected response from instrument.  Command '*ESR?', reply "
                                                      "'0 or so'."}));
    Reply("*ESR?", "0\n");
    doubles::TheScript().Fail("viRead", static_cast<ViStatus>(kVisaTimeout), 2); // after the recovery's
    EXPECT_EQ(Status(TARNEXSupply_Reset(vi)), kTimeout);
    EXPECT_EQ(LastError(vi), (DriverError{kTimeout, "I/O timeout error.  Command '*ESR?', VISA status 0xBFFF0015."}));
}

class SupplySequences : public SupplyOverDoubles {};

TEST_F(SupplySequences, ListsRefuseLevelsBeyondTheLimitsOfChannel1AndSendNothing) {
    const auto vi = Open();
    TakeWritten();
    const std::array good{1.0, 1.0};
    for (const std::array bad : {std::array{1.0, 22.001}, std::array{-0.001, 1.0}}) {
        EXPECT_EQ(Status(TARNEXSupply_UploadList(vi, 2, bad.data(), good.data(), good.data())), kInvalidParameter);
        EXPECT_EQ(LastError(vi), (DriverError{kInvalidParameter, kInvalidParameterText}));
        EXPECT_EQ(Status(TARNEXSupply_UploadList(vi, 2, good.data(), bad.data(), good.data())), kInvalidParameter);
    }
    EXPECT_EQ(Status(TARNEXSupply_SetListGroup(vi, 0, 22.001, 1.0, 1.0)), kInvalidParameter);
    EXPECT_EQ(Status(TARNEXSupply_SetListGroup(vi, 0, 1.0, 5.501, 1.0)), kInvalidParameter);
    EXPECT_EQ(Status(TARNEXSupply_SetListGroup(vi, 0, 22.0, 5.5, 1.0)), kSuccess);
    EXPECT_THAT(TakeWritten(), ElementsAre(":LIST:GROUP:PARA 0,22.000000,5.500000,1.000000\n"));
}

TEST_F(SupplySequences, UploadListReplacesTheListByItsGroups) {
    const auto vi = Open();
    const std::array<ViReal64, 2> volts{1.0, 2.5};
    const std::array<ViReal64, 2> amperes{0.5, 0.25};
    const std::array<ViReal64, 2> seconds{10.0, 0.125};
    EXPECT_EQ(TARNEXSupply_UploadList(vi, 2, volts.data(), amperes.data(), seconds.data()), 0);
    EXPECT_THAT(TakeWritten(), ElementsAre(":LIST:GROUP:CLE\n", ":LIST:GROUP:INS 0\n",
                                           ":LIST:GROUP:PARA 0,1.000000,0.500000,10.000000\n", ":LIST:GROUP:INS 1\n",
                                           ":LIST:GROUP:PARA 1,2.500000,0.250000,0.125000\n"));
    EXPECT_EQ(TARNEXSupply_UploadList(vi, 0, volts.data(), amperes.data(), seconds.data()), 0);
    EXPECT_THAT(TakeWritten(), ElementsAre(":LIST:GROUP:CLE\n"));
}

TEST_F(SupplySequences, UploadDelayReplacesTheSequenceByItsGroups) {
    const auto vi = Open();
    const std::array<ViBoolean, 2> enabled{VI_TRUE, VI_FALSE};
    const std::array<ViReal64, 2> seconds{1.0, 0.5};
    EXPECT_EQ(TARNEXSupply_UploadDelay(vi, 2, enabled.data(), seconds.data()), 0);
    EXPECT_THAT(TakeWritten(),
                ElementsAre(":DELAY:GROUP:CLEar\n", ":DELAY:GROUP:INSert 0\n", ":DELAY:GROUP:PARAmeter 0,ON,1.000000\n",
                            ":DELAY:GROUP:INSert 1\n", ":DELAY:GROUP:PARAmeter 1,OFF,0.500000\n"));
}

TEST_F(SupplySequences, StopAtTheFirstFailedWrite) {
    const std::array<ViReal64, 2> values{1.0, 2.0};
    const std::array<ViBoolean, 2> enabled{VI_TRUE, VI_TRUE};
    for (std::size_t nth = 1; nth <= 5; ++nth) {
        const auto vi = Open();
        Fail("viWrite", 0xBFFF003E, nth);
        EXPECT_EQ(Status(TARNEXSupply_UploadList(vi, 2, values.data(), values.data(), values.data())), kIo);
        EXPECT_EQ(TakeWritten().size(), nth - 1);
        const auto other = Open();
        Fail("viWrite", 0xBFFF003E, nth);
        EXPECT_EQ(Status(TARNEXSupply_UploadDelay(other, 2, enabled.data(), values.data())), kIo);
        EXPECT_EQ(TakeWritten().size(), nth - 1);
    }
}

TEST_F(SupplySequences, RefuseWhatCannotBeSentAndSendNothing) {
    const auto vi = Open();
    const std::array<ViReal64, 2> good{1.0, 2.0};
    const std::array<ViReal64, 2> bad{1.0, std::numeric_limits<double>::quiet_NaN()};
    const std::array<ViBoolean, 2> on{VI_TRUE, VI_TRUE};
    const auto upload = [&](ViInt32 count, const ViReal64* volts, const ViReal64* amperes, const ViReal64* seconds) {
        return Status(TARNEXSupply_UploadList(vi, count, volts, amperes, seconds));
    };
    EXPECT_EQ(upload(-1, good.data(), good.data(), good.data()), kInvalidParameter);
    EXPECT_EQ(upload(2, bad.data(), good.data(), good.data()), kInvalidParameter);
    EXPECT_EQ(upload(2, good.data(), bad.data(), good.data()), kInvalidParameter);
    EXPECT_EQ(upload(2, good.data(), good.data(), bad.data()), kInvalidParameter);
    EXPECT_EQ(Status(TARNEXSupply_UploadDelay(vi, -1, on.data(), good.data())), kInvalidParameter);
    EXPECT_EQ(Status(TARNEXSupply_UploadDelay(vi, 2, on.data(), bad.data())), kInvalidParameter);
    EXPECT_EQ(LastError(vi), (DriverError{kInvalidParameter, kInvalidParameterText}));
    const auto null = [&](Status status, const char* function, const char* parameter) {
        EXPECT_EQ(status, kNullPointer);
        EXPECT_EQ(LastError(vi).description, std::string("Null pointer passed for function 'TARNEXSupply_") + function +
                                                 "', parameter '" + parameter + "'.");
    };
    null(upload(2, nullptr, good.data(), good.data()), "UploadList", "volts");
    null(upload(2, good.data(), nullptr, good.data()), "UploadList", "amperes");
    null(upload(2, good.data(), good.data(), nullptr), "UploadList", "seconds");
    null(Status(TARNEXSupply_UploadDelay(vi, 2, nullptr, good.data())), "UploadDelay", "enabled");
    null(Status(TARNEXSupply_UploadDelay(vi, 2, on.data(), nullptr)), "UploadDelay", "seconds");
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

void ReplyStates() {
    auto& visa = doubles::TheVisa();
    visa.Reply(":OUTP:STAT? CH1", "ON\n");
    visa.Reply(":OUTP:CVCC? CH1", "CC\n");
    visa.Reply(":MEAS:ALL? CH1", "3.250000,1.500000,4.875000\n");
    visa.Reply(":SOUR1:VOLT?", "3.300000\n");
    visa.Reply(":SOUR1:CURR?", "1.500000\n");
    visa.Reply(":OUTP:STAT? CH2", "OFF\n");
    visa.Reply(":OUTP:CVCC? CH2", "CV\n");
    visa.Reply(":MEAS:ALL? CH2", "0.000000,0.000000,0.000000\n");
    visa.Reply(":SOUR2:VOLT?", "5.000000\n");
    visa.Reply(":SOUR2:CURR?", "16.800000\n");
}

TEST_F(SupplySequences, ReadStatesReadsBothChannels) {
    const auto vi = Open();
    ReplyStates();
    std::array<TARNEXSupply_ChannelState, 3> states{};
    states[2].channel = 77;
    ViInt32 count = 77;
    EXPECT_EQ(TARNEXSupply_ReadStates(vi, 3, states.data(), &count), 0);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(states[0].channel, 1);
    EXPECT_EQ(states[0].outputEnabled, VI_TRUE);
    EXPECT_EQ(states[0].regulationMode, TARNEXSUPPLY_VAL_REGULATION_CONSTANT_CURRENT);
    EXPECT_EQ(states[0].volts, 3.25);
    EXPECT_EQ(states[0].amperes, 1.5);
    EXPECT_EQ(states[0].watts, 4.875);
    EXPECT_EQ(states[0].voltageLevel, 3.3);
    EXPECT_EQ(states[0].currentLimit, 1.5);
    EXPECT_EQ(states[1].channel, 2);
    EXPECT_EQ(states[1].outputEnabled, VI_FALSE);
    EXPECT_EQ(states[1].regulationMode, TARNEXSUPPLY_VAL_REGULATION_CONSTANT_VOLTAGE);
    EXPECT_EQ(states[1].voltageLevel, 5.0);
    EXPECT_EQ(states[1].currentLimit, 16.8);
    EXPECT_EQ(states[2].channel, 77);
    EXPECT_THAT(TakeWritten(), ElementsAre(":OUTP:STAT? CH1\n", ":OUTP:CVCC? CH1\n", ":MEAS:ALL? CH1\n",
                                           ":SOUR1:VOLT?\n", ":SOUR1:CURR?\n", ":OUTP:STAT? CH2\n", ":OUTP:CVCC? CH2\n",
                                           ":MEAS:ALL? CH2\n", ":SOUR2:VOLT?\n", ":SOUR2:CURR?\n"));
}

TEST_F(SupplySequences, ReadStatesWritesNothingWhenAnyExchangeFails) {
    for (std::size_t nth = 1; nth <= 10; ++nth) {
        const auto vi = Open();
        ReplyStates();
        Fail("viRead", kVisaTimeout, nth);
        std::array<TARNEXSupply_ChannelState, 2> states{};
        states[0].channel = 77;
        ViInt32 count = 77;
        EXPECT_EQ(Status(TARNEXSupply_ReadStates(vi, 2, states.data(), &count)), kTimeout);
        EXPECT_EQ(states[0].channel, 77);
        EXPECT_EQ(count, 77);
    }
}

TEST_F(SupplySequences, ReadStatesNeedsRoomForAllChannels) {
    const auto vi = Open();
    std::array<TARNEXSupply_ChannelState, 2> states{};
    ViInt32 count = 77;
    EXPECT_EQ(Status(TARNEXSupply_ReadStates(vi, 1, states.data(), &count)), kInvalidParameter);
    EXPECT_EQ(Status(TARNEXSupply_ReadStates(vi, -1, states.data(), &count)), kInvalidParameter);
    EXPECT_EQ(Status(TARNEXSupply_ReadStates(vi, 2, nullptr, &count)), kNullPointer);
    EXPECT_EQ(Status(TARNEXSupply_ReadStates(vi, 2, states.data(), nullptr)), kNullPointer);
    EXPECT_EQ(count, 77);
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

} // namespace
} // namespace supply_tests
