// The built-in VISA's serial lines, over pseudo-terminals.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <initializer_list>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/visa.h"
#include "runtime/visa/serial_transport.h"
#include "tests/unit/runtime/visa_session.h"
#include "tools/virtual_supply/pseudo_terminal.h"

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using visa_session::Connection;
using visa_session::kOpenTimeout;
using visa_session::OpenFiles;
using visa_session::Reply;
using Clock = std::chrono::steady_clock;

constexpr auto kGuard = seconds(15);
constexpr auto kUnknown = static_cast<ViStatus>(0xBFFF001D);
constexpr auto kUnsupported = static_cast<ViStatus>(0xBFFF001E);
constexpr auto kTimeOut = static_cast<ViStatus>(0xBFFF0015);
constexpr auto kLost = static_cast<ViStatus>(0xBFFF00A6);
constexpr auto kTermChar = static_cast<ViStatus>(0x3FFF0005);
constexpr auto kMaxCount = static_cast<ViStatus>(0x3FFF0006);

/// The instrument's end of a line.
class Line {
  public:
    Line() : near_(terminal_.ReleaseNearEnd()) {}
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;
    ~Line() { HangUp(); }

    [[nodiscard]] std::string Resource() const { return "ASRL" + terminal_.Device() + "::INSTR"; }

