#include "framework/close_hooks.h"

#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace nrt2 {
namespace {

using HookList = std::vector<CloseHook>;

// Lists are never changed once they are in place, so that hooks run from a snapshot with no guard held.
class HookRegistry {
  public:
    void Add(CloseHook hook) {
        const std::lock_guard lock(mutex_);
        auto longer = std::make_shared<HookList>(*hooks_);
        longer->push_back(std::move(hook));
        hooks_ = std::move(longer);
    }

    std::shared_ptr<const HookList> Snapshot() {
        const std::lock_guard lock(mutex_);
        return hooks_;
    }

  private:
    std::mutex mutex_;
    std::shared_ptr<const HookList> hooks_ = std::make_shared<HookList>();
};

HookRegistry& Registry() {
    static HookRegistry registry;
    return registry;
}

} // namespace

void AddCloseHook(CloseHook hook) { Registry().Add(std::move(hook)); }

void RunCloseHooks(ViSession vi) {
    for (const auto snapshot = Registry().Snapshot(); const auto& hook : *snapshot) {
        hook(vi);
    }
}

} // namespace nrt2
