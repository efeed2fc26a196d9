// Lets every platform call in the life of a session fail once, with several statuses, and every allocation once. After
// each failure nothing is leaked, no lock is held, the returned status has been recorded, and the next session works.
//
// Usage: fault_sweep [--long]        --long: more statuses of each kind
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "tests/doubles/config_server_double.h"
#include "tests/doubles/script.h"
#include "tests/doubles/session_service_double.h"
#include "tests/doubles/visa_double.h"
#include "tests/hostile/allocations.h"
#include "tests/hostile/scenario.h"

namespace {

using hostile::Life;

constexpr const char* kResource = "USB0::0x1234::0x5678::SN42::INSTR";

struct Statuses {
    std::string_view prefix; ///< of the platform's function names
    std::vector<std::uint32_t> shortForm;
    std::vector<std::uint32_t> longForm; ///< besides
};

const std::vector<Statuses> kStatuses{
    {"IviSession_", {0xBFFA1190, 0xBFFA1198}, {0xBFFA11A0, 0xBFFA0056, 0x80000000}},
    {"IviConfig_", {0xBFFA1200, 0xBFFA1203, 0xBFFA1207}, {0xBFFA1220, 0xBFFA1222, 0xBFFA1204, 0x80000000}},
    {"vi", {0xBFFF0015, 0xBFFF003E, 0x3FFF0088}, {0xBFFF00A6, 0xBFFF0000, 0xBFFF003C, 0xBFFF000E, 0x80000000, 1}},
};

doubles::Store FullStore() {
    doubles::Store store;
    auto& session = store.driverSession.emplace();
    session.resource = kResource;
    session.driverSetup = "Note:1";
    session.virtualNames = {{"Rails", "OutputChannel1,OutputChannel2", {}}, {"CH", "OutputChannel", {{1, 2, 1}}}};
    session.initialSettings = std::vector<doubles::StoredSetting>{
        {"model", "String", std::string("TX4520")},
        {"count", "Integer", ViInt32{3}},
        {"level", "Real", 1.5},
        {"on", "Boolean", ViBoolean{1}},
    };
    store.module.emplace().physicalNames = {{"OutputChannel1", "OutputChannel"}, {"OutputChannel2", "OutputChannel"}};
    return store;
}

class Sweep {
  public:
    explicit Sweep(bool longForm) : longForm_(longForm) {}

    int Run() {
        StartAnew();
        if (!Clean("before the sweep")) {
            return 1;
        }
        // One failure first, so that objects that are made at their first use exist.
        doubles::TheScript().FailCall(3, IVI_CONFIG_ERROR_DESERIALIZE_FAILED);
        hostile::LiveOnce(kResource);
        StartAnew();
        hostile::TakeAllocationCount();
        hostile::LiveOnce(kResource);
        allocations_ = hostile::TakeAllocationCount();
        const auto calls = doubles::TheScript().Calls();
        StartAnew();
        blocks_ = hostile::LiveBlocks();
        FailCalls(calls);
        FailAllocations();
        std::printf(
            "%zu platform calls, %zu of them failed in %zu runs; %zu allocations, each failed; %zu complaints\n",
            calls.size(), calls.size(), runs_, allocations_, complaints_);
        return complaints_ == 0 ? 0 : 1;
    }

  private:
    static void StartAnew() {
        doubles::TheScript().Reset();
        doubles::TheSessionService().Reset();
        doubles::TheConfigServer().Reset();
        doubles::TheVisa().Reset();
        doubles::TheConfigServer().Use(FullStore());
        for (const auto* query : {":SOUR1:VOLT?", ":SOUR2:VOLT?", ":SOUR1:CURR?", ":SOUR2:CURR?", ":SOUR1:VOLT:PROT?",
                                  ":SOUR2:VOLT:PROT?"}) {
            doubles::TheVisa().Reply(query, "1.000000\n");
        }
        for (const auto* query : {"*ESR?", ":STATus:QUEStionable:INSTrument:ISUMmary1:CONDition?",
                                  ":STATus:QUEStionable:INSTrument:ISUMmary2:CONDition?"}) {
            doubles::TheVisa().Reply(query, "0\n");
        }
        for (const auto* query : {":OUTP:STAT? CH1", ":SOUR1:VOLT:PROT:STAT?", ":SOUR1:CURR:PROT:STAT?"}) {
            doubles::TheVisa().Reply(query, "ON\n");
        }
        doubles::TheVisa().Reply(":SYSTem:ERRor?", "0,\"No error\"\n");
    }

    void Complain(const std::string& when, const std::string& what) {
        std::printf("%s: %s\n", when.c_str(), what.c_str());
        ++complaints_;
    }

    void FailCalls(const std::vector<std::string>& calls) {
        for (std::size_t nth = 1; nth <= calls.size(); ++nth) {
            const std::string_view function = calls[nth - 1];
            for (const auto& statuses : kStatuses) {
                if (!function.starts_with(statuses.prefix)) {
                    continue;
                }
                for (const auto status : statuses.shortForm) {
                    FailCall(nth, function, status);
                }
                if (longForm_) {
                    for (const auto status : statuses.longForm) {
                        FailCall(nth, function, status);
                    }
                }
                break;
            }
        }
    }

