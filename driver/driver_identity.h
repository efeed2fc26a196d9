#pragma once

#include "driver/session_interface.h"
#include "framework/driver_session.h"
#include "instrument/identity.h"
#include "text/characters.h"

namespace tarnex {

inline constexpr nrt2::DriverIdentity kDriverIdentity{
    .prefix = "TARNEX",
    .vendor = ORVA::kManufacturer,
    .description = "IVI-C Driver for TARNEX",
    .revision = "1.0.0.0",
    .groupCapabilities = "IviDCPwrBase,IviDCPwrMeasurement",
    .supportedModels = "TX4410,TX4520",
    .defaultSimulationModel = "TX4410",
    .checksInterchangeability = false,
    .sessionTag = kSessionTag,
};

constexpr bool IsSupportedModel(std::string_view model) {
    bool supported = false;
    text::ForEachElement(kDriverIdentity.supportedModels, ',',
                         [&](std::string_view element) { supported = supported || element == model; });
    return supported;
}
static_assert(IsSupportedModel(kDriverIdentity.defaultSimulationModel), "the default model is a supported one");

inline constexpr ViInt32 kClassSpecMajorVersion = 3;
inline constexpr ViInt32 kClassSpecMinorVersion = 0;

} // namespace tarnex
