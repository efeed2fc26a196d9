// The other end of a socket: what an instrument would be.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <thread>

namespace test_peer {

/// An open file, closed in the end.
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
    /// What comes up to and including a line feed; what has come when the other end closes or stays silent too long.
    [[nodiscard]] std::string ReceiveLine() const;
    /// The next `count` bytes, fewer when the other end closes or stays silent too long.
    [[nodiscard]] std::string Receive(std::size_t count) const;
    /// True when the other end closes before it sends another byte.
    [[nodiscard]] bool SeesEnd() const;
    /// Closes with a reset rather than with an orderly end.
    void Reset() const;

  private:
    int number_;
};

enum class Family { kIpv4, kIpv6 };

/// Listens on a free loopback port.
class Listener {
  public:
    static constexpr int kBacklog = 16;
    explicit Listener(Family family = Family::kIpv4, int backlog = kBacklog);

    [[nodiscard]] std::uint16_t Port() const { return port_; }
    /// "TCPIP0::127.0.0.1::<port>::SOCKET", or with "[::1]".
    [[nodiscard]] std::string Resource() const;
    [[nodiscard]] Socket Accept() const;

  private:
    Socket socket_;
    std::uint16_t port_ = 0;
    Family family_;
};

/// Accepts one connection and has `behave` deal with it, on a thread of its own that ends with this object.
class Peer {
  public:
    using Behaviour = std::function<void(const Socket&)>;
    explicit Peer(Behaviour behave, Family family = Family::kIpv4);
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
