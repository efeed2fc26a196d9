// Parsers of an instrument's replies. A malformed reply throws an exception whose text is part of the driver's
// behaviour.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Visa {

/// Converts the longest prefix of the characters "ONOFF10": "ON" or "1" is true, "OFF" or "0" is false. Any other
/// prefix throws std::invalid_argument("Visa::parseBool Unknown ret:" and the reply). Required: "ONX" is true, and "on"
/// throws.
bool parseBool(std::string_view reply);

/// Converts the longest prefix of digits and signs. Throws the exceptions of text::ToInt.
std::int32_t parseInt(std::string_view reply);

/// Converts the longest prefix of digits, signs, "." and exponent letters. Throws the exceptions of text::ToReal.
double parseDouble(std::string_view reply);

// Whether the parsers above convert the whole reply, except for white space at its end. IsWholeInt and IsWholeDouble
// also refuse several numbers in a row ("1-2", "1.5.2"), of which the parsers convert the first.
bool IsWholeBool(std::string_view reply);
bool IsWholeInt(std::string_view reply);
bool IsWholeDouble(std::string_view reply);

/// Returns a copy with ASCII letters in upper case, independent of the locale.
std::string toUpper(std::string_view text);

/// Returns the first element whose text begins with `prefix` when it is converted to upper case; null when there is
/// none. A prefix with a lower-case letter is never found.
const std::string_view* startsWithAnyCase(std::span<const std::string_view> list, std::string_view prefix);

/// The fields between separators, in order. Empty text after the last separator is not a field.
/// With `trim`, carriage returns, line feeds and tabs around a field are removed.
/// Required: blanks are not removed. The fields view the reply.
class FieldReader {
  public:
    FieldReader(std::string_view reply, char separator, bool trim) : rest_(reply), separator_(separator), trim_(trim) {}

    [[nodiscard]] bool AtEnd() const { return rest_.empty(); }

    /// Returns the next field. Throws std::out_of_range("invalid vector subscript") after the last one.
    std::string_view Next();

  private:
    std::string_view rest_;
    char separator_;
    bool trim_;
};

/// Returns all fields that a FieldReader returns.
std::vector<std::string_view> split(std::string_view reply, char separator, bool trim);

} // namespace Visa
