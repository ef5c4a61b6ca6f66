// Suites that run once per stem format.

#pragma once

#include <control/library/stem_format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>

namespace channelstrip::host {

inline void PrintTo(const StemFormat& format, std::ostream* out) {
  *out << format.name;
}

}  // namespace channelstrip::host

namespace channelstrip::test {

class EveryFormat : public testing::TestWithParam<host::StemFormat> {
 protected:
  static std::string_view format() { return GetParam().name; }
  static size_t channels() { return static_cast<size_t>(GetParam().channels); }
  static size_t groups() { return static_cast<size_t>(GetParam().groups); }
};

inline auto every_format() {
  return testing::ValuesIn(host::stem_formats());
}

// Test names hold no dots: 5.1 becomes 5_1.
inline std::string format_name(const testing::TestParamInfo<host::StemFormat>& info) {
  std::string name(info.param.name);
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
}

}  // namespace channelstrip::test
