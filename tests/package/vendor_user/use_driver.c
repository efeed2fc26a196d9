/* The driver over the vendor's VISA: prints the firmware revision of the instrument behind it. */
#include <TARNEX.h>

#include <stdio.h>

int main(void) {
    ViSession supply = VI_NULL;
    ViChar driver[256] = "";
    ViChar firmware[256] = "";
    char resource[] = "USB0::0x1234::0x5678::SN42::INSTR";
    TARNEX_ClearError(VI_NULL);
    if (TARNEX_init(resource, VI_TRUE, VI_FALSE, &supply) < VI_SUCCESS ||
        TARNEX_revision_query(supply, driver, firmware) < VI_SUCCESS || TARNEX_close(supply) < VI_SUCCESS) {
        return 1;
    }
    puts(firmware);
    return 0;
}
