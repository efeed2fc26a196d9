#include "tools/virtual_supply/status.h"

#include <array>
#include <utility>

namespace virtual_supply {

namespace {

unsigned EventBit(int code) {
    constexpr std::array<unsigned, 5> kBitOfClass{0, 0x20, 0x10, 0x08, 0x04};
    const auto errorClass = static_cast<std::size_t>(-code / 100);
    return errorClass < kBitOfClass.size() ? kBitOfClass[errorClass] : 0;
}

} // namespace

void Status::Report(const ScpiError& error) {
    eventStatus_ |= EventBit(error.code);
    if (errors_.size() < kErrorQueueDepth) {
        errors_.push_back(error);
        return;
    }
    errors_.back() = kQueueOverflow;
    eventStatus_ |= EventBit(kQueueOverflow.code);
}

ScpiError Status::TakeError() {
    if (errors_.empty()) {
        return kNoError;
    }
    const ScpiError oldest = errors_.front();
    errors_.pop_front();
    return oldest;
}

unsigned Status::TakeEventStatus() { return std::exchange(eventStatus_, 0); }

void Status::Clear() {
    errors_.clear();
    eventStatus_ = 0;
}

} // namespace virtual_supply
