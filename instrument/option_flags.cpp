#include "instrument/option_flags.h"

#include <string>

#include "text/characters.h"

namespace ORVA {

text::InherentOptions ParseOptionFlags(std::string_view options) {
    text::InherentOptions flags;
    const std::string inherent = text::ToLower(text::SplitOptionString(options).inherent);
    std::string_view rest = inherent;
    while (const auto pair = text::NextInherentPair(rest)) {
        const auto* known = text::FindInherentOption(pair->name);
        const auto value = text::BooleanWord(pair->value);
        if (known != nullptr && value) {
            flags.*(known->flag) = *value;
        }
    }
    return flags;
}

} // namespace ORVA
