#include "platform/config_server.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;
using Handle = IviConfigHandle;

constexpr auto kDeserializeFailed = static_cast<ViStatus>(0xBFFA1200);
constexpr auto kAlreadyDeserialized = static_cast<ViStatus>(0xBFFA1201);
constexpr auto kSessionNotFound = static_cast<ViStatus>(0xBFFA1203);
constexpr auto kNotInGlobalCollection = static_cast<ViStatus>(0xBFFA1204);
constexpr auto kItemNotFound = static_cast<ViStatus>(0xBFFA1207);
constexpr auto kInvalidDataComponent = static_cast<ViStatus>(0xBFFA1208);
constexpr auto kInvalidHandle = static_cast<ViStatus>(0xBFFA1220);
constexpr auto kInvalidProperty = static_cast<ViStatus>(0xBFFA1221);
constexpr auto kNotSupported = static_cast<ViStatus>(0xBFFA1222);
constexpr auto kNullPointer = static_cast<ViStatus>(0xBFFA0058);

constexpr const char* kStore = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- a comment -->
<IviConfigStore id="p0" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
  <Name>Test store</Name>
  <Description>For tests &amp; "more"</Description>
  <Vendor>Somebody</Vendor>
  <Revision>1.2.3</Revision>
  <SpecificationMajorVersion>1</SpecificationMajorVersion>
  <SpecificationMinorVersion>6</SpecificationMinorVersion>
  <Unknown><Name>skipped</Name></Unknown>
  <SoftwareModules>
    <IviSoftwareModule id="p1">
      <Name>TARNEX</Name>
      <Description>a driver</Description>
      <DataComponents>
        <IviString id="p11"><Name>Note</Name><Type>String</Type><Value>of the module</Value></IviString>
      </DataComponents>
      <ModulePath64>TARNEX_64.dll</ModulePath64>
      <Prefix>TARNEX</Prefix>
      <PhysicalNames>
        <IviPhysicalName id="p2">
          <Name>OutputChannel1</Name><RCName>OutputChannel</RCName>
          <PhysicalNames><IviPhysicalName id="p3"><Name>nested</Name></IviPhysicalName></PhysicalNames>
          <PhysicalRanges/>
        </IviPhysicalName>
        <Unknown/>
        <IviPhysicalName id="p4"><RCName>OutputChannel</RCName><Name>OutputChannel2</Name></IviPhysicalName>
      </PhysicalNames>
    </IviSoftwareModule>
    <IviSoftwareModule id="p5"><Name>Other</Name></IviSoftwareModule>
  </SoftwareModules>
  <HardwareAssets>
    <IviHardwareAsset id="p6">
      <Name>supply</Name>
      <Description>on the bench</Description>
      <DataComponents>
        <IviInteger id="p61"><Name>Shelf</Name><Type>Integer</Type><Value>3</Value></IviInteger>
      </DataComponents>
      <IOResourceDescriptor>TCPIP0::10.0.0.5::5025::SOCKET</IOResourceDescriptor>
    </IviHardwareAsset>
  </HardwareAssets>
  <DriverSessions>
    <IviDriverSession id="p7">
      <Name>bench</Name>
      <Description>the session</Description>
      <DataComponents>
        <IviStructure id="p8">
          <Name>Configurable Initial Settings</Name>
          <Type>Structure</Type>
          <ReadOnly>1</ReadOnly>
          <UsedInSession>Required</UsedInSession>
          <DataComponents>
            <IviString id="p81">
              <Name>model</Name><Description>which</Description><ReadOnly>0</ReadOnly><Type>String</Type>
              <HelpContextID>17</HelpContextID><HelpFilePath>help.chm</HelpFilePath>
              <SoftwareModuleKey>key</SoftwareModuleKey><Value>TX6300</Value>
            </IviString>
            <IviInteger id="p82">
              <Name>count</Name><Type>Integer</Type><Value> -42 </Value><Units>pieces</Units>
            </IviInteger>
            <IviReal id="p83"><Name>level</Name><Type>Real</Type><Value>1.5e-3</Value><Units>V</Units></IviReal>
            <IviBoolean id="p84"><Name>enabled</Name><Type>Boolean</Type><Value>1</Value></IviBoolean>
            <IviAPIReference id="p85"><Name>api</Name><Type>APIReference</Type></IviAPIReference>
            <IviString id="p86"><Name>blank</Name><Value>  </Value></IviString>
            <IviString id="p87"><Name>mixed</Name><Value>a<!-- x -->b<![CDATA[<c>]]>&#65;</Value></IviString>
            <IviInteger id="p88"><Name>big</Name><Value>2147483648</Value></IviInteger>
            <IviInteger id="p89"><Name>word</Name><Value>12x</Value></IviInteger>
            <IviReal id="p8a"><Name>huge</Name><Value>1e999</Value></IviReal>
            <IviReal id="p8b"><Name>comma</Name><Value>1,5</Value></IviReal>
            <IviBoolean id="p8c"><Name>maybe</Name><Value>2</Value></IviBoolean>
          </DataComponents>
        </IviStructure>
      </DataComponents>
      <IviHardwareAsset idref="p6"/>
      <IviSoftwareModuleRef idref="p1"/>
      <VirtualNames>
        <IviVirtualName id="p9">
          <Name>CH</Name><MapTo>OutputChannel</MapTo>
          <VirtualRanges>
            <IviVirtualRange id="p91">
              <Name>r</Name><Max>2</Max><Min>1</Min><StartingPhysicalIndex>1</StartingPhysicalIndex>
            </IviVirtualRange>
            <IviVirtualRange id="p92">
              <Name>bad</Name><Max>99999999999</Max><Min>-2147483648</Min>
            </IviVirtualRange>
          </VirtualRanges>
        </IviVirtualName>
        <IviVirtualName id="p10"><Name>Main</Name><MapTo>OutputChannel1</MapTo></IviVirtualName>
      </VirtualNames>
      <SoftwareModuleName>TARNEX</SoftwareModuleName>
      <Cache>1</Cache>
      <DriverSetup>Model:TX4410</DriverSetup>
      <InterchangeCheck>0</InterchangeCheck>
      <QueryInstrStatus>1</QueryInstrStatus>
      <RangeCheck>0</RangeCheck>
      <Simulate>1</Simulate>
    </IviDriverSession>
    <IviDriverSession id="p12">
      <Name>dangling</Name>
      <IviHardwareAsset idref="nowhere"/>
      <IviSoftwareModuleRef idref="p6"/>
      <Cache>perhaps</Cache>
    </IviDriverSession>
    <IviDriverSession id="p13"><Name>bare</Name></IviDriverSession>
    <IviDriverSession id="p14"><Name>shadowed</Name><Description>session</Description></IviDriverSession>
    <IviDriverSession id="p15" idref="p15"><Name>circle</Name></IviDriverSession>
  </DriverSessions>
  <Sessions><IviDriverSession idref="p7"/></Sessions>
  <LogicalNames>
    <IviLogicalName id="p20"><Name>PowerSupply</Name><IviDriverSession idref="p7"/></IviLogicalName>
    <IviLogicalName id="p21"><Name>shadowed</Name><IviDriverSession idref="p7"/></IviLogicalName>
    <IviLogicalName id="p22"><Name>lost</Name><IviDriverSession idref="p6"/></IviLogicalName>
    <IviLogicalName id="p23"><Name>circle</Name><IviDriverSession idref="p15"/></IviLogicalName>
    <IviLogicalName id="p24"><Name>empty</Name></IviLogicalName>
  </LogicalNames>
