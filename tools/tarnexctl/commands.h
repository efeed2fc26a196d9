// All commands. Each is defined in the file of its name in commands/.
#pragma once

#include <array>

#include "tools/tarnexctl/command.h"

namespace tarnexctl {

extern const Command kIdentify;
extern const Command kSet;
extern const Command kGet;
extern const Command kOn;
extern const Command kOff;
extern const Command kReset;
extern const Command kErrors;
extern const Command kMeasure;
extern const Command kWatch;
extern const Command kLog;
extern const Command kRamp;
extern const Command kSweep;
extern const Command kList;
extern const Command kDelay;
extern const Command kQuery;
extern const Command kConsole;
extern const Command kFind;

/// In the order of --help.
inline constexpr std::array kCommands{
    &kIdentify, &kSet,  &kGet,   &kOn,   &kOff,   &kReset, &kErrors,  &kMeasure, &kWatch,
    &kLog,      &kRamp, &kSweep, &kList, &kDelay, &kQuery, &kConsole, &kFind,
};

} // namespace tarnexctl
