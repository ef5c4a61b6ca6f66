#include "host/audio/broadcast_loudness.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "host/audio/audio_reader.h"
#include "host/audio/audio_writer.h"
#include "rendered_file.h"

namespace channelstrip::test::broadcast_loudness_test {
namespace {

using namespace host;

constexpr std::string_view kMeasured("\x3c\xf6\xf4\x01\x9c\xff\x00\xf8\xd4\xf7", 10);
constexpr std::string_view kNotGiven("\xff\x7f\xff\x7f\xff\x7f\xff\x7f\xff\x7f");

Chunk broadcast(char version, std::string_view loudness) {
  std::string data(602, '\0');
  data.replace(0, 10, "A dialogue");
  data[346] = version;
  data.replace(412, loudness.size(), loudness);
  return {"bext", data + "A=PCM"};
}

TEST(BroadcastLoudness, IsMarkedAsNotGiven) {
  std::vector<Chunk> chunks{{"iXML", "<BWFXML/>"}, broadcast(2, kMeasured)};
  EXPECT_TRUE(forget_loudness(chunks));
  EXPECT_EQ(chunks, (std::vector<Chunk>{{"iXML", "<BWFXML/>"}, broadcast(2, kNotGiven)}));
  EXPECT_FALSE(forget_loudness(chunks));
}

TEST(BroadcastLoudness, StandsInVersion2Only) {
  std::vector<Chunk> chunks{broadcast(1, kMeasured), {"bext", std::string(421, '\2')}};
  const std::vector<Chunk> before = chunks;
  EXPECT_FALSE(forget_loudness(chunks));
  EXPECT_EQ(chunks, before);
}

TEST_F(RenderedFile, LeavesOutTheLoudnessOfItsInput) {
  const AudioFormat format = AudioReader(input({.floats = noise(100, 0.5f)}, "plain.wav")).format();
  const std::string broadcasted = folder.file("in.wav");
  AudioWriter writer(
      broadcasted, format,
      {.metadata = {.family = ChunkFamily::kRiff, .chunks = {broadcast(2, kMeasured)}}});
  writer.write(noise(100, 0.5f));
  writer.commit();
  const RenderReport report = rendered(broadcasted);
  EXPECT_EQ(report.warnings,
            std::vector{output + " leaves out the loudness in bext, which was the input's"});
  EXPECT_EQ(AudioReader(output).metadata().chunks, std::vector{broadcast(2, kNotGiven)});
}

}  // namespace
}  // namespace channelstrip::test::broadcast_loudness_test
