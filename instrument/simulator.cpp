#include "instrument/simulator.h"

namespace ORVA {

TARNEXSimulator::TARNEXSimulator(RandomSource& random)
    : InstBase(nullptr,
               std::make_shared<Identity>(Identity{std::string(kManufacturer), "TX6300", "SN12345678901", "V1.00"})),
      random_(random) {}

double TARNEXSimulator::DrawVoltage(ChannelNumber channel) {
    const auto& limits = GetChannelLimits(channel);
    return random_.Real(limits.minimumVoltage, limits.maximumVoltage);
}

double TARNEXSimulator::DrawCurrent(ChannelNumber channel) {
    const auto& limits = GetChannelLimits(channel);
    return random_.Real(limits.minimumCurrent, limits.maximumCurrent);
}

double TARNEXSimulator::DrawPower(ChannelNumber channel) {
    const auto& limits = GetChannelLimits(channel);
    return random_.Real(limits.minimumVoltage * limits.minimumCurrent, limits.maximumVoltage * limits.maximumCurrent);
}

ViStatus TARNEXSimulator::DrawProgress(double& seconds, std::int32_t& group, std::int32_t& cycle) {
    seconds = DrawSeconds();
    group = static_cast<std::int32_t>(random_.Real(0.0, 511.0));
    cycle = static_cast<std::int32_t>(random_.Real(0.0, 99999.0));
    return VI_SUCCESS;
}

ViStatus TARNEXSimulator::SetOpen(bool open) {
    open_ = open;
    return VI_SUCCESS;
}

} // namespace ORVA
