// The error queue and the standard event status register.
#pragma once

#include <cstddef>
#include <deque>
#include <string_view>

namespace virtual_supply {

/// An entry of the error queue. The text is a literal without commas and quotes.
struct ScpiError {
    int code;
    std::string_view text;
};

inline constexpr ScpiError kNoError{0, "No error"};
inline constexpr ScpiError kInvalidCharacter{-101, "Invalid character"};
inline constexpr ScpiError kSyntaxError{-102, "Syntax error"};
inline constexpr ScpiError kDataTypeError{-104, "Data type error"};
inline constexpr ScpiError kParameterNotAllowed{-108, "Parameter not allowed"};
inline constexpr ScpiError kMissingParameter{-109, "Missing parameter"};
inline constexpr ScpiError kUndefinedHeader{-113, "Undefined header"};
inline constexpr ScpiError kDataOutOfRange{-222, "Data out of range"};
inline constexpr ScpiError kIllegalParameterValue{-224, "Illegal parameter value"};
inline constexpr ScpiError kQueueOverflow{-350, "Queue overflow"};
inline constexpr ScpiError kInputBufferOverrun{-363, "Input buffer overrun"};

/// The maximum number of queued errors. An error beyond it replaces the newest entry with kQueueOverflow.
inline constexpr std::size_t kErrorQueueDepth = 16;

class Status {
  public:
    /// Queues the error and sets its bit of the event status register: 0x20 command (-1xx), 0x10 execution (-2xx),
    /// 0x08 device-dependent (-3xx), 0x04 query (-4xx).
    void Report(const ScpiError& error);

    /// Removes and returns the oldest error; kNoError when the queue is empty.
    ScpiError TakeError();

    /// Returns the event status register and clears it. The power-on bit (0x80) is never set, so the register of a new
    /// supply is 0.
    unsigned TakeEventStatus();

    /// Clears the queue and the register.
    void Clear();

  private:
    std::deque<ScpiError> errors_;
    unsigned eventStatus_ = 0;
};

} // namespace virtual_supply
