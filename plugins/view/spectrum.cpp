// Scales as in G. Heinzel, A. Ruediger, R. Schilling, "Spectrum and spectral density estimation by
// the discrete Fourier transform", 2002, sections 9 to 11; Hann's window as in F. J. Harris, "On
// the use of windows for harmonic analysis with the discrete Fourier transform", Proc. IEEE 66(1),
// 1978.

#include "spectrum.h"

#include <fftw3.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <mutex>
#include <new>
#include <numbers>

namespace channelstrip::view {
namespace {

// FFTW makes one plan at a time.
std::mutex& planning() {
  static std::mutex mutex;
  return mutex;
}

constexpr double kHalfBand = 1.0 / 12;  // octaves, to either side
constexpr double kHalfLobe = 2;         // bins: Hann's main lobe, which holds a sine's power

}  // namespace

struct SpectrumAnalyser::Transform {
  float* in;
  fftwf_complex* out;
  fftwf_plan plan;

  explicit Transform(std::size_t frames)
      : in(fftwf_alloc_real(frames)), out(fftwf_alloc_complex(frames / 2 + 1)) {
    const std::scoped_lock lock(planning());
    plan = in && out ? fftwf_plan_dft_r2c_1d(static_cast<int>(frames), in, out, FFTW_ESTIMATE)
                     : nullptr;
    if (!plan) {
      fftwf_free(in);
      fftwf_free(out);
      throw std::bad_alloc();
    }
  }
  Transform(const Transform&) = delete;
  Transform& operator=(const Transform&) = delete;
  ~Transform() {
    const std::scoped_lock lock(planning());
    fftwf_destroy_plan(plan);
    fftwf_free(in);
    fftwf_free(out);
  }
};

SpectrumAnalyser::SpectrumAnalyser(double sample_rate)
    : sample_rate_(sample_rate),
      window_(std::bit_ceil(static_cast<std::size_t>(std::clamp(sample_rate / 6, 256.0, 65536.0)))),
      powers_(window_.size() / 2 + 1),
      transform_(std::make_unique<Transform>(window_.size())) {
  for (std::size_t n = 0; n < window_.size(); ++n) {
    const double phase =
        2 * std::numbers::pi * static_cast<double>(n) / static_cast<double>(window_.size());
    window_[n] = static_cast<float>(0.5 - 0.5 * std::cos(phase));
  }
}

SpectrumAnalyser::~SpectrumAnalyser() = default;

void SpectrumAnalyser::clear() {
  std::ranges::fill(powers_, 0.0);
}

void SpectrumAnalyser::add(std::span<const float> samples) {
  for (std::size_t n = 0; n < window_.size(); ++n) {
    transform_->in[n] = std::isfinite(samples[n]) ? window_[n] * samples[n] : 0;
  }
  fftwf_execute(transform_->plan);
  for (std::size_t k = 0; k < powers_.size(); ++k) {
    const double re = static_cast<double>(transform_->out[k][0]);
    const double im = static_cast<double>(transform_->out[k][1]);
    powers_[k] = std::max(powers_[k], re * re + im * im);
  }
}

// By Parseval's theorem a sine of amplitude A has the power A^2 N S / 4 in its lobe, S being the
// sum of the window's squares, for Hann's 3 N / 8. A band is never narrower than that lobe, so a
// sine has its level at low frequencies, too, but for what the neighbouring bands share.
Spectrum SpectrumAnalyser::levels() const {
  std::vector<double> sums(powers_.size() + 1);  // of the bins below
  for (std::size_t k = 0; k < powers_.size(); ++k) sums[k + 1] = sums[k] + powers_[k];
  // The power below a frequency in bins; a bin reaches half a bin to either side.
  const auto below = [&](double bin) {
    const double at = std::clamp(bin + 0.5, 0.0, static_cast<double>(powers_.size()));
    const auto whole = std::min(static_cast<std::size_t>(at), powers_.size() - 1);
    return sums[whole] + (at - static_cast<double>(whole)) * powers_[whole];
  };
  const double count = static_cast<double>(window_.size());
  const double scale = 4 / (count * 0.375 * count);
  const double width = std::exp2(kHalfBand);
  Spectrum levels;
  for (std::size_t i = 0; i < levels.size(); ++i) {
    const double position = static_cast<double>(i) / (kSpectrumPoints - 1);
    const double frequency =
        kLowestFrequency * std::pow(kHighestFrequency / kLowestFrequency, position);
    const double bin = frequency / sample_rate_ * count;
    const double power = below(std::max(bin * width, bin + kHalfLobe)) -
                         below(std::min(bin / width, bin - kHalfLobe));
    const double silence = static_cast<double>(kSilence);
    levels[i] =
        static_cast<float>(std::max(silence, 10 * std::log10(std::max(power * scale, 1e-30))));
  }
  return levels;
}

void follow(Spectrum& shown, const Spectrum& now, double seconds) {
  const auto rise = static_cast<float>(1 - std::exp(-seconds / 0.05));
  const auto fall = static_cast<float>(24 * seconds);
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const float risen = shown[i] + rise * (now[i] - shown[i]);
    shown[i] = now[i] > shown[i] ? risen : std::max(now[i], shown[i] - fall);
  }
}

}  // namespace channelstrip::view
