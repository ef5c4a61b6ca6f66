#include "engine.h"

#include <algorithm>

#include "../design/dynamics_coefficients.h"
#include "../library/stem_format.h"

namespace channelstrip::host {
namespace {

std::size_t number_of(const StemFormat& format) {
  return static_cast<std::size_t>(&format - stem_formats().data());
}

// Every format holds at least one group.
std::size_t any_format(std::size_t channels) {
  const auto found =
      std::ranges::find(stem_formats(), static_cast<int>(channels), &StemFormat::channels);
  return number_of(*found);
}

bool is_finite(const EQ_SState& state) {
  float sum = 0;
  for (int k = 0; k < CHANNELSTRIP_EQ_BANDS; ++k) sum += 0 * state.z1[k] + 0 * state.z2[k];
  return sum == 0;
}

bool is_finite(const Dyn_SState& s) {
  return 0 * s.compGain + 0 * s.expGain + 0 * s.keyZ1 + 0 * s.keyZ2 + 0 * s.detZ1 + 0 * s.detZ2 +
             0 * s.peakLevel + 0 * s.smoothLevel ==
         0;
}

}  // namespace

Engine::Engine(const EntryPoints& entry_points, const StemFormat& format,
               const StripCoefficients& coefficients)
    : entry_points_(entry_points),
      format_(&format),
      channels_(static_cast<std::size_t>(format.channels)) {
  split(links_of(coefficients.dynamics));
  write_coefficients(coefficients);
  reset();
}

Engine::Parts Engine::parts_for(const StemFormat& format, const LinkMap& map) {
  const auto channels = static_cast<std::size_t>(format.channels);
  Parts parts;
  const int groups = count_groups(map);
  if (groups <= format.groups) {
    Part all{.format = number_of(format), .channels = {}};
    for (std::size_t c = 0; c < channels; ++c) {
      all.channels.push_back(static_cast<std::uint8_t>(c));
    }
    parts.push_back(all);
    return parts;
  }
  // Those of a format stand together, for one call of the library.
  for (std::size_t size = 1; size < channels; ++size) {
    for (int group = 0; group < groups; ++group) {
      Part part{.format = any_format(size), .channels = {}};
      for (std::size_t c = 0; c < channels; ++c) {
        if (map[c] == group) part.channels.push_back(static_cast<std::uint8_t>(c));
      }
      if (part.channels.size() == size) parts.push_back(part);
    }
  }
  return parts;
}

void Engine::split(const LinkMap& map) {
  links_ = map;
  parts_ = parts_for(*format_, map);
  std::size_t place = 0;
  for (const Part& part : parts_) {
    for (const std::uint8_t channel : part.channels) place_[channel] = place++;
  }
  bind();
}

void Engine::write_coefficients(const StripCoefficients& coefficients) {
  eq_coefficients_ = coefficients.eq;
  for (std::size_t p = 0; p < parts_.size(); ++p) {
    dynamics_coefficients_[p] = coefficients.dynamics;
    dynamics_coefficients_[p].bypass = 0;
    if (parts_.size() > 1) std::ranges::fill(dynamics_coefficients_[p].linkGroup, 0);
  }
  dezip_rate_ = coefficients.dezip_rate;
  for (std::size_t c = 0; c < channels_; ++c) state_.dynamics[c].dezipRate = dezip_rate_;
}

// A record without a past.
void Engine::start(Dyn_SState& state) const {
  const Dyn_SCoefsBlock& coefficients = dynamics_coefficients_.front();
  state = {};
  state.curMakeupGain = coefficients.makeupGain;
  state.curCompRange = coefficients.compRange;
  state.curExpRange = coefficients.expRange;
  state.gateOpen = 1;
  state.dezipRate = dezip_rate_;
}

void Engine::reset() {
  state_ = {};
  for (std::size_t c = 0; c < channels_; ++c) start(state_.dynamics[c]);
  for (EQ_SDezipCoefs& glide : state_.glides) {
    std::ranges::copy(eq_coefficients_.targetCoefs, glide.coefs);
    std::ranges::copy(eq_coefficients_.targetCoefs, glide.smoothedCoefs);
  }
}

// Points the contexts at this object's records.
void Engine::bind() {
  std::size_t place = 0;
  for (std::size_t p = 0; p < parts_.size(); ++p) {
    const std::size_t channels = parts_[p].channels.size();
    meters_[p] = state_.meters[p].data();
    contexts_[p] = {.inputs = &inputs_[place + p],
                    .outputs = &outputs_[place],
                    .keyInputIndex = &key_index_[p],
                    .sampleCount = &sample_count_,
                    .dynCoefs = &dynamics_coefficients_[p],
                    .dynState = &state_.dynamics[place],
                    .eqTargetCoefs = &eq_coefficients_,
                    .eqDezipCoefs = &state_.glides[p],
                    .eqState = &state_.eq[place],
                    .meterOutputs = &meters_[p]};
    context_pointers_[p] = &contexts_[p];
    for (std::size_t i = 0; i < channels; ++i) {
      output_peaks_[parts_[p].channels[i]] = meters_[p] + channels + i;
    }
    place += channels;
  }
}

Engine& Engine::operator=(const Engine& other) {
  if (this == &other) return *this;
  entry_points_ = other.entry_points_;
  format_ = other.format_;
  channels_ = other.channels_;
  links_ = other.links_;
  parts_ = other.parts_;
  place_ = other.place_;
  eq_coefficients_ = other.eq_coefficients_;
  dynamics_coefficients_ = other.dynamics_coefficients_;
  dezip_rate_ = other.dezip_rate_;
  state_ = other.state_;
  bind();
  return *this;
}

void Engine::prepare(const float* const* inputs, const float* key, float* const* outputs,
                     std::size_t samples) {
  sample_count_ = static_cast<std::int32_t>(samples);
  if (parts_.size() == 1 && !key) {  // the buffers as they are
    contexts_.front().inputs = inputs;
    contexts_.front().outputs = outputs;
    key_index_.front() = 0;
    return;
  }
  contexts_.front().inputs = inputs_.data();
  contexts_.front().outputs = outputs_.data();
  std::size_t place = 0;
  for (std::size_t p = 0; p < parts_.size(); ++p) {
    const auto& channels = parts_[p].channels;
    for (std::size_t i = 0; i < channels.size(); ++i) {
      inputs_[place + p] = inputs[channels[i]];
      outputs_[place] = outputs[channels[i]];
      ++place;
    }
    inputs_[place + p] = key;
    key_index_[p] = key ? static_cast<std::int32_t>(channels.size()) : 0;
  }
}

void Engine::process(const float* const* inputs, const float* key, float* const* outputs,
                     std::size_t samples) {
  prepare(inputs, key, outputs, samples);
  const SChannelStrip_Alg_Context* const* const contexts = context_pointers_.data();
  for (std::size_t begin = 0, end = 0; begin < parts_.size(); begin = end) {
    while (end < parts_.size() && parts_[end].format == parts_[begin].format) ++end;
    entry_points_[parts_[begin].format](contexts + begin, contexts + end);
  }
}

AlgEntry_16_Stem* Engine::entry_point() const {
  return entry_points_[number_of(*format_)];
}

EngineMeters Engine::read_meters() {
  EngineMeters result;
  for (std::size_t p = 0; p < parts_.size(); ++p) {
    const auto& channels = parts_[p].channels;
    const std::size_t n = channels.size();
    auto& meters = state_.meters[p];
    const float* const readouts = meters.data() + 2 * n;
    for (std::size_t i = 0; i < n; ++i) {
      result.input_peak[channels[i]] = meters[i];
      result.output_peak[channels[i]] = meters[n + i];
      result.channel_gain[channels[i]] = readouts[CHANNELSTRIP_METER_CHANNEL_GAIN + i];
    }
    if (p == 0 || readouts[CHANNELSTRIP_METER_GAIN] > result.gain) {
      result.gain = readouts[CHANNELSTRIP_METER_GAIN];
      result.level = readouts[CHANNELSTRIP_METER_LEVEL];
    }
    result.compressor_reduction =
        std::max(result.compressor_reduction, readouts[CHANNELSTRIP_METER_COMP_REDUCTION]);
    result.expander_reduction =
        std::max(result.expander_reduction, readouts[CHANNELSTRIP_METER_EXP_REDUCTION]);
    std::fill_n(meters.begin(), 3 * n + CHANNELSTRIP_METER_CHANNEL_GAIN, 0.0f);
  }
  return result;
}

const Dyn_SState& Engine::group_state(std::size_t channel) const {
  const auto leader = std::ranges::find(links_, links_[channel]) - links_.begin();
  return state_.dynamics[place_[static_cast<std::size_t>(leader)]];
}

void Engine::repair() {
  for (std::size_t c = 0; c < channels_; ++c) {
    if (is_finite(state_.eq[c]) && is_finite(state_.dynamics[c])) continue;
    state_.eq[c] = {};
    start(state_.dynamics[c]);
  }
}

void Engine::copy(const State& from, State& to) const {
  const auto copy_first = [](std::size_t count, const auto& source, auto& target) {
    std::copy_n(source.begin(), count, target.begin());
  };
  copy_first(channels_, from.dynamics, to.dynamics);
  copy_first(channels_, from.eq, to.eq);
  copy_first(parts_.size(), from.glides, to.glides);
  copy_first(parts_.size(), from.meters, to.meters);
}

void Engine::save(State& state) const {
  copy(state_, state);
}

void Engine::restore(const State& state) {
  copy(state, state_);
}

}  // namespace channelstrip::host
