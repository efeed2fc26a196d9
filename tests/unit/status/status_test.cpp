#include "status/status.h"

#include <gtest/gtest.h>

#include "tests/unit/support/status.h"

namespace unit {
namespace {

TEST(MessageOf, IsEmptyForAnUnknownStatus) {
    EXPECT_EQ(nrt2::MessageOf(VI_SUCCESS), "Success.");
    EXPECT_EQ(nrt2::MessageOf(1), "");
    EXPECT_EQ(nrt2::MessageOf(Code(0xBFFA4213)), "");
    EXPECT_EQ(nrt2::MessageOf(Code(0xBFFF0015)), "");
    EXPECT_EQ(nrt2::MessageOf(Code(0x3FFF0005)), "");
}

} // namespace
} // namespace unit
