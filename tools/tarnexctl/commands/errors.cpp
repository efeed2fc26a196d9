#include <array>
#include <cstdint>
#include <string>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/report.h"
#include "tools/tarnexctl/supply.h"

namespace tarnexctl {

namespace {

ExitCode Run(const CommonOptions& common, Console& console) {
    constexpr int kMaxEntries = 1000; // ends the loop when an instrument never reports an empty queue
    const Supply supply(common);
    Report report({{"code", "Code"}, {"message", "Message"}});
    bool any = false;
    for (int i = 0; i < kMaxEntries; ++i) {
        ViInt32 code = 0;
        std::array<ViChar, 1024> text{};
        supply.Call("reading the error queue", &TARNEXSupply_QueryError, &code, static_cast<ViInt32>(text.size()),
                    text.data());
        if (code == 0) {
            break;
        }
        report.Add({std::int64_t{code}, std::string(text.data())});
        any = true;
    }
    console.Print(common.json ? report.JsonArray() : any ? report.Table() : "No errors.\n");
    return ExitCode::Done;
}

Action Declare(CLI::App& /*app*/) { return &Run; }

} // namespace

const Command kErrors{"errors", "empty the instrument's error queue and show what was in it", &Declare};

} // namespace tarnexctl
