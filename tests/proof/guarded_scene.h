// A scene in which every record, pointer array and buffer lies in a mapping of its own, directly
// beside a page that can't be accessed. What the library may only read is write-protected.

#pragma once

#include <tests/support/guarded.h>

#include <algorithm>
#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include "scenes.h"

namespace channelstrip::test {

template <typename T>
Guarded<T> guarded(const T& value, Guard guard, Access access) {
  return Guarded<T>(std::span(&value, 1), guard, access);
}

// Only the records of the format's N channels exist.
struct GuardedRecords {
  GuardedRecords(const Instance& it, std::size_t channels, Guard guard)
      : dyn_coefs(guarded(it.dyn_coefs, guard, Access::kReadOnly)),
        eq_targets(guarded(it.eq_targets, guard, Access::kReadOnly)),
        eq_coefs(guarded(it.eq_coefs, guard, Access::kReadWrite)),
        dyn_state(std::span(it.dyn_state).first(channels), guard, Access::kReadWrite),
        eq_state(std::span(it.eq_state).first(channels), guard, Access::kReadWrite),
        meters(std::span(it.meters).first(3 * channels + 4), guard, Access::kReadWrite),
        meter_pointer(guarded(meters.data(), guard, Access::kReadOnly)),
        key_input(guarded(it.key_input, guard, Access::kReadOnly)),
        count(guarded(it.count, guard, Access::kReadOnly)) {}

  void copy_results(Instance& it) const {
    it.eq_coefs = *eq_coefs.data();
    std::ranges::copy(dyn_state.values(), it.dyn_state.begin());
    std::ranges::copy(eq_state.values(), it.eq_state.begin());
    std::ranges::copy(meters.values(), it.meters.begin());
  }

  Guarded<Dyn_SCoefsBlock> dyn_coefs;
  Guarded<EQ_SCoefs> eq_targets;
  Guarded<EQ_SDezipCoefs> eq_coefs;
  Guarded<Dyn_SState> dyn_state;
  Guarded<EQ_SState> eq_state;
  Guarded<float> meters;
  Guarded<float*> meter_pointer;
  Guarded<int32_t> key_input, count;
};

struct GuardedContext {
  GuardedContext(const GuardedRecords& records, const std::vector<const float*>& in,
                 const std::vector<float*>& out, Guard guard)
      : inputs(in, guard, Access::kReadOnly),
        outputs(out, guard, Access::kReadOnly),
        context(guarded(
            SChannelStrip_Alg_Context{
                inputs.data(), outputs.data(), records.key_input.data(), records.count.data(),
                records.dyn_coefs.data(), records.dyn_state.data(), records.eq_targets.data(),
                records.eq_coefs.data(), records.eq_state.data(), records.meter_pointer.data()},
            guard, Access::kReadOnly)) {}

  Guarded<const float*> inputs;
  Guarded<float*> outputs;
  Guarded<SChannelStrip_Alg_Context> context;
};

// For scenes whose buffers are identical or apart, not overlapping in part. Each buffer ends with
// the last block of its longest use.
class GuardedScene {
 public:
  GuardedScene(const Scene& scene, std::size_t channels, Guard guard) {
    add_buffers(scene, guard);
    std::vector<const SChannelStrip_Alg_Context*> all, range;
    for (const Instance& it : scene.instances) {
      std::vector<const float*> in;
      for (std::size_t at : it.inputs_at) in.push_back(buffers_.at(at).data());
      std::vector<float*> out;
      for (std::size_t at : it.outputs_at) out.push_back(buffers_.at(at).data());
      const GuardedRecords& records = records_.emplace_back(it, channels, guard);
      all.push_back(contexts_.emplace_back(records, in, out, guard).context.data());
    }
    for (std::size_t i : scene.range) range.push_back(all[i]);
    range_.emplace(range, guard, Access::kReadOnly);
  }

  std::span<const SChannelStrip_Alg_Context* const> range() const { return range_->values(); }

  void copy_results(Scene& scene) const {
    for (std::size_t i = 0; i < records_.size(); ++i) records_[i].copy_results(scene.instances[i]);
    for (const auto& [at, buffer] : buffers_) {
      std::ranges::copy(buffer.values(), scene.arena.data() + at);
    }
  }

 private:
  struct Use {
    int samples = 0;
    Access access = Access::kReadOnly;
  };

  void add_buffers(const Scene& scene, Guard guard) {
    std::map<std::size_t, Use> uses;
    for (const Instance& it : scene.instances) {
      const int samples = std::max(0, (it.count + 15) / 16 * 16);
      for (const auto* const buffers : {&it.inputs_at, &it.outputs_at}) {
        for (std::size_t at : *buffers) uses[at].samples = std::max(uses[at].samples, samples);
      }
      for (std::size_t at : it.outputs_at) uses[at].access = Access::kReadWrite;
    }
    for (const auto& [at, use] : uses) {
      const auto samples =
          std::span(scene.arena).subspan(at, static_cast<std::size_t>(use.samples));
      buffers_.try_emplace(at, samples, guard, use.access);
    }
  }

  std::map<std::size_t, Guarded<float>> buffers_;
  std::deque<GuardedRecords> records_;
  std::deque<GuardedContext> contexts_;
  std::optional<Guarded<const SChannelStrip_Alg_Context*>> range_;
};

}  // namespace channelstrip::test
