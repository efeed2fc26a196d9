// The kinds of rows in the attribute table. Each kind is a pair of accessors whose template arguments are what a row
// adds: the getter's name for error descriptions, then the value, flag, text or instrument operation. Lock, null check,
// channel, exchange and status check are written here, once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string_view>
#include <type_traits>

#include "driver/channel_calls.h"
#include "framework/attribute_engine.h"
#include "framework/string_buffer.h"

namespace tarnex {

/// A string literal as a template argument.
template <std::size_t kSize>
struct Literal {
    constexpr Literal(const char (&literal)[kSize]) { std::copy_n(literal, kSize, text); } // NOLINT: converts
    [[nodiscard]] constexpr std::string_view View() const { return {text, kSize - 1}; }
    char text[kSize]{};
};

/// A getter's frame: the session's lock, then the check for null, then `read(session)`.
template <Literal kFunction, typename Read>
ViStatus GetLocked(ViSession vi, const void* value, const Read& read) {
    return LockedCall(vi, [&](TARNEXDriverSession& session) -> ViStatus {
        const auto status = nrt2::CheckParameters(vi, kFunction.View(), "AttributeValue", {value});
        return status == VI_SUCCESS ? read(session) : status;
    });
}

inline constexpr auto kReadOnly = nullptr;

/// A value of the session as a whole: `kRead(session)` gives it, `kWrite(session, value)` takes it and returns a
/// status.
template <Literal kFunction, typename T, auto kRead, auto kWrite>
constexpr nrt2::Accessors<T> MakeSessionAccessors() {
    nrt2::Accessors<T> accessors{[](ViSession vi, ViConstString /*repCapName*/, T* value) {
                                     return GetLocked<kFunction>(vi, value, [&](TARNEXDriverSession& session) {
                                         *value = static_cast<T>(std::invoke(kRead, session));
                                         return ViStatus{VI_SUCCESS};
                                     });
                                 },
                                 nullptr};
    if constexpr (!std::is_null_pointer_v<decltype(kWrite)>) {
        accessors.set = [](ViSession vi, ViConstString /*repCapName*/, T value) {
            return LockedCall(vi, [&](TARNEXDriverSession& session) { return kWrite(session, value); });
        };
    }
    return accessors;
}

/// A value of one channel: `kRead(session, channel, value)` and `kWrite(instrument, channel, value)` return a status.
/// Getters take exactly one channel, setters a selector.
template <Literal kFunction, typename T, auto kRead, auto kWrite>
constexpr nrt2::Accessors<T> MakeChannelAccessors() {
    return {[](ViSession vi, ViConstString repCapName, T* value) {
                return GetLocked<kFunction>(vi, value, [&](TARNEXDriverSession& session) {
                    OutputChannelName name;
                    const auto status = OutputChannels::ExpandSingle(session, repCapName, name);
                    return status == VI_SUCCESS ? kRead(session, ChannelOf(name), *value) : status;
                });
            },
            [](ViSession vi, ViConstString repCapName, T value) {
                return Configure(vi, repCapName, [=](ORVA::InstBase& instrument, ORVA::ChannelNumber channel) {
                    return std::invoke(kWrite, instrument, channel, value);
                });
            }};
}

/// A switch that cannot be switched: writes succeed and change nothing.
template <Literal kFunction, ViBoolean kValue>
constexpr auto
    kFixedSwitch = MakeSessionAccessors<kFunction, ViBoolean, [](const TARNEXDriverSession&) { return kValue; },
                                        [](const TARNEXDriverSession&, ViBoolean) { return VI_SUCCESS; }>();

template <Literal kFunction, ViInt32 kValue>
constexpr auto kFixedInteger =
    MakeSessionAccessors<kFunction, ViInt32, [](const TARNEXDriverSession&) { return kValue; }, kReadOnly>();

/// An inherent option of the session.
template <Literal kFunction, bool text::InherentOptions::*kFlag, auto kWrite>
constexpr auto kInherentFlag = MakeSessionAccessors<
    kFunction, ViBoolean,
    [](const TARNEXDriverSession& session) { return session.Flags().*kFlag ? VI_TRUE : VI_FALSE; }, kWrite>();

/// A text of the session or of the driver's identity; read-only.
template <Literal kFunction, auto kRead>
constexpr nrt2::Accessors<ViString> kText{
    [](ViSession vi, ViConstString /*repCapName*/, ViInt32 bufferSize, ViChar value[]) {
        return GetLocked<kFunction>(vi, value, [&](const TARNEXDriverSession& session) {
            if constexpr (std::is_invocable_v<decltype(kRead), const TARNEXDriverSession&>) {
                nrt2::CopyTruncated(std::invoke(kRead, session), bufferSize, value);
            } else {
                nrt2::CopyTruncated(std::invoke(kRead, session.Driver()), bufferSize, value);
            }
            return ViStatus{VI_SUCCESS};
        });
    },
    nullptr};

/// A level of a channel in volts or amperes.
template <Literal kFunction, auto kGet, auto kSet>
constexpr auto
    kLevel = MakeChannelAccessors<kFunction, ViReal64,
                                  [](TARNEXDriverSession& session, ORVA::ChannelNumber channel, ViReal64& value) {
                                      const ViStatus status = std::invoke(kGet, session.Instrument(), channel, value);
                                      return status == VI_SUCCESS ? session.CheckStatus()
                                                                  : session.RecordIfError(status);
                                  },
                                  kSet>();

/// A switch of a channel: every value but VI_FALSE is on.
template <Literal kFunction, auto kGet, auto kSet>
constexpr auto
    kSwitch = MakeChannelAccessors<kFunction, ViBoolean,
                                   [](TARNEXDriverSession& session, ORVA::ChannelNumber channel, ViBoolean& value) {
                                       bool on = false;
                                       const ViStatus status = std::invoke(kGet, session.Instrument(), channel, on);
                                       if (status >= 0) {
                                           value = on ? VI_TRUE : VI_FALSE;
                                       }
                                       return status == VI_SUCCESS ? session.CheckStatus()
                                                                   : session.RecordIfError(status);
                                   },
                                   [](ORVA::InstBase& instrument, ORVA::ChannelNumber channel, ViBoolean value) {
                                       return std::invoke(kSet, instrument, channel, value != VI_FALSE);
                                   }>();

/// An integer of a channel, read and written by functions of its own.
template <Literal kFunction, auto kRead, auto kWrite>
constexpr auto kChoice = MakeChannelAccessors<kFunction, ViInt32, kRead, kWrite>();

} // namespace tarnex
