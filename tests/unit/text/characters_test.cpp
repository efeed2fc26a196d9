#include "text/characters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing::ElementsAre;

/// All bytes for which `holds` does, in order.
template <typename Predicate>
std::string BytesOf(Predicate holds) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        if (const auto c = static_cast<char>(byte); holds(c)) {
            bytes.push_back(c);
        }
    }
    return bytes;
}

std::vector<std::string> Elements(std::string_view list) {
    std::vector<std::string> elements;
    text::ForEachElement(list, ',', [&](std::string_view element) { elements.emplace_back(element); });
    return elements;
}

TEST(Characters, AreWhiteSpaceOnlyForTheSixOfAscii) {
    EXPECT_EQ(BytesOf([](char c) { return text::IsSpace(c); }), "\t\n\v\f\r ");
}

TEST(Characters, AreDigitsOnlyForTheTenOfAscii) {
    EXPECT_EQ(BytesOf([](char c) { return text::IsDigit(c); }), "0123456789");
}

TEST(Characters, AreWordCharactersOnlyForAsciiLettersDigitsAndUnderscore) {
    EXPECT_EQ(BytesOf([](char c) { return text::IsWord(c); }),
              "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz");
}

TEST(Characters, ChangeCaseOnlyWhenTheyAreAsciiLetters) {
    EXPECT_EQ(BytesOf([](char c) { return text::ToLower(c) != c; }), "ABCDEFGHIJKLMNOPQRSTUVWXYZ");
    EXPECT_EQ(BytesOf([](char c) { return text::ToUpper(c) != c; }), "abcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(text::ToLower('A'), 'a');
    EXPECT_EQ(text::ToLower('Z'), 'z');
    EXPECT_EQ(text::ToUpper('a'), 'A');
    EXPECT_EQ(text::ToUpper('z'), 'Z');
}

TEST(Characters, StayTheSameInLowerCaseTextWhenTheyAreNotLetters) {
    EXPECT_EQ(text::ToLower(std::string_view("AbZ[@`{\xC4\xD6_09", 12)), "abz[@`{\xC4\xD6_09");
    EXPECT_EQ(text::ToLower(std::string_view("A\0B", 3)), std::string("a\0b", 3));
}

TEST(Characters, MakeTextBlankWhenAllAreWhiteSpace) {
    EXPECT_TRUE(text::IsBlank(""));
    EXPECT_TRUE(text::IsBlank(" \t\n\v\f\r"));
    EXPECT_FALSE(text::IsBlank(" . "));
    EXPECT_FALSE(text::IsBlank(std::string_view("\0", 1)));
    EXPECT_FALSE(text::IsBlank("\xA0"));
}

TEST(Characters, CompareWithoutCaseOnlyWhenLengthsAreEqual) {
    EXPECT_TRUE(text::EqualIgnoringCase("Model", "mODEL"));
    EXPECT_TRUE(text::EqualIgnoringCase("", ""));
    EXPECT_FALSE(text::EqualIgnoringCase("Model", "Mode"));
    EXPECT_FALSE(text::EqualIgnoringCase("Mode", "Model"));
    EXPECT_FALSE(text::EqualIgnoringCase("\xC4", "\xE4"));
    EXPECT_FALSE(text::EqualIgnoringCase("@", "`"));
}

TEST(Characters, AreTrimmedOnlyAtTheEndsOfAText) {
    EXPECT_EQ(text::Trim(" \t\n\v\f\ra b\r\f\v\n\t "), "a b");
    EXPECT_EQ(text::Trim(" \r\n"), "");
    EXPECT_EQ(text::Trim(""), "");
    EXPECT_EQ(text::Trim("--a-b-", [](char c) { return c == '-'; }), "a-b");
}

TEST(Text, OfANullPointerIsEmpty) {
    EXPECT_EQ(text::ViewOf(nullptr), "");
    EXPECT_EQ(text::ViewOf("abc"), "abc");
}

TEST(Characters, SeparateAListIntoOneElementMoreThanSeparators) {
    EXPECT_THAT(Elements(""), ElementsAre(""));
    EXPECT_THAT(Elements("a"), ElementsAre("a"));
    EXPECT_THAT(Elements("a,"), ElementsAre("a", ""));
    EXPECT_THAT(Elements(",a, b"), ElementsAre("", "a", " b"));
    EXPECT_THAT(Elements(",,"), ElementsAre("", "", ""));
}

} // namespace
