#include "instrument/random_source.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr std::uint32_t kSeed = 20240229;
constexpr int kDraws = 2000;

std::mt19937 EngineOf(std::uint32_t seed) { return std::mt19937(seed); }

/// The next real in [0, 1) of an engine of the test's own, by the formula as it is stated.
double Unit(std::mt19937& engine) {
    const auto a = static_cast<std::uint32_t>(engine());
    const auto b = static_cast<std::uint32_t>(engine());
    const auto integer = static_cast<std::uint64_t>(b) * 2097152U + a / 2048U;
    return static_cast<double>(integer) / 9007199254740992.0;
}

TEST(RandomSource, DrawsTheRealsOfTheFormula) {
    ORVA::RandomSource source(kSeed);
    auto engine = EngineOf(kSeed);
    for (int i = 0; i < kDraws; ++i) {
        EXPECT_EQ(source.Real(0.0, 1.0), Unit(engine));
    }
    for (int i = 0; i < kDraws; ++i) {
        const double low = -2.5;
        const double high = 22.0;
        EXPECT_EQ(source.Real(low, high), low + Unit(engine) * (high - low));
    }
}

TEST(RandomSource, DrawsTheFirstRealOfTheDefaultSeed) {
    // 3499211612 and 581869302 are the first two outputs of MT19937 for the seed 5489.
    ORVA::RandomSource source(5489);
    EXPECT_EQ(source.Real(0.0, 1.0), (581869302.0 * 2097152.0 + 1708599.0) / 9007199254740992.0);
}

TEST(RandomSource, DrawsABooleanAsARealBelowOneHalf) {
    ORVA::RandomSource source(kSeed);
    auto engine = EngineOf(kSeed);
    int yes = 0;
    for (int i = 0; i < kDraws; ++i) {
        const bool drawn = source.Boolean();
        EXPECT_EQ(drawn, Unit(engine) < 0.5);
        yes += drawn ? 1 : 0;
    }
    EXPECT_GT(yes, kDraws * 2 / 5);
    EXPECT_LT(yes, kDraws * 3 / 5);
}

/// The integers of [low, high] by multiply-and-reject, written out in 64 bits.
void ExpectIntegersOfTheFormula(std::int64_t low, std::int64_t high) {
    ORVA::RandomSource source(kSeed);
    auto engine = EngineOf(kSeed);
    const auto n = static_cast<std::uint64_t>(high - low + 1);
    const auto threshold = (4294967296U - n) % n;
    for (int i = 0; i < kDraws; ++i) {
        std::uint64_t product = 0;
        do {
            product = static_cast<std::uint64_t>(engine()) * n;
        } while (product % 4294967296U < threshold);
        const auto expected = low + static_cast<std::int64_t>(product / 4294967296U);
        ASSERT_EQ(source.Integer(static_cast<std::int32_t>(low), static_cast<std::int32_t>(high)), expected)
            << low << " to " << high << ", draw " << i;
    }
}

TEST(RandomSource, DrawsTheIntegersOfTheFormula) {
    ExpectIntegersOfTheFormula(0, 1);
    ExpectIntegersOfTheFormula(1, 2);
    ExpectIntegersOfTheFormula(0, 2);
    ExpectIntegersOfTheFormula(0, 99999);
    ExpectIntegersOfTheFormula(-7, 7);
    ExpectIntegersOfTheFormula(5, 5);
}

TEST(RandomSource, DrawsTheIntegersOfTheFormulaInWideRanges) {
    ExpectIntegersOfTheFormula(0, 1610612735);           // rejects a quarter
    ExpectIntegersOfTheFormula(-1610612736, 1610612735); // likewise
    ExpectIntegersOfTheFormula(std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max());
}

TEST(RandomSource, DrawsBothEndsOfARangeAndNothingOutside) {
    ORVA::RandomSource source(kSeed);
    std::vector<int> drawn(3);
    for (int i = 0; i < kDraws; ++i) {
        const auto value = source.Integer(0, 2);
        ASSERT_GE(value, 0);
        ASSERT_LE(value, 2);
        ++drawn[static_cast<std::size_t>(value)];
        const auto real = source.Real(1.5, 22.0);
        ASSERT_GE(real, 1.5);
        ASSERT_LT(real, 22.0);
    }
    for (const auto count : drawn) {
        EXPECT_GT(count, kDraws / 4);
    }
}

TEST(RandomSource, DrawsThePointOfARangeOfOnePoint) {
    ORVA::RandomSource source(kSeed);
    EXPECT_EQ(source.Real(2.5, 2.5), 2.5);
    EXPECT_EQ(source.Integer(-4, -4), -4);
}

TEST(RandomSource, DrawsWholeRealsWhenTwoThreadsDraw) {
    // Each real takes two outputs: whatever the order, all reals of both threads are reals of one engine.
    ORVA::RandomSource source(kSeed);
    std::vector<double> first;
    std::vector<double> second;
    const auto draw = [&source](std::vector<double>& drawn) {
        for (int i = 0; i < kDraws; ++i) {
            drawn.push_back(source.Real(0.0, 1.0));
        }
    };
    std::thread other([&] { draw(second); });
    draw(first);
    other.join();
    auto engine = EngineOf(kSeed);
    std::vector<double> expected;
    expected.reserve(2UL * kDraws);
    for (int i = 0; i < 2 * kDraws; ++i) {
        expected.push_back(Unit(engine));
    }
    first.insert(first.end(), second.begin(), second.end());
    std::sort(first.begin(), first.end());
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(first, expected);
}

/// What a process of its own draws first.
std::string FirstDraw() {
    std::array<char, 64> line{};
    FILE* output = popen(FIRST_DRAW, "r"); // NOLINT(cert-env33-c): the program of this build
    EXPECT_NE(output, nullptr);
    EXPECT_NE(fgets(line.data(), static_cast<int>(line.size()), output), nullptr);
    EXPECT_EQ(pclose(output), 0);
    return line.data();
}

TEST(RandomSource, DrawsOtherNumbersInEachProcess) { EXPECT_NE(FirstDraw(), FirstDraw()); }

TEST(RandomSource, IsOneForTheProcessAndThreadSafe) {
    EXPECT_EQ(&ORVA::RandomSource::OfProcess(), &ORVA::RandomSource::OfProcess());
    constexpr int kThreads = 4;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([] {
            for (int draw = 0; draw < kDraws; ++draw) {
                const auto real = ORVA::RandomSource::OfProcess().Real(0.0, 5.5);
                EXPECT_TRUE(real >= 0.0 && real < 5.5);
                const auto integer = ORVA::RandomSource::OfProcess().Integer(0, 3);
                EXPECT_TRUE(integer >= 0 && integer <= 3);
                ORVA::RandomSource::OfProcess().Boolean();
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

} // namespace
