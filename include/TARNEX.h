/**
 * @file
 * IVI-C driver for the TARNEX family of two-channel programmable DC power supplies of Keltor Technology.
 *
 * Implements the IVI inherent capabilities (IVI-3.2) and the capability groups IviDCPwrBase and IviDCPwrMeasurement of
 * the IviDCPwr class (IVI-4.4, version 3.0). This header is all that a caller needs. It compiles as C99 and as C++.
 *
 * @section status_rule Statuses
 * Every function returns a ViStatus. Negative values are errors, 0 is success, positive values are success with a
 * warning or additional information. Test for "negative", never for "not 0".
 *
 * The driver returns VISA's positive statuses unchanged. Over a raw socket a query that succeeds returns 0x3FFF0005
 * (VI_SUCCESS_TERM_CHAR: the termination character was read). Over a serial line it returns 0x3FFF0005 or 0, which
 * depends on the VISA library. Over other interfaces it usually returns 0. A positive status ends a function at once: a
 * function that queries several channels returns after the first one, and @ref status_check "status checking" is left
 * out. #TARNEX_error_query is the exception: it returns 0 over every interface.
 *
 * @section error_record Error descriptions
 * Each session and each thread has one error record. A failing function writes its status and a description to the
 * record of its session and to the record of the calling thread. The first error stays there until #TARNEX_GetError
 * reads it or #TARNEX_ClearError clears it; later errors do not replace it. These failures are returned without being
 * recorded: an invalid session handle, a null newVi, and failures of the session service itself.
 *
 * These errors are found before the handle is checked: an unknown code or a null pointer in #TARNEX_error_message, and
 * an unknown attribute, another type, a read-only attribute or a null pointer in the attribute functions. With an
 * invalid handle the function writes such an error to the record of the calling thread and returns
 * #TARNEX_ERROR_INVALID_SESSION_HANDLE; with VI_NULL it returns the error itself.
 *
 * @section common_errors Common errors
 * Every function with a session handle returns:
 * - #TARNEX_ERROR_INVALID_SESSION_HANDLE: the handle is not open. Exceptions: #TARNEX_error_message with a known code,
 *   and #TARNEX_GetAttributeViString with size 0.
 * - #TARNEX_ERROR_NULL_POINTER: a pointer is null that must not be null. The description names the parameter.
 *
 * Functions that exchange data with the instrument also return #TARNEX_ERROR_IO. It covers every failure of VISA:
 * time-outs, lost connections, refused parameters.
 *
 * @section channels Channels
 * | channel | voltage | current |
 * |---|---|---|
 * | "OutputChannel1" | 0 to 22.0 V | 0 to 5.5 A |
 * | "OutputChannel2" | 0 to 5.5 V | 0 to 16.8 A |
 *
 * A channel selector is a name, a list "OutputChannel1,OutputChannel2" or a range "OutputChannel1-OutputChannel2".
 * Letter case matters. Virtual names from the configuration store can stand for any of these. Functions process the
 * channels in the selector's order and return at the first one that fails; the channels before it keep what they were
 * given. Errors of a selector, returned before anything is sent:
 * - #TARNEX_ERROR_CHANNEL_NAME_REQUIRED: null or blank.
 * - #TARNEX_ERROR_BADLY_FORMED_SELECTOR: a syntax error, or a channel named twice.
 * - #TARNEX_ERROR_INVALID_NUMBER_OF_LEVELS_IN_SELECTOR: a colon in the selector.
 * - #TARNEX_ERROR_INVALID_RANGE_IN_SELECTOR: a range whose ends do not match or are not ascending, or that
 *   overlaps another name or range.
 * - #TARNEX_ERROR_UNKNOWN_PHYSICAL_IDENTIFIER: not a channel of this driver.
 *
 * @section level_check Levels
 * On an instrument, a level outside the channel's limits is #TARNEX_ERROR_INVALID_PARAMETER, and nothing further is
 * sent. The limits of the settings apply to the protection levels too. NaN passes the check and is sent as "nan". In
 * simulation every level is accepted.
 *
 * @section status_check Status checking
 * With #TARNEX_ATTR_QUERY_INSTRUMENT_STATUS on and outside simulation, some functions end with the query "*ESR?":
 * #TARNEX_ConfigureOutputEnabled, #TARNEX_ConfigureVoltageLevel, #TARNEX_ConfigureCurrentLimit, #TARNEX_ConfigureOVP,
 * #TARNEX_QueryMaxCurrentLimit, #TARNEX_QueryMaxVoltageLevel, #TARNEX_QueryOutputState, #TARNEX_Measure, the setters of
 * all channel attributes, and the getters of all channel attributes except #TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR. They
 * return #TARNEX_ERROR_INSTRUMENT_STATUS when the instrument reports an error, #TARNEX_ERROR_IO when the query fails,
 * and else the status of the query.
 *
 * @section threads Threads
 * Every function may be called from any thread. Calls on one session run one after the other; calls on different
 * sessions run in parallel. #TARNEX_close is the exception.
 *
 * @section exceptions Exceptions
 * When a reply is not a number or not a boolean, or a number exceeds its type, a C++ exception (std::invalid_argument
 * or std::out_of_range) leaves the function. std::bad_alloc does when memory is not available. The function releases
 * the lock that it took; the session stays usable. When a session was being opened, newVi is 0. The exception
 * terminates a C program; a C++ program can catch it. On Windows only programs of the compiler that built the library
 * (GCC of mingw-w64) can rely on that.
 */
#ifndef TARNEX_H
#define TARNEX_H

/* Define TARNEX_NO_VI_TYPES before you include this header when another header has declared the VISA types. */
#ifndef TARNEX_NO_VI_TYPES

#include <stdint.h>

#ifndef _VI_FUNC
#ifdef _MSC_VER
#define _VI_FUNC __fastcall
#else
#define _VI_FUNC
#endif
#endif

