#include <atomic>
#include <thread>

#include "tests/system/supply_fixture.h"

namespace system_tests {
namespace {

class Threads : public SupplyTest {};

TEST_F(Threads, WaitForASessionThatAnotherOneHasLocked) {
    const auto vi = Open("Simulate=1");
    EXPECT_EQ(TARNEX_LockSession(vi, nullptr), 0);
    EXPECT_EQ(TARNEX_reset(vi), 0); // the holder itself goes on
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

TEST_F(Threads, AreNotLockedOutByAnUnlockThatNoLockCameBefore) {
    const auto vi = Open("Simulate=1");
    EXPECT_EQ(TARNEX_UnlockSession(vi, nullptr), 0); // it gives back the lock of its own call
    ViStatus status = -1;
    std::thread other([&] { status = TARNEX_reset(vi); });
    other.join();
    EXPECT_EQ(status, 0);
}

TEST_F(Threads, OnSessionsOfTheirOwnOpenUseAndCloseThemSideBySide) {
    constexpr int kThreads = 8;
    constexpr int kRounds = 20;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    std::atomic<int> wrong{0};
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back([&wrong, number] {
            virtual_supply::VirtualSupply supply;
            virtual_supply::VirtualSupplyServer server(supply);
            auto resource = server.resource();
            for (int round = 0; round < kRounds; ++round) {
                ViSession vi = VI_NULL;
                const double level = 1.0 + number + round / 32.0;
                double read = 0.0;
                const bool right = TARNEX_init(resource.data(), VI_TRUE, VI_FALSE, &vi) >= 0 &&
                                   TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", level) >= 0 &&
                                   TARNEX_Measure(vi, "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE, &read) >= 0 &&
                                   read == level && TARNEX_close(vi) >= 0;
                wrong += right ? 0 : 1;
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

TEST_F(Threads, OnOneSessionLoseNoReply) {
    const auto vi = Open();
    std::vector<std::thread> threads;
    threads.reserve(2);
    std::atomic<int> wrong{0};
    for (const auto* channel : {"OutputChannel1", "OutputChannel2"}) {
        threads.emplace_back([&wrong, vi, channel] {
            for (int round = 0; round < 100; ++round) {
                const double level = 1.0 + round / 64.0;
                double read = 0.0;
                TARNEX_ConfigureVoltageLevel(vi, channel, level);
                TARNEX_Measure(vi, channel, TARNEX_VAL_MEASURE_VOLTAGE, &read);
                wrong += read == level ? 0 : 1;
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace system_tests
