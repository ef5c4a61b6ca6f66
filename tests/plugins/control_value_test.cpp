#include "plugins/lv2/control_value.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <string>

namespace channelstrip::plugin_test::control_value_test {
namespace {

using lv2::decimal_of;

TEST(ControlValue, IsTheDecimalThatWasMeant) {
  for (const char* meant : {"0.7071", "-23.5", "1.0000001", "0.1", "1000", "16777216", "3e-05",
                            "80.123", "0", "-0.003"}) {
    const double decimal = std::strtod(meant, nullptr);
    EXPECT_EQ(decimal_of(static_cast<float>(decimal)), decimal) << meant;
  }
}

TEST(ControlValue, IsNextToItsFloat) {
  float value = 1.17549435e-38f;
  for (; value < 1e38f; value *= 1.37f) {
    EXPECT_EQ(static_cast<float>(decimal_of(value)), value);
    EXPECT_EQ(static_cast<float>(decimal_of(-value)), -value);
  }
  EXPECT_EQ(static_cast<float>(decimal_of(std::numeric_limits<float>::denorm_min())),
            std::numeric_limits<float>::denorm_min());
}

}  // namespace
}  // namespace channelstrip::plugin_test::control_value_test
