#include "burst.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "control/design/dynamics.h"
#include "control/strip/strip_stream.h"

namespace channelstrip::host {
namespace {

struct Plan {
  double quiet, loud;                 // dBFS
  std::size_t before, during, after;  // samples
};

// Time constants until a gain counts as settled: 0.03 % of its way remains.
constexpr double kSettled = 8;

Plan plan(const StripSettings& settings, double sample_rate) {
  const auto& compressor = settings.compressor;
  const auto& expander = settings.expander;
  double quiet = 0, loud = -1000, attack = 0, release = 0, hold = 0;
  if (compressor) {
    const double threshold = compressor->threshold, half_knee = compressor->knee / 2;
    quiet = std::min(quiet, threshold - half_knee - 6);
    loud = std::max(threshold + half_knee + 3, std::min(threshold + half_knee + 12, 0.0));
    attack = compressor->attack;
    release = compressor->release;
  }
  if (expander) {
    const double threshold = expander->threshold, half_knee = expander->knee / 2;
    quiet = std::min(quiet, threshold - half_knee - 12);
    quiet = std::min(quiet, threshold - expander->hysteresis.value_or(0) - 6);
    loud = std::max(loud, threshold + half_knee + 6);
    attack = std::max(attack, expander->attack);
    release = std::max(release, expander->release);
    hold = expander->hold;
  }
  const double detector = settings.detector.time;
  const bool smooth = settings.detector.mode != DetectorMode::kPeak;
  // A peak detector falls by 8.7 dB, a factor of e, in its time.
  const double fall = detector * (loud - quiet) / linear_to_db(std::exp(1));
  const auto samples = [&](double milliseconds) {
    return static_cast<std::size_t>(std::ceil(milliseconds / 1000 * sample_rate));
  };
  return {.quiet = quiet,
          .loud = loud,
          .before = samples(2 * kSettled * (release + attack) + hold + kSettled * detector + 10),
          .during = samples(kSettled * attack + (smooth ? kSettled * detector : 0) + 1),
          .after = samples(kSettled * release + hold + fall + 1)};
}

struct Run {
  std::vector<double> rise, fall;
};

// The strip's gain in dB, sample by sample. The input is constant but for the two jumps, so that
// its magnitude is its level at every sample.
Run run(const StripSettings& settings, double sample_rate, const Library& library,
        const Plan& plan) {
  const StemFormat& mono = *find_stem_format("Mono");
  StripStream stream(library, default_layout(mono), sample_rate, settings);
  const auto quiet = static_cast<float>(db_to_linear(plan.quiet));
  const auto loud = static_cast<float>(db_to_linear(plan.loud));
  std::vector<float> input(plan.before, quiet), output;
  input.insert(input.end(), plan.during, loud);
  input.insert(input.end(), plan.after, quiet);
  stream.process(input, output);
  stream.finish(output);

  std::vector<double> gain(input.size());
  std::ranges::transform(output, input, gain.begin(), [](float out, float in) {
    return linear_to_db(static_cast<double>(out) / static_cast<double>(in));
  });
  const auto rise = gain.begin() + static_cast<std::ptrdiff_t>(plan.before);
  const auto fall = rise + static_cast<std::ptrdiff_t>(plan.during);
  return {{rise, fall}, {fall, gain.end()}};
}

// The settings with the dynamics and their detector, everything else neutral.
StripSettings dynamics_alone(const StripSettings& settings) {
  StripSettings result;
  result.compressor = settings.compressor;
  result.expander = settings.expander;
  result.detector = settings.detector;
  return result;
}

}  // namespace

Burst measure_burst(const StripSettings& settings, double sample_rate, const Library& library) {
  const StripSettings both = dynamics_alone(settings);
  StripSettings compressor = both, expander = both;
  compressor.expander.reset();
  expander.compressor.reset();
  if (compressor.compressor) {
    compressor.compressor->makeup = 0;
    compressor.compressor->auto_makeup = false;
  }
  const Plan jumps = plan(both, sample_rate);
  Run c = run(compressor, sample_rate, library, jumps);
  Run e = run(expander, sample_rate, library, jumps);
  Run t = run(both, sample_rate, library, jumps);
  return {.quiet = jumps.quiet,
          .loud = jumps.loud,
          .rise = {std::move(c.rise), std::move(e.rise), std::move(t.rise)},
          .fall = {std::move(c.fall), std::move(e.fall), std::move(t.fall)}};
}

}  // namespace channelstrip::host
