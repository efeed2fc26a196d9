// The command layer alone: measures the load of a virtual supply. Usage: use_instrument RESOURCE
#include <instrument/tarnex_supply.h>

#include <cmath>

int main(int argc, char* argv[]) {
    ORVA::TARNEX supply;
    double volts = 0.0;
    double amperes = 0.0;
    double watts = 0.0;
    if (argc != 2 || supply.Open({.resource = argv[1]}) < 0 || supply.SetCurrent(1, 2.0) < 0 ||
        supply.SetVoltage(1, 5.0) < 0 || supply.SetOutputEnabled(1, true) < 0 ||
        supply.MeasureAll(1, volts, amperes, watts) < 0) {
        return 1;
    }
    return std::fabs(volts - 5.0) < 1e-6 && std::fabs(amperes - 0.5) < 1e-6 && std::fabs(watts - 2.5) < 1e-6 ? 0 : 2;
}