</IviConfigStore>
)";

std::string Numbered(std::string prefix, std::int64_t number) {
    prefix += std::to_string(number);
    return prefix;
}

std::string ErrorText() {
    std::array<ViChar, 1024> text{};
    IviConfig_GetError(static_cast<ViInt32>(text.size()), text.data());
    return text.data();
}

/// A text property, or the status of a failure.
template <typename Get>
std::string Text(Get get, Handle handle, ViInt32 id) {
    std::array<ViChar, 1024> text{};
    const auto status = get(handle, id, static_cast<ViInt32>(text.size()), text.data());
    return status == VI_SUCCESS ? text.data() : Numbered("status ", status);
}

/// A directory, an environment without stores, and an empty error record for each test.
class ConfigServer : public testing::Test {
  protected:
    ConfigServer() {
        std::string pattern = (fs::temp_directory_path() / "config_server_test.XXXXXX").string();
        directory_ = ::mkdtemp(pattern.data());
        ::setenv("HOME", directory_.c_str(), 1);
        ::unsetenv("XDG_CONFIG_HOME");
        ::unsetenv("IVI_CONFIG_STORE");
        IviConfig_ClearError();
        EXPECT_EQ(IviConfig_Initialize(&store_), VI_SUCCESS);
        SetProcessDefault("");
    }
    ~ConfigServer() override {
        SetProcessDefault("");
        IviConfig_Close(store_);
        fs::remove_all(directory_);
    }

    [[nodiscard]] std::string Path(const std::string& name) const { return (directory_ / name).string(); }

    [[nodiscard]] std::string Write(std::string_view content, const std::string& name = "store.xml") const {
        fs::create_directories(fs::path(Path(name)).parent_path());
        std::ofstream(Path(name), std::ios::binary) << content;
        return Path(name);
    }

    void Load(std::string_view content = kStore) {
        ASSERT_EQ(IviConfig_Deserialize(store_, Write(content).c_str()), VI_SUCCESS) << ErrorText();
    }

    void SetProcessDefault(const std::string& location) const {
        EXPECT_EQ(IviConfig_SetConfigStorePropertyViString(store_, 5, location.c_str()), VI_SUCCESS);
    }

    [[nodiscard]] std::string StoreText(ViInt32 id) const {
        return Text(IviConfig_GetConfigStorePropertyViString, store_, id);
    }

    [[nodiscard]] Handle Session(const char* name = "bench") const {
        Handle session = nullptr;
        EXPECT_EQ(IviConfig_GetDriverSession(store_, name, &session), VI_SUCCESS) << ErrorText();
        return session;
    }

    [[nodiscard]] Handle Module(const char* name = "TARNEX") const {
        Handle modules = nullptr;
        Handle module = nullptr;
        EXPECT_EQ(IviConfig_GetConfigStoreSoftwareModuleCollection(store_, &modules), VI_SUCCESS);
        EXPECT_EQ(IviConfig_GetSoftwareModuleItemByName(modules, name, &module), VI_SUCCESS);
        return module;
    }

    /// The data components of the session's one structure.
    [[nodiscard]] Handle Settings() const {
        Handle components = nullptr;
        Handle structure = nullptr;
        Handle settings = nullptr;
        EXPECT_EQ(IviConfig_GetConfigComponentDataComponentCollection(Session(), &components), VI_SUCCESS);
        EXPECT_EQ(IviConfig_GetDataComponentItemByName(components, "Configurable Initial Settings", &structure),
                  VI_SUCCESS);
        EXPECT_EQ(IviConfig_GetStructureDataComponentCollection(structure, &settings), VI_SUCCESS);
        return settings;
    }

    [[nodiscard]] Handle Setting(const char* name) const {
        Handle item = nullptr;
        EXPECT_EQ(IviConfig_GetDataComponentItemByName(Settings(), name, &item), VI_SUCCESS);
        return item;
    }

    fs::path directory_;
    Handle store_ = nullptr;
};

// ------------------------------------------------------------------------------------------- the location of the store

TEST_F(ConfigServer, MasterLocationIsTheUsersWithoutAnyStore) {
    EXPECT_EQ(StoreText(3), Path(".config/ivi/IviConfigurationStore.xml"));
    ::setenv("XDG_CONFIG_HOME", Path("xdg").c_str(), 1);
    EXPECT_EQ(StoreText(3), Path("xdg/ivi/IviConfigurationStore.xml"));
    ::setenv("XDG_CONFIG_HOME", "relative/path", 1);
    EXPECT_EQ(StoreText(3), Path(".config/ivi/IviConfigurationStore.xml"));
    ::setenv("XDG_CONFIG_HOME", "", 1);
    EXPECT_EQ(StoreText(3), Path(".config/ivi/IviConfigurationStore.xml"));
}

TEST_F(ConfigServer, MasterLocationIsTheSystemsWhenThereIsNoHome) {
    ::unsetenv("HOME");
    EXPECT_EQ(StoreText(3), "/etc/ivi/IviConfigurationStore.xml");
    ::setenv("HOME", "", 1);
    EXPECT_EQ(StoreText(3), "/etc/ivi/IviConfigurationStore.xml");
}

TEST_F(ConfigServer, MasterLocationIsWhatTheEnvironmentNamesWhetherItExistsOrNot) {
    static_cast<void>(Write(kStore, ".config/ivi/IviConfigurationStore.xml"));
    ::setenv("IVI_CONFIG_STORE", "/somewhere/else.xml", 1);
    EXPECT_EQ(StoreText(3), "/somewhere/else.xml");
    ::setenv("IVI_CONFIG_STORE", "", 1);
    EXPECT_EQ(StoreText(3), Path(".config/ivi/IviConfigurationStore.xml"));
}

TEST_F(ConfigServer, AMissingMasterIsAnEmptyStore) {
    const auto master = StoreText(3);
    EXPECT_EQ(IviConfig_Deserialize(store_, master.c_str()), VI_SUCCESS);
    EXPECT_EQ(StoreText(4), master);
    Handle session = this;
    EXPECT_EQ(IviConfig_GetDriverSession(store_, "TARNEX", &session), kSessionNotFound);
    EXPECT_EQ(session, nullptr);
    Handle modules = nullptr;
    Handle module = this;
    EXPECT_EQ(IviConfig_GetConfigStoreSoftwareModuleCollection(store_, &modules), VI_SUCCESS);
    EXPECT_EQ(IviConfig_GetSoftwareModuleItemByName(modules, "TARNEX", &module), kItemNotFound);
    EXPECT_EQ(module, nullptr);
}

