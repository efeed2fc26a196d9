/* The public header accepts that another header has declared the VISA types and values. */
#include <stdint.h>

typedef char ViChar;
typedef int16_t ViInt16;
typedef int32_t ViInt32;
typedef double ViReal64;
typedef uint16_t ViBoolean;
typedef int32_t ViStatus;
typedef uint32_t ViSession;
typedef uint32_t ViAttr;
typedef const char* ViConstString;
typedef char* ViRsrc;
#define _VI_FUNC
#define VI_NULL (0)
#define VI_SUCCESS (0L)
#define VI_TRUE (1)
#define VI_FALSE (0)
#define TARNEX_NO_VI_TYPES
#include <TARNEX.h>

ViStatus (*headerAsC)(ViSession vi) = TARNEX_reset;
