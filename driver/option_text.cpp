#include "driver/option_text.h"

#include "text/characters.h"

namespace tarnex {
namespace {

void Merge(std::string& options, std::string_view key, std::string_view value) {
    if (text::ToLower(options).find(text::ToLower(key)) != std::string::npos) {
        return;
    }
    if (!options.empty()) {
        options.append(", ");
    }
    options.append(key).append("=").append(value);
}

} // namespace

std::string MergeOptions(std::string options, const OptionPairs& pairs) {
    if (pairs.simulate) {
        Merge(options, "Simulate", "true");
    }
    if (pairs.queryInstrumentStatus) {
        Merge(options, "QueryInstrStatus", "true");
    }
    if (!pairs.model.empty()) {
        Merge(options, "Model", pairs.model);
    }
    return options;
}

} // namespace tarnex
