// The supply as its clients see it: executes command lines and returns replies.
#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "tools/virtual_supply/instrument.h"

namespace virtual_supply {

struct SupplyOptions {
    std::string model = "TX4410";
    std::string serial = "SN00000001";
    Clock clock = [] { return std::chrono::steady_clock::now(); }; // for protection delays and sequences
};

/// A two-channel supply. Channel 1 has 0 to 22 V and 0 to 5.5 A, channel 2 has 0 to 5.5 V and 0 to 16.8 A. After
/// power-on and "*RST": 0 V, current at the channel's maximum, protections disabled with their levels at the maximum,
/// outputs off.
/// Thread-safe.
class VirtualSupply {
  public:
    explicit VirtualSupply(const SupplyOptions& options = {});

    /// Executes one command line and returns its reply, which is empty for a command that is not a query. A blank line
    /// is ignored.
    /// `line`: any bytes, without a line end. ';' is refused, because a line holds one command.
    /// On failure: adds an error to the error queue and returns an empty reply.
    std::string Execute(std::string_view line);

    /// Adds the error of an overlong line to the error queue.
    void ReportInputOverrun();

    /// Connects a resistance in ohms (0 is a short circuit) to the output of a channel, or disconnects the load.
    /// On failure: throws std::invalid_argument for another channel and for a value that is negative or not finite.
    void SetLoad(int channel, std::optional<double> ohms);

    const std::string& Model() const { return model_; }

  private:
    std::string Run(std::string_view line);

    const std::string model_;
    std::mutex mutex_; // guards instrument_
    Instrument instrument_;
};

} // namespace virtual_supply
