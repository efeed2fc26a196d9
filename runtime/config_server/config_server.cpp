#include "platform/config_server.h"

#include <algorithm>
#include <array>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/session_service.h"
#include "runtime/config_server/open_store.h"
#include "runtime/config_server/store_file.h"
#include "runtime/config_server/store_location.h"
#include "runtime/ivi_buffer.h"
#include "runtime/per_thread.h"
#include "text/characters.h"

namespace {

using namespace runtime;
using Handle = IviConfigHandle;

// ------------------------------------------------------------------------------------------------ the frame of a call

/// The first error text of a thread stays until it is read or cleared.
void RecordError(std::string_view function, std::string_view reason) noexcept {
    try {
        auto* text = PerThread<std::string>::Get();
        if (text != nullptr && text->empty()) {
            text->append("IviConfigServer.IviConfigStore.1: ").append(function).append(" failed. ").append(reason);
        }
    } catch (const std::bad_alloc&) { // the caller gets the status without a text
    }
}

/// Runs `body()`. Converts a failure to a status and records the thread's error text.
template <typename Body>
ViStatus Call(std::string_view function, Body body) noexcept {
    try {
        return body();
    } catch (const Failure& failure) {
        RecordError(function, failure.what());
        return failure.Status();
    } catch (const std::bad_alloc&) {
        RecordError(function, "Out of memory.");
        return IVI_ERROR_OUT_OF_MEMORY;
    } catch (const std::exception& exception) {
        RecordError(function, exception.what());
        return IVI_CONFIG_ERROR_CANNOT_RECOVER;
    }
}

/// Runs `body(store)` on the store of `handle`, with the store's mutex locked.
template <typename Body>
ViStatus OnStore(std::string_view function, Handle handle, Body body) noexcept {
    return Call(function, [&]() -> ViStatus {
        const auto store = StoreOf(handle);
        const std::lock_guard lock(store->mutex);
        return body(*store);
    });
}

/// OnStore for calls that take the handle of the store itself.
template <typename Body>
ViStatus OnOwnStore(std::string_view function, Handle handle, Body body) noexcept {
    return OnStore(function, handle, [&](OpenStore& store) {
        store.CheckOwn(handle);
        return body(store);
    });
}

void CheckNotNull(const void* argument) {
    if (argument == nullptr) {
        throw Failure(IVI_ERROR_NULL_POINTER, "A null pointer was given.");
    }
}

/// Copies `text` to a caller-supplied buffer.
ViStatus GiveText(std::string_view text, ViInt32 size, ViChar* buffer) {
    const auto status = CopyToIviBuffer(text, size, buffer);
    if (status < 0) {
        throw Failure(status, "A null pointer was given.");
    }
    return status;
}

// -------------------------------------------------------------------------------------------------------- properties

struct Property {
    ViInt32 id;
    const char* element;
};

constexpr Property kStoreTexts[] = {{1, "Name"}, {2, "Description"}, {6, "Revision"}, {7, "Vendor"}};
constexpr Property kSessionTexts[] = {{1, "Name"}, {2, "Description"}, {3, "SoftwareModuleName"}, {10, "DriverSetup"}};
constexpr Property kSessionFlags[] = {{4, "Cache"},      {5, "InterchangeCheck"}, {6, "QueryInstrStatus"},
                                      {7, "RangeCheck"}, {8, "RecordCoercions"},  {9, "Simulate"}};
constexpr Property kAssetTexts[] = {{1, "Name"}, {2, "Description"}, {3, "IOResourceDescriptor"}};
constexpr Property kPhysicalNameTexts[] = {{1, "Name"}, {2, "RCName"}};
constexpr Property kVirtualNameTexts[] = {{1, "Name"}, {2, "MapTo"}};
constexpr Property kRangeIntegers[] = {{2, "Min"}, {3, "Max"}, {4, "StartingPhysicalIndex"}};
constexpr Property kComponentTexts[] = {
    {1, "Name"}, {2, "Description"},   {4, "HelpFilePath"}, {6, "SoftwareModuleKey"},
    {7, "Type"}, {8, "UsedInSession"}, {9, "Value"},        {10, "Units"}};
constexpr Property kComponentIntegers[] = {{3, "HelpContextID"}, {9, "Value"}};
constexpr Property kComponentReals[] = {{9, "Value"}};
constexpr Property kComponentFlags[] = {{5, "ReadOnly"}, {9, "Value"}};
constexpr ViInt32 kComponentType = 7;
constexpr ViInt32 kComponentValue = 9;
constexpr ViInt32 kComponentUnits = 10;

constexpr ViInt32 kStoreMaster = 3;
constexpr ViInt32 kStoreActual = 4;
constexpr ViInt32 kStoreProcessDefault = 5;
constexpr ViInt32 kStoreLastProperty = 9;

Failure InvalidProperty(ViInt32 id) {
    return {IVI_CONFIG_ERROR_INVALID_PROPERTY, std::to_string(id) + " is not a valid property ID."};
}

const char* ElementOf(std::span<const Property> properties, ViInt32 id) {
    const auto property =
        std::find_if(properties.begin(), properties.end(), [&](const auto& row) { return row.id == id; });
    if (property == properties.end()) {
        throw InvalidProperty(id);
    }
    return property->element;
}

ViStatus GetText(std::string_view function, Handle handle, Kind kind, std::span<const Property> properties, ViInt32 id,
                 ViInt32 size, ViChar* value) {
    return OnStore(function, handle, [&](OpenStore& store) {
        return GiveText(TextOf(store.At(handle, {kind}).node, ElementOf(properties, id)), size, value);
    });
}

/// Converts a number or flag of the store file. `whenWrong` is the status for malformed text.
template <typename Value, typename Convert>
ViStatus GiveValue(pugi::xml_node node, const char* element, Convert convert, ViStatus whenWrong, Value* value) {
    CheckNotNull(value);
    const auto text = TextOf(node, element);
    const auto converted = convert(text);
    if (!converted) {
        throw Failure(whenWrong, std::string(element) + " of " + TextOf(node, "Name") + " is invalid: '" + text + "'.");
    }
    *value = static_cast<Value>(*converted);
    return VI_SUCCESS;
}

// ----------------------------------------------------------------------------------------------------- data components

/// The elements of data components with the texts of their types.
struct ComponentKind {
    std::string_view element;
    std::string_view type;
};
constexpr ComponentKind kStructure = {"IviStructure", "Structure"};
constexpr ComponentKind kInteger = {"IviInteger", "Integer"};
constexpr ComponentKind kReal = {"IviReal", "Real"};
constexpr ComponentKind kBoolean = {"IviBoolean", "Boolean"};
constexpr ComponentKind kString = {"IviString", "String"};
constexpr ComponentKind kApiReference = {"IviAPIReference", "APIReference"};
constexpr std::array kComponentKinds = {kStructure, kInteger, kReal, kBoolean, kString, kApiReference};

bool Is(pugi::xml_node component, const ComponentKind& kind) { return component.name() == kind.element; }

Failure NotA(pugi::xml_node component, std::string_view what) {
    return {IVI_CONFIG_ERROR_INVALID_DATA_COMPONENT,
            TextOf(component, "Name").append(" is no data component ").append(what).append(".")};
}

/// Returns the type that the file states, else the type of the element's name.
std::string TypeOf(pugi::xml_node component) {
    auto type = TextOf(component, "Type");
    if (type.empty()) {
        const auto kind = std::find_if(kComponentKinds.begin(), kComponentKinds.end(),
                                       [&](const auto& candidate) { return Is(component, candidate); });
        type = kind->type;
    }
    return type;
}

template <typename Value, typename Convert>
ViStatus GetComponentValue(std::string_view function, Handle handle, std::span<const Property> properties, ViInt32 id,
                           const ComponentKind& kind, Convert convert, Value* value) {
    return OnStore(function, handle, [&](OpenStore& store) {
        const auto node = store.At(handle, {Kind::DataComponent}).node;
        const auto* element = ElementOf(properties, id);
        if (id == kComponentValue && !Is(node, kind)) {
            throw NotA(node, std::string("of type ").append(kind.type));
        }
        return GiveValue(node, element, convert, IVI_CONFIG_ERROR_INVALID_DATA_COMPONENT, value);
    });
}

// ------------------------------------------------------------------------------------------ objects and collections

/// Sets `*result` to a handle of the result of `find(file, object)`, null on failure.
template <typename Find>
ViStatus GetObject(std::string_view function, Handle from, std::initializer_list<Kind> kinds, Handle* result,
                   Find find) {
    return OnStore(function, from, [&](OpenStore& store) {
        const auto& object = store.At(from, kinds);
        CheckNotNull(result);
        *result = nullptr;
        *result = store.Add(find(*store.file, object));
        return VI_SUCCESS;
    });
}

/// Returns the objects in the element `container` of `node`. Follows references and ignores other elements.
template <typename... Names>
Object Collect(Kind kind, const StoreFile& file, pugi::xml_node node, const char* container, Names... elements) {
    Object collection{kind, node, {}};
    for (const auto child : node.child(container)) {
        for (const std::string_view element : {std::string_view(elements)...}) {
            if (const auto item = file.Resolve(child, element)) {
                collection.items.push_back(item);
                break;
            }
        }
    }
    return collection;
}

Object CollectComponents(const StoreFile& file, pugi::xml_node node) {
    return std::apply(
        [&](const auto&... kinds) {
            return Collect(Kind::DataComponents, file, node, "DataComponents", kinds.element...);
        },
        kComponentKinds);
}

ViStatus GetCount(std::string_view function, Handle handle, Kind collection, ViInt32* count) {
    return OnStore(function, handle, [&](OpenStore& store) {
        const auto size = store.At(handle, {collection}).items.size();
        CheckNotNull(count);
        *count = static_cast<ViInt32>(size); // a file of the maximum size cannot contain more
        return VI_SUCCESS;
    });
}

Failure NotInCollection(std::string_view what) {
    return {IVI_CONFIG_ERROR_ITEM_NOT_FOUND, std::string(what).append(" does not exist in the collection.")};
}

ViStatus GetItemByIndex(std::string_view function, Handle handle, Kind collection, Kind item, ViInt32 index,
                        Handle* result) {
    return GetObject(function, handle, {collection}, result, [&](const StoreFile& /*file*/, const Object& object) {
        if (index < 1 || static_cast<std::size_t>(index) > object.items.size()) {
            throw NotInCollection(std::to_string(index));
        }
        return Object{item, object.items[static_cast<std::size_t>(index) - 1], {}};
    });
}

/// Returns the first object with this name. Upper and lower case differ.
template <typename Items>
pugi::xml_node FindByName(const Items& items, std::string_view name) {
    const auto found =
        std::find_if(items.begin(), items.end(), [&](pugi::xml_node item) { return TextOf(item, "Name") == name; });
    return found == items.end() ? pugi::xml_node() : *found;
}

ViStatus GetItemByName(std::string_view function, Handle handle, Kind collection, Kind item, ViConstString name,
                       Handle* result) {
    return GetObject(function, handle, {collection}, result, [&](const StoreFile& /*file*/, const Object& object) {
        CheckNotNull(name);
        const auto node = FindByName(object.items, name);
        if (!node) {
            throw NotInCollection(name);
        }
        return Object{item, node, {}};
    });
}

/// Returns the object to which the element `reference` of `owner` refers.
Object Follow(const StoreFile& file, pugi::xml_node owner, const char* reference, Kind kind, const char* element) {
    const auto from = owner.child(reference);
    if (!from) {
        throw Failure(IVI_CONFIG_ERROR_ITEM_NOT_FOUND, TextOf(owner, "Name") + " has no " + reference + ".");
    }
    const auto node = file.Resolve(from, element);
    if (!node) {
        throw Failure(IVI_CONFIG_ERROR_NOT_IN_GLOBAL_COLLECTION, std::string(reference) + " of " +
                                                                     TextOf(owner, "Name") +
                                                                     " refers to an object that does not exist.");
    }
    return {kind, node, {}};
}

/// Returns the driver session of a logical name, else the driver session with this name.
Object FindSession(const StoreFile& file, std::string_view name) {
    const auto logicalNames = Collect(Kind::Session, file, file.Root(), "LogicalNames", "IviLogicalName");
    const auto logicalName = FindByName(logicalNames.items, name);
    if (logicalName && logicalName.child("IviDriverSession")) {
        return Follow(file, logicalName, "IviDriverSession", Kind::Session, "IviDriverSession");
    }
    const auto sessions = Collect(Kind::Session, file, file.Root(), "DriverSessions", "IviDriverSession");
    const auto session = logicalName ? pugi::xml_node() : FindByName(sessions.items, name);
    if (!session) {
        throw Failure(IVI_CONFIG_ERROR_SESSION_NOT_FOUND,
                      "Name " + std::string(name) + " could not be resolved to a DriverSession.");
    }
    return {Kind::Session, session, {}};
}

// ---------------------------------------------------------------------------------------------------------- the store

std::string StoreText(const OpenStore& store, ViInt32 id) {
    switch (id) {
    case kStoreMaster:
        return MasterLocation();
    case kStoreActual:
        return store.location;
    case kStoreProcessDefault:
        return ProcessDefaultLocation();
    default:
        return TextOf(store.file->Root(), ElementOf(kStoreTexts, id));
    }
}

/// A missing master store is an empty store, so that drivers work before anything is configured.
bool IsMissingMaster(const std::string& location) {
    return location == MasterLocation() && location != ProcessDefaultLocation() && !FileExists(location);
}

} // namespace

