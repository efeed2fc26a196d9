// Lines that a user types.
#pragma once

#include <optional>
#include <string>

namespace tarnexctl {

/// Standard input, line by line. On a terminal a line can be edited, and earlier lines come back with the cursor keys,
/// those of earlier sessions too: they are kept in $XDG_STATE_HOME/tarnexctl/history, else in
/// ~/.local/state/tarnexctl/history. On Windows the console window has the editing and the history.
/// A history that cannot be saved is lost without a message.
class CommandLine {
  public:
    CommandLine();

    /// Returns whether standard input is a terminal.
    [[nodiscard]] bool IsInteractive() const { return interactive_; }

    /// Reads a line, after `prompt` on a terminal. Returns nothing at the end of the input.
    [[nodiscard]] std::optional<std::string> Read(const char* prompt);

  private:
    bool interactive_ = false;
    std::string historyFile_; ///< empty: none
};

} // namespace tarnexctl
