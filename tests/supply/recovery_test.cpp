// What follows a failed exchange: the next call of the library brings the connection back into step.
#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <string>

#include "tests/supply/command_table.h"
#include "tests/supply/supply_fixture.h"

namespace supply_tests {
namespace {

constexpr const char* kSerialResource = "ASRL/dev/ttyS0::INSTR";

class Recovery : public SupplyOverDoubles {
  protected:
    Recovery() { Reply(":SOUR1:VOLT?", "3.300000\n"); }

    /// Opens a session and lets an exchange of the library time out.
    ViSession OpenOutOfStep(const char* resource) {
        const auto vi = OpenOn(resource);
        Fail("viRead", kVisaTimeout);
        EXPECT_EQ(GetVoltage(vi), kTimeout);
        LastError(vi);
        LastError(VI_NULL);
        TakeWritten();
        TakeVisaCalls();
        return vi;
    }
    static void ExpectVoltage(ViSession vi) {
        ViReal64 volts = 0.0;
        EXPECT_EQ(Status(TARNEXSupply_GetVoltage(vi, kFirst, &volts)), kSuccess);
        EXPECT_EQ(volts, 3.3);
    }
    void ExpectOutOfStep(ViSession vi, const std::string& reason) {
        ViReal64 volts = 77.0;
        EXPECT_EQ(Status(TARNEXSupply_GetVoltage(vi, kFirst, &volts)), kOutOfStep);
        EXPECT_EQ(volts, 77.0);
        EXPECT_EQ(LastError(vi),
                  (DriverError{kOutOfStep, "The connection could not be brought back into step.  " + reason}));
        EXPECT_EQ(LocksHeld(), 0);
    }
};

TEST_F(Recovery, OverASocketClosesOpensConfiguresAndIdentifiesBeforeTheCommand) {
    const auto vi = OpenOutOfStep(kSocketResource);
    ExpectVoltage(vi);
    EXPECT_THAT(TakeVisaCalls(), ElementsAre("viClose", "viOpenDefaultRM", "viOpen", "viSetAttribute", "viSetBuf",
                                             "viSetBuf", "viSetAttribute", "viSetAttribute", "viSetBuf", "viSetBuf",
                                             "viWrite", "viRead", "viWrite", "viRead"));
    EXPECT_THAT(TakeWritten(), ElementsAre("*IDN?\n", ":SOUR1:VOLT?\n"));
    EXPECT_EQ(doubles::TheVisa().Opened().back().name, kSocketResource);
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 2U);
    ExpectVoltage(vi); // in step again
    EXPECT_THAT(TakeVisaCalls(), ElementsAre("viWrite", "viRead"));
}

TEST_F(Recovery, OverUsbClearsAndIdentifiesBeforeTheCommand) {
    const auto vi = OpenOutOfStep(kUsbResource);
    ExpectVoltage(vi);
    EXPECT_THAT(TakeVisaCalls(), ElementsAre("viClear", "viWrite", "viRead", "viWrite", "viRead"));
    EXPECT_THAT(TakeWritten(), ElementsAre("*IDN?\n", ":SOUR1:VOLT?\n"));
    EXPECT_EQ(doubles::TheVisa().Opened().size(), 1U);
    ExpectVoltage(vi);
    EXPECT_THAT(TakeVisaCalls(), ElementsAre("viWrite", "viRead"));
}

TEST_F(Recovery, UsesTheDeviceClearOfEveryInterfaceThatHasOne) {
    for (const auto* const resource : {"GPIB0::5::INSTR", "TCPIP0::192.0.2.7::inst0::INSTR", "usb0::1::2::3::instr"}) {
        const auto vi = OpenOutOfStep(resource);
        ExpectVoltage(vi);
        EXPECT_EQ(TakeVisaCalls().front(), "viClear") << resource;
    }
    for (const auto* const resource : {kSerialResource, "tcpip0::192.0.2.7::5025::socket", "asrl1::instr"}) {
        const auto vi = OpenOutOfStep(resource);
        ExpectVoltage(vi);
        EXPECT_EQ(TakeVisaCalls().front(), "viClose") << resource;
    }
}

TEST_F(Recovery, OpensAgainWhenTheDeviceClearFails) {
    const auto vi = OpenOutOfStep(kUsbResource);
    Fail("viClear", 0xBFFF0067);
    ExpectVoltage(vi);
    EXPECT_THAT(TakeVisaCalls(), ElementsAre("viClear", "viClose", "viOpenDefaultRM", "viOpen", "viSetAttribute",
                                             "viSetBuf", "viSetBuf", "viWrite", "viRead", "viWrite", "viRead"));
}

TEST_F(Recovery, OpensAgainWhenNothingAnswersAfterTheDeviceClear) {
    const auto vi = OpenOutOfStep(kUsbResource);
    Fail("viRead", kVisaTimeout);
    ExpectVoltage(vi);
    EXPECT_THAT(TakeWritten(), ElementsAre("*IDN?\n", "*IDN?\n", ":SOUR1:VOLT?\n"));
}

TEST_F(Recovery, ThatIsRefusedIsAStatusAndTheNextCallTriesAgain) {
    for (const auto* const resource : {kSocketResource, kUsbResource}) {
        const auto vi = OpenOutOfStep(resource);
        doubles::TheScript().Fail("viClear", static_cast<ViStatus>(0xBFFF00A6), 1, true);
        for (int attempt = 0; attempt < 2; ++attempt) {
            Fail("viOpen", 0xBFFF0011);
            ExpectOutOfStep(vi, "Status 0xBFFF0011.");
            EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U);
        }
        ExpectVoltage(vi);
        EXPECT_EQ(doubles::TheVisa().OpenSessions(), 2U);
        EXPECT_EQ(TARNEX_close(vi), 0);
    }
}

