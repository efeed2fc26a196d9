// One client of the server.
#pragma once

#include <array>
#include <asio.hpp>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "tools/virtual_supply/faults.h"
#include "tools/virtual_supply/line_splitter.h"
#include "tools/virtual_supply/virtual_supply.h"

namespace virtual_supply {

/// The objects that the connections of a server share. It must outlive them.
struct Exchange {
    VirtualSupply& supply;
    FaultPlan& faults;
    std::function<void(std::string_view)> log; // may be empty
};

/// A connection as the server uses it.
class Connection {
  public:
    Connection() = default;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    Connection(Connection&&) = delete;
    Connection& operator=(Connection&&) = delete;
    virtual ~Connection() = default;

    virtual void Start() = 0;
    virtual void Close() = 0;
};

/// Reads lines, executes them one after another, and writes the replies. Not thread-safe: all functions run on the
/// server's thread. Pending operations on the stream keep the object alive. The streams are asio::ip::tcp::socket and,
/// for pseudo-terminals, asio::posix::stream_descriptor.
template <typename Stream>
class StreamConnection final : public Connection, public std::enable_shared_from_this<StreamConnection<Stream>> {
  public:
    /// Calls `closed` once, when the connection closes.
    StreamConnection(Stream stream, Exchange& exchange, std::size_t number, std::function<void()> closed);

    void Start() override;
    void Close() override;

  private:
    void Read();
    void Proceed();
    bool Handle(const LineSplitter::Line& line);
    void Send();
    void Log(std::string_view event, std::string_view text) const;

    static constexpr std::size_t kChunkSize = 4096;

    Stream stream_;
    asio::steady_timer delay_;
    Exchange& exchange_;
    const std::size_t number_;
    std::function<void()> closed_;
    std::array<char, kChunkSize> chunk_{};
    std::string_view unread_; // the part of chunk_ that is not yet split into lines
    LineSplitter lines_;
    std::string outgoing_;
};

} // namespace virtual_supply
