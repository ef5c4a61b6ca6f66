// Signals while the program works.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "../support/streams.h"
#include "program.h"

namespace channelstrip::test::interrupt_test {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class Interrupt : public Program {
 protected:
  Interrupt() { fs::create_directory(out); }

  // A sparse file with hours of silence: never rendered to the end.
  std::string hours(const std::string& name) const {
    const std::string path = write_audio(
        folder.file(name), {.format = SF_FORMAT_W64 | SF_FORMAT_PCM_16, .floats = noise(8, 0.5f)});
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    const std::int64_t size = std::int64_t{1} << 33;
    const std::string header = contents(path);
    const auto data = static_cast<std::streamoff>(header.find("data"));
    file.seekp(data + 16).write(reinterpret_cast<const char*>(&size), sizeof size);
    file.seekp(16).write(reinterpret_cast<const char*>(&size), sizeof size);
    file.close();
    fs::resize_file(path, static_cast<std::uintmax_t>(size));
    return path;
  }

  Names outputs() const {
    Names names;
    for (const auto& entry : fs::directory_iterator(out)) names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
  }

  // The outputs, except those that are being written under a temporary name.
  Names finished_outputs() const {
    Names names = outputs();
    std::erase_if(names, is_temporary);
    return names;
  }

  // After an end that leaves no time to tidy up, a file system that has no unnamed files keeps one
  // file with a temporary name.
  void expect_no_output() const {
    const OpenFile nameless(open(out.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
    EXPECT_LE(outputs().size(), nameless < 0 ? 1u : 0u);
    EXPECT_EQ(finished_outputs(), Names{});
  }

  static bool is_temporary(const std::string& name) { return name.starts_with(".channelstrip-"); }

  const std::string out = folder.file("out");
};

TEST_F(Interrupt, LeavesNoFileAndEndsByTheSignal) {
  const std::string endless = hours("in.w64");
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    Child child({"render", endless, out});
    wait_until([&] { return child.has_open(out); });
    child.send(signal);
    const ChildResult result = child.result();
    EXPECT_EQ(result.signal, signal);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(outputs(), Names{});
  }
}

TEST_F(Interrupt, KeepsWhatOtherJobsHaveFinished) {
  const std::string a = tone("a.wav"), b = tone("b.wav", 6), endless = hours("endless.w64");
  const NamedPipe held(folder.file("held.wav"));
  Child child({"render", a, held.path(), b, endless, out, "--jobs", "2", "--quiet"});
  const Names finished{"a.wav", "b.wav"};
  wait_until([&] { return finished_outputs() == finished && child.has_open(out); });
  child.send(SIGINT);
  const ChildResult result = child.result();
  EXPECT_EQ(result.signal, SIGINT);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(outputs(), finished);
  for (const std::string& name : finished) {
    ASSERT_EQ(run({"render", folder.file(name), output, "-y"}).exit_status, 0);
    EXPECT_EQ(contents(out + "/" + name), contents(output));
  }
}

TEST_F(Interrupt, EndsTheWaitForANamedPipe) {
  const NamedPipe held(folder.file("held.wav"));
  Child waits_for_a_writer({"render", held.path(), out});
  wait_until([&] { return waits_for_a_writer.has_open(held.path()); });
  waits_for_a_writer.send(SIGTERM);
  EXPECT_EQ(waits_for_a_writer.result().signal, SIGTERM);

  Child waits_for_bytes({"render", held.path(), input, out, "--jobs", "2", "-q"});
  const OpenFile writer(held.opened());
  writer.write("RIFF");
  wait_until([&] { return finished_outputs() == Names{"in.wav"}; });
  waits_for_bytes.send(SIGTERM);
  const ChildResult result = waits_for_bytes.result();
  EXPECT_EQ(result.signal, SIGTERM);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(outputs(), Names{"in.wav"});
}

TEST_F(Interrupt, EndsTheWaitForAReader) {
  const std::string more_than_a_pipe_holds = tone("long.wav", 1, 1 << 20);
  Pipe pipe;
  Child child({"render", more_than_a_pipe_holds, "-", "-q"}, {.standard_output = pipe.writing});
  char first = 0;
  ASSERT_EQ(read(pipe.reading, &first, 1), 1);
  child.send(SIGINT);
  const ChildResult result = child.result();
  EXPECT_EQ(result.signal, SIGINT);
  EXPECT_EQ(result.output, "");
}

TEST_F(Interrupt, EndsTheWaitForAReaderOfRows) {
  const std::string long_input = tone("long.wav", 1, 1 << 20);
  Pipe pipe;
  Child child({"meters", long_input, "--interval", "1"}, {.standard_output = pipe.writing});
  wait_until([&] {
    int waiting = 0;  // bytes, of the 65536 that a pipe holds
    ioctl(pipe.reading, FIONREAD, &waiting);
    return waiting > 60000;
  });
  child.send(SIGTERM);
  EXPECT_EQ(child.result().signal, SIGTERM);
}

TEST_F(Interrupt, ASecondOneEndsAtOnceAndLeavesNoOutput) {
  const NamedPipe held(folder.file("held.wav"));
  Child child({"render", held.path(), hours("endless.w64"), out, "--jobs", "2"});
  wait_until([&] { return child.has_open(out); });
  child.send(SIGINT);
  child.send(SIGINT);
  EXPECT_EQ(child.result().signal, SIGINT);
  expect_no_output();
}

TEST_F(Interrupt, ByForceLeavesNoOutput) {
  Child child({"render", hours("endless.w64"), out});
  wait_until([&] { return child.has_open(out); });
  child.send(SIGKILL);
  EXPECT_EQ(child.result().signal, SIGKILL);
  expect_no_output();
}

}  // namespace
}  // namespace channelstrip::test::interrupt_test
