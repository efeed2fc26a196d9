// Conversion of numbers to and from text, independent of the locale.
//
// The To... functions convert like the C++ standard's stoi, stol and stod: they skip leading white space and convert
// the longest numeric prefix. Text without a number throws std::invalid_argument("invalid stoi argument"), a number out
// of range std::out_of_range("stoi argument out of range"); likewise for "stol" and "stod". The texts are part of the
// driver's behaviour and are the same on every platform.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace text {

/// Converts a decimal 32-bit integer.
std::int32_t ToInt(std::string_view text);

/// Converts a decimal `long` of 32 bits, as on 64-bit Windows, on every platform.
std::int32_t ToLong(std::string_view text);

/// Converts a decimal real. Out of range are an overflow and a non-zero number that becomes zero; subnormals are not.
double ToReal(std::string_view text);

/// The text of a number, stored in place: no allocation, no locale.
template <std::size_t Capacity>
class NumberText {
  public:
    static constexpr std::size_t kCapacity = Capacity;

    [[nodiscard]] std::string_view View() const { return {characters_.data(), size_}; }

  protected:
    std::array<char, Capacity> characters_{};
    std::size_t size_ = 0;
};

/// Decimal digits, with "-" for negative numbers.
class IntegerText : public NumberText<20> {
  public:
    explicit IntegerText(std::int64_t value);
};

/// Fixed notation with six decimals (1.5 gives "1.500000"), never an exponent. NaN and infinities give "nan", "inf" and
/// "-inf".
class RealText : public NumberText<320> {
  public:
    explicit RealText(double value);
};

} // namespace text
