#include "scene_values.h"

#include <algorithm>
#include <array>
#include <bit>
#include <type_traits>

namespace channelstrip::test {
namespace {

struct Field {
  std::string_view name;
  std::size_t words = 1;
  bool integer = false;
};

constexpr Field kSettings[] = {{"compSlope"},
                               {"compKneeA"},
                               {"compKneeB"},
                               {"compKneeC"},
                               {"compThreshold"},
                               {"compKneeHigh"},
                               {"compKneeLow"},
                               {"compRange"},
                               {"makeupGain"},
                               {"compAttack"},
                               {"compRelease"},
                               {"reserved12", 1, true},
                               {"expSlope"},
                               {"expKneeA"},
                               {"expKneeB"},
                               {"expKneeC"},
                               {"expThreshold"},
                               {"gateOpenThreshold"},
                               {"gateCloseThreshold"},
                               {"expKneeHigh"},
                               {"expKneeLow"},
                               {"expRange"},
                               {"expAttack"},
                               {"expRelease"},
                               {"expHoldSamples", 1, true},
                               {"peakDecay"},
                               {"keyFilter", 5},
                               {"detectorFilter", 5},
                               {"linkGroup", 8, true},
                               {"detectorMode", 1, true},
                               {"keyEnable", 1, true},
                               {"keyListen", 1, true},
                               {"inputMeterGain"},
                               {"bypass", 1, true}};

class Lister {
 public:
  explicit Lister(std::vector<Value>& values) : values_(values) {}

  void add_instance(const Instance& it, std::size_t instance) {
    instance_ = instance;
    add_settings(it.dyn_coefs);
    for (std::size_t i = 0; i < CHANNELSTRIP_EQ_COEFS; ++i) {
      add("targetCoefs", Quantity::kFixed, i, it.eq_targets.targetCoefs[i]);
    }
    for (std::size_t pass = 0; pass < 2; ++pass) {
      add("firstBand", Quantity::kFixed, pass, it.eq_targets.firstBand[pass]);
      add("endBand", Quantity::kFixed, pass, it.eq_targets.endBand[pass]);
    }
    for (std::size_t i = 0; i < CHANNELSTRIP_EQ_COEFS; ++i) {
      add("coefs", Quantity::kFixed, i, it.eq_coefs.coefs[i]);
      add("smoothedCoefs", Quantity::kFixed, i, it.eq_coefs.smoothedCoefs[i]);
    }
    for (std::size_t c = 0; c < kMaxChannels; ++c) {
      add_eq_memory(it.eq_state[c], c);
      add_dynamics(it.dyn_state[c], c);
    }
    add_meters(it);
  }

  // Samples that belong to no instance's output must stay as they are.
  void add_arena(const Scene& scene) {
    constexpr auto kNobody = static_cast<std::size_t>(-1);
    std::vector<std::size_t> owners(scene.arena.size(), kNobody);
    for (std::size_t i = 0; i < scene.instances.size(); ++i) {
      const Instance& it = scene.instances[i];
      const int samples = std::max(0, (it.count + 15) / 16 * 16);
      for (std::size_t at : it.outputs_at) std::fill_n(owners.data() + at, samples, i);
    }
    for (std::size_t i = 0; i < owners.size(); ++i) {
      const bool written = owners[i] != kNobody;
      instance_ = written ? owners[i] : 0;
      add("arena", written ? Quantity::kSignal : Quantity::kFixed, i, scene.arena[i]);
    }
  }

 private:
  template <typename T>
  void add(std::string_view field, Quantity quantity, std::size_t index, T value) {
    using Bits = std::conditional_t<sizeof(T) == 8, uint64_t, uint32_t>;
    values_.push_back({field, quantity, instance_, index, static_cast<double>(value),
                       uint64_t{std::bit_cast<Bits>(value)}});
  }

  void add_settings(const Dyn_SCoefsBlock& c) {
    const auto words = std::bit_cast<std::array<uint32_t, sizeof c / 4>>(c);
    std::size_t word = 0;
    for (const Field& field : kSettings) {
      for (std::size_t i = 0; i < field.words; ++i, ++word) {
        if (field.integer) {
          add(field.name, Quantity::kFixed, i, std::bit_cast<int32_t>(words[word]));
        } else {
          add(field.name, Quantity::kFixed, i, std::bit_cast<float>(words[word]));
        }
      }
    }
  }

  void add_eq_memory(const EQ_SState& s, std::size_t c) {
    for (std::size_t band = 0; band < CHANNELSTRIP_EQ_BANDS; ++band) {
      add("z1", Quantity::kSignal, 10 * c + band, s.z1[band]);
      add("z2", Quantity::kSignal, 10 * c + band, s.z2[band]);
    }
    add("EQ_SState.reserved", Quantity::kFixed, c, s.reserved);
  }

  void add_dynamics(const Dyn_SState& s, std::size_t c) {
    add("compGain", Quantity::kDecibel, c, s.compGain);
    add("expGain", Quantity::kDecibel, c, s.expGain);
    add("keyZ1", Quantity::kSignal, c, s.keyZ1);
    add("keyZ2", Quantity::kSignal, c, s.keyZ2);
    add("detZ1", Quantity::kSignal, c, s.detZ1);
    add("detZ2", Quantity::kSignal, c, s.detZ2);
    add("peakLevel", Quantity::kSignal, c, s.peakLevel);
    add("smoothLevel", Quantity::kSignal, c, s.smoothLevel);
    add("curMakeupGain", Quantity::kFixed, c, s.curMakeupGain);
    add("curCompRange", Quantity::kFixed, c, s.curCompRange);
    add("curExpRange", Quantity::kFixed, c, s.curExpRange);
    add("gateOpen", Quantity::kFixed, c, s.gateOpen);
    add("holdCount", Quantity::kFixed, c, s.holdCount);
    add("reserved14", Quantity::kFixed, c, s.reserved14);
    add("dezipRate", Quantity::kFixed, c, s.dezipRate);
  }

  void add_meters(const Instance& it) {
    const std::size_t channels = it.outputs_at.size();
    const std::size_t level = 2 * channels + CHANNELSTRIP_METER_LEVEL;
    for (std::size_t i = 0; i < it.meters.size(); ++i) {
      const auto quantity = i < 2 * channels       ? Quantity::kSignal
                            : i == level           ? Quantity::kChosen
                            : i < 3 * channels + 4 ? Quantity::kGain
                                                   : Quantity::kFixed;
      add("meters", quantity, i, it.meters[i]);
    }
  }

  std::vector<Value>& values_;
  std::size_t instance_ = 0;
};

}  // namespace

std::vector<Value> values_of(const Scene& scene) {
  std::vector<Value> values;
  values.reserve(scene.instances.size() * sizeof(Instance) / 4 + scene.arena.size());
  Lister lister(values);
  for (std::size_t i = 0; i < scene.instances.size(); ++i) {
    lister.add_instance(scene.instances[i], i);
  }
  lister.add_arena(scene);
  return values;
}

}  // namespace channelstrip::test
