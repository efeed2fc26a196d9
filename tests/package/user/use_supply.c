/* The supply library: measures what a virtual supply's load draws, or simulates without an argument. */
#include <TARNEX_supply.h>

#include <stddef.h>

int main(int argc, char* argv[]) {
    const char* channel = "OutputChannel1";
    const char* resource = argc == 2 ? argv[1] : "";
    const char* options = argc == 2 ? "" : "Simulate=1";
    ViSession supply = VI_NULL;
    ViReal64 volts = 0.0;
    ViReal64 amperes = 0.0;
    ViReal64 watts = 0.0;
    if (TARNEXSupply_Open(resource, options, 0, &supply) < VI_SUCCESS ||
        TARNEXSupply_SetCurrent(supply, channel, 2.0) < VI_SUCCESS ||
        TARNEXSupply_SetVoltage(supply, channel, 5.0) < VI_SUCCESS ||
        TARNEXSupply_SetOutputEnabled(supply, channel, VI_TRUE) < VI_SUCCESS ||
        TARNEXSupply_MeasureAll(supply, channel, &volts, &amperes, &watts) < VI_SUCCESS ||
        TARNEXSupply_Close(supply) < VI_SUCCESS) {
        return 1;
    }
    return argc == 1 || (volts == 5.0 && amperes == 0.5 && watts == 2.5) ? 0 : 2;
}
