// An input that is read twice.

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include "../support/audio.h"
#include "../support/temporary_folder.h"
#include "host/audio/audio_reader.h"

namespace channelstrip::test::rewind_test {
namespace {

std::vector<float> rest_of(host::AudioReader& reader) {
  std::vector<float> all, piece(777);
  for (auto read = reader.read(piece); !read.empty(); read = reader.read(piece)) {
    all.insert(all.end(), read.begin(), read.end());
  }
  return all;
}

// libsndfile can't search G.721.
TEST(Rewind, GivesTheSameFramesAgain) {
  const TemporaryFolder folder;
  for (const int format : {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_24,
                           SF_FORMAT_OGG | SF_FORMAT_VORBIS, SF_FORMAT_AU | SF_FORMAT_G721_32}) {
    const std::string file =
        write_audio(folder.file("in"), {.format = format, .floats = noise(10000, 0.5f)});
    host::AudioReader reader(file);
    const std::vector<float> first = rest_of(reader);
    ASSERT_FALSE(first.empty());
    EXPECT_EQ(reader.position(), std::ssize(first));
    reader.rewind();
    EXPECT_EQ(reader.position(), 0);
    EXPECT_EQ(rest_of(reader), first) << format;
  }
}

TEST(Rewind, NeedsNoNameAnyMore) {
  const TemporaryFolder folder;
  const std::string file = write_audio(folder.file("in"), {.floats = noise(1000, 0.5f)});
  host::AudioReader reader(file);
  const std::vector<float> first = rest_of(reader);
  std::filesystem::remove(file);
  reader.rewind();
  EXPECT_EQ(rest_of(reader), first);
}

}  // namespace
}  // namespace channelstrip::test::rewind_test
