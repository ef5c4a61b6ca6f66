// Calls every entry point block by block, with several settings and kinds of audio, and prints a
// line for each call: "Mono worst silence". script/realtime-cost counts the instructions.
//
//   cost_driver LIBRARY

#include <tests/support/busy_strip.h>
#include <tests/support/counted_call.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>
#include <string_view>

namespace channelstrip::test {
namespace {

constexpr int kBlock = 16;
constexpr int kBlocks = 24;

// No bands; eight bands and all stages at work; the most work that records can ask for.
constexpr const char* kRecords[] = {"bandless", "programme", "worst"};

// Together they take both sides of every comparison with a level.
constexpr const char* kAudio[] = {"silence", "speech", "tone", "noise", "edges", "bursts", "swell"};

void write_records(Strip& strip, std::string_view records) {
  if (records == "bandless") strip.eq.endBand[0] = strip.eq.endBand[1] = 0;
  if (records != "worst") return;
  strip.eq.firstBand[1] = 0;  // both passes run all bands
  strip.eq.endBand[0] = CHANNELSTRIP_EQ_BANDS;
  strip.dyn.compKneeLow = strip.dyn.expKneeLow = -200;  // every level lies in both knees
  strip.dyn.compKneeHigh = strip.dyn.expKneeHigh = 200;
  strip.dyn.expKneeA = -0.002f;
  strip.dyn.detectorMode = 1;
  strip.dyn.keyEnable = 1;
  strip.key_index = strip.channels;
  strip.dyn.keyListen = 1;
  strip.dyn.bypass = 1;
}

float sample(std::string_view audio, int channel, int i, Noise& noise) {
  const float time = static_cast<float>(i);
  const float tone = 0.25f * std::sin(0.05f * time * (1 + 0.1f * static_cast<float>(channel)));
  const float syllable = std::max(0.0f, std::sin(0.02f * time));
  if (audio == "speech") return syllable * syllable * (tone + 0.2f * noise());
  if (audio == "tone") return 2 * tone;
  if (audio == "noise") return noise();
  if (audio == "edges")
    return (i % 2 == 0 ? 0.1f : -0.1f) * (1 + 0.2f * noise());  // around a knee edge
  if (audio == "bursts") return i / 7 % 2 != 0 ? noise() : 0;
  if (audio == "swell") return 1e-6f * std::exp(0.036f * time);  // to 0 dB
  return 0;
}

void call_block_by_block(AlgEntry_16_Stem* entry, Strip& strip) {
  for (int block = 0; block < kBlocks; ++block) {
    const auto at = static_cast<size_t>(block * kBlock);
    const auto inputs = pointers(strip.in, at), outputs = pointers(strip.out, at);
    SChannelStrip_Alg_Context context = *strip.context();
    context.inputs = inputs.data();
    context.outputs = outputs.data();
    const SChannelStrip_Alg_Context* const contexts[] = {&context};
    counted_call(entry, contexts, contexts + 1);
  }
}

void run(const char* path) {
  const host::Library library(path);
  for (const host::StemFormat& format : host::stem_formats()) {
    for (const char* records : kRecords) {
      for (const char* audio : kAudio) {
        BusyStrip strip(format.name, kBlocks * kBlock);
        write_records(strip, records);
        Noise noise(1);
        for (int c = 0; c <= strip.channels; ++c) {
          auto& channel = strip.in[static_cast<size_t>(c)];
          for (int i = 0; i < kBlocks * kBlock; ++i) {
            channel[static_cast<size_t>(i)] = sample(audio, c, i, noise);
          }
        }
        strip.sample_count = kBlock;
        call_block_by_block(library.entry_point(format), strip);
        for (int block = 0; block < kBlocks; ++block) {
          std::printf("%.*s %s %s\n", static_cast<int>(format.name.size()), format.name.data(),
                      records, audio);
        }
      }
    }
  }
}

}  // namespace
}  // namespace channelstrip::test

int main(int argc, char** argv) try {
  if (argc != 2) {
    std::fputs("usage: cost_driver LIBRARY\n", stderr);
    return 2;
  }
  channelstrip::test::run(argv[1]);
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "cost_driver: %s\n", error.what());
  return 1;
}
