#include "framework/rep_cap.h"

#include <algorithm>
#include <array>
#include <memory>
#include <thread>

#include "tests/unit/framework/framework_fixture.h"

namespace unit {
namespace {

struct Rail {
    static constexpr std::string_view kName = "Rail";
    static constexpr std::string_view kPhysicalNames = " Rail9-rail11 , Aux_1";
};
struct Only {
    static constexpr std::string_view kName = "Only";
    static constexpr std::string_view kPhysicalNames = "Main";
};
struct Blank {
    static constexpr std::string_view kName = "Blank";
    static constexpr std::string_view kPhysicalNames = " \t\f\v\n\r";
};

static_assert(nrt2::IsDeclarationOfNames("A_1 , B2 - B9"));
static_assert(!nrt2::IsDeclarationOfNames("A1,,A2"));
static_assert(!nrt2::IsDeclarationOfNames("A1,"));
static_assert(!nrt2::IsDeclarationOfNames("A 1"));
static_assert(!nrt2::IsDeclarationOfNames("A1-B"));
static_assert(!nrt2::IsDeclarationOfNames("A2-A2"));
static_assert(!nrt2::IsDeclarationOfNames("A1-A2-A3"));

using Rails = nrt2::RepCapBase<Rail>;
using Onlys = nrt2::RepCapBase<Only>;
using Blanks = nrt2::RepCapBase<Blank>;

class RepCap : public FrameworkTest {
  protected:
    RepCap() = default;
    RepCap(const RepCap&) = delete;
    RepCap& operator=(const RepCap&) = delete;
    ~RepCap() override { nrt2::RunCloseHooks(session_.Handle()); }

    /// The names that a selector expands to, or the status that refuses it.
    template <typename Names = Rails>
    std::vector<std::string> Expand(const char* selector) {
        typename Names::NameList names;
        const auto status = Names::Expand(session_, selector, names);
        if (status < 0) {
            return {testing::PrintToString(Status(status))};
        }
        std::vector<std::string> identifiers;
        for (const auto& name : names) {
            identifiers.emplace_back(name.identifier);
        }
        return identifiers;
    }

    Status GetName(ViInt32 index, ViInt32 size, ViChar name[]) {
        return Status(Rails::GetName(session_, index, size, name));
    }

    RecordedError Recorded(std::uint32_t code, const std::string& description) const {
        return {session_.Handle(), code, description};
    }

