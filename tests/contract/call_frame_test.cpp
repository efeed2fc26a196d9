#include <functional>
#include <stdexcept>
#include <utility>

#include "tests/contract/driver_fixture.h"

namespace contract {
namespace {

class CallFrame : public DriverTest {
  protected:
    /// Every export with a locked frame, as a call that succeeds on a simulated session.
    static std::vector<std::pair<const char*, std::function<ViStatus(ViSession)>>> LockedExports() {
        static ViInt16 int16 = 0;
        static ViInt32 int32 = 0;
        static ViReal64 real = 0.0;
        static ViBoolean boolean = VI_FALSE;
        static ViChar text[4096];
        const auto* const channel = "OutputChannel1";
        return {
            {"reset", [](ViSession vi) { return TARNEX_reset(vi); }},
            {"ResetWithDefaults", [](ViSession vi) { return TARNEX_ResetWithDefaults(vi); }},
            {"self_test", [](ViSession vi) { return TARNEX_self_test(vi, &int16, text); }},
            {"error_query", [](ViSession vi) { return TARNEX_error_query(vi, &int32, text); }},
            {"revision_query", [](ViSession vi) { return TARNEX_revision_query(vi, text, text); }},
            {"Disable", [](ViSession vi) { return TARNEX_Disable(vi); }},
            {"InvalidateAllAttributes", [](ViSession vi) { return TARNEX_InvalidateAllAttributes(vi); }},
            {"LockSession", [](ViSession vi) { return TARNEX_LockSession(vi, nullptr); }},
            {"UnlockSession", [](ViSession vi) { return TARNEX_UnlockSession(vi, nullptr); }},
            {"ConfigureOutputEnabled",
             [=](ViSession vi) { return TARNEX_ConfigureOutputEnabled(vi, channel, VI_TRUE); }},
            {"ConfigureVoltageLevel", [=](ViSession vi) { return TARNEX_ConfigureVoltageLevel(vi, channel, 1.0); }},
            {"ConfigureCurrentLimit", [=](ViSession vi) { return TARNEX_ConfigureCurrentLimit(vi, channel, 0, 1.0); }},
            {"ConfigureOVP", [=](ViSession vi) { return TARNEX_ConfigureOVP(vi, channel, VI_TRUE, 1.0); }},
            {"ConfigureOutputRange", [=](ViSession vi) { return TARNEX_ConfigureOutputRange(vi, channel, 0, 1.0); }},
            {"ResetOutputProtection", [=](ViSession vi) { return TARNEX_ResetOutputProtection(vi, channel); }},
            {"GetChannelName", [](ViSession vi) { return TARNEX_GetChannelName(vi, 1, 256, text); }},
            {"QueryMaxCurrentLimit",
             [=](ViSession vi) { return TARNEX_QueryMaxCurrentLimit(vi, channel, 1.0, &real); }},
            {"QueryMaxVoltageLevel",
             [=](ViSession vi) { return TARNEX_QueryMaxVoltageLevel(vi, channel, 1.0, &real); }},
            {"QueryOutputState", [=](ViSession vi) { return TARNEX_QueryOutputState(vi, channel, 0, &boolean); }},
            {"Measure", [=](ViSession vi) { return TARNEX_Measure(vi, channel, 1, &real); }},
            {"GetAttributeViInt32",
             [](ViSession vi) { return TARNEX_GetAttributeViInt32(vi, "", TARNEX_ATTR_CHANNEL_COUNT, &int32); }},
            {"GetAttributeViReal64",
             [=](ViSession vi) { return TARNEX_GetAttributeViReal64(vi, channel, TARNEX_ATTR_VOLTAGE_LEVEL, &real); }},
            {"GetAttributeViBoolean",
             [](ViSession vi) { return TARNEX_GetAttributeViBoolean(vi, "", TARNEX_ATTR_CACHE, &boolean); }},
            {"GetAttributeViString",
             [](ViSession vi) { return TARNEX_GetAttributeViString(vi, "", TARNEX_ATTR_INSTRUMENT_MODEL, 256, text); }},
            {"SetAttributeViInt32",
             [=](ViSession vi) {
                 return TARNEX_SetAttributeViInt32(vi, channel, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, 1);
             }},
            {"SetAttributeViReal64",
             [=](ViSession vi) { return TARNEX_SetAttributeViReal64(vi, channel, TARNEX_ATTR_VOLTAGE_LEVEL, 1.0); }},
            {"SetAttributeViBoolean",
             [](ViSession vi) { return TARNEX_SetAttributeViBoolean(vi, "", TARNEX_ATTR_CACHE, VI_TRUE); }},
        };
    }
};

TEST_F(CallFrame, FindsTheHandleLocksFindsItAgainAndUnlocks) {
    const auto vi = Open("Simulate=1");
    for (const auto& [name, call] : LockedExports()) {
        if (std::string(name).find("LockSession") != std::string::npos || std::string(name) == "UnlockSession") {
            continue;
        }
        doubles::TheScript().ForgetCalls();
        EXPECT_GE(call(vi), 0) << name;
        EXPECT_THAT(doubles::TheScript().Calls(), ElementsAre("IviSession_GetDataPtr", "IviSession_Lock",
                                                              "IviSession_GetDataPtr", "IviSession_Unlock"))
            << name;
    }
}

TEST_F(CallFrame, NestsTheCallersLockInItsOwn) {
    const auto vi = Open();
    ViBoolean has = VI_FALSE;
    EXPECT_EQ(Status(TARNEX_LockSession(vi, &has)), Status(0x00000000));
    EXPECT_EQ(has, VI_TRUE);
    EXPECT_THAT(doubles::TheScript().Calls(),
                ElementsAre("IviSession_GetDataPtr", "IviSession_Lock", "IviSession_GetDataPtr", "IviSession_Lock",
                            "IviSession_Unlock"));
    EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 1);
    EXPECT_EQ(Status(TARNEX_UnlockSession(vi, &has)), Status(0x00000000));
    EXPECT_EQ(has, VI_FALSE);
    EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 0);
}

