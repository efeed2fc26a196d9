#include "instrument/inst_base.h"

#include "tests/unit/instrument/supply_fixture.h"
#include "tests/unit/instrument/test_rate.h"

namespace unit {
namespace {

using testing::IsEmpty;

/// Shows what the operations are built from, and can lose its connection.
class OpenSupply : public ORVA::TARNEX {
  public:
    using InstBase::Get;
    using InstBase::GetFields;
    using InstBase::GetForChannel;
    using InstBase::GetIndexed;
    using InstBase::GetSource;
    using InstBase::Query;
    using InstBase::Send;
    using InstBase::Set;
    using InstBase::SetArgs;
    using InstBase::SetForChannel;
    using InstBase::SetSource;
    using InstBase::With;
    using InstBase::Write;

    void LoseConnection() { connection_.reset(); }
    [[nodiscard]] std::shared_ptr<OpenVisa::VisaIO> Connection() const { return connection_; }
};

class TypedHelpers : public SupplyTest<OpenSupply> {
  protected:
    void SetUp() override { Connect(); }
};

TEST_F(TypedHelpers, WriteHeaderAndValueForSet) {
    EXPECT_EQ(Status(supply_.Set(":SOUR:BLE", true)), Status(0U));
    EXPECT_EQ(Line(), ":SOUR:BLE ON");
    supply_.Set(":LIST:CYCLE", std::int32_t{-5});
    EXPECT_EQ(Line(), ":LIST:CYCLE -5");
    supply_.Set(":LIST:TEMP:MAXV", 1.25);
    EXPECT_EQ(Line(), ":LIST:TEMP:MAXV 1.250000");
    supply_.Set(":NAME", std::string("x"));
    EXPECT_EQ(Line(), ":NAME x");
    supply_.Set(":MEAS:CURR:RATE", Rate::Middle);
    EXPECT_EQ(Line(), ":MEAS:CURR:RATE 4000");
}

TEST_F(TypedHelpers, ParseAReplyByTheTypeOfTheVariable) {
    Reply(":X?", "ON\n");
    bool boolean = false;
    EXPECT_EQ(Status(supply_.Get(":X", boolean)), Status(0U));
    EXPECT_TRUE(boolean);
    EXPECT_EQ(Line(), ":X?");
    Reply(":X?", "-17 V\n");
    std::int32_t integer = 0;
    EXPECT_EQ(Status(supply_.Get(":X?", integer)), Status(0U));
    EXPECT_EQ(integer, -17);
    EXPECT_EQ(Line(), ":X?");
    Reply(":X?", "1.5E-3\n");
    double real = 0.0;
    supply_.Get(":X", real);
    EXPECT_EQ(real, 0.0015);
    Reply(":X?", " as it is\r\n");
    std::string text;
    supply_.Get(":X", text);
    EXPECT_EQ(text, " as it is\r");
    Reply(":X?", "8K\n");
    Rate rate = Rate::Slow;
    supply_.Get(":X", rate);
    EXPECT_EQ(rate, Rate::Fast);
}

TEST_F(TypedHelpers, ReadAnUnknownKeywordAsTheLowestValue) {
    Reply(":X?", "8K\r\n"); // the carriage return stays
    Rate rate = Rate::Fast;
    EXPECT_EQ(Status(supply_.Get(":X", rate)), Status(0U));
    EXPECT_EQ(rate, Rate::Slow);
}

TEST_F(TypedHelpers, WriteTheChannelIntoTheHeaderForSource) {
    supply_.SetSource(":SOUR:CURR", 2, 1.5);
    EXPECT_EQ(Line(), ":SOUR2:CURR 1.500000");
    Reply(":SOUR1:VOLT?", "2.5\n");
    double volts = 0.0;
    EXPECT_EQ(Status(supply_.GetSource(":SOUR:VOLT", 1, volts)), Status(0U));
    EXPECT_EQ(Line(), ":SOUR1:VOLT?");
    EXPECT_EQ(volts, 2.5);
}

TEST_F(TypedHelpers, WriteTheChannelBeforeTheArgumentsForChannel) {
    supply_.SetForChannel(":OUTP:STAT", 1, true);
    EXPECT_EQ(Line(), ":OUTP:STAT CH1,ON");
    supply_.SetForChannel(":OUTP:PAIR", 2, Rate::Fast);
    EXPECT_EQ(Line(), ":OUTP:PAIR CH2,UPDN");
    Reply(":OUTP:STAT? CH2", "OFF\n");
    bool on = true;
    EXPECT_EQ(Status(supply_.GetForChannel(":OUTP:STAT", 2, on)), Status(0U));
    EXPECT_EQ(Line(), ":OUTP:STAT? CH2");
    EXPECT_FALSE(on);
}

TEST_F(TypedHelpers, WriteAnyNumberOfArguments) {
    supply_.Send(":LIST:GROUP:CLE");
    EXPECT_EQ(Line(), ":LIST:GROUP:CLE");
    supply_.SetArgs(":LIST:GROUP:PARA", 3, 5.0, 1.0, 0.5);
    EXPECT_EQ(Line(), ":LIST:GROUP:PARA 3,5.000000,1.000000,0.500000");
}

TEST_F(TypedHelpers, GetIndexedSendsItsIndexAsAnArgument) {
    Reply(":TRIG:IN:ENAB? UPDN", "ON\n");
    bool on = false;
    EXPECT_EQ(Status(supply_.GetIndexed(":TRIG:IN:ENAB", Rate::Fast, on)), Status(0U));
    EXPECT_EQ(Line(), ":TRIG:IN:ENAB? UPDN");
    EXPECT_TRUE(on);
}

TEST_F(TypedHelpers, ParseFieldsInOrderAndIgnoreFurtherOnes) {
    Reply(":X? 3,CH2", "8K, extra\r,-5,2.5\t,ON,more\n");
    Rate rate = Rate::Slow;
    std::string text;
    std::int32_t integer = 0;
    double real = 0.0;
    bool on = false;
    testing::internal::CaptureStdout();
    EXPECT_EQ(Status(supply_.GetFields(":X", OpenSupply::With(3, ORVA::Channel::CH2), rate, text, integer, real, on)),
              Status(0U));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "5");
    EXPECT_EQ(Line(), ":X? 3,CH2");
    EXPECT_EQ(rate, Rate::Fast);
    EXPECT_EQ(text, " extra");
    EXPECT_EQ(integer, -5);
    EXPECT_EQ(real, 2.5);
    EXPECT_TRUE(on);
}

TEST_F(TypedHelpers, ThrowForAMissingFieldAfterParsingTheFieldsBeforeIt) {
    Reply(":X?", "1.0,2.0\n");
    double first = 0.0;
    double second = 0.0;
    double third = 7.0;
    EXPECT_EQ(ThrownBy([&] { supply_.GetFields(":X", OpenSupply::With(), first, second, third); }),
              "out_of_range: invalid vector subscript");
    EXPECT_EQ(first, 1.0);
    EXPECT_EQ(second, 2.0);
    EXPECT_EQ(third, 7.0);
    Reply(":X?", "");
    EXPECT_EQ(ThrownBy([&] { supply_.GetFields(":X", OpenSupply::With(), third); }),
              "out_of_range: invalid vector subscript");
}

TEST_F(TypedHelpers, ParseAndPrintNothingWhenAnExchangeOfFieldsFails) {
    double value = 7.0;
    Fail("viRead", 0xBFFF0015);
    testing::internal::CaptureStdout();
    EXPECT_EQ(Status(supply_.GetFields(":X", OpenSupply::With(), value)), Status(0xBFFA4214));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(value, 7.0);
}

TEST_F(TypedHelpers, TurnEveryNegativeStatusIntoTheIoErrorAndKeepTheVariable) {
    Reply(":X?", "7\n");
    std::int32_t value = 5;
    for (const auto* function : {"viWrite", "viRead"}) {
        for (const auto status : {0xBFFF0015U, 0xBFFF00A6U, 0x80000000U}) {
            Fail(function, status);
            EXPECT_EQ(Status(supply_.Get(":X", value)), Status(0xBFFA4214)) << function;
            EXPECT_EQ(value, 5);
        }
    }
    Fail("viWrite", 0xBFFF0015);
    EXPECT_EQ(Status(supply_.Set(":X", 1)), Status(0xBFFA4214));
    Fail("viWrite", 0xBFFF0015);
    EXPECT_EQ(Status(supply_.Send(":X")), Status(0xBFFA4214));
}

TEST_F(TypedHelpers, ReturnPositiveStatusesUnchanged) {
    Reply(":X?", "7\n");
    Fail("viWrite", 0x3FFF0001);
    EXPECT_EQ(Status(supply_.Set(":X", 1)), Status(0x3FFF0001));
    std::int32_t value = 5;
    Reply(":X?", std::string(1100, '0'));
    EXPECT_EQ(Status(supply_.Get(":X", value)), Status(0x3FFF0006));
    EXPECT_EQ(value, 0);
}

TEST_F(TypedHelpers, ReadAnEmptyReplyAsEmptyTextAndNotAsThePreviousReply) {
    Reply(":X?", "7\n");
    std::int32_t value = 5;
    EXPECT_EQ(Status(supply_.Get(":X", value)), Status(0U));
    Reply(":X?", "");
    EXPECT_EQ(ThrownBy([&] { supply_.Get(":X", value); }), "invalid_argument: invalid stoi argument");
    EXPECT_EQ(value, 7);
    std::string text = "before";
    EXPECT_EQ(Status(supply_.Get(":X", text)), Status(0U));
    EXPECT_EQ(text, "");
}

TEST_F(TypedHelpers, ThrowForAMalformedReplyAndKeepTheVariable) {
    Reply(":X?", "NO\n");
    bool on = true;
    EXPECT_EQ(ThrownBy([&] { supply_.Get(":X", on); }), "invalid_argument: Visa::parseBool Unknown ret:NO");
    EXPECT_TRUE(on);
    double real = 5.0;
    EXPECT_EQ(ThrownBy([&] { supply_.Get(":X", real); }), "invalid_argument: invalid stod argument");
    EXPECT_EQ(real, 5.0);
}

TEST_F(TypedHelpers, FailWithoutAConnectionAndSendNothing) {
    supply_.LoseConnection();
    Forget();
    std::int32_t value = 5;
    std::string reply = "before";
    EXPECT_EQ(Status(supply_.Write("x")), Status(0xBFFF000E));
    EXPECT_EQ(Status(supply_.Query("x?", reply)), Status(0xBFFF000E));
    EXPECT_EQ(reply, "before");
    EXPECT_EQ(Status(supply_.Set(":X", 1)), Status(0xBFFA4214));
    EXPECT_EQ(Status(supply_.Send(":X")), Status(0xBFFA4214));
    EXPECT_EQ(Status(supply_.Get(":X", value)), Status(0xBFFA4214));
    EXPECT_EQ(Status(supply_.SetSource(":SOUR:X", 1, 1)), Status(0xBFFA4214));
    EXPECT_EQ(Status(supply_.GetSource(":SOUR:X", 1, value)), Status(0xBFFA4214));
    EXPECT_EQ(Status(supply_.SetForChannel(":X", 1, 1)), Status(0xBFFA4214));
    EXPECT_EQ(Status(supply_.GetForChannel(":X", 1, value)), Status(0xBFFA4214));
    EXPECT_EQ(Status(supply_.SetVoltage(1, 1.0)), Status(0xBFFA4214));
    EXPECT_EQ(Status(supply_.WriteRaw("x")), Status(0U));
    EXPECT_EQ(Status(supply_.QueryRaw("x?", reply)), Status(0U));
    EXPECT_EQ(value, 5);
    EXPECT_FALSE(supply_.IsOpen());
    EXPECT_EQ(Status(supply_.Close()), Status(0U));
    EXPECT_EQ(Status(supply_.SetTimeout(5)), Status(0U));
    EXPECT_THAT(doubles::TheScript().Calls(), IsEmpty());
}

TEST_F(TypedHelpers, ReturnVisaStatusesUnchangedForWriteAndQuery) {
    std::string reply = "before";
    Fail("viWrite", 0xBFFF0015);
    EXPECT_EQ(Status(supply_.Write("x")), Status(0xBFFF0015));
    Fail("viWrite", 0xBFFF0015);
    EXPECT_EQ(Status(supply_.Query("x?", reply)), Status(0xBFFF0015));
    EXPECT_EQ(doubles::TheScript().Count("viRead"), 0U);
    Fail("viRead", 0xBFFF00A6);
    EXPECT_EQ(Status(supply_.Query("x?", reply)), Status(0xBFFF00A6));
    EXPECT_EQ(reply, "before");
}

} // namespace
} // namespace unit
