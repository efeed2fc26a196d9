// List mode and delay mode: tables, templates and execution.

#include "tools/virtual_supply/virtual_supply.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>

namespace virtual_supply {
namespace {

class Sequencer : public testing::Test {
  protected:
    std::string Ask(const std::string& line) { return supply_.Execute(line); }
    void Wait(double seconds) {
        now_ += std::chrono::duration_cast<std::chrono::steady_clock::duration>(std::chrono::duration<double>(seconds));
    }
    /// Returns code and text of the oldest error.
    std::string Error() { return Ask(":SYSTem:ERRor?"); }

    std::chrono::steady_clock::time_point now_{};
    VirtualSupply supply_{{.clock = [this] { return now_; }}};
};

constexpr const char* kNoErrorReply = "0,\"No error\"";
constexpr const char* kOutOfRange = "-222,\"Data out of range\"";

TEST_F(Sequencer, InsertsSetsReadsAndDeletesListGroups) {
    EXPECT_EQ(Ask(":LIST:GROUP:NUM?"), "0");
    Ask(":LIST:GROUP:INS 0");
    Ask(":LIST:GROUP:INS 1");
    EXPECT_EQ(Ask(":LIST:GROUP:NUM?"), "2");
    EXPECT_EQ(Ask(":LIST:GROUP:PARA? 1"), "0.000000,0.000000,0.001000");
    Ask(":LIST:GROUP:PARA 0,5.000000,1.000000,0.500000");
    EXPECT_EQ(Ask(":LIST:GROUP:PARA? 0"), "5.000000,1.000000,0.500000");
    Ask(":LIST:GROUP:INS 0");
    EXPECT_EQ(Ask(":LIST:GROUP:PARA? 1"), "5.000000,1.000000,0.500000");
    Ask(":LIST:GROUP:DEL 0");
    EXPECT_EQ(Ask(":LIST:GROUP:PARA? 0"), "5.000000,1.000000,0.500000");
    Ask(":LIST:GROUP:CLE");
    EXPECT_EQ(Ask(":LIST:GROUP:NUM?"), "0");
    EXPECT_EQ(Error(), kNoErrorReply);
}

TEST_F(Sequencer, RefusesGroupNumbersOutOfRange) {
    for (const auto* line : {":LIST:GROUP:PARA 0,1,1,1", ":LIST:GROUP:DEL 0", ":LIST:GROUP:INS 1",
                             ":LIST:GROUP:CONSTruct 1", ":DELAY:GROUP:PARAmeter 0,ON,1", ":DELAY:GROUP:DELete 0",
                             ":DELAY:GROUP:INSert 513", ":DELAY:GENerate:CONSTruct 1"}) {
        Ask(line);
        EXPECT_EQ(Error(),
                  std::string(line).find("GROUP:CONS") == std::string::npos ? kOutOfRange : "-113,\"Undefined header\"")
            << line;
    }
    EXPECT_EQ(Ask(":LIST:GROUP:PARA? 0"), "");
    EXPECT_EQ(Error(), kOutOfRange);
}

TEST_F(Sequencer, RefusesListGroupsOutsideTheLimitsOfChannel1) {
    Ask(":LIST:GROUP:INS 0");
    for (const auto* values : {"22.1,1,1", "1,5.6,1", "1,1,0.0001", "1,1,3601"}) {
        Ask(std::string(":LIST:GROUP:PARA 0,") + values);
        EXPECT_EQ(Error(), kOutOfRange) << values;
    }
}

TEST_F(Sequencer, Holds512GroupsPerTable) {
    for (int i = 0; i < 512; ++i) {
        Ask(":DELAY:GROUP:INSert 0");
    }
    EXPECT_EQ(Error(), kNoErrorReply);
    Ask(":DELAY:GROUP:INSert 0");
    EXPECT_EQ(Error(), kOutOfRange);
    EXPECT_EQ(Ask(":DELAY:GROUP:NUM?"), "512");
}

TEST_F(Sequencer, ConstructsOneGroupPerStair) {
    for (const auto* line : {":LIST:TEMP:SEL UP", ":LIST:TEMP:OBJ V,2", ":LIST:TEMP:MINV 1", ":LIST:TEMP:MAXV 5",
                             ":LIST:TEMP:STAI 5", ":LIST:TEMP:INTE 0.5", ":LIST:TEMP:CONSTruct 0"}) {
        Ask(line);
    }
    EXPECT_EQ(Ask(":LIST:TEMP:POINTs?"), "5");
    EXPECT_EQ(Ask(":LIST:GROUP:NUM?"), "5");
    EXPECT_EQ(Ask(":LIST:GROUP:PARA? 0"), "1.000000,2.000000,0.500000");
    EXPECT_EQ(Ask(":LIST:GROUP:PARA? 2"), "3.000000,2.000000,0.500000");
    EXPECT_EQ(Ask(":LIST:GROUP:PARA? 4"), "5.000000,2.000000,0.500000");
    Ask(":LIST:TEMP:SEL DN");
    Ask(":LIST:TEMP:OBJ C,3");
    Ask(":LIST:TEMP:CONSTruct 5"); // after the others
    EXPECT_EQ(Ask(":LIST:GROUP:NUM?"), "10");
    EXPECT_EQ(Ask(":LIST:GROUP:PARA? 5"), "3.000000,5.000000,0.500000");
    EXPECT_EQ(Ask(":LIST:GROUP:PARA? 9"), "3.000000,1.000000,0.500000");
}

TEST_F(Sequencer, ConstructsEachShapeBetweenMinimumAndMaximum) {
    struct Case {
        const char* shape;
        const char* points;
        const char* values[5];
    };
    for (const auto& [shape, points, values] :
         {Case{"SINE", "5", {"0.500000", "1.000000", "0.500000", "0.000000", "0.500000"}},
          Case{"RAMP", "5", {"0.000000", "0.500000", "1.000000", "0.500000", "0.000000"}},
          Case{"RISE", "5", {"0.000000", "0.250000", "0.500000", "0.750000", "1.000000"}},
          Case{"FALL", "5", {"1.000000", "0.750000", "0.500000", "0.250000", "0.000000"}}}) {
        for (const auto& line :
             {std::string("*RST"), std::string(":LIST:TEMP:SEL ") + shape, std::string(":LIST:TEMP:INTE 0.2"),
              std::string(":LIST:TEMP:EXPR 0"), std::string(":LIST:TEMP:CONSTruct 0")}) {
            Ask(line);
        }
        EXPECT_EQ(Ask(":LIST:TEMP:POINTs?"), points) << shape;
        for (int i = 0; i < 5; ++i) {
            EXPECT_EQ(Ask(":LIST:GROUP:PARA? " + std::to_string(i)), std::string(values[i]) + ",0.000000,0.200000")
                << shape << ' ' << i;
        }
    }
}

TEST_F(Sequencer, ConstructsInvertedPulsesThatAreLowForTheirWidth) {
    for (const auto* line : {":LIST:TEMP:SEL PULSE", ":LIST:TEMP:WIDT 0.25", ":LIST:TEMP:PULSECount 2",
                             ":LIST:TEMP:INVE ON", ":LIST:TEMP:CONSTruct 0"}) {
        Ask(line);
    }
    EXPECT_EQ(Ask(":LIST:GROUP:NUM?"), "4");
    EXPECT_EQ(Ask(":LIST:GROUP:PARA? 2"), "0.000000,0.000000,0.250000");
    EXPECT_EQ(Ask(":LIST:GROUP:PARA? 3"), "1.000000,0.000000,0.750000");
}

TEST_F(Sequencer, RefusesStairsThatExceedTheTable) {
    Ask(":LIST:TEMP:SEL UPDN");
    Ask(":LIST:TEMP:STAI 3");
    EXPECT_EQ(Ask(":LIST:TEMP:POINTs?"), "6");
    Ask(":LIST:TEMP:STAI 257");
    Ask(":LIST:TEMP:CONSTruct 0");
    EXPECT_EQ(Error(), kOutOfRange);
}

TEST_F(Sequencer, RunsAListThroughGroupsAndCyclesOnChannel1) {
    for (const auto* line : {":LIST:GROUP:INS 0", ":LIST:GROUP:INS 0", ":LIST:GROUP:PARA 0,1,0.5,1",
                             ":LIST:GROUP:PARA 1,2,1.5,3", ":LIST:CYCLE 2", ":LIST:ENDS LAST", ":OUTP:STAT CH1,ON"}) {
        Ask(line);
    }
    EXPECT_EQ(Ask(":LIST:STATUS?"), "READY,0.000000,0,0");
    Ask(":LIST:STAT ON");
    EXPECT_EQ(Ask(":LIST:STATUS?"), "RUNNING,0.000000,0,0");
    EXPECT_EQ(Ask(":MEAS:VOLT? CH1"), "1.000000");
    Wait(1.5);
    EXPECT_EQ(Ask(":LIST:STATUS?"), "RUNNING,1.500000,1,0");
    EXPECT_EQ(Ask(":MEAS:VOLT? CH1"), "2.000000");
    EXPECT_EQ(Ask(":SOUR1:CURR?"), "1.500000");
    Wait(3.0);
    EXPECT_EQ(Ask(":LIST:STATUS?"), "RUNNING,4.500000,0,1");
    Wait(10.0);
    EXPECT_EQ(Ask(":LIST:STATUS?"), "READY,8.000000,1,1");
    EXPECT_EQ(Ask(":LIST:STAT?"), "OFF");
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "ON");
}

TEST_F(Sequencer, SwitchesTheOutputOffAfterAListByDefault) {
    for (const auto* line : {":LIST:GROUP:INS 0", ":OUTP:STAT CH1,ON", ":LIST:STAT ON"}) {
        Ask(line);
    }
    Wait(1.0);
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "OFF");
}

