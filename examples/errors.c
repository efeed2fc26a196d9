/*
 * The kinds of errors: calls that the driver refuses, a value that the instrument refuses, and a supply that does not
 * exist.
 *
 * Usage: errors RESOURCE        for example: errors TCPIP0::192.168.1.20::5025::SOCKET
 */
#include <TARNEX.h>

#include <math.h>
#include <stdio.h>

/*
 * Negative statuses are errors. TARNEX_GetError returns the description of the session's first error and clears it.
 * After a failed open there is no session; with VI_NULL the function returns the description of the calling thread.
 */
static int Report(const char* what, ViSession supply, ViStatus status) {
    ViStatus code = VI_SUCCESS;
    ViChar description[1024] = "";
    if (status >= VI_SUCCESS) {
        printf("%s: fine\n", what);
        return 0;
    }
    TARNEX_GetError(supply, &code, (ViInt32)sizeof description, description);
    if (description[0] == '\0') { /* without a session, only the message of the status is available */
        TARNEX_error_message(VI_NULL, status, description);
    }
    printf("%s: 0x%08X\n  %s\n", what, (unsigned)status, description);
    return 1;
}

static void PrintInstrumentErrors(ViSession supply) {
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

    /* An earlier error of this thread that was not read would hide the description of a failed open. */
    TARNEX_ClearError(VI_NULL);
    Report("An invalid resource", VI_NULL, TARNEX_init("NOWHERE::INSTR", VI_FALSE, VI_FALSE, &supply));
    if (Report("Opening the supply", VI_NULL,
               TARNEX_InitWithOptions(argv[1], VI_TRUE, VI_TRUE, "QueryInstrStatus=1", &supply))) {
        return 1;
    }

    Report("An unknown channel", supply, TARNEX_ConfigureVoltageLevel(supply, "OutputChannel3", 1.0));
    Report("A level beyond the limits", supply, TARNEX_ConfigureVoltageLevel(supply, "OutputChannel2", 6.0));
    Report("An attribute of another type", supply,
           TARNEX_SetAttributeViInt32(supply, "OutputChannel1", TARNEX_ATTR_VOLTAGE_LEVEL, 5));
    Report("A null pointer", supply,
           TARNEX_Measure(supply, "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE, (ViReal64*)VI_NULL));

    /*
     * The driver sends this value, the instrument refuses it and adds the reason to its error queue. Without
     * QueryInstrStatus=1 the call returns success.
     */
    Report("A level that is not a number", supply,
           TARNEX_ConfigureVoltageLevel(supply, "OutputChannel1", (ViReal64)NAN));
    PrintInstrumentErrors(supply);

    /* The session is still usable. For the positive status of this query see "Statuses" in TARNEX.h. */
    Report("Reading the level back", supply,
           TARNEX_Measure(supply, "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE, &volts));
    printf("  %.1f V\n", volts);

    Report("Closing", supply, TARNEX_close(supply));
    Report("A session that is closed", supply, TARNEX_reset(supply));
    return 0;
}
