#include "runtime/visa/resolver.h"

#ifndef _WIN32
#include <netinet/in.h>
#include <sys/socket.h>
#endif

#include <condition_variable>
#include <csignal>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

namespace runtime {

namespace {

Addresses GetAddresses(const std::string& host, const std::string& service, int flags) {
    addrinfo hints{};
    hints.ai_flags = flags | AI_NUMERICSERV;
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_protocol = IPPROTO_TCP;
    addrinfo* list = nullptr;
    return Addresses(::getaddrinfo(host.c_str(), service.c_str(), &hints, &list) == 0 ? list : nullptr);
}

/// Shared by the calling thread and the thread of the lookup.
struct Inquiry {
    std::mutex mutex;
    std::condition_variable answered;
    bool done = false;
    Addresses addresses;
};

/// Blocks all signals in the threads that are started while this object exists.
class SignalsBlocked {
#ifdef _WIN32 // no signals are delivered to threads
  public:
    SignalsBlocked() {} // not trivial, so that the compiler does not report an unused object
#else
  public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

  private:
    sigset_t before_{};
#endif
};

} // namespace

Addresses GetAddressesByName(const std::string& host, const std::string& service) {
    return GetAddresses(host, service, 0);
}

Addresses Resolve(const std::string& host, ViUInt16 port, const Deadline& deadline, ViStatus& status,
                  const LookupFunction& lookup) {
    const auto service = std::to_string(port);
    if (auto numeric = GetAddresses(host, service, AI_NUMERICHOST)) {
        return numeric;
    }
    const auto inquiry = std::make_shared<Inquiry>();
    {
        const SignalsBlocked blocked;
        std::thread([inquiry, host, service, lookup] {
            Addresses addresses;
            try {
                addresses = lookup(host, service);
            } catch (const std::exception&) { // out of memory: the host stays unknown
            }
            const std::lock_guard lock(inquiry->mutex);
            inquiry->addresses = std::move(addresses);
            inquiry->done = true;
            inquiry->answered.notify_one();
        }).detach();
    }
    std::unique_lock lock(inquiry->mutex);
    const auto isDone = [&] { return inquiry->done; };
    if (deadline.IsInfinite()) {
        inquiry->answered.wait(lock, isDone);
    } else if (!inquiry->answered.wait_until(lock, deadline.At(), isDone)) {
        status = VI_ERROR_TMO;
        return nullptr;
    }
    if (!inquiry->addresses) {
        status = VI_ERROR_RSRC_NFOUND;
    }
    return std::move(inquiry->addresses);
}

} // namespace runtime
