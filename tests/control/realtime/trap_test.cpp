// The audio thread's functions neither allocate nor lock nor throw nor call the system.

#include <gtest/gtest.h>

#include <cstdlib>
#include <deque>
#include <mutex>
#include <stdexcept>
#include <string>

#include "audio_paths.h"
#include "confined.h"

namespace channelstrip::test::trap_test {
namespace {

TEST(AudioThread, NeitherAllocatesNorLocksNorThrowsNorCallsTheSystem) {
  std::deque<AudioPaths> formats;
  for (std::uint32_t i = 0; i < channelstrip_format_count(); ++i) formats.emplace_back(i);
  const auto end = confined<PathReport>([&](PathReport& report) {
    for (AudioPaths& format : formats) format.run(report);
  });
  const PathReport& report = end.report;
  const std::string last = std::string(report.path) + ", format " + std::to_string(report.format);
  EXPECT_TRUE(end.ended()) << "status " << end.status << " in " << last;
  EXPECT_EQ(report.trapped.allocations, 0) << report.culprit;
  EXPECT_EQ(report.trapped.locks, 0) << report.culprit;
  EXPECT_EQ(report.trapped.exceptions, 0) << report.culprit;
  EXPECT_EQ(report.unexpected, 0);
  EXPECT_EQ(report.silent, 0);
  EXPECT_GT(report.calls, 11 * 1500);
}

// What goes through here the compiler can't leave out.
void* kept(void* memory) {
  asm volatile("" : "+r"(memory) : : "memory");
  return memory;
}

TEST(Trap, SeesAllocationsInsideTheLibrary) {
  EXPECT_GT(trapped([] { settings_from("gain_in = 3"); }).allocations, 0);
  EXPECT_EQ(trapped([] { channelstrip_version(); }), Trapped{});
}

TEST(Trap, SeesExceptionsInsideTheLibrary) {
  const Settings settings = settings_from("");
  const Trapped counted = trapped([&] {
    EXPECT_EQ(channelstrip_settings_set_links(settings.get(), 1, "L L"), CHANNELSTRIP_INVALID);
  });
  EXPECT_GT(counted.exceptions, 0);
}

TEST(Trap, SeesLocksAllocationsAndExceptionsOfTheProgram) {
  std::mutex mutex;
  EXPECT_EQ(trapped([&] { const std::lock_guard lock(mutex); }).locks, 2);
  EXPECT_EQ(trapped([] { std::free(kept(std::malloc(1))); }).allocations, 2);
  EXPECT_EQ(trapped([] { ::operator delete(kept(::operator new(1))); }).allocations, 2);
  const Trapped counted = trapped([] {
    try {
      throw std::runtime_error("thrown");
    } catch (const std::runtime_error&) {
    }
  });
  EXPECT_EQ(counted.exceptions, 1);
}

TEST(Trap, ASystemCallOfTheLibraryKills) {
  struct Nothing {};
  const auto end = confined<Nothing>([](Nothing&) { syscall(SYS_getppid); });
  EXPECT_TRUE(end.was_killed()) << "status " << end.status;
  // New memory from the system.
  const auto strip = confined<Nothing>([](Nothing&) {
    for (int i = 0; i < 1000; ++i) strip_of(0, nullptr).release();
  });
  EXPECT_TRUE(strip.was_killed()) << "status " << strip.status;
}

}  // namespace
}  // namespace channelstrip::test::trap_test
