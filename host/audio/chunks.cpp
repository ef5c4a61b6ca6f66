#include "chunks.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <bit>
#include <initializer_list>

#include "byte_order.h"

namespace channelstrip::host {
namespace {

struct Syntax {
  std::size_t start = 0;       // of the first chunk
  std::size_t id_bytes = 4;    // of which four tell chunks apart
  std::size_t size_bytes = 0;  // of a chunk's size
  std::endian order = std::endian::little;
  std::size_t alignment = 1;        // to which a chunk's data is padded
  std::string_view format_id = {};  // the chunk that others may follow
  bool size_counts_all = false;     // id and size too, not only the data
};

Syntax syntax(ChunkFamily family) {
  switch (family) {
    case ChunkFamily::kRiff:
      return {12, 4, 4, std::endian::little, 2, "fmt "};
    case ChunkFamily::kAiff:
      return {12, 4, 4, std::endian::big, 2, "COMM"};
    case ChunkFamily::kCaf:
      return {8, 4, 8, std::endian::big, 1, "desc"};
    case ChunkFamily::kWave64:
      return {40, 16, 8, std::endian::little, 8, "fmt ", true};
    case ChunkFamily::kNone:
      break;
  }
  return {};
}

std::uint64_t padded(std::uint64_t size, const Syntax& rules) {
  return (size + rules.alignment - 1) / rules.alignment * rules.alignment;
}

void add_to_size(std::span<char> bytes, std::endian order, std::uint64_t growth) {
  write_integer(read_integer({bytes.data(), bytes.size()}, order) + growth, order, bytes);
}

}  // namespace

ChunkFamily chunk_family(int container) {
  switch (container) {
    case SF_FORMAT_WAV:
    case SF_FORMAT_WAVEX:
    case SF_FORMAT_RF64:
      return ChunkFamily::kRiff;
    case SF_FORMAT_AIFF:
      return ChunkFamily::kAiff;
    case SF_FORMAT_CAF:
      return ChunkFamily::kCaf;
    default:
      return ChunkFamily::kNone;
  }
}

bool describes_coding(ChunkFamily family, std::string_view id) {
  const auto among = [id](std::initializer_list<std::string_view> ids) {
    return std::ranges::find(ids, id) != ids.end();
  };
  switch (family) {
    case ChunkFamily::kRiff:
      return among({"RIFF", "RIFX", "RF64", "WAVE", "ds64", "fmt ", "fact", "data", "PEAK", "levl",
                    "JUNK", "junk", "FLLR", "PAD "});
    case ChunkFamily::kAiff:
      return among({"FORM", "FVER", "COMM", "SSND", "CHAN", "PEAK"});
    case ChunkFamily::kCaf:
      return among({"desc", "data", "pakt", "kuki", "chan", "free", "peak", "ovvw"});
    case ChunkFamily::kWave64:
    case ChunkFamily::kNone:
      break;
  }
  return true;
}

Chunk evened(Chunk chunk) {
  if (chunk.data.size() % 2) chunk.data += '\0';
  return chunk;
}

std::string serialised(ChunkFamily family, std::span<const Chunk> chunks) {
  const Syntax rules = syntax(family);
  std::string bytes;
  for (const Chunk& chunk : chunks) {
    std::array<char, 8> size = {};
    write_integer(chunk.data.size(), rules.order, std::span(size).first(rules.size_bytes));
    bytes += chunk.id;
    bytes.append(size.data(), rules.size_bytes);
    bytes += chunk.data;
    bytes.append(padded(chunk.data.size(), rules) - chunk.data.size(), '\0');
  }
  return bytes;
}

std::size_t first_chunk(ChunkFamily family) {
  return syntax(family).start;
}

std::vector<PlacedChunk> chunks_in(ChunkFamily family, std::string_view bytes, std::size_t at) {
  const Syntax rules = syntax(family);
  const std::size_t head = rules.id_bytes + rules.size_bytes;
  std::vector<PlacedChunk> chunks;
  while (at + head <= bytes.size()) {
    const std::string_view field = bytes.substr(at + rules.id_bytes, rules.size_bytes);
    std::uint64_t size = read_integer(field, rules.order);
    if (rules.size_counts_all) size = std::max<std::uint64_t>(size, head) - head;
    chunks.push_back({bytes.substr(at, 4), at + head, size});
    if (size > bytes.size()) break;  // so that no sum overflows
    at += head + padded(size, rules);
  }
  return chunks;
}

std::vector<Chunk> list_entries(std::string_view list) {
  std::vector<Chunk> entries;
  for (const auto& [id, begin, size] : chunks_in(ChunkFamily::kRiff, list, 4)) {
    entries.push_back({std::string(id), std::string(list.substr(begin, size))});
  }
  return entries;
}

std::size_t chunks_offset(ChunkFamily family, std::string_view header) {
  const Syntax rules = syntax(family);
  for (const auto& [id, begin, size] : chunks_in(family, header, rules.start)) {
    if (id != rules.format_id) continue;
    return size <= header.size() && begin + padded(size, rules) <= header.size()
               ? begin + padded(size, rules)
               : 0;
  }
  return 0;
}

void grow(ChunkFamily family, std::span<char> header, std::uint64_t growth) {
  const std::endian order = syntax(family).order;
  if (family == ChunkFamily::kAiff) add_to_size(header.subspan(4, 4), order, growth);
  if (family != ChunkFamily::kRiff) return;
  // RF64 leaves the 32-bit size unused; its first chunk, ds64, holds a 64-bit one.
  const bool rf64 = std::string_view(header.data(), 4) == "RF64";
  add_to_size(rf64 ? header.subspan(20, 8) : header.subspan(4, 4), order, growth);
}

}  // namespace channelstrip::host
