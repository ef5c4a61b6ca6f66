// The functions of the plugin's extensions as a host finds them.

#pragma once

namespace channelstrip::clap {

// Null for what the plugin doesn't have.
const void* extension(const char* id);

}  // namespace channelstrip::clap
