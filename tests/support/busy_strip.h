// A strip in which everything moves at once.

#pragma once

#include <cstddef>
#include <random>

#include "strip.h"

namespace channelstrip::test {

// -1 to 1, the same on every machine.
class Noise {
 public:
  explicit Noise(unsigned seed) : generator_(seed + 1) {}
  float operator()() { return static_cast<float>(generator_()) * 0x1p-30f - 1.0f; }

 private:
  std::minstd_rand generator_;  // 1 to 2^31 - 2
};

// Noise on every input. Eight different bands, three of them after the dynamics, and the makeup
// glide to their targets. Compressor, gate and all link groups are at work.
class BusyStrip : public Strip {
 public:
  explicit BusyStrip(std::string_view format_name, int samples = 32, unsigned seed = 0)
      : Strip(format_name, samples) {
    Noise noise(seed);
    for (auto& channel : in) std::generate(channel.begin(), channel.end(), noise);
    for (int band = 0; band < CHANNELSTRIP_EQ_BANDS; ++band) {
      // |a1| + |a2| < 1 keeps every section stable.
      set_band(band, {1 + 0.2f * noise(), 0.5f * noise(), 0.3f * noise(), 0.5f * noise(),
                      0.4f * noise()});
    }
    eq.endBand[0] = eq.firstBand[1] = 5;
    eq.endBand[1] = CHANNELSTRIP_EQ_BANDS;

    dyn.compSlope = -0.5f;
    dyn.compThreshold = -20;
    dyn.compKneeLow = -26;
    dyn.compKneeHigh = -14;
    dyn.compKneeA = -0.0208333f;  // slope / 24 dB
    dyn.compKneeB = -1.083333f;
    dyn.compKneeC = -14.08333f;
    dyn.compAttack = 0.1f;
    dyn.compRelease = 0.01f;
    dyn.makeupGain = 1.5f;

    dyn.expSlope = 1;
    dyn.expThreshold = dyn.expKneeLow = dyn.expKneeHigh = -6;
    dyn.gateOpenThreshold = -8;
    dyn.gateCloseThreshold = -20;
    dyn.expRange = -40;
    dyn.expAttack = 0.3f;
    dyn.expRelease = 0.05f;
    dyn.expHoldSamples = 5;

    const float key_filter[] = {0.8f, 0.1f, 0, 0.2f, 0.1f};
    const float detector_filter[] = {0.1f, 0, 0, 0.8f, 0.1f};
    std::copy(std::begin(key_filter), std::end(key_filter), dyn.keyFilter);
    std::copy(std::begin(detector_filter), std::end(detector_filter), dyn.detectorFilter);
    dyn.peakDecay = 0.9f;
    for (int c = 0; c < channels; ++c) dyn.linkGroup[c] = c % format.groups;
    dyn.inputMeterGain = 0.7f;
    dyn_state[0].dezipRate = 0.1f;
  }
};

}  // namespace channelstrip::test
