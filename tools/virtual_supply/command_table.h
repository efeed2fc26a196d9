// The commands of the supply, one row each, and their lookup by header.
#pragma once

#include <string_view>
#include <variant>
#include <vector>

#include "tools/virtual_supply/instrument.h"
#include "tools/virtual_supply/kinds.h"

namespace virtual_supply {

/// The place of the channel number in a command.
enum class ChannelIn {
    None,          // the command is for the supply
    Header,        // '#' in the row's header stands for the number
    FirstArgument, // CH1 or CH2
};

/// A stored value: "<header> <value>" sets it, "<header>?" reads it back.
struct Setting {
    using Member =
        std::variant<bool ChannelSettings::*, int ChannelSettings::*, double ChannelSettings::*, bool CommonSettings::*,
                     int CommonSettings::*, double CommonSettings::*, bool ListTemplate::*, int ListTemplate::*,
                     double ListTemplate::*, int DelayTemplate::*, double DelayTemplate::*>;

    std::string_view header;
    ChannelIn channelIn;
    Kind kind;
    Member member;

    void Store(Instrument& instrument, const Arguments& arguments) const;
    Value Load(Instrument& instrument, const Arguments& arguments) const;
};

/// Every other command. The header of a query ends in "?". Arguments follow the channel, if there is one.
struct Operation {
    std::string_view header;
    ChannelIn channelIn;
    std::vector<Kind> arguments;
    std::vector<Kind> reply;
    Reply (Instrument::*run)(const Arguments& arguments);
};

/// The command of a header: its arguments, its reply and its effect.
struct Command {
    ChannelIn channelIn = ChannelIn::None;
    int channel = 0; // from the header; 0: not in the header
    std::vector<Kind> arguments;
    std::vector<Kind> reply;
    // Exactly one of these is not null.
    const Setting* setting = nullptr;
    const Operation* operation = nullptr;

    Reply Run(Instrument& instrument, const Arguments& given) const;
};

/// Returns the command of a header; null when there is none. The spelling is that of the table (there are no short and
/// long forms); letter case is ignored.
const Command* FindCommand(std::string_view header);

} // namespace virtual_supply
