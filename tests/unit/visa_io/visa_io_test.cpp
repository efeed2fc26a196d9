#include "visa_io/visa_io.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include "tests/doubles/script.h"
#include "tests/doubles/visa_double.h"
#include "tests/unit/support/status.h"
#include "visa_io/visa_factory.h"
#include "visa_io/visa_gpib.h"
#include "visa_io/visa_serial.h"
#include "visa_io/visa_tcpip.h"
#include "visa_io/visa_tcpip_socket.h"
#include "visa_io/visa_usb.h"

namespace unit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kUsb = "USB0::0x1234::0x5678::SN42::INSTR";
constexpr const char* kSocket = "TCPIP0::192.0.2.7::5025::SOCKET";

class VisaConnection : public testing::Test {
  protected:
    VisaConnection() {
        doubles::TheScript().Reset();
        doubles::TheVisa().Reset();
    }
    VisaConnection(const VisaConnection&) = delete;
    VisaConnection& operator=(const VisaConnection&) = delete;
    ~VisaConnection() override {
        doubles::TheScript().Reset();
        connection_.reset();
        EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U) << "VISA sessions were left open";
    }

    Status Open(const std::string& resource = kUsb, const OpenVisa::ConnectionSettings& settings = {}) {
        return Status(OpenVisa::OpenConnection(resource, settings, connection_));
    }

    Status Write(std::string_view text) { return Status(connection_->write(text)); }

    /// Asks "q?", to which the double answers `reply`, and reads into `read_`.
    Status Read(const std::string& reply) {
        doubles::TheVisa().Reply("q?", reply);
        EXPECT_GE(connection_->write("q?"), 0);
        return Status(connection_->read(read_));
    }

    static std::vector<std::string> TakeWritten() {
        auto written = doubles::TheVisa().Written();
        doubles::TheVisa().ForgetWritten();
        return written;
    }
    static std::vector<std::string> TakeSettings() {
        auto settings = doubles::TheVisa().Settings();
        doubles::TheVisa().ForgetSettings();
        return settings;
    }
    static std::vector<std::string> TakeCalls() {
        auto calls = doubles::TheScript().Calls();
        doubles::TheScript().ForgetCalls();
        return calls;
    }
    static void Fail(const std::string& function, std::uint32_t status, std::size_t nth = 1) {
        doubles::TheScript().Fail(function, Code(status), nth);
    }

    std::shared_ptr<OpenVisa::VisaIO> connection_;
    std::string read_ = "before";
};

template <typename Class>
bool IsExactly(const OpenVisa::VisaIO& connection) {
    return typeid(connection) == typeid(Class);
}

