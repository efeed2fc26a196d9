// A session of the driver, through its exported functions.
#pragma once

#include "include/TARNEX.h"

#include <string>

namespace tarnexctl {

/// Opens in the constructor, closes in the destructor. Negative statuses become a Failure; positive ones are success.
class DriverSession {
  public:
    DriverSession(const std::string& resource, const std::string& options);
    DriverSession(const DriverSession&) = delete;
    DriverSession& operator=(const DriverSession&) = delete;
    ~DriverSession();

    [[nodiscard]] ViSession Handle() const { return session_; }

    /// `doing` says in the failure's text what did not work.
    void Check(ViStatus status, const std::string& doing) const;

    [[nodiscard]] std::string Text(ViAttr attribute) const;
    [[nodiscard]] double Real(const std::string& channel, ViAttr attribute) const;
    [[nodiscard]] bool Boolean(const std::string& channel, ViAttr attribute) const;
    [[nodiscard]] ViInt32 Integer(const std::string& channel, ViAttr attribute) const;
    [[nodiscard]] bool InState(const std::string& channel, ViInt32 state) const;

  private:
    ViSession session_ = VI_NULL;
};

/// The driver's message of a status.
std::string MessageOf(ViStatus status);

} // namespace tarnexctl
