// Asio opens the line and sets it up; bytes are moved by the system's own calls, whose waiting a deadline can bound.
#include "runtime/visa/serial_transport.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <asio/error.hpp>
#include <asio/io_context.hpp>
#include <asio/serial_port.hpp>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <limits>
#include <mutex>
#include <thread>

#include "runtime/visa/file_descriptor.h"

namespace runtime {

namespace {

using Line = asio::serial_port;

/// A VISA value and what it means to the line; values that are not listed cannot be had.
template <typename Setting>
struct Choice {
    ViAttrState value;
    typename Setting::type meaning;
};
constexpr std::array kParities{
    Choice<Line::parity>{VI_ASRL_PAR_NONE, Line::parity::none},
    Choice<Line::parity>{VI_ASRL_PAR_ODD, Line::parity::odd},
    Choice<Line::parity>{VI_ASRL_PAR_EVEN, Line::parity::even},
};
constexpr std::array kStopBits{
    Choice<Line::stop_bits>{VI_ASRL_STOP_ONE, Line::stop_bits::one},
    Choice<Line::stop_bits>{VI_ASRL_STOP_TWO, Line::stop_bits::two},
};
constexpr std::array kFlowControls{
    Choice<Line::flow_control>{VI_ASRL_FLOW_NONE, Line::flow_control::none},
    Choice<Line::flow_control>{VI_ASRL_FLOW_XON_XOFF, Line::flow_control::software},
    Choice<Line::flow_control>{VI_ASRL_FLOW_RTS_CTS, Line::flow_control::hardware},
};

/// What a failed call on an open line means: an adapter that was pulled out and a pseudo-terminal whose other end is
/// closed are lost connections.
ViStatus StatusOf(int error) {
    switch (error) {
    case EIO:
    case ENXIO:
    case ENODEV:
        return VI_ERROR_CONN_LOST;
    case ENOMEM:
        return VI_ERROR_ALLOC;
    default:
        return VI_ERROR_IO;
    }
}

ViStatus StatusOfOpening(int error) {
    switch (error) {
    case EACCES:
    case EBUSY:
        return VI_ERROR_RSRC_BUSY;
    case EMFILE:
    case ENFILE:
        return VI_ERROR_SYSTEM_ERROR;
    default:
        return VI_ERROR_RSRC_NFOUND;
    }
}

bool IsWorthAnotherTry(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; // NOLINT: two names of one number here
}

class SerialTransport final : public Transport {
  public:
    SerialTransport() : wakeUp_(BesideTheStandardStreams(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))) {}
    SerialTransport(const SerialTransport&) = delete;
    SerialTransport& operator=(const SerialTransport&) = delete;
    ~SerialTransport() override {
        if (line_.is_open()) {
            FinishSending();
        }
    }

    ViStatus Open(const std::string& device) {
        if (wakeUp_.Number() < 0) {
            return VI_ERROR_SYSTEM_ERROR;
        }
        asio::error_code error;
        line_.open(device, error); // raw, without waiting for a carrier
        if (error) {
            return StatusOfOpening(error.value());
        }
        ::fcntl(Number(), F_SETFD, FD_CLOEXEC);
        constexpr unsigned kBaudRate = 9600;
        constexpr unsigned kDataBits = 8;
        for (const auto status : {Set(Line::baud_rate(kBaudRate)), Set(Line::character_size(kDataBits)),
                                  Set(Line::stop_bits(Line::stop_bits::one)), Set(Line::parity(Line::parity::none)),
                                  Set(Line::flow_control(Line::flow_control::none))}) {
            if (status < 0) {
                return VI_ERROR_INV_SETUP;
            }
        }
        ::tcflush(Number(), TCIFLUSH);
        return VI_SUCCESS;
    }

    Progress Receive(std::span<ViByte> into, const Deadline& deadline) override {
        while (!interrupted_) {
            const auto received = ::read(Number(), into.data(), into.size());
            if (received > 0) {
                return {VI_SUCCESS, static_cast<std::size_t>(received)};
            }
            if (received == 0) {
                return {VI_ERROR_CONN_LOST, 0};
            }
            if (!IsWorthAnotherTry(errno)) {
                return {StatusOf(errno), 0};
            }
            if (!WaitFor(POLLIN, deadline)) {
                return {VI_ERROR_TMO, 0};
            }
        }
        return {VI_ERROR_IO, 0};
    }

    Progress Send(std::span<const ViByte> bytes, const Deadline& deadline) override {
        std::size_t sent = 0;
        while (sent < bytes.size()) {
            if (interrupted_) {
                return {VI_ERROR_IO, sent};
            }
            const auto rest = bytes.subspan(sent);
            const auto count = ::write(Number(), rest.data(), rest.size());
            if (count >= 0) {
                sent += static_cast<std::size_t>(count);
            } else if (!IsWorthAnotherTry(errno)) {
                return {StatusOf(errno), sent};
            } else if (!WaitFor(POLLOUT, deadline)) {
                return {VI_ERROR_TMO, sent};
            }
        }
        return {VI_SUCCESS, sent};
    }

