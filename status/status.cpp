#include "status/status.h"

#include <algorithm>
#include <array>

namespace nrt2 {
namespace {

struct StatusMessage {
    ViStatus status;
    std::string_view message;
};

#define TARNEX_MESSAGE_ROW(name, code, message) StatusMessage{name, message},
constexpr std::array kMessages{
    TARNEX_STATUSES(TARNEX_MESSAGE_ROW)
    // Statuses that the platform's headers declare.
    StatusMessage{IVI_ERROR_OUT_OF_MEMORY, "Could not allocate necessary memory."},
    StatusMessage{IVI_ERROR_NULL_POINTER, "Null pointer passed for function '%s', parameter '%s'."},
    StatusMessage{IVI_ERROR_INVALID_SESSION_HANDLE, "Invalid session handle."},
    StatusMessage{VI_SUCCESS, "Success."},
};
#undef TARNEX_MESSAGE_ROW

} // namespace

std::string_view MessageOf(ViStatus status) {
    const auto* row = std::find_if(kMessages.begin(), kMessages.end(),
                                   [status](const StatusMessage& candidate) { return candidate.status == status; });
    return row == kMessages.end() ? std::string_view{} : row->message;
}

} // namespace nrt2
