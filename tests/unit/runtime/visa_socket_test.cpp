#include "platform/visa.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <pthread.h>
#include <sys/socket.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <future>
#include <initializer_list>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/unit/runtime/test_peer.h"
#include "tests/unit/runtime/visa_session.h"

namespace {

using test_peer::Family;
using test_peer::Listener;
using test_peer::Peer;
using test_peer::Socket;
using visa_session::Connection;
using visa_session::kOpenTimeout;
using visa_session::OpenFiles;
using visa_session::Reply;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr auto kGuard = seconds(15); // well below the longest wait of the peers

/// Sends `bytes` and waits for the other end to close.
Peer::Behaviour Sends(std::string bytes) {
    return [bytes = std::move(bytes)](const Socket& socket) {
        socket.Send(bytes);
        static_cast<void>(socket.ReceiveLine());
    };
}

void StaysSilent(const Socket& socket) { static_cast<void>(socket.ReceiveLine()); }

/// This process's own end of the connection to `port`.
int FileConnectedTo(std::uint16_t port) {
    for (const int file : OpenFiles()) {
        sockaddr_in address{};
        socklen_t size = sizeof address;
        if (::getpeername(file, reinterpret_cast<sockaddr*>(&address), &size) == 0 && ntohs(address.sin_port) == port) {
            return file;
        }
    }
    return -1;
}

int Option(int file, int level, int name) {
    int value = -1;
    socklen_t size = sizeof value;
    ::getsockopt(file, level, name, &value, &size);
    return value;
}

// ------------------------------------------------------------------------------------------------------------ opening

TEST(VisaSocket, ConnectsOverIpv4) {
    const Peer peer(Sends("hello\n"));
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    EXPECT_EQ(connection.Read(), (Reply{VI_SUCCESS_TERM_CHAR, "hello\n"}));
}

TEST(VisaSocket, ConnectsOverIpv6) {
    const Peer peer(Sends("hello\n"), Family::Ipv6);
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    EXPECT_EQ(connection.Read(), (Reply{VI_SUCCESS_TERM_CHAR, "hello\n"}));
}

TEST(VisaSocket, ConnectsByHostNameToTheAddressThatAccepts) {
    const Peer peer(Sends("hello\n"));
    const Connection connection("tcpip::localhost::" + std::to_string(peer.Port()) + "::socket");
    connection.EnableTermination();
    EXPECT_EQ(connection.Read(), (Reply{VI_SUCCESS_TERM_CHAR, "hello\n"}));
}

TEST(VisaSocket, OptionsOfTheSocketSuitShortMessages) {
    const Peer peer(StaysSilent);
    const Connection connection(peer.Resource());
    const int file = FileConnectedTo(peer.Port());
    ASSERT_GE(file, 0);
    EXPECT_EQ(Option(file, IPPROTO_TCP, TCP_NODELAY), 1);
    EXPECT_EQ(Option(file, SOL_SOCKET, SO_KEEPALIVE), 0);
    EXPECT_EQ(::fcntl(file, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST(VisaSocket, ARefusedConnectionIsAResourceNotFound) {
    std::string resource;
    {
        const Listener listener;
        resource = listener.Resource();
    }
    ViSession rm = VI_NULL;
    ViSession vi = 5;
    const auto before = OpenFiles();
    ASSERT_EQ(viOpenDefaultRM(&rm), VI_SUCCESS);
    EXPECT_EQ(viOpen(rm, resource.c_str(), VI_NULL, kOpenTimeout, &vi), static_cast<ViStatus>(0xBFFF0011));
    EXPECT_EQ(vi, 0U);
    EXPECT_EQ(OpenFiles(), before);
    EXPECT_EQ(viClose(rm), VI_SUCCESS);
}

TEST(VisaSocket, AHostThatDoesNotAnswerTimesOut) {
    const Listener listener(Family::Ipv4, 0); // its queue has room for one connection, which is not accepted
    const Connection first(listener.Resource());
    ViSession vi = 5;
    const auto before = Clock::now();
    EXPECT_EQ(viOpen(first.rm, listener.Resource().c_str(), VI_NULL, 100, &vi), static_cast<ViStatus>(0xBFFF0015));
    EXPECT_EQ(vi, 0U);
    EXPECT_GE(Clock::now() - before, milliseconds(100));
    EXPECT_LT(Clock::now() - before, kGuard);
}

TEST(VisaSocket, KindsThatAreNotServedAreNotConfigured) {
    ViSession rm = VI_NULL;
    ASSERT_EQ(viOpenDefaultRM(&rm), VI_SUCCESS);
    for (const auto* name : {"GPIB0::5::INSTR", "gpib::5::2::instr", "USB0::1::2::3::INSTR", "TCPIP0::127.0.0.1::INSTR",
                             "tcpip0::127.0.0.1::inst0::instr", "PXI0::1::INSTR"}) {
        ViSession vi = 5;
        EXPECT_EQ(viOpen(rm, name, VI_NULL, kOpenTimeout, &vi), static_cast<ViStatus>(0xBFFF00A5)) << name;
        EXPECT_EQ(vi, 0U);
    }
    EXPECT_EQ(viClose(rm), VI_SUCCESS);
}

TEST(VisaSocket, MalformedNamesAreRefused) {
    ViSession rm = VI_NULL;
    ASSERT_EQ(viOpenDefaultRM(&rm), VI_SUCCESS);
    for (const auto* name : {"", "nonsense", "TCPIP0::127.0.0.1::0::SOCKET", "TCPIP0::[::1::5025::SOCKET"}) {
        ViSession vi = 5;
        EXPECT_EQ(viOpen(rm, name, VI_NULL, kOpenTimeout, &vi), static_cast<ViStatus>(0xBFFF0012)) << name;
        EXPECT_EQ(vi, 0U);
    }
    ViSession vi = 5;
    EXPECT_EQ(viOpen(rm, nullptr, VI_NULL, kOpenTimeout, &vi), VI_ERROR_INV_RSRC_NAME);
    EXPECT_EQ(viClose(rm), VI_SUCCESS);
}

TEST(VisaSocket, OpenRefusesAccessModesAndNullPointers) {
    const Listener listener;
    ViSession rm = VI_NULL;
    ViSession vi = 5;
    ASSERT_EQ(viOpenDefaultRM(&rm), VI_SUCCESS);
    EXPECT_EQ(viOpen(rm, listener.Resource().c_str(), 1, kOpenTimeout, &vi), static_cast<ViStatus>(0xBFFF0013));
    EXPECT_EQ(viOpen(rm, listener.Resource().c_str(), VI_NULL, kOpenTimeout, nullptr),
              static_cast<ViStatus>(0xBFFF0078));
    EXPECT_EQ(viOpenDefaultRM(nullptr), static_cast<ViStatus>(0xBFFF0078));
    EXPECT_EQ(viClose(rm), VI_SUCCESS);
}

// ------------------------------------------------------------------------------------------------------------- handles

TEST(VisaSocket, UnknownAndClosedHandlesAreInvalidObjects) {
    const Peer peer(StaysSilent);
    Connection connection(peer.Resource());
    ASSERT_EQ(viClose(connection.vi), VI_SUCCESS);
    for (const ViSession handle : {connection.vi, ViSession{0}, ViSession{0xFFFFFFFF}}) {
        ViByte byte = 0;
        ViUInt32 count = 7;
        ViSession vi = 5;
        constexpr auto kInvalid = static_cast<ViStatus>(0xBFFF000E);
        EXPECT_EQ(viClose(handle), kInvalid);
        EXPECT_EQ(viSetAttribute(handle, VI_ATTR_TMO_VALUE, 1), kInvalid);
        EXPECT_EQ(viSetBuf(handle, VI_READ_BUF, 1), kInvalid);
        EXPECT_EQ(viWrite(handle, &byte, 1, &count), kInvalid);
        EXPECT_EQ(viRead(handle, &byte, 1, &count), kInvalid);
        EXPECT_EQ(viOpen(handle, peer.Resource().c_str(), VI_NULL, kOpenTimeout, &vi), kInvalid);
        EXPECT_EQ(vi, 0U);
    }
}

TEST(VisaSocket, ClosingAnInstrumentEndsItsConnectionAlone) {
    std::promise<bool> ended;
    const Peer peer([&](const Socket& socket) { ended.set_value(socket.SeesEnd()); });
    const Connection connection(peer.Resource());
    const Peer other(Sends("alive\n"));
    ViSession vi = VI_NULL;
    ASSERT_EQ(viOpen(connection.rm, other.Resource().c_str(), VI_NULL, kOpenTimeout, &vi), VI_SUCCESS);
    EXPECT_NE(vi, connection.vi);
    EXPECT_EQ(viClose(connection.vi), VI_SUCCESS);
    EXPECT_TRUE(ended.get_future().get());
    ViByte byte = 0;
    EXPECT_EQ(viRead(vi, &byte, 1, nullptr), VI_SUCCESS_MAX_CNT);
    EXPECT_EQ(byte, 'a');
    EXPECT_EQ(viClose(vi), VI_SUCCESS);
}

TEST(VisaSocket, ClosingAResourceManagerClosesItsInstruments) {
    const auto before = OpenFiles();
    {
        std::promise<bool> ended;
        const Peer peer([&](const Socket& socket) { ended.set_value(socket.SeesEnd()); });
        const Connection connection(peer.Resource());
        EXPECT_EQ(viClose(connection.rm), VI_SUCCESS);
        EXPECT_TRUE(ended.get_future().get());
        EXPECT_EQ(connection.Write("x"), VI_ERROR_INV_OBJECT);
        EXPECT_EQ(viClose(connection.vi), VI_ERROR_INV_OBJECT);
        EXPECT_EQ(viClose(connection.rm), VI_ERROR_INV_OBJECT);
    }
    EXPECT_EQ(OpenFiles(), before);
}

TEST(VisaSocket, ResourceManagersAreIndependent) {
    const Peer peer(Sends("x"));
    const Connection connection(peer.Resource());
    ViSession other = VI_NULL;
    ASSERT_EQ(viOpenDefaultRM(&other), VI_SUCCESS);
    EXPECT_NE(other, connection.rm);
    EXPECT_EQ(viClose(other), VI_SUCCESS);
    EXPECT_EQ(connection.Read(1), (Reply{VI_SUCCESS_MAX_CNT, "x"}));
}

TEST(VisaSocket, AResourceManagerTransfersNothing) {
    ViSession rm = VI_NULL;
    ASSERT_EQ(viOpenDefaultRM(&rm), VI_SUCCESS);
    ViByte byte = 0;
    ViUInt32 count = 7;
    EXPECT_EQ(viWrite(rm, &byte, 1, &count), VI_ERROR_NSUP_OPER);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(viRead(rm, &byte, 1, &count), VI_ERROR_NSUP_OPER);
    EXPECT_EQ(viSetBuf(rm, VI_READ_BUF, 1), VI_ERROR_NSUP_OPER);
    EXPECT_EQ(viSetAttribute(rm, VI_ATTR_TMO_VALUE, 1), VI_ERROR_NSUP_ATTR);
    EXPECT_EQ(viClose(rm), VI_SUCCESS);
}

TEST(VisaSocket, AnInstrumentOpensNothing) {
    const Peer peer(StaysSilent);
    const Connection connection(peer.Resource());
    ViSession vi = 5;
    EXPECT_EQ(viOpen(connection.vi, peer.Resource().c_str(), VI_NULL, kOpenTimeout, &vi), VI_ERROR_INV_OBJECT);
}

// --------------------------------------------------------------------------------------------- attributes and buffers

TEST(VisaSocket, AttributesTakeTheirRangesAndNothingElse) {
    const Peer peer(StaysSilent);
    const Connection connection(peer.Resource());
    struct Case {
        ViAttr name;
        ViAttrState value;
        ViStatus expected;
    };
    constexpr auto kUnknown = static_cast<ViStatus>(0xBFFF001D);
    constexpr auto kUnsupported = static_cast<ViStatus>(0xBFFF001E);
    const Case cases[] = {{VI_ATTR_TMO_VALUE, 0, VI_SUCCESS},
                          {VI_ATTR_TMO_VALUE, 0xFFFFFFFF, VI_SUCCESS},
                          {VI_ATTR_TMO_VALUE, 0x100000000, kUnsupported},
                          {VI_ATTR_TERMCHAR, 0, VI_SUCCESS},
                          {VI_ATTR_TERMCHAR, 255, VI_SUCCESS},
                          {VI_ATTR_TERMCHAR, 256, kUnsupported},
                          {VI_ATTR_TERMCHAR_EN, VI_FALSE, VI_SUCCESS},
                          {VI_ATTR_TERMCHAR_EN, VI_TRUE, VI_SUCCESS},
                          {VI_ATTR_TERMCHAR_EN, 2, kUnsupported},
                          {VI_ATTR_ASRL_BAUD, 9600, kUnknown},
                          {VI_ATTR_ASRL_END_IN, VI_ASRL_END_TERMCHAR, kUnknown},
                          {0, 0, kUnknown}};
    for (const auto& [name, value, expected] : cases) {
        EXPECT_EQ(viSetAttribute(connection.vi, name, value), expected) << std::hex << name << ' ' << value;
    }
}

TEST(VisaSocket, SetBufTakesTheFourBuffersAndTheirCombinations) {
    const Peer peer(StaysSilent);
    const Connection connection(peer.Resource());
    for (const ViUInt16 mask : std::initializer_list<ViUInt16>{1, 2, 16, 32, 3, 48, 51}) {
        EXPECT_EQ(viSetBuf(connection.vi, mask, 1024), VI_SUCCESS) << mask;
    }
    for (const ViUInt16 mask : std::initializer_list<ViUInt16>{0, 4, 8, 64, 52, 0x8001}) {
        EXPECT_EQ(viSetBuf(connection.vi, mask, 1024), static_cast<ViStatus>(0xBFFF003D)) << mask;
    }
}

// ------------------------------------------------------------------------------------------------------------- writing

TEST(VisaSocket, WritesTheBytesAsTheyAre) {
    std::promise<std::string> received;
    const Peer peer([&](const Socket& socket) { received.set_value(socket.Receive(7)); });
    const Connection connection(peer.Resource());
    connection.EnableTermination(); // affects reads only
    EXPECT_EQ(connection.Write(std::string_view("a\n\0\xFF%s\n", 7)), VI_SUCCESS);
    EXPECT_EQ(received.get_future().get(), std::string("a\n\0\xFF%s\n", 7));
}

TEST(VisaSocket, WritesMoreThanTheSystemBuffers) {
    constexpr std::size_t kSize = 16 << 20;
    std::string bytes(kSize, 'x');
    bytes.back() = '!';
    std::promise<std::string> received;
    const Peer peer([&](const Socket& socket) {
        std::this_thread::sleep_for(milliseconds(50)); // the writer has to wait
        received.set_value(socket.Receive(kSize));
    });
    const Connection connection(peer.Resource());
    connection.SetTimeout(20000);
    EXPECT_EQ(connection.Write(bytes), VI_SUCCESS);
    EXPECT_EQ(received.get_future().get(), bytes);
}

TEST(VisaSocket, AWriteThatThePeerDoesNotTakeTimesOut) {
    std::promise<void> done;
    const Peer peer([&](const Socket& /*socket*/) { done.get_future().wait(); });
    {
        const Connection connection(peer.Resource());
        connection.SetTimeout(100);
        const std::vector<ViByte> bytes(64 << 20);
        ViUInt32 written = 0;
        const auto before = Clock::now();
        EXPECT_EQ(viWrite(connection.vi, bytes.data(), static_cast<ViUInt32>(bytes.size()), &written),
                  static_cast<ViStatus>(0xBFFF0015));
        EXPECT_GE(Clock::now() - before, milliseconds(100));
        EXPECT_LT(Clock::now() - before, kGuard);
        EXPECT_GT(written, 0U);
        EXPECT_LT(written, bytes.size());
    }
    done.set_value();
}

TEST(VisaSocket, WritingToALostConnectionReturnsAStatusWithoutASignal) {
    const Peer peer([](const Socket& socket) {
        static_cast<void>(socket.ReceiveLine());
        socket.Reset();
    });
    const Connection connection(peer.Resource());
    ASSERT_EQ(connection.Write("go\n"), VI_SUCCESS);
    EXPECT_EQ(connection.Read(), (Reply{VI_ERROR_CONN_LOST, ""})); // the reset has arrived
    EXPECT_EQ(connection.Write("more\n"), static_cast<ViStatus>(0xBFFF00A6));
    EXPECT_EQ(connection.Write("more\n"), static_cast<ViStatus>(0xBFFF00A6));
}

TEST(VisaSocket, NullBuffersAreRefusedAndNullCountsAllowed) {
    const Peer peer(Sends("x"));
    const Connection connection(peer.Resource());
    ViByte byte = 'y';
    ViUInt32 count = 7;
    EXPECT_EQ(viWrite(connection.vi, nullptr, 1, &count), static_cast<ViStatus>(0xBFFF0071));
    EXPECT_EQ(count, 0U);
    count = 7;
    EXPECT_EQ(viRead(connection.vi, nullptr, 1, &count), static_cast<ViStatus>(0xBFFF0071));
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(viWrite(connection.vi, &byte, 1, nullptr), VI_SUCCESS);
    EXPECT_EQ(viRead(connection.vi, &byte, 1, nullptr), VI_SUCCESS_MAX_CNT);
    EXPECT_EQ(byte, 'x');
    count = 7;
    EXPECT_EQ(viWrite(connection.vi, nullptr, 0, &count), VI_SUCCESS);
    EXPECT_EQ(count, 0U);
    count = 7;
    EXPECT_EQ(viRead(connection.vi, nullptr, 0, &count), VI_SUCCESS_MAX_CNT);
    EXPECT_EQ(count, 0U);
}

// ------------------------------------------------------------------------------------------------------------- reading

TEST(VisaSocket, ReadEndsAtTheEnabledTerminationCharacterAndKeepsTheRest) {
    const Peer peer(Sends("one\ntwo\n\nthree"));
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    EXPECT_EQ(connection.Read(), (Reply{VI_SUCCESS_TERM_CHAR, "one\n"}));
    EXPECT_EQ(connection.Read(), (Reply{VI_SUCCESS_TERM_CHAR, "two\n"}));
    EXPECT_EQ(connection.Read(), (Reply{VI_SUCCESS_TERM_CHAR, "\n"}));
    EXPECT_EQ(connection.Read(5), (Reply{VI_SUCCESS_MAX_CNT, "three"}));
}

TEST(VisaSocket, ReadEndsWhenTheBufferIsFullAndTheRestIsReadNext) {
    const Peer peer(Sends("0123456789\nnext\n"));
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    EXPECT_EQ(connection.Read(4), (Reply{VI_SUCCESS_MAX_CNT, "0123"}));
    EXPECT_EQ(connection.Read(), (Reply{VI_SUCCESS_TERM_CHAR, "456789\n"}));
    EXPECT_EQ(connection.Read(2), (Reply{VI_SUCCESS_MAX_CNT, "ne"}));
    EXPECT_EQ(connection.Read(2), (Reply{VI_SUCCESS_MAX_CNT, "xt"}));
    EXPECT_EQ(connection.Read(2), (Reply{VI_SUCCESS_TERM_CHAR, "\n"}));
}

TEST(VisaSocket, ATerminationCharacterAtTheEndOfAFullBufferCountsAsTermination) {
    const Peer peer(Sends("123\n"));
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    EXPECT_EQ(connection.Read(4), (Reply{VI_SUCCESS_TERM_CHAR, "123\n"}));
}

TEST(VisaSocket, AnyByteCanBeTheTerminationCharacter) {
    const Peer peer(Sends(std::string("a\nb\0c\xFF", 6)));
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    ASSERT_EQ(viSetAttribute(connection.vi, VI_ATTR_TERMCHAR, 0), VI_SUCCESS);
    EXPECT_EQ(connection.Read(), (Reply{VI_SUCCESS_TERM_CHAR, std::string("a\nb\0", 4)}));
    ASSERT_EQ(viSetAttribute(connection.vi, VI_ATTR_TERMCHAR, 0xFF), VI_SUCCESS);
    EXPECT_EQ(connection.Read(), (Reply{VI_SUCCESS_TERM_CHAR, "c\xFF"}));
}

TEST(VisaSocket, WithoutATerminationCharacterOnlyTheCountOrATimeOutEndsARead) {
    const Peer peer(Sends("one\ntwo\n"));
    const Connection connection(peer.Resource());
    EXPECT_EQ(connection.Read(6), (Reply{VI_SUCCESS_MAX_CNT, "one\ntw"}));
    connection.SetTimeout(50);
    EXPECT_EQ(connection.Read(), (Reply{VI_ERROR_TMO, "o\n"}));
}

TEST(VisaSocket, BytesKeptBehindATerminationCharacterAreReadEvenWhenItIsDisabled) {
    const Peer peer(Sends("one\ntwo\nthree"));
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    EXPECT_EQ(connection.Read(), (Reply{VI_SUCCESS_TERM_CHAR, "one\n"}));
    ASSERT_EQ(viSetAttribute(connection.vi, VI_ATTR_TERMCHAR_EN, VI_FALSE), VI_SUCCESS);
    EXPECT_EQ(connection.Read(9), (Reply{VI_SUCCESS_MAX_CNT, "two\nthree"}));
}

TEST(VisaSocket, AReplyInPiecesIsReadAsOne) {
    const Peer peer([](const Socket& socket) {
        for (const auto* piece : {"TX44", "10,", "1.0", "\n"}) {
            socket.Send(piece);
            std::this_thread::sleep_for(milliseconds(20));
        }
        static_cast<void>(socket.ReceiveLine());
    });
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    EXPECT_EQ(connection.Read(), (Reply{VI_SUCCESS_TERM_CHAR, "TX4410,1.0\n"}));
}

TEST(VisaSocket, LongRepliesArriveWhole) {
    std::string reply(1 << 20, 'x');
    for (std::size_t i = 0; i < reply.size(); ++i) {
        reply[i] = static_cast<char>('a' + i % 23);
    }
    reply += '\n';
    const Peer peer(Sends(reply + "next\n"));
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    connection.SetTimeout(20000);
    EXPECT_EQ(connection.Read(2 << 20), (Reply{VI_SUCCESS_TERM_CHAR, reply}));
    EXPECT_EQ(connection.Read(), (Reply{VI_SUCCESS_TERM_CHAR, "next\n"}));
}

TEST(VisaSocket, LongRepliesArriveWholeInSmallReads) {
    const std::string reply = std::string(100000, 'x') + "\n";
    const Peer peer(Sends(reply));
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    std::string all;
    Reply part;
    do {
        part = connection.Read(1024);
        all += part.bytes;
    } while (part.status == VI_SUCCESS_MAX_CNT);
    EXPECT_EQ(part.status, VI_SUCCESS_TERM_CHAR);
    EXPECT_EQ(all, reply);
}

TEST(VisaSocket, QueriesGoBackAndForth) {
    const Peer peer([](const Socket& socket) {
        for (auto line = socket.ReceiveLine(); !line.empty(); line = socket.ReceiveLine()) {
            socket.Send(line);
        }
    });
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    for (int i = 0; i < 200; ++i) {
        std::string line("<");
        line.append(std::to_string(i)).append("\n");
        ASSERT_EQ(connection.Write(line), VI_SUCCESS);
        ASSERT_EQ(connection.Read(), (Reply{VI_SUCCESS_TERM_CHAR, line}));
    }
}

// ----------------------------------------------------------------------------------------------------------- time-outs

TEST(VisaSocket, ASilentPeerTimesOut) {
    const Peer peer(StaysSilent);
    const Connection connection(peer.Resource());
    connection.SetTimeout(100);
    const auto before = Clock::now();
    EXPECT_EQ(connection.Read(), (Reply{static_cast<ViStatus>(0xBFFF0015), ""}));
    EXPECT_GE(Clock::now() - before, milliseconds(100));
    EXPECT_LT(Clock::now() - before, kGuard);
}

TEST(VisaSocket, ATimeOutReturnsTheBytesThatArrived) {
    const Peer peer(Sends("begun"));
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    connection.SetTimeout(100);
    EXPECT_EQ(connection.Read(), (Reply{VI_ERROR_TMO, "begun"}));
}

TEST(VisaSocket, SingleBytesDoNotExtendTheTimeOut) {
    std::atomic<bool> stop{false};
    const Peer peer([&](const Socket& socket) {
        while (!stop) {
            socket.Send("x");
            std::this_thread::sleep_for(milliseconds(10));
        }
    });
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    connection.SetTimeout(200);
    const auto before = Clock::now();
    const auto reply = connection.Read(1 << 20);
    const auto took = Clock::now() - before;
    stop = true;
    EXPECT_EQ(reply.status, VI_ERROR_TMO);
    EXPECT_FALSE(reply.bytes.empty());
    EXPECT_GE(took, milliseconds(200));
    EXPECT_LT(took, kGuard);
}

TEST(VisaSocket, AnImmediateReadReturnsAvailableBytesAndDoesNotWait) {
    std::promise<void> go;
    const Peer peer([&](const Socket& socket) {
        go.get_future().wait();
        socket.Send("there");
        static_cast<void>(socket.ReceiveLine());
    });
    const Connection connection(peer.Resource());
    connection.SetTimeout(VI_TMO_IMMEDIATE);
    EXPECT_EQ(connection.Read(), (Reply{VI_ERROR_TMO, ""}));
    go.set_value();
    std::string all;
    const auto end = Clock::now() + kGuard;
    while (all.size() < 5 && Clock::now() < end) {
        const auto reply = connection.Read();
        EXPECT_EQ(reply.status, VI_ERROR_TMO);
        all += reply.bytes;
    }
    EXPECT_EQ(all, "there");
    EXPECT_EQ(connection.Write("x"), VI_SUCCESS);
}

TEST(VisaSocket, AnInfiniteReadWaitsForTheReply) {
    const Peer peer([](const Socket& socket) {
        std::this_thread::sleep_for(milliseconds(100));
        socket.Send("late\n");
        static_cast<void>(socket.ReceiveLine());
    });
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    connection.SetTimeout(VI_TMO_INFINITE);
    EXPECT_EQ(connection.Read(), (Reply{VI_SUCCESS_TERM_CHAR, "late\n"}));
}

TEST(VisaSocket, ASignalDoesNotEndARead) {
    struct sigaction handler {};
    struct sigaction before {};
    handler.sa_handler = [](int) {};
    ASSERT_EQ(::sigaction(SIGUSR1, &handler, &before), 0);
    std::promise<void> go;
    const Peer peer([&](const Socket& socket) {
        go.get_future().wait();
        socket.Send("late\n");
        static_cast<void>(socket.ReceiveLine());
    });
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    connection.SetTimeout(20000);
    Reply reply;
    std::thread reader([&] { reply = connection.Read(); });
    for (int i = 0; i < 5; ++i) {
        std::this_thread::sleep_for(milliseconds(20));
        ::pthread_kill(reader.native_handle(), SIGUSR1);
    }
    go.set_value();
    reader.join();
    EXPECT_EQ(reply, (Reply{VI_SUCCESS_TERM_CHAR, "late\n"}));
    ::sigaction(SIGUSR1, &before, nullptr);
}

// ---------------------------------------------------------------------------------------------------- lost connections

TEST(VisaSocket, APeerThatClosesIsALostConnection) {
    const Peer peer([](const Socket& socket) { socket.Send("begun"); });
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    EXPECT_EQ(connection.Read(), (Reply{static_cast<ViStatus>(0xBFFF00A6), "begun"}));
    EXPECT_EQ(connection.Read(), (Reply{static_cast<ViStatus>(0xBFFF00A6), ""}));
}

TEST(VisaSocket, APeerThatResetsIsALostConnection) {
    const Peer peer([](const Socket& socket) {
        static_cast<void>(socket.ReceiveLine());
        socket.Reset();
    });
    const Connection connection(peer.Resource());
    ASSERT_EQ(connection.Write("go\n"), VI_SUCCESS);
    EXPECT_EQ(connection.Read(), (Reply{static_cast<ViStatus>(0xBFFF00A6), ""}));
}

// ------------------------------------------------------------------------------------------------------------- threads

TEST(VisaSocket, ClosingASessionWakesTheThreadThatReadsInIt) {
    const Peer peer(StaysSilent);
    const Connection connection(peer.Resource());
    connection.SetTimeout(VI_TMO_INFINITE);
    Reply reply;
    std::thread reader([&] { reply = connection.Read(); });
    std::this_thread::sleep_for(milliseconds(50));
    EXPECT_EQ(viClose(connection.vi), VI_SUCCESS);
    reader.join();
    EXPECT_EQ(reply, (Reply{VI_ERROR_INV_OBJECT, ""}));
}

TEST(VisaSocket, ClosingTheResourceManagerWakesTheThreadThatWrites) {
    std::promise<void> done;
    const Peer peer([&](const Socket& /*socket*/) { done.get_future().wait(); });
    const Connection connection(peer.Resource());
    connection.SetTimeout(VI_TMO_INFINITE);
    ViStatus status = VI_SUCCESS;
    std::thread writer([&] { status = connection.Write(std::string(64 << 20, 'x')); });
    std::this_thread::sleep_for(milliseconds(50));
    EXPECT_EQ(viClose(connection.rm), VI_SUCCESS);
    writer.join();
    EXPECT_EQ(status, VI_ERROR_INV_OBJECT);
    done.set_value();
}

TEST(VisaSocket, TheFileOfASessionThatIsStillInUseKeepsItsNumber) {
    const Peer peer(StaysSilent);
    const Connection connection(peer.Resource());
    connection.SetTimeout(VI_TMO_INFINITE);
    std::thread reader([&] { static_cast<void>(connection.Read()); });
    std::this_thread::sleep_for(milliseconds(50));
    EXPECT_EQ(viClose(connection.vi), VI_SUCCESS);
    const Peer other(Sends("other\n"));
    const Connection next(other.Resource()); // may get the same number: the reader above must not read its data
    next.EnableTermination();
    reader.join();
    EXPECT_EQ(next.Read(), (Reply{VI_SUCCESS_TERM_CHAR, "other\n"}));
}

TEST(VisaSocket, SessionsDoNotWaitForOneAnother) {
    const Peer silent(StaysSilent);
    const Connection blocked(silent.Resource());
    blocked.SetTimeout(VI_TMO_INFINITE);
    std::thread reader([&] { static_cast<void>(blocked.Read()); });
    std::this_thread::sleep_for(milliseconds(20));
    const Peer peer(Sends("free\n"));
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    EXPECT_EQ(connection.Read(), (Reply{VI_SUCCESS_TERM_CHAR, "free\n"}));
    EXPECT_EQ(viClose(blocked.vi), VI_SUCCESS);
    reader.join();
}

TEST(VisaSocket, OneThreadWritesWhileAnotherReads) {
    const Peer peer([](const Socket& socket) { socket.Send(socket.ReceiveLine()); });
    const Connection connection(peer.Resource());
    connection.EnableTermination();
    connection.SetTimeout(VI_TMO_INFINITE);
    Reply reply;
    std::thread reader([&] { reply = connection.Read(); });
    std::this_thread::sleep_for(milliseconds(50));
    EXPECT_EQ(connection.Write("go\n"), VI_SUCCESS);
    reader.join();
    EXPECT_EQ(reply, (Reply{VI_SUCCESS_TERM_CHAR, "go\n"}));
}

TEST(VisaSocket, WaitingForAnotherReadersTurnEndsAtTheTimeOut) {
    const Peer peer(StaysSilent);
    const Connection connection(peer.Resource());
    connection.SetTimeout(VI_TMO_INFINITE);
    std::thread reader([&] { static_cast<void>(connection.Read()); });
    std::this_thread::sleep_for(milliseconds(50));
    connection.SetTimeout(50);
    EXPECT_EQ(connection.Read(), (Reply{VI_ERROR_TMO, ""}));
    EXPECT_EQ(viClose(connection.vi), VI_SUCCESS);
    reader.join();
}

TEST(VisaSocket, ManyThreadsOpenQueryAndCloseAtTheSameTime) {
    const auto before = OpenFiles();
    std::vector<std::thread> threads;
    std::atomic<int> good{0};
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&good] {
            for (int round = 0; round < 20; ++round) {
                const Peer peer([](const Socket& socket) { socket.Send(socket.ReceiveLine()); });
                const Connection connection(peer.Resource());
                connection.EnableTermination();
                const bool same = connection.Write("ping\n") == VI_SUCCESS &&
                                  connection.Read() == Reply{VI_SUCCESS_TERM_CHAR, "ping\n"};
                good += same ? 1 : 0;
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(good, 80);
    EXPECT_EQ(OpenFiles(), before);
}

} // namespace
