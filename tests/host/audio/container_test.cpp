// Every container with every sample type and number of channels that it can hold.

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "../support/audio.h"
#include "../support/rendered.h"
#include "../support/temporary_folder.h"

namespace channelstrip::test::container_test {
namespace {

struct Container {
  const char* name;
  int format;
  std::vector<int> sample_types;
  bool keeps_map;
};

const std::vector<Container> kContainers = {
    {"wav",
     SF_FORMAT_WAV,
     {SF_FORMAT_PCM_U8, SF_FORMAT_PCM_16, SF_FORMAT_PCM_24, SF_FORMAT_PCM_32, SF_FORMAT_FLOAT,
      SF_FORMAT_DOUBLE},
     false},
    {"wav",
     SF_FORMAT_WAVEX,
     {SF_FORMAT_PCM_U8, SF_FORMAT_PCM_16, SF_FORMAT_PCM_24, SF_FORMAT_PCM_32, SF_FORMAT_FLOAT,
      SF_FORMAT_DOUBLE},
     true},
    {"rf64",
     SF_FORMAT_RF64,
     {SF_FORMAT_PCM_U8, SF_FORMAT_PCM_16, SF_FORMAT_PCM_24, SF_FORMAT_PCM_32, SF_FORMAT_FLOAT,
      SF_FORMAT_DOUBLE},
     true},
    {"w64",
     SF_FORMAT_W64,
     {SF_FORMAT_PCM_U8, SF_FORMAT_PCM_16, SF_FORMAT_PCM_24, SF_FORMAT_PCM_32, SF_FORMAT_FLOAT,
      SF_FORMAT_DOUBLE},
     false},
    {"flac", SF_FORMAT_FLAC, {SF_FORMAT_PCM_S8, SF_FORMAT_PCM_16, SF_FORMAT_PCM_24}, false},
    {"aiff",
     SF_FORMAT_AIFF,
     {SF_FORMAT_PCM_U8, SF_FORMAT_PCM_S8, SF_FORMAT_PCM_16, SF_FORMAT_PCM_24, SF_FORMAT_PCM_32,
      SF_FORMAT_FLOAT, SF_FORMAT_DOUBLE},
     true},
    {"caf",
     SF_FORMAT_CAF,
     {SF_FORMAT_PCM_S8, SF_FORMAT_PCM_16, SF_FORMAT_PCM_24, SF_FORMAT_PCM_32, SF_FORMAT_FLOAT,
      SF_FORMAT_DOUBLE},
     true},
    {"au",
     SF_FORMAT_AU,
     {SF_FORMAT_PCM_S8, SF_FORMAT_PCM_16, SF_FORMAT_PCM_24, SF_FORMAT_PCM_32, SF_FORMAT_FLOAT,
      SF_FORMAT_DOUBLE},
     false}};

// Samples of 24 bits, which are exact in every sample type of at least 24 bits.
constexpr int kRate = 96000;
constexpr std::size_t kFrames = 5000;

TEST(Container, ReturnsEverySampleOfEveryTypeAndChannel) {
  const TemporaryFolder folder;
  for (const Container& container : kContainers) {
    for (const int type : container.sample_types) {
      for (int channels = 1; channels <= 8; ++channels) {
        SCOPED_TRACE(testing::Message()
                     << container.name << " type " << type << " channels " << channels);
        const TestAudio audio{.format = container.format | type,
                              .channels = channels,
                              .sample_rate = kRate,
                              .floats = noise(kFrames * static_cast<std::size_t>(channels), 0.5f)};
        const std::string input =
            write_audio(folder.file(std::string("in.") + container.name), audio);
        const std::string output = folder.file(std::string("out.") + container.name);
        EXPECT_TRUE(copy_audio(input, output).empty());
        const TestAudio before = read_audio(input), after = read_audio(output);
        EXPECT_EQ(after.format & SF_FORMAT_SUBMASK, type);
        EXPECT_EQ(after.channels, channels);
        EXPECT_EQ(after.sample_rate, kRate);
        EXPECT_EQ(after.floats, before.floats);
        if (container.keeps_map) {
          EXPECT_EQ(after.map, before.map);
        }
      }
    }
  }
}

// AIFF and CAF know these layouts by a tag, the others by a mask.
TEST(Container, KeepsTheSpeakersOfSurround) {
  const std::vector<int> map = {SF_CHANNEL_MAP_LEFT,      SF_CHANNEL_MAP_RIGHT,
                                SF_CHANNEL_MAP_CENTER,    SF_CHANNEL_MAP_LFE,
                                SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT};
  const TemporaryFolder folder;
  for (const Container& container : kContainers) {
    if (!container.keeps_map) continue;
    const std::string input = write_audio(folder.file(std::string("in.") + container.name),
                                          {.format = container.format | SF_FORMAT_PCM_24,
                                           .channels = 6,
                                           .map = map,
                                           .floats = noise(600, 0.5f)});
    const std::string output = folder.file(std::string("out.") + container.name);
    copy_audio(input, output);
    EXPECT_EQ(read_audio(output).map, map) << container.name;
  }
}

}  // namespace
}  // namespace channelstrip::test::container_test
