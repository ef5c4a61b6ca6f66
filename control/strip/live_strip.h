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
#include "strip_design.h"

namespace channelstrip::host {

class LiveStrip {
 public:
  // How a change's searches for the best floats are done: a step per block, for an audio thread, or
  // all at once.
  enum class Searches { kInSteps, kAtOnce };

  // Starts without a glide. The layout must outlive this object. Throws std::invalid_argument as
  // design_strip() does.
  LiveStrip(const EntryPoints& entry_points, const ChannelLayout& layout, double sample_rate,
            const StripSettings& settings, Searches searches = Searches::kInSteps);

  // All that follow are for one thread at a time, the audio thread; they neither allocate nor lock.

  // New settings from the next block on; of several before it the last ones hold. Settings that
  // need a cross-fade wait until one under way has ended. They must be ones that design_strip()
  // takes.
  void set(const StripSettings& settings);

  // Processes `frames` frames: N inputs, an optional key, N outputs, as unaligned as they come. An
  // output may be any of the inputs or the key; other overlaps are not allowed. A sample that isn't
  // finite counts as silence.
  void process(const float* const* inputs, const float* key, float* const* outputs,
               std::size_t frames);

  // The same for several strips of one format and as many frames of each, in calls of the library
  // for all of them where they allow; it runs several mono strips at once.
  static constexpr std::size_t kMostAtOnce = 64;
  struct Buffers {
    const float* const* inputs;
    const float* key;
    float* const* outputs;
  };
  static void process_many(std::span<LiveStrip* const> strips, std::span<const Buffers> buffers,
                           std::size_t frames);

  // How many samples of an unfinished block there are, 0 .. 15.
  std::size_t phase() const { return pending_; }

  // What happened since the last call of this function.
  LiveMeters take_meters();

  // Ends the window of 256 samples that least_gain is in, as if it were whole.
  void end_window();

  // Forgets the audio. Glides and cross-fades are at their ends.
  void reset();

  // Not for an audio thread: ends the searches that changes have begun, without a glide.
  void finish_searches();

  const StripSettings& settings() const { return design_.settings(); }

 private:
  static constexpr std::size_t kChunk = 64;    // samples of a run that isn't the library's alone
  static constexpr std::size_t kWindow = 256;  // of least_gain
  using Chunk = std::array<std::array<float, kChunk>, kMostChannels>;
  using Block = std::array<std::array<float, kBlock>, kMostChannels + 1>;

  // The buffers of one run of whole blocks.
  struct Run {
    std::array<const float*, kMostChannels> inputs;
    const float* key;
    std::array<float*, kMostChannels> outputs;
    std::size_t samples;

    Run from(std::size_t sample, std::size_t count) const;
  };

  Run run_of(const Buffers& buffers, std::size_t frames) const;
  void process(const Run& call);
  void begin_block();
  void apply(const StripSettings& settings);
  std::size_t until_step(std::size_t samples) const;
  std::size_t process_part(const Run& call);
  void run(const Run& run);
  void finish_run(const Run& run, bool is_direct);
  void run_chunk(const Run& run);
  void mix(const Run& run);
  bool may_run_directly(const Run& run) const;
  void scan(const Run& run);
  void repair(const Run& run);
  void read_meters(const Run& run, bool is_direct);

  std::size_t channels_;
  double sample_rate_;
  Searches searches_;
  StripDesign design_;
  StripSettings wanted_;
  bool is_wanted_ = false;  // wanted_ waits to be applied

  Engine live_;
  Engine old_;  // while a cross-fade leads away from it
  Ramp fade_;
  Glide gain_in_, gain_out_, mix_;
  Glide processed_;  // 1; 0 where bypassed

  Block unfinished_;         // inputs and key of the block that isn't whole
  std::size_t pending_ = 0;  // samples of it
  bool pending_key_ = false;
  bool is_metering_ = true;  // false while an unfinished block runs

  // Of the run.
  std::array<float, kMostChannels> input_peak_ = {};
  bool is_clean_ = true;       // all samples are finite
  bool may_overflow_ = false;  // there was a sample so great that filters may have overflown
  Chunk dry_, in_, wet_, before_;
  std::array<float, kChunk> key_;

  LiveMeters meters_;
  std::array<float, kMostChannels> window_gain_ = {};
  std::size_t window_ = 0;  // samples of the window so far
};

}  // namespace channelstrip::host
