#include "tests/doubles/script.h"

#include <algorithm>

namespace doubles {

namespace {
thread_local int doublesEntered = 0;
} // namespace

InsideDouble::InsideDouble() { ++doublesEntered; }
InsideDouble::~InsideDouble() { --doublesEntered; }
bool InsideDouble::Now() { return doublesEntered != 0; }

void Script::Reset() {
    const std::lock_guard lock(mutex_);
    calls_.clear();
    orders_.clear();
}

void Script::Fail(std::string function, ViStatus status, std::size_t nth, bool forever) {
    const std::lock_guard lock(mutex_);
    orders_.push_back({std::move(function), status, nth, forever});
}

ViStatus Script::Enter(std::string_view function) {
    const std::lock_guard lock(mutex_);
    calls_.emplace_back(function);
    for (auto& order : orders_) {
        if ((!order.function.empty() && order.function != function) || order.callsToGo == 0 || --order.callsToGo != 0) {
            continue;
        }
        if (order.forever) {
            order.callsToGo = 1;
        }
        return order.status;
    }
    return VI_SUCCESS;
}

std::vector<std::string> Script::Calls() const {
    const std::lock_guard lock(mutex_);
    return calls_;
}

std::size_t Script::Count(std::string_view function) const {
    const std::lock_guard lock(mutex_);
    return static_cast<std::size_t>(std::count(calls_.begin(), calls_.end(), function));
}

void Script::ForgetCalls() {
    const std::lock_guard lock(mutex_);
    calls_.clear();
}

Script& TheScript() {
    static Script script;
    return script;
}

ViStatus CopyOut(std::string_view text, ViInt32 size, ViChar buffer[]) {
    const auto needed = static_cast<ViInt32>(text.size()) + 1;
    if (size == 0) {
        return needed;
    }
    const auto count = size < 0 ? text.size() : std::min(text.size(), static_cast<std::size_t>(size) - 1);
    std::copy_n(text.data(), count, buffer);
    buffer[count] = '\0';
    return count < text.size() ? needed : VI_SUCCESS;
}

} // namespace doubles
