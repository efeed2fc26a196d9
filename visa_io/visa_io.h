// One VISA connection to an instrument: text lines out, text lines in. VISA's statuses are passed on unchanged.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "visa_io/connection_settings.h"

namespace OpenVisa {

/// What the command layer needs of a connection. Not thread-safe: calls on one object are serialized by the caller.
class VisaIOBase {
  public:
    VisaIOBase() = default;
    VisaIOBase(const VisaIOBase&) = delete;
    VisaIOBase& operator=(const VisaIOBase&) = delete;
    virtual ~VisaIOBase() = default;

    /// Sends one command in a single viWrite, the termination character appended where it is missing.
    virtual ViStatus write(std::string_view command) = 0;

    /// Receives one reply in a single viRead, at most the read buffer's size, one termination character stripped.
    /// `reply` stays as it was when the status is negative or nothing came.
    virtual ViStatus read(std::string& reply) = 0;

    virtual ViStatus close() = 0;
    [[nodiscard]] virtual bool isOpen() const = 0;

    /// Applies the interface kind's VISA attributes to the session just opened.
    virtual ViStatus configure() = 0;
};

/// A connection over an interface that needs nothing beyond the time-out and the buffer sizes.
class VisaIO : public VisaIOBase {
  public:
    VisaIO() = default;
    VisaIO(const VisaIO&) = delete;
    VisaIO& operator=(const VisaIO&) = delete;
    /// Closes whatever VISA sessions are still held, those of a half-finished open included.
    ~VisaIO() override;

    ViStatus write(std::string_view command) override;
    ViStatus read(std::string& reply) override;
    ViStatus close() override;
    [[nodiscard]] bool isOpen() const override;
    ViStatus configure() override;

    /// Opens `resource` as the caller wrote it and configures the session. Once per object: to open another resource,
    /// or after a failure, a new object takes this one's place.
    ViStatus open(const std::string& resource);

    /// Takes the settings over; an open session gets the new I/O time-out at once.
    ViStatus apply(const ConnectionSettings& settings);

    /// I/O time-out in ms: kept, and given to an open session (also when VISA refuses it; returns VISA's status).
    ViStatus setTimeout(ViUInt32 milliseconds);

    /// The resource string last opened.
    [[nodiscard]] const std::string& resource() const { return resource_; }

  protected:
    ViStatus setAttribute(ViAttr attribute, ViAttrState value) const;
    ViStatus setBuffer(ViUInt16 mask, ViUInt32 size) const;

    /// The steps that the message-terminated interfaces (sockets, serial lines) share.
    ViStatus setTermination() const;
    ViStatus setIoBuffers() const;

    [[nodiscard]] const ConnectionSettings& settings() const { return settings_; }

  private:
    static constexpr ViUInt32 kReadBufferSize = 1024;
    static constexpr ViUInt32 kWriteBufferSize = 1024;

    std::string resource_;
    ConnectionSettings settings_;
    ViSession resourceManager_ = VI_NULL;
    ViSession instrument_ = VI_NULL;
    std::unique_ptr<ViByte[]> readBuffer_; // allocated once per open
    std::string line_;                     // the command with its termination; keeps its capacity between writes
};

} // namespace OpenVisa
