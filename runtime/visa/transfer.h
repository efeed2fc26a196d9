// The loops of receiving and sending, for every operating system's way to move bytes without blocking.
#pragma once

#include <cstddef>
#include <span>

#include "runtime/visa/transport.h"

namespace runtime {

/// The result of one non-blocking call of the operating system.
struct Attempt {
    std::ptrdiff_t bytes = -1;    // moved; 0 when the peer has closed, negative when nothing was moved
    ViStatus status = VI_SUCCESS; // negative: the reason why nothing can be moved; else the call would have blocked
};

/// Repeats `attempt()` until it moves bytes or fails. Between two attempts `wait()` waits until another one is worth
/// it; a negative status of `wait` ends the loop.
template <typename Try, typename Wait>
Progress ReceiveSome(Try attempt, Wait wait) {
    for (;;) {
        const Attempt result = attempt();
        if (result.bytes > 0) {
            return {VI_SUCCESS, static_cast<std::size_t>(result.bytes)};
        }
        if (result.bytes == 0) {
            return {VI_ERROR_CONN_LOST, 0};
        }
        const ViStatus status = result.status < 0 ? result.status : wait();
        if (status < 0) {
            return {status, 0};
        }
    }
}

/// Repeats `attempt(rest)` until all bytes are sent. `wait` as in ReceiveSome.
template <typename Try, typename Wait>
Progress SendAll(std::span<const ViByte> bytes, Try attempt, Wait wait) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const Attempt result = attempt(bytes.subspan(sent));
        if (result.bytes >= 0) {
            sent += static_cast<std::size_t>(result.bytes);
            continue;
        }
        const ViStatus status = result.status < 0 ? result.status : wait();
        if (status < 0) {
            return {status, sent};
        }
    }
    return {VI_SUCCESS, sent};
}

} // namespace runtime
