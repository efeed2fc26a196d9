// Numbers to and from text, independent of the locale.
//
// The To... functions follow the C++ standard's stoi, stol and stod: leading white space is skipped, the longest
// numeric prefix counts. What cannot be converted throws std::invalid_argument("invalid stoi argument"), what does not
// fit std::out_of_range("stoi argument out of range"), and likewise for "stol" and "stod". The texts are part of the
// driver's behaviour and the same on every platform.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace text {

/// A decimal 32-bit integer.
std::int32_t ToInt(std::string_view text);

/// A decimal `long` as 64-bit Windows has it: 32 bits, also where the platform's own is wider.
std::int32_t ToLong(std::string_view text);

/// A decimal real. Overflow, and a non-zero number so small that it becomes zero, are out of range; subnormals are
/// not.
double ToReal(std::string_view text);

/// Text of a number, kept in place: no allocation, no locale.
template <std::size_t Capacity>
class NumberText {
  public:
    [[nodiscard]] std::string_view View() const { return {characters_.data(), size_}; }

  protected:
    std::array<char, Capacity> characters_{};
    std::size_t size_ = 0;
};

/// Decimal digits, "-" in front of negatives.
class IntegerText : public NumberText<20> {
  public:
    explicit IntegerText(std::int64_t value);
};

/// Fixed notation with six decimals (1.5 gives "1.500000"), never an exponent; "nan", "inf" and "-inf" where there are
/// no digits to give.
class RealText : public NumberText<320> {
  public:
    explicit RealText(double value);
};

} // namespace text
