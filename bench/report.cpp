#include "bench/report.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace bench {
namespace {

/// Three significant digits, without an exponent.
std::string Number(double value) {
    const double size = std::fabs(value);
    const int decimals = size >= 100.0 ? 0 : (size >= 10.0 ? 1 : 2);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
    return text.data();
}

std::string With(double value, const std::string& unit) { return Number(value) + " " + unit; }

} // namespace

void Report::AtMostTimes(const std::string& what, double measured, const std::string& against, double baseline,
                         const std::string& unit, double most) {
    const double ratio = measured / baseline;
    Row(what, With(measured, unit), against + ": " + With(baseline, unit), Number(ratio) + " times",
        "at most " + Number(most), ratio <= most);
}

void Report::AtLeastTimes(const std::string& what, double measured, const std::string& against, double baseline,
                          const std::string& unit, double least) {
    const double ratio = measured / baseline;
    Row(what, With(measured, unit), against + ": " + With(baseline, unit), Number(ratio) + " times",
        "at least " + Number(least), ratio >= least);
}

void Report::AtMostAbove(const std::string& what, double measured, const std::string& against, double baseline,
                         const std::string& unit, double most) {
    const double above = measured - baseline;
    Row(what, With(measured, unit), against + ": " + With(baseline, unit), With(above, unit) + " above",
        "at most " + With(most, unit), above <= most);
}

void Report::AtMost(const std::string& what, double measured, const std::string& unit, double most) {
    Row(what, With(measured, unit), "", With(measured, unit), "at most " + With(most, unit), measured <= most);
}

void Report::Row(const std::string& what, const std::string& measured, const std::string& against,
                 const std::string& result, const std::string& target, bool met) {
    std::printf("%s\t%s\t%s\t%s\t%s\t%s\n", what.c_str(), measured.c_str(), against.c_str(), result.c_str(),
                target.c_str(), met ? "ok" : "MISSED");
    std::fflush(stdout);
    missed_ = missed_ || !met;
}

void Progress(const std::string& what) { std::fprintf(stderr, "  %s ...\n", what.c_str()); }

} // namespace bench
