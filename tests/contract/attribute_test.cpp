#include <array>
#include <stdexcept>

#include "tests/contract/driver_fixture.h"

namespace contract {
namespace {

class Attribute : public DriverTest {
  protected:
    struct Text {
        Status status;
        std::string value;
        bool operator==(const Text&) const = default;
    };
    static Text GetText(ViSession vi, ViAttr attribute, ViInt32 size = 4096) {
        std::array<ViChar, 4096> value{};
        value.fill('#');
        value.back() = '\0';
        const Status status(TARNEX_GetAttributeViString(vi, "", attribute, size, value.data()));
        return {status, value.data()};
    }
    static ViBoolean GetBoolean(ViSession vi, ViAttr attribute, const char* channel = "") {
        ViBoolean value = 7;
        EXPECT_EQ(Status(TARNEX_GetAttributeViBoolean(vi, channel, attribute, &value)), Status(0x00000000));
        return value;
    }
    static ViInt32 GetInteger(ViSession vi, ViAttr attribute, const char* channel = "") {
        ViInt32 value = 77;
        EXPECT_EQ(Status(TARNEX_GetAttributeViInt32(vi, channel, attribute, &value)), Status(0x00000000));
        return value;
    }
    static Status SetBoolean(ViSession vi, ViAttr attribute, ViBoolean value, const char* channel = "") {
        return Status(TARNEX_SetAttributeViBoolean(vi, channel, attribute, value));
    }
};

enum class Type { Int32, Real64, Boolean, String };

struct Row {
    ViAttr id;
    const char* name;
    Type type;
    bool writable;
};

constexpr std::array kRows{
    Row{1050002, "TARNEX_ATTR_RANGE_CHECK", Type::Boolean, true},
    Row{1050003, "TARNEX_ATTR_QUERY_INSTRUMENT_STATUS", Type::Boolean, true},
    Row{1050004, "TARNEX_ATTR_CACHE", Type::Boolean, true},
    Row{1050005, "TARNEX_ATTR_SIMULATE", Type::Boolean, true},
    Row{1050006, "TARNEX_ATTR_RECORD_COERCIONS", Type::Boolean, true},
    Row{1050007, "TARNEX_ATTR_DRIVER_SETUP", Type::String, false},
    Row{1050021, "TARNEX_ATTR_INTERCHANGE_CHECK", Type::Boolean, true},
    Row{1050203, "TARNEX_ATTR_CHANNEL_COUNT", Type::Int32, false},
    Row{1050302, "TARNEX_ATTR_SPECIFIC_DRIVER_PREFIX", Type::String, false},
    Row{1050304, "TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR", Type::String, false},
    Row{1050305, "TARNEX_ATTR_LOGICAL_NAME", Type::String, false},
    Row{1050327, "TARNEX_ATTR_SUPPORTED_INSTRUMENT_MODELS", Type::String, false},
    Row{1050401, "TARNEX_ATTR_GROUP_CAPABILITIES", Type::String, false},
    Row{1050510, "TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION", Type::String, false},
    Row{1050511, "TARNEX_ATTR_INSTRUMENT_MANUFACTURER", Type::String, false},
    Row{1050512, "TARNEX_ATTR_INSTRUMENT_MODEL", Type::String, false},
    Row{1050513, "TARNEX_ATTR_SPECIFIC_DRIVER_VENDOR", Type::String, false},
    Row{1050514, "TARNEX_ATTR_SPECIFIC_DRIVER_DESCRIPTION", Type::String, false},
    Row{1050515, "TARNEX_ATTR_SPECIFIC_DRIVER_CLASS_SPEC_MAJOR_VERSION", Type::Int32, false},
    Row{1050516, "TARNEX_ATTR_SPECIFIC_DRIVER_CLASS_SPEC_MINOR_VERSION", Type::Int32, false},
    Row{1050551, "TARNEX_ATTR_SPECIFIC_DRIVER_REVISION", Type::String, false},
    Row{1250001, "TARNEX_ATTR_VOLTAGE_LEVEL", Type::Real64, true},
    Row{1250002, "TARNEX_ATTR_OVP_ENABLED", Type::Boolean, true},
    Row{1250003, "TARNEX_ATTR_OVP_LIMIT", Type::Real64, true},
    Row{1250004, "TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR", Type::Int32, true},
    Row{1250005, "TARNEX_ATTR_CURRENT_LIMIT", Type::Real64, true},
    Row{1250006, "TARNEX_ATTR_OUTPUT_ENABLED", Type::Boolean, true},
};

const char* TypeName(Type type) {
    switch (type) {
    case Type::Int32:
        return "ViInt32";
    case Type::Real64:
        return "ViReal64";
    case Type::Boolean:
        return "ViBoolean";
    case Type::String:
        return "ViString";
    }
    return "";
}

std::string Mismatch(const char* call, const Row& row) {
    return std::string(call) + " called for attribute '" + row.name + "' of type '" + TypeName(row.type) + "'.";
}

TEST_F(Attribute, RowsHaveTheirIdentifiersNamesAndTypes) {
    const auto vi = Open();
    ViSession session = 0;
    for (const auto& row : kRows) {
        EXPECT_EQ(Status(TARNEX_GetAttributeViSession(vi, "", row.id, &session)), Status(0xBFFA0015));
        EXPECT_EQ(LastError(vi), (DriverError{0xBFFA0015, Mismatch("GetAttributeViSession", row)}));
        EXPECT_EQ(Status(TARNEX_SetAttributeViSession(vi, "", row.id, 1)), Status(0xBFFA0015));
        EXPECT_EQ(LastError(vi), (DriverError{0xBFFA0015, Mismatch("SetAttributeViSession", row)}));
    }
}

TEST_F(Attribute, RowsRefuseEveryOtherTypeInBothDirections) {
    const auto vi = Open();
    ViInt32 integer = 0;
    ViReal64 real = 0.0;
    ViBoolean boolean = VI_FALSE;
    std::array<ViChar, 256> text{};
    for (const auto& row : kRows) {
        if (row.type != Type::Int32) {
            EXPECT_EQ(Status(TARNEX_GetAttributeViInt32(vi, "", row.id, &integer)), Status(0xBFFA0015));
            EXPECT_EQ(LastError(vi).description, Mismatch("GetAttributeViInt32", row));
            EXPECT_EQ(Status(TARNEX_SetAttributeViInt32(vi, "", row.id, 1)), Status(0xBFFA0015));
            EXPECT_EQ(LastError(vi).description, Mismatch("SetAttributeViInt32", row));
        }
        if (row.type != Type::Real64) {
            EXPECT_EQ(Status(TARNEX_GetAttributeViReal64(vi, "", row.id, &real)), Status(0xBFFA0015));
            EXPECT_EQ(LastError(vi).description, Mismatch("GetAttributeViReal64", row));
            EXPECT_EQ(Status(TARNEX_SetAttributeViReal64(vi, "", row.id, 1.0)), Status(0xBFFA0015));
            EXPECT_EQ(LastError(vi).description, Mismatch("SetAttributeViReal64", row));
        }
        if (row.type != Type::Boolean) {
            EXPECT_EQ(Status(TARNEX_GetAttributeViBoolean(vi, "", row.id, &boolean)), Status(0xBFFA0015));
            EXPECT_EQ(LastError(vi).description, Mismatch("GetAttributeViBoolean", row));
            EXPECT_EQ(Status(TARNEX_SetAttributeViBoolean(vi, "", row.id, VI_TRUE)), Status(0xBFFA0015));
            EXPECT_EQ(LastError(vi).description, Mismatch("SetAttributeViBoolean", row));
        }
        if (row.type != Type::String) {
            EXPECT_EQ(Status(TARNEX_GetAttributeViString(vi, "", row.id, 256, text.data())), Status(0xBFFA0015));
            EXPECT_EQ(LastError(vi).description, Mismatch("GetAttributeViString", row));
            EXPECT_EQ(Status(TARNEX_SetAttributeViString(vi, "", row.id, "x")), Status(0xBFFA0015));
            EXPECT_EQ(LastError(vi).description, Mismatch("SetAttributeViString", row));
        }
    }
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Attribute, ReadOnlyOnesRefuseToBeSet) {
    const auto vi = Open();
    for (const auto& row : kRows) {
        if (row.writable) {
            continue;
        }
        const Status status(row.type == Type::Int32 ? TARNEX_SetAttributeViInt32(vi, "", row.id, 1)
                                                    : TARNEX_SetAttributeViString(vi, "", row.id, nullptr));
        EXPECT_EQ(status, Status(0xBFFA000D));
        EXPECT_EQ(LastError(vi), (DriverError{0xBFFA000D, "Attribute '" + std::string(row.name) + "' is read-only."}));
    }
}

TEST_F(Attribute, UnknownIdentifiersAreNamedAsUnsignedNumbers) {
    const auto vi = Open();
    ViInt32 integer = 0;
    std::array<ViChar, 8> text{};
    for (const auto& [id, name] : std::vector<std::pair<ViAttr, std::string>>{
             {1250000, "1250000"}, {0, "0"}, {1050001, "1050001"}, {4294967295U, "4294967295"}}) {
        const DriverError expected{0xBFFA000C, "Attribute ID '" + name + "' not recognized."};
        EXPECT_EQ(Status(TARNEX_GetAttributeViInt32(vi, "", id, &integer)), Status(0xBFFA000C));
        EXPECT_EQ(LastError(vi), expected);
        EXPECT_EQ(Status(TARNEX_SetAttributeViReal64(vi, "", id, 1.0)), Status(0xBFFA000C));
        EXPECT_EQ(LastError(vi), expected);
        EXPECT_EQ(Status(TARNEX_GetAttributeViString(vi, "", id, 8, text.data())), Status(0xBFFA000C));
        EXPECT_EQ(LastError(vi), expected);
        EXPECT_EQ(Status(TARNEX_SetAttributeViString(vi, "", id, "x")), Status(0xBFFA000C));
        EXPECT_EQ(LastError(vi), expected);
        EXPECT_EQ(Status(TARNEX_SetAttributeViSession(vi, "", id, 1)), Status(0xBFFA000C));
        EXPECT_EQ(LastError(vi), expected);
    }
}

TEST_F(Attribute, NullValuePointersAreRefusedBeforeAnyOtherCheck) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEX_GetAttributeViInt32(vi, "", 0, nullptr)), Status(0xBFFA0058));
    EXPECT_EQ(LastError(vi), (DriverError{0xBFFA0058, "Null pointer passed for function 'TARNEX_GetAttributeViInt32', "
                                                      "parameter 'AttributeValue'."}));
    EXPECT_EQ(Status(TARNEX_GetAttributeViReal64(vi, "", 0, nullptr)), Status(0xBFFA0058));
    EXPECT_EQ(LastError(vi), (DriverError{0xBFFA0058, "Null pointer passed for function "
                                                      "'TARNEX_GetAttributeViReal64', parameter 'AttributeValue'."}));
    EXPECT_EQ(Status(TARNEX_GetAttributeViBoolean(vi, "", 0, nullptr)), Status(0xBFFA0058));
    EXPECT_EQ(LastError(vi), (DriverError{0xBFFA0058, "Null pointer passed for function "
                                                      "'TARNEX_GetAttributeViBoolean', parameter 'AttributeValue'."}));
    EXPECT_EQ(Status(TARNEX_GetAttributeViSession(vi, "", 0, nullptr)), Status(0xBFFA0058));
    EXPECT_EQ(LastError(vi), (DriverError{0xBFFA0058, "Null pointer passed for function "
                                                      "'TARNEX_GetAttributeViSession', parameter 'AttributeValue'."}));
}

