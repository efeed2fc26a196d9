/* A C99 program needs only the public header. */
#include <TARNEX.h>

ViStatus (*headerAlone)(ViSession vi) = TARNEX_close;
