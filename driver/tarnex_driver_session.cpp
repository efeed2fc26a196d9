#include "driver/tarnex_driver_session.h"

#include <exception>
#include <string_view>

#include "framework/call_frame.h"
#include "instrument/simulator.h"
#include "instrument/tarnex_supply.h"
#include "text/characters.h"

namespace {

// Query error 0x04, device-dependent error 0x08, execution error 0x10 and command error 0x20 of the standard event
// status register (IEEE 488.2 11.5.1).
constexpr std::uint32_t kErrorBits = 0x3C;

/// Appends "key=value", unless the text holds the key anywhere, in any letter case: what the user gave wins, and a text
/// that merely contains the key counts as given, deliberately.
void MergeOption(std::string& options, std::string_view key, std::string_view value) {
    if (text::ToLower(options).find(text::ToLower(key)) != std::string::npos) {
        return;
    }
    if (!options.empty()) {
        options.append(", ");
    }
    options.append(key).append("=").append(value);
}

} // namespace

std::string TARNEXDriverSession::ComposeOptionText() const {
    std::string options = GivenOptionString();
    if (LogicalName().empty()) {
        return options;
    }
    if (Flags().simulate) {
        MergeOption(options, "Simulate", "true");
    }
    if (Flags().queryInstrumentStatus) {
        MergeOption(options, "QueryInstrStatus", "true");
    }
    if (!ModelOverride().empty()) {
        MergeOption(options, "Model", ModelOverride());
    }
    return options;
}

ViStatus TARNEXDriverSession::InitializeIO() {
    const ORVA::ConnectionRecord record{
        .resource = IoResourceDescriptor(),
        .idQuery = nrt2::initializationRequests.idQuery,
        .reset = nrt2::initializationRequests.reset,
        .options = ComposeOptionText(),
    };
    if (Flags().simulate) {
        ReplaceBySimulator();
    } else {
        instrument_ = std::make_shared<ORVA::TARNEX>();
    }
    const auto status = instrument_->Open(record);
    return status < 0
               ? RecordElab(DRIVER_ERROR_IO, "Insufficient location information or resource not present in the system")
               : status;
}

void TARNEXDriverSession::ReplaceBySimulator() { instrument_ = std::make_shared<ORVA::TARNEXSimulator>(); }

ViStatus TARNEXDriverSession::CloseIO() {
    if (instrument_ == nullptr) {
        return VI_SUCCESS;
    }
    const auto status = instrument_->Close();
    instrument_.reset();
    return RecordIfError(status);
}

ViStatus TARNEXDriverSession::ClearStatus() {
    if (Flags().simulate) {
        return VI_SUCCESS;
    }
    const auto status = RecordIfError(instrument_->SendClear());
    return status < 0 ? status : CheckStatus();
}

ViStatus TARNEXDriverSession::QueryIdentity(std::string& manufacturer, std::string& model, std::string& serialNumber,
                                            std::string& firmwareRevision) {
    try {
        const auto identity = instrument_->GetIdentity();
        manufacturer = identity->manufacturer;
        model = identity->model;
        serialNumber = identity->serialNumber;
        firmwareRevision = identity->firmwareRevision;
    } catch (const std::exception& exception) {
        return RecordElab(DRIVER_ERROR_IO, "%s", exception.what());
    }
    return VI_SUCCESS;
}

ViStatus TARNEXDriverSession::CheckStatus() {
    if (!Flags().queryInstrumentStatus || Flags().simulate) {
        return VI_SUCCESS;
    }
    std::uint32_t eventStatus = 0;
    const auto status = RecordIfError(instrument_->QueryEventStatus(eventStatus));
    if (status >= 0 && (eventStatus & kErrorBits) != 0) {
        return Record(IVI_ERROR_INSTRUMENT_STATUS);
    }
    return status;
}