/**
 * @defgroup visa_types VISA types
 * The types and constants of VPP-4.3.2 that the functions use.
 * @{
 */
typedef char ViChar;                 /**< Character. */
typedef int16_t ViInt16;             /**< Signed integer of 16 bits. */
typedef uint16_t ViUInt16;           /**< Unsigned integer of 16 bits. */
typedef int32_t ViInt32;             /**< Signed integer of 32 bits. */
typedef uint32_t ViUInt32;           /**< Unsigned integer of 32 bits. */
typedef double ViReal64;             /**< Real number of 64 bits. */
typedef ViUInt16 ViBoolean;          /**< #VI_TRUE or #VI_FALSE. */
typedef ViInt32 ViStatus;            /**< See @ref status_rule. */
typedef ViUInt32 ViSession;          /**< Session handle. */
typedef ViUInt32 ViAttr;             /**< Attribute identifier. */
typedef ViChar* ViString;            /**< Text that ends with NUL. */
typedef const ViChar* ViConstString; /**< Text that ends with NUL and is not changed. */
typedef ViChar* ViRsrc;              /**< VISA resource string. */

#define VI_NULL 0    /**< No session; null pointer. */
#define VI_SUCCESS 0 /**< Success. */
#define VI_TRUE 1    /**< True. */
#define VI_FALSE 0   /**< False. */
/** @} */

#endif /* TARNEX_NO_VI_TYPES */

/**
 * @defgroup attributes Attributes
 * Each line gives type, access, and value or unit. The attribute functions of an attribute are those of its type: an
 * attribute of type ViReal64 is read with #TARNEX_GetAttributeViReal64 and set with #TARNEX_SetAttributeViReal64.
 * @{
 */

/* clang-format off */
/**
 * @name IVI inherent attributes
 * IVI-3.2, section 5. They belong to the session: repCapName is ignored. Reading and setting them sends nothing.
 * @{
 */
#define TARNEX_ATTR_RANGE_CHECK                                  1050002 /**< ViBoolean, read/write: always VI_TRUE; setting it has no effect */
#define TARNEX_ATTR_QUERY_INSTRUMENT_STATUS                      1050003 /**< ViBoolean, read/write: whether functions end with @ref status_check "status checking" */
#define TARNEX_ATTR_CACHE                                        1050004 /**< ViBoolean, read/write: always VI_FALSE; setting it has no effect */
#define TARNEX_ATTR_SIMULATE                                     1050005 /**< ViBoolean, read/write: whether the session is in simulation; see #TARNEX_SetAttributeViBoolean */
#define TARNEX_ATTR_RECORD_COERCIONS                             1050006 /**< ViBoolean, read/write: always VI_FALSE; setting it has no effect */
#define TARNEX_ATTR_DRIVER_SETUP                                 1050007 /**< ViString, read-only: text of the DriverSetup clause in use */
#define TARNEX_ATTR_INTERCHANGE_CHECK                            1050021 /**< ViBoolean, read/write: always VI_FALSE; setting it has no effect */
#define TARNEX_ATTR_CHANNEL_COUNT                                1050203 /**< ViInt32, read-only: 2 */
#define TARNEX_ATTR_SPECIFIC_DRIVER_PREFIX                       1050302 /**< ViString, read-only: "TARNEX" */
#define TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR                       1050304 /**< ViString, read-only: VISA resource string in use */
#define TARNEX_ATTR_LOGICAL_NAME                                 1050305 /**< ViString, read-only: resourceName of the opening when the configuration store has a driver session named "TARNEX", else "" */
#define TARNEX_ATTR_SUPPORTED_INSTRUMENT_MODELS                  1050327 /**< ViString, read-only: "TX4410,TX4520" */
#define TARNEX_ATTR_GROUP_CAPABILITIES                           1050401 /**< ViString, read-only: "IviDCPwrBase,IviDCPwrMeasurement" */
#define TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION                 1050510 /**< ViString, read-only: fourth field of the "*IDN?" reply; "V1.00" in a session opened in simulation */
#define TARNEX_ATTR_INSTRUMENT_MANUFACTURER                      1050511 /**< ViString, read-only: first field of the "*IDN?" reply; "Keltor Technology" in simulation */
#define TARNEX_ATTR_INSTRUMENT_MODEL                             1050512 /**< ViString, read-only: second field of the "*IDN?" reply; "TX6300" in a session opened in simulation */
#define TARNEX_ATTR_SPECIFIC_DRIVER_VENDOR                       1050513 /**< ViString, read-only: "Keltor Technology" */
#define TARNEX_ATTR_SPECIFIC_DRIVER_DESCRIPTION                  1050514 /**< ViString, read-only: "IVI-C Driver for TARNEX" */
#define TARNEX_ATTR_SPECIFIC_DRIVER_CLASS_SPEC_MAJOR_VERSION     1050515 /**< ViInt32, read-only: 3 */
#define TARNEX_ATTR_SPECIFIC_DRIVER_CLASS_SPEC_MINOR_VERSION     1050516 /**< ViInt32, read-only: 0 */
#define TARNEX_ATTR_SPECIFIC_DRIVER_REVISION                     1050551 /**< ViString, read-only: "1.0.0.0" */
/** @} */

/**
 * @name IviDCPwr attributes
 * IVI-4.4, group IviDCPwrBase. They belong to a channel: repCapName is one channel for getters, a @ref channels
 * "channel selector" for setters.
 * @{
 */
