// The driver over TCP to a virtual supply in a process of its own, next to a raw socket to the same supply.
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/raw_socket.h"
#include "bench/report.h"
#include "bench/samples.h"
#include "include/TARNEX.h"
#include "tests/support/forked_supply.h"

namespace {

using bench::Interleave;
using bench::Median;
using bench::Microseconds;
using bench::Quantile;

constexpr const char* kFirst = "OutputChannel1";

/// Ends the benchmark when a call fails, because its figures would be meaningless.
void Expect(bool succeeded, const char* what) {
    if (!succeeded) {
        std::fprintf(stderr, "network: %s failed\n", what);
        std::exit(1);
    }
}

ViSession Open(const virtual_supply::ForkedSupply& supply) {
    auto resource = supply.Resource();
    ViSession vi = VI_NULL;
    Expect(TARNEX_init(resource.data(), VI_FALSE, VI_FALSE, &vi) >= 0, "TARNEX_init");
    return vi;
}

/// One query, in microseconds.
double Query(ViSession vi) {
    ViReal64 level = 0.0;
    ViStatus status = VI_SUCCESS;
    const auto time = Microseconds([&] { status = TARNEX_Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE, &level); });
    Expect(status >= 0, "TARNEX_Measure");
    return time;
}

double RawQuery(int connection) {
    double level = 0.0;
    int status = 0;
    const auto time = Microseconds([&] { status = RawGetVoltage(connection, 1, &level); });
    Expect(status == 0, "the raw query");
    return time;
}

void CompareQueries(const virtual_supply::ForkedSupply& supply, bench::Report& report) {
    const auto vi = Open(supply);
    const int connection = RawConnect(supply.Port());
    for (int warmUp = 0; warmUp < 500; ++warmUp) {
        Query(vi);
        RawQuery(connection);
    }
    auto [driver, raw] = Interleave(
        20000, [&] { return Query(vi); }, [&] { return RawQuery(connection); });
    report.AtMostTimes("Query over TCP, median", Median(driver), "raw socket", Median(raw), "us", 1.05);
    report.AtMostTimes("Query over TCP, 99th percentile", Quantile(driver, 0.99), "raw socket", Quantile(raw, 0.99),
                       "us", 1.10);
    RawClose(connection);
    TARNEX_close(vi);
}

void CompareWrites(const virtual_supply::ForkedSupply& supply, bench::Report& report) {
    const auto vi = Open(supply);
    const int connection = RawConnect(supply.Port());
    double level = 0.0;
    // Each write is followed by a query whose time does not count: the supply is idle when the next one is sent.
    auto [driver, raw] = Interleave(
        20000,
        [&] {
            ViStatus status = VI_SUCCESS;
            level = level < 20.0 ? level + 0.01 : 0.0;
            const auto time = Microseconds([&] { status = TARNEX_ConfigureVoltageLevel(vi, kFirst, level); });
            Expect(status >= 0, "TARNEX_ConfigureVoltageLevel");
            Query(vi);
            return time;
        },
        [&] {
            int status = 0;
            const auto time = Microseconds([&] { status = RawSetVoltage(connection, 1, level); });
            Expect(status == 0, "the raw write");
            RawQuery(connection);
            return time;
        });
    report.AtMostAbove("Write over TCP, median", Median(driver), "raw socket", Median(raw), "us", 0.3);
    RawClose(connection);
    TARNEX_close(vi);
}

double OpenAndClose(const virtual_supply::ForkedSupply& supply) {
    return Microseconds([&] { Expect(TARNEX_close(Open(supply)) >= 0, "TARNEX_close"); });
}

void CompareOpening(const virtual_supply::ForkedSupply& supply, bench::Report& report) {
    OpenAndClose(supply);
    auto [driver, raw] = Interleave(
        1000, [&] { return OpenAndClose(supply); },
        [&] {
            return Microseconds([&] {
                const int connection = RawConnect(supply.Port());
                Expect(connection >= 0 && RawIdentify(connection) == 0, "the raw opening");
                RawClose(connection);
            });
        });
    const double baseline = Median(raw) * 1.10;
    report.AtMostAbove("TARNEX_init and TARNEX_close", Median(driver), "1.10 times connect, *IDN?, close", baseline,
                       "us", 200.0);
}