TEST_F(VisaConnection, HasTheClassOfItsResource) {
    struct Case {
        const char* resource;
        bool (*is)(const OpenVisa::VisaIO&);
    };
    for (const auto& [resource, is] : {
             Case{"ASRL3::INSTR", IsExactly<OpenVisa::VisaSerial>},
             Case{"asrl3::instr", IsExactly<OpenVisa::VisaSerial>},
             Case{"ASRL", IsExactly<OpenVisa::VisaSerial>},
             Case{"ASRL/dev/SOCKET::INSTR", IsExactly<OpenVisa::VisaSerial>},
             Case{"USB0::1::2::3::INSTR", IsExactly<OpenVisa::VisaUSB>},
             Case{"usb", IsExactly<OpenVisa::VisaUSB>},
             Case{"GPIB0::5::INSTR", IsExactly<OpenVisa::VisaGPIB>},
             Case{"gPiB0::5::SOCKET", IsExactly<OpenVisa::VisaGPIB>},
             Case{"TCPIP0::host::5025::SOCKET", IsExactly<OpenVisa::VisaTCPIPSocket>},
             Case{"tcpip0::host::5025::socket", IsExactly<OpenVisa::VisaTCPIPSocket>},
             Case{"TCPIP::sOcKeT.example::inst0::INSTR", IsExactly<OpenVisa::VisaTCPIPSocket>},
             Case{"TCPIP0::host::inst0::INSTR", IsExactly<OpenVisa::VisaTCPIP>},
             Case{"tcpip", IsExactly<OpenVisa::VisaTCPIP>},
             Case{"TCPIP0::host::5025::SOCKE", IsExactly<OpenVisa::VisaTCPIP>},
             Case{"TCPIPSOCKET", IsExactly<OpenVisa::VisaTCPIPSocket>},
             Case{"TCPIP::SOCKETSOCKET", IsExactly<OpenVisa::VisaTCPIPSocket>},
             Case{"TCPIPSOCKE", IsExactly<OpenVisa::VisaTCPIP>},
             Case{"TCPIP0::SOC KET", IsExactly<OpenVisa::VisaTCPIP>},
             Case{"ASRLSOCKET", IsExactly<OpenVisa::VisaSerial>},
             Case{"aSrL1", IsExactly<OpenVisa::VisaSerial>},
             Case{"USBTCPIPSOCKET", IsExactly<OpenVisa::VisaUSB>},
             Case{"uSb0::SOCKET", IsExactly<OpenVisa::VisaUSB>},
             Case{"GPIB-VXI0::1::INSTR", IsExactly<OpenVisa::VisaGPIB>},
             Case{"ASR", IsExactly<OpenVisa::VisaIO>},
             Case{"US", IsExactly<OpenVisa::VisaIO>},
             Case{"GPI", IsExactly<OpenVisa::VisaIO>},
             Case{"TCPI0::host::5025::SOCKET", IsExactly<OpenVisa::VisaIO>},
             Case{"xASRL1::INSTR", IsExactly<OpenVisa::VisaIO>},
             Case{"\xC1SRL1::INSTR", IsExactly<OpenVisa::VisaIO>},
             Case{"PXI0::3::INSTR", IsExactly<OpenVisa::VisaIO>},
             Case{"SOCKET", IsExactly<OpenVisa::VisaIO>},
             Case{" USB0", IsExactly<OpenVisa::VisaIO>},
             Case{"", IsExactly<OpenVisa::VisaIO>},
         }) {
        connection_.reset();
        EXPECT_EQ(Open(resource), Status(0U)) << resource;
        const auto& connection = *connection_;
        EXPECT_TRUE(is(connection)) << resource << " gives " << typeid(connection).name();
    }
}

TEST_F(VisaConnection, OpensTheResourceAsGivenWithoutALockAndWithTheOpenTimeout) {
    OpenVisa::ConnectionSettings settings;
    settings.openTimeout = 1234;
    EXPECT_EQ(Open("tcpip0::Host::5025::Socket", settings), Status(0U));
    EXPECT_THAT(doubles::TheVisa().Opened(),
                ElementsAre(doubles::OpenedResource{"tcpip0::Host::5025::Socket", 0, 1234}));
    EXPECT_EQ(connection_->resource(), "tcpip0::Host::5025::Socket");
    EXPECT_TRUE(connection_->isOpen());
}

TEST_F(VisaConnection, TakesItsSettingsFromTheRecord) {
    OpenVisa::ConnectionSettings settings;
    settings.terminationCharacter = '\r';
    settings.terminationEnabled = false;
    settings.ioTimeout = 77;
    settings.baudRate = 115200;
    settings.dataBits = 7;
    settings.flowControl = VI_ASRL_FLOW_RTS_CTS;
    settings.parity = VI_ASRL_PAR_EVEN;
    settings.stopBits = VI_ASRL_STOP_TWO;
    EXPECT_EQ(Open("ASRL1::INSTR", settings), Status(0U));
    EXPECT_THAT(TakeSettings(),
                ElementsAre("viSetAttribute 3FFF001A 77", "viSetBuf 1 1024", "viSetBuf 2 1024",
                            "viSetAttribute 3FFF0018 13", "viSetAttribute 3FFF0038 0", "viSetAttribute 3FFF00B3 0",
                            "viSetAttribute 3FFF00B4 0", "viSetBuf 16 1024", "viSetBuf 32 1024",
                            "viSetAttribute 3FFF0021 115200", "viSetAttribute 3FFF0022 7", "viSetAttribute 3FFF0024 20",
                            "viSetAttribute 3FFF0023 2", "viSetAttribute 3FFF0025 2"));
    EXPECT_EQ(Open(kSocket, settings), Status(0U));
    EXPECT_THAT(TakeSettings(), ElementsAre("viSetAttribute 3FFF001A 77", "viSetBuf 1 1024", "viSetBuf 2 1024",
                                            "viSetAttribute 3FFF0018 13", "viSetAttribute 3FFF0038 0",
                                            "viSetBuf 16 1024", "viSetBuf 32 1024"));
}

