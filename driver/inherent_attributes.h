// Accessors of the attributes that belong to the session as a whole. They ignore the repeated-capability name.
#pragma once

#include "platform/vi_types.h"

namespace tarnex {

// Every switch: what cannot be switched is accepted and ignored.
ViStatus GetRangeCheck(ViSession vi, ViConstString repCapName, ViBoolean* value);
ViStatus GetCache(ViSession vi, ViConstString repCapName, ViBoolean* value);
ViStatus GetRecordCoercions(ViSession vi, ViConstString repCapName, ViBoolean* value);
ViStatus GetInterchangeCheck(ViSession vi, ViConstString repCapName, ViBoolean* value);
ViStatus AcceptAndIgnore(ViSession vi, ViConstString repCapName, ViBoolean value);
ViStatus GetQueryInstrumentStatus(ViSession vi, ViConstString repCapName, ViBoolean* value);
ViStatus SetQueryInstrumentStatus(ViSession vi, ViConstString repCapName, ViBoolean value);
ViStatus GetSimulate(ViSession vi, ViConstString repCapName, ViBoolean* value);
ViStatus SetSimulate(ViSession vi, ViConstString repCapName, ViBoolean value);

ViStatus GetChannelCount(ViSession vi, ViConstString repCapName, ViInt32* value);
ViStatus GetClassSpecMajorVersion(ViSession vi, ViConstString repCapName, ViInt32* value);
ViStatus GetClassSpecMinorVersion(ViSession vi, ViConstString repCapName, ViInt32* value);

ViStatus GetDriverSetup(ViSession vi, ViConstString repCapName, ViInt32 bufferSize, ViChar value[]);
ViStatus GetSpecificDriverPrefix(ViSession vi, ViConstString repCapName, ViInt32 bufferSize, ViChar value[]);
ViStatus GetIoResourceDescriptor(ViSession vi, ViConstString repCapName, ViInt32 bufferSize, ViChar value[]);
ViStatus GetLogicalName(ViSession vi, ViConstString repCapName, ViInt32 bufferSize, ViChar value[]);
ViStatus GetSupportedInstrumentModels(ViSession vi, ViConstString repCapName, ViInt32 bufferSize, ViChar value[]);
ViStatus GetGroupCapabilities(ViSession vi, ViConstString repCapName, ViInt32 bufferSize, ViChar value[]);
ViStatus GetInstrumentFirmwareRevision(ViSession vi, ViConstString repCapName, ViInt32 bufferSize, ViChar value[]);
ViStatus GetInstrumentManufacturer(ViSession vi, ViConstString repCapName, ViInt32 bufferSize, ViChar value[]);
ViStatus GetInstrumentModel(ViSession vi, ViConstString repCapName, ViInt32 bufferSize, ViChar value[]);
ViStatus GetSpecificDriverVendor(ViSession vi, ViConstString repCapName, ViInt32 bufferSize, ViChar value[]);
ViStatus GetSpecificDriverDescription(ViSession vi, ViConstString repCapName, ViInt32 bufferSize, ViChar value[]);
ViStatus GetSpecificDriverRevision(ViSession vi, ViConstString repCapName, ViInt32 bufferSize, ViChar value[]);

} // namespace tarnex
