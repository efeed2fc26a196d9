/*
 * Two channels with protections: programs both outputs, lets the over-current protection of one trip, tells why, and
 * brings the output back.
 *
 * Usage: channels_and_protection RESOURCE        for example: channels_and_protection
 * TCPIP0::192.168.1.20::5025::SOCKET The comments assume 10 ohms at OutputChannel1, and nothing at OutputChannel2.
 */
#include <TARNEX.h>

#include <stdio.h>
#include <stdlib.h>

static ViSession supply = VI_NULL;

/* Ends the program when a call failed: negative statuses are errors, positive ones are success with a remark. */
static void check(ViStatus status) {
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
    exit(1); /* NOLINT(concurrency-mt-unsafe): there is one thread */
}

static void show(const char* channel) {
    ViReal64 volts = 0.0;
    ViReal64 limit = 0.0;
    ViReal64 ovp = 0.0;
    ViInt32 behavior = TARNEX_VAL_CURRENT_REGULATE;
    ViBoolean enabled = VI_FALSE;
    check(TARNEX_GetAttributeViReal64(supply, channel, TARNEX_ATTR_VOLTAGE_LEVEL, &volts));
    check(TARNEX_GetAttributeViReal64(supply, channel, TARNEX_ATTR_CURRENT_LIMIT, &limit));
    check(TARNEX_GetAttributeViInt32(supply, channel, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, &behavior));
    check(TARNEX_GetAttributeViReal64(supply, channel, TARNEX_ATTR_OVP_LIMIT, &ovp));
    check(TARNEX_GetAttributeViBoolean(supply, channel, TARNEX_ATTR_OUTPUT_ENABLED, &enabled));
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
    /* Without the instrument's status after each call: a protection that trips is no error of the call that saw it. */
    check(TARNEX_InitWithOptions(argv[1], VI_TRUE, VI_TRUE, "QueryInstrStatus=0", &supply));

    /* A selector may name several channels: one call for both. */
    check(TARNEX_ConfigureOVP(supply, "OutputChannel1,OutputChannel2", VI_TRUE, 5.5));
    check(TARNEX_ConfigureCurrentLimit(supply, "OutputChannel1", TARNEX_VAL_CURRENT_TRIP, 0.4));
    check(TARNEX_ConfigureCurrentLimit(supply, "OutputChannel2", TARNEX_VAL_CURRENT_REGULATE, 2.0));
    check(TARNEX_ConfigureVoltageLevel(supply, "OutputChannel1", 5.0));
    check(TARNEX_ConfigureVoltageLevel(supply, "OutputChannel2", 3.3));

    printf("5 V at 10 ohms are 0.5 A, more than the limit of 0.4 A:\n");
    check(TARNEX_ConfigureOutputEnabled(supply, "OutputChannel1-OutputChannel2", VI_TRUE));
    show("OutputChannel1");
    show("OutputChannel2");
    check(TARNEX_error_query(supply, &code, text));
    printf("Error queue: %d, %s\n", (int)code, text);

    printf("With a limit of 1 A it stays on:\n");
    check(TARNEX_ConfigureCurrentLimit(supply, "OutputChannel1", TARNEX_VAL_CURRENT_TRIP, 1.0));
    check(TARNEX_ConfigureOutputEnabled(supply, "OutputChannel1", VI_TRUE));
    show("OutputChannel1");

    check(TARNEX_Disable(supply)); /* all outputs off */
    check(TARNEX_close(supply));
    return 0;
}
