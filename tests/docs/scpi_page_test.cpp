// docs/scpi-commands.md lists what each function and attribute sends, in order. These tests call each one over TCP and
// compare what the virtual supply received with the page's row.
#include <array>
#include <cstdint>
#include <fstream>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <sstream>
#include <utility>

#include "tests/system/supply_fixture.h"

namespace system_tests {
namespace {

using Lines = std::vector<std::string>;

/// The texts between backticks in a table's cell.
Lines CodeSpans(const std::string& cell) {
    Lines spans;
    std::istringstream pieces(cell);
    bool code = false;
    for (std::string piece; std::getline(pieces, piece, '`'); code = !code) {
        if (code) {
            spans.push_back(piece);
        }
    }
    return spans;
}

/// The rows of the page's tables, by the name in their first cell: the commands in each further cell.
std::map<std::string, std::vector<Lines>> Page() {
    std::map<std::string, std::vector<Lines>> rows;
    std::ifstream page(SCPI_PAGE);
    for (std::string line; std::getline(page, line);) {
        if (!line.starts_with("| `TARNEX_")) {
            continue;
        }
        std::istringstream cells(line.substr(1));
        std::string cell;
        std::getline(cells, cell, '|');
        auto& row = rows[CodeSpans(cell).at(0)];
        while (std::getline(cells, cell, '|')) {
            row.push_back(CodeSpans(cell));
        }
    }
    return rows;
}

/// The commands that the supply has received, taken from the server's log.
class Received {
  public:
    void Note(std::string_view line) {
        const std::lock_guard guard(mutex_);
        if (const auto mark = line.find("< "); mark != std::string_view::npos) {
            commands_.emplace_back(line.substr(mark + 2));
        }
    }
    Lines Take() {
        const std::lock_guard guard(mutex_);
        return std::exchange(commands_, {});
    }

  private:
    std::mutex mutex_;
    Lines commands_;
};

Received received;

std::set<std::string> ExportedNames() {
    std::set<std::string> names;
    std::ifstream file(EXPORTED_NAMES);
    for (std::string name; file >> name;) {
        names.insert(name);
    }
    return names;
}

class ScpiPage : public SupplyTest {
  protected:
    ScpiPage()
        : SupplyTest({.log = [](std::string_view line) { received.Note(line); }}), page_(Page()),
          opening_(OpeningCommands()) {}

    /// What one call sends. The error query after the call ensures that everything sent before it is in the log.
    Lines SentBy(const std::function<ViStatus()>& call, ViStatus least = VI_SUCCESS) {
        Settle();
        received.Take();
        EXPECT_GE(call(), least);
        Settle();
        auto sent = received.Take();
        EXPECT_FALSE(sent.empty());
        sent.pop_back();
        return sent;
    }

    /// The attributes that the driver has from `first` to `last`. IVI reserves a range each for inherent and for class
    /// attributes.
    std::vector<ViAttr> IdentifiersIn(ViAttr first, ViAttr last) const {
        std::vector<ViAttr> identifiers;
        ViInt32 value = 0;
        for (auto id = first; id <= last; ++id) {
            if (TARNEX_GetAttributeViInt32(vi_, "OutputChannel1", id, &value) != TARNEX_ERROR_INVALID_ATTRIBUTE) {
                identifiers.push_back(id);
            }
        }
        return identifiers;
    }

    ViSession vi_ = VI_NULL;
    std::map<std::string, std::vector<Lines>> page_;
    Lines opening_;

