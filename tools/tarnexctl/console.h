// The output of the program.
#pragma once

#include <cstddef>
#include <string_view>

namespace tarnexctl {

/// Standard output of the program, and a line of progress on standard error.
class Console {
  public:
    Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    /// Clears the progress, so that an error message starts on an empty line.
    ~Console() { ClearProgress(); }

    /// Writes `text` and flushes it. Clears the progress when both are on a terminal.
    /// On failure: throws Failure.
    void Print(std::string_view text);

    /// Returns whether standard output is a terminal.
    [[nodiscard]] bool OnTerminal() const { return outputIsTerminal_; }

    /// Returns the number of characters in a line of the terminal at standard output or standard error; 80 when there
    /// is none.
    [[nodiscard]] std::size_t Columns() const;

    /// Shows a bar from 0 to 1 and a text, in place of the previous ones. No-op when standard error is not a terminal.
    void ShowProgress(double share, std::string_view text);
    void ClearProgress();

  private:
    bool outputIsTerminal_ = false;
    bool errorIsTerminal_ = false;
    bool progressShown_ = false;
};

} // namespace tarnexctl
