#include <array>
#include <limits>

#include "tests/contract/driver_fixture.h"

namespace contract {
namespace {

class Query : public DriverTest {};

constexpr std::uint32_t kIoError = 0xBFFA4214;

std::string NullPointer(const char* function, const char* parameter) {
    return std::string("Null pointer passed for function '") + function + "', parameter '" + parameter + "'.";
}

TEST_F(Query, MaximaComeFromTheChannelsLimitsForEveryOtherLevel) {
    const auto vi = Open();
    ViReal64 maximum = 0.0;
    for (const double ignored : {0.0, 1e300, -5.0}) {
        EXPECT_EQ(Status(TARNEX_QueryMaxVoltageLevel(vi, "OutputChannel1", ignored, &maximum)), Status(0U));
        EXPECT_EQ(maximum, 22.0);
        EXPECT_EQ(Status(TARNEX_QueryMaxVoltageLevel(vi, "OutputChannel2", ignored, &maximum)), Status(0U));
        EXPECT_EQ(maximum, 5.5);
        EXPECT_EQ(Status(TARNEX_QueryMaxCurrentLimit(vi, "OutputChannel1", ignored, &maximum)), Status(0U));
        EXPECT_EQ(maximum, 5.5);
        EXPECT_EQ(Status(TARNEX_QueryMaxCurrentLimit(vi, "OutputChannel2", ignored, &maximum)), Status(0U));
        EXPECT_EQ(maximum, 16.8);
    }
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Query, OfSeveralChannelsReturnsTheValueOfTheLast) {
    const auto vi = Open();
    ViReal64 maximum = 0.0;
    EXPECT_EQ(Status(TARNEX_QueryMaxVoltageLevel(vi, "OutputChannel1,OutputChannel2", 0.0, &maximum)), Status(0U));
    EXPECT_EQ(maximum, 5.5);
    EXPECT_EQ(Status(TARNEX_QueryMaxVoltageLevel(vi, "OutputChannel2,OutputChannel1", 0.0, &maximum)), Status(0U));
    EXPECT_EQ(maximum, 22.0);
}

TEST_F(Query, WithANullOutputIsRefusedBeforeTheSelectorIsChecked) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEX_QueryMaxCurrentLimit(vi, "nonsense;", 0.0, nullptr)), Status(0xBFFA0058));
    EXPECT_EQ(LastError(vi).description, NullPointer("TARNEX_QueryMaxCurrentLimit", "MaxCurrentLimit"));
    EXPECT_EQ(Status(TARNEX_QueryMaxVoltageLevel(vi, nullptr, 0.0, nullptr)), Status(0xBFFA0058));
    EXPECT_EQ(LastError(vi).description, NullPointer("TARNEX_QueryMaxVoltageLevel", "MaxVoltageLevel"));
    EXPECT_EQ(Status(TARNEX_QueryOutputState(vi, nullptr, 0, nullptr)), Status(0xBFFA0058));
    EXPECT_EQ(LastError(vi).description, NullPointer("TARNEX_QueryOutputState", "inState"));
    EXPECT_EQ(Status(TARNEX_Measure(vi, nullptr, 0, nullptr)), Status(0xBFFA0058));
    EXPECT_EQ(LastError(vi).description, NullPointer("TARNEX_Measure", "Measurement"));
    EXPECT_EQ(Status(TARNEX_GetChannelName(vi, 99, 0, nullptr)), Status(0xBFFA0058));
    EXPECT_EQ(LastError(vi).description, NullPointer("TARNEX_GetChannelName", "Name"));
}

TEST_F(Query, RefusesAnUnknownChannel) {
    const auto vi = Open();
    ViReal64 value = 1.25;
    EXPECT_EQ(Status(TARNEX_QueryMaxVoltageLevel(vi, "OutputChannel3", 0.0, &value)), Status(0xBFFA0067));
    EXPECT_EQ(Status(TARNEX_Measure(vi, "OutputChannel3", 1, &value)), Status(0xBFFA0067));
    EXPECT_EQ(value, 1.25);
}

TEST_F(Query, ChecksTheInstrumentsStatusAtItsEnd) {
    Reply("*ESR?", "0\n");
    const auto vi = Open("QueryInstrStatus=1");
    Reply("*ESR?", "8\n");
    ViReal64 value = 0.0;
    ViBoolean in = 7;
    EXPECT_EQ(Status(TARNEX_QueryMaxVoltageLevel(vi, "OutputChannel1", 0.0, &value)), Status(0xBFFA0001));
    EXPECT_EQ(value, 22.0);
    EXPECT_EQ(Status(TARNEX_QueryOutputState(vi, "OutputChannel1", 9, &in)), Status(0xBFFA0001));
    EXPECT_THAT(TakeWritten(), ElementsAre("*ESR?\n", "*ESR?\n"));
}

