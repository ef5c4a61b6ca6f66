#include "command_line.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "../text/wording.h"

namespace channelstrip::host {

void print_message(std::string_view what) {
  std::fputs((one_line(fmt::format("channelstrip: {}", what)) + '\n').c_str(), stderr);
}

void print_output(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
    throw std::runtime_error(fmt::format("standard output: {}", std::strerror(errno)));
  }
}

// The comparisons are such that NaN is refused too.
std::function<std::string(const std::string&)> within(double low, double high,
                                                      std::string_view unit) {
  return [=](const std::string& text) -> std::string {
    double value = 0;
    const bool is_number = CLI::detail::lexical_cast(text, value);
    if (is_number && value >= low && value <= high) return {};
    return fmt::format("{} isn't {} to {} {}", text, low, high, unit);
  };
}

void add_overwrite_option(CLI::App& command, Existing& existing) {
  command.add_flag_callback(
      "-y,--overwrite", [&existing] { existing = Existing::kReplaced; },
      "Replace files that exist already; without it they are kept, and the command fails");
}

}  // namespace channelstrip::host
