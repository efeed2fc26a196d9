/* An instrument over a socket with nothing in between. */
#ifndef TARNEX_BENCH_RAW_SOCKET_H
#define TARNEX_BENCH_RAW_SOCKET_H

#ifdef __cplusplus
extern "C" {
#endif

/* Returns a connection to 127.0.0.1 that sends small packets at once, or -1 on failure. */
int raw_connect(unsigned short port);
void raw_close(int connection);

/* Each returns 0, or -1 when the connection fails. */
int raw_set_voltage(int connection, int channel, double level);
int raw_get_voltage(int connection, int channel, double* level);
int raw_identify(int connection);

#ifdef __cplusplus
}
#endif

#endif
