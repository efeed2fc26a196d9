#pragma once

#include "platform/config_server.h"

namespace nrt2 {

/// Gives a handle of the configuration server back when it goes out of scope.
template <ViStatus(_VI_FUNC* Release)(IviConfigHandle)>
class OwnedConfigHandle {
  public:
    OwnedConfigHandle() = default;
    OwnedConfigHandle(const OwnedConfigHandle&) = delete;
    OwnedConfigHandle& operator=(const OwnedConfigHandle&) = delete;
    ~OwnedConfigHandle() { Reset(); }

    /// Where a Get... call writes the handle; the object must be empty.
    [[nodiscard]] IviConfigHandle* Out() { return &handle_; }
    [[nodiscard]] IviConfigHandle Get() const { return handle_; }

    /// Returns the server's status; VI_SUCCESS when there is nothing to give back.
    ViStatus Reset() {
        if (handle_ == nullptr) {
            return VI_SUCCESS;
        }
        const auto handle = handle_;
        handle_ = nullptr; // given back once, whatever the server answers
        return Release(handle);
    }

  private:
    IviConfigHandle handle_ = nullptr;
};

using ConfigHandle = OwnedConfigHandle<IviConfig_DisposeHandle>;
using ConfigStore = OwnedConfigHandle<IviConfig_Close>;

} // namespace nrt2
