// The program: its ready line, its options and its end.

#include <charconv>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "tests/unit/virtual_supply/child_process.h"
#include "tests/unit/virtual_supply/tcp_client.h"

namespace virtual_supply {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

std::vector<std::string> Command(const std::vector<std::string>& options) {
    std::vector<std::string> command{VIRTUAL_SUPPLY};
    command.insert(command.end(), options.begin(), options.end());
    return command;
}

/// Returns the port in a ready line of `beginning`, port and "::SOCKET"; 0 for any other line.
std::uint16_t PortOf(std::string_view readyLine, std::string_view beginning) {
    constexpr std::string_view kEnd = "::SOCKET\n";
    std::uint16_t port = 0;
    if (!readyLine.starts_with(beginning) || !readyLine.ends_with(kEnd)) {
        return port;
    }
    readyLine.remove_prefix(beginning.size());
    readyLine.remove_suffix(kEnd.size());
    const auto rest = std::from_chars(readyLine.data(), readyLine.data() + readyLine.size(), port).ptr;
    return rest == readyLine.data() + readyLine.size() ? port : std::uint16_t{0};
}

/// The program after its ready line.
class RunningSupply {
  public:
    explicit RunningSupply(const std::vector<std::string>& options)
        : process_(Command(options)), readyLine_(process_.ReadLine()) {}

    ChildProcess& Process() { return process_; }
    const std::string& ReadyLine() const { return readyLine_; }
    std::uint16_t Port() const { return PortOf(readyLine_, "Virtual TX4410 listening on TCPIP0::127.0.0.1::"); }

  private:
    ChildProcess process_;
    std::string readyLine_;
};

TEST(Program, PrintsItsResourceInOneLineWhenReady) {
    RunningSupply supply({});
    ASSERT_NE(supply.Port(), 0) << supply.ReadyLine();
    EXPECT_EQ(TcpClient(supply.Port()).Ask("*IDN?"), "Keltor Technology,TX4410,SN00000001,1.00\n");
    supply.Process().Signal(SIGTERM);
    EXPECT_EQ(supply.Process().ReadOutput(), "");
    EXPECT_EQ(supply.Process().ReadErrors(), "");
    EXPECT_EQ(supply.Process().Wait(), 0);
}

TEST(Program, EndsCleanlyOnSigint) {
    RunningSupply supply({});
    supply.Process().Signal(SIGINT);
    EXPECT_EQ(supply.Process().Wait(), 0);
}

TEST(Program, EndsCleanlyWithClientsConnected) {
    RunningSupply supply({});
    TcpClient client(supply.Port());
    EXPECT_EQ(client.Ask("*OPC?"), "1\n");
    supply.Process().Signal(SIGTERM);
    EXPECT_EQ(supply.Process().Wait(), 0);
    EXPECT_EQ(client.ReadLine(), "");
}

TEST(Program, StopsAfterTheGivenTime) {
    RunningSupply supply({"--for", "0.05"});
    EXPECT_THAT(supply.ReadyLine(), StartsWith("Virtual TX4410 listening on "));
    EXPECT_EQ(supply.Process().Wait(), 0);
}

TEST(Program, AcceptsModelSerialLoadsAndFaults) {
    RunningSupply supply({"--model", "TX4520", "--serial", "SN42", "--load", "1=10", "--load", "2=0.5", "--fault",
                          "crlf@1+1", "--fault", "long=4@2+1"});
    const std::uint16_t port = PortOf(supply.ReadyLine(), "Virtual TX4520 listening on TCPIP0::127.0.0.1::");
    ASSERT_NE(port, 0) << supply.ReadyLine();
    TcpClient client(port);
    EXPECT_EQ(client.Ask("*IDN?"), "Keltor Technology,TX4520,SN42,1.00\r\n");
    EXPECT_EQ(client.Ask("*OPC?"), "1XXX\n");
    client.Send(":SOUR1:VOLT 5\n:SOUR2:VOLT 2\n:OUTPut:STATe ALL,ON\n");
    EXPECT_EQ(client.Ask(":MEAS:CURR? CH1"), "0.500000\n");
    EXPECT_EQ(client.Ask(":MEAS:CURR? CH2"), "4.000000\n");
}

TEST(Program, LogsOnTheErrorStreamWhenVerbose) {
    RunningSupply supply({"--verbose"});
    EXPECT_EQ(TcpClient(supply.Port()).Ask("*OPC?"), "1\n");
    supply.Process().Signal(SIGTERM);
    EXPECT_EQ(supply.Process().Wait(), 0);
    EXPECT_EQ(supply.Process().ReadErrors(), "1 connected\n1 < *OPC?\n1 > 1\\x0A\n1 closed\n");
}

TEST(Program, ListensOnTheIpv6LoopbackAddress) {
    ChildProcess probe(Command({"--host", "::1"}));
    const std::string line = probe.ReadLine();
    if (line.empty()) {
        EXPECT_EQ(probe.Wait(), 1);
        GTEST_SKIP() << probe.ReadErrors();
    }
    EXPECT_NE(PortOf(line, "Virtual TX4410 listening on TCPIP0::[::1]::"), 0) << line;
}

/// Returns the device in the ready line of a pseudo-terminal; empty for any other line.
std::string DeviceOf(std::string_view readyLine) {
    constexpr std::string_view kBeginning = "Virtual TX4410 listening on ASRL";
    constexpr std::string_view kEnd = "::INSTR\n";
    if (!readyLine.starts_with(kBeginning) || !readyLine.ends_with(kEnd)) {
        return {};
    }
    readyLine.remove_prefix(kBeginning.size());
    readyLine.remove_suffix(kEnd.size());
    return std::string(readyLine);
}

/// A client's end of a pseudo-terminal.
class Terminal {
  public:
    explicit Terminal(const std::string& device) : file_(::open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)) {}
    ~Terminal() { ::close(file_); }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    Terminal(Terminal&&) = delete;
    Terminal& operator=(Terminal&&) = delete;

