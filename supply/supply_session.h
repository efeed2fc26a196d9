// What this library keeps per session: the command set over the driver's own connection.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "driver/session_interface.h"
#include "include/TARNEX_supply.h"
#include "instrument/simulator.h"
#include "instrument/tarnex_supply.h"

namespace supply {

/// The driver's connection, reached through the session's interface.
class SessionConnection final : public OpenVisa::VisaIO {
  public:
    explicit SessionConnection(const tarnex::SessionExtension& extension) : extension_(extension) {}

    ViStatus write(std::string_view command) override;
    /// Removes a carriage return before the line feed too. A reply that does not fit into the driver's buffer throws
    /// std::out_of_range.
    ViStatus read(std::string& reply) override;
    ViStatus close() override { return VI_SUCCESS; } // the driver closes it
    [[nodiscard]] bool isOpen() const override { return true; }
    ViStatus configure() override { return VI_SUCCESS; }

    /// VISA's status of the latest transfer, and the latest texts.
    [[nodiscard]] ViStatus LastStatus() const { return lastStatus_; }
    [[nodiscard]] std::string_view LastCommand() const { return lastCommand_; }
    [[nodiscard]] std::string_view LastReply() const { return lastReply_; }

  private:
    const tarnex::SessionExtension& extension_;
    ViStatus lastStatus_ = VI_SUCCESS;
    std::string lastCommand_;
    std::string_view lastReply_; // valid until the next read
};

/// The command set over that connection. Refuses malformed replies, and reads replies of several fields without writing
/// to standard output.
class SessionInstrument final : public ORVA::TARNEX {
  public:
    explicit SessionInstrument(std::shared_ptr<SessionConnection> connection) { connection_ = std::move(connection); }

  private:
    void AnnounceFields(std::size_t /*expected*/) override {}
    [[nodiscard]] bool IsStrict() const override { return true; }
};

/// The library's object of one session; the driver's session destroys it. The caller must hold the session's lock.
class SupplySession {
  public:
    SupplySession(ViSession vi, const tarnex::SessionExtension& extension)
        : vi_(vi), extension_(extension), connection_(std::make_shared<SessionConnection>(extension)),
          instrument_(connection_) {}

    [[nodiscard]] ViSession Handle() const { return vi_; }
    [[nodiscard]] bool IsSimulated() const { return Driver().isSimulated(Object()) != VI_FALSE; }

    /// Returns the real instrument or the simulator, whichever the driver's session has now.
    [[nodiscard]] ORVA::InstBase& Instrument() {
        if (IsSimulated()) {
            return simulator_;
        }
        return instrument_;
    }

    /// The driver's functions and their first argument.
    [[nodiscard]] const tarnex::SessionFunctions& Driver() const { return *extension_.functions; }
    [[nodiscard]] void* Object() const { return extension_.session; }

    /// Brings the connection back into step when an earlier exchange failed. On failure the error has been recorded.
    ViStatus EnsureInStep();

    /// Whether the instrument's event status is to be checked after a call.
    [[nodiscard]] bool ChecksStatus() const { return Driver().checksStatus(Object()) != VI_FALSE; }
    /// Reads the event status register. An error in it is IVI_ERROR_INSTRUMENT_STATUS. Records nothing.
    ViStatus CheckStatus();

    /// Records the failure of an operation of the command layer, with its command. Returns the status for the caller.
    ViStatus RecordFailure(ViStatus status);
    /// Records a reply that could not be parsed and marks the connection as out of step.
    ViStatus RecordMalformedReply();

    // --- Raw text: return DRIVER_ERROR_IO or success; a simulated instrument succeeds with an empty reply
    ViStatus WriteText(std::string_view command);
    ViStatus QueryText(std::string_view command, std::string_view& reply);

    void StartTrace(TARNEXSupply_TraceCallback callback, void* context);

  private:
    ViStatus Resynchronize();

    ViSession vi_;
    const tarnex::SessionExtension& extension_;
    std::shared_ptr<SessionConnection> connection_;
    SessionInstrument instrument_;
    ORVA::TARNEXSimulator simulator_;
    std::string reply_;
    TARNEXSupply_TraceCallback traceCallback_ = nullptr;
    void* traceContext_ = nullptr;
    std::chrono::steady_clock::time_point traceStart_;
};

} // namespace supply