TEST(ConnectionSettings, DefaultToLineFeedsTwoSecondsAndAPlainSerialLine) {
    const auto [character, enabled, openTimeout, ioTimeout, append, strip, baudRate, dataBits, flowControl, parity,
                stopBits, trace] = OpenVisa::ConnectionSettings{};
    EXPECT_EQ(character, 10);
    EXPECT_TRUE(enabled);
    EXPECT_EQ(openTimeout, 2000U);
    EXPECT_EQ(ioTimeout, 2000U);
    EXPECT_TRUE(append);
    EXPECT_TRUE(strip);
    EXPECT_EQ(baudRate, 9600);
    EXPECT_EQ(dataBits, 8);
    EXPECT_EQ(flowControl, 0);
    EXPECT_EQ(parity, 0);
    EXPECT_EQ(stopBits, 10);
    EXPECT_EQ(trace.callback, nullptr);
}

/// What opening a connection sets, in order, with the default settings.
struct Configuration {
    const char* resource;
    std::vector<std::string> steps;
};
const std::vector<Configuration> kConfigurations{
    {"USB0::1::2::3::INSTR", {"viSetAttribute 3FFF001A 2000", "viSetBuf 1 1024", "viSetBuf 2 1024"}},
    {"GPIB0::5::INSTR", {"viSetAttribute 3FFF001A 2000", "viSetBuf 1 1024", "viSetBuf 2 1024"}},
    {"TCPIP0::192.0.2.7::inst0::INSTR", {"viSetAttribute 3FFF001A 2000", "viSetBuf 1 1024", "viSetBuf 2 1024"}},
    {"PXI0::3::INSTR", {"viSetAttribute 3FFF001A 2000", "viSetBuf 1 1024", "viSetBuf 2 1024"}},
    {"TCPIP0::192.0.2.7::5025::SOCKET",
     {"viSetAttribute 3FFF001A 2000", "viSetBuf 1 1024", "viSetBuf 2 1024", "viSetAttribute 3FFF0018 10",
      "viSetAttribute 3FFF0038 1", "viSetBuf 16 1024", "viSetBuf 32 1024"}},
    {"ASRL3::INSTR",
     {"viSetAttribute 3FFF001A 2000", "viSetBuf 1 1024", "viSetBuf 2 1024", "viSetAttribute 3FFF0018 10",
      "viSetAttribute 3FFF0038 1", "viSetAttribute 3FFF00B3 2", "viSetAttribute 3FFF00B4 0", "viSetBuf 16 1024",
      "viSetBuf 32 1024", "viSetAttribute 3FFF0021 9600", "viSetAttribute 3FFF0022 8", "viSetAttribute 3FFF0024 10",
      "viSetAttribute 3FFF0023 0", "viSetAttribute 3FFF0025 0"}},
};

TEST_F(VisaConnection, IsConfiguredInTheStepsOfItsInterface) {
    for (const auto& [resource, steps] : kConfigurations) {
        EXPECT_EQ(Open(resource), Status(0U)) << resource;
        EXPECT_EQ(TakeSettings(), steps) << resource;
    }
}

TEST_F(VisaConnection, IsClosedWhenAStepOfItsOpeningFails) {
    for (const auto& [resource, steps] : kConfigurations) {
        std::vector<std::string> calls{"viOpenDefaultRM", "viOpen"};
        for (std::size_t failing = 0; failing < steps.size(); ++failing) {
            doubles::TheScript().Reset();
            const auto function = steps[failing].substr(0, steps[failing].find(' '));
            calls.push_back(function);
            Fail(function, 0xBFFF001E, static_cast<std::size_t>(std::count(calls.begin(), calls.end(), function)));
            EXPECT_EQ(Open(resource), Status(0xBFFF001E)) << resource << ", " << steps[failing];
            EXPECT_EQ(connection_, nullptr);
            auto expected = calls;
            expected.emplace_back("viClose");
            EXPECT_EQ(TakeCalls(), expected) << resource << ", " << steps[failing];
            EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U) << resource << ", " << steps[failing];
        }
    }
}

TEST_F(VisaConnection, SendsATerminationCharacterBeyondAsciiAsAByte) {
    OpenVisa::ConnectionSettings settings;
    settings.terminationCharacter = '\xFF';
    EXPECT_EQ(Open(kSocket, settings), Status(0U));
    EXPECT_EQ(TakeSettings().at(3), "viSetAttribute 3FFF0018 255");
    EXPECT_EQ(Write("a"), Status(0U));
    EXPECT_EQ(Write("a\xFF"), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre("a\xFF", "a\xFF"));
}

