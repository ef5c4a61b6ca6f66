// What a rendered file keeps of its input.

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "rendered_file.h"

namespace channelstrip::test::audio_file_test {
namespace {

TEST_F(RenderedFile, IsOfTheContainerItsExtensionNames) {
  const std::string from =
      input({.format = SF_FORMAT_WAV | SF_FORMAT_PCM_24, .floats = noise(1000, 0.5f)});
  const std::pair<const char*, int> cases[] = {
      {"a.wav", SF_FORMAT_WAV},     {"b.WAV", SF_FORMAT_WAV},       {"c.aiff", SF_FORMAT_AIFF},
      {"d.aif", SF_FORMAT_AIFF},    {"e.flac", SF_FORMAT_FLAC},     {"f.caf", SF_FORMAT_CAF},
      {"g.w64", SF_FORMAT_W64},     {"h.rf64", SF_FORMAT_RF64},     {"i.au", SF_FORMAT_AU},
      {"other.xyz", SF_FORMAT_WAV}, {"no_extension", SF_FORMAT_WAV}};
  for (const auto& [name, container] : cases) {
    rendered(from, name);
    EXPECT_EQ(read_audio(output).format, container | SF_FORMAT_PCM_24) << name;
    EXPECT_EQ(read_audio(output).floats.size(), 1000u) << name;
  }
}

TEST_F(RenderedFile, SaysWhenItsContainerCannotHoldTheSamples) {
  EXPECT_EQ(refused(input({.floats = noise(100, 0.5f)}), "out.flac"),
            folder.file("out.flac") +
                ": FLAC (Free Lossless Audio Codec) can't hold 1 channel of 32-bit float "
                "samples at 48000 Hz");
}

// 8-bit samples are signed or not as the container wants; ALAC's samples are written as plain PCM.
TEST_F(RenderedFile, HoldsItsSamplesInATypeItsContainerKnows) {
  struct Case {
    const char *from, *to;
    int read, written;
  };
  for (const Case& c : {Case{"in.wav", "out.flac", SF_FORMAT_WAV | SF_FORMAT_PCM_U8,
                             SF_FORMAT_FLAC | SF_FORMAT_PCM_S8},
                        {"in.caf", "out.caf", SF_FORMAT_CAF | SF_FORMAT_ALAC_16,
                         SF_FORMAT_CAF | SF_FORMAT_PCM_16}}) {
    const std::string from = input({.format = c.read, .floats = noise(1000, 0.5f)}, c.from);
    rendered(from, c.to);
    EXPECT_EQ(read_audio(output).format, c.written) << c.from;
    EXPECT_EQ(read_audio(output).integers, read_audio(from).integers) << c.from;
  }
}

TEST_F(RenderedFile, IsTheSameEveryTime) {
  const std::string from = input({.floats = noise(1000, 0.5f)});
  rendered(from, "a.wav");
  const std::string first = contents(output);
  rendered(from, "b.wav");
  EXPECT_TRUE(contents(output) == first);
  EXPECT_EQ(first.find("PEAK"), std::string::npos);
}

TEST_F(RenderedFile, OfNothingIsNothing) {
  const auto nothing = input({.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16, .channels = 2});
  for (const char* name : {"out.wav", "out.rf64", "out.w64", "out.aiff", "out.caf", "out.au"}) {
    EXPECT_EQ(rendered(nothing, name).frames, 0) << name;
    EXPECT_EQ(read_audio(output).floats.size(), 0u) << name;
  }
}

TEST_F(RenderedFile, OfNothingIsRefusedWhereItWouldHaveNoHeader) {
  EXPECT_EQ(
      refused(input({.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16}), "out.flac"),
      folder.file("out.flac") + ": FLAC (Free Lossless Audio Codec) can't be without samples");
  EXPECT_EQ(folder.entries(), std::vector<std::string>{"in.wav"});
}

TEST_F(RenderedFile, ClampsAndCountsWhatIntegersCannotHold) {
  const std::string from = input({.format = SF_FORMAT_AIFF | SF_FORMAT_PCM_16,
                                  .integers = {0x7FFF0000, -0x7FFFFFFF - 1, 0x40000000, 0}},
                                 "in.aiff");
  const std::string preset =
      folder.write("loud.toml", "[compressor]\nratio = 1\nmakeup = 6.0206\n");
  EXPECT_EQ(rendered(from, "out.aiff", preset).clipped, 2);
  EXPECT_EQ(read_audio(output).integers,
            (std::vector<int>{0x7FFF0000, -0x7FFFFFFF - 1, 0x7FFF0000, 0}));
}

TEST_F(RenderedFile, KeepsCompandedSamplesInsideTheirTables) {
  const std::string from =
      input({.format = SF_FORMAT_AU | SF_FORMAT_ULAW, .floats = {0.9f, -0.9f, 0.1f}}, "in.au");
  const std::string preset = folder.write("loud.toml", "[compressor]\nratio = 1\nmakeup = 40\n");
  EXPECT_EQ(rendered(from, "out.au", preset).clipped, 3);
  const std::vector<float> samples = read_audio(output).floats;
  EXPECT_GT(samples.at(0), 0.9f);
  EXPECT_LT(samples.at(1), -0.9f);
  EXPECT_GT(samples.at(2), 0.9f);
}

TEST_F(RenderedFile, IsRefusedForSamplesThatAreNotFinite) {
  TestAudio audio{.floats = noise(48000, 0.5f)};
  audio.floats[24000] = NAN;
  const std::string from = input(audio);
  EXPECT_EQ(refused(from), from + ": the sample at 0.500 s isn't a finite number");
}

}  // namespace
}  // namespace channelstrip::test::audio_file_test
