// A virtual supply in a process of its own, which ends with the one that started it: for benchmarks and for tests that
// count what their own process holds.
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
    /// To be called before the process has any thread.
    ForkedSupply() {
        std::array<int, 2> up{};
        std::array<int, 2> down{};
        if (::pipe(up.data()) != 0 || ::pipe(down.data()) != 0 || (child_ = ::fork()) < 0) {
            std::perror("no supply");
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

    /// Puts a fault in force that hits the next command the supply receives.
    void FaultForNextCommand(FaultKind kind, std::uint64_t value = 0) {
        const Order order{kind, value};
        char done = 0;
        if (::write(alive_, &order, sizeof order) != sizeof order || ::read(answers_, &done, 1) != 1) {
            std::fputs("the supply is gone\n", stderr);
            std::exit(1);
        }
    }

  private:
    struct Order {
        FaultKind kind;
        std::uint64_t value;
    };

    /// Serves until the parent's end of the pipe is closed, by whatever way the parent ends.
    [[noreturn]] static void Serve(int up, int down) {
        {
            VirtualSupply supply;
            VirtualSupplyServer server(supply);
            const std::uint16_t port = server.port();
            Order order{};
            bool heard = ::write(up, &port, sizeof port) == sizeof port;
            while (heard && ::read(down, &order, sizeof order) == sizeof order) {
                server.faults().AddForNext(order.kind, order.value);
                heard = ::write(up, "!", 1) == 1;
            }
        }
        ::_exit(0);
    }

    pid_t child_ = -1;
    int alive_ = -1; // open for as long as the supply is to live; orders go this way
    int answers_ = -1;
    std::uint16_t port_ = 0;
};

} // namespace virtual_supply
