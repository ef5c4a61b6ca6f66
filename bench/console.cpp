#include "console.h"

#include <control/strip/instance.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "settings.h"

namespace channelstrip::bench {
namespace {

// Samples of all channels of all strips: 128 KiB, which stay in a second-level cache.
constexpr int kProgrammeSamples = 32768;
constexpr int kFewestCalls = 4;

const host::StemFormat& format_named(std::string_view name) {
  const host::StemFormat* format = host::find_stem_format(name);
  if (!format) throw std::invalid_argument("no format is called " + std::string(name));
  return *format;
}

int calls_of(const Workload& workload, const host::StemFormat& format) {
  const int samples = workload.strips * format.channels * workload.samples;
  return std::max(kProgrammeSamples / samples, kFewestCalls);
}

// At least what all pieces of a console take: per channel the programme, an output buffer and
// records.
std::size_t bytes_of(const Workload& workload, const host::StemFormat& format) {
  const int samples = (calls_of(workload, format) + 1) * workload.samples;
  const std::size_t channel = static_cast<std::size_t>(samples) * sizeof(float) + 256;
  return static_cast<std::size_t>(workload.strips) *
         (static_cast<std::size_t>(format.channels) * channel + 1024);
}

host::StripCoefficients targets_of(const Workload& workload, const host::StemFormat& format,
                                   bool moved) {
  host::StripCoefficients targets =
      busy_coefficients(format, workload.variant == Variant::kAllBefore,
                        moved && workload.variant == Variant::kGliding);
  int left = workload.bands;
  for (int pass = 0; pass < 2; ++pass) {
    const int first = targets.eq.firstBand[pass];
    targets.eq.endBand[pass] = std::min(targets.eq.endBand[pass], first + left);
    left -= targets.eq.endBand[pass] - first;
  }
  for (int c = 0; c < format.channels; ++c) {
    targets.dynamics.linkGroup[c] = c % std::min(format.groups, workload.link_groups);
  }
  return targets;
}

class Random {
 public:
  explicit Random(unsigned seed) : generator_(seed) {}
  float between(float low, float high) {
    return low + (high - low) * (static_cast<float>(generator_()) * 0x1p-32f);
  }

 private:
  std::mt19937 generator_;
};

// Noise whose level jumps to anywhere from -76 to 0 dB every 16 to 400 samples, so that branches on
// the level can't be predicted. Equal level seeds jump at the same samples to the same levels.
void fill_with_programme(std::span<float> samples, unsigned level_seed, unsigned noise_seed) {
  Random level(level_seed), noise(noise_seed);
  for (std::size_t i = 0; i < samples.size();) {
    const float peak = std::pow(10.0f, level.between(-76, 0) / 20);
    const auto end = i + static_cast<std::size_t>(level.between(16, 400));
    for (; i < std::min(end, samples.size()); ++i) samples[i] = peak * noise.between(-1, 1);
  }
}

}  // namespace

Console::Console(const Workload& workload, unsigned layout)
    : workload_(workload),
      format_(format_named(workload.format)),
      calls_(calls_of(workload, format_)),
      memory_(bytes_of(workload, format_), layout),
      strips_(static_cast<std::size_t>(workload.strips)) {
  for (const bool moved : {false, true}) targets_[moved] = targets_of(workload, format_, moved);

  const auto samples = static_cast<std::size_t>(workload.samples);
  for (Strip& strip : strips_) {
    for (int c = 0; c < format_.channels; ++c) {
      strip.programme.push_back(memory_.pieces<float>(static_cast<std::size_t>(calls_) * samples));
    }
  }
  for (Strip& strip : strips_) {
    for (const auto& programme : strip.programme) {
      strip.inputs.push_back(programme.data());
      strip.outputs.push_back(workload.variant == Variant::kInPlace
                                  ? programme.data()
                                  : memory_.pieces<float>(samples).data());
    }
    add_records(strip);
    contexts_.push_back(&strip.context);
  }
  rewind();
}

// Copies of a fresh host::Instance's records, each at a place of its own in memory.
void Console::add_records(Strip& strip) {
  host::Instance start(format_, targets_[0]);
  strip.context = *start.prepare(strip.inputs.data(), strip.outputs.data(), workload_.samples);
  const auto copy = [&](const auto* first, int count = 1) {
    using Record = std::remove_cvref_t<decltype(*first)>;
    Record* const place = memory_.pieces<Record>(static_cast<std::size_t>(count)).data();
    std::copy_n(first, count, place);
    return place;
  };
  SChannelStrip_Alg_Context& context = strip.context;
  context.keyInputIndex = copy(context.keyInputIndex);
  context.sampleCount = copy(context.sampleCount);
  context.dynCoefs = strip.dynamics = copy(context.dynCoefs);
  context.dynState = copy(context.dynState, format_.channels);
  context.eqTargetCoefs = strip.eq = copy(context.eqTargetCoefs);
  context.eqDezipCoefs = copy(context.eqDezipCoefs);
  context.eqState = copy(context.eqState, format_.channels);
  strip.meters =
      copy(*context.meterOutputs, 3 * format_.channels + CHANNELSTRIP_METER_CHANNEL_GAIN);
  context.meterOutputs = &strip.meters;
}

// The channels of a link group are loud and soft together, or no group would ever be soft.
void Console::rewind() {
  unsigned seed = 0;
  for (Strip& strip : strips_) {
    for (int c = 0; c < format_.channels; ++c) {
      const auto group = static_cast<unsigned>(strip.dynamics->linkGroup[c]);
      fill_with_programme(strip.programme[static_cast<std::size_t>(c)], seed + group,
                          seed + 100000 + static_cast<unsigned>(c));
    }
    seed += 8;
  }
}

void Console::call(AlgEntry_16_Stem* entry, int index) {
  const auto at = static_cast<std::size_t>(index) * static_cast<std::size_t>(workload_.samples);
  for (Strip& strip : strips_) {
    for (std::size_t c = 0; c < strip.inputs.size(); ++c) {
      float* const samples = strip.programme[c].data() + at;
      strip.inputs[c] = samples;
      if (workload_.variant == Variant::kInPlace) strip.outputs[c] = samples;
    }
    if (workload_.variant == Variant::kGliding) {
      const host::StripCoefficients& targets = targets_[index % 2];
      *strip.eq = targets.eq;
      *strip.dynamics = targets.dynamics;
    }
  }
  entry(contexts_.data(), contexts_.data() + contexts_.size());
}

}  // namespace channelstrip::bench
