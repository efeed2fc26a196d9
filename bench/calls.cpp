// The cost of one call of the driver over a VISA that does nothing, next to the same work written by hand.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "bench/handwritten.h"
#include "bench/report.h"
#include "bench/samples.h"
#include "include/TARNEX.h"
#include "include/TARNEX_supply.h"

namespace {

constexpr const char* kFirst = "OutputChannel1";
constexpr const char* kBoth = "OutputChannel1,OutputChannel2";

ViSession Open() {
    std::array<char, 64> resource{"TCPIP0::192.0.2.7::5025::SOCKET"};
    ViSession vi = VI_NULL;
    if (TARNEX_init(resource.data(), VI_FALSE, VI_FALSE, &vi) < 0) {
        std::fputs("calls: no session\n", stderr);
        std::exit(1);
    }
    return vi;
}

/// Repeats `call`, which returns a status, and fails the benchmark on a negative one.
template <typename Call>
void Repeat(benchmark::State& state, const Call& call) {
    for (auto _ : state) {
        if (call() < 0) {
            state.SkipWithError("the call failed");
            return;
        }
    }
}

/// Levels that change from call to call, so that no text can be reused.
double NextLevel() {
    static thread_local int step = 0;
    step = step == 2000 ? 0 : step + 1;
    return step * 0.01;
}

void HandwrittenSet(benchmark::State& state) {
    Repeat(state, [] { return HandwrittenSetVoltage(1, NextLevel()); });
}

void HandwrittenGet(benchmark::State& state) {
    double value = 0.0;
    Repeat(state, [&] { return HandwrittenGetVoltage(1, &value); });
}

void HandwrittenMeasure(benchmark::State& state) {
    double value = 0.0;
    Repeat(state, [&] { return HandwrittenMeasureVoltage(1, &value); });
}

void Configure(benchmark::State& state) {
    const auto vi = Open();
    Repeat(state, [=] { return TARNEX_ConfigureVoltageLevel(vi, kFirst, NextLevel()); });
    TARNEX_close(vi);
}

void ConfigureBoth(benchmark::State& state) {
    const auto vi = Open();
    Repeat(state, [=] { return TARNEX_ConfigureVoltageLevel(vi, kBoth, NextLevel() * 0.1); });
    TARNEX_close(vi);
}

void Measure(benchmark::State& state) {
    const auto vi = Open();
    ViReal64 value = 0.0;
    Repeat(state, [&] { return TARNEX_Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE, &value); });
    TARNEX_close(vi);
}

void SupplyMeasure(benchmark::State& state) {
    const auto vi = Open();
    ViReal64 value = 0.0;
    Repeat(state, [&] { return TARNEXSupply_MeasureVoltage(vi, kFirst, &value); });
    TARNEX_close(vi);
}

void SetAttribute(benchmark::State& state) {
    const auto vi = Open();
    Repeat(state, [=] { return TARNEX_SetAttributeViReal64(vi, kFirst, TARNEX_ATTR_VOLTAGE_LEVEL, NextLevel()); });
    TARNEX_close(vi);
}

void GetAttribute(benchmark::State& state) {
    const auto vi = Open();
    ViReal64 value = 0.0;
    Repeat(state, [&] { return TARNEX_GetAttributeViReal64(vi, kFirst, TARNEX_ATTR_VOLTAGE_LEVEL, &value); });
    TARNEX_close(vi);
}

/// Keeps the median of each benchmark's repetitions, in nanoseconds.
class Medians : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context& /*context*/) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const auto& run : runs) {
            if (run.error_occurred) {
                std::fprintf(stderr, "calls: %s: %s\n", run.run_name.function_name.c_str(), run.error_message.c_str());
                std::exit(1);
            }
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
                medians_[run.run_name.function_name] = run.GetAdjustedRealTime();
            }
        }
    }
    [[nodiscard]] double Of(const std::string& name) const { return medians_.at(name); }

  private:
    std::map<std::string, double> medians_;
};

void RunInterleaved(Medians& medians) {
    for (const auto& [name, function] : std::vector<std::pair<const char*, void (*)(benchmark::State&)>>{
             {"HandwrittenSet", HandwrittenSet},
             {"HandwrittenGet", HandwrittenGet},
             {"HandwrittenMeasure", HandwrittenMeasure},
             {"Configure", Configure},
             {"ConfigureBoth", ConfigureBoth},
             {"Measure", Measure},
             {"SupplyMeasure", SupplyMeasure},
             {"SetAttribute", SetAttribute},
             {"GetAttribute", GetAttribute},
         }) {
        benchmark::RegisterBenchmark(name, function);
    }
    benchmark::RegisterBenchmark("OneThread", Configure)->UseRealTime();
    benchmark::RegisterBenchmark("TwoThreads", Configure)->UseRealTime()->Threads(2);
    std::vector<std::string> flags{"calls", "--benchmark_repetitions=15", "--benchmark_enable_random_interleaving=true",
                                   "--benchmark_min_time=0.1", "--benchmark_report_aggregates_only=true"};
    std::vector<char*> argv;
    argv.reserve(flags.size());
    for (auto& flag : flags) {
        argv.push_back(flag.data());
    }
    auto argc = static_cast<int>(argv.size());
    benchmark::Initialize(&argc, argv.data());
    benchmark::RunSpecifiedBenchmarks(&medians);
}

