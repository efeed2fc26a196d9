#include "instrument/tarnex_supply.h"

#include <deque>
#include <memory>

#include "tests/unit/instrument/supply_fixture.h"

namespace unit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Supply : public SupplyTest<ORVA::TARNEX> {
  protected:
    /// The four fields of the identity, each in angle brackets.
    std::string Identity() const {
        const auto identity = supply_.GetIdentity();
        return "<" + identity->manufacturer + "><" + identity->model + "><" + identity->serialNumber + "><" +
               identity->firmwareRevision + ">";
    }
};

TEST_F(Supply, IsClosedAtFirstAndDoesNotCallVisa) {
    EXPECT_FALSE(supply_.IsOpen());
    EXPECT_EQ(Status(supply_.Close()), Status(0U));
    EXPECT_EQ(Identity(), "<><><><>");
    EXPECT_THAT(doubles::TheScript().Calls(), IsEmpty());
}

TEST_F(Supply, ReadsItsIdentityWhenItOpensWithOrWithoutAnIdQuery) {
    for (const bool idQuery : {false, true}) {
        EXPECT_EQ(Status(supply_.Open({.resource = kUsb, .idQuery = idQuery, .reset = true, .options = "Simulate=1"})),
                  Status(0U));
        EXPECT_THAT(TakeWritten(), ElementsAre("*IDN?\n"));
        EXPECT_TRUE(supply_.IsOpen());
        EXPECT_EQ(Identity(), "<Keltor Technology><TX4410><SN42><1.07>");
        EXPECT_EQ(supply_.IdQueryRequested(), idQuery);
        EXPECT_TRUE(supply_.ResetRequested());
        EXPECT_TRUE(supply_.Options().simulate);
        EXPECT_FALSE(supply_.Options().cache);
    }
}

TEST_F(Supply, KeepsItsOpeningArgumentsWhenOpeningFails) {
    Fail("viOpenDefaultRM", 0xBFFF0000);
    EXPECT_EQ(Status(supply_.Open({.resource = kUsb, .idQuery = true, .reset = false, .options = "Cache=1"})),
              Status(0xBFFA4214));
    EXPECT_TRUE(supply_.IdQueryRequested());
    EXPECT_FALSE(supply_.ResetRequested());
    EXPECT_TRUE(supply_.Options().cache);
    EXPECT_FALSE(supply_.Options().simulate);
}

TEST_F(Supply, ReturnsThePositiveStatusOfTheIdentityQuery) { EXPECT_EQ(Open(kSocket), Status(0x3FFF0005)); }

TEST_F(Supply, SharesItsIdentityRecordWithItsCallers) {
    const auto identity = supply_.GetIdentity();
    ASSERT_EQ(Open(), Status(0U));
    EXPECT_EQ(identity->model, "TX4410");
    EXPECT_EQ(supply_.GetIdentity(), identity);
}

TEST_F(Supply, DoesNotTrimTheFieldsOfItsIdentity) {
    Reply("*IDN?", " Maker , \tModel,,1.07\r\n");
    ASSERT_EQ(Open(), Status(0U));
    EXPECT_EQ(Identity(), "< Maker >< \tModel><><1.07\r>");
    Reply("*IDN?", "a,b,c,d\n\n");
    ASSERT_EQ(Open(), Status(0U));
    EXPECT_EQ(Identity(), "<a><b><c><d\n>");
    Reply("*IDN?", "a,b,c,d,\n");
    ASSERT_EQ(Open(), Status(0U)); // the empty text after the last comma is not a field
    EXPECT_EQ(Identity(), "<a><b><c><d>");
}

TEST_F(Supply, RefusesAnIdentityWithoutExactlyFourFieldsAndKeepsThePreviousOne) {
    ASSERT_EQ(Open(), Status(0U));
    for (const auto* reply : {"a,b,c,d,e\n", "a,b,c\n", "a,b,c,\n", "\n", ",,,\n", "a\n"}) {
        Reply("*IDN?", reply);
        EXPECT_EQ(Open(), Status(0xBFFA4214)) << reply;
        EXPECT_EQ(Identity(), "<Keltor Technology><TX4410><SN42><1.07>") << reply;
    }
}

TEST_F(Supply, ReturnsTheIoErrorWhenOpeningFails) {
    for (const auto* function : {"viOpenDefaultRM", "viOpen", "viSetAttribute", "viSetBuf", "viWrite", "viRead"}) {
        Fail(function, 0xBFFF0011);
        EXPECT_EQ(Open(), Status(0xBFFA4214)) << function;
    }
}

