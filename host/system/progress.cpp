#include "progress.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <numeric>

#include "../text/wording.h"

namespace channelstrip::host {
namespace {

constexpr std::chrono::milliseconds kBetweenUpdates(100);

std::size_t terminal_width() {
  winsize size = {};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

// Whether a byte is the first or only one of a UTF-8 character.
bool begins_character(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

// Cuts a name at its beginning, because its end tells more.
std::string shortened(const std::string& name, std::size_t width) {
  const auto characters = static_cast<std::size_t>(std::ranges::count_if(name, begins_character));
  if (characters <= width) return name;
  if (width < 4) return {};
  std::size_t drop = characters - (width - 3), at = 0;
  for (; at < name.size() && (drop > 0 || !begins_character(name[at])); ++at) {
    if (begins_character(name[at])) --drop;
  }
  return "..." + name.substr(at);
}

}  // namespace

std::string progress_line(const ProgressState& state, std::size_t width) {
  std::string line = state.part < 0 ? "" : fmt::format("{:3.0f} %  ", 100 * state.part);
  if (state.files > 1) line += fmt::format("{} of {} done  ", state.done, state.files);
  line += fmt::format("{:.0f} x realtime  ", state.speed);
  if (line.size() >= width) return line.substr(0, width);
  return line + shortened(one_line(state.name), width - line.size());
}

Progress::Progress(std::size_t files, bool wanted)
    : shown_(wanted && isatty(STDERR_FILENO) != 0), parts_(files) {
  state_.files = files;
}

void Progress::advance(std::size_t index, const std::string& name, double seconds, double part) {
  if (!shown_) return;
  const std::scoped_lock lock(mutex_);
  seconds_ += seconds;
  parts_[index] = part;
  const auto now = Clock::now();
  if (now - last_ < kBetweenUpdates) return;
  last_ = now;
  state_.name = name;
  state_.speed = seconds_ / std::chrono::duration<double>(now - begin_).count();
  const bool known = std::ranges::none_of(parts_, [](double x) { return x < 0; });
  state_.part = known ? std::accumulate(parts_.begin(), parts_.end(), 0.0) /
                            static_cast<double>(parts_.size())
                      : -1;
  // Not by fmt::print, which throws when the terminal is gone: the work shall outlive it.
  std::fputs(fmt::format("\r{}\x1b[K", progress_line(state_, terminal_width() - 1)).c_str(),
             stderr);
  drawn_ = true;
}

void Progress::end(std::size_t index) {
  const std::scoped_lock lock(mutex_);
  parts_[index] = 1;
  ++state_.done;
}

Progress::Room::Room(Progress& progress) : lock_(progress.mutex_) {
  if (progress.drawn_) std::fputs("\r\x1b[K", stderr);
  progress.drawn_ = false;
}

}  // namespace channelstrip::host
