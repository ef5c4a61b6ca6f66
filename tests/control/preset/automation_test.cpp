// [[at]] tables: settings that change in time.

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>

#include "refusal.h"
#include "tests/host/support/temporary_folder.h"

namespace channelstrip::test::automation_test {
namespace {

using namespace host;

TEST(Automation, PresetWithoutItHasNoChanges) {
  EXPECT_TRUE(parse_preset("[compressor]\n", "p.toml").changes.empty());
}

TEST(Automation, ChangesComeInOrderOfTimeAndHoldUntilAnother) {
  const Preset preset = parse_preset(R"(
[compressor]
threshold = -10
ratio = 3
[[eq]]
[[eq]]
gain = 1
[[at]]
time = 12.5
compressor.threshold = -18
[[at]]
time = 20
eq.2.gain = 3
compressor.threshold = -12
[[at]]
time = 0
compressor.ratio = 4
)",
                                     "p.toml");
  ASSERT_EQ(preset.changes.size(), 3u);
  const auto& [first, second, third] =
      std::tie(preset.changes[0], preset.changes[1], preset.changes[2]);
  EXPECT_EQ(preset.settings.compressor->ratio, 3);
  EXPECT_EQ(first.time, 0);
  EXPECT_EQ(first.settings.compressor->ratio, 4);
  EXPECT_EQ(first.settings.compressor->threshold, -10);
  EXPECT_EQ(second.time, 12.5);
  EXPECT_EQ(second.settings.compressor->ratio, 4);
  EXPECT_EQ(second.settings.compressor->threshold, -18);
  EXPECT_EQ(second.settings.pre.at(1).gain, 1);
  EXPECT_EQ(third.time, 20);
  EXPECT_EQ(third.settings.compressor->threshold, -12);
  EXPECT_EQ(third.settings.pre.at(1).gain, 3);
}

TEST(Automation, TakesSubTablesAndWhatAStripMayChange) {
  const Preset preset = parse_preset(R"(
[[eq]]
type = "low_shelf"
q = 1
[key_filter]
[[at]]
time = 1
bypass = true
key.listen = true
link.style = "all"
link.lcr = "L R C"
key_filter.frequency = 50
[at.expander]
hysteresis = 4
[at.eq.1]
shelf_slope = 0.5
)",
                                     "p.toml");
  const StripSettings& settings = preset.changes.at(0).settings;
  EXPECT_TRUE(settings.bypass);
  EXPECT_TRUE(settings.key_listen);
  EXPECT_EQ(settings.link_style, LinkStyle::kAll);
  EXPECT_EQ(settings.link.at("LCR"), "L R C");
  EXPECT_EQ(settings.key_filter->frequency, 50);
  EXPECT_EQ(settings.expander->hysteresis, 4);
  EXPECT_EQ(settings.pre.at(0).shelf_slope, 0.5);
  EXPECT_FALSE(preset.settings.bypass);
  EXPECT_FALSE(preset.settings.expander);
}

TEST(Automation, AssignmentsHoldUntilAChangeSetsTheSameKey) {
  const TemporaryFolder folder;
  const std::string file = folder.write("p.toml", R"(
[compressor]
[[at]]
time = 1
compressor.ratio = 5
[[at]]
time = 2
compressor.threshold = -30
)");
  const Preset preset = load_preset(file, {"compressor.threshold=-18", "compressor.knee=1"});
  EXPECT_EQ(preset.settings.compressor->threshold, -18);
  EXPECT_EQ(preset.changes.at(0).settings.compressor->threshold, -18);
  EXPECT_EQ(preset.changes.at(1).settings.compressor->threshold, -30);
  EXPECT_EQ(preset.changes.at(1).settings.compressor->knee, 1);
}

TEST(Automation, RefusalsNameFileLineColumnAndKey) {
  const std::pair<const char*, const char*> cases[] = {
      {"[[at]]\nglide = 1\n", "1:1: at.time: is missing, in seconds"},
      {"[[at]]\ntime = -1\n", "2:8: at.time: must be finite and 0 s or more"},
      {"[[at]]\ntime = inf\n", "2:8: at.time: must be finite and 0 s or more"},
      {"[[at]]\ntime = nan\n", "2:8: at.time: must be finite and 0 s or more"},
      {"[[at]]\ntime = \"1\"\n", "2:8: at.time: must be a number"},
      {"[[at]]\ntime = 3\n[[at]]\ntime = 3.0\n", "4:8: at.time: another change is at 3 s"},
      {"[[at]]\ntime = 3\nname = \"x\"\n", "3:1: at.name: stands at the top of the preset alone"},
      {"[[at]]\ntime = 3\nglide = -1\n", "3:9: at.glide: must be 0 to 10000 ms"},
      {"[[at]]\ntime = 3\ncompressor.ratio = 0\n",
       "3:20: at.compressor.ratio: must be 1 or more: a compressor never makes louder what is "
       "above its threshold"},
      {"[[at]]\ntime = 3\n[[at.at]]\n", "3:6: at.at: stands in a preset alone, [[at]]"},
      {"[[at]]\ntime = 3\n[[at.eq]]\n", "3:1: at.eq: must be a table, eq.1.KEY"},
      {"[[eq]]\n[[at]]\ntime = 3\neq.2.gain = 1\n",
       "4:4: at.eq.2: the preset has 1 band, and a change in time can't add one"},
      {"[[at]]\ntime = 3\nkey_filter.q = 1\n",
       "3:1: at.key_filter: the preset has no key filter, and a change in time can't add one"},
      {"[[eq]]\n[[at]]\ntime = 3\neq.1.type = \"notch\"\n",
       "4:6: at.eq.1.type: a band's type can't change in time: its filters would jump, not glide"},
      {"[[eq]]\ntype = \"low_pass\"\n[[at]]\ntime = 3\neq.1.slope = 24\n",
       "5:6: at.eq.1.slope: a band's slope can't change in time: its filters would jump, not "
       "glide"},
      {"[[eq]]\n[[at]]\ntime = 3\neq.1.position = \"post\"\n",
       "4:6: at.eq.1.position: a band's position can't change in time: its filters would jump, not "
       "glide"},
      {"[[eq]]\ntype = \"notch\"\n[[at]]\ntime = 3\neq.1.gain = 3\n",
       "5:6: at.eq.1.gain: a notch has no gain"},
  };
  for (const auto& [preset, message] : cases) {
    EXPECT_EQ(refusal_of(preset), std::string("p.toml:") + message);
  }
}

}  // namespace
}  // namespace channelstrip::test::automation_test
