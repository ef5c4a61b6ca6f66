#include "interrupt.h"

#include <poll.h>
#include <sys/eventfd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <initializer_list>

namespace channelstrip::host {
namespace {

// The signal that was noted. Every thread reads it; the one that the signal interrupts sets it.
std::atomic<int> caught = 0;
static_assert(std::atomic<int>::is_always_lock_free);

// An event descriptor that stays readable after the signal: the signal interrupts a single thread,
// but several may be waiting. Below 0, which poll() skips, until catch_interrupts().
std::atomic<int> wake = -1;

void note(int signal) {
  const int before = errno;
  caught = signal;
  eventfd_write(wake, 1);
  errno = before;
}

}  // namespace

void catch_interrupts() {
  if (wake < 0) wake = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action = {};
    sigaction(signal, nullptr, &action);
    if (action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = note;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    sigaction(signal, &action, nullptr);
  }
}

int interrupted() {
  return caught;
}

void wait_for(int descriptor, short events) {
  std::array<pollfd, 2> waits = {{{descriptor, events, 0}, {wake, POLLIN, 0}}};
  do {
    poll(waits.data(), waits.size(), -1);
    if (const int signal = interrupted()) throw Interrupted{signal};
  } while (waits[0].revents == 0);
}

void end_by_signal(int signal) {
  std::signal(signal, SIG_DFL);
  std::raise(signal);
  std::_Exit(128 + signal);
}

}  // namespace channelstrip::host