TEST_F(Supply, KeepsItsConnectionWhenReopeningFails) {
    Connect();
    Fail("viOpen", 0xBFFF0011);
    EXPECT_EQ(Open(kSocket), Status(0xBFFA4214));
    EXPECT_TRUE(supply_.IsOpen());
    EXPECT_EQ(Status(supply_.SendClear()), Status(0U));
    EXPECT_EQ(Line(), "*CLS");
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 2U);
}

TEST_F(Supply, ClosesThePreviousConnectionWhenItReopens) {
    Connect();
    Connect(kSocket);
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 2U);
}

TEST_F(Supply, KeepsTheNewConnectionWhenItReopensWithoutAnIdentity) {
    Connect();
    Fail("viRead", 0xBFFF0015);
    EXPECT_EQ(Open(kSocket), Status(0xBFFA4214));
    EXPECT_TRUE(supply_.IsOpen());
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 2U);
}

TEST_F(Supply, ClosesItsSessionsOnlyOnce) {
    Connect();
    EXPECT_EQ(Status(supply_.Close()), Status(0U));
    EXPECT_FALSE(supply_.IsOpen());
    EXPECT_EQ(Status(supply_.Close()), Status(0U));
    EXPECT_EQ(doubles::TheScript().Count("viClose"), 1U);
    EXPECT_EQ(Identity(), "<Keltor Technology><TX4410><SN42><1.07>");
}

TEST_F(Supply, ReturnsTheVisaStatusOfAClose) {
    Connect();
    Fail("viClose", 0xBFFF0000);
    EXPECT_EQ(Status(supply_.Close()), Status(0xBFFF0000));
    EXPECT_TRUE(supply_.IsOpen());
}

TEST_F(Supply, StoresATimeoutForTheNextOpenWithoutAVisaCall) {
    EXPECT_EQ(supply_.GetTimeout(), 2000U);
    EXPECT_EQ(Status(supply_.SetTimeout(123)), Status(0U));
    EXPECT_EQ(supply_.GetTimeout(), 123U);
    EXPECT_THAT(doubles::TheScript().Calls(), IsEmpty());
    ASSERT_EQ(Open(), Status(0U));
    EXPECT_EQ(doubles::TheVisa().Settings().front(), "viSetAttribute 3FFF001A 123");
}

TEST_F(Supply, AppliesATimeoutToAnOpenSessionAtOnce) {
    Connect();
    EXPECT_EQ(Status(supply_.SetTimeout(456)), Status(0U));
    EXPECT_THAT(doubles::TheVisa().Settings(), ElementsAre("viSetAttribute 3FFF001A 456"));
    EXPECT_EQ(supply_.GetTimeout(), 456U);
}

TEST_F(Supply, KeepsATimeoutThatVisaRefuses) {
    Connect();
    Fail("viSetAttribute", 0xBFFF001E);
    EXPECT_EQ(Status(supply_.SetTimeout(789)), Status(0xBFFF001E));
    EXPECT_EQ(supply_.GetTimeout(), 789U);
    Connect();
    EXPECT_EQ(Status(supply_.Close()), Status(0U));
    ASSERT_EQ(Open(), Status(0U));
    EXPECT_EQ(doubles::TheVisa().Settings().front(), "viSetAttribute 3FFF001A 789");
}

TEST_F(Supply, SendsRawTextsUnchangedAndAlwaysSucceeds) {
    Connect();
    EXPECT_EQ(Status(supply_.WriteRaw("any thing")), Status(0U));
    EXPECT_EQ(Line(), "any thing");
    Reply("ask?", "it\n");
    std::string reply = "before";
    EXPECT_EQ(Status(supply_.QueryRaw("ask?", reply)), Status(0U));
    EXPECT_EQ(reply, "it");
    for (const auto* function : {"viWrite", "viRead"}) {
        reply = "before";
        Fail(function, 0xBFFF0015);
        EXPECT_EQ(Status(supply_.QueryRaw("ask?", reply)), Status(0U));
        EXPECT_EQ(reply, "before");
    }
    Fail("viWrite", 0xBFFF0015);
    EXPECT_EQ(Status(supply_.WriteRaw("x")), Status(0U));
}

TEST_F(Supply, ReturnsZeroForARawQueryOverASocket) {
    Connect(kSocket);
    Reply("ask?", "it\n");
    std::string reply;
    EXPECT_EQ(Status(supply_.QueryRaw("ask?", reply)), Status(0U));
    EXPECT_EQ(reply, "it");
}

TEST_F(Supply, FailsEveryExchangeAfterAClose) {
    Connect();
    supply_.Close();
    double volts = 5.0;
    EXPECT_EQ(Status(supply_.SendReset()), Status(0xBFFA4214));
    EXPECT_EQ(Status(supply_.GetVoltage(1, volts)), Status(0xBFFA4214));
    EXPECT_EQ(volts, 5.0);
}

