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
        ::close(up[0]);
    }
    ForkedSupply(const ForkedSupply&) = delete;
    ForkedSupply& operator=(const ForkedSupply&) = delete;
    ~ForkedSupply() {
        ::close(alive_);
        ::waitpid(child_, nullptr, 0);
    }

    [[nodiscard]] std::uint16_t Port() const { return port_; }
    [[nodiscard]] std::string Resource() const { return "TCPIP0::127.0.0.1::" + std::to_string(port_) + "::SOCKET"; }

  private:
    /// Serves until the parent's end of the pipe is closed, by whatever way the parent ends.
    [[noreturn]] static void Serve(int up, int down) {
        {
            VirtualSupply supply;
            const VirtualSupplyServer server(supply);
            const std::uint16_t port = server.port();
            char end = 0;
            if (::write(up, &port, sizeof port) == sizeof port) {
                static_cast<void>(::read(down, &end, 1));
            }
        }
        ::_exit(0);
    }

    pid_t child_ = -1;
    int alive_ = -1;
    std::uint16_t port_ = 0;
};

} // namespace virtual_supply
