// Values as TOML.

#include "control/parameters/state.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "control/preset/preset.h"
#include "control/text/text_file.h"

namespace channelstrip::test::state_test {
namespace {

using namespace host;

Values random_values(unsigned seed) {
  std::minstd_rand random(seed);
  Values values;
  for (std::size_t i = 0; i < kParameterCount; ++i) {
    if (random() % 3 != 0) continue;
    const Parameter& p = parameters()[i];
    values.of[i] = value_at(p, static_cast<double>(random() % 1001) / 1000);
    if (p.key == "frequency") values.of[i] = std::max(values.of[i], 20.0);
  }
  if (seed % 2) values.links["5.1"] = "L R C | LFE | Ls Rs";
  return values;
}

TEST(State, OfInitialValuesIsEmpty) {
  EXPECT_EQ(write_state(Values()), "");
}

TEST(State, ReadsBackToTheSameValuesAndBytes) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    const Values values = random_values(seed);
    const std::string text = write_state(values);
    std::vector<StateProblem> problems;
    const auto read = read_state(text, problems);
    ASSERT_TRUE(read) << text;
    EXPECT_TRUE(problems.empty()) << text << problems.front().what;
    EXPECT_EQ(*read, values) << text;
    EXPECT_EQ(write_state(*read), text);
  }
}

// Without what their types have no use for.
StripSettings in_use(StripSettings settings) {
  const auto clear = [](BandSettings& band) {
    EqBand whole;
    static_cast<BandSettings&>(whole) = band;
    for (const Key<EqBand>& key : kBandKeys) {
      if (key.objection && !key.objection(whole).empty()) key.access.set(whole, key.access.get({}));
    }
    band = whole;
  };
  for (BandSettings& band : settings.pre) clear(band);
  for (BandSettings& band : settings.post) clear(band);
  if (settings.key_filter) clear(*settings.key_filter);
  return settings;
}

// Presets are strict: what they refuse is a fault of the writer, and what is off or has no use does
// nothing. Bands may take more sections than there are, which is refused with other words.
TEST(State, IsAPresetWithTheSameSettings) {
  int compared = 0;
  for (unsigned seed = 1; seed <= 300; ++seed) {
    const Values values = random_values(seed);
    const std::string text = write_state(values);
    try {
      const StripSettings settings = parse_preset(text, "state").settings;
      // At this rate no band is left out or raised.
      EXPECT_EQ(settings, in_use(settings_of(values, 384001))) << text;
      ++compared;
    } catch (const std::runtime_error& refusal) {
      const std::string what = refusal.what();
      EXPECT_TRUE(what.ends_with("second-order sections, a strip has 8") ||
                  what.ends_with("the key filter is one section: 6 or 12 dB/oct"))
          << what << '\n'
          << text;
    }
  }
  EXPECT_GT(compared, 100);
}

TEST(State, OfThePresetsThatShipIsTheSame) {
  const std::filesystem::path folder = CHANNELSTRIP_SOURCE_DIR "/presets";
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    const std::string text = read_text_file(file.path().string());
    std::vector<StateProblem> problems;
    const auto values = read_state(text, problems);
    ASSERT_TRUE(values) << file.path();
    EXPECT_TRUE(problems.empty()) << file.path() << problems.front().what;
    EXPECT_EQ(settings_of(*values, 48000), parse_preset(text, "preset").settings) << file.path();
  }
}

TEST(State, NotesWhatItCanNotUseAndKeepsTheRest) {
  std::vector<StateProblem> problems;
  const auto values = read_state(R"(
colour = "warm"
gain_in = 200
mix = "half"
[[eq]]
gain = 3
sparkle = 1
[compressor]
threshold = nan
[link]
"5.1" = "L R"
[[at]]
time = 1
)",
                                 problems);
  ASSERT_TRUE(values);
  EXPECT_EQ(values->of[*index_of(std::string_view("gain_in"))], 60);
  EXPECT_EQ(values->of[*index_of(std::string_view("eq1_gain"))], 3);
  EXPECT_EQ(values->of[*index_of(std::string_view("eq1_on"))], 1);
  EXPECT_EQ(values->of[*index_of(std::string_view("compressor_on"))], 1);
  std::vector<std::string> said;
  for (const auto& [line, column, what] : problems) {
    said.push_back(std::to_string(line) + ": " + what);
  }
  EXPECT_EQ(said,
            (std::vector<std::string>{"2: unknown key colour", "3: gain_in 200 is taken as 60",
                                      "4: mix must be a number", "7: unknown key sparkle",
                                      "9: threshold must be a number", "11: the map lacks C",
                                      "12: changes in time are left out"}));
}

TEST(State, SaysWhereTheTextIsNoToml) {
  std::vector<StateProblem> problems;
  EXPECT_FALSE(read_state("mix = \n", problems));
  ASSERT_EQ(problems.size(), 1u);
  EXPECT_EQ(problems[0].line, 1u);
}

}  // namespace
}  // namespace channelstrip::test::state_test
