// Sessions of the built-in VISA for its tests.
#pragma once

#include <dirent.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/visa.h"

namespace visa_session {

inline constexpr ViUInt32 kOpenTimeout = 20000; // ms; a hang guard

/// The result of a read.
struct Reply {
    ViStatus status = -1;
    std::string bytes;
    bool operator==(const Reply&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Reply& reply) {
    return out << std::hex << reply.status << " \"" << reply.bytes << '"';
}

/// A resource manager with an open instrument, closed by the destructor.
class Connection {
  public:
    explicit Connection(const std::string& resource) {
        EXPECT_EQ(viOpenDefaultRM(&rm), VI_SUCCESS);
        EXPECT_EQ(viOpen(rm, resource.c_str(), VI_NULL, kOpenTimeout, &vi), VI_SUCCESS) << resource;
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() { viClose(rm); }

    /// Line feed as termination character.
    void EnableTermination() const { EXPECT_EQ(viSetAttribute(vi, VI_ATTR_TERMCHAR_EN, VI_TRUE), VI_SUCCESS); }
    void SetTimeout(ViUInt32 ms) const { EXPECT_EQ(viSetAttribute(vi, VI_ATTR_TMO_VALUE, ms), VI_SUCCESS); }

    [[nodiscard]] ViStatus Write(std::string_view bytes) const {
        ViUInt32 written = 77777;
        const auto status =
            viWrite(vi, reinterpret_cast<ViConstBuf>(bytes.data()), static_cast<ViUInt32>(bytes.size()), &written);
        if (status == VI_SUCCESS) {
            EXPECT_EQ(written, bytes.size());
        }
        return status;
    }

    [[nodiscard]] Reply Read(ViUInt32 size = 1024) const {
        std::vector<ViByte> buffer(size + 1, '#');
        ViUInt32 got = 77777;
        const auto status = viRead(vi, buffer.data(), size, &got);
        EXPECT_LE(got, size);
        EXPECT_EQ(buffer[size], '#');
        return {status, std::string(buffer.begin(), buffer.begin() + got)};
    }

    ViSession rm = VI_NULL; // NOLINT: a plain holder
    ViSession vi = VI_NULL; // NOLINT
};

/// The numbers of this process's open files without the standard streams.
inline std::set<int> OpenFiles() {
    std::set<int> files;
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir("/proc/self/fd"), ::closedir);
    while (const auto* entry = ::readdir(directory.get())) {
        const int file = std::atoi(entry->d_name);
        if (file > 2 && file != ::dirfd(directory.get())) {
            files.insert(file);
        }
    }
    return files;
}

} // namespace visa_session
