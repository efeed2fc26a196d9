#include "tools/virtual_supply/server.h"

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

#include "tools/virtual_supply/connection.h"
#ifndef _WIN32
#include "tools/virtual_supply/pseudo_terminal.h"
#endif

namespace virtual_supply {

namespace {

using asio::ip::tcp;

tcp::endpoint LoopbackEndpoint(const std::string& host, std::uint16_t port) {
    asio::error_code error;
    const auto address = asio::ip::make_address(host, error);
    if (error || !address.is_loopback()) {
        throw std::invalid_argument("host '" + host + "' is not an address of the loopback interface");
    }
    return {address, port};
}

tcp::acceptor Listen(asio::io_context& context, const tcp::endpoint& endpoint) {
    try {
        return {context, endpoint};
    } catch (const std::system_error& failure) {
        // Asio's own category does not compare with std::errc.
        throw std::system_error({failure.code().value(), std::system_category()},
                                "cannot listen on " + endpoint.address().to_string() + " port " +
                                    std::to_string(endpoint.port()));
    }
}

/// The source of a server's clients. All functions but Port and Resource run on the server's thread.
class Entrance {
  public:
    Entrance() = default;
    Entrance(const Entrance&) = delete;
    Entrance& operator=(const Entrance&) = delete;
    Entrance(Entrance&&) = delete;
    Entrance& operator=(Entrance&&) = delete;
    virtual ~Entrance() = default;

    virtual std::uint16_t Port() const { return 0; }
    virtual std::string Resource() const = 0;
    virtual void Open() = 0;
    virtual void Close() = 0;
};

/// Calls `serve` for each client that connects.
class TcpEntrance final : public Entrance {
  public:
    TcpEntrance(asio::io_context& context, const tcp::endpoint& endpoint, std::function<void(tcp::socket)> serve)
        : acceptor_(Listen(context, endpoint)), pause_(context), endpoint_(acceptor_.local_endpoint()),
          serve_(std::move(serve)) {}

    std::uint16_t Port() const override { return endpoint_.port(); }

    std::string Resource() const override {
        const auto address = endpoint_.address();
        const std::string host = address.is_v6() ? '[' + address.to_string() + ']' : address.to_string();
        return "TCPIP0::" + host + "::" + std::to_string(Port()) + "::SOCKET";
    }

    void Open() override {
        acceptor_.async_accept([this](asio::error_code error, tcp::socket socket) {
            if (!acceptor_.is_open()) {
                return;
            }
            if (error) {
                // The usual cause is too many open files. The waiting client stays in the queue, so accepting again at
                // once would spin until another client leaves.
                constexpr std::chrono::milliseconds kPause{10};
                pause_.expires_after(kPause);
                pause_.async_wait([this](asio::error_code /*error*/) {
                    if (acceptor_.is_open()) {
                        Open();
                    }
                });
                return;
            }
            asio::error_code ignored; // the first read reports a client that has left already
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
/// Calls `serve` with a pseudo-terminal, and with another one each time it is opened again.
class PseudoTerminalEntrance final : public Entrance {
  public:
    using Serve = std::function<void(asio::posix::stream_descriptor)>;

    PseudoTerminalEntrance(asio::io_context& context, Serve serve, std::function<void(std::string_view)> moved)
        : context_(context), serve_(std::move(serve)), moved_(std::move(moved)) {}

    std::string Resource() const override {
        const std::lock_guard lock(mutex_);
        return "ASRL" + terminal_->Device() + "::INSTR";
    }

    void Open() override {
        const bool moves = isOpen_;
        isOpen_ = true;
        if (moves) {
            PseudoTerminal next; // created before the old one closes, so that it gets another name
            const std::lock_guard lock(mutex_);
            terminal_.emplace(std::move(next));
        }
        serve_(asio::posix::stream_descriptor(context_, terminal_->ReleaseNearEnd()));
        if (moves && moved_) {
            moved_(Resource());
        }
    }

    void Close() override {}

  private:
    asio::io_context& context_;
    const Serve serve_;
    const std::function<void(std::string_view)> moved_;
    bool isOpen_ = false;
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

    std::uint16_t Port() const { return entrance_->Port(); }
    std::string Resource() const { return entrance_->Resource(); }
    FaultPlan& Faults() { return faults_; }
    std::size_t ConnectionCount() const { return connectionCount_; }

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
        if (!options.pseudoTerminal) {
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

    /// Calls `over` after the connection is closed and removed from the list.
    template <typename Stream>
    void Serve(Stream stream, std::function<void()> over) {
        const std::size_t number = ++lastNumber_;
        auto connection = std::make_shared<StreamConnection<Stream>>(std::move(stream), exchange_, number,
                                                                     [this, number, over = std::move(over)] {
                                                                         connections_.erase(number);
                                                                         connectionCount_ = connections_.size();
                                                                         over();
                                                                     });
        connections_.emplace(number, connection);
        connectionCount_ = connections_.size();
        connection->Start();
    }

    /// Opens the entrance again, which gives it another resource name.
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
        // A copy, because each connection removes itself from the list.
        const auto connections = connections_;
        for (const auto& [number, connection] : connections) {
            connection->Close();
        }
    }

    FaultPlan faults_;
    Exchange exchange_;
    asio::io_context context_{1};
    // Only the server's thread uses the following members after its start.
    bool stopped_ = false;
    std::map<std::size_t, std::shared_ptr<Connection>> connections_;
    std::size_t lastNumber_ = 0;
    const std::unique_ptr<Entrance> entrance_;
    std::atomic<std::size_t> connectionCount_{0};
    std::thread thread_;
};

VirtualSupplyServer::VirtualSupplyServer(VirtualSupply& supply, ServerOptions options)
    : implementation_(std::make_unique<Implementation>(supply, std::move(options))) {}

VirtualSupplyServer::~VirtualSupplyServer() = default;

std::uint16_t VirtualSupplyServer::Port() const { return implementation_->Port(); }

std::string VirtualSupplyServer::Resource() const { return implementation_->Resource(); }

FaultPlan& VirtualSupplyServer::Faults() { return implementation_->Faults(); }

std::size_t VirtualSupplyServer::ConnectionCount() const { return implementation_->ConnectionCount(); }

void VirtualSupplyServer::CloseConnections() { implementation_->CloseConnections(); }

void VirtualSupplyServer::Stop() { implementation_->Stop(); }

} // namespace virtual_supply
