#include "tests/contract/driver_fixture.h"

namespace contract {
namespace {

// The settings of every interface kind: the I/O time-out and the two VISA buffers.
const std::vector<std::string> kCommon{"viSetAttribute 3FFF001A 2000", "viSetBuf 1 1024", "viSetBuf 2 1024"};

class VisaConnection : public DriverTest {
  protected:
    std::vector<std::string> SettingsFor(const char* resource) {
        doubles::TheVisa().ForgetSettings();
        EXPECT_GE(static_cast<ViStatus>(TryOpen("", nullptr, VI_FALSE, VI_FALSE, resource).code), 0) << resource;
        return doubles::TheVisa().Settings();
    }

    static std::vector<std::string> After(std::vector<std::string> first, const std::vector<std::string>& more) {
        first.insert(first.end(), more.begin(), more.end());
        return first;
    }
};

TEST_F(VisaConnection, OfAMessageBasedInterfaceSetsTimeOutAndBuffers) {
    for (const auto* resource : {"USB0::0x1234::0x5678::SN42::INSTR", "usb0::1::2::3::instr", "GPIB0::5::INSTR",
                                 "TCPIP0::192.0.2.7::inst0::INSTR", "tcpip::host::INSTR", "PXI0::3::INSTR", ""}) {
        EXPECT_EQ(SettingsFor(resource), kCommon) << resource;
    }
}

TEST_F(VisaConnection, OfASocketSetsTerminationAndIoBuffersToo) {
    const auto expected = After(
        kCommon, {"viSetAttribute 3FFF0018 10", "viSetAttribute 3FFF0038 1", "viSetBuf 16 1024", "viSetBuf 32 1024"});
    for (const auto* resource :
         {"TCPIP0::192.0.2.7::5025::SOCKET", "tcpip0::host::5025::socket", "TCPIP::sOcKeT.example::inst0::INSTR"}) {
        EXPECT_EQ(SettingsFor(resource), expected) << resource;
    }
}

TEST_F(VisaConnection, OfASerialLineSetsTheLineToo) {
    const auto expected =
        After(kCommon, {"viSetAttribute 3FFF0018 10", "viSetAttribute 3FFF0038 1", "viSetAttribute 3FFF00B3 2",
                        "viSetAttribute 3FFF00B4 0", "viSetBuf 16 1024", "viSetBuf 32 1024",
                        "viSetAttribute 3FFF0021 9600", "viSetAttribute 3FFF0022 8", "viSetAttribute 3FFF0024 10",
                        "viSetAttribute 3FFF0023 0", "viSetAttribute 3FFF0025 0"});
    for (const auto* resource : {"ASRL3::INSTR", "asrl3::instr", "ASRL/dev/ttyUSB0::SOCKET"}) {
        EXPECT_EQ(SettingsFor(resource), expected) << resource;
    }
}

TEST_F(VisaConnection, StopsAtTheFirstSettingThatFailsAndClosesItsSessions) {
    struct Case {
        const char* function;
        std::size_t count;
    };
    for (const auto& [function, count] : {Case{"viSetAttribute", 10}, Case{"viSetBuf", 4}}) {
        for (std::size_t nth = 1; nth <= count; ++nth) {
            doubles::TheScript().Reset();
            Fail(function, 0xBFFF001E, nth);
            EXPECT_EQ(TryOpen("", nullptr, VI_FALSE, VI_FALSE, "ASRL3::INSTR"), Status(0xBFFA4214));
            EXPECT_EQ(doubles::TheScript().Count(function), nth);
            EXPECT_EQ(doubles::TheScript().Calls().back(), "IviSession_SetError");
            EXPECT_EQ(doubles::TheScript().Count("viWrite"), 0U);
            EXPECT_EQ(doubles::TheScript().Count("viClose"), 1U);
            EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U);
        }
    }
}

TEST_F(VisaConnection, ThatIsOnlyHalfOpenIsClosed) {
    Fail("viOpen", 0xBFFF0011);
    EXPECT_EQ(TryOpen(""), Status(0xBFFA4214));
    EXPECT_EQ(doubles::TheScript().Count("viClose"), 1U);
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U);
}

TEST_F(VisaConnection, WithoutAResourceManagerClosesNothing) {
    Fail("viOpenDefaultRM", 0xBFFF0000);
    EXPECT_EQ(TryOpen(""), Status(0xBFFA4214));
    EXPECT_EQ(doubles::TheScript().Count("viOpen"), 0U);
    EXPECT_EQ(doubles::TheScript().Count("viClose"), 0U);
}

TEST_F(VisaConnection, WritesEachCommandAndReadsEachReplyInOneCall) {
    const auto vi = Open();
    Reply(":SOUR1:VOLT?", "1.0\n");
    ViReal64 volts = 0.0;
    EXPECT_EQ(Status(TARNEX_Measure(vi, "OutputChannel1", 1, &volts)), Status(0U));
    EXPECT_EQ(doubles::TheScript().Count("viWrite"), 1U);
    EXPECT_EQ(doubles::TheScript().Count("viRead"), 1U);
}

TEST_F(VisaConnection, TruncatesAnOverlongReplyAndReturnsItsStatus) {
    const auto vi = Open();
    Reply(":SOUR1:VOLT?", std::string(1023, '0') + "12345");
    ViReal64 volts = 0.0;
    EXPECT_EQ(Status(TARNEX_Measure(vi, "OutputChannel1", 1, &volts)), Status(0x3FFF0006));
    EXPECT_EQ(volts, 1.0);
}

TEST_F(VisaConnection, ReadsAnEmptyReplyAsEmptyText) {
    const auto vi = Open();
    Reply(":SOUR1:VOLT?", "5.0\n");
    ViReal64 volts = 0.0;
    EXPECT_EQ(Status(TARNEX_Measure(vi, "OutputChannel1", 1, &volts)), Status(0U));
    Reply(":SOUR1:VOLT?", "");
    EXPECT_THROW(TARNEX_Measure(vi, "OutputChannel1", 1, &volts), std::invalid_argument);
    EXPECT_EQ(volts, 5.0);
}

TEST_F(VisaConnection, DoesNotReadAfterAWriteThatFailed) {
    const auto vi = Open();
    Fail("viWrite", 0xBFFF0015);
    ViReal64 volts = 0.0;
    EXPECT_EQ(Status(TARNEX_Measure(vi, "OutputChannel1", 1, &volts)), Status(0xBFFA4214));
    EXPECT_EQ(doubles::TheScript().Count("viRead"), 0U);
}

} // namespace
} // namespace contract