    TestSession session_{NewHandle()};
};

TEST_F(RepCap, DeclaresItsNamesInTheGrammarOfSelectors) {
    EXPECT_EQ(Rails::Count(), 4);
    EXPECT_THAT(Expand("Rail9-Rail11,Aux_1"), ElementsAre("Rail9", "Rail10", "Rail11", "Aux_1"));
    EXPECT_EQ(Onlys::Count(), 1);
    EXPECT_EQ(Blanks::Count(), 0);
    EXPECT_THAT(TakeRecorded(), IsEmpty());
}

TEST_F(RepCap, WithOneNameNeedsNoSelector) {
    EXPECT_THAT(Expand<Onlys>(""), ElementsAre("Main"));
    EXPECT_THAT(Expand<Onlys>(nullptr), ElementsAre("Main"));
    EXPECT_THAT(Expand<Onlys>(" \t\r\n\f\v"), ElementsAre("Main"));
    EXPECT_THAT(Expand<Onlys>("Main"), ElementsAre("Main"));
}

TEST_F(RepCap, WithAnyOtherNumberOfNamesNeedsASelectorAndCountsThem) {
    EXPECT_THAT(Expand(""), ElementsAre("0xBFFA0044"));
    EXPECT_THAT(TakeRecorded(),
                ElementsAre(Recorded(0xBFFA0044,
                                     "A channel name is required.  No selector was specified for repeated capability "
                                     "'Rail'.  The repeated capability identifier can be null or empty only when there "
                                     "is exactly one physical name defined.  Repeated capability 'Rail' has 4 physical "
                                     "names defined.")));
}

TEST_F(RepCap, WithoutNamesRefusesEverySelector) {
    EXPECT_THAT(Expand<Blanks>(""), ElementsAre("0xBFFA0044"));
    const auto recorded = TakeRecorded();
    ASSERT_EQ(recorded.size(), 1U);
    EXPECT_THAT(recorded.front().description, testing::HasSubstr("'Blank' has 0 physical names defined."));
    EXPECT_THAT(Expand<Blanks>("A"), ElementsAre("0xBFFA0067"));
}

TEST_F(RepCap, SingleNameIsReturnedWhenExactlyOneIsSelected) {
    nrt2::PhysicalName<Rail> name{};
    EXPECT_EQ(Status(Rails::ExpandSingle(session_, " [Rail10]", name)), Status(0U));
    EXPECT_EQ(name.identifier, "Rail10");
    EXPECT_EQ(Status(Rails::ExpandSingle(session_, "Rail9,Rail10", name)), Status(0xBFFA0066));
    EXPECT_THAT(TakeRecorded(),
                ElementsAre(Recorded(0xBFFA0066, "The repeated capability selector is badly-formed.  Only a single "
                                                 "repeated capability identifier can be specified for the current "
                                                 "operation.")));
    EXPECT_EQ(Status(Rails::ExpandSingle(session_, "Rail12", name)), Status(0xBFFA0067));
    EXPECT_EQ(name.identifier, "Rail10");
}

TEST_F(RepCap, NameAtAnIndexFollowsTheBufferRule) {
    std::array<ViChar, 16> name{};
    EXPECT_EQ(GetName(1, 16, name.data()), Status(0U));
    EXPECT_STREQ(name.data(), "Rail10");
    EXPECT_EQ(GetName(3, 6, name.data()), Status(4096U));
    EXPECT_STREQ(name.data(), "Aux_1");
    EXPECT_EQ(GetName(3, 3, name.data()), Status(4096U));
    EXPECT_STREQ(name.data(), "Au");
    EXPECT_EQ(GetName(0, 0, name.data()), Status(4096U));
    EXPECT_STREQ(name.data(), "Au");
}

TEST_F(RepCap, IndexOutOfRangeIsRefusedWithTheNameOfTheCapability) {
    std::array<ViChar, 16> name{"unchanged"};
    for (const auto& [index, text] : {std::pair{-1, "-1"}, {4, "4"}, {-2147483647 - 1, "-2147483648"}}) {
        EXPECT_EQ(GetName(index, 16, name.data()), Status(0xBFFA0010));
        EXPECT_THAT(TakeRecorded(), ElementsAre(Recorded(0xBFFA0010, std::string("Invalid value '") + text +
                                                                         "' for function 'GetRailName', parameter "
                                                                         "'Index'.")));
    }
    EXPECT_STREQ(name.data(), "unchanged");
}

TEST_F(RepCap, NumberOfAChannelIsTheLastDigitOfItsName) {
    EXPECT_EQ(Rails::ChannelNumber("OutputChannel1"), 1);
    EXPECT_EQ(Rails::ChannelNumber("OutputChannel2"), 2);
    EXPECT_EQ(Rails::ChannelNumber("7"), 7);
    EXPECT_EQ(Rails::ChannelNumber("CH12"), 2);
}

TEST_F(RepCap, NumberOfANameWithoutADigitThrows) {
    for (const auto* name : {"", "Main", "CH 1", "CH-1", "CH1!", "CH1 ", "1a"}) {
        try {
            Rails::ChannelNumber(name);
            FAIL() << name;
        } catch (const std::invalid_argument& error) {
            EXPECT_STREQ(error.what(), "invalid stoi argument") << name;
        }
    }
}

TEST_F(RepCap, NamesBelongToTheSessionUntilItsClose) {
    EXPECT_FALSE(session_.RepCap().ready);
    Expand("Rail9");
    EXPECT_TRUE(session_.RepCap().ready);
    EXPECT_EQ(session_.RepCap().physicalNames.size(), 4U);
    nrt2::RunCloseHooks(session_.Handle() + 1);
    EXPECT_TRUE(session_.RepCap().ready);
    nrt2::RunCloseHooks(session_.Handle());
    EXPECT_FALSE(session_.RepCap().ready);
    EXPECT_TRUE(session_.RepCap().physicalNames.empty());
    EXPECT_THAT(Expand("Rail9"), ElementsAre("Rail9"));
}

TEST_F(RepCap, SessionsOnManyThreadsShareNothing) {
    constexpr int kRounds = 200;
    std::array<std::unique_ptr<TestSession>, 4> sessions;
    std::generate(sessions.begin(), sessions.end(), [] { return std::make_unique<TestSession>(NewHandle()); });
    std::vector<std::thread> threads;
    threads.reserve(sessions.size());
    for (const auto& session : sessions) {
        threads.emplace_back([&session] {
            for (int round = 0; round < kRounds; ++round) {
                Rails::NameList names;
                EXPECT_EQ(Rails::Expand(*session, "Rail9-Rail10", names), VI_SUCCESS);
                EXPECT_EQ(names.size(), 2U);
                nrt2::RunCloseHooks(session->Handle());
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

} // namespace
} // namespace unit