TEST_F(Attribute, EngineFailuresOnAnUnknownHandleReturnTheStatusOfTheRecording) {
    ViInt32 integer = 0;
    EXPECT_EQ(Status(TARNEX_GetAttributeViInt32(999, "", 1, &integer)), Status(0xBFFA1190));
    EXPECT_EQ(Status(TARNEX_GetAttributeViInt32(999, "", 1, nullptr)), Status(0xBFFA1190));
    EXPECT_EQ(Status(TARNEX_SetAttributeViString(999, "", TARNEX_ATTR_LOGICAL_NAME, "x")), Status(0xBFFA1190));
}

TEST_F(Attribute, EngineFailuresOnAnUnknownHandleAreRecordedForTheThread) {
    ViInt32 integer = 0;
    TARNEX_GetAttributeViInt32(999, "", 1, &integer);
    EXPECT_EQ(LastError(VI_NULL), (DriverError{0xBFFA000C, "Attribute ID '1' not recognized."}));
    TARNEX_GetAttributeViInt32(999, "", 1, nullptr);
    EXPECT_EQ(LastError(VI_NULL), (DriverError{0xBFFA0058, "Null pointer passed for function "
                                                           "'TARNEX_GetAttributeViInt32', parameter "
                                                           "'AttributeValue'."}));
    TARNEX_SetAttributeViString(999, "", TARNEX_ATTR_LOGICAL_NAME, "x");
    EXPECT_EQ(LastError(VI_NULL), (DriverError{0xBFFA000D, "Attribute 'TARNEX_ATTR_LOGICAL_NAME' is read-only."}));
    TARNEX_GetAttributeViInt32(999, "", TARNEX_ATTR_CHANNEL_COUNT, &integer);
    EXPECT_EQ(LastError(VI_NULL), (DriverError{0x00000000, ""}));
}

