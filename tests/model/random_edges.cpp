#include "random_scene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <tuple>

#include "conversions.h"

namespace channelstrip::test {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

float below(float x) {
  return std::nextafter(x, -kInfinity);
}

float above(float x) {
  return std::nextafter(x, kInfinity);
}

// The lowest level that converts to `db` or more; for -140 dB it is a few ulps from 1e-7.
float level_near_floor(float db) {
  float level = 0.999e-7F;
  while (model::level_to_db(level) < db) level = above(level);
  return level;
}

float random_level(Random& random) {
  static const float kFloor[] = {level_near_floor(below(-140.0F)), level_near_floor(-140.0F),
                                 level_near_floor(above(-140.0F))};
  if (random.chance(0.2F)) return random.pick({1.0F, below(1.0F), above(1.0F)});
  if (random.chance(0.2F)) return random.pick({kFloor[0], kFloor[1], kFloor[2]});
  if (random.chance(0.1F)) return 0.0F;
  return std::exp2(random.real(-20.0F, 2.0F));
}

// Where two pieces of a curve meet they differ by several dB: a level on the wrong side of an edge
// shows. The comments give each line's value at `db`.
void set_curves(Dyn_SCoefsBlock& c, float db) {
  c.compThreshold = db - 20.0F;
  c.compSlope = -0.8F;  // -16 dB
  c.compKneeA = c.compKneeB = 0.0F;
  c.compKneeC = -3.0F;
  c.expThreshold = db + 10.0F;
  c.expSlope = 1.5F;  // -15 dB
  c.expKneeA = c.expKneeB = 0.0F;
  c.expKneeC = -4.0F;
  c.compRange = c.expRange = -100.0F;
}

void set_edges(Random& random, Dyn_SCoefsBlock& c, float db) {
  const auto edge = [&] {
    return random.chance(0.25F) ? db + random.real(-12.0F, 12.0F)
                                : random.pick({below(db), db, above(db)});
  };
  std::tie(c.compKneeLow, c.compKneeHigh) = std::minmax({edge(), edge()});
  std::tie(c.expKneeLow, c.expKneeHigh) = std::minmax({edge(), edge()});
  std::tie(c.gateCloseThreshold, c.gateOpenThreshold) = std::minmax({edge(), edge()});
}

// Makes the detector's level that of the audio, or silence: a peak that decays to nothing is 0
// after every sample that doesn't rise above the last.
void detect_exactly(Random& random, Instance& it) {
  Dyn_SCoefsBlock& c = it.dyn_coefs;
  it.eq_targets.endBand[0] = 0;
  std::ranges::copy(std::array{1.0F, 0.0F, 0.0F, 0.0F, 0.0F}, c.keyFilter);
  c.detectorMode = 0;
  c.keyListen = c.bypass = 0;
  c.peakDecay = random.pick({0.0F, 0.0F, 0.5F, 1.0F});
  for (float* weight : {&c.compAttack, &c.compRelease, &c.expAttack, &c.expRelease}) {
    *weight = random.real(0.2F, 1.0F);
  }
  c.expHoldSamples = random.pick({0, 0, 1, 5});
  it.dyn_state[0].dezipRate = random.pick({0.5F, 1.0F});
}

}  // namespace

void stand_on_edges(Random& random, Scene& scene) {
  const float level = random_level(random);
  const float db = model::level_to_db(level);
  for (Instance& it : scene.instances) {
    detect_exactly(random, it);
    set_curves(it.dyn_coefs, db);
    set_edges(random, it.dyn_coefs, db);
  }
  for (float& sample : scene.arena) {
    const float magnitude =
        random.chance(0.6F) ? level : random.pick({0.0F, 0.5F * level, 2.0F * level, 0.01F});
    sample = random.chance(0.5F) ? magnitude : -magnitude;
  }
}

}  // namespace channelstrip::test
