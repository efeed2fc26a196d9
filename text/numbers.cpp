#include "text/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>

#include "text/characters.h"

namespace text {
namespace {

struct ConversionErrors {
    const char* invalid;
    const char* outOfRange;
};

constexpr ConversionErrors kIntErrors{"invalid stoi argument", "stoi argument out of range"};
constexpr ConversionErrors kLongErrors{"invalid stol argument", "stol argument out of range"};
constexpr ConversionErrors kRealErrors{"invalid stod argument", "stod argument out of range"};

// std::from_chars accepts neither leading white space nor a plus sign.
std::string_view AtFirstDigitOrMinus(std::string_view text, const ConversionErrors& errors) {
    text.remove_prefix(static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsSpace) - text.begin()));
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') {
            throw std::invalid_argument(errors.invalid);
        }
    }
    return text;
}

std::int32_t ToInt32(std::string_view text, const ConversionErrors& errors) {
    text = AtFirstDigitOrMinus(text, errors);
    std::int32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::invalid_argument) {
        throw std::invalid_argument(errors.invalid);
    }
    if (error == std::errc::result_out_of_range) {
        throw std::out_of_range(errors.outOfRange);
    }
    return value;
}

bool HasNonZeroDigit(std::string_view number) {
    const auto mantissa = number.substr(0, number.find_first_of("eE"));
    return mantissa.find_first_of("123456789") != std::string_view::npos;
}

} // namespace

std::int32_t ToInt(std::string_view text) { return ToInt32(text, kIntErrors); }

std::int32_t ToLong(std::string_view text) { return ToInt32(text, kLongErrors); }

double ToReal(std::string_view text) {
    text = AtFirstDigitOrMinus(text, kRealErrors);
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::invalid_argument) {
        throw std::invalid_argument(kRealErrors.invalid);
    }
    // Library versions differ: an overflow is out of range or gives infinity, an underflow is out of range or gives
    // zero.
    const auto number = text.substr(0, static_cast<std::size_t>(end - text.data()));
    const bool overflowed = std::isinf(value) && number.find_first_of("0123456789") != std::string_view::npos;
    const bool vanished = value == 0.0 && HasNonZeroDigit(number);
    if (error == std::errc::result_out_of_range || overflowed || vanished) {
        throw std::out_of_range(kRealErrors.outOfRange);
    }
    return value;
}

IntegerText::IntegerText(std::int64_t value) {
    const auto result = std::to_chars(characters_.data(), characters_.data() + characters_.size(), value);
    size_ = static_cast<std::size_t>(result.ptr - characters_.data());
}

RealText::RealText(double value) {
    if (std::isnan(value)) {
        value = std::fabs(value); // platforms differ in the text of a negative NaN
    }
    const auto result =
        std::to_chars(characters_.data(), characters_.data() + characters_.size(), value, std::chars_format::fixed, 6);
    size_ = static_cast<std::size_t>(result.ptr - characters_.data());
}

} // namespace text
