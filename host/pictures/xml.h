// Text within XML and HTML.

#pragma once

#include <string>
#include <string_view>

namespace channelstrip::host {

// UTF-8 for content or for an attribute in quotes. Control characters other than tab and newline,
// which XML can't hold, and bytes that aren't UTF-8 become U+FFFD.
std::string escape_xml(std::string_view text);

// Characters of UTF-8.
int length(std::string_view text);

}  // namespace channelstrip::host
