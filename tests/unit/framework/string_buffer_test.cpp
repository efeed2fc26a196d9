#include "framework/string_buffer.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "tests/unit/support/status.h"

namespace unit {
namespace {

constexpr std::size_t kRoom = 16;

/// A buffer in which every byte that was not written can be seen.
std::array<ViChar, kRoom> Marked() {
    std::array<ViChar, kRoom> buffer{};
    buffer.fill('#');
    return buffer;
}

std::string Bytes(const std::array<ViChar, kRoom>& buffer) { return {buffer.begin(), buffer.end()}; }

/// What copying `text` into `size` bytes leaves in the buffer.
std::string Copied(std::string_view text, ViInt32 size) {
    auto buffer = Marked();
    nrt2::CopyTruncated(text, size, buffer.data());
    return Bytes(buffer);
}

TEST(CopyTruncated, WritesOnlyTheTextAndItsNul) {
    EXPECT_EQ(Copied("abc", 16), std::string("abc\0############", 16));
    EXPECT_EQ(Copied("abc", 4), std::string("abc\0############", 16));
    EXPECT_EQ(Copied("", 16), std::string("\0###############", 16));
}

TEST(CopyTruncated, TruncatesTextThatDoesNotFit) {
    EXPECT_EQ(Copied("abc", 3), std::string("ab\0#############", 16));
    EXPECT_EQ(Copied("abc", 1), std::string("\0###############", 16));
}

TEST(CopyTruncated, CopiesOnlyItsView) {
    EXPECT_EQ(Copied(std::string_view("abcdef", 2), 16), std::string("ab\0#############", 16));
}

TEST(IsFull, IsTrueForATextThatUsesAllBytes) {
    EXPECT_TRUE(nrt2::IsFull(4, "abc"));
    EXPECT_TRUE(nrt2::IsFull(1, ""));
    EXPECT_FALSE(nrt2::IsFull(5, "abc\0"));
    EXPECT_FALSE(nrt2::IsFull(4, "ab\0"));
    EXPECT_FALSE(nrt2::IsFull(4, "abcd")); // no NUL within the size
    EXPECT_FALSE(nrt2::IsFull(2, "\0"));
}

class FillTextBuffer : public testing::Test {
  protected:
    /// Fills the buffer with "abcdefghi" by way of a getter that answers `status`.
    Status Fill(ViInt32 size, std::uint32_t status = 0) {
        return Status(nrt2::FillTextBuffer(size, buffer_.data(), [&](ViInt32 getterSize, ViChar buffer[]) {
            getterSize_ = getterSize;
            if (Code(status) >= 0) {
                nrt2::CopyTruncated("abcdefghi", std::min(getterSize, static_cast<ViInt32>(kRoom)), buffer);
            }
            return Code(status);
        }));
    }

    std::array<ViChar, kRoom> buffer_ = Marked();
    ViInt32 getterSize_ = 7777; // before the getter runs
};

TEST_F(FillTextBuffer, OfSizeZeroReturnsTheRequiredSizeAndRunsNothing) {
    EXPECT_EQ(Fill(0), Status(4096U));
    EXPECT_EQ(getterSize_, 7777);
    EXPECT_EQ(Bytes(buffer_), std::string(16, '#'));
}

TEST_F(FillTextBuffer, OfNegativeSizeHas4096Bytes) {
    EXPECT_EQ(Fill(-1), Status(0U));
    EXPECT_EQ(getterSize_, 4096);
    EXPECT_STREQ(buffer_.data(), "abcdefghi");
    EXPECT_EQ(Fill(-2147483647 - 1, 0x3FFA0065), Status(0x3FFA0065));
}

TEST_F(FillTextBuffer, ThatIsNotFullReturnsTheGettersStatus) {
    EXPECT_EQ(Fill(11), Status(0U));
    EXPECT_EQ(getterSize_, 11);
    EXPECT_STREQ(buffer_.data(), "abcdefghi");
    EXPECT_EQ(Fill(11, 0x3FFA0065), Status(0x3FFA0065));
}

TEST_F(FillTextBuffer, ThatIsFullReturns4096WithOrWithoutTruncation) {
    EXPECT_EQ(Fill(10), Status(4096U));
    EXPECT_STREQ(buffer_.data(), "abcdefghi");
    EXPECT_EQ(Fill(9), Status(4096U));
    EXPECT_STREQ(buffer_.data(), "abcdefgh");
    EXPECT_EQ(Fill(1), Status(4096U));
    EXPECT_STREQ(buffer_.data(), "");
    EXPECT_EQ(Fill(10, 0x3FFA0065), Status(4096U));
}

TEST_F(FillTextBuffer, ReturnsAGettersFailureWithoutReadingTheBuffer) {
    buffer_[9] = '\0';
    EXPECT_EQ(Fill(10, 0xBFFA4214), Status(0xBFFA4214));
    EXPECT_EQ(Fill(-1, 0xBFFA4214), Status(0xBFFA4214));
}

} // namespace
} // namespace unit
