// Faults that the server injects between the supply and its clients.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace virtual_supply {

enum class FaultKind {
    Drop,    // closes the connection without executing the command
    Delay,   // sends the reply `value` milliseconds later
    Silent,  // executes the command and sends no reply
    Garbage, // sends bytes that are not a valid reply
    Cut,     // sends the first half of the reply, without a line end
    Long,    // pads the reply with 'X' to `value` bytes before its line end
    CrLf,    // ends the reply with CR LF
};

/// The maximum of a delay in milliseconds and of a reply in bytes.
inline constexpr std::uint64_t kMaxFaultValue = 1'000'000;

struct Fault {
    FaultKind kind = FaultKind::Drop;
    std::uint64_t value = 0;                                         // of Delay and Long, 1 to kMaxFaultValue
    std::uint64_t first = 1;                                         // number of the first command that is hit, from 1
    std::uint64_t count = std::numeric_limits<std::uint64_t>::max(); // of commands that are hit
};

/// Parses "KIND[=VALUE][@N[+M]]": drop, delay=MS, silent, garbage, cut, long=BYTES or crlf. The fault hits M commands
/// (default: all) from the N-th on (default: the first).
/// On failure: throws std::invalid_argument with a message for users.
Fault ParseFault(std::string_view text);

/// The effect of the active faults on one command.
struct Disturbance {
    bool drop = false;
    std::chrono::milliseconds delay{0};
    bool silent = false;
    bool garbage = false;
    bool cut = false;
    bool crlf = false;
    std::size_t longReply = 0; // bytes; 0: no padding

    /// Returns the bytes to send for `reply`. Returns nothing for an empty reply, which is that of a command without
    /// one.
    std::string Wire(std::string reply) const;
};

/// The active faults, and the count of received commands that they refer to. Blank and overlong lines do not count.
/// Thread-safe.
class FaultPlan {
  public:
    /// Adds a fault. Its numbers count the commands of all connections since the start.
    void Add(const Fault& fault);

    /// Adds a fault that hits the next `count` commands.
    void AddForNext(FaultKind kind, std::uint64_t value = 0, std::uint64_t count = 1);

    /// Removes all faults. The count of received commands stays.
    void Clear();

    /// Returns the number of received commands.
    std::uint64_t Received() const;

    /// Counts one received command and returns the effect of the faults on it.
    Disturbance Next();

  private:
    mutable std::mutex mutex_; // guards the members below
    std::vector<Fault> faults_;
    std::uint64_t received_ = 0;
};

} // namespace virtual_supply
