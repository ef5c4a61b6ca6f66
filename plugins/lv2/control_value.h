// What a control port's float stands for.

#pragma once

#include <array>
#include <charconv>

namespace channelstrip::lv2 {

// Ports are floats, settings doubles: 0.7071 as a float is 0.707099974. The shortest decimal that
// the float is the nearest to is what was meant, so that a plugin plays what a preset says. Neither
// allocates nor locks. `value` must be finite.
inline double decimal_of(float value) {
  std::array<char, 32> text;
  const auto written = std::to_chars(text.data(), text.data() + text.size(), value);
  double decimal = static_cast<double>(value);
  std::from_chars(text.data(), written.ptr, decimal);
  return decimal;
}

}  // namespace channelstrip::lv2
