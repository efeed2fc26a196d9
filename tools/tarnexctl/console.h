// Where the tool's output goes.
#pragma once

#include <cstdio>
#include <memory>
#include <string_view>

namespace tarnexctl {

/// Standard output, for the tool alone, and a line of progress on standard error.
///
/// The command layer writes the number of fields of some replies to standard output. What the tool prints goes to a
/// duplicate of it instead, and standard output itself leads nowhere as long as the console lives.
class Console {
  public:
    Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    /// No progress stays behind: the line that tells of a failure stands alone.
    ~Console() { ClearProgress(); }

    /// Written through at once, so that whoever reads sees it. Throws Failure when it cannot be written.
    void Print(std::string_view text);

    /// Whether what is printed is looked at on a terminal.
    [[nodiscard]] bool OnTerminal() const { return output_is_terminal_; }

    /// A bar from 0 to 1 with a text behind it, in place of the one before; nothing when nobody looks at a terminal.
    void ShowProgress(double share, std::string_view text);
    void ClearProgress();

  private:
    struct Close {
        // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): the one that owns it calls this
        void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
    };
    std::unique_ptr<std::FILE, Close> output_;
    bool output_is_terminal_ = false;
    bool error_is_terminal_ = false;
    bool progress_shown_ = false;
};

} // namespace tarnexctl
