// Opening, closing, locks, time-outs, raw text, trace, and handles that are not sessions of this driver.
#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "driver/session_interface.h"
#include "platform/session_service.h"
#include "tests/supply/command_table.h"
#include "tests/supply/supply_fixture.h"

namespace supply_tests {
namespace {

class SupplySession : public SupplyOverDoubles {};

TEST_F(SupplySession, OpensAndClosesAsTheDriverDoes) {
    ViSession vi = 77;
    EXPECT_EQ(TARNEXSupply_Open(kSocketResource, "QueryInstrStatus=0", 0, &vi), 0);
    EXPECT_NE(vi, 0U);
    EXPECT_THAT(TakeWritten(), ElementsAre("*IDN?\n"));
    EXPECT_EQ(doubles::TheVisa().Opened().size(), 1U);
    EXPECT_EQ(TARNEXSupply_Close(vi), 0);
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U);
    EXPECT_EQ(doubles::TheSessionService().OpenHandles(), 0U);
    EXPECT_EQ(Status(TARNEXSupply_Close(vi)), kInvalidHandle);
}

TEST_F(SupplySession, SetsTheTimeoutOfItsOpening) {
    ViSession vi = VI_NULL;
    EXPECT_EQ(TARNEXSupply_Open(kUsbResource, nullptr, 345, &vi), 0);
    EXPECT_EQ(doubles::TheVisa().Settings().back(), "viSetAttribute 3FFF001A 345");
    ViInt32 timeout = 0;
    EXPECT_EQ(TARNEXSupply_GetTimeout(vi, &timeout), 0);
    EXPECT_EQ(timeout, 345);
    EXPECT_EQ(TARNEXSupply_SetTimeout(vi, 1), 0);
    EXPECT_EQ(TARNEXSupply_GetTimeout(vi, &timeout), 0);
    EXPECT_EQ(timeout, 1);
    for (const auto refused : {0, -1, std::numeric_limits<ViInt32>::min()}) {
        EXPECT_EQ(Status(TARNEXSupply_SetTimeout(vi, refused)), kInvalidParameter);
    }
    LastError(vi);
    Fail("viSetAttribute", 0xBFFF001D);
    EXPECT_EQ(Status(TARNEXSupply_SetTimeout(vi, 500)), kIo);
    EXPECT_EQ(LastError(vi), (DriverError{kIo, "I/O error."}));
    EXPECT_EQ(TARNEXSupply_Close(vi), 0);
}

TEST_F(SupplySession, OpensWithoutAHandleOnFailure) {
    ViSession vi = 77;
    EXPECT_EQ(Status(TARNEXSupply_Open(kUsbResource, "", -1, &vi)), kInvalidParameter);
    EXPECT_EQ(vi, 0U);
    EXPECT_EQ(LastError(VI_NULL), (DriverError{kInvalidParameter, kInvalidParameterText}));

    vi = 77;
    Fail("viOpen", 0xBFFF0011);
    EXPECT_EQ(Status(TARNEXSupply_Open(kUsbResource, "", 0, &vi)), kIo);
    EXPECT_EQ(vi, 0U);
    EXPECT_EQ(
        LastError(VI_NULL),
        (DriverError{kIo, "I/O error.  Insufficient location information or resource not present in the system"}));

    vi = 77;
    EXPECT_EQ(Status(TARNEXSupply_Open(nullptr, "Nonsense=1", 0, &vi)), 0xBFFA004B);
    EXPECT_EQ(vi, 0U);

    // The setting of the time-out comes last.
    vi = 77;
    TARNEX_ClearError(VI_NULL);
    const auto before = doubles::TheSessionService().OpenHandles();
    doubles::TheVisa().ForgetSettings();
    ViSession other = VI_NULL;
    EXPECT_EQ(TARNEXSupply_Open(kUsbResource, "", 100, &other), 0);
    std::size_t attributes = 0;
    for (const auto& setting : doubles::TheVisa().Settings()) {
        attributes += setting.starts_with("viSetAttribute") ? 1 : 0;
    }
    EXPECT_EQ(TARNEXSupply_Close(other), 0);
    Fail("viSetAttribute", 0xBFFF001D, attributes);
    EXPECT_EQ(Status(TARNEXSupply_Open(kUsbResource, "", 100, &vi)), kIo);
    EXPECT_EQ(vi, 0U);
    EXPECT_EQ(doubles::TheSessionService().OpenHandles(), before);
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U);
}

