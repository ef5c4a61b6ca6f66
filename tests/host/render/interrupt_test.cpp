#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "../support/audio.h"
#include "../support/child.h"
#include "../support/temporary_folder.h"

namespace channelstrip::test {
namespace {

using namespace std::chrono_literals;

bool has_temporary_file(const TemporaryFolder& folder) {
  return std::ranges::any_of(
      folder.entries(), [](const std::string& name) { return name.starts_with(".channelstrip-"); });
}

// Hours of silence that take no room: the program is in the middle of its work for long enough.
std::string long_audio(const std::string& path) {
  write_audio(path, {.format = SF_FORMAT_W64 | SF_FORMAT_PCM_16, .floats = noise(8, 0.5f)});
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  const std::int64_t size = std::int64_t{1} << 33;
  const std::string header = contents(path);
  const auto data = static_cast<std::streamoff>(header.find("data"));
  file.seekp(data + 16).write(reinterpret_cast<const char*>(&size), sizeof size);
  file.seekp(16).write(reinterpret_cast<const char*>(&size), sizeof size);
  file.close();
  std::filesystem::resize_file(path, static_cast<std::uintmax_t>(size));
  return path;
}

TEST(Interrupted, RenderingLeavesNoFileAndEndsByTheSignal) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    const TemporaryFolder folder;
    Child child({"render", long_audio(folder.file("in.w64")), folder.file("out.w64")});
    while (!has_temporary_file(folder) && child.runs()) std::this_thread::sleep_for(1ms);
    child.send(signal);
    EXPECT_EQ(child.result().signal, signal);
    EXPECT_EQ(folder.entries(), (std::vector<std::string>{"in.w64"}));
  }
}

}  // namespace
}  // namespace channelstrip::test
