// Serves a virtual supply to any number of TCP clients, or on a pseudo-terminal.
#pragma once

#include "tools/virtual_supply/faults.h"
#include "tools/virtual_supply/virtual_supply.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace virtual_supply {

struct ServerOptions {
    std::string host = "127.0.0.1";                // an address of the loopback interface
    std::uint16_t port = 0;                        // 0: a free one
    bool pseudo_terminal = false;                  // serve on a pseudo-terminal instead
    std::vector<Fault> faults{};                   // in force from the first command on
    std::function<void(std::string_view)> log{};   // told one line per event, on the server's thread; may be empty
    std::function<void(std::string_view)> moved{}; // told the new resource, on the server's thread; may be empty
};

/// Listens from construction on and serves on a thread of its own. A pseudo-terminal is one connection from the
/// beginning, whoever has its other end open; when that connection is closed the server hangs up and moves to another
/// pseudo-terminal, as a serial adapter that was pulled out comes back under another name. Commands are lines ended by
/// a line feed (a carriage return before it is dropped), replies are lines ended by a line feed and go to the
/// connection that asked. All functions may be called from any thread.
class VirtualSupplyServer {
  public:
    /// The supply must outlive the server. Throws std::invalid_argument for a host that is no loopback address, and
    /// std::system_error, with a text for people, when the port or a pseudo-terminal cannot be had.
    explicit VirtualSupplyServer(VirtualSupply& supply, ServerOptions options = {});

    /// Stops and waits for the thread. Not to be called on the server's own thread (from the log).
    ~VirtualSupplyServer();

    VirtualSupplyServer(const VirtualSupplyServer&) = delete;
    VirtualSupplyServer& operator=(const VirtualSupplyServer&) = delete;
    VirtualSupplyServer(VirtualSupplyServer&&) = delete;
    VirtualSupplyServer& operator=(VirtualSupplyServer&&) = delete;

    /// 0 on a pseudo-terminal.
    std::uint16_t port() const;

    /// The VISA resource string of the supply: "TCPIP0::127.0.0.1::5025::SOCKET" or, until it moves,
    /// "ASRL/dev/pts/3::INSTR".
    std::string resource() const;

    FaultPlan& faults();

    /// How many clients are connected now.
    std::size_t connection_count() const;

    /// Closes all connections, and goes on listening. Returns at once.
    void CloseConnections();

    /// Closes all connections and stops listening. Returns at once; a second call does nothing.
    void Stop();

  private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace virtual_supply
