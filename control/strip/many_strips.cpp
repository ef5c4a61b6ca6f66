// Several strips in calls of the library for all of them.

#include <array>

#include "denormals.h"
#include "live_strip.h"

namespace channelstrip::host {

void LiveStrip::process_many(std::span<LiveStrip* const> strips, std::span<const Buffers> buffers,
                             std::size_t frames) {
  const FlushDenormals flush;
  const bool is_whole = frames % kBlock == 0 && std::ranges::all_of(strips, [](const auto* strip) {
                          return strip->pending_ == 0;
                        });
  if (!is_whole) {
    for (std::size_t i = 0; i < strips.size(); ++i) strips[i]->process(buffers[i], frames);
    return;
  }
  // Those that the library runs, and what it is called with.
  std::array<LiveStrip*, kMostAtOnce> direct;
  std::array<float* const*, kMostAtOnce> outputs;
  std::array<const SChannelStrip_Alg_Context*, kMostAtOnce> contexts;
  std::array<Run, kMostAtOnce> runs;
  for (std::size_t at = 0; at < frames;) {
    std::size_t samples = frames - at;
    for (LiveStrip* strip : strips) {
      strip->begin_block();
      samples = strip->until_step(samples);
    }
    std::size_t count = 0;
    for (std::size_t i = 0; i < strips.size(); ++i) {
      LiveStrip& strip = *strips[i];
      Buffers part = buffers[i];
      if (samples != frames) {
        runs[i] = strip.run_of(part, at, samples);
        part = buffers_of(runs[i]);
      }
      if (!strip.is_idle_ || !strip.live_.is_single() || !strip.may_run_directly(part, samples)) {
        strip.run(part, samples);
        continue;
      }
      strip.live_.prepare(part.inputs, part.key, part.outputs, samples);
      contexts[count] = strip.live_.context();
      outputs[count] = part.outputs;
      direct[count++] = &strip;
    }
    strips.front()->live_.entry_point()(contexts.data(), contexts.data() + count);
    for (std::size_t i = 0; i < count; ++i) direct[i]->finish_run(outputs[i], samples);
    at += samples;
  }
}

}  // namespace channelstrip::host
