#include "measure.h"

#include <bench/turns.h>
#include <control/strip/denormals.h>

#include <algorithm>

#include "programme.h"

namespace channelstrip::bench {
namespace {

void play(Processor& processor, const std::vector<std::vector<float>>& audio,
          int samples_per_call) {
  std::vector<const float*> inputs(audio.size());
  for (int frame = 0; frame < kFrames; frame += samples_per_call) {
    for (std::size_t c = 0; c < audio.size(); ++c) inputs[c] = audio[c].data() + frame;
    processor.process(inputs.data());
  }
}

}  // namespace

std::vector<double> measure(const std::vector<Processor*>& processors, int channels,
                            int samples_per_call) {
  const auto audio = programme(channels);
  std::vector<std::vector<double>> times(processors.size());
  for (int turn = 0; turn < kTurns; ++turn) {
    for (std::size_t i = 0; i < processors.size(); ++i) {
      const host::FlushDenormals flushed;  // whatever mode the one before left
      times[i].push_back(nanoseconds([&] { play(*processors[i], audio, samples_per_call); }));
    }
  }
  std::vector<double> medians(times.size());
  std::ranges::transform(times, medians.begin(),
                         [](const auto& of_one) { return median(of_one) / kFrames; });
  return medians;
}

}  // namespace channelstrip::bench
