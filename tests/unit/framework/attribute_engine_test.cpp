#include "framework/attribute_engine.h"

#include <array>
#include <cstring>
#include <limits>

#include "framework/string_buffer.h"
#include "tests/unit/framework/framework_fixture.h"

namespace unit {
namespace {

// The arguments of the accessors below, and their results.
struct Accessed {
    std::string call;
    ViStatus status = VI_SUCCESS;
};
Accessed accessed;

template <typename T>
ViStatus GetSeven(ViSession vi, ViConstString name, T* value) {
    accessed.call = "get " + std::to_string(vi) + " " + name;
    *value = static_cast<T>(7);
    return accessed.status;
}
template <typename T>
ViStatus Set(ViSession vi, ViConstString name, T value) {
    accessed.call = "set " + std::to_string(vi) + " " + name + " " + std::to_string(value);
    return accessed.status;
}
ViStatus GetText(ViSession vi, ViConstString name, ViInt32 size, ViChar value[]) {
    accessed.call = "get " + std::to_string(vi) + " " + name + " " + std::to_string(size);
    if (accessed.status >= 0) {
        nrt2::CopyTruncated("ninechars", std::min(size, 16), value);
    }
    return accessed.status;
}
ViStatus SetText(ViSession vi, ViConstString name, ViConstString value) {
    accessed.call = "set " + std::to_string(vi) + " " + name + " " + (value == nullptr ? "null" : value);
    return accessed.status;
}
ViStatus GetEight(ViSession /*vi*/, ViConstString /*name*/, ViInt32* value) {
    *value = 8;
    return VI_SUCCESS;
}

using nrt2::Accessors;

constexpr ViAttr kNumber = 1;
constexpr ViAttr kReal = 2;
constexpr ViAttr kSwitch = 3;
constexpr ViAttr kSession = 4;
constexpr ViAttr kText = 5;
constexpr ViAttr kWriteOnly = 10; // a number; 11 to 14 likewise for the other types
constexpr ViAttr kReadOnly = 20;  // likewise
constexpr ViAttr kTwice = 30;
constexpr ViAttr kLargest = 0xFFFFFFFF;

constexpr std::array kRows{
    nrt2::AttributeInfo(kNumber, "NUMBER", Accessors<ViInt32>{GetSeven<ViInt32>, Set<ViInt32>}),
    nrt2::AttributeInfo(kReal, "REAL", Accessors<ViReal64>{GetSeven<ViReal64>, Set<ViReal64>}),
    nrt2::AttributeInfo(kSwitch, "SWITCH", Accessors<ViBoolean>{GetSeven<ViBoolean>, Set<ViBoolean>}),
    nrt2::AttributeInfo(kSession, "SESSION", Accessors<ViSession>{GetSeven<ViSession>, Set<ViSession>}),
    nrt2::AttributeInfo(kText, "TEXT", Accessors<ViString>{GetText, SetText}),
    nrt2::AttributeInfo(kWriteOnly, "WO_NUMBER", Accessors<ViInt32>{nullptr, Set<ViInt32>}),
    nrt2::AttributeInfo(kWriteOnly + 1, "WO_REAL", Accessors<ViReal64>{nullptr, Set<ViReal64>}),
    nrt2::AttributeInfo(kWriteOnly + 2, "WO_SWITCH", Accessors<ViBoolean>{nullptr, Set<ViBoolean>}),
    nrt2::AttributeInfo(kWriteOnly + 3, "WO_SESSION", Accessors<ViSession>{nullptr, Set<ViSession>}),
    nrt2::AttributeInfo(kWriteOnly + 4, "WO_TEXT", Accessors<ViString>{nullptr, SetText}),
    nrt2::AttributeInfo(kReadOnly, "RO_NUMBER", Accessors<ViInt32>{GetSeven<ViInt32>, nullptr}),
    nrt2::AttributeInfo(kReadOnly + 1, "RO_REAL", Accessors<ViReal64>{GetSeven<ViReal64>, nullptr}),
    nrt2::AttributeInfo(kReadOnly + 2, "RO_SWITCH", Accessors<ViBoolean>{GetSeven<ViBoolean>, nullptr}),
    nrt2::AttributeInfo(kReadOnly + 3, "RO_SESSION", Accessors<ViSession>{GetSeven<ViSession>, nullptr}),
    nrt2::AttributeInfo(kReadOnly + 4, "RO_TEXT", Accessors<ViString>{GetText, nullptr}),
    nrt2::AttributeInfo(kTwice, "FIRST", Accessors<ViInt32>{GetSeven<ViInt32>, nullptr}),
    nrt2::AttributeInfo(kTwice, "SECOND", Accessors<ViInt32>{GetEight, nullptr}),
    nrt2::AttributeInfo(kLargest, "LARGEST", Accessors<ViInt32>{GetEight, nullptr}),
};
constexpr nrt2::AttributeEngine kEngine(kRows);

class Engine : public FrameworkTest {
  protected:
    Engine() { accessed = {}; }

