/*
 * Virtual channel names: with a configuration store like examples/IviConfigurationStore.xml the program uses "Core" and
 * "Io", and the store maps these names to the channels of a supply.
 *
 * Usage: IVI_CONFIG_STORE=/path/to/IviConfigurationStore.xml virtual_names
 * The store also selects the resource. The name that the program opens, here "MySupply", becomes the logical name.
 */
#include <TARNEX.h>

#include <stdio.h>

static ViSession supply = VI_NULL;

static int Succeeded(ViStatus status) { /* negative statuses are errors */
    ViChar description[1024] = "";
    if (status < VI_SUCCESS) {
        TARNEX_GetError(supply, VI_NULL, (ViInt32)sizeof description, description);
        printf("0x%08X: %s\n", (unsigned)status, description);
    }
    return status >= VI_SUCCESS;
}

static int PrintLevel(const char* channel) {
    ViReal64 volts = 0.0;
    if (!Succeeded(TARNEX_GetAttributeViReal64(supply, channel, TARNEX_ATTR_VOLTAGE_LEVEL, &volts))) {
        return 0;
    }
    printf("%s: %.1f V\n", channel, volts);
    return 1;
}

static int UseNames(void) {
    ViChar logicalName[256] = "";
    /* "Both" is both channels. "Rail10" and "Rail11" are a virtual range for OutputChannel1 and OutputChannel2. */
    if (!Succeeded(TARNEX_GetAttributeViString(supply, "", TARNEX_ATTR_LOGICAL_NAME, (ViInt32)sizeof logicalName,
                                               logicalName)) ||
        !Succeeded(TARNEX_ConfigureVoltageLevel(supply, "Core", 1.1)) ||
        !Succeeded(TARNEX_ConfigureVoltageLevel(supply, "Rail11", 3.3)) ||
        !Succeeded(TARNEX_ConfigureCurrentLimit(supply, "Both", TARNEX_VAL_CURRENT_REGULATE, 0.5))) {
        return 0;
    }
    printf("Logical name: %s\n", logicalName);
    return PrintLevel("Core") && PrintLevel("Io") && PrintLevel("OutputChannel1") && PrintLevel("OutputChannel2");
}

int main(void) {
    int done = 0;
    TARNEX_ClearError(VI_NULL);
    if (Succeeded(TARNEX_init("MySupply", VI_TRUE, VI_TRUE, &supply))) {
        done = UseNames();
        TARNEX_close(supply);
    }
    return done ? 0 : 1;
}
