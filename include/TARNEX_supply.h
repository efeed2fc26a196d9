/**
 * @file TARNEX_supply.h
 * Everything that a power supply of the TARNEX family can do, on a session of the IVI driver.
 *
 * The functions work on a ViSession of the driver (TARNEX.h), or on one of TARNEXSupply_Open: same connection, same
 * instrument or simulator, same lock, same channel names and selectors, same error record. Link with TARNEX_supply and
 * TARNEX.
 *
 * Rules for every function
 * - Success is 0. Errors are negative; TARNEX_GetError(vi, ...) then returns a description with the command and the
 *   reason. Statuses are those of TARNEX.h and the TARNEXSUPPLY_ERROR_ ones below; TARNEXSupply_ErrorMessage has the
 *   message of both.
 * - No exception leaves this library, and nothing is written to standard output.
 * - channelName: functions that set take a selector ("OutputChannel1", "OutputChannel1,OutputChannel2", virtual names);
 *   functions that read take exactly one channel. Channels are set one after another; an error ends the call and leaves
 *   the channels before it changed.
 * - Switches: VI_FALSE is off, any other value is on; results are VI_TRUE or VI_FALSE.
 * - Values outside a channel's limits, NaN, infinities, unknown enumeration values and negative indexes are
 *   TARNEX_ERROR_INVALID_PARAMETER; nothing is sent to that channel. The limits are not checked in simulation.
 * - A null pointer for a result is TARNEX_ERROR_NULL_POINTER.
 * - Results are written only on success.
 * - A time-out is TARNEX_ERROR_IO_TIMEOUT, another failed exchange TARNEX_ERROR_IO, and a malformed reply
 *   TARNEX_ERROR_UNEXPECTED_RESPONSE.
 * - A late reply never answers a later question: after a failed exchange, also one of a TARNEX.h function, the next
 *   call of this library brings the connection back into step first. It uses the interface's device clear, or closes
 *   the connection, opens it again and checks that the same instrument answers. When that fails the call is
 *   TARNEXSUPPLY_ERROR_OUT_OF_STEP, and the next call tries again.
 * - With the option QueryInstrStatus, an error that the instrument reports is TARNEX_ERROR_INSTRUMENT_STATUS.
 * - Thread-safe: every function takes the session's lock.
 *
 * A session is recognised by a tag at the address that the session service stores for it: a handle of another driver is
 * TARNEXSUPPLY_ERROR_OTHER_DRIVER, a driver of another version than this library TARNEXSUPPLY_ERROR_OTHER_VERSION.
 */
#ifndef TARNEX_SUPPLY_H
#define TARNEX_SUPPLY_H

#include "TARNEX.h"

/* clang-format off */
/* ---- Statuses: those of TARNEX.h, and */
#define TARNEXSUPPLY_ERROR_OTHER_DRIVER   ((ViStatus)0xBFFA4301) /**< The session does not belong to this driver. */
#define TARNEXSUPPLY_ERROR_OTHER_VERSION  ((ViStatus)0xBFFA4302) /**< The driver and the supply library are of different versions. */
#define TARNEXSUPPLY_ERROR_OUT_OF_STEP    ((ViStatus)0xBFFA4303) /**< The connection could not be brought back into step. */
#define TARNEXSUPPLY_ERROR_STILL_ON       ((ViStatus)0xBFFA4304) /**< The output is still on. */

/* ---- Values, with the keyword of each in the instrument's commands */
#define TARNEXSUPPLY_VAL_REGULATION_CONSTANT_VOLTAGE         (0) /**< "CV" */
#define TARNEXSUPPLY_VAL_REGULATION_CONSTANT_CURRENT         (1) /**< "CC" */

#define TARNEXSUPPLY_VAL_CURRENT_RANGE_AUTO                  (0) /**< "AUTO" */
#define TARNEXSUPPLY_VAL_CURRENT_RANGE_LOW                   (1) /**< "LOW" */
#define TARNEXSUPPLY_VAL_CURRENT_RANGE_HIGH                  (2) /**< "HIGH" */

#define TARNEXSUPPLY_VAL_CURRENT_RATE_62                     (0) /**< "62" */
#define TARNEXSUPPLY_VAL_CURRENT_RATE_4000                   (1) /**< "4000" */
#define TARNEXSUPPLY_VAL_CURRENT_RATE_8000                   (2) /**< "8000" */

#define TARNEXSUPPLY_VAL_TRIGGER_INPUT_D1                    (1) /**< "D1" */
#define TARNEXSUPPLY_VAL_TRIGGER_INPUT_D2                    (2) /**< "D2" */
#define TARNEXSUPPLY_VAL_TRIGGER_INPUT_D3                    (3) /**< "D3" */
#define TARNEXSUPPLY_VAL_TRIGGER_INPUT_D4                    (4) /**< "D4" */

#define TARNEXSUPPLY_VAL_PROTECTION_DELAY_ANY                (0) /**< "ANY" */
#define TARNEXSUPPLY_VAL_PROTECTION_DELAY_SETTING_CHANGE     (1) /**< "SCH" */

#define TARNEXSUPPLY_VAL_POWER_ON_RESET                      (0) /**< "RST" */
#define TARNEXSUPPLY_VAL_POWER_ON_LAST                       (1) /**< "LAST" */
#define TARNEXSUPPLY_VAL_POWER_ON_LAST_OFF                   (2) /**< "LOFF" */

