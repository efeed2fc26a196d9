// Command lines from a header and typed arguments. Lines are written into a string of the caller, so that its memory is
// reused.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "instrument/keywords.h"

namespace ORVA {

/// Channels are numbered from 1.
using ChannelNumber = std::uint32_t;

/// A header with the channel's number in its first node: ":SOUR:VOLT" on channel 2 is sent as ":SOUR2:VOLT".
struct SourceHeader {
    std::string_view header;
    ChannelNumber channel;
};

/// A header with the channel's number inside: ":...:ISUMmary", channel, ":CONDition?".
struct NumberedHeader {
    std::string_view before;
    ChannelNumber channel;
    std::string_view after;
};

void AppendHeader(std::string& line, std::string_view header);
void AppendHeader(std::string& line, const NumberedHeader& header);
/// Replaces a first node that begins with "SOUR" in any letter case.
/// Required: before any other first node the numbered node is inserted.
void AppendHeader(std::string& line, const SourceHeader& header);

void AppendArgument(std::string& line, bool value);             ///< ON or OFF
void AppendArgument(std::string& line, std::int32_t value);     ///< decimal
void AppendArgument(std::string& line, std::uint32_t value);    ///< decimal
void AppendArgument(std::string& line, double value);           ///< fixed notation, six decimals
void AppendArgument(std::string& line, std::string_view value); ///< as it is
/// For literals, which would otherwise convert to bool.
inline void AppendArgument(std::string& line, const char* value) { AppendArgument(line, std::string_view(value)); }
template <KeywordEnumeration Enumeration>
void AppendArgument(std::string& line, Enumeration value) {
    AppendArgument(line, TokenOf(value));
}

/// Appends one blank and the arguments, separated by commas; nothing when the joined text is empty.
template <typename... Arguments>
void AppendArguments(std::string& line, const Arguments&... arguments) {
    const std::size_t headerSize = line.size();
    line.push_back(' ');
    ((AppendArgument(line, arguments), line.push_back(',')), ...);
    line.pop_back(); // the last comma, or the blank where there are no arguments
    if (line.size() == headerSize + 1) {
        line.pop_back();
    }
}

/// ":OUTP:STAT" with "CH1" and true gives ":OUTP:STAT CH1,ON".
template <typename Header, typename... Arguments>
void FormatCommand(std::string& line, const Header& header, const Arguments&... arguments) {
    line.clear();
    AppendHeader(line, header);
    AppendArguments(line, arguments...);
}

/// Formats like FormatCommand, with a "?" after a header that does not contain one.
template <typename Header, typename... Arguments>
void MakeQuery(std::string& line, const Header& header, const Arguments&... arguments) {
    line.clear();
    AppendHeader(line, header);
    if (line.find('?') == std::string::npos) {
        line.push_back('?');
    }
    AppendArguments(line, arguments...);
}

} // namespace ORVA
