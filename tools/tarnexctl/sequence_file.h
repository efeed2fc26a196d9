// Sequences as files: comma-separated values, a group on each line.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tarnexctl {

struct SequenceLine {
    std::string where; ///< "ramp.csv: line 3", for failures
    std::vector<std::string> fields;
};

/// The groups of a file, each with as many fields as `header` names; no group at all is a Failure, as is everything
/// else that is no sequence. Blank lines and lines that begin with "#" are skipped, and the header itself where it is
/// the first line. Fields lose their blanks.
std::vector<SequenceLine> ReadSequence(const std::string& path, const std::string& header);

/// A field as a number; a Failure when it is none.
double NumberIn(const SequenceLine& line, std::size_t field);

} // namespace tarnexctl
