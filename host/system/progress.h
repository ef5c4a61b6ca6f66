// The progress of the work, as one line on a terminal.

#pragma once

#include <chrono>
#include <cstddef>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace channelstrip::host {

struct ProgressState {
  std::string name;  // of a file in work
  double part = 0;   // of the whole that is done, 0 .. 1; below 0: not known
  std::size_t done = 0, files = 1;
  double speed = 0;  // seconds of audio per second
};

// Without a line end, at most `width` characters long.
std::string progress_line(const ProgressState& state, std::size_t width);

// The line on standard error, for several threads that work on several files. Nothing is shown
// unless `wanted`, or if standard error is no terminal.
class Progress {
 public:
  Progress(std::size_t files, bool wanted);
  ~Progress() { const Room cleared(*this); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Notes that `seconds` more of the audio of file `index` are done, and that now `part` of the
  // file is done (below 0: not known).
  void advance(std::size_t index, const std::string& name, double seconds, double part);
  void end(std::size_t index);

  // Erases the line, and keeps it from being drawn as long as this object lives, so that others can
  // write to the terminal.
  class Room {
   public:
    explicit Room(Progress& progress);

   private:
    std::scoped_lock<std::mutex> lock_;
  };

 private:
  using Clock = std::chrono::steady_clock;

  std::mutex mutex_;
  const bool shown_;
  bool drawn_ = false;
  std::vector<double> parts_;  // per file
  ProgressState state_;
  double seconds_ = 0;
  Clock::time_point begin_ = Clock::now(), last_ = begin_;
};

}  // namespace channelstrip::host
