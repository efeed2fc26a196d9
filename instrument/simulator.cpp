#include "instrument/simulator.h"

namespace ORVA {

TARNEXSimulator::TARNEXSimulator(RandomSource& random)
    : InstBase(nullptr, std::make_shared<Identity>(Identity{"Keltor Technology", "TX6300", "SN12345678901", "V1.00"})),
      random_(random) {}

double TARNEXSimulator::DrawVoltage(ChannelNumber channel) {
    const auto& limits = GetChannelLimits(channel);
    return random_.Real(limits.minimumVoltage, limits.maximumVoltage);
}

ViStatus TARNEXSimulator::SetOpen(bool open) {
    open_ = open;
    return VI_SUCCESS;
}

} // namespace ORVA
