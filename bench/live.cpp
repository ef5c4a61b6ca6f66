// What a live strip costs over the library's own calls, which process the same samples with the
// same settings in turns; and what it costs to change settings.
//
//   live LIBRARY

#include <control/design/band.h>
#include <control/library/library.h>
#include <control/live/controlled_strip.h>
#include <control/parameters/values.h>
#include <control/strip/denormals.h>
#include <control/strip/instance.h>
#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <memory>
#include <random>
#include <string_view>
#include <vector>

#include "busy_values.h"
#include "turns.h"

namespace channelstrip::bench {
namespace {

using namespace host;

constexpr double kRate = 48000;
constexpr std::size_t kProgramme = 8192;  // frames of a turn
constexpr std::size_t kMostFrames = 512;  // of a call
constexpr int kTurns = 201;

enum class Buffers { kApart, kInPlace };

// One strip's audio, and both ways to process it. The buffers are the same in every call, as an
// engine's are.
class Strip {
 public:
  Strip(const Library& library, const ChannelLayout& layout, const Values& values, Buffers buffers)
      : entry_(library.entry_point(*layout.format)),
        channels_(layout.labels.size()),
        instance_(std::make_unique<Instance>(
            *layout.format, design_strip(settings_of(values, kRate), kRate, layout))),
        live_(std::make_unique<ControlledStrip>(library.entry_points(), layout, kRate, values)),
        inputs_(channels_),
        outputs_(channels_) {
    std::minstd_rand random;
    std::uniform_real_distribution<float> noise(-0.5f, 0.5f);
    for (std::size_t c = 0; c < 2 * channels_; ++c) {
      std::vector<float>& buffer = buffers_.emplace_back(kMostFrames);
      for (float& x : buffer) x = noise(random);
    }
    for (std::size_t c = 0; c < channels_; ++c) {
      inputs_[c] = buffers_[c].data();
      outputs_[c] = buffers_[channels_ + c].data();
    }
    if (buffers == Buffers::kInPlace) inputs_.assign(outputs_.begin(), outputs_.end());
  }

  // In place, puts the call's inputs where the last one's outputs are.
  void fill(std::size_t frames) {
    if (inputs_.front() != outputs_.front()) return;
    for (std::size_t c = 0; c < channels_; ++c) {
      std::copy_n(buffers_[c].data(), frames, outputs_[c]);
    }
  }

  const SChannelStrip_Alg_Context* context(std::size_t frames) {
    return instance_->prepare(inputs_.data(), outputs_.data(), static_cast<int>(frames));
  }
  ControlledStrip::Call call(std::size_t frames) const {
    return {inputs_.data(), nullptr, outputs_.data(), frames, {}};
  }
  AlgEntry_16_Stem* entry() const { return entry_; }
  ControlledStrip& live() { return *live_; }

