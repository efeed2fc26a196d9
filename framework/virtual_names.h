// User-defined channel names, which the configuration store maps to physical names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nrt2 {

/// Ranges are not expanded, so their size does not matter. The first of two equal names counts.
class VirtualNames {
  public:
    void Clear();
    void Add(std::string name, std::string mapTo);

    /// Maps `name` followed by i to `mapTo` followed by i - minimum + startingIndex, for every i from minimum to
    /// maximum. Adds nothing when the minimum exceeds the maximum.
    void AddRange(std::string name, std::string mapTo, std::int32_t minimum, std::int32_t maximum,
                  std::int32_t startingIndex);

    [[nodiscard]] bool Empty() const { return names_.empty(); }
    [[nodiscard]] std::optional<std::string> Find(std::string_view name) const;

  private:
    struct Entry {
        std::size_t order; // of addition
        std::string mapTo;
        bool isRange = false;
        std::int64_t minimum = 0;
        std::int64_t maximum = 0;
        std::int64_t startingIndex = 0;
    };

    // By name, or by the text before the number of a range.
    std::map<std::string, std::vector<Entry>, std::less<>> names_;
    std::size_t added_ = 0;
};

} // namespace nrt2
