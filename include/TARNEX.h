/*
 * TARNEX: IVI-C driver for the TARNEX family of two-channel programmable DC power supplies of Keltor Technology.
 *
 * Implements the IVI inherent functions (IVI-3.2) and the groups IviDCPwrBase and IviDCPwrMeasurement of the IviDCPwr
 * class (IVI-4.4, version 3.0). This header is all that a caller needs; it compiles as C99 and as C++.
 *
 * Statuses
 *   Every function returns a ViStatus: negative values are errors, 0 is success, positive values are success with a
 *   remark. Test for "negative", never for "not 0": over a raw socket or a serial line, for example, a query that went
 *   well returns 0x3FFF0005, VISA's "the termination character was read".
 *   Most errors leave a description that TARNEX_GetError returns. The first error of a session stays until it is read
 *   or cleared.
 *
 * Channels
 *   The outputs are "OutputChannel1" (0 to 22.0 V, 0 to 5.5 A) and "OutputChannel2" (0 to 5.5 V, 0 to 16.8 A). Where a
 *   function takes a channelName, that is a selector: one name, a list "OutputChannel1,OutputChannel2" or a range
 *   "OutputChannel1-OutputChannel2"; virtual names from the configuration store may stand for any of these. Channels
 *   are served in the selector's order, and the first one that fails ends the call. Errors of any selector:
 *   TARNEX_ERROR_CHANNEL_NAME_REQUIRED (null or blank), TARNEX_ERROR_BADLY_FORMED_SELECTOR,
 *   TARNEX_ERROR_INVALID_NUMBER_OF_LEVELS_IN_SELECTOR, TARNEX_ERROR_INVALID_RANGE_IN_SELECTOR,
 *   TARNEX_ERROR_UNKNOWN_PHYSICAL_IDENTIFIER.
 *
 * Threads
 *   Any function may be called from any thread. Calls on one session wait for each other; calls on different sessions
 *   run in parallel. A session must not be closed while another thread uses it.
 *
 * Exceptions
 *   When an instrument answers a query with something that is no number or boolean, or a number beyond its type, a C++
 *   exception (std::invalid_argument or std::out_of_range) leaves the function; so does std::bad_alloc when memory runs
 *   out. The session stays unlocked and usable; a session that was being opened is not. It ends a C program; a C++
 *   program can catch it. On Windows that holds for programs of the compiler that built the library, mingw-w64's GCC;
 *   other compilers' programs must not rely on it.
 */
#ifndef TARNEX_H
#define TARNEX_H

/* Define TARNEX_NO_VI_TYPES before including this header where another one has declared the VISA types already. */
#ifndef TARNEX_NO_VI_TYPES

#include <stdint.h>

#ifndef _VI_FUNC
#ifdef _MSC_VER
#define _VI_FUNC __fastcall
#else
#define _VI_FUNC
#endif
#endif

typedef char ViChar;
typedef int16_t ViInt16;
typedef uint16_t ViUInt16;
typedef int32_t ViInt32;
typedef uint32_t ViUInt32;
typedef double ViReal64;
typedef ViUInt16 ViBoolean;
typedef ViInt32 ViStatus;
typedef ViUInt32 ViSession;
typedef ViUInt32 ViAttr;
typedef ViChar* ViString;
typedef const ViChar* ViConstString;
typedef ViChar* ViRsrc;

#define VI_NULL 0
#define VI_SUCCESS 0
#define VI_TRUE 1
#define VI_FALSE 0

#endif /* TARNEX_NO_VI_TYPES */

/* ---- Attributes: type, access, value or unit ------------------------------------------------------------- */

