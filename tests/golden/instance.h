// One instance of the golden programme with all its records and buffers.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>
#include <ChannelStrip/eq/eq_records.h>
#include <ChannelStrip/frame/context.h>

#include "hash.h"
#include "numbers.h"
#include "scenes.h"

namespace channelstrip::golden {

class Instance {
 public:
  static constexpr int kMostSamples = 128;

  // Settings and state at the beginning.
  void begin(const Format& format, const Scene& scene, Numbers& numbers);

  // Before a call: its count, its audio, and what the host changes between calls. A neighbour's
  // settings decide which bands run, unless the scene is uneven.
  void prepare(Numbers& numbers, int32_t count, const Instance& first);

  const SChannelStrip_Alg_Context* context() const { return &context_; }

  void add_audio(Hash& hash) const;
  void add_state(Hash& hash) const;
  void add_meters(Hash& hash) const;

 private:
  static constexpr int kMostChannels = 8;
  static constexpr int kInputs = kMostChannels + 1;  // one beside the channels', for the key

  void draw_bands(Numbers& numbers);
  void draw_targets(Numbers& numbers);
  void draw_dynamics(Numbers& numbers);
  void draw_links(Numbers& numbers);
  void draw_audio(Numbers& numbers);
  void wire();

  const Format* format_;
  const Scene* scene_;
  int32_t call_;
  float in_[kInputs][kMostSamples], out_[kMostChannels][kMostSamples];
  const float* inputs_[kInputs];
  float* outputs_[kMostChannels];
  int32_t key_, count_;
  Dyn_SCoefsBlock dyn_;
  Dyn_SState dyn_state_[kMostChannels];
  EQ_SCoefs targets_;
  EQ_SDezipCoefs coefs_;
  EQ_SState eq_state_[kMostChannels];
  float meters_[3 * kMostChannels + 4];
  float* meter_pointer_;
  SChannelStrip_Alg_Context context_;
};

}  // namespace channelstrip::golden
