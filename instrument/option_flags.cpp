#include "instrument/option_flags.h"

#include <algorithm>
#include <array>

#include "text/characters.h"
#include "text/option_string.h"

namespace ORVA {
namespace {

struct FlagName {
    std::string_view name;
    bool OptionFlags::*flag;
};

constexpr std::array kFlagNames{
    FlagName{"cache", &OptionFlags::cache},
    FlagName{"interchangecheck", &OptionFlags::interchangeCheck},
    FlagName{"queryinstrstatus", &OptionFlags::queryInstrumentStatus},
    FlagName{"rangecheck", &OptionFlags::rangeCheck},
    FlagName{"recordcoercions", &OptionFlags::recordCoercions},
    FlagName{"simulate", &OptionFlags::simulate},
};

} // namespace

OptionFlags ParseOptionFlags(std::string_view options) {
    OptionFlags flags;
    const std::string inherent = text::ToLower(text::SplitOptionString(options).inherent);
    std::string_view rest = inherent;
    while (const auto pair = text::NextInherentPair(rest)) {
        const auto* known = std::find_if(kFlagNames.begin(), kFlagNames.end(),
                                         [&](const FlagName& candidate) { return candidate.name == pair->name; });
        const auto value = text::BooleanWord(pair->value);
        if (known != kFlagNames.end() && value) {
            flags.*(known->flag) = *value;
        }
    }
    return flags;
}

} // namespace ORVA
