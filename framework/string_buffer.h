// Texts in caller-supplied buffers. Required: the reported size is always the same, unlike IVI-3.2, 3.1.2.1.
#pragma once

#include <string_view>

#include "platform/vi_types.h"

namespace nrt2 {

/// The size that is reported as required for every text.
inline constexpr ViInt32 kReportedTextSize = 4096;

/// Copies as much of `text` as fits and a NUL. `size` is in bytes and at least 1.
void CopyTruncated(std::string_view text, ViInt32 size, ViChar buffer[]);

/// Returns whether the text in `buffer` and its NUL use all `size` bytes, so that it may be truncated.
bool IsFull(ViInt32 size, const ViChar buffer[]);

/// Calls `get(size, buffer)` to fill the buffer.
/// Size 0: returns kReportedTextSize and writes nothing. Negative size: the buffer must have kReportedTextSize bytes.
/// Returns kReportedTextSize when the buffer is full, else the status of `get`.
template <typename Get>
ViStatus FillTextBuffer(ViInt32 size, ViChar buffer[], const Get& get) {
    if (size == 0) {
        return kReportedTextSize;
    }
    if (size < 0) {
        return get(kReportedTextSize, buffer);
    }
    const ViStatus status = get(size, buffer);
    return status >= 0 && IsFull(size, buffer) ? kReportedTextSize : status;
}

} // namespace nrt2
