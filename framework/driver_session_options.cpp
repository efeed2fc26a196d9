// The option string of an initialization function. It overrides the configuration store.

#include <set>
#include <string>

#include "framework/driver_session.h"
#include "text/characters.h"
#include "text/option_string.h"

namespace nrt2 {

ViStatus DriverSession::ParseOptionString(std::string_view options) {
    const auto [inherent, setup] = text::SplitOptionString(options);
    // A clause in the option string, even an empty one, replaces the text of the store.
    const auto status = ParseDriverSetup(setup ? std::string(*setup) : driverSetup_);
    return status < 0 ? status : ParseInherentOptions(inherent);
}

ViStatus DriverSession::ParseDriverSetup(std::string setup) {
    driverSetupOptions_.clear();
    driverSetup_ = std::move(setup);
    std::string_view rest = driverSetup_;
    // The scanner returns complete pairs only, so the error "Failed to parse the DriverSetup string." cannot occur.
    while (const auto pair = text::NextDriverSetupPair(rest)) {
        const auto status = ProcessDriverSetupOption(pair->name, pair->value);
        if (status < 0) {
            return status;
        }
        // Required: a repeated option takes effect before it is refused.
        if (!driverSetupOptions_.try_emplace(std::string(pair->name), pair->value).second) {
            return RecordElab(IVI_ERROR_CANNOT_RECOVER, "DriverSetup option '%s' appears more than once.", pair->name);
        }
    }
    return VI_SUCCESS;
}

ViStatus DriverSession::ProcessDriverSetupOption(std::string_view name, std::string_view value) {
    if (text::EqualIgnoringCase(name, "Model")) {
        modelOverride_ = value;
    }
    return VI_SUCCESS;
}

ViStatus DriverSession::ParseInherentOptions(std::string_view inherent) {
    const std::string lower = text::ToLower(inherent);
    std::set<std::string_view> seen;
    std::string_view rest = lower;
    while (const auto pair = text::NextInherentPair(rest)) {
        const auto* known = text::FindInherentOption(pair->name);
        if (known == nullptr) {
            return Record(IVI_ERROR_BAD_OPTION_NAME, pair->name);
        }
        const auto status = ParseBooleanOption(pair->value, flags_.*(known->flag));
        if (status < 0) {
            return status;
        }
        // Required: a repeated option sets its flag before it is refused.
        if (!seen.insert(pair->name).second) {
            return RecordElab(IVI_ERROR_CANNOT_RECOVER, "Inherent option '%s' appears more than once.", pair->name);
        }
    }
    return VI_SUCCESS;
}

ViStatus DriverSession::ParseBooleanOption(std::string_view value, bool& flag) const {
    const auto boolean = text::BooleanWord(value);
    if (!boolean) {
        return Record(IVI_ERROR_BAD_OPTION_VALUE, value);
    }
    flag = *boolean;
    return VI_SUCCESS;
}

} // namespace nrt2