    /// Returns the reply up to and including its line feed, or a part of it when the line hangs up or stays silent.
    std::string Ask(std::string query) const {
        query += '\n';
        EXPECT_EQ(::write(file_, query.data(), query.size()), static_cast<ssize_t>(query.size()));
        std::string reply;
        pollfd waiting{file_, POLLIN, 0};
        char c = 0;
        while (!reply.ends_with('\n') && ::poll(&waiting, 1, kHangGuard * 1000) == 1 && ::read(file_, &c, 1) == 1) {
            reply += c;
        }
        return reply;
    }

  private:
    int file_;
};

TEST(Program, ServesOnAPseudoTerminalWhenAskedTo) {
    RunningSupply supply({"--pty", "--load", "1=10", "--verbose"});
    const auto device = DeviceOf(supply.ReadyLine());
    ASSERT_THAT(device, StartsWith("/dev/pts/")) << supply.ReadyLine();
    {
        const Terminal terminal(device);
        EXPECT_EQ(terminal.Ask("*IDN?"), "Keltor Technology,TX4410,SN00000001,1.00\n");
        EXPECT_EQ(terminal.Ask(":SOUR1:VOLT 2\n:SOUR1:VOLT?"), "2.000000\n");
    }
    EXPECT_EQ(Terminal(device).Ask(":SOUR1:VOLT?"), "2.000000\n"); // also for the next client
    supply.Process().Signal(SIGTERM);
    EXPECT_EQ(supply.Process().ReadOutput(), "");
    EXPECT_EQ(supply.Process().Wait(), 0);
    EXPECT_EQ(supply.Process().ReadErrors(),
              "1 connected\n1 < *IDN?\n1 > Keltor Technology,TX4410,SN00000001,1.00\\x0A\n1 < :SOUR1:VOLT 2\n"
              "1 < :SOUR1:VOLT?\n1 > 2.000000\\x0A\n1 < :SOUR1:VOLT?\n1 > 2.000000\\x0A\n1 closed\n");
}

TEST(Program, PrintsTheNextPseudoTerminalAfterItHangsUp) {
    RunningSupply supply({"--pty", "--fault", "drop@2+1"});
    const auto device = DeviceOf(supply.ReadyLine());
    const Terminal terminal(device);
    EXPECT_EQ(terminal.Ask("*OPC?"), "1\n");
    EXPECT_EQ(terminal.Ask("*OPC?"), "");
    const auto next = DeviceOf(supply.Process().ReadLine());
    ASSERT_THAT(next, StartsWith("/dev/pts/"));
    EXPECT_NE(next, device);
    EXPECT_EQ(Terminal(next).Ask("*OPC?"), "1\n");
}

TEST(Program, ReportsAPortInUseInOneLine) {
    RunningSupply first({});
    const std::string port = std::to_string(first.Port());
    ChildProcess second(Command({"--port", port}));
    EXPECT_EQ(second.Wait(), 1);
    EXPECT_EQ(second.ReadOutput(), "");
    EXPECT_EQ(second.ReadErrors(),
              "virtual_supply: cannot listen on 127.0.0.1 port " + port + ": Address already in use\n");
}

