// Dither: noise that makes the error of a coarser quantisation independent of the signal.
//
// The strip computes in single precision, 24 significant bits. Files of fewer than 24 bits lose
// some of them and are dithered. Files of 24 and 32 bits aren't, because the noise of their
// rounding lies at -140 dBFS or below; at 24 bits dither can be asked for. Without dither samples
// are rounded to the nearest step, and what already lies on a step stays the same, bit for bit.
//
// Triangular: the sum of two independent uniform variables, each 1 step wide. 2 steps peak to peak
// are the least for which neither mean nor variance of the total error depend on the signal; the
// variance is 3/12 step^2 (Lipshitz, Wannamaker, Vanderkooy, "Quantization and Dither: A
// Theoretical Survey", J. Audio Eng. Soc. 40(5), 1992). A sample of exactly 0 is left alone:
// digital silence stays silent. So is a sample that came out as it went in, and that the file can
// hold: nothing is lost there.

#pragma once

#include <cstdint>

#include "audio_format.h"

namespace channelstrip::host {

enum class Dither { kNone, kTriangular };

// Triangular for integers of fewer than 24 bits.
Dither usual_dither(const AudioFormat& format);

// Uniform in 32 bits and, for successive counts, uncorrelated: the finaliser of MurmurHash3
// (A. Appleby, public domain). The same counts give the same noise, however a stream is cut.
inline std::uint32_t hashed(std::uint32_t count) {
  count ^= count >> 16;
  count *= 0x85EBCA6Bu;
  count ^= count >> 13;
  count *= 0xC2B2AE35u;
  return count ^ count >> 16;
}

// In (-1, 1) steps: the upper half of the hash minus the lower half, so that the mean is exactly 0.
template <typename Real>
Real triangular(std::uint32_t count) {
  const std::uint32_t bits = hashed(count);
  const auto difference =
      static_cast<std::int32_t>(bits >> 16) - static_cast<std::int32_t>(bits & 0xFFFFu);
  return static_cast<Real>(difference) * Real(0x1p-16);
}

}  // namespace channelstrip::host
