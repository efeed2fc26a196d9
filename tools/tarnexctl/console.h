// The output of the program.
#pragma once

#include <cstdio>
#include <memory>
#include <string_view>

namespace tarnexctl {

/// Standard output of the program, and a line of progress on standard error.
///
/// The command layer writes the number of fields of some replies to standard output. Print therefore writes to a
/// duplicate of standard output, and standard output itself is redirected to the null device.
class Console {
  public:
    /// On failure: throws Failure.
    Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    /// Clears the progress, so that an error message starts on an empty line.
    ~Console() { ClearProgress(); }

    /// Writes `text` and flushes it.
    /// On failure: throws Failure.
    void Print(std::string_view text);

    /// Returns whether standard output is a terminal.
    [[nodiscard]] bool OnTerminal() const { return outputIsTerminal_; }

    /// Shows a bar from 0 to 1 and a text, in place of the previous ones. No-op when standard error is not a terminal.
    void ShowProgress(double share, std::string_view text);
    void ClearProgress();

  private:
    struct Close {
        // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): the unique_ptr owns the file
        void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
    };
    std::unique_ptr<std::FILE, Close> output_;
    bool outputIsTerminal_ = false;
    bool errorIsTerminal_ = false;
    bool progressShown_ = false;
};

} // namespace tarnexctl
