// A child process of a test. Every wait ends after kProcessGuard.
#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace virtual_supply {

class ChildProcess {
  public:
    /// Starts the program `arguments.front()` with pipes on its standard streams.
    /// On failure: throws std::runtime_error.
    explicit ChildProcess(std::vector<std::string> arguments) {
        posix_spawn_file_actions_t actions{};
        posix_spawn_file_actions_init(&actions);
        const int childInput = MakePipe(nullptr, &input_);
        const int childOutput = MakePipe(&output_, nullptr);
        const int childErrors = MakePipe(&errors_, nullptr);
        posix_spawn_file_actions_adddup2(&actions, childInput, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, childOutput, STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, childErrors, STDERR_FILENO);
        std::vector<char*> argv(arguments.size() + 1, nullptr);
        std::transform(arguments.begin(), arguments.end(), argv.begin(), [](std::string& text) { return text.data(); });
        const int error = ::posix_spawn(&pid_, argv.front(), &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        ::close(childInput);
        ::close(childOutput);
        ::close(childErrors);
        if (error != 0) {
            throw std::runtime_error("cannot start " + arguments.front());
        }
    }

    ~ChildProcess() {
        CloseInput();
        ::close(output_);
        ::close(errors_);
        if (!exitCode_) {
            ::kill(pid_, SIGKILL);
            ::waitpid(pid_, nullptr, 0);
        }
    }

    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ChildProcess(ChildProcess&&) = delete;
    ChildProcess& operator=(ChildProcess&&) = delete;

    void Signal(int signal) const { ::kill(pid_, signal); }

    /// Closes the program's standard input.
    void CloseInput() {
        if (input_ >= 0) {
            ::close(input_);
            input_ = -1;
        }
    }

    /// Returns the next line of the standard output with its line feed; a shorter text when the output ends before.
    std::string ReadLine() { return Read(output_, true); }

    /// Return the rest of the standard output or of the standard error stream.
    std::string ReadOutput() { return Read(output_, false); }
    std::string ReadErrors() { return Read(errors_, false); }

    /// Waits for the end. Returns the exit code; -1 when a signal ended the program, -2 when it does not end in time.
    int Wait() {
        const auto deadline = Deadline();
        int status = 0;
        while (!exitCode_ && std::chrono::steady_clock::now() < deadline) {
            if (::waitpid(pid_, &status, WNOHANG) == pid_) {
                exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            } else {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }
        return exitCode_.value_or(-2);
    }

  private:
    static constexpr std::chrono::seconds kProcessGuard{30};

    static std::chrono::steady_clock::time_point Deadline() { return std::chrono::steady_clock::now() + kProcessGuard; }

    /// Keeps one end of a new pipe and returns the other one.
    static int MakePipe(int* keptReader, int* keptWriter) {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("cannot create a pipe");
        }
        if (keptReader != nullptr) {
            *keptReader = ends[0];
            return ends[1];
        }
        *keptWriter = ends[1];
        return ends[0];
    }

    static std::string Read(int from, bool oneLine) {
        const auto deadline = Deadline();
        std::string text;
        while (!oneLine || !text.ends_with('\n')) {
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
            pollfd waiting{from, POLLIN, 0};
            char c = 0;
            if (left.count() <= 0 || ::poll(&waiting, 1, static_cast<int>(left.count())) != 1 ||
                ::read(from, &c, 1) != 1) {
                break;
            }
            text += c;
        }
        return text;
    }

    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
    int errors_ = -1;
    std::optional<int> exitCode_;
};

} // namespace virtual_supply