TEST_F(Query, OutputStateReadsBitOneForConstantVoltageAndBitZeroForConstantCurrent) {
    const auto vi = Open();
    struct Case {
        const char* condition;
        ViBoolean constantVoltage;
        ViBoolean constantCurrent;
    };
    for (const auto& [condition, voltage, current] :
         {Case{"0\n", 0, 0}, Case{"1\n", 0, 1}, Case{"2\n", 1, 0}, Case{"3\n", 1, 1}, Case{"252\n", 0, 0},
          Case{" 2 V\n", 1, 0}, Case{"-1\n", 1, 1}}) {
        Reply(":STATus:QUEStionable:INSTrument:ISUMmary2:CONDition?", condition);
        ViBoolean in = 7;
        EXPECT_EQ(Status(TARNEX_QueryOutputState(vi, "OutputChannel2", TARNEX_VAL_OUTPUT_CONSTANT_VOLTAGE, &in)),
                  Status(0U));
        EXPECT_EQ(in, voltage) << condition;
        EXPECT_EQ(Status(TARNEX_QueryOutputState(vi, "OutputChannel2", TARNEX_VAL_OUTPUT_CONSTANT_CURRENT, &in)),
                  Status(0U));
        EXPECT_EQ(in, current) << condition;
    }
}

TEST_F(Query, OutputStateSendsTheConditionQueryOfItsChannel) {
    const auto vi = Open();
    Reply(":STATus:QUEStionable:INSTrument:ISUMmary1:CONDition?", "0\n");
    ViBoolean in = 7;
    EXPECT_EQ(Status(TARNEX_QueryOutputState(vi, "OutputChannel1", 0, &in)), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre(":STATus:QUEStionable:INSTrument:ISUMmary1:CONDition?\n"));
}

TEST_F(Query, OutputStateOfSeveralChannelsIsThatOfTheLast) {
    const auto vi = Open();
    Reply(":STATus:QUEStionable:INSTrument:ISUMmary1:CONDition?", "2\n");
    Reply(":STATus:QUEStionable:INSTrument:ISUMmary2:CONDition?", "0\n");
    ViBoolean in = 7;
    EXPECT_EQ(Status(TARNEX_QueryOutputState(vi, "OutputChannel1,OutputChannel2", 0, &in)), Status(0U));
    EXPECT_EQ(in, VI_FALSE);
    EXPECT_EQ(Status(TARNEX_QueryOutputState(vi, "OutputChannel2,OutputChannel1", 0, &in)), Status(0U));
    EXPECT_EQ(in, VI_TRUE);
}

TEST_F(Query, OutputStateIsFalseAfterAFailedQuery) {
    const auto vi = Open();
    for (const ViInt32 state : {TARNEX_VAL_OUTPUT_CONSTANT_VOLTAGE, TARNEX_VAL_OUTPUT_CONSTANT_CURRENT}) {
        ViBoolean in = 7;
        EXPECT_EQ(Status(TARNEX_QueryOutputState(vi, "OutputChannel1", state, &in)), Status(0U));
        EXPECT_EQ(in, VI_FALSE);
    }
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(Query, OutputStateIsNeverAProtectionState) {
    const auto vi = Open();
    for (const ViInt32 state :
         {TARNEX_VAL_OUTPUT_OVER_VOLTAGE, TARNEX_VAL_OUTPUT_OVER_CURRENT, TARNEX_VAL_OUTPUT_UNREGULATED}) {
        ViBoolean in = 7;
        EXPECT_EQ(Status(TARNEX_QueryOutputState(vi, "OutputChannel1", state, &in)), Status(0U));
        EXPECT_EQ(in, VI_FALSE);
    }
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Query, OutputStateAcceptsAnUnknownStateAndKeepsTheOutput) {
    const auto vi = Open();
    for (const ViInt32 state : {9, 5, -1}) {
        ViBoolean in = 7;
        EXPECT_EQ(Status(TARNEX_QueryOutputState(vi, "OutputChannel1", state, &in)), Status(0U));
        EXPECT_EQ(in, 7);
    }
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Query, OutputStateThrowsOnARegisterThatIsNotANumber) {
    const auto vi = Open();
    ViBoolean in = 7;
    Reply(":STATus:QUEStionable:INSTrument:ISUMmary1:CONDition?", "CV\n");
    try {
        TARNEX_QueryOutputState(vi, "OutputChannel1", 0, &in);
        FAIL() << "no exception";
    } catch (const std::invalid_argument& exception) {
        EXPECT_STREQ(exception.what(), "invalid stoi argument");
    }
    EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 0);
}

