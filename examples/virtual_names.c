/*
 * Channels by names of one's own: with a configuration store like examples/IviConfigurationStore.xml the program says
 * "Core" and "Io", and which channel of which supply that is stands in the store.
 *
 * Usage: IVI_CONFIG_STORE=/path/to/IviConfigurationStore.xml virtual_names
 * The resource comes from the store too: whatever the program names, here "MySupply", is shown as the logical name.
 */
#include <TARNEX.h>

#include <stdio.h>

static ViSession supply = VI_NULL;

static int ok(ViStatus status) { /* negative statuses are errors */
    ViChar description[1024] = "";
    if (status < VI_SUCCESS) {
        TARNEX_GetError(supply, VI_NULL, (ViInt32)sizeof description, description);
        printf("0x%08X: %s\n", (unsigned)status, description);
    }
    return status >= VI_SUCCESS;
}

static int print_level(const char* channel) {
    ViReal64 volts = 0.0;
    if (!ok(TARNEX_GetAttributeViReal64(supply, channel, TARNEX_ATTR_VOLTAGE_LEVEL, &volts))) {
        return 0;
    }
    printf("%s: %.1f V\n", channel, volts);
    return 1;
}

static int use_names(void) {
    ViChar logical_name[256] = "";
    /* "Both" is both channels; "Rail10" is OutputChannel1 and "Rail11" OutputChannel2, by a virtual range. */
    if (!ok(TARNEX_GetAttributeViString(supply, "", TARNEX_ATTR_LOGICAL_NAME, (ViInt32)sizeof logical_name,
                                        logical_name)) ||
        !ok(TARNEX_ConfigureVoltageLevel(supply, "Core", 1.1)) ||
        !ok(TARNEX_ConfigureVoltageLevel(supply, "Rail11", 3.3)) ||
        !ok(TARNEX_ConfigureCurrentLimit(supply, "Both", TARNEX_VAL_CURRENT_REGULATE, 0.5))) {
        return 0;
    }
    printf("Logical name: %s\n", logical_name);
    return print_level("Core") && print_level("Io") && print_level("OutputChannel1") && print_level("OutputChannel2");
}

int main(void) {
    int done = 0;
    TARNEX_ClearError(VI_NULL);
    if (ok(TARNEX_init("MySupply", VI_TRUE, VI_TRUE, &supply))) {
        done = use_names();
        TARNEX_close(supply);
    }
    return done ? 0 : 1;
}
