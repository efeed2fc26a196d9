// The exit codes of the program, and the exception that ends a command.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace tarnexctl {

enum class ExitCode : int {
    Done = 0,
    Usage = 1,         ///< the command line is wrong
    SupplyFailed = 2,  ///< the driver or the instrument reported an error, or a reply is malformed
    FileFailed = 3,    ///< a file, or standard output, cannot be read or written
    Interrupted = 130, ///< by SIGINT, SIGTERM or SIGHUP, in commands other than watch
};

/// Ends the command; the program prints the text on standard error.
class Failure : public std::runtime_error {
  public:
    Failure(ExitCode code, const std::string& what) : std::runtime_error(what), code_(code) {}
    [[nodiscard]] ExitCode Code() const { return code_; }

  private:
    ExitCode code_;
};

/// Returns a failure with the text "opening X: 0xBFFA4214: I/O error." and ExitCode::SupplyFailed.
Failure StatusFailure(const std::string& doing, std::int32_t status, const std::string& description);

} // namespace tarnexctl