#define TARNEXSUPPLY_VAL_PAIR_OFF                            (0) /**< "OFF" */
#define TARNEXSUPPLY_VAL_PAIR_SERIES                         (1) /**< "SER" */
#define TARNEXSUPPLY_VAL_PAIR_PARALLEL                       (2) /**< "PAR" */

#define TARNEXSUPPLY_VAL_OFF_MODE_BLEEDER_ON                 (0) /**< "BLEON" */
#define TARNEXSUPPLY_VAL_OFF_MODE_BLEEDER_OFF                (1) /**< "BLEOFF" */

#define TARNEXSUPPLY_VAL_LIST_STATE_STOPPED                  (0) /**< "STOPPED" */
#define TARNEXSUPPLY_VAL_LIST_STATE_READY                    (1) /**< "READY" */
#define TARNEXSUPPLY_VAL_LIST_STATE_RUNNING                  (2) /**< "RUNNING" */
#define TARNEXSUPPLY_VAL_LIST_STATE_PAUSED                   (3) /**< "PAUSED" */

#define TARNEXSUPPLY_VAL_LIST_END_OFF                        (0) /**< "OFF" */
#define TARNEXSUPPLY_VAL_LIST_END_LAST                       (1) /**< "LAST" */

#define TARNEXSUPPLY_VAL_LIST_TEMPLATE_SINE                  (0) /**< "SINE" */
#define TARNEXSUPPLY_VAL_LIST_TEMPLATE_PULSE                 (1) /**< "PULSE" */
#define TARNEXSUPPLY_VAL_LIST_TEMPLATE_RAMP                  (2) /**< "RAMP" */
#define TARNEXSUPPLY_VAL_LIST_TEMPLATE_UP                    (3) /**< "UP" */
#define TARNEXSUPPLY_VAL_LIST_TEMPLATE_DOWN                  (4) /**< "DN" */
#define TARNEXSUPPLY_VAL_LIST_TEMPLATE_UP_DOWN               (5) /**< "UPDN" */
#define TARNEXSUPPLY_VAL_LIST_TEMPLATE_RISE                  (6) /**< "RISE" */
#define TARNEXSUPPLY_VAL_LIST_TEMPLATE_FALL                  (7) /**< "FALL" */

#define TARNEXSUPPLY_VAL_LIST_OBJECT_VOLTAGE                 (0) /**< "V" */
#define TARNEXSUPPLY_VAL_LIST_OBJECT_CURRENT                 (1) /**< "C" */

#define TARNEXSUPPLY_VAL_DELAY_STATE_STOPPED                 (0) /**< "STOPPED" */
#define TARNEXSUPPLY_VAL_DELAY_STATE_RUNNING                 (1) /**< "RUNNING" */

#define TARNEXSUPPLY_VAL_DELAY_END_OFF                       (0) /**< "OFF" */
#define TARNEXSUPPLY_VAL_DELAY_END_ON                        (1) /**< "ON" */
#define TARNEXSUPPLY_VAL_DELAY_END_LAST                      (2) /**< "LAST" */

#define TARNEXSUPPLY_VAL_DELAY_GENERATE_FIXED                (0) /**< "FIX" */
#define TARNEXSUPPLY_VAL_DELAY_GENERATE_INCREASE             (1) /**< "INC" */
#define TARNEXSUPPLY_VAL_DELAY_GENERATE_DECREASE             (2) /**< "DEC" */

#define TARNEXSUPPLY_VAL_DELAY_PATTERN_OFF_FIRST             (0) /**< "01P" */
#define TARNEXSUPPLY_VAL_DELAY_PATTERN_ON_FIRST              (1) /**< "10P" */

/* ---- Sizes */
#define TARNEXSUPPLY_CHANNEL_COUNT                           (2) /**< Number of channels that TARNEXSupply_ReadStates reads. */
/* clang-format on */

/** The state of one channel. */
typedef struct TARNEXSupply_ChannelState {
    ViInt32 channel;         /**< number, from 1 */
    ViBoolean outputEnabled; /**< VI_TRUE: on */
    ViInt32 regulationMode;  /**< TARNEXSUPPLY_VAL_REGULATION_... */
    ViReal64 volts;          /**< measured */
    ViReal64 amperes;        /**< measured */
    ViReal64 watts;          /**< measured */
    ViReal64 voltageLevel;   /**< programmed, V */
    ViReal64 currentLimit;   /**< programmed, A */
} TARNEXSupply_ChannelState;

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Sessions */

/**
 * Opens a session as TARNEX_InitWithOptions(name, VI_FALSE, VI_FALSE, options, vi), and lets no exception through.
 *
 * @param name       VISA resource string; null counts as empty.
 * @param options    Option string; null counts as empty.
 * @param timeoutMs  I/O time-out in ms after the opening, which itself has 2000 ms per exchange; 0 keeps 2000 ms.
 * @param vi         The handle; 0 on failure. Not null.
 *
 * On failure the error is in the record of the calling thread: TARNEX_GetError(VI_NULL, ...). An earlier record of the
 * thread is cleared first.
 */
ViStatus _VI_FUNC TARNEXSupply_Open(ViConstString name, ViConstString options, ViInt32 timeoutMs, ViSession* vi);