TEST_F(ConfigServer, AMissingMasterThatWasNamedAsProcessDefaultIsAnError) {
    const auto master = StoreText(3);
    SetProcessDefault(master);
    EXPECT_EQ(IviConfig_Deserialize(store_, master.c_str()), kDeserializeFailed);
    EXPECT_EQ(ErrorText(),
              "IviConfigServer.IviConfigStore.1: Deserialize failed. " + master + ": The file does not exist.");
}

TEST_F(ConfigServer, ProcessDefaultLocationHoldsForEveryStoreAndThread) {
    EXPECT_EQ(StoreText(5), "");
    SetProcessDefault("/a/store.xml");
    std::thread([] {
        Handle other = nullptr;
        EXPECT_EQ(IviConfig_Initialize(&other), VI_SUCCESS);
        EXPECT_EQ(Text(IviConfig_GetConfigStorePropertyViString, other, 5), "/a/store.xml");
        EXPECT_EQ(IviConfig_Close(other), VI_SUCCESS);
    }).join();
    SetProcessDefault("");
    EXPECT_EQ(StoreText(5), "");
}

TEST_F(ConfigServer, OnlyTheProcessDefaultLocationCanBeSet) {
    for (const ViInt32 id : {1, 2, 3, 4, 6, 7, 8, 9}) {
        EXPECT_EQ(IviConfig_SetConfigStorePropertyViString(store_, id, "x"), kNotSupported) << id;
    }
    for (const ViInt32 id : {0, 10, -1}) {
        EXPECT_EQ(IviConfig_SetConfigStorePropertyViString(store_, id, "x"), kInvalidProperty) << id;
    }
    EXPECT_EQ(IviConfig_SetConfigStorePropertyViString(store_, 5, nullptr), kNullPointer);
}

// ------------------------------------------------------------------------------------------------------- deserializing

TEST_F(ConfigServer, StorePropertiesComeFromTheFile) {
    EXPECT_EQ(StoreText(1), "");
    EXPECT_EQ(StoreText(4), "");
    Load();
    EXPECT_EQ(StoreText(1), "Test store");
    EXPECT_EQ(StoreText(2), "For tests & \"more\"");
    EXPECT_EQ(StoreText(4), Path("store.xml"));
    EXPECT_EQ(StoreText(6), "1.2.3");
    EXPECT_EQ(StoreText(7), "Somebody");
    std::array<ViChar, 8> text{};
    for (const ViInt32 id : {0, 8, 9, 10, -5}) {
        EXPECT_EQ(IviConfig_GetConfigStorePropertyViString(store_, id, 8, text.data()), kInvalidProperty) << id;
    }
    EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: GetConfigStorePropertyViString failed. 0 is not a valid "
                           "property ID.");
}

TEST_F(ConfigServer, TextsFollowTheBufferRule) {
    Load();
    std::array<ViChar, 16> text{};
    text.fill('#');
    EXPECT_EQ(IviConfig_GetConfigStorePropertyViString(store_, 1, 0, nullptr), 11);
    EXPECT_EQ(IviConfig_GetConfigStorePropertyViString(store_, 1, 5, text.data()), 11);
    EXPECT_EQ(std::string(text.data(), 6), std::string("Test\0#", 6));
    EXPECT_EQ(IviConfig_GetConfigStorePropertyViString(store_, 1, 11, text.data()), VI_SUCCESS);
    EXPECT_STREQ(text.data(), "Test store");
    text.fill('#');
    EXPECT_EQ(IviConfig_GetConfigStorePropertyViString(store_, 1, -1, text.data()), VI_SUCCESS);
    EXPECT_STREQ(text.data(), "Test store");
    EXPECT_EQ(IviConfig_GetConfigStorePropertyViString(store_, 1, 5, nullptr), kNullPointer);
}

TEST_F(ConfigServer, AStoreIsReadOnce) {
    Load();
    EXPECT_EQ(IviConfig_Deserialize(store_, Path("store.xml").c_str()), kAlreadyDeserialized);
    EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: Deserialize failed. The store is already deserialized.");
}

TEST_F(ConfigServer, AfterAFailureAStoreCanBeReadAgain) {
    EXPECT_EQ(IviConfig_Deserialize(store_, Path("none.xml").c_str()), kDeserializeFailed);
    EXPECT_EQ(StoreText(4), "");
    Load();
    EXPECT_EQ(StoreText(1), "Test store");
}

TEST_F(ConfigServer, AFileThatIsNotAStoreFailsWithATextThatNamesTheFileAndTheFault) {
    struct Case {
        const char* content;
        const char* fault;
    };
    const Case cases[] = {
        {"", "The file is not well-formed XML: No document element found at byte 0."},
        {"plain text", "The file is not well-formed XML: No document element found at byte 9."},
        {"<Other/>", "The file is not a configuration store: its root element is not IviConfigStore."},
        {"<iviconfigstore/>", "The file is not a configuration store: its root element is not IviConfigStore."},
        {"<IviConfigStore><Name></IviConfigStore>",
         "The file is not well-formed XML: Start-end tags mismatch at byte 24."},
    };
    for (const auto& [content, fault] : cases) {
        const auto path = Write(content);
        EXPECT_EQ(IviConfig_Deserialize(store_, path.c_str()), kDeserializeFailed) << content;
        EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: Deserialize failed. " + path + ": " + fault);
    }
}

TEST_F(ConfigServer, AFileThatCannotBeReadFailsWithoutBlocking) {
    const auto expect = [&](const std::string& path, const std::string& fault) {
        EXPECT_EQ(IviConfig_Deserialize(store_, path.c_str()), kDeserializeFailed) << path;
        EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: Deserialize failed. " + path + ": " + fault);
    };
    expect(directory_.string(), "It is not a regular file.");
    expect("/dev/zero", "It is not a regular file.");
    ASSERT_EQ(::mkfifo(Path("pipe").c_str(), 0600), 0);
    expect(Path("pipe"), "It is not a regular file.");
    expect(Path("none.xml"), "The file does not exist.");
    expect("", "The file does not exist.");
    if (::geteuid() != 0) {
        const auto path = Write(kStore);
        ASSERT_EQ(::chmod(path.c_str(), 0), 0);
        expect(path, "The file cannot be read.");
    }
    EXPECT_EQ(IviConfig_Deserialize(store_, nullptr), kNullPointer);
}

TEST_F(ConfigServer, OtherEncodingsAreRead) {
    std::string utf16 = "\xFF\xFE";
    for (const char c : std::string_view("<IviConfigStore><Name>wide</Name></IviConfigStore>")) {
        utf16 += c;
        utf16 += '\0';
    }
    Load(utf16);
    EXPECT_EQ(StoreText(1), "wide");
}

