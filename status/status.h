// The driver's statuses: those of IVI-3.2 and of the IviDCPwr class (IVI-4.4), and four of its own from the range that
// IVI leaves to drivers (0xBFFA4000 upward). Errors are negative, warnings positive.
#pragma once

#include <string_view>

#include "platform/session_service.h"
#include "platform/vi_types.h"

// One row per status: name, code, message. Each %s of a message is replaced when an error is recorded.
// Required: callers compare these texts, including the two blanks inside some of them and the missing full stop of
// IVI_ERROR_FUNCTION_NOT_SUPPORTED.
// clang-format off
#define TARNEX_STATUSES(STATUS) \
    STATUS(DRIVER_ERROR_IO, 0xBFFA4214, "I/O error.") \
    STATUS(DRIVER_ERROR_IO_TIMEOUT, 0xBFFA4215, "I/O timeout error.") \
    STATUS(IVI_ERROR_CANNOT_RECOVER, 0xBFFA0000, "Failure cannot recover.") \
    STATUS(IVI_ERROR_INSTRUMENT_STATUS, 0xBFFA0001, "Instrument error detected.  Use ErrorQuery() to determine the error(s).") \
    STATUS(IVI_ERROR_CANNOT_OPEN_FILE, 0xBFFA0002, "Cannot open file.") \
    STATUS(IVI_ERROR_READING_FILE, 0xBFFA0003, "Error reading file.") \
    STATUS(IVI_ERROR_WRITING_FILE, 0xBFFA0004, "Error writing file.") \
    STATUS(IVI_ERROR_INVALID_PATHNAME, 0xBFFA000B, "The pathname is invalid.") \
    STATUS(IVI_ERROR_INVALID_ATTRIBUTE, 0xBFFA000C, "Attribute ID '%s' not recognized.") \
    STATUS(IVI_ERROR_ATTR_NOT_WRITABLE, 0xBFFA000D, "Attribute '%s' is read-only.") \
    STATUS(IVI_ERROR_ATTR_NOT_READABLE, 0xBFFA000E, "Attribute '%s' is write-only.") \
    STATUS(IVI_ERROR_INVALID_VALUE, 0xBFFA0010, "Invalid value '%s' for function '%s', parameter '%s'.") \
    STATUS(IVI_ERROR_FUNCTION_NOT_SUPPORTED, 0xBFFA0011, "Does not support this class-compliant feature: function '%s'") \
    STATUS(IVI_ERROR_ATTRIBUTE_NOT_SUPPORTED, 0xBFFA0012, "Does not support this class-compliant feature: attribute '%s'.") \
    STATUS(IVI_ERROR_VALUE_NOT_SUPPORTED, 0xBFFA0013, "Does not support this class-compliant feature:  Enumeration value '%s' passed as the value for parameter '%s' in function '%s'.") \
    STATUS(IVI_ERROR_TYPES_DO_NOT_MATCH, 0xBFFA0015, "%sAttribute%s called for attribute '%s' of type '%s'.") \
    STATUS(IVI_ERROR_NOT_INITIALIZED, 0xBFFA001D, "A connection to the instrument has not been established.") \
    STATUS(IVI_ERROR_UNKNOWN_CHANNEL_NAME, 0xBFFA0020, "Unknown channel name.") \
    STATUS(IVI_ERROR_TOO_MANY_OPEN_FILES, 0xBFFA0023, "Too many files are open.") \
    STATUS(IVI_ERROR_CHANNEL_NAME_REQUIRED, 0xBFFA0044, "A channel name is required.") \
    STATUS(IVI_ERROR_MISSING_OPTION_NAME, 0xBFFA0049, "The option string is missing an option name.") \
    STATUS(IVI_ERROR_MISSING_OPTION_VALUE, 0xBFFA004A, "The option string is missing an option value.") \
    STATUS(IVI_ERROR_BAD_OPTION_NAME, 0xBFFA004B, "The '%s' name in the option string is unknown.") \
    STATUS(IVI_ERROR_BAD_OPTION_VALUE, 0xBFFA004C, "The '%s' value in the option string is unknown.") \
    STATUS(IVI_ERROR_OPERATION_PENDING, 0xBFFA0057, "Operation in progress.") \
    STATUS(IVI_ERROR_UNEXPECTED_RESPONSE, 0xBFFA0059, "Unexpected response from instrument.") \
    STATUS(IVI_ERROR_FILE_NOT_FOUND, 0xBFFA005B, "File not found.") \
    STATUS(IVI_ERROR_INVALID_FILE_FORMAT, 0xBFFA005C, "Invalid file format.") \
    STATUS(IVI_ERROR_STATUS_NOT_AVAILABLE, 0xBFFA005D, "The instrument status is not available.") \
    STATUS(IVI_ERROR_ID_QUERY_FAILED, 0xBFFA005E, "Instrument ID query failed.") \
    STATUS(IVI_ERROR_RESET_FAILED, 0xBFFA005F, "Instrument reset failed.") \
    STATUS(IVI_ERROR_RESOURCE_UNKNOWN, 0xBFFA0060, "Unknown resource.") \
    STATUS(IVI_ERROR_ALREADY_INITIALIZED, 0xBFFA0061, "The driver is already initialized.") \
    STATUS(IVI_ERROR_CANNOT_CHANGE_SIMULATION_STATE, 0xBFFA0062, "The simulation state cannot be changed.") \
    STATUS(IVI_ERROR_INVALID_NUMBER_OF_LEVELS_IN_SELECTOR, 0xBFFA0063, "The number of levels in the selector is not valid for the '%s' repeated capability.") \
    STATUS(IVI_ERROR_INVALID_RANGE_IN_SELECTOR, 0xBFFA0064, "The range '%s' is not valid for the repeated capability '%s'.") \
    STATUS(IVI_ERROR_UNKNOWN_NAME_IN_SELECTOR, 0xBFFA0065, "Unknown name in selector.") \
    STATUS(IVI_ERROR_BADLY_FORMED_SELECTOR, 0xBFFA0066, "The repeated capability selector is badly-formed.") \
    STATUS(IVI_ERROR_UNKNOWN_PHYSICAL_IDENTIFIER, 0xBFFA0067, "Unknown physical repeated capability selector.") \
    STATUS(DRIVER_ERROR_NOT_SUPPORTED, 0xBFFA4216, "The operation (attribute or function) is not supported.") \
    STATUS(DRIVER_ERROR_INVALID_PARAMETER, 0xBFFA4217, "Attribute or function parameter value is invalid (out of range or not supported).") \
    STATUS(IVIDCPWR_ERROR_TRIGGER_NOT_SOFTWARE, 0xBFFA1001, "The trigger source is not set to software trigger.") \
    STATUS(IVI_WARN_NSUP_ID_QUERY, 0x3FFA0065, "ID Query is not supported by this instrument.") \
    STATUS(IVI_WARN_NSUP_RESET, 0x3FFA0066, "Reset is not supported by this instrument.") \
    STATUS(IVI_WARN_NSUP_SELF_TEST, 0x3FFA0067, "Self test is not supported by this instrument.") \
    STATUS(IVI_WARN_NSUP_ERROR_QUERY, 0x3FFA0068, "Error query is not supported by this instrument.") \
    STATUS(IVI_WARN_NSUP_REV_QUERY, 0x3FFA0069, "Firmware revision query is not supported by this instrument.")
// clang-format on

// NOLINTNEXTLINE(bugprone-macro-parentheses): the name is declared, not evaluated
#define TARNEX_DECLARE_STATUS(name, code, message) inline constexpr auto name = static_cast<ViStatus>(code);
TARNEX_STATUSES(TARNEX_DECLARE_STATUS)
#undef TARNEX_DECLARE_STATUS

namespace nrt2 {

/// Returns the message of `status` with its %s placeholders unfilled; empty text for an unknown status.
std::string_view MessageOf(ViStatus status);

} // namespace nrt2