    template <typename T>
    Status Get(ViAttr attribute, T& value) const {
        return Status(kEngine.Get<T>("GetIt", vi_, "CH1", attribute, &value));
    }
    template <typename T>
    Status SetTo(ViAttr attribute, T value) const {
        return Status(kEngine.Set<T>(vi_, "CH1", attribute, value));
    }
    Status GetString(ViAttr attribute, ViInt32 size, ViChar value[]) const {
        return Status(kEngine.GetString(vi_, "CH1", attribute, size, value));
    }

    RecordedError Recorded(std::uint32_t code, const std::string& description) const {
        return {vi_, code, description};
    }
    [[nodiscard]] std::string Vi() const { return std::to_string(vi_); }

    ViSession vi_ = NewHandle();
};

TEST_F(Engine, CallsTheGetterOfEachType) {
    ViInt32 number = 0;
    EXPECT_EQ(Get(kNumber, number), Status(0U));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(accessed.call, "get " + Vi() + " CH1");
    ViReal64 real = 0.0;
    EXPECT_EQ(Get(kReal, real), Status(0U));
    EXPECT_EQ(real, 7.0);
    ViBoolean boolean = 0;
    EXPECT_EQ(Get(kSwitch, boolean), Status(0U));
    EXPECT_EQ(boolean, 7);
    ViSession session = 0;
    EXPECT_EQ(Get(kSession, session), Status(0U));
    EXPECT_EQ(session, 7U);
    std::array<ViChar, 16> text{};
    EXPECT_EQ(GetString(kText, 16, text.data()), Status(0U));
    EXPECT_STREQ(text.data(), "ninechars");
    EXPECT_EQ(accessed.call, "get " + Vi() + " CH1 16");
    EXPECT_THAT(TakeRecorded(), IsEmpty());
}

TEST_F(Engine, CallsTheSetterOfEachType) {
    EXPECT_EQ(SetTo<ViInt32>(kNumber, -5), Status(0U));
    EXPECT_EQ(accessed.call, "set " + Vi() + " CH1 -5");
    EXPECT_EQ(SetTo<ViReal64>(kReal, 2.5), Status(0U));
    EXPECT_EQ(accessed.call, "set " + Vi() + " CH1 2.500000");
    EXPECT_EQ(SetTo<ViBoolean>(kSwitch, 2), Status(0U));
    EXPECT_EQ(accessed.call, "set " + Vi() + " CH1 2");
    EXPECT_EQ(SetTo<ViSession>(kSession, 9U), Status(0U));
    EXPECT_EQ(accessed.call, "set " + Vi() + " CH1 9");
    EXPECT_EQ(Status(kEngine.SetString(vi_, "CH1", kText, "abc")), Status(0U));
    EXPECT_EQ(accessed.call, "set " + Vi() + " CH1 abc");
    EXPECT_THAT(TakeRecorded(), IsEmpty());
}

TEST_F(Engine, LeavesANullTextToItsSetter) {
    EXPECT_EQ(Status(kEngine.SetString(vi_, "CH1", kText, nullptr)), Status(0U));
    EXPECT_EQ(accessed.call, "set " + Vi() + " CH1 null");
}

TEST_F(Engine, ReturnsTheAccessorsStatusUnrecorded) {
    ViInt32 number = 0;
    for (const auto status : {0xBFFA4214U, 0x3FFF0005U}) {
        accessed.status = Code(status);
        EXPECT_EQ(Get(kNumber, number), Status(status));
        EXPECT_EQ(SetTo<ViInt32>(kNumber, 1), Status(status));
        EXPECT_EQ(Status(kEngine.SetString(vi_, "CH1", kText, "abc")), Status(status));
    }
    EXPECT_THAT(TakeRecorded(), IsEmpty());
}

TEST_F(Engine, TakesNoLockAndLooksUpNoHandle) {
    ViInt32 number = 0;
    EXPECT_EQ(Get(kNumber, number), Status(0U));
    EXPECT_EQ(SetTo<ViInt32>(kNumber, 1), Status(0U));
    EXPECT_THAT(doubles::TheScript().Calls(), IsEmpty());
}

TEST_F(Engine, RefusesToReadAWriteOnlyAttributeOfEachType) {
    const auto refused = [&](const char* name) {
        EXPECT_THAT(TakeRecorded(),
                    ElementsAre(Recorded(0xBFFA000E, std::string("Attribute '") + name + "' is write-only.")));
        EXPECT_EQ(accessed.call, "");
    };
    ViInt32 number = 5;
    EXPECT_EQ(Get(kWriteOnly, number), Status(0xBFFA000E));
    refused("WO_NUMBER");
    EXPECT_EQ(number, 5);
    ViReal64 real = 5.0;
    EXPECT_EQ(Get(kWriteOnly + 1, real), Status(0xBFFA000E));
    refused("WO_REAL");
    ViBoolean boolean = 5;
    EXPECT_EQ(Get(kWriteOnly + 2, boolean), Status(0xBFFA000E));
    refused("WO_SWITCH");
    ViSession session = 5;
    EXPECT_EQ(Get(kWriteOnly + 3, session), Status(0xBFFA000E));
    refused("WO_SESSION");
    std::array<ViChar, 16> text{};
    EXPECT_EQ(GetString(kWriteOnly + 4, 16, text.data()), Status(0xBFFA000E));
    refused("WO_TEXT");
    EXPECT_EQ(GetString(kWriteOnly + 4, 0, nullptr), Status(0xBFFA000E));
    refused("WO_TEXT");
}

TEST_F(Engine, RefusesToWriteAReadOnlyAttributeOfEachType) {
    const auto refused = [&](const char* name) {
        EXPECT_THAT(TakeRecorded(),
                    ElementsAre(Recorded(0xBFFA000D, std::string("Attribute '") + name + "' is read-only.")));
        EXPECT_EQ(accessed.call, "");
    };
    EXPECT_EQ(SetTo<ViInt32>(kReadOnly, 1), Status(0xBFFA000D));
    refused("RO_NUMBER");
    EXPECT_EQ(SetTo<ViReal64>(kReadOnly + 1, 1.0), Status(0xBFFA000D));
    refused("RO_REAL");
    EXPECT_EQ(SetTo<ViBoolean>(kReadOnly + 2, VI_TRUE), Status(0xBFFA000D));
    refused("RO_SWITCH");
    EXPECT_EQ(SetTo<ViSession>(kReadOnly + 3, 1U), Status(0xBFFA000D));
    refused("RO_SESSION");
    EXPECT_EQ(Status(kEngine.SetString(vi_, "CH1", kReadOnly + 4, "abc")), Status(0xBFFA000D));
    refused("RO_TEXT");
}

TEST_F(Engine, ChecksTheTypeBeforeTheDirection) {
    ViReal64 real = 0.0;
    EXPECT_EQ(Get(kWriteOnly, real), Status(0xBFFA0015));
    EXPECT_THAT(
        TakeRecorded(),
        ElementsAre(Recorded(0xBFFA0015, "GetAttributeViReal64 called for attribute 'WO_NUMBER' of type 'ViInt32'.")));
    EXPECT_EQ(Status(kEngine.SetString(vi_, "CH1", kReadOnly + 3, "abc")), Status(0xBFFA0015));
    EXPECT_THAT(TakeRecorded(),
                ElementsAre(Recorded(0xBFFA0015,
                                     "SetAttributeViString called for attribute 'RO_SESSION' of type 'ViSession'.")));
}

TEST_F(Engine, NamesEveryTypeInTheMismatchOfAnother) {
    ViSession session = 0;
    struct Case {
        ViAttr attribute;
        const char* description;
    };
    for (const auto& [attribute, description] :
         {Case{kNumber, "GetAttributeViSession called for attribute 'NUMBER' of type 'ViInt32'."},
          Case{kReal, "GetAttributeViSession called for attribute 'REAL' of type 'ViReal64'."},
          Case{kSwitch, "GetAttributeViSession called for attribute 'SWITCH' of type 'ViBoolean'."},
          Case{kText, "GetAttributeViSession called for attribute 'TEXT' of type 'ViString'."}}) {
        EXPECT_EQ(Get(attribute, session), Status(0xBFFA0015));
        EXPECT_THAT(TakeRecorded(), ElementsAre(Recorded(0xBFFA0015, description)));
    }
}

TEST_F(Engine, FindsTheFirstOfTwoRowsWithOneIdentifier) {
    ViInt32 number = 0;
    EXPECT_EQ(Get(kTwice, number), Status(0U));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(SetTo<ViInt32>(kTwice, 1), Status(0xBFFA000D));
    EXPECT_THAT(TakeRecorded(), ElementsAre(Recorded(0xBFFA000D, "Attribute 'FIRST' is read-only.")));
}

TEST_F(Engine, ComparesIdentifiersAsUnsignedNumbers) {
    ViInt32 number = 0;
    EXPECT_EQ(Get(kLargest, number), Status(0U));
    EXPECT_EQ(number, 8);
    for (const auto& [attribute, text] : {std::pair<ViAttr, const char*>{0U, "0"},
                                          {6U, "6"},
                                          {31U, "31"},
                                          {0x80000000U, "2147483648"},
                                          {0xFFFFFFFEU, "4294967294"}}) {
        EXPECT_EQ(Get(attribute, number), Status(0xBFFA000C));
        EXPECT_THAT(TakeRecorded(),
                    ElementsAre(Recorded(0xBFFA000C, std::string("Attribute ID '") + text + "' not recognized.")));
    }
}

TEST_F(Engine, WithoutRowsRecognizesNothing) {
    const nrt2::AttributeEngine empty({});
    ViInt32 number = 0;
    EXPECT_EQ(Status(empty.Get("GetIt", vi_, "", kNumber, &number)), Status(0xBFFA000C));
    EXPECT_EQ(Status(empty.SetString(vi_, "", kText, "")), Status(0xBFFA000C));
}

TEST_F(Engine, RefusesANullValueOfEachTypeFirst) {
    const auto refused = [&](ViStatus status) {
        EXPECT_EQ(Status(status), Status(0xBFFA0058));
        EXPECT_THAT(
            TakeRecorded(),
            ElementsAre(Recorded(0xBFFA0058, "Null pointer passed for function 'GetIt', parameter 'AttributeValue'.")));
    };
    refused(kEngine.Get<ViInt32>("GetIt", vi_, "", 99, nullptr));
    refused(kEngine.Get<ViReal64>("GetIt", vi_, "", 99, nullptr));
    refused(kEngine.Get<ViBoolean>("GetIt", vi_, "", 99, nullptr));
    refused(kEngine.Get<ViSession>("GetIt", vi_, "", 99, nullptr));
}

TEST_F(Engine, ReturnsTheFailureOfARecording) {
    ViInt32 number = 0;
    for (const auto attribute : {ViAttr{99}, kReal, kWriteOnly}) {
        Fail("IviSession_SetError", 0xBFFA1198);
        EXPECT_EQ(Get(attribute, number), Status(0xBFFA1198)) << attribute;
    }
    for (const auto attribute : {ViAttr{99}, kReal, kReadOnly}) {
        Fail("IviSession_SetError", 0xBFFA1198);
        EXPECT_EQ(SetTo<ViInt32>(attribute, 1), Status(0xBFFA1198)) << attribute;
    }
}

TEST_F(Engine, TextOfSizeZeroNeedsNoBufferAndRunsNoGetter) {
    std::array<ViChar, 16> text{"unchanged"};
    EXPECT_EQ(GetString(kText, 0, nullptr), Status(4096U));
    EXPECT_EQ(GetString(kText, 0, text.data()), Status(4096U));
    EXPECT_STREQ(text.data(), "unchanged");
    EXPECT_EQ(accessed.call, "");
}

TEST_F(Engine, TextWithoutABufferNamesTheSizeParameter) {
    for (const auto size : {1, 256, -1}) {
        EXPECT_EQ(GetString(kText, size, nullptr), Status(0xBFFA0058));
        EXPECT_THAT(TakeRecorded(),
                    ElementsAre(Recorded(0xBFFA0058, "Null pointer passed for function 'GetAttributeViString', "
                                                     "parameter 'AttributeValueBufferSize'.")));
    }
    EXPECT_EQ(GetString(99, 1, nullptr), Status(0xBFFA000C));
    EXPECT_EQ(accessed.call, "");
}

TEST_F(Engine, TextFollowsTheBufferRule) {
    std::array<ViChar, 16> text{};
    EXPECT_EQ(GetString(kText, 10, text.data()), Status(4096U));
    EXPECT_STREQ(text.data(), "ninechars");
    EXPECT_EQ(GetString(kText, 11, text.data()), Status(0U));
    EXPECT_EQ(GetString(kText, -1, text.data()), Status(0U));
    EXPECT_EQ(accessed.call, "get " + Vi() + " CH1 4096");
    accessed.status = Code(0xBFFA4214);
    EXPECT_EQ(GetString(kText, 10, text.data()), Status(0xBFFA4214));
}

TEST_F(Engine, RowHasIdentifierNameTypeAndAccessors) {
    const auto& row = kRows[3];
    EXPECT_EQ(row.Id(), kSession);
    EXPECT_EQ(row.Name(), "SESSION");
    EXPECT_EQ(row.TypeName(), "ViSession");
    EXPECT_NE(row.AccessorsOf<ViSession>(), nullptr);
    EXPECT_EQ(row.AccessorsOf<ViInt32>(), nullptr);
}

} // namespace
} // namespace unit
