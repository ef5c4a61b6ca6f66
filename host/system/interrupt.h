// A request to stop, by SIGINT, SIGTERM or SIGHUP.

#pragma once

namespace channelstrip::host {

// Thrown when a signal ended the work; no incomplete file is left.
struct Interrupted {
  int signal;
};

// From now on the first such signal is only noted, so that incomplete files can be removed; a
// second one ends the process at once. Signals that the process was started to ignore stay ignored.
void catch_interrupts();

// The signal that was noted, or 0.
int interrupted();

// Waits until poll() reports one of `events` for the descriptor. Throws Interrupted if a signal
// comes first, whichever thread it interrupts.
void wait_for(int descriptor, short events);

// Ends the process as the signal would have done.
[[noreturn]] void end_by_signal(int signal);

}  // namespace channelstrip::host