TEST_F(ConfigServer, LatinOneIsReadAsItsDeclarationSays) {
    Load("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><IviConfigStore><Name>\xB5V</Name></IviConfigStore>");
    EXPECT_EQ(StoreText(1), "\xC2\xB5V");
}

TEST_F(ConfigServer, BytesThatAreNotUtf8PassThrough) {
    Load("<IviConfigStore><Name>a\xFF\xFEz</Name></IviConfigStore>");
    EXPECT_EQ(StoreText(1), "a\xFF\xFEz");
}

TEST_F(ConfigServer, DeeplyNestedElementsAreSafe) {
    constexpr int kDepth = 1000000;
    std::string content = "<IviConfigStore>";
    for (int i = 0; i < kDepth; ++i) {
        content += "<IviStructure>";
    }
    for (int i = 0; i < kDepth; ++i) {
        content += "</IviStructure>";
    }
    Load(content + "<DriverSessions><IviDriverSession><Name>x</Name></IviDriverSession></DriverSessions>"
                   "</IviConfigStore>");
    EXPECT_NE(Session("x"), nullptr);
}

TEST_F(ConfigServer, NestingThatNeverEndsFails) {
    std::string content = "<IviConfigStore>";
    for (int i = 0; i < 1000000; ++i) {
        content += "<a>";
    }
    EXPECT_EQ(IviConfig_Deserialize(store_, Write(content).c_str()), kDeserializeFailed);
}

TEST_F(ConfigServer, FilesOfManyMegabytesAreRead) {
    constexpr int kCount = 200000;
    std::string content = "<IviConfigStore><DriverSessions>";
    for (int i = 0; i < kCount; ++i) {
        const auto n = std::to_string(i);
        content += "<IviDriverSession id=\"s" + n + "\"><Name>session" + n + "</Name><Description>" +
                   std::string(100, 'x') + "</Description></IviDriverSession>";
    }
    Load(content + "</DriverSessions></IviConfigStore>");
    EXPECT_EQ(Text(IviConfig_GetDriverSessionPropertyViString, Session("session199999"), 1), "session199999");
}

// ------------------------------------------------------------------------------------------------------------ sessions

TEST_F(ConfigServer, ALogicalNameLeadsToItsDriverSession) {
    Load();
    EXPECT_EQ(Text(IviConfig_GetDriverSessionPropertyViString, Session("PowerSupply"), 1), "bench");
}

TEST_F(ConfigServer, ALogicalNameComesBeforeADriverSessionOfTheSameName) {
    Load();
    EXPECT_EQ(Text(IviConfig_GetDriverSessionPropertyViString, Session("shadowed"), 1), "bench");
}

TEST_F(ConfigServer, NamesAreComparedExactly) {
    Load();
    for (const auto* name : {"Bench", "bench ", "", "benc", "powersupply", "none"}) {
        Handle session = this;
        EXPECT_EQ(IviConfig_GetDriverSession(store_, name, &session), kSessionNotFound) << name;
        EXPECT_EQ(session, nullptr);
        EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: GetDriverSession failed. Name " + std::string(name) +
                                   " could not be resolved to a DriverSession.");
    }
    Handle session = this;
    EXPECT_EQ(IviConfig_GetDriverSession(store_, "empty", &session), kSessionNotFound);
}

TEST_F(ConfigServer, AReferenceToAMissingOrWrongObjectOrInACircleIsAStatus) {
    Load();
    Handle result = this;
    EXPECT_EQ(IviConfig_GetDriverSession(store_, "lost", &result), kNotInGlobalCollection);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: GetDriverSession failed. IviDriverSession of lost refers "
                           "to an object that does not exist.");
    EXPECT_EQ(IviConfig_GetDriverSession(store_, "circle", &result), kNotInGlobalCollection);
    const auto dangling = Session("dangling");
    EXPECT_EQ(IviConfig_GetSessionHardwareAssetReference(dangling, &result), kNotInGlobalCollection);
    EXPECT_EQ(IviConfig_GetSessionSoftwareModuleReference(dangling, &result), kNotInGlobalCollection);
}

TEST_F(ConfigServer, AMissingReferenceIsAMissingItem) {
    Load();
    const auto bare = Session("bare");
    Handle result = this;
    EXPECT_EQ(IviConfig_GetSessionHardwareAssetReference(bare, &result), kItemNotFound);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: GetSessionHardwareAssetReference failed. bare has no "
                           "IviHardwareAsset.");
    EXPECT_EQ(IviConfig_GetSessionSoftwareModuleReference(bare, &result), kItemNotFound);
}

TEST_F(ConfigServer, SessionTextsAndFlagsComeFromTheFile) {
    Load();
    const auto session = Session();
    EXPECT_EQ(Text(IviConfig_GetDriverSessionPropertyViString, session, 1), "bench");
    EXPECT_EQ(Text(IviConfig_GetDriverSessionPropertyViString, session, 2), "the session");
    EXPECT_EQ(Text(IviConfig_GetDriverSessionPropertyViString, session, 3), "TARNEX");
    EXPECT_EQ(Text(IviConfig_GetDriverSessionPropertyViString, session, 10), "Model:TX4410");
    const ViBoolean expected[] = {1, 0, 1, 0, 0, 1}; // RecordCoercions is not in the file
    for (ViInt32 id = 4; id <= 9; ++id) {
        ViBoolean value = 7;
        EXPECT_EQ(IviConfig_GetDriverSessionPropertyViBoolean(session, id, &value), VI_SUCCESS) << id;
        EXPECT_EQ(value, expected[id - 4]) << id;
    }
    ViBoolean value = 7;
    std::array<ViChar, 8> text{};
    EXPECT_EQ(IviConfig_GetDriverSessionPropertyViBoolean(session, 3, &value), kInvalidProperty);
    EXPECT_EQ(IviConfig_GetDriverSessionPropertyViBoolean(session, 10, &value), kInvalidProperty);
    EXPECT_EQ(IviConfig_GetDriverSessionPropertyViBoolean(session, 4, nullptr), kNullPointer);
    EXPECT_EQ(IviConfig_GetDriverSessionPropertyViString(session, 4, 8, text.data()), kInvalidProperty);
    EXPECT_EQ(IviConfig_GetDriverSessionPropertyViBoolean(Session("dangling"), 4, &value), kDeserializeFailed);
    EXPECT_EQ(value, 7);
}

TEST_F(ConfigServer, HardwareAssetOfASessionHasItsResource) {
    Load();
    Handle asset = nullptr;
    ASSERT_EQ(IviConfig_GetSessionHardwareAssetReference(Session(), &asset), VI_SUCCESS);
    EXPECT_EQ(Text(IviConfig_GetHardwareAssetPropertyViString, asset, 1), "supply");
    EXPECT_EQ(Text(IviConfig_GetHardwareAssetPropertyViString, asset, 2), "on the bench");
    EXPECT_EQ(Text(IviConfig_GetHardwareAssetPropertyViString, asset, 3), "TCPIP0::10.0.0.5::5025::SOCKET");
    EXPECT_EQ(IviConfig_GetHardwareAssetPropertyViString(asset, 4, 0, nullptr), kInvalidProperty);
}

