#include "tests/contract/driver_fixture.h"

namespace contract {
namespace {

class Initialization : public DriverTest {};

constexpr std::uint32_t kIoError = 0xBFFA4214;

TEST_F(Initialization, OfARealInstrumentReadsItsIdentityAndNothingElse) {
    ViSession vi = VI_NULL;
    EXPECT_EQ(TryOpen("", &vi), Status(0x00000000));
    EXPECT_NE(vi, 0U);
    EXPECT_THAT(TakeWritten(), ElementsAre("*IDN?\n"));
    EXPECT_THAT(doubles::TheVisa().Opened(), ElementsAre(doubles::OpenedResource{kUsbResource, 0, 2000}));
}

TEST_F(Initialization, TakesNoLock) {
    TryOpen("QueryInstrStatus=0");
    EXPECT_EQ(doubles::TheScript().Count("IviSession_Lock"), 0U);
}

TEST_F(Initialization, WithoutOptionsIsTheSameAsWithAnEmptyOptionString) {
    ViSession vi = VI_NULL;
    EXPECT_EQ(Status(TARNEX_init(const_cast<ViRsrc>(kUsbResource), VI_FALSE, VI_FALSE, &vi)), Status(0x00000000));
    EXPECT_THAT(TakeWritten(), ElementsAre("*IDN?\n"));
    EXPECT_EQ(Status(TARNEX_close(vi)), Status(0x00000000));
}

TEST_F(Initialization, WithANullHandlePointerCreatesAndRecordsNothing) {
    EXPECT_EQ(Status(TARNEX_init(const_cast<ViRsrc>(kUsbResource), VI_FALSE, VI_FALSE, nullptr)), Status(0xBFFA0058));
    EXPECT_EQ(Status(TARNEX_InitWithOptions(const_cast<ViRsrc>(kUsbResource), VI_FALSE, VI_FALSE, "", nullptr)),
              Status(0xBFFA0058));
    EXPECT_THAT(doubles::TheScript().Calls(), IsEmpty());
}

TEST_F(Initialization, TreatsNullTextsAsEmpty) {
    ViSession vi = VI_NULL;
    EXPECT_EQ(Status(TARNEX_InitWithOptions(nullptr, VI_FALSE, VI_FALSE, nullptr, &vi)), Status(0x00000000));
    EXPECT_THAT(doubles::TheVisa().Opened(), ElementsAre(doubles::OpenedResource{"", 0, 2000}));
    EXPECT_EQ(Status(TARNEX_close(vi)), Status(0x00000000));
}

TEST_F(Initialization, WithoutAHandleReturnsTheServicesStatusUnrecorded) {
    Fail("IviSession_New", 0xBFFA1198);
    ViSession vi = 7;
    EXPECT_EQ(TryOpen("", &vi), Status(0xBFFA1198));
    EXPECT_EQ(vi, 0U);
    EXPECT_THAT(doubles::TheScript().Calls(), ElementsAre("IviSession_New"));
}

TEST_F(Initialization, ThatCannotBindItsSessionReturnsTheServicesStatusAndKeepsTheHandleOpen) {
    Fail("IviSession_SetDataPtr", 0xBFFA11A0);
    ViSession vi = 7;
    EXPECT_EQ(TryOpen("", &vi), Status(0xBFFA11A0));
    EXPECT_EQ(vi, 0U);
    EXPECT_THAT(doubles::TheScript().Calls(), ElementsAre("IviSession_New", "IviSession_SetDataPtr"));
    EXPECT_EQ(doubles::TheSessionService().OpenHandles(), 1U);
}

TEST_F(Initialization, ThatFailsReturnsNoHandleAndDoesNotDisposeOfTheServicesHandle) {
    Fail("viOpen", 0xBFFF0011);
    ViSession vi = 7;
    EXPECT_EQ(TryOpen("", &vi), Status(kIoError));
    EXPECT_EQ(vi, 0U);
    EXPECT_EQ(doubles::TheScript().Count("IviSession_Dispose"), 0U);
    EXPECT_EQ(doubles::TheSessionService().OpenHandles(), 1U);
}

TEST_F(Initialization, ThatFailsRecordsItsDescriptionForTheThread) {
    Fail("viOpen", 0xBFFF0011);
    TryOpen("");
    EXPECT_EQ(LastError(VI_NULL),
              (DriverError{kIoError, "I/O error.  Insufficient location information or resource not present in the "
                                     "system"}));
    EXPECT_THAT(doubles::TheSessionService().Recorded(), testing::SizeIs(1));
}

TEST_F(Initialization, ReadsTheDataPointerAgainAfterSuccessAndFailsWithThatStatusLeavingTheHandleValid) {
    Fail("IviSession_GetDataPtr", 0xBFFA1190);
    ViSession vi = VI_NULL;
    EXPECT_EQ(TryOpen("", &vi), Status(0xBFFA1190));
    EXPECT_NE(vi, 0U);
    EXPECT_EQ(Status(TARNEX_close(vi)), Status(0x00000000));
}

TEST_F(Initialization, FailsWhenTheIdentityCannotBeRead) {
    Fail("viRead", 0xBFFF0015);
    EXPECT_EQ(TryOpen(""), Status(kIoError));
}

TEST_F(Initialization, FailsWhenTheIdentityQueryCannotBeSent) {
    Fail("viWrite", 0xBFFF003E);
    EXPECT_EQ(TryOpen(""), Status(kIoError));
}

TEST_F(Initialization, FailsOnAnIdentityWithoutExactlyFourFields) {
    Reply("*IDN?", "Keltor Technology,TX4410,SN42\n");
    EXPECT_EQ(TryOpen(""), Status(kIoError));
    Reply("*IDN?", "Keltor Technology,TX4410,SN42,1.07,extra\n");
    EXPECT_EQ(TryOpen(""), Status(kIoError));
}

TEST_F(Initialization, WithIdQueryAcceptsEachSupportedModel) {
    for (const auto* model : {"TX4410", "TX4520"}) {
        Reply("*IDN?", std::string("Keltor Technology,") + model + ",SN42,1.07\n");
        EXPECT_EQ(TryOpen("", nullptr, VI_TRUE), Status(0x00000000)) << model;
    }
}

TEST_F(Initialization, WithIdQueryRefusesAnyOtherModelWithoutNamingIt) {
    for (const auto* model : {"TX6300", "tx4410", "TX4410 ", "TX44", ""}) {
        Reply("*IDN?", std::string("Keltor Technology,") + model + ",SN42,1.07\n");
        ViSession vi = 7;
        EXPECT_EQ(TryOpen("", &vi, VI_TRUE), Status(0xBFFA005E)) << model;
        EXPECT_EQ(vi, 0U);
        EXPECT_EQ(LastError(VI_NULL), (DriverError{0xBFFA005E, "Instrument ID query failed."}));
        EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U);
    }
}

TEST_F(Initialization, TreatsAnIdQueryArgumentOfTwoAsFalse) {
    Reply("*IDN?", "Keltor Technology,TX9999,SN42,1.07\n");
    EXPECT_EQ(TryOpen("", nullptr, 2), Status(0x00000000));
}

TEST_F(Initialization, WithResetSendsTheResetLast) {
    EXPECT_EQ(TryOpen("QueryInstrStatus=1", nullptr, VI_FALSE, VI_TRUE), Status(0xBFFA4214)); // "*ESR?" unanswered
    doubles::TheVisa().ForgetWritten();
    Reply("*ESR?", "0\n");
    EXPECT_EQ(TryOpen("QueryInstrStatus=1", nullptr, VI_FALSE, VI_TRUE), Status(0x00000000));
    EXPECT_THAT(TakeWritten(), ElementsAre("*IDN?\n", "*CLS\n", "*ESR?\n", "*RST\n"));
}

TEST_F(Initialization, ResetsForEveryNonZeroResetArgument) {
    EXPECT_EQ(TryOpen("", nullptr, VI_FALSE, 2), Status(0x00000000));
    EXPECT_THAT(TakeWritten(), ElementsAre("*IDN?\n", "*RST\n"));
}

TEST_F(Initialization, IgnoresAResetThatFails) {
    Fail("viWrite", 0xBFFF003E, 2);
    ViSession vi = VI_NULL;
    EXPECT_EQ(TryOpen("", &vi, VI_FALSE, VI_TRUE), Status(0x00000000));
    EXPECT_NE(vi, 0U);
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(Initialization, WithStatusCheckingFailsOnAnErrorThatTheInstrumentReports) {
    Reply("*ESR?", "32\n");
    ViSession vi = 7;
    EXPECT_EQ(TryOpen("QueryInstrStatus=1", &vi), Status(0xBFFA0001));
    EXPECT_EQ(vi, 0U);
    EXPECT_EQ(LastError(VI_NULL),
              (DriverError{0xBFFA0001, "Instrument error detected.  Use ErrorQuery() to determine the error(s)."}));
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U);
}

TEST_F(Initialization, WithStatusCheckingRecordsAFailingClearBareAndDisconnects) {
    Fail("viWrite", 0xBFFF003E, 2);
    EXPECT_EQ(TryOpen("QueryInstrStatus=1"), Status(kIoError));
    EXPECT_EQ(LastError(VI_NULL), (DriverError{kIoError, "I/O error."}));
    EXPECT_THAT(TakeWritten(), ElementsAre("*IDN?\n"));
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U);
}

