// TCP sockets of POSIX systems.
#include "runtime/visa/socket_transport.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <utility>

#include "runtime/visa/descriptor_wait.h"
#include "runtime/visa/file_descriptor.h"
#include "runtime/visa/transfer.h"

namespace runtime {

namespace {

/// Every error that means that the peer closed or cannot be reached is a lost connection.
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
        return ReceiveSome(
            [&] {
                const auto received =
                    ::recv(socket_.Number(), into.data(), into.size(), std::exchange(flags, MSG_DONTWAIT));
                return received >= 0 ? Attempt{received} : Failed();
            },
            [&] { return WaitFor(socket_.Number(), POLLIN, deadline); });
    }

    Progress Send(std::span<const ViByte> bytes, const Deadline& deadline) override {
        return SendAll(
            bytes,
            [&](std::span<const ViByte> rest) {
                const auto sent = ::send(socket_.Number(), rest.data(), rest.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
                return sent >= 0 ? Attempt{sent} : Failed();
            },
            [&] { return WaitFor(socket_.Number(), POLLOUT, deadline); });
    }

    /// The descriptor stays open until its last user has released it, so that its number cannot become that of another
    /// file.
    void Interrupt() override { ::shutdown(socket_.Number(), SHUT_RDWR); }

    void TimeoutChanged(ViUInt32 milliseconds) override {
        constexpr ViUInt32 kPerSecond = 1000;
        timeval time{}; // zero: no limit
        if (milliseconds != VI_TMO_INFINITE) {
            time.tv_sec = milliseconds / kPerSecond;
            time.tv_usec = static_cast<suseconds_t>(milliseconds % kPerSecond) * 1000;
        }
        const bool set = ::setsockopt(socket_.Number(), SOL_SOCKET, SO_RCVTIMEO, &time, sizeof time) == 0;
        waitInside_ = set ? milliseconds : VI_TMO_IMMEDIATE;
    }

  private:
    /// The result of a call that moved nothing.
    static Attempt Failed() { return {-1, WouldBlock(errno) ? VI_SUCCESS : StatusOf(errno)}; }

    /// Mostly the reply is still on its way, and one call that waits inside the system is enough. The length of that
    /// wait is fixed, so it is allowed only when it ends by the deadline.
    [[nodiscard]] bool CanWaitInside(const Deadline& deadline) const {
        const ViUInt32 wait = waitInside_;
        return wait != VI_TMO_IMMEDIATE &&
               (deadline.IsInfinite() || (wait != VI_TMO_INFINITE && deadline.PollTime() >= std::int64_t{wait}));
    }

    FileDescriptor socket_;
    std::atomic<ViUInt32> waitInside_{VI_TMO_IMMEDIATE};
};

/// Returns a connected socket, or none with the reason in `status`.
FileDescriptor Connected(const addrinfo& address, const Deadline& deadline, ViStatus& status) {
    FileDescriptor socket = MoveAboveStandardStreams(
        ::socket(address.ai_family, address.ai_socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, address.ai_protocol));
    if (socket.Number() < 0) {
        status = errno == EMFILE || errno == ENFILE ? VI_ERROR_SYSTEM_ERROR : VI_ERROR_RSRC_NFOUND;
        return FileDescriptor();
    }
    const int number = socket.Number();
    int error = ::connect(number, address.ai_addr, address.ai_addrlen) == 0 ? 0 : errno;
    if (error == EINPROGRESS || error == EINTR) { // either way the system goes on connecting
        status = WaitFor(number, POLLOUT, deadline);
        if (status < 0) {
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
    const int on = 1; // a command is sent as soon as it is written
    ::setsockopt(number, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    ::fcntl(number, F_SETFL, ::fcntl(number, F_GETFL) & ~O_NONBLOCK);
    return socket;
}

} // namespace

bool StartSockets() { return true; }

std::unique_ptr<Transport> ConnectTo(const addrinfo& address, const Deadline& deadline, ViStatus& status) {
    auto socket = Connected(address, deadline, status);
    return socket.Number() < 0 ? nullptr : std::make_unique<SocketTransport>(std::move(socket));
}

} // namespace runtime
