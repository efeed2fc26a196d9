// Statuses that are written and printed in hexadecimal.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <iomanip>
#include <ostream>

#include "platform/vi_types.h"

namespace unit {

struct Status {
    std::uint32_t code;
    Status(std::uint32_t value) : code(value) {} // NOLINT(google-explicit-constructor)
    explicit Status(ViStatus value) : code(static_cast<std::uint32_t>(value)) {}
    bool operator==(const Status&) const = default;
};

inline void PrintTo(const Status& status, std::ostream* out) {
    *out << "0x" << std::hex << std::uppercase << std::setw(8) << std::setfill('0') << status.code << std::dec;
}

/// Converts a status literal to the type of the code under test.
constexpr ViStatus Code(std::uint32_t value) { return static_cast<ViStatus>(value); }

} // namespace unit
