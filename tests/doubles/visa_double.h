// A VISA without instruments: logs what is written and answers queries from a script.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/visa.h"
#include "tests/doubles/script.h"

namespace doubles {

struct OpenedResource {
    std::string name;
    ViAccessMode mode;
    ViUInt32 timeout;
    bool operator==(const OpenedResource&) const = default;
};

struct ReadCall {
    const void* buffer;
    ViUInt32 count;
    bool operator==(const ReadCall&) const = default;
};

class VisaLibrary {
  public:
    /// Forgets everything but one answer: "*IDN?" from a supported model.
    void Reset();

    /// Answers `command` (without its line feed) with `reply`, unchanged, from now on.
    void Reply(const std::string& command, std::string reply);

    /// Answers every command with `reply` until Reset. Takes precedence over Reply.
    void ReplyToAll(std::string reply);

    /// The bytes of each viWrite, in order.
    [[nodiscard]] std::vector<std::string> Written() const;
    void ForgetWritten();
    [[nodiscard]] std::vector<OpenedResource> Opened() const;
    /// "viSetAttribute 3FFF001A 2000" and "viSetBuf 1 1024", in order.
    [[nodiscard]] std::vector<std::string> Settings() const;
    void ForgetSettings();
    /// The buffer of each viRead, in order.
    [[nodiscard]] std::vector<ReadCall> Reads() const;
    /// Resource-manager and instrument sessions that were opened and not closed.
    [[nodiscard]] std::size_t OpenSessions() const;

    // --- VISA's functions
    ViStatus OpenDefaultRM(ViSession* rm);
    ViStatus Open(ViSession rm, ViConstRsrc name, ViAccessMode mode, ViUInt32 timeout, ViSession* vi);
    ViStatus Close(ViObject vi);
    ViStatus Set(ViObject vi, std::string setting);
    ViStatus Write(ViSession vi, const std::string& bytes, ViUInt32* written);
    ViStatus Read(ViSession vi, ViByte* buffer, ViUInt32 count, ViUInt32* got);
    /// Discards a pending reply; VI_ERROR_NSUP_OPER on sockets and serial lines.
    ViStatus Clear(ViSession vi);

  private:
    struct Instrument {
        ViSession rm = VI_NULL;
        bool endsOnTermChar = false; // sockets and serial lines: no other end of message
        std::optional<std::string> pending;
    };

    mutable std::mutex mutex_;
    std::map<std::string, std::string> replies_;
    std::optional<std::string> replyToAll_;
    std::vector<std::string> written_;
    std::vector<OpenedResource> opened_;
    std::vector<std::string> settings_;
    std::vector<ReadCall> reads_;
    std::map<ViSession, std::size_t> managers_;
    std::map<ViSession, Instrument> instruments_;
    ViSession next_ = 0x1000;
};

VisaLibrary& TheVisa();

} // namespace doubles
