#include "framework/virtual_names.h"

#include <charconv>
#include <utility>

#include "text/characters.h"
#include "text/numbers.h"

namespace nrt2 {
namespace {

/// Converts decimal digits without leading zeros; nothing for other texts.
std::optional<std::int64_t> CanonicalNumber(std::string_view digits) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc{} || end != digits.data() + digits.size() || text::IntegerText(number).View() != digits) {
        return std::nullopt;
    }
    return number;
}

} // namespace

void VirtualNames::Clear() {
    names_.clear();
    added_ = 0;
}

void VirtualNames::Add(std::string name, std::string mapTo) {
    names_[std::move(name)].push_back({.order = added_++, .mapTo = std::move(mapTo)});
}

void VirtualNames::AddRange(std::string name, std::string mapTo, std::int32_t minimum, std::int32_t maximum,
                            std::int32_t startingIndex) {
    names_[std::move(name)].push_back({.order = added_++,
                                       .mapTo = std::move(mapTo),
                                       .isRange = true,
                                       .minimum = minimum,
                                       .maximum = maximum,
                                       .startingIndex = startingIndex});
}

std::optional<std::string> VirtualNames::Find(std::string_view name) const {
    if (names_.empty()) {
        return std::nullopt; // the usual case, on every call
    }
    const Entry* first = nullptr;
    std::int64_t number = 0;
    const auto consider = [&](const Entry& entry, std::int64_t candidate) {
        if (first == nullptr || entry.order < first->order) {
            first = &entry;
            number = candidate;
        }
    };
    if (const auto plain = names_.find(name); plain != names_.end()) {
        for (const auto& entry : plain->second) {
            if (!entry.isRange) {
                consider(entry, 0);
            }
        }
    }
    // Names of ranges may end in digits, so every split into a name and a number of at most ten digits is tried.
    constexpr std::size_t kMostDigits = 10;
    for (std::size_t digits = 1; digits <= kMostDigits && digits <= name.size(); ++digits) {
        const auto base = name.size() - digits;
        if (!text::IsDigit(name[base])) {
            break;
        }
        const auto candidate = CanonicalNumber(name.substr(base));
        const auto ranges = candidate ? names_.find(name.substr(0, base)) : names_.end();
        if (ranges == names_.end()) {
            continue;
        }
        for (const auto& entry : ranges->second) {
            if (entry.isRange && entry.minimum <= *candidate && *candidate <= entry.maximum) {
                consider(entry, *candidate);
            }
        }
    }
    if (first == nullptr) {
        return std::nullopt;
    }
    if (!first->isRange) {
        return first->mapTo;
    }
    return first->mapTo + std::string(text::IntegerText(number - first->minimum + first->startingIndex).View());
}

} // namespace nrt2
