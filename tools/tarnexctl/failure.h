// The ways in which a command ends, and the exit codes that tell them.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace tarnexctl {

enum ExitCode : int {
    kDone = 0,
    kUsage = 1,         ///< the command line is wrong
    kSupplyFailed = 2,  ///< the driver or the instrument reported an error, or replied nonsense
    kFileFailed = 3,    ///< a file, or standard output, cannot be read or written
    kInterrupted = 130, ///< by SIGINT or SIGTERM, where that is not the usual end
};

/// Ends the command with a line on standard error.
class Failure : public std::runtime_error {
  public:
    Failure(ExitCode code, const std::string& what) : std::runtime_error(what), code_(code) {}
    [[nodiscard]] ExitCode Code() const { return code_; }

  private:
    ExitCode code_;
};

/// "opening X: 0xBFFA4214: I/O error."
Failure StatusFailure(const std::string& doing, std::int32_t status, const std::string& description);

} // namespace tarnexctl
