// Which speakers a rendered file names.

#include <string>
#include <utility>
#include <vector>

#include "rendered_file.h"

namespace channelstrip::test::channel_map_test {
namespace {

class ChannelMap : public RenderedFile {};

struct Surround {
  const char* format;
  std::vector<int> map;
  unsigned mask;
};

// The speakers' bits in a WAV mask: front left, right, centre, LFE, back left, right, side left,
// right are 1, 2, 4, 8, 0x10, 0x20, 0x200, 0x400.
const Surround kSurrounds[] = {
    {"5.1",
     {SF_CHANNEL_MAP_LEFT, SF_CHANNEL_MAP_RIGHT, SF_CHANNEL_MAP_CENTER, SF_CHANNEL_MAP_LFE,
      SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT},
     0x3F},
    {"5.1",
     {SF_CHANNEL_MAP_LEFT, SF_CHANNEL_MAP_RIGHT, SF_CHANNEL_MAP_CENTER, SF_CHANNEL_MAP_LFE,
      SF_CHANNEL_MAP_SIDE_LEFT, SF_CHANNEL_MAP_SIDE_RIGHT},
     0x60F},
    {"7.1",
     {SF_CHANNEL_MAP_LEFT, SF_CHANNEL_MAP_RIGHT, SF_CHANNEL_MAP_CENTER, SF_CHANNEL_MAP_LFE,
      SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT, SF_CHANNEL_MAP_SIDE_LEFT,
      SF_CHANNEL_MAP_SIDE_RIGHT},
     0x63F},
};

TestAudio surround(const std::vector<int>& map, int format) {
  return {.format = format,
          .channels = static_cast<int>(map.size()),
          .sample_rate = 96000,
          .map = map,
          .floats = noise(1000 * map.size(), 0.25f)};
}

// The channel mask in an extensible WAV header: the four bytes after the plain format fields.
unsigned mask_of(const std::string& path) {
  const std::string bytes = contents(path);
  unsigned mask = 0;
  for (std::size_t i = 4; i-- > 0;) mask = mask << 8 | static_cast<unsigned char>(bytes.at(40 + i));
  return mask;
}

TEST_F(ChannelMap, StaysWithRateLengthAndSampleType) {
  for (const auto& [format, map, mask] : kSurrounds) {
    for (const int sample_type : {SF_FORMAT_PCM_16, SF_FORMAT_PCM_24, SF_FORMAT_FLOAT}) {
      const TestAudio audio = surround(map, SF_FORMAT_WAVEX | sample_type);
      const std::string from = input(audio);
      const host::RenderReport report = rendered(from);
      const TestAudio after = read_audio(output);
      EXPECT_EQ(report.layout.format->name, format);
      EXPECT_EQ(report.frames, 1000);
      EXPECT_EQ(after.format, audio.format);
      EXPECT_EQ(after.channels, audio.channels);
      EXPECT_EQ(after.sample_rate, 96000);
      EXPECT_EQ(after.floats.size(), audio.floats.size());
      EXPECT_EQ(after.map, map);
      EXPECT_EQ(mask_of(from), mask);
      EXPECT_EQ(mask_of(output), mask);
    }
  }
}

// One channel or two need no map, unless they are others than the centre or left and right.
TEST_F(ChannelMap, StaysOfOneAndTwoChannels) {
  const std::vector<std::pair<std::vector<int>, unsigned>> maps{
      {{SF_CHANNEL_MAP_LFE}, 0x8},
      {{SF_CHANNEL_MAP_CENTER}, 0x4},
      {{SF_CHANNEL_MAP_LEFT, SF_CHANNEL_MAP_RIGHT}, 0x3},
      {{SF_CHANNEL_MAP_SIDE_LEFT, SF_CHANNEL_MAP_SIDE_RIGHT}, 0x600}};
  for (const auto& [map, mask] : maps) {
    const std::string from = input(surround(map, SF_FORMAT_WAVEX | SF_FORMAT_PCM_16));
    ASSERT_EQ(mask_of(from), mask);
    EXPECT_EQ(rendered(from).warnings, std::vector<std::string>{});
    EXPECT_EQ(mask_of(output), mask);
    EXPECT_EQ(rendered(from, "out.flac").warnings.empty(), mask == 0x3 || mask == 0x4) << mask;
  }
}

TEST_F(ChannelMap, MakesAPlainWavExtensible) {
  rendered(input(surround(kSurrounds[0].map, SF_FORMAT_CAF | SF_FORMAT_PCM_16), "in.caf"));
  EXPECT_EQ(read_audio(output).format, SF_FORMAT_WAVEX | SF_FORMAT_PCM_16);
  EXPECT_EQ(mask_of(output), 0x3Fu);
}

TEST_F(ChannelMap, NeverNamesOtherSpeakersThanTheInput) {
  using Warnings = std::vector<std::string>;
  const std::vector<int> film_order{SF_CHANNEL_MAP_LEFT,       SF_CHANNEL_MAP_CENTER,
                                    SF_CHANNEL_MAP_RIGHT,      SF_CHANNEL_MAP_REAR_LEFT,
                                    SF_CHANNEL_MAP_REAR_RIGHT, SF_CHANNEL_MAP_LFE};
  const std::string from = input(surround(film_order, SF_FORMAT_CAF | SF_FORMAT_PCM_16), "in.caf");
  for (const char* name : {"out.wav", "out.rf64", "out.flac"}) {
    EXPECT_EQ(rendered(from, name).warnings,
              Warnings{folder.file(name) + " doesn't say which speaker each channel feeds"});
    EXPECT_EQ(read_audio(output).map, std::vector<int>{}) << name;
    EXPECT_EQ(read_audio(output).integers, read_audio(from).integers) << name;
  }
  EXPECT_EQ(rendered(from, "out.caf").warnings, Warnings{});
  EXPECT_EQ(read_audio(output).map, film_order);
}

TEST_F(ChannelMap, IsNoneOfAnInputThatNamesNone) {
  for (const int channels : {4, 6, 8}) {
    const auto width = static_cast<std::size_t>(channels);
    const std::string from = input({.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16,
                                    .channels = channels,
                                    .floats = noise(width * 100, 0.5f)});
    for (const char* name : {"out.wav", "out.rf64"}) {
      EXPECT_EQ(rendered(from, name).warnings, std::vector<std::string>{});
      EXPECT_EQ(read_audio(output).map, std::vector<int>{}) << name;
      EXPECT_EQ(read_audio(output).integers, read_audio(from).integers) << name;
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::channel_map_test
