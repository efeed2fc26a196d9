#include "framework/selector.h"

#include <array>
#include <string>
#include <vector>

#include "tests/unit/framework/framework_fixture.h"
#include "tests/unit/support/random_text.h"
#include "tests/unit/support/small_stack.h"

namespace unit {
namespace {

TEST(SelectorGrammar, TakesNamesRangesListsLevelsAndUnpairedBrackets) {
    for (const auto* selector : {"A",
                                 "_",
                                 "!",
                                 "9",
                                 "A!_9",
                                 "A,B",
                                 "A1-A2",
                                 "A1-B2",
                                 "1-2",
                                 "A-1-2",
                                 " A",
                                 "A ",
                                 " \t\n\v\f\r[ A ]",
                                 "[A",
                                 "A]",
                                 "[A]",
                                 " [A1 - A2 , B ]",
                                 "A:B",
                                 "A : B",
                                 "[A]:[B]",
                                 "[A] :\n[B]",
                                 "A]:[B",
                                 "A1-A2:B",
                                 "A1 - A2 ,B ",
                                 "[A,B] : C"}) {
        const bool expected = std::string_view(selector) != "A-1-2";
        EXPECT_EQ(nrt2::IsWellFormedSelector(selector), expected) << selector;
    }
}

TEST(SelectorGrammar, RefusesEverythingElse) {
    for (const auto* selector :
         {"",    " ",         ",",     ":",     "[",        "]",       "[]",      "A,",    ",A",        "A,,B",
          "A:",  ":A",        "A::B",  "[[A]]", "[A]]",     "A[",      "A[B]",    "[A],B", "A B",       "A1-",
          "-A1", "A-B",       "A1-B",  "A-B1",  "A1-A2-A3", "A1--A2",  "A1- -A2", "[A] ",  "[A1-A2]\n", "A;",
          "A.",  "A\xC3\xA4", "\xA0_", "%s",    "A+B",      "[A] [B]", "A]B",     "A],B",  "A1 2",      "A1-2 3"}) {
        EXPECT_FALSE(nrt2::IsWellFormedSelector(selector)) << selector;
    }
    EXPECT_FALSE(nrt2::IsWellFormedSelector(std::string_view("A\0", 2)));
    EXPECT_FALSE(nrt2::IsWellFormedSelector(std::string_view("\0", 1)));
}

class Rules : public FrameworkTest {
  protected:
    /// The names that a selector expands to, "A1 A2", or the description of its refusal. One refusal is one record.
    std::string Expand(std::string_view selector) {
        std::vector<std::size_t> indexes(names_.size(), 77);
        std::size_t count = 77;
        const Status status(rules_.Expand(selector, virtualNames_, names_, indexes, count));
        const auto recorded = TakeRecorded();
        if (static_cast<ViStatus>(status.code) < 0) {
            EXPECT_EQ(recorded.size(), 1U);
            EXPECT_EQ(recorded.front().code, status);
            EXPECT_EQ(recorded.front().vi, vi_);
            return recorded.front().description;
        }
        EXPECT_THAT(recorded, IsEmpty());
        std::string expanded;
        for (std::size_t i = 0; i < count; ++i) {
            expanded += (i == 0 ? "" : " ") + names_.at(indexes.at(i));
        }
        return expanded;
    }

    static std::string Range(const std::string& range, const std::string& elaboration) {
        return "The range '" + range + "' is not valid for the repeated capability 'Rail'." + elaboration;
    }
    static std::string Unknown(const std::string& name) {
        return "Unknown physical repeated capability selector.  The identifier '" + name +
               "' is not defined for repeated capability 'Rail'.";
    }

