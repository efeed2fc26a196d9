// A serial line without wires: what is written at one end comes out at the other.
#pragma once

#include <string>

namespace virtual_supply {

/// The line is raw: no echo, no line editing, every byte as it is. Both ends are closed with the object, which hangs up
/// on whoever has the far end open.
class PseudoTerminal {
  public:
    /// Throws std::system_error, with a text for people, when there is none to be had.
    PseudoTerminal();
    PseudoTerminal(PseudoTerminal&& other) noexcept;
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(PseudoTerminal&&) = delete;
    ~PseudoTerminal();

    /// The device that clients open: "/dev/pts/3".
    const std::string& device() const { return device_; }

    /// The near end, from now on the caller's to close.
    int ReleaseNearEnd();

  private:
    int near_ = -1;
    int far_ = -1; // held open, so that the near end does not see clients come and go as errors
    std::string device_;
};

} // namespace virtual_supply
