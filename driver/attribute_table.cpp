#include "driver/attribute_table.h"

#include <string_view>

#include "driver/attribute_rows.h"
#include "include/TARNEX.h"
#include "status/run_until.h"

namespace tarnex {
namespace {

using nrt2::DriverIdentity;
using ORVA::ChannelNumber;
using ORVA::InstBase;
using Session = TARNEXDriverSession;
using text::InherentOptions;

ViStatus SetQueryInstrumentStatus(Session& session, ViBoolean value) {
    session.SetQueryInstrumentStatus(value == VI_TRUE);
    return VI_SUCCESS;
}

// Required: a session opened in simulation never leaves it. Any other session can enter it and then keeps the
// simulator, even when the flag is cleared afterwards.
ViStatus SetSimulate(Session& session, ViBoolean value) {
    const bool beganSimulated = session.InitialFlags().simulate;
    if (beganSimulated && value == VI_FALSE) {
        return session.Record(IVI_ERROR_CANNOT_CHANGE_SIMULATION_STATE);
    }
    session.SetSimulate(value == VI_TRUE);
    if (!beganSimulated && value == VI_TRUE) {
        session.ReplaceBySimulator();
    }
    return VI_SUCCESS;
}

std::string_view Manufacturer(const Session& session) {
    return session.Flags().simulate ? session.Driver().vendor : std::string_view(session.InstrumentManufacturer());
}

// Trip is the instrument's over-current protection being on.
// Required: the query's status is ignored, so a failed query reads as regulate; the instrument's status is not checked.
ViStatus ReadCurrentLimitBehavior(Session& session, ChannelNumber channel, ViInt32& value) {
    bool on = false;
    session.Instrument().GetOverCurrentEnabled(channel, on);
    value = on ? TARNEX_VAL_CURRENT_TRIP : TARNEX_VAL_CURRENT_REGULATE;
    return VI_SUCCESS;
}

ViStatus WriteCurrentLimitBehavior(InstBase& instrument, ChannelNumber channel, ViInt32 value) {
    return value == TARNEX_VAL_CURRENT_TRIP || value == TARNEX_VAL_CURRENT_REGULATE
               ? instrument.SetOverCurrentEnabled(channel, value == TARNEX_VAL_CURRENT_TRIP)
               : DRIVER_ERROR_INVALID_PARAMETER;
}

ViStatus WriteCurrentLimit(InstBase& instrument, ChannelNumber channel, ViReal64 value) {
    return status::RunUntilNonZero([&] { return instrument.SetCurrent(channel, value); },
                                   [&] { return instrument.SetOverCurrentLevel(channel, value); });
}

// One row per attribute: its short name, its kind, and what the kind needs. The short name gives the identifier, the
// name in messages and the getter's name in the description of a null pointer.
#define ROW(name, kind, ...)                                                                                           \
    { TARNEX_ATTR_##name, "TARNEX_ATTR_" #name, kind<"TARNEX_get_" #name, __VA_ARGS__> }
// clang-format off
constexpr nrt2::AttributeInfo kAttributes[] = {
    ROW(RANGE_CHECK, kFixedSwitch, VI_TRUE),
    ROW(QUERY_INSTRUMENT_STATUS, kInherentFlag, &InherentOptions::queryInstrumentStatus, &SetQueryInstrumentStatus),
    ROW(CACHE, kFixedSwitch, VI_FALSE),
    ROW(SIMULATE, kInherentFlag, &InherentOptions::simulate, &SetSimulate),
    ROW(RECORD_COERCIONS, kFixedSwitch, VI_FALSE),
    ROW(DRIVER_SETUP, kText, &Session::DriverSetup),
    ROW(INTERCHANGE_CHECK, kFixedSwitch, VI_FALSE),
    ROW(CHANNEL_COUNT, kFixedInteger, OutputChannels::kCount),
    ROW(SPECIFIC_DRIVER_PREFIX, kText, &DriverIdentity::prefix),
    ROW(IO_RESOURCE_DESCRIPTOR, kText, &Session::IoResourceDescriptor),
    ROW(LOGICAL_NAME, kText, &Session::LogicalName),
    ROW(SUPPORTED_INSTRUMENT_MODELS, kText, &DriverIdentity::supportedModels),
    ROW(GROUP_CAPABILITIES, kText, &DriverIdentity::groupCapabilities),
    ROW(INSTRUMENT_FIRMWARE_REVISION, kText, &Session::InstrumentFirmwareRevision),
    ROW(INSTRUMENT_MANUFACTURER, kText, &Manufacturer),
    ROW(INSTRUMENT_MODEL, kText, &Session::InstrumentModel),
    ROW(SPECIFIC_DRIVER_VENDOR, kText, &DriverIdentity::vendor),
    ROW(SPECIFIC_DRIVER_DESCRIPTION, kText, &DriverIdentity::description),
    ROW(SPECIFIC_DRIVER_CLASS_SPEC_MAJOR_VERSION, kFixedInteger, kClassSpecMajorVersion),
    ROW(SPECIFIC_DRIVER_CLASS_SPEC_MINOR_VERSION, kFixedInteger, kClassSpecMinorVersion),
    ROW(SPECIFIC_DRIVER_REVISION, kText, &DriverIdentity::revision),
    ROW(VOLTAGE_LEVEL, kLevel, &InstBase::GetVoltage, &InstBase::SetVoltage),
    ROW(OVP_ENABLED, kSwitch, &InstBase::GetOverVoltageEnabled, &InstBase::SetOverVoltageEnabled),
    ROW(OVP_LIMIT, kLevel, &InstBase::GetOverVoltageLevel, &InstBase::SetOverVoltageLevel),
    ROW(CURRENT_LIMIT_BEHAVIOR, kChoice, &ReadCurrentLimitBehavior, &WriteCurrentLimitBehavior),
    ROW(CURRENT_LIMIT, kLevel, &InstBase::GetCurrent, &WriteCurrentLimit),
    ROW(OUTPUT_ENABLED, kSwitch, &InstBase::GetOutputEnabled, &InstBase::SetOutputEnabled),
};
// clang-format on
#undef ROW
static_assert(nrt2::AreAscending(kAttributes), "attributes stand in ascending order of identifiers, each once");

constexpr nrt2::AttributeEngine kEngine{kAttributes};

} // namespace

const nrt2::AttributeEngine& Attributes() { return kEngine; }

} // namespace tarnex
