#include "instrument/scpi_text.h"

#include "instrument/reply_parsers.h"
#include "text/characters.h"
#include "text/numbers.h"

namespace ORVA {

void AppendHeader(std::string& line, std::string_view header) { line.append(header); }

void AppendHeader(std::string& line, const NumberedHeader& header) {
    line.append(header.before).append(text::IntegerText(header.channel).View()).append(header.after);
}

void AppendHeader(std::string& line, const SourceHeader& header) {
    constexpr std::string_view kSource = "SOUR";
    bool first = true;
    text::ForEachElement(header.header, ':', [&](std::string_view node) {
        if (node.empty()) {
            return;
        }
        if (first) {
            first = false;
            line.append(":").append(kSource).append(text::IntegerText(header.channel).View());
            // The exact node is the usual one, and this is the path of every call.
            if (node == kSource || Visa::startsWithAnyCase({&node, 1}, kSource) != nullptr) {
                return;
            }
        }
        line.append(":").append(node);
    });
}

void AppendArgument(std::string& line, bool value) { line.append(value ? "ON" : "OFF"); }
void AppendArgument(std::string& line, std::int32_t value) { line.append(text::IntegerText(value).View()); }
void AppendArgument(std::string& line, std::uint32_t value) { line.append(text::IntegerText(value).View()); }
void AppendArgument(std::string& line, double value) { line.append(text::RealText(value).View()); }
void AppendArgument(std::string& line, std::string_view value) { line.append(value); }

} // namespace ORVA
