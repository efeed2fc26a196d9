// The VISA and IVI scalar types (VPP-4.3.2, IVI-3.2) for 64-bit Windows and 64-bit Linux.
//
// include/TARNEX.h declares the same types, so that callers need no second header. Both may be included together.
#pragma once

#include <stdint.h>

#ifndef _VI_FUNC
#ifdef _MSC_VER
#define _VI_FUNC __fastcall // accepted and ignored on 64-bit Windows
#else
#define _VI_FUNC
#endif
#endif

typedef uint64_t ViUInt64;
typedef int64_t ViInt64;
typedef uint32_t ViUInt32;
typedef int32_t ViInt32;
typedef uint16_t ViUInt16;
typedef int16_t ViInt16;
typedef uint8_t ViUInt8;
typedef int8_t ViInt8;
typedef char ViChar;
typedef unsigned char ViByte;
typedef double ViReal64;
typedef float ViReal32;
typedef ViUInt16 ViBoolean;
typedef ViInt32 ViStatus;
typedef ViUInt32 ViObject;
typedef ViUInt32 ViSession;
typedef ViUInt32 ViAttr;
typedef ViUInt64 ViAttrState;
typedef ViUInt32 ViAccessMode;
typedef void* ViAddr;
typedef ViByte* ViBuf;
typedef const ViByte* ViConstBuf;
typedef ViChar* ViString;
typedef const ViChar* ViConstString;
typedef ViChar* ViRsrc;
typedef const ViChar* ViConstRsrc;

#define VI_NULL 0
#define VI_SUCCESS 0
#define VI_TRUE 1
#define VI_FALSE 0
