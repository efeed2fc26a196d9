// The error queue, the event status register, and the error of each invalid line.

#include "tools/virtual_supply/virtual_supply.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace virtual_supply {
namespace {

constexpr auto kNextError = ":SYSTem:ERRor?";

TEST(ErrorQueue, IsEmptyAfterPowerOn) {
    VirtualSupply supply;
    EXPECT_EQ(supply.Execute(kNextError), "0,\"No error\"");
    EXPECT_EQ(supply.Execute("*ESR?"), "0");
}

TEST(ErrorQueue, ReturnsErrorsInTheirOrder) {
    VirtualSupply supply;
    supply.Execute(":NO:SUCH");
    supply.Execute(":SOUR1:VOLT 99");
    supply.Execute(":SOUR1:VOLT");
    EXPECT_EQ(supply.Execute(kNextError), "-113,\"Undefined header\"");
    EXPECT_EQ(supply.Execute(kNextError), "-222,\"Data out of range\"");
    EXPECT_EQ(supply.Execute(kNextError), "-109,\"Missing parameter\"");
    EXPECT_EQ(supply.Execute(kNextError), "0,\"No error\"");
}

TEST(ErrorQueue, EndsInAnOverflowAfterSixteenErrors) {
    VirtualSupply supply;
    for (int i = 0; i < 40; ++i) {
        supply.Execute(":NO:SUCH");
    }
    EXPECT_EQ(supply.Execute("*ESR?"), "40"); // 0x20 for the headers, 0x08 for the overflow
    for (int i = 0; i < 15; ++i) {
        EXPECT_EQ(supply.Execute(kNextError), "-113,\"Undefined header\"");
    }
    EXPECT_EQ(supply.Execute(kNextError), "-350,\"Queue overflow\"");
    EXPECT_EQ(supply.Execute(kNextError), "0,\"No error\"");
}

TEST(ErrorQueue, HoldsSixteenErrorsWithoutOverflow) {
    VirtualSupply supply;
    for (int i = 0; i < 16; ++i) {
        supply.Execute(":NO:SUCH");
    }
    EXPECT_EQ(supply.Execute("*ESR?"), "32");
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(supply.Execute(kNextError), "-113,\"Undefined header\"");
    }
    EXPECT_EQ(supply.Execute(kNextError), "0,\"No error\"");
}

TEST(EventStatus, HoldsTheErrorClassAndIsClearedByReading) {
    VirtualSupply supply;
    supply.Execute(":NO:SUCH");
    EXPECT_EQ(supply.Execute("*ESR?"), "32");
    EXPECT_EQ(supply.Execute("*ESR?"), "0");
    supply.Execute(":SOUR1:VOLT 99");
    EXPECT_EQ(supply.Execute("*ESR?"), "16");
    supply.ReportInputOverrun();
    EXPECT_EQ(supply.Execute("*ESR?"), "8");
    supply.Execute(":NO:SUCH");
    supply.Execute(":SOUR1:VOLT 99");
    EXPECT_EQ(supply.Execute("*ESR?"), "48");
}

TEST(EventStatus, IsNotClearedByReadingErrors) {
    VirtualSupply supply;
    supply.Execute(":NO:SUCH");
    supply.Execute(kNextError);
    EXPECT_EQ(supply.Execute("*ESR?"), "32");
}

TEST(Clear, EmptiesErrorQueueAndEventRegisters) {
    VirtualSupply supply;
    supply.Execute(":NO:SUCH");
    supply.Execute(":OUTP:STAT CH1,ON");
    supply.Execute(":OUTP:STAT CH2,ON");
    EXPECT_EQ(supply.Execute("*CLS"), "");
    EXPECT_EQ(supply.Execute(kNextError), "0,\"No error\"");
    EXPECT_EQ(supply.Execute("*ESR?"), "0");
    EXPECT_EQ(supply.Execute(":STATus:QUEStionable:INSTrument:ISUMmary1:EVENt?"), "0");
    EXPECT_EQ(supply.Execute(":STATus:QUEStionable:INSTrument:ISUMmary2:EVENt?"), "0");
    EXPECT_EQ(supply.Execute(":OUTP:STAT? CH1"), "ON");
}

TEST(Reset, KeepsErrorQueueAndEventRegisters) {
    VirtualSupply supply;
    supply.Execute(":NO:SUCH");
    supply.Execute(":OUTP:STAT CH1,ON");
    supply.Execute("*RST");
    EXPECT_EQ(supply.Execute("*ESR?"), "32");
    EXPECT_EQ(supply.Execute(kNextError), "-113,\"Undefined header\"");
    EXPECT_EQ(supply.Execute(":STATus:QUEStionable:INSTrument:ISUMmary1:EVENt?"), "2");
}

