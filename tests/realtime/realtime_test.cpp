// Calls take a bounded stack and make no system call.

#include <gtest/gtest.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <tests/support/every_format.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <deque>
#include <system_error>
#include <vector>

#include "every_mode.h"
#include "painted_stack.h"

namespace channelstrip::test::realtime_test {
namespace {

class Stack : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(Formats, Stack, every_format(), format_name);

// 16 KiB for optimised code; unoptimised code keeps every intermediate value on the stack.
TEST_P(Stack, NoCallTakesMoreThanItsLimit) {
  const EveryMode range(GetParam());
  const size_t depth = PaintedStack::depth(range, entry_point(GetParam()));
  EXPECT_GT(depth, 0u);
  EXPECT_LE(depth, size_t{CHANNELSTRIP_STACK_LIMIT});
}

// A callee that writes 20000 bytes: the measured depth is that and little more.
TEST(PaintedStack, SeesTheDeepestByteOfACall) {
  const auto deep = +[](const SChannelStrip_Alg_Context* const*, const void*) {
    char bytes[20000];
    bytes[0] = 1;
    asm volatile("" : : "r"(bytes) : "memory");  // keeps the write
  };
  const size_t depth = PaintedStack::depth(EveryMode(format_named("Mono")), deep);
  EXPECT_GE(depth, 20000u);
  EXPECT_LE(depth, 20000u + 512);
}

// In strict secure computing mode the kernel kills a process that makes any system call but read,
// write and exit. Page faults are no system calls.
struct End {
  int status;      // as waitpid gives it
  char answer{0};  // what the work returned, if it got that far
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
    syscall(SYS_exit, written ? 0 : 1);  // _exit would call exit_group, which kills
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
  std::vector<AlgEntry_16_Stem*> entries;  // looked up before: that makes system calls
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
}  // namespace channelstrip::test::realtime_test
