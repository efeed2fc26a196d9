/*
 * Errors, one kind after the other: what the driver refuses, what the instrument refuses, and a supply that is not
 * there.
 *
 * Usage: errors RESOURCE        for example: errors TCPIP0::192.168.1.20::5025::SOCKET
 */
#include <TARNEX.h>

#include <math.h>
#include <stdio.h>

/*
 * Negative statuses are errors. TARNEX_GetError hands out the description of the session's first error and clears it;
 * with VI_NULL, that of the calling thread: when opening fails there is no session yet.
 */
static int report(const char* what, ViSession supply, ViStatus status) {
    ViStatus code = VI_SUCCESS;
    ViChar description[1024] = "";
    if (status >= VI_SUCCESS) {
        printf("%s: fine\n", what);
        return 0;
    }
    TARNEX_GetError(supply, &code, (ViInt32)sizeof description, description);
    if (description[0] == '\0') { /* without a session there is the status' message alone */
        TARNEX_error_message(VI_NULL, status, description);
    }
    printf("%s: 0x%08X\n  %s\n", what, (unsigned)status, description);
    return 1;
}

static void print_instrument_errors(ViSession supply) {
    ViInt32 code = 0;
    ViChar text[1024] = "";
    do {
        if (TARNEX_error_query(supply, &code, text) < VI_SUCCESS) {
            return;
        }
        printf("  the instrument says: %d, %s\n", (int)code, text);
    } while (code != 0);
}

int main(int argc, char* argv[]) {
    ViSession supply = VI_NULL;
    ViReal64 volts = 0.0;
    if (argc != 2) {
        (void)fprintf(stderr, "usage: errors RESOURCE\n");
        return 2;
    }

    /* What an earlier failure left with this thread would hide the description of a failing open. */
    TARNEX_ClearError(VI_NULL);
    report("A resource that is none", VI_NULL, TARNEX_init("NOWHERE::INSTR", VI_FALSE, VI_FALSE, &supply));
    if (report("Opening the supply", VI_NULL,
               TARNEX_InitWithOptions(argv[1], VI_TRUE, VI_TRUE, "QueryInstrStatus=1", &supply))) {
        return 1;
    }

    report("An unknown channel", supply, TARNEX_ConfigureVoltageLevel(supply, "OutputChannel3", 1.0));
    report("A level beyond the limits", supply, TARNEX_ConfigureVoltageLevel(supply, "OutputChannel2", 6.0));
    report("An attribute of another type", supply,
           TARNEX_SetAttributeViInt32(supply, "OutputChannel1", TARNEX_ATTR_VOLTAGE_LEVEL, 5));
    report("A null pointer", supply,
           TARNEX_Measure(supply, "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE, (ViReal64*)VI_NULL));

    /*
     * The driver sends this one; the instrument refuses it, and says why in its own error queue. Without
     * QueryInstrStatus=1 the call would have succeeded.
     */
    report("A level that is no number", supply, TARNEX_ConfigureVoltageLevel(supply, "OutputChannel1", (ViReal64)NAN));
    print_instrument_errors(supply);

    /* Not one of these changed the supply or broke the session. The query returns 0x3FFF0005: positive, so no error. */
    report("Reading the level back", supply,
           TARNEX_Measure(supply, "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE, &volts));
    printf("  %.1f V\n", volts);

    report("Closing", supply, TARNEX_close(supply));
    report("A session that is closed", supply, TARNEX_reset(supply));
    return 0;
}
