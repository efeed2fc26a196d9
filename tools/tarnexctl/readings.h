// Rows of measured values, for the commands that measure channels.
#pragma once

#include <string>
#include <vector>

#include "tools/tarnexctl/report.h"
#include "tools/tarnexctl/supply.h"

namespace tarnexctl {

/// Returns an empty report with the columns of AddReadings.
Report ReadingsReport();

/// Measures each channel and adds a row for it, with `time` in s in the first column.
/// On failure: throws Failure.
void AddReadings(const Supply& supply, const std::vector<std::string>& channels, double time, Report& report);

} // namespace tarnexctl
