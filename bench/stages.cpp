// How much of a strip's time each stage takes, through memory and in lanes: every stage alone over
// the same programme, in turns with the whole strip.
//
//   stages

#include <ChannelStrip/frame/channel_strip.h>
#include <control/strip/denormals.h>
#include <fmt/format.h>

#include <exception>
#include <string_view>
#include <vector>

#include "console.h"
#include "stage_table.h"
#include "stages_in_lanes.h"

namespace channelstrip::bench {
namespace {

template <typename Work>
std::function<void()> every_quad(Work work) {
  return [work] {
    for (int32_t block = 0; block < kSamples; block += kBlock) {
      for (int32_t quad = 0; quad < kBlock; quad += kQuad) work(block, quad);
    }
  };
}

template <int Channels, int Groups>
std::vector<Stage> stages_of(const SChannelStrip_Alg_Context& strip) {
  const float rate = strip.dynState->dezipRate;
  float* const meters = *strip.meterOutputs;
  float* const readouts = meters + 2 * Channels;
  const auto equalise = [=](int32_t block, int32_t quad) {
    EQ_AlgorithmProcessFunction<Channels>(strip.eqDezipCoefs, strip.eqState, strip.inputs,
                                          strip.outputs, quad, 0, CHANNELSTRIP_EQ_BANDS, block);
  };
  const auto process_dynamics = [=](int32_t block, int32_t quad) {
    Dynamics_AlgorithmProcessFunction<Channels, Groups>(&strip, strip.inputs, strip.outputs,
                                                        nullptr, quad, readouts, block);
  };
  const auto compute_gains = [=](int32_t block, int32_t quad) {
    for (int g = 0; g < Groups; ++g) {  // channel g is the lowest of group g
      float levels[kQuad];
      for (int k = 0; k < kQuad; ++k) {
        levels[k] = __builtin_fabsf(strip.inputs[g][block + quad + k]);
      }
      ProcessAudioGain(levels, strip.dynState + g, &strip, rate,
                       CHANNELSTRIP_METER_CHANNEL_GAIN + g, readouts);
    }
  };
  const auto meter = [=] {
    for (int32_t block = 0; block < kSamples; block += kBlock) {
      OutputMeters_AlgorithmProcessFunction<Channels>(strip.inputs, strip.outputs, meters,
                                                      meters + Channels, strip.dynCoefs, block);
    }
  };
  return {{"whole strip", [=] { process_instance<Channels, Groups>(&strip); }},
          {"glide step", every_quad([=](int32_t, int32_t) {
             eq_dezip_step(strip.eqDezipCoefs, strip.eqTargetCoefs, rate);
           })},
          {"equaliser, 8 bands", every_quad(equalise)},
          {"dynamics", every_quad(process_dynamics)},
          {"  their gain computers", every_quad(compute_gains)},
          {"meters", meter}};
}

template <int Channels, int Groups>
void measure_plain(std::string_view format) {
  const Console console({format, 1, kSamples}, 0);
  measure(format, stages_of<Channels, Groups>(*console.context()));
}

template <int Channels, int Groups, int Strips>
void measure_in_lanes(std::string_view title, std::string_view format) {
  const Console console({format, Strips, kSamples}, 0);
  measure(title, stages_in_lanes<Channels, Groups, Strips>(console.contexts()));
}

}  // namespace
}  // namespace channelstrip::bench

int main() try {
  const channelstrip::host::FlushDenormals flushed;
  channelstrip::bench::stay_on_this_processor();
  fmt::print("Nanoseconds per quad of four samples of all channels, and the part of the whole\n\n");
  fmt::print("{:40}{:>8}{:>9}\n", "through memory", "ns", "part");
  channelstrip::bench::measure_plain<1, 1>("Mono");
  channelstrip::bench::measure_plain<8, 5>("7.1");
  fmt::print("\n{:40}{:>8}{:>9}\n", "in lanes", "ns", "part");
  channelstrip::bench::measure_in_lanes<1, 1, channelstrip::kLanes>("Mono", "Mono");
  channelstrip::bench::measure_in_lanes<8, 5, 1>("7.1", "7.1");
  return 0;
} catch (const std::exception& error) {
  fmt::print(stderr, "stages: {}\n", error.what());
  return 1;
}
