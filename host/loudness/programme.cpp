#include "programme.h"

#include <algorithm>
#include <cmath>

namespace channelstrip::host {
namespace {

constexpr double kOffset = -0.691;  // LUFS of a power of 1
constexpr double kAbsoluteGate = -70, kRelativeGate = -10;
constexpr std::size_t kBlock = 4;  // steps

double loudness_of(double power) {
  return kOffset + 10 * std::log10(power);
}

double power_of(double loudness) {
  return std::pow(10, (loudness - kOffset) / 10);
}

// The mean power of the blocks at or above a power; 0 if there is none.
double mean_above(std::span<const double> steps, double gate) {
  double sum = 0;
  std::size_t count = 0;
  for (std::size_t i = kBlock; i <= steps.size(); ++i) {
    const double* const end = steps.data() + i;
    const double block = (end[-4] + end[-3] + end[-2] + end[-1]) / kBlock;
    if (!(block >= gate)) continue;
    sum += block;
    ++count;
  }
  return count == 0 ? 0 : sum / static_cast<double>(count);
}

}  // namespace

std::optional<double> integrated_loudness(const Programme& programme, double gain) {
  const double absolute = power_of(kAbsoluteGate - gain);
  const double mean = mean_above(programme.power, absolute);
  const double relative = mean * std::pow(10, kRelativeGate / 10);
  const double loudness = loudness_of(mean_above(programme.power, std::max(absolute, relative)));
  return std::isfinite(loudness) ? std::optional(loudness + gain) : std::nullopt;
}

ProgrammeMeter::ProgrammeMeter(double sample_rate, const ChannelLayout& layout)
    : meter_(open_ebur128(sample_rate, layout, EBUR128_MODE_M)),
      missing_(frames_per_step(*meter_)),
      true_peak_(sample_rate, layout.labels.size()) {}

void ProgrammeMeter::add(std::span<const float> frames) {
  true_peak_.add(frames);
  const std::size_t channels = meter_->channels;
  while (!frames.empty()) {
    const std::size_t count = std::min(frames.size() / channels, missing_);
    add_frames(*meter_, frames.first(count * channels));
    frames = frames.subspan(count * channels);
    missing_ -= count;
    if (missing_ > 0) continue;
    power_.push_back(power_of(step_loudness(*meter_)));
    missing_ = frames_per_step(*meter_);
  }
}

}  // namespace channelstrip::host