/** Closes a session as TARNEX_close, and lets no exception through. Waits for a call that another thread has under way.
 * A call that waits for the lock meanwhile returns TARNEX_ERROR_INVALID_SESSION_HANDLE. */
ViStatus _VI_FUNC TARNEXSupply_Close(ViSession vi);

/** Reads the I/O time-out in ms. */
ViStatus _VI_FUNC TARNEXSupply_GetTimeout(ViSession vi, ViInt32* timeoutMs);
/** Sets the I/O time-out in ms, at least 1. */
ViStatus _VI_FUNC TARNEXSupply_SetTimeout(ViSession vi, ViInt32 timeoutMs);

/** Sends a command as it is, without a reply. After a command that contains a question mark the next call brings the
 * connection back into step, because nothing has read the reply. */
ViStatus _VI_FUNC TARNEXSupply_Write(ViSession vi, ViConstString command);

/**
 * Sends a command as it is and reads its reply, without the line end. A simulated instrument replies with empty text.
 *
 * @param vi          The session.
 * @param command     Without a line end, or with one line feed at its end.
 * @param bufferSize  Size of reply in bytes. A longer reply is truncated, and the required size is returned.
 * @param reply       At most 1023 characters and a NUL. A longer reply is TARNEX_ERROR_UNEXPECTED_RESPONSE.
 */
ViStatus _VI_FUNC TARNEXSupply_Query(ViSession vi, ViConstString command, ViInt32 bufferSize, ViChar reply[]);

/** Receives what goes over the wire: a command (sent is VI_TRUE) or a reply, and VISA's status. seconds counts from the
 * call of TARNEXSupply_Trace on the monotonic clock. text is not zero-terminated and may hold any byte. The callback
 * runs under the session's lock and must not call functions on the session. */
typedef void(_VI_FUNC* TARNEXSupply_TraceCallback)(void* context, ViReal64 seconds, ViBoolean sent, ViStatus status,
                                                   const ViChar* text, ViInt32 size);

/** Reports the traffic of the session, of TARNEX.h functions too, to a callback; null ends the reports. A simulated
 *  instrument has no traffic. */
ViStatus _VI_FUNC TARNEXSupply_Trace(ViSession vi, TARNEXSupply_TraceCallback callback, void* context);

/** Copies the message of a status to a buffer of 256 bytes. An unknown status is TARNEX_ERROR_INVALID_VALUE. */
ViStatus _VI_FUNC TARNEXSupply_ErrorMessage(ViStatus status, ViChar message[256]);

/* ---- The instrument as a whole */

/** Resets the instrument ("*RST"). */
ViStatus _VI_FUNC TARNEXSupply_Reset(ViSession vi);
/** Clears the status registers and the error queue ("*CLS"). */
ViStatus _VI_FUNC TARNEXSupply_ClearStatus(ViSession vi);
/** Reads and clears the event status register ("*ESR?"). */
ViStatus _VI_FUNC TARNEXSupply_QueryEventStatus(ViSession vi, ViInt32* value);
/** Reads the oldest entry of the error queue; code 0 when it is empty. message has bufferSize bytes; longer text is
 *  truncated. */
ViStatus _VI_FUNC TARNEXSupply_QueryError(ViSession vi, ViInt32* code, ViInt32 bufferSize, ViChar message[]);
/** Reads the questionable condition register of a channel. */
ViStatus _VI_FUNC TARNEXSupply_QueryQuestionableCondition(ViSession vi, ViConstString channelName, ViInt32* value);
/** Reads and clears the questionable event register of a channel. */
ViStatus _VI_FUNC TARNEXSupply_QueryQuestionableEvent(ViSession vi, ViConstString channelName, ViInt32* value);
/** Reads the limits of a channel's settings in V and A, inclusive. Sends nothing. */
ViStatus _VI_FUNC TARNEXSupply_GetLimits(ViSession vi, ViConstString channelName, ViReal64* minVolts,
                                         ViReal64* maxVolts, ViReal64* minAmperes, ViReal64* maxAmperes);
/** Reads the identity as it was read when the session was opened. Each buffer has 256 bytes and may be null. Sends
 * nothing. */
ViStatus _VI_FUNC TARNEXSupply_GetIdentity(ViSession vi, ViChar manufacturer[256], ViChar model[256],
                                           ViChar serialNumber[256], ViChar firmwareRevision[256]);
/** Resolves a selector to channel numbers. channels has room for capacity numbers; more channels than that are
 *  TARNEX_ERROR_INVALID_PARAMETER. Sends nothing. */
ViStatus _VI_FUNC TARNEXSupply_ResolveChannels(ViSession vi, ViConstString channelName, ViInt32 capacity,
                                               ViInt32 channels[], ViInt32* count);

/* ---- Switching off with certainty */

/**
 * Ends whatever drives an output and switches it off: stops list and delay mode if the channel is 1, which they drive,
 * switches the channel off and reads its state back.
 *
 * @param vi           The session.
 * @param channelName  Exactly one channel.
 * @param giveUpMs     After a failure the function brings the connection back into step, or opens it again, and repeats
 *                     all steps with growing pauses for this time in ms, with an I/O time-out of at most 2000 ms. The
 *                     call under way is finished, so the function may take longer by the I/O time-outs of one try.
 *                     0: one try.
 *
 * On success the instrument has confirmed that the output is off. On failure the output may still be on; the status is
 * that of the last try, TARNEXSUPPLY_ERROR_STILL_ON when the instrument answers that the output is on. Other threads
 * can use the session between two tries. Earlier errors of the session's record are cleared.
 */
