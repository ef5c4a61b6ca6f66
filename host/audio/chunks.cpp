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
  std::size_t size_bytes = 0;  // of a chunk's size
  std::endian order = std::endian::little;
  std::size_t alignment = 1;        // to which a chunk's data is padded
  std::string_view format_id = {};  // the chunk that others may follow
};

Syntax syntax(ChunkFamily family) {
  switch (family) {
    case ChunkFamily::kRiff:
      return {12, 4, std::endian::little, 2, "fmt "};
    case ChunkFamily::kAiff:
      return {12, 4, std::endian::big, 2, "COMM"};
    case ChunkFamily::kCaf:
      return {8, 8, std::endian::big, 1, "desc"};
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

std::vector<Chunk> list_entries(std::string_view list) {
  const Syntax rules = syntax(ChunkFamily::kRiff);
  std::vector<Chunk> entries;
  for (std::size_t at = 4; at + 8 <= list.size();) {
    const std::uint64_t size = read_integer(list.substr(at + 4, 4), rules.order);
    entries.push_back({std::string(list.substr(at, 4)), std::string(list.substr(at + 8, size))});
    at += 8 + padded(size, rules);
  }
  return entries;
}

std::size_t open_size(std::string_view header, std::uint64_t length) {
  constexpr std::uint64_t kUnknown = 0xFFFFFFFF;
  if (header.size() < 12 || !header.starts_with("RIFF") || header.substr(8, 4) != "WAVE") return 0;
  const Syntax rules = syntax(ChunkFamily::kRiff);
  const std::uint64_t stated = read_integer(header.substr(4, 4), rules.order);
  if (stated != kUnknown && stated + 8 >= length) return 0;
  for (std::size_t at = rules.start; at + 8 < header.size();) {
    const std::uint64_t size = read_integer(header.substr(at + 4, 4), rules.order);
    if (header.substr(at, 4) == "data") return size == 0 ? at + 4 : 0;
    at += 8 + padded(size, rules);
  }
  return 0;
}

std::size_t chunks_offset(ChunkFamily family, std::string_view header) {
  const Syntax rules = syntax(family);
  for (std::size_t at = rules.start; at + 4 + rules.size_bytes <= header.size();) {
    const std::string_view id = header.substr(at, 4);
    const std::uint64_t size = read_integer(header.substr(at + 4, rules.size_bytes), rules.order);
    const std::uint64_t end = at + 4 + rules.size_bytes + padded(size, rules);
    if (end > header.size()) break;
    at = end;
    if (id == rules.format_id) return at;
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
