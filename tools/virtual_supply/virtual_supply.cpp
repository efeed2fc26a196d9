#include "tools/virtual_supply/virtual_supply.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <stdexcept>
#include <vector>

#include "tools/virtual_supply/command_table.h"

namespace virtual_supply {

namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::vector<std::string_view> SplitFields(std::string_view text) {
    std::vector<std::string_view> fields;
    if (text.empty()) {
        return fields;
    }
    for (auto comma = text.find(','); comma != std::string_view::npos; comma = text.find(',')) {
        fields.push_back(Trimmed(text.substr(0, comma)));
        text.remove_prefix(comma + 1);
    }
    fields.push_back(Trimmed(text));
    return fields;
}

bool IsOutsideCharacterSet(char c) { return (c < ' ' && c != '\t') || c > '~'; }

Arguments ParseArguments(const Command& command, std::string_view text) {
    const auto fields = SplitFields(text);
    const std::size_t before = command.channelIn == ChannelIn::FirstArgument ? 1 : 0;
    if (fields.size() > before + command.arguments.size()) {
        throw Refusal(kParameterNotAllowed);
    }
    if (fields.size() < before + command.arguments.size() ||
        std::any_of(fields.begin(), fields.end(), [](auto field) { return field.empty(); })) {
        throw Refusal(kMissingParameter);
    }
    Arguments arguments{command.channel, {}};
    if (command.channelIn == ChannelIn::FirstArgument) {
        arguments.channel = static_cast<int>(ParseArgument(Word(kChannels), 0, fields.front()));
    }
    for (std::size_t i = 0; i < command.arguments.size(); ++i) {
        arguments.values.push_back(ParseArgument(command.arguments[i], arguments.channel, fields[before + i]));
    }
    return arguments;
}

std::string FormatReply(const Command& command, const Reply& reply) {
    std::string text;
    for (std::size_t i = 0; i < command.reply.size(); ++i) {
        if (i > 0) {
            text += ',';
        }
        AppendReply(command.reply[i], reply.at(i), text);
    }
    return text;
}

} // namespace

VirtualSupply::VirtualSupply(const SupplyOptions& options)
    : model_(options.model),
      instrument_("Keltor Technology," + options.model + ',' + options.serial + ",1.00", options.clock) {}

std::string VirtualSupply::Execute(std::string_view line) {
    line = Trimmed(line);
    if (line.empty()) {
        return {};
    }
    const std::lock_guard lock(mutex_);
    instrument_.Update();
    std::string reply;
    try {
        reply = Run(line);
    } catch (const Refusal& refusal) {
        instrument_.status.Report(refusal.Error());
    }
    instrument_.Update();
    return reply;
}

std::string VirtualSupply::Run(std::string_view line) {
    if (std::any_of(line.begin(), line.end(), IsOutsideCharacterSet)) {
        throw Refusal(kInvalidCharacter);
    }
    if (line.find(';') != std::string_view::npos) {
        throw Refusal(kSyntaxError);
    }
    const auto headerEnd = std::min(line.find_first_of(kBlanks), line.size());
    const Command* const command = FindCommand(line.substr(0, headerEnd));
    if (command == nullptr) {
        throw Refusal(kUndefinedHeader);
    }
    const Arguments arguments = ParseArguments(*command, Trimmed(line.substr(headerEnd)));
    return FormatReply(*command, command->Run(instrument_, arguments));
}

void VirtualSupply::ReportInputOverrun() {
    const std::lock_guard lock(mutex_);
    instrument_.status.Report(kInputBufferOverrun);
}

void VirtualSupply::SetLoad(int channel, std::optional<double> ohms) {
    if (channel < 1 || channel > kChannelCount) {
        throw std::invalid_argument("a load is connected to channel 1 to " + std::to_string(kChannelCount));
    }
    if (ohms && (!std::isfinite(*ohms) || *ohms < 0.0)) {
        throw std::invalid_argument("a load is a number of ohms that is not negative");
    }
    const std::lock_guard lock(mutex_);
    instrument_.Update();
    instrument_.ChannelAt(channel).Connect(ohms);
    instrument_.Update();
}

} // namespace virtual_supply
