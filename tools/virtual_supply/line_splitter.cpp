#include "tools/virtual_supply/line_splitter.h"

#include <utility>

namespace virtual_supply {

std::optional<LineSplitter::Line> LineSplitter::Take(std::string_view& received) {
    while (!received.empty()) {
        const auto lineFeed = received.find('\n');
        const bool ends = lineFeed != std::string_view::npos;
        const std::string_view part = received.substr(0, lineFeed);
        received.remove_prefix(ends ? lineFeed + 1 : received.size());
        if (dropping_) {
            dropping_ = !ends;
            continue;
        }
        if (part.size() > kMaxLineLength - pending_.size()) {
            pending_.clear();
            dropping_ = !ends;
            return Line{{}, true};
        }
        pending_ += part;
        if (ends) {
            if (pending_.ends_with('\r')) {
                pending_.pop_back();
            }
            return Line{std::exchange(pending_, {}), false};
        }
    }
    return std::nullopt;
}

} // namespace virtual_supply
