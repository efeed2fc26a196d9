// Rows of measured values, for the commands that measure channels.
#pragma once

#include <string>
#include <vector>

#include "tools/tarnexctl/report.h"
#include "tools/tarnexctl/supply.h"

namespace tarnexctl {

/// What a channel delivers.
struct Reading {
    std::string channel; ///< physical name
    double volts = 0.0;
    double amperes = 0.0;
    double watts = 0.0;
    bool on = false;
    std::string mode{}; ///< "CC" or "CV"; empty while the output is off, which regulates nothing
};

/// Measures each channel.
/// On failure: throws Failure.
std::vector<Reading> Measure(const Supply& supply, const std::vector<std::string>& channels);

/// Returns an empty report with the columns of AddReadings.
Report ReadingsReport();

/// Measures each channel and adds a row for it, with `time` in s in the first column.
/// On failure: throws Failure.
void AddReadings(const Supply& supply, const std::vector<std::string>& channels, double time, Report& report);

/// Adds a row without values for each channel.
void AddGap(const std::vector<std::string>& channels, double time, Report& report);

/// Removes columns until the table fits into `columns` characters; it needs 40.
void FitReadings(std::size_t columns, Report& report);

} // namespace tarnexctl
