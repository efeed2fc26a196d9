// Waiting for a file of the operating system.
#pragma once

#include <poll.h>

#include <array>
#include <cerrno>

#include "runtime/visa/deadline.h"

namespace runtime {

inline constexpr int kNoDescriptor = -1; // poll ignores it

/// Waits until `descriptor` has one of `events` or an error, or until `wakeUp` is readable. Returns VI_ERROR_TMO when
/// the deadline passes first. The call on the descriptor that follows reports an error itself.
inline ViStatus WaitFor(int descriptor, short events, const Deadline& deadline, int wakeUp = kNoDescriptor) {
    for (;;) {
        std::array<pollfd, 2> waiting{{{descriptor, events, 0}, {wakeUp, POLLIN, 0}}};
        const int ready = ::poll(waiting.data(), waiting.size(), deadline.PollTime());
        if (ready > 0 || (ready < 0 && errno != EINTR)) {
            return VI_SUCCESS;
        }
        if (deadline.HasPassed()) {
            return VI_ERROR_TMO;
        }
    }
}

/// Whether the call is to be repeated after a wait.
inline bool WouldBlock(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; // NOLINT: two names of one number on some systems
}

} // namespace runtime
