#include "broadcast_loudness.h"

#include <bit>
#include <string>
#include <string_view>

#include "byte_order.h"

namespace channelstrip::host {
namespace {

// Offsets in the chunk, in bytes; the fields are 16 bits each.
constexpr std::size_t kVersion = 346, kLoudness = 412, kEnd = 422;

constexpr std::string_view kNotGiven = "\xFF\x7F\xFF\x7F\xFF\x7F\xFF\x7F\xFF\x7F";
static_assert(kNotGiven.size() == kEnd - kLoudness);

bool states_loudness(const Chunk& chunk) {
  if (chunk.id != "bext" || chunk.data.size() < kEnd) return false;
  const std::string_view bytes = chunk.data;
  const std::uint64_t version = read_integer(bytes.substr(kVersion, 2), std::endian::little);
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
