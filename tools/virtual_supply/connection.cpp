#include "tools/virtual_supply/connection.h"

#include <utility>

namespace virtual_supply {

namespace {

bool IsBlank(std::string_view line) { return line.find_first_not_of(" \t") == std::string_view::npos; }

/// Returns `text` with \xNN in place of each byte that is not printable ASCII.
std::string Printable(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string printable;
    for (const char c : text) {
        if (c >= ' ' && c <= '~') {
            printable += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        printable += "\\x";
        printable += kDigits[byte >> 4U];
        printable += kDigits[byte & 0xFU];
    }
    return printable;
}

} // namespace

template <typename Stream>
StreamConnection<Stream>::StreamConnection(Stream stream, Exchange& exchange, std::size_t number,
                                           std::function<void()> closed)
    : stream_(std::move(stream)), delay_(stream_.get_executor()), exchange_(exchange), number_(number),
      closed_(std::move(closed)) {}

template <typename Stream>
void StreamConnection<Stream>::Start() {
    Log("connected", {});
    Read();
}

template <typename Stream>
void StreamConnection<Stream>::Close() {
    if (!closed_) {
        return;
    }
    Log("closed", {});
    asio::error_code ignored;
    stream_.close(ignored);
    delay_.cancel();
    std::exchange(closed_, nullptr)();
}

template <typename Stream>
void StreamConnection<Stream>::Read() {
    stream_.async_read_some(asio::buffer(chunk_),
                            [self = this->shared_from_this()](asio::error_code error, std::size_t size) {
                                if (error || !self->stream_.is_open()) {
                                    self->Close();
                                    return;
                                }
                                self->unread_ = {self->chunk_.data(), size};
                                self->Proceed();
                            });
}

/// Executes the lines received so far. Stops at a reply and continues when the reply is written: memory stays bounded
/// for a client that sends queries and does not read the replies.
template <typename Stream>
void StreamConnection<Stream>::Proceed() {
    while (const auto line = lines_.Take(unread_)) {
        if (!Handle(*line)) {
            return;
        }
    }
    Read();
}

/// Executes one line. Returns false when the following lines must wait for a reply or the connection is closed.
template <typename Stream>
bool StreamConnection<Stream>::Handle(const LineSplitter::Line& line) {
    if (line.overrun) {
        Log("< (too long)", {});
        exchange_.supply.ReportInputOverrun();
        return true;
    }
    if (IsBlank(line.text)) {
        return true;
    }
    Log("< ", line.text);
    const Disturbance disturbance = exchange_.faults.Next();
    if (disturbance.drop) {
        Close();
        return false;
    }
    outgoing_ = disturbance.Wire(exchange_.supply.Execute(line.text));
    if (outgoing_.empty()) {
        return true;
    }
    if (disturbance.delay.count() == 0) {
        Send();
        return false;
    }
    delay_.expires_after(disturbance.delay);
    delay_.async_wait([self = this->shared_from_this()](asio::error_code error) {
        if (!error && self->stream_.is_open()) {
            self->Send();
        }
    });
    return false;
}

template <typename Stream>
void StreamConnection<Stream>::Send() {
    Log("> ", outgoing_);
    asio::async_write(stream_, asio::buffer(outgoing_),
                      [self = this->shared_from_this()](asio::error_code error, std::size_t /*size*/) {
                          if (error || !self->stream_.is_open()) {
                              self->Close();
                              return;
                          }
                          self->Proceed();
                      });
}

template <typename Stream>
void StreamConnection<Stream>::Log(std::string_view event, std::string_view text) const {
    if (exchange_.log) {
        exchange_.log(std::to_string(number_) + ' ' + std::string(event) + Printable(text));
    }
}

template class StreamConnection<asio::ip::tcp::socket>;
#ifdef ASIO_HAS_POSIX_STREAM_DESCRIPTOR
template class StreamConnection<asio::posix::stream_descriptor>;
#endif

} // namespace virtual_supply
