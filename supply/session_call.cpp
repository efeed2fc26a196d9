#include "supply/session_call.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>
#endif

#include "supply/error_message.h"

namespace supply {
namespace {

/// The beginning of what the session service's data pointer leads to in a session of this driver (nrt2::SessionAnchor).
struct Anchor {
    std::uint64_t tag;
    tarnex::SessionExtension* extension;
};

/// The beginning of a SessionExtension, which is the same in every version.
struct Versions {
    std::uint32_t version;
    std::uint32_t size;
};

#ifndef _WIN32
/// Copies a few bytes that may not exist: the kernel refuses to write them into a pipe then. Needs two descriptors for
/// a moment, which is why it is not the first choice.
bool ReadThroughPipe(const void* from, void* to, std::size_t size) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        return false;
    }
    const auto whole = static_cast<ssize_t>(size);
    // Not write(): the address sanitizer's looks at the memory before the kernel does, and ends the program.
    const bool copied = ::syscall(SYS_write, ends[1], from, size) == whole && ::read(ends[0], to, size) == whole;
    ::close(ends[0]);
    ::close(ends[1]);
    return copied;
}
#endif

/// Copies memory of this process that may not exist.
bool ReadMemory(const void* from, void* to, std::size_t size) {
#ifdef _WIN32
    SIZE_T copied = 0;
    return ::ReadProcessMemory(::GetCurrentProcess(), from, to, size, &copied) != 0 && copied == size;
#else
    iovec local{to, size};
    iovec remote{const_cast<void*>(from), size}; // NOLINT(cppcoreguidelines-pro-type-const-cast): only read
    const auto copied = ::process_vm_readv(::getpid(), &local, 1, &remote, 1, 0);
    if (copied < 0 && (errno == EPERM || errno == ENOSYS)) {
        return ReadThroughPipe(from, to, size); // some sandboxes forbid the call
    }
    return copied == static_cast<ssize_t>(size);
#endif
}

/// Returns the extension of a session of this driver, or null with the reason in `status`. Never follows an address of
/// another driver's session.
tarnex::SessionExtension* Recognize(ViSession vi, ViAddr address, ViStatus& status) {
    // A session that this thread has recognised before costs no system call.
    struct Known {
        ViSession vi = VI_NULL;
        ViAddr address = nullptr;
    };
    static thread_local Known known;
    Anchor anchor{};
    if (known.vi == vi && known.address == address) {
        std::memcpy(&anchor, address, sizeof anchor);
        return anchor.extension;
    }
    Versions versions{};
    if (!ReadMemory(address, &anchor, sizeof anchor) || anchor.tag != tarnex::kSessionTag ||
        !ReadMemory(anchor.extension, &versions, sizeof versions)) {
        status = RecordOwnError(vi, TARNEXSUPPLY_ERROR_OTHER_DRIVER);
        return nullptr;
    }
    if (versions.version != tarnex::kSessionInterfaceVersion || versions.size != tarnex::kSessionInterfaceSize) {
        status = RecordOwnError(vi, TARNEXSUPPLY_ERROR_OTHER_VERSION);
        return nullptr;
    }
    known = {vi, address};
    return anchor.extension;
}

} // namespace

tarnex::SessionExtension* FindExtension(ViSession vi, ViStatus& status) {
    ViAddr address = nullptr;
    status = IviSession_GetDataPtr(vi, &address);
    if (status < 0 || address == nullptr) {
        status = IVI_ERROR_INVALID_SESSION_HANDLE;
        return nullptr;
    }
    return Recognize(vi, address, status);
}

SupplySession* FindSession(ViSession vi, ViStatus& status) {
    auto* const extension = FindExtension(vi, status);
    if (extension == nullptr) {
        return nullptr;
    }
    if (extension->attachment == nullptr) {
        extension->attachment = std::make_unique<SupplySession>(vi, *extension).release();
        extension->destroy = [](void* attachment) {
            const std::unique_ptr<SupplySession> owned(static_cast<SupplySession*>(attachment));
        };
    }
    return static_cast<SupplySession*>(extension->attachment);
}

} // namespace supply
