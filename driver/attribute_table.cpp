#include "driver/attribute_table.h"

#include "driver/channel_attributes.h"
#include "driver/inherent_attributes.h"
#include "include/TARNEX.h"

namespace tarnex {
namespace {

using Boolean = nrt2::Accessors<ViBoolean>;
using Integer = nrt2::Accessors<ViInt32>;
using Real = nrt2::Accessors<ViReal64>;
using Text = nrt2::Accessors<ViString>;

// In ascending order of identifiers. A null setter makes an attribute read-only.
// clang-format off
constexpr nrt2::AttributeInfo kAttributes[] = {
    {TARNEX_ATTR_RANGE_CHECK, "TARNEX_ATTR_RANGE_CHECK", Boolean{GetRangeCheck, AcceptAndIgnore}},
    {TARNEX_ATTR_QUERY_INSTRUMENT_STATUS, "TARNEX_ATTR_QUERY_INSTRUMENT_STATUS", Boolean{GetQueryInstrumentStatus, SetQueryInstrumentStatus}},
    {TARNEX_ATTR_CACHE, "TARNEX_ATTR_CACHE", Boolean{GetCache, AcceptAndIgnore}},
    {TARNEX_ATTR_SIMULATE, "TARNEX_ATTR_SIMULATE", Boolean{GetSimulate, SetSimulate}},
    {TARNEX_ATTR_RECORD_COERCIONS, "TARNEX_ATTR_RECORD_COERCIONS", Boolean{GetRecordCoercions, AcceptAndIgnore}},
    {TARNEX_ATTR_DRIVER_SETUP, "TARNEX_ATTR_DRIVER_SETUP", Text{GetDriverSetup, nullptr}},
    {TARNEX_ATTR_INTERCHANGE_CHECK, "TARNEX_ATTR_INTERCHANGE_CHECK", Boolean{GetInterchangeCheck, AcceptAndIgnore}},
    {TARNEX_ATTR_CHANNEL_COUNT, "TARNEX_ATTR_CHANNEL_COUNT", Integer{GetChannelCount, nullptr}},
    {TARNEX_ATTR_SPECIFIC_DRIVER_PREFIX, "TARNEX_ATTR_SPECIFIC_DRIVER_PREFIX", Text{GetSpecificDriverPrefix, nullptr}},
    {TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR, "TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR", Text{GetIoResourceDescriptor, nullptr}},
    {TARNEX_ATTR_LOGICAL_NAME, "TARNEX_ATTR_LOGICAL_NAME", Text{GetLogicalName, nullptr}},
    {TARNEX_ATTR_SUPPORTED_INSTRUMENT_MODELS, "TARNEX_ATTR_SUPPORTED_INSTRUMENT_MODELS", Text{GetSupportedInstrumentModels, nullptr}},
    {TARNEX_ATTR_GROUP_CAPABILITIES, "TARNEX_ATTR_GROUP_CAPABILITIES", Text{GetGroupCapabilities, nullptr}},
    {TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION, "TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION", Text{GetInstrumentFirmwareRevision, nullptr}},
    {TARNEX_ATTR_INSTRUMENT_MANUFACTURER, "TARNEX_ATTR_INSTRUMENT_MANUFACTURER", Text{GetInstrumentManufacturer, nullptr}},
    {TARNEX_ATTR_INSTRUMENT_MODEL, "TARNEX_ATTR_INSTRUMENT_MODEL", Text{GetInstrumentModel, nullptr}},
    {TARNEX_ATTR_SPECIFIC_DRIVER_VENDOR, "TARNEX_ATTR_SPECIFIC_DRIVER_VENDOR", Text{GetSpecificDriverVendor, nullptr}},
    {TARNEX_ATTR_SPECIFIC_DRIVER_DESCRIPTION, "TARNEX_ATTR_SPECIFIC_DRIVER_DESCRIPTION", Text{GetSpecificDriverDescription, nullptr}},
    {TARNEX_ATTR_SPECIFIC_DRIVER_CLASS_SPEC_MAJOR_VERSION, "TARNEX_ATTR_SPECIFIC_DRIVER_CLASS_SPEC_MAJOR_VERSION", Integer{GetClassSpecMajorVersion, nullptr}},
    {TARNEX_ATTR_SPECIFIC_DRIVER_CLASS_SPEC_MINOR_VERSION, "TARNEX_ATTR_SPECIFIC_DRIVER_CLASS_SPEC_MINOR_VERSION", Integer{GetClassSpecMinorVersion, nullptr}},
    {TARNEX_ATTR_SPECIFIC_DRIVER_REVISION, "TARNEX_ATTR_SPECIFIC_DRIVER_REVISION", Text{GetSpecificDriverRevision, nullptr}},
    {TARNEX_ATTR_VOLTAGE_LEVEL, "TARNEX_ATTR_VOLTAGE_LEVEL", Real{GetVoltageLevel, SetVoltageLevel}},
    {TARNEX_ATTR_OVP_ENABLED, "TARNEX_ATTR_OVP_ENABLED", Boolean{GetOvpEnabled, SetOvpEnabled}},
    {TARNEX_ATTR_OVP_LIMIT, "TARNEX_ATTR_OVP_LIMIT", Real{GetOvpLimit, SetOvpLimit}},
    {TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, "TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR", Integer{GetCurrentLimitBehavior, SetCurrentLimitBehavior}},
    {TARNEX_ATTR_CURRENT_LIMIT, "TARNEX_ATTR_CURRENT_LIMIT", Real{GetCurrentLimit, SetCurrentLimit}},
    {TARNEX_ATTR_OUTPUT_ENABLED, "TARNEX_ATTR_OUTPUT_ENABLED", Boolean{GetOutputEnabled, SetOutputEnabled}},
};
// clang-format on

constexpr nrt2::AttributeEngine kEngine{kAttributes};

} // namespace

const nrt2::AttributeEngine& Attributes() { return kEngine; }

} // namespace tarnex
