// The kinds of arguments and reply fields, and the conversion from and to text.
#pragma once

#include <array>
#include <exception>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "tools/virtual_supply/channel.h"
#include "tools/virtual_supply/keywords.h"
#include "tools/virtual_supply/status.h"

namespace virtual_supply {

/// A reply field: a number (booleans are 0 and 1, keywords their value) or text.
using Value = std::variant<double, std::string>;

struct Kind {
    enum class Type { Boolean, Integer, Real, Keyword, Text };

    Type type;
    std::array<Range, kChannelCount> ranges{}; // accepted numbers of each channel
    std::span<const Keyword> words{};
};

constexpr Kind Real(const std::array<Range, kChannelCount>& ranges) { return {Kind::Type::Real, ranges}; }
constexpr Kind Real(Range range) { return {Kind::Type::Real, {range, range}}; }
constexpr Kind Integer(Range range) { return {Kind::Type::Integer, {range, range}}; }
constexpr Kind Word(std::span<const Keyword> words) { return {Kind::Type::Keyword, {}, words}; }

inline constexpr Kind kBoolean{Kind::Type::Boolean};
inline constexpr Kind kText{Kind::Type::Text};
inline constexpr Kind kVolts = Real(kVoltageLimits);
inline constexpr Kind kAmperes = Real(kCurrentLimits);
inline constexpr Kind kSeconds = Real(kProtectionDelayLimits);
inline constexpr Kind kReading = Real(Range{-std::numeric_limits<double>::max(), std::numeric_limits<double>::max()});
inline constexpr Kind kInteger = Integer({std::numeric_limits<int>::min(), std::numeric_limits<int>::max()});

/// Ends a command with an error for the error queue.
class Refusal : public std::exception {
  public:
    explicit Refusal(const ScpiError& error) : error_(error) {}
    const ScpiError& Error() const { return error_; }
    const char* what() const noexcept override { return error_.text.data(); }

  private:
    ScpiError error_;
};

/// Parses an argument; letter case is ignored. `channel` (1, 2, or 0 for none) selects the range.
/// On failure: throws Refusal: -104 for text of the wrong type, -222 for a number outside the range, -224 for an
/// unknown keyword.
double ParseArgument(const Kind& kind, int channel, std::string_view text);

/// Appends a field to `reply`: reals with six decimals, booleans as ON and OFF.
void AppendReply(const Kind& kind, const Value& value, std::string& reply);

/// Compare ASCII texts without regard to letter case.
bool EqualIgnoringCase(std::string_view left, std::string_view right);
bool LessIgnoringCase(std::string_view left, std::string_view right);

} // namespace virtual_supply