TEST_F(Attribute, EngineFailuresWithoutAHandleReturnTheirCodeAndAreRecordedForTheThread) {
    ViInt32 integer = 0;
    EXPECT_EQ(Status(TARNEX_GetAttributeViInt32(VI_NULL, "", 1, &integer)), Status(0xBFFA000C));
    EXPECT_EQ(LastError(VI_NULL), (DriverError{0xBFFA000C, "Attribute ID '1' not recognized."}));
}

TEST_F(Attribute, TextOfSizeZeroReturnsTheRequiredSizeOnAnyHandle) {
    const auto vi = Open();
    std::array<ViChar, 4> text{"abc"};
    EXPECT_EQ(Status(TARNEX_GetAttributeViString(vi, "", TARNEX_ATTR_LOGICAL_NAME, 0, nullptr)), Status(4096U));
    EXPECT_EQ(Status(TARNEX_GetAttributeViString(vi, "", TARNEX_ATTR_LOGICAL_NAME, 0, text.data())), Status(4096U));
    EXPECT_EQ(Status(TARNEX_GetAttributeViString(999, "", TARNEX_ATTR_LOGICAL_NAME, 0, nullptr)), Status(4096U));
    EXPECT_STREQ(text.data(), "abc");
    EXPECT_THAT(doubles::TheScript().Calls(), IsEmpty());
}

