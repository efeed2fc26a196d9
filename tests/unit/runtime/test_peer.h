// The instrument's end of a socket.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <thread>

namespace test_peer {

/// An open file, closed by the destructor.
class Socket {
  public:
    explicit Socket(int number) : number_(number) {}
    Socket(Socket&& other) noexcept;
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    Socket& operator=(Socket&&) = delete;
    ~Socket();

    [[nodiscard]] int Number() const { return number_; }
    void Send(std::string_view bytes) const;
    /// Reads up to and including a line feed, or until the other end closes or is silent for too long.
    [[nodiscard]] std::string ReceiveLine() const;
    /// Reads `count` bytes, fewer when the other end closes or is silent for too long.
    [[nodiscard]] std::string Receive(std::size_t count) const;
    /// Returns true when the other end closes before it sends another byte.
    [[nodiscard]] bool SeesEnd() const;
    /// Closes the connection with a reset.
    void Reset() const;

  private:
    int number_;
};

enum class Family { Ipv4, Ipv6 };

/// Listens on a free loopback port.
class Listener {
  public:
    static constexpr int kBacklog = 16;
    explicit Listener(Family family = Family::Ipv4, int backlog = kBacklog);

    [[nodiscard]] std::uint16_t Port() const { return port_; }
    /// "TCPIP0::127.0.0.1::<port>::SOCKET", or with "[::1]".
    [[nodiscard]] std::string Resource() const;
    [[nodiscard]] Socket Accept() const;

  private:
    Socket socket_;
    std::uint16_t port_ = 0;
    Family family_;
};

/// Accepts one connection and calls `behave` for it, on a thread that ends with this object.
class Peer {
  public:
    using Behaviour = std::function<void(const Socket&)>;
    explicit Peer(Behaviour behave, Family family = Family::Ipv4);
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    ~Peer();

    [[nodiscard]] std::uint16_t Port() const { return listener_.Port(); }
    [[nodiscard]] std::string Resource() const { return listener_.Resource(); }

  private:
    Listener listener_;
    std::thread thread_;
};

} // namespace test_peer
