// The channel names of a user's own that the configuration store maps to physical ones.
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

/// Ranges are kept as ranges, so that their span costs nothing. Where a name is given twice, the first counts.
class VirtualNames {
  public:
    void Clear();
    void Add(std::string name, std::string mapTo);

    /// Stands for `name` followed by i -> `mapTo` followed by i - minimum + startingIndex, for every i from minimum to
    /// maximum; for nothing when the minimum exceeds the maximum.
    void AddRange(std::string name, std::string mapTo, std::int32_t minimum, std::int32_t maximum,
                  std::int32_t startingIndex);

    [[nodiscard]] bool Empty() const { return names_.empty(); }
    [[nodiscard]] std::optional<std::string> Find(std::string_view name) const;

  private:
    struct Entry {
        std::size_t order; // of its addition
        std::string mapTo;
        // A plain name stands for itself only; a range for its members.
        bool isRange = false;
        std::int64_t minimum = 0;
        std::int64_t maximum = 0;
        std::int64_t startingIndex = 0;
    };

    // By plain name, or by what stands in front of a range's number.
    std::map<std::string, std::vector<Entry>, std::less<>> names_;
    std::size_t added_ = 0;
};

} // namespace nrt2
