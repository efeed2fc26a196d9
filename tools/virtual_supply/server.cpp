#include "tools/virtual_supply/server.h"

#include "tools/virtual_supply/connection.h"

#include <asio.hpp>
#include <atomic>
#include <chrono>
#include <map>
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

} // namespace

class VirtualSupplyServer::Implementation {
  public:
    Implementation(VirtualSupply& supply, ServerOptions options)
        : exchange_{supply, faults_, std::move(options.log)},
          acceptor_(Listen(context_, LoopbackEndpoint(options.host, options.port))),
          endpoint_(acceptor_.local_endpoint()) {
        for (const Fault& fault : options.faults) {
            faults_.Add(fault);
        }
        Accept();
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

    const tcp::endpoint& endpoint() const { return endpoint_; }
    FaultPlan& faults() { return faults_; }
    std::size_t connection_count() const { return connection_count_; }

    void CloseConnections() {
        asio::post(context_, [this] { CloseAll(); });
    }

    void Stop() {
        asio::post(context_, [this] {
            asio::error_code ignored;
            acceptor_.close(ignored);
            pause_.cancel();
            CloseAll();
        });
    }

  private:
    void Accept() {
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
                        Accept();
                    }
                });
                return;
            }
            Serve(std::move(socket));
            Accept();
        });
    }

    void Serve(tcp::socket socket) {
        const std::size_t number = ++last_number_;
        auto connection = std::make_shared<Connection>(std::move(socket), exchange_, number, [this, number] {
            connections_.erase(number);
            connection_count_ = connections_.size();
        });
        connections_.emplace(number, connection);
        connection_count_ = connections_.size();
        connection->Start();
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
    tcp::acceptor acceptor_;
    asio::steady_timer pause_{context_};
    const tcp::endpoint endpoint_;
    std::map<std::size_t, std::shared_ptr<Connection>> connections_; // used on the server's thread only
    std::atomic<std::size_t> connection_count_{0};
    std::size_t last_number_ = 0;
    std::thread thread_;
};

VirtualSupplyServer::VirtualSupplyServer(VirtualSupply& supply, ServerOptions options)
    : implementation_(std::make_unique<Implementation>(supply, std::move(options))) {}

VirtualSupplyServer::~VirtualSupplyServer() = default;

std::uint16_t VirtualSupplyServer::port() const { return implementation_->endpoint().port(); }

std::string VirtualSupplyServer::resource() const {
    const auto address = implementation_->endpoint().address();
    const std::string host = address.is_v6() ? '[' + address.to_string() + ']' : address.to_string();
    return "TCPIP0::" + host + "::" + std::to_string(port()) + "::SOCKET";
}

FaultPlan& VirtualSupplyServer::faults() { return implementation_->faults(); }

std::size_t VirtualSupplyServer::connection_count() const { return implementation_->connection_count(); }

void VirtualSupplyServer::CloseConnections() { implementation_->CloseConnections(); }

void VirtualSupplyServer::Stop() { implementation_->Stop(); }

} // namespace virtual_supply
