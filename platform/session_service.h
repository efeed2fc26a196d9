// The IVI Shared Components' session service (IVI-3.9): handle registry, per-session lock and error records.
//
// - Thread-safe.
// - A handle that is not open returns IVI_ERROR_INVALID_SESSION_HANDLE. So does zero, except in the three error
//   functions, where it selects the calling thread's record.
// - A null pointer that is not allowed returns IVI_ERROR_NULL_POINTER and changes nothing.
// - A handle is not issued again after it has been disposed of.
// - Only Lock waits for the lock of a session. Threads that wait when the session is disposed of get
//   IVI_ERROR_INVALID_SESSION_HANDLE.
#pragma once

#include "platform/vi_types.h"

// Also returned by the configuration server.
inline constexpr auto IVI_ERROR_OUT_OF_MEMORY = static_cast<ViStatus>(0xBFFA0056);
inline constexpr auto IVI_ERROR_NULL_POINTER = static_cast<ViStatus>(0xBFFA0058);

inline constexpr auto IVI_ERROR_INVALID_SESSION_HANDLE = static_cast<ViStatus>(0xBFFA1190);
/// Unlock by a thread that does not hold the lock (VI_ERROR_SESN_NLOCKED of VPP-4.3.2).
inline constexpr auto IVI_ERROR_SESSION_NOT_LOCKED = static_cast<ViStatus>(0xBFFF009C);
inline constexpr auto IVI_ERROR_CANNOT_CREATE_LOCK = static_cast<ViStatus>(0xBFFA1198);
inline constexpr auto IVI_ERROR_CANNOT_CREATE_THREAD_LOCAL = static_cast<ViStatus>(0xBFFA11A0);

extern "C" {

/// Issues a new handle with a null data pointer and an empty record.
/// Returns IVI_ERROR_CANNOT_CREATE_LOCK or IVI_ERROR_OUT_OF_MEMORY, and zero in `*handle`, when no handle is available.
ViStatus _VI_FUNC IviSession_New(ViSession* handle);

/// Invalidates the handle, even while a thread holds its lock. Does not free the data behind its pointer.
ViStatus _VI_FUNC IviSession_Dispose(ViSession handle);

ViStatus _VI_FUNC IviSession_SetDataPtr(ViSession handle, ViAddr data);

/// Returns the data pointer; null when none was set.
ViStatus _VI_FUNC IviSession_GetDataPtr(ViSession handle, ViAddr* data);

/// Takes the handle's lock, which is recursive per thread. `hasLock` may be null. When it points to a true value the
/// call is a no-op; otherwise it is set.
ViStatus _VI_FUNC IviSession_Lock(ViSession handle, ViBoolean* hasLock);

/// Releases the lock once. `hasLock` may be null. When it points to a false value the call is a no-op; otherwise it is
/// cleared. Returns IVI_ERROR_SESSION_NOT_LOCKED and changes nothing when the calling thread does not hold the lock.
ViStatus _VI_FUNC IviSession_Unlock(ViSession handle, ViBoolean* hasLock);

/// Writes the thread's record and, with a handle, the session's. A code is replaced only by a more severe one (negative
/// over positive over zero), so the first error stays until it is read or cleared. The description is replaced with the
/// code, or when the code is equal and the stored description is empty. A null description counts as empty. With an
/// unknown handle the thread's record is written too.
ViStatus _VI_FUNC IviSession_SetError(ViSession handle, ViStatus code, ViConstString description);

/// Returns the session's record (the thread's with a zero handle) and clears it unless `bufferSize` is 0. `code` may be
/// null. Text that does not fit is truncated and the required size is returned; a negative size copies everything; size
/// 0 writes no text and returns the required size.
ViStatus _VI_FUNC IviSession_GetError(ViSession handle, ViInt32 bufferSize, ViStatus* code, ViChar description[]);

ViStatus _VI_FUNC IviSession_ClearError(ViSession handle);

} // extern "C"