TEST_F(SupplySession, ClearsTheThreadsRecordBeforeItOpens) {
    ViSession vi = VI_NULL;
    EXPECT_EQ(Status(TARNEXSupply_Open("", "Nonsense=1", 0, &vi)), 0xBFFA004B);
    Fail("viOpen", 0xBFFF0011);
    EXPECT_EQ(Status(TARNEXSupply_Open(kUsbResource, "", 0, &vi)), kIo);
    EXPECT_EQ(LastError(VI_NULL).code, kIo);
}

TEST_F(SupplySession, OpensWithAStatusWhenTheEventStatusIsMalformed) {
    Reply("*ESR?", "garbage\n");
    ViSession vi = 77;
    EXPECT_EQ(Status(TARNEXSupply_Open(kUsbResource, "QueryInstrStatus=1", 0, &vi)), kMalformed);
    EXPECT_EQ(vi, 0U);
    EXPECT_EQ(LastError(VI_NULL), (DriverError{kMalformed, "Unexpected response from instrument.  Command '*ESR?'."}));
}

TEST_F(SupplySession, UsesTheOneConnectionOfTheDriver) {
    const auto vi = Open();
    const auto opened = doubles::TheVisa().Opened().size();
    for (const auto& row : kSettings) {
        EXPECT_EQ(Status(row.call(vi)), kSuccess);
    }
    EXPECT_EQ(doubles::TheVisa().Opened().size(), opened);
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 2U); // the resource manager and the instrument
}

TEST_F(SupplySession, GivesItsLockBackAfterEveryCall) {
    const auto vi = Open();
    for (const auto& row : kSettings) {
        row.call(vi);
        EXPECT_EQ(LocksHeld(), 0) << row.name;
    }
    for (const auto& row : kQueries) {
        row.call(vi, kFirst); // no reply: a time-out
        EXPECT_EQ(LocksHeld(), 0) << row.name;
        row.call(vi, "nonsense");
        EXPECT_EQ(LocksHeld(), 0) << row.name;
    }
    EXPECT_EQ(TARNEX_LockSession(vi, nullptr), 0);
    EXPECT_EQ(TARNEXSupply_SetBleeder(vi, VI_TRUE), 0);
    EXPECT_EQ(LocksHeld(), 1);
    EXPECT_EQ(TARNEX_UnlockSession(vi, nullptr), 0);
    Fail("IviSession_Lock", 0xBFFA1198);
    EXPECT_EQ(Status(TARNEXSupply_SetBleeder(vi, VI_TRUE)), 0xBFFA1198);
    EXPECT_EQ(LocksHeld(), 0);
    Fail("IviSession_Lock", 0xBFFA1198);
    EXPECT_EQ(Status(TARNEXSupply_Close(vi)), 0xBFFA1198);
    EXPECT_EQ(LocksHeld(), 0);
}

TEST_F(SupplySession, ThatCannotBeDisposedOfIsUnlockedAndClosed) {
    const auto vi = Open();
    Fail("IviSession_Dispose", 0xBFFA1198);
    EXPECT_EQ(Status(TARNEXSupply_Close(vi)), 0xBFFA1198);
    EXPECT_EQ(LocksHeld(), 0);
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U);
    EXPECT_EQ(Status(TARNEXSupply_Close(vi)), kInvalidHandle);
    EXPECT_EQ(LocksHeld(), 0);
}

