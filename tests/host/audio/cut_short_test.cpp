// Files that hold less than their headers state, and those that only seem to.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "../support/audio.h"
#include "../support/temporary_folder.h"
#include "host/audio/audio_reader.h"
#include "host/audio/stated_samples.h"

namespace channelstrip::test::cut_short_test {
namespace {

class CutShort : public testing::Test {
 protected:
  std::string message(const std::string& bytes) {
    return host::AudioReader(folder.write("cut", bytes)).cut_short();
  }

  std::string second_of(int format) {
    return contents(write_audio(
        folder.file("whole"), {.format = format, .channels = 2, .floats = noise(2 * 48000, 0.5f)}));
  }

  const TemporaryFolder folder;
};

constexpr int kContainers[] = {SF_FORMAT_WAV, SF_FORMAT_WAVEX, SF_FORMAT_RF64,
                               SF_FORMAT_W64, SF_FORMAT_AIFF,  SF_FORMAT_AU};

TEST_F(CutShort, IsNoWholeFile) {
  for (const int container : kContainers) {
    EXPECT_EQ(message(second_of(container | SF_FORMAT_PCM_16)), "") << std::hex << container;
  }
}

// A quarter of a second of 24-bit stereo is missing, whatever the header's length.
TEST_F(CutShort, SaysWhatIsMissing) {
  for (const int container : kContainers) {
    std::string bytes = second_of(container | SF_FORMAT_PCM_24);
    bytes.resize(bytes.size() - 12000 * 6);
    EXPECT_EQ(message(bytes),
              folder.file("cut") + ": is cut short, its last 0.250 s of 1.000 s are missing")
        << std::hex << container;
  }
}

// What comes behind the samples isn't counted as missing.
TEST_F(CutShort, IsNoFileWhoseSamplesAreWhole) {
  std::string bytes = second_of(SF_FORMAT_WAV | SF_FORMAT_PCM_16) + "LIST";
  EXPECT_EQ(message(bytes), "");
}

// A size that would lead back to its own chunk.
TEST_F(CutShort, EndsForAChunkOfAnySize) {
  std::string wave64(200, '\0');
  wave64.replace(0, 4, "riff").replace(24, 4, "wave").replace(40, 4, "junk");
  wave64.replace(56, 8, std::string(8, '\xFF'));
  EXPECT_FALSE(host::stated_samples(wave64).has_value());
}

// Sizes that programs write to a pipe, where the size can't be known.
TEST_F(CutShort, IsNoStreamWhoseSizeWasLeftOpen) {
  for (const std::uint32_t open : {0u, 0x7FFFF000u, 0x80000000u, 0xFFFFFFFFu, 0xFFFFFFFFu - 36}) {
    std::string bytes = second_of(SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    for (std::size_t i = 0; i < 4; ++i) bytes[40 + i] = static_cast<char>(open >> 8 * i & 0xFF);
    EXPECT_EQ(message(bytes), "") << open;
  }
}

}  // namespace
}  // namespace channelstrip::test::cut_short_test
