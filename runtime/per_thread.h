// One object per thread, usable at any time, even while the thread or the process is ending.
#pragma once

namespace runtime {

template <typename T>
class PerThread {
  public:
    /// Returns this thread's object; null after the thread has destroyed it. Destructors of static and thread-local
    /// objects can run after that.
    static T* Get() {
        if (ended) {
            return nullptr;
        }
        thread_local Kept kept;
        return &kept.value;
    }

  private:
    struct Kept {
        Kept() = default;
        Kept(const Kept&) = delete;
        Kept& operator=(const Kept&) = delete;
        ~Kept() { ended = true; }
        T value{};
    };
    static constinit inline thread_local bool ended = false;
};

} // namespace runtime
