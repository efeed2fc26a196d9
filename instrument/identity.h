#pragma once

#include <string>

namespace ORVA {

/// Who the instrument says it is: the four fields of its "*IDN?" reply.
struct Identity {
    std::string manufacturer;
    std::string model;
    std::string serialNumber;
    std::string firmwareRevision;
};

} // namespace ORVA
