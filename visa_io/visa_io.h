// One VISA connection to an instrument, for lines of text. Returns VISA's statuses unchanged.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "visa_io/connection_settings.h"

namespace OpenVisa {

/// The interface of a connection. Not thread-safe: the caller must serialize the calls on one object.
class VisaIOBase {
  public:
    VisaIOBase() = default;
    VisaIOBase(const VisaIOBase&) = delete;
    VisaIOBase& operator=(const VisaIOBase&) = delete;
    virtual ~VisaIOBase() = default;

    /// Sends one command with a single viWrite. Appends the termination character where it is missing.
    virtual ViStatus write(std::string_view command) = 0;

    /// Receives one reply with a single viRead, at most 1024 bytes, and removes one termination character.
    /// `reply` is unchanged after an error and after a read of no bytes.
    virtual ViStatus read(std::string& reply) = 0;

    virtual ViStatus close() = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;

    /// Sets the VISA attributes of the interface kind on the opened session.
    virtual ViStatus configure() = 0;
};

/// A connection over an interface that needs only the time-out and the buffer sizes.
class VisaIO : public VisaIOBase {
  public:
    VisaIO() = default;
    VisaIO(const VisaIO&) = delete;
    VisaIO& operator=(const VisaIO&) = delete;
    /// Closes all VISA sessions, including those of an incomplete open.
    ~VisaIO() override;

    ViStatus write(std::string_view command) override;
    ViStatus read(std::string& reply) override;
    ViStatus close() override;
    [[nodiscard]] bool isOpen() const override;
    ViStatus configure() override;

    /// Opens `resource` unchanged and configures the session. May be called once per object; another resource, or
    /// another try after a failure, needs a new object.
    ViStatus open(const std::string& resource);

    /// Stores the settings. An open session gets the new I/O time-out.
    ViStatus apply(const ConnectionSettings& settings);

    /// Stores the I/O time-out in ms and sets it on an open session. Returns VISA's status; a refused value is stored
    /// too.
    ViStatus setTimeout(ViUInt32 milliseconds);

    /// Sets or removes (no callback) the trace of the traffic.
    void setTrace(const Trace& trace) { settings_.trace = trace; }

    /// Returns false after an exchange that failed or was cut: a later reply may then belong to an earlier command.
    [[nodiscard]] bool isInStep() const { return inStep_; }
    void setInStep(bool inStep) { inStep_ = inStep; }

    /// Returns VISA's handle of the instrument; VI_NULL when it is not open.
    [[nodiscard]] ViSession session() const { return instrument_; }

    /// Returns the resource string that was opened.
    [[nodiscard]] const std::string& resource() const { return resource_; }

  protected:
    ViStatus setAttribute(ViAttr attribute, ViAttrState value) const;
    ViStatus setBuffer(ViUInt16 mask, ViUInt32 size) const;

    /// The steps that are common to interfaces with a termination character (sockets, serial lines).
    ViStatus setTermination() const;
    ViStatus setIoBuffers() const;

    [[nodiscard]] const ConnectionSettings& settings() const { return settings_; }

  private:
    static constexpr ViUInt32 kReadBufferSize = 1024;
    static constexpr ViUInt32 kWriteBufferSize = 1024;

    /// Notes whether command and reply still belong together, and reports the transfer to the trace.
    void finish(ViBoolean sent, ViStatus status, std::string_view text) {
        // VI_SUCCESS_MAX_CNT: the rest of a reply that is longer than the buffer would answer the next query.
        inStep_ = inStep_ && status >= 0 && status != VI_SUCCESS_MAX_CNT;
        if (settings_.trace.callback != nullptr) {
            report(sent, status, text);
        }
    }
    void report(ViBoolean sent, ViStatus status, std::string_view text) const;

    std::string resource_;
    bool inStep_ = true;
    ConnectionSettings settings_;
    ViSession resourceManager_ = VI_NULL;
    ViSession instrument_ = VI_NULL;
    std::unique_ptr<ViByte[]> readBuffer_; // allocated once per open
    std::string line_;                     // the command with its termination; keeps its capacity between writes
};

} // namespace OpenVisa
