#include <array>

#include "tests/contract/driver_fixture.h"

namespace contract {
namespace {

class ConfigurationStore : public DriverTest {
  protected:
    static std::string GetText(ViSession vi, ViAttr attribute) {
        std::array<ViChar, 4096> value{};
        EXPECT_EQ(Status(TARNEX_GetAttributeViString(vi, "", attribute, 4096, value.data())), Status(0U));
        return value.data();
    }
    static bool GetFlag(ViSession vi, ViAttr attribute) {
        ViBoolean value = 7;
        EXPECT_EQ(Status(TARNEX_GetAttributeViBoolean(vi, "", attribute, &value)), Status(0U));
        return value == VI_TRUE;
    }
    static std::size_t ReleasesAttempted() {
        return doubles::TheScript().Count("IviConfig_DisposeHandle") + doubles::TheScript().Count("IviConfig_Close");
    }
    /// The calls to the configuration server, from the first to the closing of the store.
    static std::vector<std::string> StoreCalls() {
        const auto calls = doubles::TheScript().Calls();
        const auto first = std::find(calls.begin(), calls.end(), "IviConfig_Initialize");
        const auto last = std::find(first, calls.end(), "IviConfig_Close");
        return std::vector<std::string>(first, last == calls.end() ? last : last + 1);
    }
    /// A store with everything in it.
    static doubles::Store FullStore() {
        doubles::Store store;
        auto& session = store.driverSession.emplace();
        session.resource = kUsbResource;
        session.driverSetup = "Note:1";
        session.virtualNames = {{"Core", "OutputChannel1", {}}, {"CH", "OutputChannel", {{1, 2, 1}}}};
        session.initialSettings = std::vector<doubles::StoredSetting>{
            {"model", "String", std::string("TX4520")},
            {"count", "INTEGER", ViInt32{3}},
            {"level", "real", 1.5},
            {"on", "Boolean", ViBoolean{1}},
            {"other", "APIReference", std::string("x")},
        };
        store.module.emplace().physicalNames = {{"OutputChannel1", "OutputChannel"},
                                                {"OutputChannel2", "OutputChannel"}};
        return store;
    }
};

TEST_F(ConfigurationStore, WithoutTheDriverLeavesTheResourceAndTheLogicalNameAsGiven) {
    const auto vi = Open();
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR), kUsbResource);
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_LOGICAL_NAME), "");
}

TEST_F(ConfigurationStore, IsSearchedForTheDriversPrefixForEveryResource) {
    TryOpen("");
    EXPECT_THAT(doubles::TheConfigServer().Details(),
                ElementsAre("GetConfigStorePropertyViString 5 260", "GetConfigStorePropertyViString 3 260",
                            "Deserialize /store/master.xml", "GetDriverSession TARNEX",
                            "GetSoftwareModuleItemByName TARNEX"));
    EXPECT_THAT(doubles::TheScript().Calls(),
                testing::IsSupersetOf({"IviConfig_Initialize", "IviConfig_ClearError", "IviConfig_Close"}));
}

TEST_F(ConfigurationStore, AtTheProcessDefaultLocationComesBeforeTheMaster) {
    doubles::Store store;
    store.processDefaultLocation = "/store/process.xml";
    doubles::TheConfigServer().Use(store);
    TryOpen("");
    EXPECT_THAT(doubles::TheConfigServer().Details(),
                ElementsAre("GetConfigStorePropertyViString 5 260", "Deserialize /store/process.xml",
                            "GetDriverSession TARNEX", "GetSoftwareModuleItemByName TARNEX"));
}

