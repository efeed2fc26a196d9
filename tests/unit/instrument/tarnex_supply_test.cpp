#include "instrument/tarnex_supply.h"

#include <limits>

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

    /// The line that each setter sends for channel 2, and its own status.
    template <typename Value>
    std::string Sent(ViStatus (ORVA::InstBase::*set)(ORVA::ChannelNumber, Value), Value value) {
        EXPECT_EQ(Status((supply_.*set)(2, value)), Status(0U));
        return Line();
    }

    /// What a getter asks for channel 2, the answer being `reply`.
    template <typename Value>
    std::string Asked(ViStatus (ORVA::InstBase::*get)(ORVA::ChannelNumber, Value&), const std::string& query,
                      const std::string& reply, Value expected) {
        Reply(query, reply);
        Value value{};
        EXPECT_EQ(Status((supply_.*get)(2, value)), Status(0U));
        EXPECT_EQ(value, expected) << query;
        return Line();
    }
};

using ORVA::InstBase;

TEST_F(Supply, IsClosedAtFirstAndTouchesNoVisa) {
    EXPECT_FALSE(supply_.IsOpen());
    EXPECT_EQ(Status(supply_.Close()), Status(0U));
    EXPECT_EQ(Identity(), "<><><><>");
    EXPECT_THAT(doubles::TheScript().Calls(), IsEmpty());
}

TEST_F(Supply, OpensAndReadsItsIdentityWhetherAskedOrNot) {
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

TEST_F(Supply, ThatFailsToOpenKnowsWhatItWasGivenAllTheSame) {
    Fail("viOpenDefaultRM", 0xBFFF0000);
    EXPECT_EQ(Status(supply_.Open({.resource = kUsb, .idQuery = true, .reset = false, .options = "Cache=1"})),
              Status(0xBFFA4214));
    EXPECT_TRUE(supply_.IdQueryRequested());
    EXPECT_FALSE(supply_.ResetRequested());
    EXPECT_TRUE(supply_.Options().cache);
    EXPECT_FALSE(supply_.Options().simulate);
}

TEST_F(Supply, ReturnsTheIdentityQuerysPositiveStatus) { EXPECT_EQ(Open(kSocket), Status(0x3FFF0005)); }

TEST_F(Supply, SharesItsIdentityRecord) {
    const auto identity = supply_.GetIdentity();
    ASSERT_EQ(Open(), Status(0U));
    EXPECT_EQ(identity->model, "TX4410");
    EXPECT_EQ(supply_.GetIdentity(), identity);
}

TEST_F(Supply, KeepsWhatTheIdentitysFieldsHoldUntrimmed) {
    Reply("*IDN?", " Maker , \tModel,,1.07\r\n");
    ASSERT_EQ(Open(), Status(0U));
    EXPECT_EQ(Identity(), "< Maker >< \tModel><><1.07\r>");
    Reply("*IDN?", "a,b,c,d\n\n");
    ASSERT_EQ(Open(), Status(0U));
    EXPECT_EQ(Identity(), "<a><b><c><d\n>");
    Reply("*IDN?", "a,b,c,d,\n");
    ASSERT_EQ(Open(), Status(0U)); // nothing after the last comma is no field
    EXPECT_EQ(Identity(), "<a><b><c><d>");
}

TEST_F(Supply, RefusesAnIdentityWithoutExactlyFourFieldsAndKeepsTheOneBefore) {
    ASSERT_EQ(Open(), Status(0U));
    for (const auto* reply : {"a,b,c,d,e\n", "a,b,c\n", "a,b,c,\n", "\n", ",,,\n", "a\n"}) {
        Reply("*IDN?", reply);
        EXPECT_EQ(Open(), Status(0xBFFA4214)) << reply;
        EXPECT_EQ(Identity(), "<Keltor Technology><TX4410><SN42><1.07>") << reply;
    }
}

TEST_F(Supply, FailsToOpenWithTheIoError) {
    for (const auto* function : {"viOpenDefaultRM", "viOpen", "viSetAttribute", "viSetBuf", "viWrite", "viRead"}) {
        Fail(function, 0xBFFF0011);
        EXPECT_EQ(Open(), Status(0xBFFA4214)) << function;
    }
}

TEST_F(Supply, ThatFailsToReopenKeepsItsConnection) {
    Connect();
    Fail("viOpen", 0xBFFF0011);
    EXPECT_EQ(Open(kSocket), Status(0xBFFA4214));
    EXPECT_TRUE(supply_.IsOpen());
    EXPECT_EQ(Status(supply_.SendClear()), Status(0U));
    EXPECT_EQ(Line(), "*CLS");
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 2U);
}

