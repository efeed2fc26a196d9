// The syntax of faults, the commands that they hit, and their effect on replies.

#include "tools/virtual_supply/faults.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <string_view>

namespace virtual_supply {
namespace {

using namespace std::string_literals;

constexpr auto kAlways = std::numeric_limits<std::uint64_t>::max();

std::string Complaint(std::string_view text) {
    try {
        ParseFault(text);
        return "accepted";
    } catch (const std::invalid_argument& wrong) {
        return wrong.what();
    }
}

/// Returns the bytes that are sent for the reply to the first command.
std::string Wire(std::string_view fault, const std::string& reply) {
    FaultPlan plan;
    plan.Add(ParseFault(fault));
    return plan.Next().Wire(reply);
}

void ExpectFault(std::string_view text, FaultKind kind, std::uint64_t value, std::uint64_t first, std::uint64_t count) {
    const Fault fault = ParseFault(text);
    EXPECT_EQ(fault.kind, kind) << text;
    EXPECT_EQ(fault.value, value) << text;
    EXPECT_EQ(fault.first, first) << text;
    EXPECT_EQ(fault.count, count) << text;
}

TEST(FaultText, SetsKindValueAndCommands) {
    ExpectFault("drop", FaultKind::Drop, 0, 1, kAlways);
    ExpectFault("delay=250", FaultKind::Delay, 250, 1, kAlways);
    ExpectFault("silent@3", FaultKind::Silent, 0, 3, kAlways);
    ExpectFault("garbage@3+1", FaultKind::Garbage, 0, 3, 1);
    ExpectFault("cut@1+18446744073709551615", FaultKind::Cut, 0, 1, kAlways);
    ExpectFault("long=1000000@2+5", FaultKind::Long, 1000000, 2, 5);
    ExpectFault("crlf", FaultKind::CrLf, 0, 1, kAlways);
}

TEST(FaultText, IsRefusedWithAReason) {
    EXPECT_EQ(Complaint("explode"),
              "fault 'explode': the kinds are drop, delay=MS, silent, garbage, cut, long=BYTES and crlf");
    EXPECT_EQ(Complaint(""), "fault '': the kinds are drop, delay=MS, silent, garbage, cut, long=BYTES and crlf");
    EXPECT_EQ(Complaint("drop=1"), "fault 'drop=1': this kind takes no value");
    const std::string value = ": the value after '=' must be a number from 1 to 1000000";
    EXPECT_EQ(Complaint("delay"), "fault 'delay'" + value);
    EXPECT_EQ(Complaint("delay="), "fault 'delay='" + value);
    EXPECT_EQ(Complaint("delay=0"), "fault 'delay=0'" + value);
    EXPECT_EQ(Complaint("delay=-1"), "fault 'delay=-1'" + value);
    EXPECT_EQ(Complaint("delay=1s"), "fault 'delay=1s'" + value);
    EXPECT_EQ(Complaint("long=1000001"), "fault 'long=1000001'" + value);
    const std::string command = ": the command after '@' must be a number from 1 to 18446744073709551615";
    EXPECT_EQ(Complaint("drop@"), "fault 'drop@'" + command);
    EXPECT_EQ(Complaint("drop@0"), "fault 'drop@0'" + command);
    EXPECT_EQ(Complaint("drop@18446744073709551616"), "fault 'drop@18446744073709551616'" + command);
    EXPECT_EQ(Complaint("drop@1+"),
              "fault 'drop@1+': the count after '+' must be a number from 1 to 18446744073709551615");
}

TEST(FaultPlan, HitsFromTheGivenCommandOn) {
    FaultPlan plan;
    plan.Add(ParseFault("drop@3"));
    EXPECT_FALSE(plan.Next().drop);
    EXPECT_FALSE(plan.Next().drop);
    EXPECT_TRUE(plan.Next().drop);
    EXPECT_TRUE(plan.Next().drop);
    EXPECT_EQ(plan.Received(), 4U);
}

TEST(FaultPlan, HitsTheGivenNumberOfCommands) {
    FaultPlan plan;
    plan.Add(ParseFault("silent@2+2"));
    EXPECT_FALSE(plan.Next().silent);
    EXPECT_TRUE(plan.Next().silent);
    EXPECT_TRUE(plan.Next().silent);
    EXPECT_FALSE(plan.Next().silent);
}

TEST(FaultPlan, HitsTheNextCommandsIndependentOfEarlierOnes) {
    FaultPlan plan;
    plan.Next();
    plan.Next();
    plan.AddForNext(FaultKind::Long, 1500);
    EXPECT_EQ(plan.Next().longReply, 1500U);
    EXPECT_EQ(plan.Next().longReply, 0U);
}

TEST(FaultPlan, CombinesFaults) {
    FaultPlan plan;
    plan.Add(ParseFault("delay=100"));
    plan.Add(ParseFault("crlf"));
    const Disturbance disturbance = plan.Next();
    EXPECT_EQ(disturbance.delay, std::chrono::milliseconds(100));
    EXPECT_EQ(disturbance.Wire("1"), "1\r\n");
}

TEST(FaultPlan, HitsNoCommandAfterClear) {
    FaultPlan plan;
    plan.Add(ParseFault("drop"));
    plan.Clear();
    EXPECT_FALSE(plan.Next().drop);
}

TEST(ReplyOnTheWire, IsOneLineWithoutAFault) { EXPECT_EQ(Disturbance().Wire("3.300000"), "3.300000\n"); }

TEST(ReplyOnTheWire, IsEmptyWithoutAReply) {
    EXPECT_EQ(Disturbance().Wire(""), "");
    EXPECT_EQ(Wire("garbage", ""), "");
    EXPECT_EQ(Wire("long=10", ""), "");
    EXPECT_EQ(Wire("crlf", ""), "");
}

TEST(ReplyOnTheWire, IsAlteredByTheFault) {
    EXPECT_EQ(Wire("silent", "3.300000"), "");
    EXPECT_EQ(Wire("garbage", "3.300000"), "\xff\0%s%n{}?!\x01\n"s);
    EXPECT_EQ(Wire("cut", "3.300000"), "3.30");
    EXPECT_EQ(Wire("cut", "1"), "");
    EXPECT_EQ(Wire("long=12", "3.300000"), "3.300000XXXX\n");
    EXPECT_EQ(Wire("long=1500", "1"), "1" + std::string(1499, 'X') + "\n");
    EXPECT_EQ(Wire("long=2", "3.300000"), "3.300000\n");
    EXPECT_EQ(Wire("crlf", "3.300000"), "3.300000\r\n");
}

} // namespace
} // namespace virtual_supply
