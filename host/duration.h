// Lengths of time and places in it, as texts write them.

#pragma once

#include <string>

namespace channelstrip::host {

// Of 0 s or more: "4.200 s", "3 min 04.200 s".
std::string duration(double seconds);

}  // namespace channelstrip::host
