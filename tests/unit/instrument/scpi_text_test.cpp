#include "instrument/scpi_text.h"

#include <limits>

#include "tests/unit/instrument/supply_fixture.h"
#include "tests/unit/instrument/test_rate.h"

namespace unit {
namespace {

using ORVA::Channel;
using ORVA::NumberedHeader;
using ORVA::SourceHeader;

template <typename Header, typename... Arguments>
std::string Command(const Header& header, const Arguments&... arguments) {
    std::string line = "what was there before";
    ORVA::FormatCommand(line, header, arguments...);
    return line;
}

template <typename Header, typename... Arguments>
std::string Query(const Header& header, const Arguments&... arguments) {
    std::string line = "what was there before?";
    ORVA::MakeQuery(line, header, arguments...);
    return line;
}

TEST(Command, IsItsHeaderWithoutArguments) {
    EXPECT_EQ(Command("*RST"), "*RST");
    EXPECT_EQ(Command(":OUTPut:STATe ALL,OFF"), ":OUTPut:STATe ALL,OFF");
}

TEST(Command, HasOneBlankThenItsArgumentsJoinedByCommas) {
    EXPECT_EQ(Command(":OUTP:STAT", "CH1", true), ":OUTP:STAT CH1,ON");
    EXPECT_EQ(Command(":LIST:GROUP:PARA", 3, 5.0, 1.0, 0.5), ":LIST:GROUP:PARA 3,5.000000,1.000000,0.500000");
    EXPECT_EQ(Command(":DELAY:GROUP:PARAmeter", 2, true, 0.25), ":DELAY:GROUP:PARAmeter 2,ON,0.250000");
}

TEST(Command, FormatsEachArgumentByItsType) {
    EXPECT_EQ(Command("X", true), "X ON");
    EXPECT_EQ(Command("X", false), "X OFF");
    EXPECT_EQ(Command("X", std::int32_t{-12}), "X -12");
    EXPECT_EQ(Command("X", std::uint32_t{4294967295U}), "X 4294967295");
    EXPECT_EQ(Command("X", std::string("a b")), "X a b");
    EXPECT_EQ(Command("X", std::string_view("%s,\"")), "X %s,\"");
    EXPECT_EQ(Command("X", Channel::CH2), "X CH2");
    EXPECT_EQ(Command("X", Rate::Middle), "X 4000");
}

TEST(Command, FormatsRealsWithSixDecimals) {
    EXPECT_EQ(Command("X", 1.5), "X 1.500000");
    EXPECT_EQ(Command("X", 0.0005), "X 0.000500");
    EXPECT_EQ(Command("X", 30.0), "X 30.000000");
    EXPECT_EQ(Command("X", 0.1), "X 0.100000");
    EXPECT_EQ(Command("X", 12.3456789), "X 12.345679");
    EXPECT_EQ(Command("X", -0.0), "X -0.000000");
    EXPECT_EQ(Command("X", std::numeric_limits<double>::quiet_NaN()), "X nan");
    EXPECT_EQ(Command("X", 1e300).size(), 2U + 301U + 7U);
}

TEST(Command, IsItsHeaderWhenItsArgumentsAreEmpty) {
    EXPECT_EQ(Command("X", ""), "X");
    EXPECT_EQ(Command("X", "", ""), "X ,");
    EXPECT_EQ(Command("X", "", "a"), "X ,a");
}

TEST(Command, ThrowsForAValueWithoutAKeyword) {
    EXPECT_EQ(ThrownBy([] { Command("X", static_cast<Channel>(3)); }), kInvalidKey);
}

TEST(Query, HasOneQuestionMarkAfterItsHeader) {
    EXPECT_EQ(Query(":OUTP:STAT", "CH2"), ":OUTP:STAT? CH2");
    EXPECT_EQ(Query(":LIST:STAT?"), ":LIST:STAT?");
    EXPECT_EQ(Query("*IDN?"), "*IDN?");
    EXPECT_EQ(Query(":DELAY:CYCLEs"), ":DELAY:CYCLEs?");
    EXPECT_EQ(Query(":A?:B"), ":A?:B");
    EXPECT_EQ(Query(":LIST:GROUP:PARA?", 3), ":LIST:GROUP:PARA? 3");
    EXPECT_EQ(Query(":A", "b?"), ":A? b?");
    EXPECT_EQ(Query(""), "?");
}

TEST(SourceHeader, HasTheChannelInItsFirstNode) {
    EXPECT_EQ(Command(SourceHeader{":SOUR:VOLT", 1}), ":SOUR1:VOLT");
    EXPECT_EQ(Command(SourceHeader{":SOUR:VOLT:PROT", 1}), ":SOUR1:VOLT:PROT");
    EXPECT_EQ(Command(SourceHeader{":SOUR:CURR", 2}, 1.5), ":SOUR2:CURR 1.500000");
    EXPECT_EQ(Query(SourceHeader{":SOUR:VOLT", 2}), ":SOUR2:VOLT?");
    EXPECT_EQ(Command(SourceHeader{":SOUR", 2}), ":SOUR2");
}

TEST(SourceHeader, ReplacesItsFirstNodeInAnyLetterCaseAndLength) {
    EXPECT_EQ(Command(SourceHeader{":sour:VOLT", 2}), ":SOUR2:VOLT");
    EXPECT_EQ(Command(SourceHeader{":SOURce:VOLT", 2}), ":SOUR2:VOLT");
    EXPECT_EQ(Command(SourceHeader{":SoUr9X:sour", 2}), ":SOUR2:sour");
    EXPECT_EQ(Command(SourceHeader{"SOUR:VOLT", 2}), ":SOUR2:VOLT");
}

TEST(SourceHeader, PrecedesAnyOtherNode) {
    EXPECT_EQ(Command(SourceHeader{":MEAS:VOLT", 1}), ":SOUR1:MEAS:VOLT");
    EXPECT_EQ(Command(SourceHeader{":SOU:VOLT", 1}), ":SOUR1:SOU:VOLT");
    EXPECT_EQ(Command(SourceHeader{":MEAS:SOUR", 1}), ":SOUR1:MEAS:SOUR");
}

TEST(SourceHeader, DropsEmptyNodes) {
    EXPECT_EQ(Command(SourceHeader{"::SOUR:::VOLT:", 1}), ":SOUR1:VOLT");
    EXPECT_EQ(Command(SourceHeader{"", 1}), "");
    EXPECT_EQ(Command(SourceHeader{":::", 1}), "");
}

TEST(SourceHeader, AcceptsEveryNumber) {
    EXPECT_EQ(Command(SourceHeader{":SOUR:VOLT", 0}), ":SOUR0:VOLT");
    EXPECT_EQ(Command(SourceHeader{":SOUR:VOLT", 4294967295U}), ":SOUR4294967295:VOLT");
}

TEST(NumberedHeader, HasTheChannelInside) {
    EXPECT_EQ(Query(NumberedHeader{":STATus:ISUMmary", 2, ":CONDition?"}), ":STATus:ISUMmary2:CONDition?");
    EXPECT_EQ(Query(NumberedHeader{":A", 12, ":B"}), ":A12:B?");
}

} // namespace
} // namespace unit