TEST_F(SupplySession, WritesAndReadsRawText) {
    const auto vi = Open();
    EXPECT_EQ(TARNEXSupply_Write(vi, ":DISP ON"), 0);
    EXPECT_EQ(TARNEXSupply_Write(vi, ":DISP OFF\n"), 0);
    EXPECT_THAT(TakeWritten(), ElementsAre(":DISP ON\n", ":DISP OFF\n"));
    std::array<ViChar, 1024> reply{};
    Reply(":DISP?", " a%s,b \r\n");
    EXPECT_EQ(TARNEXSupply_Query(vi, ":DISP?", 1024, reply.data()), 0);
    EXPECT_STREQ(reply.data(), " a%s,b ");
    EXPECT_EQ(TARNEXSupply_Query(vi, ":DISP?", 4, reply.data()), 8);
    EXPECT_STREQ(reply.data(), " a%");
    EXPECT_EQ(TARNEXSupply_Query(vi, ":DISP?", 1, reply.data()), 8);
    EXPECT_STREQ(reply.data(), "");
    Reply(":LONG?", std::string(1023, 'x') + "\n");
    EXPECT_EQ(TARNEXSupply_Query(vi, ":LONG?", 1024, reply.data()), 0);
    EXPECT_EQ(std::string(reply.data()), std::string(1023, 'x'));
    TakeWritten();
    reply = {"y"};
    EXPECT_EQ(Status(TARNEXSupply_Query(vi, ":LONG?", 0, reply.data())), kInvalidParameter);
    EXPECT_THAT(TakeWritten(), IsEmpty());
    Reply(":LONG?", std::string(1025, 'x') + "\n");
    EXPECT_EQ(Status(TARNEXSupply_Query(vi, ":LONG?", 1024, reply.data())), kMalformed);
    EXPECT_STREQ(reply.data(), "y");
    LastError(vi);
    EXPECT_EQ(Status(TARNEXSupply_Query(vi, ":NONE?", 1024, reply.data())), kTimeout);
    EXPECT_EQ(LastError(vi), (DriverError{kTimeout, "I/O timeout error.  Command ':NONE?', VISA status 0xBFFF0015."}));
    EXPECT_STREQ(reply.data(), "y");
}

struct Traced {
    bool sent;
    Status status;
    std::string text;
    bool operator==(const Traced&) const = default;
};
void PrintTo(const Traced& traced, std::ostream* out) {
    *out << (traced.sent ? "> " : "< ") << testing::PrintToString(traced.text) << ' ';
    PrintTo(traced.status, out);
}
struct Trace {
    std::vector<Traced> lines;
    std::vector<ViReal64> seconds;
};

void _VI_FUNC Collect(void* context, ViReal64 seconds, ViBoolean sent, ViStatus status, const ViChar* text,
                      ViInt32 size) {
    auto& trace = *static_cast<Trace*>(context);
    trace.lines.push_back({sent != VI_FALSE, Status(status), std::string(text, static_cast<std::size_t>(size))});
    trace.seconds.push_back(seconds);
}

TEST_F(SupplySession, ReportsItsTrafficAndTheDrivers) {
    const auto vi = OpenOn(kSocketResource);
    Trace trace;
    EXPECT_EQ(TARNEXSupply_Trace(vi, Collect, &trace), 0);
    Reply(":SOUR1:VOLT?", "3.3\n");
    EXPECT_EQ(GetVoltage(vi), kSuccess);
    EXPECT_EQ(TARNEX_ConfigureOutputEnabled(vi, kFirst, VI_TRUE), 0);
    Fail("viWrite", 0xBFFF00A6);
    EXPECT_EQ(Status(TARNEXSupply_SetBleeder(vi, VI_TRUE)), kIo);
    EXPECT_EQ(TARNEXSupply_SetBleeder(vi, VI_FALSE), 0); // over a new connection
    EXPECT_THAT(trace.lines, ElementsAre(Traced{true, 0U, ":SOUR1:VOLT?\n"}, Traced{false, 0x3FFF0005, "3.3\n"},
                                         Traced{true, 0U, ":OUTP:STAT CH1,ON\n"},
                                         Traced{true, 0xBFFF00A6, ":SOUR:BLE ON\n"}, Traced{true, 0U, "*IDN?\n"},
                                         Traced{false, 0x3FFF0005, "Keltor Technology,TX4410,SN42,1.07\n"},
                                         Traced{true, 0U, ":SOUR:BLE OFF\n"}));
    EXPECT_TRUE(std::is_sorted(trace.seconds.begin(), trace.seconds.end()));
    EXPECT_GE(trace.seconds.front(), 0.0);
    EXPECT_LT(trace.seconds.back(), 60.0);
    EXPECT_EQ(TARNEXSupply_Trace(vi, nullptr, nullptr), 0);
    EXPECT_EQ(GetVoltage(vi), kSuccess);
    EXPECT_EQ(trace.lines.size(), 7U);
    const auto simulated = Open("Simulate=1");
    EXPECT_EQ(TARNEXSupply_Trace(simulated, Collect, &trace), 0);
    EXPECT_EQ(GetVoltage(simulated), kSuccess);
    EXPECT_EQ(trace.lines.size(), 7U);
}

