// Selectors of any bytes, with virtual names of any bytes: an expansion holds each channel at most once, a refusal is
// recorded.
#include <array>
#include <set>
#include <vector>

#include "framework/selector.h"
#include "tests/doubles/script.h"
#include "tests/doubles/session_service_double.h"
#include "tests/fuzz/byte_source.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::ByteSource source(data, size);
    doubles::TheScript().Reset();
    doubles::TheSessionService().Reset();
    nrt2::VirtualNames virtualNames;
    for (auto count = source.Below(4); count != 0; --count) {
        const auto name = source.Text();
        const auto mapTo = source.Text();
        if (source.Flag()) {
            const auto minimum = source.Bits<std::int32_t>();
            const auto maximum = source.Bits<std::int32_t>();
            virtualNames.AddRange(name, mapTo, minimum, maximum, source.Bits<std::int32_t>());
        } else {
            virtualNames.Add(name, mapTo);
        }
    }
    static const std::vector<std::string> kNames{"OutputChannel1", "OutputChannel2", "A1", "A2"};
    const auto selector = source.Rest();
    std::array<std::size_t, 4> expanded{};
    std::size_t found = 0;
    const auto status =
        nrt2::SelectorRules(VI_NULL, "OutputChannel").Expand(selector, &virtualNames, kNames, expanded, found);
    if (status < 0) {
        fuzz::Require(doubles::TheSessionService().Recorded().size() == 1, "a refusal is recorded once");
        return 0;
    }
    fuzz::Require(found >= 1 && found <= kNames.size(), "an expansion holds some of the names");
    const std::set<std::size_t> different(expanded.begin(), expanded.begin() + static_cast<std::ptrdiff_t>(found));
    fuzz::Require(different.size() == found && *different.rbegin() < kNames.size(), "each name at most once");
    if (virtualNames.Empty()) {
        fuzz::Require(nrt2::IsWellFormedSelector(selector), "what was expanded is well formed");
    }
    return 0;
}