TEST_F(Sequencer, StopsAListWithoutGroupsAtOnce) {
    Ask(":LIST:STAT ON");
    EXPECT_EQ(Ask(":LIST:STAT?"), "OFF");
    EXPECT_EQ(Ask(":LIST:STATUS?"), "STOPPED,0.000000,0,0");
}

TEST_F(Sequencer, InsertsSetsReadsAndDeletesDelayGroups) {
    Ask(":DELAY:GROUP:INSert 0");
    Ask(":DELAY:GROUP:PARAmeter 0,ON,0.250000");
    EXPECT_EQ(Ask(":DELAY:GROUP:PARAmeter? 0"), "ON,0.250000");
    Ask(":DELAY:GROUP:DELete 0");
    EXPECT_EQ(Ask(":DELAY:GROUP:NUM?"), "0");
    Ask(":DELAY:GROUP:INSert 0");
    Ask(":DELAY:GROUP:CLEar");
    EXPECT_EQ(Ask(":DELAY:GROUP:NUM?"), "0");
    EXPECT_EQ(Error(), kNoErrorReply);
}

TEST_F(Sequencer, ConstructsDelaysWithFixedGrowingAndShrinkingTimes) {
    for (const auto* line :
         {":DELAY:GENerate:POINTs 3", ":DELAY:GENerate:TIMe:ON 2", ":DELAY:GENerate:TIMe:OFF 3",
          ":DELAY:GENerate:TIMe:BASE 1", ":DELAY:GENerate:TIMe:STEP 0.5", ":DELAY:GENerate:CONSTruct 0"}) {
        Ask(line);
    }
    EXPECT_EQ(Ask(":DELAY:GROUP:NUM?"), "3");
    EXPECT_EQ(Ask(":DELAY:GROUP:PARAmeter? 0"), "OFF,3.000000");
    EXPECT_EQ(Ask(":DELAY:GROUP:PARAmeter? 1"), "ON,2.000000");
    Ask(":DELAY:GENerate:PATT 10P");
    Ask(":DELAY:GENerate:SELect INC");
    Ask(":DELAY:GENerate:CONSTruct 0");
    EXPECT_EQ(Ask(":DELAY:GROUP:PARAmeter? 0"), "ON,1.000000");
    EXPECT_EQ(Ask(":DELAY:GROUP:PARAmeter? 2"), "ON,2.000000");
    Ask(":DELAY:GENerate:SELect DEC");
    Ask(":DELAY:GENerate:CONSTruct 0");
    EXPECT_EQ(Ask(":DELAY:GROUP:PARAmeter? 1"), "OFF,0.500000");
    EXPECT_EQ(Ask(":DELAY:GROUP:PARAmeter? 2"), "ON,0.001000");
}

