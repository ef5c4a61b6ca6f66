#include "random_scene.h"

#include <algorithm>
#include <limits>
#include <span>

#include "random_sections.h"

namespace channelstrip::test {
namespace {

constexpr int kKeyFilter = 8, kDetectorFilter = 9;  // after the bands

// Which coefficient an order-free section has besides b0. It never changes and is the same in all
// instances of a scene, so that glides, new settings and shared records leave the section
// order-free.
int shape_of(const Scene& scene, int section) {
  return (scene.first_shape + section) % 5;
}

// The memory z2 of a section; in an order-free one it must not give z1's sum a second term.
float random_z2(Random& random, const Scene& scene, int section, Kind kind) {
  const int shape = shape_of(scene, section);
  const bool in_use = kind != Kind::kOrderFree || shape == 2 || shape == 4;
  return in_use ? random.real(-0.1F, 0.1F) : 0.0F;
}

SectionCoefs eq_section(Random& random, Kind kind, int shape) {
  return kind == Kind::kOrderFree ? order_free_section(random, shape) : general_section(random);
}

SectionCoefs detector_section(Random& random, Kind kind, int shape) {
  if (kind != Kind::kOrderFree) return smoothing_section(random);
  const float weight = random.real(0.05F, 1.0F);
  if (shape == 3) return {weight, 0.0F, 0.0F, 1.0F - weight, 0.0F};
  return order_free_section(random, shape);
}

void set_bands(Random& random, const Scene& scene, std::span<float> coefs, Kind kind) {
  for (int band = 0; band < CHANNELSTRIP_EQ_BANDS; ++band) {
    const SectionCoefs section = eq_section(random, kind, shape_of(scene, band));
    std::copy(section.begin(), section.end(), coefs.begin() + 5 * band);
  }
}

// Ranges that split the bands, empty ones (end equal to or below first) and, if `overlap`,
// overlapping ones.
void set_band_ranges(Random& random, EQ_SCoefs& eq, bool overlap) {
  const int split = random.integer(0, CHANNELSTRIP_EQ_BANDS);
  eq.firstBand[0] = random.integer(0, split);
  eq.endBand[0] = split;
  eq.firstBand[1] = overlap && random.chance(0.2F) ? random.integer(0, split) : split;
  eq.endBand[1] = random.integer(split, CHANNELSTRIP_EQ_BANDS);
  if (random.chance(0.15F)) std::swap(eq.firstBand[0], eq.endBand[0]);
  if (random.chance(0.15F)) std::swap(eq.firstBand[1], eq.endBand[1]);
}

void set_settings(Random& random, const Scene& scene, Instance& it, int groups, Kind kind) {
  set_bands(random, scene, it.eq_targets.targetCoefs, kind);
  set_band_ranges(random, it.eq_targets, kind == Kind::kOrderFree);

  randomise_dynamics(random, it.dyn_coefs, groups, kind);
  // Also a filter that does nothing, so that levels meet thresholds exactly.
  const bool plain_key = kind == Kind::kEqualiser || random.chance(0.3F);
  const SectionCoefs key =
      plain_key ? SectionCoefs{1.0F} : eq_section(random, kind, shape_of(scene, kKeyFilter));
  std::copy(key.begin(), key.end(), it.dyn_coefs.keyFilter);
  // A smoothing filter is not replaced: with the memory of another one it would undershoot.
  if (kind != Kind::kDynamics || it.dyn_coefs.detectorFilter[0] == 0.0F) {
    const SectionCoefs detector = detector_section(random, kind, shape_of(scene, kDetectorFilter));
    std::copy(detector.begin(), detector.end(), it.dyn_coefs.detectorFilter);
  }

  it.dyn_state[0].dezipRate =
      random.chance(0.3F) ? random.pick({0.0F, 0.5F, 1.0F}) : random.real(0.0F, 0.3F);
}

void set_eq_state(Random& random, const Scene& scene, Instance& it, Kind kind) {
  set_bands(random, scene, it.eq_coefs.coefs, kind);
  for (std::size_t i = 0; i < CHANNELSTRIP_EQ_COEFS; ++i) {
    // Not always the value that the one in use was rounded from.
    const double off = random.pick({0.0, 1e-9, 0.01});
    it.eq_coefs.smoothedCoefs[i] = static_cast<double>(it.eq_coefs.coefs[i]) * (1.0 + off);
  }
  for (EQ_SState& state : it.eq_state) {
    for (int band = 0; band < CHANNELSTRIP_EQ_BANDS; ++band) {
      state.z1[band] = random.real(-0.1F, 0.1F);
      state.z2[band] = random_z2(random, scene, band, kind);
    }
    state.reserved = random.real(-1.0F, 1.0F);
  }
}

void set_dyn_state(Random& random, const Scene& scene, Instance& it, Kind kind) {
  for (Dyn_SState& s : it.dyn_state) {
    s.compGain = random.real(-30.0F, 0.0F);
    s.expGain = random.real(-30.0F, 0.0F);
    s.keyZ1 = random.real(-0.1F, 0.1F);
    s.keyZ2 = random_z2(random, scene, kKeyFilter, kind);
    s.detZ1 = random.real(0.0F, 0.1F);
    // Zero for a smoothing filter: the level stays positive.
    s.detZ2 = kind == Kind::kDynamics ? 0.0F : random_z2(random, scene, kDetectorFilter, kind);
    s.peakLevel = random.real(0.0F, 1.0F);
    s.smoothLevel = random.real(0.0F, 1.0F);
    s.curMakeupGain = random.real(0.0F, 3.0F);
    s.curCompRange = random.real(-60.0F, 0.0F);
    s.curExpRange = random.real(-40.0F, 0.0F);
    s.gateOpen = random.pick({-1, 0, 1, 2});
    // A negative count counts as a very long one.
    s.holdCount = kind == Kind::kOrderFree ? random.pick({-5, 0, 1, 7, 30}) : 0;
    if (kind == Kind::kOrderFree && random.chance(0.1F)) {
      // The product of the two factors underflows to 0.
      s.compGain = s.curCompRange = -599.0F;
      s.expGain = -700.0F;
    }
    s.reserved14 = random.integer(-1000, 1000);
    s.dezipRate = random.real(-10.0F, 10.0F);
  }
}

void set_meters(Random& random, Instance& it) {
  const bool reset = random.chance(0.5F);
  for (float& meter : it.meters) meter = reset ? 0.0F : random.real(0.0F, 1.5F);
  if (random.chance(0.1F)) it.meters[0] = std::numeric_limits<float>::quiet_NaN();
}

void set_counts(Random& random, Scene& scene) {
  for (Instance& it : scene.instances) {
    it.count = random.integer(1, kMostCount);
    if (random.chance(0.15F)) it.count = random.pick({0, -1, -16});
  }
}

// Gives all instances the first one's count and band ranges, as instances that share a register
// must have.
void make_alike(Scene& scene) {
  for (Instance& it : scene.instances) {
    const Instance& first = scene.instances.front();
    it.count = first.count;
    std::copy_n(first.eq_targets.firstBand, 2, it.eq_targets.firstBand);
    std::copy_n(first.eq_targets.endBand, 2, it.eq_targets.endBand);
  }
}

// Instances in ascending order, some of them twice, some left out.
void choose_range(Random& random, Scene& scene) {
  scene.range.clear();
  for (std::size_t i = 0; i < scene.instances.size(); ++i) {
    if (!random.chance(0.05F)) scene.range.push_back(i);
    if (random.chance(0.05F)) scene.range.push_back(i);
  }
}

// Some instances share another's settings, some its memory.
void choose_loans(Random& random, Scene& scene, Kind kind) {
  const bool loans = kind == Kind::kOrderFree && random.chance(0.2F);
  const int last = static_cast<int>(scene.instances.size()) - 1;
  for (std::size_t i = 0; i < scene.instances.size(); ++i) {
    const auto lender = [&] {
      return loans && random.chance(0.3F) ? static_cast<std::size_t>(random.integer(0, last)) : i;
    };
    scene.instances[i].settings_of = lender();
    scene.instances[i].memory_of = lender();
  }
}

}  // namespace

Scene random_scene(Random& random, int channels, int groups, Kind kind) {
  Scene scene;
  scene.first_shape = random.integer(0, 4);
  // Often enough instances to fill any register that they might share.
  const bool many = random.chance(channels <= 2 ? 0.8F : 0.1F);
  scene.instances.resize(static_cast<std::size_t>(random.integer(0, many ? 20 : 4)));
  for (Instance& it : scene.instances) {
    set_eq_state(random, scene, it, kind);
    set_dyn_state(random, scene, it, kind);
    set_meters(random, it);
    it.key_input = random.integer(0, 1) * random.integer(0, channels + kKeys - 1);
  }
  choose_loans(random, scene, kind);
  place_buffers(random, scene, channels, kind);
  change_scene(random, scene, groups, kind);
  return scene;
}

void change_scene(Random& random, Scene& scene, int groups, Kind kind) {
  for (Instance& it : scene.instances) {
    set_settings(random, scene, it, groups, kind);
    if (random.chance(0.3F)) set_meters(random, it);
  }
  set_counts(random, scene);
  if (random.chance(0.6F)) make_alike(scene);
  choose_range(random, scene);
  fill_arena(random, scene, kind);
}

}  // namespace channelstrip::test
