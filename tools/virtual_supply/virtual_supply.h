// The supply as its clients see it: command lines in, replies out.
#pragma once

#include "tools/virtual_supply/instrument.h"

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace virtual_supply {

struct SupplyOptions {
    std::string model = "TX4410";
    std::string serial = "SN00000001";
    Clock clock = [] { return std::chrono::steady_clock::now(); }; // decides when protection delays are over
};

/// A two-channel supply. Channel 1 gives 0 to 22 V and 0 to 5.5 A, channel 2 gives 0 to 5.5 V and 0 to 16.8 A. After
/// power-on and "*RST": 0 V, current at the channel's maximum, protections disabled with their levels at the maximum,
/// outputs off. All functions may be called from any thread.
class VirtualSupply {
  public:
    explicit VirtualSupply(const SupplyOptions& options = {});

    /// Carries out one command line, given without its line end, and returns the reply without a line end; empty when
    /// there is none, because the command is no query or because it was refused. Why a line was refused is left in
    /// the error queue. A line holds one command: ';' is refused. A blank line is nothing. Any bytes are welcome.
    std::string Execute(std::string_view line);

    /// Notes in the error queue that a line was too long to be taken in.
    void ReportInputOverrun();

    /// Connects a resistance (ohms, not negative, 0 is a short circuit) to the output of channel 1 or 2, or removes it.
    /// Throws std::invalid_argument for other values.
    void SetLoad(int channel, std::optional<double> ohms);

    const std::string& model() const { return model_; }

  private:
    std::string Run(std::string_view line);

    const std::string model_;
    std::mutex mutex_; // guards instrument_
    Instrument instrument_;
};

} // namespace virtual_supply
