/* Loads and unloads the driver repeatedly, with a simulated session in between. Memory and handles must not grow.
 * Usage: load_library ROUNDS. Prints its figures; exits with 1 when something grew. */
#include <windows.h>

#include <psapi.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "include/TARNEX.h"

typedef ViStatus(_VI_FUNC* InitWithOptions)(ViRsrc, ViBoolean, ViBoolean, ViConstString, ViSession*);
typedef ViStatus(_VI_FUNC* Configure)(ViSession, ViConstString, ViReal64);
typedef ViStatus(_VI_FUNC* Close)(ViSession);

static void find(HMODULE library, const char* name, void* function) {
    const FARPROC found = GetProcAddress(library, name);
    if (found == NULL) {
        fprintf(stderr, "load_library: no %s\n", name);
        exit(1);
    }
    memcpy(function, &found, sizeof found);
}

static void one_session(HMODULE library) {
    InitWithOptions init = NULL;
    Configure configure = NULL;
    Close close_session = NULL;
    ViSession vi = VI_NULL;
    char resource[] = "";
    find(library, "TARNEX_InitWithOptions", &init);
    find(library, "TARNEX_ConfigureVoltageLevel", &configure);
    find(library, "TARNEX_close", &close_session);
    if (init(resource, VI_FALSE, VI_FALSE, "Simulate=1", &vi) < 0 || configure(vi, "OutputChannel1", 1.0) < 0 ||
        close_session(vi) < 0) {
        fputs("load_library: the session failed\n", stderr);
        exit(1);
    }
}

static long private_kib(void) {
    PROCESS_MEMORY_COUNTERS_EX memory;
    memset(&memory, 0, sizeof memory);
    memory.cb = sizeof memory;
    GetProcessMemoryInfo(GetCurrentProcess(), (PROCESS_MEMORY_COUNTERS*)&memory, sizeof memory);
    return (long)(memory.PrivateUsage / 1024);
}

static long handles(void) {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return (long)count;
}

int main(int argc, char** argv) {
    long rounds = 0;
    long round = 0;
    long memory = 0;
    long handle_count = 0;
    int grew = 0;
    if (argc != 2 || (rounds = strtol(argv[1], NULL, 10)) < 20) {
        fputs("usage: load_library ROUNDS     (at least 20)\n", stderr);
        return 2;
    }
    for (round = 0; round < rounds; ++round) {
        const HMODULE library = LoadLibraryA("TARNEX_64.dll");
        if (library == NULL) {
            fprintf(stderr, "load_library: error %lu\n", GetLastError());
            return 1;
        }
        one_session(library);
        if (!FreeLibrary(library)) {
            fprintf(stderr, "load_library: error %lu\n", GetLastError());
            return 1;
        }
        if (round == rounds / 10) { /* what is kept once has been made by then */
            memory = private_kib();
            handle_count = handles();
        }
    }
    memory = private_kib() - memory;
    handle_count = handles() - handle_count;
    grew = memory > 64 + rounds / 10 || handle_count > 0;
    printf("%ld loads: private memory %+ld KiB since the first tenth, handles %+ld: %s\n", rounds, memory, handle_count,
           grew ? "GREW" : "flat");
    return grew;
}