TEST_F(ConfigurationStore, IsReadInThisOrderWithoutADriverSession) {
    auto store = FullStore();
    store.driverSession.reset();
    store.module->initialSettings = std::vector<doubles::StoredSetting>{{"model", "string", std::string("TX4520")}};
    doubles::TheConfigServer().Use(store);
    TryOpen("Simulate=1");
    const std::vector<std::string> expected{
        "IviConfig_Initialize",
        "IviConfig_GetConfigStorePropertyViString",
        "IviConfig_GetConfigStorePropertyViString",
        "IviConfig_Deserialize",
        "IviConfig_GetDriverSession",
        "IviConfig_ClearError",
        "IviConfig_GetConfigStoreSoftwareModuleCollection",
        "IviConfig_GetSoftwareModuleItemByName",
        "IviConfig_ClearError",
        "IviConfig_DisposeHandle",
        "IviConfig_GetConfigComponentDataComponentCollection",
        "IviConfig_GetDataComponentItemByName",
        "IviConfig_GetStructureDataComponentCollection",
        "IviConfig_GetDataComponentCount",
        "IviConfig_GetDataComponentItemByIndex",
        "IviConfig_GetDataComponentPropertyViString",
        "IviConfig_GetDataComponentPropertyViString",
        "IviConfig_GetDataComponentPropertyViString",
        "IviConfig_DisposeHandle",
        "IviConfig_DisposeHandle",
        "IviConfig_DisposeHandle",
        "IviConfig_DisposeHandle",
        "IviConfig_GetSoftwareModulePhysicalNameCollection",
        "IviConfig_GetPhysicalNameCount",
        "IviConfig_GetPhysicalNameItemByIndex",
        "IviConfig_GetPhysicalNamePropertyViString",
        "IviConfig_GetPhysicalNamePropertyViString",
        "IviConfig_DisposeHandle",
        "IviConfig_GetPhysicalNameItemByIndex",
        "IviConfig_GetPhysicalNamePropertyViString",
        "IviConfig_GetPhysicalNamePropertyViString",
        "IviConfig_DisposeHandle",
        "IviConfig_DisposeHandle",
        "IviConfig_DisposeHandle",
        "IviConfig_Close",
    };
    EXPECT_EQ(StoreCalls(), expected);
}

