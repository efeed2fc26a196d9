// The option string: what the caller of an initialization function asks for, over what the configuration store says.

#include <algorithm>
#include <array>

#include "framework/driver_session.h"
#include "text/characters.h"
#include "text/option_string.h"

namespace nrt2 {
namespace {

struct FlagName {
    std::string_view name;
    bool InherentFlags::*flag;
};

constexpr std::array kFlagNames{
    FlagName{"cache", &InherentFlags::cache},
    FlagName{"interchangecheck", &InherentFlags::interchangeCheck},
    FlagName{"queryinstrstatus", &InherentFlags::queryInstrumentStatus},
    FlagName{"rangecheck", &InherentFlags::rangeCheck},
    FlagName{"recordcoercions", &InherentFlags::recordCoercions},
    FlagName{"simulate", &InherentFlags::simulate},
};

} // namespace

ViStatus DriverSession::ParseOptionString(std::string_view options) {
    const auto [inherent, setup] = text::SplitOptionString(options);
    // A clause of the caller's, an empty one included, stands in place of the store's text.
    const auto status = ParseDriverSetup(setup ? std::string(*setup) : driverSetup_);
    return status < 0 ? status : ParseInherentOptions(inherent);
}

ViStatus DriverSession::ParseDriverSetup(std::string setup) {
    driverSetupOptions_.clear();
    driverSetup_ = std::move(setup);
    std::string_view rest = driverSetup_;
    // Whatever is found has a name and a value: a pair that could not be taken apart ("Failed to parse the DriverSetup
    // string.") does not occur.
    while (const auto pair = text::NextDriverSetupPair(rest)) {
        const auto status = ProcessDriverSetupOption(pair->name, pair->value);
        if (status < 0) {
            return status;
        }
        // The option has taken effect by now, also when it is a repetition: deliberate.
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
        const auto* known = std::find_if(kFlagNames.begin(), kFlagNames.end(),
                                         [&](const FlagName& candidate) { return candidate.name == pair->name; });
        if (known == kFlagNames.end()) {
            return Record(IVI_ERROR_BAD_OPTION_NAME, pair->name);
        }
        const auto status = ParseBooleanOption(pair->value, flags_.*(known->flag));
        if (status < 0) {
            return status;
        }
        // The flag has been set by now, also when the option is a repetition: deliberate.
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
