// The rows of the table that a bench prints.
#pragma once

#include <string>

namespace bench {

/// Prints rows and stores whether any target was missed. Texts must not contain tabs.
class Report {
  public:
    /// `measured / baseline`, which shall be at most `most`.
    void AtMostTimes(const std::string& what, double measured, const std::string& against, double baseline,
                     const std::string& unit, double most);
    /// `measured / baseline`, which shall be at least `least`.
    void AtLeastTimes(const std::string& what, double measured, const std::string& against, double baseline,
                      const std::string& unit, double least);
    /// `measured - baseline`, which shall be at most `most`.
    void AtMostAbove(const std::string& what, double measured, const std::string& against, double baseline,
                     const std::string& unit, double most);
    /// A limit of its own, without a baseline.
    void AtMost(const std::string& what, double measured, const std::string& unit, double most);

    /// Returns 0 when every target was met, else 1: the exit code of the program.
    [[nodiscard]] int ExitCode() const { return missed_ ? 1 : 0; }

  private:
    void Row(const std::string& what, const std::string& measured, const std::string& against,
             const std::string& result, const std::string& target, bool met);

    bool missed_ = false;
};

/// Prints on standard error what is running: some benchmarks take many seconds.
void Progress(const std::string& what);

} // namespace bench