/* clang-format off */
/* IVI inherent attributes (IVI-3.2): base 1050000. They take no channel: repCapName is ignored. */
#define TARNEX_ATTR_RANGE_CHECK                                  1050002 /* ViBoolean, read/write: always VI_TRUE; setting it changes nothing */
#define TARNEX_ATTR_QUERY_INSTRUMENT_STATUS                      1050003 /* ViBoolean, read/write: whether "*ESR?" is read after channel functions and attributes */
#define TARNEX_ATTR_CACHE                                        1050004 /* ViBoolean, read/write: always VI_FALSE; setting it changes nothing */
#define TARNEX_ATTR_SIMULATE                                     1050005 /* ViBoolean, read/write: see TARNEX_SetAttributeViBoolean */
#define TARNEX_ATTR_RECORD_COERCIONS                             1050006 /* ViBoolean, read/write: always VI_FALSE; setting it changes nothing */
#define TARNEX_ATTR_DRIVER_SETUP                                 1050007 /* ViString, read-only: text of the DriverSetup clause in force */
#define TARNEX_ATTR_INTERCHANGE_CHECK                            1050021 /* ViBoolean, read/write: always VI_FALSE; setting it changes nothing */
#define TARNEX_ATTR_CHANNEL_COUNT                                1050203 /* ViInt32, read-only: 2 */
#define TARNEX_ATTR_SPECIFIC_DRIVER_PREFIX                       1050302 /* ViString, read-only: "TARNEX" */
#define TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR                       1050304 /* ViString, read-only: VISA resource string in use */
#define TARNEX_ATTR_LOGICAL_NAME                                 1050305 /* ViString, read-only: resource name given, when the configuration store holds this driver; else "" */
#define TARNEX_ATTR_SUPPORTED_INSTRUMENT_MODELS                  1050327 /* ViString, read-only: "TX4410,TX4520" */
#define TARNEX_ATTR_GROUP_CAPABILITIES                           1050401 /* ViString, read-only: "IviDCPwrBase,IviDCPwrMeasurement" */
#define TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION                 1050510 /* ViString, read-only: fourth field of the "*IDN?" reply; "V1.00" in a session opened in simulation */
#define TARNEX_ATTR_INSTRUMENT_MANUFACTURER                      1050511 /* ViString, read-only: first field of the "*IDN?" reply; the driver's vendor in simulation */
#define TARNEX_ATTR_INSTRUMENT_MODEL                             1050512 /* ViString, read-only: second field of the "*IDN?" reply; "TX6300" in a session opened in simulation */
#define TARNEX_ATTR_SPECIFIC_DRIVER_VENDOR                       1050513 /* ViString, read-only: "Keltor Technology" */
#define TARNEX_ATTR_SPECIFIC_DRIVER_DESCRIPTION                  1050514 /* ViString, read-only: "IVI-C Driver for TARNEX" */
#define TARNEX_ATTR_SPECIFIC_DRIVER_CLASS_SPEC_MAJOR_VERSION     1050515 /* ViInt32, read-only: 3 */
#define TARNEX_ATTR_SPECIFIC_DRIVER_CLASS_SPEC_MINOR_VERSION     1050516 /* ViInt32, read-only: 0 */
#define TARNEX_ATTR_SPECIFIC_DRIVER_REVISION                     1050551 /* ViString, read-only: "1.0.0.0" */

/* IviDCPwr attributes (IVI-4.4): base 1250000. repCapName selects the channel. */
#define TARNEX_ATTR_VOLTAGE_LEVEL                                1250001 /* ViReal64, read/write: V */
#define TARNEX_ATTR_OVP_ENABLED                                  1250002 /* ViBoolean, read/write: over-voltage protection */
#define TARNEX_ATTR_OVP_LIMIT                                    1250003 /* ViReal64, read/write: V */
#define TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR                       1250004 /* ViInt32, read/write: TARNEX_VAL_CURRENT_REGULATE or TARNEX_VAL_CURRENT_TRIP; others are refused */
#define TARNEX_ATTR_CURRENT_LIMIT                                1250005 /* ViReal64, read/write: A; setting it sets the over-current protection level too */
#define TARNEX_ATTR_OUTPUT_ENABLED                               1250006 /* ViBoolean, read/write: whether the output is on */
/* clang-format on */

