// Opening, closing and locking sessions.

#include "include/TARNEX.h"

#include "driver/channel_calls.h"

ViStatus _VI_FUNC TARNEX_init(ViRsrc resourceName, ViBoolean idQuery, ViBoolean reset, ViSession* newVi) {
    return TARNEX_InitWithOptions(resourceName, idQuery, reset, "", newVi);
}

ViStatus _VI_FUNC TARNEX_InitWithOptions(ViRsrc resourceName, ViBoolean idQuery, ViBoolean reset,
                                         ViConstString optionString, ViSession* newVi) {
    return nrt2::CreateSession<TARNEXDriverSession>(resourceName, idQuery, reset, optionString, newVi);
}

ViStatus _VI_FUNC TARNEX_close(ViSession vi) { return nrt2::CloseSession<TARNEXDriverSession>(vi); }

// The caller's lock is a second, nested acquisition of the lock that the frame takes.

ViStatus _VI_FUNC TARNEX_LockSession(ViSession vi, ViBoolean* callerHasLock) {
    return tarnex::LockedCall(vi, [&](TARNEXDriverSession& /*session*/) { return IviSession_Lock(vi, callerHasLock); });
}

ViStatus _VI_FUNC TARNEX_UnlockSession(ViSession vi, ViBoolean* callerHasLock) {
    return tarnex::LockedCall(vi,
                              [&](TARNEXDriverSession& /*session*/) { return IviSession_Unlock(vi, callerHasLock); });
}