TEST_F(ConfigServer, SoftwareModulesHaveTheirPhysicalNames) {
    Load();
    Handle module = nullptr;
    ASSERT_EQ(IviConfig_GetSessionSoftwareModuleReference(Session(), &module), VI_SUCCESS);
    for (const auto from : {module, Module()}) {
        Handle names = nullptr;
        ViInt32 count = -1;
        ASSERT_EQ(IviConfig_GetSoftwareModulePhysicalNameCollection(from, &names), VI_SUCCESS);
        ASSERT_EQ(IviConfig_GetPhysicalNameCount(names, &count), VI_SUCCESS);
        ASSERT_EQ(count, 2);
        const char* expected[] = {"OutputChannel1", "OutputChannel2"};
        for (ViInt32 i = 1; i <= 2; ++i) {
            Handle item = nullptr;
            ASSERT_EQ(IviConfig_GetPhysicalNameItemByIndex(names, i, &item), VI_SUCCESS);
            EXPECT_EQ(Text(IviConfig_GetPhysicalNamePropertyViString, item, 1), expected[i - 1]);
            EXPECT_EQ(Text(IviConfig_GetPhysicalNamePropertyViString, item, 2), "OutputChannel");
            EXPECT_EQ(IviConfig_GetPhysicalNamePropertyViString(item, 3, 0, nullptr), kInvalidProperty);
        }
    }
    Handle names = nullptr;
    ViInt32 count = -1;
    ASSERT_EQ(IviConfig_GetSoftwareModulePhysicalNameCollection(Module("Other"), &names), VI_SUCCESS);
    EXPECT_EQ(IviConfig_GetPhysicalNameCount(names, &count), VI_SUCCESS);
    EXPECT_EQ(count, 0);
}

TEST_F(ConfigServer, AnItemThatIsNotInACollectionIsNamedInTheErrorText) {
    Load();
    Handle modules = nullptr;
    Handle names = nullptr;
    Handle item = this;
    ASSERT_EQ(IviConfig_GetConfigStoreSoftwareModuleCollection(store_, &modules), VI_SUCCESS);
    EXPECT_EQ(IviConfig_GetSoftwareModuleItemByName(modules, "tarnex%s%n", &item), kItemNotFound);
    EXPECT_EQ(item, nullptr);
    EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: GetSoftwareModuleItemByName failed. tarnex%s%n does not "
                           "exist in the collection.");
    ASSERT_EQ(IviConfig_GetSoftwareModulePhysicalNameCollection(Module(), &names), VI_SUCCESS);
    for (const ViInt32 index : {0, 3, -1, std::numeric_limits<ViInt32>::max(), std::numeric_limits<ViInt32>::min()}) {
        EXPECT_EQ(IviConfig_GetPhysicalNameItemByIndex(names, index, &item), kItemNotFound);
        EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: GetPhysicalNameItemByIndex failed. " +
                                   std::to_string(index) + " does not exist in the collection.");
    }
    EXPECT_EQ(IviConfig_GetSoftwareModuleItemByName(modules, nullptr, &item), kNullPointer);
    EXPECT_EQ(IviConfig_GetSoftwareModuleItemByName(modules, "TARNEX", nullptr), kNullPointer);
}

TEST_F(ConfigServer, VirtualNamesHaveTheirRanges) {
    Load();
    Handle names = nullptr;
    Handle item = nullptr;
    Handle ranges = nullptr;
    ViInt32 count = -1;
    ASSERT_EQ(IviConfig_GetSessionVirtualNameCollection(Session(), &names), VI_SUCCESS);
    ASSERT_EQ(IviConfig_GetVirtualNameCount(names, &count), VI_SUCCESS);
    ASSERT_EQ(count, 2);

    ASSERT_EQ(IviConfig_GetVirtualNameItemByIndex(names, 1, &item), VI_SUCCESS);
    EXPECT_EQ(Text(IviConfig_GetVirtualNamePropertyViString, item, 1), "CH");
    EXPECT_EQ(Text(IviConfig_GetVirtualNamePropertyViString, item, 2), "OutputChannel");
    EXPECT_EQ(IviConfig_GetVirtualNamePropertyViString(item, 3, 0, nullptr), kInvalidProperty);
    ASSERT_EQ(IviConfig_GetVirtualNameVirtualRangeCollection(item, &ranges), VI_SUCCESS);
    ASSERT_EQ(IviConfig_GetVirtualRangeCount(ranges, &count), VI_SUCCESS);
    ASSERT_EQ(count, 2);
    Handle range = nullptr;
    ASSERT_EQ(IviConfig_GetVirtualRangeItemByIndex(ranges, 1, &range), VI_SUCCESS);
    const ViInt32 expected[] = {1, 2, 1};
    for (ViInt32 id = 2; id <= 4; ++id) {
        ViInt32 value = -1;
        EXPECT_EQ(IviConfig_GetVirtualRangePropertyViInt32(range, id, &value), VI_SUCCESS);
        EXPECT_EQ(value, expected[id - 2]) << id;
    }
    ViInt32 value = 7;
    EXPECT_EQ(IviConfig_GetVirtualRangePropertyViInt32(range, 1, &value), kInvalidProperty);
    EXPECT_EQ(IviConfig_GetVirtualRangePropertyViInt32(range, 2, nullptr), kNullPointer);

    ASSERT_EQ(IviConfig_GetVirtualNameItemByIndex(names, 2, &item), VI_SUCCESS);
    EXPECT_EQ(Text(IviConfig_GetVirtualNamePropertyViString, item, 1), "Main");
    ASSERT_EQ(IviConfig_GetVirtualNameVirtualRangeCollection(item, &ranges), VI_SUCCESS);
    ASSERT_EQ(IviConfig_GetVirtualRangeCount(ranges, &count), VI_SUCCESS);
    EXPECT_EQ(count, 0);
}

