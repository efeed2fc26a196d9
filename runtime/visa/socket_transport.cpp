// All calls on sockets are in this file, those on host names in resolver.cpp.
#include "runtime/visa/socket_transport.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <utility>

#include "runtime/visa/file_descriptor.h"
#include "runtime/visa/resolver.h"

namespace runtime {

namespace {

/// Waits for `events`; false when the deadline came first. Errors count as events: the call that follows tells them.
bool WaitFor(int socket, short events, const Deadline& deadline) {
    for (;;) {
        pollfd waiting{socket, events, 0};
        const int ready = ::poll(&waiting, 1, deadline.PollTime());
        if (ready > 0 || (ready < 0 && errno != EINTR)) {
            return true;
        }
        if (deadline.HasPassed()) {
            return false;
        }
    }
}

bool WouldBlock(int error) {
    return error == EAGAIN || error == EWOULDBLOCK; // NOLINT: two names of one number here, not everywhere
}

/// What a failed call on a connection means. Whatever tells that the peer or the way to it is gone is a lost
/// connection.
ViStatus StatusOf(int error) {
    switch (error) {
    case EPIPE:
    case ECONNRESET:
    case ECONNABORTED:
    case ENOTCONN:
    case ETIMEDOUT:
    case EHOSTUNREACH:
    case EHOSTDOWN:
    case ENETUNREACH:
    case ENETDOWN:
    case ENETRESET:
        return VI_ERROR_CONN_LOST;
    case ENOMEM:
    case ENOBUFS:
        return VI_ERROR_ALLOC;
    default:
        return VI_ERROR_IO;
    }
}

class SocketTransport final : public Transport {
  public:
    explicit SocketTransport(FileDescriptor socket) : socket_(std::move(socket)) {}

    Progress Receive(std::span<ViByte> into, const Deadline& deadline) override {
        int flags = CanWaitInside(deadline) ? 0 : MSG_DONTWAIT;
        for (;;) {
            const auto received = ::recv(socket_.Number(), into.data(), into.size(), flags);
            if (received > 0) {
                return {VI_SUCCESS, static_cast<std::size_t>(received)};
            }
            if (received == 0) {
                return {VI_ERROR_CONN_LOST, 0};
            }
            if (!WouldBlock(errno) && errno != EINTR) {
                return {StatusOf(errno), 0};
            }
            if (!WaitFor(socket_.Number(), POLLIN, deadline)) {
                return {VI_ERROR_TMO, 0};
            }
            flags = MSG_DONTWAIT;
        }
    }

    Progress Send(std::span<const ViByte> bytes, const Deadline& deadline) override {
        std::size_t sent = 0;
        while (sent < bytes.size()) {
            const auto rest = bytes.subspan(sent);
            const auto count = ::send(socket_.Number(), rest.data(), rest.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
            if (count >= 0) {
                sent += static_cast<std::size_t>(count);
            } else if (!WouldBlock(errno) && errno != EINTR) {
                return {StatusOf(errno), sent};
            } else if (!WaitFor(socket_.Number(), POLLOUT, deadline)) {
                return {VI_ERROR_TMO, sent};
            }
        }
        return {VI_SUCCESS, sent};
    }

    /// The descriptor stays open, so that its number cannot come to mean another file, until nobody uses it any more.
    void Interrupt() override { ::shutdown(socket_.Number(), SHUT_RDWR); }

    void TimeoutChanged(ViUInt32 milliseconds) override {
        constexpr ViUInt32 kPerSecond = 1000;
        timeval time{}; // zero: without end
        if (milliseconds != VI_TMO_INFINITE) {
            time.tv_sec = milliseconds / kPerSecond;
            time.tv_usec = static_cast<suseconds_t>(milliseconds % kPerSecond) * 1000;
        }
        const bool set = ::setsockopt(socket_.Number(), SOL_SOCKET, SO_RCVTIMEO, &time, sizeof time) == 0;
        waitInside_ = set ? milliseconds : VI_TMO_IMMEDIATE;
    }

  private:
    /// Mostly the reply is still on its way, and a single call that waits for it inside the system is all it takes.
    /// That is allowed when such a wait, which always has the same length, ends by the deadline.
    [[nodiscard]] bool CanWaitInside(const Deadline& deadline) const {
        const ViUInt32 wait = waitInside_;
        return wait != VI_TMO_IMMEDIATE &&
               (deadline.IsInfinite() || (wait != VI_TMO_INFINITE && deadline.PollTime() >= std::int64_t{wait}));
    }

    FileDescriptor socket_;
    std::atomic<ViUInt32> waitInside_{VI_TMO_IMMEDIATE};
};

/// A connected socket, or none with the reason in `status`.
FileDescriptor ConnectTo(const addrinfo& address, const Deadline& deadline, ViStatus& status) {
    FileDescriptor socket = BesideTheStandardStreams(
        ::socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, address.ai_protocol));
    if (socket.Number() < 0) {
        status = errno == EMFILE || errno == ENFILE ? VI_ERROR_SYSTEM_ERROR : VI_ERROR_RSRC_NFOUND;
        return FileDescriptor();
    }
    const int number = socket.Number();
    int error = ::connect(number, address.ai_addr, address.ai_addrlen) == 0 ? 0 : errno;
    if (error == EINPROGRESS || error == EINTR) { // goes on by itself either way
        if (!WaitFor(number, POLLOUT, deadline)) {
            status = VI_ERROR_TMO;
            return FileDescriptor();
        }
        socklen_t size = sizeof error;
        if (::getsockopt(number, SOL_SOCKET, SO_ERROR, &error, &size) != 0) {
            error = errno;
        }
    }
    if (error != 0) {
        status = error == ETIMEDOUT ? VI_ERROR_TMO : VI_ERROR_RSRC_NFOUND;
        return FileDescriptor();
    }
    const int on = 1; // a command is sent when it is written; keep-alive stays off, as it is
    ::setsockopt(number, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    ::fcntl(number, F_SETFL, ::fcntl(number, F_GETFL) & ~O_NONBLOCK);
    return socket;
}

} // namespace

std::unique_ptr<Transport> ConnectSocket(const ResourceName& name, const Deadline& deadline, ViStatus& status) {
    const auto addresses = Resolve(name.host, name.port, deadline, status);
    std::size_t left = 0;
    for (const auto* address = addresses.get(); address != nullptr; address = address->ai_next) {
        ++left;
    }
    bool timedOut = false;
    for (const auto* address = addresses.get(); address != nullptr; address = address->ai_next, --left) {
        // An address that never answers leaves the others their part of the time.
        if (auto socket = ConnectTo(*address, deadline.Share(left), status); socket.Number() >= 0) {
            return std::make_unique<SocketTransport>(std::move(socket));
        }
        timedOut = timedOut || status == VI_ERROR_TMO;
    }
    if (timedOut) {
        status = VI_ERROR_TMO;
    }
    return nullptr;
}

} // namespace runtime
