// TCP sockets of Windows, for the development platform.
#include <winsock2.h>
#include <ws2tcpip.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <cstddef>
#include <utility>

#include "runtime/visa/socket_transport.h"
#include "runtime/visa/transfer.h"

namespace runtime {

namespace {

class Socket {
  public:
    explicit Socket(SOCKET number = INVALID_SOCKET) : number_(number) {}
    Socket(Socket&& other) noexcept : number_(std::exchange(other.number_, INVALID_SOCKET)) {}
    Socket& operator=(Socket&&) = delete;
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    ~Socket() {
        if (IsOpen()) {
            ::closesocket(number_);
        }
    }
    [[nodiscard]] bool IsOpen() const { return number_ != INVALID_SOCKET; }
    [[nodiscard]] SOCKET Number() const { return number_; }

  private:
    SOCKET number_;
};

enum class Direction { In, Out };

/// Waits until the socket is ready or has failed, at most for a moment, so that the caller can check for interrupts.
/// Returns false when the moment or the deadline has passed.
bool WaitAMoment(SOCKET socket, Direction direction, const Deadline& deadline) {
    constexpr int kMoment = 50; // ms
    const int left = deadline.PollTime();
    const long wait = left < 0 ? kMoment : std::min(left, kMoment);
    fd_set waiting;
    fd_set failed;
    FD_ZERO(&waiting);
    FD_ZERO(&failed);
    waiting.fd_count = failed.fd_count = 1;
    waiting.fd_array[0] = failed.fd_array[0] = socket;
    timeval time{0, wait * 1000};
    auto* const in = direction == Direction::In ? &waiting : nullptr;
    auto* const out = direction == Direction::Out ? &waiting : nullptr;
    return ::select(0, in, out, &failed, &time) != 0;
}

ViStatus StatusOf(int error) {
    switch (error) {
    case WSAECONNRESET:
    case WSAECONNABORTED:
    case WSAESHUTDOWN:
    case WSAENOTCONN:
    case WSAETIMEDOUT:
    case WSAEHOSTUNREACH:
    case WSAEHOSTDOWN:
    case WSAENETUNREACH:
    case WSAENETDOWN:
    case WSAENETRESET:
        return VI_ERROR_CONN_LOST;
    case WSAENOBUFS:
        return VI_ERROR_ALLOC;
    default:
        return VI_ERROR_IO;
    }
}

int Limited(std::size_t size) { return static_cast<int>(std::min<std::size_t>(size, INT_MAX)); }

class WinsockTransport final : public Transport {
  public:
    explicit WinsockTransport(Socket socket) : socket_(std::move(socket)) {}

    Progress Receive(std::span<ViByte> into, const Deadline& deadline) override {
        return ReceiveSome(
            [&] {
                return Result(::recv(socket_.Number(), reinterpret_cast<char*>(into.data()), Limited(into.size()), 0));
            },
            [&] { return Wait(Direction::In, deadline); });
    }

    Progress Send(std::span<const ViByte> bytes, const Deadline& deadline) override {
        return SendAll(
            bytes,
            [&](std::span<const ViByte> rest) {
                return Result(
                    ::send(socket_.Number(), reinterpret_cast<const char*>(rest.data()), Limited(rest.size()), 0));
            },
            [&] { return Wait(Direction::Out, deadline); });
    }

    void Interrupt() override {
        interrupted_ = true;
        ::shutdown(socket_.Number(), SD_BOTH);
    }

  private:
    static Attempt Result(int bytes) {
        if (bytes >= 0) {
            return {bytes};
        }
        const int error = ::WSAGetLastError();
        return {-1, error == WSAEWOULDBLOCK ? VI_SUCCESS : StatusOf(error)};
    }

    ViStatus Wait(Direction direction, const Deadline& deadline) {
        while (!interrupted_) {
            if (WaitAMoment(socket_.Number(), direction, deadline)) {
                return VI_SUCCESS;
            }
            if (deadline.HasPassed()) {
                return VI_ERROR_TMO;
            }
        }
        return VI_ERROR_CONN_LOST;
    }

    Socket socket_;
    std::atomic<bool> interrupted_{false};
};

/// Returns a connected socket, or none with the reason in `status`.
Socket Connected(const addrinfo& address, const Deadline& deadline, ViStatus& status) {
    Socket socket(::socket(address.ai_family, address.ai_socktype, address.ai_protocol));
    u_long on = 1;
    if (!socket.IsOpen() || ::ioctlsocket(socket.Number(), static_cast<long>(FIONBIO), &on) != 0) {
        status = VI_ERROR_SYSTEM_ERROR;
        return Socket();
    }
    int error = 0;
    if (::connect(socket.Number(), address.ai_addr, static_cast<int>(address.ai_addrlen)) != 0) {
        error = ::WSAGetLastError();
        if (error == WSAEWOULDBLOCK) {
            while (!WaitAMoment(socket.Number(), Direction::Out, deadline)) {
                if (deadline.HasPassed()) {
                    status = VI_ERROR_TMO;
                    return Socket();
                }
            }
            int size = sizeof error;
            ::getsockopt(socket.Number(), SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &size);
        }
    }
    if (error != 0) {
        status = error == WSAETIMEDOUT ? VI_ERROR_TMO : VI_ERROR_RSRC_NFOUND;
        return Socket();
    }
    const BOOL noDelay = TRUE; // a command is sent as soon as it is written
    ::setsockopt(socket.Number(), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&noDelay), sizeof noDelay);
    return socket;
}

} // namespace

/// Starts Winsock once per process and keeps this DLL loaded: a thread that looks up a host name may outlive the call
/// that started it.
bool StartSockets() {
    static const bool started = [] {
        WSADATA about;
        HMODULE here = nullptr;
        return ::WSAStartup(MAKEWORD(2, 2), &about) == 0 &&
               ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                                    reinterpret_cast<const char*>(&StartSockets), &here) != 0;
    }();
    return started;
}

std::unique_ptr<Transport> ConnectTo(const addrinfo& address, const Deadline& deadline, ViStatus& status) {
    auto socket = Connected(address, deadline, status);
    return socket.IsOpen() ? std::make_unique<WinsockTransport>(std::move(socket)) : nullptr;
}

} // namespace runtime
