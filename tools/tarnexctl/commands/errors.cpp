#include <array>
#include <cstdint>
#include <string>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/driver_session.h"
#include "tools/tarnexctl/report.h"

namespace tarnexctl {

namespace {

ExitCode Run(const CommonOptions& common, Console& console) {
    constexpr int kMaxEntries = 1000; // ends the loop when an instrument never reports an empty queue
    const DriverSession session(common);
    Report report({{"code", "Code"}, {"message", "Message"}});
    bool any = false;
    for (int i = 0; i < kMaxEntries; ++i) {
        ViInt32 code = 0;
        std::array<ViChar, 4096> text{};
        session.Check(TARNEX_error_query(session.Handle(), &code, text.data()), "reading the error queue");
        if (code == 0) {
            break;
        }
        std::string message = text.data();
        if (message.size() >= 2 && message.front() == '"' && message.back() == '"') {
            message = message.substr(1, message.size() - 2);
        }
        report.Add({std::int64_t{code}, message});
        any = true;
    }
    console.Print(common.json ? report.JsonArray() : any ? report.Table() : "No errors.\n");
    return ExitCode::Done;
}

Action Declare(CLI::App& /*app*/) { return &Run; }

} // namespace

const Command kErrors{"errors", "empty the instrument's error queue and show what was in it", &Declare};

} // namespace tarnexctl