    void Interrupt() override {
        interrupted_ = true;
        ::eventfd_write(wakeUp_.Number(), 1);
    }

    void TimeoutChanged(ViUInt32 milliseconds) override { timeout_ = milliseconds; }

    [[nodiscard]] bool EndsAtTermination() const override { return endsAtTermination_; }

    ViStatus SetAttribute(ViAttr name, ViAttrState value) override {
        constexpr ViAttrState kFewestBits = 5;
        constexpr ViAttrState kMostBits = 8;
        switch (name) {
        case VI_ATTR_ASRL_BAUD: // 0 would hang up
            return value == 0 || value > std::numeric_limits<ViInt32>::max()
                       ? VI_ERROR_NSUP_ATTR_STATE
                       : Set(Line::baud_rate(static_cast<unsigned>(value)));
        case VI_ATTR_ASRL_DATA_BITS:
            return value < kFewestBits || value > kMostBits ? VI_ERROR_NSUP_ATTR_STATE
                                                            : Set(Line::character_size(static_cast<unsigned>(value)));
        case VI_ATTR_ASRL_PARITY:
            return SetOneOf(kParities, value);
        case VI_ATTR_ASRL_STOP_BITS:
            return SetOneOf(kStopBits, value);
        case VI_ATTR_ASRL_FLOW_CNTRL:
            return SetOneOf(kFlowControls, value);
        case VI_ATTR_ASRL_END_IN:
            if (value != VI_ASRL_END_NONE && value != VI_ASRL_END_TERMCHAR) {
                return VI_ERROR_NSUP_ATTR_STATE;
            }
            endsAtTermination_ = value == VI_ASRL_END_TERMCHAR;
            return VI_SUCCESS;
        case VI_ATTR_ASRL_END_OUT:
            return value == VI_ASRL_END_NONE ? VI_SUCCESS : VI_ERROR_NSUP_ATTR_STATE;
        default:
            return VI_ERROR_NSUP_ATTR;
        }
    }

  private:
    int Number() { return line_.native_handle(); }

    template <typename Setting>
    ViStatus Set(const Setting& setting) {
        const std::lock_guard lock(settingUp_);
        asio::error_code error;
        line_.set_option(setting, error);
        if (error == asio::error::invalid_argument || error == asio::error::operation_not_supported) {
            return VI_ERROR_NSUP_ATTR_STATE;
        }
        return error ? StatusOf(error.value()) : VI_SUCCESS;
    }

    template <typename Setting, std::size_t kCount>
    ViStatus SetOneOf(const std::array<Choice<Setting>, kCount>& choices, ViAttrState value) {
        const auto* choice =
            std::find_if(choices.begin(), choices.end(), [&](const auto& row) { return row.value == value; });
        return choice == choices.end() ? VI_ERROR_NSUP_ATTR_STATE : Set(Setting(choice->meaning));
    }

    /// Waits for `events` or an interruption; false when the deadline came first. Errors count as events: the call that
    /// follows tells them.
    bool WaitFor(short events, const Deadline& deadline) {
        for (;;) {
            std::array<pollfd, 2> waiting{{{Number(), events, 0}, {wakeUp_.Number(), POLLIN, 0}}};
            const int ready = ::poll(waiting.data(), waiting.size(), deadline.PollTime());
            if (ready > 0 || (ready < 0 && errno != EINTR)) {
                return true;
            }
            if (deadline.HasPassed()) {
                return false;
            }
        }
    }

    /// The system, when it closes a line, waits up to half a minute for what is still to be sent. It gets the I/O
    /// time-out, at most two seconds; what is left then, because the other end holds the line up, is dropped.
    void FinishSending() {
        constexpr ViUInt32 kLongest = 2000; // ms
        const Deadline deadline(std::min<ViUInt32>(timeout_, kLongest));
        int left = 0;
        while (::ioctl(Number(), TIOCOUTQ, &left) == 0 && left > 0) {
            if (deadline.HasPassed()) {
                ::tcflush(Number(), TCOFLUSH);
                return;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    // Never run: the line belongs to one, that is all. Its own files come first and take the numbers of standard
    // streams that are closed, so the line never does.
    asio::io_context context_{1};
    Line line_{context_};
    std::mutex settingUp_;        // a setting is read, changed and written back
    const FileDescriptor wakeUp_; // readable from the interruption on
    std::atomic<bool> interrupted_{false};
    std::atomic<bool> endsAtTermination_{true};
    std::atomic<ViUInt32> timeout_{0}; // ms
};

} // namespace

std::string SerialDevice(std::string_view port) {
    unsigned number = 0;
    if (std::from_chars(port.data(), port.data() + port.size(), number).ec != std::errc{}) {
        return std::string(port);
    }
    return number == 0 ? std::string() : "/dev/ttyS" + std::to_string(number - 1);
}

std::unique_ptr<Transport> OpenSerialLine(const ResourceName& name, const Deadline& /*deadline*/, ViStatus& status) {
    auto transport = std::make_unique<SerialTransport>();
    status = transport->Open(SerialDevice(name.device));
    if (status < 0) {
        return nullptr;
    }
    return transport;
}

} // namespace runtime
