// Text files.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::host {

// Without line ends, which may be LF, CR LF or CR.
std::vector<std::string> split_lines(std::string_view text);

// Throws std::runtime_error "<path>: <what>".
std::string read_text_file(const std::string& path);

}  // namespace channelstrip::host
