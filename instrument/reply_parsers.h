// Reading values out of an instrument's reply. A reply that is not what was asked for ends in an exception, whose text
// is part of the driver's behaviour.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Visa {

/// The longest prefix made of the characters of "ONOFF10" decides: "ON" or "1", "OFF" or "0". So "ONX" is true, on
/// purpose, and "on" is not a boolean: std::invalid_argument("Visa::parseBool Unknown ret:" and the reply).
bool parseBool(std::string_view reply);

/// Converts the longest prefix made of digits and signs; exceptions of text::ToInt.
std::int32_t parseInt(std::string_view reply);

/// Converts the longest prefix made of digits, signs, "." and exponent letters; exceptions of text::ToReal.
double parseDouble(std::string_view reply);

/// A copy with the ASCII letters raised, the same under every locale.
std::string toUpper(std::string_view text);

/// The first element whose upper-cased text begins with `prefix`; null when there is none. A prefix with a lower-case
/// letter is never found.
const std::string_view* startsWithAnyCase(std::span<const std::string_view> list, std::string_view prefix);

/// The fields between the separators, in order; an empty field after the last separator is not one. With `trim` each
/// field loses its leading and trailing carriage returns, line feeds and tabs; blanks stay, deliberately. The fields
/// view the reply.
class FieldReader {
  public:
    FieldReader(std::string_view reply, char separator, bool trim) : rest_(reply), separator_(separator), trim_(trim) {}

    [[nodiscard]] bool AtEnd() const { return rest_.empty(); }

    /// Throws std::out_of_range("invalid vector subscript") when there is no field left.
    std::string_view Next();

  private:
    std::string_view rest_;
    char separator_;
    bool trim_;
};

/// All the fields that a FieldReader gives.
std::vector<std::string_view> split(std::string_view reply, char separator, bool trim);

} // namespace Visa
