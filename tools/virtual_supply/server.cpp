#include "tools/virtual_supply/server.h"

#include "tools/virtual_supply/connection.h"
#ifndef _WIN32
#include "tools/virtual_supply/pseudo_terminal.h"
#endif

#include <asio.hpp>
#include <atomic>
#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

namespace virtual_supply {

namespace {

using asio::ip::tcp;

tcp::endpoint LoopbackEndpoint(const std::string& host, std::uint16_t port) {
    asio::error_code error;
    const auto address = asio::ip::make_address(host, error);
    if (error || !address.is_loopback()) {
        throw std::invalid_argument("host '" + host + "' is no address of the loopback interface");
    }
    return {address, port};
}

tcp::acceptor Listen(asio::io_context& context, const tcp::endpoint& endpoint) {
    try {
        return {context, endpoint};
    } catch (const std::system_error& failure) {
        // In the system's own category: Asio's does not compare with std::errc.
        throw std::system_error({failure.code().value(), std::system_category()},
                                "cannot listen on " + endpoint.address().to_string() + " port " +
                                    std::to_string(endpoint.port()));
    }
}

/// Where the clients of a server come from. Runs on the server's thread, but for resource().
class Entrance {
  public:
    Entrance() = default;
    Entrance(const Entrance&) = delete;
    Entrance& operator=(const Entrance&) = delete;
    Entrance(Entrance&&) = delete;
    Entrance& operator=(Entrance&&) = delete;
    virtual ~Entrance() = default;

    virtual std::uint16_t port() const { return 0; }
    virtual std::string resource() const = 0;
    virtual void Open() = 0;
    virtual void Close() = 0;
};

/// Hands each client that connects to `serve`.
class TcpEntrance final : public Entrance {
  public:
    TcpEntrance(asio::io_context& context, const tcp::endpoint& endpoint, std::function<void(tcp::socket)> serve)
        : acceptor_(Listen(context, endpoint)), pause_(context), endpoint_(acceptor_.local_endpoint()),
          serve_(std::move(serve)) {}

    std::uint16_t port() const override { return endpoint_.port(); }

    std::string resource() const override {
        const auto address = endpoint_.address();
        const std::string host = address.is_v6() ? '[' + address.to_string() + ']' : address.to_string();
        return "TCPIP0::" + host + "::" + std::to_string(port()) + "::SOCKET";
    }

    void Open() override {
        acceptor_.async_accept([this](asio::error_code error, tcp::socket socket) {
            if (!acceptor_.is_open()) {
                return;
            }
            if (error) {
                // Mostly too many open files. The waiting client stays in the queue, so accepting again at once would
                // spin until another client leaves.
                constexpr std::chrono::milliseconds kPause{10};
                pause_.expires_after(kPause);
                pause_.async_wait([this](asio::error_code /*error*/) {
                    if (acceptor_.is_open()) {
                        Open();
                    }
                });
                return;
            }
            asio::error_code ignored; // a client that is gone already shows in the first read
            socket.set_option(tcp::no_delay(true), ignored);
            serve_(std::move(socket));
            Open();
        });
    }

    void Close() override {
        asio::error_code ignored;
        acceptor_.close(ignored);
        pause_.cancel();
    }

  private:
    tcp::acceptor acceptor_;
    asio::steady_timer pause_;
    const tcp::endpoint endpoint_;
    const std::function<void(tcp::socket)> serve_;
};

#ifdef ASIO_HAS_POSIX_STREAM_DESCRIPTOR
/// Hands a pseudo-terminal to `serve`, and another one each time it is opened again.
class PseudoTerminalEntrance final : public Entrance {
  public:
    using Serve = std::function<void(asio::posix::stream_descriptor)>;

    PseudoTerminalEntrance(asio::io_context& context, Serve serve, std::function<void(std::string_view)> moved)
        : context_(context), serve_(std::move(serve)), moved_(std::move(moved)) {}

    std::string resource() const override {
        const std::lock_guard lock(mutex_);
        return "ASRL" + terminal_->device() + "::INSTR";
    }

    void Open() override {
        const bool moves = is_open_;
        is_open_ = true;
        if (moves) {
            PseudoTerminal next; // before the old one goes, whose name it must not get
            const std::lock_guard lock(mutex_);
            terminal_.emplace(std::move(next));
        }
        serve_(asio::posix::stream_descriptor(context_, terminal_->ReleaseNearEnd()));
        if (moves && moved_) {
            moved_(resource());
        }
    }