extern "C" {

ViStatus _VI_FUNC IviConfig_Initialize(IviConfigHandle* store) {
    return Call("Initialize", [&] {
        CheckNotNull(store);
        *store = nullptr;
        *store = OpenNewStore();
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC IviConfig_Close(IviConfigHandle store) {
    return Call("Close", [&] {
        CloseStore(store);
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC IviConfig_DisposeHandle(IviConfigHandle handle) {
    return OnStore("DisposeHandle", handle, [&](OpenStore& store) {
        store.Remove(handle);
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC IviConfig_GetError(ViInt32 size, ViChar text[]) {
    auto* kept = PerThread<std::string>::Get();
    const auto status = CopyToIviBuffer(kept == nullptr ? std::string_view() : *kept, size, text);
    if (kept != nullptr && size != 0 && status >= 0) {
        kept->clear();
    }
    return status;
}

ViStatus _VI_FUNC IviConfig_ClearError(void) {
    if (auto* kept = PerThread<std::string>::Get(); kept != nullptr) {
        kept->clear();
    }
    return VI_SUCCESS;
}

ViStatus _VI_FUNC IviConfig_Deserialize(IviConfigHandle store, ViConstString location) {
    return OnOwnStore("Deserialize", store, [&](OpenStore& open) {
        CheckNotNull(location);
        if (open.deserialized) {
            throw Failure(IVI_CONFIG_ERROR_ALREADY_DESERIALIZED, "The store is already deserialized.");
        }
        auto file = std::make_unique<StoreFile>();
        if (!IsMissingMaster(location)) {
            if (const auto wrong = file->Load(location); !wrong.empty()) {
                throw Failure(IVI_CONFIG_ERROR_DESERIALIZE_FAILED, std::string(location) + ": " + wrong);
            }
        }
        open.location = location;
        open.file = std::move(file);
        open.deserialized = true;
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC IviConfig_GetConfigStorePropertyViString(IviConfigHandle store, ViInt32 id, ViInt32 size,
                                                           ViChar value[]) {
    return OnOwnStore("GetConfigStorePropertyViString", store,
                      [&](OpenStore& open) { return GiveText(StoreText(open, id), size, value); });
}

ViStatus _VI_FUNC IviConfig_SetConfigStorePropertyViString(IviConfigHandle store, ViInt32 id, ViConstString value) {
    return OnOwnStore("SetConfigStorePropertyViString", store, [&](OpenStore& /*open*/) {
        if (id < 1 || id > kStoreLastProperty) {
            throw InvalidProperty(id);
        }
        if (id != kStoreProcessDefault) {
            throw Failure(IVI_CONFIG_ERROR_NOT_SUPPORTED, "Property " + std::to_string(id) + " cannot be set.");
        }
        CheckNotNull(value);
        SetProcessDefaultLocation(value);
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC IviConfig_GetDriverSession(IviConfigHandle store, ViConstString name, IviConfigHandle* session) {
    return OnOwnStore("GetDriverSession", store, [&](OpenStore& open) {
        CheckNotNull(session);
        *session = nullptr;
        CheckNotNull(name);
        *session = open.Add(FindSession(*open.file, name));
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC IviConfig_GetConfigStoreSoftwareModuleCollection(IviConfigHandle store, IviConfigHandle* collection) {
    return OnOwnStore("GetConfigStoreSoftwareModuleCollection", store, [&](OpenStore& open) {
        CheckNotNull(collection);
        *collection = nullptr;
        *collection = open.Add(
            Collect(Kind::SoftwareModules, *open.file, open.file->Root(), "SoftwareModules", "IviSoftwareModule"));
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC IviConfig_GetSoftwareModuleItemByName(IviConfigHandle collection, ViConstString name,
                                                        IviConfigHandle* module) {
    return GetItemByName("GetSoftwareModuleItemByName", collection, Kind::SoftwareModules, Kind::SoftwareModule, name,
                         module);
}

ViStatus _VI_FUNC IviConfig_GetSoftwareModulePhysicalNameCollection(IviConfigHandle module,
                                                                    IviConfigHandle* collection) {
    return GetObject("GetSoftwareModulePhysicalNameCollection", module, {Kind::SoftwareModule}, collection,
                     [](const StoreFile& file, const Object& object) {
                         return Collect(Kind::PhysicalNames, file, object.node, "PhysicalNames", "IviPhysicalName");
                     });
}

ViStatus _VI_FUNC IviConfig_GetPhysicalNameCount(IviConfigHandle collection, ViInt32* count) {
    return GetCount("GetPhysicalNameCount", collection, Kind::PhysicalNames, count);
}

ViStatus _VI_FUNC IviConfig_GetPhysicalNameItemByIndex(IviConfigHandle collection, ViInt32 index,
                                                       IviConfigHandle* item) {
    return GetItemByIndex("GetPhysicalNameItemByIndex", collection, Kind::PhysicalNames, Kind::PhysicalName, index,
                          item);
}

ViStatus _VI_FUNC IviConfig_GetPhysicalNamePropertyViString(IviConfigHandle item, ViInt32 id, ViInt32 size,
                                                            ViChar value[]) {
    return GetText("GetPhysicalNamePropertyViString", item, Kind::PhysicalName, kPhysicalNameTexts, id, size, value);
}

ViStatus _VI_FUNC IviConfig_GetSessionSoftwareModuleReference(IviConfigHandle session, IviConfigHandle* module) {
    return GetObject("GetSessionSoftwareModuleReference", session, {Kind::Session}, module,
                     [](const StoreFile& file, const Object& object) {
                         return Follow(file, object.node, "IviSoftwareModuleRef", Kind::SoftwareModule,
                                       "IviSoftwareModule");
                     });
}

ViStatus _VI_FUNC IviConfig_GetSessionHardwareAssetReference(IviConfigHandle session, IviConfigHandle* asset) {
    return GetObject("GetSessionHardwareAssetReference", session, {Kind::Session}, asset,
                     [](const StoreFile& file, const Object& object) {
                         return Follow(file, object.node, "IviHardwareAsset", Kind::HardwareAsset, "IviHardwareAsset");
                     });
}

ViStatus _VI_FUNC IviConfig_GetHardwareAssetPropertyViString(IviConfigHandle asset, ViInt32 id, ViInt32 size,
                                                             ViChar value[]) {
    return GetText("GetHardwareAssetPropertyViString", asset, Kind::HardwareAsset, kAssetTexts, id, size, value);
}

ViStatus _VI_FUNC IviConfig_GetDriverSessionPropertyViBoolean(IviConfigHandle session, ViInt32 id, ViBoolean* value) {
    return OnStore("GetDriverSessionPropertyViBoolean", session, [&](OpenStore& store) {
        return GiveValue(store.At(session, {Kind::Session}).node, ElementOf(kSessionFlags, id), ToBoolean,
                         IVI_CONFIG_ERROR_DESERIALIZE_FAILED, value);
    });
}

ViStatus _VI_FUNC IviConfig_GetDriverSessionPropertyViString(IviConfigHandle session, ViInt32 id, ViInt32 size,
                                                             ViChar value[]) {
    return GetText("GetDriverSessionPropertyViString", session, Kind::Session, kSessionTexts, id, size, value);
}

ViStatus _VI_FUNC IviConfig_GetSessionVirtualNameCollection(IviConfigHandle session, IviConfigHandle* collection) {
    return GetObject("GetSessionVirtualNameCollection", session, {Kind::Session}, collection,
                     [](const StoreFile& file, const Object& object) {
                         return Collect(Kind::VirtualNames, file, object.node, "VirtualNames", "IviVirtualName");
                     });
}

ViStatus _VI_FUNC IviConfig_GetVirtualNameCount(IviConfigHandle collection, ViInt32* count) {
    return GetCount("GetVirtualNameCount", collection, Kind::VirtualNames, count);
}

ViStatus _VI_FUNC IviConfig_GetVirtualNameItemByIndex(IviConfigHandle collection, ViInt32 index,
                                                      IviConfigHandle* item) {
    return GetItemByIndex("GetVirtualNameItemByIndex", collection, Kind::VirtualNames, Kind::VirtualName, index, item);
}

ViStatus _VI_FUNC IviConfig_GetVirtualNamePropertyViString(IviConfigHandle item, ViInt32 id, ViInt32 size,
                                                           ViChar value[]) {
    return GetText("GetVirtualNamePropertyViString", item, Kind::VirtualName, kVirtualNameTexts, id, size, value);
}

ViStatus _VI_FUNC IviConfig_GetVirtualNameVirtualRangeCollection(IviConfigHandle item, IviConfigHandle* collection) {
    return GetObject("GetVirtualNameVirtualRangeCollection", item, {Kind::VirtualName}, collection,
                     [](const StoreFile& file, const Object& object) {
                         return Collect(Kind::VirtualRanges, file, object.node, "VirtualRanges", "IviVirtualRange");
                     });
}

ViStatus _VI_FUNC IviConfig_GetVirtualRangeCount(IviConfigHandle collection, ViInt32* count) {
    return GetCount("GetVirtualRangeCount", collection, Kind::VirtualRanges, count);
}

ViStatus _VI_FUNC IviConfig_GetVirtualRangeItemByIndex(IviConfigHandle collection, ViInt32 index,
                                                       IviConfigHandle* range) {
    return GetItemByIndex("GetVirtualRangeItemByIndex", collection, Kind::VirtualRanges, Kind::VirtualRange, index,
                          range);
}

ViStatus _VI_FUNC IviConfig_GetVirtualRangePropertyViInt32(IviConfigHandle range, ViInt32 id, ViInt32* value) {
    return OnStore("GetVirtualRangePropertyViInt32", range, [&](OpenStore& store) {
        return GiveValue(store.At(range, {Kind::VirtualRange}).node, ElementOf(kRangeIntegers, id), ToInteger,
                         IVI_CONFIG_ERROR_DESERIALIZE_FAILED, value);
    });
}

ViStatus _VI_FUNC IviConfig_GetConfigComponentDataComponentCollection(IviConfigHandle component,
                                                                      IviConfigHandle* collection) {
    return GetObject("GetConfigComponentDataComponentCollection", component,
                     {Kind::SoftwareModule, Kind::Session, Kind::HardwareAsset}, collection,
                     [](const StoreFile& file, const Object& object) { return CollectComponents(file, object.node); });
}

ViStatus _VI_FUNC IviConfig_GetStructureDataComponentCollection(IviConfigHandle structure,
                                                                IviConfigHandle* collection) {
    return GetObject("GetStructureDataComponentCollection", structure, {Kind::DataComponent}, collection,
                     [](const StoreFile& file, const Object& object) {
                         if (!Is(object.node, kStructure)) {
                             throw NotA(object.node, "of type Structure");
                         }
                         return CollectComponents(file, object.node);
                     });
}

ViStatus _VI_FUNC IviConfig_GetDataComponentCount(IviConfigHandle collection, ViInt32* count) {
    return GetCount("GetDataComponentCount", collection, Kind::DataComponents, count);
}

ViStatus _VI_FUNC IviConfig_GetDataComponentItemByIndex(IviConfigHandle collection, ViInt32 index,
                                                        IviConfigHandle* item) {
    return GetItemByIndex("GetDataComponentItemByIndex", collection, Kind::DataComponents, Kind::DataComponent, index,
                          item);
}

ViStatus _VI_FUNC IviConfig_GetDataComponentItemByName(IviConfigHandle collection, ViConstString name,
                                                       IviConfigHandle* item) {
    return GetItemByName("GetDataComponentItemByName", collection, Kind::DataComponents, Kind::DataComponent, name,
                         item);
}

ViStatus _VI_FUNC IviConfig_GetDataComponentPropertyViString(IviConfigHandle item, ViInt32 id, ViInt32 size,
                                                             ViChar value[]) {
    return OnStore("GetDataComponentPropertyViString", item, [&](OpenStore& store) {
        const auto node = store.At(item, {Kind::DataComponent}).node;
        const auto* element = ElementOf(kComponentTexts, id);
        if (id == kComponentValue && !Is(node, kString)) {
            throw NotA(node, "of type String");
        }
        if (id == kComponentUnits && !Is(node, kInteger) && !Is(node, kReal)) {
            throw NotA(node, "that has units");
        }
        return GiveText(id == kComponentType ? TypeOf(node) : TextOf(node, element), size, value);
    });
}

ViStatus _VI_FUNC IviConfig_GetDataComponentPropertyViInt32(IviConfigHandle item, ViInt32 id, ViInt32* value) {
    return GetComponentValue("GetDataComponentPropertyViInt32", item, kComponentIntegers, id, kInteger, ToInteger,
                             value);
}

ViStatus _VI_FUNC IviConfig_GetDataComponentPropertyViReal64(IviConfigHandle item, ViInt32 id, ViReal64* value) {
    return GetComponentValue("GetDataComponentPropertyViReal64", item, kComponentReals, id, kReal, ToReal, value);
}

ViStatus _VI_FUNC IviConfig_GetDataComponentPropertyViBoolean(IviConfigHandle item, ViInt32 id, ViBoolean* value) {
    return GetComponentValue("GetDataComponentPropertyViBoolean", item, kComponentFlags, id, kBoolean, ToBoolean,
                             value);
}

} // extern "C"
