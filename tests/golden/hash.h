// A hash of words, in which all NaNs are one: their bits differ between processors.

#pragma once

#include <stdint.h>

namespace channelstrip::golden {

class Hash {
 public:
  void add(float x) {
    uint32_t bits;
    __builtin_memcpy(&bits, &x, sizeof bits);
    add_word(x == x ? bits : 0x7FC00000u);
  }
  void add(double x) {
    uint64_t bits;
    __builtin_memcpy(&bits, &x, sizeof bits);
    if (x != x) bits = 0x7FF8000000000000u;
    add_word(static_cast<uint32_t>(bits));
    add_word(static_cast<uint32_t>(bits >> 32));
  }
  void add(int32_t x) { add_word(static_cast<uint32_t>(x)); }

  template <typename T, int Count>
  void add(const T (&all)[Count]) {
    for (const T& one : all) add(one);
  }

  uint64_t value() const { return value_; }

 private:
  // FNV-1a, a word at a time, and a shift that takes high bits down.
  void add_word(uint32_t word) {
    value_ = (value_ ^ word) * 0x100000001B3u;
    value_ ^= value_ >> 29;
  }

  uint64_t value_ = 0xCBF29CE484222325u;
};

}  // namespace channelstrip::golden