    void Close() override {}

  private:
    asio::io_context& context_;
    const Serve serve_;
    const std::function<void(std::string_view)> moved_;
    bool is_open_ = false;
    mutable std::mutex mutex_; // guards terminal_
    std::optional<PseudoTerminal> terminal_{std::in_place};
};
#endif

} // namespace

class VirtualSupplyServer::Implementation {
  public:
    Implementation(VirtualSupply& supply, ServerOptions options)
        : exchange_{supply, faults_, std::move(options.log)}, entrance_(MakeEntrance(options)) {
        for (const Fault& fault : options.faults) {
            faults_.Add(fault);
        }
        entrance_->Open();
        thread_ = std::thread([this] { context_.run(); });
    }

    ~Implementation() {
        Stop();
        thread_.join();
    }

    Implementation(const Implementation&) = delete;
    Implementation& operator=(const Implementation&) = delete;
    Implementation(Implementation&&) = delete;
    Implementation& operator=(Implementation&&) = delete;

    const Entrance& entrance() const { return *entrance_; }
    FaultPlan& faults() { return faults_; }
    std::size_t connection_count() const { return connection_count_; }

    void CloseConnections() {
        asio::post(context_, [this] { CloseAll(); });
    }

    void Stop() {
        asio::post(context_, [this] {
            stopped_ = true;
            entrance_->Close();
            CloseAll();
        });
    }

  private:
    std::unique_ptr<Entrance> MakeEntrance(const ServerOptions& options) {
        if (!options.pseudo_terminal) {
            return std::make_unique<TcpEntrance>(context_, LoopbackEndpoint(options.host, options.port),
                                                 [this](tcp::socket socket) { Serve(std::move(socket), [] {}); });
        }
#ifdef ASIO_HAS_POSIX_STREAM_DESCRIPTOR
        return std::make_unique<PseudoTerminalEntrance>(
            context_, [this](asio::posix::stream_descriptor line) { Serve(std::move(line), [this] { Move(); }); },
            options.moved);
#else
        throw std::invalid_argument("there are no pseudo-terminals on this system");
#endif
    }

    /// `over` runs when the connection is closed and forgotten.
    template <typename Stream>
    void Serve(Stream stream, std::function<void()> over) {
        const std::size_t number = ++last_number_;
        auto connection = std::make_shared<StreamConnection<Stream>>(std::move(stream), exchange_, number,
                                                                     [this, number, over = std::move(over)] {
                                                                         connections_.erase(number);
                                                                         connection_count_ = connections_.size();
                                                                         over();
                                                                     });
        connections_.emplace(number, connection);
        connection_count_ = connections_.size();
        connection->Start();
    }

    /// Opens the entrance again, under another name.
    void Move() {
        if (stopped_) {
            return;
        }
        try {
            entrance_->Open();
        } catch (const std::system_error& failure) {
            if (exchange_.log) {
                exchange_.log(failure.what());
            }
        }
    }

    void CloseAll() {
        // A copy, because each connection takes itself off the list.
        const auto connections = connections_;
        for (const auto& [number, connection] : connections) {
            connection->Close();
        }
    }

    FaultPlan faults_;
    Exchange exchange_;
    asio::io_context context_{1};
    // What follows is used on the server's thread only, once that runs.
    bool stopped_ = false;
    std::map<std::size_t, std::shared_ptr<Connection>> connections_;
    std::size_t last_number_ = 0;
    const std::unique_ptr<Entrance> entrance_;
    std::atomic<std::size_t> connection_count_{0};
    std::thread thread_;
};

VirtualSupplyServer::VirtualSupplyServer(VirtualSupply& supply, ServerOptions options)
    : implementation_(std::make_unique<Implementation>(supply, std::move(options))) {}

VirtualSupplyServer::~VirtualSupplyServer() = default;

std::uint16_t VirtualSupplyServer::port() const { return implementation_->entrance().port(); }

std::string VirtualSupplyServer::resource() const { return implementation_->entrance().resource(); }

FaultPlan& VirtualSupplyServer::faults() { return implementation_->faults(); }

std::size_t VirtualSupplyServer::connection_count() const { return implementation_->connection_count(); }

void VirtualSupplyServer::CloseConnections() { implementation_->CloseConnections(); }

void VirtualSupplyServer::Stop() { implementation_->Stop(); }

} // namespace virtual_supply
