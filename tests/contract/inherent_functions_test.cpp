#include <array>
#include <cstring>

#include "tests/contract/driver_fixture.h"

namespace contract {
namespace {

class InherentFunctions : public DriverTest {
  protected:
    static std::string Message(ViSession vi, std::uint32_t code) {
        std::array<ViChar, 256> message{};
        message.fill('#');
        message.back() = '\0';
        EXPECT_EQ(Status(TARNEX_error_message(vi, static_cast<ViStatus>(code), message.data())), Status(0x00000000))
            << std::hex << code;
        return message.data();
    }
};

TEST_F(InherentFunctions, ResetSendsTheCommonCommandAndChecksNoStatus) {
    Reply("*ESR?", "0\n");
    const auto vi = Open("QueryInstrStatus=1");
    EXPECT_EQ(Status(TARNEX_reset(vi)), Status(0x00000000));
    EXPECT_EQ(Status(TARNEX_ResetWithDefaults(vi)), Status(0x00000000));
    EXPECT_THAT(TakeWritten(), ElementsAre("*RST\n", "*RST\n"));
}

TEST_F(InherentFunctions, ResetRecordsAFailedExchange) {
    const auto vi = Open();
    Fail("viWrite", 0xBFFF003E);
    EXPECT_EQ(Status(TARNEX_reset(vi)), Status(0xBFFA4214));
    EXPECT_EQ(LastError(vi), (DriverError{0xBFFA4214, "I/O error."}));
}

TEST_F(InherentFunctions, SelfTestIsNotSupportedAndWritesNothing) {
    const auto vi = Open();
    ViInt16 result = 77;
    std::array<ViChar, 256> message{"as it was"};
    EXPECT_EQ(Status(TARNEX_self_test(vi, &result, message.data())), Status(0x3FFA0067));
    EXPECT_EQ(result, 77);
    EXPECT_STREQ(message.data(), "as it was");
    EXPECT_THAT(TakeWritten(), IsEmpty());
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(InherentFunctions, SelfTestNamesItsFirstNullPointer) {
    const auto vi = Open();
    ViInt16 result = 0;
    std::array<ViChar, 256> message{};
    EXPECT_EQ(Status(TARNEX_self_test(vi, nullptr, message.data())), Status(0xBFFA0058));
    EXPECT_EQ(LastError(vi).description,
              "Null pointer passed for function 'TARNEX_self_test', parameter 'TestResult'.");
    EXPECT_EQ(Status(TARNEX_self_test(vi, &result, nullptr)), Status(0xBFFA0058));
    EXPECT_EQ(LastError(vi).description,
              "Null pointer passed for function 'TARNEX_self_test', parameter 'TestMessage'.");
    TARNEX_self_test(vi, nullptr, nullptr);
    EXPECT_EQ(LastError(vi).description,
              "Null pointer passed for function 'TARNEX_self_test', parameter 'TestResult'.");
}

TEST_F(InherentFunctions, ErrorQueryReturnsCodeAndTextIncludingTheQuotes) {
    const auto vi = Open();
    ViInt32 code = 0;
    std::array<ViChar, 1024> message{};
    Reply(":SYSTem:ERRor?", "-113,\"Undefined header\"\n");
    EXPECT_EQ(Status(TARNEX_error_query(vi, &code, message.data())), Status(0x00000000));
    EXPECT_EQ(code, -113);
    EXPECT_STREQ(message.data(), "\"Undefined header\"");
    EXPECT_THAT(TakeWritten(), ElementsAre(":SYSTem:ERRor?\n"));
}

TEST_F(InherentFunctions, ErrorQueryReturnsZeroOverASocketToo) {
    const auto vi = OpenOn(kSocketResource);
    ViInt32 code = 5;
    std::array<ViChar, 1024> message{};
    Reply(":SYSTem:ERRor?", "0,\"No error\"\n");
    EXPECT_EQ(Status(TARNEX_error_query(vi, &code, message.data())), Status(0x00000000));
    EXPECT_EQ(code, 0);
    EXPECT_STREQ(message.data(), "\"No error\"");
}

TEST_F(InherentFunctions, ErrorQueryKeepsTheBlankAfterTheCommaAndDropsALineEnd) {
    const auto vi = Open();
    ViInt32 code = 0;
    std::array<ViChar, 1024> message{};
    Reply(":SYSTem:ERRor?", "+12, text\t\r\n");
    EXPECT_EQ(Status(TARNEX_error_query(vi, &code, message.data())), Status(0x00000000));
    EXPECT_EQ(code, 12);
    EXPECT_STREQ(message.data(), " text");
}

TEST_F(InherentFunctions, ErrorQueryCannotRecoverFromAReplyWithoutExactlyTwoFields) {
    const auto vi = Open();
    for (const auto* reply : {"-113,\"one, two\"\n", "-113\n", "\n", "-113,\n"}) {
        ViInt32 code = 5;
        std::array<ViChar, 1024> message{"as it was"};
        Reply(":SYSTem:ERRor?", reply);
        EXPECT_EQ(Status(TARNEX_error_query(vi, &code, message.data())), Status(0xBFFA0000)) << reply;
        EXPECT_EQ(LastError(vi), (DriverError{0xBFFA0000, "Failure cannot recover."}));
        EXPECT_EQ(code, 5);
        EXPECT_STREQ(message.data(), "as it was");
    }
}

TEST_F(InherentFunctions, ErrorQueryThrowsOnACodeThatIsNotANumber) {
    const auto vi = Open();
    ViInt32 code = 0;
    std::array<ViChar, 1024> message{};
    Reply(":SYSTem:ERRor?", "none,text\n");
    EXPECT_THROW(TARNEX_error_query(vi, &code, message.data()), std::invalid_argument);
    Reply(":SYSTem:ERRor?", "2147483648,text\n");
    EXPECT_THROW(TARNEX_error_query(vi, &code, message.data()), std::out_of_range);
    EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 0);
}

TEST_F(InherentFunctions, ErrorQueryNamesItsFirstNullPointer) {
    const auto vi = Open();
    ViInt32 code = 0;
    std::array<ViChar, 256> message{};
    EXPECT_EQ(Status(TARNEX_error_query(vi, nullptr, message.data())), Status(0xBFFA0058));
    EXPECT_EQ(LastError(vi).description,
              "Null pointer passed for function 'TARNEX_error_query', parameter 'ErrorCode'.");
    EXPECT_EQ(Status(TARNEX_error_query(vi, &code, nullptr)), Status(0xBFFA0058));
    EXPECT_EQ(LastError(vi).description,
              "Null pointer passed for function 'TARNEX_error_query', parameter 'ErrorMessage'.");
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(InherentFunctions, ErrorQueryRecordsAFailedExchangeAndWritesNothing) {
    const auto vi = Open();
    ViInt32 code = 5;
    std::array<ViChar, 1024> message{"as it was"};
    EXPECT_EQ(Status(TARNEX_error_query(vi, &code, message.data())), Status(0xBFFA4214));
    EXPECT_EQ(LastError(vi), (DriverError{0xBFFA4214, "I/O error."}));
    EXPECT_EQ(code, 5);
    EXPECT_STREQ(message.data(), "as it was");
}

TEST_F(InherentFunctions, ErrorMessageReturnsTheTablesTextsWithTheirPlaceholders) {
    const std::vector<std::pair<std::uint32_t, const char*>> messages{
        {0xBFFA4214, "I/O error."},
        {0xBFFA4215, "I/O timeout error."},
        {0xBFFA0000, "Failure cannot recover."},
        {0xBFFA0001, "Instrument error detected.  Use ErrorQuery() to determine the error(s)."},
        {0xBFFA0002, "Cannot open file."},
        {0xBFFA0003, "Error reading file."},
        {0xBFFA0004, "Error writing file."},
        {0xBFFA000B, "The pathname is invalid."},
        {0xBFFA000C, "Attribute ID '%s' not recognized."},
        {0xBFFA000D, "Attribute '%s' is read-only."},
        {0xBFFA000E, "Attribute '%s' is write-only."},
        {0xBFFA0010, "Invalid value '%s' for function '%s', parameter '%s'."},
        {0xBFFA0011, "Does not support this class-compliant feature: function '%s'"},
        {0xBFFA0012, "Does not support this class-compliant feature: attribute '%s'."},
        {0xBFFA0013, "Does not support this class-compliant feature:  Enumeration value '%s' passed as the value for "
                     "parameter '%s' in function '%s'."},
        {0xBFFA0015, "%sAttribute%s called for attribute '%s' of type '%s'."},
        {0xBFFA001D, "A connection to the instrument has not been established."},
        {0xBFFA0020, "Unknown channel name."},
        {0xBFFA0023, "Too many files are open."},
        {0xBFFA0044, "A channel name is required."},
        {0xBFFA0049, "The option string is missing an option name."},
        {0xBFFA004A, "The option string is missing an option value."},
        {0xBFFA004B, "The '%s' name in the option string is unknown."},
        {0xBFFA004C, "The '%s' value in the option string is unknown."},
        {0xBFFA0056, "Could not allocate necessary memory."},
        {0xBFFA0057, "Operation in progress."},
        {0xBFFA0058, "Null pointer passed for function '%s', parameter '%s'."},
        {0xBFFA0059, "Unexpected response from instrument."},
        {0xBFFA005B, "File not found."},
        {0xBFFA005C, "Invalid file format."},
        {0xBFFA005D, "The instrument status is not available."},
        {0xBFFA005E, "Instrument ID query failed."},
        {0xBFFA005F, "Instrument reset failed."},
        {0xBFFA0060, "Unknown resource."},
        {0xBFFA0061, "The driver is already initialized."},
        {0xBFFA0062, "The simulation state cannot be changed."},
        {0xBFFA0063, "The number of levels in the selector is not valid for the '%s' repeated capability."},
        {0xBFFA0064, "The range '%s' is not valid for the repeated capability '%s'."},
        {0xBFFA0065, "Unknown name in selector."},
        {0xBFFA0066, "The repeated capability selector is badly-formed."},
        {0xBFFA0067, "Unknown physical repeated capability selector."},
        {0xBFFA1190, "Invalid session handle."},
        {0xBFFA4216, "The operation (attribute or function) is not supported."},
        {0xBFFA4217, "Attribute or function parameter value is invalid (out of range or not supported)."},
        {0xBFFA1001, "The trigger source is not set to software trigger."},
        {0x00000000, "Success."},
        {0x3FFA0065, "ID Query is not supported by this instrument."},
        {0x3FFA0066, "Reset is not supported by this instrument."},
        {0x3FFA0067, "Self test is not supported by this instrument."},
        {0x3FFA0068, "Error query is not supported by this instrument."},
        {0x3FFA0069, "Firmware revision query is not supported by this instrument."},
    };
    const auto vi = Open();
    for (const auto& [code, text] : messages) {
        EXPECT_EQ(Message(vi, code), text);
        EXPECT_EQ(Message(VI_NULL, code), text);
    }
}

TEST_F(InherentFunctions, ErrorMessageTakesNoLockAndLooksUpNoHandle) {
    Message(12345, 0);
    EXPECT_THAT(doubles::TheScript().Calls(), IsEmpty());
}

TEST_F(InherentFunctions, ErrorMessageRecordsAnUnknownCodeOnTheSession) {
    const auto vi = Open();
    std::array<ViChar, 256> message{"as it was"};
    EXPECT_EQ(Status(TARNEX_error_message(vi, 12345, message.data())), Status(0xBFFA0010));
    EXPECT_STREQ(message.data(), "as it was");
    EXPECT_EQ(
        LastError(vi),
        (DriverError{0xBFFA0010, "Invalid value '12345' for function 'error_message', parameter 'ErrorCode'.  The "
                                 "error code supplied is not defined by the driver."}));
    TARNEX_error_message(vi, static_cast<ViStatus>(0xBFFF0015), message.data());
    EXPECT_EQ(LastError(vi).description,
              "Invalid value '-1073807339' for function 'error_message', parameter 'ErrorCode'.  The error code "
              "supplied is not defined by the driver.");
}

TEST_F(InherentFunctions, ErrorMessageDoesNotRecordAnUnknownCodeWithoutASession) {
    std::array<ViChar, 256> message{"as it was"};
    EXPECT_EQ(Status(TARNEX_error_message(VI_NULL, 12345, message.data())), Status(0xBFFA0010));
    EXPECT_STREQ(message.data(), "as it was");
    EXPECT_THAT(doubles::TheScript().Calls(), IsEmpty());
}

TEST_F(InherentFunctions, ErrorMessageRefusesANullBufferWithAndWithoutASession) {
    const auto vi = Open();
    const DriverError expected{0xBFFA0058,
                               "Null pointer passed for function 'TARNEX_error_message', parameter 'ErrorMessage'."};
    EXPECT_EQ(Status(TARNEX_error_message(vi, 0, nullptr)), Status(0xBFFA0058));
    EXPECT_EQ(LastError(vi), expected);
    LastError(VI_NULL);
    EXPECT_EQ(Status(TARNEX_error_message(VI_NULL, 0, nullptr)), Status(0xBFFA0058));
    EXPECT_EQ(LastError(VI_NULL), expected);
}

TEST_F(InherentFunctions, RevisionQueryReturnsTheFirmwareReadAtTheOpening) {
    const auto vi = Open();
    std::array<ViChar, 256> driver{};
    std::array<ViChar, 256> instrument{};
    EXPECT_EQ(Status(TARNEX_revision_query(vi, driver.data(), instrument.data())), Status(0x00000000));
    EXPECT_STREQ(driver.data(), "1.0.0.0");
    EXPECT_STREQ(instrument.data(), "1.07");
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(InherentFunctions, RevisionQueryReturnsTheDriversRevisionInSimulation) {
    const auto vi = Open("Simulate=1");
    std::array<ViChar, 256> driver{};
    std::array<ViChar, 256> instrument{};
    EXPECT_EQ(Status(TARNEX_revision_query(vi, driver.data(), instrument.data())), Status(0x00000000));
    EXPECT_STREQ(driver.data(), "1.0.0.0");
    EXPECT_STREQ(instrument.data(), "Sim1.0.0.0");
}

TEST_F(InherentFunctions, RevisionQueryFollowsTheCurrentSimulateFlag) {
    const auto vi = Open();
    std::array<ViChar, 256> instrument{};
    TARNEX_SetAttributeViBoolean(vi, "", TARNEX_ATTR_SIMULATE, VI_TRUE);
    TARNEX_revision_query(vi, nullptr, instrument.data());
    EXPECT_STREQ(instrument.data(), "Sim1.0.0.0");
    TARNEX_SetAttributeViBoolean(vi, "", TARNEX_ATTR_SIMULATE, VI_FALSE);
    TARNEX_revision_query(vi, nullptr, instrument.data());
    EXPECT_STREQ(instrument.data(), "1.07");
}

TEST_F(InherentFunctions, RevisionQuerySkipsANullBuffer) {
    const auto vi = Open();
    std::array<ViChar, 256> text{};
    EXPECT_EQ(Status(TARNEX_revision_query(vi, nullptr, nullptr)), Status(0x00000000));
    EXPECT_EQ(Status(TARNEX_revision_query(vi, nullptr, text.data())), Status(0x00000000));
    EXPECT_STREQ(text.data(), "1.07");
}

TEST_F(InherentFunctions, RevisionQueryCutsAFirmwareTextAt255Characters) {
    Reply("*IDN?", "Keltor Technology,TX4410,SN42," + std::string(300, 'F') + "\n");
    const auto vi = Open();
    std::array<ViChar, 300> text{};
    text.fill('#');
    EXPECT_EQ(Status(TARNEX_revision_query(vi, nullptr, text.data())), Status(0x00000000));
    EXPECT_EQ(std::string(text.data()), std::string(255, 'F'));
    EXPECT_EQ(text[256], '#');
}

TEST_F(InherentFunctions, DisableSwitchesAllOutputsOff) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEX_Disable(vi)), Status(0x00000000));
    EXPECT_THAT(TakeWritten(), ElementsAre(":OUTPut:STATe ALL,OFF\n"));
}

TEST_F(InherentFunctions, DisableRecordsAFailedExchange) {
    const auto vi = Open();
    Fail("viWrite", 0xBFFF003E);
    EXPECT_EQ(Status(TARNEX_Disable(vi)), Status(0xBFFA4214));
    EXPECT_EQ(LastError(vi), (DriverError{0xBFFA4214, "I/O error."}));
}

TEST_F(InherentFunctions, DisableOfASimulatedInstrumentSucceedsEvenAfterTheFlagIsCleared) {
    const auto vi = Open();
    TARNEX_SetAttributeViBoolean(vi, "", TARNEX_ATTR_SIMULATE, VI_TRUE);
    TARNEX_SetAttributeViBoolean(vi, "", TARNEX_ATTR_SIMULATE, VI_FALSE);
    TakeWritten();
    EXPECT_EQ(Status(TARNEX_Disable(vi)), Status(0x00000000));
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(InherentFunctions, InvalidateAllAttributesSendsNothing) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEX_InvalidateAllAttributes(vi)), Status(0x00000000));
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(InherentFunctions, GetErrorForwardsToTheServiceAndClearsWhatItReads) {
    const auto vi = Open();
    TARNEX_ConfigureVoltageLevel(vi, "OutputChannel9", 1.0);
    doubles::TheScript().ForgetCalls();
    ViStatus code = VI_SUCCESS;
    std::array<ViChar, 8> cut{};
    EXPECT_EQ(Status(TARNEX_GetError(vi, &code, 0, nullptr)), Status(136U)); // 135 characters and the zero
    EXPECT_EQ(Status(TARNEX_GetError(vi, &code, 8, cut.data())), Status(136U));
    EXPECT_EQ(Status(code), Status(0xBFFA0067));
    EXPECT_STREQ(cut.data(), "Unknown");
    EXPECT_THAT(doubles::TheScript().Calls(), ElementsAre("IviSession_GetError", "IviSession_GetError"));
    EXPECT_EQ(LastError(vi), (DriverError{0x00000000, ""}));
}

TEST_F(InherentFunctions, ClearErrorForwardsToTheService) {
    const auto vi = Open();
    TARNEX_ConfigureVoltageLevel(vi, "OutputChannel9", 1.0);
    EXPECT_EQ(Status(TARNEX_ClearError(vi)), Status(0x00000000));
    EXPECT_EQ(LastError(vi), (DriverError{0x00000000, ""}));
    EXPECT_EQ(LastError(VI_NULL).code, Status(0xBFFA0067));
    EXPECT_EQ(Status(TARNEX_ClearError(VI_NULL)), Status(0x00000000));
    EXPECT_EQ(LastError(VI_NULL), (DriverError{0x00000000, ""}));
}

} // namespace
} // namespace contract