/// One call while `others` further sessions are open, in microseconds; batches, since one call is shorter than the
/// clock's own cost.
double CallBeside(std::size_t others) {
    constexpr int kBatch = 1000;
    const auto vi = Open();
    std::vector<ViSession> sessions(others);
    for (auto& session : sessions) {
        session = Open();
        TARNEX_ConfigureVoltageLevel(session, kFirst, 1.0); // the first use registers the session's names
    }
    bench::Samples samples;
    for (int round = 0; round < 200; ++round) {
        samples.push_back(bench::Microseconds([&] {
                              for (int call = 0; call < kBatch; ++call) {
                                  TARNEX_ConfigureVoltageLevel(vi, kFirst, NextLevel());
                              }
                          }) /
                          kBatch);
    }
    // Latest first: closing searches the list of used sessions from the latest one.
    for (auto session = sessions.rbegin(); session != sessions.rend(); ++session) {
        TARNEX_close(*session);
    }
    TARNEX_close(vi);
    return bench::Median(samples);
}

/// The slowest of several shapes of a selector of 1 MiB, in milliseconds.
double SlowestLongSelector(std::string& slowest) {
    constexpr std::size_t kMebibyte = std::size_t{1} << 20U;
    const auto repeated = [](const std::string& piece) {
        std::string text;
        text.reserve(kMebibyte + piece.size());
        while (text.size() < kMebibyte) {
            text += piece;
        }
        return text;
    };
    const auto counted = [](const std::string& before, const std::string& after) {
        std::string text;
        for (int i = 1; text.size() < kMebibyte; ++i) {
            text.append(i == 1 ? "" : ",").append(before).append(std::to_string(i)).append(after);
        }
        return text;
    };
    const std::vector<std::pair<const char*, std::string>> shapes{
        {"blanks", repeated(" ")},
        {"one name", repeated("a")},
        {"digits", repeated("1")},
        {"hyphens", repeated("1-")},
        {"commas", repeated("a,")},
        {"colons", repeated("a:")},
        {"brackets", repeated("[a],")},
        {"ranges of one name", repeated("a1-a2,")},
        {"different names", counted("X", "")},
        {"different names of the channel's shape", counted("OutputChannel", "")},
        {"different ranges", counted("X", "-X2000000000")},
    };
    const auto vi = Open();
    double worst = 0.0;
    for (const auto& [shape, selector] : shapes) {
        const auto* const name = shape; // lambdas cannot capture structured bindings
        bench::Samples samples;
        for (int round = 0; round < 5; ++round) {
            samples.push_back(bench::Microseconds([=, text = selector.c_str()] {
                if (TARNEX_ConfigureVoltageLevel(vi, text, 1.0) >= 0) {
                    std::fprintf(stderr, "calls: a selector of %s was accepted\n", name);
                    std::exit(1);
                }
            }));
            TARNEX_ClearError(vi);
        }
        if (const auto median = bench::Median(samples) / 1000.0; median > worst) {
            worst = median;
            slowest = name;
        }
    }
    TARNEX_close(vi);
    return worst;
}

} // namespace

int main() {
    setenv("IVI_CONFIG_STORE", "/nonexistent/store.xml", 1); // there is only one thread
    HandwrittenOpen();
    bench::Report report;
    bench::Progress("calls over a VISA that does nothing");
    Medians medians;
    RunInterleaved(medians);
    const auto byHand = [&](const std::string& what, const std::string& measured, const std::string& baseline) {
        report.AtMostTimes(what, medians.Of(measured), "by hand", medians.Of(baseline), "ns", 2.0);
    };
    byHand("TARNEX_ConfigureVoltageLevel, one channel", "Configure", "HandwrittenSet");
    byHand("TARNEX_SetAttributeViReal64", "SetAttribute", "HandwrittenSet");
    byHand("TARNEX_GetAttributeViReal64", "GetAttribute", "HandwrittenGet");
    byHand("TARNEX_Measure", "Measure", "HandwrittenGet");
    byHand("TARNEXSupply_MeasureVoltage", "SupplyMeasure", "HandwrittenMeasure");
    report.AtMostTimes("TARNEX_ConfigureVoltageLevel, two channels", medians.Of("ConfigureBoth"), "one channel",
                       medians.Of("Configure"), "ns", 1.9);
    constexpr double kNanosecondsPerSecond = 1e9;
    report.AtLeastTimes("Calls per second, two threads", kNanosecondsPerSecond / medians.Of("TwoThreads") / 1e6,
                        "one thread", kNanosecondsPerSecond / medians.Of("OneThread") / 1e6, "million", 1.8);

    bench::Progress("calls beside 9,999 other sessions");
    constexpr std::size_t kOthers = 9999;
    auto [alone, beside] = bench::Interleave(
        5, [] { return CallBeside(0) * 1000.0; }, [] { return CallBeside(kOthers) * 1000.0; });
    report.AtMostTimes("A call with 10,000 sessions open", bench::Median(beside), "one session", bench::Median(alone),
                       "ns", 1.1);

    bench::Progress("selectors of 1 MiB");
    std::string slowest;
    const auto worst = SlowestLongSelector(slowest);
    report.AtMost("A selector of 1 MiB, the slowest shape (" + slowest + ")", worst, "ms", 50.0);
    return report.ExitCode();
}
