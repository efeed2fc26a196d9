/*
 * Simulation: runs a test program without a supply. No resource is needed and nothing is sent. Settings succeed;
 * queries return plausible values, which are not the programmed ones.
 *
 * Usage: simulation
 */
#include <TARNEX.h>

#include <stdio.h>

int main(void) {
    ViSession supply = VI_NULL;
    ViChar model[256] = "";
    ViReal64 volts = -1.0;
    ViReal64 highest = 0.0;

    TARNEX_ClearError(VI_NULL);
    /* Without the ID query, which fails because the model of the simulator is not a supported one. */
    ViStatus status = TARNEX_InitWithOptions("", VI_FALSE, VI_FALSE, "Simulate=1, DriverSetup=Model:TX4410", &supply);
    if (status >= VI_SUCCESS) {
        status = TARNEX_GetAttributeViString(supply, "", TARNEX_ATTR_INSTRUMENT_MODEL, (ViInt32)sizeof model, model);
    }
    if (status >= VI_SUCCESS) {
        status = TARNEX_ConfigureVoltageLevel(supply, "OutputChannel2", 3.3);
    }
    if (status >= VI_SUCCESS) {
        status = TARNEX_QueryMaxVoltageLevel(supply, "OutputChannel2", 1.0, &highest);
    }
    if (status >= VI_SUCCESS) {
        status = TARNEX_Measure(supply, "OutputChannel2", TARNEX_VAL_MEASURE_VOLTAGE, &volts);
    }
    if (status < VI_SUCCESS) { /* negative statuses are errors */
        ViChar description[1024] = "";
        TARNEX_GetError(supply, VI_NULL, (ViInt32)sizeof description, description);
        printf("0x%08X: %s\n", (unsigned)status, description);
        TARNEX_close(supply);
        return 1;
    }
    printf("Simulated model: %s\n", model);
    printf("OutputChannel2: 3.3 V accepted; at most %.1f V\n", highest);
    printf("Level read back: %s\n", volts >= 0.0 && volts <= highest ? "between 0 V and the highest" : "out of range");

    /* The simulator checks channel names but not levels: the real OutputChannel2 refuses 6.0 V. */
    status = TARNEX_ConfigureVoltageLevel(supply, "OutputChannel2", 6.0);
    printf("6.0 V on OutputChannel2: 0x%08X\n", (unsigned)status);
    status = TARNEX_ConfigureVoltageLevel(supply, "OutputChannel3", 1.0);
    printf("1.0 V on OutputChannel3: 0x%08X\n", (unsigned)status);
    return TARNEX_close(supply) >= VI_SUCCESS ? 0 : 1;
}