// The initial settings of the driver session are read twice, those of the module never.
TEST_F(ConfigurationStore, IsReadInThisOrderWithADriverSession) {
    auto store = FullStore();
    store.module->initialSettings = std::vector<doubles::StoredSetting>{{"model", "string", std::string("never")}};
    doubles::TheConfigServer().Use(store);
    TryOpen("");
    const std::vector<std::string> settings{
        "IviConfig_GetConfigComponentDataComponentCollection",
        "IviConfig_GetDataComponentItemByName",
        "IviConfig_GetStructureDataComponentCollection",
        "IviConfig_GetDataComponentCount",
        "IviConfig_GetDataComponentItemByIndex",
        "IviConfig_GetDataComponentPropertyViString",
        "IviConfig_GetDataComponentPropertyViString",
        "IviConfig_GetDataComponentPropertyViString",
        "IviConfig_DisposeHandle",
        "IviConfig_GetDataComponentItemByIndex",
        "IviConfig_GetDataComponentPropertyViString",
        "IviConfig_GetDataComponentPropertyViString",
        "IviConfig_GetDataComponentPropertyViInt32",
        "IviConfig_DisposeHandle",
        "IviConfig_GetDataComponentItemByIndex",
        "IviConfig_GetDataComponentPropertyViString",
        "IviConfig_GetDataComponentPropertyViString",
        "IviConfig_GetDataComponentPropertyViReal64",
        "IviConfig_DisposeHandle",
        "IviConfig_GetDataComponentItemByIndex",
        "IviConfig_GetDataComponentPropertyViString",
        "IviConfig_GetDataComponentPropertyViString",
        "IviConfig_GetDataComponentPropertyViBoolean",
        "IviConfig_DisposeHandle",
        "IviConfig_GetDataComponentItemByIndex",
        "IviConfig_GetDataComponentPropertyViString",
        "IviConfig_GetDataComponentPropertyViString",
        "IviConfig_DisposeHandle",
        "IviConfig_DisposeHandle",
        "IviConfig_DisposeHandle",
        "IviConfig_DisposeHandle",
    };
    std::vector<std::string> expected{
        "IviConfig_Initialize",
        "IviConfig_GetConfigStorePropertyViString",
        "IviConfig_GetConfigStorePropertyViString",
        "IviConfig_Deserialize",
        "IviConfig_GetDriverSession",
        "IviConfig_GetSessionVirtualNameCollection",
        "IviConfig_GetVirtualNameCount",
        "IviConfig_GetVirtualNameItemByIndex",
        "IviConfig_GetVirtualNamePropertyViString",
        "IviConfig_GetVirtualNamePropertyViString",
        "IviConfig_GetVirtualNameVirtualRangeCollection",
        "IviConfig_GetVirtualRangeCount",
        "IviConfig_DisposeHandle",
        "IviConfig_DisposeHandle",
        "IviConfig_GetVirtualNameItemByIndex",
        "IviConfig_GetVirtualNamePropertyViString",
        "IviConfig_GetVirtualNamePropertyViString",
        "IviConfig_GetVirtualNameVirtualRangeCollection",
        "IviConfig_GetVirtualRangeCount",
        "IviConfig_GetVirtualRangeItemByIndex",
        "IviConfig_GetVirtualRangePropertyViInt32",
        "IviConfig_GetVirtualRangePropertyViInt32",
        "IviConfig_GetVirtualRangePropertyViInt32",
        "IviConfig_DisposeHandle",
        "IviConfig_DisposeHandle",
        "IviConfig_DisposeHandle",
        "IviConfig_DisposeHandle",
        "IviConfig_GetSessionHardwareAssetReference",
        "IviConfig_GetHardwareAssetPropertyViString",
        "IviConfig_GetDriverSessionPropertyViBoolean",
        "IviConfig_GetDriverSessionPropertyViBoolean",
        "IviConfig_GetDriverSessionPropertyViBoolean",
        "IviConfig_GetDriverSessionPropertyViBoolean",
        "IviConfig_GetDriverSessionPropertyViBoolean",
        "IviConfig_GetDriverSessionPropertyViBoolean",
        "IviConfig_GetDriverSessionPropertyViString",
        "IviConfig_DisposeHandle",
    };
    expected.insert(expected.end(), settings.begin(), settings.end());
    expected.emplace_back("IviConfig_GetSessionSoftwareModuleReference");
    expected.insert(expected.end(), settings.begin(), settings.end());
    for (const auto* call : {
             "IviConfig_GetSoftwareModulePhysicalNameCollection",
             "IviConfig_GetPhysicalNameCount",
             "IviConfig_GetPhysicalNameItemByIndex",
             "IviConfig_GetPhysicalNamePropertyViString",
             "IviConfig_GetPhysicalNamePropertyViString",
             "IviConfig_DisposeHandle",
             "IviConfig_GetPhysicalNameItemByIndex",
             "IviConfig_GetPhysicalNamePropertyViString",
             "IviConfig_GetPhysicalNamePropertyViString",
             "IviConfig_DisposeHandle",
             "IviConfig_DisposeHandle",
             "IviConfig_DisposeHandle",
             "IviConfig_DisposeHandle",
             "IviConfig_Close",
         }) {
        expected.emplace_back(call);
    }
    EXPECT_EQ(StoreCalls(), expected);
    EXPECT_THAT(doubles::TheConfigServer().Details(),
                ElementsAre("GetConfigStorePropertyViString 5 260", "GetConfigStorePropertyViString 3 260",
                            "Deserialize /store/master.xml", "GetDriverSession TARNEX",
                            "GetHardwareAssetPropertyViString 3 1024", "GetDriverSessionPropertyViBoolean 4",
                            "GetDriverSessionPropertyViBoolean 5", "GetDriverSessionPropertyViBoolean 6",
                            "GetDriverSessionPropertyViBoolean 7", "GetDriverSessionPropertyViBoolean 8",
                            "GetDriverSessionPropertyViBoolean 9", "GetDriverSessionPropertyViString 10 1024",
                            "Components of driver session", "GetDataComponentItemByName Configurable Initial Settings",
                            "Components of driver session", "GetDataComponentItemByName Configurable Initial Settings",
                            "GetPhysicalNamePropertyViString 1 1024", "GetPhysicalNamePropertyViString 2 1024",
                            "GetPhysicalNamePropertyViString 1 1024", "GetPhysicalNamePropertyViString 2 1024"));
    EXPECT_EQ(doubles::TheScript().Count("IviConfig_GetDataComponentPropertyViInt32"), 2U);
    EXPECT_EQ(doubles::TheScript().Count("IviConfig_GetDataComponentPropertyViReal64"), 2U);
    EXPECT_EQ(doubles::TheScript().Count("IviConfig_GetDataComponentPropertyViBoolean"), 2U);
    EXPECT_EQ(doubles::TheScript().Count("IviConfig_GetPhysicalNameItemByIndex"), 2U);
}

