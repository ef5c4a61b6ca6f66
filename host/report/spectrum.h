// How a signal's power is spread over frequency.
//
// P. D. Welch, "The use of fast Fourier transform for the estimation of power spectra", IEEE Trans.
// Audio Electroacoust. 15(2), 1967: the mean over overlapping, windowed segments.

#pragma once

#include <complex>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace channelstrip::host {

// The mean power per bin of a stream of any length, in memory that doesn't grow. Segments have
// a Hann window and overlap by half; a signal shorter than one is a single segment of its own
// length. Samples after the last whole segment don't count.
class WelchSpectrum {
 public:
  // The length of a segment is the least power of two that sets bins 1.5 Hz apart or nearer, but
  // 2^20 at most.
  explicit WelchSpectrum(double sample_rate);
  ~WelchSpectrum();
  WelchSpectrum(WelchSpectrum&&) noexcept;
  WelchSpectrum& operator=(WelchSpectrum&&) = delete;

  void add(std::span<const float> samples);

  // Power of bins 0 Hz, bin_width() ... half the sample rate, whose sum is the mean square of the
  // segments as windowed: 0.5 for a sine at full scale.
  std::vector<double> power() const;

  double sample_rate() const { return sample_rate_; }
  double bin_width() const;  // Hz

 private:
  struct Transform;

  void add_power(std::span<const double> window, std::span<double> sum) const;

  double sample_rate_;
  std::size_t length_;
  std::vector<float> segment_;
  std::vector<double> sum_;  // over whole segments
  std::size_t segments_ = 0;
  std::unique_ptr<Transform> transform_;
};

struct BandLevel {
  double frequency = 0;  // Hz, the geometric centre
  double level = 0;      // dBFS
};

// The levels in bands of 1/6 octave, one every 1/24 octave from 20 Hz (or 3 bins, if that is more)
// up to where half the sample rate cuts the band off. A sine at full scale reads 0 dB in every band
// that holds it; pink noise is level, white noise rises by 3 dB per octave. The levels don't depend
// on the length of the segments or the sample rate. Bands are at least three bins wide, because
// less can't be told apart; that is wider than 1/6 octave below about 40 Hz. `power` is that of a
// WelchSpectrum or a mean of several. No level is below `floor`.
std::vector<BandLevel> band_levels(std::span<const double> power, double bin_width,
                                   double floor = -150);

}  // namespace channelstrip::host