#define TARNEX_ATTR_VOLTAGE_LEVEL                                1250001 /**< ViReal64, read/write: V, programmed voltage */
#define TARNEX_ATTR_OVP_ENABLED                                  1250002 /**< ViBoolean, read/write: whether the over-voltage protection is on */
#define TARNEX_ATTR_OVP_LIMIT                                    1250003 /**< ViReal64, read/write: V, level of the over-voltage protection */
#define TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR                       1250004 /**< ViInt32, read/write: #TARNEX_VAL_CURRENT_REGULATE or #TARNEX_VAL_CURRENT_TRIP; setting another value is #TARNEX_ERROR_INVALID_PARAMETER. Required: a failed query reads as regulate with status 0; it does not prove a working connection. */
#define TARNEX_ATTR_CURRENT_LIMIT                                1250005 /**< ViReal64, read/write: A, programmed current limit; setting it sets the over-current protection level too */
#define TARNEX_ATTR_OUTPUT_ENABLED                               1250006 /**< ViBoolean, read/write: whether the output is on */
/** @} */
/* clang-format on */
/** @} */

/**
 * @defgroup values Values
 * Values of parameters and attributes (IVI-4.4).
 * @{
 */

/**
 * @name Current limit behavior
 * What happens when the load draws more than the current limit: #TARNEX_ConfigureCurrentLimit and
 * #TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR.
 * @{
 */
#define TARNEX_VAL_CURRENT_REGULATE 0 /**< The output limits the current. */
#define TARNEX_VAL_CURRENT_TRIP 1     /**< The over-current protection switches the output off. */
/** @} */

/**
 * @name Range types
 * #TARNEX_ConfigureOutputRange ignores them.
 * @{
 */
#define TARNEX_VAL_RANGE_CURRENT 0 /**< Current range. */
#define TARNEX_VAL_RANGE_VOLTAGE 1 /**< Voltage range. */
/** @} */

/**
 * @name Output states
 * #TARNEX_QueryOutputState.
 * @{
 */
#define TARNEX_VAL_OUTPUT_CONSTANT_VOLTAGE 0 /**< The output regulates the voltage. */
#define TARNEX_VAL_OUTPUT_CONSTANT_CURRENT 1 /**< The output regulates the current. */
#define TARNEX_VAL_OUTPUT_OVER_VOLTAGE 2     /**< The over-voltage protection has tripped. Never reported. */
#define TARNEX_VAL_OUTPUT_OVER_CURRENT 3     /**< The over-current protection has tripped. Never reported. */
#define TARNEX_VAL_OUTPUT_UNREGULATED 4      /**< The output does not regulate. Never reported. */
/** @} */

/**
 * @name Measurement types
 * #TARNEX_Measure.
 * @{
 */
#define TARNEX_VAL_MEASURE_CURRENT 0 /**< Current. */
#define TARNEX_VAL_MEASURE_VOLTAGE 1 /**< Voltage. */
/** @} */
/** @} */

/**
 * @defgroup statuses Status codes
 * The statuses that the driver defines, with their messages (IVI-3.2 and IVI-4.4; 0xBFFA4214 to 0xBFFA4217 are the
 * driver's own). A description is the message with its placeholders filled, often followed by an explanation. Not every
 * status is in use. Functions also return positive statuses of VISA, and #TARNEX_InitWithOptions returns those of the
 * configuration server (0xBFFA12xx).
 * @{
 */
