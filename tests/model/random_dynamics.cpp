#include "random_scene.h"

#include <limits>

namespace channelstrip::test {
namespace {

// In dB. The listed values are exactly the levels of the audio's constant runs.
float threshold(Random& random) {
  return random.chance(0.4F) ? random.pick({-140.0F, -6.0206003F, 0.0F, 6.0206003F})
                             : random.real(-90.0F, 6.0F);
}

float weight(Random& random) {
  if (random.chance(0.3F)) return random.pick({0.0F, 1.0F});
  return random.pick({1.0F, 0.03F}) * random.real(0.0F, 1.0F);
}

struct Knee {
  float a, b, c;
};

// scale (level - edge)^2
Knee square(float scale, float edge) {
  return {scale, -2.0F * scale * edge, scale * edge * edge};
}

void set_compressor(Dyn_SCoefsBlock& c, float slope, float at, float width, Knee knee) {
  c.compSlope = slope;
  c.compThreshold = at;
  c.compKneeLow = at - width / 2.0F;
  c.compKneeHigh = at + width / 2.0F;
  c.compKneeA = knee.a;
  c.compKneeB = knee.b;
  c.compKneeC = knee.c;
}

void set_expander(Dyn_SCoefsBlock& c, float slope, float at, float width, Knee knee) {
  c.expSlope = slope;
  c.expThreshold = at;
  c.expKneeLow = at - width / 2.0F;
  c.expKneeHigh = at + width / 2.0F;
  c.expKneeA = knee.a;
  c.expKneeB = knee.b;
  c.expKneeC = knee.c;
}

void set_soft_curves(Random& random, Dyn_SCoefsBlock& c, float comp_slope, float exp_slope) {
  const float comp_at = random.real(-40.0F, -5.0F), comp_width = random.real(6.0F, 20.0F);
  set_compressor(c, comp_slope, comp_at, comp_width,
                 square(comp_slope / (2.0F * comp_width), comp_at - comp_width / 2.0F));
  const float exp_at = random.real(-60.0F, -30.0F), exp_width = random.real(6.0F, 20.0F);
  set_expander(c, exp_slope, exp_at, exp_width,
               square(-exp_slope / (2.0F * exp_width), exp_at + exp_width / 2.0F));
}

// Soft curves that jump at the knee edges, or flat knees whose edges are exact levels, so that the
// result shows to which side an edge belongs. A threshold below every level reaches gains that only
// the power's finest steps tell apart, and levels that are denormals.
void set_any_curves(Random& random, Dyn_SCoefsBlock& c) {
  if (random.chance(0.5F)) {
    set_soft_curves(random, c, random.real(-1.0F, 0.3F), random.real(0.0F, 3.0F));
    c.compKneeC += random.real(-1.0F, 1.0F);
    c.expKneeC += random.real(-1.0F, 1.0F);
    return;
  }
  const float width = random.pick({0.0F, 2.0F * 6.0206003F});
  set_compressor(c, -0.8F, threshold(random), width, {0.0F, 0.0F, -3.0F});
  set_expander(c, 1.5F, threshold(random), width, {0.0F, 0.0F, -4.0F});
  if (random.chance(0.1F)) {
    set_compressor(c, random.pick({-0.8F, -0.02F}), -770.0F, 0.0F, {0.0F, 0.0F, 0.0F});
  }
}

void set_any_ballistics(Random& random, Dyn_SCoefsBlock& c) {
  c.gateOpenThreshold = threshold(random);
  c.gateCloseThreshold = random.chance(0.3F) ? c.gateOpenThreshold : threshold(random);
  c.compRange = random.chance(0.1F) ? -599.0F : random.real(-60.0F, 0.0F);
  c.expRange = random.real(-140.0F, 0.0F);
  c.expHoldSamples = random.chance(0.1F)
                         ? random.pick({(1 << 24) + 1, std::numeric_limits<int32_t>::max()})
                         : random.integer(0, 40) * random.integer(0, 1);
  c.peakDecay = random.chance(0.2F) ? random.pick({0.0F, 0.5F, 1.0F}) : random.real(0.95F, 1.0F);
}

void set_continuous_ballistics(Random& random, Dyn_SCoefsBlock& c) {
  c.gateOpenThreshold = c.gateCloseThreshold = random.chance(0.9F) ? -1000.0F : 1000.0F;
  c.compRange = random.real(-60.0F, 0.0F);
  // The steepest curve reaches the range above -140 dB, where the level's floor would make a step.
  c.expRange = random.real(-40.0F, 0.0F);
  c.expHoldSamples = 0;
  c.peakDecay = 1.0F;
}

}  // namespace

void randomise_dynamics(Random& random, Dyn_SCoefsBlock& c, int groups, Kind kind) {
  switch (kind) {
    case Kind::kOrderFree:
      set_any_curves(random, c);
      set_any_ballistics(random, c);
      break;
    case Kind::kEqualiser:
      set_soft_curves(random, c, 0.0F, 0.0F);
      set_continuous_ballistics(random, c);
      break;
    case Kind::kDynamics:
      set_soft_curves(random, c, random.real(-1.0F, 0.0F), random.real(1.0F, 3.0F));
      set_continuous_ballistics(random, c);
      break;
  }
  c.compAttack = weight(random);
  c.compRelease = weight(random);
  c.expAttack = weight(random);
  c.expRelease = weight(random);
  c.makeupGain = random.real(0.0F, 3.0F);
  c.inputMeterGain = random.chance(0.1F) ? 0.0F : random.real(-2.0F, 2.0F);

  c.detectorMode = random.pick({-1, 0, 1, 2});
  c.keyEnable = random.pick({-1, 0, 1, 1, 2});
  c.keyListen = random.pick({-1, 0, 0, 0, 0, 1});
  c.bypass = random.pick({-1, 0, 0, 0, 0, 1, 2});

  for (int32_t& group : c.linkGroup) group = random.integer(0, groups - 1);
  c.reserved12 = random.integer(-1000, 1000);
}

}  // namespace channelstrip::test
