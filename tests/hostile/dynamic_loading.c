/* Loads and unloads the driver repeatedly, with sessions in between. Memory, open files and mappings must not grow.
 *
 * Usage: dynamic_loading LIBRARY ROUNDS RESOURCE
 * RESOURCE "" makes simulated sessions only. Prints its figures; exits with 1 when something grew. */
#define _XOPEN_SOURCE 700
#include <dirent.h>
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "include/TARNEX.h"

typedef ViStatus (*InitWithOptions)(ViRsrc, ViBoolean, ViBoolean, ViConstString, ViSession*);
typedef ViStatus (*Configure)(ViSession, ViConstString, ViReal64);
typedef ViStatus (*Close)(ViSession);

/* Copied as POSIX suggests: C has no conversion from an object's address to a function's. */
static void Find(void* library, const char* name, void* function) {
    void* symbol = dlsym(library, name);
    if (symbol == NULL) {
        fprintf(stderr, "dynamic_loading: no %s\n", name);
        exit(1);
    }
    memcpy(function, &symbol, sizeof symbol);
}

static void OneSession(void* library, const char* resource, const char* options) {
    InitWithOptions init = NULL;
    Configure configure = NULL;
    Close closeSession = NULL;
    ViSession vi = VI_NULL;
    char name[256];
    Find(library, "TARNEX_InitWithOptions", &init);
    Find(library, "TARNEX_ConfigureVoltageLevel", &configure);
    Find(library, "TARNEX_close", &closeSession);
    snprintf(name, sizeof name, "%s", resource);
    if (init(name, VI_FALSE, VI_FALSE, options, &vi) < 0 || configure(vi, "OutputChannel1", 1.0) < 0 ||
        closeSession(vi) < 0) {
        fprintf(stderr, "dynamic_loading: a session on \"%s\" failed\n", resource);
        exit(1);
    }
}

static long ResidentKib(void) {
    long all = 0;
    long resident = 0;
    FILE* file = fopen("/proc/self/statm", "r");
    if (file == NULL || fscanf(file, "%ld %ld", &all, &resident) != 2) {
        perror("dynamic_loading: /proc/self/statm");
        exit(1);
    }
    fclose(file);
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

static long OpenFiles(void) {
    long count = 0;
    DIR* folder = opendir("/proc/self/fd");
    while (folder != NULL && readdir(folder) != NULL) {
        ++count;
    }
    if (folder != NULL) {
        closedir(folder);
    }
    return count;
}

static long Mappings(void) {
    long lines = 0;
    int c = 0;
    FILE* file = fopen("/proc/self/maps", "r");
    while (file != NULL && (c = fgetc(file)) != EOF) {
        lines += c == '\n';
    }
    if (file != NULL) {
        fclose(file);
    }
    return lines;
}

int main(int argc, char** argv) {
    long rounds = 0;
    long round = 0;
    long memory = 0;
    long files = 0;
    long maps = 0;
    int grew = 0;
    if (argc != 4 || (rounds = strtol(argv[2], NULL, 10)) < 20) {
        fputs("usage: dynamic_loading LIBRARY ROUNDS RESOURCE     (at least 20 rounds)\n", stderr);
        return 2;
    }
    for (round = 0; round < rounds; ++round) {
        void* library = dlopen(argv[1], RTLD_NOW);
        if (library == NULL) {
            fprintf(stderr, "dynamic_loading: %s\n", dlerror());
            return 1;
        }
        OneSession(library, "", "Simulate=1");
        if (argv[3][0] != '\0') {
            OneSession(library, argv[3], "");
        }
        if (dlclose(library) != 0) {
            fprintf(stderr, "dynamic_loading: %s\n", dlerror());
            return 1;
        }
        if (round == rounds / 10) { /* what is kept once has been made by then */
            memory = ResidentKib();
            files = OpenFiles();
            maps = Mappings();
        }
    }
    memory = ResidentKib() - memory;
    files = OpenFiles() - files;
    maps = Mappings() - maps;
    /* The limit is above the noise of the allocator and below 0.1 KiB per load. */
    grew = memory > 64 + rounds / 10 || files != 0 || maps > 2;
    printf("%ld loads: resident memory %+ld KiB since the first tenth, files %+ld, mappings %+ld: %s\n", rounds, memory,
           files, maps, grew ? "GREW" : "flat");
    return grew;
}
