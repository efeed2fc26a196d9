// Accessors of the IviDCPwr channel attributes: getters take exactly one channel, setters a selector.
#pragma once

#include "platform/vi_types.h"

namespace tarnex {

ViStatus GetVoltageLevel(ViSession vi, ViConstString repCapName, ViReal64* value);
ViStatus SetVoltageLevel(ViSession vi, ViConstString repCapName, ViReal64 value);
ViStatus GetOvpEnabled(ViSession vi, ViConstString repCapName, ViBoolean* value);
ViStatus SetOvpEnabled(ViSession vi, ViConstString repCapName, ViBoolean value);
ViStatus GetOvpLimit(ViSession vi, ViConstString repCapName, ViReal64* value);
ViStatus SetOvpLimit(ViSession vi, ViConstString repCapName, ViReal64 value);
ViStatus GetCurrentLimitBehavior(ViSession vi, ViConstString repCapName, ViInt32* value);
ViStatus SetCurrentLimitBehavior(ViSession vi, ViConstString repCapName, ViInt32 value);
ViStatus GetCurrentLimit(ViSession vi, ViConstString repCapName, ViReal64* value);
ViStatus SetCurrentLimit(ViSession vi, ViConstString repCapName, ViReal64 value);
ViStatus GetOutputEnabled(ViSession vi, ViConstString repCapName, ViBoolean* value);
ViStatus SetOutputEnabled(ViSession vi, ViConstString repCapName, ViBoolean value);

} // namespace tarnex
