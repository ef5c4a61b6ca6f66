#include "cue_chunks.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <string>
#include <string_view>

#include "byte_order.h"

namespace channelstrip::host {
namespace {

std::string words(std::initializer_list<std::uint32_t> values) {
  std::string bytes;
  for (const std::uint32_t value : values) {
    std::array<char, 4> word = {};
    write_integer(value, std::endian::little, word);
    bytes.append(word.data(), word.size());
  }
  return bytes;
}

std::uint32_t word_at(std::size_t offset, std::string_view bytes) {
  return static_cast<std::uint32_t>(read_integer(bytes.substr(offset, 4), std::endian::little));
}

std::uint32_t identifier(const SF_CUE_POINT& cue) {
  return static_cast<std::uint32_t>(cue.indx);
}

// Each cue's offset, in frames from the beginning, stands twice: as its position in the play order
// and in the chunk "data".
Chunk places(const std::vector<SF_CUE_POINT>& cues) {
  std::string data = words({static_cast<std::uint32_t>(cues.size())});
  for (const SF_CUE_POINT& cue : cues) {
    data += words({identifier(cue), cue.sample_offset}) + "data" + words({0, 0, cue.sample_offset});
  }
  return {"cue ", data};
}

std::vector<Chunk> names(const std::vector<SF_CUE_POINT>& cues) {
  std::vector<Chunk> labels;
  for (const SF_CUE_POINT& cue : cues) {
    const std::string_view name = cue.name;
    if (name.empty()) continue;
    labels.push_back({"labl", words({identifier(cue)}) + std::string(name) + '\0'});
  }
  return labels;
}

// Reads as many as the chunk holds, even if its count says otherwise.
void read_places(std::string_view data, std::vector<SF_CUE_POINT>& cues) {
  constexpr std::size_t kSize = 24;  // bytes per cue
  for (std::size_t at = 4; at + kSize <= data.size(); at += kSize) {
    SF_CUE_POINT cue = {};
    cue.indx = static_cast<std::int32_t>(word_at(at, data));
    cue.sample_offset = word_at(at + 20, data);
    cues.push_back(cue);
  }
}

void read_name(std::string_view data, std::vector<SF_CUE_POINT>& cues) {
  if (data.size() < 4) return;
  const std::string_view name = data.substr(4, std::size(SF_CUE_POINT{}.name) - 1);
  for (SF_CUE_POINT& cue : cues) {
    if (identifier(cue) == word_at(0, data)) *std::ranges::copy(name, cue.name).out = '\0';
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
