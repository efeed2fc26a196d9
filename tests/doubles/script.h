// Common to all doubles: the log of the driver's calls, and the failures that a test orders.
#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/vi_types.h"

namespace doubles {

class Script {
  public:
    /// Forgets log and orders.
    void Reset();

    /// The `nth` call of `function` from now on answers `status`; so do all later ones when `forever`.
    void Fail(std::string function, ViStatus status, std::size_t nth = 1, bool forever = false);

    /// The `nth` call of any function from now on answers `status`.
    void FailCall(std::size_t nth, ViStatus status) { Fail({}, status, nth); }

    /// Logs the call of a double's function. Returns the status that the function must return, or 0 when none was
    /// ordered. Each function of a double calls it first.
    ViStatus Enter(std::string_view function);

    /// Names of the functions called, in order.
    [[nodiscard]] std::vector<std::string> Calls() const;
    [[nodiscard]] std::size_t Count(std::string_view function) const;
    void ForgetCalls();

  private:
    struct Order {
        std::string function;
        ViStatus status;
        std::size_t callsToGo;
        bool forever;
    };

    mutable std::mutex mutex_;
    std::vector<std::string> calls_;
    std::vector<Order> orders_;
};

/// Marks this thread as inside a double while the object exists. Allocations made then are not the driver's.
class InsideDouble {
  public:
    InsideDouble();
    InsideDouble(const InsideDouble&) = delete;
    InsideDouble& operator=(const InsideDouble&) = delete;
    ~InsideDouble();
    /// Whether this thread is inside a double now.
    static bool Now();
};

/// The one script of the process.
Script& TheScript();

/// IVI's rule for text outputs (IVI-3.2 3.1.2.1).
ViStatus CopyOut(std::string_view text, ViInt32 size, ViChar buffer[]);

} // namespace doubles
