// One strip: owns every record behind an instance context and names its meters.

#pragma once

#include <ChannelStrip/frame/context.h>

#include <cstdint>
#include <span>
#include <vector>

#include "../design/strip_coefficients.h"

namespace channelstrip::host {

// Linear values, the extremes since the meters' last reset. A factor is a gain term, 1 at 0 dB.
struct MeterReading {
  std::span<const float> input_peak;    // per channel
  std::span<const float> output_peak;   // per channel
  float level = 0;                      // detector level where the gain was greatest
  float gain = 0;                       // the greatest of any link group, without makeup
  float compressor_reduction = 0;       // 1 - least factor
  float expander_reduction = 0;         // 1 - least factor
  std::span<const float> channel_gain;  // per channel: the greatest of its link group
};

class Instance {
 public:
  // Starts without a glide or a jump of the gain: coefficients stand at their targets, filter
  // states and meters at 0, both gain terms at 0 dB, and the gate is open.
  Instance(const StemFormat& format, const StripCoefficients& coefficients);

  // The context points into this object.
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  // Sets new targets, towards which the library glides; link groups that are made of others take
  // their gain over. Not to be called during a call of the library.
  void set_coefficients(const StripCoefficients& coefficients);

  // Points the context at N input and N output buffers of `samples` samples, rounded up to whole
  // blocks of 16. With `keyed` there is one more input after the N, the key. The pointers must stay
  // valid until the call is done.
  const SChannelStrip_Alg_Context* prepare(const float* const* inputs, float* const* outputs,
                                           int samples, bool keyed = false);

  // What the meters have shown since the last reset. The views are into this object.
  MeterReading meters() const;
  // Begins a new measurement. Not to be called during a call of the library.
  void reset_meters();

 private:
  std::size_t channels_;
  std::int32_t key_input_index_ = 0;
  std::int32_t sample_count_ = 0;
  StripCoefficients coefficients_;
  EQ_SDezipCoefs eq_dezip_;
  std::vector<EQ_SState> eq_state_;
  std::vector<Dyn_SState> dyn_state_;
  std::vector<float> meters_;
  float* meter_pointer_;
  SChannelStrip_Alg_Context context_;
};

}  // namespace channelstrip::host
