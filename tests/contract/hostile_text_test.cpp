// Hostile texts: formats, embedded NULs, invalid UTF-8, texts of 1 MiB. They are returned unchanged or refused with a
// status.
#include <array>
#include <string>

#include "tests/contract/driver_fixture.h"

namespace contract {
namespace {

constexpr std::size_t kMebibyte = std::size_t{1} << 20U;

class HostileText : public DriverTest {
  protected:
    static std::string GetText(ViSession vi, ViAttr attribute) {
        std::array<ViChar, 4096> text{};
        EXPECT_GE(TARNEX_GetAttributeViString(vi, "", attribute, 4096, text.data()), 0);
        return text.data();
    }
};

TEST_F(HostileText, IsNotAFormatInAnOptionString) {
    EXPECT_EQ(TryOpen("%s%n%99999d=1"), Status(0xBFFA004B)); // a name is made of word characters
    EXPECT_EQ(LastError(VI_NULL), (DriverError{0xBFFA004B, "The '99999d' name in the option string is unknown."}));
    const auto vi = Open("DriverSetup=%n%s:%99999d");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_DRIVER_SETUP), "%n%s:%99999d");
}

TEST_F(HostileText, IsNotAFormatInAResource) {
    Fail("viOpen", 0xBFFF0012);
    EXPECT_EQ(TryOpen("", nullptr, VI_FALSE, VI_FALSE, "%n%s%99999d"), Status(0xBFFA4214));
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U);
    const auto vi = OpenOn("%n%s%99999d");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR), "%n%s%99999d");
}

TEST_F(HostileText, IsNotAFormatInAnIdentityOrInstrumentError) {
    Reply("*IDN?", "%n%s,%99999d,%x,%%\n");
    const auto vi = Open();
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MANUFACTURER), "%n%s");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MODEL), "%99999d");
    Reply(":SYSTem:ERRor?", "-100,\"%n%s%s\"\n");
    ViInt32 code = 0;
    std::array<ViChar, 256> message{};
    EXPECT_EQ(TARNEX_error_query(vi, &code, message.data()), 0);
    EXPECT_STREQ(message.data(), "\"%n%s%s\"");
}

TEST_F(HostileText, WithANulInAReplyEndsThereForTheCaller) {
    Reply("*IDN?", std::string("Kel\0tor,TX\0,\0,1\0\n", 17));
    const auto vi = Open();
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MANUFACTURER), "Kel");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MODEL), "TX");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION), "1");
    Reply(":SOUR1:VOLT?", std::string("3.5\0"
                                      "99\n",
                                      7));
    ViReal64 level = 0.0;
    EXPECT_EQ(TARNEX_Measure(vi, "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE, &level), 0);
    EXPECT_EQ(level, 3.5);
}

TEST_F(HostileText, OfInvalidUtf8PassesThroughOrIsRefused) {
    Reply("*IDN?", "\xFF\xFE,\x80,\xC0\xAF,\xED\xA0\x80\n");
    const auto vi = Open("DriverSetup=Note:\xE4\xFF");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MANUFACTURER), "\xFF\xFE");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION), "\xED\xA0\x80");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_DRIVER_SETUP), "Note:\xE4\xFF");
    EXPECT_EQ(Set(vi,
                  "Output\xFF"
                  "Channel1",
                  TARNEX_ATTR_VOLTAGE_LEVEL, 1.0),
              Status(0xBFFA0066));
}

TEST_F(HostileText, OfOneMebibyteReturnsAStatus) {
    const std::string huge(kMebibyte, 'a');
    EXPECT_EQ(TryOpen((huge + "=1").c_str()), Status(0xBFFA004B));
    EXPECT_EQ(LastError(VI_NULL).description.size(), 1023U);
    const auto onHugeResource = [&] { return TryOpen("", nullptr, VI_FALSE, VI_FALSE, huge.c_str()); };
    Fail("viOpen", 0xBFFF0012);
    EXPECT_EQ(onHugeResource(), Status(0xBFFA4214));
    const auto vi = Open(("DriverSetup=Note:" + huge).c_str());
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_DRIVER_SETUP), "Note:" + std::string(4090, 'a'));
    EXPECT_EQ(Set(vi, huge.c_str(), TARNEX_ATTR_VOLTAGE_LEVEL, 1.0), Status(0xBFFA0067));
    EXPECT_EQ(LastError(vi).description.size(), 1023U);
    Reply(":SYSTem:ERRor?", "-1," + huge + "\n");
    ViInt32 code = 0;
    std::array<ViChar, 2048> message{};
    EXPECT_EQ(TARNEX_error_query(vi, &code, message.data()), 0);
    EXPECT_LT(std::string(message.data()).size(), 1024U);
}

} // namespace
} // namespace contract