TEST(OperationComplete, IsAlwaysAnsweredWithOne) { EXPECT_EQ(VirtualSupply().Execute("*OPC?"), "1"); }

TEST(InputOverrun, IsAddedToTheErrorQueue) {
    VirtualSupply supply;
    supply.ReportInputOverrun();
    EXPECT_EQ(supply.Execute(kNextError), "-363,\"Input buffer overrun\"");
}

TEST(WrongLines, LeaveOneErrorAndNoReply) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {":SOUR1:VOLT", "-109,\"Missing parameter\""},
        {":SOUR1:VOLT ", "-109,\"Missing parameter\""},
        {":OUTP:STAT", "-109,\"Missing parameter\""},
        {":OUTP:STAT CH1", "-109,\"Missing parameter\""},
        {":OUTP:STAT CH1,", "-109,\"Missing parameter\""},
        {":OUTP:STAT ,ON", "-109,\"Missing parameter\""},
        {":OUTP:STAT?", "-109,\"Missing parameter\""},
        {":MEAS:ALL?", "-109,\"Missing parameter\""},
        {":OUTPut:STATe ALL", "-109,\"Missing parameter\""},
        {":SOUR1:VOLT 1,2", "-108,\"Parameter not allowed\""},
        {":SOUR1:VOLT? 1", "-108,\"Parameter not allowed\""},
        {":OUTP:STAT CH1,ON,ON", "-108,\"Parameter not allowed\""},
        {":OUTP:STAT? CH1,CH2", "-108,\"Parameter not allowed\""},
        {"*IDN? 1", "-108,\"Parameter not allowed\""},
        {"*CLS ,", "-108,\"Parameter not allowed\""},
        {"*RST 1", "-108,\"Parameter not allowed\""},
        {":SOUR1:VOLT ten", "-104,\"Data type error\""},
        {":SOUR1:VOLT 1.5V", "-104,\"Data type error\""},
        {":SOUR1:VOLT 1 5", "-104,\"Data type error\""},
        {":SOUR1:VOLT 1.2.3", "-104,\"Data type error\""},
        {":SOUR1:VOLT +-1", "-104,\"Data type error\""},
        {":SOUR1:VOLT 0x10", "-104,\"Data type error\""},
        {":SOUR1:VOLT nan", "-104,\"Data type error\""},
        {":SOUR1:VOLT inf", "-104,\"Data type error\""},
        {":SOUR1:VOLT e", "-104,\"Data type error\""},
        {":OUTP:STAT CH1,2", "-104,\"Data type error\""},
        {":OUTP:STAT CH1,ONN", "-104,\"Data type error\""},
        {":SOUR1:VOLT 1e400", "-222,\"Data out of range\""},
        {":SOUR1:VOLT -1e400", "-222,\"Data out of range\""},
        {":OUTP:STAT CH3,ON", "-224,\"Illegal parameter value\""},
        {":OUTP:STAT? 1", "-224,\"Illegal parameter value\""},
        {":OUTP:STAT? ALL", "-224,\"Illegal parameter value\""},
        {":INST:SELE CH0", "-224,\"Illegal parameter value\""},
        {":OUTP:PAIR CH1,BOTH", "-224,\"Illegal parameter value\""},
        {":MEAS:CURR:RATE CH1,63", "-224,\"Illegal parameter value\""},
        {"*CLS;*RST", "-102,\"Syntax error\""},
        {":SOUR1:VOLT 1;:SOUR1:CURR 1", "-102,\"Syntax error\""},
        {"*IDN?;", "-102,\"Syntax error\""},
        {";", "-102,\"Syntax error\""},
        {"?", "-113,\"Undefined header\""},
        {":", "-113,\"Undefined header\""},
        {",", "-113,\"Undefined header\""},
        {"CH1,ON", "-113,\"Undefined header\""},
    };
    for (const auto& [line, error] : cases) {
        VirtualSupply supply;
        EXPECT_EQ(supply.Execute(line), "") << line;
        EXPECT_EQ(supply.Execute(kNextError), error) << line;
        EXPECT_EQ(supply.Execute(kNextError), "0,\"No error\"") << line;
        EXPECT_EQ(supply.Execute(":SOUR1:VOLT?"), "0.000000") << line;
        EXPECT_EQ(supply.Execute(":OUTP:STAT? CH1"), "OFF") << line;
    }
}

} // namespace
} // namespace virtual_supply
