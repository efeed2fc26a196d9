// The C API of the IVI Configuration Server (IVI-3.5): the store in which a system's drivers, instruments, logical
// names and virtual channel names are configured.
//
// - Release every handle of a Get... call with IviConfig_DisposeHandle, and the store with IviConfig_Close.
// - Collections count from 1.
// - Texts follow the buffer rule of IVI-3.2, 3.1.2.1: text that does not fit is truncated and the required size is
//   returned as a positive status; size 0 writes nothing and returns the required size; a negative size copies
//   everything.
// - A null pointer for a result or a name returns IVI_ERROR_NULL_POINTER. When memory is not available, the status is
//   IVI_ERROR_OUT_OF_MEMORY.
// - Thread-safe.
//
// The master location of the built-in server is the first of these that applies:
// 1. the environment variable IVI_CONFIG_STORE;
// 2. $XDG_CONFIG_HOME/ivi/IviConfigurationStore.xml ($HOME/.config when XDG_CONFIG_HOME is not set), if it exists;
// 3. /etc/ivi/IviConfigurationStore.xml, if it exists;
// 4. the location of rule 2.
// A missing file at the master location is an empty store. Any other store file must exist.
#pragma once

#include "platform/vi_types.h"

using IviConfigHandle = void*;

inline constexpr auto IVI_CONFIG_ERROR_CANNOT_RECOVER = static_cast<ViStatus>(0xBFFA0000);
inline constexpr auto IVI_CONFIG_ERROR_DESERIALIZE_FAILED = static_cast<ViStatus>(0xBFFA1200);
inline constexpr auto IVI_CONFIG_ERROR_ALREADY_DESERIALIZED = static_cast<ViStatus>(0xBFFA1201);
inline constexpr auto IVI_CONFIG_ERROR_SESSION_NOT_FOUND = static_cast<ViStatus>(0xBFFA1203);
/// A reference to an object that is not in the store.
inline constexpr auto IVI_CONFIG_ERROR_NOT_IN_GLOBAL_COLLECTION = static_cast<ViStatus>(0xBFFA1204);
/// A name or index that is not in the collection, or a missing reference.
inline constexpr auto IVI_CONFIG_ERROR_ITEM_NOT_FOUND = static_cast<ViStatus>(0xBFFA1207);
/// A data component of another type, or with a text that is not a value of its type.
inline constexpr auto IVI_CONFIG_ERROR_INVALID_DATA_COMPONENT = static_cast<ViStatus>(0xBFFA1208);
inline constexpr auto IVI_CONFIG_ERROR_INVALID_HANDLE = static_cast<ViStatus>(0xBFFA1220);
inline constexpr auto IVI_CONFIG_ERROR_INVALID_PROPERTY = static_cast<ViStatus>(0xBFFA1221);
inline constexpr auto IVI_CONFIG_ERROR_NOT_SUPPORTED = static_cast<ViStatus>(0xBFFA1222);

// The property numbers (IVI-3.5) that are used here.
namespace ivi_config_property {
inline constexpr ViInt32 kStoreMasterLocation = 3;
inline constexpr ViInt32 kStoreProcessDefaultLocation = 5;
inline constexpr ViInt32 kName = 1; // of any component, virtual name, physical name or data component
inline constexpr ViInt32 kAssetResourceDescriptor = 3;
inline constexpr ViInt32 kSessionCache = 4; // the inherent flags are 4 to 9, in the order of text::kInherentOptions
inline constexpr ViInt32 kSessionSimulate = 9;
inline constexpr ViInt32 kSessionDriverSetup = 10;
inline constexpr ViInt32 kVirtualNameMapTo = 2;
inline constexpr ViInt32 kRangeMinimum = 2;
inline constexpr ViInt32 kRangeMaximum = 3;
inline constexpr ViInt32 kRangeStartingIndex = 4;
inline constexpr ViInt32 kPhysicalNameCapability = 2;
inline constexpr ViInt32 kDataComponentType = 7;
inline constexpr ViInt32 kDataComponentValue = 9;
} // namespace ivi_config_property

