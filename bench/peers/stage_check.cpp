#include "stage_check.h"

#include <fmt/format.h>

#include <cmath>
#include <stdexcept>

#include "programme.h"

namespace channelstrip::bench {
namespace {

double decibels(double power_ratio) {
  return 10 * std::log10(power_ratio);
}

// Sums of squares over the settled second half of a passage.
struct Passage {
  double in = 0, out = 0, difference = 0;

  void add(const float* input, const float* output, int samples) {
    for (int i = 0; i < samples; ++i) {
      const double x = static_cast<double>(input[i]);
      const double y = static_cast<double>(output[i]);
      in += x * x;
      out += y * y;
      difference += (y - x) * (y - x);
    }
  }
  double gain() const { return decibels(out / in); }
  double change() const { return decibels(difference / in); }
};

struct Passages {
  Passage loud, soft;
};

void require(bool works, const std::string& name, std::string_view what, const Passages& passages) {
  if (works) return;
  throw std::runtime_error(
      fmt::format("{} {}: loud passages change by {:.1f} dB, soft ones by {:.1f} dB", name, what,
                  passages.loud.gain(), passages.soft.gain()));
}

void check(Stage stage, const std::string& name, const Passages& passages) {
  const auto& [loud, soft] = passages;
  require(std::isfinite(loud.out) && std::isfinite(soft.out), name, "gives no numbers", passages);
  if (stage == Stage::kEqualiser) {
    // Bands of 3 dB, up and down in turn, change about a sixth of the amplitude.
    require(loud.change() > -26 && soft.change() > -26, name, "is flat", passages);
  }
  if (stage == Stage::kGate || stage == Stage::kStrip) {
    require(soft.gain() < -12, name, "doesn't close", passages);
  }
  if (stage == Stage::kGate) require(loud.gain() > -3, name, "doesn't open", passages);
  if (stage == Stage::kCompressor) {
    // Some apply makeup gain, so that soft passages become louder.
    require(loud.gain() < soft.gain() - 6, name, "doesn't compress", passages);
  }
  if (stage == Stage::kStrip) require(loud.gain() < -6, name, "doesn't compress", passages);
}

}  // namespace

void check_stages(Processor& processor, int channels, int samples_per_call) {
  const auto audio = programme(channels);
  std::vector<Passages> measured(processor.stages().size());
  std::vector<const float*> inputs(audio.size());
  for (int time = 0; time < 2; ++time) {
    for (int begin = 0; begin < kFrames; begin += samples_per_call) {
      for (std::size_t c = 0; c < audio.size(); ++c) inputs[c] = audio[c].data() + begin;
      processor.process(inputs.data());

      const bool settled = begin % (kFrames / 2) >= kFrames / 4;
      if (time == 0 || !settled) continue;
      for (int c = 0; c < channels; ++c) {
        const float* input = inputs[static_cast<std::size_t>(c)];
        for (std::size_t s = 0; s < measured.size(); ++s) {
          Passage& passage = begin < kFrames / 2 ? measured[s].loud : measured[s].soft;
          passage.add(input, processor.output(s, c), samples_per_call);
          input = processor.output(s, c);
        }
      }
    }
  }
  for (std::size_t s = 0; s < measured.size(); ++s) {
    check(processor.stages()[s], processor.name_of(s), measured[s]);
  }
}

}  // namespace channelstrip::bench
