#include "tests/contract/driver_fixture.h"

namespace contract {
namespace {

class Close : public DriverTest {};

TEST_F(Close, ReadsTheObjectTwiceDisconnectsAndDisposesOfTheHandle) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEX_close(vi)), Status(0x00000000));
    EXPECT_THAT(doubles::TheScript().Calls(),
                ElementsAre("IviSession_GetDataPtr", "IviSession_GetDataPtr", "viClose", "IviSession_Dispose"));
    EXPECT_EQ(doubles::TheSessionService().OpenHandles(), 0U);
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Close, OfAClosedHandleIsAnInvalidHandleAndDisposesOfNothing) {
    const auto vi = Open();
    TARNEX_close(vi);
    doubles::TheScript().ForgetCalls();
    EXPECT_EQ(Status(TARNEX_close(vi)), Status(0xBFFA1190));
    EXPECT_THAT(doubles::TheScript().Calls(), ElementsAre("IviSession_GetDataPtr"));
}

TEST_F(Close, OfAnUnknownHandleReturnsInvalidHandleForEveryStatusOfTheService) {
    const auto vi = Open();
    Fail("IviSession_GetDataPtr", 0xBFFA1198);
    EXPECT_EQ(Status(TARNEX_close(vi)), Status(0xBFFA1190));
    EXPECT_EQ(Status(TARNEX_close(0)), Status(0xBFFA1190));
}

TEST_F(Close, ReturnsTheStatusOfTheSecondReadingOfTheObject) {
    const auto vi = Open();
    Fail("IviSession_GetDataPtr", 0xBFFA1198, 2);
    EXPECT_EQ(Status(TARNEX_close(vi)), Status(0xBFFA1198));
    EXPECT_EQ(doubles::TheScript().Count("IviSession_Dispose"), 0U);
    EXPECT_EQ(Status(TARNEX_close(vi)), Status(0x00000000));
}

TEST_F(Close, OfAHandleWithoutAnObjectSucceedsAndDisposesOfNothing) {
    ViSession vi = VI_NULL;
    doubles::TheSessionService().New(&vi);
    EXPECT_EQ(Status(TARNEX_close(vi)), Status(0x00000000));
    EXPECT_EQ(doubles::TheScript().Count("IviSession_Dispose"), 0U);
}

TEST_F(Close, IgnoresAConnectionThatDoesNotClose) {
    const auto vi = Open();
    Fail("viClose", 0xBFFF003E);
    EXPECT_EQ(Status(TARNEX_close(vi)), Status(0x00000000));
    EXPECT_THAT(doubles::TheSessionService().Recorded(),
                ElementsAre(doubles::RecordedError{vi, static_cast<ViStatus>(0xBFFF003E), ""}));
    EXPECT_EQ(doubles::TheSessionService().OpenHandles(), 0U);
}

TEST_F(Close, ThatCannotDisposeReturnsThatStatusAndMakesASecondCloseHarmless) {
    const auto vi = Open();
    Fail("IviSession_Dispose", 0xBFFA1198);
    EXPECT_EQ(Status(TARNEX_close(vi)), Status(0xBFFA1198));
    EXPECT_EQ(Status(TARNEX_close(vi)), Status(0x00000000));
    EXPECT_EQ(Status(TARNEX_reset(vi)), Status(0xBFFA1190));
}

TEST_F(Close, OfASimulatedSessionTouchesNoVisa) {
    const auto vi = Open("Simulate=1");
    EXPECT_EQ(Status(TARNEX_close(vi)), Status(0x00000000));
    EXPECT_EQ(doubles::TheScript().Count("viClose"), 0U);
}

TEST_F(Close, OfOneSessionLeavesTheOthersTheirChannels) {
    const auto first = Open();
    const auto second = Open();
    TARNEX_ConfigureVoltageLevel(first, "OutputChannel1", 1.0);
    TARNEX_ConfigureVoltageLevel(second, "OutputChannel1", 2.0);
    TARNEX_close(first);
    TakeWritten();
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(second, "OutputChannel2", 3.0)), Status(0x00000000));
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR2:VOLT 3.000000\n"));
}

} // namespace
} // namespace contract
