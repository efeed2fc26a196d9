// Faults that are injected between the supply and its clients.
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
    kDrop,    // the connection is closed; the command is not executed
    kDelay,   // the reply comes `value` milliseconds later
    kSilent,  // the command is executed, the reply never comes
    kGarbage, // the reply is replaced by bytes that are no sensible reply
    kCut,     // the reply is cut to half, and has no line end
    kLong,    // the reply is filled up with 'X' to `value` bytes before its line end
    kCrLf,    // the reply ends with CR LF
};

/// The largest delay (milliseconds) and the longest reply (bytes) that can be asked for.
inline constexpr std::uint64_t kMaxFaultValue = 1'000'000;

struct Fault {
    FaultKind kind = FaultKind::kDrop;
    std::uint64_t value = 0; // of kDelay and kLong, 1 to kMaxFaultValue
    std::uint64_t first = 1; // the received command that is the first to be hit, counting from 1
    std::uint64_t count = std::numeric_limits<std::uint64_t>::max(); // how many commands are hit
};

/// Reads "KIND[=VALUE][@N[+M]]": drop, delay=MS, silent, garbage, cut, long=BYTES or crlf, hitting M commands (without
/// "+M" all) from the N-th on (without "@N" from the first on). Throws std::invalid_argument with a text for people.
Fault ParseFault(std::string_view text);

/// What the faults make of one command.
struct Disturbance {
    bool drop = false;
    std::chrono::milliseconds delay{0};
    bool silent = false;
    bool garbage = false;
    bool cut = false;
    bool crlf = false;
    std::size_t long_reply = 0; // bytes; 0: as long as it is

    /// The bytes that are sent for a reply; empty when nothing is, as for a command that has no reply.
    std::string Wire(std::string reply) const;
};

/// The faults in force, and the count of received commands that they refer to. Blank and overlong lines do not count.
/// All functions may be called from any thread.
class FaultPlan {
  public:
    /// Puts a fault in force. N counts all commands received so far, over all connections.
    void Add(const Fault& fault);

    /// Puts a fault in force that hits the next `count` commands, whatever has been received so far.
    void AddForNext(FaultKind kind, std::uint64_t value = 0, std::uint64_t count = 1);

    /// Ends all faults. The count of received commands goes on.
    void Clear();

    /// How many commands have been received.
    std::uint64_t received() const;

    /// Counts one received command and says what befalls it.
    Disturbance Next();

  private:
    mutable std::mutex mutex_; // guards the members below
    std::vector<Fault> faults_;
    std::uint64_t received_ = 0;
};

} // namespace virtual_supply
