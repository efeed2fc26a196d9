#include <atomic>
#include <thread>

#include "tests/system/supply_fixture.h"

namespace system_tests {
namespace {

class Threads : public SupplyTest {};

TEST_F(Threads, WaitForASessionThatAnotherOneHasLocked) {
    const auto vi = Open("Simulate=1");
    EXPECT_EQ(TARNEX_LockSession(vi, nullptr), 0);
    EXPECT_EQ(TARNEX_reset(vi), 0); // the thread that holds the lock is not blocked
    std::atomic<bool> passed{false};
    std::thread other([&] {
        TARNEX_reset(vi);
        passed = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_FALSE(passed);
    EXPECT_EQ(TARNEX_UnlockSession(vi, nullptr), 0);
    other.join();
    EXPECT_TRUE(passed);
}

TEST_F(Threads, AreNotBlockedByAnUnmatchedUnlock) {
    const auto vi = Open("Simulate=1");
    EXPECT_EQ(TARNEX_UnlockSession(vi, nullptr), 0); // it releases the lock that its own frame takes
    ViStatus status = -1;
    std::thread other([&] { status = TARNEX_reset(vi); });
    other.join();
    EXPECT_EQ(status, 0);
}

/// Runs `body(number)`, which returns a number of failures, on `count` threads at once. Returns the sum.
template <typename Body>
int OnThreads(int count, const Body& body) {
    std::vector<std::thread> threads;
    threads.reserve(static_cast<std::size_t>(count));
    std::atomic<int> wrong{0};
    for (int number = 0; number < count; ++number) {
        threads.emplace_back([&wrong, &body, number] { wrong += body(number); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    return wrong;
}

constexpr int kThreads = 16;

TEST_F(Threads, OnSessionsOfTheirOwnOpenUseAndCloseThemSideBySide) {
    EXPECT_EQ(OnThreads(kThreads,
                        [](int number) {
                            virtual_supply::VirtualSupply supply;
                            virtual_supply::VirtualSupplyServer server(supply);
                            auto resource = server.Resource();
                            int wrong = 0;
                            for (int round = 0; round < 20; ++round) {
                                ViSession vi = VI_NULL;
                                const double level = 1.0 + number + round / 32.0;
                                double read = 0.0;
                                const bool right =
                                    TARNEX_init(resource.data(), VI_TRUE, VI_FALSE, &vi) >= 0 &&
                                    TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", level) >= 0 &&
                                    TARNEX_Measure(vi, "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE, &read) >= 0 &&
                                    read == level && TARNEX_close(vi) >= 0;
                                wrong += right ? 0 : 1;
                            }
                            return wrong;
                        }),
              0);
}

TEST_F(Threads, OnSimulatedSessionsOpenUseAndCloseThemSideBySide) {
    EXPECT_EQ(OnThreads(kThreads,
                        [](int /*number*/) {
                            int wrong = 0;
                            for (int round = 0; round < 50; ++round) {
                                ViSession vi = VI_NULL;
                                char resource[] = "";
                                double read = -1.0; // drawn from the one random source of the process
                                const bool right =
                                    TARNEX_InitWithOptions(resource, VI_FALSE, VI_TRUE, "Simulate=1", &vi) >= 0 &&
                                    TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1,OutputChannel2", 1.0) >= 0 &&
                                    TARNEX_Measure(vi, "OutputChannel2", TARNEX_VAL_MEASURE_VOLTAGE, &read) >= 0 &&
                                    read >= 0.0 && read <= 5.5 && TARNEX_close(vi) >= 0;
                                wrong += right ? 0 : 1;
                            }
                            return wrong;
                        }),
              0);
}

TEST_F(Threads, OnOneSessionGetTheirOwnReplies) {
    const auto vi = Open();
    EXPECT_EQ(OnThreads(2,
                        [vi](int number) {
                            const auto* const channel = number == 0 ? "OutputChannel1" : "OutputChannel2";
                            int wrong = 0;
                            for (int round = 0; round < 100; ++round) {
                                const double level = 1.0 + round / 64.0;
                                double read = 0.0;
                                TARNEX_ConfigureVoltageLevel(vi, channel, level);
                                TARNEX_Measure(vi, channel, TARNEX_VAL_MEASURE_VOLTAGE, &read);
                                wrong += read == level ? 0 : 1;
                            }
                            return wrong;
                        }),
              0);
}

TEST_F(Threads, OnOneSessionDoSeveralCallsAsOneUnderItsLock) {
    const auto vi = Open();
    EXPECT_EQ(OnThreads(kThreads,
                        [vi](int number) {
                            int wrong = 0;
                            for (int round = 0; round < 20; ++round) {
                                const double level = 1.0 + number / 4.0 + round / 64.0;
                                double read = 0.0;
                                wrong += TARNEX_LockSession(vi, nullptr) < 0 ? 1 : 0;
                                TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", level);
                                TARNEX_Measure(vi, "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE, &read);
                                wrong += TARNEX_UnlockSession(vi, nullptr) < 0 ? 1 : 0;
                                wrong += read == level ? 0 : 1; // no other thread set a level in between
                            }
                            return wrong;
                        }),
              0);
}

} // namespace
} // namespace system_tests
