#include "tests/unit/runtime/test_peer.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <stdexcept>
#include <utility>

namespace test_peer {

namespace {

constexpr int kPatience = 20; // s; the longest wait for the other end

void Check(bool good, const char* what) {
    if (!good) {
        throw std::runtime_error(what);
    }
}

} // namespace

Socket::Socket(Socket&& other) noexcept : number_(std::exchange(other.number_, -1)) {}

Socket::~Socket() {
    if (number_ >= 0) {
        ::close(number_);
    }
}

void Socket::Send(std::string_view bytes) const {
    while (!bytes.empty()) {
        const auto sent = ::send(number_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) {
            return;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

std::string Socket::ReceiveLine() const {
    std::string line;
    char c = 0;
    while (::recv(number_, &c, 1, 0) == 1) {
        line += c;
        if (c == '\n') {
            break;
        }
    }
    return line;
}

std::string Socket::Receive(std::size_t count) const {
    std::string bytes(count, '\0');
    std::size_t got = 0;
    while (got < count) {
        const auto received = ::recv(number_, bytes.data() + got, count - got, 0);
        if (received <= 0) {
            break;
        }
        got += static_cast<std::size_t>(received);
    }
    bytes.resize(got);
    return bytes;
}

bool Socket::SeesEnd() const {
    char c = 0;
    return ::recv(number_, &c, 1, 0) == 0;
}

void Socket::Reset() const {
    const linger abort{1, 0};
    ::setsockopt(number_, SOL_SOCKET, SO_LINGER, &abort, sizeof abort); // takes effect when the socket is closed
}

Listener::Listener(Family family, int backlog)
    : socket_(::socket(family == Family::Ipv4 ? AF_INET : AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0)), family_(family) {
    sockaddr_in v4{};
    v4.sin_family = AF_INET;
    v4.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    sockaddr_in6 v6{};
    v6.sin6_family = AF_INET6;
    v6.sin6_addr = in6addr_loopback;
    auto* address = family == Family::Ipv4 ? reinterpret_cast<sockaddr*>(&v4) : reinterpret_cast<sockaddr*>(&v6);
    socklen_t size = family == Family::Ipv4 ? sizeof v4 : sizeof v6;
    Check(::bind(socket_.Number(), address, size) == 0, "bind");
    Check(::listen(socket_.Number(), backlog) == 0, "listen");
    Check(::getsockname(socket_.Number(), address, &size) == 0, "getsockname");
    port_ = ntohs(family == Family::Ipv4 ? v4.sin_port : v6.sin6_port);
}

std::string Listener::Resource() const {
    const std::string host = family_ == Family::Ipv4 ? "127.0.0.1" : "[::1]";
    return "TCPIP0::" + host + "::" + std::to_string(port_) + "::SOCKET";
}

Socket Listener::Accept() const {
    pollfd waiting{socket_.Number(), POLLIN, 0};
    Check(::poll(&waiting, 1, kPatience * 1000) == 1, "nobody connects");
    Socket accepted(::accept4(socket_.Number(), nullptr, nullptr, SOCK_CLOEXEC));
    const timeval patience{kPatience, 0};
    ::setsockopt(accepted.Number(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    ::setsockopt(accepted.Number(), SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    return accepted;
}

Peer::Peer(Behaviour behave, Family family)
    : listener_(family), thread_([this, behave = std::move(behave)] { behave(listener_.Accept()); }) {}

Peer::~Peer() { thread_.join(); }

} // namespace test_peer