    ViSession vi_ = NewHandle();
    nrt2::SelectorRules rules_{vi_, "Rail"};
    std::vector<std::string> names_{"A1", "A2", "A3", "B", "7", "a1"};
    const nrt2::VirtualNames* virtualNames_ = nullptr;
};

const std::string kMalformed = "The repeated capability selector is badly-formed.";
const std::string kBases = "  The base names do not match.";
const std::string kOrder = "  The start index must be less than the end index.";
const std::string kOverlap = "  An identifier in the range overlaps with another range.";

TEST_F(Rules, ExpandNamesAndRangesInTheSelectorsOrder) {
    EXPECT_EQ(Expand("B"), "B");
    EXPECT_EQ(Expand("B,A2,A1"), "B A2 A1");
    EXPECT_EQ(Expand("B,A1-A3,7"), "B A1 A2 A3 7");
    EXPECT_EQ(Expand("[ A3 , A1-A2 ]"), "A3 A1 A2");
    EXPECT_EQ(Expand("a1,A1"), "a1 A1");
    EXPECT_EQ(Expand("A1,A2,A3,B,7,a1"), "A1 A2 A3 B 7 a1");
}

TEST_F(Rules, RangeTakesTheFirstEndsSpelling) {
    EXPECT_EQ(Expand("A1-a2"), "A1 A2");
    EXPECT_EQ(Expand("a1-A2"), Unknown("a2"));
    EXPECT_EQ(Expand("a1,A1-a2"), "a1 A1 A2");
}

TEST_F(Rules, RangeMayHaveNoBaseName) {
    EXPECT_EQ(Expand("6-7"), Unknown("6"));
    EXPECT_EQ(Expand("7-8"), Unknown("8"));
    EXPECT_EQ(Expand("007-0008"), Unknown("8"));
}

TEST_F(Rules, RangeTakesAllTrailingDigitsForItsNumber) {
    EXPECT_EQ(Expand("X12-X13"), Unknown("X12"));
    EXPECT_EQ(Expand("X12-X1"), Range("X12-X1", kOrder));
    EXPECT_EQ(Expand("X1Y2-X1Y3"), Unknown("X1Y2"));
    EXPECT_EQ(Expand("X1Y2-X2Y3"), Range("X1Y2-X2Y3", kBases));
    EXPECT_EQ(Expand("X1-X1Y2"), Range("X1-X1Y2", kBases));
    EXPECT_EQ(Expand("X1Y2-X3"), Range("X1Y2-X3", kBases));
}

TEST_F(Rules, RangeWithoutItsBaseOnBothSidesIsRefused) {
    EXPECT_EQ(Expand("A1-2"), Range("A1-2", kBases));
    EXPECT_EQ(Expand("1-A2"), Range("1-A2", kBases));
    EXPECT_EQ(Expand("A1-B2"), Range("A1-B2", kBases));
    EXPECT_EQ(Expand("AB1-A2"), Range("AB1-A2", kBases));
    EXPECT_EQ(Expand("A1-AB2"), Range("A1-AB2", kBases));
    EXPECT_EQ(Expand(" A1 \t- 2 "), Range("A1 \t- 2", kBases));
}

TEST_F(Rules, RangeMustAscend) {
    EXPECT_EQ(Expand("A1-A1"), Range("A1-A1", kOrder));
    EXPECT_EQ(Expand("A3-A1"), Range("A3-A1", kOrder));
    EXPECT_EQ(Expand("A01-A1"), Range("A01-A1", kOrder));
    EXPECT_EQ(Expand("A0-A00"), Range("A0-A00", kOrder));
}

TEST_F(Rules, RangeBeyond32BitsIsRefusedWithoutElaboration) {
    EXPECT_EQ(Expand("X1-X2147483647"), Unknown("X1"));
    EXPECT_EQ(Expand("X1-X2147483648"), Range("X1-X2147483648", ""));
    EXPECT_EQ(Expand("X2147483648-X1"), Range("X2147483648-X1", ""));
    EXPECT_EQ(Expand("X1-X99999999999999999999"), Range("X1-X99999999999999999999", ""));
    EXPECT_EQ(Expand("X1-Y2147483648"), Range("X1-Y2147483648", kBases));
}

TEST_F(Rules, RangeUpToTheLargestNumberEnds) {
    EXPECT_EQ(Expand("X2147483646-X2147483647"), Unknown("X2147483646"));
    EXPECT_EQ(Expand("X2147483646-X2147483647,X2147483647"), Range("X2147483646-X2147483647", kOverlap));
}

TEST_F(Rules, RepetitionOfAPlainNameIsBadlyFormed) {
    EXPECT_EQ(Expand("A1,A1"), kMalformed);
    EXPECT_EQ(Expand("X,X"), kMalformed);
    EXPECT_EQ(Expand("X01,X01"), kMalformed);
    EXPECT_EQ(Expand("99999999999,99999999999"), kMalformed);
    EXPECT_EQ(Expand("A1,A2,A3,B,7,a1,A1"), kMalformed);
    EXPECT_EQ(Expand("X01,X1"), Unknown("X01"));
}

TEST_F(Rules, RepetitionWithARangeNamesTheRange) {
    EXPECT_EQ(Expand("A1-A3,A2"), Range("A1-A3", kOverlap));
    EXPECT_EQ(Expand("A2, A1 - A3 "), Range("A1 - A3", kOverlap));
    EXPECT_EQ(Expand("A1-A2,A2-A3"), Range("A2-A3", kOverlap));
    EXPECT_EQ(Expand("A2-A3,A1-A2"), Range("A1-A2", kOverlap));
    EXPECT_EQ(Expand("X1-X9,X2-X3"), Range("X2-X3", kOverlap));
    EXPECT_EQ(Expand("X2-X3,X1-X9"), Range("X1-X9", kOverlap));
    EXPECT_EQ(Expand("X1-X2,X5-X6,X3-X4,X6"), Range("X5-X6", kOverlap));
    EXPECT_EQ(Expand("X1-X2,x2-x3"), Unknown("X1"));
    EXPECT_EQ(Expand("X1-X2,X02"), Unknown("X1"));
}

TEST_F(Rules, FaultsOfEarlierItemsAreReportedFirst) {
    EXPECT_EQ(Expand("X,A2-A1,X"), Range("A2-A1", kOrder));
    EXPECT_EQ(Expand("X,X,A2-A1"), kMalformed);
    EXPECT_EQ(Expand("Unknown,A2-A1"), Range("A2-A1", kOrder));
    EXPECT_EQ(Expand("Unknown,Other"), Unknown("Unknown"));
}

TEST_F(Rules, LevelsAreCheckedBeforeRangesAndNames) {
    const auto* const levels = "The number of levels in the selector is not valid for the 'Rail' repeated capability.";
    EXPECT_EQ(Expand("A1:A1"), levels);
    EXPECT_EQ(Expand("A2-A1:X"), levels);
    EXPECT_EQ(Expand("A1:A2 A3"), kMalformed);
}

TEST_F(Rules, NameLongerThanADescriptionIsTruncated) {
    const std::string name(5000, 'n');
    EXPECT_EQ(Expand(name), Unknown(name).substr(0, 1023));
}

TEST_F(Rules, WithoutASessionRecordForTheThread) {
    const nrt2::SelectorRules rules(VI_NULL, "Rail");
    std::vector<nrt2::SelectorItem> items;
    EXPECT_EQ(Status(rules.ParseItems("A2-A1", items)), Status(0xBFFA0064));
    EXPECT_THAT(TakeRecorded(), ElementsAre(RecordedError{0, 0xBFFA0064, Range("A2-A1", kOrder)}));
}

TEST_F(Rules, ItemsDoNotExpandRanges) {
    std::vector<nrt2::SelectorItem> items;
    EXPECT_EQ(rules_.ParseItems(" [ B , A1 - a2000000000 ]", items), VI_SUCCESS);
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0].text, "B");
    EXPECT_FALSE(items[0].isRange);
    EXPECT_EQ(items[1].text, "A1 - a2000000000");
    EXPECT_TRUE(items[1].isRange);
    EXPECT_EQ(items[1].base, "A");
    EXPECT_EQ(items[1].first, 1);
    EXPECT_EQ(items[1].last, 2000000000);
}

