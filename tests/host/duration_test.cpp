#include "host/duration.h"

#include <gtest/gtest.h>

namespace channelstrip::test {
namespace {

using host::duration;

TEST(Duration, HasMilliseconds) {
  EXPECT_EQ(duration(0), "0.000 s");
  EXPECT_EQ(duration(4.2), "4.200 s");
  EXPECT_EQ(duration(59.9994), "59.999 s");
}

TEST(Duration, HasMinutesFromOneOn) {
  EXPECT_EQ(duration(59.9996), "1 min 00.000 s");
  EXPECT_EQ(duration(184.2), "3 min 04.200 s");
  EXPECT_EQ(duration(7199.9999), "120 min 00.000 s");
}

}  // namespace
}  // namespace channelstrip::test
