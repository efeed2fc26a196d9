#include "tools/tarnexctl/driver_session.h"

#include <array>

#include "tools/tarnexctl/failure.h"

namespace tarnexctl {

namespace {

constexpr std::size_t kTextSize = 4096; // the longest text that the driver returns

} // namespace

std::string MessageOf(ViStatus status) {
    std::array<ViChar, kTextSize> message{};
    return TARNEX_error_message(VI_NULL, status, message.data()) < 0 ? "unknown status" : message.data();
}

DriverSession::DriverSession(const CommonOptions& common) {
    std::string name = common.resource; // the driver takes it as not const
    // An error that this thread has not read yet would hide the description of a failed open.
    TARNEX_ClearError(VI_NULL);
    Check(TARNEX_InitWithOptions(name.data(), VI_FALSE, VI_FALSE, common.options.c_str(), &session_),
          "opening " + common.resource);
}

DriverSession::~DriverSession() { TARNEX_close(session_); }

void DriverSession::Check(ViStatus status, const std::string& doing) const {
    if (status >= VI_SUCCESS) {
        return;
    }
    std::array<ViChar, kTextSize> description{};
    TARNEX_GetError(session_, nullptr, static_cast<ViInt32>(description.size()), description.data());
    throw StatusFailure(doing, status, description.front() == '\0' ? MessageOf(status) : description.data());
}

std::string DriverSession::Text(ViAttr attribute) const {
    std::array<ViChar, kTextSize> text{};
    Check(TARNEX_GetAttributeViString(session_, "", attribute, static_cast<ViInt32>(text.size()), text.data()),
          "reading a text");
    return text.data();
}

double DriverSession::Real(const std::string& channel, ViAttr attribute) const {
    ViReal64 value = 0.0;
    Check(TARNEX_GetAttributeViReal64(session_, channel.c_str(), attribute, &value), "reading " + channel);
    return value;
}

bool DriverSession::Boolean(const std::string& channel, ViAttr attribute) const {
    ViBoolean value = VI_FALSE;
    Check(TARNEX_GetAttributeViBoolean(session_, channel.c_str(), attribute, &value), "reading " + channel);
    return value != VI_FALSE;
}

ViInt32 DriverSession::Integer(const std::string& channel, ViAttr attribute) const {
    ViInt32 value = 0;
    Check(TARNEX_GetAttributeViInt32(session_, channel.c_str(), attribute, &value), "reading " + channel);
    return value;
}

bool DriverSession::InState(const std::string& channel, ViInt32 state) const {
    ViBoolean in = VI_FALSE;
    Check(TARNEX_QueryOutputState(session_, channel.c_str(), state, &in), "reading " + channel);
    return in != VI_FALSE;
}

} // namespace tarnexctl
