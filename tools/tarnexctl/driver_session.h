// A session of the driver, through its exported functions.
#pragma once

#include <string>

#include "include/TARNEX.h"
#include "tools/tarnexctl/command.h"

namespace tarnexctl {

/// An open session; the destructor closes it. All functions throw Failure for a negative status; a positive status is
/// success.
class DriverSession {
  public:
    explicit DriverSession(const CommonOptions& common);
    DriverSession(const DriverSession&) = delete;
    DriverSession& operator=(const DriverSession&) = delete;
    ~DriverSession();

    [[nodiscard]] ViSession Handle() const { return session_; }

    /// Throws Failure for a negative status. `doing` is the start of its text: "setting the voltage of OutputChannel1".
    void Check(ViStatus status, const std::string& doing) const;

    [[nodiscard]] std::string Text(ViAttr attribute) const;
    [[nodiscard]] double Real(const std::string& channel, ViAttr attribute) const;
    [[nodiscard]] bool Boolean(const std::string& channel, ViAttr attribute) const;
    [[nodiscard]] ViInt32 Integer(const std::string& channel, ViAttr attribute) const;
    [[nodiscard]] bool InState(const std::string& channel, ViInt32 state) const;

  private:
    ViSession session_ = VI_NULL;
};

/// Returns the driver's message for a status.
std::string MessageOf(ViStatus status);

} // namespace tarnexctl
