#pragma once

#include <memory>
#include <string>

#include "driver/driver_identity.h"
#include "driver/session_extension.h"
#include "framework/driver_session.h"
#include "instrument/inst_base.h"

/// A session with a supply, real or simulated.
class TARNEXDriverSession : public nrt2::DriverSession {
  public:
    explicit TARNEXDriverSession(ViSession handle) : DriverSession(handle, tarnex::kDriverIdentity) {
        SetExtension(&extension_);
    }
    TARNEXDriverSession(const TARNEXDriverSession&) = delete;
    TARNEXDriverSession& operator=(const TARNEXDriverSession&) = delete;
    ~TARNEXDriverSession() override;

    /// Valid from a successful initialization until the close.
    [[nodiscard]] ORVA::InstBase& Instrument() const { return *instrument_; }

    /// Replaces the instrument by a simulator and closes the instrument's connection.
    void ReplaceBySimulator();

    /// Returns the record with which the instrument object is opened.
    [[nodiscard]] ORVA::ConnectionRecord ComposeConnectionRecord() const;

    ViStatus CheckStatus() override;
    ViStatus ResetInstrument() override { return instrument_->SendReset(); }

    /// The reply that the supply library views until its next call.
    std::string& ReplyForExtension() { return replyForExtension_; }

  protected:
    /// Replaces the current instrument, which is destroyed.
    void Use(std::shared_ptr<ORVA::InstBase> instrument);

    ViStatus InitializeIO() override;
    ViStatus CloseIO() override;
    ViStatus ClearStatus() override;
    ViStatus QueryIdentity(std::string& manufacturer, std::string& model, std::string& serialNumber,
                           std::string& firmwareRevision) override;

  private:
    std::shared_ptr<ORVA::InstBase> instrument_;
    std::string replyForExtension_;
    tarnex::SessionExtension extension_{.version = tarnex::kSessionInterfaceVersion,
                                        .size = tarnex::kSessionInterfaceSize,
                                        .revision = tarnex::kDriverIdentity.revision.data(),
                                        .session = this,
                                        .functions = &tarnex::kSessionFunctions,
                                        .attachment = nullptr,
                                        .destroy = nullptr};
};