/* ---- Values (IVI-4.4) ------------------------------------------------------------------------------------ */

/* What happens when a load draws more than the current limit. */
#define TARNEX_VAL_CURRENT_REGULATE 0 /* the output goes into constant current */
#define TARNEX_VAL_CURRENT_TRIP 1     /* the over-current protection switches the output off */

/* TARNEX_ConfigureOutputRange */
#define TARNEX_VAL_RANGE_CURRENT 0
#define TARNEX_VAL_RANGE_VOLTAGE 1

/* TARNEX_QueryOutputState */
#define TARNEX_VAL_OUTPUT_CONSTANT_VOLTAGE 0
#define TARNEX_VAL_OUTPUT_CONSTANT_CURRENT 1
#define TARNEX_VAL_OUTPUT_OVER_VOLTAGE 2
#define TARNEX_VAL_OUTPUT_OVER_CURRENT 3
#define TARNEX_VAL_OUTPUT_UNREGULATED 4

/* TARNEX_Measure */
#define TARNEX_VAL_MEASURE_CURRENT 0
#define TARNEX_VAL_MEASURE_VOLTAGE 1

/* ---- Status codes and their messages --------------------------------------------------------------------- */

/* clang-format off */
#define TARNEX_ERROR_IO                                     ((ViStatus)0xBFFA4214) /* I/O error. */
#define TARNEX_ERROR_IO_TIMEOUT                             ((ViStatus)0xBFFA4215) /* I/O timeout error. */
#define TARNEX_ERROR_CANNOT_RECOVER                         ((ViStatus)0xBFFA0000) /* Failure cannot recover. */
#define TARNEX_ERROR_INSTRUMENT_STATUS                      ((ViStatus)0xBFFA0001) /* Instrument error detected.  Use ErrorQuery() to determine the error(s). */
#define TARNEX_ERROR_CANNOT_OPEN_FILE                       ((ViStatus)0xBFFA0002) /* Cannot open file. */
#define TARNEX_ERROR_READING_FILE                           ((ViStatus)0xBFFA0003) /* Error reading file. */
#define TARNEX_ERROR_WRITING_FILE                           ((ViStatus)0xBFFA0004) /* Error writing file. */
#define TARNEX_ERROR_INVALID_PATHNAME                       ((ViStatus)0xBFFA000B) /* The pathname is invalid. */
#define TARNEX_ERROR_INVALID_ATTRIBUTE                      ((ViStatus)0xBFFA000C) /* Attribute ID '%s' not recognized. */
#define TARNEX_ERROR_ATTR_NOT_WRITABLE                      ((ViStatus)0xBFFA000D) /* Attribute '%s' is read-only. */
#define TARNEX_ERROR_ATTR_NOT_READABLE                      ((ViStatus)0xBFFA000E) /* Attribute '%s' is write-only. */
#define TARNEX_ERROR_INVALID_VALUE                          ((ViStatus)0xBFFA0010) /* Invalid value '%s' for function '%s', parameter '%s'. */
#define TARNEX_ERROR_FUNCTION_NOT_SUPPORTED                 ((ViStatus)0xBFFA0011) /* Does not support this class-compliant feature: function '%s' */
#define TARNEX_ERROR_ATTRIBUTE_NOT_SUPPORTED                ((ViStatus)0xBFFA0012) /* Does not support this class-compliant feature: attribute '%s'. */
#define TARNEX_ERROR_VALUE_NOT_SUPPORTED                    ((ViStatus)0xBFFA0013) /* Does not support this class-compliant feature:  Enumeration value '%s' passed as the value for parameter '%s' in function '%s'. */
#define TARNEX_ERROR_TYPES_DO_NOT_MATCH                     ((ViStatus)0xBFFA0015) /* %sAttribute%s called for attribute '%s' of type '%s'. */
#define TARNEX_ERROR_NOT_INITIALIZED                        ((ViStatus)0xBFFA001D) /* A connection to the instrument has not been established. */
#define TARNEX_ERROR_UNKNOWN_CHANNEL_NAME                   ((ViStatus)0xBFFA0020) /* Unknown channel name. */
#define TARNEX_ERROR_TOO_MANY_OPEN_FILES                    ((ViStatus)0xBFFA0023) /* Too many files are open. */
#define TARNEX_ERROR_CHANNEL_NAME_REQUIRED                  ((ViStatus)0xBFFA0044) /* A channel name is required. */
#define TARNEX_ERROR_MISSING_OPTION_NAME                    ((ViStatus)0xBFFA0049) /* The option string is missing an option name. */
#define TARNEX_ERROR_MISSING_OPTION_VALUE                   ((ViStatus)0xBFFA004A) /* The option string is missing an option value. */
#define TARNEX_ERROR_BAD_OPTION_NAME                        ((ViStatus)0xBFFA004B) /* The '%s' name in the option string is unknown. */
#define TARNEX_ERROR_BAD_OPTION_VALUE                       ((ViStatus)0xBFFA004C) /* The '%s' value in the option string is unknown. */
#define TARNEX_ERROR_OUT_OF_MEMORY                          ((ViStatus)0xBFFA0056) /* Could not allocate necessary memory. */
#define TARNEX_ERROR_OPERATION_PENDING                      ((ViStatus)0xBFFA0057) /* Operation in progress. */
#define TARNEX_ERROR_NULL_POINTER                           ((ViStatus)0xBFFA0058) /* Null pointer passed for function '%s', parameter '%s'. */
#define TARNEX_ERROR_UNEXPECTED_RESPONSE                    ((ViStatus)0xBFFA0059) /* Unexpected response from instrument. */
#define TARNEX_ERROR_FILE_NOT_FOUND                         ((ViStatus)0xBFFA005B) /* File not found. */
#define TARNEX_ERROR_INVALID_FILE_FORMAT                    ((ViStatus)0xBFFA005C) /* Invalid file format. */
#define TARNEX_ERROR_STATUS_NOT_AVAILABLE                   ((ViStatus)0xBFFA005D) /* The instrument status is not available. */
#define TARNEX_ERROR_ID_QUERY_FAILED                        ((ViStatus)0xBFFA005E) /* Instrument ID query failed. */
#define TARNEX_ERROR_RESET_FAILED                           ((ViStatus)0xBFFA005F) /* Instrument reset failed. */
#define TARNEX_ERROR_RESOURCE_UNKNOWN                       ((ViStatus)0xBFFA0060) /* Unknown resource. */
#define TARNEX_ERROR_ALREADY_INITIALIZED                    ((ViStatus)0xBFFA0061) /* The driver is already initialized. */
#define TARNEX_ERROR_CANNOT_CHANGE_SIMULATION_STATE         ((ViStatus)0xBFFA0062) /* The simulation state cannot be changed. */
#define TARNEX_ERROR_INVALID_NUMBER_OF_LEVELS_IN_SELECTOR   ((ViStatus)0xBFFA0063) /* The number of levels in the selector is not valid for the '%s' repeated capability. */
#define TARNEX_ERROR_INVALID_RANGE_IN_SELECTOR              ((ViStatus)0xBFFA0064) /* The range '%s' is not valid for the repeated capability '%s'. */
#define TARNEX_ERROR_UNKNOWN_NAME_IN_SELECTOR               ((ViStatus)0xBFFA0065) /* Unknown name in selector. */
#define TARNEX_ERROR_BADLY_FORMED_SELECTOR                  ((ViStatus)0xBFFA0066) /* The repeated capability selector is badly-formed. */
#define TARNEX_ERROR_UNKNOWN_PHYSICAL_IDENTIFIER            ((ViStatus)0xBFFA0067) /* Unknown physical repeated capability selector. */
#define TARNEX_ERROR_INVALID_SESSION_HANDLE                 ((ViStatus)0xBFFA1190) /* Invalid session handle. */
#define TARNEX_ERROR_NOT_SUPPORTED                          ((ViStatus)0xBFFA4216) /* The operation (attribute or function) is not supported. */
#define TARNEX_ERROR_INVALID_PARAMETER                      ((ViStatus)0xBFFA4217) /* Attribute or function parameter value is invalid (out of range or not supported). */
#define TARNEX_ERROR_TRIGGER_NOT_SOFTWARE                   ((ViStatus)0xBFFA1001) /* The trigger source is not set to software trigger. */
#define TARNEX_WARN_NSUP_ID_QUERY                           ((ViStatus)0x3FFA0065) /* ID Query is not supported by this instrument. */
#define TARNEX_WARN_NSUP_RESET                              ((ViStatus)0x3FFA0066) /* Reset is not supported by this instrument. */
#define TARNEX_WARN_NSUP_SELF_TEST                          ((ViStatus)0x3FFA0067) /* Self test is not supported by this instrument. */
#define TARNEX_WARN_NSUP_ERROR_QUERY                        ((ViStatus)0x3FFA0068) /* Error query is not supported by this instrument. */
#define TARNEX_WARN_NSUP_REV_QUERY                          ((ViStatus)0x3FFA0069) /* Firmware revision query is not supported by this instrument. */
/* clang-format on */

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Opening and closing --------------------------------------------------------------------------------- */

