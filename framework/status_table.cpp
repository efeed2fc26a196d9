#include "framework/status_table.h"

#include <algorithm>
#include <array>

#include "platform/ivi_status.h"

namespace nrt2 {
namespace {

struct StatusMessage {
    ViStatus status;
    std::string_view message;
};

// The two blanks inside some messages and the missing full stop of IVI_ERROR_FUNCTION_NOT_SUPPORTED are deliberate:
// callers compare these texts.
constexpr std::array kMessages{
    StatusMessage{DRIVER_ERROR_IO, "I/O error."},
    StatusMessage{DRIVER_ERROR_IO_TIMEOUT, "I/O timeout error."},
    StatusMessage{IVI_ERROR_CANNOT_RECOVER, "Failure cannot recover."},
    StatusMessage{IVI_ERROR_INSTRUMENT_STATUS,
                  "Instrument error detected.  Use ErrorQuery() to determine the error(s)."},
    StatusMessage{IVI_ERROR_CANNOT_OPEN_FILE, "Cannot open file."},
    StatusMessage{IVI_ERROR_READING_FILE, "Error reading file."},
    StatusMessage{IVI_ERROR_WRITING_FILE, "Error writing file."},
    StatusMessage{IVI_ERROR_INVALID_PATHNAME, "The pathname is invalid."},
    StatusMessage{IVI_ERROR_INVALID_ATTRIBUTE, "Attribute ID '%s' not recognized."},
    StatusMessage{IVI_ERROR_ATTR_NOT_WRITABLE, "Attribute '%s' is read-only."},
    StatusMessage{IVI_ERROR_ATTR_NOT_READABLE, "Attribute '%s' is write-only."},
    StatusMessage{IVI_ERROR_INVALID_VALUE, "Invalid value '%s' for function '%s', parameter '%s'."},
    StatusMessage{IVI_ERROR_FUNCTION_NOT_SUPPORTED, "Does not support this class-compliant feature: function '%s'"},
    StatusMessage{IVI_ERROR_ATTRIBUTE_NOT_SUPPORTED, "Does not support this class-compliant feature: attribute '%s'."},
    StatusMessage{IVI_ERROR_VALUE_NOT_SUPPORTED, "Does not support this class-compliant feature:  Enumeration value "
                                                 "'%s' passed as the value for parameter '%s' in function '%s'."},
    StatusMessage{IVI_ERROR_TYPES_DO_NOT_MATCH, "%sAttribute%s called for attribute '%s' of type '%s'."},
    StatusMessage{IVI_ERROR_NOT_INITIALIZED, "A connection to the instrument has not been established."},
    StatusMessage{IVI_ERROR_UNKNOWN_CHANNEL_NAME, "Unknown channel name."},
    StatusMessage{IVI_ERROR_TOO_MANY_OPEN_FILES, "Too many files are open."},
    StatusMessage{IVI_ERROR_CHANNEL_NAME_REQUIRED, "A channel name is required."},
    StatusMessage{IVI_ERROR_MISSING_OPTION_NAME, "The option string is missing an option name."},
    StatusMessage{IVI_ERROR_MISSING_OPTION_VALUE, "The option string is missing an option value."},
    StatusMessage{IVI_ERROR_BAD_OPTION_NAME, "The '%s' name in the option string is unknown."},
    StatusMessage{IVI_ERROR_BAD_OPTION_VALUE, "The '%s' value in the option string is unknown."},
    StatusMessage{IVI_ERROR_OUT_OF_MEMORY, "Could not allocate necessary memory."},
    StatusMessage{IVI_ERROR_OPERATION_PENDING, "Operation in progress."},
    StatusMessage{IVI_ERROR_NULL_POINTER, "Null pointer passed for function '%s', parameter '%s'."},
    StatusMessage{IVI_ERROR_UNEXPECTED_RESPONSE, "Unexpected response from instrument."},
    StatusMessage{IVI_ERROR_FILE_NOT_FOUND, "File not found."},
    StatusMessage{IVI_ERROR_INVALID_FILE_FORMAT, "Invalid file format."},
    StatusMessage{IVI_ERROR_STATUS_NOT_AVAILABLE, "The instrument status is not available."},
    StatusMessage{IVI_ERROR_ID_QUERY_FAILED, "Instrument ID query failed."},
    StatusMessage{IVI_ERROR_RESET_FAILED, "Instrument reset failed."},
    StatusMessage{IVI_ERROR_RESOURCE_UNKNOWN, "Unknown resource."},
    StatusMessage{IVI_ERROR_ALREADY_INITIALIZED, "The driver is already initialized."},
    StatusMessage{IVI_ERROR_CANNOT_CHANGE_SIMULATION_STATE, "The simulation state cannot be changed."},
    StatusMessage{IVI_ERROR_INVALID_NUMBER_OF_LEVELS_IN_SELECTOR,
                  "The number of levels in the selector is not valid for the '%s' repeated capability."},
    StatusMessage{IVI_ERROR_INVALID_RANGE_IN_SELECTOR, "The range '%s' is not valid for the repeated capability '%s'."},
    StatusMessage{IVI_ERROR_UNKNOWN_NAME_IN_SELECTOR, "Unknown name in selector."},
    StatusMessage{IVI_ERROR_BADLY_FORMED_SELECTOR, "The repeated capability selector is badly-formed."},
    StatusMessage{IVI_ERROR_UNKNOWN_PHYSICAL_IDENTIFIER, "Unknown physical repeated capability selector."},
    StatusMessage{IVI_ERROR_INVALID_SESSION_HANDLE, "Invalid session handle."},
    StatusMessage{DRIVER_ERROR_NOT_SUPPORTED, "The operation (attribute or function) is not supported."},
    StatusMessage{DRIVER_ERROR_INVALID_VALUE,
                  "Attribute or function parameter value is invalid (out of range or not supported)."},
    StatusMessage{IVIDCPWR_ERROR_TRIGGER_NOT_SOFTWARE, "The trigger source is not set to software trigger."},
    StatusMessage{VI_SUCCESS, "Success."},
    StatusMessage{IVI_WARN_NSUP_ID_QUERY, "ID Query is not supported by this instrument."},
    StatusMessage{IVI_WARN_NSUP_RESET, "Reset is not supported by this instrument."},
    StatusMessage{IVI_WARN_NSUP_SELF_TEST, "Self test is not supported by this instrument."},
    StatusMessage{IVI_WARN_NSUP_ERROR_QUERY, "Error query is not supported by this instrument."},
    StatusMessage{IVI_WARN_NSUP_REV_QUERY, "Firmware revision query is not supported by this instrument."},
};

} // namespace

std::string_view MessageOf(ViStatus status) {
    const auto* row = std::find_if(kMessages.begin(), kMessages.end(),
                                   [status](const StatusMessage& candidate) { return candidate.status == status; });
    return row == kMessages.end() ? std::string_view{} : row->message;
}

} // namespace nrt2
