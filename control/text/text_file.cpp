#include "text_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace channelstrip::host {

std::vector<std::string> split_lines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    lines.emplace_back(text.substr(0, end));
    const std::string_view rest = text.substr(end);
    text = rest.substr(rest.starts_with("\r\n") ? 2 : std::min<std::size_t>(1, rest.size()));
  }
  return lines;
}

std::string read_text_file(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw std::runtime_error(path + ": " + std::strerror(errno));
  if (std::filesystem::is_directory(path)) {
    throw std::runtime_error(path + ": " + std::strerror(EISDIR));
  }
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace channelstrip::host
