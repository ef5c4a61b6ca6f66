// Containers made of chunks: an id of four characters, a size, bytes.

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::host {

enum class ChunkFamily { kNone, kRiff, kAiff, kCaf, kWave64 };

struct Chunk {
  std::string id;    // 4 characters
  std::string data;  // without padding

  bool operator==(const Chunk&) const = default;
};

// The family of a container, SF_FORMAT_WAV ...; none if no chunks can be written to it.
ChunkFamily chunk_family(int container);

// Whether the chunk holds the samples or describes how this file codes them, so that it must not be
// copied to another file: format, data, peaks, overviews, padding.
bool describes_coding(ChunkFamily family, std::string_view id);

// Appends a zero to data of odd size: libsndfile 1.2 can't read an RF64 file with a chunk of odd
// size.
Chunk evened(Chunk chunk);

// The chunks as the bytes of a file, each padded as its family requires.
std::string serialised(ChunkFamily family, std::span<const Chunk> chunks);

// A chunk in the bytes of a file. Where the bytes are a file's beginning, or the size is wrong,
// data may end behind them.
struct PlacedChunk {
  std::string_view id;        // 4 characters
  std::uint64_t begin, size;  // of its data, without padding
};

// Where the first chunk of a file begins.
std::size_t first_chunk(ChunkFamily family);

// The chunks of `bytes` from `at` on, in order, up to the last one whose id and size lie in them.
std::vector<PlacedChunk> chunks_in(ChunkFamily family, std::string_view bytes, std::size_t at);

// The offset at which chunks can be inserted into a file that begins with `header`: after the chunk
// that describes the format. 0 if `header` doesn't hold that chunk whole.
std::size_t chunks_offset(ChunkFamily family, std::string_view header);

// The chunks within the data of a RIFF chunk "LIST", which begins with four characters for its
// type.
std::vector<Chunk> list_entries(std::string_view list);

// Adds `growth` bytes to the field of `header` that states the whole file's size, if it has one.
void grow(ChunkFamily family, std::span<char> header, std::uint64_t growth);

}  // namespace channelstrip::host
