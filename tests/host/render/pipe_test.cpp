// The program in a pipeline.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "../support/streams.h"
#include "program.h"

namespace channelstrip::test::pipe_test {
namespace {

class Piped : public Program {
 protected:
  // The program's output for these bytes, all of which it reads before it writes.
  static std::string through(const std::string& bytes, std::vector<std::string> options = {}) {
    options.insert(options.begin(), {"render", "-", "-"});
    Pipe in, out;
    Child child(options, {.standard_input = in.reading, .standard_output = out.writing});
    in.reading.close();
    out.writing.close();
    in.writing.write(bytes);
    in.writing.close();
    std::string result = out.reading.read_all();
    const ChildResult ended = child.result();
    EXPECT_EQ(ended.exit_status, 0) << ended.output;
    return result;
  }
};

TEST_F(Piped, IsWhatItIsFromFileToFile) {
  const std::vector<std::string> settings{"--set", "compressor.threshold=-30", "--quiet"};
  for (const int channels : {1, 6}) {
    const std::string file = tone("tone.wav", channels, 100000);
    ASSERT_EQ(run({"render", file, output, "-y", settings[0], settings[1]}).exit_status, 0);
    EXPECT_TRUE(through(contents(file), settings) == contents(output)) << channels;
  }
}

std::string little_endian(std::uint32_t value) {
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
  return bytes;
}

std::string with_sizes(std::string wav, std::uint32_t file, std::uint32_t data) {
  wav.replace(4, 4, little_endian(file));
  return wav.replace(wav.find("data") + 4, 4, little_endian(data));
}

// The lengths that programs write when they can't go back to fill in the real one.
TEST_F(Piped, WavOfUnknownLengthIsReadToItsEnd) {
  constexpr std::uint32_t kMost = 0xFFFFFFFF, kALot = 0x7FFFF000, kHeader = 36;
  const std::string wav = contents(input), whole = through(wav);
  for (const auto& [file, data] : {std::pair{kMost, kMost},
                                   {kALot + kHeader, kALot},
                                   {kMost, 0u},
                                   {kHeader, 0u},
                                   {8u, 0u},
                                   {0u, 0u}}) {
    const std::string open = with_sizes(wav, file, data);
    EXPECT_TRUE(through(open) == whole) << file << " " << data;
    ASSERT_EQ(run({"render", folder.write("open.wav", open), output, "-y"}).exit_status, 0);
    EXPECT_TRUE(contents(output) == whole) << file << " " << data << " in a file";
  }
}

TEST_F(Piped, EmptyWavStaysEmpty) {
  const std::string tagged = contents(write_audio(folder.file("empty.wav"), {.floats = {}})) +
                             "note" + little_endian(4) + "text";
  const std::string empty = with_sizes(tagged, static_cast<std::uint32_t>(tagged.size() - 8), 0);
  folder.write("out.wav", through(empty));
  EXPECT_EQ(read_audio(output).floats.size(), 0u);
}

TEST_F(Piped, SummaryNamesTheStreams) {
  Pipe in, out;
  Child child({"render", "-", "-", "--output-type", "flac"},
              {.standard_input = in.reading, .standard_output = out.writing});
  in.writing.write(contents(tone("six.wav", 6, 100)));
  in.writing.close();
  out.writing.close();
  out.reading.read_all();
  EXPECT_TRUE(child.result().output.starts_with("standard input -> standard output\n"));
}

TEST_F(Piped, ReaderThatGoesAwayIsOneLineAndLeavesNothing) {
  const TemporaryFolder temporary;
  const std::string more_than_a_pipe_holds = tone("long.wav", 1, 1 << 20);
  setenv("TMPDIR", temporary.file("").c_str(), 1);
  for (const bool begins_to_read : {false, true}) {
    Pipe pipe;
    if (!begins_to_read) pipe.reading.close();
    Child child({"render", more_than_a_pipe_holds, "-", "-q"}, {.standard_output = pipe.writing});
    char first = 0;
    if (begins_to_read) {
      EXPECT_EQ(read(pipe.reading, &first, 1), 1);
    }
    pipe.reading.close();
    const ChildResult result = child.result();
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_EQ(result.output, "channelstrip: standard output: Broken pipe\n");
    EXPECT_EQ(temporary.entries(), std::vector<std::string>{});
  }
  unsetenv("TMPDIR");
}

}  // namespace
}  // namespace channelstrip::test::pipe_test
