// The program as users and scripts meet it: what it prints, the files it writes, and its memory.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "host/audio/sndfile_handle.h"
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

TEST_F(Program, GivesOrdinaryPermissions) {
  const mode_t mask = umask(027);
  run({"render", input, output});
  umask(mask);
  EXPECT_EQ(fs::status(output).permissions(), fs::perms{0640});
}

class Output : public Program {};

TEST_F(Output, HasTheBitsAskedFor) {
  const ChildResult result = run({"render", input, output, "--bits", "24"});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_NE(result.output.find("Mono, 48000 Hz, 16-bit -> 24-bit, "), std::string::npos);
  EXPECT_EQ(read_audio(output).format, SF_FORMAT_WAV | SF_FORMAT_PCM_24);
}

TEST_F(Output, IsDitheredBelow24BitsUnlessToldNotTo) {
  const std::string undithered = folder.file("undithered.wav"), tpdf = folder.file("tpdf.wav");
  const std::string makeup = "compressor.makeup=-1";
  run({"render", input, output, "--set", makeup});
  run({"render", input, tpdf, "--set", makeup, "--dither", "tpdf"});
  run({"render", input, undithered, "--set", makeup, "--dither", "none"});
  EXPECT_NE(read_audio(output).integers, read_audio(undithered).integers);
  EXPECT_EQ(contents(output), contents(tpdf));
}

TEST_F(Output, HasTheInputsSamplesWhereNothingChangesThem) {
  for (const char* neutral : {"glide=10", "bypass=true"}) {
    run({"render", input, output, "-y", "--set", neutral});
    EXPECT_EQ(read_audio(output).integers, read_audio(input).integers) << neutral;
  }
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

class Memory : public Program {
 protected:
  // Written piece by piece, because a child's peak memory includes what this process held at the
  // fork.
  std::string seconds_of_noise(const std::string& name, int seconds) {
    SF_INFO info = {};
    info.samplerate = 48000;
    info.channels = 2;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    const host::Sndfile file(sf_open(folder.file(name).c_str(), SFM_WRITE, &info));
    const std::vector<float> second = noise(2 * 48000, 0.5f);
    for (int i = 0; i < seconds; ++i) sf_writef_float(file.get(), second.data(), 48000);
    return folder.file(name);
  }

  // KiB; the largest peak of any child so far.
  long most_after_rendering(const std::string& file) {
    EXPECT_EQ(run({"render", file, output, "-q", "-y"}).exit_status, 0);
    rusage usage = {};
    getrusage(RUSAGE_CHILDREN, &usage);
    return usage.ru_maxrss;
  }
};

// 100 s are 18750 KiB of 16-bit samples; pages and allocators vary by less than a tenth of that.
TEST_F(Memory, DoesNotGrowWithTheFile) {
  const long before = most_after_rendering(seconds_of_noise("short.wav", 1));
  EXPECT_LE(most_after_rendering(seconds_of_noise("long.wav", 100)), before + 1875);
}

}  // namespace
}  // namespace channelstrip::test::program_test