ViStatus _VI_FUNC TARNEXSupply_EnsureOff(ViSession vi, ViConstString channelName, ViInt32 giveUpMs);

/* ---- Whole sequences in one call */

/** Replaces the list by count groups: volts, amperes and seconds have count values each. List mode must be off. */
ViStatus _VI_FUNC TARNEXSupply_UploadList(ViSession vi, ViInt32 count, const ViReal64 volts[], const ViReal64 amperes[],
                                          const ViReal64 seconds[]);
/** Replaces the delay sequence by count groups: enabled and seconds have count values each. Delay mode must be off. */
ViStatus _VI_FUNC TARNEXSupply_UploadDelay(ViSession vi, ViInt32 count, const ViBoolean enabled[],
                                           const ViReal64 seconds[]);
/** Reads the state of all channels. states has room for capacity channels, at least TARNEXSUPPLY_CHANNEL_COUNT. */
ViStatus _VI_FUNC TARNEXSupply_ReadStates(ViSession vi, ViInt32 capacity, TARNEXSupply_ChannelState states[],
                                          ViInt32* count);

/* clang-format off: one command of the instrument per line */

/* ---- Channel selection and bleeder */

/** Selects the channel for operation at the front panel. */
ViStatus _VI_FUNC TARNEXSupply_SelectChannel(ViSession vi, ViConstString channelName);
/** Reads the number of the selected channel, 1 or 2. */
ViStatus _VI_FUNC TARNEXSupply_GetSelectedChannel(ViSession vi, ViInt32* channel);
/** Switches the bleeder of the supply on or off. */
ViStatus _VI_FUNC TARNEXSupply_SetBleeder(ViSession vi, ViBoolean enabled);
/** Reads whether the bleeder of the supply is on. */
ViStatus _VI_FUNC TARNEXSupply_GetBleeder(ViSession vi, ViBoolean* enabled);

/* ---- Source: volts, amperes, seconds */

/** Sets the voltage level in V, within the limits of the channel. */
ViStatus _VI_FUNC TARNEXSupply_SetVoltage(ViSession vi, ViConstString channelName, ViReal64 volts);
/** Reads the voltage level in V. */
ViStatus _VI_FUNC TARNEXSupply_GetVoltage(ViSession vi, ViConstString channelName, ViReal64* volts);
/** Sets the level of the over-voltage protection (source subsystem) in V, within the limits of the channel. */
ViStatus _VI_FUNC TARNEXSupply_SetOverVoltageLevel(ViSession vi, ViConstString channelName, ViReal64 volts);
/** Reads the level of the over-voltage protection (source subsystem) in V. */
ViStatus _VI_FUNC TARNEXSupply_GetOverVoltageLevel(ViSession vi, ViConstString channelName, ViReal64* volts);
/** Switches the over-voltage protection (source subsystem) on or off. */
ViStatus _VI_FUNC TARNEXSupply_SetOverVoltageEnabled(ViSession vi, ViConstString channelName, ViBoolean enabled);
/** Reads whether the over-voltage protection (source subsystem) is on. */
ViStatus _VI_FUNC TARNEXSupply_GetOverVoltageEnabled(ViSession vi, ViConstString channelName, ViBoolean* enabled);
/** Switches remote sense (source subsystem) on or off. */
ViStatus _VI_FUNC TARNEXSupply_SetRemoteSense(ViSession vi, ViConstString channelName, ViBoolean enabled);
/** Reads whether remote sense (source subsystem) is on. */
ViStatus _VI_FUNC TARNEXSupply_GetRemoteSense(ViSession vi, ViConstString channelName, ViBoolean* enabled);
/** Sets the current limit in A, within the limits of the channel. */
ViStatus _VI_FUNC TARNEXSupply_SetCurrent(ViSession vi, ViConstString channelName, ViReal64 amperes);
/** Reads the current limit in A. */
ViStatus _VI_FUNC TARNEXSupply_GetCurrent(ViSession vi, ViConstString channelName, ViReal64* amperes);
/** Sets the level of the over-current protection (source subsystem) in A, within the limits of the channel. */
ViStatus _VI_FUNC TARNEXSupply_SetOverCurrentLevel(ViSession vi, ViConstString channelName, ViReal64 amperes);
/** Reads the level of the over-current protection (source subsystem) in A. */
ViStatus _VI_FUNC TARNEXSupply_GetOverCurrentLevel(ViSession vi, ViConstString channelName, ViReal64* amperes);
/** Switches the over-current protection (source subsystem) on or off. */
ViStatus _VI_FUNC TARNEXSupply_SetOverCurrentEnabled(ViSession vi, ViConstString channelName, ViBoolean enabled);
/** Reads whether the over-current protection (source subsystem) is on. */
ViStatus _VI_FUNC TARNEXSupply_GetOverCurrentEnabled(ViSession vi, ViConstString channelName, ViBoolean* enabled);
/** Sets the delay of the over-current protection (source subsystem) in s. */
ViStatus _VI_FUNC TARNEXSupply_SetOverCurrentDelay(ViSession vi, ViConstString channelName, ViReal64 seconds);
/** Reads the delay of the over-current protection (source subsystem) in s. */
ViStatus _VI_FUNC TARNEXSupply_GetOverCurrentDelay(ViSession vi, ViConstString channelName, ViReal64* seconds);
/** Sets the start of the over-current delay (source subsystem): TARNEXSUPPLY_VAL_PROTECTION_DELAY_.... */
ViStatus _VI_FUNC TARNEXSupply_SetOverCurrentDelayMode(ViSession vi, ViConstString channelName, ViInt32 mode);
/** Reads the start of the over-current delay (source subsystem): TARNEXSUPPLY_VAL_PROTECTION_DELAY_.... */
ViStatus _VI_FUNC TARNEXSupply_GetOverCurrentDelayMode(ViSession vi, ViConstString channelName, ViInt32* mode);