TEST_F(SupplySession, HasMessagesForTheStatusesOfBothHeaders) {
    std::array<ViChar, 256> message{};
    const auto messageOf = [&](std::uint32_t status) {
        EXPECT_EQ(TARNEXSupply_ErrorMessage(static_cast<ViStatus>(status), message.data()), 0);
        return std::string(message.data());
    };
    EXPECT_EQ(messageOf(kOtherDriver), "The session does not belong to this driver.");
    EXPECT_EQ(messageOf(kOtherVersion), "The driver and the supply library are of different versions.");
    EXPECT_EQ(messageOf(kOutOfStep), "The connection could not be brought back into step.");
    EXPECT_EQ(messageOf(kTimeout), "I/O timeout error.");
    EXPECT_EQ(messageOf(kMalformed), "Unexpected response from instrument.");
    EXPECT_EQ(messageOf(kInvalidParameter), kInvalidParameterText);
    EXPECT_EQ(Status(TARNEXSupply_ErrorMessage(1234, message.data())), 0xBFFA0010);
    EXPECT_EQ(std::string(message.data()), kInvalidParameterText);
}

TEST_F(SupplySession, KnowsLimitsIdentityAndChannelsWithoutTraffic) {
    const auto vi = Open();
    ViReal64 minVolts = 77.0;
    ViReal64 maxVolts = 77.0;
    ViReal64 minAmperes = 77.0;
    ViReal64 maxAmperes = 77.0;
    EXPECT_EQ(TARNEXSupply_GetLimits(vi, kFirst, &minVolts, &maxVolts, &minAmperes, &maxAmperes), 0);
    EXPECT_THAT((std::array{minVolts, maxVolts, minAmperes, maxAmperes}), ElementsAre(0.0, 22.0, 0.0, 5.5));
    EXPECT_EQ(TARNEXSupply_GetLimits(vi, kSecond, &minVolts, &maxVolts, &minAmperes, &maxAmperes), 0);
    EXPECT_THAT((std::array{minVolts, maxVolts, minAmperes, maxAmperes}), ElementsAre(0.0, 5.5, 0.0, 16.8));
    EXPECT_EQ(Status(TARNEXSupply_GetLimits(vi, "OutputChannel1,OutputChannel2", &minVolts, &maxVolts, &minAmperes,
                                            &maxAmperes)),
              0xBFFA0066);

    std::array<std::array<ViChar, 256>, 4> texts{};
    EXPECT_EQ(TARNEXSupply_GetIdentity(vi, texts[0].data(), texts[1].data(), texts[2].data(), texts[3].data()), 0);
    EXPECT_STREQ(texts[0].data(), "Keltor Technology");
    EXPECT_STREQ(texts[1].data(), "TX4410");
    EXPECT_STREQ(texts[2].data(), "SN42");
    EXPECT_STREQ(texts[3].data(), "1.07");
    EXPECT_EQ(TARNEXSupply_GetIdentity(vi, nullptr, nullptr, nullptr, nullptr), 0);

    std::array<ViInt32, 2> channels{77, 77};
    ViInt32 count = 77;
    EXPECT_EQ(Status(TARNEXSupply_ResolveChannels(vi, "OutputChannel2,OutputChannel1", 1, channels.data(), &count)),
              kInvalidParameter);
    EXPECT_EQ(Status(TARNEXSupply_ResolveChannels(vi, kFirst, -1, channels.data(), &count)), kInvalidParameter);
    EXPECT_EQ(Status(TARNEXSupply_ResolveChannels(vi, "OutputChannel9", 2, channels.data(), &count)), 0xBFFA0067);
    EXPECT_THAT(channels, ElementsAre(77, 77));
    EXPECT_EQ(count, 77);
    EXPECT_EQ(TARNEXSupply_ResolveChannels(vi, "OutputChannel2,OutputChannel1", 2, channels.data(), &count), 0);
    EXPECT_THAT(channels, ElementsAre(2, 1));
    EXPECT_EQ(count, 2);
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(SupplySession, TruncatesALongIdentity) {
    Reply("*IDN?", std::string(300, 'K') + ",TX4410,SN42,1.07\n");
    const auto vi = Open();
    std::array<ViChar, 257> text{};
    text.fill('!');
    EXPECT_EQ(TARNEXSupply_GetIdentity(vi, text.data(), nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(std::string(text.data()), std::string(255, 'K'));
    EXPECT_EQ(text[256], '!');
}

/// What a session of this driver, or of another one, has at its data pointer.
struct Anchor {
    std::uint64_t tag = tarnex::kSessionTag;
    void* extension = nullptr;
    void* session = nullptr;
};

class ForeignHandle : public SupplyOverDoubles {
  protected:
    ForeignHandle() { EXPECT_EQ(IviSession_New(&vi_), 0); }

    /// Calls functions of every shape; each must return `expected`.
    void ExpectFromAll(ViSession vi, std::uint32_t expected) {
        for (const auto& row : kSettings) {
            EXPECT_EQ(Status(row.call(vi)), expected) << row.name;
        }
        for (const auto& row : kChannelSettings) {
            EXPECT_EQ(Status(row.call(vi, kFirst)), expected) << row.name;
        }
        for (const auto& row : kQueries) {
            EXPECT_EQ(Status(row.leavesItsResults(vi, kFirst)), expected) << row.name;
        }
        std::array<ViChar, 256> text{};
        ViInt32 number = 0;
        ViReal64 real = 0.0;
        TARNEXSupply_ChannelState state{};
        EXPECT_EQ(Status(TARNEXSupply_Close(vi)), expected);
        EXPECT_EQ(Status(TARNEXSupply_GetTimeout(vi, &number)), expected);
        EXPECT_EQ(Status(TARNEXSupply_SetTimeout(vi, 100)), expected);
        EXPECT_EQ(Status(TARNEXSupply_Write(vi, "*CLS")), expected);
        EXPECT_EQ(Status(TARNEXSupply_Query(vi, "*IDN?", 256, text.data())), expected);
        EXPECT_EQ(Status(TARNEXSupply_Trace(vi, nullptr, nullptr)), expected);
        EXPECT_EQ(Status(TARNEXSupply_QueryError(vi, &number, 256, text.data())), expected);
        EXPECT_EQ(Status(TARNEXSupply_GetLimits(vi, kFirst, &real, &real, &real, &real)), expected);
        EXPECT_EQ(Status(TARNEXSupply_GetIdentity(vi, text.data(), nullptr, nullptr, nullptr)), expected);
        EXPECT_EQ(Status(TARNEXSupply_ResolveChannels(vi, kFirst, 1, &number, &number)), expected);
        EXPECT_EQ(Status(TARNEXSupply_UploadList(vi, 0, &real, &real, &real)), expected);
        EXPECT_EQ(Status(TARNEXSupply_UploadDelay(vi, 0, nullptr, &real)), expected);
        EXPECT_EQ(Status(TARNEXSupply_ReadStates(vi, 2, &state, &number)), expected);
        EXPECT_EQ(LocksHeld(), 0);
        EXPECT_THAT(TakeWritten(), IsEmpty());
    }
    void ExpectFromAllWithData(const void* data, std::uint32_t expected) {
        EXPECT_EQ(IviSession_SetDataPtr(vi_, const_cast<void*>(data)), 0);
        ExpectFromAll(vi_, expected);
    }

    ViSession vi_ = VI_NULL;
};

TEST_F(ForeignHandle, ThatIsClosedOrNullOrUnknownIsInvalid) {
    const auto vi = Open();
    EXPECT_EQ(TARNEX_close(vi), 0);
    for (const auto handle : {vi, ViSession{VI_NULL}, ViSession{0xFFFFFFFF}}) {
        ExpectFromAll(handle, kInvalidHandle);
    }
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(ForeignHandle, WithoutDataIsInvalid) { ExpectFromAll(vi_, kInvalidHandle); }

TEST_F(ForeignHandle, WithDataThatIsNoAddressBelongsToAnotherDriver) {
    for (const std::uintptr_t number : {std::uintptr_t{1}, std::uintptr_t{16}, std::uintptr_t{0xFFF},
                                        ~std::uintptr_t{0}, ~std::uintptr_t{15}, std::uintptr_t{1} << 63U}) {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): an address at which nothing is
        ExpectFromAllWithData(reinterpret_cast<const void*>(number), kOtherDriver);
    }
    EXPECT_EQ(LastError(vi_), (DriverError{kOtherDriver, "The session does not belong to this driver."}));
    EXPECT_EQ(LastError(VI_NULL), (DriverError{kOtherDriver, "The session does not belong to this driver."}));
}

TEST_F(ForeignHandle, WithDataThatHasBeenReleasedBelongsToAnotherDriver) {
    // So large that the system takes it back.
    auto memory = std::make_unique<std::array<char, std::size_t{64} << 20U>>();
    const auto address = reinterpret_cast<std::uintptr_t>(memory.get());
    memory.reset();
    // NOLINTNEXTLINE(performance-no-int-to-ptr): nothing is there any more
    ExpectFromAllWithData(reinterpret_cast<const void*>(address), kOtherDriver);
}

TEST_F(ForeignHandle, WithAnObjectOfAnotherDriverBelongsToAnotherDriver) {
    const std::array<std::uint64_t, 16> object{0x3172'6F74'6F6D'0001, 1, 2};
    ExpectFromAllWithData(object.data(), kOtherDriver);
    ExpectFromAllWithData(reinterpret_cast<const char*>(object.data()) + 3, kOtherDriver); // not aligned
}

TEST_F(ForeignHandle, WithTheTagAndNothingBehindItBelongsToAnotherDriver) {
    Anchor anchor;
    ExpectFromAllWithData(&anchor, kOtherDriver);
    anchor.extension = reinterpret_cast<void*>(0x10); // NOLINT(performance-no-int-to-ptr): nothing is there
    ExpectFromAllWithData(&anchor, kOtherDriver);
}

TEST_F(ForeignHandle, OfAnotherVersionOfTheDriverIsRefused) {
    tarnex::SessionExtension extension{};
    Anchor anchor{.extension = &extension};
    for (const auto version : {tarnex::kSessionInterfaceVersion + 1, tarnex::kSessionInterfaceVersion - 1}) {
        extension.version = version;
        extension.size = tarnex::kSessionInterfaceSize;
        ExpectFromAllWithData(&anchor, kOtherVersion);
    }
    extension.version = tarnex::kSessionInterfaceVersion;
    extension.size = tarnex::kSessionInterfaceSize - 8;
    ExpectFromAllWithData(&anchor, kOtherVersion);
    EXPECT_EQ(LastError(vi_),
              (DriverError{kOtherVersion, "The driver and the supply library are of different versions."}));
}

TEST_F(ForeignHandle, IsRecognisedAfterTheDriversOwnHandleOnTheSameThread) {
    const auto vi = Open();
    EXPECT_EQ(TARNEXSupply_SetBleeder(vi, VI_TRUE), 0);
    TakeWritten();
    const std::array<std::uint64_t, 2> object{};
    ExpectFromAllWithData(object.data(), kOtherDriver);
    EXPECT_EQ(TARNEXSupply_SetBleeder(vi, VI_TRUE), 0);
}

} // namespace
} // namespace supply_tests
