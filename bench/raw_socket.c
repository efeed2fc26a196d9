#define _XOPEN_SOURCE 700
#include "bench/raw_socket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <unistd.h>

int RawConnect(unsigned short port) {
    const int on = 1;
    struct sockaddr_in address;
    const int connection = socket(AF_INET, SOCK_STREAM, 0);
    memset(&address, 0, sizeof address);
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connection >= 0 && connect(connection, (const struct sockaddr*)&address, sizeof address) != 0) {
        close(connection);
        return -1;
    }
    setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return connection;
}

void RawClose(int connection) { close(connection); }

static int SendLine(int connection, const char* line, int length) {
    return send(connection, line, (size_t)length, MSG_NOSIGNAL) == length ? 0 : -1;
}

/* One line into reply, a NUL behind it. */
static int ReceiveLine(int connection, char* reply, size_t size) {
    size_t got = 0;
    while (got < size - 1) {
        const ssize_t count = recv(connection, reply + got, size - 1 - got, 0);
        if (count <= 0) {
            return -1;
        }
        got += (size_t)count;
        if (reply[got - 1] == '\n') {
            reply[got] = '\0';
            return 0;
        }
    }
    return -1;
}

int RawSetVoltage(int connection, int channel, double level) {
    char line[64];
    return SendLine(connection, line, snprintf(line, sizeof line, ":SOUR%d:VOLT %f\n", channel, level));
}

int RawGetVoltage(int connection, int channel, double* level) {
    char line[64];
    char reply[1025];
    if (SendLine(connection, line, snprintf(line, sizeof line, ":SOUR%d:VOLT?\n", channel)) != 0 ||
        ReceiveLine(connection, reply, sizeof reply) != 0) {
        return -1;
    }
    *level = strtod(reply, NULL);
    return 0;
}

int RawIdentify(int connection) {
    char reply[1025];
    return SendLine(connection, "*IDN?\n", 6) != 0 ? -1 : ReceiveLine(connection, reply, sizeof reply);
}
