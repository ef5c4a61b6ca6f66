// The program as users and scripts meet it.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "program.h"

namespace channelstrip::test::program_test {
namespace {

namespace fs = std::filesystem;

TEST_F(Program, RendersAndSumsUp) {
  const std::string surround = tone("surround.wav", 6);
  const ChildResult result = run({"render", surround, output});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.output, surround + " -> " + output +
                               "\n"
                               "5.1, 48000 Hz, 16-bit, 0.104 s\n"
                               "\n"
                               "channel    input peak   output peak   reduction\n"
                               "                 dBFS          dBFS          dB\n"
                               "L                -6.0          -6.0         0.0\n"
                               "R                -6.0          -6.0         0.0\n"
                               "C                -6.0          -6.0         0.0\n"
                               "LFE              -6.0          -6.0         0.0\n"
                               "Ls               -6.0          -6.0         0.0\n"
                               "Rs               -6.0          -6.0         0.0\n"
                               "\n"
                               "greatest reduction: compressor 0.0 dB, expander 0.0 dB\n");
  EXPECT_EQ(folder.entries(), (std::vector<std::string>{"in.wav", "out.wav", "surround.wav"}));
}

TEST_F(Program, ShowsSilenceAsMinusInfinity) {
  write_audio(input, {.floats = std::vector<float>(1000)});
  EXPECT_NE(run({"render", input, output}).output.find("M                -inf          -inf"),
            std::string::npos);
}

TEST_F(Program, WarnsOfClipping) {
  const std::string preset = folder.write("loud.toml", "[compressor]\nratio = 1\nmakeup = 20\n");
  const ChildResult result = run({"render", input, output, "--preset", preset});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_NE(result.output.find("samples above full scale clipped\n"), std::string::npos);
}

TEST_F(Program, ReplacesAnOlderOutput) {
  folder.write("out.wav", "old");
  EXPECT_EQ(run({"render", input, output}).exit_status, 0);
  EXPECT_EQ(read_audio(output).floats.size(), 5000u);
}

TEST_F(Program, FollowsALinkToAnOlderOutput) {
  folder.write("real.wav", "old");
  fs::create_symlink("real.wav", output);
  EXPECT_EQ(run({"render", input, output}).exit_status, 0);
  EXPECT_TRUE(fs::is_symlink(output));
  EXPECT_EQ(read_audio(folder.file("real.wav")).floats.size(), 5000u);
}

TEST_F(Program, GivesOrdinaryPermissions) {
  const mode_t mask = umask(027);
  run({"render", input, output});
  umask(mask);
  EXPECT_EQ(fs::status(output).permissions(), fs::perms{0640});
}

}  // namespace
}  // namespace channelstrip::test::program_test
