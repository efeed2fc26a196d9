#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace nrt2 {

/// Holds an object that is never destroyed. Callers may close sessions in an exit handler or in the destructor of a
/// global object, when static objects of this library would already be destroyed.
template <typename T>
class NoDestructor {
  public:
    template <typename... Arguments>
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): the object is constructed in the storage
    explicit NoDestructor(Arguments&&... arguments) {
        std::construct_at(Address(), std::forward<Arguments>(arguments)...);
    }
    NoDestructor(const NoDestructor&) = delete;
    NoDestructor& operator=(const NoDestructor&) = delete;
    ~NoDestructor() = default; // leaves the object alone

    T& operator*() { return *std::launder(Address()); }
    T* operator->() { return std::launder(Address()); }

  private:
    T* Address() { return reinterpret_cast<T*>(&storage_); }

    alignas(T) std::byte storage_[sizeof(T)];
};

} // namespace nrt2
