#include "framework/driver_session.h"

#include "text/characters.h"

namespace nrt2 {

ViStatus DriverSession::Initialize(std::string resourceName, bool idQuery, bool reset, std::string optionString) {
    resourceName_ = std::move(resourceName);
    idQuery_ = idQuery;
    reset_ = reset;
    optionString_ = std::move(optionString);

    auto status = ResolveResource();
    if (status < 0) {
        return status;
    }
    if (flags_.interchangeCheck && !driver_.checksInterchangeability) {
        return RecordElab(IVI_ERROR_BAD_OPTION_VALUE, "Interchange checking is not supported by the driver.", "True");
    }
    status = InitializeIO();
    if (status < 0) {
        return status;
    }
    if (flags_.queryInstrumentStatus) {
        status = ClearStatus();
        if (status < 0) {
            CloseIO();
            return status;
        }
    }
    status =
        QueryIdentity(instrumentManufacturer_, instrumentModel_, instrumentSerialNumber_, instrumentFirmwareRevision_);
    if (status >= 0 && idQuery_ && !ModelIsSupported()) {
        // Required: the message has no placeholder, so the description does not contain the model.
        status = Record(IVI_ERROR_ID_QUERY_FAILED, "Unrecognized model: " + instrumentModel_);
    }
    if (status < 0) {
        CloseIO();
    }
    return status;
}

bool DriverSession::ModelIsSupported() const {
    bool found = false;
    text::ForEachElement(driver_.supportedModels, ',',
                         [&](std::string_view model) { found = found || model == instrumentModel_; });
    return found;
}

} // namespace nrt2