    void FailCall(std::size_t nth, std::string_view function, std::uint32_t status) {
        char when[128];
        std::snprintf(when, sizeof when, "call %zu, %.*s, answers 0x%08X", nth, static_cast<int>(function.size()),
                      function.data(), status);
        StartAnew();
        doubles::TheScript().FailCall(nth, static_cast<ViStatus>(status));
        const auto life = hostile::LiveOnce(kResource);
        // A failing session service records nothing.
        if (!function.starts_with("IviSession_")) {
            CheckRecords(when, life);
        }
        // A successful read without a reply is a malformed reply, which the driver reports by an exception.
        if (function != "viRead" || static_cast<ViStatus>(status) < 0) {
            CheckThatNothingThrew(when, life);
        }
        CheckWhatIsLeft(when, life);
    }

    void CheckThatNothingThrew(const std::string& when, const Life& life) {
        for (const auto& result : life.results) {
            if (!result.threw.empty()) {
                Complain(when, result.function + " threw " + result.threw);
            }
        }
    }

    void FailAllocations() {
        for (std::size_t nth = 1; nth <= allocations_; ++nth) {
            const auto when = "allocation " + std::to_string(nth) + " fails";
            StartAnew();
            hostile::FailAllocation(nth);
            const auto life = hostile::LiveOnce(kResource);
            if (hostile::AllocationFailurePending()) {
                Complain(when, "it was not reached");
            }
            hostile::FailAllocation(0);
            CheckThatNothingThrew(when, life);
            CheckWhatIsLeft(when, life);
        }
    }

    /// Checks that a returned negative status is in the record, with a description.
    void CheckRecords(const std::string& when, const Life& life) {
        for (const auto& result : life.results) {
            if (result.status < 0 && (result.recorded != result.status || !result.described)) {
                char what[160];
                std::snprintf(what, sizeof what, "%s returned 0x%08X, recorded was 0x%08X%s", result.function.c_str(),
                              static_cast<unsigned>(result.status), static_cast<unsigned>(result.recorded),
                              result.described ? "" : " without a description");
                Complain(when, what);
            }
        }
    }

    void CheckWhatIsLeft(const std::string& when, const Life& life) {
        ++runs_;
        const auto& creation = life.results.front();
        const bool threw = creation.outOfMemory || !creation.threw.empty();
        if (threw && life.gaveHandle) {
            Complain(when, "a creation that threw gave a handle");
        }
        if (!threw && creation.status >= 0 && !life.gaveHandle) {
            Complain(when, "a creation succeeded without a handle");
        }
        // Only a failed re-read of the data pointer after a successful initialization returns an error and a handle.
        if (creation.status < 0 && life.gaveHandle && when.find("IviSession_GetDataPtr") == std::string::npos) {
            Complain(when, "a creation that failed gave a handle");
        }
        if (const auto open = doubles::TheVisa().OpenSessions(); open != 0) {
            Complain(when, std::to_string(open) + " VISA sessions are left open");
        }
        if (const auto open = doubles::TheConfigServer().OpenHandles(); open != 0) {
            Complain(when, std::to_string(open) + " configuration handles are left open");
        }
        const auto released =
            doubles::TheScript().Count("IviConfig_DisposeHandle") + doubles::TheScript().Count("IviConfig_Close");
        if (const auto given = doubles::TheConfigServer().TakeCountOfHandles(); given != released) {
            Complain(when, std::to_string(given) + " configuration handles were given out, releases attempted: " +
                               std::to_string(released));
        }
        if (const auto held = doubles::TheSessionService().LocksHeld(); held != 0) {
            Complain(when, std::to_string(held) + " locks are held");
        }
        StartAnew();
        if (const auto blocks = hostile::LiveBlocks() - HeldBy(life) - HeldBy(when); blocks != blocks_) {
            Complain(when,
                     std::to_string(blocks) + " blocks of memory are left where " + std::to_string(blocks_) + " were");
            blocks_ = blocks; // reported once
        }
        Clean("after " + when);
    }

    /// Returns the number of memory blocks that the record of a life holds.
    static std::size_t HeldBy(const std::string& text) { return text.capacity() > std::string().capacity() ? 1 : 0; }
    static std::size_t HeldBy(const Life& life) {
        std::size_t blocks = life.results.capacity() == 0 ? 0 : 1;
        for (const auto& result : life.results) {
            blocks += HeldBy(result.function) + HeldBy(result.threw);
        }
        return blocks;
    }

    /// A life in which nothing fails.
    bool Clean(const std::string& when) {
        StartAnew();
        bool clean = true;
        for (const auto& result : hostile::LiveOnce(kResource).results) {
            if (result.status < 0 || result.outOfMemory) {
                Complain(when, result.function + " failed in a clean life");
                clean = false;
            }
        }
        return clean;
    }

    bool longForm_;
    std::size_t allocations_ = 0;
    std::size_t blocks_ = 0;
    std::size_t runs_ = 0;
    std::size_t complaints_ = 0;
};

} // namespace

int main(int argc, char** argv) {
    const bool longForm = argc == 2 && std::strcmp(argv[1], "--long") == 0;
    if (argc > 2 || (argc == 2 && !longForm)) {
        std::fputs("usage: fault_sweep [--long]\n", stderr);
        return 2;
    }
    return Sweep(longForm).Run();
}