TEST_F(Supply, ThatReopensClosesItsConnectionBefore) {
    Connect();
    Connect(kSocket);
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 2U);
}

TEST_F(Supply, ThatReopensWithoutAnIdentityHasTheNewConnection) {
    Connect();
    Fail("viRead", 0xBFFF0015);
    EXPECT_EQ(Open(kSocket), Status(0xBFFA4214));
    EXPECT_TRUE(supply_.IsOpen());
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 2U);
}

TEST_F(Supply, ClosesOnce) {
    Connect();
    EXPECT_EQ(Status(supply_.Close()), Status(0U));
    EXPECT_FALSE(supply_.IsOpen());
    EXPECT_EQ(Status(supply_.Close()), Status(0U));
    EXPECT_EQ(doubles::TheScript().Count("viClose"), 1U);
    EXPECT_EQ(Identity(), "<Keltor Technology><TX4410><SN42><1.07>");
}

TEST_F(Supply, ReturnsVisasStatusOfAClose) {
    Connect();
    Fail("viClose", 0xBFFF0000);
    EXPECT_EQ(Status(supply_.Close()), Status(0xBFFF0000));
    EXPECT_TRUE(supply_.IsOpen());
}

TEST_F(Supply, KeepsATimeoutForTheNextOpenWithoutACall) {
    EXPECT_EQ(supply_.GetTimeout(), 2000U);
    EXPECT_EQ(Status(supply_.SetTimeout(123)), Status(0U));
    EXPECT_EQ(supply_.GetTimeout(), 123U);
    EXPECT_THAT(doubles::TheScript().Calls(), IsEmpty());
    ASSERT_EQ(Open(), Status(0U));
    EXPECT_EQ(doubles::TheVisa().Settings().front(), "viSetAttribute 3FFF001A 123");
}

