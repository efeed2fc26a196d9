// The server over TCP: framing, several clients, faults and misbehaving clients.

#include "tools/virtual_supply/server.h"

#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "tests/unit/virtual_supply/tcp_client.h"
#include "tools/virtual_supply/virtual_supply.h"

namespace virtual_supply {
namespace {

using namespace std::string_literals;

constexpr auto kIdentity = "Keltor Technology,TX4410,SN00000001,1.00\n";

class Server : public testing::Test {
  protected:
    TcpClient Connect() const { return TcpClient(server_.Port()); }

    /// Waits until the server has `count` clients. Returns false after kHangGuard.
    bool WaitForConnections(std::size_t count) const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(kHangGuard);
        while (server_.ConnectionCount() != count) {
            if (std::chrono::steady_clock::now() > deadline) {
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return true;
    }

    VirtualSupply supply_;
    VirtualSupplyServer server_{supply_};
};

TEST_F(Server, ListensOnAFreePortAndReturnsItsResource) {
    EXPECT_NE(server_.Port(), 0);
    EXPECT_EQ(server_.Resource(), "TCPIP0::127.0.0.1::" + std::to_string(server_.Port()) + "::SOCKET");
}

TEST_F(Server, AnswersAQueryWithOneLine) {
    auto client = Connect();
    EXPECT_EQ(client.Ask("*IDN?"), kIdentity);
    EXPECT_EQ(client.Ask(":SYSTem:ERRor?"), "0,\"No error\"\n");
}

TEST_F(Server, AcceptsACarriageReturnBeforeTheLineFeed) {
    auto client = Connect();
    client.Send(":SOUR1:VOLT 1.5\r\n:SOUR1:VOLT?\r\n");
    EXPECT_EQ(client.ReadLine(), "1.500000\n");
}

TEST_F(Server, AcceptsALineThatArrivesByteByByte) {
    auto client = Connect();
    for (const char c : "*IDN?\n"s) {
        client.Send(std::string(1, c));
    }
    EXPECT_EQ(client.ReadLine(), kIdentity);
}

TEST_F(Server, AnswersSeveralLinesOfOneSegmentInOrder) {
    auto client = Connect();
    client.Send("*OPC?\n:SOUR2:VOLT 1\n:SOUR2:VOLT?\n*ESR?\n");
    EXPECT_EQ(client.ReadLine(), "1\n");
    EXPECT_EQ(client.ReadLine(), "1.000000\n");
    EXPECT_EQ(client.ReadLine(), "0\n");
}

TEST_F(Server, AnswersAClientThatHasShutDownItsSendingSide) {
    auto client = Connect();
    client.Send("*IDN?\n*OPC?\n");
    client.EndSending();
    EXPECT_EQ(client.ReadLine(), kIdentity);
    EXPECT_EQ(client.ReadLine(), "1\n");
    EXPECT_EQ(client.ReadLine(), "");
}

TEST_F(Server, SendsNoReplyToAnInvalidQuery) {
    auto client = Connect();
    client.Send(":NO:SUCH?\n:OUTP:STAT?\n");
    EXPECT_EQ(client.Ask("*OPC?"), "1\n");
    EXPECT_EQ(client.Ask("*ESR?"), "32\n");
}

TEST_F(Server, SharesOneSupplyBetweenItsConnections) {
    auto first = Connect();
    auto second = Connect();
    first.Send(":SOUR1:VOLT 7\n");
    EXPECT_EQ(first.Ask("*OPC?"), "1\n");
    EXPECT_EQ(second.Ask(":SOUR1:VOLT?"), "7.000000\n");
    second.Send(":NO:SUCH\n");
    EXPECT_EQ(second.Ask("*OPC?"), "1\n");
    EXPECT_EQ(first.Ask(":SYSTem:ERRor?"), "-113,\"Undefined header\"\n");
}

TEST_F(Server, AnswersTheConnectionThatSentTheQuery) {
    auto first = Connect();
    auto second = Connect();
    first.Send("*IDN?\n");
    second.Send("*OPC?\n");
    EXPECT_EQ(first.ReadLine(), kIdentity);
    EXPECT_EQ(second.ReadLine(), "1\n");
}

TEST_F(Server, ServesChangesMadeThroughTheSupplyObject) {
    auto client = Connect();
    supply_.SetLoad(1, 10.0);
    client.Send(":SOUR1:VOLT 5\n:OUTP:STAT CH1,ON\n");
    EXPECT_EQ(client.Ask(":MEAS:ALL? CH1"), "5.000000,0.500000,2.500000\n");
}

TEST_F(Server, RefusesAnOverlongLineAndContinues) {
    auto client = Connect();
    client.Send(std::string(100'000, 'A'));
    EXPECT_EQ(Connect().Ask("*OPC?"), "1\n");
    client.Send("\n*IDN?\n");
    EXPECT_EQ(client.ReadLine(), kIdentity);
    EXPECT_EQ(client.Ask(":SYSTem:ERRor?"), "-363,\"Input buffer overrun\"\n");
    EXPECT_EQ(client.Ask(":SYSTem:ERRor?"), "0,\"No error\"\n");
}

TEST_F(Server, IgnoresAnUnfinishedLineWhenTheClientDisconnects) {
    {
        auto client = Connect();
        client.Send(":SOUR1:VOLT 7");
    }
    ASSERT_TRUE(WaitForConnections(0));
    EXPECT_EQ(Connect().Ask(":SOUR1:VOLT?"), "0.000000\n");
}

TEST_F(Server, RemovesClosedConnections) {
    auto first = Connect();
    {
        auto second = Connect();
        ASSERT_TRUE(WaitForConnections(2));
    }
    EXPECT_TRUE(WaitForConnections(1));
    EXPECT_EQ(first.Ask("*OPC?"), "1\n");
}

TEST_F(Server, SurvivesThousandsOfConnectionsThatDisconnectAtOnce) {
    const std::vector<std::string> leftovers{"", "*ID", "*IDN?\n", "\0\xff\n"s, "*IDN?\n*IDN?\n:SOUR1", "\n\n\n"};
    for (std::size_t i = 0; i < 3000; ++i) {
        Connect().Send(leftovers[i % leftovers.size()]);
    }
    EXPECT_TRUE(WaitForConnections(0));
    EXPECT_EQ(Connect().Ask("*IDN?"), kIdentity);
}

TEST_F(Server, ServesManyConnectionsAtTheSameTime) {
    std::vector<TcpClient> clients;
    for (int i = 0; i < 200; ++i) {
        clients.push_back(Connect());
        clients.back().Send("*OPC?\n");
    }
    for (TcpClient& client : clients) {
        EXPECT_EQ(client.ReadLine(), "1\n");
    }
}

TEST_F(Server, KeepsAllRepliesForAClientThatReadsLate) {
    constexpr int kCount = 100'000;
    auto client = Connect();
    std::thread sender([&client] {
        for (int i = 0; i < kCount; ++i) {
            client.Send("*IDN?\n");
        }
    });
    int good = 0;
    while (good < kCount && client.ReadLine() == kIdentity) {
        ++good;
    }
    sender.join();
    EXPECT_EQ(good, kCount);
}

TEST_F(Server, ServesOthersWhileOneClientDoesNotRead) {
    auto greedy = Connect();
    server_.Faults().AddForNext(FaultKind::Long, 1'000'000, 100);
    std::string queries;
    for (int i = 0; i < 100; ++i) {
        queries += "*IDN?\n";
    }
    greedy.Send(queries); // more replies than the socket buffers hold
    while (server_.Faults().Received() < 2) {
        std::this_thread::yield();
    }
    server_.Faults().Clear();
    EXPECT_EQ(Connect().Ask("*OPC?"), "1\n");
}

TEST_F(Server, ClosesConnectionsOnRequestAndContinuesToListen) {
    auto client = Connect();
    ASSERT_TRUE(WaitForConnections(1));
    server_.CloseConnections();
    EXPECT_EQ(client.ReadLine(), "");
    EXPECT_EQ(Connect().Ask("*OPC?"), "1\n");
}

TEST_F(Server, RefusesConnectionsAfterStop) {
    auto client = Connect();
    ASSERT_TRUE(WaitForConnections(1));
    server_.Stop();
    server_.Stop();
    EXPECT_EQ(client.ReadLine(), "");
    EXPECT_THROW(Connect(), std::system_error);
}

TEST_F(Server, StopsFromAnyThread) {
    auto client = Connect();
    ASSERT_TRUE(WaitForConnections(1));
    std::thread([this] { server_.Stop(); }).join();
    EXPECT_EQ(client.ReadLine(), "");
}

TEST_F(Server, DropsTheConnectionInsteadOfExecuting) {
    server_.Faults().Add(ParseFault("drop@2+1"));
    auto client = Connect();
    EXPECT_EQ(client.Ask("*OPC?"), "1\n");
    client.Send(":SOUR1:VOLT 5\n:SOUR1:VOLT 6\n");
    EXPECT_EQ(client.ReadLine(), "");
    EXPECT_EQ(Connect().Ask(":SOUR1:VOLT?"), "0.000000\n");
}

TEST_F(Server, CountsCommandsOverAllConnections) {
    server_.Faults().Add(ParseFault("drop@3+1"));
    auto first = Connect();
    auto second = Connect();
    EXPECT_EQ(first.Ask("\n  \n*OPC?"), "1\n");
    EXPECT_EQ(second.Ask("*OPC?"), "1\n");
    EXPECT_EQ(first.Ask("*OPC?"), "");
    EXPECT_EQ(second.Ask("*OPC?"), "1\n");
    EXPECT_EQ(server_.Faults().Received(), 4U);
}

TEST_F(Server, ExecutesWithoutAReplyWhenSilent) {
    auto client = Connect();
    server_.Faults().AddForNext(FaultKind::Silent, 0, 2);
    client.Send(":SOUR1:VOLT 5\n*IDN?\n");
    EXPECT_EQ(client.Ask(":SOUR1:VOLT?"), "5.000000\n");
}

TEST_F(Server, SendsTheReplyLaterWhenDelayed) {
    auto client = Connect();
    server_.Faults().AddForNext(FaultKind::Delay, 150);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(client.Ask("*IDN?"), kIdentity);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(150));
}

TEST_F(Server, ServesOthersDuringADelayAndStopsWithoutWaitingForIt) {
    auto delayed = Connect();
    server_.Faults().AddForNext(FaultKind::Delay, kMaxFaultValue);
    delayed.Send("*IDN?\n");
    while (server_.Faults().Received() < 1) {
        std::this_thread::yield();
    }
    EXPECT_EQ(Connect().Ask("*OPC?"), "1\n");
    server_.Stop();
    EXPECT_EQ(delayed.ReadLine(), "");
}

TEST_F(Server, SendsGarbageCutLongAndCrLfReplies) {
    auto client = Connect();
    server_.Faults().AddForNext(FaultKind::Garbage);
    EXPECT_EQ(client.Ask("*IDN?"), "\xff\0%s%n{}?!\x01\n"s);
    server_.Faults().AddForNext(FaultKind::Long, 1500);
    EXPECT_EQ(client.Ask("*OPC?"), "1" + std::string(1499, 'X') + "\n");
    server_.Faults().AddForNext(FaultKind::CrLf);
    EXPECT_EQ(client.Ask("*OPC?"), "1\r\n");
    server_.Faults().AddForNext(FaultKind::Cut);
    client.Send(":SOUR1:VOLT?\n");
    EXPECT_EQ(client.ReadBytes(4), "0.00");
    EXPECT_EQ(client.Ask("*OPC?"), "1\n");
}

TEST(ServerConstruction, RefusesHostsOutsideTheLoopbackInterface) {
    VirtualSupply supply;
    for (const std::string host : {"0.0.0.0", "192.168.1.1", "::", "localhost", "", "127.0.0.1 "}) {
        EXPECT_THROW(VirtualSupplyServer(supply, {.host = host}), std::invalid_argument) << host;
    }
}

TEST(ServerConstruction, FailsWhenThePortIsTaken) {
    VirtualSupply supply;
    const VirtualSupplyServer first(supply);
    try {
        const VirtualSupplyServer second(supply, {.port = first.Port()});
        FAIL() << "two servers on one port";
    } catch (const std::system_error& failure) {
        EXPECT_EQ(failure.code(), std::errc::address_in_use);
        EXPECT_EQ(failure.what(),
                  "cannot listen on 127.0.0.1 port " + std::to_string(first.Port()) + ": Address already in use");
    }
}

TEST(ServerConstruction, ReusesThePortOfAServerThatHasEnded) {
    VirtualSupply supply;
    auto first = std::make_unique<VirtualSupplyServer>(supply);
    const auto port = first->Port();
    TcpClient client(port);
    EXPECT_EQ(client.Ask("*OPC?"), "1\n");
    first.reset();
    const VirtualSupplyServer second(supply, {.port = port});
    EXPECT_EQ(TcpClient(port).Ask("*OPC?"), "1\n");
}

TEST(ServerConstruction, AppliesFaultsFromTheFirstCommandOn) {
    VirtualSupply supply;
    const VirtualSupplyServer server(supply, {.faults = {ParseFault("crlf@1+1")}});
    TcpClient client(server.Port());
    EXPECT_EQ(client.Ask("*OPC?"), "1\r\n");
    EXPECT_EQ(client.Ask("*OPC?"), "1\n");
}

TEST(ServerLog, ContainsConnectionsCommandsAndRepliesInPrintableText) {
    std::mutex mutex;
    std::vector<std::string> log;
    VirtualSupply supply;
    {
        const VirtualSupplyServer server(supply, {.log = [&](std::string_view line) {
                                             const std::lock_guard lock(mutex);
                                             log.emplace_back(line);
                                         }});
        TcpClient client(server.Port());
        client.Send("\x1b[2J\xff\n");
        EXPECT_EQ(client.Ask("*OPC?"), "1\n");
        client.Send(std::string(5000, 'A') + '\n');
        EXPECT_EQ(client.Ask("*OPC?"), "1\n");
    }
    EXPECT_EQ(log, (std::vector<std::string>{"1 connected", "1 < \\x1B[2J\\xFF", "1 < *OPC?", "1 > 1\\x0A",
                                             "1 < (too long)", "1 < *OPC?", "1 > 1\\x0A", "1 closed"}));
}

} // namespace
} // namespace virtual_supply
