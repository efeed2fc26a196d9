#pragma once

#include <string>
#include <string_view>

namespace ORVA {

/// The six inherent options as the instrument object sees them. An option that the text does not give is false here,
/// whatever the IVI default: deliberate.
struct OptionFlags {
    bool cache = false;
    bool interchangeCheck = false;
    bool queryInstrumentStatus = false;
    bool rangeCheck = false;
    bool recordCoercions = false;
    bool simulate = false;
};

/// Reads the inherent part of an option string; the DriverSetup clause is left unread, since no operation uses it.
/// Unknown names and values that are no boolean word are skipped without an error, and of a name given twice the last
/// value counts.
OptionFlags ParseOptionFlags(std::string_view options);

} // namespace ORVA
