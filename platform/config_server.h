// The C API of the IVI Configuration Server (IVI-3.5): the store in which a system's drivers, instruments, logical
// names and virtual channel names are configured.
//
// Every handle that a Get... call returns is given back with IviConfig_DisposeHandle, the store with IviConfig_Close.
// Collections count from 1. Texts follow the buffer rule of IVI-3.2 3.1.2.1: what does not fit is cut and the size
// needed is returned as a positive status; size 0 writes nothing and returns the size needed; a negative size copies
// everything.
//
// The built-in server takes its master location from the environment: IVI_CONFIG_STORE when set, else
// $XDG_CONFIG_HOME/ivi/IviConfigurationStore.xml ($HOME/.config in place of an unset XDG_CONFIG_HOME) when it is there,
// else /etc/ivi/IviConfigurationStore.xml when it is there, else the user's location again. No file at the master
// location is an empty store; any other store file has to exist.
//
// Every function may be called from any thread. A null pointer where a result is to be written, or a null name, gives
// IVI_ERROR_NULL_POINTER (0xBFFA0058); want of memory IVI_ERROR_OUT_OF_MEMORY (0xBFFA0056).
#pragma once

#include "platform/vi_types.h"

using IviConfigHandle = void*;

inline constexpr auto IVI_CONFIG_ERROR_CANNOT_RECOVER = static_cast<ViStatus>(0xBFFA0000);
inline constexpr auto IVI_CONFIG_ERROR_DESERIALIZE_FAILED = static_cast<ViStatus>(0xBFFA1200);
inline constexpr auto IVI_CONFIG_ERROR_ALREADY_DESERIALIZED = static_cast<ViStatus>(0xBFFA1201);
inline constexpr auto IVI_CONFIG_ERROR_SESSION_NOT_FOUND = static_cast<ViStatus>(0xBFFA1203);
/// A reference to an object that the store does not hold.
inline constexpr auto IVI_CONFIG_ERROR_NOT_IN_GLOBAL_COLLECTION = static_cast<ViStatus>(0xBFFA1204);
/// No such name or index in a collection; also a reference that is not there.
inline constexpr auto IVI_CONFIG_ERROR_ITEM_NOT_FOUND = static_cast<ViStatus>(0xBFFA1207);
/// A data component of another type, or one whose text is not a value of its type.
inline constexpr auto IVI_CONFIG_ERROR_INVALID_DATA_COMPONENT = static_cast<ViStatus>(0xBFFA1208);
inline constexpr auto IVI_CONFIG_ERROR_INVALID_HANDLE = static_cast<ViStatus>(0xBFFA1220);
inline constexpr auto IVI_CONFIG_ERROR_INVALID_PROPERTY = static_cast<ViStatus>(0xBFFA1221);
inline constexpr auto IVI_CONFIG_ERROR_NOT_SUPPORTED = static_cast<ViStatus>(0xBFFA1222);

// Property numbers (IVI-3.5), as far as they are used here.
namespace ivi_config_property {
inline constexpr ViInt32 kStoreMasterLocation = 3;
inline constexpr ViInt32 kStoreProcessDefaultLocation = 5;
inline constexpr ViInt32 kName = 1; // of any component, virtual name, physical name or data component
inline constexpr ViInt32 kAssetResourceDescriptor = 3;
inline constexpr ViInt32 kSessionCache = 4; // the six inherent flags follow one another, 4 to 9
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

/// First error text of this thread; clears it, unless `size` is 0.
ViStatus _VI_FUNC IviConfig_GetError(ViInt32 size, ViChar text[]);
ViStatus _VI_FUNC IviConfig_ClearError(void);

/// Reads the store file at `location` into the store. What is not a store file is IVI_CONFIG_ERROR_DESERIALIZE_FAILED
/// with a text that says what is wrong with which file. Numbers and flags are judged when they are asked for, so that
/// an entry that nobody uses does no harm.
ViStatus _VI_FUNC IviConfig_Deserialize(IviConfigHandle store, ViConstString location);
ViStatus _VI_FUNC IviConfig_GetConfigStorePropertyViString(IviConfigHandle store, ViInt32 id, ViInt32 size,
                                                           ViChar value[]);
/// Only the process-default location can be set; it holds for the whole process, and empty text unsets it.
ViStatus _VI_FUNC IviConfig_SetConfigStorePropertyViString(IviConfigHandle store, ViInt32 id, ViConstString value);

/// Looks `name` up among the logical names first, then among the driver sessions.
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