TEST_F(Supply, SendsTheCommonCommands) {
    Connect();
    EXPECT_EQ(Status(supply_.SendClear()), Status(0U));
    EXPECT_EQ(Line(), "*CLS");
    EXPECT_EQ(Status(supply_.SendReset()), Status(0U));
    EXPECT_EQ(Line(), "*RST");
    EXPECT_EQ(Status(supply_.SetAllOutputsOff()), Status(0U));
    EXPECT_EQ(Line(), ":OUTPut:STATe ALL,OFF");
}

TEST_F(Supply, ReadsTheEventStatusRegister) {
    Connect();
    std::uint32_t value = 7;
    for (const auto& [reply, expected] :
         {std::pair<const char*, std::uint32_t>{"32\n", 32U}, {" \t\r\n+60 bits\n", 60U}, {"-1\n", 4294967295U}}) {
        Reply("*ESR?", reply);
        EXPECT_EQ(Status(supply_.QueryEventStatus(value)), Status(0U));
        EXPECT_EQ(value, expected);
        EXPECT_EQ(Line(), "*ESR?");
    }
    Reply("*ESR?", "none\n");
    EXPECT_EQ(ThrownBy([&] { supply_.QueryEventStatus(value); }), "invalid_argument: invalid stol argument");
    Reply("*ESR?", "2147483648\n");
    EXPECT_EQ(ThrownBy([&] { supply_.QueryEventStatus(value); }), "out_of_range: stol argument out of range");
    Fail("viRead", 0xBFFF0015);
    EXPECT_EQ(Status(supply_.QueryEventStatus(value)), Status(0xBFFA4214));
    EXPECT_EQ(value, 4294967295U);
}

TEST_F(Supply, ReadsTheQuestionableRegistersOfAChannel) {
    Connect();
    const std::string condition = ":STATus:QUEStionable:INSTrument:ISUMmary2:CONDition?";
    const std::string event = ":STATus:QUEStionable:INSTrument:ISUMmary2:EVENt?";
    Reply(condition, " 3\n");
    Reply(event, "-4x\n");
    std::int32_t value = 7;
    EXPECT_EQ(Status(supply_.QueryQuestionableCondition(2, value)), Status(0U));
    EXPECT_EQ(Line(), condition);
    EXPECT_EQ(value, 3);
    EXPECT_EQ(Status(supply_.QueryQuestionableEvent(2, value)), Status(0U));
    EXPECT_EQ(Line(), event);
    EXPECT_EQ(value, -4);
    Reply(condition, "x\n");
    EXPECT_EQ(ThrownBy([&] { supply_.QueryQuestionableCondition(2, value); }),
              "invalid_argument: invalid stoi argument");
    Reply(event, "9999999999\n");
    EXPECT_EQ(ThrownBy([&] { supply_.QueryQuestionableEvent(2, value); }), "out_of_range: stoi argument out of range");
    Fail("viWrite", 0xBFFF0015, 1);
    EXPECT_EQ(Status(supply_.QueryQuestionableEvent(2, value)), Status(0xBFFA4214));
    EXPECT_EQ(value, -4);
}

TEST_F(Supply, ReadsItsErrorQueue) {
    Connect();
    std::int32_t code = 7;
    std::string message = "before";
    Reply(":SYSTem:ERRor?", "0,\"No error\"\n");
    EXPECT_EQ(Status(supply_.QueryError(code, message)), Status(0U));
    EXPECT_EQ(Line(), ":SYSTem:ERRor?");
    EXPECT_EQ(code, 0);
    EXPECT_EQ(message, "\"No error\"");
    Reply(":SYSTem:ERRor?", "-113, \"Undefined header\"\r\n");
    EXPECT_EQ(Status(supply_.QueryError(code, message)), Status(0U));
    EXPECT_EQ(code, -113);
    EXPECT_EQ(message, " \"Undefined header\"");
}

TEST_F(Supply, ReturnsCannotRecoverForAnErrorWithoutExactlyTwoFields) {
    Connect();
    std::int32_t code = 7;
    std::string message = "before";
    for (const auto* reply : {"0\n", "0,\"No, no\"\n", "\n", "0,"}) {
        Reply(":SYSTem:ERRor?", reply);
        EXPECT_EQ(Status(supply_.QueryError(code, message)), Status(0xBFFA0000)) << reply;
    }
    Reply(":SYSTem:ERRor?", "x,y\n");
    EXPECT_EQ(ThrownBy([&] { supply_.QueryError(code, message); }), "invalid_argument: invalid stoi argument");
    Fail("viRead", 0xBFFF0015);
    EXPECT_EQ(Status(supply_.QueryError(code, message)), Status(0xBFFA4214));
    EXPECT_EQ(code, 7);
    EXPECT_EQ(message, "before");
}