/**
 * Opens a session; as TARNEX_InitWithOptions with an empty option string.
 */
ViStatus _VI_FUNC TARNEX_init(ViRsrc resourceName, ViBoolean idQuery, ViBoolean reset, ViSession* newVi);

/**
 * Opens a session with an instrument.
 *
 * Call TARNEX_ClearError(VI_NULL) first: when opening fails, the description is left with the calling thread, and the
 * first error there stays until it is read (TARNEX_GetError with VI_NULL) or cleared.
 *
 * @param resourceName  VISA resource string, for example "TCPIP0::192.168.1.20::5025::SOCKET". When the IVI
 *                      configuration store holds a driver session named "TARNEX", its hardware asset's resource is used
 *                      instead. Null counts as empty.
 * @param idQuery       VI_TRUE: fail with TARNEX_ERROR_ID_QUERY_FAILED unless the model is a supported one. In
 *                      simulation the model is "TX6300", which is none, so that an ID query fails there. Any other
 *                      value counts as VI_FALSE.
 * @param reset         Not VI_FALSE: reset the instrument after opening; a failure of the reset is not reported.
 * @param optionString  Inherent options and a DriverSetup clause, which runs to the end of the line:
 *                      "Simulate=1, QueryInstrStatus=1, DriverSetup=Model:TX4410". Names and values in any letter case;
 *                      values "true", "vi_true", "1", "false", "vi_false", "0". Options: Cache, InterchangeCheck (must
 *                      stay false), QueryInstrStatus, RangeCheck, RecordCoercions, Simulate. The DriverSetup key Model
 *                      names the model to simulate; the simulator answers "TX6300" all the same. Null counts as empty.
 * @param newVi         The session's handle; 0 when opening fails. Not null.
 *
 * Errors: TARNEX_ERROR_NULL_POINTER, TARNEX_ERROR_BAD_OPTION_NAME, TARNEX_ERROR_BAD_OPTION_VALUE,
 * TARNEX_ERROR_CANNOT_RECOVER (an option given twice), TARNEX_ERROR_IO, TARNEX_ERROR_ID_QUERY_FAILED,
 * TARNEX_ERROR_INSTRUMENT_STATUS, and the configuration server's own (0xBFFA12xx).
 */
