// Handles to slots that stay where they are: finding a slot takes no lock and costs the same for one handle or a
// million.
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

/// What a slot type derives from.
class HandleSlot {
  public:
    [[nodiscard]] bool Bears(ViSession handle) const { return handle_.load(std::memory_order_acquire) == handle; }

    /// From now on the slot's handle is unknown. Called before HandleTable::Release, under whatever guards the slot.
    void Forget() { handle_.store(VI_NULL, std::memory_order_release); }

  private:
    template <typename Slot>
    friend class HandleTable;

    std::atomic<ViSession> handle_{VI_NULL};
    ViSession last_ = VI_NULL; // the handle it bore last, or its index when it never bore one
    HandleSlot* next_ = nullptr;
};

/// A handle is a slot's index in its low bits and above it how often the slot has been used, from 1. A slot whose count
/// is used up is retired, so a handle is never issued twice and zero is never issued.
///
/// Slots are never freed: a thread that is still inside a call when another one gives the handle back finds a slot,
/// though one that no longer bears its handle. Nor does a table free them in the end: it serves until the process is
/// gone, the static destructors of others included.
template <typename Slot>
class HandleTable {
  public:
    /// Issues a handle; `prepare(slot)`, which must not throw, runs before anyone can find it. Returns zero when no
    /// handle is left.
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

    /// The slot that bears `handle` at this moment, else null. Callers who then lock the slot ask Bears() again.
    Slot* Find(ViSession handle) {
        Slot* slot = At(handle & kIndexMask);
        return slot != nullptr && handle != VI_NULL && slot->Bears(handle) ? slot : nullptr;
    }

    /// Takes back a slot that has forgotten its handle.
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
    std::mutex mutex_; // guards what follows
    HandleSlot* free_ = nullptr;
    std::size_t used_ = 0; // slots that have ever been taken
};

} // namespace runtime
