// Text of other programs, whatever its encoding.

#pragma once

#include <string>
#include <string_view>

namespace channelstrip::host {

// UTF-8 and UTF-16 with a byte order mark, and UTF-8 without; what is none of them is read as
// ISO 8859-1, in which every byte is a character. The mark itself is dropped.
std::string to_utf8(std::string_view bytes);

}  // namespace channelstrip::host
