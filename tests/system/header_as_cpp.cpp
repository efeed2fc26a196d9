// The public header is self-contained C++.
#include <TARNEX.h>

static_assert(sizeof(ViBoolean) == 2 && sizeof(ViInt16) == 2 && sizeof(ViInt32) == 4 && sizeof(ViStatus) == 4 &&
              sizeof(ViSession) == 4 && sizeof(ViAttr) == 4 && sizeof(ViReal64) == 8);
static_assert(TARNEX_ERROR_INVALID_SESSION_HANDLE < 0 && TARNEX_WARN_NSUP_SELF_TEST > 0);
