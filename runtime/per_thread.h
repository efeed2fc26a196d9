// One object per thread that may be asked for at any time, also while the thread or the process is ending.
#pragma once

namespace runtime {

template <typename T>
class PerThread {
  public:
    /// This thread's object; null when the thread has already destroyed it, which callers meet that clean up in
    /// destructors of their own static or thread-local objects.
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
