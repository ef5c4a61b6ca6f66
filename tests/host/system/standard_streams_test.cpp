// Audio through standard input and output.

#include "host/system/standard_streams.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "../support/audio.h"
#include "../support/refusal.h"
#include "../support/rendered.h"
#include "../support/streams.h"
#include "../support/temporary_folder.h"

namespace channelstrip::test::standard_streams_test {
namespace {

// Redirects a standard stream to another descriptor for its lifetime.
class Redirected {
 public:
  Redirected(int stream, OpenFile& file) : stream_(stream), saved_(dup(stream)) {
    std::fflush(stdout);
    dup2(file, stream);
    file.close();
  }
  Redirected(int stream, OpenFile&& file) : Redirected(stream, file) {}
  ~Redirected() {
    dup2(saved_, stream_);
    close(saved_);
  }
  Redirected(const Redirected&) = delete;
  Redirected& operator=(const Redirected&) = delete;

 private:
  int stream_, saved_;
};

// Reading or writing there fails, too.
TEST(StandardStreams, AreNeverTheNumbersOfOtherFiles) {
  std::fflush(nullptr);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    const int saved = dup(stream);
    close(stream);
    host::reserve_standard_streams();
    const int next = open("/dev/null", O_RDWR | O_CLOEXEC);
    char byte = 0;
    const ssize_t used = stream == STDIN_FILENO ? read(stream, &byte, 1) : write(stream, &byte, 1);
    dup2(saved, stream);
    close(saved);
    close(next);
    EXPECT_NE(next, stream);
    EXPECT_EQ(used, -1) << stream;
  }
}

std::string refused(const std::string& input, const std::string& output) {
  return refusal([&] { copy_audio(input, output); });
}

TEST(StandardInput, MayBeAPipeInEveryContainer) {
  const TemporaryFolder folder;
  for (const char* name : {"in.wav", "in.rf64", "in.w64", "in.aiff", "in.caf", "in.flac"}) {
    const int container = host::output_format({.sample_rate = 48000,
                                               .channels = 2,
                                               .container = 0,
                                               .sample_type = SF_FORMAT_PCM_24,
                                               .channel_map = {}},
                                              name)
                              .container;
    const std::string input = write_audio(
        folder.file(name),
        {.format = container | SF_FORMAT_PCM_24, .channels = 2, .floats = noise(40000, 0.5f)});
    Pipe pipe;
    std::thread feeder([&] {
      pipe.writing.write(contents(input));
      pipe.writing.close();
    });
    {
      const Redirected standard_input(STDIN_FILENO, pipe.reading);
      copy_audio("-", folder.file(std::string("out_") + name));
    }
    feeder.join();
    EXPECT_EQ(contents(folder.file(std::string("out_") + name)), contents(input)) << name;
  }
}

TEST(StandardInput, MayBeAFile) {
  const TemporaryFolder folder;
  const std::string input = write_audio(folder.file("in.wav"), {.floats = noise(1000, 0.5f)});
  const Redirected standard_input(STDIN_FILENO, OpenFile(open(input.c_str(), O_RDONLY)));
  copy_audio("-", folder.file("out.wav"));
  EXPECT_EQ(read_audio(folder.file("out.wav")).floats, read_audio(input).floats);
}

TEST(StandardInput, IsNamedWhenItIsRefused) {
  const TemporaryFolder folder;
  const std::string text = folder.write("text", "not audio at all");
  const Redirected standard_input(STDIN_FILENO, OpenFile(open(text.c_str(), O_RDONLY)));
  EXPECT_EQ(refused("-", folder.file("out.wav")), "standard input: Format not recognised");
}

TEST(StandardOutput, IsTheFileThatWouldHaveBeenWritten) {
  const TemporaryFolder folder;
  const std::string input = write_audio(folder.file("in.wav"), {.floats = noise(100000, 0.5f)});
  Pipe pipe;
  std::string received;
  std::thread reader([&] { received = pipe.reading.read_all(); });
  {
    const Redirected standard_output(STDOUT_FILENO, pipe.writing);
    copy_audio(input, "-");
  }
  reader.join();
  copy_audio(input, folder.file("out.wav"));
  EXPECT_TRUE(received == contents(folder.file("out.wav")));
}

TEST(StandardOutput, GetsNothingThatIsNotComplete) {
  const TemporaryFolder folder;
  const std::string taken = folder.write("taken", "");
  const Redirected standard_output(STDOUT_FILENO, OpenFile(open(taken.c_str(), O_WRONLY)));
  {
    host::AudioFormat format{48000, 1, SF_FORMAT_WAV, SF_FORMAT_FLOAT, {}};
    host::AudioWriter writer("-", format);
    writer.write(noise(10000, 0.5f));
  }
  EXPECT_EQ(contents(taken), "");
}

TEST(StandardOutput, SaysThatNobodyReadsIt) {
  const TemporaryFolder folder;
  const std::string input = write_audio(folder.file("in.wav"), {.floats = noise(1000, 0.5f)});
  auto* const before = std::signal(SIGPIPE, SIG_IGN);
  Pipe pipe;
  pipe.reading.close();
  std::string what;
  {
    const Redirected standard_output(STDOUT_FILENO, pipe.writing);
    what = refused(input, "-");
  }
  EXPECT_EQ(what, "standard output: Broken pipe");
  std::signal(SIGPIPE, before);
}

TEST(StandardStreams, AreRefusedWhenTheyAreATerminal) {
  const TemporaryFolder folder;
  const std::string input = write_audio(folder.file("in.wav"), {.floats = noise(10, 0.5f)});
  std::string in, out;
  {
    Terminal keyboard, screen;
    const Redirected standard_input(STDIN_FILENO, keyboard.program_side());
    const Redirected standard_output(STDOUT_FILENO, screen.program_side());
    in = refused("-", folder.file("out.wav"));
    out = refused(input, "-");
  }
  EXPECT_EQ(in, "standard input: is a terminal");
  EXPECT_EQ(out, "standard output: is a terminal; redirect it to a file or a program");
}

TEST(StandardStreams, LeaveNoTemporaryFileInTheFolderTheyUse) {
  const TemporaryFolder folder, temporary;
  const std::string input = write_audio(folder.file("in.wav"), {.floats = noise(1000, 0.5f)});
  setenv("TMPDIR", temporary.file("").c_str(), 1);
  {
    const Redirected standard_output(
        STDOUT_FILENO,
        OpenFile(open(folder.file("out.wav").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600)));
    host::AudioWriter writer("-", {48000, 1, SF_FORMAT_WAV, SF_FORMAT_FLOAT, {}});
    writer.write(noise(10000, 0.5f));
    EXPECT_TRUE(temporary.entries().empty());
    writer.commit();
  }
  unsetenv("TMPDIR");
  EXPECT_EQ(read_audio(folder.file("out.wav")).floats, noise(10000, 0.5f));
  EXPECT_TRUE(temporary.entries().empty());
}

}  // namespace
}  // namespace channelstrip::test::standard_streams_test
