// Several supplies at the same time, with a thread for each. Calls on different sessions run in parallel; calls on the
// same session run one after another.
//
// Usage: several_supplies RESOURCE...        one resource per supply; the same one may be given twice
#include <TARNEX.h>

#include <array>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

// A session that its destructor closes. Negative statuses are errors and throw; positive statuses are success.
class Supply {
  public:
    explicit Supply(const std::string& resource) {
        std::string name = resource; // the parameter is not const
        TARNEX_ClearError(VI_NULL);
        Check(TARNEX_init(name.data(), VI_TRUE, VI_FALSE, &session_));
    }
    Supply(const Supply&) = delete;
    Supply& operator=(const Supply&) = delete;
    ~Supply() { TARNEX_close(session_); }

    void SetVoltage(const char* channel, double volts) {
        Check(TARNEX_ConfigureVoltageLevel(session_, channel, volts));
    }
    // The programmed level, read back.
    double Voltage(const char* channel) {
        double volts = 0.0;
        Check(TARNEX_Measure(session_, channel, TARNEX_VAL_MEASURE_VOLTAGE, &volts));
        return volts;
    }

  private:
    void Check(ViStatus status) const {
        if (status < VI_SUCCESS) {
            std::array<ViChar, 1024> description{};
            TARNEX_GetError(session_, nullptr, static_cast<ViInt32>(description.size()), description.data());
            throw std::runtime_error(description.data());
        }
    }

    ViSession session_ = VI_NULL;
};

// Runs in a thread: steps the voltage up and reads every level back.
std::string StepUp(const std::string& resource, const char* channel) {
    constexpr int kSteps = 50;
    int right = 0;
    try {
        Supply supply(resource);
        for (int step = 1; step <= kSteps; ++step) {
            const double volts = step / 10.0;
            supply.SetVoltage(channel, volts);
            right += supply.Voltage(channel) == volts ? 1 : 0;
        }
    } catch (const std::exception& failure) {
        return failure.what();
    }
    return std::to_string(right) + " of " + std::to_string(kSteps) + " levels read back as programmed";
}

} // namespace

int main(int argc, char* argv[]) {
    const std::vector<std::string> resources(argv + (argc > 0 ? 1 : 0), argv + argc);
    if (resources.empty()) {
        static_cast<void>(std::fputs("usage: several_supplies RESOURCE...\n", stderr));
        return 2;
    }
    // Threads use the two channels alternately, so that two threads with the same supply do not share a channel.
    constexpr std::array<const char*, 2> kChannels{"OutputChannel1", "OutputChannel2"};
    std::vector<std::string> results(resources.size());
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < resources.size(); ++i) {
        threads.emplace_back([&, i] { results[i] = StepUp(resources[i], kChannels[i % kChannels.size()]); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    for (std::size_t i = 0; i < resources.size(); ++i) {
        std::printf("Supply %zu, %s: %s\n", i + 1, kChannels[i % kChannels.size()], results[i].c_str());
    }
    return 0;
}
