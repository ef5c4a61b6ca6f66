#include "cue_chunks.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <string>
#include <string_view>

namespace channelstrip::host {
namespace {

std::string little_endian(std::initializer_list<std::uint32_t> values) {
  std::string bytes;
  for (const std::uint32_t value : values) {
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
  }
  return bytes;
}

std::uint32_t number(std::string_view bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes.at(i));
  return value;
}

std::uint32_t identifier(const SF_CUE_POINT& cue) {
  return static_cast<std::uint32_t>(cue.indx);
}

// Frames from the beginning, once in the order of playing and once in the data.
Chunk places(const std::vector<SF_CUE_POINT>& cues) {
  std::string data = little_endian({static_cast<std::uint32_t>(cues.size())});
  for (const SF_CUE_POINT& cue : cues) {
    data += little_endian({identifier(cue), cue.sample_offset}) + "data" +
            little_endian({0, 0, cue.sample_offset});
  }
  return {"cue ", data};
}

std::vector<Chunk> names(const std::vector<SF_CUE_POINT>& cues) {
  std::vector<Chunk> labels;
  for (const SF_CUE_POINT& cue : cues) {
    const std::string_view name = cue.name;
    if (name.empty()) continue;
    labels.push_back({"labl", little_endian({identifier(cue)}) + std::string(name) + '\0'});
  }
  return labels;
}

// As many as there is room for, whatever their count says.
void read_places(std::string_view data, std::vector<SF_CUE_POINT>& cues) {
  constexpr std::size_t kSize = 24;
  for (std::size_t at = 4; at + kSize <= data.size(); at += kSize) {
    SF_CUE_POINT cue = {};
    cue.indx = static_cast<std::int32_t>(number(data.substr(at)));
    cue.sample_offset = number(data.substr(at + 20));
    cues.push_back(cue);
  }
}

void read_name(std::string_view data, std::vector<SF_CUE_POINT>& cues) {
  if (data.size() < 4) return;
  const std::string_view name = data.substr(4, std::size(SF_CUE_POINT{}.name) - 1);
  for (SF_CUE_POINT& cue : cues) {
    if (identifier(cue) == number(data)) *std::ranges::copy(name, cue.name).out = '\0';
  }
}

}  // namespace

std::vector<Chunk> cue_chunks(const std::vector<SF_CUE_POINT>& cues) {
  if (cues.empty()) return {};
  std::vector<Chunk> chunks{places(cues)};
  const std::vector<Chunk> labels = names(cues);
  if (!labels.empty()) {
    chunks.push_back({"LIST", "adtl" + serialised(ChunkFamily::kRiff, labels)});
  }
  return chunks;
}

std::vector<SF_CUE_POINT> cue_points(const std::vector<Chunk>& chunks) {
  std::vector<SF_CUE_POINT> cues;
  for (const Chunk& chunk : chunks) {
    if (chunk.id == "cue ") read_places(chunk.data, cues);
  }
  for (const Chunk& chunk : chunks) {
    if (chunk.id != "LIST" || !chunk.data.starts_with("adtl")) continue;
    for (const Chunk& entry : list_entries(chunk.data)) {
      if (entry.id == "labl") read_name(entry.data, cues);
    }
  }
  return cues;
}

}  // namespace channelstrip::host
