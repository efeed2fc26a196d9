// Serves a virtual supply to any number of TCP clients, or on a pseudo-terminal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/virtual_supply/faults.h"
#include "tools/virtual_supply/virtual_supply.h"

namespace virtual_supply {

struct ServerOptions {
    std::string host = "127.0.0.1";                // an address of the loopback interface
    std::uint16_t port = 0;                        // 0: a free one
    bool pseudoTerminal = false;                   // serve on a pseudo-terminal instead
    std::vector<Fault> faults{};                   // active from the first command on
    std::function<void(std::string_view)> log{};   // called on the server's thread with a line per event; may be empty
    std::function<void(std::string_view)> moved{}; // called on the server's thread with the new resource; may be empty
};

/// Listens from construction on and serves on a thread of its own. Commands and replies are lines that end with a line
/// feed; a carriage return before the line feed of a command is dropped. A reply goes to the connection that sent the
/// query.
///
/// A pseudo-terminal is one connection from the beginning, whether or not a client has opened it. When that connection
/// is closed the server moves to another pseudo-terminal, as a serial adapter that is unplugged returns under another
/// name.
///
/// Thread-safe.
class VirtualSupplyServer {
  public:
    /// On failure: throws std::invalid_argument for a host that is not a loopback address, and std::system_error with a
    /// message for users when the port or a pseudo-terminal is not available.
    /// The supply must outlive the server.
    explicit VirtualSupplyServer(VirtualSupply& supply, ServerOptions options = {});

    /// Stops and waits for the thread. The caller must not be the server's own thread, which calls the log.
    ~VirtualSupplyServer();

    VirtualSupplyServer(const VirtualSupplyServer&) = delete;
    VirtualSupplyServer& operator=(const VirtualSupplyServer&) = delete;
    VirtualSupplyServer(VirtualSupplyServer&&) = delete;
    VirtualSupplyServer& operator=(VirtualSupplyServer&&) = delete;

    /// Returns the TCP port; 0 on a pseudo-terminal.
    std::uint16_t Port() const;

    /// Returns the VISA resource string of the supply: "TCPIP0::127.0.0.1::5025::SOCKET", or "ASRL/dev/pts/3::INSTR",
    /// which changes when the server moves to another pseudo-terminal.
    std::string Resource() const;

    FaultPlan& Faults();

    /// Returns the number of connected clients.
    std::size_t ConnectionCount() const;

    /// Closes all connections and continues to listen. Does not wait until they are closed.
    void CloseConnections();

    /// Closes all connections and stops listening. Does not wait until they are closed. Idempotent.
    void Stop();

  private:
    class Implementation;
    std::unique_ptr<Implementation> implementation_;
};

} // namespace virtual_supply
