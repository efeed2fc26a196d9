// A virtual supply in a child process that ends with its parent, for benchmarks and for tests that count the resources
// of their own process.
#pragma once

#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include "tools/virtual_supply/server.h"

namespace virtual_supply {

class ForkedSupply {
  public:
    /// Starts the supply. On failure: ends the process with exit code 1.
    /// The caller must not have started a thread.
    ForkedSupply() {
        std::array<int, 2> up{};
        std::array<int, 2> down{};
        if (::pipe(up.data()) != 0 || ::pipe(down.data()) != 0 || (child_ = ::fork()) < 0) {
            std::perror("cannot start the supply");
            std::exit(1);
        }
        if (child_ == 0) {
            ::close(down[1]);
            Serve(up[1], down[0]);
        }
        ::close(up[1]);
        ::close(down[0]);
        alive_ = down[1];
        if (::read(up[0], &port_, sizeof port_) != sizeof port_) {
            std::fputs("the supply did not start\n", stderr);
            std::exit(1);
        }
        answers_ = up[0];
    }
    ForkedSupply(const ForkedSupply&) = delete;
    ForkedSupply& operator=(const ForkedSupply&) = delete;
    ~ForkedSupply() {
        ::close(alive_);
        ::close(answers_);
        ::waitpid(child_, nullptr, 0);
    }

    [[nodiscard]] std::uint16_t Port() const { return port_; }
    [[nodiscard]] std::string Resource() const { return "TCPIP0::127.0.0.1::" + std::to_string(port_) + "::SOCKET"; }

    /// Adds a fault that hits the next command that the supply receives.
    void FaultForNextCommand(FaultKind kind, std::uint64_t value = 0) {
        const Order order{kind, value};
        char done = 0;
        if (::write(alive_, &order, sizeof order) != sizeof order || ::read(answers_, &done, 1) != 1) {
            std::fputs("the supply has ended\n", stderr);
            std::exit(1);
        }
    }

  private:
    struct Order {
        FaultKind kind;
        std::uint64_t value;
    };

    /// Serves until the parent closes its end of the pipe, which the system does when the parent is killed.
    [[noreturn]] static void Serve(int up, int down) {
        {
            VirtualSupply supply;
            VirtualSupplyServer server(supply);
            const std::uint16_t port = server.Port();
            Order order{};
            bool heard = ::write(up, &port, sizeof port) == sizeof port;
            while (heard && ::read(down, &order, sizeof order) == sizeof order) {
                server.Faults().AddForNext(order.kind, order.value);
                heard = ::write(up, "!", 1) == 1;
            }
        }
        ::_exit(0);
    }

    pid_t child_ = -1;
    int alive_ = -1; // carries the orders; closing it ends the supply
    int answers_ = -1;
    std::uint16_t port_ = 0;
};

} // namespace virtual_supply
