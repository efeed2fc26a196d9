// The session of this supply family, without the exports.
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <stdexcept>
#include <string>

#include "driver/output_channel.h"
#include "driver/tarnex_driver_session.h"
#include "framework/call_frame.h"
#include "instrument/simulator.h"
#include "instrument/tarnex_supply.h"
#include "tests/doubles/config_server_double.h"
#include "tests/doubles/script.h"
#include "tests/doubles/session_service_double.h"
#include "tests/doubles/visa_double.h"

namespace {

/// A session whose protected operations a test can reach.
class OpenSession : public TARNEXDriverSession {
  public:
    using TARNEXDriverSession::CheckStatus;
    using TARNEXDriverSession::ClearStatus;
    using TARNEXDriverSession::CloseIO;
    using TARNEXDriverSession::QueryIdentity;
    using TARNEXDriverSession::TARNEXDriverSession;
    using TARNEXDriverSession::Use;
};

class FailingInstrument : public ORVA::TARNEXSimulator {
  public:
    [[nodiscard]] std::shared_ptr<ORVA::Identity> GetIdentity() const override {
        throw std::runtime_error("100%s %n identity");
    }
    ViStatus Close() override { return static_cast<ViStatus>(0xBFFF003E); }
};

/// Reports all four error bits of the event status register, and counts who asks.
class TroubledInstrument : public ORVA::TARNEXSimulator {
  public:
    ViStatus SendClear() override {
        ++cleared;
        return 1;
    }
    ViStatus QueryEventStatus(std::uint32_t& value) override {
        ++asked;
        value = 0x3C;
        return 0;
    }
    int cleared = 0;
    int asked = 0;
};

class DriverSession : public testing::Test {
  protected:
    DriverSession() {
        doubles::TheScript().Reset();
        doubles::TheSessionService().Reset();
        doubles::TheConfigServer().Reset();
        doubles::TheVisa().Reset();
        nrt2::initializationRequests.idQuery = false;
        nrt2::initializationRequests.reset = false;
    }

    static doubles::RecordedError LastRecorded() {
        const auto recorded = doubles::TheSessionService().Recorded();
        return recorded.empty() ? doubles::RecordedError{} : recorded.back();
    }

    /// A store whose driver session has these settings.
    static void UseStore(doubles::StoredDriverSession session) {
        doubles::Store store;
        store.driverSession = std::move(session);
        store.module.emplace();
        doubles::TheConfigServer().Use(std::move(store));
    }

    std::string ModelFor(const std::string& options) {
        OpenSession session(VI_NULL);
        EXPECT_EQ(session.Initialize("USB0::1::2::3::INSTR", false, false, options), 0);
        return session.ModelOverride();
    }

