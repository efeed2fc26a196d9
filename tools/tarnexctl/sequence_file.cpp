#include "tools/tarnexctl/sequence_file.h"

#include "tools/tarnexctl/failure.h"

#include <charconv>
#include <cmath>
#include <fstream>
#include <string_view>
#include <utility>

namespace tarnexctl {

namespace {

constexpr std::size_t kMostGroups = 100000; // more than any supply holds, and no more than memory does

std::string Trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r";
    const auto first = text.find_first_not_of(kBlanks);
    return first == std::string_view::npos
               ? std::string()
               : std::string(text.substr(first, text.find_last_not_of(kBlanks) - first + 1));
}

std::vector<std::string> Fields(std::string_view line) {
    std::vector<std::string> fields;
    for (auto comma = line.find(','); comma != std::string_view::npos; comma = line.find(',')) {
        fields.push_back(Trimmed(line.substr(0, comma)));
        line.remove_prefix(comma + 1);
    }
    fields.push_back(Trimmed(line));
    return fields;
}

} // namespace

std::vector<SequenceLine> ReadSequence(const std::string& path, const std::string& header) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw Failure(kFileFailed, path + " cannot be read");
    }
    const auto wanted = Fields(header);
    std::vector<SequenceLine> groups;
    std::string text;
    bool first = true;
    for (std::size_t number = 1; std::getline(file, text); ++number) {
        SequenceLine line{path + ": line " + std::to_string(number), Fields(text)};
        const bool comment = !line.fields.front().empty() && line.fields.front().front() == '#';
        if (comment || Trimmed(text).empty()) {
            continue;
        }
        if (std::exchange(first, false) && line.fields == wanted) {
            continue;
        }
        if (line.fields.size() != wanted.size()) {
            throw Failure(kFileFailed, line.where + ": give " + header);
        }
        if (groups.size() == kMostGroups) {
            throw Failure(kFileFailed, line.where + ": too many groups");
        }
        groups.push_back(std::move(line));
    }
    if (file.bad()) {
        throw Failure(kFileFailed, path + " cannot be read");
    }
    if (groups.empty()) {
        throw Failure(kFileFailed, path + " holds no sequence; give lines of " + header);
    }
    return groups;
}

double NumberIn(const SequenceLine& line, std::size_t field) {
    const std::string& text = line.fields.at(field);
    double number = 0.0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || rest != text.data() + text.size() || !std::isfinite(number)) {
        throw Failure(kFileFailed, line.where + ": '" + text.substr(0, 40) + "' is no number");
    }
    return number;
}

} // namespace tarnexctl
