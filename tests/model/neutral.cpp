#include "neutral.h"

#include <cstring>
#include <type_traits>
#include <vector>

namespace channelstrip::test {
namespace {

static_assert(std::is_standard_layout_v<Instance>);

// Identity filters, flat curves, ballistics without delay, a peak detector without decay.
Instance neutral_instance() {
  Instance it;
  Dyn_SCoefsBlock& c = it.dyn_coefs;
  c.compKneeLow = c.compKneeHigh = c.compThreshold = 1000.0F;
  c.expKneeLow = c.expKneeHigh = c.expThreshold = -1000.0F;
  c.gateOpenThreshold = c.gateCloseThreshold = -1000.0F;
  c.makeupGain = c.compAttack = c.compRelease = c.expAttack = c.expRelease = c.peakDecay = 1.0F;
  c.keyFilter[0] = c.detectorFilter[0] = 1.0F;
  for (std::size_t i = 0; i < CHANNELSTRIP_EQ_COEFS; i += 5) {
    it.eq_targets.targetCoefs[i] = it.eq_coefs.coefs[i] = 1.0F;
    it.eq_coefs.smoothedCoefs[i] = 1.0;
  }
  for (Dyn_SState& s : it.dyn_state) s.curMakeupGain = 1.0F;
  return it;
}

class Parts {
 public:
  Parts() {
    const std::size_t dyn = offsetof(Instance, dyn_coefs);
    add(dyn + offsetof(Dyn_SCoefsBlock, compSlope), 7 * 4);  // the compressor's curve
    add_words(dyn + offsetof(Dyn_SCoefsBlock, compRange), 5);
    add(dyn + offsetof(Dyn_SCoefsBlock, expSlope), 9 * 4);  // the expander's curve and the gate
    add_words(dyn + offsetof(Dyn_SCoefsBlock, expRange), 5);
    add(dyn + offsetof(Dyn_SCoefsBlock, keyFilter), 5 * 4);
    add(dyn + offsetof(Dyn_SCoefsBlock, detectorFilter), 5 * 4);
    add_words(dyn + offsetof(Dyn_SCoefsBlock, linkGroup), 13);
    for (std::size_t band = 0; band < CHANNELSTRIP_EQ_BANDS; ++band) {
      add(offsetof(Instance, eq_targets) + 20 * band, 5 * 4);
      add(offsetof(Instance, eq_coefs) + 20 * band, 5 * 4);
      add(offsetof(Instance, eq_coefs) + offsetof(EQ_SDezipCoefs, smoothedCoefs) + 40 * band,
          5 * 8);
    }
    add_words(offsetof(Instance, dyn_state), sizeof(Instance::dyn_state) / 4);
    add_words(offsetof(Instance, eq_state), sizeof(Instance::eq_state) / 4);
    add_words(offsetof(Instance, meters), sizeof(Instance::meters) / 4);
    add_words(offsetof(Instance, key_input), 1);
  }

  const std::vector<Part>& all() const { return all_; }

 private:
  void add(std::size_t offset, std::size_t size) { all_.push_back({offset, size}); }
  void add_words(std::size_t offset, std::size_t words) {
    for (std::size_t i = 0; i < words; ++i) add(offset + 4 * i, 4);
  }

  std::vector<Part> all_;
};

}  // namespace

std::span<const Part> parts_of_an_instance() {
  static const Parts parts;
  return parts.all();
}

void neutralise(Instance& it, std::span<const Part> parts) {
  static const Instance neutral = neutral_instance();
  for (const Part& part : parts) {
    std::memcpy(reinterpret_cast<std::byte*>(&it) + part.offset,
                reinterpret_cast<const std::byte*>(&neutral) + part.offset, part.size);
  }
}

}  // namespace channelstrip::test
