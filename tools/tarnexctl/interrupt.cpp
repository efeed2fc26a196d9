#include "tools/tarnexctl/interrupt.h"

#include <algorithm>
#include <array>
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
#ifdef _WIN32
    constexpr std::array kSignals{SIGINT, SIGTERM, SIGBREAK};
    for (const int signal : kSignals) {
        static_cast<void>(std::signal(signal, &NoteInterrupt));
    }
#else
    // All whose default action ends the process, except those that report a fault of the program itself.
    constexpr std::array kSignals{SIGINT,  SIGTERM, SIGHUP,  SIGQUIT, SIGALRM,   SIGUSR1,
                                  SIGUSR2, SIGXCPU, SIGXFSZ, SIGPOLL, SIGVTALRM, SIGPROF};
    for (const int signal : kSignals) {
        struct sigaction action {};
        if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) {
            continue; // nohup, and "&" of a shell without job control
        }
        action = {};
        action.sa_handler = &NoteInterrupt; // without SA_RESTART: waits end
        static_cast<void>(::sigaction(signal, &action, nullptr));
    }
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
