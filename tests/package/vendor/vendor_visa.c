/* A VISA of somebody else's under its real name: one instrument, on USB, which says who it is. */
#include <string.h>

typedef int ViStatus;
typedef unsigned ViSession;

static int opened = 0;

ViStatus viOpenDefaultRM(ViSession* rm) {
    *rm = 1;
    return 0;
}

ViStatus viOpen(ViSession rm, const char* name, unsigned mode, unsigned timeout, ViSession* vi) {
    *vi = rm == 1 && mode == 0 && timeout == 2000 && strncmp(name, "USB0::", 6) == 0 ? 2 : 0;
    opened = *vi != 0;
    return opened ? 0 : (ViStatus)0xBFFF0011;
}

ViStatus viClose(ViSession vi) {
    opened = 0;
    return vi == 1 ? 0 : (ViStatus)0xBFFF000E;
}

ViStatus viSetAttribute(ViSession vi, unsigned name, unsigned long long value) {
    return vi == 2 && name == 0x3FFF001A && value == 2000 ? 0 : (ViStatus)0xBFFF001D;
}

ViStatus viSetBuf(ViSession vi, unsigned short mask, unsigned size) {
    return vi == 2 && (mask == 1 || mask == 2) && size == 1024 ? 0 : (ViStatus)0xBFFF003D;
}

ViStatus viWrite(ViSession vi, const unsigned char* buf, unsigned count, unsigned* written) {
    *written = count;
    return vi == 2 && opened && count == 6 && memcmp(buf, "*IDN?\n", 6) == 0 ? 0 : (ViStatus)0xBFFF003E;
}

ViStatus viRead(ViSession vi, unsigned char* buf, unsigned count, unsigned* got) {
    static const char reply[] = "Keltor Technology,TX4410,SN42,vendor\n";
    *got = (unsigned)(sizeof reply - 1);
    if (vi != 2 || !opened || count < *got) {
        return (ViStatus)0xBFFF003E;
    }
    memcpy(buf, reply, *got);
    return 0;
}
