#include <functional>

#include "framework/close_hooks.h"
#include "tests/unit/framework/framework_fixture.h"

namespace unit {
namespace {

using EmptyCloseHook = FrameworkTest;

TEST_F(EmptyCloseHook, ThrowsFromTheCloseAndLeavesSessionAndHandleIntact) {
    static std::vector<std::string> told;
    nrt2::AddCloseHook([](ViSession vi) { told.push_back("before " + std::to_string(vi)); });
    nrt2::AddCloseHook({});
    nrt2::AddCloseHook([](ViSession vi) { told.push_back("after " + std::to_string(vi)); });
    const auto vi = Open();

    EXPECT_THROW(nrt2::CloseSession(vi), std::bad_function_call);

    EXPECT_THAT(told, ElementsAre("before " + std::to_string(vi)));
    EXPECT_THAT(TakeCalls(), IsEmpty());
    EXPECT_EQ(TheSessions().alive, 1);
    EXPECT_EQ(doubles::TheSessionService().OpenHandles(), 1U);
    EXPECT_EQ(doubles::TheScript().Count("IviSession_Dispose"), 0U);
    EXPECT_EQ(doubles::TheScript().Count("IviSession_SetDataPtr"), 0U);
    const auto status = nrt2::LockedCall<TestSession>(vi, [](TestSession& session) { return session.CheckStatus(); });
    EXPECT_EQ(status, VI_SUCCESS);
    EXPECT_THAT(TakeCalls(), ElementsAre("check"));

    EXPECT_THROW(nrt2::CloseSession(vi), std::bad_function_call);
    nrt2::DriverSession* session = nullptr;
    EXPECT_EQ(nrt2::GetSession(vi, session), VI_SUCCESS);
    const std::unique_ptr<nrt2::DriverSession> owned(session); // a failed close leaves the session to the test
}

} // namespace
} // namespace unit
