// Long use of sessions on a supply with random faults: every failure follows an ordered fault, and memory and open
// files do not grow.
//
// Usage: soak SECONDS
#include <dirent.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fstream>
#include <random>
#include <string>

#include "include/TARNEX.h"
#include "tests/support/forked_supply.h"

namespace {

using Clock = std::chrono::steady_clock;
using virtual_supply::FaultKind;

constexpr const char* kFirst = "OutputChannel1";

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kInstrumented = true; // sanitizers keep freed memory, so its amount is not checked
#else
constexpr bool kInstrumented = false;
#endif

double ResidentKibibytes() {
    std::ifstream statm("/proc/self/statm");
    double all = 0.0;
    double resident = 0.0;
    statm >> all >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1024.0;
}

int OpenFiles() {
    int count = 0;
    DIR* folder = opendir("/proc/self/fd");
    while (folder != nullptr && readdir(folder) != nullptr) {
        ++count;
    }
    if (folder != nullptr) {
        closedir(folder);
    }
    return count;
}

struct Kind {
    FaultKind kind;
    std::uint64_t value;
    bool slow; // costs a time-out
};

constexpr std::array kKinds{
    Kind{FaultKind::Drop, 0, false},    Kind{FaultKind::Delay, 5, false},   Kind{FaultKind::Silent, 0, true},
    Kind{FaultKind::Garbage, 0, false}, Kind{FaultKind::Cut, 0, true},      Kind{FaultKind::Long, 2000, false},
    Kind{FaultKind::CrLf, 0, false},    Kind{FaultKind::Delay, 2500, true},
};

class Soak {
  public:
    explicit Soak(std::chrono::seconds duration) : duration_(duration) {}

    int Run() {
        const auto begin = Clock::now();
        auto nextProgress = begin + std::chrono::seconds(10);
        // Objects that are made once exist after the first part; memory must not grow after it.
        const auto part = std::min<Clock::duration>(duration_ / 6, std::chrono::minutes(1));
        double firstMemory = 0.0;
        int firstFiles = 0;
        std::size_t firstFailed = 0;
        Open();
        while (Clock::now() - begin < duration_ && complaints_ == 0) {
            Step();
            if (firstMemory == 0.0 && Clock::now() - begin > part) {
                firstMemory = ResidentKibibytes();
                firstFiles = OpenFiles();
                firstFailed = failedCreations_;
            }
            if (Clock::now() > nextProgress && isatty(STDERR_FILENO) != 0) {
                std::fprintf(stderr, "\r%zu calls, %zu faults ", calls_, faults_);
                nextProgress += std::chrono::seconds(10);
            }
        }
        const auto lastMemory = ResidentKibibytes();
        const auto lastFiles = OpenFiles();
        TARNEX_close(vi_);
        // The service keeps the handles of failed creations.
        const double kept = static_cast<double>(failedCreations_ - firstFailed) * kKibibytesPerHandle;
        const double grown = lastMemory - firstMemory - kept;
        // In a short run the allocator still grows.
        const double allowance = duration_ >= std::chrono::minutes(10) ? firstMemory * 0.01 : 256.0;
        const bool flat = (kInstrumented || grown <= allowance) && lastFiles == firstFiles;
        std::printf("%lld s: %zu calls, %zu sessions, %zu faults ordered, %zu calls failed, each after a fault: %s; "
                    "memory %.0f KiB, %+.0f KiB since the first part, %.0f of them kept by %zu failed creations; "
                    "files %d, %+d: %s\n",
                    static_cast<long long>(duration_.count()), calls_, sessions_, faults_, failures_,
                    complaints_ == 0 ? "yes" : "NO", lastMemory, lastMemory - firstMemory, kept,
                    failedCreations_ - firstFailed, lastFiles, lastFiles - firstFiles,
                    flat ? (kInstrumented ? "files flat, memory not looked at" : "flat") : "GREW");
        return complaints_ == 0 && flat ? 0 : 1;
    }

  private:
    static constexpr double kKibibytesPerHandle = 0.25;

    std::size_t Below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_); }

    void Complain(const char* what) {
        std::printf("after %zu calls: %s\n", calls_, what);
        ++complaints_;
    }

    void Step() {
        bool faulted = false;
        if (Below(50) == 0) {
            const auto& kind = kKinds.at(Below(kKinds.size()));
            if (!kind.slow || Below(20) == 0) {
                supply_.FaultForNextCommand(kind.kind, kind.value);
                ++faults_;
                faulted = true;
            }
        }
        const bool creates = Below(100) == 0;
        const bool succeeded = creates ? Reopen() : Use();
        failures_ += succeeded ? 0 : 1;
        if (!succeeded && !faulted) {
            Complain("a call failed without a fault");
        }
        if (!faulted) {
            return;
        }
        // After a success too: a long or late reply leaves bytes for the next one.
        if (vi_ != VI_NULL) {
            TARNEX_close(vi_);
        }
        Open();
    }

    void Open() {
        vi_ = VI_NULL;
        TARNEX_ClearError(VI_NULL);
        if (TryOpen() < 0) {
            Complain("a new session on a healthy supply did not open");
        }
    }

    ViStatus TryOpen() {
        auto resource = supply_.Resource();
        ++sessions_;
        return TARNEX_InitWithOptions(resource.data(), VI_TRUE, VI_FALSE, Below(2) == 0 ? "QueryInstrStatus=1" : "",
                                      &vi_);
    }

    bool Reopen() {
        TARNEX_close(vi_);
        vi_ = VI_NULL;
        try {
            if (TryOpen() >= 0) {
                return true;
            }
        } catch (const std::exception&) {
            vi_ = VI_NULL;
        }
        ++failedCreations_;
        return false;
    }

    /// Sets and reads back on both channels; false when something failed.
    bool Use() {
        const double level = static_cast<double>(Below(320)) / 64.0;
        const auto* const channel = Below(2) == 0 ? kFirst : "OutputChannel2";
        ViReal64 read = -1.0;
        ViBoolean on = VI_FALSE;
        calls_ += 4;
        try {
            const bool succeeded = TARNEX_ConfigureVoltageLevel(vi_, channel, level) >= 0 &&
                                   TARNEX_Measure(vi_, channel, TARNEX_VAL_MEASURE_VOLTAGE, &read) >= 0 &&
                                   TARNEX_ConfigureOutputEnabled(vi_, channel, VI_TRUE) >= 0 &&
                                   TARNEX_GetAttributeViBoolean(vi_, channel, TARNEX_ATTR_OUTPUT_ENABLED, &on) >= 0;
            TARNEX_ClearError(vi_);
            return succeeded && read == level && on == VI_TRUE;
        } catch (const std::exception&) { // a malformed reply
            return false;
        }
    }

    virtual_supply::ForkedSupply supply_;
    std::chrono::seconds duration_;
    std::mt19937 random_{std::random_device{}()};
    ViSession vi_ = VI_NULL;
    std::size_t calls_ = 0;
    std::size_t sessions_ = 0;
    std::size_t faults_ = 0;
    std::size_t failures_ = 0;
    std::size_t failedCreations_ = 0;
    std::size_t complaints_ = 0;
};

} // namespace

int main(int argc, char** argv) {
    long seconds = 0;
    if (argc != 2 || std::from_chars(argv[1], argv[1] + std::strlen(argv[1]), seconds).ec != std::errc() ||
        seconds < 1) {
        std::fputs("usage: soak SECONDS\n", stderr);
        return 2;
    }
    setenv("IVI_CONFIG_STORE", "/nonexistent/store.xml", 1);
    return Soak(std::chrono::seconds(seconds)).Run();
}
