#include "framework/driver_session.h"

#include "tests/unit/framework/framework_fixture.h"

namespace unit {
namespace {

class Session : public FrameworkTest {
  protected:
    Status Initialize(const char* optionString = "", bool idQuery = false) {
        return Status(session_.Initialize("resource", idQuery, false, optionString));
    }

    RecordedError Recorded(std::uint32_t code, const std::string& description) const {
        return {session_.Handle(), code, description};
    }

    TestSession session_{NewHandle()};
};

TEST_F(Session, ConnectsThenIdentifiesItself) {
    EXPECT_EQ(Initialize(), Status(0U));
    EXPECT_THAT(TakeCalls(), ElementsAre("connect", "identify"));
    EXPECT_EQ(session_.InstrumentManufacturer(), "Maker");
    EXPECT_EQ(session_.InstrumentModel(), "M1");
    EXPECT_EQ(session_.InstrumentSerialNumber(), "S");
    EXPECT_EQ(session_.InstrumentFirmwareRevision(), "F");
    EXPECT_EQ(session_.IoResourceDescriptor(), "resource");
    EXPECT_EQ(session_.LogicalName(), "");
}

TEST_F(Session, WithStatusCheckingClearsTheStatusInBetween) {
    EXPECT_EQ(Initialize("QueryInstrStatus=1"), Status(0U));
    EXPECT_THAT(TakeCalls(), ElementsAre("connect", "clear", "identify"));
}

TEST_F(Session, ReturnsTheStatusOfTheIdentification) {
    Let("connect", 0x3FFF0001);
    Let("clear", 0x3FFF0002);
    Let("identify", 0x3FFF0005);
    EXPECT_EQ(Initialize("QueryInstrStatus=1"), Status(0x3FFF0005));
}

TEST_F(Session, DisconnectsWhatWasConnectedWhenALaterStepFails) {
    Let("connect", 0xBFFA4214);
    EXPECT_EQ(Initialize(), Status(0xBFFA4214));
    EXPECT_THAT(TakeCalls(), ElementsAre("connect"));
    Let("connect", 0);
    Let("clear", 0xBFFA4215);
    EXPECT_EQ(Initialize("QueryInstrStatus=1"), Status(0xBFFA4215));
    EXPECT_THAT(TakeCalls(), ElementsAre("connect", "clear", "disconnect"));
    Let("clear", 0);
    Let("identify", 0xBFFA4216);
    Let("disconnect", 0xBFFA4214);
    EXPECT_EQ(Initialize(), Status(0xBFFA4216));
    EXPECT_THAT(TakeCalls(), ElementsAre("connect", "clear", "identify", "disconnect"));
    EXPECT_THAT(TakeRecorded(), IsEmpty()); // the steps record errors themselves
}

TEST_F(Session, WithIdQueryAcceptsExactlyTheListedModels) {
    for (const auto* model : {"M1", "M2"}) {
        TheSessions().model = model;
        EXPECT_EQ(Initialize("", true), Status(0U)) << model;
    }
    TakeCalls();
    for (const auto* model : {"M3", "m1", "M1 ", "M1,M2", "M", ""}) {
        TheSessions().model = model;
        EXPECT_EQ(Initialize("", true), Status(0xBFFA005E)) << model;
        EXPECT_THAT(TakeRecorded(), ElementsAre(Recorded(0xBFFA005E, "Instrument ID query failed.")));
        EXPECT_THAT(TakeCalls(), ElementsAre("connect", "identify", "disconnect")) << model;
    }
}

TEST_F(Session, RefusesInterchangeCheckingUnlessTheDriverHasIt) {
    EXPECT_EQ(Initialize("InterchangeCheck=1"), Status(0xBFFA004C));
    EXPECT_THAT(TakeRecorded(),
                ElementsAre(Recorded(0xBFFA004C, "The 'True' value in the option string is unknown.  Interchange "
                                                 "checking is not supported by the driver.")));
    EXPECT_THAT(TakeCalls(), IsEmpty());
    TheSessions().identity.checksInterchangeability = true;
    EXPECT_EQ(Initialize("InterchangeCheck=1"), Status(0U));
}

TEST_F(Session, PassesEveryDriverSetupPairToItsDriverBeforeItRefusesARepetition) {
    EXPECT_EQ(Initialize("DriverSetup=Model:A, x=1, Model=B, y=2"), Status(0xBFFA0000));
    EXPECT_THAT(TakeCalls(), ElementsAre("setup Model A", "setup x 1", "setup Model B"));
    EXPECT_EQ(session_.ModelOverride(), "B");
    EXPECT_EQ(session_.DriverSetup(), "Model:A, x=1, Model=B, y=2");
    EXPECT_THAT(TakeRecorded(),
                ElementsAre(Recorded(0xBFFA0000,
                                     "Failure cannot recover.  DriverSetup option 'Model' appears more than once.")));
}

TEST_F(Session, StopsAtTheDriverSetupPairThatItsDriverRefuses) {
    Let("setup x 1", 0xBFFA4216);
    EXPECT_EQ(Initialize("Simulate=1, DriverSetup=x:1, y:2"), Status(0xBFFA4216));
    EXPECT_THAT(TakeCalls(), ElementsAre("setup x 1"));
    EXPECT_FALSE(session_.Flags().simulate); // the inherent options are parsed later
    EXPECT_THAT(TakeRecorded(), IsEmpty());
}

TEST_F(Session, TakesTheModelOverrideInAnyLetterCaseAndItsLastSpelling) {
    EXPECT_EQ(Initialize("DriverSetup=model:A, MODEL:B,Model:C"), Status(0U));
    EXPECT_EQ(session_.ModelOverride(), "C");
}

TEST_F(Session, SimulatesTheDefaultModelUnlessOneIsGiven) {
    EXPECT_EQ(Initialize("Simulate=1"), Status(0U));
    EXPECT_EQ(session_.ModelOverride(), "M1");
    EXPECT_EQ(Initialize("Simulate=1,DriverSetup=Model:M9"), Status(0U));
    EXPECT_EQ(session_.ModelOverride(), "M9");
}

TEST_F(Session, SetsAFlagFromTheOccurrenceThatItRefuses) {
    EXPECT_EQ(Initialize("Cache=1,cache=0"), Status(0xBFFA0000));
    EXPECT_FALSE(session_.Flags().cache);
    EXPECT_THAT(
        TakeRecorded(),
        ElementsAre(Recorded(0xBFFA0000, "Failure cannot recover.  Inherent option 'cache' appears more than once.")));
    EXPECT_EQ(Initialize("Cache=0,Cache=1"), Status(0xBFFA0000));
    EXPECT_TRUE(session_.Flags().cache);
}

TEST_F(Session, SetsEachFlagByItsOwnName) {
    TheSessions().identity.checksInterchangeability = true;
    const auto flags = [&](const char* options) {
        EXPECT_EQ(Initialize(options), Status(0U));
        const auto& set = session_.Flags();
        return std::string() + (set.cache ? "1" : "0") + (set.interchangeCheck ? "1" : "0") +
               (set.queryInstrumentStatus ? "1" : "0") + (set.rangeCheck ? "1" : "0") +
               (set.recordCoercions ? "1" : "0") + (set.simulate ? "1" : "0");
    };
    EXPECT_EQ(flags("Cache=1"), "100000");
    EXPECT_EQ(flags("Cache=0,InterchangeCheck=1"), "010000");
    EXPECT_EQ(flags("InterchangeCheck=0,QueryInstrStatus=1"), "001000");
    EXPECT_EQ(flags("QueryInstrStatus=0,RangeCheck=1"), "000100");
    EXPECT_EQ(flags("RangeCheck=0,RecordCoercions=1"), "000010");
    EXPECT_EQ(flags("RecordCoercions=0,Simulate=1"), "000001");
}

TEST_F(Session, KeepsTheInitialFlagsWhenFlagsAreSetLater) {
    EXPECT_EQ(Initialize("Simulate=1,QueryInstrStatus=1"), Status(0U));
    session_.SetSimulate(false);
    session_.SetQueryInstrumentStatus(false);
    EXPECT_FALSE(session_.Flags().simulate);
    EXPECT_FALSE(session_.Flags().queryInstrumentStatus);
    EXPECT_TRUE(session_.InitialFlags().simulate);
    EXPECT_TRUE(session_.InitialFlags().queryInstrumentStatus);
}

TEST_F(Session, RecordsNegativeStatusesBareAndReturnsOthersUnrecorded) {
    EXPECT_EQ(Status(session_.RecordIfError(0)), Status(0U));
    EXPECT_EQ(Status(session_.RecordIfError(Code(0x3FFF0005))), Status(0x3FFF0005));
    EXPECT_THAT(TakeRecorded(), IsEmpty());
    EXPECT_EQ(Status(session_.RecordIfError(Code(0xBFFA4217))), Status(0xBFFA4217));
    EXPECT_THAT(TakeRecorded(), ElementsAre(Recorded(0xBFFA4217, "Attribute or function parameter value is invalid "
                                                                 "(out of range or not supported).")));
}

} // namespace
} // namespace unit
