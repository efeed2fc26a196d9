#include "framework/call_frame.h"

#include <array>
#include <stdexcept>

#include "tests/unit/framework/framework_fixture.h"

namespace unit {
namespace {

class Frame : public FrameworkTest {
  protected:
    /// Runs the call frame around a body that returns `status`. The body adds an entry to the sessions' calls.
    static Status Call(ViSession vi, std::uint32_t status = 0) {
        return Status(nrt2::LockedCall<TestSession>(vi, [&](TestSession& session) {
            TheSessions().calls.push_back("body of " + std::to_string(session.Handle()) + " under " +
                                          std::to_string(doubles::TheSessionService().LocksHeld()));
            return Code(status);
        }));
    }

    static Status Create(ViSession& vi, ViBoolean idQuery = VI_FALSE, ViBoolean reset = VI_FALSE) {
        return Status(CreateTestSession("resource", idQuery, reset, "", &vi));
    }
};

TEST_F(Frame, RunsItsBodyOnceUnderTheLockAndReturnsTheStatus) {
    const auto vi = Open();
    EXPECT_EQ(Call(vi), Status(0U));
    EXPECT_THAT(TakeCalls(), ElementsAre("body of " + std::to_string(vi) + " under 1"));
    EXPECT_EQ(Call(vi, 0x3FFF0005), Status(0x3FFF0005));
    EXPECT_EQ(Call(vi, 0xBFFA4214), Status(0xBFFA4214));
    EXPECT_THAT(TakeRecorded(), IsEmpty()); // the body records errors itself
    nrt2::CloseSession(vi);
}

TEST_F(Frame, RunsNoBodyWithoutHandleLockOrObject) {
    const auto vi = Open();
    EXPECT_EQ(Call(vi + 1), Status(0xBFFA1190));
    Fail("IviSession_GetDataPtr", 0xBFFA1198);
    EXPECT_EQ(Call(vi), Status(0xBFFA1190));
    Fail("IviSession_Lock", 0xBFFA1198);
    EXPECT_EQ(Call(vi), Status(0xBFFA1198));
    Fail("IviSession_GetDataPtr", 0xBFFA1198, 2);
    EXPECT_EQ(Call(vi), Status(0xBFFA1198));
    EXPECT_EQ(Call(NewHandle()), Status(0xBFFA1190));
    EXPECT_THAT(TakeCalls(), IsEmpty());
    EXPECT_THAT(TakeRecorded(), IsEmpty());
    nrt2::CloseSession(vi);
}

TEST_F(Frame, TreatsALockWithAWarningAsHeld) {
    const auto vi = Open();
    Fail("IviSession_Lock", 0x3FFA0001);
    EXPECT_EQ(Call(vi, 0xBFFA4214), Status(0xBFFA4214));
    EXPECT_EQ(doubles::TheScript().Count("IviSession_Unlock"), 1U);
    doubles::TheSessionService().Lock(vi, nullptr); // balances the unlock: the double's warning did not take the lock
    nrt2::CloseSession(vi);
}

TEST_F(Frame, IgnoresAnUnlockThatFails) {
    const auto vi = Open();
    Fail("IviSession_Unlock", 0xBFFA1198);
    EXPECT_EQ(Call(vi), Status(0U));
    nrt2::CloseSession(vi);
}

TEST_F(Frame, ReleasesTheLockWhenItsBodyThrows) {
    const auto vi = Open();
    const auto throwing = [](TestSession& /*session*/) -> ViStatus { throw std::out_of_range("body"); };
    EXPECT_THROW(nrt2::LockedCall<TestSession>(vi, throwing), std::out_of_range);
    EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 0);
    nrt2::CloseSession(vi);
}

TEST_F(Frame, NestsOnOneThread) {
    const auto vi = Open();
    const auto outer = [&](TestSession& /*session*/) -> ViStatus { return static_cast<ViStatus>(Call(vi).code); };
    EXPECT_EQ(Status(nrt2::LockedCall<TestSession>(vi, outer)), Status(0U));
    EXPECT_THAT(TakeCalls(), ElementsAre("body of " + std::to_string(vi) + " under 2"));
    nrt2::CloseSession(vi);
}

TEST_F(Frame, CreationBindsThenInitializesThenReadsTheObjectAgain) {
    ViSession vi = VI_NULL;
    EXPECT_EQ(Create(vi), Status(0U));
    EXPECT_THAT(TakeCalls(), ElementsAre("connect", "identify"));
    const auto calls = doubles::TheScript().Calls();
    EXPECT_EQ(calls.front(), "IviSession_New");
    EXPECT_EQ(calls.at(1), "IviSession_SetDataPtr");
    EXPECT_EQ(calls.back(), "IviSession_GetDataPtr");
    nrt2::CloseSession(vi);
}

TEST_F(Frame, CreationTreatsNullTextsAsEmpty) {
    ViSession vi = VI_NULL;
    EXPECT_EQ(Status(CreateTestSession(nullptr, VI_FALSE, VI_FALSE, nullptr, &vi)), Status(0U));
    nrt2::DriverSession* session = nullptr;
    nrt2::GetSession(vi, session);
    EXPECT_EQ(session->ResourceName(), "");
    EXPECT_EQ(session->GivenOptionString(), "");
    nrt2::CloseSession(vi);
}

TEST_F(Frame, CreationReturnsNoWarningOfTheInitialization) {
    Let("identify", 0x3FFF0005);
    ViSession vi = VI_NULL;
    EXPECT_EQ(Create(vi), Status(0U));
    nrt2::CloseSession(vi);
}

TEST_F(Frame, CreationThatFailsDestroysTheObjectAndReturnsNoHandle) {
    Let("identify", 0xBFFA4214);
    ViSession vi = 7;
    EXPECT_EQ(Create(vi), Status(0xBFFA4214));
    EXPECT_EQ(vi, 0U);
    EXPECT_THAT(TakeCalls(), ElementsAre("connect", "identify", "disconnect", "destroy"));
    EXPECT_EQ(doubles::TheSessionService().OpenHandles(), 1U); // Required: it stays with the service
}

TEST_F(Frame, CreationThatCannotBindInitializesNothing) {
    Fail("IviSession_SetDataPtr", 0xBFFA1198);
    ViSession vi = 7;
    EXPECT_EQ(Create(vi), Status(0xBFFA1198));
    EXPECT_EQ(vi, 0U);
    EXPECT_THAT(TakeCalls(), ElementsAre("destroy"));
}

TEST_F(Frame, CreationThatThrowsDestroysTheObjectAndReturnsNoHandle) {
    for (const auto* step : {"connect", "clear", "identify", "reset"}) {
        TheSessions() = {};
        TheSessions().answers[step] = []() -> ViStatus { throw std::invalid_argument("step"); };
        ViSession vi = 7;
        EXPECT_THROW(CreateTestSession("", VI_FALSE, VI_TRUE, "QueryInstrStatus=1", &vi), std::invalid_argument)
            << step;
        EXPECT_EQ(vi, 0U) << step;
        EXPECT_EQ(TakeCalls().back(), "destroy") << step;
    }
}

TEST_F(Frame, CreationResetsAfterSuccessForEveryArgumentButZero) {
    for (const ViBoolean reset : std::array<ViBoolean, 3>{1, 2, 0xFFFF}) {
        ViSession vi = VI_NULL;
        Let("reset", 0xBFFA4214);
        EXPECT_EQ(Create(vi, VI_FALSE, reset), Status(0U));
        EXPECT_THAT(TakeCalls(), ElementsAre("connect", "identify", "reset")) << reset;
        EXPECT_EQ(nrt2::initializationRequests.reset, reset == 1);
        nrt2::CloseSession(vi);
        TakeCalls();
    }
    EXPECT_THAT(TakeRecorded(), IsEmpty());
}

TEST_F(Frame, CreationKeepsTheLatestRequestsOfTheProcessEvenWithANullHandlePointer) {
    const auto request = [](ViBoolean idQuery, ViBoolean reset) {
        return Status(CreateTestSession("", idQuery, reset, "", nullptr));
    };
    EXPECT_EQ(request(1, 1), Status(0xBFFA0058));
    EXPECT_TRUE(nrt2::initializationRequests.idQuery);
    EXPECT_TRUE(nrt2::initializationRequests.reset);
    EXPECT_EQ(request(2, 0), Status(0xBFFA0058));
    EXPECT_FALSE(nrt2::initializationRequests.idQuery);
    EXPECT_FALSE(nrt2::initializationRequests.reset);
    EXPECT_THAT(doubles::TheScript().Calls(), IsEmpty());
    EXPECT_THAT(TakeRecorded(), IsEmpty());
}

TEST_F(Frame, CreationThatCannotReadTheObjectAgainFailsButReturnsAHandleToClose) {
    Fail("IviSession_GetDataPtr", 0xBFFA1198);
    ViSession vi = VI_NULL;
    EXPECT_EQ(Create(vi, VI_FALSE, VI_TRUE), Status(0xBFFA1198));
    ASSERT_NE(vi, 0U);
    EXPECT_THAT(TakeCalls(), ElementsAre("connect", "identify"));
    EXPECT_EQ(nrt2::CloseSession(vi), VI_SUCCESS);
}

TEST_F(Frame, CloseIgnoresTheStatusOfTheDisconnection) {
    const auto vi = Open();
    Let("disconnect", 0xBFFA4214);
    EXPECT_EQ(nrt2::CloseSession(vi), VI_SUCCESS);
    EXPECT_THAT(TakeCalls(), ElementsAre("disconnect", "destroy"));
    EXPECT_EQ(doubles::TheSessionService().OpenHandles(), 0U);
}

TEST_F(Frame, CloseDestroysTheObjectEvenWhenItsDisconnectionThrows) {
    const auto vi = Open();
    TheSessions().answers["disconnect"] = []() -> ViStatus { throw std::out_of_range("step"); };
    EXPECT_THROW(nrt2::CloseSession(vi), std::out_of_range);
    EXPECT_THAT(TakeCalls(), ElementsAre("disconnect", "destroy"));
    EXPECT_EQ(Status(nrt2::CloseSession(vi)), Status(0U)); // there is no object
    EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(Frame, CloseThatCannotDisposeRemovesTheObjectFromTheHandle) {
    const auto vi = Open();
    Fail("IviSession_Dispose", 0xBFFA1198);
    EXPECT_EQ(Status(nrt2::CloseSession(vi)), Status(0xBFFA1198));
    EXPECT_EQ(Status(nrt2::CloseSession(vi)), Status(0U));
    EXPECT_THAT(TakeCalls(), ElementsAre("disconnect", "destroy"));
}

} // namespace
} // namespace unit
