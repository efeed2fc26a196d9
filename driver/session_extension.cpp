#include "driver/session_extension.h"

#include <exception>
#include <new>
#include <string>

#include "driver/channel_calls.h"
#include "instrument/tarnex_supply.h"

namespace tarnex {
namespace {

TARNEXDriverSession& SessionOf(void* session) { return *static_cast<TARNEXDriverSession*>(session); }

/// Runs `body()`. An exception, which must not pass between modules, becomes a status.
template <typename Body>
ViStatus CatchReplyErrors(const Body& body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return IVI_ERROR_OUT_OF_MEMORY;
    } catch (const std::exception&) {
        return IVI_ERROR_UNEXPECTED_RESPONSE; // the only other exceptions are those of malformed replies
    }
}

ViStatus ExpandSelector(void* session, ViConstString selector, ViBoolean single, ViUInt32* channels, ViUInt32 capacity,
                        ViUInt32* count) {
    auto& target = SessionOf(session);
    const auto expand = [&]() -> ViStatus {
        *count = 0;
        if (single != VI_FALSE) {
            OutputChannelName name;
            const auto status = OutputChannels::ExpandSingle(target, selector, name);
            if (status >= 0) {
                channels[(*count)++] = ChannelOf(name);
            }
            return status;
        }
        OutputChannels::NameList names;
        const auto status = OutputChannels::Expand(target, selector, names);
        if (status >= 0) {
            for (const auto& name : names) {
                if (*count < capacity) {
                    channels[(*count)++] = ChannelOf(name);
                }
            }
        }
        return status;
    };
    try {
        return expand();
    } catch (const std::bad_alloc&) {
        return target.Record(IVI_ERROR_OUT_OF_MEMORY);
    } catch (const std::exception&) {
        return target.Record(IVI_ERROR_CANNOT_RECOVER);
    }
}

/// Runs `body(connection)`; VI_ERROR_INV_OBJECT without a connection.
template <typename Body>
ViStatus OnConnection(void* session, const Body& body) noexcept {
    return CatchReplyErrors([&]() -> ViStatus {
        auto* const connection = SessionOf(session).Instrument().Connection();
        return connection == nullptr ? VI_ERROR_INV_OBJECT : body(*connection);
    });
}

} // namespace

const SessionFunctions kSessionFunctions{
    .expand = ExpandSelector,
    .isSimulated = [](void* session) -> ViBoolean {
        return SessionOf(session).Instrument().Connection() == nullptr ? VI_TRUE : VI_FALSE;
    },
    .write =
        [](void* session, const char* line, std::size_t size) {
            return OnConnection(session, [&](OpenVisa::VisaIO& connection) { return connection.write({line, size}); });
        },
    .read =
        [](void* session, const char** reply, std::size_t* size) {
            return OnConnection(session, [&](OpenVisa::VisaIO& connection) {
                auto& text = SessionOf(session).ReplyForExtension();
                text.clear();
                const auto status = connection.read(text);
                *reply = text.c_str();
                *size = text.size();
                return status;
            });
        },
    .checksStatus = [](void* session) -> ViBoolean {
        const auto& flags = SessionOf(session).Flags();
        return flags.queryInstrumentStatus && !flags.simulate ? VI_TRUE : VI_FALSE;
    },
    .getTimeout = [](void* session) { return SessionOf(session).Instrument().GetTimeout(); },
    .setTimeout =
        [](void* session, ViUInt32 milliseconds) {
            return CatchReplyErrors([&] { return SessionOf(session).Instrument().SetTimeout(milliseconds); });
        },
    .isInStep = [](void* session) -> ViBoolean {
        const auto* const connection = SessionOf(session).Instrument().Connection();
        return connection == nullptr || (connection->isOpen() && connection->isInStep()) ? VI_TRUE : VI_FALSE;
    },
    .setInStep =
        [](void* session, ViBoolean inStep) {
            if (auto* const connection = SessionOf(session).Instrument().Connection()) {
                connection->setInStep(inStep != VI_FALSE);
            }
        },
    .reopen = [](void* session) { return CatchReplyErrors([&] { return SessionOf(session).Instrument().Reopen(); }); },
    .verifyIdentity =
        [](void* session) {
            return CatchReplyErrors([&] { return SessionOf(session).Instrument().VerifyIdentity(); });
        },
    .visaSession = [](void* session) -> ViSession {
        const auto* const connection = SessionOf(session).Instrument().Connection();
        return connection == nullptr ? VI_NULL : connection->session();
    },
    .resource = [](void* session) { return SessionOf(session).IoResourceDescriptor().c_str(); },
    .identity =
        [](void* session, const char* fields[4]) {
            const auto& target = SessionOf(session);
            fields[0] = target.InstrumentManufacturer().c_str();
            fields[1] = target.InstrumentModel().c_str();
            fields[2] = target.InstrumentSerialNumber().c_str();
            fields[3] = target.InstrumentFirmwareRevision().c_str();
        },
    .trace =
        [](void* session, void (*callback)(void*, ViBoolean, ViStatus, const char*, ViUInt32), void* context) {
            SessionOf(session).Instrument().SetTrace({callback, context});
        },
};

} // namespace tarnex