TEST_F(ConfigServer, AnIntegerOutOfRangeOrMissingIsAStatus) {
    Load();
    Handle names = nullptr;
    Handle item = nullptr;
    Handle ranges = nullptr;
    Handle range = nullptr;
    ASSERT_EQ(IviConfig_GetSessionVirtualNameCollection(Session(), &names), VI_SUCCESS);
    ASSERT_EQ(IviConfig_GetVirtualNameItemByIndex(names, 1, &item), VI_SUCCESS);
    ASSERT_EQ(IviConfig_GetVirtualNameVirtualRangeCollection(item, &ranges), VI_SUCCESS);
    ASSERT_EQ(IviConfig_GetVirtualRangeItemByIndex(ranges, 2, &range), VI_SUCCESS);
    IviConfig_ClearError();
    ViInt32 value = 7;
    EXPECT_EQ(IviConfig_GetVirtualRangePropertyViInt32(range, 2, &value), VI_SUCCESS);
    EXPECT_EQ(value, std::numeric_limits<ViInt32>::min());
    value = 7;
    EXPECT_EQ(IviConfig_GetVirtualRangePropertyViInt32(range, 3, &value), kDeserializeFailed);
    EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: GetVirtualRangePropertyViInt32 failed. Max of bad is "
                           "invalid: '99999999999'.");
    EXPECT_EQ(IviConfig_GetVirtualRangePropertyViInt32(range, 4, &value), kDeserializeFailed);
    EXPECT_EQ(value, 7);
}

// ----------------------------------------------------------------------------------------------------- data components

TEST_F(ConfigServer, SessionsModulesAndAssetsHaveDataComponents) {
    Load();
    Handle asset = nullptr;
    ASSERT_EQ(IviConfig_GetSessionHardwareAssetReference(Session(), &asset), VI_SUCCESS);
    const std::pair<Handle, const char*> owners[] = {
        {Session(), "Configurable Initial Settings"}, {Module(), "Note"}, {asset, "Shelf"}};
    for (const auto& [owner, name] : owners) {
        Handle components = nullptr;
        Handle item = nullptr;
        ViInt32 count = -1;
        ASSERT_EQ(IviConfig_GetConfigComponentDataComponentCollection(owner, &components), VI_SUCCESS);
        EXPECT_EQ(IviConfig_GetDataComponentCount(components, &count), VI_SUCCESS);
        EXPECT_EQ(count, 1);
        ASSERT_EQ(IviConfig_GetDataComponentItemByIndex(components, 1, &item), VI_SUCCESS);
        EXPECT_EQ(Text(IviConfig_GetDataComponentPropertyViString, item, 1), name);
        EXPECT_EQ(IviConfig_GetDataComponentItemByName(components, "Nothing", &item), kItemNotFound);
    }
}

TEST_F(ConfigServer, DataComponentsOfAStructureKeepTheirOrder) {
    Load();
    const auto settings = Settings();
    ViInt32 count = -1;
    ASSERT_EQ(IviConfig_GetDataComponentCount(settings, &count), VI_SUCCESS);
    const std::pair<const char*, const char*> expected[] = {
        {"model", "String"},     {"count", "Integer"}, {"level", "Real"},   {"enabled", "Boolean"},
        {"api", "APIReference"}, {"blank", "String"},  {"mixed", "String"}, {"big", "Integer"},
        {"word", "Integer"},     {"huge", "Real"},     {"comma", "Real"},   {"maybe", "Boolean"}};
    ASSERT_EQ(count, static_cast<ViInt32>(std::size(expected)));
    for (ViInt32 i = 1; i <= count; ++i) {
        Handle item = nullptr;
        ASSERT_EQ(IviConfig_GetDataComponentItemByIndex(settings, i, &item), VI_SUCCESS);
        EXPECT_EQ(Text(IviConfig_GetDataComponentPropertyViString, item, 1), expected[i - 1].first);
        EXPECT_EQ(Text(IviConfig_GetDataComponentPropertyViString, item, 7), expected[i - 1].second);
    }
}

TEST_F(ConfigServer, ValuesOfDataComponentsHaveTheirTypes) {
    Load();
    EXPECT_EQ(Text(IviConfig_GetDataComponentPropertyViString, Setting("model"), 9), "TX6300");
    EXPECT_EQ(Text(IviConfig_GetDataComponentPropertyViString, Setting("blank"), 9), "  ");
    EXPECT_EQ(Text(IviConfig_GetDataComponentPropertyViString, Setting("mixed"), 9), "ab<c>A");
    ViInt32 integer = 0;
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViInt32(Setting("count"), 9, &integer), VI_SUCCESS);
    EXPECT_EQ(integer, -42);
    ViReal64 real = 0;
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViReal64(Setting("level"), 9, &real), VI_SUCCESS);
    EXPECT_EQ(real, 1.5e-3);
    ViBoolean boolean = 7;
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViBoolean(Setting("enabled"), 9, &boolean), VI_SUCCESS);
    EXPECT_EQ(boolean, 1);
}

TEST_F(ConfigServer, OtherPropertiesOfDataComponentsComeFromTheFile) {
    Load();
    const auto model = Setting("model");
    EXPECT_EQ(Text(IviConfig_GetDataComponentPropertyViString, model, 2), "which");
    EXPECT_EQ(Text(IviConfig_GetDataComponentPropertyViString, model, 4), "help.chm");
    EXPECT_EQ(Text(IviConfig_GetDataComponentPropertyViString, model, 6), "key");
    EXPECT_EQ(Text(IviConfig_GetDataComponentPropertyViString, Setting("count"), 10), "pieces");
    EXPECT_EQ(Text(IviConfig_GetDataComponentPropertyViString, Setting("level"), 10), "V");
    ViInt32 integer = 0;
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViInt32(model, 3, &integer), VI_SUCCESS);
    EXPECT_EQ(integer, 17);
    Handle components = nullptr;
    Handle structure = nullptr;
    ASSERT_EQ(IviConfig_GetConfigComponentDataComponentCollection(Session(), &components), VI_SUCCESS);
    ASSERT_EQ(IviConfig_GetDataComponentItemByIndex(components, 1, &structure), VI_SUCCESS);
    ViBoolean boolean = 7;
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViBoolean(structure, 5, &boolean), VI_SUCCESS);
    EXPECT_EQ(boolean, 1);
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViBoolean(model, 5, &boolean), VI_SUCCESS);
    EXPECT_EQ(boolean, 0);
    EXPECT_EQ(Text(IviConfig_GetDataComponentPropertyViString, structure, 8), "Required");
    for (const ViInt32 id : {0, 3, 5, 11}) {
        EXPECT_EQ(IviConfig_GetDataComponentPropertyViString(model, id, 0, nullptr), kInvalidProperty) << id;
    }
    ViReal64 real = 0;
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViInt32(model, 1, &integer), kInvalidProperty);
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViReal64(model, 3, &real), kInvalidProperty);
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViBoolean(model, 8, &boolean), kInvalidProperty);
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViReal64(Setting("level"), 9, nullptr), kNullPointer);
}

