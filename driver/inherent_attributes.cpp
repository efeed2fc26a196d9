#include "driver/inherent_attributes.h"

#include <string>
#include <string_view>

#include "driver/channel_calls.h"
#include "framework/string_buffer.h"

namespace tarnex {
namespace {

/// Every getter checks its pointer first; `function` is what the description names.
template <typename T, typename Read>
ViStatus GetValue(std::string_view function, ViSession vi, T* value, const Read& read) {
    return LockedCall(vi, [&](TARNEXDriverSession& session) {
        const auto status = nrt2::CheckParameters(vi, function, "AttributeValue", {value});
        if (status == VI_SUCCESS) {
            *value = read(session);
        }
        return status;
    });
}

ViStatus GetFixed(std::string_view function, ViSession vi, ViBoolean* value, ViBoolean fixed) {
    return GetValue(function, vi, value, [=](const TARNEXDriverSession& /*session*/) { return fixed; });
}

ViStatus GetFixed(std::string_view function, ViSession vi, ViInt32* value, ViInt32 fixed) {
    return GetValue(function, vi, value, [=](const TARNEXDriverSession& /*session*/) { return fixed; });
}

template <typename Read>
ViStatus GetText(std::string_view function, ViSession vi, ViInt32 bufferSize, ViChar value[], const Read& read) {
    return LockedCall(vi, [&](TARNEXDriverSession& session) {
        const auto status = nrt2::CheckParameters(vi, function, "AttributeValue", {value});
        if (status == VI_SUCCESS) {
            nrt2::CopyText(read(session), bufferSize, value);
        }
        return status;
    });
}

template <typename Write>
ViStatus SetValue(ViSession vi, const Write& write) {
    return LockedCall(vi, [&](TARNEXDriverSession& session) -> ViStatus { return write(session); });
}

ViBoolean ToViBoolean(bool value) { return value ? VI_TRUE : VI_FALSE; }

} // namespace

ViStatus GetRangeCheck(ViSession vi, ViConstString /*repCapName*/, ViBoolean* value) {
    return GetFixed("TARNEX_get_RANGE_CHECK", vi, value, VI_TRUE);
}

ViStatus GetCache(ViSession vi, ViConstString /*repCapName*/, ViBoolean* value) {
    return GetFixed("TARNEX_get_CACHE", vi, value, VI_FALSE);
}

ViStatus GetRecordCoercions(ViSession vi, ViConstString /*repCapName*/, ViBoolean* value) {
    return GetFixed("TARNEX_get_RECORD_COERCIONS", vi, value, VI_FALSE);
}

ViStatus GetInterchangeCheck(ViSession vi, ViConstString /*repCapName*/, ViBoolean* value) {
    return GetFixed("TARNEX_get_INTERCHANGE_CHECK", vi, value, VI_FALSE);
}

ViStatus AcceptAndIgnore(ViSession vi, ViConstString /*repCapName*/, ViBoolean /*value*/) {
    return SetValue(vi, [](const TARNEXDriverSession& /*session*/) { return VI_SUCCESS; });
}

ViStatus GetQueryInstrumentStatus(ViSession vi, ViConstString /*repCapName*/, ViBoolean* value) {
    return GetValue("TARNEX_get_QUERY_INSTRUMENT_STATUS", vi, value, [](const TARNEXDriverSession& session) {
        return ToViBoolean(session.Flags().queryInstrumentStatus);
    });
}

ViStatus SetQueryInstrumentStatus(ViSession vi, ViConstString /*repCapName*/, ViBoolean value) {
    return SetValue(vi, [=](TARNEXDriverSession& session) {
        session.SetQueryInstrumentStatus(value == VI_TRUE);
        return VI_SUCCESS;
    });
}

ViStatus GetSimulate(ViSession vi, ViConstString /*repCapName*/, ViBoolean* value) {
    return GetValue("TARNEX_get_SIMULATE", vi, value,
                    [](const TARNEXDriverSession& session) { return ToViBoolean(session.Flags().simulate); });
}

// A session opened in simulation never leaves it. One that was not can go into it: the simulator then stays, also when
// the flag is cleared afterwards, deliberately.
ViStatus SetSimulate(ViSession vi, ViConstString /*repCapName*/, ViBoolean value) {
    return SetValue(vi, [=](TARNEXDriverSession& session) -> ViStatus {
        const bool beganSimulated = session.InitialFlags().simulate;
        if (beganSimulated && value == VI_FALSE) {
            return session.Record(IVI_ERROR_CANNOT_CHANGE_SIMULATION_STATE);
        }
        session.SetSimulate(value == VI_TRUE);
        if (!beganSimulated && value == VI_TRUE) {
            session.ReplaceBySimulator();
        }
        return VI_SUCCESS;
    });
}

ViStatus GetChannelCount(ViSession vi, ViConstString /*repCapName*/, ViInt32* value) {
    return GetFixed("TARNEX_get_CHANNEL_COUNT", vi, value, OutputChannels::Count());
}

ViStatus GetClassSpecMajorVersion(ViSession vi, ViConstString /*repCapName*/, ViInt32* value) {
    return GetFixed("TARNEX_get_SPECIFIC_DRIVER_CLASS_SPEC_MAJOR_VERSION", vi, value, kClassSpecMajorVersion);
}

ViStatus GetClassSpecMinorVersion(ViSession vi, ViConstString /*repCapName*/, ViInt32* value) {
    return GetFixed("TARNEX_get_SPECIFIC_DRIVER_CLASS_SPEC_MINOR_VERSION", vi, value, kClassSpecMinorVersion);
}

ViStatus GetDriverSetup(ViSession vi, ViConstString /*repCapName*/, ViInt32 bufferSize, ViChar value[]) {
    return GetText("TARNEX_get_DRIVER_SETUP", vi, bufferSize, value,
                   [](const TARNEXDriverSession& session) -> const std::string& { return session.DriverSetup(); });
}

ViStatus GetSpecificDriverPrefix(ViSession vi, ViConstString /*repCapName*/, ViInt32 bufferSize, ViChar value[]) {
    return GetText("TARNEX_get_SPECIFIC_DRIVER_PREFIX", vi, bufferSize, value,
                   [](const TARNEXDriverSession& session) { return session.Driver().prefix; });
}

ViStatus GetIoResourceDescriptor(ViSession vi, ViConstString /*repCapName*/, ViInt32 bufferSize, ViChar value[]) {
    return GetText(
        "TARNEX_get_IO_RESOURCE_DESCRIPTOR", vi, bufferSize, value,
        [](const TARNEXDriverSession& session) -> const std::string& { return session.IoResourceDescriptor(); });
}

ViStatus GetLogicalName(ViSession vi, ViConstString /*repCapName*/, ViInt32 bufferSize, ViChar value[]) {
    return GetText("TARNEX_get_LOGICAL_NAME", vi, bufferSize, value,
                   [](const TARNEXDriverSession& session) -> const std::string& { return session.LogicalName(); });
}

ViStatus GetSupportedInstrumentModels(ViSession vi, ViConstString /*repCapName*/, ViInt32 bufferSize, ViChar value[]) {
    return GetText("TARNEX_get_SUPPORTED_INSTRUMENT_MODELS", vi, bufferSize, value,
                   [](const TARNEXDriverSession& session) { return session.Driver().supportedModels; });
}

ViStatus GetGroupCapabilities(ViSession vi, ViConstString /*repCapName*/, ViInt32 bufferSize, ViChar value[]) {
    return GetText("TARNEX_get_GROUP_CAPABILITIES", vi, bufferSize, value,
                   [](const TARNEXDriverSession& session) { return session.Driver().groupCapabilities; });
}

ViStatus GetInstrumentFirmwareRevision(ViSession vi, ViConstString /*repCapName*/, ViInt32 bufferSize, ViChar value[]) {
    return GetText(
        "TARNEX_get_INSTRUMENT_FIRMWARE_REVISION", vi, bufferSize, value,
        [](const TARNEXDriverSession& session) -> const std::string& { return session.InstrumentFirmwareRevision(); });
}

ViStatus GetInstrumentManufacturer(ViSession vi, ViConstString /*repCapName*/, ViInt32 bufferSize, ViChar value[]) {
    return GetText("TARNEX_get_INSTRUMENT_MANUFACTURER", vi, bufferSize, value,
                   [](const TARNEXDriverSession& session) -> std::string_view {
                       // The simulator stands for the driver's own vendor.
                       return session.Flags().simulate ? session.Driver().vendor
                                                       : std::string_view(session.InstrumentManufacturer());
                   });
}

ViStatus GetInstrumentModel(ViSession vi, ViConstString /*repCapName*/, ViInt32 bufferSize, ViChar value[]) {
    return GetText("TARNEX_get_INSTRUMENT_MODEL", vi, bufferSize, value,
                   [](const TARNEXDriverSession& session) -> const std::string& { return session.InstrumentModel(); });
}

ViStatus GetSpecificDriverVendor(ViSession vi, ViConstString /*repCapName*/, ViInt32 bufferSize, ViChar value[]) {
    return GetText("TARNEX_get_SPECIFIC_DRIVER_VENDOR", vi, bufferSize, value,
                   [](const TARNEXDriverSession& session) { return session.Driver().vendor; });
}

ViStatus GetSpecificDriverDescription(ViSession vi, ViConstString /*repCapName*/, ViInt32 bufferSize, ViChar value[]) {
    return GetText("TARNEX_get_SPECIFIC_DRIVER_DESCRIPTION", vi, bufferSize, value,
                   [](const TARNEXDriverSession& session) { return session.Driver().description; });
}

ViStatus GetSpecificDriverRevision(ViSession vi, ViConstString /*repCapName*/, ViInt32 bufferSize, ViChar value[]) {
    return GetText("TARNEX_get_SPECIFIC_DRIVER_REVISION", vi, bufferSize, value,
                   [](const TARNEXDriverSession& session) { return session.Driver().revision; });
}

} // namespace tarnex
