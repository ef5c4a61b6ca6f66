// Expectations about coefficient records.

#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>

#include "control/design/strip_coefficients.h"

namespace channelstrip::test {

inline host::ChannelLayout layout_of(const char* format) {
  return host::default_layout(*host::find_stem_format(format));
}

inline void expect_identity(const float* coefficients) {
  for (const float value : {1.0f, 0.0f, 0.0f, 0.0f, 0.0f}) EXPECT_EQ(*coefficients++, value);
}

inline void expect_links(const Dyn_SCoefsBlock& dynamics, std::initializer_list<int> groups) {
  EXPECT_TRUE(std::ranges::equal(dynamics.linkGroup, groups));
}

}  // namespace channelstrip::test