/* ---- Output and its protections */

/** Switches the output on or off. */
ViStatus _VI_FUNC TARNEXSupply_SetOutputEnabled(ViSession vi, ViConstString channelName, ViBoolean enabled);
/** Reads whether the output is on. */
ViStatus _VI_FUNC TARNEXSupply_GetOutputEnabled(ViSession vi, ViConstString channelName, ViBoolean* enabled);
/** Reads the regulation mode of the output: TARNEXSUPPLY_VAL_REGULATION_... An output that is off reads as constant
 * voltage. */
ViStatus _VI_FUNC TARNEXSupply_GetRegulationMode(ViSession vi, ViConstString channelName, ViInt32* mode);
/** Sets the level of the over-voltage protection (output subsystem) in V, within the limits of the channel. */
ViStatus _VI_FUNC TARNEXSupply_SetOvpLevel(ViSession vi, ViConstString channelName, ViReal64 volts);
/** Reads the level of the over-voltage protection (output subsystem) in V. */
ViStatus _VI_FUNC TARNEXSupply_GetOvpLevel(ViSession vi, ViConstString channelName, ViReal64* volts);
/** Switches the over-voltage protection (output subsystem) on or off. */
ViStatus _VI_FUNC TARNEXSupply_SetOvpEnabled(ViSession vi, ViConstString channelName, ViBoolean enabled);
/** Reads whether the over-voltage protection (output subsystem) is on. */
ViStatus _VI_FUNC TARNEXSupply_GetOvpEnabled(ViSession vi, ViConstString channelName, ViBoolean* enabled);
/** Sets the level of the over-current protection (output subsystem) in A, within the limits of the channel. */
ViStatus _VI_FUNC TARNEXSupply_SetOcpLevel(ViSession vi, ViConstString channelName, ViReal64 amperes);
/** Reads the level of the over-current protection (output subsystem) in A. */
ViStatus _VI_FUNC TARNEXSupply_GetOcpLevel(ViSession vi, ViConstString channelName, ViReal64* amperes);
/** Switches the over-current protection (output subsystem) on or off. */
ViStatus _VI_FUNC TARNEXSupply_SetOcpEnabled(ViSession vi, ViConstString channelName, ViBoolean enabled);
/** Reads whether the over-current protection (output subsystem) is on. */
ViStatus _VI_FUNC TARNEXSupply_GetOcpEnabled(ViSession vi, ViConstString channelName, ViBoolean* enabled);
/** Sets the delay of the over-current protection (output subsystem) in s. */
ViStatus _VI_FUNC TARNEXSupply_SetOcpDelay(ViSession vi, ViConstString channelName, ViReal64 seconds);
/** Reads the delay of the over-current protection (output subsystem) in s. */
ViStatus _VI_FUNC TARNEXSupply_GetOcpDelay(ViSession vi, ViConstString channelName, ViReal64* seconds);
/** Sets the start of the over-current delay (output subsystem): TARNEXSUPPLY_VAL_PROTECTION_DELAY_.... */
ViStatus _VI_FUNC TARNEXSupply_SetOcpDelayMode(ViSession vi, ViConstString channelName, ViInt32 mode);
/** Reads the start of the over-current delay (output subsystem): TARNEXSUPPLY_VAL_PROTECTION_DELAY_.... */
ViStatus _VI_FUNC TARNEXSupply_GetOcpDelayMode(ViSession vi, ViConstString channelName, ViInt32* mode);
/** Sets the state of the output after power-on: TARNEXSUPPLY_VAL_POWER_ON_.... */
ViStatus _VI_FUNC TARNEXSupply_SetPowerOnState(ViSession vi, ViConstString channelName, ViInt32 state);
/** Reads the state of the output after power-on: TARNEXSUPPLY_VAL_POWER_ON_.... */
ViStatus _VI_FUNC TARNEXSupply_GetPowerOnState(ViSession vi, ViConstString channelName, ViInt32* state);
/** Sets the pairing of the channels: TARNEXSUPPLY_VAL_PAIR_.... */
ViStatus _VI_FUNC TARNEXSupply_SetPairMode(ViSession vi, ViConstString channelName, ViInt32 mode);
/** Reads the pairing of the channels: TARNEXSUPPLY_VAL_PAIR_.... */
ViStatus _VI_FUNC TARNEXSupply_GetPairMode(ViSession vi, ViConstString channelName, ViInt32* mode);
/** Switches remote sense (output subsystem) on or off. */
ViStatus _VI_FUNC TARNEXSupply_SetOutputSense(ViSession vi, ViConstString channelName, ViBoolean enabled);
/** Reads whether remote sense (output subsystem) is on. */
ViStatus _VI_FUNC TARNEXSupply_GetOutputSense(ViSession vi, ViConstString channelName, ViBoolean* enabled);
/** Switches tracking on or off. */
ViStatus _VI_FUNC TARNEXSupply_SetTracking(ViSession vi, ViConstString channelName, ViBoolean enabled);
/** Reads whether tracking is on. */
ViStatus _VI_FUNC TARNEXSupply_GetTracking(ViSession vi, ViConstString channelName, ViBoolean* enabled);
/** Sets the bleeder while the output is off: TARNEXSUPPLY_VAL_OFF_MODE_.... */
ViStatus _VI_FUNC TARNEXSupply_SetOffMode(ViSession vi, ViConstString channelName, ViInt32 mode);
/** Reads the bleeder while the output is off: TARNEXSUPPLY_VAL_OFF_MODE_.... */
ViStatus _VI_FUNC TARNEXSupply_GetOffMode(ViSession vi, ViConstString channelName, ViInt32* mode);

