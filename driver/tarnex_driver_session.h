#pragma once

#include <memory>
#include <string>

#include "driver/driver_identity.h"
#include "framework/driver_session.h"
#include "instrument/inst_base.h"

/// A session with a supply, real or simulated.
class TARNEXDriverSession : public nrt2::DriverSession {
  public:
    explicit TARNEXDriverSession(ViSession handle) : DriverSession(handle, tarnex::kDriverIdentity) {}

    /// Valid from a successful initialization until the close.
    [[nodiscard]] ORVA::InstBase& Instrument() const { return *instrument_; }

    /// Replaces the instrument by a simulator and closes the instrument's connection.
    void ReplaceBySimulator();

    /// Returns the record with which the instrument object is opened.
    [[nodiscard]] ORVA::ConnectionRecord ComposeConnectionRecord() const;

    ViStatus CheckStatus() override;
    ViStatus ResetInstrument() override { return instrument_->SendReset(); }

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
};