 private:
  AlgEntry_16_Stem* entry_;
  std::size_t channels_;
  std::unique_ptr<Instance> instance_;
  std::unique_ptr<ControlledStrip> live_;
  std::vector<std::vector<float>> buffers_;
  std::vector<const float*> inputs_;
  std::vector<float*> outputs_;
};

// The whole programme, `frames` at a time; the library takes whole blocks.
void play_library(std::vector<Strip>& strips, std::size_t frames) {
  std::vector<const SChannelStrip_Alg_Context*> contexts(strips.size());
  for (std::size_t at = 0; at + frames <= kProgramme; at += frames) {
    for (std::size_t i = 0; i < strips.size(); ++i) {
      strips[i].fill(frames);
      contexts[i] = strips[i].context(frames);
    }
    strips.front().entry()(contexts.data(), contexts.data() + contexts.size());
  }
}

void play_live(std::vector<Strip>& strips, std::size_t frames) {
  std::vector<ControlledStrip*> live(strips.size());
  std::vector<ControlledStrip::Call> calls(strips.size());
  for (std::size_t i = 0; i < strips.size(); ++i) live[i] = &strips[i].live();
  for (std::size_t at = 0; at + frames <= kProgramme; at += frames) {
    for (std::size_t i = 0; i < strips.size(); ++i) {
      strips[i].fill(frames);
      calls[i] = strips[i].call(frames);
    }
    if (strips.size() == 1) {
      live.front()->process(calls.front());
    } else {
      ControlledStrip::process_many(live, calls);
    }
  }
}

void fill(std::vector<Strip>& strips, std::size_t frames) {
  for (std::size_t at = 0; at + frames <= kProgramme; at += frames) {
    for (Strip& strip : strips) strip.fill(frames);
  }
}

void compare(const Library& library, std::string_view format, std::size_t count, std::size_t frames,
             std::size_t library_frames, Buffers buffers = Buffers::kApart) {
  const ChannelLayout layout = default_layout(*find_stem_format(format));
  std::vector<Strip> strips;
  strips.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    strips.emplace_back(library, layout, busy_values(), buffers);
  }
  std::vector<double> ratios;
  for (int turn = 0; turn < kTurns; ++turn) {
    double bare = 0, live = 0;
    const double filling = nanoseconds([&] { fill(strips, frames); });
    const auto time_bare = [&] {
      bare = nanoseconds([&] { play_library(strips, library_frames); });
    };
    const auto time_live = [&] { live = nanoseconds([&] { play_live(strips, frames); }); };
    turn % 2 ? time_bare() : time_live();
    turn % 2 ? time_live() : time_bare();
    ratios.push_back((live - filling) / (bare - filling));
  }
  fmt::print("{:8} x{:<3} {:5} frames a call{}  {:6.3f}\n", format, count, frames,
             buffers == Buffers::kInPlace ? " in place" : "         ", median(ratios));
}

void time_changes(std::string_view what,
                  const std::vector<std::pair<std::string_view, double>>& changes,
                  bool all = false) {
  const ChannelLayout layout = default_layout(*find_stem_format("Stereo"));
  StripDesign design(settings_of(busy_values(), kRate), kRate, layout);
  Values values = busy_values(), other = values;
  for (const auto& [symbol, value] : changes) set(other, symbol, value);
  if (all) {
    for (std::size_t band = 0; band < kBandCount; ++band) {
      other.of[*index_of(kFirstBandGroup + band, "gain")] = -3;
    }
  }
  std::vector<double> times;
  for (int turn = 0; turn < 20 * kTurns; ++turn) {
    const Values& next = turn % 2 ? values : other;
    times.push_back(nanoseconds([&] { design.change(settings_of(next, kRate)); }));
  }
  fmt::print("{:44} {:6.2f} us\n", what, median(times) / 1000);
}

void run(const Library& library) {
  stay_on_this_processor();
  const FlushDenormals flush;  // as an engine does around everything
  fmt::print("A live strip's time over the library's own, {} turns:\n", kTurns);
  for (const std::size_t frames : {64u, 128u, 512u}) {
    for (const char* format : {"Mono", "Stereo", "5.1", "7.1"}) {
      compare(library, format, 1, frames, frames);
    }
  }
  for (const char* format : {"Mono", "Stereo", "5.1", "7.1"}) {
    compare(library, format, 1, 64, 64, Buffers::kInPlace);
  }
  for (const std::size_t frames : {64u, 128u}) compare(library, "Mono", 64, frames, frames);
  fmt::print("\nCalls of other counts, over the library's calls of 64 frames:\n");
  for (const char* format : {"Mono", "7.1"}) {
    for (const std::size_t frames : {1u, 7u, 61u, 441u}) compare(library, format, 1, frames, 64);
  }
  fmt::print("\nDesigning what has changed, settings and coefficients:\n");
  time_changes("a peak", {{"eq1_gain", 6}});
  time_changes("a peak, matched", {{"eq1_gain", 6}, {"eq1_design", 1}});
  time_changes("a peak at 40 Hz, rounded; the search goes on",
               {{"eq1_frequency", 40}, {"eq1_gain", 6}});
  time_changes("compressor", {{"compressor_threshold", -30}});
  time_changes("detector, two poles", {{"detector_mode", 2}});
  time_changes("everything",
               {{"compressor_threshold", -30},
                {"expander_threshold", -40},
                {"detector_mode", 2},
                {"key_filter_frequency", 500},
                {"gain_in", 3},
                {"link_style", 3}},
               true);

  PrecisionSearch search;
  std::vector<double> steps;
  for (int turn = 0; turn < 30; ++turn) {
    search = PrecisionSearch(design_band({.frequency = 30, .q = 10, .gain = 6}, 192000));
    while (!search.is_done()) steps.push_back(nanoseconds([&] { search.step(); }));
  }
  std::ranges::sort(steps);
  fmt::print("{:44} {:6.2f} us, 99 % below {:.2f} us\n", "a step of a search", median(steps) / 1000,
             steps[steps.size() * 99 / 100] / 1000);
}

}  // namespace
}  // namespace channelstrip::bench

int main(int argc, char** argv) try {
  if (argc != 2) {
    fmt::print(stderr, "usage: live LIBRARY\n");
    return 2;
  }
  channelstrip::bench::run(channelstrip::host::Library(argv[1]));
  return 0;
} catch (const std::exception& fault) {
  fmt::print(stderr, "live: {}\n", fault.what());
  return 1;
}
