#include "command_line.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace channelstrip::host {

std::string one_line(std::string_view text) {
  std::string line(text);
  std::ranges::replace_if(
      line, [](unsigned char c) { return c < ' ' || c == 127; }, '?');
  return line;
}

void print_message(std::string_view what) {
  std::fputs((one_line(fmt::format("channelstrip: {}", what)) + '\n').c_str(), stderr);
}

void print_output(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
    throw std::runtime_error(fmt::format("standard output: {}", std::strerror(errno)));
  }
}

}  // namespace channelstrip::host
