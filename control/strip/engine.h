// The library's records for one stream, and the calls that process it.

#pragma once

#include <ChannelStrip/frame/context.h>
#include <ChannelStrip/frame/entry_points.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "../design/fixed_vector.h"
#include "../design/link_map.h"
#include "../design/strip_coefficients.h"
#include "../library/library.h"

namespace channelstrip::host {

inline constexpr std::size_t kBlock = 16;  // samples, the library's
inline constexpr std::size_t kMostChannels = 8;

// Linear values, the extremes since the last reading.
struct EngineMeters {
  std::array<float, kMostChannels> input_peak = {};  // of no meaning where outputs are inputs
  std::array<float, kMostChannels> output_peak = {};
  std::array<float, kMostChannels> channel_gain = {};  // the greatest of the channel's link group
  float gain = 0;                                      // the greatest of any group, without makeup
  float level = 0;                                     // the detector's level where it was
  float compressor_reduction = 0;                      // 1 - least factor
  float expander_reduction = 0;                        // 1 - least factor
};

// The library's bypass, which switches at once, is left out: who calls this glides into one.
//
// Copying it copies the whole state of the stream, and allocates nothing. A link map with more
// groups than the format holds takes several strips of the library, one for each group, which gives
// every channel what one strip with enough groups would.
class Engine {
 public:
  // Starts without a glide or a jump of the gain: coefficients stand at their targets, filter
  // states and meters at 0, both gain terms at 0 dB, and the gate is open.
  Engine(const EntryPoints& entry_points, const StemFormat& format,
         const StripCoefficients& coefficients);

  // Sets new targets, towards which the library glides. Where links change, the new groups take
  // over the gains of those that they are made of; the meters have to be read before.
  void set_coefficients(const StripCoefficients& coefficients);

  // Sets new coefficients without a glide, for sections that come, go or move: a section that was
  // there before, in the same pass, takes its memory along, any other begins with silence.
  void rearrange(const StripCoefficients& coefficients);

  // Forgets everything but the coefficients, which stand at their targets.
  void reset();

  // Processes whole blocks: N inputs, an optional key and N outputs of `samples` samples each.
  void process(const float* const* inputs, const float* key, float* const* outputs,
               std::size_t samples);

  // The same for those who call the library for several engines at once: sets what context() holds.
  void prepare(const float* const* inputs, const float* key, float* const* outputs,
               std::size_t samples);

  // Whether one strip of the library is enough, which it is unless the link map has more groups
  // than the format holds. If so, context() is what the library is called with, at entry_point(),
  // that of the format.
  bool is_single() const { return parts_.size() == 1; }
  const SChannelStrip_Alg_Context* context() const { return contexts_.data(); }
  AlgEntry_16_Stem* entry_point() const;

  // What the meters have shown since the last reading, and begins a new one.
  EngineMeters read_meters();

  // The record of the channel's link group.
  const Dyn_SState& group_state(std::size_t channel) const;

  // Replaces the memory of channels that isn't finite, and that of their link groups.
  void repair();

  // Since the meters were read.
  float output_peak(std::size_t channel) const { return *output_peaks_[channel]; }
  // Whether the peak of a channel is above full scale.
  bool has_been_over() const {
    bool over = false;
    for (std::size_t c = 0; c < channels_; ++c) over |= output_peak(c) > 1;
    return over;
  }
  float input_meter_gain() const { return dynamics_coefficients_.front().inputMeterGain; }
  bool follows_peaks() const { return dynamics_coefficients_.front().detectorMode <= 0; }

  Engine(const Engine& other) { *this = other; }
  Engine& operator=(const Engine& other);

  // What a call of process() changes.
  struct State {
    alignas(64) std::array<Dyn_SState, kMostChannels> dynamics;
    alignas(64) std::array<EQ_SState, kMostChannels> eq;
    alignas(64) std::array<EQ_SDezipCoefs, kMostChannels> glides;
    alignas(64) std::array<std::array<float, 3 * kMostChannels + CHANNELSTRIP_METER_CHANNEL_GAIN>,
                           kMostChannels> meters;
  };
  void save(State& state) const;
  void restore(const State& state);

 private:
  // One strip of the library.
  struct Part {
    std::size_t format;  // index into stem_formats()
    FixedVector<std::uint8_t, kMostChannels> channels;
  };
  using Parts = FixedVector<Part, kMostChannels>;

  static Parts parts_for(const StemFormat& format, const LinkMap& map);
  void copy(const State& from, State& to) const;
  void split(const LinkMap& map);
  void bind();
  void write_coefficients(const StripCoefficients& coefficients);
  void start(Dyn_SState& state) const;

  EntryPoints entry_points_;
  const StemFormat* format_;
  std::size_t channels_;
  LinkMap links_;
  Parts parts_;
  std::array<std::size_t, kMostChannels> place_ = {};  // of each channel's records in state_

  alignas(64) EQ_SCoefs eq_coefficients_;
  alignas(64) std::array<Dyn_SCoefsBlock, kMostChannels> dynamics_coefficients_;  // one per part
  float dezip_rate_ = 1;
  State state_ = {};  // channels in the order of the parts

  // What the library is called with, bound to all of the above. Of each part, inputs_ has room for
  // its channels and the key.
  std::array<SChannelStrip_Alg_Context, kMostChannels> contexts_ = {};
  std::array<const SChannelStrip_Alg_Context*, kMostChannels> context_pointers_ = {};
  std::array<const float*, 2 * kMostChannels> inputs_ = {};
  std::array<float*, kMostChannels> outputs_ = {};
  std::array<float*, kMostChannels> meters_ = {};
  std::array<std::int32_t, kMostChannels> key_index_ = {};
  std::int32_t sample_count_ = 0;
  std::array<const float*, kMostChannels> output_peaks_ = {};
};

}  // namespace channelstrip::host
