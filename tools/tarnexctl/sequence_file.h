// Sequences as files of comma-separated values, with a group on each line.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tarnexctl {

struct SequenceLine {
    std::string where; ///< "ramp.csv: line 3", for failures
    std::vector<std::string> fields;
};

/// Returns the groups of a file, at least one, each with as many fields as `header` names and without blanks around the
/// fields. Skips blank lines, lines that begin with "#", and the header when it is the first other line.
/// On failure: throws Failure (file).
std::vector<SequenceLine> ReadSequence(const std::string& path, const std::string& header);

/// Returns a field as a finite number.
/// On failure: throws Failure (file).
double NumberIn(const SequenceLine& line, std::size_t field);

} // namespace tarnexctl
