// The stores that are open and the handles that the C API has given out for what is in them.
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

/// A call of the C API that failed: its status, and a sentence that says why.
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

/// What a handle stands for: an object of the store file, or a collection of them.
struct Object {
    Kind kind;
    pugi::xml_node node;
    std::vector<pugi::xml_node> items;
};

/// A store's handle is its number in the high half, with zero in the low half; the low halves of the handles of what
/// is in it count from 1. No number is given twice, so a handle that was given back, or is another's, is known as
/// such without looking behind it.
class OpenStore {
  public:
    explicit OpenStore(std::uint32_t number) : number_(number) {}

    std::mutex mutex; // guards all that follows; whoever calls a member holds it
    std::unique_ptr<StoreFile> file = std::make_unique<StoreFile>();
    std::string location; // that it was read from
    bool deserialized = false;

    IviConfigHandle Add(Object object);

    /// The object of `handle`; a Failure when there is none, or none of these kinds.
    const Object& At(IviConfigHandle handle, std::initializer_list<Kind> kinds) const;

    /// A Failure when `handle` is not the store's own.
    void CheckOwn(IviConfigHandle handle) const;

    /// A Failure when there is nothing to remove; the store's own handle is not removed in this way.
    void Remove(IviConfigHandle handle);

  private:
    std::uint32_t number_;
    std::uint32_t last_ = 0;
    std::unordered_map<std::uint32_t, Object> objects_;
};

IviConfigHandle OpenNewStore();

/// The store that `handle` belongs to; a Failure when there is none. It stays alive while the caller holds it, also
/// when another thread closes it.
std::shared_ptr<OpenStore> StoreOf(IviConfigHandle handle);

/// A Failure when `handle` is not an open store's own.
void CloseStore(IviConfigHandle handle);

} // namespace runtime
