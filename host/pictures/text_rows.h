// Text that is longer than a picture is wide.

#pragma once

#include <string_view>
#include <vector>

namespace channelstrip::host {

// `text` broken at blanks into rows of at most `most` characters; a longer word has a row of its
// own. Empty text has no rows.
std::vector<std::string_view> text_rows(std::string_view text, int most);

}  // namespace channelstrip::host
