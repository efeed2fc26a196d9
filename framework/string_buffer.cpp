#include "framework/string_buffer.h"

#include <algorithm>
#include <cstddef>

namespace nrt2 {

void CopyTruncated(std::string_view text, ViInt32 size, ViChar buffer[]) {
    const auto count = std::min(text.size(), static_cast<std::size_t>(size) - 1);
    std::copy_n(text.data(), count, buffer);
    buffer[count] = '\0';
}

bool IsFull(ViInt32 size, const ViChar buffer[]) {
    const auto* const last = buffer + size - 1;
    return std::find(buffer, last, '\0') == last && *last == '\0';
}

} // namespace nrt2