ViStatus _VI_FUNC TARNEX_InitWithOptions(ViRsrc resourceName, ViBoolean idQuery, ViBoolean reset,
                                         ViConstString optionString, ViSession* newVi);

/**
 * Closes the session: the connection goes, the outputs stay as they are. Not thread-safe against other calls on the
 * same session. A handle that is closed already is TARNEX_ERROR_INVALID_SESSION_HANDLE, here and in every other
 * function but TARNEX_error_message, and TARNEX_GetAttributeViString with size 0.
 */
ViStatus _VI_FUNC TARNEX_close(ViSession vi);

/* ---- IVI inherent functions (IVI-3.2) -------------------------------------------------------------------- */

/** Resets the instrument ("*RST"). */
ViStatus _VI_FUNC TARNEX_reset(ViSession vi);

/** The same function as TARNEX_reset under IVI's second name. */
ViStatus _VI_FUNC TARNEX_ResetWithDefaults(ViSession vi);

/**
 * Not supported by these instruments: returns TARNEX_WARN_NSUP_SELF_TEST and writes nothing. Null pointers are
 * TARNEX_ERROR_NULL_POINTER all the same.
 */
ViStatus _VI_FUNC TARNEX_self_test(ViSession vi, ViInt16* testResult, ViChar testMessage[]);

