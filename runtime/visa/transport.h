// A connection to an instrument as a stream of bytes: what the interface kinds have in common.
#pragma once

#include <cstddef>
#include <span>

#include "platform/visa.h"
#include "runtime/visa/deadline.h"

namespace runtime {

/// What came of one step of input or output.
struct Progress {
    ViStatus status = VI_SUCCESS; // with an error, `bytes` still counts
    std::size_t bytes = 0;
};

/// One thread at a time receives and one sends; Interrupt may be called at any time by any thread.
class Transport {
  public:
    Transport() = default;
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;
    virtual ~Transport() = default; // closes

    /// Receives at least one byte and what else is there, into `into`, which is not empty.
    virtual Progress Receive(std::span<ViByte> into, const Deadline& deadline) = 0;

    /// Sends all of `bytes`, unless it fails.
    virtual Progress Send(std::span<const ViByte> bytes, const Deadline& deadline) = 0;

    /// Calls that are under way, and all later ones, end at once with an error.
    virtual void Interrupt() = 0;

    /// The I/O time-out changed; a hint, the deadlines of the calls decide.
    virtual void TimeoutChanged(ViUInt32 /*milliseconds*/) {}

    /// Reads end at the termination character also while VI_ATTR_TERMCHAR_EN is off.
    [[nodiscard]] virtual bool EndsAtTermination() const { return false; }

    /// Attributes of this interface kind alone.
    virtual ViStatus SetAttribute(ViAttr /*name*/, ViAttrState /*value*/) { return VI_ERROR_NSUP_ATTR; }
};

} // namespace runtime
