#include <fstream>
#include <iterator>

#include "tests/system/supply_fixture.h"

namespace system_tests {
namespace {

class StoreFile : public SupplyTest {
  protected:
    static std::string Read(const char* path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    static void Replace(std::string& text, const std::string& what, const std::string& by) {
        const auto at = text.find(what);
        ASSERT_NE(at, std::string::npos) << what;
        text.replace(at, what.size(), by);
    }

    /// A store that holds the driver with a session of its own.
    static std::string WithDriverSession(const std::string& resource) {
        return R"(<?xml version="1.0" encoding="UTF-8"?>
<IviConfigStore>
  <Name>Test</Name>
  <SoftwareModules>
    <IviSoftwareModule id="p1">
      <Name>TARNEX</Name><Prefix>TARNEX</Prefix><DataComponents/>
      <PhysicalNames>
        <IviPhysicalName id="p2"><Name>OutputChannel1</Name><RCName>OutputChannel</RCName></IviPhysicalName>
      </PhysicalNames>
    </IviSoftwareModule>
  </SoftwareModules>
  <HardwareAssets>
    <IviHardwareAsset id="p3">
      <Name>bench</Name><IOResourceDescriptor>)" +
               resource + R"(</IOResourceDescriptor>
    </IviHardwareAsset>
  </HardwareAssets>
  <DriverSessions>
    <IviDriverSession id="p4">
      <Name>TARNEX</Name>
      <DataComponents/>
      <IviHardwareAsset idref="p3"/>
      <IviSoftwareModuleRef idref="p1"/>
      <VirtualNames>
        <IviVirtualName id="p5"><Name>Core</Name><MapTo>OutputChannel1</MapTo><VirtualRanges/></IviVirtualName>
        <IviVirtualName id="p6"><Name>CH</Name><MapTo>OutputChannel</MapTo><VirtualRanges>
          <IviVirtualRange id="p7"><Name>r</Name><Max>2</Max><Min>1</Min>
            <StartingPhysicalIndex>1</StartingPhysicalIndex></IviVirtualRange>
        </VirtualRanges></IviVirtualName>
      </VirtualNames>
      <SoftwareModuleName>TARNEX</SoftwareModuleName>
      <Cache>0</Cache><DriverSetup>Note:store</DriverSetup><InterchangeCheck>0</InterchangeCheck>
      <QueryInstrStatus>1</QueryInstrStatus><RangeCheck>1</RangeCheck><RecordCoercions>0</RecordCoercions>
      <Simulate>0</Simulate>
    </IviDriverSession>
  </DriverSessions>
</IviConfigStore>
)";
    }
};

TEST_F(StoreFile, ThatIsMissingCountsAsAnEmptyStore) {
    const auto vi = Open();
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_LOGICAL_NAME), "");
}

TEST_F(StoreFile, WithADriverSessionGivesResourceOptionsAndVirtualNames) {
    UseStore(scratch_.Write("store.xml", WithDriverSession(server_->Resource())));
    ViSession vi = VI_NULL;
    EXPECT_GE(TryOpen("MySupply", "", vi), 0);
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_LOGICAL_NAME), "MySupply");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR), server_->Resource());
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_DRIVER_SETUP), "Note:store");
    EXPECT_TRUE(GetBoolean(vi, "", TARNEX_ATTR_QUERY_INSTRUMENT_STATUS));
    EXPECT_GE(TARNEX_ConfigureVoltageLevel(vi, "Core", 3.0), 0);
    EXPECT_GE(TARNEX_ConfigureVoltageLevel(vi, "CH2", 2.0), 0);
    EXPECT_EQ(Ask(":SOUR1:VOLT?"), "3.000000");
    EXPECT_EQ(Ask(":SOUR2:VOLT?"), "2.000000");
}

// The status query after each command also ensures that the supply has executed it.
TEST_F(StoreFile, OfTheExamplesWorksWithTheResourceOfTheSupply) {
    auto store = Read(EXAMPLE_STORE);
    Replace(store, "TCPIP0::192.168.1.20::5025::SOCKET", server_->Resource());
    UseStore(scratch_.Write("example.xml", store));
    ViSession vi = VI_NULL;
    EXPECT_GE(TryOpen("MySupply", "", vi), 0);
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR), server_->Resource());
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_LOGICAL_NAME), "MySupply");
    EXPECT_TRUE(GetBoolean(vi, "", TARNEX_ATTR_QUERY_INSTRUMENT_STATUS));
    EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, "Core", 1.0), kTermChar);
    EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, "Io", 2.0), kTermChar);
    EXPECT_EQ(Ask(":SOUR1:VOLT?"), "1.000000");
    EXPECT_EQ(Ask(":SOUR2:VOLT?"), "2.000000");
    EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, "Both", 3.0), kTermChar);
    EXPECT_EQ(Ask(":SOUR1:VOLT?"), "3.000000");
    EXPECT_EQ(Ask(":SOUR2:VOLT?"), "3.000000");
    EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, "Rail11", 4.0), kTermChar);
    EXPECT_EQ(Ask(":SOUR2:VOLT?"), "4.000000");
}