/// A store whose driver session has `names` virtual names.
std::string StoreWith(const std::string& folder, const std::string& resource, int names) {
    auto path = folder + "/" + std::to_string(names) + ".xml";
    std::ofstream file(path);
    file << "<IviConfigStore><SoftwareModules><IviSoftwareModule id=\"p1\"><Name>TARNEX</Name></IviSoftwareModule>"
            "</SoftwareModules><HardwareAssets><IviHardwareAsset id=\"p2\"><Name>a</Name><IOResourceDescriptor>"
         << resource
         << "</IOResourceDescriptor></IviHardwareAsset></HardwareAssets><DriverSessions><IviDriverSession id=\"p3\">"
            "<Name>TARNEX</Name><IviHardwareAsset idref=\"p2\"/><IviSoftwareModuleRef idref=\"p1\"/><VirtualNames>";
    for (int i = 1; i <= names; ++i) {
        file << "<IviVirtualName id=\"v" << i << "\"><Name>Rail" << i << "</Name><MapTo>OutputChannel" << 1 + i % 2
             << "</MapTo></IviVirtualName>\n";
    }
    file << "</VirtualNames></IviDriverSession></DriverSessions></IviConfigStore>\n";
    Expect(file.flush().good(), "writing a store");
    return path;
}

void UseStore(const std::string& path) {
    setenv("IVI_CONFIG_STORE", path.c_str(), 1); // no other thread opens a session
}

void CompareStores(const virtual_supply::ForkedSupply& supply, bench::Report& report) {
    constexpr int kThousands = 10;
    std::string folder = (std::filesystem::temp_directory_path() / "tarnex-bench-XXXXXX").string();
    Expect(mkdtemp(folder.data()) != nullptr, "making a scratch folder");
    const auto none = StoreWith(folder, supply.Resource(), 0);
    const auto many = StoreWith(folder, supply.Resource(), kThousands * 1000);
    const auto with = [&](const std::string& store) {
        UseStore(store);
        return OpenAndClose(supply) / 1000.0;
    };
    auto [few, thousands] = Interleave(
        21, [&] { return with(none); }, [&] { return with(many); });
    UseStore("/nonexistent/store.xml");
    std::filesystem::remove_all(folder);
    report.AtMost("1,000 further virtual names in the store", (Median(thousands) - Median(few)) / kThousands, "ms",
                  5.0);
}

/// Memory of this process that is in use, in KiB.
double ResidentKibibytes() {
    std::ifstream statm("/proc/self/statm");
    double all = 0.0;
    double resident = 0.0;
    statm >> all >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1024.0;
}

/// With many sessions in turn, the caches of the machine are cold for each one; raw sockets in turn are the baseline.
void CompareManySessions(const virtual_supply::ForkedSupply& supply, bench::Report& report) {
    constexpr std::size_t kSessions = 1000;
    constexpr std::size_t kQueries = 10000;
    std::vector<ViSession> sessions{Open(supply)};
    const auto queryFirst = [&] {
        bench::Samples samples;
        for (std::size_t i = 0; i < kQueries; ++i) {
            samples.push_back(Query(sessions.front()));
        }
        return samples;
    };
    auto one = queryFirst();
    const auto before = ResidentKibibytes();
    while (sessions.size() < kSessions) {
        sessions.push_back(Open(supply));
        Query(sessions.back());
    }
    const auto perSession = (ResidentKibibytes() - before) / (kSessions - 1);
    auto oneOfMany = queryFirst();
    std::vector<int> connections;
    while (connections.size() < kSessions) {
        connections.push_back(RawConnect(supply.Port()));
        RawQuery(connections.back());
    }
    std::size_t turn = 0;
    auto [each, rawEach] = Interleave(
        kQueries, [&] { return Query(sessions[turn % kSessions]); },
        [&] { return RawQuery(connections[turn++ % kSessions]); });
    for (const int connection : connections) {
        RawClose(connection);
    }
    while (sessions.size() > 1) {
        TARNEX_close(sessions.back());
        sessions.pop_back();
    }
    const auto oneAgain = queryFirst(); // again, so that the load of the machine affects both alike
    one.insert(one.end(), oneAgain.begin(), oneAgain.end());
    TARNEX_close(sessions.back());
    report.AtMost("Memory of one of 1,000 sessions, I/O buffers included", perSession, "KiB", 16.0);
    report.AtMostTimes("Query on one of 1,000 open sessions, median", Median(oneOfMany), "the only session",
                       Median(one), "us", 1.2);
    report.AtMostTimes("Query on each of 1,000 sessions in turn, median", Median(each), "raw sockets in turn",
                       Median(rawEach), "us", 1.1);
}

} // namespace

int main() {
    rlimit files{};
    getrlimit(RLIMIT_NOFILE, &files);
    files.rlim_cur = files.rlim_max; // 1,000 sessions need as many files, on both sides
    setrlimit(RLIMIT_NOFILE, &files);
    const virtual_supply::ForkedSupply supply;
    UseStore("/nonexistent/store.xml");
    bench::Report report;
    bench::Progress("queries over TCP");
    CompareQueries(supply, report);
    bench::Progress("writes over TCP");
    CompareWrites(supply, report);
    bench::Progress("opening and closing");
    CompareOpening(supply, report);
    bench::Progress("a store with 10,000 virtual names");
    CompareStores(supply, report);
    bench::Progress("1,000 sessions");
    CompareManySessions(supply, report);
    return report.ExitCode();
}
