#include "tests/doubles/config_server_double.h"

#include <utility>

namespace doubles {

void ConfigServer::Reset() {
    const std::lock_guard lock(mutex_);
    store_ = {};
    errorText_ = "Configuration server error text.";
    details_.clear();
    objects_.clear();
    givenOut_ = 0;
}

void ConfigServer::Use(Store store) {
    const std::lock_guard lock(mutex_);
    store_ = std::move(store);
}

std::size_t ConfigServer::OpenHandles() const {
    const std::lock_guard lock(mutex_);
    return objects_.size();
}

std::size_t ConfigServer::TakeCountOfHandles() {
    const std::lock_guard lock(mutex_);
    return std::exchange(givenOut_, 0);
}

std::vector<std::string> ConfigServer::Details() const {
    const std::lock_guard lock(mutex_);
    return details_;
}

void ConfigServer::SetErrorText(std::string text) {
    const std::lock_guard lock(mutex_);
    errorText_ = std::move(text);
}

ViStatus ConfigServer::GiveOut(Object object, IviConfigHandle* handle) {
    const std::lock_guard lock(mutex_);
    objects_.emplace(next_, object);
    ++givenOut_;
    *handle = reinterpret_cast<IviConfigHandle>(next_++); // NOLINT(performance-no-int-to-ptr): never dereferenced
    return VI_SUCCESS;
}

ViStatus ConfigServer::TakeBack(IviConfigHandle handle) {
    const std::lock_guard lock(mutex_);
    return objects_.erase(reinterpret_cast<std::size_t>(handle)) == 1 ? VI_SUCCESS : IVI_CONFIG_ERROR_INVALID_HANDLE;
}

const ConfigServer::Object* ConfigServer::Find(IviConfigHandle handle) const {
    const std::lock_guard lock(mutex_);
    const auto object = objects_.find(reinterpret_cast<std::size_t>(handle));
    return object == objects_.end() ? nullptr : &object->second;
}

void ConfigServer::AddDetail(std::string detail) {
    const std::lock_guard lock(mutex_);
    details_.push_back(std::move(detail));
}

ConfigServer& TheConfigServer() {
    static ConfigServer server;
    return server;
}

namespace {

using Server = ConfigServer;

/// Answers as ordered, else with `body(object)` when the handle stands for a T.
template <typename T, typename Body>
ViStatus On(const char* function, IviConfigHandle handle, const Body& body) {
    const InsideDouble here;
    if (const auto ordered = TheScript().Enter(function); ordered != VI_SUCCESS) {
        return ordered;
    }
    const auto* object = TheConfigServer().Find(handle);
    const auto* wanted = object == nullptr ? nullptr : std::get_if<T>(object);
    return wanted == nullptr ? IVI_CONFIG_ERROR_INVALID_HANDLE : body(*wanted);
}

template <typename T>
ViStatus Count(const char* function, IviConfigHandle handle, ViInt32* count) {
    return On<Server::Collection<T>>(function, handle, [=](const Server::Collection<T>& collection) {
        *count = static_cast<ViInt32>(collection.items->size());
        return VI_SUCCESS;
    });
}

template <typename T>
ViStatus Item(const char* function, IviConfigHandle handle, ViInt32 index, IviConfigHandle* item) {
    return On<Server::Collection<T>>(function, handle, [=](const Server::Collection<T>& collection) {
        if (index < 1 || static_cast<std::size_t>(index) > collection.items->size()) {
            return IVI_CONFIG_ERROR_ITEM_NOT_FOUND;
        }
        return TheConfigServer().GiveOut(&(*collection.items)[static_cast<std::size_t>(index) - 1], item);
    });
}

/// The text with the number `id` among those named by the pairs.
ViStatus TextProperty(ViInt32 id, ViInt32 size, ViChar value[],
                      std::initializer_list<std::pair<ViInt32, std::string_view>> texts) {
    for (const auto& [candidate, text] : texts) {
        if (candidate == id) {
            return CopyOut(text, size, value);
        }
    }
    return IVI_CONFIG_ERROR_INVALID_PROPERTY;
}

template <typename T>
ViStatus SettingValue(const char* function, IviConfigHandle item, ViInt32 id, T* value) {
    return On<const StoredSetting*>(function, item, [=](const StoredSetting* setting) {
        const auto* stored = std::get_if<T>(&setting->value);
        if (id != 9 || stored == nullptr) {
            return IVI_CONFIG_ERROR_INVALID_PROPERTY;
        }
        *value = *stored;
        return ViStatus{VI_SUCCESS};
    });
}

std::string Numbers(ViInt32 id, ViInt32 size) { return std::to_string(id) + " " + std::to_string(size); }

} // namespace
} // namespace doubles

