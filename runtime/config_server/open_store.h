// The open stores and the handles of their objects.
//
// Not a HandleTable: closing a store invalidates the handles of all its objects at once, and no call of an instrument
// needs these handles, so a map under a mutex is fast enough.
#pragma once

#include <cstdint>
#include <exception>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/config_server.h"
#include "runtime/config_server/store_file.h"

namespace runtime {

/// The failure of a call of the C API: its status and the reason as a sentence.
class Failure : public std::exception {
  public:
    Failure(ViStatus status, std::string reason) : status_(status), reason_(std::move(reason)) {}
    [[nodiscard]] ViStatus Status() const { return status_; }
    [[nodiscard]] const char* what() const noexcept override { return reason_.c_str(); }

  private:
    ViStatus status_;
    std::string reason_;
};

enum class Kind {
    SoftwareModules,
    SoftwareModule,
    PhysicalNames,
    PhysicalName,
    Session,
    HardwareAsset,
    VirtualNames,
    VirtualName,
    VirtualRanges,
    VirtualRange,
    DataComponents,
    DataComponent,
};

/// The object of a handle: an object of the store file, or a collection of them.
struct Object {
    Kind kind;
    pugi::xml_node node;
    std::vector<pugi::xml_node> items;
};

/// A handle is the number of its store in the high half and the number of the object in the low half: 0 for the store
/// itself, from 1 for its objects. No number is used twice, so a released or foreign handle is detected without
/// dereferencing it.
class OpenStore {
  public:
    explicit OpenStore(std::uint32_t number) : number_(number) {}

    std::mutex mutex; // guards the following members; callers of member functions must hold it
    std::unique_ptr<StoreFile> file = std::make_unique<StoreFile>();
    std::string location; // from which it was read
    bool deserialized = false;

    IviConfigHandle Add(Object object);

    /// Returns the object of `handle`. Throws Failure when there is none or when it has another kind.
    const Object& At(IviConfigHandle handle, std::initializer_list<Kind> kinds) const;

    /// Throws Failure when `handle` is not the handle of the store itself.
    void CheckOwn(IviConfigHandle handle) const;

    /// Removes the object of `handle`. Throws Failure when there is none; the store itself cannot be removed.
    void Remove(IviConfigHandle handle);

  private:
    std::uint32_t number_;
    std::uint32_t last_ = 0;
    std::unordered_map<std::uint32_t, Object> objects_;
};

IviConfigHandle OpenNewStore();

/// Returns the store of `handle`. Throws Failure when there is none. The store exists while the caller holds the
/// pointer, even when another thread closes it.
std::shared_ptr<OpenStore> StoreOf(IviConfigHandle handle);

/// Closes a store. Throws Failure when `handle` is not the handle of an open store.
void CloseStore(IviConfigHandle handle);

} // namespace runtime
