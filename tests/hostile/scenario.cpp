#include "tests/hostile/scenario.h"

#include <array>
#include <new>

#include "tests/hostile/allocations.h"

namespace hostile {
namespace {

constexpr const char* kFirst = "OutputChannel1";
constexpr const char* kSecond = "OutputChannel2";
constexpr const char* kBoth = "OutputChannel1,OutputChannel2";
constexpr const char* kVirtual = "Rails"; // of the store: both channels

struct Call {
    const char* function;
    ViStatus (*make)(ViSession vi);
};

using Text = std::array<ViChar, 4096>;

constexpr ViInt32 kTextSize = 4096;

// clang-format off
constexpr Call kCalls[] = {
    {"ConfigureOutputRange", [](ViSession vi) { return TARNEX_ConfigureOutputRange(vi, kFirst, TARNEX_VAL_RANGE_VOLTAGE, 5.0); }},
    {"ConfigureVoltageLevel", [](ViSession vi) { return TARNEX_ConfigureVoltageLevel(vi, kBoth, 3.3); }},
    {"ConfigureVoltageLevel", [](ViSession vi) { return TARNEX_ConfigureVoltageLevel(vi, kVirtual, 1.2); }},
    {"ConfigureCurrentLimit", [](ViSession vi) { return TARNEX_ConfigureCurrentLimit(vi, kBoth, TARNEX_VAL_CURRENT_TRIP, 1.5); }},
    {"ConfigureOVP", [](ViSession vi) { return TARNEX_ConfigureOVP(vi, kFirst, VI_TRUE, 20.0); }},
    {"ConfigureOutputEnabled", [](ViSession vi) { return TARNEX_ConfigureOutputEnabled(vi, kBoth, VI_TRUE); }},
    {"ResetOutputProtection", [](ViSession vi) { return TARNEX_ResetOutputProtection(vi, kSecond); }},
    {"GetChannelName", [](ViSession vi) { Text text{}; return TARNEX_GetChannelName(vi, 2, kTextSize, text.data()); }},
    {"QueryMaxCurrentLimit", [](ViSession vi) { ViReal64 value = 0.0; return TARNEX_QueryMaxCurrentLimit(vi, kFirst, 5.0, &value); }},
    {"QueryMaxVoltageLevel", [](ViSession vi) { ViReal64 value = 0.0; return TARNEX_QueryMaxVoltageLevel(vi, kFirst, 1.0, &value); }},
    {"QueryOutputState", [](ViSession vi) { ViBoolean in = VI_FALSE; return TARNEX_QueryOutputState(vi, kBoth, TARNEX_VAL_OUTPUT_CONSTANT_VOLTAGE, &in); }},
    {"Measure", [](ViSession vi) { ViReal64 value = 0.0; return TARNEX_Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE, &value); }},
    {"Measure", [](ViSession vi) { ViReal64 value = 0.0; return TARNEX_Measure(vi, kSecond, TARNEX_VAL_MEASURE_CURRENT, &value); }},
    {"revision_query", [](ViSession vi) { Text driver{}; Text firmware{}; return TARNEX_revision_query(vi, driver.data(), firmware.data()); }},
    {"self_test", [](ViSession vi) { ViInt16 result = 0; Text text{}; return TARNEX_self_test(vi, &result, text.data()); }},
    {"error_query", [](ViSession vi) { ViInt32 code = 0; Text text{}; return TARNEX_error_query(vi, &code, text.data()); }},
    {"error_message", [](ViSession vi) { Text text{}; return TARNEX_error_message(vi, TARNEX_ERROR_IO, text.data()); }},
    {"reset", [](ViSession vi) { return TARNEX_reset(vi); }},
    {"ResetWithDefaults", [](ViSession vi) { return TARNEX_ResetWithDefaults(vi); }},
    {"Disable", [](ViSession vi) { return TARNEX_Disable(vi); }},
    {"InvalidateAllAttributes", [](ViSession vi) { return TARNEX_InvalidateAllAttributes(vi); }},
};

constexpr ViAttr kTexts[] = {TARNEX_ATTR_DRIVER_SETUP, TARNEX_ATTR_SPECIFIC_DRIVER_PREFIX, TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR, TARNEX_ATTR_LOGICAL_NAME, TARNEX_ATTR_SUPPORTED_INSTRUMENT_MODELS, TARNEX_ATTR_GROUP_CAPABILITIES, TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION, TARNEX_ATTR_INSTRUMENT_MANUFACTURER, TARNEX_ATTR_INSTRUMENT_MODEL, TARNEX_ATTR_SPECIFIC_DRIVER_VENDOR, TARNEX_ATTR_SPECIFIC_DRIVER_DESCRIPTION, TARNEX_ATTR_SPECIFIC_DRIVER_REVISION};
constexpr ViAttr kSwitches[] = {TARNEX_ATTR_RANGE_CHECK, TARNEX_ATTR_QUERY_INSTRUMENT_STATUS, TARNEX_ATTR_CACHE, TARNEX_ATTR_RECORD_COERCIONS};
constexpr ViAttr kChannelSwitches[] = {TARNEX_ATTR_OVP_ENABLED, TARNEX_ATTR_OUTPUT_ENABLED};
constexpr ViAttr kIntegers[] = {TARNEX_ATTR_CHANNEL_COUNT, TARNEX_ATTR_SPECIFIC_DRIVER_CLASS_SPEC_MAJOR_VERSION, TARNEX_ATTR_SPECIFIC_DRIVER_CLASS_SPEC_MINOR_VERSION, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR};
constexpr ViAttr kReals[] = {TARNEX_ATTR_VOLTAGE_LEVEL, TARNEX_ATTR_OVP_LIMIT, TARNEX_ATTR_CURRENT_LIMIT};
// clang-format on

class Run {
  public:
    explicit Run(Life& life) : life_(life) {}

