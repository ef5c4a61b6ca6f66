#include "interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <initializer_list>

namespace channelstrip::host {
namespace {

// Seen by every thread, and set by whichever the signal interrupts.
std::atomic<int> caught = 0;
static_assert(std::atomic<int>::is_always_lock_free);

}  // namespace

void catch_interrupts() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action = {};
    sigaction(signal, nullptr, &action);
    if (action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = [](int number) { caught = number; };
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    sigaction(signal, &action, nullptr);
  }
}

int interrupted() {
  return caught;
}

void end_by_signal(int signal) {
  std::signal(signal, SIG_DFL);
  std::raise(signal);
  std::_Exit(128 + signal);
}

}  // namespace channelstrip::host
