/* The public header is self-contained C99, and steps back where another header has declared the VISA types. */
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
#define TARNEX_NO_VI_TYPES
#include <TARNEX.h>

ViStatus (*header_as_c)(ViSession vi) = TARNEX_reset;
