// Opening, closing and locking sessions.

#include "include/TARNEX.h"

#include <memory>

#include "driver/channel_calls.h"

ViStatus _VI_FUNC TARNEX_init(ViRsrc resourceName, ViBoolean idQuery, ViBoolean reset, ViSession* newVi) {
    return TARNEX_InitWithOptions(resourceName, idQuery, reset, "", newVi);
}

ViStatus _VI_FUNC TARNEX_InitWithOptions(ViRsrc resourceName, ViBoolean idQuery, ViBoolean reset,
                                         ViConstString optionString, ViSession* newVi) {
    return nrt2::CreateSession(
        [](ViSession vi) -> std::unique_ptr<nrt2::DriverSession> { return std::make_unique<TARNEXDriverSession>(vi); },
        resourceName, idQuery, reset, optionString, newVi);
}

ViStatus _VI_FUNC TARNEX_close(ViSession vi) { return nrt2::CloseSession(vi); }

// The caller's lock is a second, nested acquisition of the lock that the frame holds.

ViStatus _VI_FUNC TARNEX_LockSession(ViSession vi, ViBoolean* callerHasLock) {
    return tarnex::LockedCall(vi, [&](TARNEXDriverSession& /*session*/) { return IviSession_Lock(vi, callerHasLock); });
}

ViStatus _VI_FUNC TARNEX_UnlockSession(ViSession vi, ViBoolean* callerHasLock) {
    return tarnex::LockedCall(vi,
                              [&](TARNEXDriverSession& /*session*/) { return IviSession_Unlock(vi, callerHasLock); });
}
