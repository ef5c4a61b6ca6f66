// Sends one format's strips through every path that an audio thread can take.

#pragma once

#include <channelstrip/channelstrip.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "strips.h"
#include "trap.h"

namespace channelstrip::test {

// What the calls did, in memory that a child process shares with its parent.
struct PathReport {
  Trapped trapped;
  int calls = 0;
  int unexpected = 0;  // statuses that weren't what they should have been
  int silent = 0;      // paths that ended in silence or in what isn't finite
  std::uint32_t format = 0;
  const char* path = "";     // the last that was begun
  const char* culprit = "";  // the first in which something was trapped
};

class AudioPaths {
 public:
  explicit AudioPaths(std::uint32_t format);

  // Neither allocates nor calls the system outside of what it tests.
  void run(PathReport& report);

 private:
  static constexpr std::size_t kFrames = 600, kStrips = 3, kMostChannels = 8;
  using Buffers = std::array<std::vector<float>, kMostChannels + 1>;

  void begin(const char* path);
  void end();
  template <typename Call>
  void expect(channelstrip_status wanted, Call call);
  void process(std::uint32_t frames, const std::vector<channelstrip_event>& events = {});
  void process_many(std::uint32_t frames);
  void refuse(channelstrip_block block);
  void fill(float scale);
  channelstrip_block block_of(std::size_t strip, std::uint32_t frames);

  void change_by_events();
  void change_between_calls();
  void change_everything();
  void bypass_and_key();
  void reset_in_a_fade();
  void share_buffers();
  void harsh_input();
  void invalid_arguments();

  std::uint32_t format_;
  channelstrip_format info_{};
  Settings busy_, low_, other_, initial_;
  std::array<LiveStripPointer, kStrips> strips_;
  std::array<Buffers, kStrips> inputs_, outputs_;
  std::array<std::array<const float*, kMostChannels>, kStrips> in_{};
  std::array<std::array<float*, kMostChannels>, kStrips> out_{};
  std::vector<channelstrip_parameter> parameters_;
  std::vector<double> busy_values_;
  std::vector<channelstrip_event> events_, too_many_;
  PathReport* report_ = nullptr;
};

template <typename Call>
void AudioPaths::expect(channelstrip_status wanted, Call call) {
  const Trapped before = report_->trapped;
  channelstrip_status status = CHANNELSTRIP_OK;
  {
    const Trap trap(report_->trapped);
    status = call();
  }
  if (!(report_->trapped == before) && *report_->culprit == '\0') report_->culprit = report_->path;
  ++report_->calls;
  if (status != wanted) ++report_->unexpected;
}

}  // namespace channelstrip::test