/* clang-format off */
#define TARNEX_ERROR_IO                                     ((ViStatus)0xBFFA4214) /**< "I/O error." */
#define TARNEX_ERROR_IO_TIMEOUT                             ((ViStatus)0xBFFA4215) /**< "I/O timeout error." */
#define TARNEX_ERROR_CANNOT_RECOVER                         ((ViStatus)0xBFFA0000) /**< "Failure cannot recover." */
#define TARNEX_ERROR_INSTRUMENT_STATUS                      ((ViStatus)0xBFFA0001) /**< "Instrument error detected.  Use ErrorQuery() to determine the error(s)." */
#define TARNEX_ERROR_CANNOT_OPEN_FILE                       ((ViStatus)0xBFFA0002) /**< "Cannot open file." */
#define TARNEX_ERROR_READING_FILE                           ((ViStatus)0xBFFA0003) /**< "Error reading file." */
#define TARNEX_ERROR_WRITING_FILE                           ((ViStatus)0xBFFA0004) /**< "Error writing file." */
#define TARNEX_ERROR_INVALID_PATHNAME                       ((ViStatus)0xBFFA000B) /**< "The pathname is invalid." */
#define TARNEX_ERROR_INVALID_ATTRIBUTE                      ((ViStatus)0xBFFA000C) /**< "Attribute ID '%s' not recognized." */
#define TARNEX_ERROR_ATTR_NOT_WRITABLE                      ((ViStatus)0xBFFA000D) /**< "Attribute '%s' is read-only." */
#define TARNEX_ERROR_ATTR_NOT_READABLE                      ((ViStatus)0xBFFA000E) /**< "Attribute '%s' is write-only." */
#define TARNEX_ERROR_INVALID_VALUE                          ((ViStatus)0xBFFA0010) /**< "Invalid value '%s' for function '%s', parameter '%s'." */
#define TARNEX_ERROR_FUNCTION_NOT_SUPPORTED                 ((ViStatus)0xBFFA0011) /**< "Does not support this class-compliant feature: function '%s'" */
#define TARNEX_ERROR_ATTRIBUTE_NOT_SUPPORTED                ((ViStatus)0xBFFA0012) /**< "Does not support this class-compliant feature: attribute '%s'." */
#define TARNEX_ERROR_VALUE_NOT_SUPPORTED                    ((ViStatus)0xBFFA0013) /**< "Does not support this class-compliant feature:  Enumeration value '%s' passed as the value for parameter '%s' in function '%s'." */
#define TARNEX_ERROR_TYPES_DO_NOT_MATCH                     ((ViStatus)0xBFFA0015) /**< "%sAttribute%s called for attribute '%s' of type '%s'." */
#define TARNEX_ERROR_NOT_INITIALIZED                        ((ViStatus)0xBFFA001D) /**< "A connection to the instrument has not been established." */
#define TARNEX_ERROR_UNKNOWN_CHANNEL_NAME                   ((ViStatus)0xBFFA0020) /**< "Unknown channel name." */
#define TARNEX_ERROR_TOO_MANY_OPEN_FILES                    ((ViStatus)0xBFFA0023) /**< "Too many files are open." */
#define TARNEX_ERROR_CHANNEL_NAME_REQUIRED                  ((ViStatus)0xBFFA0044) /**< "A channel name is required." */
#define TARNEX_ERROR_MISSING_OPTION_NAME                    ((ViStatus)0xBFFA0049) /**< "The option string is missing an option name." */
#define TARNEX_ERROR_MISSING_OPTION_VALUE                   ((ViStatus)0xBFFA004A) /**< "The option string is missing an option value." */
#define TARNEX_ERROR_BAD_OPTION_NAME                        ((ViStatus)0xBFFA004B) /**< "The '%s' name in the option string is unknown." */
#define TARNEX_ERROR_BAD_OPTION_VALUE                       ((ViStatus)0xBFFA004C) /**< "The '%s' value in the option string is unknown." */
#define TARNEX_ERROR_OUT_OF_MEMORY                          ((ViStatus)0xBFFA0056) /**< "Could not allocate necessary memory." */
#define TARNEX_ERROR_OPERATION_PENDING                      ((ViStatus)0xBFFA0057) /**< "Operation in progress." */
#define TARNEX_ERROR_NULL_POINTER                           ((ViStatus)0xBFFA0058) /**< "Null pointer passed for function '%s', parameter '%s'." */
#define TARNEX_ERROR_UNEXPECTED_RESPONSE                    ((ViStatus)0xBFFA0059) /**< "Unexpected response from instrument." */
#define TARNEX_ERROR_FILE_NOT_FOUND                         ((ViStatus)0xBFFA005B) /**< "File not found." */
#define TARNEX_ERROR_INVALID_FILE_FORMAT                    ((ViStatus)0xBFFA005C) /**< "Invalid file format." */
#define TARNEX_ERROR_STATUS_NOT_AVAILABLE                   ((ViStatus)0xBFFA005D) /**< "The instrument status is not available." */
#define TARNEX_ERROR_ID_QUERY_FAILED                        ((ViStatus)0xBFFA005E) /**< "Instrument ID query failed." */
#define TARNEX_ERROR_RESET_FAILED                           ((ViStatus)0xBFFA005F) /**< "Instrument reset failed." */
#define TARNEX_ERROR_RESOURCE_UNKNOWN                       ((ViStatus)0xBFFA0060) /**< "Unknown resource." */
#define TARNEX_ERROR_ALREADY_INITIALIZED                    ((ViStatus)0xBFFA0061) /**< "The driver is already initialized." */
#define TARNEX_ERROR_CANNOT_CHANGE_SIMULATION_STATE         ((ViStatus)0xBFFA0062) /**< "The simulation state cannot be changed." */
#define TARNEX_ERROR_INVALID_NUMBER_OF_LEVELS_IN_SELECTOR   ((ViStatus)0xBFFA0063) /**< "The number of levels in the selector is not valid for the '%s' repeated capability." */
#define TARNEX_ERROR_INVALID_RANGE_IN_SELECTOR              ((ViStatus)0xBFFA0064) /**< "The range '%s' is not valid for the repeated capability '%s'." */
#define TARNEX_ERROR_UNKNOWN_NAME_IN_SELECTOR               ((ViStatus)0xBFFA0065) /**< "Unknown name in selector." */
#define TARNEX_ERROR_BADLY_FORMED_SELECTOR                  ((ViStatus)0xBFFA0066) /**< "The repeated capability selector is badly-formed." */
#define TARNEX_ERROR_UNKNOWN_PHYSICAL_IDENTIFIER            ((ViStatus)0xBFFA0067) /**< "Unknown physical repeated capability selector." */
#define TARNEX_ERROR_INVALID_SESSION_HANDLE                 ((ViStatus)0xBFFA1190) /**< "Invalid session handle." */
#define TARNEX_ERROR_NOT_SUPPORTED                          ((ViStatus)0xBFFA4216) /**< "The operation (attribute or function) is not supported." */
#define TARNEX_ERROR_INVALID_PARAMETER                      ((ViStatus)0xBFFA4217) /**< "Attribute or function parameter value is invalid (out of range or not supported)." */
#define TARNEX_ERROR_TRIGGER_NOT_SOFTWARE                   ((ViStatus)0xBFFA1001) /**< "The trigger source is not set to software trigger." */
#define TARNEX_WARN_NSUP_ID_QUERY                           ((ViStatus)0x3FFA0065) /**< "ID Query is not supported by this instrument." */
#define TARNEX_WARN_NSUP_RESET                              ((ViStatus)0x3FFA0066) /**< "Reset is not supported by this instrument." */
#define TARNEX_WARN_NSUP_SELF_TEST                          ((ViStatus)0x3FFA0067) /**< "Self test is not supported by this instrument." */
#define TARNEX_WARN_NSUP_ERROR_QUERY                        ((ViStatus)0x3FFA0068) /**< "Error query is not supported by this instrument." */
#define TARNEX_WARN_NSUP_REV_QUERY                          ((ViStatus)0x3FFA0069) /**< "Firmware revision query is not supported by this instrument." */
/* clang-format on */
/** @} */

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup sessions Opening and closing
 * IVI-3.2, section 6.
 * @{
 */

/**
 * Opens a session without options.
 *
 * Same as #TARNEX_InitWithOptions with an empty option string.
 *
 * @param resourceName  See #TARNEX_InitWithOptions.
 * @param idQuery       See #TARNEX_InitWithOptions.
 * @param reset         See #TARNEX_InitWithOptions.
 * @param[out] newVi    See #TARNEX_InitWithOptions.
 * @return See #TARNEX_InitWithOptions.
 */
ViStatus _VI_FUNC TARNEX_init(ViRsrc resourceName, ViBoolean idQuery, ViBoolean reset, ViSession* newVi);

/**
 * Opens a session with an instrument.
 *
 * @param resourceName  VISA resource string, for example "TCPIP0::192.168.1.20::5025::SOCKET". When the IVI
 *                      configuration store has a driver session named "TARNEX", the resource of its hardware asset is
 *                      opened instead. Null counts as empty.
 * @param idQuery       VI_TRUE: fail unless #TARNEX_ATTR_SUPPORTED_INSTRUMENT_MODELS has the instrument's model. The
 *                      simulated model "TX6300" is not supported, so an ID query fails in simulation. Any other value
 *                      counts as VI_FALSE.
 * @param reset         Not VI_FALSE: reset the instrument after opening. A failure of the reset is neither returned nor
 *                      recorded.
 * @param optionString  Inherent options, then a DriverSetup clause, which runs to the end of the line:
 *                      "Simulate=1, QueryInstrStatus=1, DriverSetup=Model:TX4410". Options: Cache, InterchangeCheck
 *                      (must be false), QueryInstrStatus, RangeCheck, RecordCoercions, Simulate. Values: "true",
 *                      "vi_true", "1", "false", "vi_false", "0". Letter case does not matter. The option string
 *                      overrides the configuration store. The DriverSetup key Model names the model to simulate; it
 *                      has no visible effect: the simulated model stays "TX6300". Null counts as empty.
 * @param[out] newVi    Session handle, or 0 on failure. Not null. Exception: when opening succeeds but the session
 *                      service then fails to look the new handle up, the function returns that error and a valid
 *                      handle, which the caller must close.
 * @return 0 on success.
 * @retval TARNEX_ERROR_NULL_POINTER        newVi is null.
 * @retval TARNEX_ERROR_BAD_OPTION_NAME     The option string has an unknown option.
 * @retval TARNEX_ERROR_BAD_OPTION_VALUE    The option string has an unknown value, or InterchangeCheck is on in the
 *                                          option string or in the configuration store.
 * @retval TARNEX_ERROR_CANNOT_RECOVER      An option or a DriverSetup key appears more than once.
 * @retval TARNEX_ERROR_IO                  No connection, or no valid reply to "*IDN?".
 * @retval TARNEX_ERROR_ID_QUERY_FAILED     The model is not supported.
 * @retval TARNEX_ERROR_INSTRUMENT_STATUS   QueryInstrStatus is on and the instrument reports an error.
 * @retval 0xBFFA12xx                       The configuration server cannot read the store.
 * @retval 0xBFFA11xx                       The session service cannot issue a handle.
 * @pre Call #TARNEX_ClearError with VI_NULL first. When opening fails, its description is in the record of the calling
 * thread (#TARNEX_GetError with VI_NULL), unless that record still holds an earlier error.
 */
ViStatus _VI_FUNC TARNEX_InitWithOptions(ViRsrc resourceName, ViBoolean idQuery, ViBoolean reset,
                                         ViConstString optionString, ViSession* newVi);

/**
 * Closes the session and its connection. The outputs stay as they are.
 *
 * @param vi  Session handle. The handle is invalid afterwards.
 * @return 0 on success, also when disconnecting fails. Otherwise one of the @ref common_errors "common errors", or a
 * failure of the session service.
 * @pre No other call on this session is running or starts later: this function does not take the session's lock.
 */
ViStatus _VI_FUNC TARNEX_close(ViSession vi);
/** @} */

/**
 * @defgroup inherent IVI inherent functions
 * IVI-3.2, section 6. None of them does @ref status_check "status checking".
 * @{
 */

/**
 * Resets the instrument ("*RST"). Sends nothing in simulation.
 *
 * @param vi  Session handle.
 * @return 0, or a positive status, on success. Otherwise #TARNEX_ERROR_IO or one of the @ref common_errors "common
 * errors".
 */
ViStatus _VI_FUNC TARNEX_reset(ViSession vi);

/**
 * Same as #TARNEX_reset: the driver has no defaults of its own to apply.
 *
 * @param vi  Session handle.
 * @return See #TARNEX_reset.
 */
ViStatus _VI_FUNC TARNEX_ResetWithDefaults(ViSession vi);

/**
 * Reports that the instruments have no self-test. Sends nothing.
 *
 * @param vi                Session handle.
 * @param[out] testResult   Not written. Not null.
 * @param[out] testMessage  Not written. Not null.
 * @return #TARNEX_WARN_NSUP_SELF_TEST, which is positive. Otherwise one of the @ref common_errors "common errors".
 */
ViStatus _VI_FUNC TARNEX_self_test(ViSession vi, ViInt16* testResult, ViChar testMessage[]);

/**
 * Reads the oldest entry of the instrument's error queue (":SYSTem:ERRor?") and removes it there.
 *
 * @param vi                 Session handle.
 * @param[out] errorCode     The instrument's code; 0 when the queue is empty. Not null. Unchanged on failure.
 * @param[out] errorMessage  The instrument's text, including its quotes, without surrounding tabs and line ends. In
 *                           simulation No error, without quotes. The caller supplies 1024 bytes. Not null. Unchanged on
 *                           failure.
 * @return 0 on success, over every interface.
 * @retval TARNEX_ERROR_IO              The exchange failed.
 * @retval TARNEX_ERROR_CANNOT_RECOVER  The reply does not have exactly two fields. A comma in the text has this effect;
 *                                      the entry is then lost.
 */
ViStatus _VI_FUNC TARNEX_error_query(ViSession vi, ViInt32* errorCode, ViChar errorMessage[]);

/**
 * Returns the message of a status code, with its placeholders unfilled.
 *
 * @param vi                 Session handle or VI_NULL.
 * @param errorCode          0 or one of the @ref statuses.
 * @param[out] errorMessage  The message. The caller supplies 256 bytes. Not null. Unchanged on failure.
 * @return 0 on success, whatever vi is. For a code that the driver does not define, VISA's codes included:
 * - #TARNEX_ERROR_INVALID_VALUE when vi is VI_NULL; not recorded.
 * - #TARNEX_ERROR_INVALID_VALUE when vi is open; recorded.
 * - #TARNEX_ERROR_INVALID_SESSION_HANDLE when vi is another handle.
 */
ViStatus _VI_FUNC TARNEX_error_message(ViSession vi, ViStatus errorCode, ViChar errorMessage[]);

/**
 * Returns the revisions of the driver and of the instrument's firmware. Sends nothing.
 *
 * @param vi              Session handle.
 * @param[out] driverRev  "1.0.0.0". The caller supplies 256 bytes. May be null.
 * @param[out] instrRev   Firmware revision as read when the session was opened; "Sim1.0.0.0" in simulation. The caller
 *                        supplies 256 bytes. May be null.
 * @return 0 on success. Otherwise #TARNEX_ERROR_INVALID_SESSION_HANDLE.
 */
ViStatus _VI_FUNC TARNEX_revision_query(ViSession vi, ViChar driverRev[], ViChar instrRev[]);

/**
 * Switches all outputs off (":OUTPut:STATe ALL,OFF"). Sends nothing in simulation.
 *
 * @param vi  Session handle.
 * @return 0, or a positive status, on success. Otherwise #TARNEX_ERROR_IO or one of the @ref common_errors "common
 * errors".
 */
ViStatus _VI_FUNC TARNEX_Disable(ViSession vi);

/**
 * Has no effect: the driver does not cache attribute values.
 *
 * @param vi  Session handle.
 * @return 0 on success. Otherwise one of the @ref common_errors "common errors".
 */
ViStatus _VI_FUNC TARNEX_InvalidateAllAttributes(ViSession vi);

/**
 * Takes the session's lock for the calling thread. Calls of other threads on this session wait until it is released.
 * The lock is recursive.
 *
 * @param vi                     Session handle.
 * @param[in,out] callerHasLock  May be null. VI_FALSE: take the lock and set it to VI_TRUE. Any other value: do
 *                               nothing.
 * @return 0 on success. Otherwise one of the @ref common_errors "common errors".
 */
ViStatus _VI_FUNC TARNEX_LockSession(ViSession vi, ViBoolean* callerHasLock);

/**
 * Releases the session's lock once. Unlocking a session that the calling thread has not locked has no effect.
 *
 * @param vi                     Session handle.
 * @param[in,out] callerHasLock  May be null. VI_FALSE: do nothing. Any other value: release the lock and set it to
 *                               VI_FALSE.
 * @return 0 on success, also when the calling thread does not hold the lock. Otherwise one of the @ref common_errors
 * "common errors".
 */
ViStatus _VI_FUNC TARNEX_UnlockSession(ViSession vi, ViBoolean* callerHasLock);

/**
 * Returns and clears an @ref error_record "error record".
 *
 * @param vi                Session handle, or VI_NULL for the record of the calling thread.
 * @param[out] errorCode    Status of the error; 0 when the record is empty. May be null.
 * @param bufferSize        Size of description in bytes; 1024 always suffice. 0: return the size needed and clear
 *                          nothing. Negative: copy the whole text.
 * @param[out] description  Description of the error. Text that does not fit is cut. May be null when bufferSize is 0.
 * @return 0 when the text fits, the size needed when it was cut or bufferSize is 0. Otherwise one of the
 * @ref common_errors "common errors".
 */
ViStatus _VI_FUNC TARNEX_GetError(ViSession vi, ViStatus* errorCode, ViInt32 bufferSize, ViChar description[]);

/**
 * Clears an @ref error_record "error record".
 *
 * @param vi  Session handle, or VI_NULL for the record of the calling thread.
 * @return 0 on success. Otherwise #TARNEX_ERROR_INVALID_SESSION_HANDLE.
 */
ViStatus _VI_FUNC TARNEX_ClearError(ViSession vi);
/** @} */

/**
 * @defgroup attribute_access Attribute access
 * IVI-3.2, section 6. Functions return 0, or for a channel attribute a positive status, on success. On failure they
 * return one of the @ref common_errors "common errors" or:
 * - #TARNEX_ERROR_INVALID_ATTRIBUTE: unknown attribute.
 * - #TARNEX_ERROR_TYPES_DO_NOT_MATCH: the attribute has another type.
 * - #TARNEX_ERROR_ATTR_NOT_WRITABLE: the attribute is read-only.
 * - For channel attributes: the errors of a @ref channels "channel selector", #TARNEX_ERROR_IO, and the errors of
 *   @ref status_check "status checking". A getter takes one channel; several are #TARNEX_ERROR_BADLY_FORMED_SELECTOR.
 *
 * Setters check @ref level_check "levels".
 * @{
 */

/**
 * Reads an integer.
 *
 * @param vi                   Session handle.
 * @param repCapName           One channel for a channel attribute; otherwise ignored.
 * @param attributeId          Attribute of type ViInt32.
 * @param[out] attributeValue  The value. Not null.
 * @return See @ref attribute_access.
 */
ViStatus _VI_FUNC TARNEX_GetAttributeViInt32(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                             ViInt32* attributeValue);

/**
 * Reads a real number.
 *
 * @param vi                   Session handle.
 * @param repCapName           One channel for a channel attribute; otherwise ignored.
 * @param attributeId          Attribute of type ViReal64.
 * @param[out] attributeValue  The value, in V or A. Not null. Unchanged when the query fails.
 * @return See @ref attribute_access.
 */
ViStatus _VI_FUNC TARNEX_GetAttributeViReal64(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                              ViReal64* attributeValue);

/**
 * Reads a boolean.
 *
 * @param vi                   Session handle.
 * @param repCapName           One channel for a channel attribute; otherwise ignored.
 * @param attributeId          Attribute of type ViBoolean.
 * @param[out] attributeValue  VI_TRUE or VI_FALSE. Not null. Unchanged when the query fails.
 * @return See @ref attribute_access.
 */
ViStatus _VI_FUNC TARNEX_GetAttributeViBoolean(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                               ViBoolean* attributeValue);

/**
 * Always fails: no attribute has the type ViSession.
 *
 * @param vi                   Session handle.
 * @param repCapName           Ignored.
 * @param attributeId          Any attribute.
 * @param[out] attributeValue  Not written. Not null.
 * @return One of the @ref common_errors "common errors", #TARNEX_ERROR_INVALID_ATTRIBUTE or
 * #TARNEX_ERROR_TYPES_DO_NOT_MATCH.
 */
ViStatus _VI_FUNC TARNEX_GetAttributeViSession(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                               ViSession* attributeValue);

/**
 * Reads a text.
 *
 * @param vi                        Session handle.
 * @param repCapName                Ignored: no channel attribute is a text.
 * @param attributeId               Attribute of type ViString.
 * @param attributeValueBufferSize  Size of attributeValue in bytes. 0: return 4096 and write nothing. Negative: the
 *                                  buffer has 4096 bytes.
 * @param[out] attributeValue       The text. Text that does not fit is cut. May be null when the size is 0.
 * @return 0 when the text and its NUL leave room in the buffer. 4096 when they fill it, whether the text was cut or
 * not, and when the size is 0: 4096 is the size that is reported for every text. For errors see @ref attribute_access.
 */
ViStatus _VI_FUNC TARNEX_GetAttributeViString(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                              ViInt32 attributeValueBufferSize, ViChar attributeValue[]);

/**
 * Sets an integer.
 *
 * @param vi              Session handle.
 * @param repCapName      @ref channels "Channel selector" for a channel attribute; otherwise ignored.
 * @param attributeId     Attribute of type ViInt32.
 * @param attributeValue  The value. One that the attribute does not define is #TARNEX_ERROR_INVALID_PARAMETER.
 * @return See @ref attribute_access.
 */
ViStatus _VI_FUNC TARNEX_SetAttributeViInt32(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                             ViInt32 attributeValue);

/**
 * Sets a real number.
 *
 * @param vi              Session handle.
 * @param repCapName      @ref channels "Channel selector" for a channel attribute; otherwise ignored.
 * @param attributeId     Attribute of type ViReal64.
 * @param attributeValue  The value, in V or A. See @ref level_check.
 * @return See @ref attribute_access.
 */
ViStatus _VI_FUNC TARNEX_SetAttributeViReal64(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                              ViReal64 attributeValue);

/**
 * Sets a boolean.
 *
 * #TARNEX_ATTR_SIMULATE depends on how the session was opened:
 * - In simulation: VI_FALSE is #TARNEX_ERROR_CANNOT_CHANGE_SIMULATION_STATE. The simulator stays until the session is
 *   closed, whatever is set.
 * - Not in simulation: VI_TRUE closes the connection and replaces the instrument by the simulator until the session is
 *   closed. VI_FALSE then clears the attribute only.
 *
 * @param vi              Session handle.
 * @param repCapName      @ref channels "Channel selector" for a channel attribute; otherwise ignored.
 * @param attributeId     Attribute of type ViBoolean.
 * @param attributeValue  Channel attributes: VI_FALSE is off, every other value is on. Inherent attributes: VI_TRUE is
 *                        true, every other value is false.
 * @return See @ref attribute_access.
 */
ViStatus _VI_FUNC TARNEX_SetAttributeViBoolean(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                               ViBoolean attributeValue);

/**
 * Always fails: no attribute has the type ViSession.
 *
 * @param vi              Session handle.
 * @param repCapName      Ignored.
 * @param attributeId     Any attribute.
 * @param attributeValue  Ignored.
 * @return One of the @ref common_errors "common errors", #TARNEX_ERROR_INVALID_ATTRIBUTE or
 * #TARNEX_ERROR_TYPES_DO_NOT_MATCH.
 */
ViStatus _VI_FUNC TARNEX_SetAttributeViSession(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                               ViSession attributeValue);

/**
 * Always fails: every text is read-only.
 *
 * @param vi              Session handle.
 * @param repCapName      Ignored.
 * @param attributeId     Any attribute.
 * @param attributeValue  Ignored.
 * @return One of the @ref common_errors "common errors", #TARNEX_ERROR_INVALID_ATTRIBUTE,
 * #TARNEX_ERROR_TYPES_DO_NOT_MATCH or #TARNEX_ERROR_ATTR_NOT_WRITABLE.
 */
ViStatus _VI_FUNC TARNEX_SetAttributeViString(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                              ViConstString attributeValue);
/** @} */

/**
 * @defgroup configure Configuring the outputs
 * IVI-4.4, group IviDCPwrBase. Functions return 0, or a positive status, on success. On failure they return one of the
 * @ref common_errors "common errors" or the errors of a @ref channels "channel selector". Those that send something
 * also return #TARNEX_ERROR_INVALID_PARAMETER for @ref level_check "levels", #TARNEX_ERROR_IO, and the errors of
 * @ref status_check "status checking".
 * @{
 */

/**
 * Switches outputs on or off.
 *
 * @param vi           Session handle.
 * @param channelName  @ref channels "Channel selector".
 * @param enabled      VI_FALSE switches off, every other value switches on.
 * @return See @ref configure.
 */
ViStatus _VI_FUNC TARNEX_ConfigureOutputEnabled(ViSession vi, ViConstString channelName, ViBoolean enabled);

/**
 * Programs the voltage.
 *
 * @param vi           Session handle.
 * @param channelName  @ref channels "Channel selector".
 * @param level        V, within the channel's limits. See @ref level_check.
 * @return See @ref configure.
 */
ViStatus _VI_FUNC TARNEX_ConfigureVoltageLevel(ViSession vi, ViConstString channelName, ViReal64 level);

/**
 * Programs the current limit and, to the same value, the level of the over-current protection.
 *
 * @param vi           Session handle.
 * @param channelName  @ref channels "Channel selector".
 * @param behavior     #TARNEX_VAL_CURRENT_TRIP switches the over-current protection on, every other value off.
 * @param limit        A, within the channel's limits. See @ref level_check.
 * @return See @ref configure.
 */
ViStatus _VI_FUNC TARNEX_ConfigureCurrentLimit(ViSession vi, ViConstString channelName, ViInt32 behavior,
                                               ViReal64 limit);

/**
 * Programs the over-voltage protection: its level, then whether it is on.
 *
 * @param vi           Session handle.
 * @param channelName  @ref channels "Channel selector".
 * @param enabled      VI_FALSE switches the protection off, every other value on.
 * @param limit        V, within the channel's limits. See @ref level_check. It is checked and sent also when enabled is
 *                     VI_FALSE.
 * @return See @ref configure.
 */
ViStatus _VI_FUNC TARNEX_ConfigureOVP(ViSession vi, ViConstString channelName, ViBoolean enabled, ViReal64 limit);

/**
 * Checks the channel selector and has no other effect: each channel has one range.
 *
 * @param vi           Session handle.
 * @param channelName  @ref channels "Channel selector".
 * @param rangeType    Ignored.
 * @param range        Ignored.
 * @return See @ref configure.
 */
ViStatus _VI_FUNC TARNEX_ConfigureOutputRange(ViSession vi, ViConstString channelName, ViInt32 rangeType,
                                              ViReal64 range);

/**
 * Checks the channel selector and has no other effect. It does not reset a protection that has tripped.
 *
 * @param vi           Session handle.
 * @param channelName  @ref channels "Channel selector".
 * @return See @ref configure.
 */
ViStatus _VI_FUNC TARNEX_ResetOutputProtection(ViSession vi, ViConstString channelName);
/** @} */

/**
 * @defgroup query Querying the outputs
 * IVI-4.4, groups IviDCPwrBase and IviDCPwrMeasurement. Functions with a channel selector return 0, or a positive
 * status, on success. On failure they return one of the @ref common_errors "common errors", the errors of a @ref
 * channels "channel selector" or those of @ref status_check "status checking". With several channels selected, the
 * output parameter gets the value of the last channel that was processed.
 * @{
 */

/**
 * Returns the name of a channel. Sends nothing.
 *
 * @param vi          Session handle.
 * @param index       1 or 2.
 * @param bufferSize  Size of name in bytes, by the rules of #TARNEX_GetAttributeViString.
 * @param[out] name   The name. Not null, also when bufferSize is 0.
 * @return As #TARNEX_GetAttributeViString on success. Otherwise one of the @ref common_errors "common errors".
 * @retval TARNEX_ERROR_INVALID_VALUE  index is out of range. The description shows index - 1.
 */
ViStatus _VI_FUNC TARNEX_GetChannelName(ViSession vi, ViInt32 index, ViInt32 bufferSize, ViChar name[]);

/**
 * Returns the highest current that a channel can be set to. Sends no command of its own.
 *
 * @param vi                    Session handle.
 * @param channelName           @ref channels "Channel selector".
 * @param voltageLevel          Ignored: the limit does not depend on the voltage.
 * @param[out] maxCurrentLimit  A. Not null.
 * @return See @ref query.
 */
ViStatus _VI_FUNC TARNEX_QueryMaxCurrentLimit(ViSession vi, ViConstString channelName, ViReal64 voltageLevel,
                                              ViReal64* maxCurrentLimit);

/**
 * Returns the highest voltage that a channel can be set to. Sends no command of its own.
 *
 * @param vi                    Session handle.
 * @param channelName           @ref channels "Channel selector".
 * @param currentLimit          Ignored: the limit does not depend on the current.
 * @param[out] maxVoltageLevel  V. Not null.
 * @return See @ref query.
 */
ViStatus _VI_FUNC TARNEX_QueryMaxVoltageLevel(ViSession vi, ViConstString channelName, ViReal64 currentLimit,
                                              ViReal64* maxVoltageLevel);

/**
 * Returns whether an output is in a state.
 *
 * Required: the status of the query is ignored. When it fails, the function returns 0 with VI_FALSE, unless status
 * checking is on and fails too. The result does not prove a working connection.
 *
 * @param vi            Session handle.
 * @param channelName   @ref channels "Channel selector".
 * @param outputState   #TARNEX_VAL_OUTPUT_CONSTANT_VOLTAGE and #TARNEX_VAL_OUTPUT_CONSTANT_CURRENT query the
 *                      instrument. #TARNEX_VAL_OUTPUT_OVER_VOLTAGE, #TARNEX_VAL_OUTPUT_OVER_CURRENT and
 *                      #TARNEX_VAL_OUTPUT_UNREGULATED send nothing.
 * @param[out] inState  VI_TRUE or VI_FALSE; always VI_FALSE for the three states that send nothing, and in simulation.
 *                      Unchanged for an unknown outputState, which is not an error. Not null.
 * @return See @ref query.
 */
ViStatus _VI_FUNC TARNEX_QueryOutputState(ViSession vi, ViConstString channelName, ViInt32 outputState,
                                          ViBoolean* inState);

/**
 * Reads the programmed level back. It does not measure at the terminals.
 *
 * @param vi                Session handle.
 * @param channelName       @ref channels "Channel selector".
 * @param measurementType   #TARNEX_VAL_MEASURE_CURRENT or #TARNEX_VAL_MEASURE_VOLTAGE.
 * @param[out] measurement  Programmed current in A, or programmed voltage in V. Not null. Unchanged when the query
 *                          of the first channel fails.
 * @return See @ref query.
 * @retval TARNEX_ERROR_INVALID_PARAMETER  measurementType is unknown.
 * @retval TARNEX_ERROR_IO                 The exchange failed.
 */
ViStatus _VI_FUNC TARNEX_Measure(ViSession vi, ViConstString channelName, ViInt32 measurementType,
                                 ViReal64* measurement);
/** @} */

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* TARNEX_H */
