/*
 * Two channels with protections: programs both outputs, lets the over-current protection of one channel trip, prints
 * the reason and switches the output on again.
 *
 * Usage: channels_and_protection RESOURCE
 *        for example: channels_and_protection TCPIP0::192.168.1.20::5025::SOCKET
 *
 * The output texts assume a load of 10 ohms at OutputChannel1 and no load at OutputChannel2.
 */
#include <TARNEX.h>

#include <stdio.h>
#include <stdlib.h>

static ViSession supply = VI_NULL;

/* Ends the program when a call failed. Negative statuses are errors; positive statuses are success. */
static void Check(ViStatus status) {
    ViChar description[1024] = "";
    if (status >= VI_SUCCESS) {
        return;
    }
    TARNEX_GetError(supply, VI_NULL, (ViInt32)sizeof description, description);
    (void)fprintf(stderr, "0x%08X: %s\n", (unsigned)status, description);
    if (supply != VI_NULL) {
        TARNEX_Disable(supply);
        TARNEX_close(supply);
    }
    exit(1); /* NOLINT(concurrency-mt-unsafe): the program has one thread */
}

static void Show(const char* channel) {
    ViReal64 volts = 0.0;
    ViReal64 limit = 0.0;
    ViReal64 ovp = 0.0;
    ViInt32 behavior = TARNEX_VAL_CURRENT_REGULATE;
    ViBoolean enabled = VI_FALSE;
    Check(TARNEX_GetAttributeViReal64(supply, channel, TARNEX_ATTR_VOLTAGE_LEVEL, &volts));
    Check(TARNEX_GetAttributeViReal64(supply, channel, TARNEX_ATTR_CURRENT_LIMIT, &limit));
    Check(TARNEX_GetAttributeViInt32(supply, channel, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, &behavior));
    Check(TARNEX_GetAttributeViReal64(supply, channel, TARNEX_ATTR_OVP_LIMIT, &ovp));
    Check(TARNEX_GetAttributeViBoolean(supply, channel, TARNEX_ATTR_OUTPUT_ENABLED, &enabled));
    printf("%s: %.2f V, %s at %.2f A, over-voltage protection at %.2f V, %s\n", channel, volts,
           behavior == TARNEX_VAL_CURRENT_TRIP ? "switches off" : "regulates", limit, ovp, enabled ? "on" : "off");
}

int main(int argc, char* argv[]) {
    ViInt32 code = 0;
    ViChar text[1024] = "";
    if (argc != 2) {
        (void)fprintf(stderr, "usage: channels_and_protection RESOURCE\n");
        return 2;
    }
    TARNEX_ClearError(VI_NULL);
    /* QueryInstrStatus=0: with 1, a protection that trips makes the next call return an error. */
    Check(TARNEX_InitWithOptions(argv[1], VI_TRUE, VI_TRUE, "QueryInstrStatus=0", &supply));

    /* A selector may contain several channels. */
    Check(TARNEX_ConfigureOVP(supply, "OutputChannel1,OutputChannel2", VI_TRUE, 5.5));
    Check(TARNEX_ConfigureCurrentLimit(supply, "OutputChannel1", TARNEX_VAL_CURRENT_TRIP, 0.4));
    Check(TARNEX_ConfigureCurrentLimit(supply, "OutputChannel2", TARNEX_VAL_CURRENT_REGULATE, 2.0));
    Check(TARNEX_ConfigureVoltageLevel(supply, "OutputChannel1", 5.0));
    Check(TARNEX_ConfigureVoltageLevel(supply, "OutputChannel2", 3.3));

    printf("5 V at 10 ohms are 0.5 A, more than the limit of 0.4 A:\n");
    Check(TARNEX_ConfigureOutputEnabled(supply, "OutputChannel1-OutputChannel2", VI_TRUE));
    Show("OutputChannel1");
    Show("OutputChannel2");
    Check(TARNEX_error_query(supply, &code, text));
    printf("Error queue: %d, %s\n", (int)code, text);

    printf("With a limit of 1 A it stays on:\n");
    Check(TARNEX_ConfigureCurrentLimit(supply, "OutputChannel1", TARNEX_VAL_CURRENT_TRIP, 1.0));
    Check(TARNEX_ConfigureOutputEnabled(supply, "OutputChannel1", VI_TRUE));
    Show("OutputChannel1");

    Check(TARNEX_Disable(supply)); /* all outputs off */
    Check(TARNEX_close(supply));
    return 0;
}
