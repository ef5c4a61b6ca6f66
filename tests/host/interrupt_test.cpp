#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "support/audio.h"
#include "support/child.h"
#include "support/temporary_folder.h"

namespace channelstrip::test {
namespace {

using namespace std::chrono_literals;

bool has_temporary_file(const TemporaryFolder& folder) {
  return std::ranges::any_of(
      folder.entries(), [](const std::string& name) { return name.starts_with(".channelstrip-"); });
}

// The program reads from a pipe that is fed by hand: it is in the middle of its work for as long as
// the test wants.
TEST(Interrupted, RenderingLeavesNoFileAndEndsByTheSignal) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const TemporaryFolder folder;
    const std::string bytes =
        contents(write_audio(folder.file("in.wav"), {.floats = noise(48000, 0.5f)}));
    const std::string pipe = folder.file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);

    Child child({"render", pipe, folder.file("out.wav")});
    {
      // Open at both ends it waits for no reader; the bytes fit into the pipe's own buffer.
      std::fstream feed(pipe, std::ios::in | std::ios::out | std::ios::binary);
      feed.write(bytes.data(), 40000).flush();
      while (!has_temporary_file(folder) && child.runs()) std::this_thread::sleep_for(1ms);
      child.send(signal);
    }
    EXPECT_EQ(child.result().signal, signal);
    EXPECT_EQ(folder.entries(), (std::vector<std::string>{"in.wav", "pipe"}));
  }
}

}  // namespace
}  // namespace channelstrip::test
