#include "runtime/visa/resource_name.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

#include "text/characters.h"

namespace runtime {

namespace {

constexpr std::string_view kSeparator = "::";
constexpr std::size_t kMostParts = 6; // "USB0::vendor::model::serial::interface::INSTR"

struct Parts {
    std::array<std::string_view, kMostParts> part;
    std::size_t count = 0;

    [[nodiscard]] std::string_view Last() const { return part[count - 1]; }
};

/// Splits at "::", but not inside the square brackets of an IPv6 address. Returns nothing when a part is empty or when
/// there are too many parts.
std::optional<Parts> Split(std::string_view text) {
    Parts parts;
    for (;;) {
        std::size_t from = 0;
        if (text.starts_with('[')) {
            from = text.find(']');
            if (from == std::string_view::npos) {
                return std::nullopt;
            }
        }
        const auto end = text.find(kSeparator, from);
        const auto part = text.substr(0, end);
        if (part.empty() || parts.count == kMostParts) {
            return std::nullopt;
        }
        parts.part[parts.count++] = part;
        if (end == std::string_view::npos) {
            return parts;
        }
        text.remove_prefix(end + kSeparator.size());
    }
}

template <typename Number>
bool ReadNumber(std::string_view text, Number& number) {
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && stop == end;
}

bool StartsWithKeyword(std::string_view text, std::string_view keyword) {
    return text::EqualIgnoringCase(text.substr(0, keyword.size()), keyword);
}

/// Returns whether `text` is the keyword with an optional board number.
bool IsBoard(std::string_view text, std::string_view keyword) {
    if (!StartsWithKeyword(text, keyword)) {
        return false;
    }
    const auto board = text.substr(keyword.size());
    std::uint16_t number = 0;
    return board.empty() || ReadNumber(board, number);
}

bool IsPrintable(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](unsigned char c) { return c <= ' ' || c == 0x7F; });
}

bool IsIpv6(std::string_view text) {
    const auto address = text.substr(0, text.find('%')); // the suffix names the interface of a link-local address
    constexpr std::string_view kAllowed = "0123456789abcdefABCDEF:.";
    return std::count(address.begin(), address.end(), ':') >= 2 &&
           address.find_first_not_of(kAllowed) == std::string_view::npos;
}

/// Returns the host of a socket without brackets; nothing when it is malformed.
std::optional<std::string_view> HostOf(std::string_view part) {
    if (!part.starts_with('[')) {
        const bool plain = part.find_first_of("[]:") == std::string_view::npos;
        return plain ? std::optional(part) : std::nullopt;
    }
    if (!part.ends_with(']')) {
        return std::nullopt;
    }
    const auto address = part.substr(1, part.size() - 2);
    return IsIpv6(address) ? std::optional(address) : std::nullopt;
}

std::optional<ResourceName> ParseTcpip(const Parts& parts) {
    if (parts.count < 2) {
        return std::nullopt;
    }
    if (!text::EqualIgnoringCase(parts.Last(), "SOCKET")) {
        // A VXI-11 or HiSLIP instrument: host, optional device, optional INSTR.
        const bool isInstrument =
            parts.count <= 3 || (parts.count == 4 && text::EqualIgnoringCase(parts.Last(), "INSTR"));
        return isInstrument ? std::optional(ResourceName{}) : std::nullopt;
    }
    ResourceName name;
    const auto host = parts.count == 4 ? HostOf(parts.part[1]) : std::nullopt;
    if (!host || !ReadNumber(parts.part[2], name.port) || name.port == 0) {
        return std::nullopt;
    }
    name.interface = Interface::Socket;
    name.host = *host;
    return name;
}

std::optional<ResourceName> ParseSerial(const Parts& parts, std::string_view keyword) {
    const auto device = parts.part[0].substr(keyword.size());
    std::uint16_t number = 0;
    const bool isPort = device.starts_with('/') || ReadNumber(device, number);
    const bool isInstrument = parts.count == 1 || (parts.count == 2 && text::EqualIgnoringCase(parts.Last(), "INSTR"));
    if (!isPort || !isInstrument) {
        return std::nullopt;
    }
    ResourceName name;
    name.interface = Interface::Serial;
    name.device = device;
    return name;
}

} // namespace

std::optional<ResourceName> ParseResourceName(std::string_view text) {
    const auto parts = IsPrintable(text) ? Split(text) : std::nullopt;
    if (!parts) {
        return std::nullopt;
    }
    const auto board = parts->part[0];
    if (IsBoard(board, "TCPIP")) {
        return ParseTcpip(*parts);
    }
    constexpr std::string_view kSerialKeyword = "ASRL";
    if (StartsWithKeyword(board, kSerialKeyword)) {
        return ParseSerial(*parts, kSerialKeyword);
    }
    constexpr std::array<std::string_view, 6> kOthers = {"GPIB", "GPIB-VXI", "USB", "PXI", "VXI", "FIREWIRE"};
    const bool known = parts->count >= 2 && std::any_of(kOthers.begin(), kOthers.end(),
                                                        [&](auto keyword) { return IsBoard(board, keyword); });
    return known ? std::optional(ResourceName{}) : std::nullopt;
}

} // namespace runtime
