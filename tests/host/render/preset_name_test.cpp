// Presets by name.

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "program.h"

namespace channelstrip::test::preset_name_test {
namespace {

namespace fs = std::filesystem;

const std::string kPresets = CHANNELSTRIP_SOURCE_DIR "/presets/";

class PresetName : public Program {};

TEST_F(PresetName, StandsForAShippedPreset) {
  const std::string by_path = folder.file("by_path.wav");
  EXPECT_EQ(run({"render", input, output, "--preset", "voice", "-q"}).exit_status, 0);
  EXPECT_EQ(run({"render", input, by_path, "--preset", kPresets + "voice.toml", "-q"}).exit_status,
            0);
  EXPECT_EQ(contents(output), contents(by_path));
  EXPECT_EQ(run({"curves", "voice"}).printed, run({"curves", kPresets + "voice.toml"}).printed);
}

TEST_F(PresetName, IsGuessedWhenItIsMistyped) {
  expect_refusal({"render", input, output, "--preset", "voise"},
                 "voise: no such file, and no preset that comes with the program; did you mean "
                 "\"voice\"?");
  expect_refusal({"render", input, output, "--preset", "qqqqqqqq"},
                 "qqqqqqqq: no such file, and no preset that comes with the program; channelstrip "
                 "presets lists those");
}

// A band above half the sample rate is left out, with a warning.
TEST_F(PresetName, FitsEverySampleRateUnlessItIsStrict) {
  int left_out = 0;
  for (const int rate : {8000, 16000}) {
    const std::string slow =
        write_audio(folder.file("slow.wav"),
                    {.channels = 2, .sample_rate = rate, .floats = noise(2 * 4000, 0.25f)});
    for (const auto& entry : fs::directory_iterator(kPresets)) {
      std::vector<std::string> arguments{"render", slow, output, "-y", "--preset", entry.path()};
      if (entry.path().stem() == "vocal_sidechain_duck")
        arguments.insert(arguments.end(), {"--key-channel", "1"});
      const ChildResult result = run(arguments);
      EXPECT_EQ(result.exit_status, 0) << entry.path() << result.output;
      const bool warned = result.output.find(": left out, as its frequency, ") != std::string::npos;
      arguments.emplace_back("--strict");
      EXPECT_EQ(run(arguments).exit_status, warned ? 1 : 0) << entry.path();
      left_out += warned ? 1 : 0;
    }
  }
  EXPECT_GT(left_out, 10);
}

TEST_F(PresetName, IsListedWithItsPurpose) {
  const ChildResult result = run({"presets"});
  EXPECT_EQ(result.exit_status, 0);
  std::istringstream lines(result.printed);
  std::size_t presets = 0;
  for (std::string line; std::getline(lines, line); ++presets) {
    const std::string name = line.substr(0, line.find(' '));
    EXPECT_TRUE(fs::exists(kPresets + name + ".toml")) << line;
    EXPECT_GT(line.size(), line.find_first_not_of(' ', name.size()) + 15) << line;
    EXPECT_LE(line.size(), 120u) << line;
  }
  EXPECT_EQ(presets, static_cast<std::size_t>(std::distance(fs::directory_iterator(kPresets),
                                                            fs::directory_iterator())));
}

}  // namespace
}  // namespace channelstrip::test::preset_name_test
