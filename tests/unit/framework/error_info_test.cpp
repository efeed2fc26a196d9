#include "framework/error_info.h"

#include <array>
#include <string>

#include "status/status.h"
#include "tests/unit/framework/framework_fixture.h"

namespace unit {
namespace {

class ErrorInfo : public FrameworkTest {
  protected:
    ViSession vi_ = NewHandle();

    /// The one description that was recorded on the session.
    std::string Description() const {
        const auto recorded = TakeRecorded();
        EXPECT_EQ(recorded.size(), 1U);
        EXPECT_EQ(recorded.front().vi, vi_);
        return recorded.front().description;
    }
};

TEST_F(ErrorInfo, IsTheMessageOfTheStatusAndReturnsTheStatus) {
    EXPECT_EQ(Status(nrt2::SetErrorInfo(vi_, Code(0xBFFA4214))), Status(0xBFFA4214));
    EXPECT_THAT(TakeRecorded(), ElementsAre(RecordedError{vi_, 0xBFFA4214, "I/O error."}));
}

TEST_F(ErrorInfo, WithoutASessionIsRecordedForTheThread) {
    EXPECT_EQ(Status(nrt2::SetErrorInfo(VI_NULL, Code(0xBFFA4214))), Status(0xBFFA4214));
    EXPECT_THAT(TakeRecorded(), ElementsAre(RecordedError{0, 0xBFFA4214, "I/O error."}));
}

TEST_F(ErrorInfo, ReturnsTheRecordingsOwnFailure) {
    Fail("IviSession_SetError", 0xBFFA1198);
    EXPECT_EQ(Status(nrt2::SetErrorInfo(vi_, Code(0xBFFA4214))), Status(0xBFFA1198));
    EXPECT_EQ(Status(nrt2::SetErrorInfo(vi_ + 1, Code(0xBFFA4214))), Status(0xBFFA1190));
}

TEST_F(ErrorInfo, ReturnsTheStatusOverARecordingsWarning) {
    Fail("IviSession_SetError", 0x3FFA0001);
    EXPECT_EQ(Status(nrt2::SetErrorInfo(vi_, Code(0xBFFA4214))), Status(0xBFFA4214));
}

TEST_F(ErrorInfo, FillsThePlaceholdersInOrder) {
    nrt2::SetErrorInfo(vi_, Code(0xBFFA0013), "7", std::string("Mode"), std::string_view("set_Mode"));
    EXPECT_EQ(Description(), "Does not support this class-compliant feature:  Enumeration value '7' passed as the "
                             "value for parameter 'Mode' in function 'set_Mode'.");
}

TEST_F(ErrorInfo, FillsAdjacentPlaceholders) {
    nrt2::SetErrorInfo(vi_, Code(0xBFFA0015), "Get", "ViInt32", "A_NAME", "ViBoolean");
    EXPECT_EQ(Description(), "GetAttributeViInt32 called for attribute 'A_NAME' of type 'ViBoolean'.");
}

TEST_F(ErrorInfo, TakesArgumentsLiterally) {
    nrt2::SetErrorInfo(vi_, Code(0xBFFA0010), "%s%n%d%%", "%s", "%99999d");
    EXPECT_EQ(Description(), "Invalid value '%s%n%d%%' for function '%s', parameter '%99999d'.");
}

TEST_F(ErrorInfo, LeavesPlaceholdersWithoutAnArgument) {
    nrt2::SetErrorInfo(vi_, Code(0xBFFA0010), "7");
    EXPECT_EQ(Description(), "Invalid value '7' for function '%s', parameter '%s'.");
    nrt2::SetErrorInfoElab(vi_, Code(0xBFFA0000), "%s and %d", "one");
    EXPECT_EQ(Description(), "Failure cannot recover.  one and %d");
}

TEST_F(ErrorInfo, IgnoresArgumentsWithoutAPlaceholder) {
    nrt2::SetErrorInfo(vi_, Code(0xBFFA005E), "Unrecognized model: X");
    EXPECT_EQ(Description(), "Instrument ID query failed.");
}

TEST_F(ErrorInfo, KeepsEveryOtherPercentSign) {
    nrt2::SetErrorInfoElab(vi_, Code(0xBFFA0000), "100% of %n, %x%", "unused");
    EXPECT_EQ(Description(), "Failure cannot recover.  100% of %n, %x%");
}

TEST_F(ErrorInfo, AppendsTwoBlanksAndTheElaborationWhichTakesTheRemainingArguments) {
    nrt2::SetErrorInfoElab(vi_, Code(0xBFFA0063), "%s has %d of %s.", "Rail", "It", "3", "5");
    EXPECT_EQ(Description(),
              "The number of levels in the selector is not valid for the 'Rail' repeated capability.  It has 3 of 5.");
}

TEST_F(ErrorInfo, WithAnEmptyElaborationHasNoBlanks) {
    nrt2::SetErrorInfoElab(vi_, Code(0xBFFA4214), "");
    EXPECT_EQ(Description(), "I/O error.");
}

TEST_F(ErrorInfo, OfAnUnknownStatusIsEmptyOrTheElaborationAfterTwoBlanks) {
    EXPECT_EQ(Status(nrt2::SetErrorInfo(vi_, Code(0xBFFF0011), "argument")), Status(0xBFFF0011));
    EXPECT_EQ(Description(), "");
    nrt2::SetErrorInfoElab(vi_, Code(0xBFFF0011), "No '%s'.", "bus");
    EXPECT_EQ(Description(), "  No 'bus'.");
}

TEST_F(ErrorInfo, IsTruncatedAt1023BytesAtAnyPlace) {
    // The message has 44 characters without the argument.
    const std::string fits(1023 - 44, 'x');
    nrt2::SetErrorInfo(vi_, Code(0xBFFA004B), fits);
    EXPECT_EQ(Description(), "The '" + fits + "' name in the option string is unknown.");
    nrt2::SetErrorInfo(vi_, Code(0xBFFA004B), fits + "y");
    EXPECT_EQ(Description(), "The '" + fits + "y' name in the option string is unknown");
    nrt2::SetErrorInfo(vi_, Code(0xBFFA004B), std::string(5000, 'z'));
    EXPECT_EQ(Description(), "The '" + std::string(1018, 'z'));
    nrt2::SetErrorInfoElab(vi_, Code(0xBFFA4214), std::string(1012, '-') + "%s", "abc");
    EXPECT_EQ(Description(), "I/O error.  " + std::string(1011, '-'));
    nrt2::SetErrorInfoElab(vi_, Code(0xBFFA4214), std::string(1010, '-') + "%s", "abc");
    EXPECT_EQ(Description(), "I/O error.  " + std::string(1010, '-') + "a");
}

TEST_F(ErrorInfo, OfALargeTextReadsOnlyItsBeginning) {
    nrt2::SetErrorInfo(vi_, Code(0xBFFA004B), std::string(1UL << 20U, '%'));
    EXPECT_EQ(Description(), "The '" + std::string(1018, '%'));
}

TEST_F(ErrorInfo, OfNullPointersNamesTheFirst) {
    const int something = 0;
    const auto check = [&](std::initializer_list<const void*> pointers) {
        return Status(nrt2::CheckParameters(vi_, "Fill", "First,\t Second \r\n, Third", pointers));
    };
    EXPECT_EQ(check({&something, &something, &something}), Status(0U));
    EXPECT_EQ(check({}), Status(0U));
    EXPECT_THAT(TakeRecorded(), IsEmpty());
    EXPECT_EQ(check({nullptr, nullptr}), Status(0xBFFA0058));
    EXPECT_EQ(Description(), "Null pointer passed for function 'Fill', parameter 'First'.");
    check({&something, nullptr, nullptr});
    EXPECT_EQ(Description(), "Null pointer passed for function 'Fill', parameter 'Second'.");
    check({&something, &something, nullptr});
    EXPECT_EQ(Description(), "Null pointer passed for function 'Fill', parameter 'Third'.");
}

TEST_F(ErrorInfo, OfANullPointerBeyondTheNamesHasAnUnknownParameter) {
    const int something = 0;
    nrt2::CheckParameters(vi_, "Fill", "First", {&something, nullptr});
    EXPECT_EQ(Description(), "Null pointer passed for function 'Fill', parameter '<unknown parameter>'.");
    nrt2::CheckParameters(vi_, "Fill", "", {nullptr});
    EXPECT_EQ(Description(), "Null pointer passed for function 'Fill', parameter '<unknown parameter>'.");
}

TEST_F(ErrorInfo, OfANullPointerReturnsTheRecordingsFailure) {
    Fail("IviSession_SetError", 0xBFFA1198);
    EXPECT_EQ(Status(nrt2::CheckParameters(vi_, "Fill", "First", {nullptr})), Status(0xBFFA1198));
}

} // namespace
} // namespace unit
