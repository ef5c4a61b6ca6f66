// Loads a page in a browser.

#pragma once

#include <string>

namespace channelstrip::test {

// The document in `file` after it is loaded and its scripts have run. Throws without Chromium.
std::string document_of(const std::string& file);

}  // namespace channelstrip::test