/**
 * Reads the oldest entry of the instrument's error queue (":SYSTem:ERRor?"); code 0 when it is empty.
 *
 * @param errorCode     Not null.
 * @param errorMessage  The text as the instrument sends it, quotes included, tabs and line ends around it not.
 *                      1024 bytes always suffice. Not null.
 *
 * Returns 0 on success over every interface. TARNEX_ERROR_CANNOT_RECOVER when the reply has not exactly two fields.
 */
ViStatus _VI_FUNC TARNEX_error_query(ViSession vi, ViInt32* errorCode, ViChar errorMessage[]);

/**
 * The message of a status code, its %s placeholders unfilled.
 *
 * @param vi            May be VI_NULL.
 * @param errorMessage  256 bytes. Not null.
 *
 * A code that the driver does not know is TARNEX_ERROR_INVALID_VALUE, and errorMessage stays as it was.
 */
ViStatus _VI_FUNC TARNEX_error_message(ViSession vi, ViStatus errorCode, ViChar errorMessage[]);

/**
 * Revisions of driver ("1.0.0.0") and instrument firmware ("Sim1.0.0.0" in simulation; else as read when the session
 * was opened).
 *
 * @param driverRev, instrRev  256 bytes each; may be null.
 */
ViStatus _VI_FUNC TARNEX_revision_query(ViSession vi, ViChar driverRev[], ViChar instrRev[]);

/** Switches all outputs off (":OUTPut:STATe ALL,OFF"). */
ViStatus _VI_FUNC TARNEX_Disable(ViSession vi);

/** Drops cached attribute values. This driver caches none, so that nothing changes. */
ViStatus _VI_FUNC TARNEX_InvalidateAllAttributes(ViSession vi);

/**
 * Takes the session's lock for the calling thread, which can go on calling every function; other threads wait. Locks
 * nest.
 *
 * @param callerHasLock  May be null. When it points to VI_TRUE nothing is done; otherwise it is set.
 */
ViStatus _VI_FUNC TARNEX_LockSession(ViSession vi, ViBoolean* callerHasLock);

/**
 * Gives one lock of TARNEX_LockSession back.
 *
 * @param callerHasLock  May be null. When it points to VI_FALSE nothing is done; otherwise it is cleared.
 *
 * A call that no lock came before changes nothing.
 */
ViStatus _VI_FUNC TARNEX_UnlockSession(ViSession vi, ViBoolean* callerHasLock);

/**
 * Returns and clears the session's first error; the calling thread's with VI_NULL.
 *
 * @param errorCode    May be null.
 * @param bufferSize   Size of description in bytes; 1024 always suffice. 0: return the size needed, clear nothing.
 *                     Negative: the buffer is large enough.
 * @param description  May be null when bufferSize is 0. What does not fit is cut, and the size needed is returned.
 */
