// Decisions made from a fuzzer's bytes. After the last byte every number is 0 and every text empty.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

namespace fuzz {

class ByteSource {
  public:
    ByteSource(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

    [[nodiscard]] bool Empty() const { return rest_.empty(); }

    std::uint8_t Byte() {
        if (rest_.empty()) {
            return 0;
        }
        const auto byte = rest_.front();
        rest_ = rest_.subspan(1);
        return byte;
    }
    bool Flag() { return (Byte() & 1U) != 0; }
    /// Less than `end`, which is at most 256.
    std::size_t Below(std::size_t end) { return Byte() % end; }

    template <typename Number>
    Number Bits() {
        Number number{};
        const auto count = std::min(sizeof number, rest_.size());
        std::memcpy(&number, rest_.data(), count);
        rest_ = rest_.subspan(count);
        return number;
    }

    /// A text of at most 255 bytes, which may include NULs.
    std::string Text() {
        const std::size_t wanted = Byte();
        const auto size = std::min(wanted, rest_.size());
        const std::string text(reinterpret_cast<const char*>(rest_.data()), size);
        rest_ = rest_.subspan(size);
        return text;
    }
    /// The bytes that are left.
    std::string Rest() {
        const std::string text(reinterpret_cast<const char*>(rest_.data()), rest_.size());
        rest_ = {};
        return text;
    }

  private:
    std::span<const std::uint8_t> rest_;
};

/// Ends the run when `holds` is false.
inline void Require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "fuzz: violated: %s\n", what);
        std::abort();
    }
}

} // namespace fuzz

/// libFuzzer's entry point.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