TEST_F(Recovery, ThatFindsAnotherInstrumentIsAStatusUntilTheFirstOneAnswers) {
    for (const auto* const resource : {kSocketResource, kUsbResource, kSerialResource}) {
        const auto vi = OpenOutOfStep(resource);
        for (const auto* const other :
             {"Keltor Technology,TX4410,SN43,1.07\n", "Keltor Technology,TX4520,SN42,1.07\n"}) {
            Reply("*IDN?", other);
            ExpectOutOfStep(vi, "Another instrument answers.");
        }
        Reply("*IDN?", "Keltor Technology,TX4410,SN42,1.07\n");
        ExpectVoltage(vi);
    }
}

TEST_F(Recovery, OfASilentInstrumentIsAStatusAndTheNextCallTriesAgain) {
    for (const auto* const resource : {kSocketResource, kUsbResource, kSerialResource}) {
        const auto vi = OpenOutOfStep(resource);
        Fail("viRead", kVisaTimeout);
        Fail("viRead", kVisaTimeout); // the second one over USB, after the reopening
        ExpectOutOfStep(vi, "Status 0xBFFF0015.");
        doubles::TheScript().Reset();
        ExpectVoltage(vi);
    }
}

TEST_F(Recovery, FollowsAFailureOfTheDriversFunctionsWhichThemselvesGoOn) {
    const auto vi = OpenOn(kSocketResource);
    ViReal64 volts = 0.0;
    Fail("viRead", kVisaTimeout);
    EXPECT_EQ(Status(TARNEX_Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE, &volts)), kIo);
    TakeVisaCalls();
    EXPECT_EQ(Status(TARNEX_Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE, &volts)), 0x3FFF0005);
    EXPECT_THAT(TakeVisaCalls(), ElementsAre("viWrite", "viRead"));
    ExpectVoltage(vi);
    EXPECT_EQ(TakeVisaCalls().front(), "viClose");
}

TEST_F(Recovery, FollowsAMalformedReplyToTheDriver) {
    const auto vi = Open();
    ViReal64 volts = 0.0;
    Reply(":SOUR1:VOLT?", "garbage\n");
    EXPECT_THROW(TARNEX_Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE, &volts), std::invalid_argument);
    Reply(":SOUR1:VOLT?", "3.300000\n");
    TakeVisaCalls();
    ExpectVoltage(vi);
    EXPECT_THAT(TakeVisaCalls(), ElementsAre("viClear", "viWrite", "viRead", "viWrite", "viRead"));
}

TEST_F(Recovery, FollowsAMalformedReplyToTheLibrary) {
    const auto vi = Open();
    Reply(":SOUR1:VOLT?", "3.3V\n");
    EXPECT_EQ(GetVoltage(vi), kMalformed);
    Reply(":SOUR1:VOLT?", "3.300000\n");
    TakeVisaCalls();
    ExpectVoltage(vi);
    EXPECT_EQ(TakeVisaCalls().front(), "viClear");
}