extern "C" {

ViStatus _VI_FUNC IviConfig_Initialize(IviConfigHandle* store);
ViStatus _VI_FUNC IviConfig_Close(IviConfigHandle store);
ViStatus _VI_FUNC IviConfig_DisposeHandle(IviConfigHandle handle);

/// Returns the first error text of this thread. Clears it unless `size` is 0.
ViStatus _VI_FUNC IviConfig_GetError(ViInt32 size, ViChar text[]);
ViStatus _VI_FUNC IviConfig_ClearError(void);

/// Reads the store file at `location`. A file that is not a store returns IVI_CONFIG_ERROR_DESERIALIZE_FAILED, with the
/// file and the reason in the error text. Numbers and flags are checked when they are read, so that a malformed entry
/// that is not used has no effect.
ViStatus _VI_FUNC IviConfig_Deserialize(IviConfigHandle store, ViConstString location);
ViStatus _VI_FUNC IviConfig_GetConfigStorePropertyViString(IviConfigHandle store, ViInt32 id, ViInt32 size,
                                                           ViChar value[]);
/// Sets the process-default location, the only property that can be set. Process-wide; empty text unsets it.
ViStatus _VI_FUNC IviConfig_SetConfigStorePropertyViString(IviConfigHandle store, ViInt32 id, ViConstString value);

/// Looks up `name` among the logical names, then among the driver sessions.
ViStatus _VI_FUNC IviConfig_GetDriverSession(IviConfigHandle store, ViConstString name, IviConfigHandle* session);
ViStatus _VI_FUNC IviConfig_GetConfigStoreSoftwareModuleCollection(IviConfigHandle store, IviConfigHandle* collection);
ViStatus _VI_FUNC IviConfig_GetSoftwareModuleItemByName(IviConfigHandle collection, ViConstString name,
                                                        IviConfigHandle* module);
ViStatus _VI_FUNC IviConfig_GetSoftwareModulePhysicalNameCollection(IviConfigHandle module,
                                                                    IviConfigHandle* collection);
ViStatus _VI_FUNC IviConfig_GetPhysicalNameCount(IviConfigHandle collection, ViInt32* count);
ViStatus _VI_FUNC IviConfig_GetPhysicalNameItemByIndex(IviConfigHandle collection, ViInt32 index,
                                                       IviConfigHandle* item);
ViStatus _VI_FUNC IviConfig_GetPhysicalNamePropertyViString(IviConfigHandle item, ViInt32 id, ViInt32 size,
                                                            ViChar value[]);

ViStatus _VI_FUNC IviConfig_GetSessionSoftwareModuleReference(IviConfigHandle session, IviConfigHandle* module);
ViStatus _VI_FUNC IviConfig_GetSessionHardwareAssetReference(IviConfigHandle session, IviConfigHandle* asset);
ViStatus _VI_FUNC IviConfig_GetHardwareAssetPropertyViString(IviConfigHandle asset, ViInt32 id, ViInt32 size,
                                                             ViChar value[]);
ViStatus _VI_FUNC IviConfig_GetDriverSessionPropertyViBoolean(IviConfigHandle session, ViInt32 id, ViBoolean* value);
ViStatus _VI_FUNC IviConfig_GetDriverSessionPropertyViString(IviConfigHandle session, ViInt32 id, ViInt32 size,
                                                             ViChar value[]);

ViStatus _VI_FUNC IviConfig_GetSessionVirtualNameCollection(IviConfigHandle session, IviConfigHandle* collection);
ViStatus _VI_FUNC IviConfig_GetVirtualNameCount(IviConfigHandle collection, ViInt32* count);
ViStatus _VI_FUNC IviConfig_GetVirtualNameItemByIndex(IviConfigHandle collection, ViInt32 index, IviConfigHandle* item);
ViStatus _VI_FUNC IviConfig_GetVirtualNamePropertyViString(IviConfigHandle item, ViInt32 id, ViInt32 size,
                                                           ViChar value[]);
ViStatus _VI_FUNC IviConfig_GetVirtualNameVirtualRangeCollection(IviConfigHandle item, IviConfigHandle* collection);
ViStatus _VI_FUNC IviConfig_GetVirtualRangeCount(IviConfigHandle collection, ViInt32* count);
ViStatus _VI_FUNC IviConfig_GetVirtualRangeItemByIndex(IviConfigHandle collection, ViInt32 index,
                                                       IviConfigHandle* range);
ViStatus _VI_FUNC IviConfig_GetVirtualRangePropertyViInt32(IviConfigHandle range, ViInt32 id, ViInt32* value);

ViStatus _VI_FUNC IviConfig_GetConfigComponentDataComponentCollection(IviConfigHandle component,
                                                                      IviConfigHandle* collection);
ViStatus _VI_FUNC IviConfig_GetStructureDataComponentCollection(IviConfigHandle structure, IviConfigHandle* collection);
ViStatus _VI_FUNC IviConfig_GetDataComponentCount(IviConfigHandle collection, ViInt32* count);
ViStatus _VI_FUNC IviConfig_GetDataComponentItemByIndex(IviConfigHandle collection, ViInt32 index,
                                                        IviConfigHandle* item);
ViStatus _VI_FUNC IviConfig_GetDataComponentItemByName(IviConfigHandle collection, ViConstString name,
                                                       IviConfigHandle* item);
ViStatus _VI_FUNC IviConfig_GetDataComponentPropertyViString(IviConfigHandle item, ViInt32 id, ViInt32 size,
                                                             ViChar value[]);
ViStatus _VI_FUNC IviConfig_GetDataComponentPropertyViInt32(IviConfigHandle item, ViInt32 id, ViInt32* value);
ViStatus _VI_FUNC IviConfig_GetDataComponentPropertyViReal64(IviConfigHandle item, ViInt32 id, ViReal64* value);
ViStatus _VI_FUNC IviConfig_GetDataComponentPropertyViBoolean(IviConfigHandle item, ViInt32 id, ViBoolean* value);

} // extern "C"
