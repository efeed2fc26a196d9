// The session's entries in the IVI configuration store (IVI-3.5): resource, inherent options, DriverSetup, virtual
// names, configurable initial settings.
//
// Handles are released at the end of their scope. The error text of a failure is fetched before that.

#include <array>
#include <string>

#include "framework/config_handle.h"
#include "framework/driver_session.h"
#include "status/run_until.h"
#include "text/characters.h"
#include "text/option_string.h"

namespace nrt2 {
namespace {

namespace property = ivi_config_property;

constexpr ViInt32 kTextSize = 1024;
constexpr ViInt32 kPathSize = 260;

} // namespace

ViStatus DriverSession::RecordStoreError(ViStatus status) const {
    if (status >= 0) {
        return VI_SUCCESS;
    }
    std::array<ViChar, kTextSize> text{};
    IviConfig_GetError(kTextSize, text.data());
    text.back() = '\0';
    const auto recorded = IviSession_SetError(Handle(), status, text.data());
    return recorded < 0 ? recorded : status;
}

template <typename Read>
ViStatus DriverSession::ReadStoreText(Read read, IviConfigHandle handle, ViInt32 id, std::string& value) const {
    std::array<ViChar, kTextSize> text{};
    const auto status = RecordStoreError(read(handle, id, kTextSize, text.data()));
    if (status >= 0) {
        text.back() = '\0';
        value = text.data();
    }
    return status;
}

ViStatus DriverSession::ResolveResource() {
    ConfigStore store;
    auto status = RecordStoreError(IviConfig_Initialize(store.Out()));
    if (status >= 0) {
        status = ResolveFromStore(store.Get());
    }
    if (status < 0) {
        return status;
    }
    if (flags_.simulate && modelOverride_.empty()) {
        modelOverride_ = driver_.defaultSimulationModel;
    }
    initialFlags_ = flags_;
    return RecordStoreError(store.Reset());
}

ViStatus DriverSession::ResolveFromStore(IviConfigHandle store) {
    // Required: the store is searched for the driver's prefix, not for the resource name.
    const std::string name(driver_.prefix);
    ConfigHandle session;
    ConfigHandle softwareModule;

    std::array<ViChar, kPathSize> location{};
    auto status = RecordStoreError(IviConfig_GetConfigStorePropertyViString(
        store, property::kStoreProcessDefaultLocation, kPathSize, location.data()));
    if (status >= 0 && location.front() == '\0') {
        status = RecordStoreError(IviConfig_GetConfigStorePropertyViString(store, property::kStoreMasterLocation,
                                                                           kPathSize, location.data()));
    }
    location.back() = '\0';
    if (status >= 0) {
        status = RecordStoreError(IviConfig_Deserialize(store, location.data()));
    }
    if (status < 0) {
        return status;
    }

    const auto found = IviConfig_GetDriverSession(store, name.c_str(), session.Out());
    if (found == IVI_CONFIG_ERROR_SESSION_NOT_FOUND) {
        IviConfig_ClearError();
        ConfigHandle modules;
        status = RecordStoreError(IviConfig_GetConfigStoreSoftwareModuleCollection(store, modules.Out()));
        if (status < 0) {
            return status;
        }
        // A driver without an entry in the store works: a module that is not found is not an error.
        IviConfig_GetSoftwareModuleItemByName(modules.Get(), name.c_str(), softwareModule.Out());
        IviConfig_ClearError();
        ioResourceDescriptor_ = resourceName_;
    } else {
        status = status::RunUntilNegative([&] { return RecordStoreError(found); },
                                          [&] { return ApplyDriverSession(session.Get()); },
                                          [&] { return LoadInitialSettings(session.Get()); },
                                          [&] {
                                              return RecordStoreError(IviConfig_GetSessionSoftwareModuleReference(
                                                  session.Get(), softwareModule.Out()));
                                          });
        if (status < 0) {
            return status;
        }
    }

    // Required: with a driver session, its settings are loaded a second time and those of the module are not loaded.
    auto* const component = session.Get() != nullptr ? session.Get() : softwareModule.Get();
    return status::RunUntilNegative(
        [&] { return component != nullptr ? LoadInitialSettings(component) : VI_SUCCESS; },
        [&] { return ParseOptionString(optionString_); },
        [&] { return softwareModule.Get() != nullptr ? LoadPhysicalNames(softwareModule.Get()) : VI_SUCCESS; });
}

ViStatus DriverSession::ApplyDriverSession(IviConfigHandle session) {
    logicalName_ = resourceName_;
    ConfigHandle asset;
    auto status = status::RunUntilNegative(
        [&] { return LoadVirtualNames(session); },
        [&] { return RecordStoreError(IviConfig_GetSessionHardwareAssetReference(session, asset.Out())); },
        [&] {
            return ReadStoreText(IviConfig_GetHardwareAssetPropertyViString, asset.Get(),
                                 property::kAssetResourceDescriptor, ioResourceDescriptor_);
        });
    auto id = property::kSessionCache;
    for (const auto& option : text::kInherentOptions) {
        if (status < 0) {
            return status;
        }
        ViBoolean value = VI_FALSE;
        status = RecordStoreError(IviConfig_GetDriverSessionPropertyViBoolean(session, id++, &value));
        flags_.*option.flag = value == VI_TRUE;
    }
    return status < 0 ? status
                      : ReadStoreText(IviConfig_GetDriverSessionPropertyViString, session,
                                      property::kSessionDriverSetup, driverSetup_);
}

ViStatus DriverSession::LoadVirtualNames(IviConfigHandle session) {
    virtualNames_.Clear();
    ConfigHandle names;
    ViInt32 count = 0;
    auto status = status::RunUntilNegative(
        [&] { return RecordStoreError(IviConfig_GetSessionVirtualNameCollection(session, names.Out())); },
        [&] { return RecordStoreError(IviConfig_GetVirtualNameCount(names.Get(), &count)); });
    for (ViInt32 index = 1; status >= 0 && index <= count; ++index) {
        status = LoadVirtualName(names.Get(), index);
    }
    return status;
}

ViStatus DriverSession::LoadVirtualName(IviConfigHandle names, ViInt32 index) {
    ConfigHandle item;
    ConfigHandle ranges;
    std::string name;
    std::string mapTo;
    ViInt32 count = 0;
    auto status = status::RunUntilNegative(
        [&] { return RecordStoreError(IviConfig_GetVirtualNameItemByIndex(names, index, item.Out())); },
        [&] { return ReadStoreText(IviConfig_GetVirtualNamePropertyViString, item.Get(), property::kName, name); },
        [&] {
            return ReadStoreText(IviConfig_GetVirtualNamePropertyViString, item.Get(), property::kVirtualNameMapTo,
                                 mapTo);
        },
        [&] { return RecordStoreError(IviConfig_GetVirtualNameVirtualRangeCollection(item.Get(), ranges.Out())); },
        [&] { return RecordStoreError(IviConfig_GetVirtualRangeCount(ranges.Get(), &count)); });
    if (status >= 0 && count == 0) {
        virtualNames_.Add(name, mapTo);
    }
    for (ViInt32 range = 1; status >= 0 && range <= count; ++range) {
        status = LoadVirtualRange(ranges.Get(), range, name, mapTo);
    }
    return status;
}

ViStatus DriverSession::LoadVirtualRange(IviConfigHandle ranges, ViInt32 index, const std::string& name,
                                         const std::string& mapTo) {
    ConfigHandle range;
    ViInt32 minimum = 0;
    ViInt32 maximum = 0;
    ViInt32 start = 0;
    const auto read = [&](ViInt32 id, ViInt32& value) {
        return RecordStoreError(IviConfig_GetVirtualRangePropertyViInt32(range.Get(), id, &value));
    };
    const auto status = status::RunUntilNegative(
        [&] { return RecordStoreError(IviConfig_GetVirtualRangeItemByIndex(ranges, index, range.Out())); },
        [&] { return read(property::kRangeMinimum, minimum); }, [&] { return read(property::kRangeMaximum, maximum); },
        [&] { return read(property::kRangeStartingIndex, start); });
    if (status >= 0) {
        virtualNames_.AddRange(name, mapTo, minimum, maximum, start);
    }
    return status;
}

ViStatus DriverSession::LoadPhysicalNames(IviConfigHandle softwareModule) {
    physicalNames_.clear();
    ConfigHandle names;
    ViInt32 count = 0;
    auto status = status::RunUntilNegative(
        [&] {
            return RecordStoreError(IviConfig_GetSoftwareModulePhysicalNameCollection(softwareModule, names.Out()));
        },
        [&] { return RecordStoreError(IviConfig_GetPhysicalNameCount(names.Get(), &count)); });
    for (ViInt32 index = 1; status >= 0 && index <= count; ++index) {
        ConfigHandle item;
        std::string name;
        std::string capability;
        status = status::RunUntilNegative(
            [&] { return RecordStoreError(IviConfig_GetPhysicalNameItemByIndex(names.Get(), index, item.Out())); },
            [&] { return ReadStoreText(IviConfig_GetPhysicalNamePropertyViString, item.Get(), property::kName, name); },
            [&] {
                return ReadStoreText(IviConfig_GetPhysicalNamePropertyViString, item.Get(),
                                     property::kPhysicalNameCapability, capability);
            });
        physicalNames_.emplace_back(std::move(name), std::move(capability));
    }
    return status;
}

ViStatus DriverSession::LoadInitialSettings(IviConfigHandle component) {
    ConfigHandle components;
    auto status = RecordStoreError(IviConfig_GetConfigComponentDataComponentCollection(component, components.Out()));
    if (status < 0) {
        return status;
    }
    ConfigHandle settings;
    const auto found =
        IviConfig_GetDataComponentItemByName(components.Get(), "Configurable Initial Settings", settings.Out());
    if (found == IVI_CONFIG_ERROR_ITEM_NOT_FOUND) {
        IviConfig_ClearError();
        return VI_SUCCESS; // initial settings are optional
    }
    ConfigHandle items;
    ViInt32 count = 0;
    status = status::RunUntilNegative(
        [&] { return RecordStoreError(found); },
        [&] { return RecordStoreError(IviConfig_GetStructureDataComponentCollection(settings.Get(), items.Out())); },
        [&] { return RecordStoreError(IviConfig_GetDataComponentCount(items.Get(), &count)); });
    for (ViInt32 index = 1; status >= 0 && index <= count; ++index) {
        status = LoadInitialSetting(items.Get(), index);
    }
    if (status >= 0) {
        ApplyModelSetting();
    }
    return status;
}

ViStatus DriverSession::LoadInitialSetting(IviConfigHandle items, ViInt32 index) {
    ConfigHandle item;
    std::string type;
    std::string name;
    const auto readText = [&](ViInt32 id, std::string& value) {
        return ReadStoreText(IviConfig_GetDataComponentPropertyViString, item.Get(), id, value);
    };
    const auto status = status::RunUntilNegative(
        [&] { return RecordStoreError(IviConfig_GetDataComponentItemByIndex(items, index, item.Out())); },
        [&] { return readText(property::kDataComponentType, type); }, [&] { return readText(property::kName, name); });
    if (status < 0) {
        return status;
    }
    // Only a text setting is used (the model). The others are read too: a store with an unreadable value is refused.
    const auto id = property::kDataComponentValue;
    if (text::EqualIgnoringCase(type, "string")) {
        std::string value;
        const auto read = readText(id, value);
        if (read >= 0) {
            stringSettings_.insert_or_assign(name, value);
        }
        return read;
    }
    if (text::EqualIgnoringCase(type, "integer")) {
        ViInt32 value = 0;
        return RecordStoreError(IviConfig_GetDataComponentPropertyViInt32(item.Get(), id, &value));
    }
    if (text::EqualIgnoringCase(type, "real")) {
        ViReal64 value = 0.0;
        return RecordStoreError(IviConfig_GetDataComponentPropertyViReal64(item.Get(), id, &value));
    }
    if (text::EqualIgnoringCase(type, "boolean")) {
        ViBoolean value = VI_FALSE;
        return RecordStoreError(IviConfig_GetDataComponentPropertyViBoolean(item.Get(), id, &value));
    }
    return VI_SUCCESS;
}

void DriverSession::ApplyModelSetting() {
    if (const auto setting = stringSettings_.find("model"); setting != stringSettings_.end()) {
        modelOverride_ = setting->second;
    }
}

} // namespace nrt2
