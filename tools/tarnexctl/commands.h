// What the tool can do: each command returns its exit code or throws Failure.
#pragma once

#include "tools/tarnexctl/arguments.h"
#include "tools/tarnexctl/console.h"

namespace tarnexctl {

// Over the driver's exported functions.
int Identify(const Arguments& arguments, Console& console);
int Set(const Arguments& arguments, Console& console);
int Get(const Arguments& arguments, Console& console);
int On(const Arguments& arguments, Console& console);
int Off(const Arguments& arguments, Console& console);
int ResetSupply(const Arguments& arguments, Console& console);
int Errors(const Arguments& arguments, Console& console);

// Over the command layer.
int Measure(const Arguments& arguments, Console& console);
int Watch(const Arguments& arguments, Console& console);
int Sweep(const Arguments& arguments, Console& console);
int RunList(const Arguments& arguments, Console& console);
int RunDelay(const Arguments& arguments, Console& console);

} // namespace tarnexctl
