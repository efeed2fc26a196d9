// Malformed lines: the supply refuses them and continues.

#include "tools/virtual_supply/virtual_supply.h"

#include <gtest/gtest.h>
#include <locale>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace virtual_supply {
namespace {

using namespace std::string_literals;

constexpr auto kNextError = ":SYSTem:ERRor?";

TEST(HostileLines, AreIgnoredWhenBlank) {
    VirtualSupply supply;
    EXPECT_EQ(supply.Execute(""), "");
    EXPECT_EQ(supply.Execute("   \t "), "");
    EXPECT_EQ(supply.Execute(kNextError), "0,\"No error\"");
}

TEST(HostileLines, AreExecutedWithBlanksAroundHeaderAndArguments) {
    VirtualSupply supply;
    supply.Execute(" \t:OUTP:STAT \t CH1 , ON \t");
    EXPECT_EQ(supply.Execute("  :OUTP:STAT?   CH1  "), "ON");
}

TEST(HostileLines, AreRefusedWithBytesOutsidePrintableAscii) {
    for (const std::string& line : {"\0"s, "*IDN?\0"s, "\0*IDN?"s, "\xff\xfe"s, "*IDN\x80?"s, "\x1b[2J"s, "*CLS\r"s,
                                    ":SOUR1:VOLT 1\x7f"s, ":SOUR1:VOLT \xc3\xa4"s}) {
        VirtualSupply supply;
        EXPECT_EQ(supply.Execute(line), "");
        EXPECT_EQ(supply.Execute(kNextError), "-101,\"Invalid character\"");
    }
}

TEST(HostileLines, AreRefusedAtAMillionCharacters) {
    VirtualSupply supply;
    supply.Execute(std::string(1'000'000, ':'));
    EXPECT_EQ(supply.Execute(kNextError), "-113,\"Undefined header\"");
    supply.Execute(":SOUR1:VOLT " + std::string(1'000'000, ','));
    EXPECT_EQ(supply.Execute(kNextError), "-108,\"Parameter not allowed\"");
    supply.Execute(":SOUR1:VOLT " + std::string(1'000'000, '9'));
    EXPECT_EQ(supply.Execute(kNextError), "-222,\"Data out of range\"");
    supply.Execute(":SOUR1:VOLT 1" + std::string(1'000'000, 'e'));
    EXPECT_EQ(supply.Execute(kNextError), "-104,\"Data type error\"");
}

TEST(HostileLines, AreNotInterpretedAsFormatStrings) {
    VirtualSupply supply;
    supply.Execute("%s%n{}");
    EXPECT_EQ(supply.Execute(kNextError), "-113,\"Undefined header\"");
}

TEST(HostileLines, LeaveTheSupplyWorkingWhenMadeOfRandomPieces) {
    const std::vector<std::string> pieces{":SOUR1:VOLT", ":OUTP:STAT", "?",   " ", ",", "CH1", "ON",   "1e999",
                                          "\0"s,         "\xff",       "nan", ";", ":", "%n",  "*RST", "-"};
    std::mt19937 random(20240501); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same lines in every run
    VirtualSupply supply;
    for (int i = 0; i < 20000; ++i) {
        std::string line;
        for (auto count = random() % 8; count > 0; --count) {
            line += pieces[random() % pieces.size()];
        }
        supply.Execute(line);
    }
    supply.Execute("*CLS");
    supply.Execute("*RST");
    EXPECT_EQ(supply.Execute(":SOUR1:VOLT?"), "0.000000");
    EXPECT_EQ(supply.Execute(kNextError), "0,\"No error\"");
}

class DecimalComma : public std::numpunct<char> {
  protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(HostileLocale, DoesNotChangeNumbers) {
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
    VirtualSupply supply;
    supply.Execute(":SOUR1:VOLT 1.5");
    EXPECT_EQ(supply.Execute(":SOUR1:VOLT?"), "1.500000");
    supply.Execute(":OUTP:OCP:DEL CH1,1234.5");
    EXPECT_EQ(supply.Execute(":OUTP:OCP:DEL? CH1"), "1234.500000");
    EXPECT_EQ(supply.Execute(":SYSTem:ERRor?"), "0,\"No error\"");
    std::locale::global(before);
}

TEST(ManyThreads, ShareOneSupply) {
    VirtualSupply supply;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&supply, i] {
            const bool first = i % 2 == 0;
            for (int k = 0; k < 500; ++k) {
                supply.Execute(first ? ":SOUR1:VOLT 1" : ":SOUR2:VOLT 2");
                EXPECT_EQ(supply.Execute(first ? ":SOUR1:VOLT?" : ":SOUR2:VOLT?"), first ? "1.000000" : "2.000000");
                supply.SetLoad(1, 10.0);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(supply.Execute(kNextError), "0,\"No error\"");
}

} // namespace
} // namespace virtual_supply
