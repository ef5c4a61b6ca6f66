// What a rendered file keeps of the one it came from.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "../support/audio.h"
#include "../support/render.h"
#include "../support/temporary_folder.h"

namespace channelstrip::test {
namespace {

using host::RenderReport;

std::string refusal(const std::string& input, const std::string& output) {
  try {
    render(input, output);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

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

TestAudio surround_audio(const Surround& surround, int format) {
  const int channels = static_cast<int>(surround.map.size());
  return {.format = format,
          .channels = channels,
          .sample_rate = 96000,
          .map = surround.map,
          .floats = noise(1000 * surround.map.size(), 0.25f)};
}

// The four bytes behind the plain format fields of an extensible WAV header.
unsigned mask_of(const std::string& path) {
  const std::string bytes = contents(path);
  unsigned mask = 0;
  for (std::size_t i = 4; i-- > 0;) mask = mask << 8 | static_cast<unsigned char>(bytes.at(40 + i));
  return mask;
}

TEST(RenderedFile, KeepsRateLengthSampleTypeAndSpeakers) {
  for (const Surround& surround : kSurrounds) {
    for (const int sample_type : {SF_FORMAT_PCM_16, SF_FORMAT_PCM_24, SF_FORMAT_FLOAT}) {
      const TemporaryFolder folder;
      const TestAudio audio = surround_audio(surround, SF_FORMAT_WAVEX | sample_type);
      const std::string input = write_audio(folder.file("in.wav"), audio);
      const RenderReport report = render(input, folder.file("out.wav"));
      const TestAudio output = read_audio(folder.file("out.wav"));
      EXPECT_EQ(report.layout.format->name, surround.format);
      EXPECT_EQ(report.frames, 1000);
      EXPECT_EQ(output.format, audio.format);
      EXPECT_EQ(output.channels, audio.channels);
      EXPECT_EQ(output.sample_rate, 96000);
      EXPECT_EQ(output.floats.size(), audio.floats.size());
      EXPECT_EQ(output.map, audio.map);
      EXPECT_EQ(mask_of(input), surround.mask);
      EXPECT_EQ(mask_of(folder.file("out.wav")), surround.mask);
    }
  }
}

TEST(RenderedFile, IsOfTheContainerItsExtensionNames) {
  const TemporaryFolder folder;
  const TestAudio audio{.format = SF_FORMAT_WAV | SF_FORMAT_PCM_24, .floats = noise(1000, 0.5f)};
  const std::string input = write_audio(folder.file("in.wav"), audio);
  const std::pair<const char*, int> cases[] = {
      {"a.wav", SF_FORMAT_WAV},     {"b.WAV", SF_FORMAT_WAV},       {"c.aiff", SF_FORMAT_AIFF},
      {"d.aif", SF_FORMAT_AIFF},    {"e.flac", SF_FORMAT_FLAC},     {"f.caf", SF_FORMAT_CAF},
      {"g.w64", SF_FORMAT_W64},     {"h.rf64", SF_FORMAT_RF64},     {"i.au", SF_FORMAT_AU},
      {"other.xyz", SF_FORMAT_WAV}, {"no_extension", SF_FORMAT_WAV}};
  for (const auto& [name, container] : cases) {
    render(input, folder.file(name));
    const TestAudio output = read_audio(folder.file(name));
    EXPECT_EQ(output.format & SF_FORMAT_TYPEMASK, container) << name;
    EXPECT_EQ(output.format & SF_FORMAT_SUBMASK, SF_FORMAT_PCM_24) << name;
    EXPECT_EQ(output.floats.size(), 1000u) << name;
  }
}

TEST(RenderedFile, SaysWhenItsContainerCannotHoldTheSamples) {
  const TemporaryFolder folder;
  const TestAudio audio{.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT, .floats = noise(100, 0.5f)};
  const std::string input = write_audio(folder.file("in.wav"), audio);
  EXPECT_EQ(
      refusal(input, folder.file("out.flac")),
      folder.file("out.flac") +
          ": FLAC (Free Lossless Audio Codec) can't hold 1 channel of 32-bit float samples at "
          "48000 Hz");
}

TEST(RenderedFile, HoldsEightBitsWithTheSignItsContainerKnows) {
  const TemporaryFolder folder;
  const TestAudio audio{.format = SF_FORMAT_WAV | SF_FORMAT_PCM_U8, .floats = noise(1000, 0.5f)};
  const std::string input = write_audio(folder.file("in.wav"), audio);
  render(input, folder.file("out.flac"));
  EXPECT_EQ(read_audio(folder.file("out.flac")).format, SF_FORMAT_FLAC | SF_FORMAT_PCM_S8);
  EXPECT_EQ(read_audio(folder.file("out.flac")).integers, read_audio(input).integers);
}

TEST(RenderedFile, HoldsSamplesOfAlacPlainly) {
  const TemporaryFolder folder;
  const TestAudio audio{.format = SF_FORMAT_CAF | SF_FORMAT_ALAC_16, .floats = noise(1000, 0.5f)};
  const std::string input = write_audio(folder.file("in.caf"), audio);
  render(input, folder.file("out.caf"));
  EXPECT_EQ(read_audio(folder.file("out.caf")).format, SF_FORMAT_CAF | SF_FORMAT_PCM_16);
  EXPECT_EQ(read_audio(folder.file("out.caf")).integers, read_audio(input).integers);
}

TEST(RenderedFile, OfPlainWavWithAChannelMapBecomesExtensible) {
  const TemporaryFolder folder;
  const TestAudio audio = surround_audio(kSurrounds[0], SF_FORMAT_CAF | SF_FORMAT_PCM_16);
  render(write_audio(folder.file("in.caf"), audio), folder.file("out.wav"));
  EXPECT_EQ(read_audio(folder.file("out.wav")).format, SF_FORMAT_WAVEX | SF_FORMAT_PCM_16);
  EXPECT_EQ(mask_of(folder.file("out.wav")), 0x3Fu);
}

TEST(RenderedFile, NeverNamesOtherSpeakersThanTheInput) {
  const TemporaryFolder folder;
  Surround film_order = kSurrounds[0];
  film_order.map = {SF_CHANNEL_MAP_LEFT,      SF_CHANNEL_MAP_CENTER,     SF_CHANNEL_MAP_RIGHT,
                    SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT, SF_CHANNEL_MAP_LFE};
  const TestAudio audio = surround_audio(film_order, SF_FORMAT_CAF | SF_FORMAT_PCM_16);
  const std::string input = write_audio(folder.file("in.caf"), audio);
  EXPECT_NE(refusal(input, folder.file("out.wav")), "");
  EXPECT_EQ(render(input, folder.file("out.flac")).warnings,
            (std::vector<std::string>{folder.file("out.flac") +
                                      " doesn't say which speaker each channel feeds"}));
  EXPECT_EQ(render(input, folder.file("out.caf")).warnings, std::vector<std::string>{});
  EXPECT_EQ(read_audio(folder.file("out.caf")).map, film_order.map);
}

TEST(RenderedFile, NamesTheSpeakersItAssumedWhereItMustNameSome) {
  const TemporaryFolder folder;
  const TestAudio audio{.channels = 8, .floats = noise(8 * 100, 0.5f)};
  const std::string input = write_audio(folder.file("in.wav"), audio);
  const RenderReport report = render(input, folder.file("out.rf64"));
  EXPECT_EQ(report.layout.labels[4], "Lb");
  EXPECT_EQ(read_audio(folder.file("out.rf64")).map, kSurrounds[2].map);
}

TEST(RenderedFile, IsTheSameEveryTime) {
  const TemporaryFolder folder;
  const TestAudio audio{.floats = noise(1000, 0.5f)};
  const std::string input = write_audio(folder.file("in.wav"), audio);
  render(input, folder.file("a.wav"));
  render(input, folder.file("b.wav"));
  EXPECT_EQ(contents(folder.file("a.wav")), contents(folder.file("b.wav")));
  EXPECT_EQ(contents(folder.file("a.wav")).find("PEAK"), std::string::npos);
}

TEST(RenderedFile, OfNothingIsNothing) {
  const TemporaryFolder folder;
  const TestAudio audio{.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16, .channels = 2};
  const RenderReport report =
      render(write_audio(folder.file("in.wav"), audio), folder.file("out.wav"));
  EXPECT_EQ(report.frames, 0);
  EXPECT_EQ(read_audio(folder.file("out.wav")).floats.size(), 0u);
}

TEST(RenderedFile, ClampsAndCountsWhatIntegersCannotHold) {
  const TemporaryFolder folder;
  write_audio(folder.file("in.aiff"), {.format = SF_FORMAT_AIFF | SF_FORMAT_PCM_16,
                                       .integers = {0x7FFF0000, -0x7FFFFFFF - 1, 0x40000000, 0}});
  const std::string preset =
      folder.write("loud.toml", "[compressor]\nratio = 1\nmakeup = 6.0206\n");
  const RenderReport report = render(folder.file("in.aiff"), folder.file("out.aiff"), preset);
  EXPECT_EQ(report.clipped, 2);
  const std::vector<int> expected{0x7FFF0000, -0x7FFFFFFF - 1, 0x7FFF0000, 0};
  EXPECT_EQ(read_audio(folder.file("out.aiff")).integers, expected);
}

TEST(RenderedFile, KeepsCompandedSamplesInsideTheirTables) {
  const TemporaryFolder folder;
  const TestAudio audio{.format = SF_FORMAT_AU | SF_FORMAT_ULAW, .floats = {0.9f, -0.9f, 0.1f}};
  const std::string preset = folder.write("loud.toml", "[compressor]\nratio = 1\nmakeup = 40\n");
  const RenderReport report =
      render(write_audio(folder.file("in.au"), audio), folder.file("out.au"), preset);
  EXPECT_EQ(report.clipped, 3);
  const std::vector<float> output = read_audio(folder.file("out.au")).floats;
  EXPECT_GT(output.at(0), 0.9f);
  EXPECT_LT(output.at(1), -0.9f);
  EXPECT_GT(output.at(2), 0.9f);
}

TEST(RenderedFile, IsRefusedForSamplesThatAreNotFinite) {
  const TemporaryFolder folder;
  TestAudio audio{.floats = noise(48000, 0.5f)};
  audio.floats[24000] = NAN;
  const std::string input = write_audio(folder.file("in.wav"), audio);
  EXPECT_EQ(refusal(input, folder.file("out.wav")),
            input + ": the sample at 0.500 s isn't a finite number");
}

}  // namespace
}  // namespace channelstrip::test