TEST_F(Recovery, FollowsAReplyThatIsLongerThanTheBuffer) {
    const auto vi = Open();
    std::array<ViChar, 2000> text{};
    Reply(":LONG?", std::string(1500, 'x') + "\n");
    EXPECT_EQ(Status(TARNEXSupply_Query(vi, ":LONG?", 2000, text.data())), kMalformed);
    TakeVisaCalls();
    ExpectVoltage(vi);
    EXPECT_EQ(TakeVisaCalls().front(), "viClear");
    Reply(":SOUR1:VOLT?", std::string(1500, '0') + "\n");
    ViReal64 volts = 0.0;
    EXPECT_EQ(Status(TARNEX_Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE, &volts)), 0x3FFF0006);
    Reply(":SOUR1:VOLT?", "3.300000\n");
    TakeVisaCalls();
    ExpectVoltage(vi);
    EXPECT_EQ(TakeVisaCalls().front(), "viClear");
}

TEST_F(Recovery, FollowsARawCommandWhoseReplyNobodyReads) {
    const auto vi = Open();
    std::array<ViChar, 100> text{};
    EXPECT_EQ(TARNEXSupply_Write(vi, ":SOUR1:VOLT?"), 0);
    TakeVisaCalls();
    ExpectVoltage(vi);
    EXPECT_EQ(TakeVisaCalls().front(), "viClear");
    Reply(":A?", "1\n");
    Reply(":A?\n:B?", "1\n");
    EXPECT_EQ(TARNEXSupply_Query(vi, ":A?\n", 100, text.data()), 0);
    EXPECT_EQ(TARNEXSupply_Query(vi, ":A?\n:B?", 100, text.data()), 0);
    TakeVisaCalls();
    ExpectVoltage(vi);
    EXPECT_EQ(TakeVisaCalls().front(), "viClear");
    EXPECT_EQ(TARNEXSupply_Write(vi, ":DISP ON"), 0);
    TakeVisaCalls();
    ExpectVoltage(vi);
    EXPECT_THAT(TakeVisaCalls(), ElementsAre("viWrite", "viRead"));
}

TEST_F(Recovery, PrecedesTheStatusCheckAfterARawCommandThatHasAReply) {
    Reply("*ESR?", "0\n");
    const auto vi = Open("QueryInstrStatus=1");
    EXPECT_EQ(TARNEXSupply_Write(vi, ":SOUR1:VOLT?"), 0);
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR1:VOLT?\n", "*IDN?\n", "*ESR?\n"));
}

TEST_F(Recovery, KeepsTheTimeoutAndUsesANewOne) {
    const auto vi = OpenOn(kSocketResource);
    EXPECT_EQ(TARNEXSupply_SetTimeout(vi, 123), 0);
    Fail("viRead", kVisaTimeout);
    EXPECT_EQ(GetVoltage(vi), kTimeout);
    Fail("viOpen", 0xBFFF0011);
    EXPECT_EQ(GetVoltage(vi), kOutOfStep);
    EXPECT_EQ(TARNEXSupply_SetTimeout(vi, 456), 0); // while nothing is open
    doubles::TheVisa().ForgetSettings();
    ExpectVoltage(vi);
    EXPECT_THAT(doubles::TheVisa().Settings(), testing::Contains("viSetAttribute 3FFF001A 456"));
    ViInt32 timeout = 0;
    EXPECT_EQ(TARNEXSupply_GetTimeout(vi, &timeout), 0);
    EXPECT_EQ(timeout, 456);
}

