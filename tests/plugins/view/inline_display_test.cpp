// The small picture that a host asks an LV2 plugin for.

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "../lv2_host.h"

namespace channelstrip::plugin_test::inline_display_test {
namespace {

const Lv2Binary& binary() {
  static const Lv2Binary loaded(CHANNELSTRIP_LV2);
  return loaded;
}

class InlineDisplay : public testing::Test {
 protected:
  InlineDisplay() { plugin.activate(); }

  void run(float level = 0.5f) {
    std::fill(audio.begin(), audio.end(), level);
    plugin.run({audio.data(), audio.data()}, nullptr, {audio.data(), audio.data() + 2048}, 2048);
  }
  std::vector<unsigned char> pixels(std::uint32_t width, std::uint32_t height) {
    const lv2::ImageSurface* const drawn = plugin.render(width, height);
    if (!drawn) return {};
    return {drawn->data, drawn->data + drawn->stride * drawn->height};
  }

  Lv2Instance plugin{binary(), format_of("Stereo"), kRate, Offers::kMapAndDisplay};
  std::vector<float> audio = std::vector<float>(4096);
};

TEST_F(InlineDisplay, FitsIntoWhatTheHostOffers) {
  for (const std::uint32_t width : {8U, 20U, 100U, 333U, 1000U}) {
    for (const std::uint32_t height : {8U, 40U, 500U}) {
      const lv2::ImageSurface* const drawn = plugin.render(width, height);
      if (width == 8) {
        EXPECT_EQ(drawn, nullptr) << "three lines high";
        continue;
      }
      ASSERT_TRUE(drawn);
      EXPECT_EQ(static_cast<std::uint32_t>(drawn->width), width);
      EXPECT_LE(static_cast<std::uint32_t>(drawn->height), height);
      EXPECT_GE(drawn->stride, 4 * drawn->width);
      EXPECT_EQ(drawn->data[3], 255);
    }
  }
  EXPECT_EQ(plugin.render(0, 0), nullptr);
  EXPECT_EQ(plugin.render(4000000000U, 4000000000U), nullptr);
}

TEST_F(InlineDisplay, ShowsWhatIsSetAndWhatIsTakenAway) {
  run();
  const auto flat = pixels(120, 60);
  EXPECT_EQ(pixels(120, 60), flat);
  plugin.control("eq3_on") = 1;
  plugin.control("eq3_gain") = 9;
  run();
  const auto raised = pixels(120, 60);
  EXPECT_NE(raised, flat);
  plugin.control("compressor_on") = 1;
  plugin.control("compressor_threshold") = -40;
  run(0);
  const auto idle = pixels(120, 60);
  EXPECT_NE(idle, raised);
  for (int i = 0; i < 8; ++i) run();
  EXPECT_NE(pixels(120, 60), idle);
  plugin.control("enabled") = 0;
  const auto on = pixels(120, 60);
  run();
  EXPECT_NE(pixels(120, 60), on);
}

TEST_F(InlineDisplay, IsAskedForWhenThereIsSomethingNew) {
  for (int i = 0; i < 4; ++i) run(0);
  const int asked = plugin.drawings_asked();
  EXPECT_GT(asked, 0);
  for (int i = 0; i < 8; ++i) run(0);
  EXPECT_EQ(plugin.drawings_asked(), asked);
  plugin.control("eq1_on") = 1;
  run(0);
  EXPECT_EQ(plugin.drawings_asked(), asked + 1);
}

TEST(InlineDisplays, ShowNothingWithoutTheirBinary) {
  const auto find = [](std::uint32_t index) { return binary().descriptor(index); };
  const Lv2Binary elsewhere(+find);
  Lv2Instance plugin(elsewhere, 0, kRate);
  EXPECT_EQ(plugin.render(100, 100), nullptr);
}

}  // namespace
}  // namespace channelstrip::plugin_test::inline_display_test
