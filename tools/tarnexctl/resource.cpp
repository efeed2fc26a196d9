#include "tools/tarnexctl/resource.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <vector>

#include "tools/tarnexctl/number_text.h"

#ifndef _WIN32
#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <future>
#include <memory>
#include <system_error>
#include <thread>
#endif

namespace tarnexctl {

namespace {

constexpr std::string_view kSeparator = "::";
constexpr auto kUsualPort = "5025"; // registered for SCPI over TCP

bool IsPort(const std::string& text) {
    const auto number = ParseNumber(text);
    return number && *number >= 1.0 && *number <= 65535.0 && text.find_first_not_of("0123456789") == std::string::npos;
}

std::string SocketResource(const std::string& host, const std::string& port) {
    return "TCPIP0::" + host + "::" + port + "::SOCKET";
}

std::string ToUpper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
    return text;
}

/// Splits at "::", but not inside the brackets of an IPv6 address.
std::vector<std::string> Parts(const std::string& resource) {
    std::vector<std::string> parts;
    std::size_t from = 0;
    for (;;) {
        const auto bracket = resource.compare(from, 1, "[") == 0 ? resource.find(']', from) : from;
        const auto end = bracket == std::string::npos ? bracket : resource.find(kSeparator, bracket);
        parts.push_back(resource.substr(from, end == std::string::npos ? end : end - from));
        if (end == std::string::npos) {
            return parts;
        }
        from = end + kSeparator.size();
    }
}

#ifndef _WIN32
using Clock = std::chrono::steady_clock;

struct Lookup {
    int error = 0;
    std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> addresses{nullptr, &::freeaddrinfo};
};

/// Looks up the addresses of a host in a thread, because the system's call can take longer than its caller may wait.
std::future<Lookup> LookUp(const std::string& host, const std::string& port) {
    auto promise = std::make_shared<std::promise<Lookup>>();
    auto found = promise->get_future();
    std::thread([=] {
        addrinfo hints{};
        hints.ai_socktype = SOCK_STREAM;
        addrinfo* addresses = nullptr;
        Lookup lookup;
        lookup.error = ::getaddrinfo(host.c_str(), port.c_str(), &hints, &addresses);
        lookup.addresses.reset(addresses);
        promise->set_value(std::move(lookup));
    }).detach();
    return found;
}

/// Returns the error of connecting to an address; 0 when it accepts.
int ErrorOfConnecting(const addrinfo& address, Clock::time_point end) {
    const int number = ::socket(address.ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (number < 0) {
        return errno;
    }
    int error = ::connect(number, address.ai_addr, address.ai_addrlen) == 0 ? 0 : errno;
    if (error == EINPROGRESS) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd waiting{number, POLLOUT, 0};
        socklen_t size = sizeof error;
        if (::poll(&waiting, 1, static_cast<int>(std::max<std::int64_t>(left, 1))) != 1) {
            error = ETIMEDOUT;
        } else if (::getsockopt(number, SOL_SOCKET, SO_ERROR, &error, &size) != 0) {
            error = errno;
        }
    }
    ::close(number);
    return error;
}

std::string ExplainSocket(const std::string& host, const std::string& port, double seconds) {
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    const auto bare = host.starts_with('[') ? host.substr(1, host.size() - 2) : host;
    auto found = LookUp(bare, port);
    if (found.wait_until(end) != std::future_status::ready) {
        return "the name server does not answer for host " + host;
    }
    const auto lookup = found.get();
    if (lookup.error != 0) {
        return lookup.error == EAI_AGAIN ? "the name server does not answer for host " + host : "unknown host " + host;
    }
    int error = ENOENT;
    for (const auto* address = lookup.addresses.get(); address != nullptr && error != 0; address = address->ai_next) {
        error = ErrorOfConnecting(*address, end);
    }
    switch (error) {
    case 0:
        return host + " accepts connections at port " + port + ", but does not answer as a supply of this family";
    case ECONNREFUSED:
        return host + " refuses connections at port " + port;
    case ETIMEDOUT:
        return host + " does not answer";
    default:
        return host + ": " + std::generic_category().message(error);
    }
}

std::string ExplainDevice(const std::string& path) {
    const int number = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (number >= 0) {
        const bool isLine = ::isatty(number) == 1;
        ::close(number);
        return path + (isLine ? " exists, but no supply of this family answers there" : " is not a serial line");
    }
    switch (errno) {
    case ENOENT:
        return "no device " + path;
    case EACCES:
        return "no permission for " + path + "; most systems give it to the group dialout";
    case EBUSY:
        return "another program uses " + path;
    default:
        return path + ": " + std::generic_category().message(errno);
    }
}
#else
std::string ExplainSocket(const std::string& /*host*/, const std::string& /*port*/, double /*seconds*/) { return ""; }
std::string ExplainDevice(const std::string& /*path*/) { return ""; }
#endif

} // namespace

std::string CompleteResource(const std::string& given) {
    if (given.starts_with('/')) {
        return "ASRL" + given + "::INSTR";
    }
    const bool bracketed = given.starts_with('[');
    if (!bracketed && given.find(kSeparator) != std::string::npos) {
        return given;
    }
    const auto hostEnd = bracketed ? given.find(']') : 0;
    const auto colon = hostEnd == std::string::npos ? hostEnd : given.find(':', hostEnd);
    if (colon != std::string::npos) {
        const auto port = given.substr(colon + 1);
        return IsPort(port) ? SocketResource(given.substr(0, colon), port) : given;
    }
    const bool isHost = bracketed ? given.ends_with(']') : given.find('.') != std::string::npos || given == "localhost";
    return isHost ? SocketResource(given, kUsualPort) : given;
}

std::string HostResource(const std::string& given) {
    const bool isWord =
        std::all_of(given.begin(), given.end(), [](unsigned char c) { return std::isalnum(c) != 0 || c == '-'; });
    return isWord && !given.empty() ? SocketResource(given, kUsualPort) : "";
}

std::string ExplainFailure(const std::string& resource, double seconds) {
    const auto parts = Parts(resource);
    const auto first = ToUpper(parts.front());
    const auto last = ToUpper(parts.back());
    if (first.starts_with("TCPIP") && last == "SOCKET" && parts.size() == 4) {
        return ExplainSocket(parts[1], parts[2], seconds);
    }
    if (first.starts_with("ASRL")) {
        const auto port = parts.front().substr(std::string_view("ASRL").size());
        return port.starts_with('/') ? ExplainDevice(port) : "";
    }
    for (const auto* const kind : {"TCPIP", "USB", "GPIB", "PXI", "VXI"}) {
        if (first.starts_with(kind) && last == "INSTR") {
            return "the built-in VISA library serves TCPIP...::SOCKET and ASRL...; other kinds need another VISA "
                   "library";
        }
    }
    return "it is neither a resource nor a logical name of the configuration store; resources are for example "
           "TCPIP0::192.168.1.20::5025::SOCKET, 192.168.1.20, HOST:5025, ASRL/dev/ttyUSB0::INSTR and /dev/ttyUSB0";
}

} // namespace tarnexctl
