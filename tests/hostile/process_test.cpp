// The driver in a process that forks, runs out of files, is interrupted by signals or has closed its standard output.
// The supply runs in a process of its own and is not affected.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "include/TARNEX.h"
#include "instrument/tarnex_supply.h"
#include "tests/support/forked_supply.h"

namespace {

constexpr const char* kFirst = "OutputChannel1";

class Process : public testing::Test {
  protected:
    Process() {
        setenv("IVI_CONFIG_STORE", "/nonexistent/store.xml", 1);
        TARNEX_ClearError(VI_NULL);
    }
    ~Process() override {
        for (const auto vi : opened_) {
            TARNEX_close(vi);
        }
    }

    ViStatus TryOpen(ViSession& vi) {
        auto resource = supply_.Resource();
        const auto status = TARNEX_init(resource.data(), VI_TRUE, VI_FALSE, &vi);
        if (vi != VI_NULL) {
            opened_.push_back(vi);
        }
        return status;
    }
    ViSession Open() {
        ViSession vi = VI_NULL;
        EXPECT_GE(TryOpen(vi), 0);
        return vi;
    }

    /// Sets a level and reads it back.
    static bool Works(ViSession vi, double level) {
        ViReal64 read = -1.0;
        return TARNEX_ConfigureVoltageLevel(vi, kFirst, level) >= 0 &&
               TARNEX_Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE, &read) >= 0 && read == level;
    }

