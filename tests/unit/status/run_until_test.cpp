#include "status/run_until.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tests/unit/support/status.h"

namespace unit {
namespace {

TEST(RunUntilNegative, RunsStepsUntilOneFailsAndReturnsTheLastStatus) {
    std::string ran;
    const auto step = [&ran](char name, std::uint32_t status) {
        return [&ran, name, status] {
            ran.push_back(name);
            return Code(status);
        };
    };
    EXPECT_EQ(Status(status::RunUntilNegative()), Status(0U));
    EXPECT_EQ(Status(status::RunUntilNegative(step('a', 0x3FFF0001), step('b', 0), step('c', 0x3FFF0002))),
              Status(0x3FFF0002));
    EXPECT_EQ(ran, "abc");
    ran.clear();
    EXPECT_EQ(Status(status::RunUntilNegative(step('a', 1), step('b', 0xBFFF0001), step('c', 0))), Status(0xBFFF0001));
    EXPECT_EQ(ran, "ab");
    ran.clear();
    EXPECT_EQ(Status(status::RunUntilNegative(step('a', 0x80000000), step('b', 0))), Status(0x80000000));
    EXPECT_EQ(ran, "a");
}

} // namespace
} // namespace unit
