// A seeded source of settings, the same on every platform.

#pragma once

#include <cstdint>
#include <initializer_list>
#include <random>

namespace channelstrip::test {

class Random {
 public:
  explicit Random(uint32_t seed) : engine_(seed) {}

  // From low up to, but not including, high.
  float real(float low, float high) {
    return low + (high - low) * static_cast<float>(engine_() >> 8) * 0x1p-24F;
  }

  // From low to high, both included.
  int integer(int low, int high) {
    return low + static_cast<int>(engine_() % static_cast<uint32_t>(high - low + 1));
  }

  bool chance(float probability) { return real(0.0F, 1.0F) < probability; }

  template <typename T>
  T pick(std::initializer_list<T> choices) {
    return choices.begin()[integer(0, static_cast<int>(choices.size()) - 1)];
  }

 private:
  std::mt19937 engine_;
};

}  // namespace channelstrip::test
