// Texts in caller-supplied buffers (IVI-3.2, 3.1.2.1).
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string_view>

#include "platform/session_service.h"
#include "platform/vi_types.h"

namespace runtime {

/// Copies `text` and a NUL into `buffer` of `size` bytes.
/// A negative size copies everything. Size 0 writes nothing and allows a null buffer.
/// Returns VI_SUCCESS when the text fits, else the size that it needs. A null buffer of another size is
/// IVI_ERROR_NULL_POINTER.
inline ViStatus CopyToIviBuffer(std::string_view text, ViInt32 size, ViChar* buffer) {
    constexpr std::size_t kLargest = std::numeric_limits<ViStatus>::max();
    const auto needed = static_cast<ViStatus>(std::min(text.size() + 1, kLargest));
    if (size == 0) {
        return needed;
    }
    if (buffer == nullptr) {
        return IVI_ERROR_NULL_POINTER;
    }
    const bool fits = size < 0 || text.size() < static_cast<std::size_t>(size);
    const auto length = fits ? text.size() : static_cast<std::size_t>(size) - 1;
    std::copy_n(text.data(), length, buffer);
    buffer[length] = '\0';
    return fits ? VI_SUCCESS : needed;
}

} // namespace runtime
