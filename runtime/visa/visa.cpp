#include "platform/visa.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <memory>
#include <utility>

#include "runtime/visa/resource_name.h"
#ifndef _WIN32
#include "runtime/visa/serial_transport.h"
#endif
#include "runtime/visa/session.h"
#include "runtime/visa/session_handles.h"
#include "runtime/visa/socket_transport.h"
#include "text/characters.h"

namespace {

using namespace runtime;

/// An interface kind and its function to connect, which returns null with the reason in the status on failure.
struct Connector {
    Interface interface;
    std::unique_ptr<Transport> (*connect)(const ResourceName& name, const Deadline& deadline, ViStatus& status);
};
constexpr Connector kConnectors[] = {
    {Interface::Socket, ConnectSocket},
#ifndef _WIN32
    {Interface::Serial, OpenSerialLine},
#endif
};

std::unique_ptr<Transport> Connect(const ResourceName& name, const Deadline& deadline, ViStatus& status) {
    const auto* connector = std::find_if(std::begin(kConnectors), std::end(kConnectors),
                                         [&](const auto& row) { return row.interface == name.interface; });
    if (connector == std::end(kConnectors)) {
        status = VI_ERROR_INTF_NUM_NCONFIG;
        return nullptr;
    }
    return connector->connect(name, deadline, status);
}

/// Runs `body()`. Returns VI_ERROR_ALLOC when memory or a thread is not available.
template <typename Body>
ViStatus CatchAllocationErrors(Body body) noexcept {
    try {
        return body();
    } catch (const std::exception&) {
        return VI_ERROR_ALLOC;
    }
}

/// Runs `body(session)` on the session of the handle.
template <typename Body>
ViStatus OnSession(ViSession handle, Body body) noexcept {
    return CatchAllocationErrors([&] {
        const auto session = FindSession(handle);
        return session == nullptr ? VI_ERROR_INV_OBJECT : body(*session);
    });
}

/// Runs `transfer(session)` and stores the number of moved bytes in `count`, which may be null.
template <typename Transfer>
ViStatus OnBuffer(ViSession handle, const ViByte* buffer, ViUInt32 size, ViUInt32* count, Transfer transfer) noexcept {
    return OnSession(handle, [&](Session& session) {
        const auto progress = buffer == nullptr && size != 0 ? Progress{VI_ERROR_USER_BUF, 0} : transfer(session);
        if (count != nullptr) {
            *count = static_cast<ViUInt32>(progress.bytes);
        }
        return progress.status;
    });
}

} // namespace

extern "C" {

ViStatus _VI_FUNC viOpenDefaultRM(ViSession* rm) {
    return CatchAllocationErrors([&] {
        if (rm == nullptr) {
            return VI_ERROR_INV_PARAMETER;
        }
        *rm = VI_NULL;
        *rm = AddSession(std::make_shared<ResourceManager>());
        return *rm == VI_NULL ? VI_ERROR_ALLOC : VI_SUCCESS;
    });
}

ViStatus _VI_FUNC viOpen(ViSession rm, ViConstRsrc name, ViAccessMode mode, ViUInt32 timeoutMs, ViSession* vi) {
    return CatchAllocationErrors([&]() -> ViStatus {
        if (vi == nullptr) {
            return VI_ERROR_INV_PARAMETER;
        }
        *vi = VI_NULL;
        const auto manager = std::dynamic_pointer_cast<ResourceManager>(FindSession(rm));
        if (manager == nullptr) {
            return VI_ERROR_INV_OBJECT;
        }
        const auto resource = ParseResourceName(text::ViewOf(name));
        if (!resource) {
            return VI_ERROR_INV_RSRC_NAME;
        }
        if (mode != VI_NULL) {
            return VI_ERROR_INV_ACC_MODE;
        }
        ViStatus status = VI_SUCCESS;
        auto transport = Connect(*resource, Deadline(timeoutMs), status);
        if (transport == nullptr) {
            return status;
        }
        const auto instrument = std::make_shared<Instrument>(manager, std::move(transport));
        const auto handle = AddSession(instrument);
        if (handle == VI_NULL) {
            return VI_ERROR_ALLOC;
        }
        if (!manager->Adopt(handle)) { // closed meanwhile
            RemoveSession(handle);
            return VI_ERROR_INV_OBJECT;
        }
        *vi = handle;
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC viClose(ViObject vi) {
    return CatchAllocationErrors([&] {
        const auto session = RemoveSession(vi);
        if (session == nullptr) {
            return VI_ERROR_INV_OBJECT;
        }
        session->Close(vi);
        return VI_SUCCESS;
    });
}

ViStatus _VI_FUNC viSetAttribute(ViObject vi, ViAttr name, ViAttrState value) {
    return OnSession(vi, [&](Session& session) { return session.SetAttribute(name, value); });
}

ViStatus _VI_FUNC viSetBuf(ViSession vi, ViUInt16 mask, ViUInt32 /*size*/) {
    return OnSession(vi, [&](Session& session) { return session.SetBuffer(mask); });
}

ViStatus _VI_FUNC viWrite(ViSession vi, ViConstBuf buf, ViUInt32 count, ViUInt32* written) {
    return OnBuffer(vi, buf, count, written, [&](Session& session) { return session.Write({buf, count}); });
}

ViStatus _VI_FUNC viClear(ViSession vi) {
    return OnSession(vi, [](Session& session) { return session.Clear(); });
}

ViStatus _VI_FUNC viRead(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* got) {
    return OnBuffer(vi, buf, count, got, [&](Session& session) { return session.Read({buf, count}); });
}

} // extern "C"