    void Send(std::string_view bytes) const {
        EXPECT_EQ(::write(near_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    /// Reads `count` bytes; blocks until they arrive.
    [[nodiscard]] std::string Receive(std::size_t count) const {
        std::string bytes(count, '\0');
        std::size_t got = 0;
        while (got < count) {
            const auto size = ::read(near_, bytes.data() + got, count - got);
            if (size <= 0) {
                break;
            }
            got += static_cast<std::size_t>(size);
        }
        bytes.resize(got);
        return bytes;
    }
    void HangUp() {
        if (near_ >= 0) {
            ::close(near_);
            near_ = -1;
        }
    }
    /// The settings of the line, common to both ends.
    [[nodiscard]] termios Setup() const {
        termios setup{};
        EXPECT_EQ(::tcgetattr(near_, &setup), 0);
        return setup;
    }

  private:
    virtual_supply::PseudoTerminal terminal_;
    int near_;
};

ViStatus Set(const Connection& connection, ViAttr name, ViAttrState value) {
    return viSetAttribute(connection.vi, name, value);
}

ViStatus TryOpen(const std::string& resource) {
    ViSession rm = VI_NULL;
    ViSession vi = 5;
    EXPECT_EQ(viOpenDefaultRM(&rm), VI_SUCCESS);
    const auto status = viOpen(rm, resource.c_str(), VI_NULL, kOpenTimeout, &vi);
    EXPECT_EQ(vi, 0U) << resource;
    EXPECT_EQ(viClose(rm), VI_SUCCESS);
    return status;
}

// ------------------------------------------------------------------------------------------------------------ opening

TEST(VisaSerial, PortsAreCountedFromOneAndPathsAreUnchanged) {
    EXPECT_EQ(runtime::SerialDevice("1"), "/dev/ttyS0");
    EXPECT_EQ(runtime::SerialDevice("12"), "/dev/ttyS11");
    EXPECT_EQ(runtime::SerialDevice("65535"), "/dev/ttyS65534");
    EXPECT_EQ(runtime::SerialDevice("0"), "");
    EXPECT_EQ(runtime::SerialDevice("/dev/ttyUSB0"), "/dev/ttyUSB0");
    EXPECT_EQ(runtime::SerialDevice("/1"), "/1");
}

TEST(VisaSerial, ADeviceThatIsNotASerialLineIsAResourceNotFound) {
    const auto before = OpenFiles();
    for (const auto* name : {"ASRL0::INSTR", "ASRL65535::INSTR", "ASRL/dev/no-such-device::INSTR",
                             "ASRL/dev/null::INSTR", "ASRL/dev::INSTR", "ASRL/::INSTR"}) {
        EXPECT_EQ(TryOpen(name), static_cast<ViStatus>(0xBFFF0011)) << name;
    }
    EXPECT_EQ(OpenFiles(), before);
}

TEST(VisaSerial, ALineIsOpenedInAnyLetterCaseOfTheKeywordsAndWithoutThem) {
    const Line line;
    const auto device = line.Resource().substr(4, line.Resource().size() - 4 - 7);
    for (const auto& name : {"ASRL" + device + "::INSTR", "asrl" + device + "::instr", "Asrl" + device}) {
        const Connection connection(name);
        line.Send("hello\n");
        EXPECT_EQ(connection.Read(), (Reply{kTermChar, "hello\n"})) << name;
    }
}

TEST(VisaSerial, ALineIsRawAndHasVisasDefaults) {
    const Line line;
    const Connection connection(line.Resource());
    const auto setup = line.Setup();
    EXPECT_EQ(::cfgetospeed(&setup), static_cast<speed_t>(B9600));
    EXPECT_EQ(::cfgetispeed(&setup), static_cast<speed_t>(B9600));
    EXPECT_EQ(setup.c_cflag & CSIZE, static_cast<tcflag_t>(CS8));
    EXPECT_EQ(setup.c_cflag & static_cast<tcflag_t>(CSTOPB | PARENB | CRTSCTS), 0U);
    EXPECT_EQ(setup.c_iflag & static_cast<tcflag_t>(IXON | IXOFF | ICRNL | INLCR | IGNCR | ISTRIP), 0U);
    EXPECT_EQ(setup.c_lflag & static_cast<tcflag_t>(ECHO | ICANON | ISIG), 0U);
    EXPECT_EQ(setup.c_oflag & static_cast<tcflag_t>(OPOST), 0U);
}

TEST(VisaSerial, OpeningDiscardsBytesReceivedBefore) {
    const Line line;
    line.Send("stale\n");
    const Connection connection(line.Resource());
    line.Send("fresh\n");
    EXPECT_EQ(connection.Read(), (Reply{kTermChar, "fresh\n"}));
}

TEST(VisaSerial, ClosingLeavesNoFileOpenAndTheLineUsable) {
    const Line line;
    const auto before = OpenFiles();
    for (int i = 0; i < 3; ++i) {
        const Connection connection(line.Resource());
        const auto during = OpenFiles();
        EXPECT_GT(during.size(), before.size());
        for (const int file : during) {
            EXPECT_TRUE(before.count(file) == 1 || (::fcntl(file, F_GETFD) & FD_CLOEXEC) != 0) << file;
        }
        EXPECT_EQ(connection.Write("ping\n"), VI_SUCCESS);
        EXPECT_EQ(line.Receive(5), "ping\n");
    }
    EXPECT_EQ(OpenFiles(), before);
}

TEST(VisaSerial, ALineNeverGetsTheNumberOfAClosedStandardStream) {
    const Line line;
    std::array<int, 3> kept{};
    for (int stream = 0; stream < 3; ++stream) {
        kept.at(static_cast<std::size_t>(stream)) = ::fcntl(stream, F_DUPFD_CLOEXEC, 100);
        ::close(stream);
    }
    bool isLine = false;
    {
        const Connection connection(line.Resource());
        for (int stream = 0; stream < 3; ++stream) {
            isLine = isLine || ::isatty(stream) != 0;
        }
    }
    for (int stream = 0; stream < 3; ++stream) {
        ::dup2(kept.at(static_cast<std::size_t>(stream)), stream);
        ::close(kept.at(static_cast<std::size_t>(stream)));
    }
    EXPECT_FALSE(isLine);
}

TEST(VisaSerial, BytesWrittenBeforeTheCloseArrive) {
    const Line line;
    {
        const Connection connection(line.Resource());
        EXPECT_EQ(connection.Write(":OUTP OFF\n"), VI_SUCCESS);
    }
    EXPECT_EQ(line.Receive(10), ":OUTP OFF\n");
}

// --------------------------------------------------------------------------------------------- attributes and buffers

TEST(VisaSerial, AttributesTakeTheirRangesAndNothingElse) {
    const Line line;
    const Connection connection(line.Resource());
    struct Case {
        ViAttr name;
        ViAttrState value;
        ViStatus expected;
    };
    constexpr auto kNegative = static_cast<ViAttrState>(-1);
    for (const auto& [name, value, expected] : {
             Case{VI_ATTR_TMO_VALUE, 0, VI_SUCCESS},
             Case{VI_ATTR_TMO_VALUE, 0xFFFFFFFF, VI_SUCCESS},
             Case{VI_ATTR_TMO_VALUE, 0x100000000, kUnsupported},
             Case{VI_ATTR_TERMCHAR, 255, VI_SUCCESS},
             Case{VI_ATTR_TERMCHAR, 256, kUnsupported},
             Case{VI_ATTR_TERMCHAR_EN, VI_TRUE, VI_SUCCESS},
             Case{VI_ATTR_TERMCHAR_EN, 2, kUnsupported},
             Case{VI_ATTR_ASRL_BAUD, 300, VI_SUCCESS},
             Case{VI_ATTR_ASRL_BAUD, 115200, VI_SUCCESS},
             Case{VI_ATTR_ASRL_BAUD, 0, kUnsupported},
             Case{VI_ATTR_ASRL_BAUD, 12345, kUnsupported},
             Case{VI_ATTR_ASRL_BAUD, 0x80000000, kUnsupported},
             Case{VI_ATTR_ASRL_BAUD, 0x100002580, kUnsupported},
             Case{VI_ATTR_ASRL_BAUD, kNegative, kUnsupported},
             Case{VI_ATTR_ASRL_DATA_BITS, 8, VI_SUCCESS},
             Case{VI_ATTR_ASRL_DATA_BITS, 4, kUnsupported},
             Case{VI_ATTR_ASRL_DATA_BITS, 9, kUnsupported},
             Case{VI_ATTR_ASRL_DATA_BITS, 0x100000008, kUnsupported},
             Case{VI_ATTR_ASRL_DATA_BITS, kNegative, kUnsupported},
             Case{VI_ATTR_ASRL_STOP_BITS, 10, VI_SUCCESS},
             Case{VI_ATTR_ASRL_STOP_BITS, 20, VI_SUCCESS},
             Case{VI_ATTR_ASRL_STOP_BITS, 15, kUnsupported},
             Case{VI_ATTR_ASRL_STOP_BITS, 1, kUnsupported},
             Case{VI_ATTR_ASRL_PARITY, 0, VI_SUCCESS},
             Case{VI_ATTR_ASRL_PARITY, 1, VI_SUCCESS},
             Case{VI_ATTR_ASRL_PARITY, 2, VI_SUCCESS},
             Case{VI_ATTR_ASRL_PARITY, 3, kUnsupported},
             Case{VI_ATTR_ASRL_PARITY, 4, kUnsupported},
             Case{VI_ATTR_ASRL_PARITY, kNegative, kUnsupported},
             Case{VI_ATTR_ASRL_FLOW_CNTRL, 0, VI_SUCCESS},
             Case{VI_ATTR_ASRL_FLOW_CNTRL, 1, VI_SUCCESS},
             Case{VI_ATTR_ASRL_FLOW_CNTRL, 2, VI_SUCCESS},
             Case{VI_ATTR_ASRL_FLOW_CNTRL, 3, kUnsupported},
             Case{VI_ATTR_ASRL_FLOW_CNTRL, 4, kUnsupported},
             Case{VI_ATTR_ASRL_END_IN, 0, VI_SUCCESS},
             Case{VI_ATTR_ASRL_END_IN, 1, kUnsupported},
             Case{VI_ATTR_ASRL_END_IN, 2, VI_SUCCESS},
             Case{VI_ATTR_ASRL_END_IN, 3, kUnsupported},
             Case{VI_ATTR_ASRL_END_OUT, 0, VI_SUCCESS},
             Case{VI_ATTR_ASRL_END_OUT, 1, kUnsupported},
             Case{VI_ATTR_ASRL_END_OUT, 2, kUnsupported},
             Case{VI_ATTR_ASRL_END_OUT, 3, kUnsupported},
             Case{0, 0, kUnknown},
             Case{0x3FFF0026, 0, kUnknown},
         }) {
        EXPECT_EQ(Set(connection, name, value), expected) << std::hex << name << ' ' << value;
    }
}

TEST(VisaSerial, AttributesReachTheLine) {
    const Line line;
    const Connection connection(line.Resource());
    const auto has = [&](tcflag_t termios::*flags, auto wanted) {
        return (line.Setup().*flags & static_cast<tcflag_t>(wanted)) == static_cast<tcflag_t>(wanted);
    };
    EXPECT_EQ(Set(connection, VI_ATTR_ASRL_BAUD, 115200), VI_SUCCESS);
    const auto setup = line.Setup();
    EXPECT_EQ(::cfgetospeed(&setup), static_cast<speed_t>(B115200));
    EXPECT_EQ(::cfgetispeed(&setup), static_cast<speed_t>(B115200));

    EXPECT_EQ(Set(connection, VI_ATTR_ASRL_STOP_BITS, 20), VI_SUCCESS);
    EXPECT_TRUE(has(&termios::c_cflag, CSTOPB));
    EXPECT_EQ(Set(connection, VI_ATTR_ASRL_STOP_BITS, 10), VI_SUCCESS);
    EXPECT_FALSE(has(&termios::c_cflag, CSTOPB));

    EXPECT_EQ(Set(connection, VI_ATTR_ASRL_FLOW_CNTRL, 1), VI_SUCCESS);
    EXPECT_TRUE(has(&termios::c_iflag, IXON | IXOFF));
    EXPECT_EQ(Set(connection, VI_ATTR_ASRL_FLOW_CNTRL, 2), VI_SUCCESS);
    EXPECT_TRUE(has(&termios::c_cflag, CRTSCTS));
    EXPECT_FALSE(has(&termios::c_iflag, IXON));
    EXPECT_EQ(Set(connection, VI_ATTR_ASRL_FLOW_CNTRL, 0), VI_SUCCESS);
    EXPECT_FALSE(has(&termios::c_cflag, CRTSCTS));

    // A pseudo-terminal has no parity bit, but it stores the kind of parity.
    EXPECT_EQ(Set(connection, VI_ATTR_ASRL_PARITY, 1), VI_SUCCESS);
    EXPECT_TRUE(has(&termios::c_cflag, PARODD));
    EXPECT_TRUE(has(&termios::c_iflag, INPCK));
    EXPECT_EQ(Set(connection, VI_ATTR_ASRL_PARITY, 2), VI_SUCCESS);
    EXPECT_FALSE(has(&termios::c_cflag, PARODD));
    EXPECT_TRUE(has(&termios::c_iflag, INPCK));
    EXPECT_FALSE(has(&termios::c_iflag, IGNPAR));
    EXPECT_EQ(Set(connection, VI_ATTR_ASRL_PARITY, 0), VI_SUCCESS);
    EXPECT_TRUE(has(&termios::c_iflag, IGNPAR));
}

TEST(VisaSerial, SetBufTakesTheFourBuffers) {
    const Line line;
    const Connection connection(line.Resource());
    for (const ViUInt16 mask : std::initializer_list<ViUInt16>{1, 2, 16, 32, 51}) {
        EXPECT_EQ(viSetBuf(connection.vi, mask, 1024), VI_SUCCESS) << mask;
    }
    EXPECT_EQ(viSetBuf(connection.vi, 0, 1024), static_cast<ViStatus>(0xBFFF003D));
}

// ------------------------------------------------------------------------------------------------ writing and reading

TEST(VisaSerial, WritesTheBytesAsTheyAre) {
    const Line line;
    const Connection connection(line.Resource());
    EXPECT_EQ(connection.Write(std::string_view("a\r\n\0\x03\x04\x11\xFF%s\n", 11)), VI_SUCCESS);
    EXPECT_EQ(line.Receive(11), std::string("a\r\n\0\x03\x04\x11\xFF%s\n", 11));
}

TEST(VisaSerial, ReadsEndAtTheTerminationCharacterByDefaultAndWithEitherAttribute) {
    const Line line;
    const Connection connection(line.Resource());
    line.Send("one\ntwo\n");
    EXPECT_EQ(connection.Read(), (Reply{kTermChar, "one\n"}));
    EXPECT_EQ(connection.Read(), (Reply{kTermChar, "two\n"}));

    EXPECT_EQ(Set(connection, VI_ATTR_ASRL_END_IN, VI_ASRL_END_NONE), VI_SUCCESS);
    connection.EnableTermination();
    line.Send("three\nfour\n");
    EXPECT_EQ(connection.Read(), (Reply{kTermChar, "three\n"}));
    EXPECT_EQ(connection.Read(), (Reply{kTermChar, "four\n"}));

    EXPECT_EQ(Set(connection, VI_ATTR_TERMCHAR_EN, VI_FALSE), VI_SUCCESS);
    connection.SetTimeout(100);
    line.Send("five\nsix\n");
    EXPECT_EQ(connection.Read(), (Reply{kTimeOut, "five\nsix\n"}));
}

TEST(VisaSerial, ReadsEndAtTheTerminationCharacterThatWasSet) {
    const Line line;
    const Connection connection(line.Resource());
    EXPECT_EQ(Set(connection, VI_ATTR_TERMCHAR, ';'), VI_SUCCESS);
    line.Send("a\nb;c");
    EXPECT_EQ(connection.Read(), (Reply{kTermChar, "a\nb;"}));
}

TEST(VisaSerial, ReadsEndAtTheCount) {
    const Line line;
    const Connection connection(line.Resource());
    line.Send("abcdefg\n");
    EXPECT_EQ(connection.Read(3), (Reply{kMaxCount, "abc"}));
    EXPECT_EQ(connection.Read(4), (Reply{kMaxCount, "defg"}));
    EXPECT_EQ(connection.Read(4), (Reply{kTermChar, "\n"}));
    line.Send(std::string("\0\x1A\xFF", 3));
    EXPECT_EQ(connection.Read(3), (Reply{kMaxCount, std::string("\0\x1A\xFF", 3)}));
}

TEST(VisaSerial, AReplyLongerThanTheLinesBufferArrivesWhole) {
    const Line line;
    const Connection connection(line.Resource());
    connection.SetTimeout(20000);
    const std::string reply = std::string(100000, 'x') + "\n";
    std::thread instrument([&] { line.Send(reply); });
    EXPECT_EQ(connection.Read(200000), (Reply{kTermChar, reply}));
    instrument.join();
}

TEST(VisaSerial, ACommandLongerThanTheLinesBufferArrivesWhole) {
    const Line line;
    const Connection connection(line.Resource());
    connection.SetTimeout(20000);
    const std::string command = std::string(100000, 'x') + "\n";
    std::string received;
    std::thread instrument([&] { received = line.Receive(command.size()); });
    EXPECT_EQ(connection.Write(command), VI_SUCCESS);
    instrument.join();
    EXPECT_EQ(received, command);
}

// ----------------------------------------------------------------------------------------------------------- time-outs

TEST(VisaSerial, ASilentLineTimesOut) {
    const Line line;
    const Connection connection(line.Resource());
    connection.SetTimeout(100);
    const auto before = Clock::now();
    EXPECT_EQ(connection.Read(), (Reply{kTimeOut, ""}));
    EXPECT_GE(Clock::now() - before, milliseconds(100));
    EXPECT_LT(Clock::now() - before, kGuard);
}

TEST(VisaSerial, ATimeOutReturnsTheBytesThatArrived) {
    const Line line;
    const Connection connection(line.Resource());
    connection.SetTimeout(100);
    line.Send("begun");
    EXPECT_EQ(connection.Read(), (Reply{kTimeOut, "begun"}));
    line.Send("rest\n");
    EXPECT_EQ(connection.Read(), (Reply{kTermChar, "rest\n"}));
}

TEST(VisaSerial, SingleBytesDoNotExtendTheTimeOut) {
    const Line line;
    const Connection connection(line.Resource());
    connection.SetTimeout(200);
    std::atomic<bool> stop{false};
    std::thread instrument([&] {
        while (!stop) {
            line.Send("x");
            std::this_thread::sleep_for(milliseconds(10));
        }
    });
    const auto before = Clock::now();
    const auto reply = connection.Read(1 << 20);
    const auto took = Clock::now() - before;
    stop = true;
    instrument.join();
    EXPECT_EQ(reply.status, kTimeOut);
    EXPECT_FALSE(reply.bytes.empty());
    EXPECT_GE(took, milliseconds(200));
    EXPECT_LT(took, kGuard);
}

TEST(VisaSerial, AnImmediateReadDoesNotWait) {
    const Line line;
    const Connection connection(line.Resource());
    connection.SetTimeout(VI_TMO_IMMEDIATE);
    EXPECT_EQ(connection.Read(), (Reply{kTimeOut, ""}));
}

TEST(VisaSerial, AnInfiniteReadWaitsForTheReply) {
    const Line line;
    const Connection connection(line.Resource());
    connection.SetTimeout(VI_TMO_INFINITE);
    std::thread instrument([&] {
        std::this_thread::sleep_for(milliseconds(100));
        line.Send("late\n");
    });
    EXPECT_EQ(connection.Read(), (Reply{kTermChar, "late\n"}));
    instrument.join();
}

TEST(VisaSerial, AWriteThatIsNotReadTimesOutAndCountsTheSentBytes) {
    const Line line;
    const Connection connection(line.Resource());
    connection.SetTimeout(100);
    const std::vector<ViByte> bytes(1 << 20, 'x');
    ViUInt32 written = 0;
    const auto before = Clock::now();
    EXPECT_EQ(viWrite(connection.vi, bytes.data(), static_cast<ViUInt32>(bytes.size()), &written), kTimeOut);
    EXPECT_GE(Clock::now() - before, milliseconds(100));
    EXPECT_LT(Clock::now() - before, kGuard);
    EXPECT_GT(written, 0U);
    EXPECT_LT(written, bytes.size());
    EXPECT_EQ(line.Receive(written), std::string(written, 'x'));
}

TEST(VisaSerial, ASignalDoesNotEndARead) {
    struct sigaction handler {};
    struct sigaction before {};
    handler.sa_handler = [](int) {};
    ASSERT_EQ(::sigaction(SIGUSR1, &handler, &before), 0);
    const Line line;
    const Connection connection(line.Resource());
    connection.SetTimeout(20000);
    Reply reply;
    std::thread reader([&] { reply = connection.Read(); });
    for (int i = 0; i < 5; ++i) {
        std::this_thread::sleep_for(milliseconds(20));
        ::pthread_kill(reader.native_handle(), SIGUSR1);
    }
    line.Send("late\n");
    reader.join();
    EXPECT_EQ(reply, (Reply{kTermChar, "late\n"}));
    ::sigaction(SIGUSR1, &before, nullptr);
}

// --------------------------------------------------------------------------------------------------------- lost lines

TEST(VisaSerial, ALineThatIsHungUpIsALostConnection) {
    Line line;
    const Connection connection(line.Resource());
    connection.SetTimeout(20000);
    line.HangUp();
    EXPECT_EQ(connection.Read(), (Reply{kLost, ""}));
    EXPECT_EQ(connection.Write("x"), kLost);
    EXPECT_EQ(Set(connection, VI_ATTR_ASRL_BAUD, 9600), kLost);
    EXPECT_EQ(viClose(connection.vi), VI_SUCCESS);
}

TEST(VisaSerial, AHangUpEndsAReadThatWaits) {
    Line line;
    const Connection connection(line.Resource());
    connection.SetTimeout(VI_TMO_INFINITE);
    Reply reply;
    std::thread reader([&] { reply = connection.Read(); });
    std::this_thread::sleep_for(milliseconds(50));
    line.HangUp();
    reader.join();
    EXPECT_EQ(reply, (Reply{kLost, ""}));
}

TEST(VisaSerial, AHangUpEndsAWriteThatWaits) {
    Line line;
    const Connection connection(line.Resource());
    connection.SetTimeout(VI_TMO_INFINITE);
    ViStatus status = VI_SUCCESS;
    std::thread writer([&] { status = connection.Write(std::string(1 << 20, 'x')); });
    std::this_thread::sleep_for(milliseconds(50));
    line.HangUp();
    writer.join();
    EXPECT_EQ(status, kLost);
}

// ------------------------------------------------------------------------------------------------------------- threads

TEST(VisaSerial, ClosingASessionWakesTheThreadThatReadsInIt) {
    const Line line;
    const Connection connection(line.Resource());
    connection.SetTimeout(VI_TMO_INFINITE);
    Reply reply;
    std::thread reader([&] { reply = connection.Read(); });
    std::this_thread::sleep_for(milliseconds(50));
    EXPECT_EQ(viClose(connection.vi), VI_SUCCESS);
    reader.join();
    EXPECT_EQ(reply, (Reply{VI_ERROR_INV_OBJECT, ""}));
}

TEST(VisaSerial, ClosingTheResourceManagerWakesTheThreadThatWrites) {
    const Line line;
    const Connection connection(line.Resource());
    connection.SetTimeout(VI_TMO_INFINITE);
    ViStatus status = VI_SUCCESS;
    std::thread writer([&] { status = connection.Write(std::string(1 << 20, 'x')); });
    std::this_thread::sleep_for(milliseconds(50));
    EXPECT_EQ(viClose(connection.rm), VI_SUCCESS);
    writer.join();
    EXPECT_EQ(status, VI_ERROR_INV_OBJECT);
}

TEST(VisaSerial, OneThreadWritesAndOneChangesTheLineWhileAnotherReads) {
    const Line line;
    const Connection connection(line.Resource());
    connection.SetTimeout(20000);
    Reply reply;
    std::thread reader([&] { reply = connection.Read(); });
    std::thread changer([&] {
        for (int i = 0; i < 100; ++i) {
            EXPECT_EQ(Set(connection, VI_ATTR_ASRL_BAUD, i % 2 == 0 ? 19200 : 38400), VI_SUCCESS);
            EXPECT_EQ(Set(connection, VI_ATTR_ASRL_END_IN, VI_ASRL_END_TERMCHAR), VI_SUCCESS);
        }
    });
    EXPECT_EQ(connection.Write("go\n"), VI_SUCCESS);
    EXPECT_EQ(line.Receive(3), "go\n");
    line.Send("gone\n");
    reader.join();
    changer.join();
    EXPECT_EQ(reply, (Reply{kTermChar, "gone\n"}));
}

} // namespace
