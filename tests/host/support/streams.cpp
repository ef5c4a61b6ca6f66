#include "streams.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>

namespace channelstrip::test {
namespace {

int new_terminal() {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (terminal < 0 || unlockpt(terminal) != 0) throw std::runtime_error("no terminal");
  return terminal;
}

int other_side(int terminal) {
  std::array<char, 64> name = {};
  if (ptsname_r(terminal, name.data(), name.size()) != 0) throw std::runtime_error("no terminal");
  return open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
}

// False at the end; a terminal that no program has open any more reports it as an error.
bool read_some(int descriptor, std::string& text) {
  std::array<char, 4096> bytes = {};
  const ssize_t got = read(descriptor, bytes.data(), bytes.size());
  if (got > 0) text.append(bytes.data(), static_cast<std::size_t>(got));
  return got > 0;
}

}  // namespace

void OpenFile::close() {
  if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
}

std::string OpenFile::read_all() const {
  std::string text;
  while (read_some(descriptor_, text)) {
  }
  return text;
}

void OpenFile::write(const std::string& bytes) const {
  for (std::string_view rest = bytes; !rest.empty();) {
    const ssize_t step = ::write(descriptor_, rest.data(), rest.size());
    if (step < 0) throw std::runtime_error("nobody reads");
    rest.remove_prefix(static_cast<std::size_t>(step));
  }
}

Pipe::Ends Pipe::make() {
  std::array<int, 2> ends = {};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  return {ends[0], ends[1]};
}

Terminal::Terminal(unsigned short columns) : user_(new_terminal()), program_(other_side(user_)) {
  termios modes = {};
  tcgetattr(program_, &modes);
  cfmakeraw(&modes);
  tcsetattr(program_, TCSANOW, &modes);
  const winsize size = {.ws_row = 24, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
  ioctl(program_, TIOCSWINSZ, &size);
}

const std::string& Terminal::shown(const std::function<bool(const std::string&)>& enough) {
  while (!enough(shown_) && read_some(user_, shown_)) {
  }
  return shown_;
}

const std::string& Terminal::all_shown() {
  return shown([](const std::string&) { return false; });
}

NamedPipe::NamedPipe(std::string path) : path_(std::move(path)) {
  if (mkfifo(path_.c_str(), 0600) != 0) throw std::runtime_error(path_ + ": no pipe");
}

int NamedPipe::opened() const {
  int descriptor = -1;
  wait_until([&] {
    descriptor = open(path_.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    return descriptor >= 0;
  });
  fcntl(descriptor, F_SETFL, 0);
  return descriptor;
}

void wait_until(const std::function<bool()>& condition) {
  using namespace std::chrono_literals;
  const auto last = std::chrono::steady_clock::now() + 60s;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > last) throw std::runtime_error("waited in vain");
    std::this_thread::sleep_for(1ms);
  }
}

}  // namespace channelstrip::test
