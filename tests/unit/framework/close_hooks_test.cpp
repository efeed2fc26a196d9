#include "framework/close_hooks.h"

#include <atomic>
#include <stdexcept>
#include <thread>

#include "tests/unit/framework/framework_fixture.h"

namespace unit {
namespace {

// Hooks cannot be removed, so each test adds its own, which have no effect after the test.
class CloseHooks : public FrameworkTest {
  protected:
    CloseHooks() { told_.clear(); }
    CloseHooks(const CloseHooks&) = delete;
    CloseHooks& operator=(const CloseHooks&) = delete;
    ~CloseHooks() override { ++test_; }

    static void AddHook(nrt2::CloseHook hook) {
        nrt2::AddCloseHook(std::move(hook));
        ++added_;
    }

    /// Adds a hook of this test that appends `name` and the handle to `told_`.
    static void Add(const std::string& name) {
        AddHook([name, mine = test_](ViSession vi) {
            if (test_ == mine) {
                told_.push_back(name + " " + std::to_string(vi));
            }
        });
    }

    static inline std::vector<std::string> told_;
    static inline int test_ = 0;
    static inline int added_ = 0; // by all tests of the process
};

TEST_F(CloseHooks, RunInTheOrderOfTheirAdditionWithTheHandle) {
    Add("first");
    Add("second");
    nrt2::RunCloseHooks(42);
    EXPECT_THAT(told_, ElementsAre("first 42", "second 42"));
    Add("third");
    nrt2::RunCloseHooks(43);
    EXPECT_THAT(told_, ElementsAre("first 42", "second 42", "first 43", "second 43", "third 43"));
}

TEST_F(CloseHooks, RunBeforeTheSessionIsDisconnected) {
    const auto vi = Open();
    AddHook([mine = test_](ViSession closing) {
        if (test_ == mine) {
            TheSessions().calls.push_back("hook " + std::to_string(closing));
        }
    });
    EXPECT_EQ(nrt2::CloseSession(vi), VI_SUCCESS);
    EXPECT_THAT(TakeCalls(), ElementsAre("hook " + std::to_string(vi), "disconnect", "destroy"));
}

TEST_F(CloseHooks, DoNotRunForAnUnknownHandle) {
    Add("hook");
    EXPECT_EQ(Status(nrt2::CloseSession(7)), Status(0xBFFA1190));
    EXPECT_THAT(told_, IsEmpty());
}

TEST_F(CloseHooks, AddedByAHookRunAtTheNextClose) {
    bool add = true;
    AddHook([&add, mine = test_](ViSession /*vi*/) {
        if (test_ == mine && std::exchange(add, false)) {
            Add("late");
        }
    });
    nrt2::RunCloseHooks(1);
    EXPECT_THAT(told_, IsEmpty());
    nrt2::RunCloseHooks(2);
    EXPECT_THAT(told_, ElementsAre("late 2"));
}

TEST_F(CloseHooks, MayBeAddedWhileOthersRun) {
    std::atomic<int> ran{0};
    std::thread adding([&ran] {
        for (int i = 0; i < 3; ++i) {
            AddHook([&ran, mine = test_](ViSession /*vi*/) {
                if (test_ == mine) {
                    ++ran;
                }
            });
        }
    });
    for (int i = 0; i < 2000; ++i) {
        nrt2::RunCloseHooks(1);
    }
    adding.join();
    ran = 0;
    nrt2::RunCloseHooks(1);
    EXPECT_EQ(ran, 3);
}

TEST_F(CloseHooks, HaveRoomForSixteen) {
    while (added_ < 16) {
        Add("hook");
    }
    EXPECT_THROW(nrt2::AddCloseHook([](ViSession /*vi*/) {}), std::length_error);
    nrt2::RunCloseHooks(5);
    ASSERT_FALSE(told_.empty());
    EXPECT_EQ(told_.back(), "hook 5");
}

} // namespace
} // namespace unit
