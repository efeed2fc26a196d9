/*
 * Quickstart: opens a supply, programs 3.3 V with a limit of 1.5 A, switches the output on, reads everything back,
 * makes one invalid call to show how errors are reported, and switches off.
 *
 * Usage: quickstart RESOURCE        for example: quickstart TCPIP0::192.168.1.20::5025::SOCKET
 * Exits with 0 when every result is the expected one.
 */
#include <TARNEX.h>

#include <math.h>
#include <stdio.h>
#include <string.h>

static ViSession supply = VI_NULL;
static int failures = 0;

static void Expect(int condition, const char* what) {
    if (!condition) {
        ++failures;
        printf("  !! not as expected: %s\n", what);
    }
}

/* Only negative statuses are errors: see "Statuses" in TARNEX.h. */
static int Succeeded(const char* step, ViStatus status) {
    ViStatus code = VI_SUCCESS;
    ViChar description[1024] = "";
    if (status >= VI_SUCCESS) {
        return 1;
    }
    ++failures;
    TARNEX_GetError(supply, &code, (ViInt32)sizeof description, description);
    printf("%s failed with 0x%08X: %s\n", step, (unsigned)status, description);
    return 0;
}

static void ShowIdentity(void) {
    ViChar manufacturer[256] = "";
    ViChar model[256] = "";
    ViChar driver[256] = "";
    ViChar firmware[256] = "";
    if (Succeeded("Reading the manufacturer",
                  TARNEX_GetAttributeViString(supply, "", TARNEX_ATTR_INSTRUMENT_MANUFACTURER,
                                              (ViInt32)sizeof manufacturer, manufacturer)) &&
        Succeeded("Reading the model", TARNEX_GetAttributeViString(supply, "", TARNEX_ATTR_INSTRUMENT_MODEL,
                                                                   (ViInt32)sizeof model, model)) &&
        Succeeded("Reading the revisions", TARNEX_revision_query(supply, driver, firmware))) {
        printf("Identity: %s %s, firmware %s, driver %s\n", manufacturer, model, firmware, driver);
        Expect(strcmp(manufacturer, "Keltor Technology") == 0, "the manufacturer");
    }
}

static void ProgramTheOutput(void) {
    if (Succeeded("Setting the voltage", TARNEX_ConfigureVoltageLevel(supply, "OutputChannel1", 3.3)) &&
        Succeeded("Setting the current limit",
                  TARNEX_ConfigureCurrentLimit(supply, "OutputChannel1", TARNEX_VAL_CURRENT_REGULATE, 1.5)) &&
        Succeeded("Switching on", TARNEX_ConfigureOutputEnabled(supply, "OutputChannel1", VI_TRUE))) {
        printf("OutputChannel1: 3.3 V, limit 1.5 A, on\n");
    }
}

static void ReadBack(void) {
    ViReal64 volts = 0.0;
    ViReal64 amperes = 0.0;
    ViBoolean enabled = VI_FALSE;
    ViBoolean constantVoltage = VI_FALSE;
    if (Succeeded("Reading the voltage level back",
                  TARNEX_Measure(supply, "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE, &volts)) &&
        Succeeded("Reading the current limit",
                  TARNEX_GetAttributeViReal64(supply, "OutputChannel1", TARNEX_ATTR_CURRENT_LIMIT, &amperes)) &&
        Succeeded("Reading the output's switch",
                  TARNEX_GetAttributeViBoolean(supply, "OutputChannel1", TARNEX_ATTR_OUTPUT_ENABLED, &enabled)) &&
        Succeeded(
            "Asking for the output's state",
            TARNEX_QueryOutputState(supply, "OutputChannel1", TARNEX_VAL_OUTPUT_CONSTANT_VOLTAGE, &constantVoltage))) {
        printf("Programmed levels read back: %.6f V, %.6f A\n", volts, amperes);
        printf("Output: %s, %s\n", enabled ? "on" : "off",
               constantVoltage ? "constant voltage" : "not in constant voltage");
        Expect(fabs(volts - 3.3) < 1e-9, "3.3 V");
        Expect(fabs(amperes - 1.5) < 1e-9, "1.5 A");
        Expect(enabled == VI_TRUE, "the output on");
        Expect(constantVoltage == VI_TRUE, "constant voltage");
    }
}

static void MakeAMistake(void) {
    ViStatus code = VI_SUCCESS;
    ViChar description[1024] = "";
    const ViStatus status = TARNEX_ConfigureVoltageLevel(supply, "OutputChannel3", 1.0);
    TARNEX_GetError(supply, &code, (ViInt32)sizeof description, description);
    printf("A deliberate error: 0x%08X\n  %s\n", (unsigned)status, description);
    Expect(status == TARNEX_ERROR_UNKNOWN_PHYSICAL_IDENTIFIER && code == status, "the status of an unknown channel");
    Expect(strcmp(description, "Unknown physical repeated capability selector.  The identifier 'OutputChannel3' is not "
                               "defined for repeated capability 'OutputChannel'.") == 0,
           "the description");
}

static void SwitchOff(void) {
    ViInt32 code = -1;
    ViChar text[1024] = "";
    if (Succeeded("Switching off", TARNEX_ConfigureOutputEnabled(supply, "OutputChannel1", VI_FALSE)) &&
        Succeeded("Reading the error queue", TARNEX_error_query(supply, &code, text))) {
        printf("OutputChannel1: off. The instrument's error queue: %d, %s\n", (int)code, text);
        Expect(code == 0, "an empty error queue");
    }
}

int main(int argc, char* argv[]) {
    if (argc != 2) {
        (void)fprintf(stderr, "usage: quickstart RESOURCE, for example TCPIP0::192.168.1.20::5025::SOCKET\n");
        return 2;
    }
    /* An earlier error of this thread that was not read would hide the description of a failed open. */
    TARNEX_ClearError(VI_NULL);
    if (!Succeeded("Opening", TARNEX_init(argv[1], VI_TRUE, VI_TRUE, &supply))) {
        return 1;
    }
    printf("Open: %s\n", argv[1]);

    ShowIdentity();
    ProgramTheOutput();
    ReadBack();
    MakeAMistake();
    SwitchOff();

    if (Succeeded("Closing", TARNEX_close(supply))) {
        printf("Closed.\n");
    }
    if (failures != 0) {
        printf("%d of the answers were not as expected.\n", failures);
    }
    return failures == 0 ? 0 : 1;
}