using namespace doubles; // the functions below are the double

ViStatus _VI_FUNC IviConfig_Initialize(IviConfigHandle* store) {
    const InsideDouble here;
    const auto ordered = TheScript().Enter("IviConfig_Initialize");
    return ordered != VI_SUCCESS ? ordered : TheConfigServer().GiveOut(ConfigServer::TheStore{}, store);
}

// The releasing functions release even when a test lets them fail.

ViStatus _VI_FUNC IviConfig_Close(IviConfigHandle store) {
    const InsideDouble here;
    const auto ordered = TheScript().Enter("IviConfig_Close");
    const auto status = TheConfigServer().TakeBack(store);
    return ordered != VI_SUCCESS ? ordered : status;
}

ViStatus _VI_FUNC IviConfig_DisposeHandle(IviConfigHandle handle) {
    const InsideDouble here;
    const auto ordered = TheScript().Enter("IviConfig_DisposeHandle");
    const auto status = TheConfigServer().TakeBack(handle);
    return ordered != VI_SUCCESS ? ordered : status;
}

ViStatus _VI_FUNC IviConfig_GetError(ViInt32 size, ViChar text[]) {
    const InsideDouble here;
    const auto ordered = TheScript().Enter("IviConfig_GetError");
    TheConfigServer().AddDetail("GetError " + std::to_string(size));
    return ordered != VI_SUCCESS ? ordered : CopyOut(TheConfigServer().ErrorText(), size, text);
}

ViStatus _VI_FUNC IviConfig_ClearError() {
    const InsideDouble here;
    return TheScript().Enter("IviConfig_ClearError");
}

