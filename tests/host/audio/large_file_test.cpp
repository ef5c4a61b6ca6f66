// WAV beyond 4 GiB. What is written here is short; only its announced length is large.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "../support/audio.h"
#include "../support/refusal.h"
#include "../support/temporary_folder.h"
#include "host/audio/audio_writer.h"
#include "host/audio/containers.h"

namespace channelstrip::test::large_file_test {
namespace {

class LargeFile : public testing::Test {
 protected:
  // A file of stereo noise in 32-bit float, 8 bytes per frame.
  std::string written(const std::string& name, sf_count_t frames,
                      const std::vector<int>& map = {}) const {
    host::AudioWriter writer(folder.file(name),
                             {.sample_rate = 48000,
                              .channels = 2,
                              .container = *host::container_of(name),
                              .sample_type = SF_FORMAT_FLOAT,
                              .channel_map = map},
                             {.existing = host::Existing::kReplaced, .frames = frames});
    writer.write(samples);
    writer.commit();
    return folder.file(name);
  }

  const TemporaryFolder folder;
  const std::vector<float> samples = noise(2000, 0.5f);
};

constexpr sf_count_t kFourGiB = sf_count_t{1} << 29;  // frames

TEST_F(LargeFile, IsRf64UnderTheNameOfWav) {
  EXPECT_EQ(contents(written("out.wav", kFourGiB - 10000)).substr(0, 4), "RIFF");
  for (const sf_count_t frames : {kFourGiB, 10 * kFourGiB}) {
    const std::string file = written("out.wav", frames);
    EXPECT_EQ(contents(file).substr(0, 4), "RF64");
    EXPECT_EQ(read_audio(file).floats, samples);
  }
}

TEST_F(LargeFile, IsWavAfterAllIfItsUnknownLengthWasShort) {
  const std::string file = written("out.wav", -1);
  EXPECT_EQ(contents(file).substr(0, 4), "RIFF");
  EXPECT_EQ(read_audio(file).floats, samples);
  EXPECT_EQ(contents(written("out.rf64", -1)).substr(0, 4), "RF64");
}

TEST_F(LargeFile, IsRefusedAtOnceByContainersThatCannotHoldIt) {
  for (const char* name : {"out.aiff", "out.au"}) {
    EXPECT_NE(refusal([&] {
                written(name, kFourGiB);
              }).find(" can't hold more than 4 GiB; wav, w64 and caf can"),
              std::string::npos)
        << name;
  }
  EXPECT_EQ(folder.entries(), std::vector<std::string>{});
  for (const char* name : {"out.w64", "out.caf", "out.rf64"}) {
    EXPECT_EQ(read_audio(written(name, kFourGiB)).floats, samples) << name;
  }
}

}  // namespace
}  // namespace channelstrip::test::large_file_test
