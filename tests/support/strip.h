// A strip for tests: public records with neutral values, run through an exported entry point.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>
#include <ChannelStrip/eq/eq_records.h>
#include <ChannelStrip/frame/context.h>
#include <control/library/library.h>
#include <control/library/stem_format.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::test {

inline const host::StemFormat& format_named(std::string_view name) {
  const host::StemFormat* format = host::find_stem_format(name);
  if (format == nullptr) throw std::invalid_argument(std::string(name));
  return *format;
}

// The library that is built beside the tests, or another one that the environment names.
inline AlgEntry_16_Stem* entry_point(const host::StemFormat& format) {
  const char* const other = std::getenv("CHANNELSTRIP_TESTED_LIBRARY");
  static const host::Library library(other ? other : CHANNELSTRIP_LIBRARY);
  return library.entry_point(format);
}

// Passes audio unchanged except for the factor 1.0000013 of each of the two 0 dB terms. Bands and
// filters are identities and no pass runs a band, curves give 0 dB at any level, the gate is open,
// every weight is 1, all channels are linked.
class Strip {
 public:
  // There is one input more than channels, for the key.
  explicit Strip(std::string_view format_name, int samples = 16)
      : format(format_named(format_name)),
        channels(format.channels),
        sample_count(samples),
        in(static_cast<size_t>(channels) + 1, std::vector<float>(rounded_up(samples))),
        out(static_cast<size_t>(channels), std::vector<float>(rounded_up(samples))),
        eq_state(static_cast<size_t>(channels)),
        dyn_state(static_cast<size_t>(channels)),
        meters(static_cast<size_t>(3 * channels + 4)) {
    for (size_t i = 0; i < std::size(eq.targetCoefs); i += 5) eq.targetCoefs[i] = 1;
    dyn.compKneeLow = dyn.compKneeHigh = 1000;
    dyn.compRange = dyn.expRange = -100;
    dyn.makeupGain = 1;
    dyn.compAttack = dyn.compRelease = dyn.expAttack = dyn.expRelease = 1;
    dyn.expKneeLow = dyn.expKneeHigh = -1000;
    dyn.gateOpenThreshold = dyn.gateCloseThreshold = -1000;
    dyn.keyFilter[0] = dyn.detectorFilter[0] = 1;
    dyn.inputMeterGain = 1;
    for (Dyn_SState& state : dyn_state) {
      state.gateOpen = 1;
      state.dezipRate = 1;
    }
    jump_to_targets();
  }

  Strip(const Strip&) = delete;
  Strip& operator=(const Strip&) = delete;

  // Sets coefficients, ranges and makeup in use to their targets, without a glide.
  void jump_to_targets() {
    std::copy(std::begin(eq.targetCoefs), std::end(eq.targetCoefs), dezip.coefs);
    std::copy(std::begin(eq.targetCoefs), std::end(eq.targetCoefs), dezip.smoothedCoefs);
    for (Dyn_SState& state : dyn_state) {
      state.curMakeupGain = dyn.makeupGain;
      state.curCompRange = dyn.compRange;
      state.curExpRange = dyn.expRange;
    }
  }

  // Makes the dynamics gain exactly 1: the makeup cancels the two factors of 0 dB.
  void pass_exactly() {
    dyn.makeupGain = 0x1.ffffa8p-1f;
    for (Dyn_SState& state : dyn_state) state.curMakeupGain = dyn.makeupGain;
  }

  // One band before the dynamics halves every sample; nothing else changes it.
  void halve_exactly() {
    pass_exactly();
    set_band(0, {0.5f, 0, 0, 0, 0});
    eq.endBand[0] = 1;
    jump_to_targets();
  }

  void set_band(int band, std::array<float, 5> coefs) {
    std::copy(coefs.begin(), coefs.end(), eq.targetCoefs + 5 * band);
  }

  void fill_inputs(float value) {
    for (auto& channel : in) std::fill(channel.begin(), channel.end(), value);
  }

  // Points to the buffers; valid until one of them is resized.
  const SChannelStrip_Alg_Context* context() {
    inputs_.clear();
    for (auto& channel : in) inputs_.push_back(channel.data());
    outputs_.clear();
    for (auto& channel : out) outputs_.push_back(channel.data());
    meter_pointer_ = meters.data();
    context_ = {
        inputs_.data(), outputs_.data(), &key_index,     &sample_count, &dyn, dyn_state.data(), &eq,
        &dezip,         eq_state.data(), &meter_pointer_};
    return &context_;
  }

  void process() {
    const SChannelStrip_Alg_Context* const contexts[] = {context()};
    entry_point(format)(contexts, contexts + 1);
  }

  float input_peak(int channel) const { return meter(channel); }
  float output_peak(int channel) const { return meter(channels + channel); }
  // Index 0 to 3, or 4 + channel.
  float readout(int index) const { return meter(2 * channels + index); }

  const host::StemFormat& format;
  const int channels;
  int32_t key_index = 0;
  int32_t sample_count;
  std::vector<std::vector<float>> in, out;
  EQ_SCoefs eq{};
  EQ_SDezipCoefs dezip{};
  std::vector<EQ_SState> eq_state;
  Dyn_SCoefsBlock dyn{};
  std::vector<Dyn_SState> dyn_state;
  std::vector<float> meters;

 private:
  static size_t rounded_up(int samples) {
    return static_cast<size_t>((std::max(samples, 1) + 15) / 16 * 16);
  }
  float meter(int index) const { return meters.at(static_cast<size_t>(index)); }

  std::vector<const float*> inputs_;
  std::vector<float*> outputs_;
  float* meter_pointer_ = nullptr;
  SChannelStrip_Alg_Context context_{};
};

inline std::vector<float*> pointers(std::vector<std::vector<float>>& channels, size_t sample = 0) {
  std::vector<float*> result;
  result.reserve(channels.size());
  for (auto& channel : channels) result.push_back(channel.data() + sample);
  return result;
}

// Runs the strip on the given buffers instead of its own.
inline void process_on(Strip& strip, const std::vector<float*>& inputs,
                       const std::vector<float*>& outputs) {
  SChannelStrip_Alg_Context context = *strip.context();
  context.inputs = inputs.data();
  context.outputs = outputs.data();
  const SChannelStrip_Alg_Context* const contexts[] = {&context};
  entry_point(strip.format)(contexts, contexts + 1);
}

// Runs all strips, which must have one format, in one call.
inline void process_range(std::initializer_list<Strip*> strips) {
  std::vector<const SChannelStrip_Alg_Context*> contexts;
  for (Strip* strip : strips) contexts.push_back(strip->context());
  entry_point((*strips.begin())->format)(contexts.data(), contexts.data() + contexts.size());
}

}  // namespace channelstrip::test
