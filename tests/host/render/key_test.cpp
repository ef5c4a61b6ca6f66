// The key (side-chain) as users set it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "program.h"

namespace channelstrip::test::key_test {
namespace {

class Key : public Program {
 protected:
  static constexpr std::size_t kFrames = 24000;

  // The last of `channels` channels has silence, then noise from half-way on.
  std::string key(const std::string& name, int channels, std::size_t frames = kFrames,
                  int sample_rate = 48000) {
    std::vector<float> samples = noise(frames * static_cast<std::size_t>(channels), 0.9f);
    for (std::size_t i = 0; i < samples.size(); ++i) {
      const bool last = static_cast<int>(i) % channels == channels - 1;
      if (!last || i < samples.size() / 2) samples[i] = 0;
    }
    return write_audio(folder.file(name),
                       {.channels = channels, .sample_rate = sample_rate, .floats = samples});
  }

  struct Peaks {
    float before, after;
  };

  // The peaks of a steady signal of -20 dBFS, which only the key can duck.
  Peaks ducked(const std::vector<std::string>& options) {
    std::vector<std::string> arguments{"render", quiet, output, "-y", "--preset", preset};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const ChildResult result = run(arguments);
    EXPECT_EQ(result.exit_status, 0) << result.output;
    const std::vector<float> samples = read_audio(output).floats;
    EXPECT_EQ(samples.size(), kFrames);
    return {samples[kFrames / 2 - 1], samples[kFrames - 1]};
  }

  const std::string quiet =
      write_audio(folder.file("quiet.wav"), {.floats = std::vector<float>(kFrames, 0.1f)});
  const std::string preset = folder.write(
      "duck.toml", "[compressor]\nthreshold = -18\nratio = 20\nattack = 1\nknee = 0\n");
};

TEST_F(Key, AFileDucksTheInput) {
  const Peaks alone = ducked({});
  EXPECT_NEAR(alone.after, 0.1f, 1e-5f);
  const Peaks keyed = ducked({"--key", key("key.wav", 1)});
  EXPECT_NEAR(keyed.before, 0.1f, 1e-5f);
  EXPECT_LT(keyed.after, 0.03f);
}

TEST_F(Key, APresetSaysWhenItIsUsed) {
  folder.write("duck.toml", contents(preset) + "[[at]]\ntime = 0.4\nkey.enable = true\n");
  EXPECT_LT(ducked({"--key", key("key.wav", 1)}).after, 0.03f);
  folder.write("duck.toml", contents(preset) + "[[at]]\ntime = 0.41\nkey.enable = false\n");
  EXPECT_NEAR(ducked({"--key", key("key.wav", 1), "--set", "compressor.release=1"}).after, 0.1f,
              1e-5f);
}

TEST_F(Key, AChannelOfTheFileIsPicked) {
  const std::string file = key("key.wav", 3);
  EXPECT_LT(ducked({"--key", file, "--key-channel", "3"}).after, 0.03f);
  EXPECT_NEAR(ducked({"--key", file, "--key-channel", "2"}).after, 0.1f, 1e-5f);
}

TEST_F(Key, SilenceFollowsAShortFile) {
  const Peaks keyed = ducked({"--key", key("short.wav", 1, kFrames / 2 - 2000)});
  EXPECT_GT(keyed.after, 2 * keyed.before);
}

TEST_F(Key, AChannelOfTheInputDucksTheOthersAndItself) {
  std::vector<float> samples(2 * kFrames, 0.1f);
  for (std::size_t i = 1; i < samples.size(); i += 2) samples[i] = 0.9f;
  const std::string both = write_audio(folder.file("both.wav"), {.channels = 2, .floats = samples});
  ASSERT_EQ(
      run({"render", both, output, "-y", "--preset", preset, "--key-channel", "1"}).exit_status, 0);
  const std::vector<float> by_the_quiet = read_audio(output).floats;
  EXPECT_NEAR(by_the_quiet.back(), 0.9f, 1e-5f);
  ASSERT_EQ(
      run({"render", both, output, "-y", "--preset", preset, "--key-channel", "2"}).exit_status, 0);
  const std::vector<float> by_the_loud = read_audio(output).floats;
  EXPECT_LT(by_the_loud[by_the_loud.size() - 2], 0.03f);
  EXPECT_LT(by_the_loud.back(), 0.3f);
}

TEST_F(Key, ListeningGivesTheKey) {
  const std::string file = key("key.wav", 1);
  ASSERT_EQ(run({"render", quiet, output, "-y", "--key", file, "--listen", "key"}).exit_status, 0);
  EXPECT_EQ(read_audio(output).floats, read_audio(file).floats);
}

TEST_F(Key, RefusesAFileThatCannotBeTheKey) {
  const std::string other = key("other.wav", 1, 100, 44100);
  expect_refusal({"render", input, output, "--key", other},
                 other + ": its sample rate is 44100 Hz, that of " + input + " 48000 Hz");
  const std::string none = folder.file("none.wav");
  expect_refusal({"render", input, output, "--key", none}, none + ": No such file or directory");
  const std::string asking = folder.write("asking.toml", "[key]\nenable = true\n");
  expect_refusal({"render", input, output, "--preset", asking},
                 asking + ": key.enable asks for a key, --key FILE or --key-channel N");
  const std::string two = key("two.wav", 2);
  expect_refusal({"render", input, output, "--key", two},
                 two + ": has 2 channels; --key-channel says which is the key");
  expect_refusal({"render", input, "key.wav", "--key", input, "--key-channel", "2"},
                 input + ": has no channel 2 to be the key");
}

TEST_F(Key, RefusesAChannelThatIsNotThere) {
  expect_refusal({"render", input, output, "--key-channel", "2"},
                 input + ": has no channel 2 to be the key");
  expect_refusal({"render", input, output, "--key-channel", "0"},
                 input + ": has no channel 0 to be the key");
  expect_refusal({"render", input, output, "--key-channel", "L"},
                 "Could not convert: --key-channel = L");
}

}  // namespace
}  // namespace channelstrip::test::key_test
