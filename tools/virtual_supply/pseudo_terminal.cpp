#include "tools/virtual_supply/pseudo_terminal.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace virtual_supply {

namespace {

void Close(int file) {
    if (file >= 0) {
        ::close(file);
    }
}

} // namespace

PseudoTerminal::PseudoTerminal() : near_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    constexpr std::size_t kLongestName = 128;
    std::array<char, kLongestName> name{};
    termios line{};
    if (near_ >= 0 && ::grantpt(near_) == 0 && ::unlockpt(near_) == 0 &&
        ::ptsname_r(near_, name.data(), name.size()) == 0) {
        far_ = ::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    }
    if (far_ < 0 || ::tcgetattr(far_, &line) != 0) {
        const int error = errno;
        Close(near_);
        Close(far_);
        throw std::system_error(error, std::system_category(), "cannot make a pseudo-terminal");
    }
    ::cfmakeraw(&line);
    ::tcsetattr(far_, TCSANOW, &line);
    device_ = name.data();
}

PseudoTerminal::PseudoTerminal(PseudoTerminal&& other) noexcept
    : near_(other.ReleaseNearEnd()), far_(std::exchange(other.far_, -1)), device_(std::move(other.device_)) {}

PseudoTerminal::~PseudoTerminal() {
    Close(near_);
    Close(far_);
}

int PseudoTerminal::ReleaseNearEnd() { return std::exchange(near_, -1); }

} // namespace virtual_supply