TEST_F(Rules, ReturnTheFailureOfARecording) {
    std::vector<std::size_t> indexes(names_.size());
    std::size_t count = 0;
    for (const auto* selector : {"", "A1;", "A:B", "A1-2", "A2-A1", "A1-A2,A1", "A1,A1", "X"}) {
        Fail("IviSession_SetError", 0xBFFA1198);
        EXPECT_EQ(Status(rules_.Expand(selector, nullptr, names_, indexes, count)), Status(0xBFFA1198)) << selector;
    }
}

TEST_F(Rules, VirtualNamesAreSubstitutedOnceAndInPlace) {
    nrt2::VirtualNames virtualNames;
    virtualNames.Add("Core", "A1");
    virtualNames.Add("A1", "A2"); // a virtual name may hide a physical one
    virtualNames.Add("All", "A1-A3");
    virtualNames.Add("List", "A3,B");
    virtualNames.Add("Levels", "A1,A2:B");
    virtualNames.Add("Empty", "");
    virtualNames.Add("Inner", " A3 ");
    virtualNames.Add("Format", "%s%n");
    virtualNames_ = &virtualNames;
    EXPECT_EQ(Expand("Core"), "A1");
    EXPECT_EQ(Expand("A1"), "A2");
    EXPECT_EQ(Expand("Core,A1"), "A1 A2");
    EXPECT_EQ(Expand("All"), "A1 A2 A3");
    EXPECT_EQ(Expand("B,All"), "B A1 A2 A3");
    EXPECT_EQ(Expand(" List"), "A3 B");
    EXPECT_EQ(Expand("Inner , B"), "A3 B");
    EXPECT_EQ(Expand("List "), kMalformed);
    EXPECT_EQ(Expand("List,Core"), kMalformed);
    EXPECT_EQ(Expand("Empty"), kMalformed);
    EXPECT_EQ(Expand("Core,Empty"), kMalformed);
    EXPECT_EQ(Expand("Format"), kMalformed);
    EXPECT_EQ(Expand("Levels"),
              "The number of levels in the selector is not valid for the 'Rail' repeated capability.");
    EXPECT_EQ(Expand("Core-A3"), kMalformed); // the grammar sees the virtual name first
    EXPECT_EQ(Expand("Core;"), kMalformed);
    EXPECT_EQ(Expand("CoreX"), Unknown("CoreX"));
}

