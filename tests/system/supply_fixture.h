// A virtual supply on its own loopback port or pseudo-terminal, and the driver's exports over the built-in runtime.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "include/TARNEX.h"
#include "tools/virtual_supply/server.h"
#include "tools/virtual_supply/virtual_supply.h"

namespace system_tests {

/// A folder that is removed at the end of the test.
class ScratchFolder {
  public:
    ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();

    /// Writes a file and returns its path.
    [[nodiscard]] std::string Write(const std::string& name, const std::string& content) const;
    [[nodiscard]] std::string Path(const std::string& name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

struct DriverError {
    unsigned code;
    std::string description;
    bool operator==(const DriverError&) const = default;
};

inline void PrintTo(const DriverError& error, std::ostream* out) {
    *out << "0x" << std::hex << std::uppercase << error.code << std::dec << " \"" << error.description << '"';
}

class SupplyTest : public testing::Test {
  protected:
    /// No configuration store, 10 ohms at channel 1.
    explicit SupplyTest(const virtual_supply::ServerOptions& options = {});
    ~SupplyTest() override;

    /// Opens a session; expects success.
    ViSession Open(const std::string& optionString = "", ViBoolean idQuery = VI_FALSE, ViBoolean reset = VI_FALSE);
    ViStatus TryOpen(const std::string& resource, const std::string& optionString, ViSession& vi,
                     ViBoolean idQuery = VI_FALSE, ViBoolean reset = VI_FALSE);

    static DriverError LastError(ViSession vi);
    static std::string GetText(ViSession vi, ViAttr attribute);
    static double Measure(ViSession vi, const char* channel, ViInt32 type);
    static bool InState(ViSession vi, const char* channel, ViInt32 state);
    static double GetReal(ViSession vi, const char* channel, ViAttr attribute);
    static bool GetBoolean(ViSession vi, const char* channel, ViAttr attribute);

    /// Returns the supply's own reply to a command, without the driver.
    std::string Ask(const std::string& command) { return supply_.Execute(command); }

    /// Makes the configuration server look for its store at `path`.
    static void UseStore(const std::string& path);

    ScratchFolder scratch_;
    virtual_supply::VirtualSupply supply_;
    std::optional<virtual_supply::VirtualSupplyServer> server_;

  private:
    std::vector<ViSession> opened_;
};

enum class Line { Tcp, PseudoTerminal };

/// The same over each kind of line.
class SupplyOverEachLine : public SupplyTest, public testing::WithParamInterface<Line> {
  protected:
    explicit SupplyOverEachLine(const virtual_supply::ServerOptions& options = {})
        : SupplyTest(OverThisLine(options)) {}

    static virtual_supply::ServerOptions OverThisLine(virtual_supply::ServerOptions options) {
        options.pseudoTerminal = GetParam() == Line::PseudoTerminal;
        return options;
    }
};

inline std::string LineName(const testing::TestParamInfo<Line>& line) {
    return line.param == Line::Tcp ? "Tcp" : "PseudoTerminal";
}

/// The statuses of a query over a socket or a serial line: success, and a failed exchange.
inline constexpr ViStatus kTermChar = 0x3FFF0005;
inline constexpr auto kIoError = static_cast<ViStatus>(0xBFFA4214);

} // namespace system_tests
