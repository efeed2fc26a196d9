#include "driver/tarnex_driver_session.h"

#include <exception>
#include <utility>

#include "driver/option_text.h"
#include "framework/call_frame.h"
#include "instrument/simulator.h"
#include "instrument/tarnex_supply.h"

namespace {

// Query error 0x04, device-dependent error 0x08, execution error 0x10 and command error 0x20 of the standard event
// status register (IEEE 488.2 11.5.1).
constexpr std::uint32_t kErrorBits = 0x3C;

} // namespace

TARNEXDriverSession::~TARNEXDriverSession() {
    if (extension_.attachment != nullptr) {
        extension_.destroy(extension_.attachment);
    }
}

ORVA::ConnectionRecord TARNEXDriverSession::ComposeConnectionRecord() const {
    const tarnex::OptionPairs pairs{Flags().simulate, Flags().queryInstrumentStatus, ModelOverride()};
    return {
        .resource = IoResourceDescriptor(),
        .idQuery = nrt2::initializationRequests.idQuery,
        .reset = nrt2::initializationRequests.reset,
        // Without a driver session in the configuration store all options are the caller's own.
        .options = LogicalName().empty() ? GivenOptionString() : tarnex::MergeOptions(GivenOptionString(), pairs),
    };
}

ViStatus TARNEXDriverSession::InitializeIO() {
    if (Flags().simulate) {
        ReplaceBySimulator();
    } else {
        Use(std::make_shared<ORVA::TARNEX>());
    }
    const auto status = instrument_->Open(ComposeConnectionRecord());
    return status < 0
               ? RecordElab(DRIVER_ERROR_IO, "Insufficient location information or resource not present in the system")
               : status;
}

void TARNEXDriverSession::Use(std::shared_ptr<ORVA::InstBase> instrument) { instrument_ = std::move(instrument); }

void TARNEXDriverSession::ReplaceBySimulator() { Use(std::make_shared<ORVA::TARNEXSimulator>()); }

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
