// A connection to an instrument as a stream of bytes: the interface of all interface kinds.
#pragma once

#include <cstddef>
#include <span>

#include "platform/visa.h"
#include "runtime/visa/deadline.h"

namespace runtime {

/// The result of one step of input or output.
struct Progress {
    ViStatus status = VI_SUCCESS; // `bytes` is valid after an error too
    std::size_t bytes = 0;
};

/// One thread may receive while another one sends. Interrupt may be called by any thread at any time.
class Transport {
  public:
    Transport() = default;
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;
    virtual ~Transport() = default; // closes

    /// Receives at least one byte and all other available ones. `into` must not be empty.
    virtual Progress Receive(std::span<ViByte> into, const Deadline& deadline) = 0;

    /// Sends all of `bytes` or fails.
    virtual Progress Send(std::span<const ViByte> bytes, const Deadline& deadline) = 0;

    /// Ends the calls that are under way, and all later ones, with an error.
    virtual void Interrupt() = 0;

    /// Called when the I/O time-out has changed. A hint: each call has its deadline.
    virtual void TimeoutChanged(ViUInt32 /*milliseconds*/) {}

    /// Returns whether reads end at the termination character even while VI_ATTR_TERMCHAR_EN is off.
    [[nodiscard]] virtual bool EndsAtTermination() const { return false; }

    /// Sets an attribute of this interface kind.
    virtual ViStatus SetAttribute(ViAttr /*name*/, ViAttrState /*value*/) { return VI_ERROR_NSUP_ATTR; }
};

} // namespace runtime
