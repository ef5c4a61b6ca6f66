#include "pcm.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace channelstrip::host {
namespace {

// Loops over pieces that stay in the first-level cache, with nothing in them that keeps a compiler
// from doing several samples at once: no branch, call or reduction of wider type.
constexpr std::size_t kPiece = 1024;

// Adding it leaves a double no room for fractions: it is rounded to the nearest integer, ties to
// even. For |x| < 2^51.
constexpr double kNoFractions = 0x1.8p52;

double rounded(double x) {
  return (x + kNoFractions) - kNoFractions;
}

// As std::clamp, for arguments that may not be a number: the comparisons are false then.
double clamped(double x, double low, double high) {
  x = x < low ? low : x;
  return x > high ? high : x;
}

template <Dither dither>
int quantise(std::span<const float> samples, int bits, std::uint32_t count,
             std::span<std::int32_t> integers) {
  const double full_scale = std::ldexp(1.0, bits - 1);
  const double top_bits = std::ldexp(1.0, 32 - bits);
  int above = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    double x = static_cast<double>(samples[i]) * full_scale;
    x = x == x ? x : 0;
    x = clamped(x, -2 * full_scale, 2 * full_scale);
    above += std::abs(rounded(x)) > full_scale ? 1 : 0;
    if constexpr (dither == Dither::kTriangular) {
      const double noise = triangular(count + static_cast<std::uint32_t>(i));
      x += x == 0 ? 0 : noise;
    }
    integers[i] =
        static_cast<std::int32_t>(clamped(rounded(x), -full_scale, full_scale - 1) * top_bits);
  }
  return above;
}

}  // namespace

Dither usual_dither(const AudioFormat& format) {
  const int bits = integer_bits(format);
  return bits > 0 && bits < 24 ? Dither::kTriangular : Dither::kNone;
}

long long to_pcm(std::span<const float> samples, int bits, Dither dither, std::uint32_t count,
                 std::span<std::int32_t> integers) {
  const auto run = dither == Dither::kTriangular && bits < 32 ? quantise<Dither::kTriangular>
                                                              : quantise<Dither::kNone>;
  long long above = 0;
  for (std::size_t i = 0; i < samples.size(); i += kPiece) {
    const std::size_t size = std::min(kPiece, samples.size() - i);
    above += run(samples.subspan(i, size), bits, count + static_cast<std::uint32_t>(i),
                 integers.subspan(i, size));
  }
  return above;
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
  const auto is_odd = [](float x) {
    return (std::bit_cast<std::uint32_t>(x) & kExponent) == kExponent;
  };
  for (std::size_t i = 0; i < samples.size(); i += kPiece) {
    const auto piece = samples.subspan(i, std::min(kPiece, samples.size() - i));
    std::uint32_t odd = 0;
    for (const float x : piece) odd |= is_odd(x) ? 1u : 0u;
    if (odd)
      return i + static_cast<std::size_t>(std::ranges::find_if(piece, is_odd) - piece.begin());
  }
  return samples.size();
}

}  // namespace channelstrip::host
