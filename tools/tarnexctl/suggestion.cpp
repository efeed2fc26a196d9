#include "tools/tarnexctl/suggestion.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace tarnexctl {

namespace {

/// Returns how many letters must be inserted, removed or replaced to get from one word to the other.
std::size_t Distance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const auto replaced = diagonal + (from[i - 1] == to[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row.back();
}

} // namespace

std::string Suggestion(std::string_view word, const std::vector<std::string>& known) {
    constexpr std::size_t kLongestWord = 64; // the work grows with the length
    const std::size_t most = std::max<std::size_t>(1, word.size() / 3);
    const std::string* best = nullptr;
    std::size_t least = most + 1;
    for (const auto& candidate : known) {
        const auto distance = word.size() > kLongestWord ? least : Distance(word, candidate);
        if (distance < least || (distance == least && best != nullptr && candidate.starts_with(word))) {
            least = distance;
            best = &candidate;
        }
    }
    return best == nullptr ? "" : *best;
}

} // namespace tarnexctl
