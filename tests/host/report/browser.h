// A page as a browser builds it.

#pragma once

#include <string>

namespace channelstrip::test {

// The document in `file` once it is loaded, its scripts run. Throws without Chromium.
std::string document_of(const std::string& file);

}  // namespace channelstrip::test
