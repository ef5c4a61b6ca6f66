// Pictures and places as they were when somebody looked at them and found them good;
// write_golden_views writes them anew.
//
// What may differ elsewhere: a coordinate's last bits, by the library's other roundings, move an
// edge by far less than 1/255 of a pixel, so that its coverage rounds up or down, by 1, and what is
// drawn over it once more: 2 of 255. Other versions of FreeType round the glyphs' outlines
// differently; a tenth of a percent of the pixels may be off by up to 32. A line that moves by one
// pixel alone changes more: 500 of 294000 by over 100.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "golden.h"

namespace channelstrip::view_test {
namespace {

bool are_alike(const Difference& found) {
  return 1000 * found.slight <= found.pixels && found.strong == 0;
}

class GoldenPicture : public testing::TestWithParam<Golden> {};

TEST_P(GoldenPicture, IsAsItWas) {
  ASSERT_TRUE(view::Fonts().are_inter()) << "the font Inter is missing: Debian's fonts-inter";
  const Image drawn_now = picture(GetParam()), golden = read_png(path_of(GetParam()));
  ASSERT_TRUE(golden) << path_of(GetParam());
  const Difference found = difference(drawn_now.get(), golden.get());
  if (!are_alike(found)) {
    const std::string seen =
        (std::filesystem::temp_directory_path() / (name_of(GetParam()) + ".png")).string();
    write_png(drawn_now.get(), seen);
    ADD_FAILURE() << found.slight << " pixels differ, " << found.strong << " strongly: compare "
                  << path_of(GetParam()) << " and " << seen;
  }
}

INSTANTIATE_TEST_SUITE_P(Scenes, GoldenPicture, testing::ValuesIn(all_goldens()),
                         [](const auto& golden) { return name_of(golden.param); });

TEST(GoldenPoints, AreWhereTheyWere) {
  std::ifstream file(path_of_points());
  const std::string golden{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(points(), golden);
}

// Each of the parameters that a picture shows, one at a time.
TEST(Picture, ChangesWithEveryParameter) {
  const Settings settings = preset("drum_bus");
  const std::uint32_t stereo = plugin_test::format_of("Stereo");
  view::Model model;
  model.setup = view::setup_of(settings.get(), stereo, plugin_test::kRate);
  const Part all{0, 0, 700, 420};
  const Image before = picture(model, all, 1);
  for (const channelstrip_parameter& p : view::parameters().all) {
    // What a band's type has no use for isn't shown: drum_bus has shelves and peaks.
    if (std::string_view(p.symbol).ends_with("_slope")) continue;
    if (std::string_view(p.symbol) == "key_filter_gain") continue;
    double value = 0;
    channelstrip_settings_get(settings.get(), p.id, &value);
    const double other = value < p.maximum ? std::min(p.maximum, value + 1) : value - 1;
    channelstrip_settings_set(settings.get(), p.id, other);
    view::Model changed;
    changed.setup = view::setup_of(settings.get(), stereo, plugin_test::kRate);
    channelstrip_settings_set(settings.get(), p.id, value);
    EXPECT_GT(difference(before.get(), picture(changed, all, 1).get()).strong, 3U) << p.symbol;
  }
}

TEST(Picture, IsTheSameFromAPainterThatKeepsParts) {
  const view::Fonts fonts;
  view::Painter painter;
  for (const char* name : {"drum_gate", "film", "drum_gate"}) {
    const view::Model model = scene(name).model;
    for (const double scale : {1.0, 1.5}) {
      const Part all{0, 0, static_cast<int>(700 * scale), static_cast<int>(420 * scale)};
      const Image painted =
          drawn(all, [&](cairo_t* context) { painter.draw(context, fonts, model, kSize, scale); });
      // The curves are blended once more: each of up to a dozen layers rounds by 1.
      const Difference found = difference(painted.get(), picture(model, all, scale).get());
      EXPECT_LE(found.strong, 0U) << name;
      EXPECT_LE(found.slight, found.pixels / 100) << name;
    }
  }
}

}  // namespace
}  // namespace channelstrip::view_test
