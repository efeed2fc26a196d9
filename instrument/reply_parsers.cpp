#include "instrument/reply_parsers.h"

#include <algorithm>
#include <stdexcept>

#include "text/characters.h"
#include "text/numbers.h"

namespace Visa {
namespace {

/// Returns the longest prefix of characters that `accept` accepts.
template <typename Predicate>
std::string_view PrefixOf(std::string_view text, Predicate accept) {
    return {text.begin(), std::find_if_not(text.begin(), text.end(), accept)};
}

constexpr bool IsOfSwitch(char c) { return c == 'O' || c == 'N' || c == 'F' || c == '1' || c == '0'; }
constexpr bool IsOfInteger(char c) { return text::IsDigit(c) || c == '+' || c == '-'; }
constexpr bool IsOfReal(char c) { return IsOfInteger(c) || c == '.' || c == 'E' || c == 'e'; }

/// Removes a sign from the front.
void SkipSign(std::string_view& text) {
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        text.remove_prefix(1);
    }
}

/// Removes digits from the front. Returns whether there were any.
bool SkipDigits(std::string_view& text) {
    const auto digits = PrefixOf(text, text::IsDigit);
    text.remove_prefix(digits.size());
    return !digits.empty();
}

} // namespace

bool parseBool(std::string_view reply) {
    const auto word = PrefixOf(reply, IsOfSwitch);
    if (word == "ON" || word == "1") {
        return true;
    }
    if (word == "OFF" || word == "0") {
        return false;
    }
    throw std::invalid_argument("Visa::parseBool Unknown ret:" + std::string(reply));
}

std::int32_t parseInt(std::string_view reply) { return text::ToInt(PrefixOf(reply, IsOfInteger)); }

double parseDouble(std::string_view reply) { return text::ToReal(PrefixOf(reply, IsOfReal)); }

bool IsWholeBool(std::string_view reply) { return text::IsBlank(reply.substr(PrefixOf(reply, IsOfSwitch).size())); }

bool IsWholeInt(std::string_view reply) {
    SkipSign(reply);
    return SkipDigits(reply) && text::IsBlank(reply);
}

bool IsWholeDouble(std::string_view reply) {
    SkipSign(reply);
    bool hasDigits = SkipDigits(reply);
    if (!reply.empty() && reply.front() == '.') {
        reply.remove_prefix(1);
        hasDigits = SkipDigits(reply) || hasDigits;
    }
    if (hasDigits && !reply.empty() && text::ToUpper(reply.front()) == 'E') {
        reply.remove_prefix(1);
        SkipSign(reply);
        hasDigits = SkipDigits(reply);
    }
    return hasDigits && text::IsBlank(reply);
}

std::string toUpper(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), [](char c) { return text::ToUpper(c); });
    return upper;
}

const std::string_view* startsWithAnyCase(std::span<const std::string_view> list, std::string_view prefix) {
    const auto found = std::find_if(list.begin(), list.end(), [&](std::string_view element) {
        // Compared in place, without a copy: this runs in every call.
        return element.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), element.begin(),
                                                             [](char p, char c) { return p == text::ToUpper(c); });
    });
    return found == list.end() ? nullptr : &*found;
}

std::string_view FieldReader::Next() {
    if (rest_.empty()) {
        throw std::out_of_range("invalid vector subscript");
    }
    const auto end = rest_.find(separator_);
    const auto field = rest_.substr(0, end);
    rest_ = end == std::string_view::npos ? std::string_view{} : rest_.substr(end + 1);
    return trim_ ? text::Trim(field, [](char c) { return c == '\r' || c == '\n' || c == '\t'; }) : field;
}

std::vector<std::string_view> split(std::string_view reply, char separator, bool trim) {
    std::vector<std::string_view> fields;
    for (FieldReader reader(reply, separator, trim); !reader.AtEnd();) {
        fields.push_back(reader.Next());
    }
    return fields;
}

} // namespace Visa
