// The kernel as witness: in strict secure computing mode a process that asks it for anything but
// read, write and exit is killed. Page faults are no requests.

#include <gtest/gtest.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <deque>
#include <system_error>
#include <vector>

#include "every_mode.h"

namespace channelstrip::test::system_call_test {
namespace {

struct End {
  int status;      // as waitpid gives it
  char answer{0};  // what the work returned, if it came to that
};

// Runs the work in a confined child process.
template <typename Work>
End confined(Work work) {
  int ends[2];
  if (pipe(ends) != 0) throw std::system_error(errno, std::generic_category());
  const pid_t child = fork();
  if (child == 0) {
    if (prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT) != 0) _exit(2);
    const char answer = work();
    const bool written = write(ends[1], &answer, 1) == 1;
    syscall(SYS_exit, written ? 0 : 1);  // _exit would ask for the whole group's end
  }
  close(ends[1]);
  End end{};
  const ssize_t bytes = read(ends[0], &end.answer, 1);
  close(ends[0]);
  if (child < 0 || bytes < 0 || waitpid(child, &end.status, 0) != child) {
    throw std::system_error(errno, std::generic_category());
  }
  return end;
}

TEST(SystemCalls, NoEntryPointMakesOne) {
  std::deque<EveryMode> ranges;
  std::vector<AlgEntry_16_Stem*> entries;  // loading and looking up make them
  for (const host::StemFormat& format : host::stem_formats()) {
    ranges.emplace_back(format);
    entries.push_back(entry_point(format));
  }

  const End end = confined([&] {
    char processed = 0;
    for (size_t format = 0; format < entries.size(); ++format) {
      ranges[format].process(entries[format]);
      for (const Strip& strip : ranges[format].strips()) {
        if (strip.output_peak(0) > 0) ++processed;
      }
    }
    return processed;
  });
  EXPECT_TRUE(WIFEXITED(end.status) && WEXITSTATUS(end.status) == 0) << "status " << end.status;
  EXPECT_EQ(end.answer, 4 * 11);  // every strip of every format
}

TEST(SystemCalls, OneInTheSamePlaceKills) {
  const End end = confined([] { return static_cast<char>(syscall(SYS_getppid)); });
  EXPECT_TRUE(WIFSIGNALED(end.status) && WTERMSIG(end.status) == SIGKILL)
      << "status " << end.status;
}

}  // namespace
}  // namespace channelstrip::test::system_call_test
