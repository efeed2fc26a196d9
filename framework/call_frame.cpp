#include "framework/call_frame.h"

#include <string>

#include "framework/close_hooks.h"
#include "text/characters.h"

namespace nrt2 {

ViStatus CreateSession(SessionFactory make, ViConstString resourceName, ViBoolean idQuery, ViBoolean reset,
                       ViConstString optionString, ViSession* newVi) {
    const bool wantsIdQuery = idQuery == VI_TRUE;
    const bool wantsReset = reset == VI_TRUE;
    initializationRequests.idQuery = wantsIdQuery;
    initializationRequests.reset = wantsReset;
    if (newVi == nullptr) {
        return IVI_ERROR_NULL_POINTER;
    }
    *newVi = VI_NULL;
    ViSession vi = VI_NULL;
    auto status = IviSession_New(&vi);
    if (status < 0) {
        return status;
    }
    auto session = make(vi);
    status = IviSession_SetDataPtr(vi, session->Anchor());
    if (status >= 0) {
        status = session->Initialize(std::string(text::ViewOf(resourceName)), wantsIdQuery, wantsReset,
                                     std::string(text::ViewOf(optionString)));
    }
    if (status < 0) {
        return status;
    }
    DriverSession* bound = nullptr;
    status = GetSession(vi, bound);
    if (status >= 0 && bound != nullptr && reset != VI_FALSE) {
        bound->ResetInstrument(); // a failed reset does not undo the initialization
    }
    static_cast<void>(session.release()); // the handle owns it until CloseSession
    *newVi = vi;
    return status;
}

ViStatus CloseSession(ViSession vi) {
    DriverSession* session = nullptr;
    if (GetSession(vi, session) < 0) {
        return IVI_ERROR_INVALID_SESSION_HANDLE;
    }
    RunCloseHooks(vi);
    auto status = GetSession(vi, session);
    if (status < 0 || session == nullptr) {
        return status;
    }
    try {
        const std::unique_ptr<DriverSession> owned(session);
        owned->Close(); // its status is ignored: the caller cannot close again
    } catch (...) {
        IviSession_SetDataPtr(vi, nullptr); // the object is destroyed, the handle is not
        throw;
    }
    status = IviSession_Dispose(vi);
    if (status < 0) {
        IviSession_SetDataPtr(vi, nullptr); // the handle is still valid: a second close must find no object
    }
    return status;
}

} // namespace nrt2
