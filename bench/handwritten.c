#define _XOPEN_SOURCE 700 /* recursive mutexes */
#include "bench/handwritten.h"

#include <pthread.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

/* As VISA declares them. */
int32_t viOpenDefaultRM(uint32_t* rm);
int32_t viOpen(uint32_t rm, const char* name, uint32_t mode, uint32_t timeoutMs, uint32_t* vi);
int32_t viWrite(uint32_t vi, const unsigned char* buf, uint32_t count, uint32_t* written);
int32_t viRead(uint32_t vi, unsigned char* buf, uint32_t count, uint32_t* got);

static pthread_mutex_t mutex;
static uint32_t instrument;

void HandwrittenOpen(void) {
    uint32_t manager = 0;
    pthread_mutexattr_t recursive;
    pthread_mutexattr_init(&recursive);
    pthread_mutexattr_settype(&recursive, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&mutex, &recursive);
    pthread_mutexattr_destroy(&recursive);
    viOpenDefaultRM(&manager);
    viOpen(manager, "TCPIP0::192.0.2.7::5025::SOCKET", 0, 2000, &instrument);
}

int HandwrittenSetVoltage(int channel, double level) {
    char line[64];
    uint32_t written = 0;
    int32_t status = 0;
    int length = 0;
    pthread_mutex_lock(&mutex);
    length = snprintf(line, sizeof line, ":SOUR%d:VOLT %f\n", channel, level);
    status = viWrite(instrument, (const unsigned char*)line, (uint32_t)length, &written);
    pthread_mutex_unlock(&mutex);
    return status;
}

static int Query(const char* format, int channel, double* value) {
    char line[64];
    char reply[1025];
    uint32_t count = 0;
    int32_t status = 0;
    int length = 0;
    pthread_mutex_lock(&mutex);
    length = snprintf(line, sizeof line, format, channel);
    status = viWrite(instrument, (const unsigned char*)line, (uint32_t)length, &count);
    if (status >= 0) {
        status = viRead(instrument, (unsigned char*)reply, sizeof reply - 1, &count);
    }
    if (status >= 0) {
        reply[count] = '\0';
        *value = strtod(reply, NULL);
    }
    pthread_mutex_unlock(&mutex);
    return status;
}

int HandwrittenGetVoltage(int channel, double* level) { return Query(":SOUR%d:VOLT?\n", channel, level); }

int HandwrittenMeasureVoltage(int channel, double* volts) { return Query(":MEAS:VOLT? CH%d\n", channel, volts); }
