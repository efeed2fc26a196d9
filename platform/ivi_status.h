// The status codes that the driver returns: those of IVI-3.2 and of the IviDCPwr class (IVI-4.4), and the driver's own
// four. Errors are negative, warnings positive.
#pragma once

#include "platform/session_service.h"
#include "platform/vi_types.h"

inline constexpr auto IVI_ERROR_CANNOT_RECOVER = static_cast<ViStatus>(0xBFFA0000);
inline constexpr auto IVI_ERROR_INSTRUMENT_STATUS = static_cast<ViStatus>(0xBFFA0001);
inline constexpr auto IVI_ERROR_CANNOT_OPEN_FILE = static_cast<ViStatus>(0xBFFA0002);
inline constexpr auto IVI_ERROR_READING_FILE = static_cast<ViStatus>(0xBFFA0003);
inline constexpr auto IVI_ERROR_WRITING_FILE = static_cast<ViStatus>(0xBFFA0004);
inline constexpr auto IVI_ERROR_INVALID_PATHNAME = static_cast<ViStatus>(0xBFFA000B);
inline constexpr auto IVI_ERROR_INVALID_ATTRIBUTE = static_cast<ViStatus>(0xBFFA000C);
inline constexpr auto IVI_ERROR_ATTR_NOT_WRITABLE = static_cast<ViStatus>(0xBFFA000D);
inline constexpr auto IVI_ERROR_ATTR_NOT_READABLE = static_cast<ViStatus>(0xBFFA000E);
inline constexpr auto IVI_ERROR_INVALID_VALUE = static_cast<ViStatus>(0xBFFA0010);
inline constexpr auto IVI_ERROR_FUNCTION_NOT_SUPPORTED = static_cast<ViStatus>(0xBFFA0011);
inline constexpr auto IVI_ERROR_ATTRIBUTE_NOT_SUPPORTED = static_cast<ViStatus>(0xBFFA0012);
inline constexpr auto IVI_ERROR_VALUE_NOT_SUPPORTED = static_cast<ViStatus>(0xBFFA0013);
inline constexpr auto IVI_ERROR_TYPES_DO_NOT_MATCH = static_cast<ViStatus>(0xBFFA0015);
inline constexpr auto IVI_ERROR_NOT_INITIALIZED = static_cast<ViStatus>(0xBFFA001D);
inline constexpr auto IVI_ERROR_UNKNOWN_CHANNEL_NAME = static_cast<ViStatus>(0xBFFA0020);
inline constexpr auto IVI_ERROR_TOO_MANY_OPEN_FILES = static_cast<ViStatus>(0xBFFA0023);
inline constexpr auto IVI_ERROR_CHANNEL_NAME_REQUIRED = static_cast<ViStatus>(0xBFFA0044);
inline constexpr auto IVI_ERROR_MISSING_OPTION_NAME = static_cast<ViStatus>(0xBFFA0049);
inline constexpr auto IVI_ERROR_MISSING_OPTION_VALUE = static_cast<ViStatus>(0xBFFA004A);
inline constexpr auto IVI_ERROR_BAD_OPTION_NAME = static_cast<ViStatus>(0xBFFA004B);
inline constexpr auto IVI_ERROR_BAD_OPTION_VALUE = static_cast<ViStatus>(0xBFFA004C);
inline constexpr auto IVI_ERROR_OUT_OF_MEMORY = static_cast<ViStatus>(0xBFFA0056);
inline constexpr auto IVI_ERROR_OPERATION_PENDING = static_cast<ViStatus>(0xBFFA0057);
inline constexpr auto IVI_ERROR_NULL_POINTER = static_cast<ViStatus>(0xBFFA0058);
inline constexpr auto IVI_ERROR_UNEXPECTED_RESPONSE = static_cast<ViStatus>(0xBFFA0059);
inline constexpr auto IVI_ERROR_FILE_NOT_FOUND = static_cast<ViStatus>(0xBFFA005B);
inline constexpr auto IVI_ERROR_INVALID_FILE_FORMAT = static_cast<ViStatus>(0xBFFA005C);
inline constexpr auto IVI_ERROR_STATUS_NOT_AVAILABLE = static_cast<ViStatus>(0xBFFA005D);
inline constexpr auto IVI_ERROR_ID_QUERY_FAILED = static_cast<ViStatus>(0xBFFA005E);
inline constexpr auto IVI_ERROR_RESET_FAILED = static_cast<ViStatus>(0xBFFA005F);
inline constexpr auto IVI_ERROR_RESOURCE_UNKNOWN = static_cast<ViStatus>(0xBFFA0060);
inline constexpr auto IVI_ERROR_ALREADY_INITIALIZED = static_cast<ViStatus>(0xBFFA0061);
inline constexpr auto IVI_ERROR_CANNOT_CHANGE_SIMULATION_STATE = static_cast<ViStatus>(0xBFFA0062);
inline constexpr auto IVI_ERROR_INVALID_NUMBER_OF_LEVELS_IN_SELECTOR = static_cast<ViStatus>(0xBFFA0063);
inline constexpr auto IVI_ERROR_INVALID_RANGE_IN_SELECTOR = static_cast<ViStatus>(0xBFFA0064);
inline constexpr auto IVI_ERROR_UNKNOWN_NAME_IN_SELECTOR = static_cast<ViStatus>(0xBFFA0065);
inline constexpr auto IVI_ERROR_BADLY_FORMED_SELECTOR = static_cast<ViStatus>(0xBFFA0066);
inline constexpr auto IVI_ERROR_UNKNOWN_PHYSICAL_IDENTIFIER = static_cast<ViStatus>(0xBFFA0067);
inline constexpr auto IVIDCPWR_ERROR_TRIGGER_NOT_SOFTWARE = static_cast<ViStatus>(0xBFFA1001);
inline constexpr auto IVI_WARN_NSUP_ID_QUERY = static_cast<ViStatus>(0x3FFA0065);
inline constexpr auto IVI_WARN_NSUP_RESET = static_cast<ViStatus>(0x3FFA0066);
inline constexpr auto IVI_WARN_NSUP_SELF_TEST = static_cast<ViStatus>(0x3FFA0067);
inline constexpr auto IVI_WARN_NSUP_ERROR_QUERY = static_cast<ViStatus>(0x3FFA0068);
inline constexpr auto IVI_WARN_NSUP_REV_QUERY = static_cast<ViStatus>(0x3FFA0069);

// From the range that IVI leaves to the drivers (0xBFFA4000 upward).
inline constexpr auto DRIVER_ERROR_IO = static_cast<ViStatus>(0xBFFA4214);
inline constexpr auto DRIVER_ERROR_IO_TIMEOUT = static_cast<ViStatus>(0xBFFA4215);
inline constexpr auto DRIVER_ERROR_NOT_SUPPORTED = static_cast<ViStatus>(0xBFFA4216);
inline constexpr auto DRIVER_ERROR_INVALID_VALUE = static_cast<ViStatus>(0xBFFA4217);
