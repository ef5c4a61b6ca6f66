// Floating-point samples as integers.

#pragma once

#include <cstdint>
#include <span>

#include "dither.h"

namespace channelstrip::host {

// Rounds to integers of `bits` bits, 8 to 32, which stand in the top bits of the 32-bit or 16-bit
// type; `integers` is as long as `samples`. Samples above full scale are clamped and counted. 1.0
// itself, one step above the highest integer, and samples that only dither lifts that high are
// clamped but not counted. NaN gives 0. Every sample takes one dither count, the first of them
// `count`. Where `sources` says which samples these were before they were processed, it is as long,
// and those that nothing has changed but the strip's gain of 0 dB, which is off by 2.63e-6, become
// the integers that they were, without dither. Returns how many samples were above full scale.
long long to_pcm(std::span<const float> samples, int bits, Dither dither, std::uint32_t count,
                 std::span<std::int32_t> integers, std::span<const float> sources = {});
long long to_pcm(std::span<const float> samples, int bits, Dither dither, std::uint32_t count,
                 std::span<std::int16_t> integers, std::span<const float> sources = {});

// Clamps samples for a lossy coding to full scale and returns how many were above. NaN gives 0.
long long to_full_scale(std::span<const float> samples, std::span<float> clamped);

// Index of the first sample that isn't finite, samples.size() if there is none.
std::size_t first_not_finite(std::span<const float> samples);

}  // namespace channelstrip::host