TEST_F(Attribute, TextWithoutABufferNamesTheSizeParameter) {
    const auto vi = Open();
    for (const ViInt32 size : {1, 256, -1}) {
        EXPECT_EQ(Status(TARNEX_GetAttributeViString(vi, "", TARNEX_ATTR_LOGICAL_NAME, size, nullptr)),
                  Status(0xBFFA0058));
        EXPECT_EQ(LastError(vi), (DriverError{0xBFFA0058, "Null pointer passed for function 'GetAttributeViString', "
                                                          "parameter 'AttributeValueBufferSize'."}));
    }
    EXPECT_EQ(Status(TARNEX_GetAttributeViString(vi, "", TARNEX_ATTR_CACHE, 256, nullptr)), Status(0xBFFA0015));
}

TEST_F(Attribute, TextThatFillsItsBufferReturnsTheFixedRequiredSize) {
    Reply("*IDN?", "Keltor Technology,123456789,SN42,1.07\n");
    const auto vi = Open();
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MODEL, 11), (Text{0x00000000, "123456789"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MODEL, 10), (Text{4096U, "123456789"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MODEL, 9), (Text{4096U, "12345678"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MODEL, 1), (Text{4096U, ""}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MODEL, -1), (Text{0x00000000, "123456789"}));
}

TEST_F(Attribute, TextsOfARealInstrumentComeFromItsIdentity) {
    const auto vi = Open("DriverSetup=Model:TX4520, Note=1");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_DRIVER_SETUP), (Text{0U, "Model:TX4520, Note=1"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_SPECIFIC_DRIVER_PREFIX), (Text{0U, "TARNEX"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR), (Text{0U, "USB0::0x1234::0x5678::SN42::INSTR"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_LOGICAL_NAME), (Text{0U, ""}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_SUPPORTED_INSTRUMENT_MODELS), (Text{0U, "TX4410,TX4520"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_GROUP_CAPABILITIES), (Text{0U, "IviDCPwrBase,IviDCPwrMeasurement"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION), (Text{0U, "1.07"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MANUFACTURER), (Text{0U, "Keltor Technology"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MODEL), (Text{0U, "TX4410"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_SPECIFIC_DRIVER_VENDOR), (Text{0U, "Keltor Technology"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_SPECIFIC_DRIVER_DESCRIPTION), (Text{0U, "IVI-C Driver for TARNEX"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_SPECIFIC_DRIVER_REVISION), (Text{0U, "1.0.0.0"}));
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Attribute, TextsKeepACarriageReturnBeforeTheTerminationCharacter) {
    Reply("*IDN?", "Maker,TX4410,SN42,1.07\r\n");
    const auto vi = Open();
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION), (Text{0U, "1.07\r"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MANUFACTURER), (Text{0U, "Maker"}));
}

TEST_F(Attribute, TextsOfASimulatedInstrumentComeFromTheSimulator) {
    const auto vi = Open("Simulate=1, DriverSetup=Model:TX4520");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION), (Text{0U, "V1.00"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MANUFACTURER), (Text{0U, "Keltor Technology"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MODEL), (Text{0U, "TX6300"}));
}

TEST_F(Attribute, NumbersOfTheSessionAreFixed) {
    const auto vi = Open();
    EXPECT_EQ(GetInteger(vi, TARNEX_ATTR_CHANNEL_COUNT, "no channel"), 2);
    EXPECT_EQ(GetInteger(vi, TARNEX_ATTR_SPECIFIC_DRIVER_CLASS_SPEC_MAJOR_VERSION), 3);
    EXPECT_EQ(GetInteger(vi, TARNEX_ATTR_SPECIFIC_DRIVER_CLASS_SPEC_MINOR_VERSION), 0);
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Attribute, SwitchesWithoutEffectAcceptEveryValueAndReadAsBefore) {
    const auto vi = Open();
    for (const ViBoolean value : {ViBoolean{VI_TRUE}, ViBoolean{VI_FALSE}}) {
        EXPECT_EQ(SetBoolean(vi, TARNEX_ATTR_RANGE_CHECK, value), Status(0U));
        EXPECT_EQ(GetBoolean(vi, TARNEX_ATTR_RANGE_CHECK), VI_TRUE);
        for (const ViAttr attribute :
             std::array<ViAttr, 3>{TARNEX_ATTR_CACHE, TARNEX_ATTR_RECORD_COERCIONS, TARNEX_ATTR_INTERCHANGE_CHECK}) {
            EXPECT_EQ(SetBoolean(vi, attribute, value), Status(0U));
            EXPECT_EQ(GetBoolean(vi, attribute), VI_FALSE);
        }
    }
}

TEST_F(Attribute, QueryInstrumentStatusIsSetOnlyByTheValueOne) {
    const auto vi = Open();
    EXPECT_EQ(GetBoolean(vi, TARNEX_ATTR_QUERY_INSTRUMENT_STATUS), VI_FALSE);
    EXPECT_EQ(SetBoolean(vi, TARNEX_ATTR_QUERY_INSTRUMENT_STATUS, VI_TRUE), Status(0U));
    EXPECT_EQ(GetBoolean(vi, TARNEX_ATTR_QUERY_INSTRUMENT_STATUS), VI_TRUE);
    EXPECT_EQ(SetBoolean(vi, TARNEX_ATTR_QUERY_INSTRUMENT_STATUS, 2), Status(0U));
    EXPECT_EQ(GetBoolean(vi, TARNEX_ATTR_QUERY_INSTRUMENT_STATUS), VI_FALSE);
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Attribute, SimulateCannotBeClearedInASessionThatBeganSimulated) {
    const auto vi = Open("Simulate=1");
    EXPECT_EQ(SetBoolean(vi, TARNEX_ATTR_SIMULATE, VI_FALSE), Status(0xBFFA0062));
    EXPECT_EQ(LastError(vi), (DriverError{0xBFFA0062, "The simulation state cannot be changed."}));
    EXPECT_EQ(GetBoolean(vi, TARNEX_ATTR_SIMULATE), VI_TRUE);
    EXPECT_EQ(SetBoolean(vi, TARNEX_ATTR_SIMULATE, VI_TRUE), Status(0U));
    EXPECT_EQ(GetBoolean(vi, TARNEX_ATTR_SIMULATE), VI_TRUE);
}

TEST_F(Attribute, SimulateValueTwoClearsTheFlagAndTheInstrumentStaysTheSimulator) {
    const auto vi = Open("Simulate=1");
    EXPECT_EQ(SetBoolean(vi, TARNEX_ATTR_SIMULATE, 2), Status(0U));
    EXPECT_EQ(GetBoolean(vi, TARNEX_ATTR_SIMULATE), VI_FALSE);
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 1.0)), Status(0U));
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Attribute, SimulateSetInALiveSessionClosesItsConnectionAndKeepsItsIdentity) {
    Reply("*IDN?", "Maker,TX4410,SN42,1.07\n");
    const auto vi = Open();
    EXPECT_EQ(SetBoolean(vi, TARNEX_ATTR_SIMULATE, VI_TRUE), Status(0U));
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U);
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MODEL), (Text{0U, "TX4410"}));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MANUFACTURER), (Text{0U, "Keltor Technology"}));
    EXPECT_EQ(SetBoolean(vi, TARNEX_ATTR_SIMULATE, VI_FALSE), Status(0U));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MANUFACTURER), (Text{0U, "Maker"}));
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 1.0)), Status(0U));
    EXPECT_THAT(TakeWritten(), IsEmpty());
    EXPECT_EQ(SetBoolean(vi, TARNEX_ATTR_SIMULATE, VI_TRUE), Status(0U));
    EXPECT_EQ(Status(TARNEX_close(vi)), Status(0U));
}

