// A pair of connected ends that behaves as a serial line.
#pragma once

#include <string>

namespace virtual_supply {

/// The line is raw: it transfers every byte unchanged, without echo and line editing. The destructor closes both ends,
/// which disconnects clients that have the far end open.
class PseudoTerminal {
  public:
    /// On failure: throws std::system_error with a message for users.
    PseudoTerminal();
    PseudoTerminal(PseudoTerminal&& other) noexcept;
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(PseudoTerminal&&) = delete;
    ~PseudoTerminal();

    /// Returns the device that clients open: "/dev/pts/3".
    const std::string& Device() const { return device_; }

    /// Returns the near end, which the caller must close.
    int ReleaseNearEnd();

  private:
    int near_ = -1;
    int far_ = -1; // stays open: without it, reading the near end fails while no client has the device open
    std::string device_;
};

} // namespace virtual_supply
