#include <gtest/gtest.h>

#include "host/system/progress.h"

namespace channelstrip::test::progress_line_test {
namespace {

using host::progress_line;

TEST(ProgressLine, TellsPartSpeedAndFile) {
  EXPECT_EQ(progress_line({.name = "a.wav", .part = 0.426, .speed = 312.4}, 79),
            " 43 %  312 x realtime  a.wav");
  EXPECT_EQ(progress_line({.name = "a.wav", .part = 1, .done = 3, .files = 12, .speed = 9.6}, 79),
            "100 %  3 of 12 done  10 x realtime  a.wav");
  EXPECT_EQ(progress_line({.name = "a\n.wav", .part = -1, .speed = 9}, 79), "9 x realtime  a?.wav");
}

TEST(ProgressLine, FitsItsWidth) {
  const host::ProgressState state{.name = "takes/voïce.wav", .part = 0.5, .speed = 9};
  EXPECT_EQ(progress_line(state, 36), " 50 %  9 x realtime  takes/voïce.wav");
  EXPECT_EQ(progress_line(state, 35), " 50 %  9 x realtime  ...s/voïce.wav");
  EXPECT_EQ(progress_line(state, 30), " 50 %  9 x realtime  ...ce.wav");
  EXPECT_EQ(progress_line(state, 22), " 50 %  9 x realtime  ");
  EXPECT_EQ(progress_line(state, 10), " 50 %  9 x");
}

}  // namespace
}  // namespace channelstrip::test::progress_line_test