    /// Makes one call and reads its error from the record of `vi`, which after a failed opening is VI_NULL: the record
    /// of the thread.
    template <typename Make>
    ViStatus Do(const char* function, const Make& make, const ViSession& vi) {
        Result result;
        result.function = function;
        try {
            const DriverCall call;
            result.status = make();
        } catch (const std::bad_alloc&) {
            result.outOfMemory = true;
        } catch (const std::exception& error) {
            result.threw = error.what();
        }
        if (result.status < 0) {
            Text text{};
            TARNEX_GetError(vi, &result.recorded, kTextSize, text.data());
            result.described = text.front() != '\0';
        }
        TARNEX_ClearError(vi);
        life_.results.push_back(std::move(result));
        return life_.results.back().status;
    }

  private:
    Life& life_;
};

void GetAndSetAttributes(Run& run, ViSession vi) {
    Text text{};
    for (const auto attribute : kTexts) {
        run.Do(
            "GetAttributeViString",
            [&] { return TARNEX_GetAttributeViString(vi, "", attribute, kTextSize, text.data()); }, vi);
    }
    ViBoolean on = VI_FALSE;
    for (const auto attribute : kSwitches) {
        run.Do(
            "GetAttributeViBoolean", [&] { return TARNEX_GetAttributeViBoolean(vi, "", attribute, &on); }, vi);
        run.Do(
            "SetAttributeViBoolean", [&] { return TARNEX_SetAttributeViBoolean(vi, "", attribute, on); }, vi);
    }
    for (const auto attribute : kChannelSwitches) {
        run.Do(
            "GetAttributeViBoolean", [&] { return TARNEX_GetAttributeViBoolean(vi, kFirst, attribute, &on); }, vi);
        run.Do(
            "SetAttributeViBoolean", [&] { return TARNEX_SetAttributeViBoolean(vi, kBoth, attribute, on); }, vi);
    }
    ViInt32 integer = 0;
    for (const auto attribute : kIntegers) {
        run.Do(
            "GetAttributeViInt32", [&] { return TARNEX_GetAttributeViInt32(vi, kFirst, attribute, &integer); }, vi);
    }
    run.Do(
        "SetAttributeViInt32",
        [&] {
            return TARNEX_SetAttributeViInt32(vi, kBoth, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR,
                                              TARNEX_VAL_CURRENT_REGULATE);
        },
        vi);
    ViReal64 real = 0.0;
    for (const auto attribute : kReals) {
        run.Do(
            "GetAttributeViReal64", [&] { return TARNEX_GetAttributeViReal64(vi, kFirst, attribute, &real); }, vi);
        run.Do(
            "SetAttributeViReal64", [&] { return TARNEX_SetAttributeViReal64(vi, kBoth, attribute, 1.0); }, vi);
    }
}

} // namespace

Life LiveOnce(const std::string& resource) {
    Life life;
    Run run(life);
    auto name = resource;
    ViSession vi = 0xFFFFFFFF;
    run.Do(
        "InitWithOptions",
        [&] {
            return TARNEX_InitWithOptions(name.data(), VI_TRUE, VI_TRUE, "QueryInstrStatus=1,DriverSetup=Model:TX4520",
                                          &vi);
        },
        VI_NULL);
    life.gaveHandle = vi != VI_NULL;
    if (!life.gaveHandle) {
        return life;
    }
    for (const auto& call : kCalls) {
        run.Do(
            call.function, [&] { return call.make(vi); }, vi);
    }
    run.Do(
        "LockSession", [&] { return TARNEX_LockSession(vi, nullptr); }, vi);
    if (life.results.back().status >= 0) {
        run.Do(
            "UnlockSession", [&] { return TARNEX_UnlockSession(vi, nullptr); }, vi);
    }
    GetAndSetAttributes(run, vi);
    run.Do(
        "SetAttributeViBoolean", [&] { return TARNEX_SetAttributeViBoolean(vi, "", TARNEX_ATTR_SIMULATE, VI_TRUE); },
        vi);
    run.Do(
        "ConfigureVoltageLevel", [&] { return TARNEX_ConfigureVoltageLevel(vi, kBoth, 3.3); }, vi);
    run.Do(
        "close", [&] { return TARNEX_close(vi); }, VI_NULL);
    if (life.results.back().status < 0 || life.results.back().outOfMemory) {
        // The handle may be invalid or without a session: the second close then returns an error.
        run.Do(
            "close", [&] { return TARNEX_close(vi); }, VI_NULL);
    }
    return life;
}

} // namespace hostile
