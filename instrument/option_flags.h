#pragma once

#include <string_view>

#include "text/option_string.h"

namespace ORVA {

/// Reads the inherent options of an option string. The DriverSetup clause is not read: no operation uses it.
/// Required: an option that the text does not give is false, whatever its IVI default; unknown names and values that
/// are not boolean words are skipped without an error; of a name given twice the last value counts.
text::InherentOptions ParseOptionFlags(std::string_view options);

} // namespace ORVA
