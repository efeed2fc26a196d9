// A table of handles. A lookup takes no lock and its cost does not depend on the number of handles.
#pragma once

#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

#include "platform/vi_types.h"

namespace runtime {

/// The base class of slot types.
class HandleSlot {
  public:
    [[nodiscard]] bool Has(ViSession handle) const { return handle_.load(std::memory_order_acquire) == handle; }

    /// Makes the slot's handle unknown. Must be called before HandleTable::Release, under the lock that guards the
    /// slot.
    void Forget() { handle_.store(VI_NULL, std::memory_order_release); }

  private:
    template <typename Slot>
    friend class HandleTable;

    std::atomic<ViSession> handle_{VI_NULL};
    ViSession last_ = VI_NULL; // the slot's last handle, or its index when it has had none
    HandleSlot* next_ = nullptr;
};

/// A handle is the index of a slot in the low bits and its generation, counted from 1, in the high bits. A slot is
/// retired after its last generation, so a handle is never issued twice and zero is never issued.
///
/// Slots are never freed: a thread that is inside a call while another thread releases the handle finds a slot of
/// another generation, not freed memory. The table itself is never freed either, so static destructors may use it.
template <typename Slot>
class HandleTable {
  public:
    /// Issues a handle. Calls `prepare(slot)`, which must not throw, before a lookup can find the slot. Returns zero
    /// when no handle is available.
    template <typename Prepare>
    ViSession Issue(Prepare prepare) {
        Slot* slot = Take();
        if (slot == nullptr) {
            return VI_NULL;
        }
        prepare(*slot);
        const ViSession handle = slot->last_ + kUse;
        slot->last_ = handle;
        slot->handle_.store(handle, std::memory_order_release);
        return handle;
    }

    /// Returns the slot of `handle`, else null. A caller that then locks the slot must check Has() again.
    Slot* Find(ViSession handle) {
        Slot* slot = At(handle & kIndexMask);
        return slot != nullptr && handle != VI_NULL && slot->Has(handle) ? slot : nullptr;
    }

    /// Makes a slot available again, after Forget().
    void Release(Slot& slot) {
        const std::lock_guard lock(mutex_);
        if ((slot.last_ & ~kIndexMask) != ~kIndexMask) {
            slot.next_ = free_;
            free_ = &slot;
        }
    }

  private:
    static constexpr unsigned kIndexBits = 22;
    static constexpr ViSession kUse = ViSession{1} << kIndexBits;
    static constexpr ViSession kIndexMask = kUse - 1;
    static constexpr std::size_t kFirstSegment = 64; // each further segment has twice the slots of the one before
    static constexpr std::size_t kSegments = 16;
    static constexpr std::size_t kCapacity = kFirstSegment * ((std::size_t{1} << kSegments) - 1);
    static_assert(kCapacity <= kIndexMask + std::size_t{1});

    static constexpr std::size_t SegmentOf(std::size_t index) {
        return static_cast<std::size_t>(std::bit_width(index / kFirstSegment + 1)) - 1;
    }
    static constexpr std::size_t SizeOf(std::size_t segment) { return kFirstSegment << segment; }
    static constexpr std::size_t StartOf(std::size_t segment) { return SizeOf(segment) - kFirstSegment; }

    Slot* At(std::size_t index) {
        if (index >= kCapacity) {
            return nullptr;
        }
        const auto segment = SegmentOf(index);
        Slot* first = segments_[segment].load(std::memory_order_acquire);
        return first == nullptr ? nullptr : first + (index - StartOf(segment));
    }

    Slot* Take() {
        const std::lock_guard lock(mutex_);
        if (free_ != nullptr) {
            auto* slot = static_cast<Slot*>(free_);
            free_ = slot->next_;
            return slot;
        }
        if (used_ == kCapacity) {
            return nullptr;
        }
        const auto segment = SegmentOf(used_);
        if (used_ == StartOf(segment)) {
            segments_[segment].store(std::make_unique<Slot[]>(SizeOf(segment)).release(), std::memory_order_release);
        }
        Slot* slot = At(used_);
        slot->last_ = static_cast<ViSession>(used_);
        ++used_;
        return slot;
    }

    std::array<std::atomic<Slot*>, kSegments> segments_{};
    std::mutex mutex_; // guards the following members
    HandleSlot* free_ = nullptr;
    std::size_t used_ = 0; // slots that have ever been taken
};

} // namespace runtime
