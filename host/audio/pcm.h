// Floating-point samples as integers.

#pragma once

#include <cstdint>
#include <span>

#include "dither.h"

namespace channelstrip::host {

// The nearest integers of `bits` bits, 8 to 32, in the top bits of 32, or of 16 where they fit;
// `integers` is as long as `samples`. What is above full scale is clamped; 1.0 itself, one step
// above the highest integer, and what only dither lifts there are clamped without being counted.
// Not a number gives 0. Dither takes one count per sample, `count` for the first. Returns how many
// samples were above full scale.
long long to_pcm(std::span<const float> samples, int bits, Dither dither, std::uint32_t count,
                 std::span<std::int32_t> integers);
long long to_pcm(std::span<const float> samples, int bits, Dither dither, std::uint32_t count,
                 std::span<std::int16_t> integers);

// Samples of coarser coding stay within full scale; what was above is counted, not a number gives
// 0.
long long to_full_scale(std::span<const float> samples, std::span<float> clamped);

// Index of the first sample that isn't finite, samples.size() if there is none.
std::size_t first_not_finite(std::span<const float> samples);

}  // namespace channelstrip::host
