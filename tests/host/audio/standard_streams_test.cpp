// Audio through standard input and output.

#include "host/audio/standard_streams.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>

#include "../support/audio.h"
#include "../support/copy.h"
#include "../support/temporary_folder.h"

namespace channelstrip::test {
namespace {

// A standard stream that is another descriptor for as long as this lives.
class Redirected {
 public:
  Redirected(int stream, int descriptor) : stream_(stream), saved_(dup(stream)) {
    std::fflush(stdout);
    dup2(descriptor, stream);
    close(descriptor);
  }
  ~Redirected() {
    dup2(saved_, stream_);
    close(saved_);
  }
  Redirected(const Redirected&) = delete;
  Redirected& operator=(const Redirected&) = delete;

 private:
  int stream_, saved_;
};

struct Pipe {
  Pipe() {
    if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  }
  int ends[2] = {};  // to read from, to write to
};

std::string refusal(const std::string& input, const std::string& output) {
  try {
    copy_audio(input, output);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
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
    const Pipe pipe;
    std::thread feeder([&] {
      const std::string bytes = contents(input);
      EXPECT_EQ(write(pipe.ends[1], bytes.data(), bytes.size()), std::ssize(bytes));
      close(pipe.ends[1]);
    });
    {
      const Redirected standard_input(STDIN_FILENO, pipe.ends[0]);
      copy_audio("-", folder.file(std::string("out_") + name));
    }
    feeder.join();
    EXPECT_EQ(contents(folder.file(std::string("out_") + name)), contents(input)) << name;
  }
}

TEST(StandardInput, MayBeAFile) {
  const TemporaryFolder folder;
  const std::string input = write_audio(folder.file("in.wav"), {.floats = noise(1000, 0.5f)});
  const Redirected standard_input(STDIN_FILENO, open(input.c_str(), O_RDONLY));
  copy_audio("-", folder.file("out.wav"));
  EXPECT_EQ(read_audio(folder.file("out.wav")).floats, read_audio(input).floats);
}

TEST(StandardInput, IsNamedWhenItIsRefused) {
  const TemporaryFolder folder;
  const std::string text = folder.write("text", "not audio at all");
  const Redirected standard_input(STDIN_FILENO, open(text.c_str(), O_RDONLY));
  EXPECT_EQ(refusal("-", folder.file("out.wav")), "standard input: Format not recognised");
}

TEST(StandardOutput, IsTheFileThatWouldHaveBeenWritten) {
  const TemporaryFolder folder;
  const std::string input = write_audio(folder.file("in.wav"), {.floats = noise(100000, 0.5f)});
  const Pipe pipe;
  std::string received;
  std::thread reader([&] {
    std::array<char, 4096> bytes = {};
    for (ssize_t got = 0; (got = read(pipe.ends[0], bytes.data(), bytes.size())) > 0;) {
      received.append(bytes.data(), static_cast<std::size_t>(got));
    }
  });
  {
    const Redirected standard_output(STDOUT_FILENO, pipe.ends[1]);
    copy_audio(input, "-");
  }
  reader.join();
  close(pipe.ends[0]);
  copy_audio(input, folder.file("out.wav"));
  EXPECT_EQ(received, contents(folder.file("out.wav")));
}

TEST(StandardOutput, GetsNothingThatIsNotComplete) {
  const TemporaryFolder folder;
  const std::string taken = folder.write("taken", "");
  const Redirected standard_output(STDOUT_FILENO, open(taken.c_str(), O_WRONLY));
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
  const Pipe pipe;
  close(pipe.ends[0]);
  std::string what;
  {
    const Redirected standard_output(STDOUT_FILENO, pipe.ends[1]);
    what = refusal(input, "-");
  }
  EXPECT_EQ(what, "standard output: Broken pipe");
  std::signal(SIGPIPE, before);
}

int open_terminal() {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
  if (terminal >= 0) unlockpt(terminal);
  return terminal;
}

TEST(StandardStreams, AreRefusedWhenTheyAreATerminal) {
  const TemporaryFolder folder;
  const std::string input = write_audio(folder.file("in.wav"), {.floats = noise(10, 0.5f)});
  std::string in, out;
  {
    const Redirected standard_input(STDIN_FILENO, open_terminal());
    const Redirected standard_output(STDOUT_FILENO, open_terminal());
    in = refusal("-", folder.file("out.wav"));
    out = refusal(input, "-");
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
        STDOUT_FILENO, open(folder.file("out.wav").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
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
}  // namespace channelstrip::test