ViStatus _VI_FUNC IviConfig_Deserialize(IviConfigHandle store, ViConstString location) {
    return On<ConfigServer::TheStore>("IviConfig_Deserialize", store, [=](const auto& /*store*/) {
        TheConfigServer().AddDetail(std::string("Deserialize ") + location);
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC IviConfig_GetConfigStorePropertyViString(IviConfigHandle store, ViInt32 id, ViInt32 size,
                                                           ViChar value[]) {
    return On<ConfigServer::TheStore>("IviConfig_GetConfigStorePropertyViString", store, [=](const auto& /*store*/) {
        TheConfigServer().AddDetail("GetConfigStorePropertyViString " + Numbers(id, size));
        const auto& inUse = TheConfigServer().InUse();
        return TextProperty(id, size, value, {{3, inUse.masterLocation}, {5, inUse.processDefaultLocation}});
    });
}

ViStatus _VI_FUNC IviConfig_GetDriverSession(IviConfigHandle store, ViConstString name, IviConfigHandle* session) {
    return On<ConfigServer::TheStore>("IviConfig_GetDriverSession", store, [=](const auto& /*store*/) {
        TheConfigServer().AddDetail(std::string("GetDriverSession ") + name);
        const auto& stored = TheConfigServer().InUse().driverSession;
        return stored ? TheConfigServer().GiveOut(&*stored, session) : IVI_CONFIG_ERROR_SESSION_NOT_FOUND;
    });
}

ViStatus _VI_FUNC IviConfig_GetConfigStoreSoftwareModuleCollection(IviConfigHandle store, IviConfigHandle* collection) {
    return On<ConfigServer::TheStore>(
        "IviConfig_GetConfigStoreSoftwareModuleCollection", store,
        [=](const auto& /*store*/) { return TheConfigServer().GiveOut(ConfigServer::Modules{}, collection); });
}

ViStatus _VI_FUNC IviConfig_GetSoftwareModuleItemByName(IviConfigHandle collection, ViConstString name,
                                                        IviConfigHandle* module) {
    return On<ConfigServer::Modules>("IviConfig_GetSoftwareModuleItemByName", collection, [=](const auto& /*modules*/) {
        TheConfigServer().AddDetail(std::string("GetSoftwareModuleItemByName ") + name);
        const auto& stored = TheConfigServer().InUse().module;
        return stored ? TheConfigServer().GiveOut(&*stored, module) : IVI_CONFIG_ERROR_ITEM_NOT_FOUND;
    });
}

ViStatus _VI_FUNC IviConfig_GetSoftwareModulePhysicalNameCollection(IviConfigHandle module,
                                                                    IviConfigHandle* collection) {
    return On<const StoredModule*>(
        "IviConfig_GetSoftwareModulePhysicalNameCollection", module, [=](const StoredModule* stored) {
            return TheConfigServer().GiveOut(ConfigServer::Collection<StoredPhysicalName>{&stored->physicalNames},
                                             collection);
        });
}

ViStatus _VI_FUNC IviConfig_GetPhysicalNameCount(IviConfigHandle collection, ViInt32* count) {
    return Count<StoredPhysicalName>("IviConfig_GetPhysicalNameCount", collection, count);
}

ViStatus _VI_FUNC IviConfig_GetPhysicalNameItemByIndex(IviConfigHandle collection, ViInt32 index,
                                                       IviConfigHandle* item) {
    return Item<StoredPhysicalName>("IviConfig_GetPhysicalNameItemByIndex", collection, index, item);
}

ViStatus _VI_FUNC IviConfig_GetPhysicalNamePropertyViString(IviConfigHandle item, ViInt32 id, ViInt32 size,
                                                            ViChar value[]) {
    return On<const StoredPhysicalName*>(
        "IviConfig_GetPhysicalNamePropertyViString", item, [=](const StoredPhysicalName* stored) {
            TheConfigServer().AddDetail("GetPhysicalNamePropertyViString " + std::to_string(id) + " " +
                                        std::to_string(size));
            return TextProperty(id, size, value, {{1, stored->name}, {2, stored->capability}});
        });
}

ViStatus _VI_FUNC IviConfig_GetSessionSoftwareModuleReference(IviConfigHandle session, IviConfigHandle* module) {
    return On<const StoredDriverSession*>(
        "IviConfig_GetSessionSoftwareModuleReference", session, [=](const auto* /*session*/) {
            const auto& stored = TheConfigServer().InUse().module;
            return stored ? TheConfigServer().GiveOut(&*stored, module) : IVI_CONFIG_ERROR_ITEM_NOT_FOUND;
        });
}

ViStatus _VI_FUNC IviConfig_GetSessionHardwareAssetReference(IviConfigHandle session, IviConfigHandle* asset) {
    return On<const StoredDriverSession*>("IviConfig_GetSessionHardwareAssetReference", session,
                                          [=](const StoredDriverSession* stored) {
                                              return TheConfigServer().GiveOut(ConfigServer::Asset{stored}, asset);
                                          });
}

ViStatus _VI_FUNC IviConfig_GetHardwareAssetPropertyViString(IviConfigHandle asset, ViInt32 id, ViInt32 size,
                                                             ViChar value[]) {
    return On<ConfigServer::Asset>(
        "IviConfig_GetHardwareAssetPropertyViString", asset, [=](const ConfigServer::Asset& stored) {
            TheConfigServer().AddDetail("GetHardwareAssetPropertyViString " + Numbers(id, size));
            return TextProperty(id, size, value, {{3, stored.session->resource}});
        });
}

ViStatus _VI_FUNC IviConfig_GetDriverSessionPropertyViBoolean(IviConfigHandle session, ViInt32 id, ViBoolean* value) {
    return On<const StoredDriverSession*>(
        "IviConfig_GetDriverSessionPropertyViBoolean", session, [=](const StoredDriverSession* stored) {
            TheConfigServer().AddDetail("GetDriverSessionPropertyViBoolean " + std::to_string(id));
            if (id < 4 || id > 9) {
                return IVI_CONFIG_ERROR_INVALID_PROPERTY;
            }
            *value = stored->flags[static_cast<std::size_t>(id) - 4];
            return ViStatus{VI_SUCCESS};
        });
}

ViStatus _VI_FUNC IviConfig_GetDriverSessionPropertyViString(IviConfigHandle session, ViInt32 id, ViInt32 size,
                                                             ViChar value[]) {
    return On<const StoredDriverSession*>(
        "IviConfig_GetDriverSessionPropertyViString", session, [=](const StoredDriverSession* stored) {
            TheConfigServer().AddDetail("GetDriverSessionPropertyViString " + Numbers(id, size));
            return TextProperty(id, size, value, {{10, stored->driverSetup}});
        });
}

ViStatus _VI_FUNC IviConfig_GetSessionVirtualNameCollection(IviConfigHandle session, IviConfigHandle* collection) {
    return On<const StoredDriverSession*>(
        "IviConfig_GetSessionVirtualNameCollection", session, [=](const StoredDriverSession* stored) {
            return TheConfigServer().GiveOut(ConfigServer::Collection<StoredVirtualName>{&stored->virtualNames},
                                             collection);
        });
}

ViStatus _VI_FUNC IviConfig_GetVirtualNameCount(IviConfigHandle collection, ViInt32* count) {
    return Count<StoredVirtualName>("IviConfig_GetVirtualNameCount", collection, count);
}

ViStatus _VI_FUNC IviConfig_GetVirtualNameItemByIndex(IviConfigHandle collection, ViInt32 index,
                                                      IviConfigHandle* item) {
    return Item<StoredVirtualName>("IviConfig_GetVirtualNameItemByIndex", collection, index, item);
}

ViStatus _VI_FUNC IviConfig_GetVirtualNamePropertyViString(IviConfigHandle item, ViInt32 id, ViInt32 size,
                                                           ViChar value[]) {
    return On<const StoredVirtualName*>(
        "IviConfig_GetVirtualNamePropertyViString", item, [=](const StoredVirtualName* stored) {
            return TextProperty(id, size, value, {{1, stored->name}, {2, stored->mapTo}});
        });
}

ViStatus _VI_FUNC IviConfig_GetVirtualNameVirtualRangeCollection(IviConfigHandle item, IviConfigHandle* collection) {
    return On<const StoredVirtualName*>(
        "IviConfig_GetVirtualNameVirtualRangeCollection", item, [=](const StoredVirtualName* stored) {
            return TheConfigServer().GiveOut(ConfigServer::Collection<StoredVirtualRange>{&stored->ranges}, collection);
        });
}

ViStatus _VI_FUNC IviConfig_GetVirtualRangeCount(IviConfigHandle collection, ViInt32* count) {
    return Count<StoredVirtualRange>("IviConfig_GetVirtualRangeCount", collection, count);
}

ViStatus _VI_FUNC IviConfig_GetVirtualRangeItemByIndex(IviConfigHandle collection, ViInt32 index,
                                                       IviConfigHandle* range) {
    return Item<StoredVirtualRange>("IviConfig_GetVirtualRangeItemByIndex", collection, index, range);
}

ViStatus _VI_FUNC IviConfig_GetVirtualRangePropertyViInt32(IviConfigHandle range, ViInt32 id, ViInt32* value) {
    return On<const StoredVirtualRange*>("IviConfig_GetVirtualRangePropertyViInt32", range,
                                         [=](const StoredVirtualRange* stored) {
                                             switch (id) {
                                             case 2:
                                                 *value = stored->minimum;
                                                 return ViStatus{VI_SUCCESS};
                                             case 3:
                                                 *value = stored->maximum;
                                                 return ViStatus{VI_SUCCESS};
                                             case 4:
                                                 *value = stored->startingIndex;
                                                 return ViStatus{VI_SUCCESS};
                                             default:
                                                 return IVI_CONFIG_ERROR_INVALID_PROPERTY;
                                             }
                                         });
}

ViStatus _VI_FUNC IviConfig_GetConfigComponentDataComponentCollection(IviConfigHandle component,
                                                                      IviConfigHandle* collection) {
    const InsideDouble here;
    if (const auto ordered = TheScript().Enter("IviConfig_GetConfigComponentDataComponentCollection");
        ordered != VI_SUCCESS) {
        return ordered;
    }
    const auto* object = TheConfigServer().Find(component);
    if (object == nullptr) {
        return IVI_CONFIG_ERROR_INVALID_HANDLE;
    }
    if (const auto* session = std::get_if<const StoredDriverSession*>(object)) {
        TheConfigServer().AddDetail("Components of driver session");
        return TheConfigServer().GiveOut(ConfigServer::Components{&(*session)->initialSettings}, collection);
    }
    if (const auto* module = std::get_if<const StoredModule*>(object)) {
        TheConfigServer().AddDetail("Components of software module");
        return TheConfigServer().GiveOut(ConfigServer::Components{&(*module)->initialSettings}, collection);
    }
    return IVI_CONFIG_ERROR_INVALID_HANDLE;
}

ViStatus _VI_FUNC IviConfig_GetDataComponentItemByName(IviConfigHandle collection, ViConstString name,
                                                       IviConfigHandle* item) {
    return On<ConfigServer::Components>(
        "IviConfig_GetDataComponentItemByName", collection, [=](const ConfigServer::Components& components) {
            TheConfigServer().AddDetail(std::string("GetDataComponentItemByName ") + name);
            const auto& settings = *components.settings;
            return settings ? TheConfigServer().GiveOut(ConfigServer::Structure{&*settings}, item)
                            : IVI_CONFIG_ERROR_ITEM_NOT_FOUND;
        });
}

ViStatus _VI_FUNC IviConfig_GetStructureDataComponentCollection(IviConfigHandle structure,
                                                                IviConfigHandle* collection) {
    return On<ConfigServer::Structure>(
        "IviConfig_GetStructureDataComponentCollection", structure, [=](const ConfigServer::Structure& stored) {
            return TheConfigServer().GiveOut(ConfigServer::Collection<StoredSetting>{stored.settings}, collection);
        });
}

ViStatus _VI_FUNC IviConfig_GetDataComponentCount(IviConfigHandle collection, ViInt32* count) {
    return Count<StoredSetting>("IviConfig_GetDataComponentCount", collection, count);
}

ViStatus _VI_FUNC IviConfig_GetDataComponentItemByIndex(IviConfigHandle collection, ViInt32 index,
                                                        IviConfigHandle* item) {
    return Item<StoredSetting>("IviConfig_GetDataComponentItemByIndex", collection, index, item);
}

ViStatus _VI_FUNC IviConfig_GetDataComponentPropertyViString(IviConfigHandle item, ViInt32 id, ViInt32 size,
                                                             ViChar value[]) {
    return On<const StoredSetting*>("IviConfig_GetDataComponentPropertyViString", item,
                                    [=](const StoredSetting* setting) {
                                        const auto* text = std::get_if<std::string>(&setting->value);
                                        if (id == 9 && text != nullptr) {
                                            return CopyOut(*text, size, value);
                                        }
                                        return TextProperty(id, size, value, {{1, setting->name}, {7, setting->type}});
                                    });
}

ViStatus _VI_FUNC IviConfig_GetDataComponentPropertyViInt32(IviConfigHandle item, ViInt32 id, ViInt32* value) {
    return SettingValue("IviConfig_GetDataComponentPropertyViInt32", item, id, value);
}

ViStatus _VI_FUNC IviConfig_GetDataComponentPropertyViReal64(IviConfigHandle item, ViInt32 id, ViReal64* value) {
    return SettingValue("IviConfig_GetDataComponentPropertyViReal64", item, id, value);
}

ViStatus _VI_FUNC IviConfig_GetDataComponentPropertyViBoolean(IviConfigHandle item, ViInt32 id, ViBoolean* value) {
    return SettingValue("IviConfig_GetDataComponentPropertyViBoolean", item, id, value);
}
