// A request to stop, by SIGINT, SIGTERM or SIGHUP.

#pragma once

namespace channelstrip::host {

// A signal ended the work; no file is left.
struct Interrupted {
  int signal;
};

// From now on the first such signal only leaves a mark, so that what is half done can be tidied
// away; a second one ends the process at once. Signals that the caller ignores stay ignored.
void catch_interrupts();

// The signal that has come, or 0.
int interrupted();

// Returns once poll() would find one of `events` on the descriptor; throws Interrupted when a
// signal comes first, in whichever thread.
void wait_for(int descriptor, short events);

// Ends the process as the signal would have done.
[[noreturn]] void end_by_signal(int signal);

}  // namespace channelstrip::host
