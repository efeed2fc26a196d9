#include "supply/error_message.h"

#include <algorithm>
#include <array>
#include <string>

#include "include/TARNEX_supply.h"
#include "platform/session_service.h"
#include "status/status.h"

namespace supply {
namespace {

struct OwnMessage {
    ViStatus status;
    std::string_view message;
};
constexpr std::array kOwnMessages{
    OwnMessage{TARNEXSUPPLY_ERROR_OTHER_DRIVER, "The session does not belong to this driver."},
    OwnMessage{TARNEXSUPPLY_ERROR_OTHER_VERSION, "The driver and the supply library are of different versions."},
    OwnMessage{TARNEXSUPPLY_ERROR_OUT_OF_STEP, "The connection could not be brought back into step."},
    OwnMessage{TARNEXSUPPLY_ERROR_STILL_ON, "The output is still on."},
};

} // namespace

std::string_view MessageOf(ViStatus status) {
    const auto* const own = std::find_if(kOwnMessages.begin(), kOwnMessages.end(),
                                         [&](const OwnMessage& row) { return row.status == status; });
    return own != kOwnMessages.end() ? own->message : nrt2::MessageOf(status);
}

ViStatus RecordOwnError(ViSession vi, ViStatus status, std::string_view elaboration) {
    std::string description(MessageOf(status));
    if (!elaboration.empty()) {
        description.append("  ").append(elaboration);
    }
    const auto recorded = IviSession_SetError(vi, status, description.c_str());
    return recorded < 0 ? recorded : status;
}

} // namespace supply