TEST_F(Supply, GivesAnOpenSessionItsTimeoutAtOnce) {
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

TEST_F(Supply, RawTextsAreSentAsTheyAreAndAlwaysSucceed) {
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

TEST_F(Supply, RawQueryOverASocketSucceedsWithZeroToo) {
    Connect(kSocket);
    Reply("ask?", "it\n");
    std::string reply;
    EXPECT_EQ(Status(supply_.QueryRaw("ask?", reply)), Status(0U));
    EXPECT_EQ(reply, "it");
}

TEST_F(Supply, OnceClosedFailsEveryExchange) {
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

TEST_F(Supply, SendsTheSettingsOfAChannel) {
    Connect();
    EXPECT_EQ(Sent(&InstBase::SetVoltage, 1.5), ":SOUR2:VOLT 1.500000");
    EXPECT_EQ(Sent(&InstBase::SetOverVoltageLevel, 1.5), ":SOUR2:VOLT:PROT 1.500000");
    EXPECT_EQ(Sent(&InstBase::SetOverVoltageEnabled, true), ":SOUR2:VOLT:PROT:STAT ON");
    EXPECT_EQ(Sent(&InstBase::SetCurrent, 1.5), ":SOUR2:CURR 1.500000");
    EXPECT_EQ(Sent(&InstBase::SetOverCurrentLevel, 1.5), ":SOUR2:CURR:PROT 1.500000");
    EXPECT_EQ(Sent(&InstBase::SetOverCurrentEnabled, false), ":SOUR2:CURR:PROT:STAT OFF");
    EXPECT_EQ(Sent(&InstBase::SetOutputEnabled, true), ":OUTP:STAT CH2,ON");
}

TEST_F(Supply, AsksForTheSettingsOfAChannel) {
    Connect();
    EXPECT_EQ(Asked(&InstBase::GetVoltage, ":SOUR2:VOLT?", "1.5\n", 1.5), ":SOUR2:VOLT?");
    EXPECT_EQ(Asked(&InstBase::GetOverVoltageLevel, ":SOUR2:VOLT:PROT?", "2.5\n", 2.5), ":SOUR2:VOLT:PROT?");
    EXPECT_EQ(Asked(&InstBase::GetOverVoltageEnabled, ":SOUR2:VOLT:PROT:STAT?", "1\n", true), ":SOUR2:VOLT:PROT:STAT?");
    EXPECT_EQ(Asked(&InstBase::GetCurrent, ":SOUR2:CURR?", "3.5\n", 3.5), ":SOUR2:CURR?");
    EXPECT_EQ(Asked(&InstBase::GetOverCurrentLevel, ":SOUR2:CURR:PROT?", "4.5\n", 4.5), ":SOUR2:CURR:PROT?");
    EXPECT_EQ(Asked(&InstBase::GetOverCurrentEnabled, ":SOUR2:CURR:PROT:STAT?", "ON\n", true),
              ":SOUR2:CURR:PROT:STAT?");
    EXPECT_EQ(Asked(&InstBase::GetOutputEnabled, ":OUTP:STAT? CH2", "ON\n", true), ":OUTP:STAT? CH2");
    EXPECT_EQ(Asked(&InstBase::GetOutputEnabled, ":OUTP:STAT? CH2", "OFF\r\n", false), ":OUTP:STAT? CH2");
}

using SetReal = ViStatus (InstBase::*)(ORVA::ChannelNumber, double);

/// A range-checked setter with the largest value of each channel.
struct Checked {
    const char* name;
    SetReal set;
    double first;
    double second;
};
constexpr std::array kChecked{
    Checked{"SetVoltage", &InstBase::SetVoltage, 22.0, 5.5},
    Checked{"SetOverVoltageLevel", &InstBase::SetOverVoltageLevel, 22.0, 5.5},
    Checked{"SetCurrent", &InstBase::SetCurrent, 5.5, 16.8},
    Checked{"SetOverCurrentLevel", &InstBase::SetOverCurrentLevel, 5.5, 16.8},
};

TEST_F(Supply, TakesLevelsWithinTheLimitsBoundsIncluded) {
    Connect();
    for (const auto& [name, set, first, second] : kChecked) {
        for (const auto& [channel, value] :
             {std::pair{1U, 0.0}, {1U, -0.0}, {1U, first}, {2U, 0.0}, {2U, second}, {2U, 1e-9}}) {
            EXPECT_EQ(Status((supply_.*set)(channel, value)), Status(0U)) << name << ' ' << value;
            EXPECT_EQ(TakeWritten().size(), 1U);
        }
    }
}

TEST_F(Supply, RefusesLevelsBeyondTheLimitsAndSendsNothing) {
    Connect();
    const auto infinity = std::numeric_limits<double>::infinity();
    for (const auto& [name, set, first, second] : kChecked) {
        for (const auto& [channel, value] : {std::pair{1U, first + 0.000001},
                                             {2U, second + 0.000001},
                                             {1U, -0.000001},
                                             {2U, -1e-300},
                                             {1U, 1e300},
                                             {1U, infinity},
                                             {2U, -infinity}}) {
            EXPECT_EQ(Status((supply_.*set)(channel, value)), Status(0xBFFA4217)) << name << ' ' << value;
        }
    }
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Supply, LetsNotANumberPass) {
    Connect();
    const auto nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Sent(&InstBase::SetVoltage, nan), ":SOUR2:VOLT nan");
    EXPECT_EQ(Sent(&InstBase::SetOverCurrentLevel, -nan), ":SOUR2:CURR:PROT nan");
    EXPECT_EQ(Sent(&InstBase::SetVoltage, -0.0), ":SOUR2:VOLT -0.000000");
}

TEST_F(Supply, KnowsTwoChannels) {
    Connect();
    for (const auto channel : {0U, 3U, 4294967295U}) {
        for (const auto& checked : kChecked) {
            EXPECT_EQ(ThrownBy([&] { (supply_.*checked.set)(channel, 1.0); }), kInvalidKey) << checked.name;
        }
        EXPECT_EQ(ThrownBy([&] { supply_.SetOutputEnabled(channel, true); }), kInvalidKey);
        EXPECT_EQ(ThrownBy([&] { static_cast<void>(supply_.GetChannelLimits(channel)); }), kInvalidKey);
    }
    EXPECT_THAT(TakeWritten(), IsEmpty());
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

TEST_F(Supply, CannotRecoverFromAnErrorWithoutExactlyTwoFields) {
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

} // namespace
} // namespace unit
