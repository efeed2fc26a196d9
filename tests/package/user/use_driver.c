/* The driver in simulation, through its installed header and library. */
#include <TARNEX.h>

int main(void) {
    ViSession supply = VI_NULL;
    ViReal64 maximum = 0.0;
    char resource[] = "";
    if (TARNEX_InitWithOptions(resource, VI_FALSE, VI_FALSE, "Simulate=1", &supply) < VI_SUCCESS ||
        TARNEX_QueryMaxVoltageLevel(supply, "OutputChannel1", 0.0, &maximum) < VI_SUCCESS ||
        TARNEX_close(supply) < VI_SUCCESS) {
        return 1;
    }
    return maximum == 22.0 ? 0 : 2;
}
