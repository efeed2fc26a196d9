// The VISA operations that the driver and the supply library use (VPP-4.3), with the attributes and codes of VPP-4.3.2.
//
// The built-in library serves
// - raw TCP sockets: "TCPIP[board]::host::port::SOCKET", host a name, an IPv4 address or an IPv6 address in square
//   brackets;
// - serial lines, not on Windows: "ASRL1::INSTR" is /dev/ttyS0 and so on, "ASRL/dev/ttyUSB0::INSTR" any device.
// Other kinds of resources return VI_ERROR_INTF_NUM_NCONFIG, malformed names VI_ERROR_INV_RSRC_NAME. Thread-safe: a
// viClose ends the calls of other threads on the session with VI_ERROR_INV_OBJECT.
#pragma once

#include "platform/vi_types.h"

inline constexpr ViAttr VI_ATTR_TERMCHAR = 0x3FFF0018;    // default 0x0A
inline constexpr ViAttr VI_ATTR_TMO_VALUE = 0x3FFF001A;   // ms, default 2000
inline constexpr ViAttr VI_ATTR_TERMCHAR_EN = 0x3FFF0038; // default VI_FALSE
// Serial lines only.
inline constexpr ViAttr VI_ATTR_ASRL_BAUD = 0x3FFF0021;       // default 9600
inline constexpr ViAttr VI_ATTR_ASRL_DATA_BITS = 0x3FFF0022;  // 5 to 8, default 8
inline constexpr ViAttr VI_ATTR_ASRL_PARITY = 0x3FFF0023;     // default none
inline constexpr ViAttr VI_ATTR_ASRL_STOP_BITS = 0x3FFF0024;  // default one
inline constexpr ViAttr VI_ATTR_ASRL_FLOW_CNTRL = 0x3FFF0025; // default none
inline constexpr ViAttr VI_ATTR_ASRL_END_IN = 0x3FFF00B3;     // default VI_ASRL_END_TERMCHAR, whatever TERMCHAR_EN is
inline constexpr ViAttr VI_ATTR_ASRL_END_OUT = 0x3FFF00B4;    // default VI_ASRL_END_NONE

inline constexpr ViUInt16 VI_READ_BUF = 1;
inline constexpr ViUInt16 VI_WRITE_BUF = 2;
inline constexpr ViUInt16 VI_IO_IN_BUF = 16;
inline constexpr ViUInt16 VI_IO_OUT_BUF = 32;

inline constexpr ViInt32 VI_ASRL_PAR_NONE = 0;
inline constexpr ViInt32 VI_ASRL_PAR_ODD = 1;
inline constexpr ViInt32 VI_ASRL_PAR_EVEN = 2;
inline constexpr ViInt32 VI_ASRL_PAR_MARK = 3;
inline constexpr ViInt32 VI_ASRL_PAR_SPACE = 4;
inline constexpr ViInt32 VI_ASRL_STOP_ONE = 10;
inline constexpr ViInt32 VI_ASRL_STOP_ONE5 = 15;
inline constexpr ViInt32 VI_ASRL_STOP_TWO = 20;
inline constexpr ViInt32 VI_ASRL_FLOW_NONE = 0;
inline constexpr ViInt32 VI_ASRL_FLOW_XON_XOFF = 1;
inline constexpr ViInt32 VI_ASRL_FLOW_RTS_CTS = 2;
inline constexpr ViInt32 VI_ASRL_FLOW_DTR_DSR = 4;
inline constexpr ViAttrState VI_ASRL_END_NONE = 0;
inline constexpr ViAttrState VI_ASRL_END_LAST_BIT = 1;
inline constexpr ViAttrState VI_ASRL_END_TERMCHAR = 2;
inline constexpr ViAttrState VI_ASRL_END_BREAK = 3;

inline constexpr ViUInt32 VI_TMO_IMMEDIATE = 0;
inline constexpr ViUInt32 VI_TMO_INFINITE = 0xFFFFFFFF;

inline constexpr auto VI_SUCCESS_TERM_CHAR = static_cast<ViStatus>(0x3FFF0005);
inline constexpr auto VI_SUCCESS_MAX_CNT = static_cast<ViStatus>(0x3FFF0006);
inline constexpr auto VI_WARN_NSUP_BUF = static_cast<ViStatus>(0x3FFF0088);

