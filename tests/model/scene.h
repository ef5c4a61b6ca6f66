// A range of instances with all their records and buffers. A value, so that two runs can start from
// equal, independent copies.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>
#include <ChannelStrip/eq/eq_records.h>
#include <ChannelStrip/frame/context.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace channelstrip::test {

inline constexpr std::size_t kMaxChannels = 8;
inline constexpr std::size_t kMeterGuard = 4;  // words past the meter array's end

// Records of eight channels in every format: those past the format's N channels must stay
// untouched.
struct Instance {
  Dyn_SCoefsBlock dyn_coefs{};
  std::array<Dyn_SState, kMaxChannels> dyn_state{};
  EQ_SCoefs eq_targets{};
  EQ_SDezipCoefs eq_coefs{};
  std::array<EQ_SState, kMaxChannels> eq_state{};
  std::array<float, 3 * kMaxChannels + 4 + kMeterGuard> meters{};
  int32_t key_input = 0;
  int32_t count = 0;
  std::vector<std::size_t> inputs_at, outputs_at;  // arena index of each buffer's first sample

  // The instances whose records its context points to: its own, or shared ones.
  std::size_t settings_of = 0;  // coefficients and targets
  std::size_t memory_of = 0;    // states and meters
};

struct Scene {
  std::vector<Instance> instances;
  std::vector<std::size_t> range;  // which instances a call processes, in order
  std::vector<float> arena;        // every buffer of every instance
  int first_shape = 0;             // of the order-free sections; used only to make the scene
};

// The context records of a scene's range. They point into the scene, which must not move.
class Contexts {
 public:
  explicit Contexts(Scene& scene) : pointers_(scene.instances.size()) {
    contexts_.reserve(scene.instances.size());
    for (std::size_t i = 0; i < scene.instances.size(); ++i) add(scene, i);
    for (std::size_t i : scene.range) range_.push_back(&contexts_[i]);
  }
  Contexts(const Contexts&) = delete;
  Contexts& operator=(const Contexts&) = delete;

  const std::vector<const SChannelStrip_Alg_Context*>& range() const { return range_; }

 private:
  struct Pointers {
    std::vector<const float*> inputs;
    std::vector<float*> outputs;
    float* meters;
  };

  void add(Scene& scene, std::size_t index) {
    Instance& it = scene.instances[index];
    const Instance& settings = scene.instances[it.settings_of];
    Instance& memory = scene.instances[it.memory_of];
    Pointers& to = pointers_[index];
    for (std::size_t at : it.inputs_at) to.inputs.push_back(scene.arena.data() + at);
    for (std::size_t at : it.outputs_at) to.outputs.push_back(scene.arena.data() + at);
    to.meters = memory.meters.data();
    contexts_.push_back({to.inputs.data(), to.outputs.data(), &it.key_input, &it.count,
                         &settings.dyn_coefs, memory.dyn_state.data(), &settings.eq_targets,
                         &memory.eq_coefs, memory.eq_state.data(), &to.meters});
  }

  std::vector<Pointers> pointers_;
  std::vector<SChannelStrip_Alg_Context> contexts_;
  std::vector<const SChannelStrip_Alg_Context*> range_;
};

}  // namespace channelstrip::test
