#include "tools/tarnexctl/interrupt.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <thread>

namespace tarnexctl {

namespace {

std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may only access lock-free atomics");

extern "C" void NoteInterrupt(int /*signal*/) { interrupted = true; }

} // namespace

void CatchInterrupts() {
    static_cast<void>(std::signal(SIGINT, &NoteInterrupt));
    static_cast<void>(std::signal(SIGTERM, &NoteInterrupt));
#ifdef SIGHUP
    static_cast<void>(std::signal(SIGHUP, &NoteInterrupt));
#endif
}

void SurviveBrokenPipes() {
#ifdef SIGPIPE
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
#endif
}

bool Interrupted() { return interrupted; }

bool Wait(double seconds) {
    using Clock = std::chrono::steady_clock;
    constexpr auto kSlice = std::chrono::milliseconds(50); // the longest delay until Ctrl-C takes effect
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    while (!interrupted && Clock::now() < end) {
        std::this_thread::sleep_for(std::min<Clock::duration>(kSlice, end - Clock::now()));
    }
    return !interrupted;
}

} // namespace tarnexctl