inline constexpr auto VI_ERROR_SYSTEM_ERROR = static_cast<ViStatus>(0xBFFF0000);
inline constexpr auto VI_ERROR_INV_OBJECT = static_cast<ViStatus>(0xBFFF000E);
inline constexpr auto VI_ERROR_RSRC_NFOUND = static_cast<ViStatus>(0xBFFF0011);
inline constexpr auto VI_ERROR_INV_RSRC_NAME = static_cast<ViStatus>(0xBFFF0012);
inline constexpr auto VI_ERROR_INV_ACC_MODE = static_cast<ViStatus>(0xBFFF0013);
inline constexpr auto VI_ERROR_TMO = static_cast<ViStatus>(0xBFFF0015);
inline constexpr auto VI_ERROR_NSUP_ATTR = static_cast<ViStatus>(0xBFFF001D);
inline constexpr auto VI_ERROR_NSUP_ATTR_STATE = static_cast<ViStatus>(0xBFFF001E);
inline constexpr auto VI_ERROR_INV_SETUP = static_cast<ViStatus>(0xBFFF003A);
inline constexpr auto VI_ERROR_ALLOC = static_cast<ViStatus>(0xBFFF003C);
inline constexpr auto VI_ERROR_INV_MASK = static_cast<ViStatus>(0xBFFF003D);
inline constexpr auto VI_ERROR_IO = static_cast<ViStatus>(0xBFFF003E);
inline constexpr auto VI_ERROR_INV_FMT = static_cast<ViStatus>(0xBFFF003F);
inline constexpr auto VI_ERROR_NSUP_OPER = static_cast<ViStatus>(0xBFFF0067);
inline constexpr auto VI_ERROR_USER_BUF = static_cast<ViStatus>(0xBFFF0071);
inline constexpr auto VI_ERROR_RSRC_BUSY = static_cast<ViStatus>(0xBFFF0072);
inline constexpr auto VI_ERROR_INV_PARAMETER = static_cast<ViStatus>(0xBFFF0078);
inline constexpr auto VI_ERROR_INTF_NUM_NCONFIG = static_cast<ViStatus>(0xBFFF00A5);
inline constexpr auto VI_ERROR_CONN_LOST = static_cast<ViStatus>(0xBFFF00A6);

extern "C" {

ViStatus _VI_FUNC viOpenDefaultRM(ViSession* rm);

/// Opens the resource `name` (any letter case). The only access mode is 0, no lock. Bytes that a serial line received
/// before it was opened are discarded.
/// Returns VI_ERROR_TMO when opening, including name resolution, takes more than `timeoutMs`; VI_ERROR_RSRC_NFOUND when
/// the host is unknown, cannot be reached or refuses the connection, or when the device does not exist or is not a
/// serial line; VI_ERROR_RSRC_BUSY when the device cannot be opened because access is denied or it is in use.
ViStatus _VI_FUNC viOpen(ViSession rm, ViConstRsrc name, ViAccessMode mode, ViUInt32 timeoutMs, ViSession* vi);

/// Closes a session. Closing a resource manager session closes its instrument sessions.
ViStatus _VI_FUNC viClose(ViObject vi);

/// Sets an attribute. Returns VI_ERROR_NSUP_ATTR for an attribute that the session does not have and
/// VI_ERROR_NSUP_ATTR_STATE for a value that it does not support. The built-in library's serial lines do not support
/// mark and space parity, one and a half stop bits, DTR/DSR flow control, combinations of flow controls, and ends other
/// than VI_ASRL_END_NONE and, for reads, VI_ASRL_END_TERMCHAR.
ViStatus _VI_FUNC viSetAttribute(ViObject vi, ViAttr name, ViAttrState value);

/// Sets the size of buffers. `mask` is any combination of the four buffers; another mask returns VI_ERROR_INV_MASK.
ViStatus _VI_FUNC viSetBuf(ViSession vi, ViUInt16 mask, ViUInt32 size);

/// Sends all of `buf` or fails. `written` may be null and counts the bytes sent, also after a failure.
ViStatus _VI_FUNC viWrite(ViSession vi, ViConstBuf buf, ViUInt32 count, ViUInt32* written);

/// Reads up to `count` bytes.
/// Returns VI_SUCCESS when the interface signalled the end of the message, VI_SUCCESS_TERM_CHAR when the enabled
/// termination character was read (it is part of the data), VI_SUCCESS_MAX_CNT when `count` bytes were read first.
/// `got` may be null. After VI_ERROR_TMO and VI_ERROR_CONN_LOST, `buf` and `got` hold the bytes that arrived.
ViStatus _VI_FUNC viRead(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* got);

/// Clears the device, which then has no reply pending. Returns VI_ERROR_NSUP_OPER on interfaces without a device clear:
/// raw sockets and serial lines.
ViStatus _VI_FUNC viClear(ViSession vi);

} // extern "C"
