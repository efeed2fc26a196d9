#include "runtime/visa/resource_name.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using runtime::Interface;
using runtime::ParseResourceName;

struct Socket {
    const char* text;
    const char* host;
    std::uint16_t port;
};

TEST(VisaResource, SocketsHaveAHostAndAPort) {
    const Socket cases[] = {
        {"TCPIP0::192.168.1.5::5025::SOCKET", "192.168.1.5", 5025},
        {"TCPIP::supply.lab::1::SOCKET", "supply.lab", 1},
        {"TCPIP65535::host::65535::SOCKET", "host", 65535},
        {"tcpip0::Host::5025::socket", "Host", 5025},
        {"TcpIp7::host::5025::sOcKeT", "host", 5025},
        {"TCPIP0::[::1]::5025::SOCKET", "::1", 5025},
        {"TCPIP0::[fe80::1%eth0]::5025::SOCKET", "fe80::1%eth0", 5025},
        {"TCPIP0::[::ffff:10.0.0.1]::5025::SOCKET", "::ffff:10.0.0.1", 5025},
        {"TCPIP0::[2001:DB8::A]::5025::SOCKET", "2001:DB8::A", 5025},
    };
    for (const auto& [text, host, port] : cases) {
        const auto name = ParseResourceName(text);
        ASSERT_TRUE(name) << text;
        EXPECT_EQ(name->interface, Interface::Socket) << text;
        EXPECT_EQ(name->host, host) << text;
        EXPECT_EQ(name->port, port) << text;
    }
}

TEST(VisaResource, SerialLinesHaveADeviceInItsOwnLetterCase) {
    const std::pair<const char*, const char*> cases[] = {
        {"ASRL1::INSTR", "1"},
        {"asrl12::instr", "12"},
        {"ASRL3", "3"},
        {"ASRL/dev/ttyUSB0::INSTR", "/dev/ttyUSB0"},
        {"asrl/dev/serial/by-id/X-1::instr", "/dev/serial/by-id/X-1"},
    };
    for (const auto& [text, device] : cases) {
        const auto name = ParseResourceName(text);
        ASSERT_TRUE(name) << text;
        EXPECT_EQ(name->interface, Interface::Serial) << text;
        EXPECT_EQ(name->device, device) << text;
    }
}

TEST(VisaResource, OtherKindsAreRecognized) {
    for (const auto* text : {
             "GPIB0::5::INSTR",
             "gpib::5::2::instr",
             "GPIB0::INTFC",
             "USB0::0x1234::0x5678::SN1::INSTR",
             "USB::0x1234::0x5678::SN1::0::INSTR",
             "USB0::0x1234::0x5678::SN1::RAW",
             "TCPIP0::host::inst0::INSTR",
             "TCPIP0::host::hislip0,4880::INSTR",
             "TCPIP0::host::INSTR",
             "TCPIP0::host",
             "PXI0::3::INSTR",
             "VXI0::1::INSTR",
             "GPIB-VXI0::1::INSTR",
             "FIREWIRE0::1::2::INSTR",
         }) {
        const auto name = ParseResourceName(text);
        ASSERT_TRUE(name) << text;
        EXPECT_EQ(name->interface, Interface::Other) << text;
    }
}

TEST(VisaResource, MalformedNamesAreRefused) {
    for (const auto* text : {
             "",
             "::",
             "TCPIP0",
             "TCPIP0::",
             "TCPIP0::::5025::SOCKET",
             "TCPIP0::host::::SOCKET",
             "TCPIP0::host::SOCKET",
             "TCPIP0::host::5025::SOCKET::",
             "TCPIP0::host::5025::SOCKET::INSTR",
             "TCPIP0::host::5025::inst0::SOCKET",
             "TCPIP0::host::0::SOCKET",
             "TCPIP0::host::65536::SOCKET",
             "TCPIP0::host::-1::SOCKET",
             "TCPIP0::host::+5025::SOCKET",
             "TCPIP0::host::0x13::SOCKET",
             "TCPIP0::host::5025x::SOCKET",
             "TCPIP0::ho st::5025::SOCKET",
             "TCPIP0::host:5025::1::SOCKET",
             "TCPIP0::::1::5025::SOCKET",
             "TCPIP0::[::1::5025::SOCKET",
             "TCPIP0::::1]::5025::SOCKET",
             "TCPIP0::[::1]]::5025::SOCKET",
             "TCPIP0::[]::5025::SOCKET",
             "TCPIP0::[host]::5025::SOCKET",
             "TCPIP0::[10.0.0.1]::5025::SOCKET",
             "TCPIP0::[::1]x::5025::SOCKET",
             "TCPIPx::host::5025::SOCKET",
             "TCPIP65536::host::5025::SOCKET",
             "TCPIP-1::host::5025::SOCKET",
             " TCPIP0::host::5025::SOCKET",
             "TCPIP0::host::5025::SOCKET ",
             "TCPIP0::host::5025::SOCKET\n",
             "TCPIP0::a::b::c::INSTR",
             "TCP0::host::5025::SOCKET",
             "ASRL::INSTR",
             "ASRLx::INSTR",
             "ASRL1::SOCKET",
             "ASRL1::INSTR::INSTR",
             "ASR",
             "GPIB0",
             "GPIBx::5::INSTR",
             "USB0::1::2::3::4::5::INSTR",
             "FOO::1::INSTR",
             "[",
             "[]",
         }) {
        EXPECT_FALSE(ParseResourceName(text)) << text;
    }
}

TEST(VisaResource, TextsOfAnyLengthAndAnyBytesAreSafe) {
    const std::string host(1 << 20, 'h');
    const auto name = ParseResourceName("TCPIP0::" + host + "::5025::SOCKET");
    ASSERT_TRUE(name);
    EXPECT_EQ(name->host, host);
    EXPECT_FALSE(ParseResourceName(std::string(1 << 20, ':')));
    EXPECT_FALSE(ParseResourceName(std::string(1 << 20, '[')));
    EXPECT_FALSE(ParseResourceName(std::string("TCPIP0::h\0st::5025::SOCKET", 26)));
    EXPECT_FALSE(ParseResourceName("TCPIP0::h\x7Fst::5025::SOCKET"));
    EXPECT_TRUE(ParseResourceName("TCPIP0::h\xC3\xB6st::5025::SOCKET"));
}

} // namespace