TEST_F(ConfigurationStore, WithTheDriverGivesResourceLogicalNameAndDriverSetup) {
    doubles::TheConfigServer().Use(FullStore());
    ViSession vi = VI_NULL;
    EXPECT_EQ(TryOpen("", &vi, VI_FALSE, VI_FALSE, "MySupply"), Status(0U));
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR), kUsbResource);
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_LOGICAL_NAME), "MySupply");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_DRIVER_SETUP), "Note:1");
    EXPECT_THAT(doubles::TheVisa().Opened(), ElementsAre(doubles::OpenedResource{kUsbResource, 0, 2000}));
}

TEST_F(ConfigurationStore, WithTheDriverUsesItsResourceEvenWhenThatIsEmpty) {
    auto store = FullStore();
    store.driverSession->resource = "";
    doubles::TheConfigServer().Use(store);
    TryOpen("");
    EXPECT_THAT(doubles::TheVisa().Opened(), ElementsAre(doubles::OpenedResource{"", 0, 2000}));
}

TEST_F(ConfigurationStore, SetsAFlagOnlyByTheValueOne) {
    auto store = FullStore();
    store.driverSession->flags = {1, 0, 2, 1, 1, 1};
    doubles::TheConfigServer().Use(store);
    const auto vi = Open();
    EXPECT_FALSE(GetFlag(vi, TARNEX_ATTR_QUERY_INSTRUMENT_STATUS));
    EXPECT_TRUE(GetFlag(vi, TARNEX_ATTR_SIMULATE));
}

TEST_F(ConfigurationStore, RequestForInterchangeCheckingFailsTheOpening) {
    auto store = FullStore();
    store.driverSession->flags[1] = 1;
    doubles::TheConfigServer().Use(store);
    EXPECT_EQ(TryOpen(""), Status(0xBFFA004C));
    EXPECT_EQ(TryOpen("InterchangeCheck=0"), Status(0U));
}

TEST_F(ConfigurationStore, IsOverriddenByTheOptionString) {
    auto store = FullStore();
    store.driverSession->flags[5] = 1;
    doubles::TheConfigServer().Use(store);
    const auto vi = Open("Simulate=0");
    EXPECT_FALSE(GetFlag(vi, TARNEX_ATTR_SIMULATE));
    EXPECT_EQ(doubles::TheVisa().Opened().size(), 1U);
}

TEST_F(ConfigurationStore, DriverSetupIsReplacedByAClauseOfTheOptionString) {
    auto store = FullStore();
    store.driverSession->driverSetup = "a=1,a=2"; // an error if it were parsed
    doubles::TheConfigServer().Use(store);
    const auto vi = Open("DriverSetup=");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_DRIVER_SETUP), "");
    EXPECT_EQ(TryOpen("Simulate=0"), Status(0xBFFA0000));
    EXPECT_EQ(LastError(VI_NULL),
              (DriverError{0xBFFA0000, "Failure cannot recover.  DriverSetup option 'a' appears more than once."}));
}