TEST_F(Rules, VirtualNamesMayBeTheEndsOfARange) {
    nrt2::VirtualNames virtualNames;
    virtualNames.AddRange("V", "A", 11, 13, 1);
    virtualNames_ = &virtualNames;
    EXPECT_EQ(Expand("V11-V13"), "A1 A2 A3");
    EXPECT_EQ(Expand("V11-A3"), "A1 A2 A3");
    EXPECT_EQ(Expand("V13-V12"), Range("A3-A2", kOrder));
    EXPECT_EQ(Expand("V14"), Unknown("V14"));
}

// Selectors of 1 MiB on a stack of 256 KiB.
class SelectorOfAMebibyte : public Rules {
  protected:
    static std::string Repeated(std::string_view piece) {
        std::string text;
        while (text.size() < kMebibyte) {
            text.append(piece);
        }
        return text;
    }

    /// Items numbered from 1: "X1,X2,..." or "X1-X2,X3-X4,...".
    static std::string Numbered(bool ranges) {
        std::string text;
        for (int i = 1; text.size() < kMebibyte; i += 2) {
            text += (i == 1 ? "X" : ",X") + std::to_string(i) + (ranges ? "-X" : ",X") + std::to_string(i + 1);
        }
        return text;
    }

    void ExpectOnSmallStack(const std::string& selector, const std::string& answer) {
        RunOnSmallStack([&] { EXPECT_EQ(Expand(selector), answer) << Shown(selector.substr(0, 40)); });
    }
};

TEST_F(SelectorOfAMebibyte, OfRepeatedPiecesIsRefused) {
    for (const std::string_view piece :
         {",",  ":",  "[",  "]",  "-",    "[]", "A,",  "A:", "A-", "A1-", "A1-A2-", "A ",
          " ,", " -", " :", " [", "\xFF", ".",  "A B", "1 ", "!-", "[A]", "[A],",   "[A]: "}) {
        ExpectOnSmallStack(Repeated(piece), kMalformed);
    }
}

TEST_F(SelectorOfAMebibyte, OfBlanksIsEmpty) {
    RunOnSmallStack([this] { EXPECT_EQ(Expand(Repeated(" ")).substr(0, 27), "A channel name is required."); });
}

