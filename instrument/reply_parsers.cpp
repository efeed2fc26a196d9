#include "instrument/reply_parsers.h"

#include <stdexcept>

#include "text/characters.h"
#include "text/numbers.h"

namespace Visa {
namespace {

std::string_view PrefixOf(std::string_view text, std::string_view characters) {
    return text.substr(0, text.find_first_not_of(characters));
}

} // namespace

bool parseBool(std::string_view reply) {
    const auto word = PrefixOf(reply, "ONOFF10");
    if (word == "ON" || word == "1") {
        return true;
    }
    if (word == "OFF" || word == "0") {
        return false;
    }
    throw std::invalid_argument("Visa::parseBool Unknown ret:" + std::string(reply));
}

std::int32_t parseInt(std::string_view reply) { return text::ToInt(PrefixOf(reply, "0123456789+-")); }

double parseDouble(std::string_view reply) { return text::ToReal(PrefixOf(reply, "0123456789+-.Ee")); }

std::string_view FieldReader::Next() {
    if (rest_.empty()) {
        throw std::out_of_range("invalid vector subscript");
    }
    const auto end = rest_.find(separator_);
    const auto field = rest_.substr(0, end);
    rest_ = end == std::string_view::npos ? std::string_view{} : rest_.substr(end + 1);
    return trim_ ? text::Trim(field, [](char c) { return c == '\r' || c == '\n' || c == '\t'; }) : field;
}

std::vector<std::string_view> split(std::string_view reply, char separator, bool trim) {
    std::vector<std::string_view> fields;
    for (FieldReader reader(reply, separator, trim); !reader.AtEnd();) {
        fields.push_back(reader.Next());
    }
    return fields;
}

} // namespace Visa