    OpenSession session_{VI_NULL};
};

TEST_F(DriverSession, ReportsAnExceptionOfTheIdentityQueryWithItsExactText) {
    session_.Use(std::make_shared<FailingInstrument>());
    std::string manufacturer;
    std::string model;
    std::string serial;
    std::string firmware;
    EXPECT_EQ(session_.QueryIdentity(manufacturer, model, serial, firmware), static_cast<ViStatus>(0xBFFA4214));
    EXPECT_EQ(LastRecorded().description, "I/O error.  100%s %n identity");
}

TEST_F(DriverSession, RecordsAFailedCloseAndReleasesTheConnection) {
    session_.Use(std::make_shared<FailingInstrument>());
    EXPECT_EQ(session_.CloseIO(), static_cast<ViStatus>(0xBFFF003E));
    EXPECT_EQ(LastRecorded(), (doubles::RecordedError{VI_NULL, static_cast<ViStatus>(0xBFFF003E), ""}));
    EXPECT_EQ(session_.CloseIO(), 0);
}

TEST_F(DriverSession, OpensItsInstrumentWithTheCallersOptionsWhenTheStoreHasNoDriverSession) {
    nrt2::initializationRequests.idQuery = true;
    EXPECT_EQ(session_.Initialize("the resource", false, false, "Simulate=1"), 0);
    const auto record = session_.ComposeConnectionRecord();
    EXPECT_EQ(record.resource, "the resource");
    EXPECT_TRUE(record.idQuery);
    EXPECT_FALSE(record.reset);
    EXPECT_EQ(record.options, "Simulate=1");
}

TEST_F(DriverSession, OpensItsInstrumentWithMergedOptionsWhenTheStoreHasADriverSession) {
    nrt2::initializationRequests.reset = true;
    doubles::StoredDriverSession stored;
    stored.resource = "the store's resource";
    stored.flags = {0, 0, 1, 0, 0, 1};
    UseStore(stored);
    EXPECT_EQ(session_.Initialize("MySupply", false, false, ""), 0);
    const auto record = session_.ComposeConnectionRecord();
    EXPECT_EQ(record.resource, "the store's resource");
    EXPECT_FALSE(record.idQuery);
    EXPECT_TRUE(record.reset);
    EXPECT_EQ(record.options, "Simulate=true, QueryInstrStatus=true, Model=TX4410");
}

TEST_F(DriverSession, OpensItsInstrumentWithTheWholeConnectionRecord) {
    nrt2::initializationRequests.idQuery = true;
    nrt2::initializationRequests.reset = true;
    EXPECT_EQ(session_.Initialize("USB0::1::2::3::INSTR", false, false, "RangeCheck=1"), 0);
    const auto& supply = dynamic_cast<ORVA::TARNEX&>(session_.Instrument());
    EXPECT_TRUE(supply.IdQueryRequested());
    EXPECT_TRUE(supply.ResetRequested());
    EXPECT_TRUE(supply.Options().rangeCheck);
}

TEST_F(DriverSession, TakesAllFourFieldsOfTheIdentity) {
    EXPECT_EQ(session_.Initialize("USB0::1::2::3::INSTR", false, false, ""), 0);
    EXPECT_EQ(session_.InstrumentManufacturer(), "Keltor Technology");
    EXPECT_EQ(session_.InstrumentModel(), "TX4410");
    EXPECT_EQ(session_.InstrumentSerialNumber(), "SN42");
    EXPECT_EQ(session_.InstrumentFirmwareRevision(), "1.07");
}

TEST_F(DriverSession, InSimulationNeitherClearsNorChecksTheInstrumentsStatus) {
    EXPECT_EQ(session_.Initialize("r", false, false, "Simulate=1,QueryInstrStatus=1"), 0);
    const auto instrument = std::make_shared<TroubledInstrument>();
    session_.Use(instrument);
    EXPECT_EQ(session_.ClearStatus(), 0);
    EXPECT_EQ(session_.CheckStatus(), 0);
    EXPECT_EQ(instrument->cleared, 0);
    EXPECT_EQ(instrument->asked, 0);
}

TEST_F(DriverSession, ChecksTheInstrumentsStatusAlsoAfterAClearThatEndsWithAWarning) {
    doubles::TheVisa().Reply("*ESR?", "0\n");
    EXPECT_EQ(session_.Initialize("USB0::1::2::3::INSTR", false, false, "QueryInstrStatus=1"), 0);
    const auto instrument = std::make_shared<TroubledInstrument>();
    session_.Use(instrument);
    EXPECT_EQ(session_.ClearStatus(), static_cast<ViStatus>(0xBFFA0001));
    EXPECT_EQ(instrument->cleared, 1);
    EXPECT_EQ(instrument->asked, 1);
}

TEST_F(DriverSession, KeepsWhatItWasInitializedWith) {
    EXPECT_EQ(session_.Initialize("r", false, true, "Simulate=1"), 0);
    EXPECT_FALSE(session_.IdQueryRequested());
    EXPECT_TRUE(session_.ResetRequested());
    EXPECT_EQ(session_.ResourceName(), "r");
    EXPECT_EQ(session_.GivenOptionString(), "Simulate=1");
}

TEST_F(DriverSession, SetsEachStoredFlagIndependently) {
    constexpr std::array kFlags{&text::InherentOptions::cache, &text::InherentOptions::queryInstrumentStatus,
                                &text::InherentOptions::rangeCheck, &text::InherentOptions::recordCoercions,
                                &text::InherentOptions::simulate};
    constexpr std::array<std::size_t, 5> kPlaces{0, 2, 3, 4, 5}; // the second, interchange checking, fails the opening
    doubles::TheVisa().Reply("*ESR?", "0\n");
    for (std::size_t set = 0; set < kFlags.size(); ++set) {
        doubles::StoredDriverSession stored;
        stored.flags[kPlaces[set]] = 1;
        UseStore(stored);
        OpenSession session(VI_NULL);
        EXPECT_GE(session.Initialize("r", false, false, ""), 0);
        for (std::size_t each = 0; each < kFlags.size(); ++each) {
            EXPECT_EQ(session.Flags().*kFlags[each], each == set) << set << ' ' << each;
            EXPECT_EQ(session.InitialFlags().*kFlags[each], each == set) << set << ' ' << each;
        }
    }
}

TEST_F(DriverSession, TakesItsModelFromTheSourceWithTheHighestPrecedence) {
    EXPECT_EQ(ModelFor(""), "");
    EXPECT_EQ(ModelFor("Simulate=1"), "TX4410");
    doubles::StoredDriverSession stored;
    stored.initialSettings = std::vector<doubles::StoredSetting>{{"model", "sTRing", std::string("setting")},
                                                                 {"Model", "string", std::string("other case")}};
    UseStore(stored);
    EXPECT_EQ(ModelFor("Simulate=1"), "setting");
    stored.driverSetup = "Model:setup";
    UseStore(stored);
    EXPECT_EQ(ModelFor("Simulate=1"), "setup");
    EXPECT_EQ(ModelFor("Simulate=1,DriverSetup=mODEL=options"), "options");
    EXPECT_EQ(ModelFor("Simulate=1,DriverSetup="), "setting");
}

TEST_F(DriverSession, TakesNoModelFromASettingOfAnotherType) {
    doubles::StoredDriverSession stored;
    stored.initialSettings = std::vector<doubles::StoredSetting>{{"model", "Integer", ViInt32{7}}};
    UseStore(stored);
    EXPECT_EQ(ModelFor(""), "");
    stored.initialSettings = std::vector<doubles::StoredSetting>{};
    UseStore(stored);
    EXPECT_EQ(ModelFor(""), "");
}

TEST_F(DriverSession, AddressesChannelsByTheLastDigitOfTheirName) {
    EXPECT_EQ(tarnex::ChannelOf({"OutputChannel1"}), 1U);
    EXPECT_EQ(tarnex::ChannelOf({"OUT2"}), 2U);
    EXPECT_EQ(tarnex::ChannelOf({"CH12"}), 2U);
}

} // namespace
