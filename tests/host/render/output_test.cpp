// What kind of file the program writes.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "program.h"

namespace channelstrip::test::output_test {
namespace {

class Output : public Program {};

TEST_F(Output, HasTheBitsAskedFor) {
  const ChildResult result = run({"render", input, output, "--bits", "24"});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_NE(result.output.find("Mono, 48000 Hz, 16-bit -> 24-bit, "), std::string::npos);
  EXPECT_EQ(read_audio(output).format, SF_FORMAT_WAV | SF_FORMAT_PCM_24);
}

TEST_F(Output, IsDitheredBelow24BitsUnlessToldNotTo) {
  const std::string undithered = folder.file("undithered.wav"), tpdf = folder.file("tpdf.wav");
  run({"render", input, output});
  run({"render", input, tpdf, "--dither", "tpdf"});
  run({"render", input, undithered, "--dither", "none"});
  EXPECT_EQ(read_audio(undithered).integers, read_audio(input).integers);
  EXPECT_NE(read_audio(output).integers, read_audio(input).integers);
  EXPECT_EQ(contents(output), contents(tpdf));
}

TEST_F(Output, GoesToStandardOutput) {
  run({"render", input, output});
  const ChildResult result = run({"render", input, "-", "--quiet"});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.printed, contents(output));
  EXPECT_EQ(folder.entries(), (std::vector<std::string>{"in.wav", "out.wav"}));
}

TEST_F(Output, RefusesWhatItCannotBe) {
  expect_refusal({"render", input, output, "--dither", "pink"},
                 "--dither: pink not in {none,tpdf}");
  expect_refusal({"render", "-", output, "--key", "-"},
                 "--key: standard input is the audio already");
}

}  // namespace
}  // namespace channelstrip::test::output_test
