#include "pcm.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace channelstrip::host {
namespace {

// Samples. Loops run over pieces that stay in the first-level cache, and contain nothing that keeps
// a compiler from vectorising them: no branch, call or reduction in a wider type.
constexpr std::size_t kPiece = 1024;

// As std::clamp; NaN stays NaN.
template <typename Real>
Real clamped(Real x, Real low, Real high) {
  x = x < low ? low : x;
  return x > high ? high : x;
}

// Relative; above the error of the strip's gain of 0 dB.
constexpr double kUnchanged = 0x1p-18;

// With float as Real a register holds twice as many samples as with double. Up to 24 bits float
// represents everything exactly but the sum of fraction and dither, which it rounds by 2^-24 of a
// step.
template <typename Real, Dither dither, bool has_sources, typename Integer>
int quantise(std::span<const float> samples, int bits, std::uint32_t count,
             std::span<Integer> integers, std::span<const float> sources) {
  const Real full_scale = std::ldexp(Real(1), bits - 1);
  const Real top_bits = std::ldexp(Real(1), 8 * static_cast<int>(sizeof(Integer)) - bits);
  int above = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    Real x = clamped(static_cast<Real>(samples[i]) * full_scale, -2 * full_scale, 2 * full_scale);
    x = std::isnan(x) ? 0 : x;
    Real step = std::rint(x);
    above += std::abs(step) > full_scale ? 1 : 0;
    if constexpr (dither == Dither::kTriangular) {
      const Real noise = triangular<Real>(count++);
      bool kept = x == 0;
      if constexpr (has_sources) {
        const Real source = static_cast<Real>(sources[i]) * full_scale;
        kept |= (std::rint(source) == source) &
                (std::abs(x - source) <= Real(kUnchanged) * std::abs(source));
      }
      step += kept ? 0 : std::rint(x - step + noise);
    }
    integers[i] = static_cast<Integer>(clamped(step, -full_scale, full_scale - 1) * top_bits);
  }
  return above;
}

template <typename Real, typename Integer>
long long quantise(std::span<const float> samples, int bits, Dither dither, std::uint32_t count,
                   std::span<Integer> integers, std::span<const float> sources) {
  const auto run = dither == Dither::kNone ? quantise<Real, Dither::kNone, false, Integer>
                   : sources.empty()       ? quantise<Real, Dither::kTriangular, false, Integer>
                                           : quantise<Real, Dither::kTriangular, true, Integer>;
  long long above = 0;
  for (std::size_t i = 0; i < samples.size(); i += kPiece) {
    const std::size_t size = std::min(kPiece, samples.size() - i);
    above += run(samples.subspan(i, size), bits, count + static_cast<std::uint32_t>(i),
                 integers.subspan(i, size), sources.empty() ? sources : sources.subspan(i, size));
  }
  return above;
}

}  // namespace

Dither usual_dither(const AudioFormat& format) {
  const int bits = integer_bits(format);
  return bits > 0 && bits < 24 ? Dither::kTriangular : Dither::kNone;
}

long long to_pcm(std::span<const float> samples, int bits, Dither dither, std::uint32_t count,
                 std::span<std::int32_t> integers, std::span<const float> sources) {
  if (bits <= 24) return quantise<float>(samples, bits, dither, count, integers, sources);
  return quantise<double>(samples, bits, Dither::kNone, count, integers, sources);
}

long long to_pcm(std::span<const float> samples, int bits, Dither dither, std::uint32_t count,
                 std::span<std::int16_t> integers, std::span<const float> sources) {
  return quantise<float>(samples, bits, dither, count, integers, sources);
}

long long to_full_scale(std::span<const float> samples, std::span<float> clamped) {
  long long above = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const float x = std::isnan(samples[i]) ? 0.0f : samples[i];
    if (std::abs(x) > 1.0f) ++above;
    clamped[i] = std::clamp(x, -1.0f, 1.0f);
  }
  return above;
}

std::size_t first_not_finite(std::span<const float> samples) {
  // A number is finite unless all bits of its exponent are set.
  constexpr std::uint32_t kExponent = 0x7F800000;
  const auto is_not_finite = [](float x) {
    return (std::bit_cast<std::uint32_t>(x) & kExponent) == kExponent;
  };
  for (std::size_t i = 0; i < samples.size(); i += kPiece) {
    const auto piece = samples.subspan(i, std::min(kPiece, samples.size() - i));
    std::uint32_t any = 0;
    for (const float x : piece) any |= is_not_finite(x) ? 1u : 0u;
    if (any) {
      const auto first = std::ranges::find_if(piece, is_not_finite);
      return i + static_cast<std::size_t>(first - piece.begin());
    }
  }
  return samples.size();
}

}  // namespace channelstrip::host
