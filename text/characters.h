// ASCII character classes, independent of the locale.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace text {

constexpr bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr char ToLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr char ToUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

/// Letters, digits and the underscore: the "\w" of a regular expression.
constexpr bool IsWord(char c) {
    const char lower = ToLower(c);
    return (lower >= 'a' && lower <= 'z') || IsDigit(c) || c == '_';
}

constexpr bool IsBlank(std::string_view text) { return std::all_of(text.begin(), text.end(), IsSpace); }

constexpr bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return ToLower(x) == ToLower(y); });
}

/// Returns `text` without the leading and trailing characters for which `drop` holds.
template <typename Predicate>
constexpr std::string_view Trim(std::string_view text, Predicate drop) {
    while (!text.empty() && drop(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && drop(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

constexpr std::string_view Trim(std::string_view text) { return Trim(text, IsSpace); }

inline std::string ToLower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return ToLower(c); });
    return lower;
}

/// Returns a view of `text`; a null pointer counts as empty text.
inline std::string_view ViewOf(const char* text) {
    return text == nullptr ? std::string_view{} : std::string_view(text);
}

/// Calls `visit(element)` for each element of a list, without the separators. An empty list has one empty element.
template <typename Visit>
constexpr void ForEachElement(std::string_view list, char separator, Visit visit) {
    for (;;) {
        const auto end = list.find(separator);
        visit(list.substr(0, end));
        if (end == std::string_view::npos) {
            return;
        }
        list.remove_prefix(end + 1);
    }
}

} // namespace text
