#include "broadcast_loudness.h"

#include <string>
#include <string_view>

namespace channelstrip::host {
namespace {

constexpr std::size_t kVersion = 346, kLoudness = 412, kEnd = 422;  // bytes; 16-bit values

constexpr std::string_view kNotGiven = "\xFF\x7F\xFF\x7F\xFF\x7F\xFF\x7F\xFF\x7F";
static_assert(kNotGiven.size() == kEnd - kLoudness);

bool states_loudness(const Chunk& chunk) {
  if (chunk.id != "bext" || chunk.data.size() < kEnd) return false;
  const std::string_view bytes = chunk.data;
  const int version = static_cast<unsigned char>(bytes[kVersion]) +
                      256 * static_cast<unsigned char>(bytes[kVersion + 1]);
  return version >= 2 && bytes.substr(kLoudness, kNotGiven.size()) != kNotGiven;
}

}  // namespace

bool forget_loudness(std::vector<Chunk>& chunks) {
  bool given = false;
  for (Chunk& chunk : chunks) {
    if (!states_loudness(chunk)) continue;
    chunk.data.replace(kLoudness, kNotGiven.size(), kNotGiven);
    given = true;
  }
  return given;
}

}  // namespace channelstrip::host
