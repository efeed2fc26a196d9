#include "tools/tarnexctl/sequence_file.h"

#include <cmath>
#include <fstream>
#include <string_view>
#include <utility>

#include "tools/tarnexctl/failure.h"
#include "tools/tarnexctl/number_text.h"

namespace tarnexctl {

namespace {

constexpr std::size_t kMaxGroups = 100000; // more than any supply holds; bounds the memory

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
        throw Failure(ExitCode::FileFailed, path + " cannot be read");
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
            throw Failure(ExitCode::FileFailed, line.where + ": give " + header);
        }
        if (groups.size() == kMaxGroups) {
            throw Failure(ExitCode::FileFailed, line.where + ": too many groups");
        }
        groups.push_back(std::move(line));
    }
    if (file.bad()) {
        throw Failure(ExitCode::FileFailed, path + " cannot be read");
    }
    if (groups.empty()) {
        throw Failure(ExitCode::FileFailed, path + " holds no sequence; give lines of " + header);
    }
    return groups;
}

double NumberIn(const SequenceLine& line, std::size_t field) {
    const std::string& text = line.fields.at(field);
    const auto number = ParseNumber(text);
    if (!number || !std::isfinite(*number)) {
        throw Failure(ExitCode::FileFailed, line.where + ": '" + text.substr(0, 40) + "' is not a number");
    }
    return *number;
}

} // namespace tarnexctl