TEST_F(Sequencer, RunsADelaySequenceOnChannel1AndAppliesItsEndState) {
    struct Case {
        const char* end;
        const char* output;
    };
    for (const auto& [end, output] : {Case{"OFF", "OFF"}, Case{"ON", "ON"}, Case{"LAST", "OFF"}}) {
        for (const auto& line :
             {std::string("*RST"), std::string(":DELAY:GENerate:PATT 10P"), std::string(":DELAY:GENerate:CONSTruct 0"),
              std::string(":DELAY:ENDState ") + end, std::string(":DELAY:STATe ON")}) {
            Ask(line);
        }
        EXPECT_EQ(Ask(":DELAY:STATUS?"), "RUNNING,0.000000,0,0");
        EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "ON");
        Wait(1.5);
        EXPECT_EQ(Ask(":DELAY:STATUS?"), "RUNNING,1.500000,1,0");
        EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "OFF");
        Wait(1.0);
        EXPECT_EQ(Ask(":DELAY:STATUS?"), "STOPPED,2.000000,1,0");
        EXPECT_EQ(Ask(":OUTP:STAT? CH1"), output) << end;
    }
}

TEST_F(Sequencer, RunsUntilItIsSwitchedOffWithZeroCycles) {
    for (const auto* line : {":DELAY:GENerate:CONSTruct 0", ":DELAY:CYCLEs 0", ":DELAY:STATe ON"}) {
        Ask(line);
    }
    Wait(2001.0);
    EXPECT_EQ(Ask(":DELAY:STATUS?"), "RUNNING,2001.000000,1,1000");
    Ask(":DELAY:STATe OFF");
    EXPECT_EQ(Ask(":DELAY:STATUS?"), "STOPPED,2001.000000,1,1000");
}

} // namespace
} // namespace virtual_supply
