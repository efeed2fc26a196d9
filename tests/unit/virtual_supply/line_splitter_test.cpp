// Splitting received bytes into lines.

#include "tools/virtual_supply/line_splitter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace virtual_supply {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::string_literals;

/// Returns the lines of the chunks, with "OVERRUN" for an overrun.
std::vector<std::string> LinesOf(const std::vector<std::string>& chunks) {
    LineSplitter splitter;
    std::vector<std::string> lines;
    for (const std::string& chunk : chunks) {
        std::string_view received = chunk;
        while (const auto line = splitter.Take(received)) {
            lines.push_back(line->overrun ? "OVERRUN" : line->text);
        }
        EXPECT_TRUE(received.empty());
    }
    return lines;
}

TEST(LineSplitter, EndsLinesAtLineFeeds) {
    EXPECT_THAT(LinesOf({"*CLS\n*IDN?\n"}), ElementsAre("*CLS", "*IDN?"));
    EXPECT_THAT(LinesOf({"\n\n"}), ElementsAre("", ""));
}

TEST(LineSplitter, JoinsALineThatArrivesInPieces) {
    EXPECT_THAT(LinesOf({"*I", "", "D", "N?\n*C", "LS\n"}), ElementsAre("*IDN?", "*CLS"));
}

TEST(LineSplitter, HoldsBackAnUnfinishedLine) { EXPECT_THAT(LinesOf({"*IDN?"}), IsEmpty()); }

TEST(LineSplitter, DropsOneCarriageReturnBeforeTheLineFeed) {
    EXPECT_THAT(LinesOf({"*CLS\r\n", "*CLS\r", "\n", "*CLS\r\r\n", "*C\rLS\n", "\r\n"}),
                ElementsAre("*CLS", "*CLS", "*CLS\r", "*C\rLS", ""));
}

TEST(LineSplitter, KeepsAllBytesOfALine) { EXPECT_THAT(LinesOf({"\0\xff\x80\n"s}), ElementsAre("\0\xff\x80"s)); }

TEST(LineSplitter, AcceptsLinesOf4096Bytes) {
    const std::string longest(4096, 'A');
    EXPECT_THAT(LinesOf({longest + "\n"}), ElementsAre(longest));
    EXPECT_THAT(LinesOf({longest, "\n"}), ElementsAre(longest));
}

TEST(LineSplitter, ReportsALongerLineOnceAndDropsAllOfIt) {
    const std::string tooLong(4097, 'A');
    EXPECT_THAT(LinesOf({tooLong + "\n*CLS\n"}), ElementsAre("OVERRUN", "*CLS"));
    EXPECT_THAT(LinesOf({tooLong, "*RST", "*RST\n*CLS\n"}), ElementsAre("OVERRUN", "*CLS"));
    EXPECT_THAT(LinesOf({std::string(4096, 'A'), "A", tooLong, tooLong, "\n", "*CLS\n"}),
                ElementsAre("OVERRUN", "*CLS"));
}

TEST(LineSplitter, ReportsAnOverrunBeforeTheLineHasEnded) {
    EXPECT_THAT(LinesOf({std::string(4097, 'A')}), ElementsAre("OVERRUN"));
}

TEST(LineSplitter, ReportsEachOverrunOnce) {
    EXPECT_THAT(LinesOf({std::string(5000, 'A') + "\n", std::string(5000, 'A') + "\n*CLS\n"}),
                ElementsAre("OVERRUN", "OVERRUN", "*CLS"));
}

} // namespace
} // namespace virtual_supply
