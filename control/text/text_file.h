// Text files of other programs, whatever their encoding.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::host {

// UTF-8 and UTF-16 with a byte order mark, and UTF-8 without; what is none of them is read as
// ISO 8859-1, in which every byte is a character. The mark itself is dropped.
std::string to_utf8(std::string_view bytes);

// Without line ends, which may be LF, CR LF or CR.
std::vector<std::string> split_lines(std::string_view text);

// Throws std::runtime_error "<path>: <what>".
std::string read_text_file(const std::string& path);

}  // namespace channelstrip::host
