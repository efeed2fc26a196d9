// Ctrl-C as something to ask for: long commands end in order.
#pragma once

namespace tarnexctl {

/// From here on SIGINT and SIGTERM (and SIGHUP, where there is one) no longer end the process; they are noted.
void CatchInterrupts();

/// From here on a reader of standard output that goes away no longer ends the process: printing fails instead. For
/// commands that have something to put in order first.
void SurviveBrokenPipes();

/// Whether one of them has come.
bool Interrupted();

/// Waits so many seconds, or until one comes. True when none has come.
bool Wait(double seconds);

} // namespace tarnexctl
