#include "tests/system/supply_fixture.h"

namespace system_tests {
namespace {

class StoreFile : public SupplyTest {
  protected:
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
    UseStore(scratch_.Write("store.xml", WithDriverSession(server_->resource())));
    ViSession vi = VI_NULL;
    EXPECT_GE(TryOpen("MySupply", "", vi), 0);
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_LOGICAL_NAME), "MySupply");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR), server_->resource());
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_DRIVER_SETUP), "Note:store");
    EXPECT_TRUE(GetBoolean(vi, "", TARNEX_ATTR_QUERY_INSTRUMENT_STATUS));
    EXPECT_GE(TARNEX_ConfigureVoltageLevel(vi, "Core", 3.0), 0);
    EXPECT_GE(TARNEX_ConfigureVoltageLevel(vi, "CH2", 2.0), 0);
    EXPECT_EQ(Ask(":SOUR1:VOLT?"), "3.000000");
    EXPECT_EQ(Ask(":SOUR2:VOLT?"), "2.000000");
}

TEST_F(StoreFile, ThatIsNoStoreFailsTheOpeningAndIsNamed) {
    const auto path = scratch_.Write("broken.xml", "<IviConfigStore><Name>");
    UseStore(path);
    ViSession vi = 7;
    EXPECT_EQ(static_cast<unsigned>(TryOpen(server_->resource(), "", vi)), 0xBFFA1200U);
    EXPECT_EQ(vi, 0U);
    const auto error = LastError(VI_NULL);
    EXPECT_EQ(error.code, 0xBFFA1200U);
    EXPECT_THAT(error.description, testing::HasSubstr(path));
}

} // namespace
} // namespace system_tests
