// What a CLAP host stores with its project.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

#include "clap_host.h"

namespace channelstrip::plugin_test::clap_state_test {
namespace {

const ClapBinary& binary() {
  static const ClapBinary loaded(CHANNELSTRIP_CLAP);
  return loaded;
}

const auto kCalls = [] { return 480; };
constexpr const char* kApart = "[link]\nStereo = \"L | R\"\n";

TEST(ClapState, IsTheSameToTheByteWhenItIsLoadedAndSaved) {
  ClapInstance one(binary()), other(binary());
  one.set_busy();
  const std::string state = *one.save();
  ASSERT_TRUE(other.load(state));
  EXPECT_EQ(other.save(), state);
  EXPECT_EQ(other.value("compressor_threshold"), -31.7);
  EXPECT_EQ(other.rescans, 1);
  EXPECT_EQ(other.save(1), state);  // a byte at a time
  ClapInstance slow(binary());
  ASSERT_TRUE(slow.load(state, 3));
  EXPECT_EQ(slow.save(), state);
}

TEST(ClapState, OfAnInstanceThatIsAsItWasMadeIsLoadedToo) {
  ClapInstance one(binary()), other(binary());
  const std::string state = *one.save();
  EXPECT_FALSE(state.empty());
  other.set_busy();
  EXPECT_TRUE(other.load(state));
  EXPECT_EQ(other.save(), state);
}

TEST(ClapState, HoldsWhatEventsHaveSet) {
  ClapInstance instance(binary());
  instance.activate();
  instance.play(noise(2, 480), {}, kCalls, false, {{5, id_of("eq3_gain"), 4.5}});
  ClapInstance other(binary());
  EXPECT_TRUE(other.load(*instance.save()));
  EXPECT_EQ(other.value("eq3_gain"), 4.5);
}

TEST(ClapState, ThatCannotBeReadChangesNothing) {
  ClapInstance instance(binary());
  instance.set_busy();
  const std::string before = *instance.save();
  std::mt19937 random(9);
  std::string bytes(5000, '\0');
  for (char& c : bytes) c = static_cast<char>(random());
  EXPECT_FALSE(instance.load(""));
  EXPECT_FALSE(instance.load(bytes));
  EXPECT_FALSE(instance.load(std::string(1 << 21, '#')));  // far more than any settings
  EXPECT_FALSE(instance.load("[compressor\n"));
  EXPECT_FALSE(instance.load(before, 0));  // the host's stream fails
  EXPECT_FALSE(instance.save(0));
  EXPECT_EQ(instance.save(), before);
  EXPECT_EQ(instance.rescans, 0);
}

TEST(ClapState, MayBeAPreset) {
  ClapInstance instance(binary());
  EXPECT_TRUE(instance.load("[compressor]\nthreshold = -20\nratio = 4\n[future]\nkey = 1\n"));
  EXPECT_EQ(instance.value("compressor_threshold"), -20);
  EXPECT_EQ(instance.value("compressor_on"), 1);
}

TEST(ClapState, MayHaveLettersOfAnyLanguage) {
  ClapInstance instance(binary());
  EXPECT_TRUE(instance.load(
      "name = \"St\u00e4rke \u0416 \u97f3\"\n# \u00e4\u00a0\n[compressor]\nratio = 7\n"));
  EXPECT_EQ(instance.value("compressor_ratio"), 7);
}

TEST(ClapState, OfEveryPresetPlaysWhatAStripPlaysWithIt) {
  const std::uint32_t format = format_of("5.1");
  const Planar input = noise(6, 4800);
  const std::vector<float> key = noise(1, 4800)[0];
  int presets = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(CHANNELSTRIP_SOURCE_DIR "/presets")) {
    std::ostringstream preset;
    preset << std::ifstream(entry.path()).rdbuf();
    const Settings settings(channelstrip_settings_new());
    ASSERT_EQ(channelstrip_settings_read(settings.get(), preset.str().data(), preset.str().size(),
                                         nullptr, nullptr),
              CHANNELSTRIP_OK);
    ClapInstance instance(binary());
    ASSERT_TRUE(instance.select(format));
    ASSERT_TRUE(instance.load(preset.str()));
    instance.activate();
    EXPECT_EQ(instance.play(input, key, kCalls), expected(format, settings.get(), input, key))
        << entry.path();
    ++presets;
  }
  EXPECT_EQ(presets, 16);
}

TEST(ClapState, HoldsLinkMapsWhichAreHeard) {
  Planar input = noise(2, 4800);
  for (float& x : input[1]) x *= 0.01f;
  const Settings settings = busy_settings();
  const std::uint32_t stereo = format_of("Stereo");
  channelstrip_settings_set_links(settings.get(), stereo, "L | R");
  const Planar apart = expected(stereo, settings.get(), input, {});
  ClapInstance instance(binary());
  EXPECT_TRUE(instance.load(kApart));
  instance.set_busy();
  EXPECT_NE(instance.save()->find("L | R"), std::string::npos);
  instance.activate();
  EXPECT_EQ(instance.play(input, {}, kCalls), apart);
}

TEST(ClapState, GlidesInWhileThePluginRuns) {
  const Planar input = noise(2, 96000);
  ClapInstance source(binary()), settled(binary()), running(binary());
  source.set_busy();
  const std::string state = *source.save();
  settled.load(state);
  settled.activate();
  const Planar wanted = settled.play(input, {}, kCalls);
  running.activate();
  running.play(input, {}, kCalls);
  EXPECT_TRUE(running.load(state));
  EXPECT_EQ(running.value("eq4_gain"), -4.2);
  const Planar glided = running.play(input, {}, kCalls);
  EXPECT_NE(glided, wanted);
  for (std::size_t i = 90000; i < 96000; ++i) ASSERT_NEAR(glided[0][i], wanted[0][i], 1e-4);
}

}  // namespace
}  // namespace channelstrip::plugin_test::clap_state_test
