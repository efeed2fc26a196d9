// Asio opens the line and sets it up. Bytes are moved by the system's own calls, which a deadline can bound.
#include "runtime/visa/serial_transport.h"

#include <fcntl.h>
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

#include "runtime/visa/descriptor_wait.h"
#include "runtime/visa/file_descriptor.h"
#include "runtime/visa/transfer.h"

namespace runtime {

namespace {

using Line = asio::serial_port;

/// A VISA value and the setting that it stands for; other values are not supported.
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

/// An adapter that was unplugged and a pseudo-terminal whose other end is closed are lost connections.
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

class SerialTransport final : public Transport {
  public:
    SerialTransport() : wakeUp_(MoveAboveStandardStreams(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))) {}
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
        line_.open(device, error); // in raw mode, without waiting for a carrier
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
        return ReceiveSome([&] { return Result(::read(Number(), into.data(), into.size())); },
                           [&] { return WaitFor(Number(), POLLIN, deadline, wakeUp_.Number()); });
    }

    Progress Send(std::span<const ViByte> bytes, const Deadline& deadline) override {
        return SendAll(
            bytes, [&](std::span<const ViByte> rest) { return Result(::write(Number(), rest.data(), rest.size())); },
            [&] { return WaitFor(Number(), POLLOUT, deadline, wakeUp_.Number()); });
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
        case VI_ATTR_ASRL_BAUD: // the system takes 0 as a request to hang up
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

    /// The result of a call of the system; after Interrupt every call fails.
    [[nodiscard]] Attempt Result(ssize_t bytes) const {
        const ViStatus failed = WouldBlock(errno) ? VI_SUCCESS : StatusOf(errno);
        return interrupted_ ? Attempt{-1, VI_ERROR_IO} : bytes >= 0 ? Attempt{bytes} : Attempt{-1, failed};
    }

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

    /// Closing a line blocks for up to half a minute while bytes wait to be sent. This waits for at most the I/O
    /// time-out and two seconds, then discards what a held-up line has not sent.
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

    // Never run: a serial_port needs a context to exist. The context opens its own files first, so they take the
    // numbers of closed standard streams and the line does not.
    asio::io_context context_{1};
    Line line_{context_};
    std::mutex settingUp_;        // held while a setting is read, changed and written back
    const FileDescriptor wakeUp_; // readable after Interrupt
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