    /// Runs `body` in a child, which ends with what it returns; its exit code, or -1 when a signal ended it.
    template <typename Body>
    static int InChild(const Body& body) {
        const auto child = fork();
        if (child == 0) {
            _exit(body());
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    virtual_supply::ForkedSupply supply_; // declared first: it forks, which must happen before any thread starts

  private:
    std::vector<ViSession> opened_;
};

TEST_F(Process, ForksAChildThatEndsAtOnceAndKeepsItsSession) {
    const auto vi = Open();
    EXPECT_EQ(InChild([] { return 3; }), 3);
    EXPECT_TRUE(Works(vi, 1.5));
}

TEST_F(Process, ForksAChildThatRunsAnotherProgramAndKeepsItsSession) {
    const auto vi = Open();
    EXPECT_EQ(InChild([] {
                  execl("/bin/sh", "sh", "-c", "exit 4", nullptr);
                  return 5;
              }),
              4);
    EXPECT_TRUE(Works(vi, 1.5));
}

TEST_F(Process, ForksAChildThatEndsThroughItsExitHandlersAndKeepsItsSession) {
    const auto vi = Open();
    EXPECT_EQ(InChild([]() -> int {
                  std::cout.flush();
                  std::exit(6); // with the session open in the child too
              }),
              6);
    EXPECT_TRUE(Works(vi, 1.5));
}

TEST_F(Process, HandsNoConnectionToTheProgramsThatItStarts) {
    Open();
    int sockets = 0;
    for (int file = 3; file < 64; ++file) {
        struct stat what {};
        if (fstat(file, &what) == 0 && S_ISSOCK(what.st_mode)) {
            ++sockets;
            EXPECT_EQ(fcntl(file, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC) << file;
        }
    }
    EXPECT_EQ(sockets, 1);
}

TEST_F(Process, EndsWithASessionLeftOpen) {
    EXPECT_EQ(InChild([&]() -> int {
                  ViSession vi = VI_NULL;
                  auto resource = supply_.Resource();
                  const bool works = TARNEX_init(resource.data(), VI_FALSE, VI_FALSE, &vi) >= 0 && Works(vi, 1.5);
                  std::exit(works ? 7 : 8);
              }),
              7);
}

TEST_F(Process, OutOfFilesFailsToOpenAndWorksAfterwards) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the checks of the instrumentation need files themselves";
#endif
    const auto vi = Open();
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const int next = dup(0); // the lowest file that is free
    ASSERT_GE(next, 0);
    close(next);
    const rlimit none{static_cast<rlim_t>(next), limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    ViSession refused = 7;
    const auto status = TryOpen(refused);
    const bool oldOneWorks = Works(vi, 1.5);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_LT(status, 0);
    EXPECT_EQ(refused, 0U);
    std::array<ViChar, 1024> text{};
    ViStatus recorded = 0;
    TARNEX_GetError(VI_NULL, &recorded, 1024, text.data());
    EXPECT_EQ(recorded, status);
    EXPECT_STRNE(text.data(), "");
    EXPECT_TRUE(oldOneWorks);
    EXPECT_TRUE(Works(Open(), 2.5));
}

std::atomic<int> interruptions{0};

TEST_F(Process, InterruptedBySignalsCompletesEveryCall) {
    const auto vi = Open();
    struct sigaction action {};
    struct sigaction before {};
    action.sa_handler = [](int) { interruptions.fetch_add(1, std::memory_order_relaxed); };
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0; // no SA_RESTART: system calls return EINTR
    ASSERT_EQ(sigaction(SIGALRM, &action, &before), 0);
    const itimerval storm{{0, 50}, {0, 50}};
    const itimerval calm{};
    ASSERT_EQ(setitimer(ITIMER_REAL, &storm, nullptr), 0);
    int failed = 0;
    for (int round = 0; round < 2000; ++round) {
        failed += Works(vi, round % 1000 / 64.0) ? 0 : 1;
    }
    for (int round = 0; round < 50; ++round) {
        failed += Works(Open(), 1.0) ? 0 : 1;
    }
    setitimer(ITIMER_REAL, &calm, nullptr);
    sigaction(SIGALRM, &before, nullptr);
    EXPECT_EQ(failed, 0);
    EXPECT_GT(interruptions, 100);
}

TEST_F(Process, MayChangeItsLocaleBetweenCalls) {
    const auto vi = Open();
    EXPECT_TRUE(Works(vi, 1.5));
    for (const auto* locale : {"C.UTF-8", "POSIX", "C"}) {
        ASSERT_NE(std::setlocale(LC_ALL, locale), nullptr) << locale;
        EXPECT_TRUE(Works(vi, 2.25)) << locale;
    }
}

/// A query of several fields prints the number of fields on standard output, which may be any kind of file.
class StandardOutput : public Process {
  protected:
    void SetUp() override {
        std::cout.flush();
        fflush(stdout);
        saved_ = dup(STDOUT_FILENO);
        ASSERT_GE(saved_, 0);
    }
    void TearDown() override { Restore(); }
    void Restore() {
        if (saved_ >= 0) {
            fflush(stdout);
            std::cout.flush();
            std::cout.clear();
            dup2(saved_, STDOUT_FILENO);
            close(saved_);
            saved_ = -1;
        }
    }

    /// The measured voltage of an unloaded channel at 2 V that is on.
    double MeasureVoltage() {
        double volts = -1.0;
        double amperes = -1.0;
        double watts = -1.0;
        ORVA::TARNEX supply;
        EXPECT_GE(supply.Open({.resource = supply_.Resource()}), 0);
        supply.SetVoltage(1, 2.0);
        supply.SetOutputEnabled(1, true);
        for (int round = 0; round < 10000; ++round) { // more than any buffer of the stream holds
            volts = -1.0;
            if (supply.MeasureAll(1, volts, amperes, watts) < 0) {
                return -2.0;
            }
        }
        return volts;
    }

  private:
    int saved_ = -1;
};

TEST_F(StandardOutput, OnAFullDiskDoesNotDisturbAMeasurement) {
    const int full = open("/dev/full", O_WRONLY);
    ASSERT_GE(full, 0);
    dup2(full, STDOUT_FILENO);
    close(full);
    const auto volts = MeasureVoltage();
    Restore();
    EXPECT_EQ(volts, 2.0);
}

TEST_F(StandardOutput, ThatIsClosedDoesNotDisturbAMeasurement) {
    close(STDOUT_FILENO);
    const auto volts = MeasureVoltage();
    Restore();
    EXPECT_EQ(volts, 2.0);
}

} // namespace