TEST_F(CallFrame, ReturnsTheStatusOfTheCallersLockUnrecorded) {
    const auto vi = Open();
    Fail("IviSession_Lock", 0xBFFA1198, 2);
    EXPECT_EQ(Status(TARNEX_LockSession(vi, nullptr)), Status(0xBFFA1198));
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
    EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 0);
}

TEST_F(CallFrame, RefusesAnUnknownHandleWithItsOwnStatusAndRecordsNothing) {
    const auto vi = Open("Simulate=1");
    for (const auto& [name, call] : LockedExports()) {
        EXPECT_EQ(Status(call(vi + 1)), Status(0xBFFA1190)) << name;
        EXPECT_EQ(Status(call(0)), Status(0xBFFA1190)) << name;
        Fail("IviSession_GetDataPtr", 0xBFFA1198);
        EXPECT_EQ(Status(call(vi)), Status(0xBFFA1190)) << name;
        EXPECT_EQ(doubles::TheScript().Count("IviSession_Lock"), 0U) << name;
    }
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(CallFrame, ReturnsAFailingLocksStatusAndUnlocksNothing) {
    const auto vi = Open("Simulate=1");
    for (const auto& [name, call] : LockedExports()) {
        doubles::TheScript().ForgetCalls();
        Fail("IviSession_Lock", 0xBFFA1198);
        EXPECT_EQ(Status(call(vi)), Status(0xBFFA1198)) << name;
        EXPECT_THAT(doubles::TheScript().Calls(), ElementsAre("IviSession_GetDataPtr", "IviSession_Lock")) << name;
    }
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(CallFrame, ReturnsTheStatusOfAFailedSecondLookupAndUnlocks) {
    const auto vi = Open("Simulate=1");
    for (const auto& [name, call] : LockedExports()) {
        Fail("IviSession_GetDataPtr", 0xBFFA11A0, 2);
        EXPECT_EQ(Status(call(vi)), Status(0xBFFA11A0)) << name;
        EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 0) << name;
    }
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(CallFrame, RefusesAHandleWithoutAnObject) {
    ViSession vi = VI_NULL;
    doubles::TheSessionService().New(&vi);
    for (const auto& [name, call] : LockedExports()) {
        EXPECT_EQ(Status(call(vi)), Status(0xBFFA1190)) << name;
    }
    EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 0);
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(CallFrame, RecordsAFailureOnceWithItsBareMessage) {
    const auto vi = Open();
    Fail("viWrite", 0xBFFF0015);
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 1.0)), Status(0xBFFA4214));
    EXPECT_THAT(doubles::TheSessionService().Recorded(),
                ElementsAre(doubles::RecordedError{vi, static_cast<ViStatus>(0xBFFA4214), "I/O error."}));
}

TEST_F(CallFrame, ReturnsTheStatusOfAFailedRecording) {
    const auto vi = Open();
    Fail("viWrite", 0xBFFF0015);
    Fail("IviSession_SetError", 0xBFFA11A0);
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 1.0)), Status(0xBFFA11A0));
}

TEST_F(CallFrame, ReturnsAWarningUnrecordedAndKeepsTheEarlierError) {
    const auto vi = Open();
    TARNEX_ConfigureVoltageLevel(vi, "OutputChannel9", 1.0);
    doubles::TheSessionService().ForgetRecorded();
    Fail("viWrite", 0x3FFF0085);
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 1.0)), Status(0x3FFF0085));
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
    EXPECT_EQ(LastError(vi).code, Status(0xBFFA0067));
}

TEST_F(CallFrame, ReleasesTheLockWhenAnExceptionLeavesTheExport) {
    const auto vi = Open();
    Reply(":SOUR1:VOLT?", "volts\n");
    ViReal64 volts = 1.25;
    EXPECT_THROW(TARNEX_Measure(vi, "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE, &volts), std::invalid_argument);
    EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 0);
    EXPECT_EQ(volts, 1.25);
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 1.0)), Status(0x00000000));
}

TEST_F(CallFrame, IsTheSameFunctionForBothNamesOfReset) {
    ASSERT_NE(ExportedAddress("TARNEX_reset"), nullptr);
    EXPECT_EQ(ExportedAddress("TARNEX_reset"), ExportedAddress("TARNEX_ResetWithDefaults"));
    EXPECT_NE(ExportedAddress("TARNEX_reset"), ExportedAddress("TARNEX_Disable"));
}

} // namespace
} // namespace contract
