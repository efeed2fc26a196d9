// How texts are handed to callers: IVI's (size, buffer) pairs with this driver's own rule for the size reported.
#pragma once

#include <string_view>

#include "platform/vi_types.h"

namespace nrt2 {

/// The one size that is ever reported as required, whatever the text's length.
inline constexpr ViInt32 kReportedTextSize = 4096;

/// Copies as much of `text` as fits, always zero-terminated. `size` counts bytes and is at least 1.
void CopyTruncated(std::string_view text, ViInt32 size, ViChar buffer[]);

/// Whether the zero-terminated text in `buffer` uses all of its `size` bytes: it may have been cut then.
bool IsFull(ViInt32 size, const ViChar buffer[]);

/// Calls `get(size, buffer)` to fill the buffer. Size 0 asks for the size alone; a negative size stands for
/// kReportedTextSize bytes, which the caller then must have. A buffer that came back full ends in kReportedTextSize.
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