/* ---- Measurement: volts, amperes, watts */

/** Measures voltage, current and power at the output with one query. */
ViStatus _VI_FUNC TARNEXSupply_MeasureAll(ViSession vi, ViConstString channelName, ViReal64* volts, ViReal64* amperes,
                                          ViReal64* watts);
/** Measures the voltage at the output. */
ViStatus _VI_FUNC TARNEXSupply_MeasureVoltage(ViSession vi, ViConstString channelName, ViReal64* volts);
/** Measures the current at the output. */
ViStatus _VI_FUNC TARNEXSupply_MeasureCurrent(ViSession vi, ViConstString channelName, ViReal64* amperes);
/** Measures the power at the output. */
ViStatus _VI_FUNC TARNEXSupply_MeasurePower(ViSession vi, ViConstString channelName, ViReal64* watts);
/** Sets the range of the current measurement: TARNEXSUPPLY_VAL_CURRENT_RANGE_.... */
ViStatus _VI_FUNC TARNEXSupply_SetCurrentRange(ViSession vi, ViConstString channelName, ViInt32 range);
/** Reads the range of the current measurement: TARNEXSUPPLY_VAL_CURRENT_RANGE_.... */
ViStatus _VI_FUNC TARNEXSupply_GetCurrentRange(ViSession vi, ViConstString channelName, ViInt32* range);
/** Sets the rate of the current measurement: TARNEXSUPPLY_VAL_CURRENT_RATE_.... */
ViStatus _VI_FUNC TARNEXSupply_SetCurrentRate(ViSession vi, ViConstString channelName, ViInt32 rate);
/** Reads the rate of the current measurement: TARNEXSUPPLY_VAL_CURRENT_RATE_.... */
ViStatus _VI_FUNC TARNEXSupply_GetCurrentRate(ViSession vi, ViConstString channelName, ViInt32* rate);

/* ---- List mode. The instrument's manual defines a group's three reals and the numbers of a status */

/** Switches list mode on or off. */
ViStatus _VI_FUNC TARNEXSupply_SetListEnabled(ViSession vi, ViBoolean enabled);
/** Reads whether list mode is on. */
ViStatus _VI_FUNC TARNEXSupply_GetListEnabled(ViSession vi, ViBoolean* enabled);
/** Reads the progress of the list: state (TARNEXSUPPLY_VAL_LIST_STATE_...), elapsed time in s, group and cycle, both
 * counted from 0. */
ViStatus _VI_FUNC TARNEXSupply_GetListStatus(ViSession vi, ViInt32* state, ViReal64* seconds, ViInt32* group,
                                             ViInt32* cycle);
/** Sets the number of list cycles; 0 repeats without end. */
ViStatus _VI_FUNC TARNEXSupply_SetListCycles(ViSession vi, ViInt32 cycles);
/** Reads the number of list cycles; 0 repeats without end. */
ViStatus _VI_FUNC TARNEXSupply_GetListCycles(ViSession vi, ViInt32* cycles);
/** Sets the state of the output after the list: TARNEXSUPPLY_VAL_LIST_END_.... */
ViStatus _VI_FUNC TARNEXSupply_SetListEndState(ViSession vi, ViInt32 state);
/** Reads the state of the output after the list: TARNEXSUPPLY_VAL_LIST_END_.... */
ViStatus _VI_FUNC TARNEXSupply_GetListEndState(ViSession vi, ViInt32* state);
/** Reads the number of list groups. */
ViStatus _VI_FUNC TARNEXSupply_GetListGroupCount(ViSession vi, ViInt32* count);
/** Inserts a list group before the one at index, counted from 0. */
ViStatus _VI_FUNC TARNEXSupply_InsertListGroup(ViSession vi, ViInt32 index);
/** Deletes a list group. The index counts from 0. */
ViStatus _VI_FUNC TARNEXSupply_DeleteListGroup(ViSession vi, ViInt32 index);
/** Deletes all list groups. */
ViStatus _VI_FUNC TARNEXSupply_ClearListGroups(ViSession vi);
/** Sets a list group: volts, amperes, seconds. The index counts from 0. */
ViStatus _VI_FUNC TARNEXSupply_SetListGroup(ViSession vi, ViInt32 index, ViReal64 first, ViReal64 second,
                                            ViReal64 third);
/** Reads a list group: volts, amperes, seconds. The index counts from 0. */
ViStatus _VI_FUNC TARNEXSupply_GetListGroup(ViSession vi, ViInt32 index, ViReal64* first, ViReal64* second,
                                            ViReal64* third);

