// The IVI Shared Components' session service (IVI-3.9): handle registry, per-session lock and error records.
//
// Every function may be called from any thread. A handle that is not open, zero included, gives
// IVI_ERROR_INVALID_SESSION_HANDLE, except that the three error functions take zero for the calling thread's record. A
// null pointer where none is allowed gives IVI_ERROR_NULL_POINTER (0xBFFA0058) and changes nothing. A handle, once
// disposed of, is not issued again. Only Lock waits for the lock of a session; threads that wait for it when the
// session is disposed of get IVI_ERROR_INVALID_SESSION_HANDLE.
#pragma once

#include "platform/vi_types.h"

// Also returned by the configuration server.
inline constexpr auto IVI_ERROR_OUT_OF_MEMORY = static_cast<ViStatus>(0xBFFA0056);
inline constexpr auto IVI_ERROR_NULL_POINTER = static_cast<ViStatus>(0xBFFA0058);

inline constexpr auto IVI_ERROR_INVALID_SESSION_HANDLE = static_cast<ViStatus>(0xBFFA1190);
/// Unlock by a thread that does not hold the lock (VPP-4.3.2 calls it VI_ERROR_SESN_NLOCKED).
inline constexpr auto IVI_ERROR_SESSION_NOT_LOCKED = static_cast<ViStatus>(0xBFFF009C);
inline constexpr auto IVI_ERROR_CANNOT_CREATE_LOCK = static_cast<ViStatus>(0xBFFA1198);
inline constexpr auto IVI_ERROR_CANNOT_CREATE_THREAD_LOCAL = static_cast<ViStatus>(0xBFFA11A0);

extern "C" {

/// Issues a new handle; its data pointer is null and its record empty. When no more can be issued, `*handle` is zero
/// and the status IVI_ERROR_CANNOT_CREATE_LOCK or IVI_ERROR_OUT_OF_MEMORY (0xBFFA0056).
ViStatus _VI_FUNC IviSession_New(ViSession* handle);

/// Forgets the handle, whoever holds its lock. The data behind its pointer stays the caller's.
ViStatus _VI_FUNC IviSession_Dispose(ViSession handle);

ViStatus _VI_FUNC IviSession_SetDataPtr(ViSession handle, ViAddr data);

/// Null when nothing was stored.
ViStatus _VI_FUNC IviSession_GetDataPtr(ViSession handle, ViAddr* data);

/// Takes the handle's lock, recursive per thread. `hasLock` may be null; when it points to a true value, nothing is
/// done, otherwise it is set once the lock is held.
ViStatus _VI_FUNC IviSession_Lock(ViSession handle, ViBoolean* hasLock);

/// Gives the lock back once. `hasLock` may be null; when it points to a false value, nothing is done, otherwise it is
/// cleared. By a thread that does not hold the lock it changes nothing and returns IVI_ERROR_SESSION_NOT_LOCKED.
ViStatus _VI_FUNC IviSession_Unlock(ViSession handle, ViBoolean* hasLock);

/// Writes the thread's record and, with a handle, that session's. An existing code is replaced only by a more severe
/// one (negative over positive over zero), so the first error stays until it is read or cleared. The description is
/// replaced with the code, or when the code is equal and the stored description empty; null counts as empty text. An
/// unknown handle still writes the thread's record.
ViStatus _VI_FUNC IviSession_SetError(ViSession handle, ViStatus code, ViConstString description);

/// Returns the session's record (the thread's with a null handle) and clears it, unless `bufferSize` is 0. Text that
/// does not fit is cut and the size needed is returned; a negative size copies everything; size 0 writes no text and
/// returns the size needed. `code` may be null.
ViStatus _VI_FUNC IviSession_GetError(ViSession handle, ViInt32 bufferSize, ViStatus* code, ViChar description[]);

ViStatus _VI_FUNC IviSession_ClearError(ViSession handle);

} // extern "C"
