#include "recordings.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace channelstrip::test {
namespace {

const std::string kSpeech = "/usr/share/sounds/alsa/";
const std::string kDrums = "/usr/share/hydrogen/data/drumkits/BJA_Pacific/";

TestAudio peaking_at_minus_6_db(TestAudio audio) {
  const float gain = 0.5f / peak(audio.floats);
  for (float& sample : audio.floats) sample *= gain;
  audio.integers.clear();
  audio.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
  return audio;
}

void add(const TestAudio& hit, std::size_t first_frame, TestAudio& mix) {
  const std::size_t first = first_frame * static_cast<std::size_t>(mix.channels);
  const std::size_t count = std::min(hit.floats.size(), mix.floats.size() - first);
  for (std::size_t i = 0; i < count; ++i) mix.floats[first + i] += hit.floats[i];
}

}  // namespace

TestAudio speech() {
  return peaking_at_minus_6_db(read_audio(kSpeech + "Front_Center.wav"));
}

TestAudio drums() {
  constexpr std::size_t kBeat = 22050;  // frames, 120 beats a minute
  TestAudio mix{.channels = 2, .sample_rate = 44100};
  mix.floats.resize(4 * kBeat * 2);
  const TestAudio kick = read_audio(kDrums + "BD_06.aiff"),
                  snare = read_audio(kDrums + "SN_06.aiff"),
                  hat = read_audio(kDrums + "HH_03.aiff"), ride = read_audio(kDrums + "RD_01.aiff");
  for (std::size_t beat = 0; beat < 4; ++beat) {
    add(beat % 2 == 0 ? kick : snare, beat * kBeat, mix);
    add(hat, beat * kBeat + kBeat / 2, mix);
  }
  add(ride, 0, mix);
  return peaking_at_minus_6_db(mix);
}

TestAudio surround_speech() {
  constexpr std::size_t kChannels = 8, kFrames = 62000;
  TestAudio mix{.channels = kChannels,
                .map = {SF_CHANNEL_MAP_LEFT, SF_CHANNEL_MAP_RIGHT, SF_CHANNEL_MAP_CENTER,
                        SF_CHANNEL_MAP_LFE, SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT,
                        SF_CHANNEL_MAP_SIDE_LEFT, SF_CHANNEL_MAP_SIDE_RIGHT}};
  mix.format = SF_FORMAT_WAVEX | SF_FORMAT_FLOAT;
  mix.floats.resize(kFrames * kChannels);
  const char* const names[kChannels] = {"Front_Left", "Front_Right", "Front_Center", "Rear_Center",
                                        "Rear_Left",  "Rear_Right",  "Side_Left",    "Side_Right"};
  for (std::size_t c = 0; c < kChannels; ++c) {
    const TestAudio voice = read_audio(kSpeech + names[c] + ".wav");
    for (std::size_t i = 0; i < kFrames; ++i) mix.floats[i * kChannels + c] = voice.floats[i];
  }
  TestAudio result = peaking_at_minus_6_db(mix);
  result.format = SF_FORMAT_WAVEX | SF_FORMAT_FLOAT;
  return result;
}

TestAudio in_every_channel(const TestAudio& mono, int channels) {
  TestAudio result = mono;
  result.channels = channels;
  result.floats.clear();
  for (const float sample : mono.floats) {
    result.floats.insert(result.floats.end(), static_cast<std::size_t>(channels), sample);
  }
  return result;
}

float peak(const std::vector<float>& samples) {
  float greatest = 0;
  for (const float sample : samples) greatest = std::max(greatest, std::abs(sample));
  return greatest;
}

double rms_level(const std::vector<float>& samples) {
  double sum = 0;
  for (const float sample : samples) {
    sum += static_cast<double>(sample) * static_cast<double>(sample);
  }
  return 10 * std::log10(sum / static_cast<double>(samples.size()));
}

}  // namespace channelstrip::test
