// A configuration server with an empty store, for the development platform. The functions that need a handle of an
// object are one function under many names (empty_config_server.def): an empty store has no such handles.
#include "platform/config_server.h"
#include "runtime/ivi_buffer.h"

namespace {

/// The target of every handle.
char nothing;

ViStatus GiveHandle(IviConfigHandle* handle) {
    *handle = &nothing;
    return VI_SUCCESS;
}

} // namespace

extern "C" {

ViStatus _VI_FUNC IviConfig_Initialize(IviConfigHandle* store) { return GiveHandle(store); }

ViStatus _VI_FUNC IviConfig_Close(IviConfigHandle /*store*/) { return VI_SUCCESS; }

ViStatus _VI_FUNC IviConfig_DisposeHandle(IviConfigHandle /*handle*/) { return VI_SUCCESS; }

ViStatus _VI_FUNC IviConfig_GetError(ViInt32 size, ViChar text[]) { return runtime::CopyToIviBuffer("", size, text); }

ViStatus _VI_FUNC IviConfig_ClearError() { return VI_SUCCESS; }

ViStatus _VI_FUNC IviConfig_Deserialize(IviConfigHandle /*store*/, ViConstString /*location*/) { return VI_SUCCESS; }

ViStatus _VI_FUNC IviConfig_GetConfigStorePropertyViString(IviConfigHandle /*store*/, ViInt32 /*id*/, ViInt32 size,
                                                           ViChar value[]) {
    return runtime::CopyToIviBuffer("", size, value);
}

ViStatus _VI_FUNC IviConfig_GetDriverSession(IviConfigHandle /*store*/, ViConstString /*name*/,
                                             IviConfigHandle* /*session*/) {
    return IVI_CONFIG_ERROR_SESSION_NOT_FOUND;
}

ViStatus _VI_FUNC IviConfig_GetConfigStoreSoftwareModuleCollection(IviConfigHandle /*store*/,
                                                                   IviConfigHandle* collection) {
    return GiveHandle(collection);
}

ViStatus _VI_FUNC IviConfig_GetSoftwareModuleItemByName(IviConfigHandle /*collection*/, ViConstString /*name*/,
                                                        IviConfigHandle* /*module*/) {
    return IVI_CONFIG_ERROR_ITEM_NOT_FOUND;
}

/// Accepts the arguments of all functions whose name it has: on x64 the caller cleans up.
ViStatus _VI_FUNC EmptyStoreHasNoSuchHandle() { return IVI_CONFIG_ERROR_INVALID_HANDLE; }

} // extern "C"
