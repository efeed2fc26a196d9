#include "tools/virtual_supply/kinds.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>

namespace virtual_supply {

namespace {

// std::toupper depends on the locale, and is undefined for negative values of char.
constexpr char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

double CheckRange(const Kind& kind, int channel, double number) {
    const Range& range = kind.ranges.at(channel > 0 ? static_cast<std::size_t>(channel - 1) : 0);
    if (number < range.minimum || number > range.maximum) {
        throw Refusal(kDataOutOfRange);
    }
    return number + 0.0; // turns -0.0 into 0.0
}

double ParseNumber(std::string_view text, std::string_view allowed) {
    // std::from_chars accepts "nan" and "inf", which the allowed characters exclude.
    if (text.find_first_not_of(allowed) != std::string_view::npos) {
        throw Refusal(kDataTypeError);
    }
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    double number = 0.0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error == std::errc::invalid_argument || rest != end) {
        throw Refusal(kDataTypeError);
    }
    if (error == std::errc::result_out_of_range) {
        throw Refusal(kDataOutOfRange);
    }
    return number;
}

double ParseBoolean(std::string_view text) {
    if (text == "1" || EqualIgnoringCase(text, "ON")) {
        return 1.0;
    }
    if (text == "0" || EqualIgnoringCase(text, "OFF")) {
        return 0.0;
    }
    throw Refusal(kDataTypeError);
}

double ParseKeyword(std::span<const Keyword> words, std::string_view text) {
    for (const Keyword& keyword : words) {
        if (EqualIgnoringCase(keyword.word, text)) {
            return keyword.value;
        }
    }
    throw Refusal(kIllegalParameterValue);
}

void AppendReal(double number, std::string& reply) {
    constexpr int kDecimals = 6;
    std::array<char, std::numeric_limits<double>::max_exponent10 + kDecimals + 4> text{};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, kDecimals).ptr;
    reply.append(text.data(), end);
}

void AppendKeyword(std::span<const Keyword> words, int value, std::string& reply) {
    const auto found = std::find_if(words.begin(), words.end(), [&](const Keyword& k) { return k.value == value; });
    if (found != words.end()) {
        reply += found->word;
    }
}

} // namespace

bool EqualIgnoringCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return Upper(a) == Upper(b); });
}

bool LessIgnoringCase(std::string_view left, std::string_view right) {
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        [](char a, char b) { return Upper(a) < Upper(b); });
}

double ParseArgument(const Kind& kind, int channel, std::string_view text) {
    switch (kind.type) {
    case Kind::Type::Boolean:
        return ParseBoolean(text);
    case Kind::Type::Integer:
        return CheckRange(kind, channel, ParseNumber(text, "0123456789+-"));
    case Kind::Type::Real:
        return CheckRange(kind, channel, ParseNumber(text, "0123456789+-.eE"));
    case Kind::Type::Keyword:
        return ParseKeyword(kind.words, text);
    case Kind::Type::Text:
        break; // of replies only
    }
    throw Refusal(kDataTypeError);
}

void AppendReply(const Kind& kind, const Value& value, std::string& reply) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        reply += *text;
        return;
    }
    const double number = std::get<double>(value);
    switch (kind.type) {
    case Kind::Type::Boolean:
        reply += number != 0.0 ? "ON" : "OFF";
        break;
    case Kind::Type::Integer:
        reply += std::to_string(static_cast<long long>(number));
        break;
    case Kind::Type::Real:
    case Kind::Type::Text:
        AppendReal(number, reply);
        break;
    case Kind::Type::Keyword:
        AppendKeyword(kind.words, static_cast<int>(number), reply);
        break;
    }
}

} // namespace virtual_supply
