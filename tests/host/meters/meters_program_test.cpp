// channelstrip meters as users and scripts meet it.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "../support/audio.h"
#include "../support/command.h"

namespace channelstrip::test::meters_program_test {
namespace {

using Rows = std::vector<std::vector<std::string>>;

class MetersProgram : public Command {
 protected:
  // At 48 kHz a sample of the 1 kHz sine falls on each crest.
  std::string write_sine(std::size_t frames) const {
    return write_audio(folder.file("in.wav"), {.floats = sine(0.5, 1000, 48000, frames)});
  }

  // Splits the lines at commas; the files have no quotes.
  Rows rows_of(const std::string& csv) const {
    Rows rows;
    std::istringstream lines(contents(csv));
    for (std::string line; std::getline(lines, line);) {
      EXPECT_EQ(line.back(), '\r');
      line.pop_back();
      std::istringstream cells(line);
      rows.emplace_back();
      for (std::string cell; std::getline(cells, cell, ',');) rows.back().push_back(cell);
    }
    return rows;
  }

  const std::string table = folder.file("table.csv");
};

TEST_F(MetersProgram, WritesARowPerInterval) {
  const std::string input = write_sine(12000);
  ASSERT_EQ(run({"meters", input, "-o", table}).exit_status, 0);
  const Rows rows = rows_of(table);
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows[0], (std::vector<std::string>{"time", "input_peak_M", "output_peak_M", "level",
                                               "gain", "compressor_reduction", "expander_reduction",
                                               "channel_gain_M"}));
  for (std::size_t k = 1; k < 4; ++k) {
    EXPECT_EQ(std::stod(rows[k][0]), 0.1 * static_cast<double>(k - 1));
    EXPECT_EQ(rows[k][1], "-6.021");
    EXPECT_EQ(rows[k][2], "-6.021");
    EXPECT_EQ(rows[k][4], "0.000");
  }
}

TEST_F(MetersProgram, ShowsASettledCompressorAtItsCurve) {
  const std::string input = write_sine(48000);
  const std::string preset =
      folder.write("p.toml",
                   "[compressor]\nthreshold = -20\nratio = 4\nknee = 0\nattack = 5\nmakeup = 6\n"
                   "[detector]\ntime = 1000\n");
  ASSERT_EQ(run({"meters", input, "--preset", preset, "-o", table}).exit_status, 0);
  const std::vector<std::string> last = rows_of(table).back();
  // 13.98 dB above the threshold at 4:1. Between crests, 0.5 ms apart, the level of a peak detector
  // of 1000 ms falls by 0.0043 dB, of which 3/4 reach the gain. Conversions and rounding stay below
  // 0.001 dB.
  const double curve = -0.75 * (20 - 6.0206), bound = 0.0033 + 0.001;
  EXPECT_NEAR(std::stod(last[7]), curve, bound);
  EXPECT_NEAR(std::stod(last[5]), -curve, bound);
  EXPECT_NEAR(std::stod(last[2]), -6.0206 + curve + 6, bound);
}

TEST_F(MetersProgram, WritesJsonThatParses) {
  const std::string input =
      write_audio(folder.file("in.wav"), {.channels = 6, .floats = noise(6 * 9600, 0.5f)});
  ASSERT_EQ(run({"meters", input, "--jsonl", "--interval", "50", "-o", table}).exit_status, 0);
  std::istringstream lines(contents(table));
  int rows = 0;
  for (std::string line; std::getline(lines, line); ++rows) {
    const auto object = nlohmann::json::parse(line);
    EXPECT_EQ(object["channel_gain"].size(), 6u);
    EXPECT_LT(object["input_peak"]["LFE"], -6.0);
    EXPECT_EQ(object["output_peak"]["Rs"], object["input_peak"]["Rs"]);
  }
  // 50 ms are 37.5 periods, so a row is 38 periods or 2432 frames.
  EXPECT_EQ(rows, 4);
}

TEST_F(MetersProgram, EmptyFileGivesAHeaderAlone) {
  ASSERT_EQ(run({"meters", write_sine(0), "-o", table}).exit_status, 0);
  EXPECT_EQ(rows_of(table).size(), 1u);
}

TEST_F(MetersProgram, WritesToStandardOutputUnlessToldOtherwise) {
  const std::string input = write_sine(48000);
  ASSERT_EQ(run({"meters", input, "-o", table}).exit_status, 0);
  const std::string command = std::string(CHANNELSTRIP_PROGRAM) + " meters " + input;
  FILE* pipe = popen(command.c_str(), "r");
  std::string piped;
  std::array<char, 4096> buffer;
  while (const std::size_t got = fread(buffer.data(), 1, buffer.size(), pipe)) {
    piped.append(buffer.data(), got);
  }
  EXPECT_EQ(pclose(pipe), 0);
  EXPECT_EQ(piped, contents(table));
}

TEST_F(MetersProgram, RefusesAnIntervalThatIsNoTime) {
  const std::string input = write_sine(100);
  for (const std::string interval : {"0", "-5", "nan", "60001", "fast"}) {
    expect_refusal({"meters", input, "--interval=" + interval},
                   "--interval: " + interval + " isn't 1 to 60000 ms");
  }
}

TEST_F(MetersProgram, RefusesTwoFormatsAtOnce) {
  expect_refusal({"meters", write_sine(100), "--csv", "--jsonl"}, "--csv excludes --jsonl");
}

TEST_F(MetersProgram, RefusesToReplaceItsInput) {
  const std::string input = write_sine(100);
  expect_refusal({"meters", input, "-o", input}, input + ": is an input");
  EXPECT_EQ(read_audio(input).floats.size(), 100u);
}

TEST_F(MetersProgram, RefusesWhatCannotBeReadOrWritten) {
  const std::string input = write_sine(100), missing = folder.file("none/table.csv");
  expect_refusal({"meters", input, "-o", missing}, missing + ": No such file or directory");
  expect_refusal({"meters", missing}, missing + ": No such file or directory");
}

TEST_F(MetersProgram, LeavesNothingWhenThereIsNoRoom) {
  const std::string input = write_sine(48000);
  const ChildResult result = run({"meters", input, "-o", table}, 100);
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_EQ(result.output, "channelstrip: " + table + ": File too large\n");
  EXPECT_FALSE(std::filesystem::exists(table));
}

}  // namespace
}  // namespace channelstrip::test::meters_program_test