TEST_F(StoreFile, WithOnlyTheSoftwareModuleUsesTheCallersResource) {
    auto store = Read(EXAMPLE_STORE);
    store.erase(store.find("<HardwareAssets>"), store.find("</IviConfigStore>") - store.find("<HardwareAssets>"));
    UseStore(scratch_.Write("module.xml", store));
    const auto vi = Open();
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR), server_->Resource());
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_LOGICAL_NAME), "");
    EXPECT_EQ(static_cast<unsigned>(TARNEX_ConfigureVoltageLevel(vi, "Core", 1.0)), 0xBFFA0067U);
}

TEST_F(StoreFile, WithoutEntriesUsesTheCallersResourceAndOptions) {
    UseStore(scratch_.Write("empty.xml", "<IviConfigStore/>"));
    EXPECT_EQ(GetText(Open(), TARNEX_ATTR_LOGICAL_NAME), "");
}

TEST_F(StoreFile, ThatIsNotAStoreFailsTheOpeningAndIsNamed) {
    for (const auto* content : {"<IviConfigStore><Name>", "", "<Other/>", "no markup at all"}) {
        const auto path = scratch_.Write("broken.xml", content);
        UseStore(path);
        TARNEX_ClearError(VI_NULL);
        ViSession vi = 7;
        EXPECT_EQ(static_cast<unsigned>(TryOpen(server_->Resource(), "", vi)), 0xBFFA1200U) << content;
        EXPECT_EQ(vi, 0U);
        const auto error = LastError(VI_NULL);
        EXPECT_EQ(error.code, 0xBFFA1200U);
        EXPECT_THAT(error.description, testing::HasSubstr(path)) << content;
    }
}

TEST_F(StoreFile, ThatCannotBeReadFailsTheOpeningAndIsNamed) {
    UseStore(scratch_.Path("")); // a folder, which even root cannot read as a file
    ViSession vi = 7;
    EXPECT_EQ(static_cast<unsigned>(TryOpen(server_->Resource(), "", vi)), 0xBFFA1200U);
    EXPECT_THAT(LastError(VI_NULL).description, testing::HasSubstr(scratch_.Path("")));
}

TEST_F(StoreFile, OfTenMebibytesIsRead) {
    auto store = WithDriverSession(server_->Resource());
    std::string names;
    for (int i = 0; names.size() < std::size_t{10} * 1024 * 1024; ++i) {
        names += "<IviVirtualName><Name>Filler" + std::to_string(i) +
                 "</Name><MapTo>OutputChannel2</MapTo><VirtualRanges/></IviVirtualName>\n";
    }
    Replace(store, "<VirtualNames>", "<VirtualNames>" + names);
    UseStore(scratch_.Write("large.xml", store));
    ViSession vi = VI_NULL;
    EXPECT_GE(TryOpen("MySupply", "", vi), 0);
    EXPECT_GE(TARNEX_ConfigureVoltageLevel(vi, "Filler99999", 2.0), 0);
    EXPECT_EQ(Ask(":SOUR2:VOLT?"), "2.000000");
    EXPECT_GE(TARNEX_ConfigureVoltageLevel(vi, "Core", 3.0), 0);
    EXPECT_EQ(Ask(":SOUR1:VOLT?"), "3.000000");
}

TEST_F(StoreFile, InAnotherEncodingIsReadAsUtf8) {
    auto latin = WithDriverSession(server_->Resource());
    Replace(latin, "UTF-8", "ISO-8859-1");
    Replace(latin, "Note:store", "Note:\xFC");
    UseStore(scratch_.Write("latin.xml", latin));
    ViSession vi = VI_NULL;
    EXPECT_GE(TryOpen("MySupply", "", vi), 0);
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_DRIVER_SETUP), "Note:\xC3\xBC");

    const auto utf8 = WithDriverSession(server_->Resource());
    std::string utf16("\xFF\xFE");
    for (const char c : utf8) {
        utf16 += c;
        utf16 += '\0';
    }
    UseStore(scratch_.Write("utf16.xml", utf16));
    EXPECT_GE(TryOpen("MySupply", "", vi), 0);
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_DRIVER_SETUP), "Note:store");
}

} // namespace
} // namespace system_tests
