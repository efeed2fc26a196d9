// One line per command of the instrument: the operation of the command layer behind each export.

#include "include/TARNEX_supply.h"

#include "supply/operation.h"

using ORVA::InstBase;
using supply::Index;
using supply::OnChannel;
using supply::OnChannels;
using supply::OnSupply;

// clang-format off

// --- Channel selection and bleeder
ViStatus _VI_FUNC TARNEXSupply_SelectChannel(ViSession vi, ViConstString channelName) { return OnChannels<&InstBase::SelectChannel>({vi, __func__}, channelName); }
ViStatus _VI_FUNC TARNEXSupply_GetSelectedChannel(ViSession vi, ViInt32* channel) { return OnSupply<&InstBase::GetSelectedChannel>({vi, __func__, "channel"}, channel); }
ViStatus _VI_FUNC TARNEXSupply_SetBleeder(ViSession vi, ViBoolean enabled) { return OnSupply<&InstBase::SetBleeder>({vi, __func__}, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetBleeder(ViSession vi, ViBoolean* enabled) { return OnSupply<&InstBase::GetBleeder>({vi, __func__, "enabled"}, enabled); }

// --- Source: volts, amperes, seconds
ViStatus _VI_FUNC TARNEXSupply_SetVoltage(ViSession vi, ViConstString channelName, ViReal64 volts) { return OnChannels<&InstBase::SetVoltage>({vi, __func__}, channelName, volts); }
ViStatus _VI_FUNC TARNEXSupply_GetVoltage(ViSession vi, ViConstString channelName, ViReal64* volts) { return OnChannel<&InstBase::GetVoltage>({vi, __func__, "volts"}, channelName, volts); }
ViStatus _VI_FUNC TARNEXSupply_SetOverVoltageLevel(ViSession vi, ViConstString channelName, ViReal64 volts) { return OnChannels<&InstBase::SetOverVoltageLevel>({vi, __func__}, channelName, volts); }
ViStatus _VI_FUNC TARNEXSupply_GetOverVoltageLevel(ViSession vi, ViConstString channelName, ViReal64* volts) { return OnChannel<&InstBase::GetOverVoltageLevel>({vi, __func__, "volts"}, channelName, volts); }
ViStatus _VI_FUNC TARNEXSupply_SetOverVoltageEnabled(ViSession vi, ViConstString channelName, ViBoolean enabled) { return OnChannels<&InstBase::SetOverVoltageEnabled>({vi, __func__}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetOverVoltageEnabled(ViSession vi, ViConstString channelName, ViBoolean* enabled) { return OnChannel<&InstBase::GetOverVoltageEnabled>({vi, __func__, "enabled"}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_SetRemoteSense(ViSession vi, ViConstString channelName, ViBoolean enabled) { return OnChannels<&InstBase::SetRemoteSense>({vi, __func__}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetRemoteSense(ViSession vi, ViConstString channelName, ViBoolean* enabled) { return OnChannel<&InstBase::GetRemoteSense>({vi, __func__, "enabled"}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_SetCurrent(ViSession vi, ViConstString channelName, ViReal64 amperes) { return OnChannels<&InstBase::SetCurrent>({vi, __func__}, channelName, amperes); }
ViStatus _VI_FUNC TARNEXSupply_GetCurrent(ViSession vi, ViConstString channelName, ViReal64* amperes) { return OnChannel<&InstBase::GetCurrent>({vi, __func__, "amperes"}, channelName, amperes); }
ViStatus _VI_FUNC TARNEXSupply_SetOverCurrentLevel(ViSession vi, ViConstString channelName, ViReal64 amperes) { return OnChannels<&InstBase::SetOverCurrentLevel>({vi, __func__}, channelName, amperes); }
ViStatus _VI_FUNC TARNEXSupply_GetOverCurrentLevel(ViSession vi, ViConstString channelName, ViReal64* amperes) { return OnChannel<&InstBase::GetOverCurrentLevel>({vi, __func__, "amperes"}, channelName, amperes); }
ViStatus _VI_FUNC TARNEXSupply_SetOverCurrentEnabled(ViSession vi, ViConstString channelName, ViBoolean enabled) { return OnChannels<&InstBase::SetOverCurrentEnabled>({vi, __func__}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetOverCurrentEnabled(ViSession vi, ViConstString channelName, ViBoolean* enabled) { return OnChannel<&InstBase::GetOverCurrentEnabled>({vi, __func__, "enabled"}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_SetOverCurrentDelay(ViSession vi, ViConstString channelName, ViReal64 seconds) { return OnChannels<&InstBase::SetOverCurrentDelay>({vi, __func__}, channelName, seconds); }
ViStatus _VI_FUNC TARNEXSupply_GetOverCurrentDelay(ViSession vi, ViConstString channelName, ViReal64* seconds) { return OnChannel<&InstBase::GetOverCurrentDelay>({vi, __func__, "seconds"}, channelName, seconds); }
ViStatus _VI_FUNC TARNEXSupply_SetOverCurrentDelayMode(ViSession vi, ViConstString channelName, ViInt32 mode) { return OnChannels<&InstBase::SetOverCurrentDelayMode>({vi, __func__}, channelName, mode); }
ViStatus _VI_FUNC TARNEXSupply_GetOverCurrentDelayMode(ViSession vi, ViConstString channelName, ViInt32* mode) { return OnChannel<&InstBase::GetOverCurrentDelayMode>({vi, __func__, "mode"}, channelName, mode); }

// --- Output and its protections
ViStatus _VI_FUNC TARNEXSupply_SetOutputEnabled(ViSession vi, ViConstString channelName, ViBoolean enabled) { return OnChannels<&InstBase::SetOutputEnabled>({vi, __func__}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetOutputEnabled(ViSession vi, ViConstString channelName, ViBoolean* enabled) { return OnChannel<&InstBase::GetOutputEnabled>({vi, __func__, "enabled"}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetRegulationMode(ViSession vi, ViConstString channelName, ViInt32* mode) { return OnChannel<&InstBase::GetRegulationMode>({vi, __func__, "mode"}, channelName, mode); }
ViStatus _VI_FUNC TARNEXSupply_SetOvpLevel(ViSession vi, ViConstString channelName, ViReal64 volts) { return OnChannels<&InstBase::SetOvpLevel>({vi, __func__}, channelName, volts); }
ViStatus _VI_FUNC TARNEXSupply_GetOvpLevel(ViSession vi, ViConstString channelName, ViReal64* volts) { return OnChannel<&InstBase::GetOvpLevel>({vi, __func__, "volts"}, channelName, volts); }
ViStatus _VI_FUNC TARNEXSupply_SetOvpEnabled(ViSession vi, ViConstString channelName, ViBoolean enabled) { return OnChannels<&InstBase::SetOvpEnabled>({vi, __func__}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetOvpEnabled(ViSession vi, ViConstString channelName, ViBoolean* enabled) { return OnChannel<&InstBase::GetOvpEnabled>({vi, __func__, "enabled"}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_SetOcpLevel(ViSession vi, ViConstString channelName, ViReal64 amperes) { return OnChannels<&InstBase::SetOcpLevel>({vi, __func__}, channelName, amperes); }
ViStatus _VI_FUNC TARNEXSupply_GetOcpLevel(ViSession vi, ViConstString channelName, ViReal64* amperes) { return OnChannel<&InstBase::GetOcpLevel>({vi, __func__, "amperes"}, channelName, amperes); }
ViStatus _VI_FUNC TARNEXSupply_SetOcpEnabled(ViSession vi, ViConstString channelName, ViBoolean enabled) { return OnChannels<&InstBase::SetOcpEnabled>({vi, __func__}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetOcpEnabled(ViSession vi, ViConstString channelName, ViBoolean* enabled) { return OnChannel<&InstBase::GetOcpEnabled>({vi, __func__, "enabled"}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_SetOcpDelay(ViSession vi, ViConstString channelName, ViReal64 seconds) { return OnChannels<&InstBase::SetOcpDelay>({vi, __func__}, channelName, seconds); }
ViStatus _VI_FUNC TARNEXSupply_GetOcpDelay(ViSession vi, ViConstString channelName, ViReal64* seconds) { return OnChannel<&InstBase::GetOcpDelay>({vi, __func__, "seconds"}, channelName, seconds); }
ViStatus _VI_FUNC TARNEXSupply_SetOcpDelayMode(ViSession vi, ViConstString channelName, ViInt32 mode) { return OnChannels<&InstBase::SetOcpDelayMode>({vi, __func__}, channelName, mode); }
ViStatus _VI_FUNC TARNEXSupply_GetOcpDelayMode(ViSession vi, ViConstString channelName, ViInt32* mode) { return OnChannel<&InstBase::GetOcpDelayMode>({vi, __func__, "mode"}, channelName, mode); }
ViStatus _VI_FUNC TARNEXSupply_SetPowerOnState(ViSession vi, ViConstString channelName, ViInt32 state) { return OnChannels<&InstBase::SetPowerOnState>({vi, __func__}, channelName, state); }
ViStatus _VI_FUNC TARNEXSupply_GetPowerOnState(ViSession vi, ViConstString channelName, ViInt32* state) { return OnChannel<&InstBase::GetPowerOnState>({vi, __func__, "state"}, channelName, state); }
ViStatus _VI_FUNC TARNEXSupply_SetPairMode(ViSession vi, ViConstString channelName, ViInt32 mode) { return OnChannels<&InstBase::SetPairMode>({vi, __func__}, channelName, mode); }
ViStatus _VI_FUNC TARNEXSupply_GetPairMode(ViSession vi, ViConstString channelName, ViInt32* mode) { return OnChannel<&InstBase::GetPairMode>({vi, __func__, "mode"}, channelName, mode); }
ViStatus _VI_FUNC TARNEXSupply_SetOutputSense(ViSession vi, ViConstString channelName, ViBoolean enabled) { return OnChannels<&InstBase::SetOutputSense>({vi, __func__}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetOutputSense(ViSession vi, ViConstString channelName, ViBoolean* enabled) { return OnChannel<&InstBase::GetOutputSense>({vi, __func__, "enabled"}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_SetTracking(ViSession vi, ViConstString channelName, ViBoolean enabled) { return OnChannels<&InstBase::SetTracking>({vi, __func__}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetTracking(ViSession vi, ViConstString channelName, ViBoolean* enabled) { return OnChannel<&InstBase::GetTracking>({vi, __func__, "enabled"}, channelName, enabled); }
ViStatus _VI_FUNC TARNEXSupply_SetOffMode(ViSession vi, ViConstString channelName, ViInt32 mode) { return OnChannels<&InstBase::SetOffMode>({vi, __func__}, channelName, mode); }
ViStatus _VI_FUNC TARNEXSupply_GetOffMode(ViSession vi, ViConstString channelName, ViInt32* mode) { return OnChannel<&InstBase::GetOffMode>({vi, __func__, "mode"}, channelName, mode); }

// --- Measurement: volts, amperes, watts
ViStatus _VI_FUNC TARNEXSupply_MeasureAll(ViSession vi, ViConstString channelName, ViReal64* volts, ViReal64* amperes, ViReal64* watts) { return OnChannel<&InstBase::MeasureAll>({vi, __func__, "volts, amperes, watts"}, channelName, volts, amperes, watts); }
ViStatus _VI_FUNC TARNEXSupply_MeasureVoltage(ViSession vi, ViConstString channelName, ViReal64* volts) { return OnChannel<&InstBase::MeasureVoltage>({vi, __func__, "volts"}, channelName, volts); }
ViStatus _VI_FUNC TARNEXSupply_MeasureCurrent(ViSession vi, ViConstString channelName, ViReal64* amperes) { return OnChannel<&InstBase::MeasureCurrent>({vi, __func__, "amperes"}, channelName, amperes); }
ViStatus _VI_FUNC TARNEXSupply_MeasurePower(ViSession vi, ViConstString channelName, ViReal64* watts) { return OnChannel<&InstBase::MeasurePower>({vi, __func__, "watts"}, channelName, watts); }
ViStatus _VI_FUNC TARNEXSupply_SetCurrentRange(ViSession vi, ViConstString channelName, ViInt32 range) { return OnChannels<&InstBase::SetCurrentRange>({vi, __func__}, channelName, range); }
ViStatus _VI_FUNC TARNEXSupply_GetCurrentRange(ViSession vi, ViConstString channelName, ViInt32* range) { return OnChannel<&InstBase::GetCurrentRange>({vi, __func__, "range"}, channelName, range); }
ViStatus _VI_FUNC TARNEXSupply_SetCurrentRate(ViSession vi, ViConstString channelName, ViInt32 rate) { return OnChannels<&InstBase::SetCurrentRate>({vi, __func__}, channelName, rate); }
ViStatus _VI_FUNC TARNEXSupply_GetCurrentRate(ViSession vi, ViConstString channelName, ViInt32* rate) { return OnChannel<&InstBase::GetCurrentRate>({vi, __func__, "rate"}, channelName, rate); }

// --- List mode. The instrument's manual defines a group's three reals and the numbers of a status.
ViStatus _VI_FUNC TARNEXSupply_SetListEnabled(ViSession vi, ViBoolean enabled) { return OnSupply<&InstBase::SetListEnabled>({vi, __func__}, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetListEnabled(ViSession vi, ViBoolean* enabled) { return OnSupply<&InstBase::GetListEnabled>({vi, __func__, "enabled"}, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetListStatus(ViSession vi, ViInt32* state, ViReal64* seconds, ViInt32* group, ViInt32* cycle) { return OnSupply<&InstBase::GetListStatus>({vi, __func__, "state, seconds, group, cycle"}, state, seconds, group, cycle); }
ViStatus _VI_FUNC TARNEXSupply_SetListCycles(ViSession vi, ViInt32 cycles) { return OnSupply<&InstBase::SetListCycles>({vi, __func__}, cycles); }
ViStatus _VI_FUNC TARNEXSupply_GetListCycles(ViSession vi, ViInt32* cycles) { return OnSupply<&InstBase::GetListCycles>({vi, __func__, "cycles"}, cycles); }
ViStatus _VI_FUNC TARNEXSupply_SetListEndState(ViSession vi, ViInt32 state) { return OnSupply<&InstBase::SetListEndState>({vi, __func__}, state); }
ViStatus _VI_FUNC TARNEXSupply_GetListEndState(ViSession vi, ViInt32* state) { return OnSupply<&InstBase::GetListEndState>({vi, __func__, "state"}, state); }
ViStatus _VI_FUNC TARNEXSupply_GetListGroupCount(ViSession vi, ViInt32* count) { return OnSupply<&InstBase::GetListGroupCount>({vi, __func__, "count"}, count); }
ViStatus _VI_FUNC TARNEXSupply_InsertListGroup(ViSession vi, ViInt32 index) { return OnSupply<&InstBase::InsertListGroup>({vi, __func__}, Index{index}); }
ViStatus _VI_FUNC TARNEXSupply_DeleteListGroup(ViSession vi, ViInt32 index) { return OnSupply<&InstBase::DeleteListGroup>({vi, __func__}, Index{index}); }
ViStatus _VI_FUNC TARNEXSupply_ClearListGroups(ViSession vi) { return OnSupply<&InstBase::ClearListGroups>({vi, __func__}); }
ViStatus _VI_FUNC TARNEXSupply_GetListGroup(ViSession vi, ViInt32 index, ViReal64* first, ViReal64* second, ViReal64* third) { return OnSupply<&InstBase::GetListGroup>({vi, __func__, "first, second, third"}, Index{index}, first, second, third); }

// --- List templates
ViStatus _VI_FUNC TARNEXSupply_SetListTemplate(ViSession vi, ViInt32 shape) { return OnSupply<&InstBase::SetListTemplate>({vi, __func__}, shape); }
ViStatus _VI_FUNC TARNEXSupply_GetListTemplate(ViSession vi, ViInt32* shape) { return OnSupply<&InstBase::GetListTemplate>({vi, __func__, "shape"}, shape); }
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateObject(ViSession vi, ViInt32 object, ViReal64 value) { return OnSupply<&InstBase::SetListTemplateObject>({vi, __func__}, object, value); }
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateObject(ViSession vi, ViInt32* object, ViReal64* value) { return OnSupply<&InstBase::GetListTemplateObject>({vi, __func__, "object, value"}, object, value); }
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateMax(ViSession vi, ViReal64 value) { return OnSupply<&InstBase::SetListTemplateMax>({vi, __func__}, value); }
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateMax(ViSession vi, ViReal64* value) { return OnSupply<&InstBase::GetListTemplateMax>({vi, __func__, "value"}, value); }
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateMin(ViSession vi, ViReal64 value) { return OnSupply<&InstBase::SetListTemplateMin>({vi, __func__}, value); }
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateMin(ViSession vi, ViReal64* value) { return OnSupply<&InstBase::GetListTemplateMin>({vi, __func__, "value"}, value); }
ViStatus _VI_FUNC TARNEXSupply_SetListTemplatePeriod(ViSession vi, ViReal64 seconds) { return OnSupply<&InstBase::SetListTemplatePeriod>({vi, __func__}, seconds); }
ViStatus _VI_FUNC TARNEXSupply_GetListTemplatePeriod(ViSession vi, ViReal64* seconds) { return OnSupply<&InstBase::GetListTemplatePeriod>({vi, __func__, "seconds"}, seconds); }
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateInterval(ViSession vi, ViReal64 seconds) { return OnSupply<&InstBase::SetListTemplateInterval>({vi, __func__}, seconds); }
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateInterval(ViSession vi, ViReal64* seconds) { return OnSupply<&InstBase::GetListTemplateInterval>({vi, __func__, "seconds"}, seconds); }
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateCycles(ViSession vi, ViInt32 cycles) { return OnSupply<&InstBase::SetListTemplateCycles>({vi, __func__}, cycles); }
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateCycles(ViSession vi, ViInt32* cycles) { return OnSupply<&InstBase::GetListTemplateCycles>({vi, __func__, "cycles"}, cycles); }
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateInverted(ViSession vi, ViBoolean enabled) { return OnSupply<&InstBase::SetListTemplateInverted>({vi, __func__}, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateInverted(ViSession vi, ViBoolean* enabled) { return OnSupply<&InstBase::GetListTemplateInverted>({vi, __func__, "enabled"}, enabled); }
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateWidth(ViSession vi, ViReal64 seconds) { return OnSupply<&InstBase::SetListTemplateWidth>({vi, __func__}, seconds); }
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateWidth(ViSession vi, ViReal64* seconds) { return OnSupply<&InstBase::GetListTemplateWidth>({vi, __func__, "seconds"}, seconds); }
ViStatus _VI_FUNC TARNEXSupply_SetListTemplatePulseCount(ViSession vi, ViInt32 pulses) { return OnSupply<&InstBase::SetListTemplatePulseCount>({vi, __func__}, pulses); }
ViStatus _VI_FUNC TARNEXSupply_GetListTemplatePulseCount(ViSession vi, ViInt32* pulses) { return OnSupply<&InstBase::GetListTemplatePulseCount>({vi, __func__, "pulses"}, pulses); }
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateSymmetry(ViSession vi, ViInt32 percent) { return OnSupply<&InstBase::SetListTemplateSymmetry>({vi, __func__}, percent); }
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateSymmetry(ViSession vi, ViInt32* percent) { return OnSupply<&InstBase::GetListTemplateSymmetry>({vi, __func__, "percent"}, percent); }
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateStairs(ViSession vi, ViInt32 stairs) { return OnSupply<&InstBase::SetListTemplateStairs>({vi, __func__}, stairs); }
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateStairs(ViSession vi, ViInt32* stairs) { return OnSupply<&InstBase::GetListTemplateStairs>({vi, __func__, "stairs"}, stairs); }
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateExpPower(ViSession vi, ViInt32 value) { return OnSupply<&InstBase::SetListTemplateExpPower>({vi, __func__}, value); }
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateExpPower(ViSession vi, ViInt32* value) { return OnSupply<&InstBase::GetListTemplateExpPower>({vi, __func__, "value"}, value); }
ViStatus _VI_FUNC TARNEXSupply_SetListTemplateExpRate(ViSession vi, ViInt32 value) { return OnSupply<&InstBase::SetListTemplateExpRate>({vi, __func__}, value); }
ViStatus _VI_FUNC TARNEXSupply_GetListTemplateExpRate(ViSession vi, ViInt32* value) { return OnSupply<&InstBase::GetListTemplateExpRate>({vi, __func__, "value"}, value); }
ViStatus _VI_FUNC TARNEXSupply_GetListTemplatePoints(ViSession vi, ViInt32* points) { return OnSupply<&InstBase::GetListTemplatePoints>({vi, __func__, "points"}, points); }
ViStatus _VI_FUNC TARNEXSupply_ConstructListTemplate(ViSession vi, ViInt32 index) { return OnSupply<&InstBase::ConstructListTemplate>({vi, __func__}, Index{index}); }

// --- Delay mode
ViStatus _VI_FUNC TARNEXSupply_SetDelayEnabled(ViSession vi, ViBoolean enabled) { return OnSupply<&InstBase::SetDelayEnabled>({vi, __func__}, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetDelayEnabled(ViSession vi, ViBoolean* enabled) { return OnSupply<&InstBase::GetDelayEnabled>({vi, __func__, "enabled"}, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetDelayStatus(ViSession vi, ViInt32* state, ViReal64* seconds, ViInt32* group, ViInt32* cycle) { return OnSupply<&InstBase::GetDelayStatus>({vi, __func__, "state, seconds, group, cycle"}, state, seconds, group, cycle); }
ViStatus _VI_FUNC TARNEXSupply_SetDelayCycles(ViSession vi, ViInt32 cycles) { return OnSupply<&InstBase::SetDelayCycles>({vi, __func__}, cycles); }
ViStatus _VI_FUNC TARNEXSupply_GetDelayCycles(ViSession vi, ViInt32* cycles) { return OnSupply<&InstBase::GetDelayCycles>({vi, __func__, "cycles"}, cycles); }
ViStatus _VI_FUNC TARNEXSupply_SetDelayEndState(ViSession vi, ViInt32 state) { return OnSupply<&InstBase::SetDelayEndState>({vi, __func__}, state); }
ViStatus _VI_FUNC TARNEXSupply_GetDelayEndState(ViSession vi, ViInt32* state) { return OnSupply<&InstBase::GetDelayEndState>({vi, __func__, "state"}, state); }
ViStatus _VI_FUNC TARNEXSupply_GetDelayGroupCount(ViSession vi, ViInt32* count) { return OnSupply<&InstBase::GetDelayGroupCount>({vi, __func__, "count"}, count); }
ViStatus _VI_FUNC TARNEXSupply_InsertDelayGroup(ViSession vi, ViInt32 index) { return OnSupply<&InstBase::InsertDelayGroup>({vi, __func__}, Index{index}); }
ViStatus _VI_FUNC TARNEXSupply_DeleteDelayGroup(ViSession vi, ViInt32 index) { return OnSupply<&InstBase::DeleteDelayGroup>({vi, __func__}, Index{index}); }
ViStatus _VI_FUNC TARNEXSupply_ClearDelayGroups(ViSession vi) { return OnSupply<&InstBase::ClearDelayGroups>({vi, __func__}); }
ViStatus _VI_FUNC TARNEXSupply_SetDelayGroup(ViSession vi, ViInt32 index, ViBoolean enabled, ViReal64 seconds) { return OnSupply<&InstBase::SetDelayGroup>({vi, __func__}, Index{index}, enabled, seconds); }
ViStatus _VI_FUNC TARNEXSupply_GetDelayGroup(ViSession vi, ViInt32 index, ViBoolean* enabled, ViReal64* seconds) { return OnSupply<&InstBase::GetDelayGroup>({vi, __func__, "enabled, seconds"}, Index{index}, enabled, seconds); }

// --- Delay patterns
ViStatus _VI_FUNC TARNEXSupply_SetDelayGenerateMode(ViSession vi, ViInt32 mode) { return OnSupply<&InstBase::SetDelayGenerateMode>({vi, __func__}, mode); }
ViStatus _VI_FUNC TARNEXSupply_GetDelayGenerateMode(ViSession vi, ViInt32* mode) { return OnSupply<&InstBase::GetDelayGenerateMode>({vi, __func__, "mode"}, mode); }
ViStatus _VI_FUNC TARNEXSupply_SetDelayPattern(ViSession vi, ViInt32 pattern) { return OnSupply<&InstBase::SetDelayPattern>({vi, __func__}, pattern); }
ViStatus _VI_FUNC TARNEXSupply_GetDelayPattern(ViSession vi, ViInt32* pattern) { return OnSupply<&InstBase::GetDelayPattern>({vi, __func__, "pattern"}, pattern); }
ViStatus _VI_FUNC TARNEXSupply_SetDelayGeneratePoints(ViSession vi, ViInt32 points) { return OnSupply<&InstBase::SetDelayGeneratePoints>({vi, __func__}, points); }
ViStatus _VI_FUNC TARNEXSupply_GetDelayGeneratePoints(ViSession vi, ViInt32* points) { return OnSupply<&InstBase::GetDelayGeneratePoints>({vi, __func__, "points"}, points); }
ViStatus _VI_FUNC TARNEXSupply_SetDelayOnTime(ViSession vi, ViReal64 seconds) { return OnSupply<&InstBase::SetDelayOnTime>({vi, __func__}, seconds); }
ViStatus _VI_FUNC TARNEXSupply_GetDelayOnTime(ViSession vi, ViReal64* seconds) { return OnSupply<&InstBase::GetDelayOnTime>({vi, __func__, "seconds"}, seconds); }
ViStatus _VI_FUNC TARNEXSupply_SetDelayOffTime(ViSession vi, ViReal64 seconds) { return OnSupply<&InstBase::SetDelayOffTime>({vi, __func__}, seconds); }
ViStatus _VI_FUNC TARNEXSupply_GetDelayOffTime(ViSession vi, ViReal64* seconds) { return OnSupply<&InstBase::GetDelayOffTime>({vi, __func__, "seconds"}, seconds); }
ViStatus _VI_FUNC TARNEXSupply_SetDelayBaseTime(ViSession vi, ViReal64 seconds) { return OnSupply<&InstBase::SetDelayBaseTime>({vi, __func__}, seconds); }
ViStatus _VI_FUNC TARNEXSupply_GetDelayBaseTime(ViSession vi, ViReal64* seconds) { return OnSupply<&InstBase::GetDelayBaseTime>({vi, __func__, "seconds"}, seconds); }
ViStatus _VI_FUNC TARNEXSupply_SetDelayStepTime(ViSession vi, ViReal64 seconds) { return OnSupply<&InstBase::SetDelayStepTime>({vi, __func__}, seconds); }
ViStatus _VI_FUNC TARNEXSupply_GetDelayStepTime(ViSession vi, ViReal64* seconds) { return OnSupply<&InstBase::GetDelayStepTime>({vi, __func__, "seconds"}, seconds); }
ViStatus _VI_FUNC TARNEXSupply_ConstructDelayGroups(ViSession vi, ViInt32 index) { return OnSupply<&InstBase::ConstructDelayGroups>({vi, __func__}, Index{index}); }

// --- Trigger inputs
ViStatus _VI_FUNC TARNEXSupply_SetTriggerInputEnabled(ViSession vi, ViInt32 input, ViBoolean enabled) { return OnSupply<&InstBase::SetTriggerInputEnabled>({vi, __func__}, input, enabled); }
ViStatus _VI_FUNC TARNEXSupply_GetTriggerInputEnabled(ViSession vi, ViInt32 input, ViBoolean* enabled) { return OnSupply<&InstBase::GetTriggerInputEnabled>({vi, __func__, "enabled"}, input, enabled); }
ViStatus _VI_FUNC TARNEXSupply_SetAllOutputsOff(ViSession vi) { return OnSupply<&InstBase::SetAllOutputsOff>({vi, __func__}); }
// clang-format on

// The header's constants are the values of the enumerations.
static_assert(TARNEXSUPPLY_CHANNEL_COUNT == ORVA::kKeywords<ORVA::Channel>.size());
static_assert(TARNEXSUPPLY_VAL_REGULATION_CONSTANT_VOLTAGE == static_cast<int>(ORVA::RegulationMode::ConstantVoltage));
static_assert(TARNEXSUPPLY_VAL_REGULATION_CONSTANT_CURRENT == static_cast<int>(ORVA::RegulationMode::ConstantCurrent));
static_assert(TARNEXSUPPLY_VAL_CURRENT_RANGE_AUTO == static_cast<int>(ORVA::CurrentRange::Auto));
static_assert(TARNEXSUPPLY_VAL_CURRENT_RANGE_LOW == static_cast<int>(ORVA::CurrentRange::Low));
static_assert(TARNEXSUPPLY_VAL_CURRENT_RANGE_HIGH == static_cast<int>(ORVA::CurrentRange::High));
static_assert(TARNEXSUPPLY_VAL_CURRENT_RATE_62 == static_cast<int>(ORVA::CurrentRate::Rate62));
static_assert(TARNEXSUPPLY_VAL_CURRENT_RATE_4000 == static_cast<int>(ORVA::CurrentRate::Rate4000));
static_assert(TARNEXSUPPLY_VAL_CURRENT_RATE_8000 == static_cast<int>(ORVA::CurrentRate::Rate8000));
static_assert(TARNEXSUPPLY_VAL_TRIGGER_INPUT_D1 == static_cast<int>(ORVA::TriggerInput::D1));
static_assert(TARNEXSUPPLY_VAL_TRIGGER_INPUT_D2 == static_cast<int>(ORVA::TriggerInput::D2));
static_assert(TARNEXSUPPLY_VAL_TRIGGER_INPUT_D3 == static_cast<int>(ORVA::TriggerInput::D3));
static_assert(TARNEXSUPPLY_VAL_TRIGGER_INPUT_D4 == static_cast<int>(ORVA::TriggerInput::D4));
static_assert(TARNEXSUPPLY_VAL_PROTECTION_DELAY_ANY == static_cast<int>(ORVA::ProtectionDelayMode::Any));
static_assert(TARNEXSUPPLY_VAL_PROTECTION_DELAY_SETTING_CHANGE ==
              static_cast<int>(ORVA::ProtectionDelayMode::SettingChange));
static_assert(TARNEXSUPPLY_VAL_POWER_ON_RESET == static_cast<int>(ORVA::PowerOnState::Reset));
static_assert(TARNEXSUPPLY_VAL_POWER_ON_LAST == static_cast<int>(ORVA::PowerOnState::Last));
static_assert(TARNEXSUPPLY_VAL_POWER_ON_LAST_OFF == static_cast<int>(ORVA::PowerOnState::LastOff));
static_assert(TARNEXSUPPLY_VAL_PAIR_OFF == static_cast<int>(ORVA::PairMode::Off));
static_assert(TARNEXSUPPLY_VAL_PAIR_SERIES == static_cast<int>(ORVA::PairMode::Series));
static_assert(TARNEXSUPPLY_VAL_PAIR_PARALLEL == static_cast<int>(ORVA::PairMode::Parallel));
static_assert(TARNEXSUPPLY_VAL_OFF_MODE_BLEEDER_ON == static_cast<int>(ORVA::OffMode::BleederOn));
static_assert(TARNEXSUPPLY_VAL_OFF_MODE_BLEEDER_OFF == static_cast<int>(ORVA::OffMode::BleederOff));
static_assert(TARNEXSUPPLY_VAL_LIST_STATE_STOPPED == static_cast<int>(ORVA::ListState::Stopped));
static_assert(TARNEXSUPPLY_VAL_LIST_STATE_READY == static_cast<int>(ORVA::ListState::Ready));
static_assert(TARNEXSUPPLY_VAL_LIST_STATE_RUNNING == static_cast<int>(ORVA::ListState::Running));
static_assert(TARNEXSUPPLY_VAL_LIST_STATE_PAUSED == static_cast<int>(ORVA::ListState::Paused));
static_assert(TARNEXSUPPLY_VAL_LIST_END_OFF == static_cast<int>(ORVA::ListEndState::Off));
static_assert(TARNEXSUPPLY_VAL_LIST_END_LAST == static_cast<int>(ORVA::ListEndState::Last));
static_assert(TARNEXSUPPLY_VAL_LIST_TEMPLATE_SINE == static_cast<int>(ORVA::ListTemplate::Sine));
static_assert(TARNEXSUPPLY_VAL_LIST_TEMPLATE_PULSE == static_cast<int>(ORVA::ListTemplate::Pulse));
static_assert(TARNEXSUPPLY_VAL_LIST_TEMPLATE_RAMP == static_cast<int>(ORVA::ListTemplate::Ramp));
static_assert(TARNEXSUPPLY_VAL_LIST_TEMPLATE_UP == static_cast<int>(ORVA::ListTemplate::Up));
static_assert(TARNEXSUPPLY_VAL_LIST_TEMPLATE_DOWN == static_cast<int>(ORVA::ListTemplate::Down));
static_assert(TARNEXSUPPLY_VAL_LIST_TEMPLATE_UP_DOWN == static_cast<int>(ORVA::ListTemplate::UpDown));
static_assert(TARNEXSUPPLY_VAL_LIST_TEMPLATE_RISE == static_cast<int>(ORVA::ListTemplate::Rise));
static_assert(TARNEXSUPPLY_VAL_LIST_TEMPLATE_FALL == static_cast<int>(ORVA::ListTemplate::Fall));
static_assert(TARNEXSUPPLY_VAL_LIST_OBJECT_VOLTAGE == static_cast<int>(ORVA::ListTemplateObject::Voltage));
static_assert(TARNEXSUPPLY_VAL_LIST_OBJECT_CURRENT == static_cast<int>(ORVA::ListTemplateObject::Current));
static_assert(TARNEXSUPPLY_VAL_DELAY_STATE_STOPPED == static_cast<int>(ORVA::DelayState::Stopped));
static_assert(TARNEXSUPPLY_VAL_DELAY_STATE_RUNNING == static_cast<int>(ORVA::DelayState::Running));
static_assert(TARNEXSUPPLY_VAL_DELAY_END_OFF == static_cast<int>(ORVA::DelayEndState::Off));
static_assert(TARNEXSUPPLY_VAL_DELAY_END_ON == static_cast<int>(ORVA::DelayEndState::On));
static_assert(TARNEXSUPPLY_VAL_DELAY_END_LAST == static_cast<int>(ORVA::DelayEndState::Last));
static_assert(TARNEXSUPPLY_VAL_DELAY_GENERATE_FIXED == static_cast<int>(ORVA::DelayGenerateMode::Fixed));
static_assert(TARNEXSUPPLY_VAL_DELAY_GENERATE_INCREASE == static_cast<int>(ORVA::DelayGenerateMode::Increase));
static_assert(TARNEXSUPPLY_VAL_DELAY_GENERATE_DECREASE == static_cast<int>(ORVA::DelayGenerateMode::Decrease));
static_assert(TARNEXSUPPLY_VAL_DELAY_PATTERN_OFF_FIRST == static_cast<int>(ORVA::DelayPattern::OffFirst));
static_assert(TARNEXSUPPLY_VAL_DELAY_PATTERN_ON_FIRST == static_cast<int>(ORVA::DelayPattern::OnFirst));
