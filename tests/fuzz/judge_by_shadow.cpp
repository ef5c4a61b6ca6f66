// Checks the library under MemorySanitizer: before a call everything is poisoned except what the
// call may read; after it everything that the call writes must be initialised. A report ends the
// program.

#include <sanitizer/msan_interface.h>
#include <tests/model/run_scene.h>

#include <algorithm>
#include <span>

#include "judge.h"

namespace channelstrip::test {
namespace {

constexpr auto kPoison = [](const auto& words) { __msan_poison(&words, sizeof words); };
constexpr auto kLift = [](const auto& words) { __msan_unpoison(&words, sizeof words); };
constexpr auto kCheck = [](const auto& words) {
  __msan_check_mem_is_initialized(&words, sizeof words);
};

template <typename Action>
void visit_all(Scene& scene, Action action) {
  for (Instance& it : scene.instances) {
    action(it.dyn_coefs);
    action(it.dyn_state);
    action(it.eq_targets);
    action(it.eq_coefs);
    action(it.eq_state);
    action(it.meters);
  }
  for (float& sample : scene.arena) action(sample);
}

bool runs(const EQ_SCoefs& eq, int band) {
  return (band >= eq.firstBand[0] && band < eq.endBand[0]) ||
         (band >= eq.firstBand[1] && band < eq.endBand[1]);
}

bool leads_group(const Dyn_SCoefsBlock& dyn, int channel) {
  const auto* const group = dyn.linkGroup + channel;
  return std::find(dyn.linkGroup, group, *group) == group;
}

// Visits the memory that a call both reads and writes.
template <typename Action>
void visit_memory(const Instance& settings, Instance& memory, int channels, Action action) {
  action(memory.eq_coefs);
  for (int c = 0; c < channels; ++c) {
    const auto channel = static_cast<std::size_t>(c);
    EQ_SState& eq = memory.eq_state[channel];
    for (int band = 0; band < CHANNELSTRIP_EQ_BANDS; ++band) {
      if (!runs(settings.eq_targets, band)) continue;
      action(eq.z1[band]);
      action(eq.z2[band]);
    }
    Dyn_SState& dyn = memory.dyn_state[channel];
    action(dyn.keyZ1);
    action(dyn.keyZ2);
    if (!leads_group(settings.dyn_coefs, c)) continue;
    for (auto field : {&Dyn_SState::compGain, &Dyn_SState::expGain, &Dyn_SState::detZ1,
                       &Dyn_SState::detZ2, &Dyn_SState::peakLevel, &Dyn_SState::curMakeupGain,
                       &Dyn_SState::curCompRange, &Dyn_SState::curExpRange}) {
      action(dyn.*field);
    }
    action(dyn.gateOpen);
    action(dyn.holdCount);
  }
  for (int i = 0; i < 3 * channels + 4; ++i) action(memory.meters[static_cast<std::size_t>(i)]);
}

template <typename Action>
void visit_buffer(Scene& scene, std::size_t at, int count, Action action) {
  const auto samples = static_cast<std::size_t>((count + 15) / 16 * 16);
  for (float& sample : std::span(scene.arena).subspan(at, samples)) action(sample);
}

void lift_what_is_read(Scene& scene, const Instance& it, int channels) {
  Instance& settings = scene.instances[it.settings_of];
  Instance& memory = scene.instances[it.memory_of];
  Dyn_SCoefsBlock& dyn = settings.dyn_coefs;
  kLift(dyn);
  kLift(settings.eq_targets);
  kLift(memory.dyn_state[0].dezipRate);
  visit_memory(settings, memory, channels, kLift);
  for (int c = 0; c < channels; ++c) {
    visit_buffer(scene, it.inputs_at[static_cast<std::size_t>(c)], it.count, kLift);
  }
  if (it.key_input != 0 && dyn.keyEnable == 1) {
    visit_buffer(scene, it.inputs_at[static_cast<std::size_t>(it.key_input)], it.count, kLift);
  }
  kPoison(dyn.reserved12);
  std::for_each(dyn.linkGroup + channels, std::end(dyn.linkGroup), kPoison);
}

void check_what_is_written(Scene& scene, const Instance& it, int channels) {
  const Instance& settings = scene.instances[it.settings_of];
  Instance& memory = scene.instances[it.memory_of];
  visit_memory(settings, memory, channels, kCheck);
  for (int c = 0; c < channels; ++c) {
    const auto channel = static_cast<std::size_t>(c);
    if (leads_group(settings.dyn_coefs, c)) kCheck(memory.dyn_state[channel].smoothLevel);
    visit_buffer(scene, it.outputs_at[channel], it.count, kCheck);
  }
}

}  // namespace

std::string judge_call(Scene& scene, const Format& format, Kind) {
  visit_all(scene, kPoison);
  for (std::size_t i : scene.range) {
    const Instance& it = scene.instances[i];
    if (it.count > 0) lift_what_is_read(scene, it, format.stem.channels);
  }
  const Contexts contexts(scene);
  const auto& range = contexts.range();
  format.entry(range.data(), range.data() + range.size());
  for (std::size_t i : scene.range) {
    const Instance& it = scene.instances[i];
    if (it.count > 0) check_what_is_written(scene, it, format.stem.channels);
  }
  visit_all(scene, kLift);
  return {};
}

}  // namespace channelstrip::test
