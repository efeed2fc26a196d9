#pragma once

#include "platform/config_server.h"

namespace nrt2 {

/// Owns a handle of the configuration server.
template <ViStatus(_VI_FUNC* Release)(IviConfigHandle)>
class OwnedConfigHandle {
  public:
    OwnedConfigHandle() = default;
    OwnedConfigHandle(const OwnedConfigHandle&) = delete;
    OwnedConfigHandle& operator=(const OwnedConfigHandle&) = delete;
    ~OwnedConfigHandle() { Reset(); }

    /// The address to which a Get... call writes the handle. The object must be empty.
    [[nodiscard]] IviConfigHandle* Out() { return &handle_; }
    [[nodiscard]] IviConfigHandle Get() const { return handle_; }

    /// Releases the handle. Returns the server's status; VI_SUCCESS when there is no handle.
    ViStatus Reset() {
        if (handle_ == nullptr) {
            return VI_SUCCESS;
        }
        const auto handle = handle_;
        handle_ = nullptr; // released once, whatever the server returns
        return Release(handle);
    }

  private:
    IviConfigHandle handle_ = nullptr;
};

using ConfigHandle = OwnedConfigHandle<IviConfig_DisposeHandle>;
using ConfigStore = OwnedConfigHandle<IviConfig_Close>;

} // namespace nrt2
