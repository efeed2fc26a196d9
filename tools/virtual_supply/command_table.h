// Every command that the supply knows, one row each, and how a row is found.
#pragma once

#include "tools/virtual_supply/instrument.h"
#include "tools/virtual_supply/kinds.h"

#include <string_view>
#include <variant>
#include <vector>

namespace virtual_supply {

/// Where a command says which channel it is for.
enum class ChannelIn {
    kNone,   // nowhere: the command is for the supply
    kHeader, // the '#' in the row's header stands for its number
    kWord,   // the first argument is CH1 or CH2
};

/// A value that is kept: "<header> <value>" sets it, "<header>?" reads it back.
struct Setting {
    using Member =
        std::variant<bool ChannelSettings::*, int ChannelSettings::*, double ChannelSettings::*, bool CommonSettings::*,
                     int CommonSettings::*, double CommonSettings::*, bool ListTemplate::*, int ListTemplate::*,
                     double ListTemplate::*, int DelayTemplate::*, double DelayTemplate::*>;

    std::string_view header;
    ChannelIn channel_in;
    Kind kind;
    Member member;

    void Store(Instrument& instrument, const Arguments& arguments) const;
    Value Load(Instrument& instrument, const Arguments& arguments) const;
};

/// Anything else. The header of a query ends in "?"; arguments follow the channel, if there is one.
struct Operation {
    std::string_view header;
    ChannelIn channel_in;
    std::vector<Kind> arguments;
    std::vector<Kind> reply;
    Reply (Instrument::*run)(const Arguments& arguments);
};

/// What a header stands for: what a line must hold after it, what is answered, and what is done.
struct Command {
    ChannelIn channel_in = ChannelIn::kNone;
    int channel = 0; // the one named in the header, else 0
    std::vector<Kind> arguments;
    std::vector<Kind> reply;
    const Setting* setting = nullptr;     // one of these two is set
    const Operation* operation = nullptr; //

    Reply Run(Instrument& instrument, const Arguments& given) const;
};

/// The command of a header, which must be spelt as in the table except for letter case (there are no short and long
/// forms); null when there is none.
const Command* FindCommand(std::string_view header);

} // namespace virtual_supply