ViStatus _VI_FUNC TARNEX_GetError(ViSession vi, ViStatus* errorCode, ViInt32 bufferSize, ViChar description[]);

/** Clears the session's error; the calling thread's with VI_NULL. */
ViStatus _VI_FUNC TARNEX_ClearError(ViSession vi);

/* ---- Attribute access ---------------------------------------------------------------------------------------------
 *
 * repCapName selects the channel of the IviDCPwr attributes: exactly one for getters, a selector for setters; the other
 * attributes ignore it. Errors: TARNEX_ERROR_INVALID_ATTRIBUTE, TARNEX_ERROR_TYPES_DO_NOT_MATCH,
 * TARNEX_ERROR_ATTR_NOT_WRITABLE, TARNEX_ERROR_NULL_POINTER, and those of the instrument's exchange.
 */

/** Reads an integer. @param attributeValue  Not null. */
ViStatus _VI_FUNC TARNEX_GetAttributeViInt32(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                             ViInt32* attributeValue);
/** Reads a real, in V or A. @param attributeValue  Not null. */
ViStatus _VI_FUNC TARNEX_GetAttributeViReal64(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                              ViReal64* attributeValue);
/** Reads a switch. @param attributeValue  Not null; VI_TRUE or VI_FALSE. */
ViStatus _VI_FUNC TARNEX_GetAttributeViBoolean(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                               ViBoolean* attributeValue);

/** No attribute has this type: always an error. */
ViStatus _VI_FUNC TARNEX_GetAttributeViSession(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                               ViSession* attributeValue);

/**
 * Reads a text.
 *
 * @param attributeValueBufferSize  Size of attributeValue in bytes. 0: return 4096, the one size that is ever reported
 *                                  as needed, and write nothing. Negative: the buffer has 4096 bytes.
 * @param attributeValue            May be null when the size is 0.
 *
 * Returns 4096 when the text fills the buffer to its last byte, be it cut or not.
 */
ViStatus _VI_FUNC TARNEX_GetAttributeViString(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                              ViInt32 attributeValueBufferSize, ViChar attributeValue[]);

/** Sets an integer. A value that the attribute does not have is TARNEX_ERROR_INVALID_PARAMETER. */
ViStatus _VI_FUNC TARNEX_SetAttributeViInt32(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                             ViInt32 attributeValue);
/** Sets a real, in V or A. One beyond the channel's limits is TARNEX_ERROR_INVALID_PARAMETER, but not in simulation. */
ViStatus _VI_FUNC TARNEX_SetAttributeViReal64(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                              ViReal64 attributeValue);

/**
 * Sets a switch; every non-zero value of the channel attributes counts as on, VI_TRUE alone of the others.
 *
 * TARNEX_ATTR_SIMULATE: a session opened in simulation stays there (TARNEX_ERROR_CANNOT_CHANGE_SIMULATION_STATE for
 * VI_FALSE). Setting VI_TRUE in any other session closes its connection and puts the simulator in the instrument's
 * place for good; VI_FALSE then clears the attribute only.
 */
ViStatus _VI_FUNC TARNEX_SetAttributeViBoolean(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                               ViBoolean attributeValue);

/** No attribute has this type: always an error. */
ViStatus _VI_FUNC TARNEX_SetAttributeViSession(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                               ViSession attributeValue);

/** All texts are read-only: always an error. */
ViStatus _VI_FUNC TARNEX_SetAttributeViString(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                              ViConstString attributeValue);

