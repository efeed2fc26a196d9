#include "framework/selector.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>

#include "framework/error_info.h"
#include "text/characters.h"
#include "text/numbers.h"

namespace nrt2 {
namespace {

/// The characters of names: "[\w_!]".
bool IsNameCharacter(char c) { return text::IsWord(c) || c == '!'; }

/// Reads a text once, from front to back.
class Scanner {
  public:
    explicit Scanner(std::string_view text) : rest_(text) {}

    [[nodiscard]] bool AtEnd() const { return rest_.empty(); }

    bool Take(char c) {
        if (rest_.empty() || rest_.front() != c) {
            return false;
        }
        rest_.remove_prefix(1);
        return true;
    }

    /// Removes white space. Returns whether there was any.
    bool TakeBlanks() { return !TakeWhile(text::IsSpace).empty(); }

    std::string_view TakeName() { return TakeWhile(IsNameCharacter); }

  private:
    template <typename Predicate>
    std::string_view TakeWhile(Predicate predicate) {
        const auto end = std::find_if_not(rest_.begin(), rest_.end(), predicate);
        const auto taken = rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
        rest_.remove_prefix(taken.size());
        return taken;
    }

    std::string_view rest_;
};

/// Returns all digits at the end of a name.
std::string_view TrailingDigits(std::string_view name) {
    const auto digits = std::find_if_not(name.rbegin(), name.rend(), text::IsDigit);
    return name.substr(static_cast<std::size_t>(name.rend() - digits));
}

bool EndsInDigit(std::string_view name) { return !name.empty() && text::IsDigit(name.back()); }

std::optional<std::int32_t> Number(std::string_view digits) {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return error == std::errc{} ? std::optional(number) : std::nullopt;
}

/// The identifiers named so far, as spans of numbers per base name, so that names and ranges are compared in one way. A
/// name without a number is a base of its own.
class NamedIdentifiers {
  public:
    /// Returns the earlier item that contains one of `item`'s identifiers. Adds `item` and returns null when there is
    /// none.
    const SelectorItem* Add(const SelectorItem& item) {
        Span span{item.base, item.first, item.last, &item};
        if (!item.isRange) {
            const auto digits = TrailingDigits(item.text);
            const auto number = Number(digits);
            // "CH01" is not a member of any range: members have no leading zeros.
            const bool numbered = number && text::IntegerText(*number).View() == digits;
            span.base = numbered ? item.text.substr(0, item.text.size() - digits.size()) : item.text;
            span.first = span.last = numbered ? *number : kNoNumber;
        }
        auto& spans = spans_[span.base];
        auto next = spans.upper_bound(span.first);
        if (next != spans.begin() && std::prev(next)->second.last >= span.first) {
            return std::prev(next)->second.item;
        }
        if (next != spans.end() && next->second.first <= span.last) {
            return next->second.item;
        }
        spans.emplace_hint(next, span.first, span);
        return nullptr;
    }

  private:
    static constexpr std::int32_t kNoNumber = -1;
    struct Span {
        std::string_view base;
        std::int32_t first;
        std::int32_t last;
        const SelectorItem* item;
    };
    std::map<std::string_view, std::map<std::int32_t, Span>> spans_;
};

/// Replaces the virtual names in a selector. A list is put in brackets, so that it stays one level.
/// Stops with a badly formed text at 16 MiB: a name maps to up to 1023 characters, so a selector of 1 MiB could
/// otherwise need 1 GiB.
std::string Substitute(std::string_view selector, const VirtualNames& virtualNames) {
    constexpr std::size_t kMostCharacters = std::size_t{16} * 1024 * 1024;
    const auto most = std::max(kMostCharacters, selector.size());
    std::string result;
    result.reserve(selector.size());
    while (!selector.empty()) {
        const auto nameEnd = std::find_if_not(selector.begin(), selector.end(), IsNameCharacter);
        const auto name = selector.substr(0, static_cast<std::size_t>(nameEnd - selector.begin()));
        if (name.empty()) {
            result.push_back(selector.front());
            selector.remove_prefix(1);
            continue;
        }
        selector.remove_prefix(name.size());
        if (result.size() > most) {
            return result + ",";
        }
        const auto replacement = virtualNames.Find(name);
        if (!replacement) {
            result.append(name);
        } else if (replacement->find(',') != std::string::npos && replacement->find(':') == std::string::npos) {
            result.append("[").append(*replacement).append("]");
        } else {
            result.append(*replacement);
        }
    }
    return result;
}

std::optional<std::size_t> IndexOf(std::string_view name, std::span<const std::string> names) {
    const auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - names.begin()));
}

