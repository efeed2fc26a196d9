#include "runtime/config_server/open_store.h"

#include <algorithm>
#include <limits>
#include <new>

namespace runtime {

namespace {

constexpr unsigned kHalf = 32;
static_assert(sizeof(IviConfigHandle) == 2 * sizeof(std::uint32_t));

std::uint32_t StoreNumber(IviConfigHandle handle) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(handle) >> kHalf);
}

std::uint32_t ObjectNumber(IviConfigHandle handle) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(handle));
}

IviConfigHandle MakeHandle(std::uint32_t store, std::uint32_t object) {
    // A handle is a number in a pointer's type and is never dereferenced.
    return reinterpret_cast<IviConfigHandle>((std::uintptr_t{store} << kHalf) | object); // NOLINT
}

/// Returns the number after `last`. Numbers are never reused: when they are used up, opening fails.
std::uint32_t NextNumber(std::uint32_t& last) {
    if (last == std::numeric_limits<std::uint32_t>::max()) {
        throw std::bad_alloc();
    }
    return ++last;
}

Failure InvalidHandle() { return {IVI_CONFIG_ERROR_INVALID_HANDLE, "The handle is invalid."}; }

struct Registry {
    std::mutex mutex;
    std::uint32_t last = 0;
    std::unordered_map<std::uint32_t, std::shared_ptr<OpenStore>> stores;
};

Registry registry;

} // namespace

IviConfigHandle OpenStore::Add(Object object) {
    const auto number = NextNumber(last_);
    objects_.emplace(number, std::move(object));
    return MakeHandle(number_, number);
}

const Object& OpenStore::At(IviConfigHandle handle, std::initializer_list<Kind> kinds) const {
    const auto object = objects_.find(ObjectNumber(handle));
    if (object == objects_.end() || std::find(kinds.begin(), kinds.end(), object->second.kind) == kinds.end()) {
        throw InvalidHandle();
    }
    return object->second;
}

void OpenStore::CheckOwn(IviConfigHandle handle) const {
    if (handle != MakeHandle(number_, 0)) {
        throw InvalidHandle();
    }
}

void OpenStore::Remove(IviConfigHandle handle) {
    if (objects_.erase(ObjectNumber(handle)) == 0) {
        throw InvalidHandle();
    }
}

IviConfigHandle OpenNewStore() {
    const std::lock_guard lock(registry.mutex);
    const auto number = NextNumber(registry.last);
    registry.stores.emplace(number, std::make_shared<OpenStore>(number));
    return MakeHandle(number, 0);
}

std::shared_ptr<OpenStore> StoreOf(IviConfigHandle handle) {
    const std::lock_guard lock(registry.mutex);
    const auto store = registry.stores.find(StoreNumber(handle));
    if (store == registry.stores.end()) {
        throw InvalidHandle();
    }
    return store->second;
}

void CloseStore(IviConfigHandle handle) {
    const auto store = StoreOf(handle); // declared before the lock, so destroyed after the unlock
    store->CheckOwn(handle);
    const std::lock_guard lock(registry.mutex);
    if (registry.stores.erase(StoreNumber(handle)) == 0) {
        throw InvalidHandle(); // another thread closed it first
    }
}

} // namespace runtime