/* ---- List templates */

/** Sets the shape of the list template: TARNEXSUPPLY_VAL_LIST_TEMPLATE_.... */
ViStatus _VI_FUNC TARNEXSupply_SetListTemplate(ViSession vi, ViInt32 shape);
/** Reads the shape of the list template: TARNEXSUPPLY_VAL_LIST_TEMPLATE_.... */
ViStatus _VI_FUNC TARNEXSupply_GetListTemplate(ViSession vi, ViInt32* shape);
/** Selects what follows the list template (TARNEXSUPPLY_VAL_LIST_OBJECT_...) and sets the value of the other one in A
 * or V. */
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateObject(ViSession vi, ViInt32 object, ViReal64 value);
/** Reads what follows the list template and the value of the other one in A or V. */
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateObject(ViSession vi, ViInt32* object, ViReal64* value);
/** Sets the maximum of the list template in V or A. */
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateMax(ViSession vi, ViReal64 value);
/** Reads the maximum of the list template in V or A. */
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateMax(ViSession vi, ViReal64* value);
/** Sets the minimum of the list template in V or A. */
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateMin(ViSession vi, ViReal64 value);
/** Reads the minimum of the list template in V or A. */
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateMin(ViSession vi, ViReal64* value);
/** Sets the period of the list template in s. */
ViStatus _VI_FUNC TARNEXSupply_SetListTemplatePeriod(ViSession vi, ViReal64 seconds);
/** Reads the period of the list template in s. */
ViStatus _VI_FUNC TARNEXSupply_GetListTemplatePeriod(ViSession vi, ViReal64* seconds);
/** Sets the interval between groups of the list template in s. */
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateInterval(ViSession vi, ViReal64 seconds);
/** Reads the interval between groups of the list template in s. */
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateInterval(ViSession vi, ViReal64* seconds);
/** Sets the number of cycles of the list template. */
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateCycles(ViSession vi, ViInt32 cycles);
/** Reads the number of cycles of the list template. */
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateCycles(ViSession vi, ViInt32* cycles);
/** Switches the inversion of the list template on or off. */
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateInverted(ViSession vi, ViBoolean enabled);
/** Reads whether the inversion of the list template is on. */
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateInverted(ViSession vi, ViBoolean* enabled);
/** Sets the pulse width of the list template in s. */
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateWidth(ViSession vi, ViReal64 seconds);
/** Reads the pulse width of the list template in s. */
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateWidth(ViSession vi, ViReal64* seconds);
/** Sets the number of pulses of the list template. */
ViStatus _VI_FUNC TARNEXSupply_SetListTemplatePulseCount(ViSession vi, ViInt32 pulses);
/** Reads the number of pulses of the list template. */
ViStatus _VI_FUNC TARNEXSupply_GetListTemplatePulseCount(ViSession vi, ViInt32* pulses);
/** Sets the symmetry of the list template in percent. */
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateSymmetry(ViSession vi, ViInt32 percent);
/** Reads the symmetry of the list template in percent. */
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateSymmetry(ViSession vi, ViInt32* percent);
/** Sets the number of stairs of the list template. */
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateStairs(ViSession vi, ViInt32 stairs);
/** Reads the number of stairs of the list template. */
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateStairs(ViSession vi, ViInt32* stairs);
/** Sets the power of the exponential list templates. */
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateExpPower(ViSession vi, ViInt32 value);
/** Reads the power of the exponential list templates. */
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateExpPower(ViSession vi, ViInt32* value);
/** Sets the rate of the exponential list templates. */
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateExpRate(ViSession vi, ViInt32 value);
/** Reads the rate of the exponential list templates. */
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateExpRate(ViSession vi, ViInt32* value);
/** Reads the number of groups that the list template makes. */
ViStatus _VI_FUNC TARNEXSupply_GetListTemplatePoints(ViSession vi, ViInt32* points);
/** Replaces the list groups from index on by those of the template. The index counts from 0. */
ViStatus _VI_FUNC TARNEXSupply_ConstructListTemplate(ViSession vi, ViInt32 index);

/* ---- Delay mode */

/** Switches delay mode on or off. */
ViStatus _VI_FUNC TARNEXSupply_SetDelayEnabled(ViSession vi, ViBoolean enabled);
/** Reads whether delay mode is on. */
ViStatus _VI_FUNC TARNEXSupply_GetDelayEnabled(ViSession vi, ViBoolean* enabled);
/** Reads the progress of the delay sequence: state (TARNEXSUPPLY_VAL_DELAY_STATE_...), elapsed time in s, group and
 * cycle, both counted from 0. */
ViStatus _VI_FUNC TARNEXSupply_GetDelayStatus(ViSession vi, ViInt32* state, ViReal64* seconds, ViInt32* group,
                                              ViInt32* cycle);