TEST_F(VisaConnection, ReturnsTheWarningOfTheLastStep) {
    Fail("viSetBuf", 0x3FFF0088, 2);
    EXPECT_EQ(Open(), Status(0x3FFF0088));
    EXPECT_TRUE(connection_->isOpen());
    Fail("viOpen", 0x3FFF0001); // the double opens nothing then, and the configuration says so
    EXPECT_EQ(Open(), Status(0xBFFF000E));
}

TEST_F(VisaConnection, KeepsThePreviousOneAndLeavesNothingOpenWhenOpeningFails) {
    ASSERT_EQ(Open(), Status(0U));
    const auto* const previous = connection_.get();
    const auto open = doubles::TheVisa().OpenSessions();
    for (const auto& [function, closes] :
         {std::pair{"viOpenDefaultRM", 0U}, {"viOpen", 1U}, {"viSetAttribute", 1U}, {"viSetBuf", 1U}}) {
        doubles::TheScript().Reset();
        Fail(function, 0xBFFF0011);
        EXPECT_EQ(Open(kSocket), Status(0xBFFF0011)) << function;
        EXPECT_EQ(connection_.get(), previous) << function;
        EXPECT_TRUE(connection_->isOpen());
        EXPECT_EQ(connection_->resource(), kUsb);
        EXPECT_EQ(doubles::TheScript().Count("viClose"), closes) << function;
        EXPECT_EQ(doubles::TheVisa().OpenSessions(), open) << function;
    }
    EXPECT_EQ(Write("still here"), Status(0U));
}

TEST_F(VisaConnection, ReplacesThePreviousOneWhichIsClosedWithItsLastHolder) {
    ASSERT_EQ(Open(), Status(0U));
    auto previous = connection_;
    ASSERT_EQ(Open(kSocket), Status(0U));
    EXPECT_NE(connection_, previous);
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 4U);
    previous.reset();
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 2U);
    EXPECT_TRUE(connection_->isOpen());
}

TEST_F(VisaConnection, AppendsTheTerminationCharacterOnce) {
    ASSERT_EQ(Open(), Status(0U));
    EXPECT_EQ(Write("*IDN?"), Status(0U));
    EXPECT_EQ(Write("*IDN?\n"), Status(0U));
    EXPECT_EQ(Write("*IDN?\n\n"), Status(0U));
    EXPECT_EQ(Write("*IDN?\r"), Status(0U));
    EXPECT_EQ(Write("a\nb"), Status(0U));
    EXPECT_EQ(Write(std::string_view("\nx").substr(1, 0)), Status(0U)); // empty: what stands before it does not count
    EXPECT_EQ(Write("\n"), Status(0U));
    EXPECT_EQ(Write(std::string_view("a\0b", 3)), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre("*IDN?\n", "*IDN?\n", "*IDN?\n\n", "*IDN?\r\n", "a\nb\n", "\n", "\n",
                                           std::string("a\0b\n", 4)));
    EXPECT_EQ(doubles::TheScript().Count("viWrite"), 8U);
}

TEST_F(VisaConnection, WritesATextUnchangedWhenNothingIsAppended) {
    OpenVisa::ConnectionSettings settings;
    settings.appendTermination = false;
    ASSERT_EQ(Open(kUsb, settings), Status(0U));
    EXPECT_EQ(Write("*IDN?"), Status(0U));
    EXPECT_EQ(Write("*IDN?\n"), Status(0U));
    EXPECT_EQ(Write(""), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre("*IDN?", "*IDN?\n", ""));
}

TEST_F(VisaConnection, AppendsTheTerminationEvenWhenReadsDoNotEndAtIt) {
    OpenVisa::ConnectionSettings settings;
    settings.terminationEnabled = false;
    settings.terminationCharacter = ';';
    ASSERT_EQ(Open(kUsb, settings), Status(0U));
    EXPECT_EQ(Write("a\n"), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre("a\n;"));
}

TEST_F(VisaConnection, WritesALongTextInOneCall) {
    ASSERT_EQ(Open(), Status(0U));
    const std::string text(5000, 'x');
    EXPECT_EQ(Write(text), Status(0U));
    EXPECT_EQ(Write("short"), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre(text + "\n", "short\n"));
}

TEST_F(VisaConnection, ReturnsTheStatusOfAWrite) {
    ASSERT_EQ(Open(), Status(0U));
    for (const auto status : {0xBFFF0015U, 0xBFFF00A6U, 0x3FFF0001U}) {
        Fail("viWrite", status);
        EXPECT_EQ(Write("x"), Status(status));
    }
}

