// The exit codes of the program, and the exception that ends a command.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace tarnexctl {

enum class ExitCode : int {
    Done = 0,
    Usage = 1,         ///< the command line is wrong
    SupplyFailed = 2,  ///< the driver or the instrument reported an error, or a reply is malformed
    FileFailed = 3,    ///< a file, or standard output, cannot be read or written
    MayStillBeOn = 4,  ///< an output could not be switched off with certainty
    Interrupted = 130, ///< by a signal that asks to end, in commands other than watch and log
};

/// Ends the command; the program prints the text on standard error and then, on a line of its own, the warning.
class Failure : public std::runtime_error {
  public:
    Failure(ExitCode code, const std::string& what, std::string warning = {})
        : std::runtime_error(what), code_(code), warning_(std::move(warning)) {}
    [[nodiscard]] ExitCode Code() const { return code_; }
    [[nodiscard]] const std::string& Warning() const { return warning_; }

  private:
    ExitCode code_;
    std::string warning_;
};

/// Returns "0xBFFA4214".
std::string StatusText(std::int32_t status);

/// Returns a failure with the text "opening X: 0xBFFA4214: I/O error." and ExitCode::SupplyFailed.
Failure StatusFailure(const std::string& doing, std::int32_t status, const std::string& description);

} // namespace tarnexctl
