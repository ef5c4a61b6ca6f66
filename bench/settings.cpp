#include "settings.h"

namespace channelstrip::bench {

using host::BandSettings;
using host::BandType;

host::StripCoefficients busy_coefficients(const host::StemFormat& format, bool all_before,
                                          bool moved) {
  host::StripSettings settings;
  settings.pre = {
      {BandType::kHighPass, 70, 0.7071, 0},      {BandType::kLowShelf, 140, 0.7071, 2},
      {BandType::kPeak, 320, 1.2, -3},           {BandType::kPeak, 900, 2, -2},
      {BandType::kPeak, 2400, 0.9, 2},           {BandType::kPeak, 5200, 1.5, -2.5},
      {BandType::kHighShelf, 9000, 0.7071, 2.5}, {BandType::kLowPass, 17000, 0.7071, 0}};
  settings.compressor = {.threshold = -24,
                         .ratio = 3,
                         .knee = 10,
                         .attack = 2,
                         .release = 40,
                         .range = -30,
                         .makeup = 4};
  settings.expander = {.threshold = -38,
                       .ratio = 2,
                       .knee = 8,
                       .attack = 0.5,
                       .release = 15,
                       .hold = 1,
                       .range = -40,
                       .hysteresis = 6};
  settings.detector.time = 1;
  settings.key_filter = {BandType::kHighPass, 100, 0.7071, 0};
  if (moved) {
    for (BandSettings& band : settings.pre) {
      band.frequency *= 1.15;
      band.q *= 1.1;
      band.gain += 1;
    }
    settings.compressor->makeup += 2;
    settings.compressor->range += 4;
    settings.expander->range += 4;
  }
  if (!all_before) {
    host::StripSettings::Bands before;
    for (std::size_t i = 0; i < settings.pre.size(); ++i) {
      (i < 4 ? before : settings.post).push_back(settings.pre[i]);
    }
    settings.pre = before;
  }

  auto coefficients = host::design_strip(settings, kSampleRate, host::default_layout(format));
  coefficients.dezip_rate = 0.02f;  // a glide is still far from its target after 512 samples
  return coefficients;
}

}  // namespace channelstrip::bench
