#pragma once

#include "driver/session_interface.h"
#include "framework/driver_session.h"

namespace tarnex {

inline constexpr nrt2::DriverIdentity kDriverIdentity{
    .prefix = "TARNEX",
    .vendor = "Keltor Technology",
    .description = "IVI-C Driver for TARNEX",
    .revision = "1.0.0.0",
    .groupCapabilities = "IviDCPwrBase,IviDCPwrMeasurement",
    .supportedModels = "TX4410,TX4520",
    .defaultSimulationModel = "TX4410",
    .checksInterchangeability = false,
    .sessionTag = kSessionTag,
};

static_assert(kDriverIdentity.supportedModels.find(kDriverIdentity.defaultSimulationModel) != std::string_view::npos,
              "the default model is a supported one");

inline constexpr ViInt32 kClassSpecMajorVersion = 3;
inline constexpr ViInt32 kClassSpecMinorVersion = 0;

} // namespace tarnex
