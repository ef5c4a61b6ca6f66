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
  std::array<const SChannelStrip_Alg_Context*, kMostAtOnce> contexts;
  std::array<bool, kMostAtOnce> is_direct;
  for (std::size_t at = 0; at < frames;) {
    std::size_t samples = frames - at, direct = 0;
    for (LiveStrip* strip : strips) {
      strip->begin_block();
      samples = strip->until_step(samples);
    }
    std::array<Run, kMostAtOnce> runs;  // where a part of the call runs
    const auto of_strip = [&](std::size_t i) {
      return samples == frames ? buffers[i] : buffers_of(runs[i]);
    };
    for (std::size_t i = 0; i < strips.size(); ++i) {
      LiveStrip& strip = *strips[i];
      if (samples != frames) runs[i] = strip.run_of(buffers[i], at, samples);
      const Buffers its = of_strip(i);
      is_direct[i] =
          strip.is_idle_ && strip.live_.is_single() && strip.may_run_directly(its, samples);
      if (is_direct[i]) {
        strip.live_.prepare(its.inputs, its.key, its.outputs, samples);
        contexts[direct++] = strip.live_.context();
      } else {
        strip.run(its, samples);
      }
    }
    strips.front()->live_.entry_point()(contexts.data(), contexts.data() + direct);
    for (std::size_t i = 0; i < strips.size(); ++i) {
      if (is_direct[i]) strips[i]->finish_run(of_strip(i), samples);
    }
    at += samples;
  }
}

}  // namespace channelstrip::host
