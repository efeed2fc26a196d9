/* The public header is all that a C99 program needs. */
#include <TARNEX.h>

ViStatus (*header_alone)(ViSession vi) = TARNEX_close;