/// Expands the selector of most calls: distinct physical names separated by commas. Returns false for any other text,
/// which the complete rules then handle.
bool ExpandPlainNames(std::string_view selector, const VirtualNames* virtualNames,
                      std::span<const std::string> physicalNames, std::span<std::size_t> expanded, std::size_t& count) {
    bool plain = true;
    count = 0;
    text::ForEachElement(selector, ',', [&](std::string_view element) {
        const auto name = text::Trim(element);
        const auto index = plain ? IndexOf(name, physicalNames) : std::nullopt;
        const auto named = expanded.first(count);
        plain = index && std::find(named.begin(), named.end(), *index) == named.end() &&
                (virtualNames == nullptr || !virtualNames->Find(name));
        if (plain) {
            expanded[count++] = *index;
        }
    });
    return plain;
}

} // namespace

// ^(?:\s*\[?L\s*\]?)(?:\s*:\s*\[?L\s*\]?)*$ with L = (?:R|N)(?:\s*,(?:R|N))*, N = \s*[\w_!]+ and
// R = (?:\s*[\w_!]*?[0-9]+\s*-\s*[\w_!]*?[0-9]+). Brackets need not be paired, and a blank after the last "]" is an
// error.
bool IsWellFormedSelector(std::string_view text) {
    Scanner scanner(text);
    do {
        scanner.TakeBlanks();
        scanner.Take('[');
        do {
            scanner.TakeBlanks();
            const auto name = scanner.TakeName();
            if (name.empty()) {
                return false;
            }
            scanner.TakeBlanks();
            if (scanner.Take('-')) {
                scanner.TakeBlanks();
                if (!EndsInDigit(name) || !EndsInDigit(scanner.TakeName())) {
                    return false;
                }
                scanner.TakeBlanks();
            }
        } while (scanner.Take(','));
        const bool blankAfterBracket = scanner.Take(']') && scanner.TakeBlanks();
        if (scanner.AtEnd()) {
            return !blankAfterBracket;
        }
    } while (scanner.Take(':'));
    return false;
}

ViStatus SelectorRules::Expand(std::string_view selector, const VirtualNames* virtualNames,
                               std::span<const std::string> physicalNames, std::span<std::size_t> expanded,
                               std::size_t& count) const {
    if (text::IsBlank(selector)) {
        if (physicalNames.size() != 1) {
            return NoSelector(physicalNames.size());
        }
        expanded[0] = 0;
        count = 1;
        return VI_SUCCESS;
    }
    if (ExpandPlainNames(selector, virtualNames, physicalNames, expanded, count)) {
        return VI_SUCCESS;
    }
    if (!IsWellFormedSelector(selector)) {
        return SetErrorInfo(vi_, IVI_ERROR_BADLY_FORMED_SELECTOR);
    }
    std::string substituted;
    if (virtualNames != nullptr && !virtualNames->Empty()) {
        substituted = Substitute(selector, *virtualNames);
        if (substituted != selector && !IsWellFormedSelector(substituted)) {
            return SetErrorInfo(vi_, IVI_ERROR_BADLY_FORMED_SELECTOR);
        }
        selector = substituted;
    }
    std::vector<SelectorItem> items;
    const auto status = ParseItems(selector, items);
    return status < 0 ? status : ResolveItems(items, physicalNames, expanded, count);
}