TEST(Program, ListensOnTheGivenPort) {
    std::uint16_t port = 0;
    {
        RunningSupply finder({});
        port = finder.Port();
        finder.Process().Signal(SIGTERM);
        EXPECT_EQ(finder.Process().Wait(), 0);
    }
    RunningSupply supply({"--port", std::to_string(port)});
    EXPECT_EQ(supply.Port(), port);
}

TEST(Program, PrintsHelpWithUnitsFaultsAndExamples) {
    ChildProcess process(Command({"--help"}));
    const std::string help = process.ReadOutput();
    EXPECT_EQ(process.Wait(), 0);
    EXPECT_EQ(process.ReadErrors(), "");
    for (const std::string text : {"--port",
                                   "--host",
                                   "--pty",
                                   "ASRL/dev/pts/3::INSTR",
                                   "--model",
                                   "--serial",
                                   "--load CHANNEL=OHMS",
                                   "--fault SPEC",
                                   "--for SECONDS",
                                   "--exit-with-parent",
                                   "--verbose",
                                   "KIND[=VALUE][@N[+M]]",
                                   "drop ",
                                   "delay=MS",
                                   "silent ",
                                   "garbage ",
                                   "cut ",
                                   "long=BYTES",
                                   "crlf ",
                                   "22 V, 5.5 A",
                                   "5.5 V, 16.8 A",
                                   "Exit codes: 0 stopped, 1 cannot listen, 2 wrong",
                                   "virtual_supply --port 5025 --load 1=10 --load 2=0.5\n"}) {
        EXPECT_THAT(help, HasSubstr(text));
    }
}

TEST(Program, IdentifiesItselfAsAnyModel) {
    RunningSupply supply({"--model", "TX 9999/b"});
    TcpClient client(PortOf(supply.ReadyLine(), "Virtual TX 9999/b listening on TCPIP0::127.0.0.1::"));
    EXPECT_EQ(client.Ask("*IDN?"), "Keltor Technology,TX 9999/b,SN00000001,1.00\n");
}

TEST(Program, EndsWithExitCodeTwoOnWrongArguments) {
    const std::vector<std::vector<std::string>> wrong{
        {"--port", "65536"},
        {"--port", "-1"},
        {"--port", "five"},
        {"--port"},
        {"--host", "0.0.0.0"},
        {"--host", "name"},
        {"--model", "a,b"},
        {"--model", "a\tb"},
        {"--model", "a\x7F"},
        {"--model", ""},
        {"--serial", "a,b"},
        {"--serial", ""},
        {"--load", "3=1"},
        {"--load", "1=-1"},
        {"--load", "1="},
        {"--load", "1=ten"},
        {"--load", "10"},
        {"--load", "1=inf"},
        {"--fault", "bang"},
        {"--fault", "delay"},
        {"--fault", "drop@0"},
        {"--for", "0"},
        {"--for", "-1"},
        {"--pty", "--port", "1"},
        {"--pty", "--host", "::1"},
        {"--for", "forever"},
        {"--for", "nan"},
        {"--for", "1e300"},
        {"--unknown"},
        {"surplus"},
    };
    for (const auto& options : wrong) {
        ChildProcess process(Command(options));
        EXPECT_EQ(process.Wait(), 2) << options.back();
        EXPECT_EQ(process.ReadOutput(), "") << options.back();
        const std::string errors = process.ReadErrors();
        EXPECT_THAT(errors, StartsWith("virtual_supply: "));
        EXPECT_THAT(errors, EndsWith(" (see --help)\n"));
        EXPECT_EQ(errors.find('\n'), errors.size() - 1) << errors;
    }
}

#ifdef __linux__
TEST(Program, EndsWithItsParentWhenAsked) {
    // The shell is the parent. It ends when its input is closed; the output is closed when the program ends.
    ChildProcess shell({"/bin/sh", "-c", "\"$0\" --exit-with-parent --for 600 & read -r line", VIRTUAL_SUPPLY});
    EXPECT_THAT(shell.ReadLine(), StartsWith("Virtual TX4410 listening on "));
    const auto start = std::chrono::steady_clock::now();
    shell.CloseInput();
    EXPECT_EQ(shell.ReadOutput(), "");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(25)) << "the program did not end";
}
#endif

} // namespace
} // namespace virtual_supply
