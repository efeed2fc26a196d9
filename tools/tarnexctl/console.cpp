#include "tools/tarnexctl/console.h"

#include <algorithm>
#include <iostream>
#include <string>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <fcntl.h>
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

std::FILE* TakeStandardOutput() {
    const int copy = ::_dup(1);
    const int nowhere = ::_open("NUL", _O_WRONLY);
    if (copy < 0 || nowhere < 0 || ::_dup2(nowhere, 1) != 0) {
        return nullptr;
    }
    ::_close(nowhere);
    return ::_fdopen(copy, "wb");
}
#else
bool IsTerminal(int descriptor) { return ::isatty(descriptor) == 1; }

std::FILE* TakeStandardOutput() {
    const int copy = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (copy < 0 || nowhere < 0 || ::dup2(nowhere, STDOUT_FILENO) < 0) {
        return nullptr;
    }
    ::close(nowhere);
    return ::fdopen(copy, "w");
}
#endif

constexpr int kStandardOutput = 1;
constexpr int kStandardError = 2;

} // namespace

Console::Console() : outputIsTerminal_(IsTerminal(kStandardOutput)), errorIsTerminal_(IsTerminal(kStandardError)) {
    output_.reset(TakeStandardOutput());
    if (!output_) {
        throw Failure(ExitCode::FileFailed, "standard output cannot be written");
    }
}

void Console::Print(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), output_.get()) != text.size() || std::fflush(output_.get()) != 0) {
        throw Failure(ExitCode::FileFailed, "standard output cannot be written");
    }
}

void Console::ShowProgress(double share, std::string_view text) {
    if (!errorIsTerminal_) {
        return;
    }
    constexpr std::size_t kWidth = 30;
    const auto done = static_cast<std::size_t>(std::clamp(share, 0.0, 1.0) * kWidth);
    std::string line = "\r[";
    line.append(done, '#').append(kWidth - done, '.').append("] ").append(Printable(text)).append("\x1b[K");
    std::cerr << line << std::flush;
    progressShown_ = true;
}

void Console::ClearProgress() {
    if (progressShown_) {
        std::cerr << "\r\x1b[K" << std::flush;
        progressShown_ = false;
    }
}

} // namespace tarnexctl
