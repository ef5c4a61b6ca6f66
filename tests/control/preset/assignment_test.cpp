// --set KEY=VALUE over a preset.

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "refusal.h"
#include "tests/host/support/temporary_folder.h"

namespace channelstrip::test::assignment_test {
namespace {

using namespace host;

using Assignments = std::vector<std::string>;

StripSettings assigned(const Assignments& assignments) {
  return load_preset(std::nullopt, assignments).settings;
}

StripSettings assigned_over(std::string_view preset, const Assignments& assignments) {
  const TemporaryFolder folder;
  return load_preset(folder.write("p.toml", preset), assignments).settings;
}

std::string refusal_of_assigning(const Assignments& assignments) {
  return refusal([&] { load_preset(std::nullopt, assignments); });
}

constexpr std::string_view kTwoBands =
    "[[eq]]\ntype = \"high_pass\"\nq = 1\n[[eq]]\nposition = \"post\"\ngain = 2\n";

TEST(Assignment, SetsAKeyOverThePreset) {
  const StripSettings settings =
      assigned_over("[compressor]\nratio = 3\nthreshold = -30\n", {"compressor.threshold=-18"});
  EXPECT_EQ(settings.compressor->threshold, -18);
  EXPECT_EQ(settings.compressor->ratio, 3);
}

TEST(Assignment, CreatesTheTableThatThePresetLacks) {
  const StripSettings settings = assigned({"compressor.ratio=4", "expander.hysteresis=3"});
  EXPECT_EQ(settings.compressor->ratio, 4);
  EXPECT_EQ(settings.compressor->threshold, CompressorSettings{}.threshold);
  EXPECT_EQ(settings.expander->hysteresis, 3);
  EXPECT_EQ(assigned({"key_filter.frequency=80"}).key_filter->frequency, 80);
  EXPECT_TRUE(assigned({"compressor={}"}).compressor);
}

TEST(Assignment, LaterOneWins) {
  EXPECT_EQ(assigned({"glide=1", "glide=2"}).glide, 2);
  EXPECT_EQ(assigned({"link.lcr=L R C", "link.LCR=L R | C"}).link.at("LCR"), "L R | C");
}

TEST(Assignment, KnowsTheShortNames) {
  const StripSettings settings = assigned({"comp.makeup=3", "exp.hold=7"});
  EXPECT_EQ(settings.compressor->makeup, 3);
  EXPECT_EQ(settings.expander->hold, 7);
}

TEST(Assignment, TakesTextWithAndWithoutQuotes) {
  EXPECT_EQ(assigned({"detector.mode=average"}).detector.mode, DetectorMode::kAverage);
  EXPECT_EQ(assigned({"detector.mode=\"average\""}).detector.mode, DetectorMode::kAverage);
  EXPECT_EQ(assigned({"link.\"5.1\"=L R C | LFE | Ls Rs"}).link.at("5.1"), "L R C | LFE | Ls Rs");
  EXPECT_EQ(assigned({"link.5.1=L R C | LFE | Ls Rs"}).link.at("5.1"), "L R C | LFE | Ls Rs");
  EXPECT_EQ(load_preset(std::nullopt, {"name=Take \"2\" \\ bright"}).name, "Take \"2\" \\ bright");
}

TEST(Assignment, TakesEveryKindOfValue) {
  EXPECT_EQ(assigned({"compressor.ratio=inf"}).compressor->ratio,
            std::numeric_limits<double>::infinity());
  EXPECT_TRUE(assigned({"compressor.auto_makeup=true"}).compressor->auto_makeup);
  EXPECT_EQ(assigned({" glide = 1e1 "}).glide, 10);
}

TEST(Assignment, CountsBandsInThePresetsOrder) {
  const StripSettings settings =
      assigned_over(kTwoBands, {"eq.2.gain=3", "eq.1.frequency=90", "eq.1.q=2"});
  EXPECT_EQ(settings.post.at(0).gain, 3);
  EXPECT_EQ(settings.pre.at(0).frequency, 90);
  EXPECT_EQ(settings.pre.at(0).q, 2);
}

TEST(Assignment, MayAddABand) {
  const StripSettings settings = assigned_over(
      kTwoBands,
      {"eq.3.slope=24", "eq.3.type=low_pass", "eq.4.frequency=50", "eq.3.frequency=9e3"});
  ASSERT_EQ(settings.pre.size(), 3u);
  EXPECT_EQ(settings.pre[1].type, BandType::kLowPass);
  EXPECT_EQ(settings.pre[1].slope, 24);
  EXPECT_EQ(settings.pre[1].frequency, 9000);
  EXPECT_EQ(settings.pre[2].frequency, 50);
}

TEST(Assignment, TypeOrSlopeDropsWhatOfThePresetItDoesNotKnow) {
  const StripSettings settings = assigned_over(kTwoBands, {"eq.2.type=notch", "eq.1.slope=48"});
  EXPECT_EQ(settings.post.at(0).type, BandType::kNotch);
  EXPECT_EQ(settings.post[0].gain, BandSettings{}.gain);
  EXPECT_EQ(settings.pre.at(0).slope, 48);
  EXPECT_EQ(settings.pre[0].q, BandSettings{}.q);
}

TEST(Assignment, RefusalsQuoteIt) {
  const struct {
    Assignments assignments;
    const char* message;
  } cases[] = {
      {{"compressor.treshold=-18"},
       "--set compressor.treshold=-18: unknown key; did you mean \"threshold\"?"},
      {{"comp.treshold=-18"}, "--set comp.treshold=-18: unknown key; did you mean \"threshold\"?"},
      {{"glide=1", "glide=-1"}, "--set glide=-1: must be 0 to 10000 ms"},
      {{"glide=fast"}, "--set glide=fast: must be a number"},
      {{"glide=-18 dB"}, "--set glide=-18 dB: must be a number"},
      {{"detector.mode=peek"},
       "--set detector.mode=peek: unknown value \"peek\"; did you mean \"peak\"?"},
      {{"bypass=on"}, "--set bypass=on: must be true or false"},
      {{"compressor=on"}, "--set compressor=on: must be a table, [compressor]"},
      {{"glide"}, "--set glide: must be KEY=VALUE"},
      {{"=3"}, "--set =3: \"\" is no key"},
      {{"#glide=3"}, "--set #glide=3: \"#glide\" is no key"},
      {{"[[eq]]=3"}, "--set [[eq]]=3: \"[[eq]]\" is no key"},
      {{"a..b=3"}, "--set a..b=3: \"a..b\" is no key"},
      {{"glide=1\nbypass=true"}, "--set glide=1\nbypass=true: must be one line"},
      {{"glide="}, "--set glide=: must be a number"},
      {{"name=\x01"}, "--set name=\x01: the value is no text"},
      {{"at.time=3"}, "--set at.time=3: stands in a preset alone, [[at]]"},
      {{"eq.1.slope=24"}, "--set eq.1.slope=24: a peak has no slope"},
      {{"eq=3"}, "--set eq=3: must be a table, eq.1.KEY"},
      {{"eq.0.gain=3"}, "--set eq.0.gain=3: eq takes the number of a band, eq.1 for the first"},
      {{"eq.gain=3"}, "--set eq.gain=3: eq takes the number of a band, eq.1 for the first"},
      {{"eq.2.gain=3"}, "--set eq.2.gain=3: the preset has no bands; eq.1 would add one"},
      {{"eq.1.gain=3", "eq.3.gain=3"},
       "--set eq.3.gain=3: the preset has 1 band; eq.2 would add one"},
      {{"eq.1.type=low_pass", "eq.1.slope=96", "eq.2.gain=3"},
       "--set eq.2.gain=3: the bands take 9 second-order sections, a strip has 8"},
      {{"key_filter.type=low_pass", "key_filter.slope=24"},
       "--set key_filter.slope=24: the key filter is one section: 6 or 12 dB/oct"},
      {{"link.\"5.1\"=L R"}, "--set link.\"5.1\"=L R: the map lacks C"},
      {{"link.9.1=L R"},
       "--set link.9.1=L R: unknown key; did you mean \"5.1\", \"6.1\" or \"7.1\"?"},
  };
  for (const auto& [assignments, message] : cases) {
    EXPECT_EQ(refusal_of_assigning(assignments), message);
  }
}

TEST(Assignment, BandThatThePresetLacksIsRefusedWithTheirNumber) {
  EXPECT_EQ(refusal([] { assigned_over(kTwoBands, {"eq.4.gain=1"}); }),
            "--set eq.4.gain=1: the preset has 2 bands; eq.3 would add one");
}

TEST(Assignment, GrownBandIsBlamedForWhatNoLongerFits) {
  EXPECT_EQ(refusal([] { assigned_over(kTwoBands, {"eq.1.slope=96"}); }),
            "--set eq.1.slope=96: the bands take 9 second-order sections, a strip has 8");
}

}  // namespace
}  // namespace channelstrip::test::assignment_test
