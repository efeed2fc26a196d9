// The objects behind VISA handles.
#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <span>
#include <unordered_set>

#include "platform/visa.h"
#include "runtime/visa/transport.h"
#include "runtime/visa/turn.h"

namespace runtime {

/// Operations that a session does not have return VI_ERROR_NSUP_OPER.
class Session {
  public:
    Session() = default;
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    virtual ~Session() = default;

    virtual ViStatus SetAttribute(ViAttr /*name*/, ViAttrState /*value*/) { return VI_ERROR_NSUP_ATTR; }
    virtual ViStatus SetBuffer(ViUInt16 /*mask*/) { return VI_ERROR_NSUP_OPER; }
    virtual Progress Write(std::span<const ViByte> /*bytes*/) { return {VI_ERROR_NSUP_OPER, 0}; }
    virtual Progress Read(std::span<ViByte> /*into*/) { return {VI_ERROR_NSUP_OPER, 0}; }

    virtual ViStatus Clear() { return VI_ERROR_NSUP_OPER; }

    /// Ends the calls that are under way. `handle` is the session's own and has been removed before.
    virtual void Close(ViSession handle) = 0;
};

/// Keeps the handles of the instruments that were opened through it.
class ResourceManager final : public Session {
  public:
    /// Returns false when the resource manager is closed.
    bool Adopt(ViSession instrument);
    void Forget(ViSession instrument);
    void Close(ViSession handle) override;

  private:
    std::mutex mutex_;
    bool closed_ = false;
    std::unordered_set<ViSession> instruments_;
};

/// An instrument behind a stream of bytes. Thread-safe; reading and writing are independent of each other.
class Instrument final : public Session {
  public:
    Instrument(std::shared_ptr<ResourceManager> manager, std::unique_ptr<Transport> transport);

    ViStatus SetAttribute(ViAttr name, ViAttrState value) override;
    ViStatus SetBuffer(ViUInt16 mask) override;
    Progress Write(std::span<const ViByte> bytes) override;
    Progress Read(std::span<ViByte> into) override;
    void Close(ViSession handle) override;

  private:
    static constexpr ViUInt32 kDefaultTimeout = 2000; // ms
    static constexpr std::size_t kReadAhead = 8192;   // bytes

    [[nodiscard]] int EnabledTerminationCharacter() const;
    std::size_t TakeKept(std::span<ViByte> into, int terminator);
    Progress ReceiveUpTo(std::span<ViByte> into, int terminator, const Deadline& deadline);
    Progress Finish(Progress progress) const;

    std::shared_ptr<ResourceManager> manager_;
    std::unique_ptr<Transport> transport_;
    std::atomic<bool> closed_{false};
    std::atomic<ViUInt32> timeout_{kDefaultTimeout};
    std::atomic<ViByte> terminationCharacter_{'\n'};
    std::atomic<bool> terminationEnabled_{false};
    TurnTaking writing_;
    TurnTaking reading_; // guards the following members
    std::size_t keptFrom_ = 0;
    std::size_t keptTo_ = 0;
    std::array<ViByte, kReadAhead> kept_; // received behind a termination character
};

} // namespace runtime