ViStatus SelectorRules::ParseItems(std::string_view text, std::vector<SelectorItem>& items) const {
    if (text.find(':') != std::string_view::npos) {
        return SetErrorInfo(vi_, IVI_ERROR_INVALID_NUMBER_OF_LEVELS_IN_SELECTOR, capability_);
    }
    auto level = text::Trim(text);
    if (level.starts_with('[')) {
        level.remove_prefix(1);
    }
    if (level.ends_with(']')) {
        level.remove_suffix(1);
    }
    // Resized first: NamedIdentifiers keeps the addresses of the items.
    items.resize(static_cast<std::size_t>(std::count(level.begin(), level.end(), ',')) + 1);
    NamedIdentifiers named;
    auto item = items.begin();
    ViStatus status = VI_SUCCESS;
    text::ForEachElement(level, ',', [&](std::string_view element) {
        if (status < 0) {
            return;
        }
        status = ParseItem(text::Trim(element), *item);
        if (status < 0) {
            return;
        }
        if (const auto* earlier = named.Add(*item)) {
            status = item->isRange || earlier->isRange
                         ? InvalidRange(item->isRange ? *item : *earlier,
                                        "An identifier in the range overlaps with another range.")
                         : SetErrorInfo(vi_, IVI_ERROR_BADLY_FORMED_SELECTOR);
        }
        ++item;
    });
    return status;
}

// A range: ^\s*([\w_!]*?)([0-9]+)\s*-\s*\1([0-9]+)$, in any letter case. The base is the text before all trailing
// digits of the first end: every text that matches at all matches with this base.
ViStatus SelectorRules::ParseItem(std::string_view text, SelectorItem& item) const {
    item.text = text;
    const auto hyphen = text.find('-');
    item.isRange = hyphen != std::string_view::npos;
    if (!item.isRange) {
        return VI_SUCCESS;
    }
    const auto from = text::Trim(text.substr(0, hyphen));
    const auto to = text::Trim(text.substr(hyphen + 1));
    const auto fromDigits = TrailingDigits(from);
    item.base = from.substr(0, from.size() - fromDigits.size());
    const auto toDigits = to.substr(std::min(item.base.size(), to.size()));
    if (!text::EqualIgnoringCase(item.base, to.substr(0, item.base.size())) || toDigits.empty() ||
        TrailingDigits(toDigits) != toDigits) {
        return InvalidRange(item, "The base names do not match.");
    }
    const auto first = Number(fromDigits);
    const auto last = Number(toDigits);
    if (!first || !last) {
        return InvalidRange(item, {});
    }
    if (*first >= *last) {
        return InvalidRange(item, "The start index must be less than the end index.");
    }
    item.first = *first;
    item.last = *last;
    return VI_SUCCESS;
}

ViStatus SelectorRules::ResolveItems(std::span<const SelectorItem> items, std::span<const std::string> physicalNames,
                                     std::span<std::size_t> expanded, std::size_t& count) const {
    count = 0;
    // The identifiers are distinct, so no more are found than there are physical names. The first one that is not found
    // ends the loop, so a huge range costs nothing.
    const auto resolve = [&](std::string_view identifier) {
        const auto index = IndexOf(identifier, physicalNames);
        if (!index) {
            return SetErrorInfoElab(vi_, IVI_ERROR_UNKNOWN_PHYSICAL_IDENTIFIER,
                                    "The identifier '%s' is not defined for repeated capability '%s'.", identifier,
                                    capability_);
        }
        expanded[count++] = *index;
        return ViStatus{VI_SUCCESS};
    };
    for (const auto& item : items) {
        if (!item.isRange) {
            if (const auto status = resolve(item.text); status < 0) {
                return status;
            }
            continue;
        }
        for (std::int64_t number = item.first; number <= item.last; ++number) {
            std::string identifier(item.base);
            identifier.append(text::IntegerText(number).View());
            if (const auto status = resolve(identifier); status < 0) {
                return status;
            }
        }
    }
    return VI_SUCCESS;
}

ViStatus SelectorRules::InvalidRange(const SelectorItem& item, std::string_view elaboration) const {
    return SetErrorInfoElab(vi_, IVI_ERROR_INVALID_RANGE_IN_SELECTOR, elaboration, item.text, capability_);
}

ViStatus SelectorRules::NoSelector(std::size_t physicalNameCount) const {
    return SetErrorInfoElab(
        vi_, IVI_ERROR_CHANNEL_NAME_REQUIRED,
        "No selector was specified for repeated capability '%s'.  The repeated capability identifier can be null or "
        "empty only when there is exactly one physical name defined.  Repeated capability '%s' has %d physical names "
        "defined.",
        capability_, capability_, text::IntegerText(static_cast<std::int64_t>(physicalNameCount)).View());
}

} // namespace nrt2