TEST_F(Attribute, SimulateSetInALiveSessionIgnoresAConnectionThatDoesNotClose) {
    const auto vi = Open();
    Fail("viClose", 0xBFFF003E);
    EXPECT_EQ(SetBoolean(vi, TARNEX_ATTR_SIMULATE, VI_TRUE), Status(0U));
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(Attribute, VoltageLevelIsReadAndWritten) {
    const auto vi = Open();
    Reply(":SOUR2:VOLT?", "3.250000\n");
    ViReal64 volts = 0.0;
    EXPECT_EQ(Status(TARNEX_GetAttributeViReal64(vi, "OutputChannel2", TARNEX_ATTR_VOLTAGE_LEVEL, &volts)), Status(0U));
    EXPECT_EQ(volts, 3.25);
    EXPECT_EQ(Set(vi, "OutputChannel2", TARNEX_ATTR_VOLTAGE_LEVEL, 5.5), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR2:VOLT?\n", ":SOUR2:VOLT 5.500000\n"));
}

TEST_F(Attribute, OvpEnabledIsReadAndWritten) {
    const auto vi = Open();
    Reply(":SOUR1:VOLT:PROT:STAT?", "ON\n");
    EXPECT_EQ(GetBoolean(vi, TARNEX_ATTR_OVP_ENABLED, "OutputChannel1"), VI_TRUE);
    Reply(":SOUR1:VOLT:PROT:STAT?", "0\n");
    EXPECT_EQ(GetBoolean(vi, TARNEX_ATTR_OVP_ENABLED, "OutputChannel1"), VI_FALSE);
    TakeWritten();
    EXPECT_EQ(SetBoolean(vi, TARNEX_ATTR_OVP_ENABLED, 0xFFFF, "OutputChannel1"), Status(0U));
    EXPECT_EQ(SetBoolean(vi, TARNEX_ATTR_OVP_ENABLED, VI_FALSE, "OutputChannel1"), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR1:VOLT:PROT:STAT ON\n", ":SOUR1:VOLT:PROT:STAT OFF\n"));
}

TEST_F(Attribute, OvpLimitIsReadAndWritten) {
    const auto vi = Open();
    Reply(":SOUR1:VOLT:PROT?", "21.5\n");
    ViReal64 volts = 0.0;
    EXPECT_EQ(Status(TARNEX_GetAttributeViReal64(vi, "OutputChannel1", TARNEX_ATTR_OVP_LIMIT, &volts)), Status(0U));
    EXPECT_EQ(volts, 21.5);
    EXPECT_EQ(Set(vi, "OutputChannel1", TARNEX_ATTR_OVP_LIMIT, 22.0), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR1:VOLT:PROT?\n", ":SOUR1:VOLT:PROT 22.000000\n"));
}

TEST_F(Attribute, CurrentLimitSetsTheProtectionLevelToo) {
    const auto vi = Open();
    Reply(":SOUR2:CURR?", "16.8\n");
    ViReal64 amperes = 0.0;
    EXPECT_EQ(Status(TARNEX_GetAttributeViReal64(vi, "OutputChannel2", TARNEX_ATTR_CURRENT_LIMIT, &amperes)),
              Status(0U));
    EXPECT_EQ(amperes, 16.8);
    EXPECT_EQ(Set(vi, "OutputChannel2", TARNEX_ATTR_CURRENT_LIMIT, 1.5), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR2:CURR?\n", ":SOUR2:CURR 1.500000\n", ":SOUR2:CURR:PROT 1.500000\n"));
}

TEST_F(Attribute, CurrentLimitBehaviorIsReadAndWritten) {
    const auto vi = Open();
    Reply(":SOUR1:CURR:PROT:STAT?", "ON\n");
    EXPECT_EQ(GetInteger(vi, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, "OutputChannel1"), 1);
    Reply(":SOUR1:CURR:PROT:STAT?", "OFF\n");
    EXPECT_EQ(GetInteger(vi, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, "OutputChannel1"), 0);
    TakeWritten();
    for (const ViInt32 behavior : {1, 0}) {
        EXPECT_EQ(
            Status(TARNEX_SetAttributeViInt32(vi, "OutputChannel1", TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, behavior)),
            Status(0U));
    }
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR1:CURR:PROT:STAT ON\n", ":SOUR1:CURR:PROT:STAT OFF\n"));
}

TEST_F(Attribute, CurrentLimitBehaviorRefusesUnknownValuesWithoutSendingAnything) {
    const auto vi = Open();
    for (const ViInt32 behavior : {7, -1, 2}) {
        EXPECT_EQ(Status(TARNEX_SetAttributeViInt32(vi, "OutputChannel1,OutputChannel2",
                                                    TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, behavior)),
                  Status(0xBFFA4217));
        EXPECT_EQ(LastError(vi), (DriverError{0xBFFA4217, "Attribute or function parameter value is invalid (out of "
                                                          "range or not supported)."}));
    }
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Attribute, CurrentLimitBehaviorIgnoresAFailedQueryAndChecksNoStatus) {
    Reply("*ESR?", "0\n");
    const auto vi = Open("QueryInstrStatus=1");
    EXPECT_EQ(GetInteger(vi, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, "OutputChannel1"), 0);
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR1:CURR:PROT:STAT?\n"));
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(Attribute, CurrentLimitBehaviorThrowsOnAReplyThatIsNotABoolean) {
    const auto vi = Open();
    Reply(":SOUR1:CURR:PROT:STAT?", "maybe\n");
    ViInt32 behavior = 77;
    try {
        TARNEX_GetAttributeViInt32(vi, "OutputChannel1", TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, &behavior);
        FAIL() << "no exception";
    } catch (const std::invalid_argument& exception) {
        EXPECT_STREQ(exception.what(), "Visa::parseBool Unknown ret:maybe");
    }
    EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 0);
}

TEST_F(Attribute, LimitsOutsideTheChannelsRangeAreRefusedAtThatChannel) {
    const auto vi = Open();
    EXPECT_EQ(Set(vi, "OutputChannel2", TARNEX_ATTR_OVP_LIMIT, 5.6), Status(0xBFFA4217));
    EXPECT_THAT(TakeWritten(), IsEmpty());
    EXPECT_EQ(Set(vi, "OutputChannel2,OutputChannel1", TARNEX_ATTR_CURRENT_LIMIT, 10.0), Status(0xBFFA4217));
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR2:CURR 10.000000\n", ":SOUR2:CURR:PROT 10.000000\n"));
}

TEST_F(Attribute, OutputEnabledIsReadAndWritten) {
    const auto vi = Open();
    Reply(":OUTP:STAT? CH2", "1\n");
    EXPECT_EQ(GetBoolean(vi, TARNEX_ATTR_OUTPUT_ENABLED, "OutputChannel2"), VI_TRUE);
    TakeWritten();
    EXPECT_EQ(SetBoolean(vi, TARNEX_ATTR_OUTPUT_ENABLED, VI_TRUE, "OutputChannel2"), Status(0U));
    EXPECT_EQ(SetBoolean(vi, TARNEX_ATTR_OUTPUT_ENABLED, VI_FALSE, "OutputChannel2"), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre(":OUTP:STAT CH2,ON\n", ":OUTP:STAT CH2,OFF\n"));
}

TEST_F(Attribute, GettersOfChannelsTakeExactlyOneChannel) {
    const auto vi = Open();
    ViReal64 volts = 0.0;
    EXPECT_EQ(
        Status(TARNEX_GetAttributeViReal64(vi, "OutputChannel1,OutputChannel2", TARNEX_ATTR_VOLTAGE_LEVEL, &volts)),
        Status(0xBFFA0066));
    EXPECT_EQ(LastError(vi),
              (DriverError{0xBFFA0066, "The repeated capability selector is badly-formed.  Only a single repeated "
                                       "capability identifier can be specified for the current operation."}));
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Attribute, SettersOfChannelsTakeSelectors) {
    const auto vi = Open();
    EXPECT_EQ(Set(vi, "OutputChannel2,OutputChannel1", TARNEX_ATTR_VOLTAGE_LEVEL, 1.0), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR2:VOLT 1.000000\n", ":SOUR1:VOLT 1.000000\n"));
}

TEST_F(Attribute, GettersOfChannelsCheckTheInstrumentsStatusAfterSuccess) {
    Reply("*ESR?", "0\n");
    const auto vi = Open("QueryInstrStatus=1");
    Reply("*ESR?", "16\n");
    Reply(":SOUR1:VOLT?", "1.0\n");
    ViReal64 volts = 0.0;
    EXPECT_EQ(Status(TARNEX_GetAttributeViReal64(vi, "OutputChannel1", TARNEX_ATTR_VOLTAGE_LEVEL, &volts)),
              Status(0xBFFA0001));
    EXPECT_EQ(volts, 1.0);
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR1:VOLT?\n", "*ESR?\n"));

    Reply(":SOUR1:VOLT:PROT:STAT?", "ON\n");
    Reply(":OUTP:STAT? CH1", "ON\n");
    for (const auto attribute : std::initializer_list<ViAttr>{TARNEX_ATTR_OVP_ENABLED, TARNEX_ATTR_OUTPUT_ENABLED}) {
        ViBoolean on = VI_FALSE;
        EXPECT_EQ(Status(TARNEX_GetAttributeViBoolean(vi, "OutputChannel1", attribute, &on)), Status(0xBFFA0001));
        EXPECT_EQ(on, VI_TRUE);
        EXPECT_EQ(TakeWritten().back(), "*ESR?\n");
    }
}

TEST_F(Attribute, GettersOfChannelsRecordAFailedQueryAndKeepTheValue) {
    const auto vi = Open();
    ViReal64 volts = 1.25;
    ViBoolean on = 7;
    EXPECT_EQ(Status(TARNEX_GetAttributeViReal64(vi, "OutputChannel1", TARNEX_ATTR_VOLTAGE_LEVEL, &volts)),
              Status(0xBFFA4214));
    EXPECT_EQ(Status(TARNEX_GetAttributeViBoolean(vi, "OutputChannel1", TARNEX_ATTR_OUTPUT_ENABLED, &on)),
              Status(0xBFFA4214));
    EXPECT_EQ(volts, 1.25);
    EXPECT_EQ(on, 7);
    EXPECT_EQ(doubles::TheSessionService().Recorded().size(), 2U);
}

TEST_F(Attribute, GettersOfChannelsReturnTheSocketsPositiveStatusWithTheValueWritten) {
    const auto vi = OpenOn(kSocketResource);
    Reply(":SOUR1:VOLT?", "1.5\n");
    Reply(":OUTP:STAT? CH1", "ON\n");
    ViReal64 volts = 0.0;
    ViBoolean on = 7;
    EXPECT_EQ(Status(TARNEX_GetAttributeViReal64(vi, "OutputChannel1", TARNEX_ATTR_VOLTAGE_LEVEL, &volts)),
              Status(0x3FFF0005));
    EXPECT_EQ(Status(TARNEX_GetAttributeViBoolean(vi, "OutputChannel1", TARNEX_ATTR_OUTPUT_ENABLED, &on)),
              Status(0x3FFF0005));
    EXPECT_EQ(volts, 1.5);
    EXPECT_EQ(on, VI_TRUE);
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

} // namespace
} // namespace contract
