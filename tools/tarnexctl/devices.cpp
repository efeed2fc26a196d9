#include "tools/tarnexctl/devices.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>

#ifdef _WIN32
#include <windows.h>
#endif

namespace tarnexctl {

#ifdef _WIN32

std::vector<Device> FindDevices() {
    constexpr int kMostPorts = 256;
    std::vector<Device> devices;
    for (int port = 1; port <= kMostPorts; ++port) {
        const auto name = "COM" + std::to_string(port);
        char target[512];
        if (::QueryDosDeviceA(name.c_str(), target, sizeof target) != 0) {
            devices.push_back({"ASRL" + std::to_string(port) + "::INSTR", name + ' ' + target});
        }
    }
    return devices;
}

#else

namespace {

namespace fs = std::filesystem;

/// Returns the first line of a small file of the kernel; empty when it cannot be read.
std::string Line(const fs::path& path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    return line;
}

std::vector<fs::path> Entries(const fs::path& folder) {
    std::error_code error;
    std::vector<fs::path> entries;
    for (fs::directory_iterator each(folder, error), end; !error && each != end; each.increment(error)) {
        entries.push_back(each->path());
    }
    return entries;
}

/// Returns the folder of the USB device that an interface or a line belongs to; empty when there is none.
fs::path UsbDeviceOf(const fs::path& folder) {
    std::error_code error;
    for (auto each = fs::canonical(folder, error); !error && each.has_relative_path(); each = each.parent_path()) {
        if (fs::exists(each / "idVendor", error)) {
            return each;
        }
    }
    return {};
}

std::string UsbDescription(const fs::path& device) {
    std::string description = Line(device / "manufacturer");
    for (const auto* const name : {"product", "serial"}) {
        const auto text = Line(device / name);
        description += (description.empty() || text.empty() ? "" : " ") + text;
    }
    return description;
}

/// Adds the lines below `folder`, which is /sys/class/tty.
void AddSerialLines(const fs::path& folder, std::vector<Device>& devices) {
    for (const auto& line : Entries(folder)) {
        std::error_code error;
        // A line without hardware has no driver, or is one of the four that a PC always has (type 0 is "unknown").
        if (!fs::exists(line / "device" / "driver", error) || Line(line / "type") == "0") {
            continue;
        }
        const auto usb = UsbDeviceOf(line / "device");
        devices.push_back({"ASRL/dev/" + line.filename().string() + "::INSTR",
                           usb.empty() ? "serial line" : "serial line, " + UsbDescription(usb)});
    }
}

/// Adds the USB instruments below `folder`, which is /sys/bus/usb/devices.
void AddUsbInstruments(const fs::path& folder, std::vector<Device>& devices) {
    for (const auto& interface : Entries(folder)) {
        if (Line(interface / "bInterfaceClass") != "fe" || Line(interface / "bInterfaceSubClass") != "03") {
            continue;
        }
        const auto usb = UsbDeviceOf(interface);
        devices.push_back({"USB0::0x" + Line(usb / "idVendor") + "::0x" + Line(usb / "idProduct") +
                               "::" + Line(usb / "serial") + "::INSTR",
                           UsbDescription(usb)});
    }
}

} // namespace

std::vector<Device> FindDevices() {
    // For tests, which cannot plug in devices.
    const char* const root = std::getenv("TARNEXCTL_SYSFS"); // NOLINT(concurrency-mt-unsafe): nothing changes it
    const fs::path system = root == nullptr ? "/sys" : root;
    std::vector<Device> devices;
    AddSerialLines(system / "class/tty", devices);
    AddUsbInstruments(system / "bus/usb/devices", devices);
    std::sort(devices.begin(), devices.end(),
              [](const Device& one, const Device& other) { return one.resource < other.resource; });
    return devices;
}

#endif

} // namespace tarnexctl
