// What a session of this driver offers to the supply library, which is a module of its own and may have another C++
// runtime: C types only, and no exception passes.
//
// The session service's data pointer leads to it: the pointer's target is an nrt2::SessionAnchor, whose tag is
// kSessionTag and whose extension is a SessionExtension. Both modules must be of one version of the project: `version`
// and `size` say so, and the supply library refuses a session whose values differ from its own.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/vi_types.h"

namespace tarnex {

inline constexpr std::uint64_t kSessionTag = 0x3173'7865'6E72'6174; // "tarnexs1" in memory
inline constexpr std::uint32_t kSessionInterfaceVersion = 1;

/// The first argument is always SessionExtension::session. The caller must hold the session's lock. A negative status
/// of `expand` has been recorded on the session; others have not.
struct SessionFunctions {
    /// Expands a selector to channel numbers. `capacity` is the size of `channels`; `single` refuses more than one
    /// channel.
    ViStatus (*expand)(void* session, ViConstString selector, ViBoolean single, ViUInt32* channels, ViUInt32 capacity,
                       ViUInt32* count);
    /// VI_TRUE while a simulator is in the instrument's place; nothing below then has an effect.
    ViBoolean (*isSimulated)(void* session);
    /// Sends one line; returns VISA's status.
    ViStatus (*write)(void* session, const char* line, std::size_t size);
    /// Receives one reply, which is valid until the next call; returns VISA's status.
    ViStatus (*read)(void* session, const char** reply, std::size_t* size);
    /// Whether the instrument's event status is to be checked after a call.
    ViBoolean (*checksStatus)(void* session);
    ViUInt32 (*getTimeout)(void* session); ///< ms
    ViStatus (*setTimeout)(void* session, ViUInt32 milliseconds);
    /// VI_FALSE after an exchange that failed or whose reply was malformed.
    ViBoolean (*isInStep)(void* session);
    void (*setInStep)(void* session, ViBoolean inStep);
    /// Opens the connection anew and checks the identity.
    ViStatus (*reopen)(void* session);
    /// Checks the identity over the present connection.
    ViStatus (*verifyIdentity)(void* session);
    /// VISA's handle of the instrument; VI_NULL without a connection.
    ViSession (*visaSession)(void* session);
    /// The resource that was opened.
    const char* (*resource)(void* session);
    /// The four fields of the identity, valid until the next call.
    void (*identity)(void* session, const char* fields[4]);
    /// Sets the trace of the traffic; null removes it.
    void (*trace)(void* session,
                  void (*callback)(void* context, ViBoolean sent, ViStatus status, const char* text, ViUInt32 size),
                  void* context);
};

struct SessionExtension {
    std::uint32_t version; ///< kSessionInterfaceVersion
    std::uint32_t size;    ///< of this struct plus that of the functions
    const char* revision;  ///< of the driver
    void* session;
    const SessionFunctions* functions;
    /// An object of the supply library that lives as long as the session; the session destroys it with `destroy`.
    void* attachment;
    void (*destroy)(void* attachment);
};

inline constexpr std::uint32_t kSessionInterfaceSize = sizeof(SessionExtension) + sizeof(SessionFunctions);

} // namespace tarnex
