// Comparison to the bit: NaNs and signed zeros count.

#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <ranges>
#include <span>
#include <string>

#include "strip.h"

namespace channelstrip::test {

inline uint32_t bits(float x) {
  return std::bit_cast<uint32_t>(x);
}
inline uint64_t bits(double x) {
  return std::bit_cast<uint64_t>(x);
}

template <std::ranges::contiguous_range Range>
bool same_bits(const Range& a, const Range& b) {
  return std::ranges::equal(std::as_bytes(std::span(a)), std::as_bytes(std::span(b)));
}

inline bool same_bits(const std::vector<std::vector<float>>& a,
                      const std::vector<std::vector<float>>& b) {
  return std::ranges::equal(
      a, b, [](const auto& channel, const auto& other) { return same_bits(channel, other); });
}

template <typename Record>
bool same_record(const Record& a, const Record& b) {
  return same_bits(std::span(&a, 1), std::span(&b, 1));
}

// Names the buffers and records that differ between two strips of one format, such as "out meters";
// "" if none does.
inline std::string differences(const Strip& a, const Strip& b) {
  std::string names;
  const auto note = [&names](bool same, const char* name) {
    if (same) return;
    if (!names.empty()) names += ' ';
    names += name;
  };
  note(same_bits(a.in, b.in), "in");
  note(same_bits(a.out, b.out), "out");
  note(same_record(a.eq, b.eq), "eq");
  note(same_record(a.dezip, b.dezip), "dezip");
  note(same_bits(a.eq_state, b.eq_state), "eq_state");
  note(same_record(a.dyn, b.dyn), "dyn");
  note(same_bits(a.dyn_state, b.dyn_state), "dyn_state");
  note(same_bits(a.meters, b.meters), "meters");
  return names;
}

}  // namespace channelstrip::test
