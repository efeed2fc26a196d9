// Signals as a flag, so that long commands can switch the output off before they end.
#pragma once

namespace tarnexctl {

/// Makes the signals that ask a process to end set the flag of Interrupted instead: SIGINT, SIGTERM, SIGHUP, SIGQUIT,
/// SIGALRM, SIGUSR1, SIGUSR2, SIGXCPU, SIGXFSZ and timers. A signal that is ignored stays ignored.
void CatchInterrupts();

/// Makes printing fail instead of ending the process when the reader of standard output has closed it.
void SurviveBrokenPipes();

/// Returns whether a caught signal has arrived.
bool Interrupted();

/// Waits for `seconds`, or until a caught signal arrives. Returns true when the whole time has passed.
bool Wait(double seconds);

} // namespace tarnexctl