TEST_F(ConfigServer, ADataComponentOfAnotherTypeOrWithAnotherValueIsInvalid) {
    Load();
    ViInt32 integer = 7;
    ViReal64 real = 7;
    ViBoolean boolean = 7;
    Handle collection = this;
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViString(Setting("count"), 9, 0, nullptr), kInvalidDataComponent);
    EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: GetDataComponentPropertyViString failed. count is no "
                           "data component of type String.");
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViString(Setting("model"), 10, 0, nullptr), kInvalidDataComponent);
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViInt32(Setting("model"), 9, &integer), kInvalidDataComponent);
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViReal64(Setting("count"), 9, &real), kInvalidDataComponent);
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViBoolean(Setting("count"), 9, &boolean), kInvalidDataComponent);
    EXPECT_EQ(IviConfig_GetStructureDataComponentCollection(Setting("model"), &collection), kInvalidDataComponent);
    EXPECT_EQ(collection, nullptr);
    IviConfig_ClearError();
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViInt32(Setting("big"), 9, &integer), kInvalidDataComponent);
    EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: GetDataComponentPropertyViInt32 failed. Value of big is "
                           "invalid: '2147483648'.");
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViInt32(Setting("word"), 9, &integer), kInvalidDataComponent);
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViReal64(Setting("huge"), 9, &real), kInvalidDataComponent);
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViReal64(Setting("comma"), 9, &real), kInvalidDataComponent);
    EXPECT_EQ(IviConfig_GetDataComponentPropertyViBoolean(Setting("maybe"), 9, &boolean), kInvalidDataComponent);
    EXPECT_EQ(integer, 7);
    EXPECT_EQ(real, 7);
    EXPECT_EQ(boolean, 7);
}

// ------------------------------------------------------------------------------------------------------------- handles

TEST_F(ConfigServer, EveryFunctionRefusesInvalidHandles) {
    Load();
    Handle disposed = Session();
    ASSERT_EQ(IviConfig_DisposeHandle(disposed), VI_SUCCESS);
    int local = 0;
    const std::array<Handle, 4> wrong{nullptr, disposed, &local, reinterpret_cast<Handle>(UINTPTR_MAX)};
    for (const Handle handle : wrong) {
        Handle result = nullptr;
        ViInt32 integer = 0;
        ViReal64 real = 0;
        ViBoolean boolean = 0;
        EXPECT_EQ(IviConfig_Close(handle), kInvalidHandle);
        EXPECT_EQ(IviConfig_DisposeHandle(handle), kInvalidHandle);
        EXPECT_EQ(IviConfig_Deserialize(handle, "x"), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetConfigStorePropertyViString(handle, 1, 0, nullptr), kInvalidHandle);
        EXPECT_EQ(IviConfig_SetConfigStorePropertyViString(handle, 5, "x"), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetDriverSession(handle, "bench", &result), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetConfigStoreSoftwareModuleCollection(handle, &result), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetSoftwareModuleItemByName(handle, "x", &result), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetSoftwareModulePhysicalNameCollection(handle, &result), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetPhysicalNameCount(handle, &integer), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetPhysicalNameItemByIndex(handle, 1, &result), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetPhysicalNamePropertyViString(handle, 1, 0, nullptr), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetSessionSoftwareModuleReference(handle, &result), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetSessionHardwareAssetReference(handle, &result), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetHardwareAssetPropertyViString(handle, 1, 0, nullptr), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetDriverSessionPropertyViBoolean(handle, 4, &boolean), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetDriverSessionPropertyViString(handle, 1, 0, nullptr), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetSessionVirtualNameCollection(handle, &result), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetVirtualNameCount(handle, &integer), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetVirtualNameItemByIndex(handle, 1, &result), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetVirtualNamePropertyViString(handle, 1, 0, nullptr), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetVirtualNameVirtualRangeCollection(handle, &result), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetVirtualRangeCount(handle, &integer), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetVirtualRangeItemByIndex(handle, 1, &result), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetVirtualRangePropertyViInt32(handle, 2, &integer), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetConfigComponentDataComponentCollection(handle, &result), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetStructureDataComponentCollection(handle, &result), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetDataComponentCount(handle, &integer), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetDataComponentItemByIndex(handle, 1, &result), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetDataComponentItemByName(handle, "x", &result), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetDataComponentPropertyViString(handle, 1, 0, nullptr), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetDataComponentPropertyViInt32(handle, 9, &integer), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetDataComponentPropertyViReal64(handle, 9, &real), kInvalidHandle);
        EXPECT_EQ(IviConfig_GetDataComponentPropertyViBoolean(handle, 9, &boolean), kInvalidHandle);
    }
}

TEST_F(ConfigServer, AHandleOfAnotherKindIsInvalid) {
    Load();
    Handle result = nullptr;
    ViInt32 count = 0;
    EXPECT_EQ(IviConfig_GetVirtualNameCount(Session(), &count), kInvalidHandle);
    EXPECT_EQ(IviConfig_GetDriverSessionPropertyViString(Module(), 1, 0, nullptr), kInvalidHandle);
    EXPECT_EQ(IviConfig_GetSessionVirtualNameCollection(store_, &result), kInvalidHandle);
    EXPECT_EQ(IviConfig_GetDriverSession(Session(), "bench", &result), kInvalidHandle);
    EXPECT_EQ(IviConfig_Close(Session()), kInvalidHandle);
    EXPECT_EQ(IviConfig_GetConfigComponentDataComponentCollection(Settings(), &result), kInvalidHandle);
    EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: GetVirtualNameCount failed. The handle is invalid.");
}

TEST_F(ConfigServer, AStoreHandleIsClosedAndNotDisposedOf) {
    EXPECT_EQ(IviConfig_DisposeHandle(store_), kInvalidHandle);
    EXPECT_EQ(StoreText(5), ""); // still open
    Handle other = nullptr;
    ASSERT_EQ(IviConfig_Initialize(&other), VI_SUCCESS);
    EXPECT_NE(other, store_);
    EXPECT_EQ(IviConfig_Close(other), VI_SUCCESS);
    EXPECT_EQ(IviConfig_Close(other), kInvalidHandle);
    EXPECT_EQ(IviConfig_Initialize(nullptr), kNullPointer);
}

TEST_F(ConfigServer, EveryHandleIsDisposedOfOnce) {
    Load();
    const auto one = Session();
    const auto other = Session();
    EXPECT_NE(one, other);
    EXPECT_EQ(IviConfig_DisposeHandle(one), VI_SUCCESS);
    EXPECT_EQ(IviConfig_DisposeHandle(one), kInvalidHandle);
    EXPECT_EQ(Text(IviConfig_GetDriverSessionPropertyViString, other, 1), "bench");
    EXPECT_EQ(IviConfig_DisposeHandle(other), VI_SUCCESS);
}

TEST_F(ConfigServer, AnObjectOutlivesTheHandleThatItCameFrom) {
    Load();
    Handle modules = nullptr;
    Handle module = nullptr;
    Handle names = nullptr;
    ViInt32 count = 0;
    ASSERT_EQ(IviConfig_GetConfigStoreSoftwareModuleCollection(store_, &modules), VI_SUCCESS);
    ASSERT_EQ(IviConfig_GetSoftwareModuleItemByName(modules, "TARNEX", &module), VI_SUCCESS);
    EXPECT_EQ(IviConfig_DisposeHandle(modules), VI_SUCCESS);
    ASSERT_EQ(IviConfig_GetSoftwareModulePhysicalNameCollection(module, &names), VI_SUCCESS);
    EXPECT_EQ(IviConfig_DisposeHandle(module), VI_SUCCESS);
    EXPECT_EQ(IviConfig_GetPhysicalNameCount(names, &count), VI_SUCCESS);
    EXPECT_EQ(count, 2);
}

