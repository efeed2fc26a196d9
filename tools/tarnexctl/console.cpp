#include "tools/tarnexctl/console.h"

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <string>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

#include "tools/tarnexctl/failure.h"
#include "tools/tarnexctl/safe_text.h"

namespace tarnexctl {

namespace {

#ifdef _WIN32
/// Returns whether the descriptor is a console, and makes the console interpret escape sequences.
bool IsTerminal(int descriptor) {
    DWORD mode = 0;
    const auto handle = reinterpret_cast<HANDLE>(::_get_osfhandle(descriptor));
    return ::GetConsoleMode(handle, &mode) != 0 &&
           ::SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

/// Returns the number of characters in a line of a console; 0 when it is unknown.
std::size_t TerminalColumns(int descriptor) {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    const auto handle = reinterpret_cast<HANDLE>(::_get_osfhandle(descriptor));
    return ::GetConsoleScreenBufferInfo(handle, &info) != 0 ? static_cast<std::size_t>(info.dwSize.X) : 0;
}

void WriteLineEndsUnchanged() { ::_setmode(::_fileno(stdout), _O_BINARY); }
#else
bool IsTerminal(int descriptor) { return ::isatty(descriptor) == 1; }

/// Returns the number of characters in a line of a terminal; 0 when it is unknown.
std::size_t TerminalColumns(int descriptor) {
    winsize size{};
    return ::ioctl(descriptor, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

void WriteLineEndsUnchanged() {}
#endif

constexpr std::size_t kShortestBar = 5;
constexpr std::size_t kLongestBar = 30;
constexpr int kStandardOutput = 1;
constexpr int kStandardError = 2;

} // namespace

Console::Console() : outputIsTerminal_(IsTerminal(kStandardOutput)), errorIsTerminal_(IsTerminal(kStandardError)) {
    WriteLineEndsUnchanged();
}

std::size_t Console::Columns() const {
    constexpr std::size_t kUsual = 80;
    const std::size_t columns = outputIsTerminal_  ? TerminalColumns(kStandardOutput)
                                : errorIsTerminal_ ? TerminalColumns(kStandardError)
                                                   : 0;
    return columns == 0 ? kUsual : columns;
}

void Console::Print(std::string_view text) {
    if (outputIsTerminal_) {
        ClearProgress();
    }
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
        throw Failure(ExitCode::FileFailed, "standard output cannot be written");
    }
}

void Console::ShowProgress(double share, std::string_view text) {
    if (!errorIsTerminal_) {
        return;
    }
    // A line that reaches the last column moves the cursor to the next one, and could not be renewed.
    const std::size_t room = Columns() - 1;
    const std::size_t rest = room - std::min(room, text.size() + 3); // for the bar, without its brackets
    const std::size_t width = rest < kShortestBar ? 0 : std::min(rest, kLongestBar);
    const auto done = static_cast<std::size_t>(std::clamp(share, 0.0, 1.0) * static_cast<double>(width));
    std::string bar;
    if (width != 0) {
        bar.append("[").append(done, '#').append(width - done, '.').append("] ");
    }
    std::cerr << '\r' + bar + Printable(text.substr(0, room)) + "\x1b[K" << std::flush;
    progressShown_ = true;
}

void Console::ClearProgress() {
    if (progressShown_) {
        std::cerr << "\r\x1b[K" << std::flush;
        progressShown_ = false;
    }
}

} // namespace tarnexctl