TEST_F(Recovery, IsNotNeededByFunctionsThatSendNothing) {
    const auto vi = OpenOutOfStep(kSocketResource);
    ViReal64 real = 0.0;
    ViInt32 number = 0;
    EXPECT_EQ(TARNEXSupply_GetLimits(vi, kFirst, &real, &real, &real, &real), 0);
    EXPECT_EQ(TARNEXSupply_GetIdentity(vi, nullptr, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(TARNEXSupply_GetTimeout(vi, &number), 0);
    EXPECT_EQ(TARNEXSupply_ResolveChannels(vi, kFirst, 1, &number, &number), 0);
    EXPECT_EQ(Status(TARNEXSupply_SetListCycles(vi, 1)), kSuccess); // this one sends
    EXPECT_EQ(Status(TARNEXSupply_SetVoltage(vi, kFirst, std::numeric_limits<double>::quiet_NaN())), kInvalidParameter);
    EXPECT_THAT(TakeWritten(), ElementsAre("*IDN?\n", ":LIST:CYCLE 1\n"));
}

TEST_F(Recovery, LetsTheDriversFunctionsFailWhileNothingIsOpen) {
    const auto vi = OpenOutOfStep(kSocketResource);
    Fail("viOpen", 0xBFFF0011);
    EXPECT_EQ(GetVoltage(vi), kOutOfStep);
    ViReal64 volts = 0.0;
    EXPECT_EQ(Status(TARNEX_Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE, &volts)), kIo);
    EXPECT_EQ(TARNEX_close(vi), 0);
}

/// One session's life: no assertion but that nothing throws, because each function does so through the C interface.
void Live(const char* resource) {
    ViSession vi = VI_NULL;
    if (TARNEXSupply_Open(resource, "QueryInstrStatus=1", 250, &vi) < 0) {
        EXPECT_EQ(vi, 0U);
        return;
    }
    std::array<ViChar, 256> text{};
    std::array<TARNEXSupply_ChannelState, 2> states{};
    const std::array<ViReal64, 1> values{1.0};
    ViReal64 volts = 0.0;
    ViReal64 amperes = 0.0;
    ViReal64 watts = 0.0;
    ViInt32 number = 0;
    TARNEXSupply_SetVoltage(vi, "OutputChannel1,OutputChannel2", 1.0);
    TARNEXSupply_MeasureAll(vi, kFirst, &volts, &amperes, &watts);
    TARNEXSupply_Query(vi, "*IDN?", 256, text.data());
    TARNEXSupply_QueryError(vi, &number, 256, text.data());
    TARNEXSupply_UploadList(vi, 1, values.data(), values.data(), values.data());
    TARNEXSupply_ReadStates(vi, 2, states.data(), &number);
    TARNEX_Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE, &volts);
    TARNEXSupply_SetOutputEnabled(vi, kFirst, VI_TRUE);
    TARNEXSupply_SetTimeout(vi, 500);
    for (int attempt = 0; attempt < 3 && TARNEXSupply_Close(vi) < 0; ++attempt) {
    }
}

class EveryPlatformCall : public SupplyOverDoubles, public testing::WithParamInterface<const char*> {
  protected:
    static void StartAnew() {
        doubles::TheScript().Reset();
        doubles::TheSessionService().Reset();
        auto& visa = doubles::TheVisa();
        visa.Reset();
        for (const auto* const query : {":SOUR1:VOLT?", ":SOUR1:CURR?", ":SOUR2:VOLT?", ":SOUR2:CURR?"}) {
            visa.Reply(query, "1.000000\n");
        }
        for (const auto* const channel : {"CH1", "CH2"}) {
            visa.Reply(std::string(":OUTP:STAT? ") + channel, "ON\n");
            visa.Reply(std::string(":OUTP:CVCC? ") + channel, "CV\n");
            visa.Reply(std::string(":MEAS:ALL? ") + channel, "1.000000,1.000000,1.000000\n");
        }
        visa.Reply("*ESR?", "0\n");
        visa.Reply(":SYSTem:ERRor?", "0,\"No error\"\n");
    }
    static void ExpectNothingLeft() {
        EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U);
        EXPECT_EQ(doubles::TheConfigServer().OpenHandles(), 0U);
        EXPECT_EQ(LocksHeld(), 0);
    }
};

TEST_P(EveryPlatformCall, MayFailOnceOrFromThenOnAndNothingIsLeft) {
    StartAnew();
    Live(GetParam());
    const auto calls = doubles::TheScript().Calls();
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
    ExpectNothingLeft();
    ASSERT_GT(calls.size(), 100U);
    for (std::size_t nth = 1; nth <= calls.size(); ++nth) {
        const bool visa = calls[nth - 1].starts_with("vi");
        for (const std::uint32_t status : {visa ? kVisaTimeout : 0xBFFA1190, visa ? 0xBFFF00A6 : 0x80000000}) {
            SCOPED_TRACE(testing::Message() << "call " << nth << ", " << calls[nth - 1]);
            StartAnew();
            doubles::TheScript().FailCall(nth, static_cast<ViStatus>(status));
            Live(GetParam());
            ExpectNothingLeft();
            if (visa) {
                StartAnew();
                const auto before = static_cast<std::size_t>(
                    std::count(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(nth), calls[nth - 1]));
                doubles::TheScript().Fail(calls[nth - 1], static_cast<ViStatus>(status), before, true);
                Live(GetParam());
                ExpectNothingLeft();
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Over, EveryPlatformCall, testing::Values(kUsbResource, kSocketResource),
                         [](const auto& resource) { return resource.index == 0 ? "Usb" : "Socket"; });

} // namespace
} // namespace supply_tests