TEST_F(ConfigServer, ClosingAStoreInvalidatesItsHandles) {
    const auto path = Write(kStore);
    Handle store = nullptr;
    Handle session = nullptr;
    ASSERT_EQ(IviConfig_Initialize(&store), VI_SUCCESS);
    ASSERT_EQ(IviConfig_Deserialize(store, path.c_str()), VI_SUCCESS);
    ASSERT_EQ(IviConfig_GetDriverSession(store, "bench", &session), VI_SUCCESS);
    EXPECT_EQ(IviConfig_Close(store), VI_SUCCESS);
    EXPECT_EQ(IviConfig_GetDriverSessionPropertyViString(session, 1, 0, nullptr), kInvalidHandle);
    EXPECT_EQ(IviConfig_DisposeHandle(session), kInvalidHandle);
    EXPECT_EQ(IviConfig_GetConfigStorePropertyViString(store, 5, 0, nullptr), kInvalidHandle);
}

// --------------------------------------------------------------------------------------------------------- error texts

TEST_F(ConfigServer, TheFirstErrorTextStaysUntilItIsRead) {
    EXPECT_EQ(ErrorText(), "");
    EXPECT_EQ(IviConfig_DisposeHandle(nullptr), kInvalidHandle);
    EXPECT_EQ(IviConfig_Close(nullptr), kInvalidHandle);
    EXPECT_EQ(StoreText(5), ""); // a success does not change it
    EXPECT_EQ(IviConfig_GetError(0, nullptr), 79);
    EXPECT_EQ(IviConfig_GetError(20, nullptr), kNullPointer);
    EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: DisposeHandle failed. The handle is invalid.");
    EXPECT_EQ(ErrorText(), "");
    EXPECT_EQ(IviConfig_GetError(0, nullptr), 1);
}

TEST_F(ConfigServer, ATruncatedErrorTextCountsAsRead) {
    EXPECT_EQ(IviConfig_DisposeHandle(nullptr), kInvalidHandle);
    std::array<ViChar, 10> text{};
    EXPECT_EQ(IviConfig_GetError(10, text.data()), 79);
    EXPECT_STREQ(text.data(), "IviConfig");
    EXPECT_EQ(ErrorText(), "");
}

TEST_F(ConfigServer, ClearErrorForgetsTheErrorText) {
    EXPECT_EQ(IviConfig_DisposeHandle(nullptr), kInvalidHandle);
    EXPECT_EQ(IviConfig_ClearError(), VI_SUCCESS);
    EXPECT_EQ(ErrorText(), "");
}

TEST_F(ConfigServer, EveryThreadHasItsOwnErrorText) {
    EXPECT_EQ(IviConfig_DisposeHandle(nullptr), kInvalidHandle);
    std::thread([] {
        EXPECT_EQ(ErrorText(), "");
        EXPECT_EQ(IviConfig_Close(nullptr), kInvalidHandle);
        EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: Close failed. The handle is invalid.");
    }).join();
    EXPECT_EQ(ErrorText(), "IviConfigServer.IviConfigStore.1: DisposeHandle failed. The handle is invalid.");
}

// --------------------------------------------------------------------------------------------------- many and at once

TEST_F(ConfigServer, AThousandVirtualNamesAreReadOneByOne) {
    constexpr ViInt32 kCount = 1000;
    std::string content = "<IviConfigStore><DriverSessions><IviDriverSession><Name>s</Name><VirtualNames>";
    for (ViInt32 i = 1; i <= kCount; ++i) {
        const auto n = std::to_string(i);
        content += "<IviVirtualName><Name>v" + n + "</Name><MapTo>p" + n + "</MapTo></IviVirtualName>";
    }
    Load(content + "</VirtualNames></IviDriverSession></DriverSessions></IviConfigStore>");
    Handle names = nullptr;
    ViInt32 count = 0;
    ASSERT_EQ(IviConfig_GetSessionVirtualNameCollection(Session("s"), &names), VI_SUCCESS);
    ASSERT_EQ(IviConfig_GetVirtualNameCount(names, &count), VI_SUCCESS);
    ASSERT_EQ(count, kCount);
    for (ViInt32 i = 1; i <= kCount; ++i) {
        Handle item = nullptr;
        Handle ranges = nullptr;
        ASSERT_EQ(IviConfig_GetVirtualNameItemByIndex(names, i, &item), VI_SUCCESS);
        ASSERT_EQ(Text(IviConfig_GetVirtualNamePropertyViString, item, 2), Numbered("p", i));
        ASSERT_EQ(IviConfig_GetVirtualNameVirtualRangeCollection(item, &ranges), VI_SUCCESS);
        ASSERT_EQ(IviConfig_DisposeHandle(ranges), VI_SUCCESS);
        ASSERT_EQ(IviConfig_DisposeHandle(item), VI_SUCCESS);
    }
}

TEST_F(ConfigServer, ThreadsReadTheirStoresAtTheSameTime) {
    const auto path = Write(kStore);
    std::atomic<int> good{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 50; ++round) {
                Handle store = nullptr;
                Handle session = nullptr;
                IviConfig_Initialize(&store);
                IviConfig_SetConfigStorePropertyViString(store, 5, path.c_str());
                const auto location = Text(IviConfig_GetConfigStorePropertyViString, store, 5);
                IviConfig_Deserialize(store, location.c_str());
                IviConfig_GetDriverSession(store, "PowerSupply", &session);
                good += Text(IviConfig_GetDriverSessionPropertyViString, session, 1) == "bench" ? 1 : 0;
                IviConfig_Close(store);
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(good, 200);
}

TEST_F(ConfigServer, AStoreMayBeClosedWhileAnotherThreadReadsIt) {
    const auto path = Write(kStore);
    for (int round = 0; round < 50; ++round) {
        Handle store = nullptr;
        Handle session = nullptr;
        ASSERT_EQ(IviConfig_Initialize(&store), VI_SUCCESS);
        ASSERT_EQ(IviConfig_Deserialize(store, path.c_str()), VI_SUCCESS);
        ASSERT_EQ(IviConfig_GetDriverSession(store, "bench", &session), VI_SUCCESS);
        std::thread reader([&] {
            std::string name;
            do {
                name = Text(IviConfig_GetDriverSessionPropertyViString, session, 1);
            } while (name == "bench");
            EXPECT_EQ(name, Numbered("status ", kInvalidHandle));
        });
        ASSERT_EQ(IviConfig_Close(store), VI_SUCCESS);
        reader.join();
    }
}

} // namespace
