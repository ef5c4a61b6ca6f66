// What the program reports about a rendering.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "program.h"

namespace channelstrip::test::summary_test {
namespace {

using nlohmann::json;

class Summary : public Program {};

TEST_F(Summary, AsJsonHoldsWhatTheTextSays) {
  const std::string stereo = write_audio(folder.file("stereo.wav"),
                                         {.format = SF_FORMAT_WAV | SF_FORMAT_PCM_24,
                                          .channels = 2,
                                          .sample_rate = 44100,
                                          .integers = std::vector<int>{0, 1 << 30, 0, -(1 << 30)}});
  const ChildResult result = run({"render", stereo, output, "--json"});
  ASSERT_EQ(result.exit_status, 0);
  EXPECT_NE(result.output.find("Stereo, 44100 Hz, 24-bit"), std::string::npos);
  json document = json::parse(result.printed);
  json& file = document.at("files").at(0);
  const double peak = file["channels"][1]["output_peak"];
  EXPECT_NEAR(peak, -6.0206, 1e-4);
  file["channels"][1]["output_peak"] = -6;
  file["channels"][1]["input_peak"] =
      std::round(10 * file["channels"][1]["input_peak"].get<double>());
  EXPECT_EQ(document, json::parse(R"({"files": [{
      "input": ")" + stereo + R"(", "output": ")" +
                                  output + R"(", "preset": "",
      "format": "Stereo", "sample_rate": 44100, "sample_type": "24-bit", "frames": 2,
      "seconds": )" + json(2 / 44100.0).dump() +
                                  R"(,
      "channels": [
        {"channel": "L", "input_peak": null, "output_peak": null, "reduction": 0.0},
        {"channel": "R", "input_peak": -60.0, "output_peak": -6, "reduction": 0.0}],
      "compressor_reduction": 0.0, "expander_reduction": 0.0, "clipped": 0, "warnings": [],
      "cut_short": []}]})"));
}

TEST_F(Summary, AsJsonTellsWarningsPresetAndFailures) {
  const std::string preset =
      folder.write("loud.toml", "name = \"Loud\"\n[compressor]\nratio = 1\nmakeup = 20\n");
  const std::string text = folder.write("text.wav", "no audio at all");
  const ChildResult result = run({"render", input, text, folder.file("."), "--output-type", "aiff",
                                  "--preset", preset, "--json", "--quiet"});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_EQ(result.output, "channelstrip: " + text + ": Format not recognised\n");
  const json files = json::parse(result.printed).at("files");
  EXPECT_EQ(files[0]["preset"], "Loud");
  EXPECT_GT(files[0]["clipped"], 100);
  const std::string clipped = files[0]["clipped"].dump();
  EXPECT_EQ(files[0]["warnings"], json::array({clipped + " samples above full scale clipped"}));
  EXPECT_EQ(files[1], (json{{"input", text},
                            {"output", folder.file("./text.aiff")},
                            {"error", text + ": Format not recognised"}}));
}

TEST_F(Summary, ShowsNoControlCharacters) {
  const std::string odd = tone("\x1b]0;owned\a.wav");
  const std::string preset = folder.write("odd.toml", "name = \"a\\u001b[2Jb\"\n");
  const ChildResult result = run({"render", odd, output, "--preset", preset});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.output.find_first_of("\x1b\a"), std::string::npos);
  EXPECT_EQ(run({"curves", preset}).printed.find('\x1b'), std::string::npos);
}

TEST_F(Summary, QuietSaysNothing) {
  const ChildResult result = run({"render", input, output, "-q"});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.printed, "");
}

}  // namespace
}  // namespace channelstrip::test::summary_test
