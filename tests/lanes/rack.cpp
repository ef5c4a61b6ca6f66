#include "rack.h"

#include <fmt/format.h>
#include <tests/model/random_scene.h>
#include <tests/model/random_sections.h>
#include <tests/model/strip.h>
#include <tests/support/strip.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <iterator>
#include <string_view>
#include <type_traits>

namespace channelstrip::test {
namespace {

std::vector<Instance> random_instances(Random& random, const host::StemFormat& format,
                                       std::size_t count) {
  std::vector<Instance> instances;
  while (instances.size() < count) {
    const Scene scene = random_scene(random, format.channels, format.groups, Kind::kOrderFree);
    std::ranges::copy(scene.instances, std::back_inserter(instances));
  }
  instances.resize(count);
  return instances;
}

void set_sections(Random& random, float* coefs, int sections) {
  for (int i = 0; i < sections; ++i) std::ranges::copy(general_section(random), coefs + 5 * i);
}

// For words of records: as floats, all NaNs count as equal. As integers, only equal bits do.
template <typename T>
bool same_word(uint32_t a, uint32_t b) {
  const auto is_nan = [](uint32_t word) { return std::isnan(std::bit_cast<float>(word)); };
  return a == b || (!std::is_integral_v<T> && is_nan(a) && is_nan(b));
}

template <typename T>
std::string first_difference(std::string_view name, const std::vector<T>& a,
                             const std::vector<T>& b) {
  constexpr std::size_t kWords = sizeof(T) / sizeof(uint32_t);
  using Words = std::array<uint32_t, kWords>;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const auto x = std::bit_cast<Words>(a[i]), y = std::bit_cast<Words>(b[i]);
    for (std::size_t word = 0; word < kWords; ++word) {
      if (same_word<T>(x[word], y[word])) continue;
      return fmt::format("word {} of {}[{}]: {:#x}, {:#x}", word, name, i, x[word], y[word]);
    }
  }
  return {};
}

std::vector<int32_t> hold_counts(const Rack& rack) {
  std::vector<int32_t> counts;
  for (const Dyn_SState& state : rack.dyn_state) counts.push_back(state.holdCount);
  return counts;
}

}  // namespace

Rack::Rack(const host::StemFormat& of, std::size_t instances, int32_t count, unsigned seed)
    : format(of),
      channels(static_cast<std::size_t>(of.channels)),
      meters(instances * (3 * channels + 4)),
      dyn(instances),
      eq(instances),
      dezip(instances),
      dyn_state(instances * channels),
      eq_state(instances * channels),
      counts(instances, count),
      keys(instances),
      inputs(instances),
      outputs(instances),
      meter_pointers(instances),
      contexts(instances),
      samples_(static_cast<std::size_t>((count + 15) / 16 * 16)) {
  Random random(seed);
  const std::vector<Instance> values = random_instances(random, format, instances);
  Scene scene;
  scene.arena.resize(instances * (inputs_of_each() + channels) * samples_);
  fill_arena(random, scene, Kind::kOrderFree);
  audio = scene.arena;
  for (std::size_t i = 0; i < instances; ++i) {
    add(values[i], i);
    set_sections(random, eq[i].targetCoefs, CHANNELSTRIP_EQ_BANDS);
    set_sections(random, dezip[i].coefs, CHANNELSTRIP_EQ_BANDS);
    std::ranges::copy(dezip[i].coefs, dezip[i].smoothedCoefs);
    set_sections(random, dyn[i].keyFilter, 1);
    std::ranges::copy(smoothing_section(random), dyn[i].detectorFilter);
    wire(i);
  }
}

void Rack::add(const Instance& values, std::size_t i) {
  dyn[i] = values.dyn_coefs;
  eq[i] = values.eq_targets;
  eq[i].firstBand[0] = 1;
  eq[i].endBand[0] = eq[i].firstBand[1] = 4;
  eq[i].endBand[1] = 7;
  const auto at = static_cast<std::ptrdiff_t>(i), n = static_cast<std::ptrdiff_t>(channels);
  std::copy_n(values.dyn_state.begin(), n, dyn_state.begin() + at * n);
  std::copy_n(values.eq_state.begin(), n, eq_state.begin() + at * n);
  std::copy_n(values.meters.begin(), 3 * n + 4, meters.begin() + at * (3 * n + 4));
  keys[i] = static_cast<int32_t>(i % (kKeys + 1) == 0 ? 0 : channels + i % kKeys);
}

void Rack::wire(std::size_t i) {
  for (std::size_t c = 0; c < inputs_of_each(); ++c) inputs[i].push_back(input(i, c));
  for (std::size_t c = 0; c < channels; ++c) outputs[i].push_back(output(i, c));
  meter_pointers[i] = &meters[i * (3 * channels + 4)];
  contexts[i] = {inputs[i].data(),
                 outputs[i].data(),
                 &keys[i],
                 &counts[i],
                 &dyn[i],
                 &dyn_state[i * channels],
                 &eq[i],
                 &dezip[i],
                 &eq_state[i * channels],
                 &meter_pointers[i]};
}

void Rack::process() {
  std::vector<const SChannelStrip_Alg_Context*> range;
  for (const auto& context : contexts) range.push_back(&context);
  entry_point(format)(range.data(), range.data() + range.size());
}

void Rack::process_by_model(model::SumOrder order) {
  for (const auto& context : contexts) {
    model::process<float>(context, format.channels, format.groups, order);
  }
}

void Rack::rest(std::size_t i) {
  std::ranges::copy(eq[i].targetCoefs, dezip[i].coefs);
  std::ranges::copy(eq[i].targetCoefs, dezip[i].smoothedCoefs);
}

float* Rack::input(std::size_t i, std::size_t channel) const {
  const std::size_t buffer = i * (inputs_of_each() + channels) + channel;
  return const_cast<float*>(audio.data()) + buffer * samples_;
}

float* Rack::output(std::size_t i, std::size_t channel) const {
  return input(i, inputs_of_each() + channel);
}

void Rack::in_place(std::size_t i, std::size_t channel) {
  outputs[i][channel] = input(i, channel);
}

void Rack::detect_from(std::size_t i, const float* key) {
  inputs[i][channels] = key;
  keys[i] = static_cast<int32_t>(channels);
  dyn[i].keyEnable = 1;
}

float& Rack::readout(std::size_t i, std::size_t index) {
  return meters[i * (3 * channels + 4) + 2 * channels + index];
}

std::string difference(const Rack& a, const Rack& b) {
  for (const std::string& found :
       {first_difference("audio", a.audio, b.audio), first_difference("meters", a.meters, b.meters),
        first_difference("dyn", a.dyn, b.dyn), first_difference("eq", a.eq, b.eq),
        first_difference("dezip", a.dezip, b.dezip),
        first_difference("dyn_state", a.dyn_state, b.dyn_state),
        first_difference("eq_state", a.eq_state, b.eq_state),
        first_difference("hold", hold_counts(a), hold_counts(b)),
        first_difference("counts", a.counts, b.counts), first_difference("keys", a.keys, b.keys)}) {
    if (!found.empty()) return found;
  }
  return {};
}

std::size_t enough_instances(const host::StemFormat& format) {
  constexpr std::size_t kWidest = 8;
  return 2 * kWidest / static_cast<std::size_t>(format.channels) + 3;
}

}  // namespace channelstrip::test