TEST_F(Supply, ReturnsZeroForAnErrorReadOverASocket) {
    Connect(kSocket);
    Reply(":SYSTem:ERRor?", "0,\"No error\"\n");
    std::int32_t code = 7;
    std::string message;
    EXPECT_EQ(Status(supply_.QueryError(code, message)), Status(0U));
}

/// A connection whose replies a test arranges beforehand; a time-out when there are none left.
class ArrangedReplies : public OpenVisa::VisaIO {
  public:
    ViStatus write(std::string_view command) override {
        written.emplace_back(command);
        return 0;
    }
    ViStatus read(std::string& reply) override {
        if (replies.empty()) {
            return VI_ERROR_TMO;
        }
        reply = replies.front();
        replies.pop_front();
        return 0;
    }
    std::deque<std::string> replies;
    std::vector<std::string> written;
};

class SupplyWithArrangedReplies : public ORVA::TARNEX {
  public:
    ArrangedReplies& Arrange(std::deque<std::string> replies) {
        auto connection = std::make_shared<ArrangedReplies>();
        connection->replies = std::move(replies);
        connection_ = connection;
        return *connection;
    }
};

constexpr const char* kSerial = "ASRL/dev/ttyS0::INSTR";
constexpr const char* kSame = "Keltor Technology,TX4410,SN42,1.07";
constexpr const char* kOther = "Keltor Technology,TX4410,SN43,1.07";

class SupplyIdentity : public SupplyTest<SupplyWithArrangedReplies> {};

TEST_F(SupplyIdentity, IsVerifiedPastLateRepliesToOtherQueries) {
    Connect(kSerial);
    auto& connection = supply_.Arrange({"3.300000", "", "ON", kSame, "left"});
    EXPECT_EQ(Status(supply_.VerifyIdentity()), Status(0U));
    EXPECT_THAT(connection.written, ElementsAre("*IDN?"));
    EXPECT_THAT(connection.replies, ElementsAre("left"));
    EXPECT_TRUE(connection.isInStep());
}

TEST_F(SupplyIdentity, IsNotVerifiedByAnotherInstrumentOrByNone) {
    Connect(kSerial);
    supply_.Arrange({});
    EXPECT_EQ(Status(supply_.VerifyIdentity()), Status(0xBFFF0015));
    EXPECT_FALSE(supply_.Connection()->isInStep());
    supply_.Arrange({kOther});
    EXPECT_EQ(Status(supply_.VerifyIdentity()), Status(0xBFFA005E));
    EXPECT_FALSE(supply_.Connection()->isInStep());
    supply_.Arrange(std::deque<std::string>(200, "x"));
    EXPECT_EQ(Status(supply_.VerifyIdentity()), Status(0xBFFA005E)); // something answers without end
}

TEST_F(SupplyIdentity, OverASerialLineIsVerifiedByTheReplyToTheLatestQuery) {
    Connect(kSerial);
    supply_.Arrange({});
    EXPECT_EQ(Status(supply_.VerifyIdentity()), Status(0xBFFF0015)); // its reply comes late
    auto& late = supply_.Arrange({"3.300000", kSame, kSame, "left"});
    EXPECT_EQ(Status(supply_.VerifyIdentity()), Status(0U));
    EXPECT_THAT(late.replies, ElementsAre("left"));
    // A reply that was lost while the line was closed is not awaited twice.
    supply_.Arrange({});
    EXPECT_EQ(Status(supply_.VerifyIdentity()), Status(0xBFFF0015));
    supply_.Arrange({kSame});
    EXPECT_EQ(Status(supply_.VerifyIdentity()), Status(0U));
    auto& next = supply_.Arrange({kSame, kSame});
    EXPECT_EQ(Status(supply_.VerifyIdentity()), Status(0U));
    EXPECT_THAT(next.replies, ElementsAre(kSame));
}

TEST_F(SupplyIdentity, OverOtherInterfacesAwaitsNoEarlierReply) {
    Connect(kSocket);
    supply_.Arrange({});
    EXPECT_EQ(Status(supply_.VerifyIdentity()), Status(0xBFFF0015));
    auto& connection = supply_.Arrange({kSame, kSame});
    EXPECT_EQ(Status(supply_.VerifyIdentity()), Status(0U));
    EXPECT_THAT(connection.replies, ElementsAre(kSame));
}

} // namespace
} // namespace unit
