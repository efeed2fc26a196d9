#include "tools/virtual_supply/faults.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>
#include <system_error>

namespace virtual_supply {

namespace {

using namespace std::string_view_literals;

constexpr auto kGarbageReply = "\xff\x00%s%n{}?!\x01\n"sv;

struct FaultName {
    std::string_view name;
    FaultKind kind;
    std::string_view value; // placeholder of its value; empty: takes none
};

constexpr std::array<FaultName, 7> kFaultNames{{
    {"drop", FaultKind::Drop, ""},
    {"delay", FaultKind::Delay, "MS"},
    {"silent", FaultKind::Silent, ""},
    {"garbage", FaultKind::Garbage, ""},
    {"cut", FaultKind::Cut, ""},
    {"long", FaultKind::Long, "BYTES"},
    {"crlf", FaultKind::CrLf, ""},
}};

[[noreturn]] void Reject(std::string_view text, std::string_view why) {
    throw std::invalid_argument("fault '" + std::string(text) + "': " + std::string(why));
}

std::uint64_t ParseCount(std::string_view text, std::string_view digits, std::uint64_t maximum, std::string_view what) {
    std::uint64_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, number);
    if (error != std::errc() || rest != end || number == 0 || number > maximum) {
        Reject(text, std::string(what) + " must be a number from 1 to " + std::to_string(maximum));
    }
    return number;
}

/// Returns "drop, delay=MS, ... and crlf".
std::string KnownKinds() {
    std::string kinds;
    for (const FaultName& each : kFaultNames) {
        kinds += &each == &kFaultNames.front() ? "" : &each == &kFaultNames.back() ? " and " : ", ";
        kinds += each.name;
        kinds += each.value.empty() ? "" : "=" + std::string(each.value);
    }
    return kinds;
}

/// Removes the separator and the text after it from `text`, and returns the text after it; nothing when there is no
/// separator.
std::optional<std::string_view> CutAfter(std::string_view& text, char separator) {
    const auto place = text.find(separator);
    if (place == std::string_view::npos) {
        return std::nullopt;
    }
    const auto after = text.substr(place + 1);
    text = text.substr(0, place);
    return after;
}

void Impose(const Fault& fault, Disturbance& disturbance) {
    switch (fault.kind) {
    case FaultKind::Drop:
        disturbance.drop = true;
        break;
    case FaultKind::Delay:
        disturbance.delay += std::chrono::milliseconds(fault.value);
        break;
    case FaultKind::Silent:
        disturbance.silent = true;
        break;
    case FaultKind::Garbage:
        disturbance.garbage = true;
        break;
    case FaultKind::Cut:
        disturbance.cut = true;
        break;
    case FaultKind::Long:
        disturbance.longReply = static_cast<std::size_t>(fault.value);
        break;
    case FaultKind::CrLf:
        disturbance.crlf = true;
        break;
    }
}

} // namespace

Fault ParseFault(std::string_view text) {
    constexpr auto kAnyNumber = std::numeric_limits<std::uint64_t>::max();
    std::string_view name = text;
    auto first = CutAfter(name, '@');
    const auto value = CutAfter(name, '=');

    const auto found =
        std::find_if(kFaultNames.begin(), kFaultNames.end(), [&](const FaultName& each) { return each.name == name; });
    if (found == kFaultNames.end()) {
        Reject(text, "the kinds are " + KnownKinds());
    }
    Fault fault;
    fault.kind = found->kind;
    if (!found->value.empty()) {
        fault.value = ParseCount(text, value.value_or(""), kMaxFaultValue, "the value after '='");
    } else if (value) {
        Reject(text, "this kind takes no value");
    }
    if (first) {
        const auto count = CutAfter(*first, '+');
        fault.first = ParseCount(text, *first, kAnyNumber, "the command after '@'");
        if (count) {
            fault.count = ParseCount(text, *count, kAnyNumber, "the count after '+'");
        }
    }
    return fault;
}

std::string Disturbance::Wire(std::string reply) const {
    if (reply.empty() || silent) {
        return {};
    }
    if (garbage) {
        return std::string(kGarbageReply);
    }
    if (reply.size() < longReply) {
        reply.append(longReply - reply.size(), 'X');
    }
    if (cut) {
        return reply.substr(0, reply.size() / 2);
    }
    reply += crlf ? "\r\n" : "\n";
    return reply;
}

void FaultPlan::Add(const Fault& fault) {
    const std::lock_guard lock(mutex_);
    faults_.push_back(fault);
}

void FaultPlan::AddForNext(FaultKind kind, std::uint64_t value, std::uint64_t count) {
    const std::lock_guard lock(mutex_);
    faults_.push_back({kind, value, received_ + 1, count});
}

void FaultPlan::Clear() {
    const std::lock_guard lock(mutex_);
    faults_.clear();
}

std::uint64_t FaultPlan::Received() const {
    const std::lock_guard lock(mutex_);
    return received_;
}

Disturbance FaultPlan::Next() {
    const std::lock_guard lock(mutex_);
    ++received_;
    Disturbance disturbance;
    for (const Fault& fault : faults_) {
        if (received_ >= fault.first && received_ - fault.first < fault.count) {
            Impose(fault, disturbance);
        }
    }
    return disturbance;
}

} // namespace virtual_supply