  private:
    void Settle() const {
        ViInt32 code = -1;
        std::array<ViChar, 1024> text{};
        EXPECT_EQ(TARNEX_error_query(vi_, &code, text.data()), VI_SUCCESS);
        EXPECT_EQ(code, 0) << text.data();
    }
    Lines OpeningCommands() {
        received.Take();
        vi_ = Open();
        return received.Take();
    }
};

TEST_F(ScpiPage, ListsWhatEachFunctionSends) {
    ViReal64 real = 0.0;
    ViBoolean flag = VI_FALSE;
    ViInt32 integer = 0;
    ViInt16 small = 0;
    ViStatus status = VI_SUCCESS;
    ViSession none = VI_NULL;
    std::array<ViChar, 4096> text{};
    std::array<ViChar, 4096> more{};
    const char* const one = "OutputChannel1";
    const auto size = static_cast<ViInt32>(text.size());
    constexpr ViAttr kVolts = TARNEX_ATTR_VOLTAGE_LEVEL;
    const std::map<std::string, std::function<ViStatus()>> calls{
        {"TARNEX_close",
         [&] {
             ViSession other = VI_NULL;
             EXPECT_GE(TryOpen("nothing", "Simulate=1", other), 0);
             return TARNEX_close(other);
         }},
        {"TARNEX_reset", [&] { return TARNEX_reset(vi_); }},
        {"TARNEX_ResetWithDefaults", [&] { return TARNEX_ResetWithDefaults(vi_); }},
        {"TARNEX_self_test", [&] { return TARNEX_self_test(vi_, &small, text.data()); }},
        {"TARNEX_error_query", [&] { return TARNEX_error_query(vi_, &integer, text.data()); }},
        {"TARNEX_error_message", [&] { return TARNEX_error_message(vi_, VI_SUCCESS, text.data()); }},
        {"TARNEX_revision_query", [&] { return TARNEX_revision_query(vi_, text.data(), more.data()); }},
        {"TARNEX_Disable", [&] { return TARNEX_Disable(vi_); }},
        {"TARNEX_InvalidateAllAttributes", [&] { return TARNEX_InvalidateAllAttributes(vi_); }},
        {"TARNEX_LockSession", [&] { return TARNEX_LockSession(vi_, VI_NULL); }},
        {"TARNEX_UnlockSession", [&] { return TARNEX_UnlockSession(vi_, VI_NULL); }},
        {"TARNEX_GetError", [&] { return TARNEX_GetError(vi_, &status, size, text.data()); }},
        {"TARNEX_ClearError", [&] { return TARNEX_ClearError(vi_); }},
        {"TARNEX_GetAttributeViInt32",
         [&] { return TARNEX_GetAttributeViInt32(vi_, "", TARNEX_ATTR_CHANNEL_COUNT, &integer); }},
        {"TARNEX_GetAttributeViReal64", [&] { return TARNEX_GetAttributeViReal64(vi_, one, kVolts, &real); }},
        {"TARNEX_GetAttributeViBoolean",
         [&] { return TARNEX_GetAttributeViBoolean(vi_, one, TARNEX_ATTR_OUTPUT_ENABLED, &flag); }},
        {"TARNEX_GetAttributeViString",
         [&] { return TARNEX_GetAttributeViString(vi_, "", TARNEX_ATTR_LOGICAL_NAME, size, text.data()); }},
        {"TARNEX_SetAttributeViInt32",
         [&] { return TARNEX_SetAttributeViInt32(vi_, one, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, 0); }},
        {"TARNEX_SetAttributeViReal64", [&] { return TARNEX_SetAttributeViReal64(vi_, one, kVolts, 3.3); }},
        {"TARNEX_SetAttributeViBoolean",
         [&] { return TARNEX_SetAttributeViBoolean(vi_, one, TARNEX_ATTR_OUTPUT_ENABLED, VI_FALSE); }},
        {"TARNEX_ConfigureOutputEnabled", [&] { return TARNEX_ConfigureOutputEnabled(vi_, one, VI_TRUE); }},
        {"TARNEX_ConfigureVoltageLevel", [&] { return TARNEX_ConfigureVoltageLevel(vi_, one, 3.3); }},
        {"TARNEX_ConfigureCurrentLimit",
         [&] { return TARNEX_ConfigureCurrentLimit(vi_, one, TARNEX_VAL_CURRENT_TRIP, 1.5); }},
        {"TARNEX_ConfigureOVP", [&] { return TARNEX_ConfigureOVP(vi_, one, VI_TRUE, 5.0); }},
        {"TARNEX_ConfigureOutputRange",
         [&] { return TARNEX_ConfigureOutputRange(vi_, one, TARNEX_VAL_RANGE_VOLTAGE, 5.0); }},
        {"TARNEX_ResetOutputProtection", [&] { return TARNEX_ResetOutputProtection(vi_, one); }},
        {"TARNEX_GetChannelName", [&] { return TARNEX_GetChannelName(vi_, 1, size, text.data()); }},
        {"TARNEX_QueryMaxCurrentLimit", [&] { return TARNEX_QueryMaxCurrentLimit(vi_, one, 1.0, &real); }},
        {"TARNEX_QueryMaxVoltageLevel", [&] { return TARNEX_QueryMaxVoltageLevel(vi_, one, 1.0, &real); }},
        {"TARNEX_QueryOutputState",
         [&] { return TARNEX_QueryOutputState(vi_, one, TARNEX_VAL_OUTPUT_CONSTANT_VOLTAGE, &flag); }},
        {"TARNEX_Measure", [&] { return TARNEX_Measure(vi_, one, TARNEX_VAL_MEASURE_VOLTAGE, &real); }},
    };
    for (const auto& [name, call] : calls) {
        ASSERT_EQ(page_.count(name), 1U) << name << " is not on the page";
        EXPECT_EQ(SentBy(call), page_[name].at(0)) << name;
    }
    // Always errors: no attribute has these types, and no text can be set.
    const std::map<std::string, std::function<ViStatus()>> errors{
        {"TARNEX_GetAttributeViSession", [&] { return TARNEX_GetAttributeViSession(vi_, one, kVolts, &none); }},
        {"TARNEX_SetAttributeViSession", [&] { return TARNEX_SetAttributeViSession(vi_, one, kVolts, none); }},
        {"TARNEX_SetAttributeViString", [&] { return TARNEX_SetAttributeViString(vi_, one, kVolts, "1"); }},
    };
    for (const auto& [name, call] : errors) {
        ASSERT_EQ(page_.count(name), 1U) << name << " is not on the page";
        EXPECT_EQ(SentBy(call, INT32_MIN), page_[name].at(0)) << name;
    }
    EXPECT_EQ(opening_, page_["TARNEX_init"].at(0));
    EXPECT_EQ(opening_, page_["TARNEX_InitWithOptions"].at(0));
    std::set<std::string> called{"TARNEX_init", "TARNEX_InitWithOptions"};
    for (const auto& [name, call] : calls) {
        called.insert(name);
    }
    for (const auto& [name, call] : errors) {
        called.insert(name);
    }
    EXPECT_EQ(called, ExportedNames());
}

TEST_F(ScpiPage, ListsWhatASessionWithStatusCheckingSends) {
    received.Take();
    vi_ = Open("QueryInstrStatus=1", VI_TRUE, VI_TRUE);
    EXPECT_EQ(SentBy([&] { return TARNEX_ConfigureVoltageLevel(vi_, "OutputChannel1", 3.3); }),
              (Lines{":SOUR1:VOLT 3.300000", "*ESR?"}));
    ViReal64 volts = 0.0;
    const auto measure = [&] { return TARNEX_Measure(vi_, "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE, &volts); };
    EXPECT_EQ(SentBy(measure), Lines{":SOUR1:VOLT?"});
    ViBoolean flag = VI_FALSE;
    const auto state = [&] {
        return TARNEX_QueryOutputState(vi_, "OutputChannel1", TARNEX_VAL_OUTPUT_OVER_VOLTAGE, &flag);
    };
    EXPECT_EQ(SentBy(state), Lines{"*ESR?"});
}

TEST_F(ScpiPage, ListsWhatEachChannelAttributeSends) {
    struct Access {
        std::string name;
        std::function<ViStatus()> get;
        std::function<ViStatus()> set;
    };
    const char* const two = "OutputChannel2";
    ViReal64 real = 0.0;
    ViBoolean flag = VI_FALSE;
    ViInt32 integer = 0;
    const auto realAccess = [&](const char* name, ViAttr id, double value) {
        return Access{name, [=, this, &real] { return TARNEX_GetAttributeViReal64(vi_, two, id, &real); },
                      [=, this] { return TARNEX_SetAttributeViReal64(vi_, two, id, value); }};
    };
    const auto flagAccess = [&](const char* name, ViAttr id) {
        return Access{name, [=, this, &flag] { return TARNEX_GetAttributeViBoolean(vi_, two, id, &flag); },
                      [=, this] { return TARNEX_SetAttributeViBoolean(vi_, two, id, VI_TRUE); }};
    };
    const std::vector<Access> accesses{
        realAccess("TARNEX_ATTR_VOLTAGE_LEVEL", TARNEX_ATTR_VOLTAGE_LEVEL, 1.2),
        flagAccess("TARNEX_ATTR_OVP_ENABLED", TARNEX_ATTR_OVP_ENABLED),
        realAccess("TARNEX_ATTR_OVP_LIMIT", TARNEX_ATTR_OVP_LIMIT, 1.5),
        {"TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR",
         [&] { return TARNEX_GetAttributeViInt32(vi_, two, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, &integer); },
         [&] { return TARNEX_SetAttributeViInt32(vi_, two, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, 1); }},
        realAccess("TARNEX_ATTR_CURRENT_LIMIT", TARNEX_ATTR_CURRENT_LIMIT, 10.0),
        flagAccess("TARNEX_ATTR_OUTPUT_ENABLED", TARNEX_ATTR_OUTPUT_ENABLED),
    };
    for (const auto& access : accesses) {
        ASSERT_EQ(page_.count(access.name), 1U) << access.name << " is not on the page";
        EXPECT_EQ(SentBy(access.get), page_[access.name].at(0)) << access.name;
        EXPECT_EQ(SentBy(access.set), page_[access.name].at(1)) << access.name;
    }
    std::set<std::string> listed;
    for (const auto& row : page_) {
        if (row.first.starts_with("TARNEX_ATTR_")) {
            listed.insert(row.first);
        }
    }
    std::set<std::string> accessed;
    for (const auto& access : accesses) {
        accessed.insert(access.name);
    }
    EXPECT_EQ(accessed, listed);
    EXPECT_EQ(accessed.size(), IdentifiersIn(1250000, 1250999).size());
}

TEST_F(ScpiPage, SaysThatTheInherentAttributesSendNothing) {
    const auto identifiers = IdentifiersIn(1050000, 1050999);
    EXPECT_FALSE(identifiers.empty());
    std::array<ViChar, 4096> text{};
    ViInt32 integer = 0;
    ViBoolean flag = VI_FALSE;
    ViStatus status = VI_SUCCESS;
    for (const auto id : identifiers) {
        const auto get = [&] {
            status = TARNEX_GetAttributeViInt32(vi_, "", id, &integer);
            if (status == TARNEX_ERROR_TYPES_DO_NOT_MATCH) {
                status = TARNEX_GetAttributeViBoolean(vi_, "", id, &flag);
            }
            if (status == TARNEX_ERROR_TYPES_DO_NOT_MATCH) {
                status = TARNEX_GetAttributeViString(vi_, "", id, 4096, text.data());
            }
            return status;
        };
        EXPECT_EQ(SentBy(get), Lines{}) << id;
        const auto set = [&] { return status = TARNEX_SetAttributeViBoolean(vi_, "", id, VI_FALSE); };
        EXPECT_EQ(SentBy(set, INT32_MIN), Lines{}) << id;
        EXPECT_TRUE(status >= 0 || status == TARNEX_ERROR_ATTR_NOT_WRITABLE ||
                    status == TARNEX_ERROR_TYPES_DO_NOT_MATCH)
            << id;
    }
}

} // namespace
} // namespace system_tests
