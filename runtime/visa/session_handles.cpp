#include "runtime/visa/session_handles.h"

#include <mutex>
#include <utility>

#include "runtime/handle_table.h"

namespace runtime {

namespace {

struct Slot : HandleSlot {
    std::mutex mutex; // guards `session`
    std::shared_ptr<Session> session;
};

HandleTable<Slot> slots;

} // namespace

ViSession AddSession(std::shared_ptr<Session> session) {
    // No lock: a lookup checks the slot's generation before it uses the slot.
    return slots.Issue([&](Slot& slot) { slot.session = std::move(session); });
}

std::shared_ptr<Session> FindSession(ViSession handle) {
    Slot* slot = slots.Find(handle);
    if (slot == nullptr) {
        return nullptr;
    }
    const std::lock_guard lock(slot->mutex);
    return slot->Has(handle) ? slot->session : nullptr;
}

std::shared_ptr<Session> RemoveSession(ViSession handle) {
    Slot* slot = slots.Find(handle);
    if (slot == nullptr) {
        return nullptr;
    }
    std::shared_ptr<Session> session;
    {
        const std::lock_guard lock(slot->mutex);
        if (!slot->Has(handle)) {
            return nullptr;
        }
        slot->Forget();
        session = std::move(slot->session);
    }
    slots.Release(*slot);
    return session;
}

} // namespace runtime
