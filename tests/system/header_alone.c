/* A C99 program needs only the public header. */
#include <TARNEX.h>

ViStatus (*header_alone)(ViSession vi) = TARNEX_close;