TEST_F(ConfigurationStore, ReleasesEveryHandleWhenACallFails) {
    // Each function with the number of its calls before the instrument is opened, with a full store.
    const std::vector<std::pair<const char*, std::size_t>> stopping{
        {"IviConfig_Initialize", 1},
        {"IviConfig_GetConfigStorePropertyViString", 2},
        {"IviConfig_Deserialize", 1},
        {"IviConfig_GetDriverSession", 1},
        {"IviConfig_GetSessionVirtualNameCollection", 1},
        {"IviConfig_GetVirtualNameCount", 1},
        {"IviConfig_GetVirtualNameItemByIndex", 2},
        {"IviConfig_GetVirtualNamePropertyViString", 4},
        {"IviConfig_GetVirtualNameVirtualRangeCollection", 2},
        {"IviConfig_GetVirtualRangeCount", 2},
        {"IviConfig_GetVirtualRangeItemByIndex", 1},
        {"IviConfig_GetVirtualRangePropertyViInt32", 3},
        {"IviConfig_GetSessionHardwareAssetReference", 1},
        {"IviConfig_GetHardwareAssetPropertyViString", 1},
        {"IviConfig_GetDriverSessionPropertyViBoolean", 6},
        {"IviConfig_GetDriverSessionPropertyViString", 1},
        {"IviConfig_GetConfigComponentDataComponentCollection", 2},
        {"IviConfig_GetDataComponentItemByName", 2},
        {"IviConfig_GetStructureDataComponentCollection", 2},
        {"IviConfig_GetDataComponentCount", 2},
        {"IviConfig_GetDataComponentItemByIndex", 10},
        {"IviConfig_GetDataComponentPropertyViString", 22},
        {"IviConfig_GetDataComponentPropertyViInt32", 2},
        {"IviConfig_GetDataComponentPropertyViReal64", 2},
        {"IviConfig_GetDataComponentPropertyViBoolean", 2},
        {"IviConfig_GetSessionSoftwareModuleReference", 1},
        {"IviConfig_GetSoftwareModulePhysicalNameCollection", 1},
        {"IviConfig_GetPhysicalNameCount", 1},
        {"IviConfig_GetPhysicalNameItemByIndex", 2},
        {"IviConfig_GetPhysicalNamePropertyViString", 4},
        {"IviConfig_Close", 1},
    };
    doubles::TheConfigServer().Use(FullStore());
    TryOpen("");
    for (const auto& [function, times] : stopping) {
        EXPECT_EQ(doubles::TheScript().Count(function), times) << function;
    }
    for (const auto& [function, times] : stopping) {
        for (std::size_t nth = 1; nth <= times; ++nth) {
            doubles::TheScript().Reset();
            doubles::TheSessionService().ForgetRecorded();
            doubles::TheConfigServer().TakeCountOfHandles();
            doubles::TheConfigServer().SetErrorText("100% of %s failed: %n");
            TARNEX_ClearError(VI_NULL);
            Fail(function, 0xBFFA1222, nth);
            const auto opened = doubles::TheVisa().Opened().size();
            ViSession vi = 7;
            EXPECT_EQ(TryOpen("", &vi), Status(0xBFFA1222)) << function << " " << nth;
            EXPECT_EQ(vi, 0U) << function << " " << nth;
            EXPECT_EQ(LastError(VI_NULL), (DriverError{0xBFFA1222, "100% of %s failed: %n"})) << function;
            EXPECT_THAT(doubles::TheSessionService().Recorded(), testing::SizeIs(1)) << function << " " << nth;
            EXPECT_EQ(doubles::TheConfigServer().OpenHandles(), 0U) << function << " " << nth;
            EXPECT_EQ(ReleasesAttempted(), doubles::TheConfigServer().TakeCountOfHandles()) << function << " " << nth;
            EXPECT_EQ(doubles::TheVisa().Opened().size(), opened) << function << " " << nth;
        }
    }
}

