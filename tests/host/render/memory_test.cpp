#include <gtest/gtest.h>
#include <sys/resource.h>

#include <string>
#include <vector>

#include "host/audio/sndfile_handle.h"
#include "program.h"

namespace channelstrip::test::memory_test {
namespace {

class Memory : public Program {
 protected:
  // Piece by piece: what this process holds counts for its children.
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

  // KiB, the most that any child has held so far.
  long most_after_rendering(const std::string& file) {
    EXPECT_EQ(run({"render", file, output, "-q"}).exit_status, 0);
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
}  // namespace channelstrip::test::memory_test
