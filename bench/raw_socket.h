/* An instrument over a socket with nothing in between. */
#ifndef TARNEX_BENCH_RAW_SOCKET_H
#define TARNEX_BENCH_RAW_SOCKET_H

#ifdef __cplusplus
extern "C" {
#endif

/* Returns a connection to 127.0.0.1 that sends small packets at once, or -1 on failure. */
int RawConnect(unsigned short port);
void RawClose(int connection);

/* Each returns 0, or -1 when the connection fails. */
int RawSetVoltage(int connection, int channel, double level);
int RawGetVoltage(int connection, int channel, double* level);
int RawIdentify(int connection);

#ifdef __cplusplus
}
#endif

#endif
