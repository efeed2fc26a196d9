#include "framework/close_hooks.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "framework/no_destructor.h"

namespace nrt2 {
namespace {

// Slots are written once and never changed, so hooks run without the mutex.
class HookRegistry {
  public:
    void Add(CloseHook hook) {
        const std::lock_guard lock(mutex_);
        const auto count = count_.load(std::memory_order_relaxed);
        if (count == hooks_.size()) {
            throw std::length_error("too many close hooks");
        }
        hooks_[count] = std::move(hook);
        count_.store(count + 1, std::memory_order_release);
    }

    void Run(ViSession vi) const {
        const auto count = count_.load(std::memory_order_acquire);
        for (std::size_t i = 0; i < count; ++i) {
            hooks_[i](vi);
        }
    }

  private:
    std::mutex mutex_;
    std::array<CloseHook, 16> hooks_;
    std::atomic<std::size_t> count_{0};
};

HookRegistry& Registry() {
    static NoDestructor<HookRegistry> registry;
    return *registry;
}

} // namespace

void AddCloseHook(CloseHook hook) { Registry().Add(std::move(hook)); }

void RunCloseHooks(ViSession vi) { Registry().Run(vi); }

} // namespace nrt2
