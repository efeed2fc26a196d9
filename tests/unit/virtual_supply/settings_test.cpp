// Every setting: power-on value, reading back, limits and header.

#include "tools/virtual_supply/virtual_supply.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace virtual_supply {
namespace {

struct SettingCase {
    std::string set;
    std::string query;
    std::string initial;
    std::string changed;
};

// Two headers of the same setting set the same value.
const std::vector<SettingCase> kSettingCases{
    {":INST:SELE CH2", ":INST:SELE?", "CH1", "CH2"},
    {":SOUR:BLE ON", ":SOUR:BLE?", "OFF", "ON"},

    {":SOUR1:VOLT 3.300000", ":SOUR1:VOLT?", "0.000000", "3.300000"},
    {":SOUR2:VOLT 1.800000", ":SOUR2:VOLT?", "0.000000", "1.800000"},
    {":SOUR1:VOLT:PROT 5.500000", ":SOUR1:VOLT:PROT?", "22.000000", "5.500000"},
    {":SOUR2:VOLT:PROT 2.500000", ":SOUR2:VOLT:PROT?", "5.500000", "2.500000"},
    {":SOUR1:VOLT:PROT:STAT ON", ":SOUR1:VOLT:PROT:STAT?", "OFF", "ON"},
    {":SOUR2:VOLT:PROT:STAT ON", ":SOUR2:VOLT:PROT:STAT?", "OFF", "ON"},
    {":SOUR1:VOLT:SENS ON", ":SOUR1:VOLT:SENS?", "OFF", "ON"},
    {":SOUR2:VOLT:SENS ON", ":SOUR2:VOLT:SENS?", "OFF", "ON"},
    {":SOUR1:CURR 1.250000", ":SOUR1:CURR?", "5.500000", "1.250000"},
    {":SOUR2:CURR 16.000000", ":SOUR2:CURR?", "16.800000", "16.000000"},
    {":SOUR1:CURR:PROT 4.500000", ":SOUR1:CURR:PROT?", "5.500000", "4.500000"},
    {":SOUR2:CURR:PROT 15.500000", ":SOUR2:CURR:PROT?", "16.800000", "15.500000"},
    {":SOUR1:CURR:PROT:STAT ON", ":SOUR1:CURR:PROT:STAT?", "OFF", "ON"},
    {":SOUR2:CURR:PROT:STAT ON", ":SOUR2:CURR:PROT:STAT?", "OFF", "ON"},
    {":SOUR1:CURR:PROT:DEL 0.125000", ":SOUR1:CURR:PROT:DEL?", "0.000000", "0.125000"},
    {":SOUR2:CURR:PROT:DEL 0.250000", ":SOUR2:CURR:PROT:DEL?", "0.000000", "0.250000"},
    {":SOUR1:CURR:PROT:DEL:MODE SCH", ":SOUR1:CURR:PROT:DEL:MODE?", "ANY", "SCH"},
    {":SOUR2:CURR:PROT:DEL:MODE SCH", ":SOUR2:CURR:PROT:DEL:MODE?", "ANY", "SCH"},

    {":OUTP:STAT CH1,ON", ":OUTP:STAT? CH1", "OFF", "ON"},
    {":OUTP:STAT CH2,ON", ":OUTP:STAT? CH2", "OFF", "ON"},
    {":OUTP:OVP:VAL CH1,5.500000", ":OUTP:OVP:VAL? CH1", "22.000000", "5.500000"},
    {":OUTP:OVP:VAL CH2,2.500000", ":OUTP:OVP:VAL? CH2", "5.500000", "2.500000"},
    {":OUTP:OVP:STAT CH1,ON", ":OUTP:OVP:STAT? CH1", "OFF", "ON"},
    {":OUTP:OVP:STAT CH2,ON", ":OUTP:OVP:STAT? CH2", "OFF", "ON"},
    {":OUTP:OCP:VAL CH1,4.500000", ":OUTP:OCP:VAL? CH1", "5.500000", "4.500000"},
    {":OUTP:OCP:VAL CH2,15.500000", ":OUTP:OCP:VAL? CH2", "16.800000", "15.500000"},
    {":OUTP:OCP:STAT CH1,ON", ":OUTP:OCP:STAT? CH1", "OFF", "ON"},
    {":OUTP:OCP:STAT CH2,ON", ":OUTP:OCP:STAT? CH2", "OFF", "ON"},
    {":OUTP:OCP:DEL CH1,0.125000", ":OUTP:OCP:DEL? CH1", "0.000000", "0.125000"},
    {":OUTP:OCP:DEL CH2,0.250000", ":OUTP:OCP:DEL? CH2", "0.000000", "0.250000"},
    {":OUTP:OCP:DEL:MODE CH1,SCH", ":OUTP:OCP:DEL:MODE? CH1", "ANY", "SCH"},
    {":OUTP:OCP:DEL:MODE CH2,SCH", ":OUTP:OCP:DEL:MODE? CH2", "ANY", "SCH"},
    {":OUTP:PONS:STAT CH1,LAST", ":OUTP:PONS:STAT? CH1", "RST", "LAST"},
    {":OUTP:PONS:STAT CH2,LOFF", ":OUTP:PONS:STAT? CH2", "RST", "LOFF"},
    {":OUTP:PAIR CH1,SER", ":OUTP:PAIR? CH1", "OFF", "SER"},
    {":OUTP:PAIR CH2,PAR", ":OUTP:PAIR? CH2", "OFF", "PAR"},
    {":OUTP:SENS:STAT CH1,ON", ":OUTP:SENS:STAT? CH1", "OFF", "ON"},
    {":OUTP:SENS:STAT CH2,ON", ":OUTP:SENS:STAT? CH2", "OFF", "ON"},
    {":OUTP:TRAC:STAT CH1,ON", ":OUTP:TRAC:STAT? CH1", "OFF", "ON"},
    {":OUTP:TRAC:STAT CH2,ON", ":OUTP:TRAC:STAT? CH2", "OFF", "ON"},
    {":OUTP:OFFM CH1,BLEOFF", ":OUTP:OFFM? CH1", "BLEON", "BLEOFF"},
    {":OUTP:OFFM CH2,BLEOFF", ":OUTP:OFFM? CH2", "BLEON", "BLEOFF"},

    {":MEAS:CURR:RANG CH1,LOW", ":MEAS:CURR:RANG? CH1", "AUTO", "LOW"},
    {":MEAS:CURR:RANG CH2,HIGH", ":MEAS:CURR:RANG? CH2", "AUTO", "HIGH"},
    {":MEAS:CURR:RATE CH1,4000", ":MEAS:CURR:RATE? CH1", "62", "4000"},
    {":MEAS:CURR:RATE CH2,8K", ":MEAS:CURR:RATE? CH2", "62", "8000"},

    {":LIST:CYCLE 7", ":LIST:CYCLE?", "1", "7"},
    {":LIST:ENDS LAST", ":LIST:ENDS?", "OFF", "LAST"},
    {":LIST:TEMP:SEL FALL", ":LIST:TEMP:SEL?", "SINE", "FALL"},
    {":LIST:TEMP:MAXV 12.5", ":LIST:TEMP:MAXV?", "1.000000", "12.500000"},
    {":LIST:TEMP:MINV 0.5", ":LIST:TEMP:MINV?", "0.000000", "0.500000"},
    {":LIST:TEMP:PERI 3", ":LIST:TEMP:PERI?", "1.000000", "3.000000"},
    {":LIST:TEMP:INTE 0.25", ":LIST:TEMP:INTE?", "0.100000", "0.250000"},
    {":LIST:TEMP:CYCLE 9", ":LIST:TEMP:CYCLE?", "1", "9"},
    {":LIST:TEMP:INVE ON", ":LIST:TEMP:INVE?", "OFF", "ON"},
    {":LIST:TEMP:WIDT 0.125", ":LIST:TEMP:WIDT?", "0.500000", "0.125000"},
    {":LIST:TEMP:PULSECount 256", ":LIST:TEMP:PULSECount?", "1", "256"},
    {":LIST:TEMP:SYMM 0", ":LIST:TEMP:SYMM?", "50", "0"},
    {":LIST:TEMP:STAI 512", ":LIST:TEMP:STAI?", "10", "512"},
    {":LIST:TEMP:EXPP 2", ":LIST:TEMP:EXPP?", "1", "2"},
    {":LIST:TEMP:EXPR 10", ":LIST:TEMP:EXPR?", "1", "10"},
    {":LIST:TEMP:OBJ C,2.5", ":LIST:TEMP:OBJ?", "V,0.000000", "C,2.500000"},

    {":DELAY:CYCLEs 99999", ":DELAY:CYCLEs?", "1", "99999"},
    {":DELAY:ENDState LAST", ":DELAY:ENDState?", "OFF", "LAST"},
    {":DELAY:GENerate:SELect DEC", ":DELAY:GENerate:SELect?", "FIX", "DEC"},
    {":DELAY:GENerate:PATT 10P", ":DELAY:GENerate:PATT?", "01P", "10P"},
    {":DELAY:GENerate:POINTs 512", ":DELAY:GENerate:POINTs?", "2", "512"},
    {":DELAY:GENerate:TIMe:ON 2", ":DELAY:GENerate:TIMe:ON?", "1.000000", "2.000000"},
    {":DELAY:GENerate:TIMe:OFF 3", ":DELAY:GENerate:TIMe:OFF?", "1.000000", "3.000000"},
    {":DELAY:GENerate:TIMe:BASE 4", ":DELAY:GENerate:TIMe:BASE?", "1.000000", "4.000000"},
    {":DELAY:GENerate:TIMe:STEP 5", ":DELAY:GENerate:TIMe:STEP?", "0.100000", "5.000000"},

    {":TRIG:IN:ENAB D1,ON", ":TRIG:IN:ENAB? D1", "OFF", "ON"},
    {":TRIG:IN:ENAB D4,ON", ":TRIG:IN:ENAB? D4", "OFF", "ON"},
};

constexpr auto kNextError = ":SYSTem:ERRor?";

TEST(Settings, HaveTheirPowerOnValues) {
    VirtualSupply supply;
    for (const SettingCase& each : kSettingCases) {
        EXPECT_EQ(supply.Execute(each.query), each.initial) << each.query;
    }
    EXPECT_EQ(supply.Execute(kNextError), "0,\"No error\"");
}

TEST(Settings, AreReadBackAfterTheyWereSet) {
    for (const SettingCase& each : kSettingCases) {
        VirtualSupply supply;
        EXPECT_EQ(supply.Execute(each.set), "") << each.set;
        EXPECT_EQ(supply.Execute(each.query), each.changed) << each.query;
        EXPECT_EQ(supply.Execute(kNextError), "0,\"No error\"") << each.set;
    }
}

TEST(Settings, AreSeparateForEachChannel) {
    VirtualSupply supply;
    for (const SettingCase& each : kSettingCases) {
        supply.Execute(each.set);
    }
    for (const SettingCase& each : kSettingCases) {
        EXPECT_EQ(supply.Execute(each.query), each.changed) << each.query;
    }
}

TEST(Settings, ReturnToTheirPowerOnValuesOnReset) {
    VirtualSupply supply;
    for (const SettingCase& each : kSettingCases) {
        supply.Execute(each.set);
    }
    EXPECT_EQ(supply.Execute("*RST"), "");
    for (const SettingCase& each : kSettingCases) {
        EXPECT_EQ(supply.Execute(each.query), each.initial) << each.query;
    }
}

TEST(Settings, AreSharedByBothHeadersOfAProtection) {
    VirtualSupply supply;
    supply.Execute(":SOUR1:VOLT:PROT 12.0");
    EXPECT_EQ(supply.Execute(":OUTP:OVP:VAL? CH1"), "12.000000");
    supply.Execute(":OUTP:OVP:STAT CH1,ON");
    EXPECT_EQ(supply.Execute(":SOUR1:VOLT:PROT:STAT?"), "ON");
    supply.Execute(":OUTP:OCP:VAL CH2,3.5");
    EXPECT_EQ(supply.Execute(":SOUR2:CURR:PROT?"), "3.500000");
    supply.Execute(":SOUR2:CURR:PROT:STAT ON");
    EXPECT_EQ(supply.Execute(":OUTP:OCP:STAT? CH2"), "ON");
    supply.Execute(":OUTP:OCP:DEL CH2,0.75");
    EXPECT_EQ(supply.Execute(":SOUR2:CURR:PROT:DEL?"), "0.750000");
    supply.Execute(":SOUR2:CURR:PROT:DEL:MODE SCH");
    EXPECT_EQ(supply.Execute(":OUTP:OCP:DEL:MODE? CH2"), "SCH");
    supply.Execute(":SOUR2:VOLT:SENS ON");
    EXPECT_EQ(supply.Execute(":OUTP:SENS:STAT? CH2"), "ON");
}

struct LimitCase {
    std::string header; // the line before the value
    std::string query;
    std::string maximum;
    std::string above;
    std::string maximumRead;
};

const std::vector<LimitCase> kLimitCases{
    {":SOUR1:VOLT ", ":SOUR1:VOLT?", "22", "22.000001", "22.000000"},
    {":SOUR2:VOLT ", ":SOUR2:VOLT?", "5.5", "5.500001", "5.500000"},
    {":SOUR1:VOLT:PROT ", ":SOUR1:VOLT:PROT?", "22", "22.000001", "22.000000"},
    {":SOUR2:VOLT:PROT ", ":SOUR2:VOLT:PROT?", "5.5", "5.500001", "5.500000"},
    {":OUTP:OVP:VAL CH1,", ":OUTP:OVP:VAL? CH1", "22", "22.000001", "22.000000"},
    {":OUTP:OVP:VAL CH2,", ":OUTP:OVP:VAL? CH2", "5.5", "5.500001", "5.500000"},
    {":SOUR1:CURR ", ":SOUR1:CURR?", "5.5", "5.500001", "5.500000"},
    {":SOUR2:CURR ", ":SOUR2:CURR?", "16.8", "16.800001", "16.800000"},
    {":SOUR1:CURR:PROT ", ":SOUR1:CURR:PROT?", "5.5", "5.500001", "5.500000"},
    {":SOUR2:CURR:PROT ", ":SOUR2:CURR:PROT?", "16.8", "16.800001", "16.800000"},
    {":OUTP:OCP:VAL CH1,", ":OUTP:OCP:VAL? CH1", "5.5", "5.500001", "5.500000"},
    {":OUTP:OCP:VAL CH2,", ":OUTP:OCP:VAL? CH2", "16.8", "16.800001", "16.800000"},
    {":SOUR1:CURR:PROT:DEL ", ":SOUR1:CURR:PROT:DEL?", "3600", "3600.000001", "3600.000000"},
    {":OUTP:OCP:DEL CH2,", ":OUTP:OCP:DEL? CH2", "3600", "3600.000001", "3600.000000"},
};

TEST(Limits, AreAcceptedAsValues) {
    for (const LimitCase& each : kLimitCases) {
        VirtualSupply supply;
        supply.Execute(each.header + "0");
        EXPECT_EQ(supply.Execute(each.query), "0.000000") << each.header;
        supply.Execute(each.header + each.maximum);
        EXPECT_EQ(supply.Execute(each.query), each.maximumRead) << each.header;
        EXPECT_EQ(supply.Execute(kNextError), "0,\"No error\"") << each.header;
    }
}

TEST(Limits, RefuseValuesOutsideAndKeepTheSetting) {
    for (const LimitCase& each : kLimitCases) {
        VirtualSupply supply;
        supply.Execute(each.header + "1.5");
        EXPECT_EQ(supply.Execute(each.header + each.above), "") << each.header;
        EXPECT_EQ(supply.Execute(kNextError), "-222,\"Data out of range\"") << each.header;
        supply.Execute(each.header + "-0.000001");
        EXPECT_EQ(supply.Execute(kNextError), "-222,\"Data out of range\"") << each.header;
        EXPECT_EQ(supply.Execute(each.query), "1.500000") << each.header;
        EXPECT_EQ(supply.Execute(kNextError), "0,\"No error\"") << each.header;
    }
}

TEST(Headers, AreMatchedWithoutRegardToLetterCase) {
    VirtualSupply supply;
    supply.Execute(":sour1:Volt 2.5");
    EXPECT_EQ(supply.Execute(":SoUr1:vOLT?"), "2.500000");
    supply.Execute(":outp:stat ch1,on");
    EXPECT_EQ(supply.Execute(":outp:stat? Ch1"), "ON");
    supply.Execute(":OUTPUT:STATE all,off");
    EXPECT_EQ(supply.Execute(":outp:stat? CH1"), "OFF");
    EXPECT_EQ(supply.Execute("*idn?"), "Keltor Technology,TX4410,SN00000001,1.00");
    EXPECT_EQ(supply.Execute(":system:error?"), "0,\"No error\"");
}

TEST(Headers, HaveNoShortAndLongForms) {
    for (const std::string line : {":SYST:ERR?",
                                   ":OUTPut:STATe? CH1",
                                   ":OUTPUT:STAT? CH1",
                                   ":SOURce1:VOLTage?",
                                   ":SOURCE1:VOLT?",
                                   ":INST:SEL?",
                                   ":MEAS:POW? CH1",
                                   ":STAT:QUES:INST:ISUM1:COND?",
                                   "SOUR1:VOLT?",
                                   ":SOUR:VOLT?",
                                   ":SOUR0:VOLT?",
                                   ":SOUR3:VOLT?",
                                   ":SOUR01:VOLT?",
                                   ":SOUR#:VOLT?",
                                   ":OUTP:CVCC CH1",
                                   ":MEAS:VOLT CH1",
                                   "*IDN",
                                   "*RST?",
                                   ":OUTP:STAT?CH1",
                                   ":STATus:QUEStionable:INSTrument:ISUMmary3:CONDition?"}) {
        VirtualSupply supply;
        EXPECT_EQ(supply.Execute(line), "") << line;
        EXPECT_EQ(supply.Execute(kNextError), "-113,\"Undefined header\"") << line;
    }
}

TEST(AllOutputs, AreSwitchedTogether) {
    VirtualSupply supply;
    EXPECT_EQ(supply.Execute(":OUTPut:STATe ALL,ON"), "");
    EXPECT_EQ(supply.Execute(":OUTP:STAT? CH1"), "ON");
    EXPECT_EQ(supply.Execute(":OUTP:STAT? CH2"), "ON");
    EXPECT_EQ(supply.Execute(":OUTPut:STATe ALL,OFF"), "");
    EXPECT_EQ(supply.Execute(":OUTP:STAT? CH1"), "OFF");
    EXPECT_EQ(supply.Execute(":OUTP:STAT? CH2"), "OFF");
    EXPECT_EQ(supply.Execute(kNextError), "0,\"No error\"");
}

TEST(AllOutputs, AreNotSelectedByAChannelName) {
    VirtualSupply supply;
    supply.Execute(":OUTPut:STATe CH1,ON");
    EXPECT_EQ(supply.Execute(kNextError), "-224,\"Illegal parameter value\"");
    EXPECT_EQ(supply.Execute(":OUTP:STAT? CH1"), "OFF");
}

TEST(Identity, ContainsModelAndSerialNumber) {
    VirtualSupply supply({.model = "TX4520", .serial = "SN77"});
    EXPECT_EQ(supply.Execute("*IDN?"), "Keltor Technology,TX4520,SN77,1.00");
    EXPECT_EQ(VirtualSupply().Execute("*IDN?"), "Keltor Technology,TX4410,SN00000001,1.00");
}

} // namespace
} // namespace virtual_supply
