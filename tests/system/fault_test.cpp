#include <chrono>
#include <stdexcept>

#include "tests/system/supply_fixture.h"

namespace system_tests {
namespace {

using virtual_supply::FaultKind;

class Fault : public SupplyTest {
  protected:
    ViSession vi_ = Open();
    ViReal64 volts_ = 1.25;

    void Next(FaultKind kind, std::uint64_t value = 0) { server_->faults().AddForNext(kind, value); }
    ViStatus MeasureVoltage() { return TARNEX_Measure(vi_, "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE, &volts_); }
};

TEST_F(Fault, OfASilentInstrumentEndsWithTheTimeOutAndANewSessionWorks) {
    Next(FaultKind::kSilent);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(MeasureVoltage(), kIoError);
    const auto took = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(took, std::chrono::milliseconds(1900));
    EXPECT_LT(took, std::chrono::seconds(30)); // a hang guard, no more
    EXPECT_EQ(LastError(vi_), (DriverError{0xBFFA4214, "I/O error."}));
    EXPECT_EQ(volts_, 1.25);
    EXPECT_EQ(Measure(Open(), "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE), 0.0);
}

TEST_F(Fault, OfADroppedConnectionIsAnIoErrorAndANewSessionWorks) {
    Next(FaultKind::kDrop);
    EXPECT_EQ(MeasureVoltage(), kIoError);
    EXPECT_EQ(LastError(vi_), (DriverError{0xBFFA4214, "I/O error."}));
    EXPECT_EQ(MeasureVoltage(), kIoError);
    EXPECT_EQ(TARNEX_close(vi_), 0);
    EXPECT_EQ(Measure(Open(), "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE), 0.0);
}

TEST_F(Fault, OfAServerThatIsGoneIsAnIoError) {
    server_.reset();
    EXPECT_EQ(MeasureVoltage(), kIoError);
    EXPECT_EQ(TARNEX_close(vi_), 0);
}

TEST_F(Fault, OfADelayedReplyIsNoneWithinTheTimeOut) {
    Next(FaultKind::kDelay, 300);
    EXPECT_EQ(MeasureVoltage(), kTermChar);
    EXPECT_EQ(volts_, 0.0);
}

TEST_F(Fault, OfAGarbledReplyLeavesAsAnExceptionWithTheSessionUnlockedAndUsable) {
    Next(FaultKind::kGarbage);
    EXPECT_THROW(MeasureVoltage(), std::invalid_argument);
    EXPECT_EQ(MeasureVoltage(), kTermChar);
    EXPECT_EQ(volts_, 0.0);
}

TEST_F(Fault, OfAReplyWithoutItsLineEndIsATimeOut) {
    Next(FaultKind::kCut);
    EXPECT_EQ(MeasureVoltage(), kIoError);
    EXPECT_EQ(volts_, 1.25);
}

TEST_F(Fault, OfAnOverlongReplyIsCutAtTheBuffersSize) {
    Next(FaultKind::kLong, 1500);
    EXPECT_EQ(static_cast<unsigned>(MeasureVoltage()), 0x3FFF0006U);
    EXPECT_EQ(volts_, 0.0);
}

TEST_F(Fault, OfACarriageReturnBeforeTheLineEndChangesNoNumberButStaysInATextsEnd) {
    server_->faults().Add({.kind = FaultKind::kCrLf});
    EXPECT_EQ(MeasureVoltage(), kTermChar);
    EXPECT_EQ(volts_, 0.0);
    const auto vi = Open();
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION), "1.00\r");
}

TEST_F(Fault, DuringTheOpeningFailsIt) {
    for (const auto kind : {FaultKind::kDrop, FaultKind::kGarbage, FaultKind::kSilent}) {
        TARNEX_ClearError(VI_NULL);
        Next(kind);
        ViSession vi = 7;
        EXPECT_EQ(TryOpen(server_->resource(), "", vi), kIoError);
        EXPECT_EQ(vi, 0U);
        EXPECT_EQ(LastError(VI_NULL).description,
                  "I/O error.  Insufficient location information or resource not present in the system");
    }
}

TEST_F(Fault, OfAResourceThatIsNotThereFailsTheOpening) {
    const auto resource = server_->resource();
    server_.reset();
    for (const auto& name : {resource, std::string("TCPIP0::127.0.0.1::port::SOCKET"), std::string("nonsense"),
                             std::string(), std::string("GPIB0::5::INSTR"), std::string("ASRL/dev/null::INSTR"),
                             std::string("TCPIP0::no-such-host.invalid::5025::SOCKET")}) {
        TARNEX_ClearError(VI_NULL);
        ViSession vi = 7;
        EXPECT_EQ(TryOpen(name, "", vi), kIoError) << name;
        EXPECT_EQ(vi, 0U);
        EXPECT_EQ(LastError(VI_NULL),
                  (DriverError{0xBFFA4214, "I/O error.  Insufficient location information or resource not present in "
                                           "the system"}))
            << name;
    }
}

} // namespace
} // namespace system_tests
