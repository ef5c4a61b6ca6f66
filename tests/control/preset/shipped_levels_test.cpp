// No shipped preset drives audio of the kind that it is for beyond full scale, and those for speech
// raise peaks by no more than loudness.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "host/loudness/loudness.h"
#include "programme.h"
#include "shipped.h"

namespace channelstrip::test::shipped_levels_test {
namespace {

using namespace programme;

double loudness(const Samples& samples) {
  host::LoudnessMeter meter(kRate, usual_layout(1));
  meter.add(samples);
  return meter.loudness().integrated.value();
}

double peak_to_loudness(const Samples& samples) {
  return peak_level(samples) - loudness(samples);
}

struct Case {
  const char* preset;
  Samples (*material)();
  int channels;
};

std::string as_test_name(std::string preset) {
  std::ranges::replace(preset, '.', '_');
  return preset;
}

std::string name_of_case(const testing::TestParamInfo<Case>& info) {
  return as_test_name(info.param.preset);
}

std::string name_of_preset(const testing::TestParamInfo<const char*>& info) {
  return as_test_name(info.param);
}

class PresetOnItsMaterial : public testing::TestWithParam<Case> {};

Samples low_pluck() {
  return plucks(41.2, 12);
}

INSTANTIATE_TEST_SUITE_P(
    Shipped, PresetOnItsMaterial,
    testing::Values(Case{"acoustic_guitar", strums, 1}, Case{"bass", low_pluck, 1},
                    Case{"de_rumble", speech, 1}, Case{"dialogue_5.1", speech, 6},
                    Case{"drum_bus", drum_kit, 2}, Case{"film_7.1", explosion, 8},
                    Case{"game_ambience", explosion, 4}, Case{"kick_gate", kick_and_spill, 1},
                    Case{"limiter_safe", mix, 2}, Case{"master_gentle", mix, 2},
                    Case{"neutral", mix, 2}, Case{"night_mode", explosion, 6},
                    Case{"podcast_voice", speech, 1}, Case{"telephone", speech, 1},
                    Case{"vocal_sidechain_duck", mix, 2}, Case{"voice", speech, 1}),
    name_of_case);

TEST_P(PresetOnItsMaterial, StaysAtOrBelowFullScaleFromPeaksOfMinus1Db) {
  const auto& [preset, material, channels] = GetParam();
  const Samples input = in_every_channel(with_peak(material(), -1), channels);
  EXPECT_LE(peak_level(through(preset, input, channels)), 0);
}

class SpeechPreset : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Shipped, SpeechPreset,
                         testing::Values("voice", "podcast_voice", "dialogue_5.1", "telephone"),
                         name_of_preset);

TEST_P(SpeechPreset, RaisesPeaksByNoMoreThanLoudness) {
  const Samples input = with_peak(speech(), -6);
  EXPECT_LE(peak_to_loudness(through(GetParam(), input)), peak_to_loudness(input));
}

TEST_P(SpeechPreset, DoesNotLiftTheRoomInPauses) {
  const Samples input = with_peak(speech(), -6);
  EXPECT_LE(level(through(GetParam(), input), 5.7, 0.3), level(input, 5.7, 0.3) + 0.5);
}

}  // namespace
}  // namespace channelstrip::test::shipped_levels_test