/** Sets the number of delay cycles; 0 repeats without end. */
ViStatus _VI_FUNC TARNEXSupply_SetDelayCycles(ViSession vi, ViInt32 cycles);
/** Reads the number of delay cycles; 0 repeats without end. */
ViStatus _VI_FUNC TARNEXSupply_GetDelayCycles(ViSession vi, ViInt32* cycles);
/** Sets the state of the output after the delay sequence: TARNEXSUPPLY_VAL_DELAY_END_.... */
ViStatus _VI_FUNC TARNEXSupply_SetDelayEndState(ViSession vi, ViInt32 state);
/** Reads the state of the output after the delay sequence: TARNEXSUPPLY_VAL_DELAY_END_.... */
ViStatus _VI_FUNC TARNEXSupply_GetDelayEndState(ViSession vi, ViInt32* state);
/** Reads the number of delay groups. */
ViStatus _VI_FUNC TARNEXSupply_GetDelayGroupCount(ViSession vi, ViInt32* count);
/** Inserts a delay group before the one at index, counted from 0. */
ViStatus _VI_FUNC TARNEXSupply_InsertDelayGroup(ViSession vi, ViInt32 index);
/** Deletes a delay group. The index counts from 0. */
ViStatus _VI_FUNC TARNEXSupply_DeleteDelayGroup(ViSession vi, ViInt32 index);
/** Deletes all delay groups. */
ViStatus _VI_FUNC TARNEXSupply_ClearDelayGroups(ViSession vi);
/** Sets a delay group: output on or off, and its time in s. The index counts from 0. */
ViStatus _VI_FUNC TARNEXSupply_SetDelayGroup(ViSession vi, ViInt32 index, ViBoolean enabled, ViReal64 seconds);
/** Reads a delay group: output on or off, and its time in s. The index counts from 0. */
ViStatus _VI_FUNC TARNEXSupply_GetDelayGroup(ViSession vi, ViInt32 index, ViBoolean* enabled, ViReal64* seconds);

/* ---- Delay patterns */

/** Sets the times of generated delay groups: TARNEXSUPPLY_VAL_DELAY_GENERATE_.... */
ViStatus _VI_FUNC TARNEXSupply_SetDelayGenerateMode(ViSession vi, ViInt32 mode);
/** Reads the times of generated delay groups: TARNEXSUPPLY_VAL_DELAY_GENERATE_.... */
ViStatus _VI_FUNC TARNEXSupply_GetDelayGenerateMode(ViSession vi, ViInt32* mode);
/** Sets the order of generated delay groups: TARNEXSUPPLY_VAL_DELAY_PATTERN_.... */
ViStatus _VI_FUNC TARNEXSupply_SetDelayPattern(ViSession vi, ViInt32 pattern);
/** Reads the order of generated delay groups: TARNEXSUPPLY_VAL_DELAY_PATTERN_.... */
ViStatus _VI_FUNC TARNEXSupply_GetDelayPattern(ViSession vi, ViInt32* pattern);
/** Sets the number of generated delay groups. */
ViStatus _VI_FUNC TARNEXSupply_SetDelayGeneratePoints(ViSession vi, ViInt32 points);
/** Reads the number of generated delay groups. */
ViStatus _VI_FUNC TARNEXSupply_GetDelayGeneratePoints(ViSession vi, ViInt32* points);
/** Sets the on time of generated delay groups in s. */
ViStatus _VI_FUNC TARNEXSupply_SetDelayOnTime(ViSession vi, ViReal64 seconds);
/** Reads the on time of generated delay groups in s. */
ViStatus _VI_FUNC TARNEXSupply_GetDelayOnTime(ViSession vi, ViReal64* seconds);
/** Sets the off time of generated delay groups in s. */
ViStatus _VI_FUNC TARNEXSupply_SetDelayOffTime(ViSession vi, ViReal64 seconds);
/** Reads the off time of generated delay groups in s. */
ViStatus _VI_FUNC TARNEXSupply_GetDelayOffTime(ViSession vi, ViReal64* seconds);
/** Sets the first time of generated delay groups in s. */
ViStatus _VI_FUNC TARNEXSupply_SetDelayBaseTime(ViSession vi, ViReal64 seconds);
/** Reads the first time of generated delay groups in s. */
ViStatus _VI_FUNC TARNEXSupply_GetDelayBaseTime(ViSession vi, ViReal64* seconds);
/** Sets the step between the times of generated delay groups in s. */
ViStatus _VI_FUNC TARNEXSupply_SetDelayStepTime(ViSession vi, ViReal64 seconds);
/** Reads the step between the times of generated delay groups in s. */
ViStatus _VI_FUNC TARNEXSupply_GetDelayStepTime(ViSession vi, ViReal64* seconds);
/** Replaces the delay groups from index on by generated ones. The index counts from 0. */
ViStatus _VI_FUNC TARNEXSupply_ConstructDelayGroups(ViSession vi, ViInt32 index);

/* ---- Trigger inputs */

/** Switches a trigger input (TARNEXSUPPLY_VAL_TRIGGER_INPUT_...) on or off. */
ViStatus _VI_FUNC TARNEXSupply_SetTriggerInputEnabled(ViSession vi, ViInt32 input, ViBoolean enabled);
/** Reads whether a trigger input (TARNEXSUPPLY_VAL_TRIGGER_INPUT_...) is on. */
ViStatus _VI_FUNC TARNEXSupply_GetTriggerInputEnabled(ViSession vi, ViInt32 input, ViBoolean* enabled);
/** Switches all outputs off with one command. */
ViStatus _VI_FUNC TARNEXSupply_SetAllOutputsOff(ViSession vi);
/* clang-format on */

#ifdef __cplusplus
} /* extern "C" */
#endif

#endif /* TARNEX_SUPPLY_H */