TEST_F(VisaConnection, StripsOneTerminationCharacterFromAReply) {
    ASSERT_EQ(Open(), Status(0U));
    EXPECT_EQ(Read("1.5\n"), Status(0U));
    EXPECT_EQ(read_, "1.5");
    EXPECT_EQ(Read("1.5\n\n"), Status(0U));
    EXPECT_EQ(read_, "1.5\n");
    EXPECT_EQ(Read("1.5\r\n"), Status(0U));
    EXPECT_EQ(read_, "1.5\r");
    EXPECT_EQ(Read("1.5"), Status(0U));
    EXPECT_EQ(read_, "1.5");
    EXPECT_EQ(Read("\n1.5"), Status(0U));
    EXPECT_EQ(read_, "\n1.5");
    EXPECT_EQ(Read("\n"), Status(0U));
    EXPECT_EQ(read_, "");
    EXPECT_EQ(Read(std::string("a\0b\n", 4)), Status(0U));
    EXPECT_EQ(read_, std::string("a\0b", 3));
}

TEST_F(VisaConnection, KeepsTheTerminationCharacterWhenStrippingIsOff) {
    OpenVisa::ConnectionSettings settings;
    settings.stripTermination = false;
    ASSERT_EQ(Open(kUsb, settings), Status(0U));
    EXPECT_EQ(Read("1.5\n"), Status(0U));
    EXPECT_EQ(read_, "1.5\n");
}

TEST_F(VisaConnection, ReturnsThePositiveStatusOfASocketRead) {
    ASSERT_EQ(Open(kSocket), Status(0U));
    EXPECT_EQ(Read("1.5\n"), Status(0x3FFF0005));
    EXPECT_EQ(read_, "1.5");
}

TEST_F(VisaConnection, LeavesTheOutputUnchangedWhenNothingArrives) {
    ASSERT_EQ(Open(), Status(0U));
    EXPECT_EQ(Read(""), Status(0U));
    EXPECT_EQ(read_, "before");
    Fail("viRead", 0x3FFF0005); // a warning without a byte
    EXPECT_EQ(Read("5\n"), Status(0x3FFF0005));
    EXPECT_EQ(read_, "before");
}

TEST_F(VisaConnection, LeavesTheOutputUnchangedWhenAReadFails) {
    ASSERT_EQ(Open(), Status(0U));
    Fail("viRead", 0xBFFF0015);
    EXPECT_EQ(Read("5\n"), Status(0xBFFF0015));
    EXPECT_EQ(read_, "before");
}

TEST_F(VisaConnection, CutsAReplyAtItsBufferAndDoesNotReadAgain) {
    ASSERT_EQ(Open(), Status(0U));
    const std::string kilobyte = std::string(1000, 'x') + std::string(24, 'y');
    EXPECT_EQ(Read(kilobyte + std::string(476, 'z')), Status(0x3FFF0006));
    EXPECT_EQ(read_, kilobyte);
    EXPECT_EQ(doubles::TheScript().Count("viRead"), 1U);
    EXPECT_EQ(Read(kilobyte), Status(0U));
    EXPECT_EQ(read_, kilobyte);
    EXPECT_EQ(Read(std::string(1023, 'x') + "\n\n"), Status(0x3FFF0006));
    EXPECT_EQ(read_, std::string(1023, 'x'));
}

TEST_F(VisaConnection, ReadsIntoOneBufferWhileItIsOpen) {
    ASSERT_EQ(Open(), Status(0U));
    EXPECT_EQ(Read("1\n"), Status(0U));
    EXPECT_EQ(Read(std::string(1500, 'x')), Status(0x3FFF0006));
    const auto reads = doubles::TheVisa().Reads();
    ASSERT_EQ(reads.size(), 2U);
    EXPECT_NE(reads[0].buffer, nullptr);
    EXPECT_EQ(reads[0].count, 1024U);
    EXPECT_EQ(reads[1], reads[0]);
}

TEST_F(VisaConnection, ClosesOnlyItsResourceManagerAndOnlyOnce) {
    ASSERT_EQ(Open(), Status(0U));
    TakeCalls();
    EXPECT_EQ(Status(connection_->close()), Status(0U));
    EXPECT_FALSE(connection_->isOpen());
    EXPECT_THAT(TakeCalls(), ElementsAre("viClose"));
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U);
    EXPECT_EQ(Status(connection_->close()), Status(0U));
    connection_.reset();
    EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(VisaConnection, IsClosedAfterAWarningOfTheCloseWhichItReturns) {
    ASSERT_EQ(Open(), Status(0U));
    Fail("viClose", 0x3FFF0001);
    EXPECT_EQ(Status(connection_->close()), Status(0x3FFF0001));
    EXPECT_FALSE(connection_->isOpen());
}