TEST_F(Query, MeasureReadsTheProgrammedLevelBack) {
    const auto vi = Open();
    Reply(":SOUR1:VOLT?", "3.300000\n");
    Reply(":SOUR1:CURR?", "1.500000\n");
    ViReal64 value = 0.0;
    EXPECT_EQ(Status(TARNEX_Measure(vi, "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE, &value)), Status(0U));
    EXPECT_EQ(value, 3.3);
    EXPECT_EQ(Status(TARNEX_Measure(vi, "OutputChannel1", TARNEX_VAL_MEASURE_CURRENT, &value)), Status(0U));
    EXPECT_EQ(value, 1.5);
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR1:VOLT?\n", ":SOUR1:CURR?\n"));
}

TEST_F(Query, MeasureConvertsTheNumericPrefix) {
    const auto vi = Open();
    struct Case {
        const char* reply;
        double value;
    };
    for (const auto& [reply, expected] :
         {Case{"1.5E-3,2\n", 0.0015}, Case{"+12 V\n", 12.0}, Case{"-.5\r\n", -0.5}, Case{"7.\n", 7.0},
          Case{"1e2e3\n", 100.0}, Case{"2E\n", 2.0}, Case{"4.9e-324\n", 4.9406564584124654e-324}}) {
        Reply(":SOUR1:VOLT?", reply);
        ViReal64 value = 99.0;
        EXPECT_EQ(Status(TARNEX_Measure(vi, "OutputChannel1", 1, &value)), Status(0U)) << reply;
        EXPECT_EQ(value, expected) << reply;
    }
}

TEST_F(Query, MeasureThrowsOnAReplyThatIsNotANumber) {
    const auto vi = Open();
    ViReal64 value = 1.25;
    for (const auto* reply : {"nan\n", "\n", " 1.0\n", "+-1\n", ".\n", "e5\n"}) {
        Reply(":SOUR1:VOLT?", reply);
        try {
            TARNEX_Measure(vi, "OutputChannel1", 1, &value);
            ADD_FAILURE() << "no exception for " << reply;
        } catch (const std::invalid_argument& exception) {
            EXPECT_STREQ(exception.what(), "invalid stod argument") << reply;
        }
    }
    for (const auto* reply : {"1e999\n", "-1e999\n", "1e-999\n"}) {
        Reply(":SOUR1:VOLT?", reply);
        try {
            TARNEX_Measure(vi, "OutputChannel1", 1, &value);
            ADD_FAILURE() << "no exception for " << reply;
        } catch (const std::out_of_range& exception) {
            EXPECT_STREQ(exception.what(), "stod argument out of range") << reply;
        }
    }
    EXPECT_EQ(value, 1.25);
    EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 0);
}

TEST_F(Query, MeasureRefusesAnyOtherTypeWithoutIo) {
    const auto vi = Open();
    ViReal64 value = 1.25;
    for (const ViInt32 type : {2, -1, 99}) {
        EXPECT_EQ(Status(TARNEX_Measure(vi, "OutputChannel1", type, &value)), Status(0xBFFA4217));
        EXPECT_EQ(LastError(vi), (DriverError{0xBFFA4217, "Attribute or function parameter value is invalid (out of "
                                                          "range or not supported)."}));
    }
    EXPECT_EQ(value, 1.25);
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Query, MeasureOfSeveralChannelsReturnsTheLevelOfTheLast) {
    const auto vi = Open();
    Reply(":SOUR1:VOLT?", "1.0\n");
    Reply(":SOUR2:VOLT?", "2.0\n");
    ViReal64 value = 0.0;
    EXPECT_EQ(Status(TARNEX_Measure(vi, "OutputChannel1,OutputChannel2", 1, &value)), Status(0U));
    EXPECT_EQ(value, 2.0);
}

TEST_F(Query, MeasureOverASocketStopsAfterTheFirstChannelWithItsPositiveStatus) {
    const auto vi = OpenOn(kSocketResource);
    Reply(":SOUR1:VOLT?", "1.0\n");
    Reply(":SOUR2:VOLT?", "2.0\n");
    ViReal64 value = 0.0;
    EXPECT_EQ(Status(TARNEX_Measure(vi, "OutputChannel1,OutputChannel2", 1, &value)), Status(0x3FFF0005));
    EXPECT_EQ(value, 1.0);
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR1:VOLT?\n"));
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(Query, MeasureRecordsAFailedQuery) {
    const auto vi = Open();
    ViReal64 value = 1.25;
    EXPECT_EQ(Status(TARNEX_Measure(vi, "OutputChannel1", 1, &value)), Status(kIoError));
    EXPECT_EQ(LastError(vi), (DriverError{kIoError, "I/O error."}));
    EXPECT_EQ(value, 1.25);
}

TEST_F(Query, MeasureInSimulationDrawsBothLevelsFromTheVoltageBounds) {
    const auto vi = Open("Simulate=1");
    bool currentAboveItsOwnBound = false;
    for (int draw = 0; draw < 1000; ++draw) {
        for (const ViInt32 type : {TARNEX_VAL_MEASURE_CURRENT, TARNEX_VAL_MEASURE_VOLTAGE}) {
            ViReal64 value = -1.0;
            EXPECT_EQ(Status(TARNEX_Measure(vi, "OutputChannel1", type, &value)), Status(0U));
            EXPECT_GE(value, 0.0);
            EXPECT_LT(value, 22.0);
            currentAboveItsOwnBound = currentAboveItsOwnBound || (type == TARNEX_VAL_MEASURE_CURRENT && value > 5.5);
        }
    }
    EXPECT_TRUE(currentAboveItsOwnBound);
}

TEST_F(Query, ChannelNamesCountFromOne) {
    const auto vi = Open();
    std::array<ViChar, 256> name{};
    EXPECT_EQ(Status(TARNEX_GetChannelName(vi, 1, 256, name.data())), Status(0U));
    EXPECT_STREQ(name.data(), "OutputChannel1");
    EXPECT_EQ(Status(TARNEX_GetChannelName(vi, 2, 256, name.data())), Status(0U));
    EXPECT_STREQ(name.data(), "OutputChannel2");
}

TEST_F(Query, ChannelNameOutOfRangeShowsTheIndexCountedFromZero) {
    const auto vi = Open();
    std::array<ViChar, 256> name{"as it was"};
    for (const auto& [index, shown] : std::vector<std::pair<ViInt32, std::string>>{
             {3, "2"}, {0, "-1"}, {-5, "-6"}, {std::numeric_limits<ViInt32>::max(), "2147483646"}}) {
        EXPECT_EQ(Status(TARNEX_GetChannelName(vi, index, 256, name.data())), Status(0xBFFA0010));
        EXPECT_EQ(LastError(vi), (DriverError{0xBFFA0010, "Invalid value '" + shown +
                                                              "' for function 'GetOutputChannelName', parameter "
                                                              "'Index'."}));
    }
    EXPECT_EQ(Status(TARNEX_GetChannelName(vi, std::numeric_limits<ViInt32>::min(), 256, name.data())),
              Status(0xBFFA0010));
    EXPECT_STREQ(name.data(), "as it was");
}

TEST_F(Query, ChannelNameChecksTheIndexBeforeTheSize) {
    const auto vi = Open();
    std::array<ViChar, 256> name{"as it was"};
    EXPECT_EQ(Status(TARNEX_GetChannelName(vi, 3, 0, name.data())), Status(0xBFFA0010));
    EXPECT_EQ(Status(TARNEX_GetChannelName(vi, 1, 0, name.data())), Status(4096U));
    EXPECT_STREQ(name.data(), "as it was");
}

TEST_F(Query, ChannelNameThatFillsItsBufferReturnsTheFixedRequiredSize) {
    const auto vi = Open();
    std::array<ViChar, 4096> name{};
    EXPECT_EQ(Status(TARNEX_GetChannelName(vi, 1, 16, name.data())), Status(0U));
    EXPECT_STREQ(name.data(), "OutputChannel1");
    EXPECT_EQ(Status(TARNEX_GetChannelName(vi, 1, 15, name.data())), Status(4096U));
    EXPECT_STREQ(name.data(), "OutputChannel1");
    EXPECT_EQ(Status(TARNEX_GetChannelName(vi, 1, 14, name.data())), Status(4096U));
    EXPECT_STREQ(name.data(), "OutputChannel");
    EXPECT_EQ(Status(TARNEX_GetChannelName(vi, 2, -1, name.data())), Status(0U));
    EXPECT_STREQ(name.data(), "OutputChannel2");
}

} // namespace
} // namespace contract
