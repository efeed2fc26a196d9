#include "text/option_string.h"

#include <algorithm>
#include <cstddef>

#include "text/characters.h"

namespace text {
namespace {

template <typename Predicate>
std::size_t SkipWhile(std::string_view text, std::size_t from, Predicate predicate) {
    while (from < text.size() && predicate(text[from])) {
        ++from;
    }
    return from;
}

bool IsSetupName(char c) { return IsWord(c) || c == '+'; }

} // namespace

const InherentOption* FindInherentOption(std::string_view name) {
    const auto* option = std::find_if(kInherentOptions.begin(), kInherentOptions.end(),
                                      [&](const InherentOption& candidate) { return candidate.name == name; });
    return option == kInherentOptions.end() ? nullptr : option;
}

OptionString SplitOptionString(std::string_view options) {
    constexpr std::string_view kKeyword = "DriverSetup";
    for (std::size_t at = 0; at + kKeyword.size() < options.size(); ++at) {
        if (!EqualIgnoringCase(options.substr(at, kKeyword.size()), kKeyword)) {
            continue;
        }
        const auto equals = SkipWhile(options, at + kKeyword.size(), IsSpace);
        if (equals == options.size() || options[equals] != '=') {
            continue;
        }
        auto inherentEnd = at;
        while (inherentEnd > 0 && IsSpace(options[inherentEnd - 1])) {
            --inherentEnd;
        }
        const auto clause = options.substr(equals + 1);
        return {options.substr(0, inherentEnd), clause.substr(0, clause.find_first_of("\r\n"))};
    }
    return {options, std::nullopt};
}

std::optional<OptionPair> NextDriverSetupPair(std::string_view& text) {
    std::size_t at = 0;
    while (at < text.size()) {
        const auto nameBegin = SkipWhile(text, at, [](char c) { return !IsSetupName(c); });
        const auto nameEnd = SkipWhile(text, nameBegin, IsSetupName);
        const auto separator = SkipWhile(text, nameEnd, IsSpace);
        if (separator >= text.size() || (text[separator] != '=' && text[separator] != ':')) {
            at = separator;
            continue;
        }
        const auto valueEnd = std::min(text.find(',', separator + 1), text.size());
        if (valueEnd == separator + 1) {
            at = valueEnd;
            continue;
        }
        // A value has at least one character: when only blanks follow the separator, the last one is the value.
        const auto valueBegin = std::min(SkipWhile(text, separator + 1, IsSpace), valueEnd - 1);
        const OptionPair pair{text.substr(nameBegin, nameEnd - nameBegin),
                              text.substr(valueBegin, valueEnd - valueBegin)};
        text.remove_prefix(valueEnd);
        return pair;
    }
    text = {};
    return std::nullopt;
}

std::optional<OptionPair> NextInherentPair(std::string_view& text) {
    std::size_t at = 0;
    while (at < text.size()) {
        const auto nameBegin = SkipWhile(text, at, [](char c) { return !IsWord(c); });
        const auto nameEnd = SkipWhile(text, nameBegin, IsWord);
        const auto separator = SkipWhile(text, nameEnd, IsSpace);
        if (separator >= text.size() || text[separator] != '=') {
            at = separator;
            continue;
        }
        const auto valueBegin = SkipWhile(text, separator + 1, IsSpace);
        const auto valueEnd = SkipWhile(text, valueBegin, IsWord);
        if (valueEnd == valueBegin) {
            at = separator + 1;
            continue;
        }
        const OptionPair pair{text.substr(nameBegin, nameEnd - nameBegin),
                              text.substr(valueBegin, valueEnd - valueBegin)};
        text.remove_prefix(valueEnd);
        return pair;
    }
    text = {};
    return std::nullopt;
}

std::optional<bool> BooleanWord(std::string_view word) {
    if (word == "true" || word == "vi_true" || word == "1") {
        return true;
    }
    if (word == "false" || word == "vi_false" || word == "0") {
        return false;
    }
    return std::nullopt;
}

} // namespace text