/* ---- Configuring the outputs (IviDCPwrBase) -----------------------------------------------------------------------
 *
 * A level outside a channel's limits is TARNEX_ERROR_INVALID_PARAMETER, and nothing further is sent; the channels
 * before it keep what they were given. NaN is sent as it is, for the instrument to refuse; the simulator refuses
 * nothing. A failed exchange is TARNEX_ERROR_IO. With QueryInstrStatus on, an error that the instrument reports is
 * TARNEX_ERROR_INSTRUMENT_STATUS.
 */

/** Switches outputs on or off; every non-zero value counts as on. */
ViStatus _VI_FUNC TARNEX_ConfigureOutputEnabled(ViSession vi, ViConstString channelName, ViBoolean enabled);

/** Programs the voltage. @param level  V */
ViStatus _VI_FUNC TARNEX_ConfigureVoltageLevel(ViSession vi, ViConstString channelName, ViReal64 level);

/**
 * Programs the current limit and, with the same value, the over-current protection level.
 *
 * @param behavior  TARNEX_VAL_CURRENT_TRIP switches the over-current protection on, every other value off.
 * @param limit     A
 */
ViStatus _VI_FUNC TARNEX_ConfigureCurrentLimit(ViSession vi, ViConstString channelName, ViInt32 behavior,
                                               ViReal64 limit);

/** Programs the over-voltage protection: the level first, also when enabled is false. @param limit  V */
ViStatus _VI_FUNC TARNEX_ConfigureOVP(ViSession vi, ViConstString channelName, ViBoolean enabled, ViReal64 limit);

/** The channels have one range each: checks the channel name and does nothing else. */
ViStatus _VI_FUNC TARNEX_ConfigureOutputRange(ViSession vi, ViConstString channelName, ViInt32 rangeType,
                                              ViReal64 range);

/** Checks the channel name and does nothing else. */
ViStatus _VI_FUNC TARNEX_ResetOutputProtection(ViSession vi, ViConstString channelName);

/* ---- Asking (IviDCPwrBase, IviDCPwrMeasurement) -------------------------------------------------------------------
 *
 * Output pointers must not be null (TARNEX_ERROR_NULL_POINTER). With several channels selected, the last one's value is
 * what the caller gets.
 */

/**
 * The name of a channel.
 *
 * @param index       Counted from 1.
 * @param bufferSize  As attributeValueBufferSize of TARNEX_GetAttributeViString.
 * @param name        Not null, whatever the size.
 */
ViStatus _VI_FUNC TARNEX_GetChannelName(ViSession vi, ViInt32 index, ViInt32 bufferSize, ViChar name[]);

/** The highest current that a channel can be set to, in A, whatever the voltage level. */
ViStatus _VI_FUNC TARNEX_QueryMaxCurrentLimit(ViSession vi, ViConstString channelName, ViReal64 voltageLevel,
                                              ViReal64* maxCurrentLimit);

/** The highest voltage that a channel can be set to, in V, whatever the current limit. */
ViStatus _VI_FUNC TARNEX_QueryMaxVoltageLevel(ViSession vi, ViConstString channelName, ViReal64 currentLimit,
                                              ViReal64* maxVoltageLevel);

/**
 * Whether an output is in a state. Constant voltage and constant current are asked of the instrument; for the three
 * others the answer is always VI_FALSE; for any other value inState stays as it was.
 */
ViStatus _VI_FUNC TARNEX_QueryOutputState(ViSession vi, ViConstString channelName, ViInt32 outputState,
                                          ViBoolean* inState);

/**
 * Reads back the programmed level, in V or A: not the voltage or current at the terminals. Over sockets and serial
 * lines the first channel's, also when several are selected: a query's positive status ends the walk.
 *
 * @param measurementType  TARNEX_VAL_MEASURE_CURRENT or TARNEX_VAL_MEASURE_VOLTAGE; else
 * TARNEX_ERROR_INVALID_PARAMETER.
 */
ViStatus _VI_FUNC TARNEX_Measure(ViSession vi, ViConstString channelName, ViInt32 measurementType,
                                 ViReal64* measurement);

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* TARNEX_H */
