#include "runtime/visa/session.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "runtime/visa/session_handles.h"

namespace runtime {

namespace {

constexpr int kNoCharacter = -1;

/// Returns the number of bytes up to and including the terminator; all when it is not among them.
std::size_t LengthOfMessage(std::span<const ViByte> bytes, int terminator) {
    const void* end = nullptr;
    if (terminator != kNoCharacter && !bytes.empty()) {
        end = std::memchr(bytes.data(), terminator, bytes.size());
    }
    return end == nullptr ? bytes.size() : static_cast<std::size_t>(static_cast<const ViByte*>(end) - bytes.data()) + 1;
}

} // namespace

bool ResourceManager::Adopt(ViSession instrument) {
    const std::lock_guard lock(mutex_);
    if (!closed_) {
        instruments_.insert(instrument);
    }
    return !closed_;
}

void ResourceManager::Forget(ViSession instrument) {
    const std::lock_guard lock(mutex_);
    instruments_.erase(instrument);
}

void ResourceManager::Close(ViSession /*handle*/) {
    std::unordered_set<ViSession> instruments;
    {
        const std::lock_guard lock(mutex_);
        closed_ = true;
        instruments.swap(instruments_);
    }
    for (const auto handle : instruments) {
        if (const auto instrument = RemoveSession(handle)) {
            instrument->Close(handle);
        }
    }
}

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): `kept_` is empty
Instrument::Instrument(std::shared_ptr<ResourceManager> manager, std::unique_ptr<Transport> transport)
    : manager_(std::move(manager)), transport_(std::move(transport)) {
    transport_->TimeoutChanged(kDefaultTimeout);
}

ViStatus Instrument::SetAttribute(ViAttr name, ViAttrState value) {
    switch (name) {
    case VI_ATTR_TMO_VALUE:
        if (value > std::numeric_limits<ViUInt32>::max()) {
            return VI_ERROR_NSUP_ATTR_STATE;
        }
        timeout_ = static_cast<ViUInt32>(value);
        transport_->TimeoutChanged(static_cast<ViUInt32>(value));
        return VI_SUCCESS;
    case VI_ATTR_TERMCHAR:
        if (value > std::numeric_limits<ViByte>::max()) {
            return VI_ERROR_NSUP_ATTR_STATE;
        }
        terminationCharacter_ = static_cast<ViByte>(value);
        return VI_SUCCESS;
    case VI_ATTR_TERMCHAR_EN:
        if (value != VI_TRUE && value != VI_FALSE) {
            return VI_ERROR_NSUP_ATTR_STATE;
        }
        terminationEnabled_ = value == VI_TRUE;
        return VI_SUCCESS;
    default:
        return transport_->SetAttribute(name, value);
    }
}

ViStatus Instrument::SetBuffer(ViUInt16 mask) {
    // No effect: reads and writes use the system's buffers, which are large enough.
    constexpr ViUInt16 kAll = VI_READ_BUF | VI_WRITE_BUF | VI_IO_IN_BUF | VI_IO_OUT_BUF;
    return mask == 0 || (mask & ~kAll) != 0 ? VI_ERROR_INV_MASK : VI_SUCCESS;
}

Progress Instrument::Write(std::span<const ViByte> bytes) {
    const Deadline deadline(timeout_);
    const TurnTaking::Turn turn(writing_, deadline);
    return Finish(turn.Taken() ? transport_->Send(bytes, deadline) : Progress{VI_ERROR_TMO, 0});
}

Progress Instrument::Read(std::span<ViByte> into) {
    const Deadline deadline(timeout_);
    const TurnTaking::Turn turn(reading_, deadline);
    if (!turn.Taken()) {
        return Finish({VI_ERROR_TMO, 0});
    }
    const int terminator = EnabledTerminationCharacter();
    const auto endsMessage = [&](std::size_t count) { return count > 0 && into[count - 1] == terminator; };
    std::size_t got = TakeKept(into, terminator);
    while (got < into.size() && !endsMessage(got)) {
        const auto received = ReceiveUpTo(into.subspan(got), terminator, deadline);
        got += received.bytes;
        if (received.status < 0) {
            return Finish({received.status, got});
        }
    }
    return {endsMessage(got) ? VI_SUCCESS_TERM_CHAR : VI_SUCCESS_MAX_CNT, got};
}

void Instrument::Close(ViSession handle) {
    closed_ = true;
    transport_->Interrupt();
    manager_->Forget(handle);
}

int Instrument::EnabledTerminationCharacter() const {
    return terminationEnabled_ || transport_->EndsAtTermination() ? terminationCharacter_.load() : kNoCharacter;
}

/// Moves kept bytes, up to and including the terminator.
std::size_t Instrument::TakeKept(std::span<ViByte> into, int terminator) {
    const auto available = std::span(kept_).subspan(keptFrom_, std::min(keptTo_ - keptFrom_, into.size()));
    const auto count = LengthOfMessage(available, terminator);
    std::copy_n(available.begin(), count, into.begin());
    keptFrom_ += count;
    return count;
}

/// Receives once, when no bytes are kept. Bytes behind a terminator are kept for the next read.
Progress Instrument::ReceiveUpTo(std::span<ViByte> into, int terminator, const Deadline& deadline) {
    if (terminator == kNoCharacter) {
        return transport_->Receive(into, deadline);
    }
    const auto received = transport_->Receive(into.first(std::min(into.size(), kept_.size())), deadline);
    const auto bytes = into.first(received.bytes);
    const auto count = LengthOfMessage(bytes, terminator);
    const auto rest = bytes.subspan(count);
    std::copy(rest.begin(), rest.end(), kept_.begin());
    keptFrom_ = 0;
    keptTo_ = rest.size();
    return {received.status, count};
}

/// Returns VI_ERROR_INV_OBJECT for a call that failed because the session was closed.
Progress Instrument::Finish(Progress progress) const {
    if (progress.status < 0 && closed_) {
        progress.status = VI_ERROR_INV_OBJECT;
    }
    return progress;
}

} // namespace runtime
