#include "tests/unit/framework/framework_fixture.h"

namespace unit {

SessionScript& TheSessions() {
    static SessionScript script;
    return script;
}

ViStatus TestSession::Answer(const std::string& call) {
    auto& script = TheSessions();
    script.calls.push_back(call);
    const auto answer = script.answers.find(call);
    return answer == script.answers.end() ? VI_SUCCESS : answer->second();
}

FrameworkTest::FrameworkTest() {
    doubles::TheScript().Reset();
    doubles::TheSessionService().Reset();
    doubles::TheConfigServer().Reset();
    TheSessions() = {};
}

FrameworkTest::~FrameworkTest() {
    EXPECT_EQ(doubles::TheConfigServer().OpenHandles(), 0U) << "configuration handles were left open";
    EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 0) << "a session lock was left behind";
    EXPECT_EQ(TheSessions().alive, 0) << "a session object was left behind";
}

ViSession FrameworkTest::NewHandle() {
    ViSession vi = VI_NULL;
    EXPECT_EQ(doubles::TheSessionService().New(&vi), VI_SUCCESS);
    return vi;
}

ViSession FrameworkTest::Open(const char* optionString) {
    ViSession vi = VI_NULL;
    EXPECT_EQ(Status(CreateTestSession("resource", VI_FALSE, VI_FALSE, optionString, &vi)), Status(0U));
    TheSessions().calls.clear();
    doubles::TheScript().ForgetCalls();
    return vi;
}

std::vector<RecordedError> FrameworkTest::TakeRecorded() {
    std::vector<RecordedError> recorded;
    for (const auto& error : doubles::TheSessionService().Recorded()) {
        recorded.push_back({error.vi, Status(error.code), error.description});
    }
    doubles::TheSessionService().ForgetRecorded();
    return recorded;
}

} // namespace unit
