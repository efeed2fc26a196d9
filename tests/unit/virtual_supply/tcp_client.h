// A blocking TCP client. Every wait ends after kHangGuard.
#pragma once

#include <array>
#include <cerrno>
#include <cstdint>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/time.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace virtual_supply {

inline constexpr int kHangGuard = 30; // s

class TcpClient {
  public:
    /// Connects to a port of 127.0.0.1.
    /// On failure: throws std::system_error.
    explicit TcpClient(std::uint16_t port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const timeval guard{kHangGuard, 0};
        ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &guard, sizeof guard);
        ::setsockopt(socket_, SOL_SOCKET, SO_SNDTIMEO, &guard, sizeof guard);
        const int atOnce = 1;
        ::setsockopt(socket_, IPPROTO_TCP, TCP_NODELAY, &atOnce, sizeof atOnce);
        if (::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
            const int error = errno;
            ::close(socket_);
            throw std::system_error(error, std::generic_category(), "cannot connect");
        }
    }
    ~TcpClient() {
        if (socket_ >= 0) {
            ::close(socket_);
        }
    }
    TcpClient(TcpClient&& other) noexcept
        : socket_(std::exchange(other.socket_, -1)), received_(std::move(other.received_)) {}
    TcpClient(const TcpClient&) = delete;
    TcpClient& operator=(const TcpClient&) = delete;
    TcpClient& operator=(TcpClient&&) = delete;

    /// Returns false when the connection is lost.
    bool Send(std::string_view bytes) {
        while (!bytes.empty()) {
            const auto sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (sent <= 0) {
                return false;
            }
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        }
        return true;
    }

    /// Returns the next bytes up to and including a line feed, or up to the end of the connection.
    std::string ReadLine() {
        auto lineFeed = received_.find('\n');
        while (lineFeed == std::string::npos && Receive()) {
            lineFeed = received_.find('\n');
        }
        const auto size = lineFeed == std::string::npos ? received_.size() : lineFeed + 1;
        std::string line = received_.substr(0, size);
        received_.erase(0, size);
        return line;
    }

    /// Returns `size` bytes, or fewer when the connection ends.
    std::string ReadBytes(std::size_t size) {
        while (received_.size() < size && Receive()) {
        }
        std::string bytes = received_.substr(0, size);
        received_.erase(0, bytes.size());
        return bytes;
    }

    std::string Ask(std::string_view query) {
        Send(std::string(query) + '\n');
        return ReadLine();
    }

    /// Shuts down the sending side; replies can still be read.
    void EndSending() { ::shutdown(socket_, SHUT_WR); }

  private:
    bool Receive() {
        std::array<char, 4096> chunk{};
        const auto size = ::recv(socket_, chunk.data(), chunk.size(), 0);
        if (size <= 0) {
            return false;
        }
        received_.append(chunk.data(), static_cast<std::size_t>(size));
        return true;
    }

    int socket_;
    std::string received_;
};

} // namespace virtual_supply