TEST_F(Initialization, UndoesEverythingWhenAnExceptionLeavesIt) {
    Reply("*ESR?", "no number\n");
    ViSession vi = 7;
    EXPECT_THROW(
        TARNEX_InitWithOptions(const_cast<ViRsrc>(kUsbResource), VI_FALSE, VI_FALSE, "QueryInstrStatus=1", &vi),
        std::invalid_argument);
    EXPECT_EQ(vi, 0U);
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U);
    EXPECT_EQ(doubles::TheSessionService().OpenHandles(), 1U);
}

TEST_F(Initialization, InSimulationTouchesNoVisa) {
    EXPECT_EQ(TryOpen("Simulate=1"), Status(0x00000000));
    EXPECT_EQ(doubles::TheScript().Count("viOpenDefaultRM"), 0U);
}

TEST_F(Initialization, InSimulationFailsAnIdQueryBecauseTheSimulatorIsNotASupportedModel) {
    EXPECT_EQ(TryOpen("Simulate=1, DriverSetup=Model:TX4520", nullptr, VI_TRUE), Status(0xBFFA005E));
}

TEST_F(Initialization, RefusesInterchangeChecking) {
    EXPECT_EQ(TryOpen("InterchangeCheck=1"), Status(0xBFFA004C));
    EXPECT_EQ(LastError(VI_NULL),
              (DriverError{0xBFFA004C, "The 'True' value in the option string is unknown.  Interchange checking is not "
                                       "supported by the driver."}));
    EXPECT_EQ(doubles::TheScript().Count("viOpenDefaultRM"), 0U);
}

} // namespace
} // namespace contract