TEST_F(VisaConnection, KeepsItsSessionsWhenTheCloseFailsAndClosesThemWhenDestroyed) {
    ASSERT_EQ(Open(), Status(0U));
    TakeCalls();
    Fail("viClose", 0xBFFF0000);
    EXPECT_EQ(Status(connection_->close()), Status(0xBFFF0000));
    EXPECT_TRUE(connection_->isOpen());
    connection_.reset();
    EXPECT_THAT(TakeCalls(), ElementsAre("viClose", "viClose"));
}

TEST_F(VisaConnection, IsClosedWhenDestroyed) {
    ASSERT_EQ(Open(), Status(0U));
    TakeCalls();
    connection_.reset();
    EXPECT_THAT(TakeCalls(), ElementsAre("viClose"));
}

TEST_F(VisaConnection, DoesNotCallVisaWhenItWasNeverOpened) {
    {
        OpenVisa::VisaIO connection;
        EXPECT_FALSE(connection.isOpen());
        EXPECT_EQ(connection.resource(), "");
        EXPECT_EQ(Status(connection.close()), Status(0U));
        EXPECT_EQ(Status(connection.apply({})), Status(0U));
        EXPECT_EQ(Status(connection.setTimeout(5)), Status(0U));
    }
    EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(VisaConnection, IsNotOpenWhenHalfOpenAndIsClosedWhenDestroyed) {
    {
        OpenVisa::VisaIO connection;
        Fail("viOpen", 0xBFFF0011);
        EXPECT_EQ(Status(connection.open(kUsb)), Status(0xBFFF0011));
        EXPECT_FALSE(connection.isOpen());
        EXPECT_EQ(connection.resource(), "");
        EXPECT_EQ(Status(connection.close()), Status(0U));
        EXPECT_THAT(TakeCalls(), ElementsAre("viOpenDefaultRM", "viOpen"));
    }
    EXPECT_THAT(TakeCalls(), ElementsAre("viClose"));
}

TEST_F(VisaConnection, TakesNewSettingsAndAppliesTheTimeoutToAnOpenSession) {
    ASSERT_EQ(Open(), Status(0U));
    TakeSettings();
    OpenVisa::ConnectionSettings settings;
    settings.ioTimeout = 50;
    settings.terminationCharacter = ';';
    EXPECT_EQ(Status(connection_->apply(settings)), Status(0U));
    EXPECT_THAT(TakeSettings(), ElementsAre("viSetAttribute 3FFF001A 50"));
    EXPECT_EQ(Write("a"), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre("a;"));
    doubles::TheVisa().Reply("q?;", "1;");
    EXPECT_EQ(Write("q?"), Status(0U));
    EXPECT_EQ(Status(connection_->read(read_)), Status(0U));
    EXPECT_EQ(read_, "1");
}

TEST_F(VisaConnection, TakesNewSettingsAlsoWhenVisaRefusesTheTimeout) {
    ASSERT_EQ(Open(), Status(0U));
    OpenVisa::ConnectionSettings settings;
    settings.appendTermination = false;
    settings.stripTermination = false;
    Fail("viSetAttribute", 0xBFFF001E, 1);
    EXPECT_EQ(Status(connection_->apply(settings)), Status(0xBFFF001E));
    EXPECT_EQ(Write("a"), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre("a"));
}

TEST_F(VisaConnection, AppliesATimeoutWhenItIsOpenedLater) {
    OpenVisa::VisaIO connection;
    EXPECT_EQ(Status(connection.setTimeout(321)), Status(0U));
    EXPECT_EQ(Status(connection.open(kUsb)), Status(0U));
    EXPECT_EQ(TakeSettings().front(), "viSetAttribute 3FFF001A 321");
    EXPECT_EQ(Status(connection.setTimeout(654)), Status(0U));
    EXPECT_EQ(TakeSettings().back(), "viSetAttribute 3FFF001A 654");
    Fail("viSetAttribute", 0xBFFF001E);
    EXPECT_EQ(Status(connection.setTimeout(987)), Status(0xBFFF001E));
}

} // namespace
} // namespace unit