TEST_F(ConfigurationStore, ReleasesEveryHandleOnceEvenWhenTheServerRefusesOne) {
    doubles::TheConfigServer().Use(FullStore());
    TryOpen("");
    // session, module, asset; the collections of virtual names, settings (three, read twice) and physical names; 2
    // virtual names with their ranges, 1 range, 5 settings read twice, 2 physical names
    constexpr std::size_t kHandles = 3 + (1 + 2 * 3 + 1) + (2 * 2 + 1 + 2 * 5 + 2);
    EXPECT_EQ(doubles::TheConfigServer().TakeCountOfHandles(), kHandles + 1);
    ASSERT_EQ(doubles::TheScript().Count("IviConfig_DisposeHandle"), kHandles);
    for (std::size_t nth = 1; nth <= kHandles; ++nth) {
        doubles::TheScript().Reset();
        doubles::TheConfigServer().TakeCountOfHandles();
        Fail("IviConfig_DisposeHandle", 0xBFFA1220, nth);
        EXPECT_EQ(TryOpen(""), Status(0U)) << nth;
        EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty()) << nth;
        EXPECT_EQ(doubles::TheConfigServer().OpenHandles(), 0U) << nth;
        EXPECT_EQ(ReleasesAttempted(), kHandles + 1) << nth;
        EXPECT_EQ(doubles::TheConfigServer().TakeCountOfHandles(), kHandles + 1) << nth;
    }
}

TEST_F(ConfigurationStore, WithoutAReadableModuleListFailsTheOpening) {
    Fail("IviConfig_GetConfigStoreSoftwareModuleCollection", 0xBFFA1222);
    EXPECT_EQ(TryOpen(""), Status(0xBFFA1222));
    EXPECT_EQ(LastError(VI_NULL), (DriverError{0xBFFA1222, "Configuration server error text."}));
    EXPECT_EQ(doubles::TheConfigServer().OpenHandles(), 0U);
}

TEST_F(ConfigurationStore, IgnoresFailuresOfTheModuleSearchAndOfReleases) {
    for (const auto* function :
         {"IviConfig_GetSoftwareModuleItemByName", "IviConfig_ClearError", "IviConfig_DisposeHandle"}) {
        doubles::TheScript().Reset();
        Fail(function, 0xBFFA1220);
        EXPECT_EQ(TryOpen(""), Status(0U)) << function;
        EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty()) << function;
    }
}

TEST_F(ConfigurationStore, FailureWithoutAReadableTextIsRecordedWithoutText) {
    Fail("IviConfig_Deserialize", 0xBFFA1200);
    Fail("IviConfig_GetError", 0xBFFA1220);
    EXPECT_EQ(TryOpen(""), Status(0xBFFA1200));
    EXPECT_EQ(LastError(VI_NULL), (DriverError{0xBFFA1200, ""}));
}

TEST_F(ConfigurationStore, FetchesTheErrorTextBeforeItReleasesHandles) {
    doubles::TheConfigServer().Use(FullStore());
    Fail("IviConfig_GetVirtualNameCount", 0xBFFA1222);
    TryOpen("");
    const auto calls = doubles::TheScript().Calls();
    const auto text = std::find(calls.begin(), calls.end(), std::string("IviConfig_GetError"));
    const auto disposed = std::find(calls.begin(), calls.end(), std::string("IviConfig_DisposeHandle"));
    ASSERT_NE(text, calls.end());
    EXPECT_LT(text - calls.begin(), disposed - calls.begin());
    EXPECT_THAT(doubles::TheConfigServer().Details(), testing::Contains("GetError 1024"));
}

TEST_F(ConfigurationStore, WithoutInitialSettingsIsNormal) {
    auto store = FullStore();
    store.driverSession->initialSettings.reset();
    doubles::TheConfigServer().Use(store);
    EXPECT_EQ(TryOpen(""), Status(0U));
    EXPECT_EQ(doubles::TheScript().Count("IviConfig_ClearError"), 2U);
}

TEST_F(ConfigurationStore, TextsOfOtherEncodingsPassThroughUnchanged) {
    auto store = FullStore();
    store.driverSession->driverSetup = "Note:\xE4\xF6\xFC";
    doubles::TheConfigServer().Use(store);
    EXPECT_EQ(GetText(Open(), TARNEX_ATTR_DRIVER_SETUP), "Note:\xE4\xF6\xFC");
}

} // namespace
} // namespace contract
