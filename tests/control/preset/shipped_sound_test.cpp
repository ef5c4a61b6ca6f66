// What the comments of the shipped presets promise, on audio of the kind that each is for.

#include <gtest/gtest.h>

#include <utility>

#include "programme.h"
#include "shipped.h"

namespace channelstrip::test::shipped_sound_test {
namespace {

using namespace programme;
using host::linear_to_db;

TEST(NightModePreset, KeepsAFullScaleBurstAfterAQuietBedBelowFullScale) {
  Samples input = with_level(coloured_noise(2, 100, 3000), -42);
  add(input, with_peak(coloured_noise(0.5, 30, 12000), 0), 1);
  const Samples output = through("night_mode", with_peak(input, 0));
  EXPECT_LE(peak_level(output), -8);
  EXPECT_GE(level(output, 0.5, 0.4), -33);
}

TEST(DialoguePreset, BringsAWhisperAndAShout24DbApartToWithin16Db) {
  Samples input = with_peak(speech(), -6);
  const Samples whisper = with_peak(speech(), -30);
  input.insert(input.begin(), whisper.begin(), whisper.end());
  const Samples output = through("dialogue_5.1", input);
  const double length = 6;
  EXPECT_NEAR(level(input, length, length) - level(input, 0, length), 24, 0.1);
  EXPECT_LE(level(output, length, length) - level(output, 0, length), 16);
}

TEST(BassPreset, BringsNotes12DbApartToWithin6Db) {
  const Samples output = through("bass", with_peak(plucks(55, 12), -6));
  EXPECT_LE(level(output, 0.1, 0.5) - level(output, 1.1, 0.5), 6.5);
}

TEST(AcousticGuitarPreset, BringsStrumsTogether) {
  const Samples output = through("acoustic_guitar", with_peak(strums(), -6));
  const double difference = level(output, 2, 0.45) - level(output, 2.5, 0.45);
  EXPECT_LE(difference, 8);
  EXPECT_GE(difference, 5);
}

TEST(MasterPreset, Reduces1To3DbInLoudPassages) {
  const Samples loud = in_every_channel(with_peak(mix(), -1), 2);
  const auto meters = through_strip(settings_of("master_gentle"), audio(loud, 2)).meters;
  const double reduction = -linear_to_db(1 - static_cast<double>(meters.compressor_reduction));
  EXPECT_GE(reduction, 1);
  EXPECT_LE(reduction, 3);
}

TEST(AmbiencePreset, HoldsDownABarkAndLeavesTheBed) {
  const Samples bed = with_level(coloured_noise(4, 100, 3000), -34);
  Samples input = bed;
  add(input, with_peak(coloured_noise(0.2, 400, 1500), -6), 2);
  const Samples before = through("game_ambience", bed), after = through("game_ambience", input);
  EXPECT_NEAR(level(before, 1, 0.9), level(bed, 1, 0.9), 2);
  EXPECT_LE(level(after, 2, 0.2) - level(before, 2, 0.2), level(input, 2, 0.2) + 34 - 5);
}

TEST(KickGatePreset, OpensWithin5MsOfAStroke) {
  const Samples input = with_peak(kick_and_spill(), -6);
  host::StripSettings open = settings_of("kick_gate");
  open.expander.reset();
  const Samples output = through("kick_gate", input);
  const Samples ungated = through_strip(open, audio(input)).audio;
  EXPECT_NEAR(level(output, 1.005, 0.1), level(ungated, 1.005, 0.1), 0.1);
  EXPECT_LE(level(output, 0.5, 0.2), level(ungated, 0.5, 0.2) - 30);
}

TEST(DuckingPreset, KeepsTheMusicDownBetweenWords) {
  const Samples voice = with_peak(speech(), -6),
                music = with_level(coloured_noise(6, 50, 5000), -20);
  const Samples output = through_strip(
                             settings_of("vocal_sidechain_duck"), audio(music), usual_layout(1),
                             [] { return 4096; }, voice)
                             .audio;
  const auto reduction = [&](double from, double length) {
    return level(music, from, length) - level(output, from, length);
  };
  EXPECT_GE(reduction(0.7, 0.8), 6.5);   // during the first sentence
  EXPECT_GE(reduction(1.75, 0.2), 4.5);  // after it
  EXPECT_LE(reduction(0, 0.4), 0.1);     // before it
}

TEST(DeRumblePreset, ChangesNothingFrom140HzUp) {
  const auto gain = [](double frequency) {
    const Samples input = sine(0.5, frequency, kRate, frames(1));
    return level(through("de_rumble", input), 0.5, 0.5) - level(input, 0.5, 0.5);
  };
  EXPECT_NEAR(gain(140), 0, 0.01);
  EXPECT_NEAR(gain(100), -0.02, 0.01);
  EXPECT_NEAR(gain(50), -23.4, 0.5);
  EXPECT_NEAR(gain(35), -48, 0.5);
}

TEST(DeRumblePreset, LimitsPeaksThatItsPhaseShiftRaises) {
  Samples square = sine(1, 80, kRate, frames(1));
  for (float& x : square) x = x < 0 ? -0.89f : 0.89f;
  EXPECT_LE(peak_level(through("de_rumble", square)), -0.5 + 2e-3);
}

TEST(FilmPreset, LowersRoomToneBetweenScenesByAFewDb) {
  const Samples tone = with_level(coloured_noise(5, 100, 3000), -66);
  const auto meters =
      through_strip(settings_of("film_7.1"), audio(in_every_channel(tone, 8), 8)).meters;
  const double reduction = -linear_to_db(1 - static_cast<double>(meters.expander_reduction));
  EXPECT_GE(reduction, 2);
  EXPECT_LE(reduction, 6);
}

TEST(TelephonePreset, PassesFrom300To3400Hz) {
  const auto gain = [](double frequency) {
    const Samples input = sine(0.1, frequency, kRate, frames(0.5));
    return level(through("telephone", input), 0.2, 0.3);
  };
  EXPECT_LE(gain(150), gain(600) - 12);
  EXPECT_LE(gain(6800), gain(600) - 12);
}

}  // namespace
}  // namespace channelstrip::test::shipped_sound_test
