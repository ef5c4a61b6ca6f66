// One strip that processes any number of frames at a time, without latency, while settings change.
//
// The library takes whole blocks of 16 samples. No sample of a block depends on a later one, so an
// unfinished block is run with the samples that are there, from a copy of the strip's state, and
// run again from its start once there are more. Output and meters don't depend on how the stream is
// cut into calls.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "../design/channel_layout.h"
#include "engine.h"
#include "glide.h"
#include "live_meters.h"
#include "meter_window.h"
#include "peak.h"
#include "sharing.h"
#include "strip_design.h"
#include "strip_gains.h"

namespace channelstrip::host {

class LiveStrip {
 public:
  // How a change's searches for the best floats are done: a step per block, for an audio thread, or
  // all at once.
  enum class Searches { kInSteps, kAtOnce };

  // Samples after which the meters have news; a run never goes beyond, which costs a bit.
  static constexpr std::size_t kMeterWindow = 1024;

  // Starts without a glide. The layout must outlive this object. Settings must be possible, see
  // ../design/possible.h, here and in set().
  LiveStrip(const EntryPoints& entry_points, const ChannelLayout& layout, double sample_rate,
            const StripSettings& settings, Searches searches = Searches::kInSteps,
            std::size_t meter_window = kMeterWindow);

  // All that follow are for one thread at a time, the audio thread; they neither allocate nor lock.

  // New settings from the next block on; of several before it the last ones hold. Settings that
  // need a cross-fade wait until one under way has ended.
  void set(const StripSettings& settings);

  // N inputs, an optional key, N outputs, as unaligned as they come. An output may be any of the
  // inputs or the key; other overlaps are not allowed.
  struct Buffers {
    const float* const* inputs;
    const float* key;
    float* const* outputs;
  };

  // Processes `frames` frames. A sample that isn't finite counts as silence.
  void process(const Buffers& buffers, std::size_t frames);
  void process(const float* const* inputs, const float* key, float* const* outputs,
               std::size_t frames) {
    process({inputs, key, outputs}, frames);
  }

  // The same for several strips of one format and as many frames of each, in calls of the library
  // for all of them where they allow; it runs several mono strips at once.
  static constexpr std::size_t kMostAtOnce = 64;
  static void process_many(std::span<LiveStrip* const> strips, std::span<const Buffers> buffers,
                           std::size_t frames);

  // That of the format.
  AlgEntry_16_Stem* entry_point() const { return live_.entry_point(); }

  // How many samples of an unfinished block there are, 0 .. 15.
  std::size_t phase() const { return pending_; }

  // What happened since the last call of clear_meters(), and whether a window of the meters, on a
  // grid of the stream, has ended since.
  const LiveMeters& meters() { return meters_.collected(live_); }
  void clear_meters() { meters_.clear(); }
  bool has_news() const { return meters_.has_news(); }

  // Ends the window that least_gain is in, as if it were whole.
  void end_window() { meters_.end(live_); }

  // Forgets the audio. Glides and cross-fades are at their ends.
  void reset();

  // Not for an audio thread: ends the searches that changes have begun, without a glide.
  void finish_searches();

  const StripSettings& settings() const { return design_.settings(); }

 private:
  static constexpr std::size_t kChunk = StripGains::kMost;
  using Chunk = std::array<std::array<float, kChunk>, kMostChannels>;

  // The buffers of one run of whole blocks, or of a call.
  struct Run {
    std::array<const float*, kMostChannels> inputs;
    const float* key;
    std::array<float*, kMostChannels> outputs;
    std::size_t samples;
  };
  Run run_of(const Buffers& buffers, std::size_t begin, std::size_t samples) const;
  static Buffers buffers_of(const Run& run) {
    return {run.inputs.data(), run.key, run.outputs.data()};
  }

  void begin_block();
  void apply(const StripSettings& settings);
  bool is_idle() const;
  std::size_t until_step(std::size_t samples) const;
  std::size_t process_part(const Buffers& call, std::size_t begin, std::size_t samples);
  void run(const Buffers& buffers, std::size_t samples);
  void run_chunk(const Run& run);
  void finish_run(float* const* outputs, std::size_t samples);
  void repair(float* const* outputs, std::size_t samples);

  // Of the inputs, and of the key along with them.
  struct Peaks {
    std::array<PeakLanes, kMostChannels> inputs;
    PeakLanes all;
  };
  Peaks peaks_of(const Buffers& buffers, std::size_t samples) const;
  bool are_finite(const Peaks& peaks);
  bool may_run_directly(const Buffers& buffers, std::size_t samples);
  bool may_run_in_place(const Buffers& buffers, std::size_t samples);
  void begin_metering(bool is_direct, bool is_in_place);

  std::size_t channels_;
  bool is_idle_ = false;       // nothing glides, fades, waits or is searched for
  bool is_wanted_ = false;     // wanted_ waits to be applied
  bool is_metering_ = true;    // false while an unfinished block runs
  bool may_overflow_ = false;  // there was a sample so great that filters or gains may overflow
  bool pending_key_ = false;
  std::size_t pending_ = 0;  // samples of the unfinished block
  MeterWindow meters_;
  BufferSharing sharing_;
  StripDesign design_;
  Engine live_;

  Engine old_;  // while a cross-fade leads away from it
  Ramp fade_;
  StripGains gains_;
  double sample_rate_;
  Searches searches_;
  StripSettings wanted_;
  // Inputs and key of the block that isn't whole, and of what runs along with it.
  std::array<std::array<float, kChunk>, kMostChannels + 1> unfinished_;
  Chunk dry_, in_, wet_, before_;
  std::array<float, kChunk> key_;
};

}  // namespace channelstrip::host
