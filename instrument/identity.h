#pragma once

#include <string>
#include <string_view>

namespace ORVA {

/// The maker of the supplies and of the driver.
inline constexpr std::string_view kManufacturer = "Keltor Technology";

/// The identity of an instrument: the four fields of its "*IDN?" reply (IEEE 488.2, 10.14).
struct Identity {
    std::string manufacturer;
    std::string model;
    std::string serialNumber;
    std::string firmwareRevision;

    bool operator==(const Identity&) const = default;
};

} // namespace ORVA
