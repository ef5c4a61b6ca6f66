// What the bytes of a history choose: numbers, samples and texts, the odd ones more often.

#pragma once

#include <tests/fuzz/step.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace channelstrip::test {

// Any bits, a special number, or a plain one.
double any_number(Bytes& bytes);

// A legal or illegal value of a parameter, and its id; now and then one that there isn't.
struct AnyValue {
  std::uint32_t id;
  double value;
};
AnyValue any_value(Bytes& bytes);

std::uint32_t any_id(Bytes& bytes);
std::uint32_t any_format(Bytes& bytes);

// Noise, silence, constants, denormals, huge ones, and what isn't finite.
void fill(Bytes& bytes, std::span<float> samples);

// Pieces of presets in any order, with or without sense, or any bytes.
std::string any_toml(Bytes& bytes);
// Without zeros.
std::string any_word(Bytes& bytes);

}  // namespace channelstrip::test
