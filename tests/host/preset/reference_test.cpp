// docs/presets.md. That it is what the program prints is a test of its own.

#include <gtest/gtest.h>

#include <string>

#include "../support/temporary_folder.h"
#include "refusal.h"

namespace channelstrip::test::reference_test {
namespace {

using namespace host;

TEST(PresetReference, ExampleIsAPreset) {
  const std::string page = contents(CHANNELSTRIP_SOURCE_DIR "/docs/presets.md");
  const std::string opening = "```toml\n";
  const auto begin = page.find(opening) + opening.size();
  const Preset preset = parse_preset(page.substr(begin, page.find("```", begin) - begin), "p.toml");
  EXPECT_EQ(preset.settings.pre.size(), 2u);
  EXPECT_EQ(preset.settings.post.size(), 1u);
  EXPECT_TRUE(preset.settings.compressor->auto_makeup);
  ASSERT_EQ(preset.changes.size(), 1u);
  EXPECT_EQ(preset.changes[0].settings.pre[1].gain, 4);
  const ChannelLayout layout = default_layout(*find_stem_format("5.1"));
  EXPECT_EQ(refusal([&] { check_fits(preset, 48000, layout); }), "");
}

}  // namespace
}  // namespace channelstrip::test::reference_test
