#include "spectrum.h"

#include <fftw3.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>
#include <numeric>

namespace channelstrip::host {
namespace {

constexpr double kWidestBin = 1.5;  // Hz
constexpr std::size_t kLongest = std::size_t{1} << 20;

std::size_t segment_length(double sample_rate) {
  const auto least = static_cast<std::size_t>(std::ceil(sample_rate / kWidestBin));
  return std::clamp(std::bit_ceil(least), std::size_t{16}, kLongest);
}

// Periodic, so that overlapping halves sum to 1.
std::vector<double> hann(std::size_t length) {
  std::vector<double> window(length);
  for (std::size_t i = 0; i < length; ++i) {
    window[i] = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * static_cast<double>(i) /
                                     static_cast<double>(length));
  }
  return window;
}

// The sum of the power below any frequency.
class CumulativePower {
 public:
  CumulativePower(std::span<const double> power, double bin_width)
      : bin_width_(bin_width), below_{0} {
    for (const double bin : power) below_.push_back(below_.back() + bin);
  }

  // As if each bin's power were spread evenly from half a bin below its centre to half above it.
  double below(double frequency) const {
    const double edge =
        std::clamp(frequency / bin_width_ + 0.5, 0.0, static_cast<double>(below_.size() - 1));
    const double whole = std::floor(edge);
    const auto bin = static_cast<std::size_t>(whole);
    const double next = below_[std::min(bin + 1, below_.size() - 1)];
    return std::lerp(below_[bin], next, edge - whole);
  }

 private:
  double bin_width_;
  std::vector<double> below_;
};

}  // namespace

// The plan is estimated, not measured, so that every run computes the same sums.
struct WelchSpectrum::Transform {
  struct Free {
    void operator()(void* memory) const { fftw_free(memory); }
  };
  struct Destroy {
    void operator()(fftw_plan transform) const { fftw_destroy_plan(transform); }
  };

  explicit Transform(std::size_t length)
      : input(static_cast<double*>(fftw_malloc(length * sizeof(double)))),
        output(static_cast<fftw_complex*>(fftw_malloc((length / 2 + 1) * sizeof(fftw_complex)))),
        plan(fftw_plan_dft_r2c_1d(static_cast<int>(length), input.get(), output.get(),
                                  FFTW_ESTIMATE)),
        window(hann(length)) {}

  std::unique_ptr<double, Free> input;
  std::unique_ptr<fftw_complex, Free> output;
  std::unique_ptr<std::remove_pointer_t<fftw_plan>, Destroy> plan;
  std::vector<double> window;  // of a whole segment
};

WelchSpectrum::WelchSpectrum(double sample_rate)
    : sample_rate_(sample_rate),
      length_(segment_length(sample_rate)),
      sum_(length_ / 2 + 1),
      transform_(std::make_unique<Transform>(length_)) {
  segment_.reserve(length_);
}

WelchSpectrum::~WelchSpectrum() = default;
WelchSpectrum::WelchSpectrum(WelchSpectrum&&) noexcept = default;

double WelchSpectrum::bin_width() const {
  return sample_rate_ / static_cast<double>(length_);
}

void WelchSpectrum::add(std::span<const float> samples) {
  while (!samples.empty()) {
    const auto next = samples.first(std::min(samples.size(), length_ - segment_.size()));
    samples = samples.subspan(next.size());
    segment_.insert(segment_.end(), next.begin(), next.end());
    if (segment_.size() < length_) return;
    add_power(transform_->window, sum_);
    ++segments_;
    segment_.erase(segment_.begin(), segment_.begin() + static_cast<std::ptrdiff_t>(length_ / 2));
  }
}

std::vector<double> WelchSpectrum::power() const {
  std::vector<double> mean = sum_;
  if (segments_ == 0) add_power(hann(segment_.size()), mean);
  for (double& bin : mean) bin /= static_cast<double>(std::max<std::size_t>(segments_, 1));
  return mean;
}

// Adds the power spectrum of the segment, up to the window's length and followed by zeros. By
// Parseval's theorem the bins' squares, divided by the length times the window's energy, sum to the
// mean square; all bins but the first and the last count twice, for the negative frequencies.
void WelchSpectrum::add_power(std::span<const double> window, std::span<double> sum) const {
  const double energy = std::inner_product(window.begin(), window.end(), window.begin(), 0.0);
  if (energy == 0) return;
  double* const input = transform_->input.get();
  for (std::size_t i = 0; i < window.size(); ++i) {
    input[i] = window[i] * static_cast<double>(segment_[i]);
  }
  std::fill(input + window.size(), input + length_, 0.0);
  fftw_execute(transform_->plan.get());
  const fftw_complex* const output = transform_->output.get();
  const double whole = static_cast<double>(length_) * energy;
  const auto square = [&](std::size_t bin) {
    const auto& [real, imaginary] = output[bin];
    return real * real + imaginary * imaginary;
  };
  sum.front() += square(0) / whole;
  for (std::size_t k = 1; k + 1 < sum.size(); ++k) sum[k] += 2 * square(k) / whole;
  sum.back() += square(sum.size() - 1) / whole;
}

std::vector<BandLevel> band_levels(std::span<const double> power, double bin_width, double floor) {
  const CumulativePower cumulative(power, bin_width);
  const double nyquist = bin_width * static_cast<double>(power.size() - 1);
  const double half_band = std::exp2(1.0 / 12);
  std::vector<BandLevel> levels;
  for (int step = 0;; ++step) {
    const double centre = std::max(20.0, 3 * bin_width) * std::exp2(step / 24.0);
    const double widening = std::max(0.0, 1.5 * bin_width - centre * (half_band - 1));
    const double high = centre * half_band + widening;
    if (high > nyquist) return levels;
    const double low = centre / half_band - widening;
    const double in_band = cumulative.below(high) - cumulative.below(low);
    // Twice the mean square: a sine at full scale is 0 dB.
    levels.push_back({centre, std::max(floor, 10 * std::log10(2 * std::max(in_band, 1e-300)))});
  }
}

}  // namespace channelstrip::host