TEST_F(SelectorOfAMebibyte, OfBlanksAroundANameIsThatName) {
    ExpectOnSmallStack(Repeated(" ") + "A1" + Repeated("\n"), "A1");
    ExpectOnSmallStack(Repeated(" ") + "[" + Repeated(" ") + "A1" + Repeated(" ") + "-" + Repeated(" ") + "A2" +
                           Repeated(" ") + "]",
                       "A1 A2");
}

TEST_F(SelectorOfAMebibyte, OfManyNamesIsUnknownAtTheFirst) {
    ExpectOnSmallStack(Numbered(false), Unknown("X1"));
    ExpectOnSmallStack(Numbered(false) + ",X1", kMalformed);
    ExpectOnSmallStack("A1,A2," + Numbered(false), Unknown("X1"));
}

TEST_F(SelectorOfAMebibyte, OfManyRangesIsUnknownAtTheFirst) {
    ExpectOnSmallStack(Numbered(true), Unknown("X1"));
    ExpectOnSmallStack(Numbered(true) + ",X1-X2", Range("X1-X2", kOverlap));
}

TEST_F(SelectorOfAMebibyte, OfOneLongNameIsUnknown) {
    for (const std::string_view piece : {"n", "!", "7", "0", "_"}) {
        const auto name = Repeated(piece);
        ExpectOnSmallStack(name, Unknown(name).substr(0, 1023));
    }
}

TEST_F(SelectorOfAMebibyte, OfALongRangeIsUnknown) {
    const auto name = Repeated("n");
    const auto digits = Repeated("7");
    ExpectOnSmallStack(name + "1-" + name + "2", Unknown(name).substr(0, 1023));
    ExpectOnSmallStack(name + "2-" + name + "1", Range(name, "").substr(0, 1023));
    ExpectOnSmallStack("n" + digits + "-n" + digits, Range("n" + digits, "").substr(0, 1023));
    ExpectOnSmallStack("A" + Repeated("0") + "1-A" + Repeated("0") + "2", "A1 A2");
}

TEST_F(SelectorOfAMebibyte, OfManyLevelsIsRefusedForTheirNumber) {
    ExpectOnSmallStack(Repeated("A:") + "A",
                       "The number of levels in the selector is not valid for the 'Rail' repeated capability.");
}

TEST_F(SelectorOfAMebibyte, OfManyVirtualNamesIsExpanded) {
    nrt2::VirtualNames virtualNames;
    virtualNames.AddRange("X", "Y", 0, 2000000000, 1);
    virtualNames.Add("n", "A1-A2");
    virtualNames_ = &virtualNames;
    ExpectOnSmallStack(Numbered(false), Unknown("Y2"));
    ExpectOnSmallStack(Numbered(true), Unknown("Y2"));
    ExpectOnSmallStack(Repeated("n,") + "n", Range("A1-A2", kOverlap));
}

TEST_F(SelectorOfAMebibyte, ThatExpandsToHundredsOfMebibytesIsBadlyFormed) {
    nrt2::VirtualNames virtualNames;
    virtualNames.Add("n", std::string(1023, 'x'));
    virtualNames_ = &virtualNames;
    ExpectOnSmallStack(Repeated("n,") + "n", kMalformed);
}

TEST_F(SelectorOfAMebibyte, ThatExpandsBeyondTheLimitIsBadlyFormed) {
    nrt2::VirtualNames virtualNames; // X1, X2, ... map to different names of 1,000 characters
    virtualNames.AddRange("X", std::string(1000, 'x'), 1, 2000000000, 1);
    virtualNames_ = &virtualNames;
    ExpectOnSmallStack(Numbered(false), kMalformed);
}

TEST_F(SelectorOfAMebibyte, MayBeLongerThanTheLimitWithoutVirtualNames) {
    nrt2::VirtualNames virtualNames;
    virtualNames.Add("n", "A1");
    virtualNames_ = &virtualNames;
    const std::string blanks(std::size_t{17} << 20U, ' ');
    ExpectOnSmallStack("A1," + blanks + "A2," + blanks + "Y", Unknown("Y"));
}

} // namespace
} // namespace unit
