// Runs work in a child process that the kernel kills as soon as it makes a system call. Page faults
// are no system calls.

#pragma once

#include <linux/seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <new>
#include <system_error>
#include <type_traits>

namespace channelstrip::test {

template <typename Report>
struct Confined {
  int status;     // as waitpid gives it
  Report report;  // as far as the work got

  bool ended() const { return WIFEXITED(status) && WEXITSTATUS(status) == 0; }
  bool was_killed() const { return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL; }
};

// The work gets a report in memory that parent and child share.
template <typename Report, typename Work>
Confined<Report> confined(Work work) {
  static_assert(std::is_trivially_copyable_v<Report>);
  const auto fail = [] { throw std::system_error(errno, std::generic_category()); };
  void* const memory =
      mmap(nullptr, sizeof(Report), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) fail();
  Report* const report = new (memory) Report{};
  const pid_t child = fork();
  if (child == 0) {
    // Strict: nothing but read, write and exit.
    if (prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT) != 0) _exit(2);
    work(*report);
    syscall(SYS_exit, 0);  // _exit would call exit_group, which kills
  }
  Confined<Report> end{};
  if (child < 0 || waitpid(child, &end.status, 0) != child) fail();
  end.report = *report;
  munmap(memory, sizeof(Report));
  return end;
}

}  // namespace channelstrip::test
